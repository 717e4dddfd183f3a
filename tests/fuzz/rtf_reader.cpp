#include "ui/rich_text/rtf_reader.h"

#include "fuzz/fuzz_input.h"

// Input: an RTF document, or anything else.

using kartocheck::FormattedText;
using kartocheck::fuzz::Require;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const FormattedText text = kartocheck::ReadRtf(
      QByteArrayView(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size)));
  std::size_t characters = 0;
  for (const auto& paragraph : text) {
    Require(paragraph.leftIndent >= 0, "no negative indent");
    Require(paragraph.spaceBefore >= 0 && paragraph.spaceAfter >= 0, "no negative space");
    for (const auto& run : paragraph.runs) {
      Require(!run.text.isEmpty(), "no piece without text");
      Require(run.halfPoints > 0, "a font has a size");
      characters += static_cast<std::size_t>(run.text.size());
    }
  }
  Require(characters + text.size() <= size + 1,
          "a character and an end of a paragraph take a byte");
  return 0;
}
