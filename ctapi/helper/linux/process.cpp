#include "helper/process.h"

#include <array>
#include <csignal>
#include <sys/prctl.h>
#include <unistd.h>

namespace ctapi::helper {

void BelongToProgram() {
  const pid_t program = ::getppid();
  ::prctl(PR_SET_PDEATHSIG, SIGKILL);
  // The program may have ended before the line above.
  if (::getppid() != program) EndAtOnce();
  // The program tells by the message that does not come; a reason of its own is not needed.
  ::signal(SIGPIPE, SIG_IGN);
  // What ends the program's whole group (Ctrl-C, the end of a session) goes to the program as well,
  // which decides what becomes of the call.
  constexpr std::array<int, 3> Requests{SIGINT, SIGTERM, SIGHUP};
  for (const int request : Requests) ::signal(request, SIG_IGN);
}

std::int64_t ProcessNumber() {
  return ::getpid();
}

void EndAtOnce() {
  ::_exit(0);
}

}  // namespace ctapi::helper
