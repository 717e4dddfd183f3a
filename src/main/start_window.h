#pragma once

#include <functional>
#include <memory>

#include "platform/ct_api.h"
#include "platform/terminate.h"

class QCoreApplication;

namespace kartocheck {

// The application object that a window needs.
[[nodiscard]] std::unique_ptr<QCoreApplication> MakeWindowApplication(int& argc, char** argv);

// Shows the main window and runs until it is closed. Returns the exit status.
[[nodiscard]] int RunWindow(CtApi& api, const Terminate& terminate, bool simulation);

}  // namespace kartocheck
