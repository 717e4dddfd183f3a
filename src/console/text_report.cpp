#include "console/text_report.h"

#include <QCoreApplication>

#include <algorithm>
#include <ostream>

#include "ui/main_window/data_frame.h"

namespace kartocheck {

namespace {

constexpr int LabelWidth = 32;

void WriteRow(std::ostream& out, QStringView label, const QString& value,
              qsizetype width = LabelWidth) {
  const QString text = value.trimmed();
  if (text.isEmpty()) return;
  out << "  " << Printable(label.toString().leftJustified(width)) << Printable(text) << '\n';
}

QString Verdict(const PortReport& report) {
  if (!report.terminal.Answered) {
    QString model = report.terminal.ModelName.Trimmed();
    if (!model.isEmpty()) return model;
    const QString port = report.entry.PortText.Trimmed();
    return port.isEmpty() ? QStringLiteral("Kein Chipkartenleser") : port;
  }
  return report.terminal.ModelName.Trimmed() + u", " +
         (report.terminal.DataRead ? u"Daten gelesen" : u"keine Daten gelesen");
}

void WriteDocument(std::ostream& out, QStringView title, const VsdDocument& document) {
  if (document.IsEmpty()) return;
  out << "\n  " << Printable(title.toString()) << '\n';
  // Names of elements may be longer than the labels elsewhere.
  qsizetype width = LabelWidth;
  for (const VsdField& field : document.fields) {
    width = std::max(width, field.name.trimmed().size() + 3);
  }
  for (const VsdField& field : document.fields) {
    WriteRow(out, QString(u"  " + field.name.trimmed()), field.value, width);
  }
  const QString validation = QString(document.validationText)
                                 .replace(QStringLiteral("\r\n"), QStringLiteral(" "))
                                 .simplified();
  WriteRow(out, u"  Validierung:", validation, width);
}

// What the eGK holds besides the fields that it shares with the KVK.
void WriteEgk(std::ostream& out, const EgkData& egk) {
  for (const VsdKind kind : VsdKinds) {
    WriteDocument(out, VsdTexts[kind].heading, egk.documents[kind]);
  }
  out << '\n';
  WriteRow(out, u"ICCSN:", egk.iccsn);
  WriteRow(out, u"EF.StatusVD:", egk.statusText + egk.stored.statusText);
}

}  // namespace

std::string Printable(const QString& text) {
  QString printable = text;
  std::replace_if(
      printable.begin(), printable.end(),
      [](QChar character) {
        return character != u'\n' && character.category() == QChar::Other_Control;
      },
      QChar(QChar::ReplacementCharacter));
  return printable.toStdString();
}

void WritePort(std::ostream& out, const PortReport& report) {
  const TerminalInfo& terminal = report.terminal;
  out << Printable(report.port.Line()) << '\n';
  WriteRow(out,
           report.port.IsUsb() ? QStringView(u"Schnittstelle:")
                               : QStringView(u"Serielle Schnittstelle:"),
           report.entry.PortText.Trimmed());
  WriteRow(out, u"Baudrate:", report.entry.AvailText.Trimmed());
  WriteRow(out, u"PKT Modell:", terminal.ModelName.Trimmed());
  WriteRow(out, u"Hersteller:", terminal.ManufacturerId.Trimmed());
  WriteRow(out, u"CT-Typ:", terminal.ProductCode.Trimmed());
  WriteRow(out, u"Software Version:", terminal.SoftwareVersion.Trimmed());
  WriteRow(out, u"Ausgabemedium:", terminal.DisplayText.Trimmed());
  WriteRow(out, u"PnP Device ID:", report.identification);
  if (terminal.DataRead) {
    const DataFrame frame = DataFrameOf(terminal, report.insured);
    out << '\n' << "  " << Printable(frame.title) << '\n';
    for (std::size_t row = 0; row < frame.labels.size(); ++row) {
      WriteRow(out, frame.labels[row], frame.values[row]);
    }
  }
  if (!report.egk.IsEmpty()) WriteEgk(out, report.egk);
  WriteRow(out, u"Hinweis:", report.hint);
  out << '\n';
}

void TextReport::Begin() {
  out_ << "KartoCheck " << Printable(QCoreApplication::applicationVersion()) << "\n\n";
  HandOver(out_);
}

void TextReport::Add(const PortReport& report) {
  WritePort(out_, report);
  HandOver(out_);
}

void TextReport::End(const RunReport& run) {
  // One line a port, and why no reader was found.
  out_ << "Schnittstellen\n";
  for (const PortReport& report : run.ports) {
    WriteRow(out_, report.port.Line(), Verdict(report));
  }
  for (const QString& hint : run.hints) WriteRow(out_, u"Hinweis:", hint);
  if (!run.isComplete) out_ << "\nDer Lauf wurde vorzeitig beendet.\n";
  HandOver(out_);
}

}  // namespace kartocheck
