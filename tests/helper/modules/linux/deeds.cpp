#include "helper/modules/deeds.h"

#include <array>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <dlfcn.h>
#include <fcntl.h>
#include <stdexcept>
#include <sys/resource.h>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>

namespace {

volatile int zero = 0;

void DereferenceNull() {
  volatile int* volatile nowhere = nullptr;
  *nowhere = 1;  // NOLINT(clang-analyzer-core.NullDereference): meant
}

// NOLINTNEXTLINE(misc-no-recursion)
int Recurse(int depth) {
  std::array<volatile char, 4096> frame{};
  frame[0] = static_cast<char>(depth);
  return depth == zero - 1 ? 0 : Recurse(depth + 1) + frame[0];
}

[[noreturn]] void WaitForEver() {
  while (true) ::pause();
}

void CloseFrom(int first) {
  for (int descriptor = first; descriptor < 1024; ++descriptor) ::close(descriptor);
}

void WriteToAll() {
  for (int descriptor = 3; descriptor < 1024; ++descriptor) {
    [[maybe_unused]] const auto written = ::write(descriptor, "noise", 5);
  }
}

void Flood(int descriptor) {
  const std::string text(100'000, '.');
  [[maybe_unused]] const auto written = ::write(descriptor, text.data(), text.size());
}

void BlockAllSignals() {
  sigset_t all;
  ::sigfillset(&all);
  ::sigprocmask(SIG_SETMASK, &all, nullptr);
}

void IgnoreAllSignals() {
  for (int number = 1; number < SIGRTMIN; ++number) std::signal(number, SIG_IGN);
}

}  // namespace

const std::map<std::string, Deed>& Deeds() {
  static const std::map<std::string, Deed> deeds{
      // Its process ends.
      {"crash", [](const Buffer&) { DereferenceNull(); }},
      {"abort", [](const Buffer&) { std::abort(); }},
      {"divide", [](const Buffer&) { std::raise(SIGFPE); }},
      {"illegal", [](const Buffer&) { std::raise(SIGILL); }},
      {"bus", [](const Buffer&) { std::raise(SIGBUS); }},
      {"kill", [](const Buffer&) { std::raise(SIGKILL); }},
      {"overflow", [](const Buffer&) { (void)Recurse(0); }},
      {"double-free",
       [](const Buffer&) {
         void* volatile memory = std::malloc(100);
         std::free(memory);
         std::free(memory);  // NOLINT(clang-analyzer-unix.Malloc): meant
       }},
      {"alarm",
       [](const Buffer&) {
         ::alarm(1);
         WaitForEver();
       }},
      {"exit", [](const Buffer&) { std::exit(0); }},
      {"exit-3", [](const Buffer&) { std::exit(3); }},
      {"quick-exit", [](const Buffer&) { std::quick_exit(4); }},
      {"underscore-exit", [](const Buffer&) { ::_exit(5); }},
      {"exit-in-thread",
       [](const Buffer&) {
         std::thread([] { std::exit(6); }).join();
         WaitForEver();
       }},
      {"crash-in-thread",
       [](const Buffer&) {
         std::thread(&DereferenceNull).detach();
         WaitForEver();
       }},
      {"parent-leaves",
       [](const Buffer&) {
         if (::fork() != 0) ::_exit(7);
       }},
      {"throw-in-thread",
       [](const Buffer&) { std::thread([] { throw std::runtime_error("lost"); }).join(); }},
      {"close-descriptors", [](const Buffer&) { CloseFrom(0); }},
      {"close-upper-descriptors", [](const Buffer&) { CloseFrom(3); }},

      // It throws, or writes where it must not.
      {"throw", [](const Buffer&) { throw std::runtime_error("Mustermann"); }},
      {"throw-int", [](const Buffer&) { throw 53; }},
      {"write-behind", [](const Buffer& buffer) { buffer.Bytes[*buffer.Length] = 0; }},
      {"write-far-behind", [](const Buffer& buffer) { buffer.Bytes[65'534] = 0; }},
      {"write-64k", [](const Buffer& buffer) { std::memset(buffer.Bytes, 0, 65'535); }},
      {"write-before", [](const Buffer& buffer) { buffer.Bytes[-1] = 0; }},
      {"write-far-before", [](const Buffer& buffer) { buffer.Bytes[-4000] = 0; }},
      {"write-to-all", [](const Buffer&) { WriteToAll(); }},

      // It does not come back.
      {"sleep", [](const Buffer&) { ::sleep(60); }},
      {"wait", [](const Buffer&) { WaitForEver(); }},
      {"spin",
       [](const Buffer&) {
         while (zero == 0) {
         }
       }},
      {"stop", [](const Buffer&) { std::raise(SIGSTOP); }},
      {"deaf",
       [](const Buffer&) {
         IgnoreAllSignals();
         BlockAllSignals();
         WaitForEver();
       }},
      {"read-input-for-ever",
       [](const Buffer&) {
         char byte = 0;
         while (::read(STDIN_FILENO, &byte, 1) == 0) ::usleep(1000);
       }},

      // It comes back late.
      {"slow", [](const Buffer&) { ::usleep(200'000); }},

      // It goes on, in a process that is another one.
      {"print", [](const Buffer&) { std::puts("Mustermann"); }},
      {"flood", [](const Buffer&) { Flood(STDOUT_FILENO); }},
      {"close-output", [](const Buffer&) { ::close(STDOUT_FILENO); }},
      {"fork", [](const Buffer&) { (void)::fork(); }},
      {"block-signals", [](const Buffer&) { BlockAllSignals(); }},
      {"ignore-signals", [](const Buffer&) { IgnoreAllSignals(); }},
      {"change-directory", [](const Buffer&) { (void)!::chdir("/"); }},
      {"change-locale",
       [](const Buffer&) {
         ::setenv("LC_ALL", "de_DE.UTF-8", 1);
         std::setlocale(LC_ALL, "");
       }},
      {"clear-environment", [](const Buffer&) { ::clearenv(); }},
      {"change-mask", [](const Buffer&) { ::umask(0777); }},
      {"no-more-descriptors",
       [](const Buffer&) {
         constexpr rlimit Few{4, 4};
         ::setrlimit(RLIMIT_NOFILE, &Few);
       }},
      {"hang-at-end", [](const Buffer&) { std::atexit([] { WaitForEver(); }); }},
      {"crash-at-end", [](const Buffer&) { std::atexit(&DereferenceNull); }},
  };
  return deeds;
}

void* SimulatorFunction(const char* name) {
  static void* const library = ::dlopen(SIMULATOR_LIBRARY, RTLD_NOW);
  return ::dlsym(library, name);
}
