#pragma once

#include <QByteArrayView>

#include <cstdint>

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

// Results of the three procedures.
inline constexpr std::int16_t VsdDecompressed = 0;  // whether or not validated or mapped
inline constexpr std::int16_t VsdXmlError = -1;     // no bytes; with validation: not parsed
inline constexpr std::int16_t VsdNotDecompressed = -2;

// Turns one gzip-compressed document into its XML text, validates it when asked to and maps it onto
// the field table and the element list. A block that is not gzip data is taken as the text itself.
// The text, at most 32,767 characters as decompressed, is kept for every result 0 and for -1 of a
// document that could not be parsed.
[[nodiscard]] std::int16_t DecompressVd(QByteArrayView compressed, const VsdTarget& target);
[[nodiscard]] std::int16_t DecompressPd(QByteArrayView compressed, const VsdTarget& target);
[[nodiscard]] std::int16_t DecompressGvd(QByteArrayView compressed, const VsdTarget& target);

}  // namespace kartocheck
