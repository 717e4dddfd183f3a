#include "support/dialogue.h"

#include <QRegularExpression>
#include <QStringList>

#include <algorithm>
#include <gtest/gtest.h>
#include <stdexcept>

#include "support/kvk_records.h"

namespace kartocheck::test {

namespace {

using Kind = DialogueStep::Kind;

constexpr std::int8_t UnexpectedCall = -1;
constexpr std::uint16_t OnlyTerminalNumber = 1;
constexpr int DefaultBaud = 9600;

[[noreturn]] void Reject(int line, const QString& text) {
  throw std::invalid_argument("dialogue line " + std::to_string(line) + ": " + text.toStdString());
}

// 'text' is written as the digits of its bytes in ISO-8859-1.
QString WithoutQuotes(const QString& text, int line) {
  const QStringList parts = text.split(u'\'');
  if (parts.size() % 2 == 0) Reject(line, text);
  QString digits;
  for (qsizetype i = 0; i < parts.size(); ++i) {
    digits += i % 2 == 0 ? parts[i] : HexOf(parts[i].toLatin1());
  }
  return digits;
}

QByteArray BytesOf(const QString& text, int line) {
  QString digits = WithoutQuotes(text, line);
  for (auto record = SampleRecords().begin(); record != SampleRecords().end(); ++record) {
    digits.replace(u'{' + record.key() + u'}', record.value());
  }
  digits.remove(u' ');
  static const QRegularExpression Bytes(QStringLiteral("^([0-9A-F]{2})*$"));
  if (!Bytes.match(digits).hasMatch()) Reject(line, text);
  return QByteArray::fromHex(digits.toLatin1());
}

}  // namespace

std::vector<DialogueStep> ParseDialogue(const std::string& script) {
  std::vector<DialogueStep> steps;
  int line = 0;
  for (const QString& raw : QString::fromStdString(script).split(u'\n')) {
    ++line;
    const QString text = raw.section(u'#', 0, 0).trimmed();
    if (text.isEmpty()) continue;
    const int code = text.contains(u"->") ? text.section(QStringLiteral("->"), 1).toInt() : 0;
    const QString body = text.section(QStringLiteral("->"), 0, 0).trimmed();
    DialogueStep step{.kind = Kind::Exchange, .line = line, .source = text, .code = code};
    if (body.startsWith(u'<')) {
      if (steps.empty() || steps.back().kind != Kind::Exchange) Reject(line, text);
      steps.back().response = BytesOf(body.mid(1), line);
      steps.back().code = code;
      continue;
    }
    if (body.startsWith(u'>')) {
      step.command = BytesOf(body.mid(1), line);
    } else if (body.startsWith(u"open ")) {
      step.kind = Kind::Open;
    } else if (body == u"baud" || body.startsWith(u"baud ")) {
      step.kind = Kind::Baud;
    } else if (body == u"close") {
      step.kind = Kind::Close;
    } else {
      Reject(line, text);
    }
    step.number = body.section(u' ', 1).toInt();
    steps.push_back(step);
  }
  return steps;
}

Dialogue::Dialogue(const std::string& script) : steps_(ParseDialogue(script)) {}

Dialogue::~Dialogue() {
  if (next_ < steps_.size()) {
    ADD_FAILURE() << "dialogue ended early; next expected, line " << steps_[next_].line << ": "
                  << steps_[next_].source.toStdString();
  }
}

const DialogueStep* Dialogue::Expect(Kind kind, const QString& actual) {
  if (next_ >= steps_.size()) {
    ADD_FAILURE() << "dialogue is over, but came: " << actual.toStdString();
    return nullptr;
  }
  const DialogueStep& step = steps_[next_];
  if (step.kind != kind) {
    ADD_FAILURE() << "line " << step.line << ": expected " << step.source.toStdString()
                  << ", but came: " << actual.toStdString();
    return nullptr;
  }
  ++next_;
  return &step;
}

std::int8_t Dialogue::Init(std::uint16_t ctn, std::uint16_t pn) {
  EXPECT_EQ(OnlyTerminalNumber, ctn);
  const DialogueStep* step = Expect(Kind::Open, QStringLiteral("open %1").arg(pn));
  if (step == nullptr) return UnexpectedCall;
  EXPECT_EQ(step->number, pn) << "port number, line " << step->line;
  return static_cast<std::int8_t>(step->code);
}

std::int8_t Dialogue::GetBaudrate(std::uint16_t ctn, std::int32_t& baud) {
  EXPECT_EQ(OnlyTerminalNumber, ctn);
  if (next_ < steps_.size() && steps_[next_].kind == Kind::Baud) {
    const DialogueStep& step = steps_[next_++];
    if (step.code == 0) baud = step.number;
    return static_cast<std::int8_t>(step.code);
  }
  baud = DefaultBaud;
  return 0;
}

std::int8_t Dialogue::Close(std::uint16_t ctn) {
  EXPECT_EQ(OnlyTerminalNumber, ctn);
  const DialogueStep* step = Expect(Kind::Close, QStringLiteral("close"));
  return step == nullptr ? UnexpectedCall : static_cast<std::int8_t>(step->code);
}

std::int8_t Dialogue::Data(std::uint16_t ctn, std::uint8_t& dad, std::uint8_t& sad,
                           std::span<const std::uint8_t> command, std::span<std::uint8_t> response,
                           std::uint16_t& responseLength) {
  const QByteArray sent(reinterpret_cast<const char*>(command.data()),
                        static_cast<qsizetype>(command.size()));
  const QString actual = u"> " + QString::fromLatin1(sent.toHex(' ').toUpper());
  const DialogueStep* step = Expect(Kind::Exchange, actual);
  if (step == nullptr) return UnexpectedCall;
  EXPECT_EQ(step->command.toHex(' ').toStdString(), sent.toHex(' ').toStdString())
      << "command, line " << step->line;
  const int expectedUnit = sent.startsWith('\x20') ? 1 : 0;
  EXPECT_EQ(expectedUnit, dad) << "addressed unit, line " << step->line;
  EXPECT_EQ(2, sad) << "source address, line " << step->line;
  EXPECT_EQ(OnlyTerminalNumber, ctn);
  EXPECT_EQ(response.size(), responseLength) << "told buffer size, line " << step->line;

  sad = dad;
  dad = 2;
  const auto length = std::min(response.size(), static_cast<std::size_t>(step->response.size()));
  std::copy_n(step->response.begin(), length, response.begin());
  responseLength = static_cast<std::uint16_t>(length);
  return static_cast<std::int8_t>(step->code);
}

}  // namespace kartocheck::test
