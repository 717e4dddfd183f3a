#include "ui/main_window/data_frame.h"

#include <QStringList>

#include <gtest/gtest.h>
#include <ostream>
#include <vector>

#include "support/printing.h"
#include "support/sentence_name.h"
#include "text/lines.h"

namespace kartocheck::test {
namespace {

InsuredData AllElements() {
  InsuredData data;
  for (const ElementDescription& element : ElementTable) {
    data[element.Which] = QString::fromLatin1(element.Key.data(), qsizetype(element.Key.size()));
  }
  return data;
}

// What is shown, in its order; the checksums never are.
const QStringList CardElements =
    QStringLiteral(
        "insurerName insurerNumber insuredNumber vknr status statusSupplement title firstName "
        "nameAffix lastName birthDate street countryCode postalCode town validUntil")
        .split(u' ');
const QStringList SupplementElements{QStringLiteral("readingDate"),
                                     QStringLiteral("approvalNumber")};

QString Lines(const QStringList& texts) {
  return texts.join(u"\r\n") + u"\r\n";
}

using Labels = std::vector<QStringView>;

const Labels KvkLabels{u"Krankenkassenname:",
                       u"Krankenkassennummer:",
                       u"Versichertennummer:",
                       u"VKNR:",
                       u"Versichertenstatus:",
                       u"Statusergänzung:",
                       u"Titel:",
                       u"Vorname:",
                       u"Namenszusatz:",
                       u"Familienname:",
                       u"Geburtsdatum:",
                       u"Straße:",
                       u"Wohnsitzländercode:",
                       u"Postleitzahl:",
                       u"Ortsname:",
                       u"Gültigkeitsdatum:",
                       u"Einlesedatum:",
                       u"Zulassungsnummer:"};

const Labels EgkLabels{u"Krankenkassenname:",
                       u"Krankenkassennummer:",
                       u"Versichertennummer:",
                       u"WOP:",
                       u"Versichertenstatus_RSA:",
                       u"Rechtskreis:",
                       u"Titel:",
                       u"Vorname:",
                       u"Namenszusatz:",
                       u"Familienname:",
                       u"Geburtsdatum:",
                       u"Straße:",
                       u"Wohnsitzländercode:",
                       u"Postleitzahl:",
                       u"Ortsname:",
                       u"Gültigkeit (Ende):",
                       u"Einlesedatum:",
                       u"Zulassungsnummer:"};

struct FrameRow {
  const char* sentence;
  bool egk;
  bool mobile;
  QStringView title;
  const Labels& labels;

  friend std::ostream& operator<<(std::ostream& out, const FrameRow& row) {
    return out << row.sentence;
  }
};

class DataFrameTest : public testing::TestWithParam<FrameRow> {};

TEST_P(DataFrameTest, TitleLabelsAndValues) {
  const FrameRow& row = GetParam();
  TerminalInfo info;
  info.DataRead = true;
  info.EgkData = row.egk;
  info.Reset95 = row.mobile;
  const DataFrame frame = DataFrameOf(info, AllElements());
  EXPECT_EQ(frame.title, row.title);
  EXPECT_EQ(Labels(frame.labels.begin(), frame.labels.end()), row.labels);
  QStringList values(frame.values.begin(), frame.values.end());
  values.removeAll(QString());
  EXPECT_EQ(values, row.mobile ? CardElements + SupplementElements : CardElements);
}

INSTANTIATE_TEST_SUITE_P(
    MainWindow, DataFrameTest,
    testing::ValuesIn(std::vector<FrameRow>{
        {"a KVK from the card", false, false, u"Krankenversicherten Kartendaten(Karte)", KvkLabels},
        {"a KVK record from a mobile terminal", false, true,
         u"Krankenversicherten Kartendaten(Mobil)", KvkLabels},
        {"an eGK from the card", true, false,
         u"eGK VSDaten(Karte) abgebildet auf die Krankenversicherten Kartendaten", EgkLabels},
        {"an eGK record from a mobile terminal", true, true,
         u"eGK VSDaten(Mobil) abgebildet auf die Krankenversicherten Kartendaten", EgkLabels},
    }),
    SentenceName());

TEST(DataFrameTest, WithoutDataTheTitleNamesNoSource) {
  for (const bool mobile : {false, true}) {
    TerminalInfo info;
    info.Reset95 = mobile;
    const DataFrame frame = DataFrameOf(info, {});
    EXPECT_EQ(frame.title, u"Krankenversicherten Kartendaten");
    EXPECT_EQ(Labels(frame.labels.begin(), frame.labels.end()), KvkLabels);
    for (const QString& value : frame.values) EXPECT_EQ(value, QString());
  }
}

TEST(DataFrameTest, TheEmptyFrame) {
  const DataFrame frame = EmptyDataFrame();
  EXPECT_EQ(frame.title, u"Krankenversicherten Kartendaten");
  EXPECT_EQ(Labels(frame.labels.begin(), frame.labels.end()), KvkLabels);
  for (const QString& value : frame.values) EXPECT_EQ(value, QString());
}

TEST(DataFrameTest, TextsAreShownAndCopiedAsTheyAre) {
  TerminalInfo info;
  info.DataRead = true;
  InsuredData insured;
  insured[Element::InsurerName] = QStringLiteral("Muster & Söhne && Co");
  insured[Element::LastName] = QStringLiteral("<b>Muster</b>&amp;<img src='x'>");
  const DataFrame frame = DataFrameOf(info, insured);
  EXPECT_EQ(frame.values[0], u"Muster & Söhne && Co");
  EXPECT_EQ(frame.values[9], u"<b>Muster</b>&amp;<img src='x'>");
  EXPECT_TRUE(ClipboardText(info, insured).startsWith(u"Muster & Söhne && Co\r\n"));
}

TEST(ClipboardTextTest, ACardsDataAreALineAnElement) {
  EXPECT_EQ(ClipboardText({}, AllElements()), Lines(CardElements));
}

TEST(ClipboardTextTest, AMobileTerminalsDataHaveTheSupplementWithoutItsChecksum) {
  TerminalInfo info;
  info.Reset95 = true;
  EXPECT_EQ(ClipboardText(info, AllElements()), Lines(CardElements + SupplementElements));
}

TEST(ClipboardTextTest, ALineBreakInAnElementMakesNoLine) {
  for (const QStringView lineBreak : {u"\r\n", u"\n", u"\r", u"\v", u"\f", u"\x85", u"\x2028"}) {
    InsuredData insured = AllElements();
    insured[Element::InsurerName] = u"Muster" + lineBreak + u"kasse";
    insured[Element::ApprovalNumber] = lineBreak + u"DENRV" + lineBreak;
    TerminalInfo info;
    QString text = ClipboardText(info, insured);
    EXPECT_TRUE(text.startsWith(u"Muster kasse\r\n"));
    EXPECT_EQ(text.count(u"\r\n"), 16);
    info.Reset95 = true;
    text = ClipboardText(info, insured);
    EXPECT_TRUE(text.endsWith(u"\r\n DENRV \r\n"));
    EXPECT_EQ(text.count(u"\r\n"), 18);
    EXPECT_EQ(OneLine(text.remove(QStringLiteral("\r\n"))), text) << "no other break is left";
  }
}

TEST(ClipboardTextTest, AnEmptySlotStillGivesItsLines) {
  TerminalInfo info;
  EXPECT_EQ(ClipboardText(info, {}), QStringLiteral("\r\n").repeated(CardElements.size()));
  info.Reset95 = true;
  EXPECT_EQ(ClipboardText(info, {}), QStringLiteral("\r\n").repeated(DataRowCount));
}

}  // namespace
}  // namespace kartocheck::test
