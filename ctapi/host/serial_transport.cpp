#include "host/serial_transport.h"

#include "host/serial_device.h"
#include "host/serial_link.h"
#include "protocol/environment.h"

namespace ctapi::host {

namespace {

constexpr std::chrono::seconds TableLife{1};

}  // namespace

OpenedLink SerialTransport::Open(std::size_t index) {
  const std::string* const device = DeviceAt(index);
  if (device == nullptr) return {.Code = code::InvalidParameter};
  OpenedLine opened = OpenSerialDevice(*device);
  if (opened.Code != code::Success) return {.Code = opened.Code};
  return SerialLink::Open(std::move(opened.Line));
}

PortInfo SerialTransport::InfoOf(std::size_t index) {
  const std::string* const device = DeviceAt(index);
  return {.Name = device == nullptr ? std::string() : *device};
}

const std::string* SerialTransport::DeviceAt(std::size_t index) {
  const ComTable& table = Table();
  const auto entry = table.find(static_cast<int>(index) + 1);
  return entry == table.end() ? nullptr : &entry->second;
}

const ComTable& SerialTransport::Table() {
  if (const auto given = EnvironmentText(ComTableVariable)) {
    if (text_ != given) {
      text_ = given;
      table_ = ParseComTable(*text_);
      made_.reset();
    }
    return table_;
  }
  const auto now = now_();
  if (!made_ || now - *made_ > TableLife) {
    made_ = now;
    text_.reset();
    table_ = MakeComTable(find_());
  }
  return table_;
}

}  // namespace ctapi::host
