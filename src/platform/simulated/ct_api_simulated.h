#pragma once

#include "platform/ct_api.h"
#include "simulator/simulated_practice.h"

namespace kartocheck {

// The CT-API over simulated terminals in this process. The practice must outlive it.
class CtApiSimulated final : public CtApi {
 public:
  explicit CtApiSimulated(ctapi::SimulatedPractice& practice) : practice_(practice) {}

  [[nodiscard]] std::int8_t Init(std::uint16_t ctn, std::uint16_t pn) override;
  [[nodiscard]] std::int8_t Data(std::uint16_t ctn, std::uint8_t& dad, std::uint8_t& sad,
                                 std::span<const std::uint8_t> command,
                                 std::span<std::uint8_t> response,
                                 std::uint16_t& responseLength) override;
  [[nodiscard]] std::int8_t Close(std::uint16_t ctn) override;
  [[nodiscard]] std::int8_t GetBaudrate(std::uint16_t ctn, std::int32_t& baud) override;

 private:
  ctapi::SimulatedPractice& practice_;
};

}  // namespace kartocheck
