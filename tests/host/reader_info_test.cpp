#include <gtest/gtest.h>
#include <memory>

#include "host/fake_pcsc.h"
#include "host/host_library.h"
#include "host/pcsc_transport.h"
#include "host/reader_trouble.h"

// What the library tells of its readers: names, and what keeps them from being used.

namespace ctapi::host {
namespace {

PortTroubleKind TroubleOf(test::FakePcsc& pcsc) {
  PcscService service(pcsc.Api());
  return FindReaderTrouble(service);
}

TEST(ReaderTrouble, IsTheFirstReasonThatHolds) {
  PcscService missing(std::nullopt);
  EXPECT_EQ(FindReaderTrouble(missing), PortTroubleKind::NotInstalled);

  test::FakePcsc pcsc;
  pcsc.Established = PcscCode::NoService;
  EXPECT_EQ(TroubleOf(pcsc), PortTroubleKind::NoService);
  pcsc.Established = PcscCode::Success;
  pcsc.Readers.clear();
  EXPECT_EQ(TroubleOf(pcsc), PortTroubleKind::NoReader);
  pcsc.Readers = {{"A", {.IsHeld = true}}, {"B", {.HasCard = false}}};
  EXPECT_EQ(TroubleOf(pcsc), PortTroubleKind::CardHeld);
  pcsc.Readers = {{"A", {.IsHeld = true}}, {"B", {}}};
  EXPECT_EQ(TroubleOf(pcsc), PortTroubleKind::None) << "one card can be read";
  pcsc.Readers = {{"A", {.HasCard = false}}};
  EXPECT_EQ(TroubleOf(pcsc), PortTroubleKind::None);
  EXPECT_TRUE(pcsc.Calls.empty()) << "no card is touched";
}

TEST(ReaderTrouble, OfOneReaderIsNotThatOfAnother) {
  test::FakePcsc pcsc;
  pcsc.Readers = {{"A", {.IsHeld = true}},
                  {"B", {}},
                  {"C", {.HasCard = false}},
                  {"D", {.HasCard = false, .IsHeld = true}}};
  PcscService service(pcsc.Api());
  std::vector<std::string> names;
  ASSERT_EQ(service.List(names), PcscResult::Ok);
  EXPECT_EQ(FindReaderTrouble(service, "A"), PortTroubleKind::CardHeld);
  EXPECT_EQ(FindReaderTrouble(service, "B"), PortTroubleKind::None);
  EXPECT_EQ(FindReaderTrouble(service, "C"), PortTroubleKind::None);
  EXPECT_EQ(FindReaderTrouble(service, "D"), PortTroubleKind::None) << "there is no card to hold";
  EXPECT_EQ(FindReaderTrouble(service, "E"), PortTroubleKind::None) << "it is gone";
}

class ReaderInfoTest : public testing::Test {
 protected:
  [[nodiscard]] static HostLibrary LibraryOver(const std::optional<PcscApi>& api) {
    std::vector<ServedPorts> transports;
    transports.push_back({UsbPorts, std::make_unique<PcscTransport>(api)});
    return HostLibrary(std::move(transports));
  }

  PortInfo InfoOf(int pn) { return InfoOf(library, pn); }
  static PortInfo InfoOf(HostLibrary& of, int pn) {
    PortInfo info;
    EXPECT_EQ(of.InfoOf(static_cast<std::uint16_t>(pn), info), code::Success) << pn;
    return info;
  }
  PortTroubleKind TroubleOf(int pn) { return InfoOf(pn).Trouble; }
  std::string NameOf(int pn) { return InfoOf(pn).Name; }

  test::FakePcsc pcsc;
  HostLibrary library = LibraryOver(pcsc.Api());
};

TEST_F(ReaderInfoTest, EachTroubleOfTheServiceIsToldForAllReadersAndForEach) {
  const auto expect = [this](PortTroubleKind trouble) {
    EXPECT_EQ(TroubleOf(EveryReader), trouble);
    EXPECT_EQ(TroubleOf(8192), trouble);
    EXPECT_EQ(TroubleOf(8447), trouble);
    EXPECT_EQ(NameOf(8192), "");
  };
  pcsc.Established = PcscCode::NoService;
  expect(PortTroubleKind::NoService);
  pcsc.Established = PcscCode::Success;
  pcsc.Readers.clear();
  expect(PortTroubleKind::NoReader);
  EXPECT_EQ(pcsc.Contexts, 1) << "one is kept for all questions";
}

TEST_F(ReaderInfoTest, TellsThatNothingIsInstalled) {
  HostLibrary without = LibraryOver(std::nullopt);
  EXPECT_EQ(InfoOf(without, EveryReader).Trouble, PortTroubleKind::NotInstalled);
  EXPECT_EQ(InfoOf(without, 8447).Trouble, PortTroubleKind::NotInstalled);
}

TEST_F(ReaderInfoTest, TellsTheReaderWhoseCardIsHeld) {
  pcsc.Readers = {{"A", {}}, {"B", {.IsHeld = true}}, {"C", {.HasCard = false}}};
  EXPECT_EQ(TroubleOf(8192), PortTroubleKind::None);
  EXPECT_EQ(TroubleOf(8193), PortTroubleKind::CardHeld);
  EXPECT_EQ(TroubleOf(8194), PortTroubleKind::None);
  EXPECT_EQ(TroubleOf(8195), PortTroubleKind::None) << "there is none";
  EXPECT_EQ(TroubleOf(EveryReader), PortTroubleKind::None);
  pcsc.Readers.at("A").IsHeld = true;
  EXPECT_EQ(TroubleOf(8195), PortTroubleKind::None) << "held cards are those of other readers";
  EXPECT_EQ(TroubleOf(EveryReader), PortTroubleKind::CardHeld);
  pcsc.Readers.at("B").IsHeld = false;
  EXPECT_EQ(TroubleOf(8193), PortTroubleKind::None);
  EXPECT_TRUE(pcsc.Calls.empty()) << "no card is touched";
}

TEST_F(ReaderInfoTest, AReaderKeepsItsNumber) {
  pcsc.Readers = {{"M", {}}, {"R", {}}};
  EXPECT_EQ(NameOf(8192), "M");
  EXPECT_EQ(NameOf(8193), "R");
  pcsc.Readers = {{"A", {}}, {"R", {.IsHeld = true}}};
  EXPECT_EQ(NameOf(8192), "") << "it is gone";
  EXPECT_EQ(TroubleOf(8193), PortTroubleKind::CardHeld);
  EXPECT_EQ(NameOf(8194), "A");
}

TEST_F(ReaderInfoTest, TheNameIsThatOfTheReaderThatIsOpened) {
  pcsc.Readers = {{"Zeta", {}}};
  ASSERT_EQ(library.Init(1, 8192), code::Success);
  EXPECT_EQ(library.Close(1), code::Success);
  pcsc.Readers["Alpha"] = {};
  EXPECT_EQ(NameOf(8192), "Zeta");
  EXPECT_EQ(NameOf(8193), "Alpha");
}

// A question renews the service's context where the service was started anew.
TEST_F(ReaderInfoTest, AQuestionTakesNothingFromAnOpenLink) {
  ASSERT_EQ(library.Init(1, 8192), code::Success);
  ASSERT_EQ(NameOf(8192), "Reader One 00 00");
  const int released = pcsc.Released;
  pcsc.Listed = PcscCode::NoService;
  EXPECT_EQ(TroubleOf(8192), PortTroubleKind::NoService);
  pcsc.Listed = PcscCode::Success;
  EXPECT_EQ(NameOf(8192), "Reader One 00 00");
  EXPECT_GT(pcsc.Released, released);
  std::uint8_t dad = 1;
  std::uint8_t sad = 2;
  std::array<std::uint8_t, 16> response{};
  std::uint16_t length = 0;
  EXPECT_EQ(library.Data(1, dad, sad, Bytes{0x20, 0x11, 0x00, 0x00}, response, length),
            code::Success)
      << "the link's own context is still there";
}

TEST_F(ReaderInfoTest, OfANumberThatNobodyServesNothingIsTold) {
  for (const int pn : {1, 256, 8191, 8448, 65535}) {
    PortInfo info{.Trouble = PortTroubleKind::NoReader, .Name = "as before"};
    EXPECT_EQ(library.InfoOf(static_cast<std::uint16_t>(pn), info), code::InvalidParameter) << pn;
    EXPECT_EQ(info.Name, "as before");
  }
}

}  // namespace
}  // namespace ctapi::host
