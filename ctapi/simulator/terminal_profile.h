#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "simulator/apdu.h"
#include "simulator/bytes.h"

namespace ctapi {

// What a terminal tells of itself in GET STATUS (CT-BCS, data object 46). Texts of five characters,
// shorter ones padded with blanks.
struct Manufacturer {
  std::string Maker{};
  std::string ProductCode{};
  std::string Version{};
  // The second maker's terminals append a data object D7 of 54 bytes; these are the nine characters
  // at its 32nd byte that hold the version, empty for a terminal without that object.
  std::string HandheldVersion{};
};

enum class UsbQuery {
  Unknown,      // the vendor query is answered 6D00
  OtherDevice,  // a device descriptor that names no virtual COM port
  VirtualCom,   // the terminal is attached through a USB virtual COM port
};

// What a terminal is: every answer by which one model is told from another.
struct TerminalProfile {
  // GET STATUS for the functional units: 9000 behind the object 81, any other status word alone.
  StatusWord FunctionalUnits = sw::Ok;
  // Without it GET STATUS for the manufacturer is answered with a status word alone.
  std::optional<Manufacturer> Maker{};
  // The whole answer to GET STATUS for the manufacturer, status word included, in place of Maker.
  std::optional<Bytes> ManufacturerAnswer{};
  // RESET CT: 9500 marks a mobile terminal, 9501 a mobile terminal with extended records.
  StatusWord Reset = sw::Ok;
  UsbQuery Usb = UsbQuery::Unknown;
  // Every SELECT is answered 6900: a hand-held terminal in its stationary mode.
  bool RefusesSelect = false;

  [[nodiscard]] bool IsMobile() const {
    return Reset == sw::MobileTerminal || Reset == sw::MobileExtended;
  }
  [[nodiscard]] bool KeepsExtendedRecords() const { return Reset == sw::MobileExtended; }

  [[nodiscard]] Bytes AnswerToManufacturerQuery() const;
};

struct TerminalFamily {
  std::string_view Name;
  TerminalProfile Profile;
};

[[nodiscard]] std::span<const TerminalFamily> TerminalFamilies();

// The profile of a family by its name; nothing for an unknown one.
[[nodiscard]] std::optional<TerminalProfile> ProfileOf(std::string_view family);

}  // namespace ctapi
