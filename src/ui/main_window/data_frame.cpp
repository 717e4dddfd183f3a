#include "ui/main_window/data_frame.h"

#include "text/lines.h"

namespace kartocheck {

namespace {

constexpr auto ShownElements = [] {
  std::array<ElementDescription, DataRowCount> rows{};
  std::copy_if(ElementTable.begin(), ElementTable.end(), rows.begin(),
               [](const ElementDescription& element) { return element.IsShown(); });
  return rows;
}();

QStringView TitleOf(const TerminalInfo& info) {
  if (!info.DataRead) return u"Krankenversicherten Kartendaten";
  if (info.EgkData) {
    return info.IsMobile()
               ? u"eGK VSDaten(Mobil) abgebildet auf die Krankenversicherten Kartendaten"
               : u"eGK VSDaten(Karte) abgebildet auf die Krankenversicherten Kartendaten";
  }
  return info.IsMobile() ? u"Krankenversicherten Kartendaten(Mobil)"
                         : u"Krankenversicherten Kartendaten(Karte)";
}

QStringView LabelOf(const ElementDescription& element, bool isEgk) {
  return isEgk && !element.EgkLabel.empty() ? element.EgkLabel : element.Label;
}

}  // namespace

DataFrame EmptyDataFrame() {
  return DataFrameOf(TerminalInfo{}, InsuredData{});
}

DataFrame DataFrameOf(const TerminalInfo& info, const InsuredData& insured) {
  DataFrame frame;
  frame.title = TitleOf(info).toString();
  for (std::size_t row = 0; row < ShownElements.size(); ++row) {
    const ElementDescription& element = ShownElements[row];
    frame.labels[row] = LabelOf(element, info.EgkData);
    if (IsDelivered(element, info.IsMobile())) frame.values[row] = insured[element.Which];
  }
  return frame;
}

QString ClipboardText(const TerminalInfo& info, const InsuredData& insured) {
  QString text;
  for (const ElementDescription& element : ShownElements) {
    if (IsDelivered(element, info.IsMobile())) text += OneLine(insured[element.Which]) + u"\r\n";
  }
  return text;
}

}  // namespace kartocheck
