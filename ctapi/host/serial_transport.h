#pragma once

#include <chrono>
#include <functional>

#include "host/terminal_link.h"
#include "protocol/com_table.h"

namespace ctapi::host {

// Terminals on the serial ports COM 1 (index 0) and up, by the table in the environment or, without
// one, by the devices of the machine. A port that is not in the table is refused without a look at
// any device.
class SerialTransport final : public Transport {
 public:
  using FindDevices = std::function<std::vector<ComDevice>()>;
  using Now = std::function<std::chrono::steady_clock::time_point()>;
  // The devices and the clock are those of the machine but in tests.
  explicit SerialTransport(FindDevices find = &FindComDevices,
                           Now now = &std::chrono::steady_clock::now)
      : find_(std::move(find)), now_(std::move(now)) {}

  [[nodiscard]] OpenedLink Open(std::size_t index) override;
  // Its name is the device file.
  [[nodiscard]] PortInfo InfoOf(std::size_t index) override;
  [[nodiscard]] PortTroubleKind TroubleOfReaders() override { return PortTroubleKind::None; }

 private:
  [[nodiscard]] const ComTable& Table();
  // Null where no device has the port's number.
  [[nodiscard]] const std::string* DeviceAt(std::size_t index);

  FindDevices find_;
  Now now_;
  ComTable table_;
  std::optional<std::string> text_;  // what the table was made of, if it was handed over
  // Looking for the devices takes about a millisecond, too long for each port of a sweep.
  std::optional<std::chrono::steady_clock::time_point> made_;
};

}  // namespace ctapi::host
