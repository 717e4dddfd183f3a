#include "platform/reader_hint.h"

#include <gtest/gtest.h>
#include <memory>

#include "host/fake_pcsc.h"
#include "host/reader_trouble.h"
#include "platform/reader_directory.h"
#include "support/fake_port_directory.h"
#include "support/printing.h"

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

TEST(ReaderTrouble, OfOneReaderIsNotThatOfAnother) {
  test::FakePcsc pcsc;
  pcsc.Readers = {{"A", {.IsHeld = true}},
                  {"B", {}},
                  {"C", {.HasCard = false}},
                  {"D", {.HasCard = false, .IsHeld = true}}};
  PcscService service(pcsc.Api());
  std::vector<std::string> names;
  ASSERT_EQ(service.List(names), PcscResult::Ok);
  EXPECT_EQ(FindReaderTrouble(service, "A"), ReaderTrouble::CardHeld);
  EXPECT_EQ(FindReaderTrouble(service, "B"), ReaderTrouble::None);
  EXPECT_EQ(FindReaderTrouble(service, "C"), ReaderTrouble::None);
  EXPECT_EQ(FindReaderTrouble(service, "D"), ReaderTrouble::None) << "there is no card to hold";
  EXPECT_EQ(FindReaderTrouble(service, "E"), ReaderTrouble::None) << "it is gone";
}

TEST(ReaderHint, SaysWhatToDo) {
  using kartocheck::ReaderHint;
  EXPECT_TRUE(ReaderHint(ReaderTrouble::None).isEmpty());
  EXPECT_TRUE(ReaderHint(ReaderTrouble::NotInstalled).contains(u"\"pcscd\""));
  EXPECT_TRUE(ReaderHint(ReaderTrouble::NoService).contains(u"systemctl start pcscd"));
  EXPECT_TRUE(ReaderHint(ReaderTrouble::NoReader).contains(u"\"libccid\""));
  EXPECT_TRUE(ReaderHint(ReaderTrouble::CardHeld).contains(u"anderes Programm"));
}

class ReaderDirectoryTest : public testing::Test {
 protected:
  static std::unique_ptr<kartocheck::PortDirectory> SerialPorts() {
    auto ports = std::make_unique<kartocheck::test::FakePortDirectory>();
    ports->hints[1] = QStringLiteral("serial hint");
    ports->identifications[1] = QStringLiteral("serial device");
    ports->hintsWithoutReader = {QStringLiteral("serial trouble")};
    return ports;
  }

  static QString Hint(ReaderTrouble trouble) { return kartocheck::ReaderHint(trouble); }

  test::FakePcsc pcsc;
  bool isInstalled = true;
  bool servesReaders = true;
  int loads = 0;
  kartocheck::ReaderDirectory directory{SerialPorts(), [this] { return servesReaders; },
                                        [this] {
                                          ++loads;
                                          return isInstalled ? std::optional(pcsc.Api())
                                                             : std::nullopt;
                                        }};
};

TEST_F(ReaderDirectoryTest, AnswersForSerialPortsWithoutTheService) {
  EXPECT_EQ(directory.HintFor(1), u"serial hint");
  EXPECT_EQ(directory.IdentificationOf(1), u"serial device");
  for (const int pn : {2, 256, 8191, 8448}) {
    EXPECT_EQ(directory.HintFor(pn), QString());
    EXPECT_EQ(directory.IdentificationOf(pn), QString());
  }
  EXPECT_EQ(loads, 0);
}

TEST_F(ReaderDirectoryTest, TellsEachTroubleOfTheService) {
  const auto expect = [this](ReaderTrouble trouble) {
    EXPECT_EQ(directory.HintsWithoutReader(),
              (QStringList{QStringLiteral("serial trouble"), Hint(trouble)}));
    EXPECT_EQ(directory.HintFor(8192), Hint(trouble));
    EXPECT_EQ(directory.IdentificationOf(8192), QString());
  };
  pcsc.Established = SCARD_E_NO_SERVICE;
  expect(ReaderTrouble::NoService);
  pcsc.Established = SCARD_S_SUCCESS;
  pcsc.Readers.clear();
  expect(ReaderTrouble::NoReader);
  EXPECT_EQ(loads, 1) << "one context is kept";
}

TEST_F(ReaderDirectoryTest, TellsThatNothingIsInstalled) {
  isInstalled = false;
  EXPECT_EQ(directory.HintsWithoutReader().last(), Hint(ReaderTrouble::NotInstalled));
  EXPECT_EQ(directory.HintFor(8447), Hint(ReaderTrouble::NotInstalled));
}

TEST_F(ReaderDirectoryTest, TellsTheReaderWhoseCardIsHeld) {
  pcsc.Readers = {{"A", {}}, {"B", {.IsHeld = true}}, {"C", {.HasCard = false}}};
  EXPECT_EQ(directory.HintFor(8192), QString());
  EXPECT_EQ(directory.HintFor(8193), Hint(ReaderTrouble::CardHeld));
  EXPECT_EQ(directory.HintFor(8194), QString());
  EXPECT_EQ(directory.HintFor(8195), QString()) << "there is none";
  EXPECT_EQ(directory.HintsWithoutReader(), QStringList{QStringLiteral("serial trouble")});
  pcsc.Readers.at("A").IsHeld = true;
  EXPECT_EQ(directory.HintFor(8195), QString()) << "held cards are those of other readers";
  pcsc.Readers.at("B").IsHeld = false;
  EXPECT_EQ(directory.HintFor(8193), QString());
  EXPECT_TRUE(pcsc.Calls.empty()) << "no card is touched";
}

// As in the library: 8192 + i.
TEST_F(ReaderDirectoryTest, AReaderKeepsItsNumber) {
  pcsc.Readers = {{"M", {}}, {"R", {}}};
  EXPECT_EQ(directory.IdentificationOf(8192), u"M");
  EXPECT_EQ(directory.IdentificationOf(8193), u"R");
  pcsc.Readers = {{"A", {}}, {"R", {.IsHeld = true}}};
  EXPECT_EQ(directory.IdentificationOf(8192), QString()) << "it is gone";
  EXPECT_EQ(directory.HintFor(8193), Hint(ReaderTrouble::CardHeld));
  EXPECT_EQ(directory.IdentificationOf(8194), u"A");
}

TEST_F(ReaderDirectoryTest, OfTheReadersOfAnotherLibraryNothingIsKnown) {
  servesReaders = false;
  pcsc.Readers.at("Reader One 00 00").IsHeld = true;
  EXPECT_EQ(directory.HintFor(8192), QString());
  EXPECT_EQ(directory.IdentificationOf(8192), QString());
  EXPECT_EQ(directory.HintsWithoutReader(), QStringList{QStringLiteral("serial trouble")});
  EXPECT_EQ(loads, 0);
}

}  // namespace
}  // namespace ctapi::host
