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

inline constexpr std::array VsdKinds{VsdKind::Pd, VsdKind::Vd, VsdKind::Gvd};
inline constexpr int VsdKindCount = VsdKinds.size();
static_assert(VsdKinds[0] == VsdKind::Pd && VsdKinds[1] == VsdKind::Vd &&
              VsdKinds[2] == VsdKind::Gvd);

// One value a kind.
template <typename T>
class PerVsdKind {
 public:
  constexpr PerVsdKind() = default;
  // In the order of the kinds; none can be left out.
  template <std::size_t Count>
  constexpr explicit PerVsdKind(const T (&all)[Count]) : values_(std::to_array(all)) {}

  constexpr T& operator[](VsdKind kind) { return values_[static_cast<std::size_t>(kind)]; }
  constexpr const T& operator[](VsdKind kind) const {
    return values_[static_cast<std::size_t>(kind)];
  }

  constexpr auto begin() { return values_.begin(); }
  constexpr auto end() { return values_.end(); }
  constexpr auto begin() const { return values_.begin(); }
  constexpr auto end() const { return values_.end(); }

 private:
  std::array<T, VsdKindCount> values_{};
};

// The texts in which the kinds differ.
struct VsdKindTexts {
  QStringView abbreviation;
  QStringView title;
  QStringView heading;              // over what is known of the document
  QStringView xmlTitle;             // over its XML text
  QStringView decompressionStatus;  // status bar
  QStringView validationStatus;     // status bar
  QStringView schemaName;           // in the validation texts
  QStringView couldNotOpening;      // opens the text of a validation that did not take place
  QStringView schemaFile;           // file name of the XSD schema
};

inline constexpr PerVsdKind<VsdKindTexts> VsdTexts({
    {
        u"PD",
        u"Persönliche Versichertendaten",
        u"Persönliche Versichertendaten:",
        u"Persönliche Versichertendaten (XML)",
        u"Persoenliche Versichertendaten werden dekomprimiert.",
        u"Persoenliche Versichertendaten werden validiert.",
        u"mittels vorgegebenen Schema für UC_PersoenlicheVersichertendatenXML ",
        u"Eine Validierung der XML Daten ",
        u"UC_PersoenlicheVersichertendatenXML.xsd",
    },
    {
        u"VD",
        u"Allgemeine Versicherungsdaten",
        u"Allgemeine Versicherungsdaten:",
        u"Allgemeine Versicherungsdaten (XML)",
        u"Allgemeine Versicherungsdaten werden dekomprimiert.",
        u"Allgemeine Versicherungsdaten werden validiert.",
        u"mittels vorgegebenen Schema für UC_allgemeineVersicherungsdatenXML ",
        u"Eine lokale Validierung der XML Daten ",
        u"UC_allgemeineVersicherungsdatenXML.xsd",
    },
    {
        u"GVD",
        u"Geschützte Versichertendaten",
        u"Geschützte Versichertendaten:",
        u"Geschützte Versichertendaten (XML)",
        u"Geschuetzte Versichertendaten werden dekomprimiert.",
        u"Geschuetzte Versichertendaten werden validiert.",
        u"mittels vorgegebenen Schema für UC_geschuetzteVersichertendatenXML ",
        u"Eine Validierung der XML Daten ",
        u"UC_geschuetzteVersichertendatenXML.xsd",
    },
});

}  // namespace kartocheck
