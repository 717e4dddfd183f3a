#include "kvk/dispatcher_dialogue.h"

#include "support/dialogue.h"
#include "support/printing.h"

namespace kartocheck::test {

namespace {

constexpr QStringView Before = u"before";

QString Describe(const ShownBox& box) {
  static constexpr std::array<QStringView, 4> Icons{u"information", u"question", u"exclamation",
                                                    u"critical"};
  static constexpr std::array<QStringView, 4> Answers{u"Ok", u"Cancel", u"Yes", u"No"};
  QString text = u'[' + box.title + u"] " + Icons.at(static_cast<std::size_t>(box.icon));
  if (box.isQuestion) {
    text += box.buttons == Buttons::YesNo ? u" Yes/No, " : u" Ok/Cancel, ";
    text += Answers.at(static_cast<std::size_t>(box.preselected));
  }
  return text + u": " + box.text;
}

std::vector<QString> Describe(const std::vector<ShownBox>& boxes) {
  std::vector<QString> texts;
  for (const ShownBox& box : boxes) texts.push_back(Describe(box));
  return texts;
}

}  // namespace

SlotReading::SlotReading(CtApi& api, const KnownTerminal& terminal, int port)
    : pn(port), link(api) {
  info.ModelName = Before;
  info.DisplayText = Before;
  info.ManufacturerId = terminal.manufacturerId;
  info.Reset95 = terminal.mobile;
  info.Reset9501 = terminal.reset9501;
  info.SelectRefused = terminal.selectRefused;
  info.DataRead = true;
  info.EgkData = true;
  for (int i = 0; i < ElementCount; ++i) {
    insured[static_cast<Element>(i)] = QStringLiteral("earlier person");
  }
}

ReadOutcome SlotReading::Read() {
  return ReadCardData({link.session, Port(pn), info, insured, egk, validation, link.dialogs,
                       link.display, link.eventLoop});
}

void SlotReading::ExpectEmptySlot() const {
  for (int i = 0; i < ElementCount; ++i) {
    EXPECT_EQ(insured[static_cast<Element>(i)], QString()) << "element " << i;
  }
  EXPECT_TRUE(egk.IsEmpty());
  EXPECT_FALSE(info.DataRead);
  EXPECT_FALSE(info.EgkData);
}

ShownBox Message(Icon icon, const QString& text) {
  return {.title = QStringLiteral(" KartoCheck "), .text = text, .icon = icon};
}

ShownBox YesNo(Icon icon, const QString& text, Answer preselected) {
  return {.title = QStringLiteral(" KartoCheck "),
          .text = text,
          .icon = icon,
          .isQuestion = true,
          .buttons = Buttons::YesNo,
          .preselected = preselected};
}

std::string CardDialogue(const std::string& middle, int pn) {
  return "open " + std::to_string(pn) + R"(
    > 20 11 00 00 00
    < 90 00
    > 20 12 01 00 01 01
    < 90 00
    > 20 11 01 00
    < 90 00
    )" + middle +
         R"(
    > 20 11 00 00 00
    < 90 00
    close
  )";
}

std::string StoredDialogue(const std::string& middle) {
  return R"(open 1
    > 20 11 00 00 00
    < 95 00
    > 20 12 01 00 01 01
    < 90 00
    )" + middle +
         R"(
    > 20 11 00 00 00
    < 95 00
    close
  )";
}

void ExpectOutcome(const DispatcherRow& row) {
  Dialogue dialogue(row.script);
  SlotReading reading(dialogue, row.terminal, row.pn);
  FakeDialogs& dialogs = reading.link.dialogs;
  dialogs.answers.assign(row.answers.begin(), row.answers.end());

  EXPECT_EQ(reading.Read(), row.result);

  EXPECT_EQ(Describe(dialogs.boxes), Describe(row.boxes));
  EXPECT_TRUE(dialogs.answers.empty()) << "every answer was asked for";
  EXPECT_FALSE(reading.link.session.IsOpen());
  EXPECT_EQ(reading.info.ModelName.Trimmed(), row.model.value_or(Before));
  EXPECT_EQ(reading.info.DisplayText.Trimmed(), row.displayText.value_or(Before));
  if (row.insurer.isEmpty()) {
    reading.ExpectEmptySlot();
  } else {
    EXPECT_EQ(reading.insured[Element::InsurerName], row.insurer);
    EXPECT_NE(reading.insured[Element::ReadingDate], u"earlier person");
    EXPECT_TRUE(reading.info.DataRead);
    EXPECT_FALSE(reading.info.EgkData);
  }
}

}  // namespace kartocheck::test
