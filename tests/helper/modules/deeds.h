#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <string>

// The response buffer of the call, and what is told of its length.
struct Buffer {
  std::uint8_t* Bytes = nullptr;
  std::uint16_t* Length = nullptr;
};

using Deed = std::function<void(const Buffer&)>;

// What a library can do to its process, by name; and what of it only this system knows.
[[nodiscard]] const std::map<std::string, Deed>& Deeds();
[[nodiscard]] std::map<std::string, Deed> DeedsOfThisSystem();

void DereferenceNull();
[[noreturn]] void WaitForEver();

// An entry point of the simulator's library, which does what the call is for.
[[nodiscard]] void* SimulatorFunction(const char* name);
