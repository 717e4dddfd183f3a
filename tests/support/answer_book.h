#pragma once

#include <QByteArray>
#include <QMap>

#include <deque>
#include <string>

#include "support/dialogue.h"

namespace kartocheck::test {

// A library that gives every command the answer it has in a dialogue, in whatever order the
// commands come: the base of flows that leave the dialogue's path. A command that occurs several
// times gets its answers in turn, the last one from then on; one that does not occur gets "6D00".
// Opening and closing give the codes of the dialogue.
class AnswerBook final : public CtApi {
 public:
  explicit AnswerBook(const std::string& script);

  // Number of exchanges in the dialogue.
  [[nodiscard]] int Exchanges() const { return exchanges_; }

  [[nodiscard]] std::int8_t Init(std::uint16_t ctn, std::uint16_t pn) override;
  [[nodiscard]] std::int8_t Data(std::uint16_t ctn, std::uint8_t& dad, std::uint8_t& sad,
                                 std::span<const std::uint8_t> command,
                                 std::span<std::uint8_t> response,
                                 std::uint16_t& responseLength) override;
  [[nodiscard]] std::int8_t Close(std::uint16_t ctn) override;
  [[nodiscard]] std::int8_t GetBaudrate(std::uint16_t ctn, std::int32_t& baud) override;

 private:
  struct Reply {
    QByteArray response;
    int code;
  };

  QMap<QByteArray, std::deque<Reply>> replies_;
  int exchanges_ = 0;
  std::int8_t openCode_ = 0;
  std::int8_t closeCode_ = 0;
};

}  // namespace kartocheck::test
