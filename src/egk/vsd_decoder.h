#pragma once

#include <QByteArrayView>

#include "egk/egk_data.h"
#include "egk/vsd_schema.h"
#include "kvk/insured_data.h"
#include "platform/display.h"
#include "platform/event_loop.h"

namespace kartocheck {

// What a decompression reads and writes beside the compressed bytes.
struct VsdTarget {
  EgkData& egk;          // of the slot
  InsuredData& insured;  // this read's own element list; the slot's row is stored by the reader
  const ValidationSettings& validation;
  Display& display;
  EventLoop& eventLoop;
};

enum class VsdResult {
  Decompressed,     // whether or not validated or mapped
  XmlError,         // no bytes; with validation: not parsed
  NotDecompressed,  // damaged gzip data, or a text that is too long
};

// Turns one gzip-compressed document into its XML text, validates it when asked to and maps it onto
// the field table and the element list. A block that is not gzip data is taken as the text itself.
// The text, at most 32,767 characters as decompressed, is kept when it was decompressed and when it
// could not be parsed.
[[nodiscard]] VsdResult DecompressVd(QByteArrayView compressed, const VsdTarget& target);
[[nodiscard]] VsdResult DecompressPd(QByteArrayView compressed, const VsdTarget& target);
[[nodiscard]] VsdResult DecompressGvd(QByteArrayView compressed, const VsdTarget& target);

}  // namespace kartocheck
