#pragma once

#include <QString>

#include <iosfwd>
#include <string>

#include "console/report_writer.h"

namespace kartocheck {

// UTF-8 for a terminal. Control characters but the line break become U+FFFD: what a card holds must
// not drive the terminal it is shown on.
[[nodiscard]] std::string Printable(const QString& text);

// What was found on one port: terminal and insured data.
void WritePort(std::ostream& out, const PortReport& report);

// The run as a text: which program says it, each port, and the table of all.
class TextReport final : public ReportWriter {
 public:
  explicit TextReport(std::ostream& out) : out_(out) {}

  void Begin() override;
  void Add(const PortReport& report) override;
  void End(const RunReport& run) override;

 private:
  std::ostream& out_;
};

}  // namespace kartocheck
