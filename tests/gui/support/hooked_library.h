#pragma once

#include <functional>
#include <utility>

#include "platform/ct_api.h"

namespace kartocheck::test {

// Passes every call on to a library; before an exchange it lets the test look at the window, or do
// something to it, as if that came while the library blocks.
class HookedLibrary final : public CtApi {
 public:
  explicit HookedLibrary(CtApi& library) : library_(library) {}

  // Called with the number of the exchange, from 0.
  std::function<void(int)> beforeExchange;

  // Called with the port's number before a link is opened.
  std::function<void(int)> beforeInit;

  [[nodiscard]] std::int8_t Init(std::uint16_t ctn, std::uint16_t pn) override {
    if (beforeInit) beforeInit(pn);
    return library_.Init(ctn, pn);
  }

  [[nodiscard]] std::int8_t Data(std::uint16_t ctn, std::uint8_t& dad, std::uint8_t& sad,
                                 std::span<const std::uint8_t> command,
                                 std::span<std::uint8_t> response,
                                 std::uint16_t& responseLength) override {
    if (beforeExchange) beforeExchange(exchanges_);
    ++exchanges_;
    return library_.Data(ctn, dad, sad, command, response, responseLength);
  }

  [[nodiscard]] std::int8_t Close(std::uint16_t ctn) override { return library_.Close(ctn); }

  [[nodiscard]] std::int8_t GetBaudrate(std::uint16_t ctn, std::int32_t& baud) override {
    return library_.GetBaudrate(ctn, baud);
  }

 private:
  CtApi& library_;
  int exchanges_ = 0;
};

}  // namespace kartocheck::test
