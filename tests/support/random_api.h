#pragma once

#include <functional>
#include <random>

#include "platform/ct_api.h"

namespace kartocheck::test {

// A library over another one that answers at random now and then: failing codes, status words that
// do not fit, responses cut off, damaged or made up, links where there is no port. What it answers
// follows from its seed and the calls alone. It never breaks the contract of the entry points.
class RandomApi final : public CtApi {
 public:
  // percent: of the calls that it answers itself.
  RandomApi(CtApi& inner, unsigned percent, unsigned seed)
      : inner_(inner), percent_(percent), random_(seed) {}

  // Called before each call but Close.
  std::function<void()> beforeCall;

  // Opened by Init and not closed since.
  [[nodiscard]] bool IsOpen() const { return isOpen_; }

  [[nodiscard]] std::int8_t Init(std::uint16_t ctn, std::uint16_t pn) override;
  [[nodiscard]] std::int8_t Data(std::uint16_t ctn, std::uint8_t& dad, std::uint8_t& sad,
                                 std::span<const std::uint8_t> command,
                                 std::span<std::uint8_t> response,
                                 std::uint16_t& responseLength) override;
  [[nodiscard]] std::int8_t Close(std::uint16_t ctn) override;
  [[nodiscard]] std::int8_t GetBaudrate(std::uint16_t ctn, std::int32_t& baud) override;

 private:
  using Response = std::span<std::uint8_t>;

  unsigned Below(unsigned bound) { return static_cast<unsigned>(random_() % bound); }
  bool AnswersItself() { return Below(100) < percent_; }
  std::int8_t FailingCode();
  // What becomes of a response of this length; gives the new length.
  std::size_t Changed(Response response, std::size_t length);

  CtApi& inner_;
  unsigned percent_;
  std::mt19937 random_;
  bool isOpen_ = false;
  bool isInnerOpen_ = false;
};

}  // namespace kartocheck::test
