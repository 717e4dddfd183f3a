#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QString>
#include <QStringView>

#include <array>
#include <cstdint>
#include <functional>
#include <optional>
#include <vector>

#include "platform/ct_api.h"
#include "platform/dialogs.h"
#include "platform/event_loop.h"
#include "platform/lamps.h"
#include "platform/terminate.h"
#include "protocol/bytes.h"
#include "protocol/return_code.h"
#include "protocol/status_word.h"
#include "protocol/unit.h"
#include "terminal/port_entry.h"
#include "terminal/slot.h"

namespace kartocheck {

using ctapi::Unit;
namespace sw = ctapi::sw;

// A CT-API code (ctapi::code), -128 to 127, widened. A library may return others than those with a
// name; callers test for Success and, where it has a meaning of its own, for TransmissionError.
using CtCode = std::int16_t;

// What an exchange brought: the code, and on Success the response, status word included, of 2 to
// CtSession::ResponseSize bytes. Without Success there is no response.
struct CtAnswer {
  CtCode code = ctapi::code::Success;
  QByteArray response;

  [[nodiscard]] bool Succeeded() const { return code == ctapi::code::Success; }
  // The last two bytes; nothing where the exchange failed.
  [[nodiscard]] std::optional<ctapi::StatusWord> StatusWord() const;
  [[nodiscard]] bool Is(ctapi::StatusWord statusWord) const { return StatusWord() == statusWord; }
  // Everything before the status word. A view of the answer, which has to outlive it.
  [[nodiscard]] QByteArrayView Data() const;

  // The same as hexadecimal text, for parsers that work on it: the data, and the whole response.
  [[nodiscard]] QString HexData() const;
  [[nodiscard]] QString HexText() const;
};

// The one CT-API link of the program. Every call to the library passes through here: it drives the
// lamps, yields to the event loop before the library blocks, and traps run-time failures (a library
// that cannot be loaded, lacks an entry point or does not survive a call, a command that is no
// hexadecimal text, a response that does not fit its buffer). A trapped failure shows the fatal
// message and terminates.
class CtSession {
 public:
  // Size of the response buffer of an exchange, in bytes: no answer is longer.
  static constexpr std::uint16_t ResponseSize = 4'098;

  struct Surroundings {
    CtApi& api;
    Dialogs& dialogs;
    Lamps& lamps;
    EventLoop& eventLoop;
    PerSlot<PortEntry>& ports;
    Terminate terminate;
  };

  explicit CtSession(Surroundings surroundings);

  // As long as it lives, is done before the fatal message is shown: it saves what was read so far.
  // Of several, what began last is done first.
  class BeforeFatal {
   public:
    BeforeFatal(CtSession& session, std::function<void()> save);
    ~BeforeFatal();
    BeforeFatal(const BeforeFatal&) = delete;
    BeforeFatal& operator=(const BeforeFatal&) = delete;

   private:
    CtSession& session_;
  };

  // Opens the link on the port, 1 to 256 or 8192 to 8447, and writes the baud-rate text of the
  // port's slot. Returns the library's code.
  [[nodiscard]] CtCode CtOpen(Port port);

  // Returns the library's code; the link counts as closed whatever it is.
  CtCode CtClose();

  // A bare open and close of a port, without lamps and baud rate. Returns the code of the open. Not
  // to be called while the link is open.
  [[nodiscard]] CtCode CtTryPort(Port port);

  // Sends a command, hexadecimal text of up to 65,535 bytes, to the unit. An answer of fewer than
  // two bytes, which is none, is code BufferTooSmall (-11).
  [[nodiscard]] CtAnswer CtExchange(QStringView command, Unit unit);
  // The same for a command that was built as bytes.
  [[nodiscard]] CtAnswer CtExchange(ctapi::ByteView command, Unit unit);

  // True from a successful CtOpen to the next CtClose.
  [[nodiscard]] bool IsOpen() const { return open_; }

  // Port number of the link that was opened last; 0 before the first.
  [[nodiscard]] int Pn() const { return pn_; }

 private:
  [[nodiscard]] CtAnswer Exchange(ctapi::ByteView command, Unit unit);
  template <typename Call>
  auto Guarded(Call call) -> decltype(call());
  void Fail(QStringView message, const LibraryFault& fault);
  void SetLamps(LampState state);

  Surroundings with_;
  std::vector<std::function<void()>> beforeFatal_;
  std::array<std::uint8_t, ResponseSize> buffer_{};
  int pn_ = 0;
  bool open_ = false;
};

}  // namespace kartocheck
