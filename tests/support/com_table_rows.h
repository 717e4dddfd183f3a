#pragma once

#include <optional>
#include <ostream>
#include <string>
#include <vector>

// Which serial device is COM n is worked out twice: by the program, and by the CT-API library where
// no program hands it a table. Both have to come to these tables.
namespace kartocheck::test {

struct ComTableRow {
  struct Device {
    std::string path;
    std::optional<int> builtInNumber;  // none: a USB device
    std::string identification;        // of a USB device
  };

  const char* sentence;
  std::vector<Device> devices;
  const char* expected;  // as it is handed to the library

  friend std::ostream& operator<<(std::ostream& out, const ComTableRow& row) {
    return out << row.sentence;
  }
};

inline ComTableRow::Device BuiltInPort(int number) {
  return {"/dev/ttyS" + std::to_string(number - 1), number, {}};
}

inline ComTableRow::Device UsbPort(const char* path, const char* identification) {
  return {path, {}, identification};
}

inline std::vector<ComTableRow> ComTableRows() {
  return {
      {"a machine without ports", {}, ""},
      {"built-in ports have their own number",
       {BuiltInPort(2), BuiltInPort(1)},
       "1=/dev/ttyS0;2=/dev/ttyS1"},
      {"a built-in port has its number with nothing before it",
       {BuiltInPort(32)},
       "32=/dev/ttyS31"},
      {"USB devices begin at 1 where there is no built-in port",
       {UsbPort("/dev/ttyUSB0", "A"), UsbPort("/dev/ttyACM0", "B")},
       "1=/dev/ttyUSB0;2=/dev/ttyACM0"},
      {"a gap in the built-in ports stays free for USB",
       {BuiltInPort(1), BuiltInPort(3), UsbPort("/dev/ttyUSB0", "A")},
       "1=/dev/ttyS0;2=/dev/ttyUSB0;3=/dev/ttyS2"},
      {"USB devices fill every gap before they go beyond the built-in ports",
       {UsbPort("/dev/ttyUSB0", "A"), BuiltInPort(2), UsbPort("/dev/ttyUSB1", "B"), BuiltInPort(4),
        UsbPort("/dev/ttyUSB2", "C")},
       "1=/dev/ttyUSB0;2=/dev/ttyS1;3=/dev/ttyUSB1;4=/dev/ttyS3;5=/dev/ttyUSB2"},
      {"USB devices stand in the order of their identification and not of their file",
       {UsbPort("/dev/ttyUSB0", "USB VID_0403 PID_6001 Z"),
        UsbPort("/dev/ttyUSB1", "USB VID_0403 PID_6001 A")},
       "1=/dev/ttyUSB1;2=/dev/ttyUSB0"},
      {"two of the same identification stand in the order of their file",
       {UsbPort("/dev/ttyUSB1", "A"), UsbPort("/dev/ttyUSB0", "A")},
       "1=/dev/ttyUSB0;2=/dev/ttyUSB1"},
      {"files stand in the order of their letters",
       {UsbPort("/dev/ttyUSB2", "A"), UsbPort("/dev/ttyUSB10", "A"), UsbPort("/dev/ttyACM0", "A")},
       "1=/dev/ttyACM0;2=/dev/ttyUSB10;3=/dev/ttyUSB2"},
      {"capital letters stand before small ones",
       {UsbPort("/dev/ttyUSB0", "a"), UsbPort("/dev/ttyUSB1", "B")},
       "1=/dev/ttyUSB1;2=/dev/ttyUSB0"},
      {"further USB devices have 5 and up",
       {BuiltInPort(1), BuiltInPort(2), BuiltInPort(3), BuiltInPort(4),
        UsbPort("/dev/ttyUSB0", "A"), UsbPort("/dev/ttyUSB1", "B")},
       "1=/dev/ttyS0;2=/dev/ttyS1;3=/dev/ttyS2;4=/dev/ttyS3;5=/dev/ttyUSB0;6=/dev/ttyUSB1"},
  };
}

}  // namespace kartocheck::test
