#pragma once

#include <QCoreApplication>

#include "platform/pending_call.h"
#include "platform/qt/ct_api_library.h"

namespace kartocheck::test {

// A library in the built helper.
inline CtApiLibrary LoadedLibrary(const QStringList& candidates, PendingCall& pending) {
  // Processes and their pipes need an application object.
  if (QCoreApplication::instance() == nullptr) {
    static int count = 1;
    static char name[] = "test";
    static char* arguments[] = {name, nullptr};
    static const QCoreApplication application(count, arguments);
  }
  return {QStringLiteral(KARTOCHECK_HELPER), candidates, pending};
}

// The same where nobody looks at the call that is waited for.
inline CtApiLibrary LoadedLibrary(const QStringList& candidates) {
  static PendingCall pending;
  return LoadedLibrary(candidates, pending);
}

}  // namespace kartocheck::test
