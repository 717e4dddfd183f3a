#include "ui/main_window/test_report.h"

#include <QDir>
#include <QRegularExpression>
#include <QXmlStreamReader>

#include <gtest/gtest.h>
#include <set>

#include "diagnosis/port_hints.h"
#include "platform/simulated/ct_api_simulated.h"
#include "platform/simulated/serial_port_simulated.h"
#include "simulator/scenario.h"
#include "support/fake_display.h"
#include "support/fake_event_loop.h"
#include "support/fake_port_directory.h"
#include "support/link_fixture.h"
#include "support/open_module.h"
#include "support/printing.h"
#include "ui/main_window/port_flow.h"

// The test report, over bundled practices of simulated terminals.

namespace kartocheck::test {
namespace {

// Agrees to everything but to another try.
class AgreeableUser final : public Dialogs {
 public:
  void Tell(Icon /*icon*/, const QString& /*title*/, const QString& /*text*/) override { ++told; }
  [[nodiscard]] Answer Ask(const Question& question) override {
    if (question.buttons == Buttons::OkCancel) return Answer::Cancel;
    return question.text.contains(u"Noch einmal") ? Answer::No : Answer::Yes;
  }

  int told = 0;
};

QString FileOf(const QString& scenario) {
  return QStringLiteral(KARTOCHECK_SCENARIOS "/") + scenario + u".json";
}

class Practice {
 public:
  explicit Practice(const QString& scenario)
      : practice_(ctapi::LoadScenario(FileOf(scenario).toStdU16String())) {
    const PortDirectorySimulated simulated(practice_);
    for (const int pn : {1, 2, 3, 4, 8192}) {
      directory.identifications[pn] = simulated.IdentificationOf(Port(pn));
    }
  }

  void ReadEveryPort() {
    for (const int pn : {1, 2, 3, 4}) ports.Scan(Port(pn));
    ports.SweepFurtherPorts();
    if (!module.FurtherPorts.empty()) ports.Scan(module.FurtherPorts.front());
  }

  [[nodiscard]] TestReport MakeReport() const {
    return TestReportOf(QDateTime(QDate(2031, 11, 11), QTime(14, 7, 9)),
                        {.version = QStringLiteral("1.2.3"),
                         .library = QStringLiteral("/opt/libCTNRV32.so"),
                         .system = QStringLiteral("Testsystem 1"),
                         .lastFailure = lastFailure},
                        module, recorder);
  }

  [[nodiscard]] QString Report() const { return ReportText(MakeReport()); }

 private:
  ctapi::SimulatedPractice practice_;
  CtApiSimulated api_{practice_};
  SerialPortSimulated serial_{practice_};
  FakeEventLoop eventLoop_;
  AgreeableUser user_;
  FakeDisplay display_;

 public:
  QString lastFailure;
  FakePortDirectory directory;
  RunRecorder recorder{user_, display_, [] { return QTime(14, 7); }};
  OpenModule module{{.api = api_,
                     .dialogs = recorder,
                     .display = recorder,
                     .eventLoop = eventLoop_,
                     .serial = serial_,
                     .directory = directory,
                     .terminate = [](const auto&) { throw Terminated{}; }}};
  ViewState view;
  PortFlow ports{module, recorder, view};
};

QStringList Scenarios() {
  QStringList names;
  for (const QString& file :
       QDir(QStringLiteral(KARTOCHECK_SCENARIOS)).entryList({QStringLiteral("*.json")})) {
    names.append(file.chopped(5));
  }
  return names;
}

// Shorter texts of a card, as "1" or "D", stand in words and numbers that come from elsewhere.
constexpr qsizetype ShortestTelling = 4;

// Every text of the card or stored record that was read into a slot.
std::set<QString> CardTexts(const Bas_MKT_Test& module, int slot) {
  std::set<QString> texts;
  const auto add = [&texts](const QString& text) {
    if (text.trimmed().size() >= ShortestTelling) texts.insert(text.trimmed());
  };
  for (int element = 0; element < ElementCount; ++element) {
    add(module.InsuredOf(slot)[static_cast<Element>(element)]);
  }
  const EgkData& egk = module.EgkOf(slot);
  add(egk.iccsn);
  add(egk.statusText);
  add(egk.stored.statusText);
  add(egk.stored.storedDate);
  add(egk.stored.convertedDate);
  add(egk.stored.approvalNumber);
  add(egk.stored.approval.tlv);
  for (const VsdDocument& document : egk.documents) {
    for (const VsdField& field : document.fields) add(field.value);
    QXmlStreamReader reader(document.xmlText);
    while (!reader.atEnd()) {
      if (reader.readNext() == QXmlStreamReader::Characters) add(reader.text().toString());
    }
  }
  return texts;
}

QStringList TextsOfCardsIn(const QString& report, const std::set<QString>& cardTexts) {
  QStringList found;
  for (const QString& text : cardTexts) {
    if (report.contains(text, Qt::CaseInsensitive)) found.append(text);
  }
  return found;
}

TEST(TestReportTest, HoldsNothingOfAnyCard) {
  std::size_t searched = 0;
  for (const QString& scenario : Scenarios()) {
    Practice practice(scenario);
    practice.ReadEveryPort();
    const QString report = practice.Report();
    for (int slot = 1; slot <= SlotCount; ++slot) {
      const std::set<QString> texts = CardTexts(practice.module, slot);
      EXPECT_EQ(TextsOfCardsIn(report, texts), QStringList()) << scenario.toStdString();
      searched += texts.size();
    }
  }
  EXPECT_GE(searched, 300U);
}

TEST(TestReportTest, TheSearchFindsWhatItLooksFor) {
  Practice practice(QStringLiteral("praxis"));
  practice.ReadEveryPort();
  practice.recorder.ShowStatusText(u"x" + practice.module.Insured[1][Element::LastName] + u"y");
  const QStringList found = TextsOfCardsIn(practice.Report(), CardTexts(practice.module, 1));
  EXPECT_EQ(found, QStringList{practice.module.Insured[1][Element::LastName]});
}

TEST(TestReportTest, TellsTheProgramFirst) {
  const Practice practice(QStringLiteral("leer"));
  EXPECT_TRUE(
      practice.Report().startsWith(u"Prüfbericht KartoCheck\r\n"
                                   u"  Erstellt:               11.11.2031 14:07:09\r\n"
                                   u"  Version:                1.2.3\r\n"
                                   u"  CT-API-Bibliothek:      /opt/libCTNRV32.so\r\n"
                                   u"  Betriebssystem:         Testsystem 1\r\n"
                                   u"  Validierung:            ausgeschaltet\r\n"
                                   u"  PD:                     kein Schema\r\n"
                                   u"  VD:                     kein Schema\r\n"
                                   u"  GVD:                    kein Schema\r\n"
                                   u"\r\nSchnittstellen\r\nCOM 1\r\n"))
      << practice.Report().toStdString();
}

TEST(TestReportTest, TellsWhyTheProgramEndedTheLastTime) {
  Practice practice(QStringLiteral("leer"));
  EXPECT_FALSE(practice.Report().contains(u"Letzter Abbruch"));
  practice.lastFailure = QStringLiteral("05.03.2031 09:07:01: Ein Grund.");
  EXPECT_TRUE(
      practice.Report().contains(u"  Letzter Abbruch:        05.03.2031 09:07:01: Ein Grund.\r\n"));
}

TEST(TestReportTest, TellsWhatIsValidated) {
  Practice practice(QStringLiteral("leer"));
  practice.module.SetValidation(true);
  practice.module.Validation.schemas[VsdKind::Vd].SetText(QStringLiteral("<x/>"));
  const QString report = practice.Report();
  EXPECT_TRUE(report.contains(u"  Validierung:            eingeschaltet\r\n"));
  EXPECT_TRUE(report.contains(u"  PD:                     kein Schema\r\n"));
  EXPECT_TRUE(report.contains(u"  VD:                     Schema geladen\r\n"));
}

QString Section(const QString& report, const QString& from, const QString& to) {
  const qsizetype start = report.indexOf(u"\r\n" + from + u"\r\n") + 2;
  return report.mid(start, report.indexOf(u"\r\n" + to + u"\r\n", start) + 2 - start);
}

TEST(TestReportTest, TellsPortsAndTerminals) {
  Practice practice(QStringLiteral("praxis"));
  practice.ReadEveryPort();
  const QString report = practice.Report();
  EXPECT_EQ(Section(report, QStringLiteral("COM 1"), QStringLiteral("COM 2")),
            u"COM 1\r\n"
            u"  Anschluss:              vorhanden\r\n"
            u"  Leitungssignal:         ja\r\n"
            u"  Ergebnis der Prüfung:   0\r\n"
            u"  Serielle Schnittstelle: Ist verfügbar!\r\n"
            u"  Baudrate:               9600 Baud\r\n"
            u"  PKT Modell:             Serie Gamma\r\n"
            u"  Hersteller:             DENRV\r\n"
            u"  CT-Typ:                 PKT-G\r\n"
            u"  Software Version:       1.20\r\n"
            u"  Ausgabemedium:          PC (ASN-1)\r\n"
            u"  Terminal:               stationär\r\n"
            u"  Daten:                  eGK gelesen\r\n");
  EXPECT_TRUE(Section(report, QStringLiteral("COM 2"), QStringLiteral("COM 3"))
                  .endsWith(u"  Daten:                  KVK gelesen\r\n"));
  EXPECT_TRUE(Section(report, QStringLiteral("COM 3"), QStringLiteral("COM 4"))
                  .contains(u"  Terminal:               mobil\r\n"));
  EXPECT_EQ(
      Section(report, QStringLiteral("COM 4"), QStringLiteral("USB Device 1 (CTAPI pn=8192)")),
      u"COM 4\r\n"
      u"  Anschluss:              nicht vorhanden\r\n"
      u"  Leitungssignal:         nein\r\n"
      u"  Ergebnis der Prüfung:   1\r\n"
      u"  Serielle Schnittstelle: Ist nicht vorhanden bzw. wird vom System benutzt!\r\n"
      u"  Terminal:               keine Antwort\r\n"
      u"  Daten:                  nicht gelesen\r\n");
  EXPECT_TRUE(report.contains(u"  Schnittstelle:          USB (CTAPI pn=8192)\r\n"))
      << report.toStdString();
  EXPECT_TRUE(report.contains(u"  PnP Device ID:          USB\\VID_FFFE&PID_0001\\SIM0001\r\n"));
  EXPECT_TRUE(report.contains(u"\r\nWeitere Schnittstellen\r\n  USB Device 1 (CTAPI pn=8192)\r\n"));
}

TEST(TestReportTest, APortThatWasNotCheckedSaysSoAndNothingElse) {
  Practice practice(QStringLiteral("praxis"));
  practice.ports.Scan(Port(1));
  const QString report = practice.Report();
  EXPECT_EQ(Section(report, QStringLiteral("COM 2"), QStringLiteral("COM 3")),
            u"COM 2\r\n"
            u"  Anschluss:              nicht geprüft\r\n");
  EXPECT_TRUE(Section(report, QStringLiteral("COM 1"), QStringLiteral("COM 2"))
                  .contains(u"  Anschluss:              vorhanden\r\n"));
}

TEST(TestReportTest, GivesEachPortATerminalAFindingAndAHint) {
  Practice practice(QStringLiteral("praxis"));
  practice.directory.troubles = {{4, NotPermitted}};
  practice.ReadEveryPort();
  const TestReport report = practice.MakeReport();
  ASSERT_EQ(report.ports.size(), 5U);
  EXPECT_EQ(report.ports[0].terminal, u"DENRV, Serie Gamma, 1.20");
  EXPECT_EQ(report.ports[0].finding, u"eGK gelesen");
  EXPECT_EQ(report.ports[3].presence, u"nicht vorhanden");
  EXPECT_EQ(report.ports[3].terminal, QString());
  EXPECT_EQ(report.ports[3].finding, u"Ist nicht vorhanden bzw. wird vom System benutzt!");
  EXPECT_EQ(report.ports[3].hint, PortHint(NotPermitted));
}

TEST(TestReportTest, TellsThatThereIsNoFurtherPort) {
  Practice practice(QStringLiteral("leer"));
  practice.ReadEveryPort();
  EXPECT_TRUE(practice.Report().contains(u"\r\nWeitere Schnittstellen\r\n  keine\r\n\r\n"));
}

TEST(TestReportTest, TellsWhyPortsAndReadersCannotBeUsed) {
  Practice practice(QStringLiteral("leer"));
  practice.directory.troubles = {{2, NotPermitted}, {8193, CardHeld}};
  practice.directory.troublesWithoutReader = {NotPermitted, NoService};
  const QString report = practice.Report();
  EXPECT_TRUE(Section(report, QStringLiteral("COM 2"), QStringLiteral("COM 3"))
                  .endsWith(u"  Hinweis:                " + PortHint(NotPermitted) + u"\r\n"));
  EXPECT_FALSE(
      Section(report, QStringLiteral("COM 3"), QStringLiteral("COM 4")).contains(u"Hinweis:"));
  EXPECT_TRUE(report.contains(
      u"\r\nWeitere Schnittstellen\r\n  keine\r\n"
      u"  Hinweis:                " +
      PortHint(NotPermitted) + u"\r\n  Hinweis:                " + PortHint(NoService) + u"\r\n"))
      << report.toStdString();
  practice.module.FurtherPorts = {Port(8193)};
  practice.module.UseFurtherPort(Port(8193));
  const QString found = practice.Report();
  EXPECT_TRUE(found.contains(u"  Hinweis:                " + PortHint(CardHeld) + u"\r\n"));
  EXPECT_FALSE(found.contains(PortHint(NoService)));
}

TEST(TestReportTest, TellsAPortThatAnotherProgramHolds) {
  Practice practice(QStringLiteral("leer"));
  practice.module.Ports[2].PortPresent = true;
  practice.module.Ports[2].PortError = true;
  practice.module.Ports[2].IsChecked = true;
  EXPECT_TRUE(Section(practice.Report(), QStringLiteral("COM 2"), QStringLiteral("COM 3"))
                  .startsWith(u"COM 2\r\n  Anschluss:              gesperrt\r\n"));
}

TEST(TestReportTest, EndsWithTheRun) {
  Practice practice(QStringLiteral("leer"));
  practice.recorder.ShowStatusText(QStringLiteral("Der MKT Status wird angezeigt"));
  practice.recorder.Tell(Icon::Critical, QStringLiteral(" KartoCheck "),
                         QStringLiteral(" Erste Zeile \r\n\r\n Dritte Zeile "));
  EXPECT_TRUE(
      practice.Report().endsWith(u"\r\nStatustexte und Meldungen\r\n"
                                 u"14:07:00  Der MKT Status wird angezeigt\r\n"
                                 u"14:07:00  Meldung (KartoCheck):\r\n"
                                 u"          Erste Zeile \r\n"
                                 u"          \r\n"
                                 u"           Dritte Zeile\r\n"))
      << practice.Report().toStdString();
}

TEST(TestReportTest, TellsTheStatusTextsOfAScan) {
  Practice practice(QStringLiteral("praxis"));
  practice.ReadEveryPort();
  const QString report = practice.Report();
  for (const auto* text : {u"14:07:00  Programm prüft die serielle Schnittstelle COM 3\r\n",
                           u"14:07:00  Die Krankenversichertendaten werden gelesen\r\n",
                           u"14:07:00  Persoenliche Versichertendaten werden dekomprimiert.\r\n",
                           u"Antwort: Ja\r\n"}) {
    EXPECT_TRUE(report.contains(QStringView(text))) << QStringView(text).toString().toStdString();
  }
}

}  // namespace
}  // namespace kartocheck::test
