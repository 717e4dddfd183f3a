#include <gtest/gtest.h>

#include "main/called_program.h"

// A report that cannot be handed over: the shell connects the program's output to what takes
// nothing, or not everything.

namespace kartocheck::test {
namespace {

// By a command in which PROGRAM stands for the program and its arguments.
void StartInShell(CalledProgram& program, const QString& command) {
  program.StartBy(QStringLiteral("/bin/sh"),
                  QStringList{QStringLiteral("-c"),
                              QString(command).replace(QStringLiteral("PROGRAM"),
                                                       QStringLiteral("\"$0\" \"$@\"")),
                              Path(KARTOCHECK_PROGRAM)} +
                      program.Arguments());
}

// Nothing is read, and so nothing erased, where the report cannot be handed over.
class OutputTest : public testing::TestWithParam<const char*> {};

TEST_P(OutputTest, ThatTakesNothingEndsTheRunBeforeItBegins) {
  for (const QStringList& more : {Json, QStringList()}) {
    CalledProgram program(QStringList{QStringLiteral("--console"), QStringLiteral("--ct-api"),
                                      Path(COM_TABLE_LIBRARY), QStringLiteral("--port"),
                                      QStringLiteral("5")} +
                          more);
    StartInShell(program, u"PROGRAM " + QString::fromLatin1(GetParam()));
    EXPECT_EQ(program.Status(), 4);
    EXPECT_TRUE(program.messages.endsWith("KartoCheck: Der Bericht lässt sich nicht ausgeben.\n"));
    EXPECT_FALSE(program.messages.contains('<')) << "the library was called";
  }
}

INSTANTIATE_TEST_SUITE_P(Program, OutputTest, testing::Values("> /dev/full", ">&-", "<&- >&-"));

TEST(OutputTest, ThatBreaksLaterEndsTheRunBeforeTheNextRead) {
  CalledProgram program({QStringLiteral("--console"), QStringLiteral("--json"),
                         QStringLiteral("--simulate"), QStringLiteral("--erase-records"),
                         QStringLiteral("--verbose")});
  // Takes the first bytes and goes. The status of the program is the last line of the messages.
  StartInShell(program, QStringLiteral("(PROGRAM; echo $? >&2) | head -c 5 > /dev/null"));
  (void)program.Status();
  EXPECT_TRUE(program.messages.contains("COM 1")) << "the read that was under way went on";
  EXPECT_FALSE(program.messages.contains("COM 2"));
  EXPECT_TRUE(program.messages.endsWith("KartoCheck: Der Bericht lässt sich nicht ausgeben.\n4\n"))
      << program.messages.toStdString();
}

}  // namespace
}  // namespace kartocheck::test
