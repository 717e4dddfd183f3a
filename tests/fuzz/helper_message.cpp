#include <algorithm>

#include "fuzz/fuzz_input.h"
#include "helper/message.h"

// What comes through the pipe between the program and its helper. Input: the bytes, which are taken
// as one message and, as the helper reads them, as one after the other.

namespace ctapi::helper {
namespace {

using kartocheck::fuzz::Require;

void AsOne(ByteView bytes) {
  const auto message = Decode(bytes);
  if (!message) return;
  Require(MissingBytes(bytes) == 0, "a message is whole");
  const Bytes again = Encode(*message);
  Require(std::equal(again.begin(), again.end(), bytes.begin(), bytes.end()),
          "a message has one form");
  for (std::size_t length = 0; length < bytes.size(); ++length) {
    Require(MissingBytes(bytes.first(length)) > 0, "a part of a message is none");
    Require(MissingBytes(bytes.first(length)) <= bytes.size() - length,
            "no more is asked for than belongs to the message");
  }
}

void OneAfterTheOther(ByteView bytes) {
  while (!bytes.empty()) {
    std::size_t taken = 0;
    while (const std::size_t missing = MissingBytes(bytes.first(taken))) {
      if (missing > bytes.size() - taken) return;
      taken += missing;
    }
    Require(taken >= HeaderLength && taken <= HeaderLength + LongestPayload,
            "a message has an end");
    const auto message = Decode(bytes.first(taken));
    if (!message) return;
    Require(message->Payload.size() == taken - HeaderLength, "the payload is all the rest");
    bytes = bytes.subspan(taken);
  }
}

}  // namespace
}  // namespace ctapi::helper

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  ctapi::helper::AsOne({data, size});
  ctapi::helper::OneAfterTheOther({data, size});
  return 0;
}
