#pragma once

#include <memory>
#include <optional>

#include "protocol/bytes.h"
#include "protocol/port_info.h"
#include "protocol/return_code.h"
#include "protocol/unit.h"

// The two ways to a terminal, a serial line and PC/SC, as the library sees them. Every function
// returns a code of the CT-API.
namespace ctapi::host {

// An open way to one terminal. Its destructor closes it.
class TerminalLink {
 public:
  // A command for the terminal or its card, and the response with its status word: at least two
  // bytes on success, none otherwise.
  //
  //  -8    the terminal or its card is gone
  //  -10   the exchange broke
  //  -11   the response is longer than a response can be
  //  -127  another program holds the card, or the service that leads to it is gone
  //  -128  an earlier failure has left the link without a terminal
  [[nodiscard]] virtual std::int8_t Exchange(Unit unit, ByteView command, Bytes& response) = 0;
  // Bits a second; nothing on a link without such a rate.
  [[nodiscard]] virtual std::optional<std::int32_t> Baud() const = 0;

  virtual ~TerminalLink() = default;
  TerminalLink(const TerminalLink&) = delete;
  TerminalLink& operator=(const TerminalLink&) = delete;

 protected:
  TerminalLink() = default;
};

struct OpenedLink {
  std::int8_t Code = code::InvalidParameter;
  std::unique_ptr<TerminalLink> Link{};  // on success only
};

class Transport {
 public:
  // index: the port's number within this kind, from 0 on. -1: there is no such port; -127: another
  // program holds it, or it cannot be used; -10: nothing answers there.
  [[nodiscard]] virtual OpenedLink Open(std::size_t index) = 0;
  // What is on the port now, as Open would find it. Touches no card.
  [[nodiscard]] virtual PortInfo InfoOf(std::size_t index) = 0;
  // What keeps every reader of this kind from being used; None for a kind that has no readers.
  [[nodiscard]] virtual PortTroubleKind TroubleOfReaders() = 0;

  virtual ~Transport() = default;
  Transport(const Transport&) = delete;
  Transport& operator=(const Transport&) = delete;

 protected:
  Transport() = default;
};

}  // namespace ctapi::host
