#include "support/random_api.h"

#include <algorithm>
#include <array>

#include "protocol/status_word.h"
#include "protocol/unit.h"

namespace kartocheck::test {

namespace {

using ctapi::StatusWord;
namespace sw = ctapi::sw;

constexpr std::array<StatusWord, 16> StatusWords{
    sw::Ok,          sw::OkProcessorCard, sw::MobileTerminal, sw::MobileExtended,
    sw::NoCard,      sw::EndOfFile,       sw::Deactivated,    sw::CardAlreadyPresent,
    sw::ResetFailed, sw::ReadFailed,      sw::NotAllowed,     sw::SecurityStatus,
    sw::NotFound,    sw::ConditionsOfUse, sw::WrongLength,    StatusWord{0x6D00},
};

constexpr unsigned LongestMadeUp = 1'300;   // bytes, more than any file of a card has
constexpr unsigned LinksOutOfNothing = 64;  // of so many ports that are not there, one opens

}  // namespace

std::int8_t RandomApi::FailingCode() {
  constexpr std::array<std::int8_t, 6> Codes{-1, -8, -10, -11, -127, -128};
  return Codes.at(Below(Codes.size()));
}

std::int8_t RandomApi::Init(std::uint16_t ctn, std::uint16_t pn) {
  if (beforeCall) beforeCall();
  if (isInnerOpen_) return FailingCode();
  if (AnswersItself()) {
    if (Below(LinksOutOfNothing) != 0) return FailingCode();
    isOpen_ = true;
    return 0;
  }
  const std::int8_t code = inner_.Init(ctn, pn);
  isOpen_ = isInnerOpen_ = code == 0;
  return code;
}

std::size_t RandomApi::Changed(Response response, std::size_t length) {
  const auto fill = [&](Response bytes) {
    for (std::uint8_t& byte : bytes) byte = static_cast<std::uint8_t>(Below(256));
  };
  const auto end = [&](std::size_t dataLength) {
    const auto both = StatusWords.at(Below(StatusWords.size())).BothBytes();
    std::copy(both.begin(), both.end(), response.begin() + static_cast<std::ptrdiff_t>(dataLength));
    return dataLength + both.size();
  };
  switch (Below(6)) {
    case 0:  // another status word behind the data
      return end(length < sw::Length ? 0 : length - sw::Length);
    case 1:  // the status word alone
      return end(0);
    case 2:  // cut off, perhaps to nothing
      return Below(static_cast<unsigned>(length) + 1);
    case 3:  // a flipped bit
      if (length > 0) {
        std::uint8_t& byte = response[Below(static_cast<unsigned>(length))];
        byte = static_cast<std::uint8_t>(byte ^ 1U << Below(8));
      }
      return length;
    case 4: {  // any data, with a status word
      const std::size_t made = Below(LongestMadeUp);
      fill(response.first(made));
      return end(made);
    }
    default: {  // anything
      const std::size_t made = Below(LongestMadeUp);
      fill(response.first(made));
      return made;
    }
  }
}

std::int8_t RandomApi::Data(std::uint16_t ctn, std::uint8_t& dad, std::uint8_t& sad,
                            std::span<const std::uint8_t> command, std::span<std::uint8_t> response,
                            std::uint16_t& responseLength) {
  if (beforeCall) beforeCall();
  const bool isChanged = !isInnerOpen_ || AnswersItself();
  if (isChanged && Below(4) == 0) return FailingCode();
  std::size_t length = 0;
  if (!isInnerOpen_) {
    sad = dad;
    dad = ctapi::HostAddress;
  } else {
    const std::int8_t code = inner_.Data(ctn, dad, sad, command, response, responseLength);
    if (code != 0 && !isChanged) return code;
    length = code == 0 ? responseLength : 0;
  }
  if (isChanged) length = Changed(response, length);
  responseLength = static_cast<std::uint16_t>(length);
  return 0;
}

std::int8_t RandomApi::Close(std::uint16_t ctn) {
  const std::int8_t code = isInnerOpen_ ? inner_.Close(ctn) : std::int8_t{0};
  isOpen_ = isInnerOpen_ = false;
  return AnswersItself() ? FailingCode() : code;
}

std::int8_t RandomApi::GetBaudrate(std::uint16_t ctn, std::int32_t& baud) {
  if (beforeCall) beforeCall();
  if (!isInnerOpen_) return FailingCode();
  const std::int8_t code = inner_.GetBaudrate(ctn, baud);
  if (!AnswersItself()) return code;
  baud = static_cast<std::int32_t>(random_());
  return 0;
}

}  // namespace kartocheck::test
