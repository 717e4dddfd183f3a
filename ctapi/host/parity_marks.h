#pragma once

#include "host/line_port.h"

namespace ctapi::host {

// A terminal device that marks damaged bytes (POSIX: PARMRK) delivers FF 00 before each of them,
// and FF FF for a byte FF that came well. Takes the marks out again, however the bytes are split.
class ParityMarks {
 public:
  void Take(ByteView marked, LinePort::Reception& into);
  void Reset() { expecting_ = Expecting::Plain; }

 private:
  enum class Expecting { Plain, Meaning, Damaged };
  Expecting expecting_ = Expecting::Plain;
};

}  // namespace ctapi::host
