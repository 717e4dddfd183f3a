#pragma once

#include <optional>
#include <string>
#include <vector>

#include "ctnrv32.h"
#include "helper/guarded_buffer.h"
#include "helper/message.h"
#include "helper/shared_library.h"

namespace ctapi::helper {

// An entry point that the library does not export.
struct MissingEntryPoint {
  const char* Name;
};

// The CT-API library with its entry points. The three that open, use and close a link are looked
// for at once, the rate of the line when it is asked for: some libraries do not know it.
class Library {
 public:
  // Throws MissingEntryPoint.
  explicit Library(SharedLibrary library);

  // Carries out a call and answers it: Returned, or what went wrong instead.
  [[nodiscard]] Message Answer(const Message& call);

  [[nodiscard]] const std::string& File() const { return library_.File(); }

 private:
  [[nodiscard]] Message Init(const Message& call);
  [[nodiscard]] Message Data(const Message& call);
  [[nodiscard]] Message Close(const Message& call);
  [[nodiscard]] Message GetBaudrate(const Message& call);
  [[nodiscard]] Message PortInfo(const Message& call);
  template <typename Function>
  [[nodiscard]] Function EntryPoint(const char* name) const;

  SharedLibrary library_;
  CTDENRVT1_init_t init_;
  CTDENRVT1_data_t data_;
  CTDENRVT1_close_t close_;
  GuardedBuffer buffer_;
};

// The first of the candidates that exists: paths, or bare file names that the system's search path
// resolves. A path that exists but cannot be loaded is not passed over. Throws LoadFailure.
[[nodiscard]] SharedLibrary LoadFirst(const std::vector<std::string>& candidates);

}  // namespace ctapi::helper
