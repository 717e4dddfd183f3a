// A CT-API library over the simulator's that does something to its process at one of its calls. The
// environment says what and when: KARTOCHECK_MISBEHAVIOUR is the call, its number from 1 on, and
// the name of the misbehaviour, as in "data 7 crash".

#include <cstdlib>
#include <sstream>
#include <string>

#include "ctnrv32.h"
#include "helper/modules/deeds.h"

namespace {

struct Plan {
  std::string Call;
  int Number = 0;
  std::string Deed;
};

Plan ReadPlan() {
  const char* const text = std::getenv("KARTOCHECK_MISBEHAVIOUR");
  Plan plan;
  std::istringstream(text == nullptr ? "" : text) >> plan.Call >> plan.Number >> plan.Deed;
  return plan;
}

void Misbehave(const std::string& call, int number, const Buffer& buffer = {}) {
  static const Plan plan = ReadPlan();
  if (plan.Call == call && plan.Number == number) Deeds().at(plan.Deed)(buffer);
}

template <typename Function>
Function Original(const char* name) {
  return reinterpret_cast<Function>(SimulatorFunction(name));
}

const bool isLoading = [] {
  Misbehave("load", 1);
  return true;
}();

}  // namespace

// The scenario's COM 1 is on every port: COM 1 to 4 would have to be there as serial devices.
std::int8_t CTNRV32_CALL CTDENRVT1_init(std::uint16_t ctn, std::uint16_t /*pn*/) {
  static int number = 0;
  Misbehave("init", ++number);
  return Original<CTDENRVT1_init_t>("CTDENRVT1_init")(ctn, 1);
}

std::int8_t CTNRV32_CALL CTDENRVT1_data(std::uint16_t ctn, std::uint8_t* dad, std::uint8_t* sad,
                                        std::uint16_t lenc, const std::uint8_t* command,
                                        std::uint16_t* lenr, std::uint8_t* response) {
  static int number = 0;
  Misbehave("data", ++number, {response, lenr});
  return Original<CTDENRVT1_data_t>("CTDENRVT1_data")(ctn, dad, sad, lenc, command, lenr, response);
}

std::int8_t CTNRV32_CALL CTDENRVT1_close(std::uint16_t ctn) {
  static int number = 0;
  Misbehave("close", ++number);
  return Original<CTDENRVT1_close_t>("CTDENRVT1_close")(ctn);
}

std::int8_t CTNRV32_CALL CT_get_baudrate(std::uint16_t ctn, std::int32_t* baud) {
  static int number = 0;
  Misbehave("baud", ++number);
  return Original<CT_get_baudrate_t>("CT_get_baudrate")(ctn, baud);
}

std::int8_t CTNRV32_CALL KARTOCHECK_port_info(std::uint16_t /*pn*/, std::uint8_t* trouble,
                                              std::uint16_t* length, std::uint8_t* name) {
  static int number = 0;
  Misbehave("info", ++number, {name, length});
  *trouble = 0;
  *length = 0;
  return 0;
}
