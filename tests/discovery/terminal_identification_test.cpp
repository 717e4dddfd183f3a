#include "discovery/terminal_identification.h"

#include <gtest/gtest.h>
#include <optional>
#include <ostream>
#include <vector>

#include "support/dialogue.h"
#include "support/link_fixture.h"
#include "support/printing.h"
#include "support/sentence_name.h"

namespace kartocheck::test {
namespace {

// What stands in the records afterwards. A text or flag that is not given is as it was before.
struct Outcome {
  Identification result = Identification::Finished;
  bool answered = true;
  std::optional<QStringView> model{};
  bool reset95 = false;
  std::optional<bool> reset9501{};
  std::optional<bool> usbVirtualCom{};
  std::optional<QStringView> portText{};
  std::optional<QStringView> availText{};
  std::optional<QStringView> manufacturerId{};
  std::optional<QStringView> productCode{};
  std::optional<QStringView> softwareVersion{};
};

struct IdentifyRow {
  const char* sentence;
  int pn;
  const char* script;
  Outcome outcome;

  friend std::ostream& operator<<(std::ostream& out, const IdentifyRow& row) {
    return out << row.sentence;
  }
};

constexpr QStringView Before = u"old";

class IdentifyTest : public testing::TestWithParam<IdentifyRow> {
 protected:
  // The flags that are left alone show when the identification runs from both of their values.
  static void Check(bool flagsBefore) {
    SCOPED_TRACE(flagsBefore ? "flags set before" : "flags clear before");
    const IdentifyRow& row = GetParam();
    const Outcome& expected = row.outcome;
    Dialogue dialogue(row.script);
    Link link(dialogue);
    TerminalInfo info{.ModelName = Before,
                      .DisplayText = Before,
                      .SerialSettings = Before,
                      .ManufacturerId = Before,
                      .ProductCode = Before,
                      .SoftwareVersion = Before,
                      .Answered = flagsBefore,
                      .SelectRefused = flagsBefore,
                      .Reset95 = flagsBefore,
                      .DataRead = flagsBefore,
                      .EgkData = flagsBefore,
                      .UsbVirtualCom = flagsBefore,
                      .Reset9501 = flagsBefore};
    PortEntry port;
    port.PortText = Before;
    port.AvailText = Before;

    EXPECT_EQ(IdentifyTerminal(link.session, Port(row.pn), info, port), expected.result);

    EXPECT_EQ(info.Answered, expected.answered);
    EXPECT_EQ(info.ModelName.Trimmed(), expected.model.value_or(Before));
    EXPECT_EQ(info.Reset95, expected.reset95);
    EXPECT_EQ(info.Reset9501, expected.reset9501.value_or(flagsBefore));
    EXPECT_EQ(info.UsbVirtualCom, expected.usbVirtualCom.value_or(flagsBefore));
    EXPECT_EQ(port.PortText.Trimmed(), expected.portText.value_or(Before));
    EXPECT_EQ(port.AvailText.Trimmed(), expected.availText.value_or(Before));
    EXPECT_EQ(info.ManufacturerId.Trimmed(), expected.manufacturerId.value_or(Before));
    EXPECT_EQ(info.ProductCode.Trimmed(), expected.productCode.value_or(Before));
    EXPECT_EQ(info.SoftwareVersion.Trimmed(), expected.softwareVersion.value_or(Before));
    // Never touched here.
    EXPECT_EQ(info.DisplayText.Trimmed(), Before);
    EXPECT_EQ(info.SerialSettings.Trimmed(), Before);
    EXPECT_EQ(info.SelectRefused, flagsBefore);
    EXPECT_EQ(info.DataRead, flagsBefore);
    EXPECT_EQ(info.EgkData, flagsBefore);
    EXPECT_TRUE(link.dialogs.boxes.empty());
    EXPECT_FALSE(link.session.IsOpen()) << "opening is the caller's";
  }
};

TEST_P(IdentifyTest, Records) {
  Check(false);
  Check(true);
}

const std::vector<IdentifyRow> FirstQuery{
    {"no answer to the first query: its code, nothing else",
     1,
     R"(> 20 13 00 81 00
        < -> -10)",
     {.result = Identification::ExchangeFailed, .answered = false}},
    {"an answer of one byte to the first query",
     1,
     R"(> 20 13 00 81 00
        < 90)",
     {.result = Identification::ExchangeFailed, .answered = false}},
    {"a host error at the first query",
     8192,
     R"(> 20 13 00 81 00
        < -> -127)",
     {.result = Identification::ExchangeFailed, .answered = false}},
    {"6900: a Gamma in the A-compatible mode",
     1,
     R"(> 20 13 00 81 00
        < 69 00)",
     {.model = u"Modell Vedra G im Vedra A-kompatibel Mode"}},
    {"an unknown status word",
     1,
     R"(> 20 13 00 81 00
        < 6E 00)",
     {.answered = false, .model = u"Modell nicht bekannt!"}},
    {"9001 is an unknown status word",
     1,
     R"(> 20 13 00 81 00
        < 81 01 00 90 01)",
     {.answered = false, .model = u"Modell nicht bekannt!"}},
    {"data in front of the status word do not matter",
     1,
     R"(> 20 13 00 81 00
        < 90 00 69 00)",
     {.model = u"Modell Vedra G im Vedra A-kompatibel Mode"}},
};

INSTANTIATE_TEST_SUITE_P(FirstQuery, IdentifyTest, testing::ValuesIn(FirstQuery), SentenceName());

const std::vector<IdentifyRow> ProductCodes{
    {"9000, but no manufacturer data",
     1,
     R"(> 20 13 00 81 00
        < 81 02 40 50 90 00
        > 20 13 00 46 00
        < -> -8)",
     {.result = Identification::ExchangeFailed, .answered = false}},
    {"9000, but the manufacturer object has only 14 bytes: texts stay",
     1,
     R"(> 20 13 00 81 00
        < 90 00
        > 20 13 00 46 00
        < 46 0E 'DENRVPKTD 2.1.' 90 00)",
     {.result = Identification::NoManufacturerData, .answered = false}},
    {"9000, but the manufacturer query is not known",
     1,
     R"(> 20 13 00 81 00
        < 90 00
        > 20 13 00 46 00
        < 6D 00)",
     {.result = Identification::NoManufacturerData, .answered = false}},
    {"PKT-G: a Gamma, no USB probe, no port text",
     1,
     R"(> 20 13 00 81 00
        < 90 00
        > 20 13 00 46 00
        < 46 0F 'DENRVPKT-G1.002' 90 00)",
     {.model = u"Serie Gamma",
      .manufacturerId = u"DENRV",
      .productCode = u"PKT-G",
      .softwareVersion = u"1.002"}},
    {"PKT-S: a Sigma, no USB probe, no port text",
     8192,
     R"(> 20 13 00 81 00
        < 90 00
        > 20 13 00 46 00
        < 46 0F 'DENRVPKT-S1.002' 90 00)",
     {.model = u"Serie Sigma",
      .manufacturerId = u"DENRV",
      .productCode = u"PKT-S",
      .softwareVersion = u"1.002"}},
    {"a product code in lower case matches and is kept as reported",
     2,
     R"(> 20 13 00 81 00
        < 90 00
        > 20 13 00 46 00
        < 46 0F 'DENRVpkt-g1.002' 90 00)",
     {.model = u"Serie Gamma",
      .manufacturerId = u"DENRV",
      .productCode = u"pkt-g",
      .softwareVersion = u"1.002"}},
    {"an unknown product code",
     1,
     R"(> 20 13 00 81 00
        < 90 00
        > 20 13 00 46 00
        < 46 0F 'DENRVPKTX 1.002' 90 00)",
     {.model = u"Unbekannt",
      .manufacturerId = u"DENRV",
      .productCode = u"PKTX",
      .softwareVersion = u"1.002"}},
    {"the blank of PKTD counts",
     1,
     R"(> 20 13 00 81 00
        < 90 00
        > 20 13 00 46 00
        < 46 0F 'DENRV PKTD1.002' 90 00)",
     {.model = u"Unbekannt",
      .manufacturerId = u"DENRV",
      .productCode = u" PKTD",
      .softwareVersion = u"1.002"}},
    {"PKTO: an Omega, USB probe and port text, no reset test",
     1,
     R"(> 20 13 00 81 00
        < 90 00
        > 20 13 00 46 00
        < 46 0F 'DENRVPKTO 1.002' 90 00
        > 20 71 00 01 00
        < 6D 00)",
     {.model = u"Serie Omega",
      .usbVirtualCom = false,
      .portText = u"COM (CTAPI pn=1)",
      .manufacturerId = u"DENRV",
      .productCode = u"PKTO",
      .softwareVersion = u"1.002"}},
    {"an Omega of the second maker with its version",
     8447,
     R"(> 20 13 00 81 00
        < 90 00
        > 20 13 00 46 00
        < 46 0F 'NVRHCPKTO 1.002' D7 36 '...............................' '003014159' '..............' 90 00
        > 20 71 00 01 00
        < -> -10)",
     {.model = u"Serie Omega",
      .usbVirtualCom = false,
      .portText = u"USB (CTAPI pn=8447)",
      .manufacturerId = u"NVRHC",
      .productCode = u"PKTO",
      .softwareVersion = u"V 003.014.159"}},
};

INSTANTIATE_TEST_SUITE_P(ProductCode, IdentifyTest, testing::ValuesIn(ProductCodes),
                         SentenceName());

// The reset test of the Delta series; the USB probe follows in each row.
const std::vector<IdentifyRow> DeltaResets{
    {"PKTD, reset fails: flags stay as identification found them",
     1,
     R"(> 20 13 00 81 00
        < 90 00
        > 20 13 00 46 00
        < 46 0F 'DENRVPKTD 1.002' 90 00
        > 20 11 00 00 00
        < -> -10
        > 20 71 00 01 00
        < 6D 00)",
     {.model = u"Serie Delta",
      .usbVirtualCom = false,
      .portText = u"COM (CTAPI pn=1)",
      .manufacturerId = u"DENRV",
      .productCode = u"PKTD",
      .softwareVersion = u"1.002"}},
    {"PKTD, 9500: mobile",
     1,
     R"(> 20 13 00 81 00
        < 90 00
        > 20 13 00 46 00
        < 46 0F 'DENRVPKTD 1.002' 90 00
        > 20 11 00 00 00
        < 95 00
        > 20 71 00 01 00
        < 6D 00)",
     {.model = u"Serie Delta",
      .reset95 = true,
      .reset9501 = false,
      .usbVirtualCom = false,
      .portText = u"COM (CTAPI pn=1)",
      .manufacturerId = u"DENRV",
      .productCode = u"PKTD",
      .softwareVersion = u"1.002"}},
    {"PKTD, 9501: Delta-2 mobile with the extended record",
     4,
     R"(> 20 13 00 81 00
        < 90 00
        > 20 13 00 46 00
        < 46 0F 'DENRVPKTD 1.002' 90 00
        > 20 11 00 00 00
        < 95 01
        > 20 71 00 01 00
        < 6D 00)",
     {.model = u"Norva Delta-2 mobil",
      .reset95 = true,
      .reset9501 = true,
      .usbVirtualCom = false,
      .portText = u"COM (CTAPI pn=4)",
      .manufacturerId = u"DENRV",
      .productCode = u"PKTD",
      .softwareVersion = u"1.002"}},
    {"PKTD, any other status word: stationary",
     1,
     R"(> 20 13 00 81 00
        < 90 00
        > 20 13 00 46 00
        < 46 0F 'DENRVPKTD 1.002' 90 00
        > 20 11 00 00 00
        < 90 00
        > 20 71 00 01 00
        < 6D 00)",
     {.model = u"Serie Delta",
      .reset9501 = false,
      .usbVirtualCom = false,
      .portText = u"COM (CTAPI pn=1)",
      .manufacturerId = u"DENRV",
      .productCode = u"PKTD",
      .softwareVersion = u"1.002"}},
    {"PKTDM, 9500: stays a Delta",
     1,
     R"(> 20 13 00 81 00
        < 90 00
        > 20 13 00 46 00
        < 46 0F 'NVRHCPKTDM1.002' 90 00
        > 20 11 00 00 00
        < 95 00
        > 20 71 00 01 00
        < 6D 00)",
     {.model = u"Serie Delta",
      .reset95 = true,
      .reset9501 = false,
      .usbVirtualCom = false,
      .portText = u"COM (CTAPI pn=1)",
      .manufacturerId = u"NVRHC",
      .productCode = u"PKTDM",
      .softwareVersion = u"1.002"}},
    {"PKTDM, 9501: Delta-3 mobile",
     8193,
     R"(> 20 13 00 81 00
        < 90 00
        > 20 13 00 46 00
        < 46 0F 'DENRVPKTDM1.002' 90 00
        > 20 11 00 00 00
        < 95 01
        > 20 71 00 01 00
        < 6D 00)",
     {.model = u"Norva Delta-3 mobil",
      .reset95 = true,
      .reset9501 = true,
      .usbVirtualCom = false,
      .portText = u"USB (CTAPI pn=8193)",
      .manufacturerId = u"DENRV",
      .productCode = u"PKTDM",
      .softwareVersion = u"1.002"}},
    {"pktdm in lower case, 9501: Delta-3 mobile",
     1,
     R"(> 20 13 00 81 00
        < 90 00
        > 20 13 00 46 00
        < 46 0F 'denrvpktdm1.002' 90 00
        > 20 11 00 00 00
        < 95 01
        > 20 71 00 01 00
        < 6D 00)",
     {.model = u"Norva Delta-3 mobil",
      .reset95 = true,
      .reset9501 = true,
      .usbVirtualCom = false,
      .portText = u"COM (CTAPI pn=1)",
      .manufacturerId = u"denrv",
      .productCode = u"pktdm",
      .softwareVersion = u"1.002"}},
};

INSTANTIATE_TEST_SUITE_P(DeltaReset, IdentifyTest, testing::ValuesIn(DeltaResets), SentenceName());

const std::vector<IdentifyRow> OlderTerminals{
    {"6D00, reset fails: not answered",
     1,
     R"(> 20 13 00 81 00
        < 6D 00
        > 20 11 00 00 00
        < -> -8)",
     {.answered = false}},
    {"6D00, 9500 on a serial port",
     256,
     R"(> 20 13 00 81 00
        < 6D 00
        > 20 11 00 00 00
        < 95 00)",
     {.model = u"Modell Vedra F/Serie Delta/Sigma",
      .reset95 = true,
      .portText = u"COM (CTAPI pn=256)"}},
    {"6D00, 9500 on a USB device is recorded as a Delta",
     8200,
     R"(> 20 13 00 81 00
        < 6D 00
        > 20 11 00 00 00
        < 95 00)",
     {.model = u"Serie Delta",
      .reset95 = true,
      .portText = u"USB (CTAPI pn=8200)",
      .manufacturerId = u"DENRV",
      .productCode = u"PKTD"}},
    {"6D00, 9500 on a port of unknown kind",
     300,
     R"(> 20 13 00 81 00
        < 6D 00
        > 20 11 00 00 00
        < 95 00)",
     {.reset95 = true, .portText = u"? (CTAPI pn=300)"}},
    {"6D00, 9000: an older model",
     1,
     R"(> 20 13 00 81 00
        < 6D 00
        > 20 11 00 00 00
        < 90 00)",
     {.model = u"Modell Vedra A/B/C/D/E/F"}},
    {"6D00, 9501 counts as any other word: an older model",
     8192,
     R"(> 20 13 00 81 00
        < 6D 00
        > 20 11 00 00 00
        < 95 01)",
     {.model = u"Modell Vedra A/B/C/D/E/F"}},
    {"6F00 with manufacturer data: an H",
     1,
     R"(> 20 13 00 81 00
        < 6F 00
        > 20 13 00 46 00
        < 46 0F 'DENRVPKTH 0.900' 90 00)",
     {.model = u"Modell PKT H CT-BCS (0.9)",
      .manufacturerId = u"DENRV",
      .productCode = u"PKTH",
      .softwareVersion = u"0.900"}},
    {"6F00 without manufacturer data",
     1,
     R"(> 20 13 00 81 00
        < 6F 00
        > 20 13 00 46 00
        < 6D 00)",
     {.result = Identification::NoManufacturerData, .answered = false}},
    {"6F00, the manufacturer query fails",
     1,
     R"(> 20 13 00 81 00
        < 6F 00
        > 20 13 00 46 00
        < -> -128)",
     {.result = Identification::ExchangeFailed, .answered = false}},
};

INSTANTIATE_TEST_SUITE_P(OlderTerminal, IdentifyTest, testing::ValuesIn(OlderTerminals),
                         SentenceName());

struct UsbRow {
  const char* sentence;
  int pn;
  const char* answer;
  bool usbVirtualCom;
  QStringView portText;

  friend std::ostream& operator<<(std::ostream& out, const UsbRow& row) {
    return out << row.sentence;
  }
};

class UsbProbeTest : public testing::TestWithParam<UsbRow> {};

TEST_P(UsbProbeTest, FlagAndPortText) {
  const UsbRow& row = GetParam();
  for (const bool before : {false, true}) {
    const std::string script = std::string(R"(> 20 13 00 81 00
                                              < 90 00
                                              > 20 13 00 46 00
                                              < 46 0F 'DENRVPKTO 1.002' 90 00
                                              > 20 71 00 01 00
                                              < )") +
                               row.answer;
    Dialogue dialogue(script);
    Link link(dialogue);
    TerminalInfo info;
    info.UsbVirtualCom = before;
    PortEntry port;
    port.AvailText = u"9600 Baud";
    EXPECT_EQ(IdentifyTerminal(link.session, Port(row.pn), info, port), Identification::Finished);
    EXPECT_EQ(info.UsbVirtualCom, row.usbVirtualCom);
    EXPECT_EQ(port.PortText.Trimmed(), row.portText);
    const bool cleared = row.portText.startsWith(u"USB Virtuell");
    EXPECT_EQ(port.AvailText.Trimmed(), cleared ? QString() : QStringLiteral("9600 Baud"));
  }
}

INSTANTIATE_TEST_SUITE_P(
    Discovery, UsbProbeTest,
    testing::ValuesIn(std::vector<UsbRow>{
        {"a USB cable on port 3", 3, "12 01 00 00 00 00 00 00 00 00 02 90 00", true,
         u"USB Virtuell COM (CTAPI pn=3)"},
        {"more data behind the answer", 3, "12 01 00 00 00 00 00 00 00 00 02 FF FF 90 00", true,
         u"USB Virtuell COM (CTAPI pn=3)"},
        {"another status word", 3, "12 01 00 00 00 00 00 00 00 00 02 90 01", false,
         u"COM (CTAPI pn=3)"},
        {"another first byte", 3, "13 01 00 00 00 00 00 00 00 00 02 90 00", false,
         u"COM (CTAPI pn=3)"},
        {"another second byte", 3, "12 02 00 00 00 00 00 00 00 00 02 90 00", false,
         u"COM (CTAPI pn=3)"},
        {"another eleventh byte", 3, "12 01 00 00 00 00 00 00 00 00 03 90 00", false,
         u"COM (CTAPI pn=3)"},
        {"the 02 one byte early", 3, "12 01 00 00 00 00 00 00 00 02 00 90 00", false,
         u"COM (CTAPI pn=3)"},
        {"the 02 one byte late", 3, "12 01 00 00 00 00 00 00 00 00 00 02 90 00", false,
         u"COM (CTAPI pn=3)"},
        {"an answer that ends before the eleventh byte", 3, "12 01 00 00 00 00 00 00 00 00 90 00",
         false, u"COM (CTAPI pn=3)"},
        {"an answer of eight bytes", 3, "12 01 00 00 00 00 90 00", false, u"COM (CTAPI pn=3)"},
        {"a status word alone", 3, "90 00", false, u"COM (CTAPI pn=3)"},
        {"a failed exchange", 3, "-> -10", false, u"COM (CTAPI pn=3)"},
        {"a right answer with a failing code", 3, "12 01 00 00 00 00 00 00 00 00 02 90 00 -> -8",
         false, u"COM (CTAPI pn=3)"},
        {"a USB device says the same", 8192, "12 01 00 00 00 00 00 00 00 00 02 90 00", true,
         u"USB (CTAPI pn=8192)"},
    }),
    SentenceName());

TEST(ResetTerminalInfoTest, EmptiesTheTextsAndLeavesTheFlags) {
  TerminalInfo info{.ModelName = Before,
                    .DisplayText = Before,
                    .SerialSettings = Before,
                    .ManufacturerId = Before,
                    .ProductCode = Before,
                    .SoftwareVersion = Before,
                    .Answered = true,
                    .SelectRefused = true,
                    .Reset95 = true,
                    .DataRead = true,
                    .EgkData = true,
                    .UsbVirtualCom = true,
                    .Reset9501 = true};
  ResetTerminalInfo(info);
  EXPECT_TRUE(info.ModelName.IsBlank());
  EXPECT_TRUE(info.DisplayText.IsBlank());
  EXPECT_TRUE(info.SerialSettings.IsBlank());
  EXPECT_TRUE(info.ManufacturerId.IsBlank());
  EXPECT_TRUE(info.ProductCode.IsBlank());
  EXPECT_TRUE(info.SoftwareVersion.IsBlank());
  EXPECT_TRUE(info.Answered && info.SelectRefused && info.Reset95 && info.DataRead &&
              info.EgkData && info.UsbVirtualCom && info.Reset9501);
}

TEST(TerminalInfoTest, TheFieldsHaveTheirWidths) {
  const TerminalInfo info;
  EXPECT_EQ(info.ModelName.Padded().size(), 50);
  EXPECT_EQ(info.DisplayText.Padded().size(), 25);
  EXPECT_EQ(info.SerialSettings.Padded().size(), 10);
  EXPECT_EQ(info.ManufacturerId.Padded().size(), 5);
  EXPECT_EQ(info.ProductCode.Padded().size(), 5);
  EXPECT_EQ(info.SoftwareVersion.Padded().size(), 14);
  const PortEntry port;
  EXPECT_EQ(port.PortText.Padded().size(), 60);
  EXPECT_EQ(port.AvailText.Padded().size(), 15);
  EXPECT_EQ(port.BaudText.Padded().size(), 8);
}

}  // namespace
}  // namespace kartocheck::test
