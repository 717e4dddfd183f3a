#pragma once

#include <cstdint>

#include "host/pcsc_service.h"

// Commands to the card in a PC/SC reader, as a terminal forwards them.
namespace ctapi::host {

// A command to a processor card. With the protocol T=0 a command carries no Le behind data, and the
// card's requests for GET RESPONSE (61xx) and for another length (6Cxx) are followed here
// (ISO 7816-3, 12.2.1).
[[nodiscard]] PcscResult SendToProcessorCard(CardConnection& card, ByteView command, Bytes& answer);

// Some readers show a memory card with these four header bytes (ISO 7816-10) as its answer to
// reset.
[[nodiscard]] bool IsMemoryCard(ByteView atr);

// A KVK behind such a reader, which knows no application, only the card's memory (READ BINARY of
// class FF). SELECT and READ BINARY of the KVK application are made of that.
class KvkMemory {
 public:
  [[nodiscard]] PcscResult Send(CardConnection& card, ByteView command, Bytes& answer);

 private:
  [[nodiscard]] PcscResult Select(CardConnection& card, ByteView command, Bytes& answer);

  bool isSelected_ = false;
  std::size_t start_ = 0;  // of the application's data in the memory
};

}  // namespace ctapi::host
