#include "support/loaded_library.h"

#include <QCoreApplication>
#include <QFileInfo>

#include <stdexcept>

namespace kartocheck::test {

namespace {

// A whole path: a test may change the working directory, and with it the drive.
const QString Helper = QFileInfo(QStringLiteral(KARTOCHECK_HELPER)).absoluteFilePath();

}  // namespace

QString HelperFile() {
  return Helper;
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

LibraryFault LoadFaultOf(const QString& file) {
  CtApiLibrary library = LoadedLibrary({file});
  try {
    (void)library.Init(1, 0);
  } catch (const LibraryNotFound& failure) {
    return failure.Fault;
  }
  throw std::runtime_error("taken");
}

}  // namespace kartocheck::test
