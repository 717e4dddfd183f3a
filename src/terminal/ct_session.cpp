#include "terminal/ct_session.h"

#include <exception>
#include <stdexcept>
#include <utility>

#include "text/hex_text.h"

namespace kartocheck {

namespace {

// The program uses one terminal number for every link.
constexpr std::uint16_t Ctn = 1;
// Source address of a command: the host.
constexpr std::uint8_t HostSad = 2;
constexpr std::uint8_t TerminalSad = 1;
// Characters of the status word at the end of a response.
constexpr qsizetype StatusWordLength = 4;

struct CallFailure : std::runtime_error {
  using std::runtime_error::runtime_error;
};

Lamp LampOf(std::uint8_t address) {
  return address == TerminalSad ? Lamp::Terminal : Lamp::Card;
}

QByteArray CommandBytes(QStringView command) {
  const auto bytes = hex::Decode(command);
  if (!bytes || bytes->size() > UINT16_MAX) throw CallFailure("not a command text");
  return *bytes;
}

}  // namespace

QStringView CtAnswer::StatusWord() const {
  return hex::Right(response, StatusWordLength);
}

QStringView CtAnswer::Data() const {
  return QStringView(response).chopped(StatusWord().size());
}

CtSession::CtSession(Surroundings surroundings) : with_(std::move(surroundings)) {}

template <typename Call>
auto CtSession::Guarded(Call call) -> decltype(call()) {
  try {
    return call();
  } catch (const LibraryNotFound&) {
    Fail(u"Datei nicht gefunden, CTNRV32.dll !!!");
  } catch (...) {
    Fail(u"Dynamic Link Library (DLL) Fehler !!! ; CTNRV32.dll ");
  }
  // A terminate function that came back has broken its promise; there is nothing to go on with.
  std::terminate();
}

void CtSession::Fail(QStringView message) {
  with_.dialogs.Tell(Icon::Critical, Dialogs::Title.toString(), message.toString());
  with_.terminate();
}

void CtSession::SetLamps(LampState state) {
  with_.lamps[Lamp::Card].Set(state);
  with_.lamps[Lamp::Terminal].Set(state);
}

std::int16_t CtSession::CtOpen(int pn) {
  return Guarded([&]() -> std::int16_t {
    FixedText<8>& baudText = with_.ports[Port(pn).Slot()].BaudText;
    with_.eventLoop.Yield();
    baudText = u"";
    pn_ = pn;
    const std::int16_t code = with_.api.Init(Ctn, static_cast<std::uint16_t>(pn));
    if (code == ct_code::Success) {
      open_ = true;
      SetLamps(LampState::Answered);
      std::int32_t baud = -1;
      if (with_.api.GetBaudrate(Ctn, baud) == ct_code::Success) baudText = QString::number(baud);
    }
    return code;
  });
}

std::int16_t CtSession::CtClose() {
  return Guarded([&]() -> std::int16_t {
    const std::int16_t code = with_.api.Close(Ctn);
    open_ = false;
    SetLamps(LampState::Off);
    return code;
  });
}

std::int16_t CtSession::CtTryPort(int pn) {
  return Guarded([&]() -> std::int16_t {
    with_.eventLoop.Yield();
    const std::int16_t code = with_.api.Init(Ctn, static_cast<std::uint16_t>(pn));
    with_.eventLoop.Yield();
    (void)with_.api.Close(Ctn);
    return code;
  });
}

CtAnswer CtSession::CtExchange(QStringView command, Unit dad) {
  return Guarded([&]() -> CtAnswer {
    auto sad = HostSad;
    auto address = static_cast<std::uint8_t>(dad);
    const QByteArray bytes = CommandBytes(command);
    std::uint16_t length = ResponseSize;
    // A library that tells of more than it wrote gets none of an earlier response.
    buffer_.Clear();

    with_.lamps[LampOf(address)].Set(LampState::Waiting);
    with_.eventLoop.Yield();
    CtAnswer answer;
    answer.code = with_.api.Data(Ctn, address, sad,
                                 {reinterpret_cast<const std::uint8_t*>(bytes.constData()),
                                  static_cast<std::size_t>(bytes.size())},
                                 buffer_.Bytes(), length);
    // With a failure code the length may tell what size would have been needed.
    const bool overlong = answer.Succeeded() && length > ResponseSize;
    if (overlong || !buffer_.IsIntact()) throw CallFailure("response exceeds its buffer");
    with_.lamps[LampOf(sad)].Set(LampState::Answered);

    if (answer.code == ct_code::Success && length < 2) answer.code = ct_code::MemoryError;
    if (answer.code == ct_code::Success) {
      answer.response = hex::Encode(QByteArrayView(buffer_.Bytes().first(length)));
    }
    return answer;
  });
}

}  // namespace kartocheck
