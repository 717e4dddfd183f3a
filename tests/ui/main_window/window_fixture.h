#pragma once

#include "support/fake_dialogs.h"
#include "support/fake_display.h"
#include "support/fake_event_loop.h"
#include "support/link_fixture.h"
#include "ui/main_window/fake_front_end.h"
#include "ui/main_window/test_flow.h"

namespace kartocheck::test {

// The flows over a library, with a front end that records.
class Window {
 public:
  explicit Window(CtApi& api)
      : module({.api = api,
                .dialogs = dialogs,
                .display = display,
                .eventLoop = eventLoop,
                .terminate = [] { throw Terminated{}; }}),
        flow(module, dialogs, display, frontEnd) {}

  FakeDialogs dialogs;
  FakeDisplay display;
  FakeEventLoop eventLoop;
  FakeFrontEnd frontEnd;
  Bas_MKT_Test module;
  TestFlow flow;
};

// Button indices.
inline constexpr int ReadButton = 3;
inline constexpr int CopyButton = 4;
inline constexpr int ResetButton = 5;

}  // namespace kartocheck::test
