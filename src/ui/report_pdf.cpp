#include "ui/report_pdf.h"

#include <QFontDatabase>
#include <QPdfWriter>
#include <QTextDocument>

namespace kartocheck {

namespace {

constexpr qreal FontPoints = 9;

QString Cell(const QString& text, QStringView tag = u"td") {
  return u'<' + tag + u'>' + text.toHtmlEscaped() + u"</" + tag + u'>';
}

QString Row(const QString& cells) {
  return u"<tr>" + cells + u"</tr>";
}

QString Heading(QStringView text) {
  return u"<h3 style='margin-top: 16px'>" + text + u"</h3>";
}

QString FactTable(const TestReport& report) {
  QString rows;
  for (const ReportField& fact : report.facts) {
    if (!fact.value.isEmpty()) rows += Row(Cell(fact.caption) + Cell(fact.value));
  }
  return u"<table cellpadding='2'>" + rows + u"</table>";
}

QString PortTable(const TestReport& report) {
  QString rows;
  for (const QStringView heading :
       {u"Schnittstelle", u"Anschluss", u"Terminal", u"Befund", u"Hinweis"}) {
    rows += Cell(heading.toString(), u"th");
  }
  rows = Row(rows);
  for (const ReportedPort& port : report.ports) {
    rows += Row(Cell(port.name) + Cell(port.presence) + Cell(port.terminal) + Cell(port.finding) +
                Cell(port.hint));
  }
  return u"<table border='1' cellspacing='0' cellpadding='4' width='100%' "
         u"style='border-collapse: collapse'>" +
         rows + u"</table>";
}

QString List(const QStringList& lines) {
  QString items;
  for (const QString& line : lines) items += u"<p>" + line.toHtmlEscaped() + u"</p>";
  return items;
}

}  // namespace

void WriteReportPdf(const TestReport& report, QIODevice& device) {
  QPdfWriter writer(&device);
  writer.setTitle(ReportTitle.toString());
  writer.setCreator(QStringLiteral("KartoCheck"));
  writer.setPageSize(QPageSize(QPageSize::A4));

  QTextDocument document;
  QFont font = QFontDatabase::systemFont(QFontDatabase::GeneralFont);
  font.setPointSizeF(FontPoints);
  document.setDefaultFont(font);
  document.setDocumentMargin(0);
  document.setHtml(QStringView(u"<h2>") + ReportTitle.toString() + u"</h2>" + FactTable(report) +
                   Heading(u"Schnittstellen") + PortTable(report) +
                   Heading(u"Weitere Schnittstellen") +
                   List(report.furtherPorts.isEmpty() ? QStringList(QStringLiteral("keine"))
                                                      : report.furtherPorts) +
                   List(report.hints));
  document.print(&writer);
}

}  // namespace kartocheck
