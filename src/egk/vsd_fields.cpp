#include "egk/vsd_fields.h"

#include <algorithm>
#include <optional>
#include <span>
#include <string_view>
#include <utility>
#include <vector>

#include "egk/ascii_case.h"

namespace kartocheck {

namespace {

// Where in its document an element stands.
enum class Place {
  Document,        // in no container of those below
  Copayment,       // Zuzahlungsstatus
  StreetAddress,   // container only: the first address block, or the second when met again
  PostBoxAddress,  // container only: the second address block
  FirstAddress,
  SecondAddress,
  FurtherAddress,   // an address block that has no rows
  SettlingInsurer,  // abrechnender Kostenträger
};

struct ContainerRule {
  std::string_view element;  // local name, upper-cased
  Place place;               // of what is inside
};

// JJJJMMTT becomes TT.MM.JJJJ.
enum class DateIn { Nowhere, Insured, RowAndInsured };

struct FieldRule {
  std::string_view element;  // local name, upper-cased
  int row;
  Place place = Place::Document;  // Document: everywhere but in the settling insurer
  std::optional<Element> insured{};
  DateIn date = DateIn::Nowhere;
};

// The rows of the PD that make up the street.
constexpr int StreetRow = 8;
constexpr int HouseNumberRow = 9;
constexpr int AddressSupplementRow = 10;

constexpr ContainerRule PdContainers[]{
    {"ANSCHRIFT", Place::StreetAddress},
    {"STRASSENADRESSE", Place::StreetAddress},
    {"POSTFACHADRESSE", Place::PostBoxAddress},
};

constexpr FieldRule PdRules[]{
    {"VERSICHERTEN_ID", 0, Place::Document, Element::InsuredNumber},
    {"GEBURTSDATUM", 1, Place::Document, Element::BirthDate, DateIn::Insured},
    {"NACHNAME", 2, Place::Document, Element::LastName},
    {"GESCHLECHT", 3},
    {"VORSATZWORT", 4},
    {"POSTLEITZAHL", 5, Place::FirstAddress, Element::PostalCode},
    {"POSTLEITZAHL", 12, Place::SecondAddress, Element::PostalCode},
    {"ORT", 6, Place::FirstAddress, Element::Town},
    {"ORT", 13, Place::SecondAddress, Element::Town},
    {"WOHNSITZLAENDERCODE", 7, Place::FirstAddress, Element::CountryCode},
    {"WOHNSITZLAENDERCODE", 14, Place::SecondAddress, Element::CountryCode},
    {"STRASSE", StreetRow, Place::FirstAddress},
    {"STRASSE", 15, Place::SecondAddress},
    {"HAUSNUMMER", HouseNumberRow, Place::FirstAddress},
    {"HAUSNUMMER", 16, Place::SecondAddress},
    {"ANSCHRIFTENZUSATZ", AddressSupplementRow, Place::FirstAddress},
    {"ANSCHRIFTENZUSATZ", 17, Place::SecondAddress},
    {"POSTFACH", 11, Place::FirstAddress},
    {"POSTFACH", 18, Place::SecondAddress},
    {"TITEL", 19, Place::Document, Element::Title},
    {"NAMENSZUSATZ", 20, Place::Document, Element::NameAffix},
    {"VORNAME", 21, Place::Document, Element::FirstName},
};

constexpr ContainerRule VdContainers[]{
    {"ABRECHNENDER_KOSTENTRAEGER_INSTITUTION", Place::SettlingInsurer},  // data model 5.1
    {"ABRECHNENDERKOSTENTRAEGER", Place::SettlingInsurer},               // data model 5.2
};

constexpr FieldRule VdRules[]{
    {"BEGINN", 0, Place::Document, {}, DateIn::RowAndInsured},
    {"BEGIN", 0, Place::Document, {}, DateIn::RowAndInsured},
    {"ENDE", 1, Place::Document, Element::ValidUntil, DateIn::RowAndInsured},
    {"KOSTENTRAEGERKENNUNG", 2, Place::Document, Element::InsurerNumber},
    {"NAME", 3, Place::Document, Element::InsurerName},
    {"WOHNSITZLAENDERCODE", 4, Place::Document, Element::CountryCode},
    {"KOSTENERSTATTUNG_AMBULANT", 5},
    {"KOSTENERSTATTUNG_STATIONAER", 6},
    {"KOSTENTRAEGERKENNUNG", 7, Place::SettlingInsurer},
    {"KOSTENTRAEGERKENNUNG1", 7, Place::SettlingInsurer},
    {"NAME", 8, Place::SettlingInsurer},
    {"NAME1", 8, Place::SettlingInsurer},
    {"WOP", 9, Place::Document, Element::Vknr},
    {"VERSICHERTENSTATUS_RSA", 10, Place::Document, Element::InsuredStatus},
    {"RECHTSKREIS", 11, Place::Document, Element::StatusSupplement},
    {"VERSICHERTENART", 12},
    {"PKV_VERBANDSTARIF", 13},
    {"PROZENTSATZ_WAHLLEISTUNG_UNTERKUNFT", 14},
    {"HOECHSTSATZ_WAHLLEISTUNG_UNTERKUNFT", 15},
    {"PROZENTSATZ_WAHLLEISTUNG_AERZTLICHE_BEHANDLUNG", 16},
    {"STATIONAERE_WAHLLEISTUNG_UNTERKUNFT", 17},
    {"STATIONAERE_WAHLLEISTUNG_AERZTLICHE_BEHANDLUNG", 18},
    {"TEILNAHME_CLINICCARD_VERFAHREN", 19},
    {"KENNZEICHNUNG", 20},
};

constexpr ContainerRule GvdContainers[]{
    {"ZUZAHLUNGSSTATUS", Place::Copayment},
};

constexpr FieldRule GvdRules[]{
    {"BESONDERE_PERSONENGRUPPE", 0},  // data model 5.1
    {"BESONDEREPERSONENGRUPPE", 0},   // data model 5.2
    {"DMP", 1},
    {"DMP_KENNZEICHNUNG", 1},
    {"STATUS", 2, Place::Copayment},
    {"GUELTIG_BIS", 3, Place::Copayment},
};

// Whether the rules fill every row of the kind's table, and none behind it.
constexpr bool FillTheirTable(std::span<const FieldRule> rules, VsdKind kind) {
  const int rows = FieldRowCount[kind];
  for (int row = 0; row < rows; ++row) {
    if (std::none_of(rules.begin(), rules.end(),
                     [row](const auto& rule) { return rule.row == row; }))
      return false;
  }
  return rows <= FieldTableRows &&
         std::all_of(rules.begin(), rules.end(),
                     [rows](const auto& rule) { return rule.row >= 0 && rule.row < rows; });
}

static_assert(FillTheirTable(PdRules, VsdKind::Pd));
static_assert(FillTheirTable(VdRules, VsdKind::Vd));
static_assert(FillTheirTable(GvdRules, VsdKind::Gvd));

QString FieldName(const XmlElement& element, Place place) {
  const std::string_view utf8 = element.LocalName();
  QString name = QString::fromUtf8(utf8.data(), static_cast<qsizetype>(utf8.size()));
  switch (place) {
    case Place::Copayment:
      return u"ZUZAHLUNGSSTATUS" % QStringView(u"\\") % name;
    case Place::FirstAddress:
      return name % u" (1. Anschrift) ";
    case Place::SecondAddress:
      return name % u" (2. Anschrift) ";
    case Place::SettlingInsurer:
      return name % u" (Inst._Abr._Kostentr.) ";
    default:
      return name;
  }
}

// The text of an element in one line. Other blanks than those of XML belong to the data.
QString Collapsed(const QString& text) {
  const auto isBlank = [](QChar character) {
    return character == u' ' || character == u'\t' || character == u'\r' || character == u'\n';
  };
  QString line;
  line.reserve(text.size());
  bool isBetween = false;
  for (const QChar character : text) {
    if (isBlank(character)) {
      isBetween = !line.isEmpty();
      continue;
    }
    if (isBetween) line += u' ';
    isBetween = false;
    line += character;
  }
  return line;
}

// TT.MM.JJJJ from JJJJMMTT; nothing where the text has another form. A day or a month that is not
// known is 00 and stays so.
std::optional<QString> DateText(const QString& date) {
  const auto isDigit = [&date](qsizetype index) {
    return date.at(index) >= u'0' && date.at(index) <= u'9';
  };
  if (date.size() != 8 || !isDigit(4) || !isDigit(5)) return std::nullopt;
  const QStringView view(date);
  return view.sliced(6, 2) % u'.' % view.sliced(4, 2) % u'.' % view.first(4);
}

// One walk over one document.
class FieldWalk {
 public:
  FieldWalk(std::span<const ContainerRule> containers, std::span<const FieldRule> rules,
            FieldTable& fields, InsuredData& insured)
      : containers_(containers), rules_(rules), fields_(fields), insured_(insured) {}

  void Run(const XmlElement& root) {
    Enter(root, Place::Document);
    if (isFirstTaken_) return;
    for (auto& [element, text] : ofSecondAddress_) insured_[element] = std::move(text);
  }

 private:
  // The parser bounds the depth of a document, and with it that of the recursion.
  void Enter(const XmlElement& container, Place place) {
    for (XmlElement element = container.FirstChild(); element; element = element.Next()) {
      if (const FieldRule* const rule = RuleFor(element, place)) Store(element, *rule);
      if (element.FirstChild()) Enter(element, PlaceInside(element, place));
    }
  }

  const FieldRule* RuleFor(const XmlElement& element, Place place) const {
    const std::string_view name = element.LocalName();
    for (const FieldRule& rule : rules_) {
      const bool isHere =
          rule.place == place || (rule.place == Place::Document && place != Place::SettlingInsurer);
      if (isHere && EqualsUpperCased(name, rule.element)) return &rule;
    }
    return nullptr;
  }

  Place PlaceInside(const XmlElement& element, Place outside) {
    const std::string_view name = element.LocalName();
    for (const ContainerRule& rule : containers_) {
      if (!EqualsUpperCased(name, rule.element)) continue;
      if (rule.place == Place::StreetAddress) return StreetAddressInside(outside);
      return rule.place == Place::PostBoxAddress ? TakeSecondAddress() : rule.place;
    }
    return outside;
  }

  // A street address inside an address is part of that one.
  Place StreetAddressInside(Place outside) {
    const bool isInAddress = outside == Place::FirstAddress || outside == Place::SecondAddress ||
                             outside == Place::FurtherAddress;
    if (isInAddress) return outside;
    if (std::exchange(isFirstTaken_, true)) return TakeSecondAddress();
    return Place::FirstAddress;
  }

  Place TakeSecondAddress() {
    return std::exchange(isSecondTaken_, true) ? Place::FurtherAddress : Place::SecondAddress;
  }

  void Store(const XmlElement& element, const FieldRule& rule) {
    const QString text = Collapsed(element.Text());
    const std::optional<QString> date =
        rule.date == DateIn::Nowhere ? std::nullopt : DateText(text);
    VsdField& field = fields_.at(static_cast<std::size_t>(rule.row));
    field.name = FieldName(element, rule.place);
    field.value = rule.date == DateIn::RowAndInsured ? date.value_or(text) : text;

    if (!rule.insured) return;
    if (rule.date == DateIn::Insured && !date) return;
    if (rule.place == Place::SecondAddress) {
      ofSecondAddress_.emplace_back(*rule.insured, text);
    } else {
      insured_[*rule.insured] = date.value_or(text);
    }
  }

  std::span<const ContainerRule> containers_;
  std::span<const FieldRule> rules_;
  FieldTable& fields_;
  InsuredData& insured_;
  bool isFirstTaken_ = false;  // address blocks
  bool isSecondTaken_ = false;
  std::vector<std::pair<Element, QString>> ofSecondAddress_;
};

}  // namespace

void MapVdFields(const XmlElement& root, FieldTable& fields, InsuredData& insured) {
  FieldWalk(VdContainers, VdRules, fields, insured).Run(root);
}

void MapPdFields(const XmlElement& root, FieldTable& fields, InsuredData& insured) {
  FieldWalk(PdContainers, PdRules, fields, insured).Run(root);
  insured[Element::Street] = fields[StreetRow].value % u' ' % fields[HouseNumberRow].value % u' ' %
                             fields[AddressSupplementRow].value;
}

void MapGvdFields(const XmlElement& root, FieldTable& fields, InsuredData& insured) {
  FieldWalk(GvdContainers, GvdRules, fields, insured).Run(root);
}

}  // namespace kartocheck
