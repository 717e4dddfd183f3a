#include "ui/main_window/data_frame.h"

namespace kartocheck {

namespace {

constexpr int ReadingDateRow = 16;

constexpr Element ElementOfRow(int row) {
  constexpr std::array<Element, 2> Supplement{Element::ReadingDate, Element::ApprovalNumber};
  return row < ReadingDateRow ? static_cast<Element>(row)
                              : Supplement.at(static_cast<std::size_t>(row - ReadingDateRow));
}

constexpr int RowOf(Element element) {
  return static_cast<int>(element);
}

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

void UseEgkLabels(DataFrame& frame) {
  frame.labels[RowOf(Element::Vknr)] = u"WOP:";
  frame.labels[RowOf(Element::InsuredStatus)] = u"Versichertenstatus_RSA:";
  frame.labels[RowOf(Element::StatusSupplement)] = u"Rechtskreis:";
  frame.labels[RowOf(Element::ValidUntil)] = u"Gültigkeit (Ende):";
}

int RowsOf(const TerminalInfo& info) {
  return info.IsMobile() ? DataRowCount : ReadingDateRow;
}

}  // namespace

DataFrame EmptyDataFrame() {
  return DataFrameOf(TerminalInfo{}, InsuredData{});
}

DataFrame DataFrameOf(const TerminalInfo& info, const InsuredData& insured) {
  DataFrame frame;
  frame.title = TitleOf(info).toString();
  for (int row = 0; row < DataRowCount; ++row) {
    const auto index = static_cast<std::size_t>(row);
    const Element element = ElementOfRow(row);
    frame.labels[index] = ElementTable[static_cast<std::size_t>(element)].label;
    if (row < RowsOf(info)) frame.values[index] = insured[element];
  }
  if (info.EgkData) UseEgkLabels(frame);
  return frame;
}

QString ClipboardText(const TerminalInfo& info, const InsuredData& insured) {
  QString text;
  for (int row = 0; row < RowsOf(info); ++row) text += insured[ElementOfRow(row)] + u"\r\n";
  return text;
}

}  // namespace kartocheck
