#include "egk/egk_steps.h"

#include "egk/vsd_decoder.h"
#include "terminal/command_catalogue.h"
#include "text/lines.h"

namespace kartocheck {

namespace {

struct DecoderTexts {
  QStringView notDecompressed;
  QStringView xmlError;
};

constexpr PerVsdKind<DecoderTexts> Texts({
    {u"Die Dekomprimierung der PD Daten war nicht erfolgreich!", u"Error PD XML Daten!"},
    {u"Die Dekomprimierung der VD Daten war nicht erfolgreich!", u"Error VD XML Daten!"},
    {u"Die Dekomprimierung der GVD Daten war nicht erfolgreich!", u"Error GVD XML Daten!"},
});

VsdResult Decompress(VsdKind kind, QByteArrayView compressed, const VsdTarget& target) {
  switch (kind) {
    case VsdKind::Pd:
      return DecompressPd(compressed, target);
    case VsdKind::Vd:
      return DecompressVd(compressed, target);
    case VsdKind::Gvd:
      return DecompressGvd(compressed, target);
  }
  return VsdResult::XmlError;
}

}  // namespace

void TellEgk(const EgkTarget& target, const QString& text) {
  target.dialogs.Tell(Icon::Information, Dialogs::Title.toString(), text);
}

HcaSelection SelectHca(const EgkTarget& target, const QString& failedText) {
  const CtAnswer answer = target.link.CtExchange(CommandCatalogue::SelectDfHca, Unit::Card);
  if (!answer.Succeeded()) {
    TellEgk(target, failedText);
    return HcaSelection::Failed;
  }
  if (answer.Is(sw::Ok)) return HcaSelection::Selected;
  if (answer.Is(sw::NotFound)) {
    TellEgk(target, Lines({u"Keine Gesundheitsanwendung ", u"DF.HCA (Health Care Application) ",
                           u"auf der Karte gefunden!", u"", u""}));
    return HcaSelection::NotOnCard;
  }
  if (answer.Is(sw::NotAllowed)) return HcaSelection::NotAllowed;
  TellEgk(target, answer.Is(sw::Deactivated)
                      ? Lines({u"Das DF.HCA (Health Care Application) ist deaktiviert!", u""})
                      : Lines({u"Select DF HCA war nicht erfolgreich!", u""}));
  return HcaSelection::Refused;
}

void HandToDecoder(const EgkTarget& target, VsdKind kind, QByteArrayView compressed,
                   InsuredData& found) {
  const VsdResult result = Decompress(
      kind, compressed, {target.egk, found, target.validation, target.display, target.eventLoop});
  if (result == VsdResult::Decompressed) return;
  const DecoderTexts& texts = Texts[kind];
  TellEgk(
      target,
      Lines({result == VsdResult::NotDecompressed ? texts.notDecompressed : texts.xmlError, u""}));
}

}  // namespace kartocheck
