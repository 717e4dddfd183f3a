#pragma once

#include <QByteArray>
#include <QString>

#include <random>
#include <string>
#include <vector>

#include "platform/ct_api.h"

namespace kartocheck::test {

// What the library does instead of answering.
struct Fault {
  enum class Kind { Code, EmptyResponse, OneByteResponse, RandomResponse } kind;
  std::int8_t code = 0;    // of Kind::Code
  std::uint32_t seed = 0;  // of Kind::RandomResponse

  [[nodiscard]] std::string Name() const;
};

// Every fault that a link can have: each failing code of CT-API, no bytes, one byte, and random
// bytes from several seeds.
[[nodiscard]] const std::vector<Fault>& AllFaults();

// 2 to 700 random bytes; the last two are no status word that the program knows.
[[nodiscard]] QByteArray RandomResponse(std::uint32_t seed);

// A library that works like another one but for its n-th exchange (from 1), which fails. The other
// library does not see that exchange. Writes down what it is called for.
class FaultyApi final : public CtApi {
 public:
  FaultyApi(CtApi& inner, int faultyExchange, Fault fault)
      : inner_(inner), faultyExchange_(faultyExchange), fault_(fault) {}

  // "open 1", "2011000000", "close": the calls in order.
  [[nodiscard]] const std::vector<QString>& Calls() const { return calls_; }

  [[nodiscard]] std::int8_t Init(std::uint16_t ctn, std::uint16_t pn) override;
  [[nodiscard]] std::int8_t Data(std::uint16_t ctn, std::uint8_t& dad, std::uint8_t& sad,
                                 std::span<const std::uint8_t> command,
                                 std::span<std::uint8_t> response,
                                 std::uint16_t& responseLength) override;
  [[nodiscard]] std::int8_t Close(std::uint16_t ctn) override;
  [[nodiscard]] std::int8_t GetBaudrate(std::uint16_t ctn, std::int32_t& baud) override;

 private:
  CtApi& inner_;
  int faultyExchange_;
  Fault fault_;
  int exchange_ = 0;
  std::vector<QString> calls_;
};

}  // namespace kartocheck::test
