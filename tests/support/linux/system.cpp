#include "support/system.h"

#include <csignal>

namespace kartocheck::test {

int MemoryFault() {
  return SIGSEGV;
}

QString NameOfMemoryFault() {
  return QStringLiteral("SIGSEGV");
}

QString NameOfUnknownCrash() {
  return QStringLiteral("Signal 4711");
}

void AskToEnd() {
  std::raise(SIGTERM);
}

}  // namespace kartocheck::test
