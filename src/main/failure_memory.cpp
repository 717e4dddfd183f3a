#include "main/failure_memory.h"

#include "diagnosis/library_fault_text.h"

namespace kartocheck {

namespace {

QString Key() {
  return QStringLiteral("Abbruch/Grund");
}

}  // namespace

void FailureMemory::Keep(const QDateTime& time, const LibraryFault& fault) {
  const QString when = time.toString(QStringLiteral("dd.MM.yyyy HH:mm:ss"));
  settings_.setValue(Key(), QString(when + u": " + LibraryFaultText(fault)));
  settings_.sync();
}

QString FailureMemory::Text() const {
  return settings_.value(Key()).toString();
}

}  // namespace kartocheck
