#pragma once

#include <QDateTime>
#include <QString>

#include "app/bas_mkt_test.h"
#include "ui/main_window/program_facts.h"
#include "ui/main_window/run_recorder.h"

namespace kartocheck {

// The test report (Prüfbericht) for a support mail, plain text with CR LF: program and library,
// ports and terminals, status texts and messages of the run. It holds nothing that was read from a
// card or a stored record.
[[nodiscard]] QString TestReportText(const QDateTime& time, const ProgramFacts& facts,
                                     const Bas_MKT_Test& module, const RunRecorder& run);

}  // namespace kartocheck
