#include "platform/simulated/serial_port_simulated.h"

#include <functional>
#include <gtest/gtest.h>
#include <utility>

namespace kartocheck::test {
namespace {

TEST(SerialPortSimulatedTest, APortUnpluggedWhileOpenIsLostToEveryCall) {
  const std::pair<const char*, std::function<void(SerialPort&)>> calls[] = {
      {"DTR", [](SerialPort& serial) { serial.SetDtr(true); }},
      {"RTS", [](SerialPort& serial) { serial.SetRts(true); }},
      {"DSR", [](SerialPort& serial) { (void)serial.ReadDsr(); }},
      {"sending", [](SerialPort& serial) { serial.Send("x"); }},
      {"receiving", [](SerialPort& serial) { (void)serial.Received(); }},
  };
  for (const auto& [name, call] : calls) {
    ctapi::SimulatedPractice practice;
    practice.Attach(2, {});
    SerialPortSimulated serial(practice);
    serial.Open(2);
    EXPECT_NO_THROW(call(serial)) << name;
    practice.Detach(2);
    EXPECT_THROW(call(serial), SerialPortError) << name;
  }
}

}  // namespace
}  // namespace kartocheck::test
