#pragma once

#include <algorithm>
#include <initializer_list>
#include <vector>

#include "kvk/kvk_reader.h"
#include "support/fake_dialogs.h"

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

// The texts of all 20 elements, in order.
using Elements = std::vector<QString>;

// The texts given, and empty ones behind them.
inline Elements ElementTexts(std::initializer_list<QStringView> texts) {
  Elements elements(ElementCount);
  std::transform(texts.begin(), texts.end(), elements.begin(),
                 [](QStringView text) { return text.toString(); });
  return elements;
}

inline Elements ElementsOf(const InsuredData& insured) {
  Elements texts;
  for (int i = 0; i < ElementCount; ++i) texts.push_back(insured[static_cast<Element>(i)]);
  return texts;
}

}  // namespace kartocheck::test
