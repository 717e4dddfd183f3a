#include "gui/support/program.h"

#include <cstdlib>

namespace kartocheck::test {

Program::Program(const std::string& script, const Form_MKT_Test::Options& options)
    : Screen(window),
      dialogue(script.c_str()),
      library(dialogue),
      window(options),
      module({.api = library,
              .dialogs = window.Boxes(),
              .display = window,
              .eventLoop = eventLoop,
              .serial = serial,
              .directory = directory,
              .terminate = [](const auto&) { std::abort(); }}),
      flow(module, window.Boxes(), window, view, window) {
  window.Attach(flow, view, module);
  window.show();
  Activate(window);
}

}  // namespace kartocheck::test
