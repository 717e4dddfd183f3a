#pragma once

#include <QString>
#include <QStringView>

#include <algorithm>
#include <array>

#include "discovery/terminal_info.h"
#include "kvk/insured_data.h"

namespace kartocheck {

// Rows of the data frame: the elements that have a label, those of a mobile terminal's supplement
// (reading date, approval number) among them.
inline constexpr int DataRowCount =
    static_cast<int>(std::count_if(ElementTable.begin(), ElementTable.end(),
                                   [](const auto& element) { return element.IsShown(); }));

// What the data frame shows. Texts are plain text.
struct DataFrame {
  QString title;
  std::array<QStringView, DataRowCount> labels;
  std::array<QString, DataRowCount> values;
};

// The frame before anything was read.
[[nodiscard]] DataFrame EmptyDataFrame();

// Title, labels and values of a slot. Title and some labels follow the kind of the data (KVK or
// eGK, card or mobile record); the supplement's rows are filled for mobile terminals only.
[[nodiscard]] DataFrame DataFrameOf(const TerminalInfo& info, const InsuredData& insured);

// The data as text for the clipboard: one line an element, ended by CR LF, empty ones too: 16
// lines, with the supplement of a mobile terminal 18, whatever the elements hold.
[[nodiscard]] QString ClipboardText(const TerminalInfo& info, const InsuredData& insured);

}  // namespace kartocheck
