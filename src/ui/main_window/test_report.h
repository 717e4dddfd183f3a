#pragma once

#include <QDateTime>
#include <QString>
#include <QStringList>

#include <functional>
#include <vector>

#include "app/bas_mkt_test.h"
#include "ui/main_window/program_facts.h"
#include "ui/main_window/run_recorder.h"

class QIODevice;
class QSaveFile;

namespace kartocheck {

struct ReportField {
  QString caption;  // with its colon
  QString value;
};

// What the report says of a port.
struct ReportedPort {
  QString name;
  QString presence;
  QString terminal;  // model, maker and software version; empty where none answered
  QString finding;   // what the check of the port found, and what became of a read
  QString hint;
  std::vector<ReportField> fields;  // all of it, one by one
};

// The test report (Prüfbericht), for a support mail or to be left in the practice: program and
// library, ports and terminals, status texts and messages of the run. It holds nothing that was
// read from a card or a stored record.
struct TestReport {
  std::vector<ReportField> facts;  // of the program
  std::vector<ReportedPort> ports;
  QStringList furtherPorts;  // lines of the list
  QStringList hints;         // why no reader was found
  std::vector<RunEntry> entries;
};

inline constexpr QStringView ReportTitle = u"Prüfbericht KartoCheck";

// The report of a module's slots.
[[nodiscard]] TestReport TestReportOf(const QDateTime& time, const ProgramFacts& facts,
                                      const Bas_MKT_Test& module, const RunRecorder& run);

// A report that says nothing of ports yet, and what is to be added to it for one.
[[nodiscard]] TestReport EmptyTestReport(const QDateTime& time, const ProgramFacts& facts,
                                         const ValidationSettings& validation,
                                         const RunRecorder& run);
[[nodiscard]] ReportedPort ReportedPortOf(Port port, const PortEntry& entry,
                                          const TerminalInfo& info, const QString& identification,
                                          const QString& hint);

// The report as plain text with CR LF.
[[nodiscard]] QString ReportText(const TestReport& report);

// Writes a report in some format; what could not be written the device tells.
using ReportFormat = std::function<void(const TestReport& report, QIODevice& device)>;
void WriteReportText(const TestReport& report, QIODevice& device);

// Writes the report to a file that is open, and closes it. False where it could not be written: the
// file is then as it was before.
[[nodiscard]] bool SaveReport(const TestReport& report, const ReportFormat& write, QSaveFile& file);

// Whether a file is to hold the report as PDF, by its name.
[[nodiscard]] bool IsPdfName(const QString& file);

}  // namespace kartocheck
