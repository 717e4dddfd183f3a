#include <algorithm>
#include <gtest/gtest.h>
#include <ostream>
#include <stdexcept>
#include <vector>

#include "support/fake_api.h"
#include "support/link_fixture.h"
#include "support/printing.h"
#include "support/sentence_name.h"
#include "terminal/ct_session.h"

// Run-time failures inside the wrappers: one fatal box, then the end of the program.

namespace kartocheck::test {
namespace {

constexpr QStringView LibraryMissing = u"Datei nicht gefunden, CTNRV32.dll !!!";
constexpr QStringView LibraryBroken = u"Dynamic Link Library (DLL) Fehler !!! ; CTNRV32.dll ";

void ExpectFatalBox(const Link& link, QStringView text) {
  ASSERT_EQ(link.dialogs.boxes.size(), 1U);
  const ShownBox& box = link.dialogs.boxes.front();
  EXPECT_EQ(box.title, u" KartoCheck ");
  EXPECT_EQ(box.text, text);
  EXPECT_EQ(box.icon, Icon::Critical);
  EXPECT_FALSE(box.isQuestion);
}

enum class Wrapper { Open, Close, Exchange };

void PrintTo(Wrapper wrapper, std::ostream* out) {
  switch (wrapper) {
    case Wrapper::Open:
      *out << "CtOpen";
      break;
    case Wrapper::Close:
      *out << "CtClose";
      break;
    case Wrapper::Exchange:
      *out << "CtExchange";
      break;
  }
}

void Call(Wrapper wrapper, CtSession& session) {
  switch (wrapper) {
    case Wrapper::Open:
      (void)session.CtOpen(Port(1));
      break;
    case Wrapper::Close:
      (void)session.CtClose();
      break;
    case Wrapper::Exchange:
      (void)session.CtExchange(u"2011000000", Unit::Terminal);
      break;
  }
}

template <typename Thrown>
void LetEveryCallThrow(FakeApi& api, const Thrown& thrown) {
  api.init = [=](auto, auto) -> std::int8_t { throw thrown; };
  api.data = [=](auto&, auto&, auto, auto, auto&) -> std::int8_t { throw thrown; };
  api.close = [=](auto) -> std::int8_t { throw thrown; };
}

template <typename Thrown>
void ExpectFatal(Wrapper wrapper, const Thrown& thrown, QStringView message) {
  FakeApi api;
  LetEveryCallThrow(api, thrown);
  int closes = 0;
  if (wrapper != Wrapper::Close) api.close = [&](auto) -> std::int8_t { return ++closes, 0; };
  Link link(api);
  EXPECT_THROW(Call(wrapper, link.session), Terminated);
  ExpectFatalBox(link, message);
  EXPECT_EQ(closes, 0) << "the link is not closed first";
}

class FatalFailureTest : public testing::TestWithParam<Wrapper> {};

TEST_P(FatalFailureTest, AMissingLibrary) {
  ExpectFatal(GetParam(), LibraryNotFound({LibraryFaultKind::FileMissing}), LibraryMissing);
}

TEST_P(FatalFailureTest, AMissingEntryPoint) {
  ExpectFatal(GetParam(), LibraryUnusable({LibraryFaultKind::EntryPointMissing}), LibraryBroken);
}

TEST_P(FatalFailureTest, AnyOtherException) {
  ExpectFatal(GetParam(), std::runtime_error("anything"), LibraryBroken);
}

TEST_P(FatalFailureTest, SomethingThrownThatIsNoException) {
  ExpectFatal(GetParam(), 53, LibraryBroken);
}

INSTANTIATE_TEST_SUITE_P(CtSession, FatalFailureTest,
                         testing::Values(Wrapper::Open, Wrapper::Close, Wrapper::Exchange));

TEST(CtSessionFailureTest, ABaudRateQueryThatThrows) {
  FakeApi api;
  api.baud = [](auto, auto&) -> std::int8_t { throw std::runtime_error("anything"); };
  Link link(api);
  EXPECT_THROW((void)link.session.CtOpen(Port(1)), Terminated);
  ExpectFatalBox(link, LibraryBroken);
}

TEST(CtSessionFailureTest, APortNumberWithoutASlot) {
  FakeApi api;
  Link link(api);
  EXPECT_THROW((void)link.session.CtOpen(Port(0)), Terminated);
  ExpectFatalBox(link, LibraryBroken);
}

class BadCommandTest : public testing::TestWithParam<QStringView> {};

TEST_P(BadCommandTest, IsAFailureBeforeAnythingIsSent) {
  FakeApi api;
  api.data = [](auto&, auto&, auto, auto, auto&) -> std::int8_t {
    ADD_FAILURE() << "sent";
    return 0;
  };
  Link link(api);
  EXPECT_THROW((void)link.session.CtExchange(GetParam(), Unit::Terminal), Terminated);
  ExpectFatalBox(link, LibraryBroken);
  EXPECT_TRUE(link.display.lamps.empty());
  EXPECT_EQ(link.eventLoop.yields, 0);
}

INSTANTIATE_TEST_SUITE_P(CtSession, BadCommandTest,
                         testing::Values(u"20110000G0", u"2011 00000", u"20.1", u"20110000000",
                                         u"ü011"));

TEST(CommandLengthTest, ALengthThatTheLibraryCannotBeToldIsNone) {
  FakeApi api;
  Link link(api);
  const std::vector<std::uint8_t> command(65'536);
  EXPECT_THROW((void)link.session.CtExchange(command, Unit::Terminal), Terminated);
  ExpectFatalBox(link, LibraryBroken);
  EXPECT_TRUE(link.display.lamps.empty());
}

struct BufferRow {
  const char* sentence;
  int reported;
  std::size_t written;  // bytes from the start of the buffer
  std::int8_t code;
  bool fatal;

  friend std::ostream& operator<<(std::ostream& out, const BufferRow& row) {
    return out << row.sentence;
  }
};

class ResponseBufferTest : public testing::TestWithParam<BufferRow> {};

TEST_P(ResponseBufferTest, Outcome) {
  const BufferRow& row = GetParam();
  FakeApi api;
  api.data = [&](auto&, auto&, auto, auto response, auto& length) -> std::int8_t {
    std::fill_n(response.data(), row.written, std::uint8_t{0x90});
    length = static_cast<std::uint16_t>(row.reported);
    return row.code;
  };
  Link link(api);
  if (row.fatal) {
    EXPECT_THROW((void)link.session.CtExchange(u"00B0000000", Unit::Card), Terminated);
    ExpectFatalBox(link, LibraryBroken);
  } else {
    EXPECT_EQ(link.session.CtExchange(u"00B0000000", Unit::Card).code, row.code);
    EXPECT_TRUE(link.dialogs.boxes.empty());
  }
}

INSTANTIATE_TEST_SUITE_P(
    CtSession, ResponseBufferTest,
    testing::ValuesIn(std::vector<BufferRow>{
        {"the buffer filled to its last byte is fine", 4098, 4098, 0, false},
        {"one byte more is reported than the buffer holds", 4099, 4098, 0, true},
        {"the longest length is reported", 65535, 4098, 0, true},
        {"a failed call tells the length it would need", 8000, 4098, -11, false},
    }),
    SentenceName());

TEST(CtSessionFailureTest, AFailingCodeIsNoFailureOfTheProgram) {
  FakeApi api;
  api.init = [](auto, auto) -> std::int8_t { return -127; };
  api.data = [](auto&, auto&, auto, auto, auto&) -> std::int8_t { return -128; };
  api.close = [](auto) -> std::int8_t { return -1; };
  Link link(api);
  EXPECT_EQ(link.session.CtOpen(Port(1)), -127);
  EXPECT_EQ(link.session.CtExchange(u"2011000000", Unit::Terminal).code, -128);
  EXPECT_EQ(link.session.CtClose(), -1);
  EXPECT_TRUE(link.dialogs.boxes.empty());
}

TEST(CtSessionDeathTest, ATerminateFunctionThatComesBackEndsTheProgramAllTheSame) {
  FakeApi api;
  LetEveryCallThrow(api, LibraryNotFound({LibraryFaultKind::FileMissing}));
  FakeDialogs dialogs;
  FakeDisplay display;
  FakeEventLoop eventLoop;
  PerSlot<PortEntry> ports;
  CtSession session({.api = api,
                     .dialogs = dialogs,
                     .lamps = display.panel,
                     .eventLoop = eventLoop,
                     .ports = ports,
                     .terminate = [](const auto&) {}});
  EXPECT_DEATH((void)session.CtOpen(Port(1)), "");
}

}  // namespace
}  // namespace kartocheck::test
