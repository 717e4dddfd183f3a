#pragma once

#include "support/fake_dialogs.h"
#include "support/fake_display.h"
#include "support/fake_event_loop.h"
#include "terminal/ct_session.h"

namespace kartocheck::test {

// Thrown where the program would end.
struct Terminated {};

// A session over a library, and the front end around it.
class Link {
 public:
  explicit Link(CtApi& api)
      : session({.api = api,
                 .dialogs = dialogs,
                 .lamps = display.panel,
                 .eventLoop = eventLoop,
                 .ports = ports,
                 .terminate = [](const auto&) { throw Terminated{}; }}) {}

  FakeDialogs dialogs;
  FakeDisplay display;
  FakeEventLoop eventLoop;
  PerSlot<PortEntry> ports;
  CtSession session;
};

}  // namespace kartocheck::test
