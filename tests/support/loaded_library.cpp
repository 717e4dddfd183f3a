#include "support/loaded_library.h"

#include <QCoreApplication>

namespace kartocheck::test {

QString HelperFile() {
  return QStringLiteral(KARTOCHECK_HELPER);
}

CtApiLibrary LoadedLibrary(const QStringList& candidates, PendingCall& pending) {
  if (QCoreApplication::instance() == nullptr) {
    static int count = 1;
    static char name[] = "test";
    static char* arguments[] = {name, nullptr};
    static const QCoreApplication application(count, arguments);
  }
  return {HelperFile(), candidates, pending};
}

CtApiLibrary LoadedLibrary(const QStringList& candidates) {
  static PendingCall pending;
  return LoadedLibrary(candidates, pending);
}

}  // namespace kartocheck::test
