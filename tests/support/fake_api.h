#pragma once

#include <functional>

#include "platform/ct_api.h"

namespace kartocheck::test {

// A library whose entry points a test writes itself; those left empty succeed and do nothing.
class FakeApi final : public CtApi {
 public:
  using InitCall = std::int8_t(std::uint16_t ctn, std::uint16_t pn);
  using DataCall = std::int8_t(std::uint8_t& dad, std::uint8_t& sad,
                               std::span<const std::uint8_t> command,
                               std::span<std::uint8_t> response, std::uint16_t& responseLength);
  using CloseCall = std::int8_t(std::uint16_t ctn);
  using BaudCall = std::int8_t(std::uint16_t ctn, std::int32_t& baud);

  std::function<InitCall> init;
  std::function<DataCall> data;
  std::function<CloseCall> close;
  std::function<BaudCall> baud;

  [[nodiscard]] std::int8_t Init(std::uint16_t ctn, std::uint16_t pn) override {
    return init ? init(ctn, pn) : std::int8_t{0};
  }
  [[nodiscard]] std::int8_t Data(std::uint16_t /*ctn*/, std::uint8_t& dad, std::uint8_t& sad,
                                 std::span<const std::uint8_t> command,
                                 std::span<std::uint8_t> response,
                                 std::uint16_t& responseLength) override {
    return data ? data(dad, sad, command, response, responseLength) : std::int8_t{0};
  }
  [[nodiscard]] std::int8_t Close(std::uint16_t ctn) override {
    return close ? close(ctn) : std::int8_t{0};
  }
  [[nodiscard]] std::int8_t GetBaudrate(std::uint16_t ctn, std::int32_t& rate) override {
    return baud ? baud(ctn, rate) : std::int8_t{0};
  }
};

}  // namespace kartocheck::test
