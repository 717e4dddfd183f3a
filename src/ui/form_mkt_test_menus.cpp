// The main window's menus, and the windows that it opens beside it.

#include <QClipboard>
#include <QFileDialog>
#include <QFileInfo>
#include <QGuiApplication>
#include <QMenuBar>
#include <QSaveFile>

#include "text/lines.h"
#include "ui/form_egk_info.h"
#include "ui/form_first_user.h"
#include "ui/form_info.h"
#include "ui/form_mkt_test.h"
#include "ui/plain_label.h"
#include "ui/report_pdf.h"

namespace kartocheck {

namespace {

QAction* AddEntry(QMenu* menu, const QString& name, const QString& text) {
  QAction* entry = menu->addAction(text);
  entry->setObjectName(name);
  return entry;
}

// Description and pattern of the schema files; Qt takes the pattern from the description's
// brackets.
constexpr QStringView SchemaFilter = u"XSD (*.xsd)|*.xsd";

constexpr QStringView PdfFilter = u"PDF (*.pdf)";
constexpr QStringView TextFilter = u"Text (*.txt)";

QString SchemaNameFilter() {
  return SchemaFilter.first(SchemaFilter.indexOf(u'|')).toString();
}

// Shows a side window without waiting for it: an action that runs goes on behind it.
void OpenSideWindow(QDialog* window) {
  window->setAttribute(Qt::WA_DeleteOnClose);
  window->open();
}

}  // namespace

void Form_MKT_Test::CreateFileMenu() {
  QMenu* file = menuBar()->addMenu(QStringLiteral("&Datei"));
  file->setObjectName(QStringLiteral("mnuDatei"));
  mnuValidierung = AddEntry(file, QStringLiteral("mnuValidierung"), QStringLiteral("&Validierung"));
  mnuValidierung->setCheckable(true);
  connect(mnuValidierung, &QAction::triggered, this, [this](bool on) {
    if (flow_ != nullptr) flow_->SetValidation(on);
  });

  mnuSchema = file->addMenu(QStringLiteral("&Neues Schema laden"));
  mnuSchema->setObjectName(QStringLiteral("mnuSchema"));
  constexpr std::array<std::pair<VsdKind, QStringView>, VsdKindCount> Schemas{{
      {VsdKind::Vd, u"UC_allgemeineVersicherungsdatenXSD"},
      {VsdKind::Pd, u"UC_PersoenlicheVersichertendatenXSD"},
      {VsdKind::Gvd, u"UC_geschuetzteVersichertendatenXSD"},
  }};
  for (int entry = 0; entry < VsdKindCount; ++entry) {
    const auto& [kind, text] = Schemas.at(static_cast<std::size_t>(entry));
    QAction* schema = AddEntry(mnuSchema, MemberName(u"mnuSchema", entry), text.toString());
    connect(schema, &QAction::triggered, this, [this, kind = kind] { AskForSchema(kind); });
  }

  file->addSeparator();
  QAction* quit = AddEntry(file, QStringLiteral("mnuBeenden"), QStringLiteral("&Beenden"));
  // Not every desktop has a standard key for this.
  quit->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_Q));
  // A screen reader that chose the entry is answered before the question comes.
  connect(quit, &QAction::triggered, this, &QWidget::close, Qt::QueuedConnection);
}

void Form_MKT_Test::CreateHelpMenu() {
  QMenu* help = menuBar()->addMenu(QStringLiteral("&Hilfe"));
  help->setObjectName(QStringLiteral("mnuHilfe"));
  QAction* information = AddEntry(help, QStringLiteral("mnuBenutzerInformation"),
                                  QStringLiteral("Ben&utzer Information"));
  connect(information, &QAction::triggered, this, [this] { ShowUserInformation(); });
  mnuPruefbericht =
      AddEntry(help, QStringLiteral("mnuPruefbericht"), QStringLiteral("Prüfbericht &kopieren"));
  mnuPruefbericht->setEnabled(false);
  connect(mnuPruefbericht, &QAction::triggered, this, [this] { CopyReport(); });
  mnuPruefberichtSpeichern = AddEntry(help, QStringLiteral("mnuPruefberichtSpeichern"),
                                      QStringLiteral("Prüfbericht &speichern ..."));
  mnuPruefberichtSpeichern->setEnabled(false);
  connect(mnuPruefberichtSpeichern, &QAction::triggered, this, [this] { AskForReportFile(); });
  help->addSeparator();
  QAction* info = AddEntry(help, QStringLiteral("mnuInfo"), QStringLiteral("Inf&o..."));
  connect(info, &QAction::triggered, this,
          [this] { OpenSideWindow(new Form_Info(facts_(), this)); });
}

void Form_MKT_Test::AskForSchema(VsdKind kind) {
  auto* dlgKartoCheck = new QFileDialog(this, mnuSchema->title().remove(u'&'));
  dlgKartoCheck->setObjectName(QStringLiteral("dlgKartoCheck"));
  dlgKartoCheck->setFileMode(QFileDialog::ExistingFile);
  dlgKartoCheck->setNameFilter(SchemaNameFilter());
  connect(dlgKartoCheck, &QFileDialog::fileSelected, this, [this, kind](const QString& file) {
    if (flow_ != nullptr) flow_->LoadSchema(kind, file);
  });
  OpenSideWindow(dlgKartoCheck);
}

void Form_MKT_Test::ShowEgkInfo() {
  if (flow_ != nullptr) OpenSideWindow(new Form_egK_Info(flow_->CurrentEgkInfo(), this));
}

void Form_MKT_Test::ShowUserInformation() {
  auto* window = new Form_FirstUser(this);
  connect(window, &QDialog::finished, this, [this, window] {
    const bool ends = !window->ContinueFlag();
    if (ends && (flow_ == nullptr || flow_->MayClose(CloseSource::Program))) CloseNow();
  });
  OpenSideWindow(window);
}

void Form_MKT_Test::CopyReport() {
  QGuiApplication::clipboard()->setText(ReportText(makeReport_()));
  ShowStatusText(QStringLiteral("Der Prüfbericht wurde in die Zwischenablage kopiert"));
}

void Form_MKT_Test::AskForReportFile() {
  auto* dialog = new QFileDialog(this, mnuPruefberichtSpeichern->text().remove(u'&'));
  dialog->setObjectName(QStringLiteral("dlgPruefbericht"));
  dialog->setAcceptMode(QFileDialog::AcceptSave);
  dialog->setNameFilters({PdfFilter.toString(), TextFilter.toString()});
  dialog->setDefaultSuffix(QStringLiteral("pdf"));
  connect(dialog, &QFileDialog::filterSelected, dialog, [dialog](const QString& filter) {
    dialog->setDefaultSuffix(filter == PdfFilter ? QStringLiteral("pdf") : QStringLiteral("txt"));
  });
  dialog->selectFile(QStringLiteral("Prüfbericht KartoCheck"));
  connect(dialog, &QFileDialog::fileSelected, this, &Form_MKT_Test::SaveReportTo);
  OpenSideWindow(dialog);
}

void Form_MKT_Test::SaveReportTo(const QString& name) {
  QSaveFile file(name);
  file.setDirectWriteFallback(true);
  const ReportFormat format = IsPdfName(name) ? WriteReportPdf : WriteReportText;
  if (file.open(QIODevice::WriteOnly) && SaveReport(makeReport_(), format, file)) {
    return ShowStatusText(u"Der Prüfbericht wurde gespeichert: " + QFileInfo(name).fileName());
  }
  boxes_.Tell(Icon::Exclamation, Dialogs::Title.toString(),
              Lines({u"Der Prüfbericht konnte nicht gespeichert werden:", file.errorString()}));
}

}  // namespace kartocheck
