#include "ui/main_window/test_report.h"

#include "ui/main_window/status_tab.h"

namespace kartocheck {

namespace {

constexpr QStringView LineEnd = u"\r\n";
// Width of the captions, in characters: the longest of a status tab and a blank.
constexpr int CaptionWidth = 24;

class ReportLines {
 public:
  void Heading(QStringView text) { Add(LineEnd + text.toString() + LineEnd); }
  void Line(const QString& text) { Add(text + LineEnd); }
  void Field(QStringView caption, const QString& value) {
    if (value.isEmpty()) return;
    Line(u"  " + caption.toString().leftJustified(CaptionWidth, u' ') + value);
  }

  [[nodiscard]] const QString& Text() const { return text_; }

 private:
  void Add(const QString& text) { text_ += text; }

  QString text_;
};

QString Presence(const PortEntry& port) {
  if (port.PortError) return QStringLiteral("gesperrt");
  return port.PortPresent ? QStringLiteral("vorhanden") : QStringLiteral("nicht vorhanden");
}

QString TerminalKind(const TerminalInfo& info) {
  if (!info.Answered) return QStringLiteral("keine Antwort");
  return info.IsMobile() ? QStringLiteral("mobil") : QStringLiteral("stationär");
}

QString DataKind(const TerminalInfo& info) {
  if (!info.DataRead) return QStringLiteral("nicht gelesen");
  return info.EgkData ? QStringLiteral("eGK gelesen") : QStringLiteral("KVK gelesen");
}

void AddPort(ReportLines& lines, Port port, const Bas_MKT_Test& module) {
  const int slot = port.Slot();
  const PortEntry& entry = module.PortOf(slot);
  const TerminalInfo& info = module.TerminalOf(slot);
  lines.Line(port.IsTested() ? port.Name() : port.Line());
  lines.Field(u"Anschluss:", Presence(entry));
  lines.Field(u"Leitungssignal:", entry.LineState ? QStringLiteral("ja") : QStringLiteral("nein"));
  lines.Field(u"Ergebnis der Prüfung:", QString::number(entry.ScanResult));
  const StatusTab values = StatusTabOf(module, slot);
  for (int row = 0; row < StatusRowCount; ++row) {
    lines.Field(StatusRowLabel(slot, row), values.at(static_cast<std::size_t>(row)));
  }
  lines.Field(u"Terminal:", TerminalKind(info));
  lines.Field(u"Daten:", DataKind(info));
  lines.Field(u"Hinweis:", module.HintFor(port));
}

// The lines of a message stand below each other, behind the time.
void AddEntry(ReportLines& lines, const RunEntry& entry) {
  QString margin = entry.time.toString(QStringLiteral("HH:mm:ss  "));
  for (const QString& line : entry.text.split(LineEnd.toString())) {
    lines.Line(margin + line);
    margin.fill(u' ');
  }
}

QString SchemaState(const ValidationSettings& validation, VsdKind kind) {
  return validation.schemas[kind].Text().isEmpty() ? QStringLiteral("kein Schema")
                                                   : QStringLiteral("Schema geladen");
}

}  // namespace

QString TestReportText(const QDateTime& time, const ProgramFacts& facts, const Bas_MKT_Test& module,
                       const RunRecorder& run) {
  ReportLines lines;
  lines.Line(QStringLiteral("Prüfbericht KartoCheck"));
  lines.Field(u"Erstellt:", time.toString(QStringLiteral("dd.MM.yyyy HH:mm:ss")));
  lines.Field(u"Version:", facts.version);
  lines.Field(u"CT-API-Bibliothek:", facts.library);
  lines.Field(u"Betriebssystem:", facts.system);
  lines.Field(u"Letzter Abbruch:", facts.lastFailure);
  lines.Field(u"Validierung:", module.Validation().isOn ? QStringLiteral("eingeschaltet")
                                                        : QStringLiteral("ausgeschaltet"));
  for (const VsdKind kind : VsdKinds) {
    const QString caption = VsdTexts[kind].abbreviation + u":";
    lines.Field(caption, SchemaState(module.Validation(), kind));
  }

  lines.Heading(u"Schnittstellen");
  for (int slot = 1; slot <= SlotCount; ++slot) {
    if (const std::optional<Port> port = module.PortAt(slot)) AddPort(lines, *port, module);
  }

  lines.Heading(u"Weitere Schnittstellen");
  if (module.FurtherPorts().empty()) lines.Line(QStringLiteral("  keine"));
  for (const Port port : module.FurtherPorts()) lines.Line(u"  " + port.Line());
  for (const QString& hint : module.HintsWithoutReader()) lines.Field(u"Hinweis:", hint);

  lines.Heading(u"Statustexte und Meldungen");
  for (const RunEntry& entry : run.Entries()) AddEntry(lines, entry);
  return lines.Text();
}

}  // namespace kartocheck
