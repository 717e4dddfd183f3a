#pragma once

#include <QDateTime>
#include <QSettings>
#include <QString>

#include "platform/library_fault.h"

namespace kartocheck {

// What ended the program the last time that it did not end by its user's wish: for the test report
// after the next start, since the run that it ended has no time to make one. Holds nothing of a
// card.
class FailureMemory {
 public:
  // settings: outlives this.
  explicit FailureMemory(QSettings& settings) : settings_(settings) {}

  // Is kept when this returns.
  void Keep(const QDateTime& time, const LibraryFault& fault);

  // When and why; empty where there was none.
  [[nodiscard]] QString Text() const;

 private:
  QSettings& settings_;
};

}  // namespace kartocheck
