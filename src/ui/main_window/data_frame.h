#pragma once

#include <QString>
#include <QStringView>

#include <array>

#include "discovery/terminal_info.h"
#include "kvk/insured_data.h"

namespace kartocheck {

// Rows of the data frame: elements 0 to 15 of the insured data, reading date, approval number.
inline constexpr int DataRowCount = 18;

// What the data frame shows. Texts are plain text.
struct DataFrame {
  QString title;
  std::array<QStringView, DataRowCount> labels;
  std::array<QString, DataRowCount> values;
};

// The frame before anything was read.
[[nodiscard]] DataFrame EmptyDataFrame();

// Title, labels and values of a slot. Title and four labels follow the kind of the data (KVK or
// eGK, card or mobile record); the last two rows are filled for mobile terminals only.
[[nodiscard]] DataFrame DataFrameOf(const TerminalInfo& info, const InsuredData& insured);

// The data as text for the clipboard: one line an element, ended by CR LF, empty ones too. 16
// lines, 18 for a mobile terminal.
[[nodiscard]] QString ClipboardText(const TerminalInfo& info, const InsuredData& insured);

}  // namespace kartocheck
