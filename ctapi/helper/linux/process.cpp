#include "helper/process.h"

#include <csignal>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <unistd.h>

namespace ctapi::helper {

void ProtectProcess() {
  const pid_t program = ::getppid();
  ::prctl(PR_SET_PDEATHSIG, SIGKILL);
  // The program may have ended before the line above.
  if (::getppid() != program) EndAtOnce();
  constexpr rlimit Nothing{0, 0};
  ::setrlimit(RLIMIT_CORE, &Nothing);
  ::prctl(PR_SET_DUMPABLE, 0);
  // The program tells by the message that does not come; a reason of its own is not needed.
  ::signal(SIGPIPE, SIG_IGN);
  // Ctrl-C at the keyboard goes to the program, which decides what becomes of the call.
  ::signal(SIGINT, SIG_IGN);
}

std::int64_t ProcessNumber() {
  return ::getpid();
}

void EndAtOnce() {
  ::_exit(0);
}

}  // namespace ctapi::helper
