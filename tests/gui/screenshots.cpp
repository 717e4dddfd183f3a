// Takes a picture of the window in each of its states: kartocheck_screenshots FOLDER [--dark].

#include <QAbstractButton>
#include <QAction>
#include <QApplication>
#include <QCheckBox>
#include <QDir>
#include <QMessageBox>
#include <QStyle>
#include <QStyleFactory>
#include <QTabWidget>
#include <QTimer>

#include <cstdio>

#include "gui/support/desktops.h"
#include "gui/support/practice.h"
#include "gui/support/program.h"
#include "gui/support/simulated_program.h"
#include "gui/support/window_visitor.h"
#include "ui/form_daten_info.h"
#include "ui/form_first_user.h"
#include "ui/form_info.h"
#include "ui/german_texts.h"
#include "ui/readable_style.h"

namespace kartocheck::test {
namespace {

class Album {
 public:
  explicit Album(const QDir& folder) : folder_(folder) {}

  void Add(QWidget& widget, const QString& name) {
    // Layouts inside of scroll areas settle in several rounds.
    for (int round = 0; round < 4; ++round) QCoreApplication::processEvents();
    const QString file = folder_.filePath(name + u".png");
    if (!widget.grab().save(file)) qFatal("cannot write %s", qPrintable(file));
  }

  // A picture of the next message box, which is then closed.
  void AddNextBox(const QString& name, QMessageBox::StandardButton answer) {
    QTimer::singleShot(0, qApp, [this, name, answer] {
      auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
      if (box == nullptr || box->button(answer) == nullptr) return AddNextBox(name, answer);
      Add(*box, name);
      box->button(answer)->click();
    });
  }

 private:
  QDir folder_;
};

// Answers every message box with Yes or OK.
class AgreeingUser {
 public:
  AgreeingUser() {
    QObject::connect(&timer_, &QTimer::timeout, [] {
      auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
      if (box == nullptr) return;
      QAbstractButton* yes = box->button(QMessageBox::Yes);
      (yes != nullptr ? yes : box->button(QMessageBox::Ok))->click();
    });
    timer_.start();
  }

 private:
  QTimer timer_;
};

void TakeDataFrame(Album& album) {
  Program program(practice::Identification(1) + practice::CardRead(1, practice::AnnesCard));
  album.Add(program.window, QStringLiteral("start"));
  program.library.beforeExchange = [&](int exchange) {
    if (exchange == 6) album.Add(program.window, QStringLiteral("lesen"));
  };
  program.Click(QStringLiteral("CmdB_MKt_Test_3"));
  album.Add(program.window, QStringLiteral("kvk_karte"));
  program.Click(QStringLiteral("CmdB_MKt_Test_2"));
  album.Add(program.window, QStringLiteral("mkt_status"));
}

void TakeMobileRecord(Album& album) {
  Program program(
      practice::MobileIdentification(3) + practice::MobileRead(3, practice::JoergsRecord),
      {.simulation = true});
  program.Click(QStringLiteral("Opti_Comx_2"));
  album.AddNextBox(QStringLiteral("frage_loeschen"), QMessageBox::Yes);
  program.Click(QStringLiteral("CmdB_MKt_Test_3"));
  album.Add(program.window, QStringLiteral("kvk_mobil"));
}

void TakeFrames(Album& album) {
  Program program;
  (void)program.window.ShowFrameX(0);
  program.window.ShowStatusText(QStringLiteral("Programm prüft die serielle Schnittstelle COM 2"));
  program.view.progress.Set(40);
  album.Add(program.window, QStringLiteral("warten"));
  (void)program.window.ShowFrameX(3);
  DataFrame frame = EmptyDataFrame();
  for (int row = 0; row < DataRowCount; ++row) {
    frame.values[static_cast<std::size_t>(row)] =
        QStringLiteral(
            "Lange Angabe mit Umlauten ÄÖÜäöüß & Zeichen <b>wie</b> diesen, die "
            "sich über mehr als eine Zeile zieht")
            .left(97);
  }
  program.view.data.Set(frame);
  album.Add(program.window, QStringLiteral("lange_werte"));
}

void TakeBoxes(Album& album) {
  Program program;
  album.AddNextBox(QStringLiteral("frage_beenden"), QMessageBox::No);
  program.window.close();
  const std::pair<Icon, QString> icons[] = {
      {Icon::Information, QStringLiteral("hinweis")},
      {Icon::Exclamation, QStringLiteral("warnung")},
      {Icon::Critical, QStringLiteral("fehler")},
  };
  for (const auto& [icon, name] : icons) {
    album.AddNextBox(name, QMessageBox::Ok);
    program.window.Boxes().Tell(
        icon, Dialogs::Title.toString(),
        QStringLiteral(" Lesen der Krankenversichertendaten von der Karte nicht möglich! \r\n"
                       " Kommunikationsfehler ! "));
  }
}

void TakeUserInformation(Album& album) {
  Form_FirstUser information(nullptr);
  information.show();
  album.Add(information, QStringLiteral("benutzerinformation"));
  information.close();
  Form_Info info({.version = QStringLiteral("0.1.0"),
                  .library = QStringLiteral("/usr/lib/kartocheck/libCTNRV32.so"),
                  .system = QStringLiteral("Debian GNU/Linux 12 (bookworm)")},
                 nullptr);
  info.show();
  album.Add(info, QStringLiteral("info"));
}

// The windows that the eGK button opens, on the data that are shown.
void TakeEgkInfo(Album& album, SimulatedProgram& program, const QString& name) {
  program.Click(QStringLiteral("cmdeGK"));
  QWidget& window = SideWindow(QStringLiteral("Form_egK_Info"));
  Screen screen(window);
  for (int kind = 0; kind < VsdKindCount; ++kind) {
    screen.Click(QStringLiteral("CmdB_VsdKind_%1").arg(kind));
    album.Add(window, name + QStringLiteral("_elemente_%1").arg(kind));
  }
  screen.Click(QStringLiteral("Command2"));
  album.Add(window, name + QStringLiteral("_xml"));
  screen.Find<QCheckBox>(QStringLiteral("Chck_Eingerueckt")).click();
  album.Add(window, name + QStringLiteral("_xml_eingerueckt"));
  screen.Click(QStringLiteral("Command4"));
  album.Add(window, name + QStringLiteral("_info"));
  album.AddNextBox(name + QStringLiteral("_hilfe"), QMessageBox::Ok);
  screen.Click(QStringLiteral("Command6"));
  window.close();
}

void TakeScan(Album& album) {
  SimulatedProgram program(QStringLiteral("praxis"), {.simulation = true});
  program.flow.SetValidation(true);
  LoadSchemas(program.module.Validation, {QStringLiteral(KARTOCHECK_SCHEMAS)});
  program.library.beforeExchange = [&](int exchange) {
    if (exchange == 20) album.Add(program.window, QStringLiteral("scan_laeuft"));
  };
  const WindowVisitor visitor(QStringLiteral("Form_DatenInfo"), [&](QWidget& window) {
    album.Add(window, QStringLiteral("scan_ergebnis"));
  });
  {
    const AgreeingUser user;
    program.Click(QStringLiteral("CmdB_MKt_Test_0"));
  }
  album.Add(program.window, QStringLiteral("scan_daten"));
  TakeEgkInfo(album, program, QStringLiteral("egk_karte"));
  program.Click(QStringLiteral("CmdB_MKt_Test_2"));
  auto& tabs = program.Find<QTabWidget>(QStringLiteral("TabStrip1"));
  for (int tab = 0; tab < tabs.count(); ++tab) {
    tabs.setCurrentIndex(tab);
    album.Add(program.window, QStringLiteral("scan_status_%1").arg(tab + 1));
  }
  program.Click(QStringLiteral("Opti_Comx_2"));
  program.Click(QStringLiteral("CmdB_MKt_Test_3"));
  album.Add(program.window, QStringLiteral("egk_mobil_daten"));
  TakeEgkInfo(album, program, QStringLiteral("egk_mobil"));
}

// Below the list of further ports, why there is no reader in it; in the status bar, why the card in
// a reader cannot be read.
void TakeHints(Album& album) {
  const QStringList hints{
      QStringLiteral("Sie dürfen /dev/ttyS0, /dev/ttyUSB0 nicht öffnen. Lassen Sie sich in die "
                     "Gruppe \"dialout\" aufnehmen und melden Sie sich neu an."),
      QStringLiteral(
          "Der Kartenleser-Dienst läuft nicht. Starten Sie ihn mit \"sudo systemctl start "
          "pcscd\"; fehlt er, installieren Sie die Pakete \"pcscd\" und \"libccid\"."),
  };
  Program program;
  program.view.hintsWithoutReader.Set(hints.mid(1));
  album.Add(program.window, QStringLiteral("hinweis_kein_leser"));
  program.view.hintsWithoutReader.Set(hints);
  album.Add(program.window, QStringLiteral("hinweise_kein_leser"));
  (void)program.window.ShowFrameX(2);
  album.Add(program.window, QStringLiteral("hinweise_mkt_status"));
  program.view.hintsWithoutReader.Set({});
  program.window.ShowStatusText(
      QStringLiteral("Ein anderes Programm benutzt die Karte im Kartenleser. Beenden Sie es und "
                     "versuchen Sie es noch einmal."));
  album.Add(program.window, QStringLiteral("hinweis_karte_belegt"));
  program.view.hintsWithoutReader.Set(hints);
  QCoreApplication::processEvents();
  program.window.resize(640, 400);
  album.Add(program.window, QStringLiteral("hinweise_kleines_fenster"));
}

// The first question of the diagnosis, and what is seen behind it.
void TakeDiagnosis(Album& album) {
  SimulatedProgram program(QStringLiteral("leer"));
  album.AddNextBox(QStringLiteral("diagnose_rat"), QMessageBox::Ok);
  QTimer::singleShot(0, qApp, [&] { album.Add(program.window, QStringLiteral("diagnose")); });
  album.AddNextBox(QStringLiteral("diagnose_frage"), QMessageBox::No);
  program.Click(QStringLiteral("CmdB_MKt_Test_1"));
}

void TakeScanResults(Album& album) {
  PerSlot<TerminalInfo> terminals;
  PerSlot<PortEntry> ports;
  const auto take = [&](int further, const QString& name) {
    Form_DatenInfo window(ScanResultOf(terminals, ports, further), nullptr);
    window.show();
    album.Add(window, name);
  };
  take(0, QStringLiteral("ergebnis_nichts"));
  take(2, QStringLiteral("ergebnis_nur_weitere"));
  terminals[1].Answered = true;
  ports[1].BaudText = u"9600";
  terminals[2].Answered = true;
  terminals[2].UsbVirtualCom = true;
  ports[3].ScanResult = -10;
  take(1, QStringLiteral("ergebnis_alles"));
  QFont large = QApplication::font();
  large.setPointSizeF(large.pointSizeF() * 1.8);
  const QFont before = QApplication::font();
  QApplication::setFont(large);
  take(1, QStringLiteral("ergebnis_grosse_schrift"));
  QApplication::setFont(before);
}

void TakeSchemaDialog(Album& album) {
  Program program;
  program.window.findChild<QAction*>(QStringLiteral("mnuSchema_0"))->trigger();
  QWidget& window = SideWindow(QStringLiteral("dlgKartoCheck"));
  album.Add(window, QStringLiteral("schema_laden"));
  window.close();
  album.AddNextBox(QStringLiteral("schema_fehler"), QMessageBox::Ok);
  program.flow.LoadSchema(VsdKind::Vd, QStringLiteral("/tmp/fehlt.xsd"));
}

int Run(const QStringList& arguments) {
  if (arguments.size() < 2) {
    std::fputs("usage: kartocheck_screenshots FOLDER [--dark]\n", stderr);
    return 2;
  }
  const QDir folder(arguments.at(1));
  if (!folder.mkpath(QStringLiteral("."))) qFatal("cannot make the folder");
  if (arguments.contains(QStringLiteral("--dark"))) {
    QApplication::setPalette(PaletteOf(Desktop::Dark));
  }
  Album album(folder);
  TakeDataFrame(album);
  TakeMobileRecord(album);
  TakeFrames(album);
  TakeBoxes(album);
  TakeUserInformation(album);
  TakeScan(album);
  TakeHints(album);
  TakeDiagnosis(album);
  TakeScanResults(album);
  TakeSchemaDialog(album);
  return 0;
}

}  // namespace
}  // namespace kartocheck::test

int main(int argc, char** argv) {
  QApplication application(argc, argv);
  kartocheck::InstallReadableStyle(QStringLiteral("fusion"));
  kartocheck::InstallGermanTexts(application);
  return kartocheck::test::Run(QApplication::arguments());
}
