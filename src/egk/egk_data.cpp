#include "egk/egk_data.h"

#include <algorithm>

namespace kartocheck {

bool VsdDocument::IsEmpty() const {
  return xmlText.isEmpty() && validationText.isEmpty() &&
         std::all_of(fields.begin(), fields.end(),
                     [](const VsdField& field) { return field.IsEmpty(); });
}

bool StatusDescriptor::IsEmpty() const {
  return status.tlv.isEmpty() && statusText.isEmpty() && readingDate.tlv.isEmpty() &&
         storedDate.isEmpty() && convertedDate.isEmpty() && approval.tlv.isEmpty() &&
         approvalNumber.isEmpty() && checksum.tlv.isEmpty() && checksumText.isEmpty();
}

bool EgkData::IsEmpty() const {
  return iccsn.isEmpty() && statusText.isEmpty() && stored.IsEmpty() &&
         std::all_of(documents.begin(), documents.end(),
                     [](const VsdDocument& document) { return document.IsEmpty(); });
}

}  // namespace kartocheck
