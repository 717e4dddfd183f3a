#pragma once

#include <QString>

#include "platform/library_fault.h"

namespace kartocheck {

// What is wrong with the CT-API library, in a sentence for the technician who has to mend it.
[[nodiscard]] QString LibraryFaultText(const LibraryFault& fault);

}  // namespace kartocheck
