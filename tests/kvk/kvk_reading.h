#pragma once

#include <initializer_list>
#include <vector>

#include "kvk/kvk_reader.h"
#include "support/fake_dialogs.h"
#include "support/insured_printing.h"

namespace kartocheck::test {

// Texts of the reader's boxes.
inline const QString NoKvk = QStringLiteral(" Keine Krankenversichertenkarte!!! ");
inline const QString BadChecksum = QStringLiteral(" Prüfsumme KVK korrupt!!! ");
inline const QString BadSupplement = QStringLiteral(" Prüfsummezusatz KVK korrupt!!! ");
inline const QString UnknownSupplement = QStringLiteral(" Unbekannte Länge Prüfsummezusatz KVK! ");
inline const QString DefectiveRecord = QStringLiteral("Defekter KVK Datensatz!!!");

enum class Kind { Stationary, Mobile };

// One read and what it left behind.
struct KvkReading {
  explicit KvkReading(Kind kind = Kind::Stationary) { info.Reset95 = kind == Kind::Mobile; }

  KvkResult Read(QStringView data) { return ReadKvk(data, Target()); }
  [[nodiscard]] KvkTarget Target() { return {info, insured, Port(pn), dialogs}; }
  [[nodiscard]] std::vector<QString> Boxes() const { return dialogs.Texts(); }

  TerminalInfo info;
  InsuredData insured;
  int pn = 1;
  FakeDialogs dialogs;
};

// The texts given, of the elements that have a field in the fixed format, in its order.
inline InsuredData ElementTexts(std::initializer_list<QStringView> texts) {
  InsuredData insured;
  const auto* text = texts.begin();
  for (const ElementDescription& element : ElementTable) {
    if (element.Width > 0 && text != texts.end()) insured[element.Which] = (text++)->toString();
  }
  return insured;
}

}  // namespace kartocheck::test
