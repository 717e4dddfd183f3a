#pragma once

#include <sched.h>

namespace kartocheck::bench {

// Lets this process and the ones that it starts go before all other work of the machine: programs
// that are compared, the reader service and the card. On a busy processor whoever computes, as the
// program does with each document, has to wait a whole time slice of some milliseconds for the
// others, while a client that only asks and waits is let in at once: without this the medians of a
// busy machine are up to seven times apart. False where the system does not allow it.
inline bool GoFirst() {
  const sched_param first{.sched_priority = 1};
  return ::sched_setscheduler(0, SCHED_FIFO, &first) == 0;
}

}  // namespace kartocheck::bench
