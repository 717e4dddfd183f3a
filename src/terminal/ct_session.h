#pragma once

#include <QString>
#include <QStringView>

#include <cstdint>

#include "platform/ct_api.h"
#include "platform/dialogs.h"
#include "platform/event_loop.h"
#include "platform/lamps.h"
#include "platform/terminate.h"
#include "terminal/guarded_buffer.h"
#include "terminal/port_entry.h"
#include "terminal/slot.h"

namespace kartocheck {

// CT-API return codes. A library may return others; callers test for Success and, where it has a
// meaning of its own, for TransmissionError.
namespace ct_code {
inline constexpr std::int16_t Success = 0;
inline constexpr std::int16_t InvalidParameter = -1;
inline constexpr std::int16_t TerminalError = -8;
inline constexpr std::int16_t TransmissionError = -10;
inline constexpr std::int16_t MemoryError = -11;  // also: an answer without a status word
inline constexpr std::int16_t HostError = -127;
inline constexpr std::int16_t HtsiError = -128;
}  // namespace ct_code

// The addressed unit (dad): the terminal (CT-BCS, class 20) or the card in slot 1 (class 00).
enum class Unit : std::uint8_t { Card = 0, Terminal = 1 };

// What an exchange brought: the CT-API code, and on success the response as hexadecimal text of at
// least one status word. The response is empty when the code is not 0.
struct CtAnswer {
  std::int16_t code = ct_code::Success;
  QString response;

  [[nodiscard]] bool Succeeded() const { return code == ct_code::Success; }
  // The last four characters.
  [[nodiscard]] QStringView StatusWord() const;
  // Everything before the status word.
  [[nodiscard]] QStringView Data() const;
  [[nodiscard]] bool Is(QStringView statusWord) const { return StatusWord() == statusWord; }
};

// The one CT-API link of the program. Every call to the library passes through here: it drives the
// lamps, yields to the event loop before the library blocks, and traps run-time failures (a library
// that cannot be loaded or lacks an entry point, a command that is no hexadecimal text, a response
// that does not fit its buffer). A trapped failure shows the fatal message and terminates.
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

  // Opens the link on the port, 1 to 256 or 8192 to 8447, and writes the baud-rate text of the
  // port's slot. Returns the library's code.
  [[nodiscard]] std::int16_t CtOpen(int pn);

  // Returns the library's code; the link counts as closed whatever it is.
  std::int16_t CtClose();

  // A bare open and close of a port, without lamps and baud rate. Returns the code of the open. Not
  // to be called while the link is open.
  [[nodiscard]] std::int16_t CtTryPort(int pn);

  // Sends a command of hexadecimal text. An answer of fewer than two bytes is code -11.
  [[nodiscard]] CtAnswer CtExchange(QStringView command, Unit dad);

  // True from a successful CtOpen to the next CtClose.
  [[nodiscard]] bool IsOpen() const { return open_; }

  // Port number of the link that was opened last.
  [[nodiscard]] int Pn() const { return pn_; }

 private:
  template <typename Call>
  auto Guarded(Call call) -> decltype(call());
  void Fail(QStringView message);
  void SetLamps(LampState state);

  Surroundings with_;
  GuardedBuffer buffer_{ResponseSize};
  int pn_ = 0;
  bool open_ = false;
};

}  // namespace kartocheck
