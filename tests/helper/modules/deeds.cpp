#include "helper/modules/deeds.h"

#include <array>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <stdexcept>
#include <thread>

namespace {

volatile int zero = 0;

// NOLINTNEXTLINE(misc-no-recursion)
int Recurse(int depth) {
  std::array<volatile char, 4096> frame{};
  frame[0] = static_cast<char>(depth);
  return depth == zero - 1 ? 0 : Recurse(depth + 1) + frame[0];
}

// What every system knows.
std::map<std::string, Deed> CommonDeeds() {
  return {
      // Its process ends.
      {"crash", [](const Buffer&) { DereferenceNull(); }},
      {"abort", [](const Buffer&) { std::abort(); }},
      {"overflow", [](const Buffer&) { (void)Recurse(0); }},
      {"exit", [](const Buffer&) { std::exit(0); }},
      {"exit-3", [](const Buffer&) { std::exit(3); }},
      {"underscore-exit", [](const Buffer&) { std::_Exit(5); }},
      {"crash-in-thread",
       [](const Buffer&) {
         std::thread(&DereferenceNull).detach();
         WaitForEver();
       }},
      {"throw-in-thread",
       [](const Buffer&) { std::thread([] { throw std::runtime_error("lost"); }).join(); }},

      // It throws, or writes where it must not.
      {"throw", [](const Buffer&) { throw std::runtime_error("Mustermann"); }},
      {"write-behind", [](const Buffer& buffer) { buffer.Bytes[*buffer.Length] = 0; }},
      {"write-far-behind", [](const Buffer& buffer) { buffer.Bytes[65'534] = 0; }},
      {"write-64k", [](const Buffer& buffer) { std::memset(buffer.Bytes, 0, 65'535); }},
      {"write-before", [](const Buffer& buffer) { buffer.Bytes[-1] = 0; }},
      {"write-far-before", [](const Buffer& buffer) { buffer.Bytes[-4000] = 0; }},

      // It does not come back.
      {"wait", [](const Buffer&) { WaitForEver(); }},
      {"spin",
       [](const Buffer&) {
         while (zero == 0) {
         }
       }},

      // It goes on, in a process that is another one.
      {"print", [](const Buffer&) { std::puts("Mustermann"); }},
      {"hang-at-end", [](const Buffer&) { std::atexit([] { WaitForEver(); }); }},
      {"crash-at-end", [](const Buffer&) { std::atexit(&DereferenceNull); }},
  };
}

}  // namespace

void DereferenceNull() {
  volatile int* volatile nowhere = nullptr;
  *nowhere = 1;  // NOLINT(clang-analyzer-core.NullDereference): meant
}

void WaitForEver() {
  while (true) std::this_thread::sleep_for(std::chrono::hours(1));
}

const std::map<std::string, Deed>& Deeds() {
  static const std::map<std::string, Deed> deeds = [] {
    std::map<std::string, Deed> all = DeedsOfThisSystem();
    all.merge(CommonDeeds());
    return all;
  }();
  return deeds;
}
