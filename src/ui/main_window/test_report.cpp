#include "ui/main_window/test_report.h"

#include <QSaveFile>

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
  if (!port.IsChecked) return QStringLiteral("nicht geprüft");
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

// What is known of a terminal in one line: who made it, what it is.
QString TerminalText(const TerminalInfo& info) {
  if (!info.Answered) return {};
  const QStringList parts{info.ManufacturerId.Trimmed(), info.ModelName.Trimmed(),
                          info.SoftwareVersion.Trimmed()};
  QStringList told;
  for (const QString& part : parts) {
    if (!part.isEmpty()) told.append(part);
  }
  return told.join(u", ");
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

ReportedPort ReportedPortOf(Port port, const PortEntry& entry, const TerminalInfo& info,
                            const QString& identification, const QString& hint) {
  ReportedPort reported{.name = port.IsTested() ? port.Name() : port.Line(),
                        .presence = Presence(entry),
                        .terminal = TerminalText(info),
                        .finding = {},
                        .hint = hint,
                        .fields = {}};
  const auto add = [&reported](QStringView caption, const QString& value) {
    if (!value.isEmpty()) reported.fields.push_back({caption.toString(), value});
  };
  add(u"Anschluss:", reported.presence);
  if (entry.IsChecked) {
    reported.finding = info.Answered ? DataKind(info) : entry.PortText.Trimmed();
    add(u"Leitungssignal:", entry.LineState ? QStringLiteral("ja") : QStringLiteral("nein"));
    add(u"Ergebnis der Prüfung:", QString::number(entry.ScanResult));
    const StatusTab values = StatusTabOf(entry, info, identification);
    for (int row = 0; row < StatusRowCount; ++row) {
      add(StatusRowLabel(port.Slot(), row), values.at(static_cast<std::size_t>(row)));
    }
    add(u"Terminal:", TerminalKind(info));
    add(u"Daten:", DataKind(info));
  }
  add(u"Hinweis:", hint);
  return reported;
}

TestReport EmptyTestReport(const QDateTime& time, const ProgramFacts& facts,
                           const ValidationSettings& validation, const RunRecorder& run) {
  TestReport report;
  report.facts = {
      {QStringLiteral("Erstellt:"), time.toString(QStringLiteral("dd.MM.yyyy HH:mm:ss"))},
      {QStringLiteral("Version:"), facts.version},
      {QStringLiteral("CT-API-Bibliothek:"), facts.library},
      {QStringLiteral("Betriebssystem:"), facts.system},
      {QStringLiteral("Letzter Abbruch:"), facts.lastFailure},
      {QStringLiteral("Validierung:"),
       validation.isOn ? QStringLiteral("eingeschaltet") : QStringLiteral("ausgeschaltet")},
  };
  for (const VsdKind kind : VsdKinds) {
    report.facts.push_back({VsdTexts[kind].abbreviation + u":", SchemaState(validation, kind)});
  }
  report.entries.assign(run.Entries().begin(), run.Entries().end());
  return report;
}

TestReport TestReportOf(const QDateTime& time, const ProgramFacts& facts,
                        const Bas_MKT_Test& module, const RunRecorder& run) {
  TestReport report = EmptyTestReport(time, facts, module.Validation(), run);
  for (int slot = 1; slot <= SlotCount; ++slot) {
    const std::optional<Port> port = module.PortAt(slot);
    if (!port) continue;
    report.ports.push_back(ReportedPortOf(*port, module.PortOf(slot), module.TerminalOf(slot),
                                          module.IdentificationOf(slot), module.HintFor(*port)));
  }
  for (const Port port : module.FurtherPorts()) report.furtherPorts.append(port.Line());
  report.hints = module.HintsWithoutReader();
  return report;
}

QString ReportText(const TestReport& report) {
  ReportLines lines;
  lines.Line(ReportTitle.toString());
  for (const ReportField& field : report.facts) lines.Field(field.caption, field.value);

  lines.Heading(u"Schnittstellen");
  for (const ReportedPort& port : report.ports) {
    lines.Line(port.name);
    for (const ReportField& field : port.fields) lines.Field(field.caption, field.value);
  }

  lines.Heading(u"Weitere Schnittstellen");
  if (report.furtherPorts.isEmpty()) lines.Line(QStringLiteral("  keine"));
  for (const QString& line : report.furtherPorts) lines.Line(u"  " + line);
  for (const QString& hint : report.hints) lines.Field(u"Hinweis:", hint);

  lines.Heading(u"Statustexte und Meldungen");
  for (const RunEntry& entry : report.entries) AddEntry(lines, entry);
  return lines.Text();
}

void WriteReportText(const TestReport& report, QIODevice& device) {
  device.write(ReportText(report).toUtf8());
}

bool SaveReport(const TestReport& report, const ReportFormat& write, QSaveFile& file) {
  write(report, file);
  return file.commit();
}

bool IsPdfName(const QString& file) {
  return file.endsWith(u".pdf", Qt::CaseInsensitive);
}

}  // namespace kartocheck
