#include "discovery/port_sweep.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <set>
#include <string>
#include <vector>

#include "support/fake_api.h"
#include "support/link_fixture.h"
#include "support/printing.h"

namespace kartocheck::test {
namespace {

// A library in which some ports answer, and what it was called for.
class SweptLibrary {
 public:
  explicit SweptLibrary(std::set<int> answering) {
    api.init = [this, answering](std::uint16_t ctn, std::uint16_t pn) -> std::int8_t {
      EXPECT_EQ(ctn, 1);
      calls.push_back("open " + std::to_string(pn));
      opened.push_back(pn);
      return answering.contains(pn) ? 0 : -1;
    };
    api.close = [this](std::uint16_t ctn) -> std::int8_t {
      EXPECT_EQ(ctn, 1);
      calls.emplace_back("close");
      return 0;
    };
    api.baud = [](auto, auto&) -> std::int8_t {
      ADD_FAILURE() << "a bare open and close asks for no rate";
      return 0;
    };
  }

  FakeApi api;
  std::vector<std::string> calls;
  std::vector<int> opened;
};

const auto NeverEnds = [](int) { return true; };

std::vector<int> AllPorts() {
  std::vector<int> ports;
  for (int pn = 1; pn <= 256; ++pn) ports.push_back(pn);
  for (int pn = 8192; pn <= 8447; ++pn) ports.push_back(pn);
  return ports;
}

TEST(PortSweepTest, OpensAndClosesEvery512PortsInOrder) {
  SweptLibrary library({});
  Link link(library.api);
  EXPECT_TRUE(SweepCtApiPorts(link.session, link.display, NeverEnds).empty());
  EXPECT_EQ(library.opened, AllPorts());
  ASSERT_EQ(library.calls.size(), 1024U);
  for (std::size_t call = 1; call < library.calls.size(); call += 2) {
    EXPECT_EQ(library.calls[call], "close") << "also where the open failed";
  }
}

TEST(PortSweepTest, ListsThePortsThatAnswerButNeverComOneToFour) {
  SweptLibrary library({1, 2, 3, 4, 5, 256, 8192, 8447});
  Link link(library.api);
  EXPECT_EQ(SweepCtApiPorts(link.session, link.display, NeverEnds),
            (std::vector{Port(5), Port(256), Port(8192), Port(8447)}));
}

TEST(PortSweepTest, TheFirstUsbDeviceIsPort8192) {
  SweptLibrary library({8192});
  Link link(library.api);
  EXPECT_EQ(SweepCtApiPorts(link.session, link.display, NeverEnds), std::vector{Port(8192)});
}

TEST(PortSweepTest, OnlyCodeZeroIsAnAnswer) {
  for (const int code : {-1, -8, -10, -11, -127, -128, 1, 127}) {
    FakeApi api;
    api.init = [code](auto, auto) { return static_cast<std::int8_t>(code); };
    Link link(api);
    EXPECT_TRUE(SweepCtApiPorts(link.session, link.display, NeverEnds).empty()) << code;
  }
}

TEST(PortSweepTest, TellsEveryPortButComOneToFour) {
  SweptLibrary library({1, 8192});
  Link link(library.api);
  (void)SweepCtApiPorts(link.session, link.display, NeverEnds);
  std::vector<QString> expected;
  for (int n = 5; n <= 256; ++n) {
    expected.push_back(QStringLiteral("Programm prüft die serielle Schnittstelle COM %1").arg(n));
  }
  for (int n = 1; n <= 256; ++n) {
    expected.push_back(QStringLiteral("Programm prüft USB Device %1").arg(n));
  }
  EXPECT_EQ(link.display.statusTexts, expected);
}

// The text stands before the port is tried, and the window is painted around the open.
TEST(PortSweepTest, TextYieldOpenYieldClose) {
  SweptLibrary library({});
  Link link(library.api);
  std::vector<std::string> steps;
  link.eventLoop.onYield = [&] {
    library.calls.push_back("yield at " + (link.display.statusTexts.empty()
                                               ? std::string("none")
                                               : link.display.statusTexts.back().toStdString()));
  };
  (void)SweepCtApiPorts(link.session, link.display, [](int done) { return done < 5; });
  const std::vector<std::string> last(library.calls.end() - 8, library.calls.end());
  EXPECT_EQ(last, (std::vector<std::string>{
                      "yield at none", "open 4", "yield at none", "close",
                      "yield at Programm prüft die serielle Schnittstelle COM 5", "open 5",
                      "yield at Programm prüft die serielle Schnittstelle COM 5", "close"}));
}

TEST(PortSweepTest, NeitherLampsNorBaudRateNorAnOpenLink) {
  SweptLibrary library({1, 5, 8192});
  Link link(library.api);
  link.ports[5].BaudText = u"19200";
  (void)SweepCtApiPorts(link.session, link.display, NeverEnds);
  EXPECT_TRUE(link.display.lamps.empty());
  EXPECT_EQ(link.ports[5].BaudText.Trimmed(), u"19200");
  EXPECT_FALSE(link.session.IsOpen());
}

TEST(PortSweepTest, CountsThePortsThatAreDone) {
  SweptLibrary library({});
  Link link(library.api);
  std::vector<int> counts;
  (void)SweepCtApiPorts(link.session, link.display, [&](int done) {
    counts.push_back(done);
    EXPECT_EQ(library.opened.size(), static_cast<std::size_t>(done));
    return true;
  });
  ASSERT_EQ(counts.size(), 512U);
  for (int i = 0; i < 512; ++i) EXPECT_EQ(counts[static_cast<std::size_t>(i)], i);
}

TEST(PortSweepTest, EndsEarlyWithWhatWasFound) {
  for (const int end : {0, 1, 4, 5, 6, 256, 257, 511}) {
    SweptLibrary library({5, 8192});
    Link link(library.api);
    const std::vector<Port> found =
        SweepCtApiPorts(link.session, link.display, [end](int done) { return done < end; });
    EXPECT_EQ(library.opened.size(), static_cast<std::size_t>(end));
    EXPECT_EQ(std::count(found.begin(), found.end(), Port(5)), end >= 5 ? 1 : 0) << end;
    EXPECT_EQ(std::count(found.begin(), found.end(), Port(8192)), end >= 257 ? 1 : 0) << end;
  }
}

// The library's failures end in the same place as everywhere.
TEST(PortSweepTest, ALibraryThatCannotBeUsedEndsTheProgram) {
  FakeApi missing;
  missing.init = [](auto, auto) -> std::int8_t {
    throw LibraryNotFound({LibraryFaultKind::FileMissing});
  };
  Link link(missing);
  EXPECT_THROW((void)SweepCtApiPorts(link.session, link.display, NeverEnds), Terminated);
  EXPECT_EQ(link.dialogs.Texts(),
            std::vector{QStringLiteral("Datei nicht gefunden, CTNRV32.dll !!!")});

  FakeApi failing;
  failing.close = [](auto) -> std::int8_t { throw std::runtime_error("anything"); };
  Link other(failing);
  EXPECT_THROW((void)SweepCtApiPorts(other.session, other.display, NeverEnds), Terminated);
  EXPECT_EQ(other.dialogs.Texts(),
            std::vector{QStringLiteral("Dynamic Link Library (DLL) Fehler !!! ; CTNRV32.dll ")});
}

}  // namespace
}  // namespace kartocheck::test
