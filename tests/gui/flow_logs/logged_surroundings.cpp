#include "gui/flow_logs/logged_surroundings.h"

#include <algorithm>

namespace kartocheck::test {

namespace {

QString IconText(Icon icon) {
  switch (icon) {
    case Icon::Information:
      return QStringLiteral("information");
    case Icon::Question:
      return QStringLiteral("question");
    case Icon::Exclamation:
      return QStringLiteral("exclamation");
    case Icon::Critical:
      return QStringLiteral("critical");
  }
  return {};
}

QString AnswerText(Answer answer) {
  switch (answer) {
    case Answer::Ok:
      return QStringLiteral("ok");
    case Answer::Cancel:
      return QStringLiteral("cancel");
    case Answer::Yes:
      return QStringLiteral("yes");
    case Answer::No:
      return QStringLiteral("no");
  }
  return {};
}

QString OnOrOff(bool on) {
  return on ? QStringLiteral("on") : QStringLiteral("off");
}

std::span<const std::uint8_t> BytesOf(QByteArrayView view) {
  return {reinterpret_cast<const std::uint8_t*>(view.data()),
          static_cast<std::size_t>(view.size())};
}

}  // namespace

std::int8_t LoggedLibrary::Init(std::uint16_t ctn, std::uint16_t pn) {
  const std::int8_t code = library_.Init(ctn, pn);
  log_.Line(QStringLiteral("ct-api Init ctn=%1 pn=%2 -> %3").arg(ctn).arg(pn).arg(code));
  return code;
}

std::int8_t LoggedLibrary::Data(std::uint16_t ctn, std::uint8_t& dad, std::uint8_t& sad,
                                std::span<const std::uint8_t> command,
                                std::span<std::uint8_t> response, std::uint16_t& responseLength) {
  const QString call = QStringLiteral("ct-api Data ctn=%1 dad=%2 sad=%3 room=%4 > ")
                           .arg(ctn)
                           .arg(dad)
                           .arg(sad)
                           .arg(responseLength);
  const std::int8_t code = library_.Data(ctn, dad, sad, command, response, responseLength);
  const auto length = std::min(response.size(), std::size_t{responseLength});
  log_.Line(call + Hexadecimal(command) +
            QStringLiteral(" -> %1 dad=%2 sad=%3 length=%4 < ")
                .arg(code)
                .arg(dad)
                .arg(sad)
                .arg(responseLength) +
            (code == 0 ? Hexadecimal(response.first(length)) : QString()));
  return code;
}

std::int8_t LoggedLibrary::Close(std::uint16_t ctn) {
  const std::int8_t code = library_.Close(ctn);
  log_.Line(QStringLiteral("ct-api Close ctn=%1 -> %2").arg(ctn).arg(code));
  return code;
}

std::int8_t LoggedLibrary::GetBaudrate(std::uint16_t ctn, std::int32_t& baud) {
  const std::int8_t code = library_.GetBaudrate(ctn, baud);
  log_.Line(QStringLiteral("ct-api GetBaudrate ctn=%1 -> %2 baud=%3").arg(ctn).arg(code).arg(baud));
  return code;
}

// The call gives what is to be noted of its result.
void LoggedSerialPort::Do(const QString& name, const std::function<QString()>& call) {
  try {
    log_.Line(u"serial " + name + call());
  } catch (const SerialPortError& error) {
    log_.Line(u"serial " + name + QStringLiteral(" fails %1").arg(error.Number));
    throw;
  }
}

void LoggedSerialPort::Open(int comNumber) {
  Do(QStringLiteral("Open %1").arg(comNumber), [&] {
    serial_.Open(comNumber);
    return QString();
  });
}

void LoggedSerialPort::Close() noexcept {
  log_.Line(QStringLiteral("serial Close"));
  serial_.Close();
}

void LoggedSerialPort::SetSettings(QStringView settings) {
  Do(u"SetSettings " + settings.toString(), [&] {
    serial_.SetSettings(settings);
    return QString();
  });
}

void LoggedSerialPort::SetDtr(bool on) {
  Do(u"SetDtr " + OnOrOff(on), [&] {
    serial_.SetDtr(on);
    return QString();
  });
}

void LoggedSerialPort::SetRts(bool on) {
  Do(u"SetRts " + OnOrOff(on), [&] {
    serial_.SetRts(on);
    return QString();
  });
}

bool LoggedSerialPort::ReadDsr() {
  bool isOn = false;
  Do(QStringLiteral("ReadDsr -> "), [&] {
    isOn = serial_.ReadDsr();
    return OnOrOff(isOn);
  });
  return isOn;
}

void LoggedSerialPort::EmptyReceiveBuffer() {
  Do(QStringLiteral("EmptyReceiveBuffer"), [&] {
    serial_.EmptyReceiveBuffer();
    return QString();
  });
}

void LoggedSerialPort::Send(QByteArrayView bytes) {
  Do(u"Send " + Hexadecimal(BytesOf(bytes)), [&] {
    serial_.Send(bytes);
    return QString();
  });
}

QByteArray LoggedSerialPort::Received() {
  QByteArray bytes;
  Do(QStringLiteral("Received -> "), [&] {
    bytes = serial_.Received();
    return Hexadecimal(BytesOf(bytes));
  });
  return bytes;
}

void LoggedEventLoop::Wait(std::chrono::milliseconds duration) {
  log_.Line(QStringLiteral("wait %1 ms").arg(duration.count()));
  loop_.Wait(duration);
}

void LoggedDialogs::Tell(Icon icon, const QString& title, const QString& text) {
  log_.Line(u"tell " + IconText(icon) + u' ' + Quoted(title) + u' ' + Quoted(text));
  dialogs_.Tell(icon, title, text);
}

Answer LoggedDialogs::Ask(const Question& question) {
  log_.Line(u"ask " + IconText(question.icon) + u' ' + Quoted(question.title) + u' ' +
            Quoted(question.text) + u" preselected " + AnswerText(question.preselected));
  const Answer answer = dialogs_.Ask(question);
  log_.Line(u"answer " + AnswerText(answer));
  return answer;
}

void LoggedDisplay::ShowStatusText(const QString& text) {
  log_.Line(u"status " + Quoted(text));
  display_.ShowStatusText(text);
}

LoggedStream::int_type LoggedStream::overflow(int_type character) {
  if (traits_type::eq_int_type(character, traits_type::eof()))
    return traits_type::not_eof(character);
  if (character == '\n') {
    Note(u"");
  } else {
    line_.push_back(traits_type::to_char_type(character));
  }
  return character;
}

int LoggedStream::sync() {
  if (!line_.empty()) Note(u" (not ended)");
  return 0;
}

void LoggedStream::Note(QStringView end) {
  log_.Line(mark_ + u' ' + Quoted(QString::fromStdString(line_)) + end);
  line_.clear();
}

}  // namespace kartocheck::test
