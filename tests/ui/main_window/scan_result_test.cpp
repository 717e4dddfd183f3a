#include "ui/main_window/scan_result.h"

#include <gtest/gtest.h>

#include "support/printing.h"

// What the result window shows after a scan.

namespace kartocheck::test {
namespace {

class ScanResultTest : public testing::Test {
 protected:
  ScanResult Result(int furtherCount = 0) { return ScanResultOf(terminals, ports, furtherCount); }

  static void ExpectEmpty(const ScanResultRow& row) {
    EXPECT_EQ(row.text, u"");
    EXPECT_EQ(row.number, u"");
    EXPECT_FALSE(row.showsKey);
    EXPECT_FALSE(row.isCentered);
  }

  PerSlot<TerminalInfo> terminals;
  PerSlot<PortEntry> ports;
};

TEST_F(ScanResultTest, ATerminalIsToldWithItsBaudRate) {
  terminals[1].Answered = true;
  ports[1].BaudText = u"9600";
  const ScanResult result = Result();
  EXPECT_EQ(result.rows[0].text,
            u"An COM         Chipkartenleser gefunden. Baudrate: 9600     Baud.");
  EXPECT_EQ(result.rows[0].number, u"1");
  EXPECT_FALSE(result.rows[0].showsKey);
  for (const std::size_t row : {1U, 2U, 3U}) ExpectEmpty(result.rows[row]);
  EXPECT_EQ(result.summary, u"");
}

TEST_F(ScanResultTest, ABaudRateKeepsItsPadding) {
  const std::pair<const char16_t*, const char16_t*> rows[] = {
      {u"", u"An COM         Chipkartenleser gefunden. Baudrate:          Baud."},
      {u"115200", u"An COM         Chipkartenleser gefunden. Baudrate: 115200   Baud."},
      {u"123456789", u"An COM         Chipkartenleser gefunden. Baudrate: 12345678 Baud."},
  };
  terminals[4].Answered = true;
  for (const auto& [baud, text] : rows) {
    ports[4].BaudText = baud;
    EXPECT_EQ(Result().rows[3].text, text);
  }
}

TEST_F(ScanResultTest, AVirtualPortIsToldInPlaceOfTheBaudRate) {
  terminals[2].Answered = true;
  terminals[2].UsbVirtualCom = true;
  ports[2].BaudText = u"9600";
  const ScanResult result = Result();
  EXPECT_EQ(result.rows[1].text,
            u"An COM         Chipkartenleser gefunden. USB Gerät (Virtueller COM port)");
  EXPECT_EQ(result.rows[1].number, u"2");
}

TEST_F(ScanResultTest, ASilentTerminalIsPossible) {
  ports[3].ScanResult = -10;
  const ScanResult result = Result();
  EXPECT_EQ(result.rows[2].text,
            u"An COM         Chipkartenleser möglich. Mit               Taste fortfahren.");
  EXPECT_EQ(result.rows[2].number, u"3");
  EXPECT_TRUE(result.rows[2].showsKey);
  for (const std::size_t row : {0U, 1U, 3U}) ExpectEmpty(result.rows[row]);
}

TEST_F(ScanResultTest, AnAnswerCountsMoreThanACode) {
  terminals[1].Answered = true;
  ports[1].ScanResult = -10;
  const ScanResultRow row = Result().rows[0];
  EXPECT_TRUE(row.text.startsWith(u"An COM         Chipkartenleser gefunden."));
  EXPECT_FALSE(row.showsKey);
}

TEST_F(ScanResultTest, OtherCodesGiveNoRow) {
  for (const int code : {0, 1, -1, -8, -11, -127, -128}) {
    for (int slot = 1; slot <= 4; ++slot) ports[slot].ScanResult = code;
    EXPECT_EQ(Result().rows[0].text, u"") << code;
    EXPECT_EQ(Result().rows[1].text, u"Keinen Chipkartenleser gefunden!") << code;
  }
}

TEST_F(ScanResultTest, NothingAnywhereIsToldInTheSecondRow) {
  const ScanResult result = Result();
  EXPECT_EQ(result.rows[1].text, u"Keinen Chipkartenleser gefunden!");
  EXPECT_EQ(result.rows[1].number, u"");
  EXPECT_TRUE(result.rows[1].isCentered);
  for (const std::size_t row : {0U, 2U, 3U}) ExpectEmpty(result.rows[row]);
  EXPECT_EQ(result.summary, u"");
}

TEST_F(ScanResultTest, TheFurtherPortsSlotHasNoRow) {
  terminals[5].Answered = true;
  EXPECT_EQ(Result().rows[1].text, u"Keinen Chipkartenleser gefunden!");
}

TEST_F(ScanResultTest, FurtherTerminalsAreCounted) {
  const ScanResult alone = Result(2);
  EXPECT_EQ(alone.summary, u"2 Chipkartenleser gefunden.\r\nSiehe Schnittstellen weitere ...");
  for (const ScanResultRow& row : alone.rows) ExpectEmpty(row);

  ports[1].ScanResult = -10;
  EXPECT_EQ(Result(1).summary,
            u"1 weitere(n) Chipkartenleser gefunden.\r\nSiehe Schnittstellen weitere ...");
  terminals[1].Answered = true;
  EXPECT_EQ(Result(3).summary,
            u"3 weitere(n) Chipkartenleser gefunden.\r\nSiehe Schnittstellen weitere ...");
  EXPECT_EQ(Result(0).summary, u"");
}

}  // namespace
}  // namespace kartocheck::test
