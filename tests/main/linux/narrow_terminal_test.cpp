#include <QProcess>

#include <algorithm>
#include <gtest/gtest.h>
#include <string>

#include "support/pseudo_terminal.h"

namespace kartocheck::test {
namespace {

// The status texts of a whole scan keep to one line of a narrow terminal, and are gone from it
// where the report begins.
TEST(ProgramTest, OnATerminalStatusTextsNeverWrap) {
  constexpr std::size_t Columns = 30;
  const PseudoTerminal terminal;
  terminal.SetColumns(Columns);
  QProcess process;
  process.start(QStringLiteral("/bin/sh"),
                {QStringLiteral("-c"), QStringLiteral("LC_ALL=C.UTF-8 " KARTOCHECK_PROGRAM
                                                      " --console --simulate leer >/dev/null 2>") +
                                           QString::fromStdString(terminal.Name())});
  std::string text;
  while (process.state() != QProcess::NotRunning) {
    (void)process.waitForFinished(10);
    text += terminal.Read();
  }
  text += terminal.Read();
  EXPECT_EQ(process.exitCode(), 1);
  // The terminal adds the carriage return at the end of a line.
  EXPECT_EQ(std::count(text.begin(), text.end(), '\n'), 5) << "four ports, the sweep";
  std::size_t longest = 0;
  for (QString piece : QString::fromStdString(text).split(u'\r')) {
    longest = std::max(longest, static_cast<std::size_t>(piece.remove(u'\n').size()));
  }
  EXPECT_EQ(longest, Columns - 1);
}

}  // namespace
}  // namespace kartocheck::test
