#include "support/dialogue.h"

#include <QStringList>

#include <algorithm>
#include <gtest/gtest.h>
#include <stdexcept>

namespace kartocheck::test {

namespace {

constexpr std::int8_t UnexpectedCall = -1;
constexpr int DefaultBaud = 9600;

QByteArray BytesOf(const QString& text) {
  QString digits = text;
  digits.remove(u' ');
  return QByteArray::fromHex(digits.toLatin1());
}

[[noreturn]] void Reject(int line, const QString& text) {
  throw std::invalid_argument("dialogue line " + std::to_string(line) + ": " + text.toStdString());
}

}  // namespace

Dialogue::Dialogue(const char* script) {
  Parse(QString::fromUtf8(script));
}

Dialogue::~Dialogue() {
  if (next_ < steps_.size()) {
    ADD_FAILURE() << "dialogue ended early; next expected, line " << steps_[next_].line << ": "
                  << steps_[next_].source.toStdString();
  }
}

void Dialogue::Parse(const QString& script) {
  int line = 0;
  for (const QString& raw : script.split(u'\n')) {
    ++line;
    const QString text = raw.section(u'#', 0, 0).trimmed();
    if (text.isEmpty()) continue;
    const int code = text.contains(u"->") ? text.section(QStringLiteral("->"), 1).toInt() : 0;
    const QString body = text.section(QStringLiteral("->"), 0, 0).trimmed();
    Step step{.kind = Step::Kind::Exchange, .line = line, .source = text, .code = code};
    if (body.startsWith(u'<')) {
      if (steps_.empty() || steps_.back().kind != Step::Kind::Exchange) Reject(line, text);
      steps_.back().response = BytesOf(body.mid(1));
      steps_.back().code = code;
      continue;
    }
    if (body.startsWith(u'>')) {
      step.command = BytesOf(body.mid(1));
    } else if (body.startsWith(u"open")) {
      step.kind = Step::Kind::Open;
    } else if (body.startsWith(u"baud")) {
      step.kind = Step::Kind::Baud;
    } else if (body == u"close") {
      step.kind = Step::Kind::Close;
    } else {
      Reject(line, text);
    }
    step.number = body.section(u' ', 1).toInt();
    steps_.push_back(step);
  }
}

const Dialogue::Step* Dialogue::Expect(Step::Kind kind, const QString& actual) {
  if (next_ >= steps_.size()) {
    ADD_FAILURE() << "dialogue is over, but came: " << actual.toStdString();
    return nullptr;
  }
  const Step& step = steps_[next_];
  if (step.kind != kind) {
    ADD_FAILURE() << "line " << step.line << ": expected " << step.source.toStdString()
                  << ", but came: " << actual.toStdString();
    return nullptr;
  }
  ++next_;
  return &step;
}

std::int8_t Dialogue::Init(std::uint16_t /*ctn*/, std::uint16_t pn) {
  const Step* step = Expect(Step::Kind::Open, QStringLiteral("open %1").arg(pn));
  if (step == nullptr) return UnexpectedCall;
  EXPECT_EQ(step->number, pn) << "port number, line " << step->line;
  return static_cast<std::int8_t>(step->code);
}

std::int8_t Dialogue::GetBaudrate(std::uint16_t /*ctn*/, std::int32_t& baud) {
  if (next_ < steps_.size() && steps_[next_].kind == Step::Kind::Baud) {
    const Step& step = steps_[next_++];
    if (step.code == 0) baud = step.number;
    return static_cast<std::int8_t>(step.code);
  }
  baud = DefaultBaud;
  return 0;
}

std::int8_t Dialogue::Close(std::uint16_t /*ctn*/) {
  const Step* step = Expect(Step::Kind::Close, QStringLiteral("close"));
  return step == nullptr ? UnexpectedCall : static_cast<std::int8_t>(step->code);
}

std::int8_t Dialogue::Data(std::uint16_t /*ctn*/, std::uint8_t& dad, std::uint8_t& sad,
                           std::span<const std::uint8_t> command, std::span<std::uint8_t> response,
                           std::uint16_t& responseLength) {
  const QByteArray sent(reinterpret_cast<const char*>(command.data()),
                        static_cast<qsizetype>(command.size()));
  const QString actual = u"> " + QString::fromLatin1(sent.toHex(' ').toUpper());
  const Step* step = Expect(Step::Kind::Exchange, actual);
  if (step == nullptr) return UnexpectedCall;
  EXPECT_EQ(step->command.toHex(' ').toStdString(), sent.toHex(' ').toStdString())
      << "command, line " << step->line;
  const int expectedUnit = sent.startsWith('\x20') ? 1 : 0;
  EXPECT_EQ(expectedUnit, dad) << "addressed unit, line " << step->line;
  EXPECT_EQ(2, sad) << "source address, line " << step->line;

  sad = dad;
  dad = 2;
  const auto length = std::min(response.size(), static_cast<std::size_t>(step->response.size()));
  std::copy_n(step->response.begin(), length, response.begin());
  responseLength = static_cast<std::uint16_t>(length);
  return static_cast<std::int8_t>(step->code);
}

}  // namespace kartocheck::test
