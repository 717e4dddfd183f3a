#pragma once

#include <cstdint>
#include <string>

// What a CT-API library of ours tells of a port beside the four entry points, see ctnrv32.h.
namespace ctapi {

// What keeps a port, or every card reader, from being used. The numbers are those of the C
// interface: others may be added, none changes.
enum class PortTroubleKind : std::uint8_t {
  None = 0,            // nothing that is known
  NotInstalled = 1,    // the system's reader service is not installed
  NoService = 2,       // it is not running
  NoReader = 3,        // it knows no reader: none is attached, or no driver takes it
  CardHeld = 4,        // the card that is there is held by another program
  NotPermitted = 5,    // the user may not open the device
  MuteCard = 6,        // the card that is there does not answer
  ReaderGone = 7,      // the reader was unplugged while it was used
  ServiceRefuses = 8,  // the system's reader service runs and refuses this user
};

inline constexpr auto LastPortTrouble = PortTroubleKind::ServiceRefuses;

// In place of a port number: what keeps every card reader from being used.
inline constexpr int EveryReader = 0;

struct PortInfo {
  PortTroubleKind Trouble = PortTroubleKind::None;
  std::string
      Name{};  // of the device that the library has on the port, UTF-8; empty: none is known
};

}  // namespace ctapi
