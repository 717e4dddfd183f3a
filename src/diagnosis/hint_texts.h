#pragma once

#include <QString>

#include <array>

namespace kartocheck {

// The nine texts of the guided diagnosis. Questions are followed by the advice for the answer No;
// the ninth closes the diagnosis.
enum class Hint {
  CableQuestion = 1,
  CableAdvice,
  PowerQuestion,
  PowerAdvice,
  FormatQuestion,
  FormatAdvice,
  BaudQuestion,
  BaudAdvice,
  Closing,  // the last one
};

inline constexpr int HintCount = static_cast<int>(Hint::Closing);

// The texts, built once: lines joined with CR LF.
class HintTexts {
 public:
  HintTexts();
  [[nodiscard]] const QString& operator[](Hint hint) const {
    return texts_.at(static_cast<std::size_t>(hint) - 1);
  }

 private:
  std::array<QString, HintCount> texts_;
};

}  // namespace kartocheck
