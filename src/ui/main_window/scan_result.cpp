#include "ui/main_window/scan_result.h"

#include <algorithm>

#include "terminal/ct_session.h"
#include "text/status_texts.h"

namespace kartocheck {

namespace {

constexpr std::size_t NothingFoundRow = 1;
constexpr QStringView SearchEnded = u"Die Suche wurde beendet, bevor etwas gefunden war.";
static_assert(status_text::ScanCom.size() == SlotCount);

ScanResultRow RowOf(int port, const TerminalInfo& info, const PortEntry& entry) {
  if (info.Answered) {
    const QString link = info.UsbVirtualCom ? QStringLiteral(" USB Gerät (Virtueller COM port)")
                                            : u" Baudrate: " + entry.BaudText.Padded() + u" Baud.";
    return {.text = status_text::ReaderFound + link, .number = QString::number(port)};
  }
  if (entry.ScanResult == ctapi::code::TransmissionError) {
    return {.text = status_text::ReaderPossible.toString(),
            .number = QString::number(port),
            .showsKey = true};
  }
  return {};
}

QString SummaryOf(int furtherCount, bool foundOnCom) {
  if (furtherCount < 1) return {};
  return QString::number(furtherCount) +
         (foundOnCom ? u" weitere(n) Chipkartenleser gefunden." : u" Chipkartenleser gefunden.") +
         u"\r\n" + u"Siehe Schnittstellen weitere ...";
}

}  // namespace

ScanResult ScanResultOf(const PerSlot<TerminalInfo>& terminals, const PerSlot<PortEntry>& ports,
                        int furtherCount, bool isWhole) {
  ScanResult result;
  for (int row = 0; row < ScanResultRows; ++row) {
    const int port = row + 1;
    result.rows[static_cast<std::size_t>(row)] = RowOf(port, terminals[port], ports[port]);
  }
  const bool foundOnCom = std::any_of(result.rows.begin(), result.rows.end(),
                                      [](const ScanResultRow& row) { return !row.text.isEmpty(); });
  result.summary = SummaryOf(furtherCount, foundOnCom);
  if (!foundOnCom && result.summary.isEmpty()) {
    const QStringView text = isWhole ? status_text::NoReader : SearchEnded;
    result.rows[NothingFoundRow] = {.text = text.toString(), .isCentered = true};
  }
  return result;
}

}  // namespace kartocheck
