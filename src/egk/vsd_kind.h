#pragma once

#include <QStringView>

#include <array>
#include <cstddef>

namespace kartocheck {

// The three documents of insured person's master data (Versichertenstammdaten, VSD) on an eGK, in
// the order in which they are listed to the user.
enum class VsdKind {
  Pd = 0,   // personal data, EF.PD
  Vd = 1,   // general insurance data, EF.VD
  Gvd = 2,  // protected data, in EF.VD's container or EF.GVD
};

inline constexpr int VsdKindCount = 3;

// One value a kind.
template <typename T>
class PerVsdKind {
 public:
  constexpr T& operator[](VsdKind kind) { return values[static_cast<std::size_t>(kind)]; }
  constexpr const T& operator[](VsdKind kind) const {
    return values[static_cast<std::size_t>(kind)];
  }

  constexpr auto begin() { return values.begin(); }
  constexpr auto end() { return values.end(); }
  constexpr auto begin() const { return values.begin(); }
  constexpr auto end() const { return values.end(); }

  std::array<T, VsdKindCount> values{};
};

// The texts in which the kinds differ.
struct VsdKindTexts {
  QStringView decompressionStatus;  // status bar
  QStringView validationStatus;     // status bar
  QStringView schemaName;           // in the validation texts
  QStringView couldNotOpening;      // opens the text of a validation that did not take place
  QStringView schemaFile;           // file name of the XSD schema
};

inline constexpr PerVsdKind<VsdKindTexts> VsdTexts{{{
    {
        u"Persoenliche Versichertendaten werden dekomprimiert.",
        u"Persoenliche Versichertendaten werden validiert.",
        u"mittels vorgegebenen Schema für UC_PersoenlicheVersichertendatenXML ",
        u"Eine Validierung der XML Daten ",
        u"UC_PersoenlicheVersichertendatenXML.xsd",
    },
    {
        u"Allgemeine Versicherungsdaten werden dekomprimiert.",
        u"Allgemeine Versicherungsdaten werden validiert.",
        u"mittels vorgegebenen Schema für UC_allgemeineVersicherungsdatenXML ",
        u"Eine lokale Validierung der XML Daten ",
        u"UC_allgemeineVersicherungsdatenXML.xsd",
    },
    {
        u"Geschuetzte Versichertendaten werden dekomprimiert.",
        u"Geschuetzte Versichertendaten werden validiert.",
        u"mittels vorgegebenen Schema für UC_geschuetzteVersichertendatenXML ",
        u"Eine Validierung der XML Daten ",
        u"UC_geschuetzteVersichertendatenXML.xsd",
    },
}}};

}  // namespace kartocheck
