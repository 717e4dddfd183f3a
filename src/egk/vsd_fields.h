#pragma once

#include "egk/egk_data.h"
#include "kvk/insured_data.h"
#include "platform/documents/xml_document.h"

namespace kartocheck {

// Each walks the elements below a document's root at any depth and stores those it knows, whatever
// their case and prefix, as rows of the kind's field table; VD and PD write elements of the insured
// person's data besides. Rows and elements that the document does not name keep what they held. An
// element's text is taken in one line, as XML Schema collapses it: runs of blanks, tabs and line
// breaks become one blank, those around it go.

void MapVdFields(const XmlElement& root, FieldTable& fields, InsuredData& insured);

// Street addresses (Anschrift, StrassenAdresse) are the first and the second address block in the
// order of the document, a post box address is the second wherever it stands. Each block has its
// own rows: an address that finds none left is not stored. Postal code, town and country of the
// insured person come from the first block, from the second only where there is no first.
void MapPdFields(const XmlElement& root, FieldTable& fields, InsuredData& insured);

// Writes no element of the insured person's data.
void MapGvdFields(const XmlElement& root, FieldTable& fields, InsuredData& insured);

}  // namespace kartocheck
