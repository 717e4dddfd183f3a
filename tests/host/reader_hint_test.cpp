#include "platform/reader_hint.h"

#include <gtest/gtest.h>

#include "host/fake_pcsc.h"
#include "host/reader_trouble.h"

namespace ctapi::host {
namespace {

ReaderTrouble TroubleOf(test::FakePcsc& pcsc) {
  PcscService service(pcsc.Api());
  return FindReaderTrouble(service);
}

TEST(ReaderTrouble, IsTheFirstReasonThatHolds) {
  PcscService missing(std::nullopt);
  EXPECT_EQ(FindReaderTrouble(missing), ReaderTrouble::NotInstalled);

  test::FakePcsc pcsc;
  pcsc.Established = SCARD_E_NO_SERVICE;
  EXPECT_EQ(TroubleOf(pcsc), ReaderTrouble::NoService);
  pcsc.Established = SCARD_S_SUCCESS;
  pcsc.Readers.clear();
  EXPECT_EQ(TroubleOf(pcsc), ReaderTrouble::NoReader);
  pcsc.Readers = {{"A", {.IsHeld = true}}, {"B", {.HasCard = false}}};
  EXPECT_EQ(TroubleOf(pcsc), ReaderTrouble::CardHeld);
  pcsc.Readers = {{"A", {.IsHeld = true}}, {"B", {}}};
  EXPECT_EQ(TroubleOf(pcsc), ReaderTrouble::None) << "one card can be read";
  pcsc.Readers = {{"A", {.HasCard = false}}};
  EXPECT_EQ(TroubleOf(pcsc), ReaderTrouble::None);
  EXPECT_TRUE(pcsc.Calls.empty()) << "no card is touched";
}

TEST(ReaderHint, SaysWhatToDo) {
  using kartocheck::ReaderHint;
  EXPECT_TRUE(ReaderHint(ReaderTrouble::None).isEmpty());
  EXPECT_TRUE(ReaderHint(ReaderTrouble::NotInstalled).contains(u"\"pcscd\""));
  EXPECT_TRUE(ReaderHint(ReaderTrouble::NoService).contains(u"systemctl start pcscd"));
  EXPECT_TRUE(ReaderHint(ReaderTrouble::NoReader).contains(u"\"libccid\""));
  EXPECT_TRUE(ReaderHint(ReaderTrouble::CardHeld).contains(u"anderes Programm"));
}

}  // namespace
}  // namespace ctapi::host
