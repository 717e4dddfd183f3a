#include "diagnosis/insert_card_prompt.h"

#include <gtest/gtest.h>
#include <ostream>

#include "support/printing.h"
#include "support/sentence_name.h"

namespace kartocheck::test {
namespace {

constexpr const char16_t* Fixed =
    u" Bitte eine Krankenversichertenkarte in \r\n"
    u" Kartenkontaktiereinheit 1 einführen. \r\n"
    u"\r\n"
    u" Das Chipkartenterminal verwendet die Schnittstelle: \r\n"
    u"\r\n";

constexpr const char16_t* Mobile =
    u" Bitte eine Krankenversichertenkarte in \r\n"
    u" Kartenkontaktiereinheit 1 einführen. \r\n"
    u"\r\n"
    u" Ist am Vedra Handy F der PC-Mode auf \r\n"
    u" Handy lesen eingestellt oder am Serie Sigma Gerät \r\n"
    u" die Betriebsart Mobil PC bzw. Mob. PC+Weiche oder \r\n"
    u" am Serie Delta Gerät die Betriebsart Mobil eingestellt, \r\n"
    u" so wird der gelesene Datensatz durch \r\n"
    u" diese Testsoftware automatisch gelöscht! \r\n"
    u"\r\n"
    u" Das Chipkartenterminal verwendet die Schnittstelle: \r\n"
    u"\r\n";

struct PromptRow {
  const char* sentence;
  Question (*prompt)(Port port, bool mobile);
  Port port;
  bool mobile;
  const char16_t* fixedLines;
  const char16_t* end;
  Answer preselected;

  friend std::ostream& operator<<(std::ostream& out, const PromptRow& row) {
    return out << row.sentence;
  }
};

class InsertCardPromptTest : public testing::TestWithParam<PromptRow> {};

TEST_P(InsertCardPromptTest, Box) {
  const PromptRow& row = GetParam();
  const Question question = row.prompt(row.port, row.mobile);
  EXPECT_EQ(question.title, u" KartoCheck ");
  EXPECT_EQ(question.text, QString(QStringView(row.fixedLines) + QStringView(row.end)));
  EXPECT_EQ(question.icon, Icon::Exclamation);
  EXPECT_EQ(question.buttons, Buttons::OkCancel);
  EXPECT_EQ(question.preselected, row.preselected);
  EXPECT_EQ(question.consequence, Consequence::None);
}

constexpr auto Ok = Answer::Ok;
constexpr auto Cancel = Answer::Cancel;

INSTANTIATE_TEST_SUITE_P(
    Diagnosis, InsertCardPromptTest,
    testing::Values(PromptRow{"a fixed terminal on COM 1", InsertCardPrompt, Port(1), false, Fixed,
                              u" COM  1", Cancel},
                    PromptRow{"a fixed terminal on COM 4", InsertCardPrompt, Port(4), false, Fixed,
                              u" COM  4", Cancel},
                    PromptRow{"a fixed terminal on COM 256", InsertCardPrompt, Port(256), false,
                              Fixed, u" COM  256", Cancel},
                    PromptRow{"a mobile terminal on COM 2", InsertCardPrompt, Port(2), true, Mobile,
                              u" COM  2", Cancel},
                    PromptRow{"the first USB device", InsertCardPrompt, Port(8192), false, Fixed,
                              u" USB Device 1", Cancel},
                    PromptRow{"the last USB device", InsertCardPrompt, Port(8447), true, Mobile,
                              u" USB Device 256", Cancel},
                    PromptRow{"in the diagnosis a fixed terminal is offered OK",
                              InsertCardPromptOfDiagnosis, Port(1), false, Fixed, u"1) ", Ok},
                    PromptRow{"in the diagnosis a mobile terminal is offered Cancel",
                              InsertCardPromptOfDiagnosis, Port(3), true, Mobile, u"3) ", Cancel},
                    PromptRow{"in the diagnosis of a further port", InsertCardPromptOfDiagnosis,
                              Port(8192), false, Fixed, u"8192) ", Ok}),
    SentenceName());

}  // namespace
}  // namespace kartocheck::test
