#pragma once

#include "console/report_writer.h"

namespace kartocheck {

// The run as one JSON document, UTF-8. Its keys are stable and described in docs/console.md.
class JsonReport final : public ReportWriter {
 public:
  explicit JsonReport(std::ostream& out) : out_(out) {}

  void Begin() override;
  void Add(const PortReport& report) override;
  void End(const RunReport& run) override;

 private:
  std::ostream& out_;
  bool hasPorts_ = false;
};

}  // namespace kartocheck
