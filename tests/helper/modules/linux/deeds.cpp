#include "helper/modules/deeds.h"

#include <csignal>
#include <cstdlib>
#include <dlfcn.h>
#include <fcntl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>

namespace {

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

std::map<std::string, Deed> DeedsOfThisSystem() {
  return {
      // Its process ends.
      {"divide", [](const Buffer&) { std::raise(SIGFPE); }},
      {"illegal", [](const Buffer&) { std::raise(SIGILL); }},
      {"bus", [](const Buffer&) { std::raise(SIGBUS); }},
      {"kill", [](const Buffer&) { std::raise(SIGKILL); }},
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
      {"quick-exit", [](const Buffer&) { std::quick_exit(4); }},
      {"exit-in-thread",
       [](const Buffer&) {
         std::thread([] { std::exit(6); }).join();
         WaitForEver();
       }},
      {"parent-leaves",
       [](const Buffer&) {
         if (::fork() != 0) ::_exit(7);
       }},
      {"close-descriptors", [](const Buffer&) { CloseFrom(0); }},
      {"close-upper-descriptors", [](const Buffer&) { CloseFrom(3); }},

      // It throws, or writes where it must not.
      {"throw-int", [](const Buffer&) { throw 53; }},
      {"write-to-all", [](const Buffer&) { WriteToAll(); }},

      // It does not come back.
      {"sleep", [](const Buffer&) { ::sleep(60); }},
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
  };
}

void* SimulatorFunction(const char* name) {
  static void* const library = ::dlopen(SIMULATOR_LIBRARY, RTLD_NOW);
  return ::dlsym(library, name);
}
