#pragma once

#include <QStringList>

#include "platform/pending_call.h"
#include "platform/qt/ct_api_library.h"

namespace kartocheck::test {

// The built helper program.
[[nodiscard]] QString HelperFile();

// A library in the built helper. Makes the application object that processes need, where there is
// none.
[[nodiscard]] CtApiLibrary LoadedLibrary(const QStringList& candidates, PendingCall& pending);

// The same where nobody looks at the call that is waited for.
[[nodiscard]] CtApiLibrary LoadedLibrary(const QStringList& candidates);

// What the first call of a library in this file is refused with. Throws where it is taken.
[[nodiscard]] LibraryFault LoadFaultOf(const QString& file);

}  // namespace kartocheck::test
