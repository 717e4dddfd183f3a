#pragma once

#include <iosfwd>
#include <stdexcept>

#include "console/port_report.h"

namespace kartocheck {

// The output does not take the report: a full disk, a closed pipe.
struct NotWritten : std::runtime_error {
  NotWritten() : std::runtime_error("the report could not be written") {}
};

// Writes the report of a run piece by piece. A piece has left the program when its function
// returns: a record that was erased in its terminal has been handed over. Each function throws
// NotWritten.
class ReportWriter {
 public:
  // Before anything is read: an output that takes nothing shows itself here.
  virtual void Begin() = 0;
  // A port that has been looked at.
  virtual void Add(const PortReport& report) = 0;
  // All of them once more, and what is to say of the run.
  virtual void End(const RunReport& run) = 0;

  virtual ~ReportWriter() = default;
  ReportWriter(const ReportWriter&) = delete;
  ReportWriter& operator=(const ReportWriter&) = delete;

 protected:
  ReportWriter() = default;
};

// Hands over what was written so far.
void HandOver(std::ostream& out);

}  // namespace kartocheck
