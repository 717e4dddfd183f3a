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

bool EgkData::HoldsData() const {
  return !statusText.isEmpty() || !stored.IsEmpty() ||
         std::any_of(documents.begin(), documents.end(),
                     [](const VsdDocument& document) { return !document.IsEmpty(); });
}

}  // namespace kartocheck
