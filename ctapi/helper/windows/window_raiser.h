#pragma once

namespace ctapi::helper {

// Brings every window of this process to the front that is shown from now on: one that the library
// opens belongs to a process that nobody sees, and would come up behind the program's.
void RaiseNewWindows();

}  // namespace ctapi::helper
