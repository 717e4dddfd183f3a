#include "support/faulty_api.h"

#include <algorithm>
#include <array>
#include <utility>

namespace kartocheck::test {

namespace {

constexpr std::array<std::pair<int, int>, 15> KnownStatusWords{{
    {0x90, 0x00},
    {0x90, 0x01},
    {0x95, 0x00},
    {0x95, 0x01},
    {0x62, 0x00},
    {0x62, 0x01},
    {0x62, 0x82},
    {0x62, 0x83},
    {0x65, 0x01},
    {0x69, 0x00},
    {0x69, 0x82},
    {0x69, 0x85},
    {0x6A, 0x82},
    {0x6D, 0x00},
    {0x6F, 0x00},
}};

}  // namespace

std::string Fault::Name() const {
  switch (kind) {
    case Kind::Code:
      return "code " + std::to_string(code);
    case Kind::EmptyResponse:
      return "no bytes";
    case Kind::OneByteResponse:
      return "one byte";
    case Kind::RandomResponse:
      return "random bytes, seed " + std::to_string(seed);
  }
  return {};
}

const std::vector<Fault>& AllFaults() {
  using Kind = Fault::Kind;
  static const std::vector<Fault> Faults = [] {
    std::vector<Fault> faults;
    for (const int code : {-1, -8, -10, -11, -127, -128}) {
      faults.push_back({.kind = Kind::Code, .code = static_cast<std::int8_t>(code)});
    }
    faults.push_back({.kind = Kind::EmptyResponse});
    faults.push_back({.kind = Kind::OneByteResponse});
    for (std::uint32_t seed = 1; seed <= 20; ++seed) {
      faults.push_back({.kind = Kind::RandomResponse, .seed = seed});
    }
    return faults;
  }();
  return Faults;
}

QByteArray RandomResponse(std::uint32_t seed) {
  std::mt19937 random(seed);
  QByteArray bytes(2 + static_cast<qsizetype>(random() % 699), Qt::Uninitialized);
  for (char& byte : bytes) byte = static_cast<char>(random());
  const auto last = bytes.end() - 2;
  while (std::find(KnownStatusWords.begin(), KnownStatusWords.end(),
                   std::pair{last[0] & 0xFF, last[1] & 0xFF}) != KnownStatusWords.end()) {
    last[1] = static_cast<char>(random());
  }
  return bytes;
}

std::int8_t FaultyApi::Init(std::uint16_t ctn, std::uint16_t pn) {
  calls_.push_back(QStringLiteral("open %1").arg(pn));
  return inner_.Init(ctn, pn);
}

std::int8_t FaultyApi::Data(std::uint16_t ctn, std::uint8_t& dad, std::uint8_t& sad,
                            std::span<const std::uint8_t> command, std::span<std::uint8_t> response,
                            std::uint16_t& responseLength) {
  const QByteArray sent(reinterpret_cast<const char*>(command.data()),
                        static_cast<qsizetype>(command.size()));
  calls_.push_back(QString::fromLatin1(sent.toHex().toUpper()));
  if (++exchange_ != faultyExchange_) {
    return inner_.Data(ctn, dad, sad, command, response, responseLength);
  }

  QByteArray bytes;
  if (fault_.kind == Fault::Kind::OneByteResponse) bytes = QByteArray(1, '\x90');
  if (fault_.kind == Fault::Kind::RandomResponse) bytes = RandomResponse(fault_.seed);
  std::copy(bytes.begin(), bytes.end(), response.begin());
  responseLength = static_cast<std::uint16_t>(bytes.size());
  sad = dad;
  dad = 2;
  return fault_.code;
}

std::int8_t FaultyApi::Close(std::uint16_t ctn) {
  calls_.push_back(QStringLiteral("close"));
  return inner_.Close(ctn);
}

std::int8_t FaultyApi::GetBaudrate(std::uint16_t ctn, std::int32_t& baud) {
  return inner_.GetBaudrate(ctn, baud);
}

}  // namespace kartocheck::test
