#pragma once

#include <QString>
#include <QStringView>

#include <array>
#include <vector>

#include "discovery/terminal_info.h"
#include "egk/egk_data.h"

namespace kartocheck {

// The element list of one VSD document.
struct ElementList {
  QString heading;           // with the line break behind it
  QStringView valueHeading;  // over the values; the names' heading is the same for all
  QString validationText;
  std::vector<VsdField> rows;  // the filled rows of the field table, in its order
};

inline constexpr QStringView ElementNamesHeading = u"Elementnamen";
inline constexpr QStringView XmlTextsHeading = u"Gelesene und dekomprimierte Daten:";

// A line of the info view: a caption and a part of a kept text, aligned for a fixed-pitch font.
struct InfoLine {
  QString text{};
  QStringView toolTip{};
};

// Lines are numbered as their labels, 2 to 7 and 9 to 14; the others stay empty.
inline constexpr int InfoLineCount = 15;

// What the eGK window shows of a slot. All texts are plain text.
struct EgkInfo {
  bool wasRead = false;  // otherwise there is nothing to show
  PerVsdKind<ElementList> lists;
  QString xmlTexts;  // the three documents under their titles, separated by empty lines
  // The same with the documents indented, or as they are where they cannot be; empty where none
  // can.
  QString indentedXmlTexts;

  // The info view: of the card in a stationary terminal, or of the status record that a mobile
  // one has stored.
  QStringView infoCaption;
  QStringView infoCommand;
  QStringView infoCommandToolTip;
  std::array<InfoLine, InfoLineCount> lines;
};

[[nodiscard]] EgkInfo EgkInfoOf(const TerminalInfo& info, const EgkData& egk);

// How documents are validated, step by step.
[[nodiscard]] QString ValidationHelp();

}  // namespace kartocheck
