#include "ui/rich_text/rtf_reader.h"

#include <algorithm>
#include <array>
#include <optional>
#include <utility>

namespace kartocheck {

namespace {

// Groups in groups beyond this depth share the format of the innermost that is remembered.
constexpr std::size_t DeepestGroup = 100;
// Ten inches, in twips: wider indents and spaces are nonsense.
constexpr int LargestDistance = 14'400;
constexpr int LargestFont = 400;  // half points

constexpr char16_t NoBreakSpace = 0x00A0;
constexpr char16_t LineSeparator = 0x2028;
constexpr char16_t Replacement = 0xFFFD;

// Code page 1252 where it differs from ISO-8859-1: bytes 80 to 9F.
constexpr std::array<char16_t, 32> Page1252{
    0x20AC,      Replacement, 0x201A, 0x0192, 0x201E, 0x2026,      0x2020, 0x2021,
    0x02C6,      0x2030,      0x0160, 0x2039, 0x0152, Replacement, 0x017D, Replacement,
    Replacement, 0x2018,      0x2019, 0x201C, 0x201D, 0x2022,      0x2013, 0x2014,
    0x02DC,      0x2122,      0x0161, 0x203A, 0x0153, Replacement, 0x017E, 0x0178};

QChar CharacterOf1252(quint8 byte) {
  constexpr quint8 First = 0x80;
  if (byte < First || byte >= First + Page1252.size()) return QLatin1Char(static_cast<char>(byte));
  return QChar(Page1252.at(byte - First));
}

bool IsLetter(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

bool IsDigit(char c) {
  return c >= '0' && c <= '9';
}

std::optional<int> HexDigit(char c) {
  if (IsDigit(c)) return c - '0';
  if (c >= 'a' && c <= 'f') return c - 'a' + 10;
  if (c >= 'A' && c <= 'F') return c - 'A' + 10;
  return std::nullopt;
}

// A control word and its number, as in "\fs24".
struct ControlWord {
  QByteArrayView name;
  std::optional<int> number;
};

class Reader {
 public:
  explicit Reader(QByteArrayView rtf) : rest_(rtf) {}

  FormattedText Read() {
    while (!rest_.isEmpty()) ReadNext();
    if (!runs_.empty()) EndParagraph();
    return std::move(text_);
  }

 private:
  struct State {
    TextRun characters;
    TextParagraph paragraph;
    bool isSkipped = false;  // what stands here is no text of the document
  };

  char Take() {
    const char first = rest_.front();
    rest_ = rest_.sliced(1);
    return first;
  }

  void ReadNext() {
    const char c = Take();
    switch (c) {
      case '{':
        return OpenGroup();
      case '}':
        return CloseGroup();
      case '\\':
        return ReadControl();
      case '\r':
      case '\n':
      case '\0':
        return;
      default:
        return Add(CharacterOf1252(static_cast<quint8>(c)));
    }
  }

  void OpenGroup() {
    if (groups_.size() < DeepestGroup) {
      groups_.push_back(state_);
    } else {
      ++forgottenGroups_;
    }
  }

  void CloseGroup() {
    if (forgottenGroups_ > 0) {
      --forgottenGroups_;
    } else if (!groups_.empty()) {
      state_ = groups_.back();
      groups_.pop_back();
    }
  }

  void ReadControl() {
    if (rest_.isEmpty()) return;
    if (IsLetter(rest_.front())) return Apply(TakeWord());
    const char symbol = Take();
    switch (symbol) {
      case '\\':
      case '{':
      case '}':
        return Add(QLatin1Char(symbol));
      case '~':
        return Add(NoBreakSpace);
      case '\'':
        return AddHexByte();
      case '*':
        state_.isSkipped = true;
        return;
      default:
        return;
    }
  }

  ControlWord TakeWord() {
    qsizetype length = 0;
    while (length < rest_.size() && IsLetter(rest_[length])) ++length;
    ControlWord word{rest_.first(length), std::nullopt};
    rest_ = rest_.sliced(length);

    const bool isNegative = rest_.size() > 1 && rest_.front() == '-' && IsDigit(rest_[1]);
    if (isNegative) Take();
    if (!rest_.isEmpty() && IsDigit(rest_.front())) {
      int number = 0;
      while (!rest_.isEmpty() && IsDigit(rest_.front())) {
        number = std::min(number * 10 + (Take() - '0'), LargestDistance);
      }
      word.number = isNegative ? -number : number;
    }
    if (!rest_.isEmpty() && rest_.front() == ' ') Take();
    return word;
  }

  void AddHexByte() {
    if (rest_.size() < 2) return;
    const auto high = HexDigit(rest_[0]);
    const auto low = HexDigit(rest_[1]);
    if (!high || !low) return;
    rest_ = rest_.sliced(2);
    Add(CharacterOf1252(static_cast<quint8>(*high * 16 + *low)));
  }

  void Apply(const ControlWord& word) {
    if (state_.isSkipped) return;
    if (IsOtherContent(word.name)) {
      state_.isSkipped = true;
    } else if (!ApplyToText(word) && !ApplyToCharacters(word)) {
      ApplyToParagraph(word);
    }
  }

  static bool IsOtherContent(QByteArrayView name) {
    return name == "fonttbl" || name == "colortbl" || name == "stylesheet" || name == "info" ||
           name == "pict";
  }

  bool ApplyToText(const ControlWord& word) {
    if (word.name == "par") {
      EndParagraph();
    } else if (word.name == "line") {
      Add(LineSeparator);
    } else if (word.name == "tab") {
      Add(u'\t');
    } else {
      return false;
    }
    return true;
  }

  bool ApplyToCharacters(const ControlWord& word) {
    TextRun& characters = state_.characters;
    if (word.name == "plain") {
      characters = {};
    } else if (word.name == "b") {
      characters.isBold = word.number != 0;
    } else if (word.name == "i") {
      characters.isItalic = word.number != 0;
    } else if (word.name == "fs") {
      characters.halfPoints =
          std::clamp(word.number.value_or(TextRun{}.halfPoints), 1, LargestFont);
    } else {
      return false;
    }
    return true;
  }

  void ApplyToParagraph(const ControlWord& word) {
    TextParagraph& format = state_.paragraph;
    const int number = word.number.value_or(0);
    if (word.name == "pard") {
      format = {};
    } else if (word.name == "qc" || word.name == "ql") {
      format.isCentered = word.name == "qc";
    } else if (word.name == "li") {
      format.leftIndent = std::max(number, 0);
    } else if (word.name == "fi") {
      format.firstLineIndent = number;
    } else if (word.name == "sb") {
      format.spaceBefore = std::max(number, 0);
    } else if (word.name == "sa") {
      format.spaceAfter = std::max(number, 0);
    }
  }

  void Add(QChar character) {
    if (state_.isSkipped) return;
    const TextRun& format = state_.characters;
    if (runs_.empty() || !HasFormatOf(runs_.back(), format)) runs_.push_back(format);
    runs_.back().text += character;
  }

  static bool HasFormatOf(const TextRun& run, const TextRun& format) {
    return run.isBold == format.isBold && run.isItalic == format.isItalic &&
           run.halfPoints == format.halfPoints;
  }

  // A paragraph has the format that holds at its end.
  void EndParagraph() {
    TextParagraph ended = state_.paragraph;
    ended.runs = std::exchange(runs_, {});
    text_.push_back(std::move(ended));
  }

  QByteArrayView rest_;
  State state_;
  std::vector<State> groups_;
  std::size_t forgottenGroups_ = 0;
  std::vector<TextRun> runs_;  // of the paragraph that is read
  FormattedText text_;
};

}  // namespace

QString TextParagraph::Text() const {
  QString text;
  for (const TextRun& run : runs) text += run.text;
  return text;
}

FormattedText ReadRtf(QByteArrayView rtf) {
  return Reader(rtf).Read();
}

}  // namespace kartocheck
