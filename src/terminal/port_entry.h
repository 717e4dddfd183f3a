#pragma once

#include "text/fixed_text.h"

namespace kartocheck {

// What is known of the port of a slot.
struct PortEntry {
  FixedText<60> PortText;      // verdict of the port check, or the port's description
  FixedText<15> AvailText;     // serial settings or baud rate shown beside the verdict
  bool SettingsFound = false;  // the settings probe was answered
  bool PortPresent = false;    // the port exists (true also when it is in use)
  bool PortError = false;      // opening the port failed for a reason of its own
  bool LineState = false;      // a device drives the line
  int ScanResult = 0;          // outcome of the port check, or the CT-API code of the open
  FixedText<8> BaudText;       // decimal baud rate that the library reported after the open
  bool IsChecked = false;      // the port was looked at; the rest tells nothing before
};

}  // namespace kartocheck
