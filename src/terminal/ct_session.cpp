#include "terminal/ct_session.h"

#include <exception>
#include <utility>

#include "text/hex_text.h"

namespace kartocheck {

namespace {

// The program uses one terminal number for every link.
constexpr std::uint16_t Ctn = 1;

constexpr QStringView LibraryMissing = u"Datei nicht gefunden, CTNRV32.dll !!!";
constexpr QStringView LibraryBroken = u"Dynamic Link Library (DLL) Fehler !!! ; CTNRV32.dll ";

// Any address but the terminal's counts as the card's.
Lamp LampOf(std::uint8_t address) {
  return address == ctapi::AddressOf(Unit::Terminal) ? Lamp::Terminal : Lamp::Card;
}

QByteArray CommandBytes(QStringView command) {
  const auto bytes = hex::Decode(command);
  if (!bytes) throw LibraryUnusable({LibraryFaultKind::ImproperCommand});
  return *bytes;
}

ctapi::ByteView ViewOf(const QByteArray& bytes) {
  return {reinterpret_cast<const std::uint8_t*>(bytes.constData()),
          static_cast<std::size_t>(bytes.size())};
}

QByteArray Copy(ctapi::ByteView bytes) {
  return {reinterpret_cast<const char*>(bytes.data()), static_cast<qsizetype>(bytes.size())};
}

}  // namespace

std::optional<ctapi::StatusWord> CtAnswer::StatusWord() const {
  const qsizetype position = response.size() - static_cast<qsizetype>(sw::Length);
  if (position < 0) return std::nullopt;
  return ctapi::StatusWord(static_cast<std::uint8_t>(response[position]),
                           static_cast<std::uint8_t>(response[position + 1]));
}

QByteArrayView CtAnswer::Data() const {
  return QByteArrayView(response).chopped(StatusWord() ? qsizetype{sw::Length} : 0);
}

QString CtAnswer::HexData() const {
  return hex::Encode(Data());
}

QString CtAnswer::HexText() const {
  return hex::Encode(response);
}

CtSession::CtSession(Surroundings surroundings) : with_(std::move(surroundings)) {}

CtSession::BeforeFatal::BeforeFatal(CtSession& session, std::function<void()> save)
    : session_(session) {
  session_.beforeFatal_.push_back(std::move(save));
}

CtSession::BeforeFatal::~BeforeFatal() {
  session_.beforeFatal_.pop_back();
}

template <typename Call>
auto CtSession::Guarded(Call call) -> decltype(call()) {
  try {
    return call();
  } catch (const LibraryNotFound& failure) {
    Fail(LibraryMissing, failure.Fault);
  } catch (const LibraryFailure& failure) {
    Fail(LibraryBroken, failure.Fault);
  } catch (...) {
    Fail(LibraryBroken, {LibraryFaultKind::Threw});
  }
  // A terminate function that came back has broken its promise; there is nothing to go on with.
  std::terminate();
}

void CtSession::Fail(QStringView message, const LibraryFault& fault) {
  for (auto save = beforeFatal_.rbegin(); save != beforeFatal_.rend(); ++save) (*save)();
  with_.dialogs.Tell(Icon::Critical, Dialogs::Title.toString(), message.toString());
  with_.terminate(fault);
}

void CtSession::SetLamps(LampState state) {
  with_.lamps[Lamp::Card].Set(state);
  with_.lamps[Lamp::Terminal].Set(state);
}

CtCode CtSession::CtOpen(Port port) {
  return Guarded([&]() -> CtCode {
    FixedText<8>& baudText = with_.ports[port.Slot()].BaudText;
    with_.eventLoop.Yield();
    baudText = u"";
    pn_ = port.Number();
    const CtCode code = with_.api.Init(Ctn, static_cast<std::uint16_t>(port.Number()));
    if (code == ctapi::code::Success) {
      open_ = true;
      SetLamps(LampState::Answered);
      std::int32_t baud = -1;
      if (with_.api.GetBaudrate(Ctn, baud) == ctapi::code::Success)
        baudText = QString::number(baud);
    }
    return code;
  });
}

CtCode CtSession::CtClose() {
  return Guarded([&]() -> CtCode {
    const CtCode code = with_.api.Close(Ctn);
    open_ = false;
    SetLamps(LampState::Off);
    return code;
  });
}

CtCode CtSession::CtTryPort(Port port) {
  return Guarded([&]() -> CtCode {
    with_.eventLoop.Yield();
    const CtCode code = with_.api.Init(Ctn, static_cast<std::uint16_t>(port.Number()));
    with_.eventLoop.Yield();
    (void)with_.api.Close(Ctn);
    return code;
  });
}

CtAnswer CtSession::CtExchange(QStringView command, Unit unit) {
  return Guarded([&] { return Exchange(ViewOf(CommandBytes(command)), unit); });
}

CtAnswer CtSession::CtExchange(ctapi::ByteView command, Unit unit) {
  return Guarded([&] { return Exchange(command, unit); });
}

CtAnswer CtSession::Exchange(ctapi::ByteView command, Unit unit) {
  // A command longer than its length can tell.
  if (command.size() > UINT16_MAX) throw LibraryUnusable({LibraryFaultKind::ImproperCommand});
  std::uint8_t dad = ctapi::AddressOf(unit);
  std::uint8_t sad = ctapi::HostAddress;
  std::uint16_t length = ResponseSize;

  with_.lamps[LampOf(dad)].Set(LampState::Waiting);
  with_.eventLoop.Yield();
  CtAnswer answer;
  answer.code = with_.api.Data(Ctn, dad, sad, command, buffer_, length);
  // With a failure code the length may tell what size would have been needed.
  if (answer.Succeeded() && length > ResponseSize) {
    throw LibraryUnusable({LibraryFaultKind::ResponseTooLong});
  }
  with_.lamps[LampOf(sad)].Set(LampState::Answered);

  if (answer.Succeeded() && length < sw::Length) answer.code = ctapi::code::BufferTooSmall;
  if (answer.Succeeded()) answer.response = Copy(ctapi::ByteView(buffer_).first(length));
  // Nothing of a card stays here, and a library that tells of more than it wrote next time gets
  // none of this response.
  buffer_.fill(0);
  return answer;
}

}  // namespace kartocheck
