#include "ui/main_window/egk_info.h"

#include <QStringList>

#include <algorithm>
#include <iterator>

#include "platform/documents/xml_indentation.h"
#include "text/hex_text.h"
#include "text/lines.h"

namespace kartocheck {

namespace {

constexpr PerVsdKind<QStringView> ValueHeadings({
    u"Versichertendaten",
    u"Versicherungsdaten",
    u"Versichertendaten",
});

ElementList ListOf(VsdKind kind, const VsdDocument& document) {
  ElementList list{.heading = VsdTexts[kind].heading + u"\r\n",
                   .valueHeading = ValueHeadings[kind],
                   .validationText = document.validationText,
                   .rows = {}};
  std::copy_if(document.fields.begin(), document.fields.end(), std::back_inserter(list.rows),
               [](const VsdField& field) { return !field.IsEmpty(); });
  return list;
}

QString UnderTheirTitles(const PerVsdKind<QString>& texts) {
  QStringList parts;
  for (const VsdKind kind : VsdKinds) {
    parts.append(VsdTexts[kind].xmlTitle + u"\r\n" + texts[kind]);
  }
  return parts.join(QStringLiteral("\r\n\r\n"));
}

void AddXmlTexts(EgkInfo& view, const EgkData& egk) {
  PerVsdKind<QString> kept;
  PerVsdKind<QString> indented;
  bool isAnyIndented = false;
  for (const VsdKind kind : VsdKinds) {
    kept[kind] = egk.documents[kind].xmlText;
    const std::optional<QString> lines = IndentedXml(kept[kind]);
    indented[kind] = lines.value_or(kept[kind]);
    isAnyIndented = isAnyIndented || lines.has_value();
  }
  view.xmlTexts = UnderTheirTitles(kept);
  if (isAnyIndented) view.indentedXmlTexts = UnderTheirTitles(indented);
}

// The parts of EF.StatusVD, 25 bytes as hexadecimal text. Positions and lengths are in characters.
struct StatusPart {
  qsizetype position;
  qsizetype length;
  QStringView cardCaption;
  QStringView storedCaption;
  QStringView toolTip;
};

constexpr auto StatusParts = std::to_array<StatusPart>({
    {1, 2, u"Status:            ", u"Status:          ",
     u"Status der Versichertenstammdaten (VSD). (0x30) 0 = Keine Transaktion ist offen. (0x31) 1 "
     u"= Transaktion ist offen."},
    {3, 28, u"Timestamp:           ", u"Timestamp:         ",
     u"Timestamp der letzten Aktualisierung der VSD auf dem VSDD im Format YYYYMMDDhhmmss"},
    {31, 10, u"Version:                                         ",
     u"Version:                                       ",
     u"Versionsnummer der Versichertenstammdaten (VSD) Struktur im Format XXXYYYZZZZ. [BCD]"},
    {41, 10, u"Reserviert:                                                ",
     u"Reserviert:                                              ", u"Reserviert [BINÄR]"},
});

// Fills a line for each part of the status, from `line` on.
void AddStatusParts(EgkInfo& view, std::size_t line, QStringView status,
                    QStringView StatusPart::* caption) {
  for (const StatusPart& part : StatusParts) {
    view.lines.at(line) = {part.*caption + hex::Mid(status, part.position, part.length).toString(),
                           part.toolTip};
    ++line;
  }
}

void AddCardInfo(EgkInfo& view, const EgkData& egk) {
  view.infoCaption = u"Stationäres Kartenterminal:";
  view.infoCommand = u"ICC Info";
  view.infoCommandToolTip = u"Informationen zur Chipkarte. ";

  const QStringView iccsn = egk.iccsn;
  const auto part = [iccsn](qsizetype position, qsizetype length) {
    return hex::Mid(iccsn, position, length).toString();
  };
  auto& lines = view.lines;
  lines[2].text = QStringLiteral("eGK EF.GDO: Integrated Circuit Card Serial Number (ICCSN)");
  lines[3].text = u"ICC Serial Number:       " + QStringLiteral("0x") + iccsn;
  lines[4].text = u"Major Industry Identifier: " + part(1, 2);
  lines[5].text = u"Country Code:              " + QStringLiteral("  ") + part(3, 3);
  lines[6].text = u"Issuer Identifier:         " + QStringLiteral("     ") + part(6, 5);
  lines[7].text = u"Serial Number (SN):        " + QStringLiteral("          ") + part(11, 10);
  lines[9].text =
      QStringLiteral("eGK DF.HCA(Health Care Application) EF.StatusVD: VSD-Status-Container");
  lines[10].text = u"Containerinhalt: " + QStringLiteral("0x") + egk.statusText;
  AddStatusParts(view, 11, egk.statusText, &StatusPart::cardCaption);
}

// Characters of the approval number's data object on the line; the rest follows behind blanks.
constexpr qsizetype ApprovalLineLength = 60;

void AddStoredInfo(EgkInfo& view, const StatusDescriptor& stored) {
  view.infoCaption = u"Mobiles Kartenterminal:";
  view.infoCommand = u"VSD Info";
  view.infoCommandToolTip = u"Informationen zum gespeicherten VSD-Status. ";

  auto& lines = view.lines;
  lines[2].text =
      QStringLiteral("Gespeicherter VSD-Status-Datensatz aus dem mobilen Kartenterminal");
  lines[3].text = u"VSDStatus: " + QStringLiteral("0x") + stored.statusText;
  AddStatusParts(view, 4, stored.statusText, &StatusPart::storedCaption);

  lines[9].text = QStringLiteral("+ die erweiterten Daten des VSD-Status-Datensates:");
  const QString& date = stored.convertedDate.isEmpty() ? stored.storedDate : stored.convertedDate;
  lines[10] = {u"Einlesedatum:     " + date, u"Einlesedatum: TTMMJJJJ"};
  lines[11] = {u"TLV: " + QStringLiteral("0x") + stored.readingDate.tlv, u"TLV: TTMMJJJJ (ASCII)"};
  lines[12] = {u"Zulassungsnummer: " + stored.approvalNumber,
               u"Hersteller-ID;ProduktKürzel;Produktversion(=Firmwareversion:Hardwareversion)"};
  const QString& tlv = stored.approval.tlv;
  lines[13] = {
      u"TLV: " + QStringLiteral("0x") + hex::Mid(tlv, 1, ApprovalLineLength) +
          QStringLiteral("               ") + hex::From(tlv, ApprovalLineLength + 1),
      u"TLV: Hersteller-ID;ProduktKürzel;Produktversion(=Firmwareversion:Hardwareversion)"};
  lines[14].text = u"Prüfsumme XOR (TLV): " + QStringLiteral("0x") + stored.checksum.tag +
                   stored.checksum.length + stored.checksumText;
}

}  // namespace

EgkInfo EgkInfoOf(const TerminalInfo& info, const EgkData& egk) {
  EgkInfo view;
  view.wasRead = info.DataRead && info.EgkData;
  for (const VsdKind kind : VsdKinds) view.lists[kind] = ListOf(kind, egk.documents[kind]);
  AddXmlTexts(view, egk);
  if (info.IsMobile()) {
    AddStoredInfo(view, egk.stored);
  } else {
    AddCardInfo(view, egk);
  }
  return view;
}

QString ValidationHelp() {
  return Lines({
      u"Für eine lokale Validierung muss MSXML 4.0 SP2 (Microsoft XML Basisdienste) "
      u"auf Ihrem System installiert sein! ",
      u"KartoCheck verwendet zur lokalen Validierung der XML Daten vorgegebene Schemas für "
      u"UC_allgemeineVersicherungsdatenXML, "
      u"UC_PersoenlicheVersichertendatenXML und "
      u"UC_geschuetzteVersichertendatenXML, "
      u"die das Attribut CDM_VERSION mit den fixen Wert 5.2.0 vorgeben.",
      u"Zur Validierung können auch andere Schemas verwendet werden.",
      u"1. Klicken Sie im Menü Datei auf Validierung.",
      u"2. Klicken Sie im Menü Datei auf Neues Schema laden.",
      u"3. Laden Sie eine entsprechende Schemadatei.",
      u"4. Klicken Sie auf Anzeigefelder zurücksetzen.",
      u"5. Klicken Sie auf Krankenversichertendaten lesen.",
  });
}

}  // namespace kartocheck
