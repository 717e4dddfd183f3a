#include "kvk/model_correction.h"

#include <gtest/gtest.h>
#include <ostream>
#include <vector>

#include "support/printing.h"
#include "support/sentence_name.h"

namespace kartocheck::test {
namespace {

struct CorrectionRow {
  const char* sentence;
  QStringView approvalNumber;
  KvkFormat format;
  int pn;
  QStringView productCode;  // before
  QStringView expectedModel;
  QStringView expectedManufacturer;
  QStringView expectedProductCode;

  friend std::ostream& operator<<(std::ostream& out, const CorrectionRow& row) {
    return out << row.sentence;
  }
};

class CorrectModelTest : public testing::TestWithParam<CorrectionRow> {};

TEST_P(CorrectModelTest, Record) {
  const CorrectionRow& row = GetParam();
  TerminalInfo info;
  info.ModelName = u"before";
  info.ManufacturerId = u"OTHER";
  info.ProductCode = row.productCode;
  CorrectModel(row.approvalNumber, row.format, Port(row.pn), info);
  EXPECT_EQ(info.ModelName.Trimmed(), row.expectedModel);
  EXPECT_EQ(info.ManufacturerId, row.expectedManufacturer);
  EXPECT_EQ(info.ProductCode, row.expectedProductCode);
}

constexpr auto Template = KvkFormat::Template;
constexpr auto Fixed = KvkFormat::Fixed;

INSTANTIATE_TEST_SUITE_P(Kvk, CorrectModelTest,
                         testing::ValuesIn(std::vector<CorrectionRow>{
                             {"103 with product code PKTD: a Delta, on a serial port too", u"103",
                              Template, 1, u"PKTD ", u"Serie Delta", u"DENRV", u"PKTD "},
                             {"103 in the fixed format with product code PKTD", u"103", Fixed, 1,
                              u"PKTD ", u"Serie Delta", u"DENRV", u"PKTD "},
                             {"103 on a serial port: an F or a Delta, the product code stays",
                              u"103", Template, 1, u"PKTDM", u"Modell Vedra F/Serie Delta",
                              u"DENRV", u"PKTDM"},
                             {"103 in the fixed format on a serial port", u"103", Fixed, 256,
                              u"     ", u"Modell Vedra F/Serie Delta", u"DENRV", u"     "},
                             {"103 on the first USB device: a Delta", u"103", Template, 8192,
                              u"PKT-S", u"Serie Delta", u"DENRV", u"PKTD "},
                             {"103 on the last USB device in the fixed format: a Delta", u"103",
                              Fixed, 8447, u"     ", u"Serie Delta", u"DENRV", u"PKTD "},
                             {"103 before the USB devices", u"103", Template, 8191, u"PKT-S",
                              u"Modell Vedra F/Serie Delta", u"DENRV", u"PKT-S"},
                             {"103 behind the USB devices", u"103", Template, 8448, u"PKT-S",
                              u"Modell Vedra F/Serie Delta", u"DENRV", u"PKT-S"},
                             {"the product code is compared as it stands", u"103", Template, 1,
                              u"pktd ", u"Modell Vedra F/Serie Delta", u"DENRV", u"pktd "},
                             {"109 in a template: a Sigma with its product code", u"109", Template,
                              1, u"PKTD ", u"Serie Sigma", u"DENRV", u"PKT-S"},
                             {"109 in the fixed format leaves the product code", u"109", Fixed, 1,
                              u"PKTD ", u"Serie Sigma", u"DENRV", u"PKTD "},
                             {"another number in a template", u"110", Template, 1, u"PKTD ",
                              u"Kein Vedra F/Serie Sigma", u"?????", u"PKTD "},
                             {"another number in the fixed format", u"000", Fixed, 8192, u"PKTD ",
                              u"Kein Vedra F/Serie Sigma", u"?????", u"PKTD "},
                             {"an empty number", u"", Fixed, 1, u"PKTD ",
                              u"Kein Vedra F/Serie Sigma", u"?????", u"PKTD "},
                             {"a number with a blank is another number", u"103 ", Template, 1,
                              u"PKTD ", u"Kein Vedra F/Serie Sigma", u"?????", u"PKTD "},
                         }),
                         SentenceName());

}  // namespace
}  // namespace kartocheck::test
