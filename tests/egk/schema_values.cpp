#include "egk/schema_values.h"

#include <stdexcept>

namespace kartocheck::test {

namespace {

constexpr auto* Pd = u"pd_crlf_maximum_lengths.xml";
constexpr auto* Vd = u"vd_prefix_settling_insurer.xml";
constexpr auto* Gvd = u"gvd_prefix_all_elements.xml";

struct ValueClass {
  VsdKind kind;
  const char16_t* base;  // a genuine document that has the elements
  QStringList elements;
  QStringList accepted;
  QStringList refused;
};

QStringList Values(std::initializer_list<QStringView> values) {
  QStringList list;
  for (const QStringView value : values) list.append(value.toString());
  return list;
}

// An integer may have a sign, leading zeros, and blanks around it.
std::vector<ValueClass> Classes() {
  const QStringList dates =
      Values({u"20260101", u"20261231", u"19660000", u"00000000", u"20260230"});
  const QStringList noDates =
      Values({u"quatsch", u"", u"2026010", u"202601011", u"20261301", u"20260132", u"20260140",
              u"01.01.2026", u"2026-1-1", u"+2026101", u" 20260101", u"20260101 ", u"2026 101"});
  const QStringList digits =
      Values({u"0", u"1", u"2", u"3", u"9", u"07", u"000", u"-3", u"+3", u" 3 ", u"\n3"});
  const QStringList noDigits = Values({u"", u" ", u"10", u"-10", u"x", u"1.0", u"3 4", u"- 3"});
  return {
      {VsdKind::Pd, Pd, Values({u"Geburtsdatum"}), dates, noDates},
      {VsdKind::Vd, Vd, Values({u"Beginn", u"Ende"}), dates, noDates},
      {VsdKind::Gvd, Gvd, Values({u"Gueltig_bis", u"Beginn", u"Ende"}), dates, noDates},
      {VsdKind::Gvd, Gvd, Values({u"Aerztlich", u"Zahnaerztlich", u"ArtDesRuhens"}), digits,
       noDigits},
      {VsdKind::Gvd, Gvd, Values({u"BesonderePersonengruppe", u"DMP_Kennzeichnung"}),
       Values({u"0", u"4", u"04", u"00", u"99", u"007", u"-12", u"+7", u" 04 "}),
       Values({u"", u" ", u"100", u"-100", u"ab", u"4 5", u"4.0"})},
      {VsdKind::Vd, Vd, Values({u"Kostentraegerkennung"}),
       Values({u"123456789", u"1", u"0", u"000000000123456789", u"-123456789", u"+1", u" 1 "}),
       Values({u"", u" ", u"1234567890", u"-1234567890", u"12345678X", u"1.5", u"123 456"})},
      {VsdKind::Gvd, Gvd, Values({u"Art"}), Values({u"0000", u"0101", u"1111"}),
       Values({u"", u"100", u"10000", u"2000", u"9999", u"abcd", u" 1000", u"1000 "})},
      {VsdKind::Vd, Vd, Values({u"Versichertenart"}), Values({u"0", u"1", u"3", u"5", u"9"}),
       Values({u"", u"55", u"-1", u"a", u" 1", u"1 ", u"\n1"})},
      {VsdKind::Vd, Vd, Values({u"WOP"}), Values({u"00", u"01", u"98"}),
       Values({u"", u"1", u"001", u"+1", u"ab", u" 01", u"01 "})},
      {VsdKind::Gvd, Gvd, Values({u"Status"}), Values({u"0", u"1"}),
       Values({u"", u"2", u"11", u"ja"})},
  };
}

// The first such element with another value.
QByteArray With(QByteArray document, const QString& element, const QString& value) {
  const QByteArray tag = ':' + element.toLatin1() + '>';
  const qsizetype start = document.indexOf(tag) + tag.size();
  const qsizetype end = document.indexOf('<', start);
  if (start < tag.size() || end < 0) throw std::runtime_error(element.toStdString());
  return document.replace(start, end - start, value.toLatin1());
}

}  // namespace

std::vector<ValueCase> ValueCases() {
  std::vector<ValueCase> cases;
  for (const ValueClass& values : Classes()) {
    const QByteArray base =
        ReadDocument(QStringLiteral("genuine/") + QString::fromUtf16(values.base));
    for (const QString& element : values.elements) {
      for (const QString& value : values.accepted + values.refused) {
        ValueCase row;
        row.name = QStringLiteral("value_%1.xml").arg(cases.size());
        row.kind = values.kind;
        row.bytes = With(base, element, value);
        row.element = element;
        row.value = value;
        row.isValid = values.accepted.contains(value);
        cases.push_back(row);
      }
    }
  }
  return cases;
}

}  // namespace kartocheck::test
