#pragma once

#include "ui/main_window/test_report.h"

namespace kartocheck {

// The report as a PDF of A4 pages, to be left in the practice: program, a table of the ports, what
// was found on them and what to do. The texts of the run are left to the text. Needs a
// QGuiApplication, for the fonts.
void WriteReportPdf(const TestReport& report, QIODevice& device);

}  // namespace kartocheck
