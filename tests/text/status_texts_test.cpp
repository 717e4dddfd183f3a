#include "text/status_texts.h"

#include <gtest/gtest.h>

#include "support/printing.h"

namespace kartocheck::test {
namespace {

TEST(StatusTextsTest, EveryTextAsTheUserReadsIt) {
  EXPECT_EQ(status_text::ScanCom.at(0), u"Programm prüft die serielle Schnittstelle COM 1");
  EXPECT_EQ(status_text::ScanCom.at(1), u"Programm prüft die serielle Schnittstelle COM 2");
  EXPECT_EQ(status_text::ScanCom.at(2), u"Programm prüft die serielle Schnittstelle COM 3");
  EXPECT_EQ(status_text::ScanCom.at(3), u"Programm prüft die serielle Schnittstelle COM 4");
  EXPECT_EQ(status_text::ReaderFound, u"An COM         Chipkartenleser gefunden.");
  EXPECT_EQ(status_text::ReaderPossible,
            u"An COM         Chipkartenleser möglich. Mit               Taste fortfahren.");
  EXPECT_EQ(status_text::NoReader, u"Keinen Chipkartenleser gefunden!");
  EXPECT_EQ(status_text::ScanResult, u"Das KartoCheck Ergebnis wird angezeigt");
  EXPECT_EQ(status_text::Reading, u"Die Krankenversichertendaten werden gelesen");
  EXPECT_EQ(status_text::Shown, u"Die Krankenversichertendaten werden angezeigt");
  EXPECT_EQ(status_text::ReadPrompt, u"Die Krankenversichertendaten lesen");
  EXPECT_EQ(status_text::FieldsReset, u"Die Anzeigefelder wurden zurückgesetzt");
  EXPECT_EQ(status_text::Copied,
            u"Die Krankenversichertendaten wurden in die Zwischenablage kopiert");
  EXPECT_EQ(status_text::TerminalStatus, u"Der MKT Status wird angezeigt");
  EXPECT_EQ(status_text::DialogCheck, u"Überprüft die ausgewählte Schnittstelle im Dialog");
}

}  // namespace
}  // namespace kartocheck::test
