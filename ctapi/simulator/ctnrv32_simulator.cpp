#include <cstdio>
#include <exception>
#include <optional>
#include <string>

#include "ctnrv32.h"
#include "protocol/environment.h"
#include "simulator/scenario.h"

// The C entry points of CTNRV32 over a simulated practice. The environment variable
// KARTOCHECK_SCENARIO names its scenario file; it is read once, at the first init.
namespace {

constexpr const char* ScenarioVariable = "KARTOCHECK_SCENARIO";

std::optional<ctapi::SimulatedPractice> LoadNamedScenario() {
  const std::string file = ctapi::EnvironmentText(ScenarioVariable).value_or("");
  if (file.empty()) {
    std::fprintf(stderr, "CTNRV32 (simulator): %s names no scenario file\n", ScenarioVariable);
    return std::nullopt;
  }
  try {
    return ctapi::LoadScenario(std::u8string(file.begin(), file.end()));
  } catch (const std::exception& error) {
    std::fprintf(stderr, "CTNRV32 (simulator): %s\n", error.what());
    return std::nullopt;
  }
}

std::optional<ctapi::SimulatedPractice>& ThePractice() {
  static std::optional<ctapi::SimulatedPractice> practice = LoadNamedScenario();
  return practice;
}

// Runs an operation on the practice; without one, and when it throws, the library is out of order.
template <typename Operation>
std::int8_t OnPractice(Operation operation) noexcept {
  try {
    auto& practice = ThePractice();
    return practice ? operation(*practice) : ctapi::code::HtsiError;
  } catch (...) {
    return ctapi::code::HtsiError;
  }
}

}  // namespace

std::int8_t CTNRV32_CALL CTDENRVT1_init(std::uint16_t ctn, std::uint16_t pn) {
  return OnPractice([=](auto& practice) { return practice.Init(ctn, pn); });
}

std::int8_t CTNRV32_CALL CTDENRVT1_data(std::uint16_t ctn, std::uint8_t* dad, std::uint8_t* sad,
                                        std::uint16_t lenc, const std::uint8_t* command,
                                        std::uint16_t* lenr, std::uint8_t* response) {
  if (!dad || !sad || !command || !lenr || !response) return ctapi::code::InvalidParameter;
  return OnPractice([=](auto& practice) {
    return practice.Data(ctn, *dad, *sad, {command, lenc}, {response, *lenr}, *lenr);
  });
}

std::int8_t CTNRV32_CALL CTDENRVT1_close(std::uint16_t ctn) {
  return OnPractice([=](auto& practice) { return practice.Close(ctn); });
}

std::int8_t CTNRV32_CALL CT_get_baudrate(std::uint16_t ctn, std::int32_t* baud) {
  if (!baud) return ctapi::code::InvalidParameter;
  return OnPractice([=](auto& practice) { return practice.GetBaudrate(ctn, *baud); });
}
