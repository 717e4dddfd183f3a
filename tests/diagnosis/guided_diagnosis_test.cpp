#include "diagnosis/guided_diagnosis.h"

#include <gtest/gtest.h>
#include <ostream>
#include <string>
#include <vector>

#include "support/fake_dialogs.h"
#include "support/printing.h"
#include "support/sentence_name.h"

namespace kartocheck::test {
namespace {

constexpr QStringView CableQuestion =
    u"Haben Sie das Norva Chipkartenterminal mit dem \r\n"
    u"Anschlußkabel für die serielle Schnittstelle RS 232 \r\n"
    u"(KBV Spezifikation beachten) ohne weitere Verlängerungskabel \r\n"
    u"und Adapter mit Ihrem PC verbunden? ";

constexpr QStringView CableAdvice =
    u"Schalten Sie bitte Ihren PC aus und schließen Sie \r\n"
    u"das Norva Chipkartenterminal nur über das KBV konforme \r\n"
    u"Kommunikationskabel an den PC an. Beachten Sie dazu \r\n"
    u"unbedingt die Dokumentation Ihres Systemlieferanten und \r\n"
    u"PC-Herstellers. ";

constexpr QStringView PowerQuestion =
    u"Haben Sie das Norva Chipkartenterminal mit dem \r\n"
    u"mitgelieferten Steckernetzteil an die Netzdose \r\n"
    u"angeschlossen bzw. haben Sie den Handy-Kartenleser \r\n"
    u"eingeschaltet? ";

constexpr QStringView PowerAdvice =
    u"Schließen Sie das Norva Chipkartenterminal mit dem \r\n"
    u"mitgelieferten Steckernetzteil an die Netzsteckdose an \r\n"
    u"bzw. schalten Sie den Handy-Kartenleser ein. ";

constexpr QStringView FormatQuestion =
    u"Haben Sie am Norva Chipkartenterminal das Ausgabeformat auf\r\n"
    u"PC-ASN.1 bzw. PC-Festformat gestellt? ";

constexpr QStringView FormatAdvice =
    u"Damit Kartendaten vom Rechner (PC) gelesen werden können, \r\n"
    u"ist der Chipkartenleser auf das entsprechende Ausgabemedium \r\n"
    u"PC-ASN.1 bzw. PC-Festformat einzustellen. Stellen Sie jetzt \r\n"
    u"das entsprechende Anzeigeformat ein. \r\n"
    u"Hauptmenü/Unterpunkt \\4 Ausgabemedium";

constexpr QStringView BaudQuestion =
    u"Haben Sie am Norva Chipkartenterminal die richtige \r\n"
    u"Baudrate (9600,e,8,1) eingestellt? ";

constexpr QStringView BaudAdvice =
    u"Stellen Sie jetzt am Norva Chipkartenterminal die richtige \r\n"
    u"Baudrate (9600,e,8,1) ein. \r\n"
    u"\r\n"
    u"Hauptmenü/Unterpunkt \\964 Service\\Konfiguration\\Baudrate SIO-0.\r\n"
    u"9600,e,8,1 einstellen.";

constexpr QStringView ClosingText = u"Es ist keine weitere Fehlerquelle bekannt.\r\n";

ShownBox AskedBox(QStringView text) {
  return {.title = QStringLiteral(" KartoCheck Diagnose "),
          .text = text.toString(),
          .icon = Icon::Question,
          .isQuestion = true,
          .buttons = Buttons::YesNo,
          .preselected = Answer::Yes};
}

ShownBox ToldBox(Icon icon, QStringView text) {
  return {.title = QStringLiteral(" KartoCheck Diagnose "), .text = text.toString(), .icon = icon};
}

ShownBox Advice(QStringView text) {
  return ToldBox(Icon::Critical, text);
}

struct PathRow {
  const char* sentence;
  std::vector<Answer> answers;
  std::vector<ShownBox> boxes;
  std::vector<QString> steps;
  const char* end;  // what the questions lead to

  friend std::ostream& operator<<(std::ostream& out, const PathRow& row) {
    return out << row.sentence;
  }
};

std::string Describe(const ShownBox& box) {
  return '[' + box.title.toStdString() + "] icon " + std::to_string(static_cast<int>(box.icon)) +
         (box.isQuestion ? " buttons " + std::to_string(static_cast<int>(box.buttons)) +
                               " default " + std::to_string(static_cast<int>(box.preselected))
                         : std::string(" OK")) +
         ": " + box.text.toStdString();
}

std::vector<std::string> Describe(const std::vector<ShownBox>& boxes) {
  std::vector<std::string> texts;
  for (const ShownBox& box : boxes) texts.push_back(Describe(box));
  return texts;
}

class GuidedDiagnosisTest : public testing::TestWithParam<PathRow> {};

TEST_P(GuidedDiagnosisTest, Path) {
  const PathRow& row = GetParam();
  const HintTexts hints;
  FakeDialogs dialogs;
  dialogs.answers.assign(row.answers.begin(), row.answers.end());
  std::vector<QString> steps;
  std::vector<std::string> ends;
  RunGuidedDiagnosis({.hints = hints,
                      .dialogs = dialogs,
                      .showStep = [&](const QString& step) { steps.push_back(step); },
                      .checkPort = [&] { ends.emplace_back("port check"); },
                      .showTerminalStatus = [&] { ends.emplace_back("terminal status"); }});
  EXPECT_EQ(Describe(dialogs.boxes), Describe(row.boxes));
  EXPECT_TRUE(dialogs.answers.empty());
  EXPECT_EQ(steps, row.steps);
  EXPECT_EQ(ends, std::vector<std::string>{row.end});
}

const QString Cable = QStringLiteral("Anschlußkabel");
const QString Power = QStringLiteral("Stromversorgung");
const QString Format = QStringLiteral("Ausgabeformat");
const QString Baud = QStringLiteral("Baudrate");

constexpr auto Yes = Answer::Yes;
constexpr auto No = Answer::No;

// A box that is closed without a button counts as No, or as Cancel.
constexpr auto Cancel = Answer::Cancel;

INSTANTIATE_TEST_SUITE_P(
    AnswerPaths, GuidedDiagnosisTest,
    testing::Values(PathRow{"a wrong cable ends without a port check: the PC is to be switched off",
                            {No},
                            {AskedBox(CableQuestion), Advice(CableAdvice)},
                            {Cable},
                            "terminal status"},
                    PathRow{"any answer but Yes to the cable",
                            {Cancel},
                            {AskedBox(CableQuestion), Advice(CableAdvice)},
                            {Cable},
                            "terminal status"},
                    PathRow{"no power",
                            {Yes, No},
                            {AskedBox(CableQuestion), AskedBox(PowerQuestion), Advice(PowerAdvice)},
                            {Cable, Power},
                            "port check"},
                    PathRow{"any answer but Yes to the power",
                            {Yes, Cancel},
                            {AskedBox(CableQuestion), AskedBox(PowerQuestion), Advice(PowerAdvice)},
                            {Cable, Power},
                            "port check"},
                    PathRow{"the wrong output format",
                            {Yes, Yes, No},
                            {AskedBox(CableQuestion), AskedBox(PowerQuestion),
                             AskedBox(FormatQuestion), Advice(FormatAdvice)},
                            {Cable, Power, Format},
                            "port check"},
                    PathRow{"the wrong baud rate",
                            {Yes, Yes, Yes, No},
                            {AskedBox(CableQuestion), AskedBox(PowerQuestion),
                             AskedBox(FormatQuestion), AskedBox(BaudQuestion), Advice(BaudAdvice)},
                            {Cable, Power, Format, Baud},
                            "port check"},
                    PathRow{
                        "no fault is left: no port check",
                        {Yes, Yes, Yes, Yes},
                        {AskedBox(CableQuestion), AskedBox(PowerQuestion), AskedBox(FormatQuestion),
                         AskedBox(BaudQuestion), ToldBox(Icon::Exclamation, ClosingText)},
                        {Cable, Power, Format, Baud},
                        "terminal status"}),
    SentenceName());

}  // namespace
}  // namespace kartocheck::test
