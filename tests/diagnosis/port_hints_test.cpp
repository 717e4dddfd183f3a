#include "diagnosis/port_hints.h"

#include <gtest/gtest.h>
#include <ostream>

#include "support/printing.h"
#include "support/sentence_name.h"

namespace kartocheck::test {
namespace {

struct Row {
  const char* sentence;
  PortTrouble trouble;
  QStringView hint;

  friend std::ostream& operator<<(std::ostream& out, const Row& row) { return out << row.sentence; }
};

class PortHintTest : public testing::TestWithParam<Row> {};

TEST_P(PortHintTest, SaysWhatToDo) {
  EXPECT_EQ(PortHint(GetParam().trouble), GetParam().hint);
}

INSTANTIATE_TEST_SUITE_P(
    Diagnosis, PortHintTest,
    testing::Values(
        Row{"nothing is in the way", {}, u""},
        Row{"the card is held",
            {.Kind = PortTroubleKind::CardHeld},
            u"Ein anderes Programm benutzt die Karte im Kartenleser. Beenden Sie es und versuchen "
            u"Sie es noch einmal."},
        Row{"a group may open the device",
            {.Kind = PortTroubleKind::NotPermitted,
             .Devices = {QStringLiteral("/dev/ttyS0")},
             .Group = QStringLiteral("dialout")},
            u"Sie dürfen /dev/ttyS0 nicht öffnen. Lassen Sie sich in die Gruppe \"dialout\" "
            u"aufnehmen und melden Sie sich neu an."},
        Row{"a group may open several devices",
            {.Kind = PortTroubleKind::NotPermitted,
             .Devices = {QStringLiteral("/dev/ttyS0"), QStringLiteral("/dev/ttyUSB0")},
             .Group = QStringLiteral("dialout")},
            u"Sie dürfen /dev/ttyS0, /dev/ttyUSB0 nicht öffnen. Lassen Sie sich in die Gruppe "
            u"\"dialout\" aufnehmen und melden Sie sich neu an."},
        Row{"no group may open the device",
            {.Kind = PortTroubleKind::NotPermitted, .Devices = {QStringLiteral("/dev/ttyS0")}},
            u"Sie dürfen /dev/ttyS0 nicht öffnen. Bitten Sie Ihre Systemverwaltung um dieses "
            u"Recht."},
        Row{"the card does not answer",
            {.Kind = PortTroubleKind::MuteCard},
            u"Die Karte im Kartenleser antwortet nicht. Stecken Sie sie richtig herum ein und "
            u"säubern Sie den Chip; eine KVK liest nur ein Kartenterminal."},
        Row{"the reader was unplugged",
            {.Kind = PortTroubleKind::ReaderGone},
            u"Der Kartenleser wurde während der Benutzung abgezogen. Stecken Sie ihn wieder an und "
            u"versuchen Sie es noch einmal."}),
    SentenceName());

TEST(PortHintsTest, EveryTroubleHasItsOwn) {
  QStringList hints;
  for (int kind = 1; kind <= static_cast<int>(ctapi::LastPortTrouble); ++kind) {
    hints.append(PortHint({.Kind = static_cast<PortTroubleKind>(kind)}));
    EXPECT_FALSE(hints.back().isEmpty()) << kind;
  }
  EXPECT_EQ(hints.removeDuplicates(), 0);
}

TEST(PortHintsTest, AreOneForEachTroubleInTheirOrder) {
  const PortTrouble first{.Kind = PortTroubleKind::CardHeld};
  const PortTrouble second{.Kind = PortTroubleKind::NoService};
  EXPECT_EQ(PortHints({first, second}), (QStringList{PortHint(first), PortHint(second)}));
  EXPECT_EQ(PortHints({}), QStringList());
}

}  // namespace
}  // namespace kartocheck::test
