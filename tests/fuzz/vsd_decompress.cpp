// A compressed block as a card may send it. The first byte chooses kind and validation, the rest is
// the block.

#include <QByteArrayView>

#include "egk/vsd_decoder.h"
#include "fuzz/fuzz_input.h"
#include "fuzz/quiet_front_end.h"

namespace kartocheck {
namespace {

ValidationSettings& OwnSchemas() {
  static ValidationSettings settings = [] {
    ValidationSettings loaded;
    LoadSchemas(loaded, {QStringLiteral(VSD_SCHEMAS)});
    return loaded;
  }();
  return settings;
}

void Run(std::uint8_t choice, QByteArrayView compressed) {
  using Procedure = VsdResult (*)(QByteArrayView, const VsdTarget&);
  constexpr PerVsdKind<Procedure> Procedures({DecompressPd, DecompressVd, DecompressGvd});
  const auto kind = static_cast<VsdKind>((choice >> 1) % VsdKindCount);
  ValidationSettings& validation = OwnSchemas();
  validation.isOn = (choice & 1) != 0;

  EgkData egk;
  InsuredData insured;
  fuzz::QuietDisplay display;
  fuzz::QuietEventLoop eventLoop;
  const VsdTarget target{.egk = egk,
                         .insured = insured,
                         .validation = validation,
                         .display = display,
                         .eventLoop = eventLoop};
  const VsdResult result = Procedures[kind](compressed, target);
  const VsdDocument& kept = egk.documents[kind];

  using fuzz::Require;
  Require(validation.isOn || kept.xmlText.size() < 32768, "a text below the cap");
  Require(result != VsdResult::NotDecompressed || kept.IsEmpty(),
          "nothing kept of what was not decompressed");
  Require(result == VsdResult::Decompressed || insured.IsEmpty(), "nothing mapped of a failure");
  Require(kept.notValidated || validation.isOn, "no success without validation");
  Require(!validation.isOn || !kept.notValidated || insured.IsEmpty(),
          "with validation only valid data are mapped");
}

}  // namespace
}  // namespace kartocheck

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size == 0) return 0;
  kartocheck::Run(data[0], QByteArrayView(data + 1, static_cast<qsizetype>(size - 1)));
  return 0;
}
