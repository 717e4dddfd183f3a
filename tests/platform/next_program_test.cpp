#include "platform/next_program.h"

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

namespace kartocheck::test {
namespace {

// The exit status of a process that goes on as the program of this file; 99 where it cannot.
int StatusAfter(const QString& file, std::vector<const char*> arguments) {
  const pid_t process = ::fork();
  if (process == 0) {
    arguments.push_back(nullptr);
    const auto status = GoOnAs(file, const_cast<char**>(arguments.data()));
    ::_exit(status.value_or(99));
  }
  int status = 0;
  if (::waitpid(process, &status, 0) != process || !WIFEXITED(status)) return -1;
  return WEXITSTATUS(status);
}

TEST(GoOnAsTest, TheNextProgramGetsTheArgumentsAndGivesTheStatus) {
  EXPECT_EQ(StatusAfter(QStringLiteral("/bin/sh"), {"sh", "-c", "exit 7"}), 7);
}

TEST(GoOnAsTest, TheProcessStaysTheSame) {
  const std::string before = "test $PPID = " + std::to_string(::getpid());
  EXPECT_EQ(StatusAfter(QStringLiteral("/bin/sh"), {"sh", "-c", before.c_str()}), 0);
}

TEST(GoOnAsTest, AProgramThatIsMissingLeavesThisOne) {
  EXPECT_EQ(StatusAfter(QStringLiteral("/there/is/none"), {"none"}), 99);
}

}  // namespace
}  // namespace kartocheck::test
