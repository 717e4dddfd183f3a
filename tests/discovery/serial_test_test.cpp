#include "discovery/serial_test.h"

#include <gtest/gtest.h>
#include <ostream>
#include <vector>

#include "support/fake_event_loop.h"
#include "support/fake_serial_port.h"
#include "support/printing.h"
#include "support/sentence_name.h"

namespace kartocheck::test {
namespace {

using Calls = std::vector<QString>;
using std::chrono::milliseconds;

const QByteArray Resynchronised = QByteArray::fromHex("21E000C1");

constexpr QStringView Unknown = u"Unbekannt! ";

QString SettingsOfRow(int baud) {
  return QStringLiteral("settings %1,E,8,1").arg(baud);
}

Calls RowCalls(int baud) {
  return {SettingsOfRow(baud), QStringLiteral("empty"), QStringLiteral("send 12C000D2"),
          QStringLiteral("received")};
}

// The calls of a probe that tries these rates in order.
Calls ProbeCalls(int pn, const std::vector<int>& bauds) {
  Calls calls{QStringLiteral("open %1").arg(pn), QStringLiteral("dtr on"),
              QStringLiteral("rts on")};
  for (const int baud : bauds) {
    for (const QString& call : RowCalls(baud)) calls.push_back(call);
  }
  for (const char16_t* call : {u"rts off", u"dtr off", u"close"}) {
    calls.push_back(QString::fromUtf16(call));
  }
  return calls;
}

TEST(TestSerialPortTest, RaisesDtrWaitsAndReadsDsr) {
  for (const bool dsr : {true, false}) {
    FakeSerialPort serial({{2, {.dsr = dsr}}});
    FakeEventLoop eventLoop;
    bool lineState = !dsr;
    EXPECT_EQ(TestSerialPort(Port(2), serial, eventLoop, lineState), SerialTest::Opened);
    EXPECT_EQ(lineState, dsr);
    EXPECT_EQ(serial.Calls(),
              (Calls{QStringLiteral("open 2"), QStringLiteral("dtr on"), QStringLiteral("read dsr"),
                     QStringLiteral("dtr off"), QStringLiteral("close")}));
    EXPECT_EQ(eventLoop.waits, std::vector{milliseconds(500)});
  }
}

struct ErrorRow {
  const char* sentence;
  int error;
  SerialTest expected;

  friend std::ostream& operator<<(std::ostream& out, const ErrorRow& row) {
    return out << row.sentence;
  }
};

class SerialErrorTest : public testing::TestWithParam<ErrorRow> {};

TEST_P(SerialErrorTest, OnOpening) {
  FakeSerialPort serial({{1, {.openError = GetParam().error}}});
  FakeEventLoop eventLoop;
  bool lineState = false;
  EXPECT_EQ(TestSerialPort(Port(1), serial, eventLoop, lineState), GetParam().expected);
  EXPECT_FALSE(lineState);
  EXPECT_EQ(serial.Calls(), Calls{QStringLiteral("open 1")});
  EXPECT_TRUE(eventLoop.waits.empty());
}

// A device that is unplugged in the middle of the test.
TEST_P(SerialErrorTest, AtEachCallOfTheTest) {
  for (int call = 2; call <= 4; ++call) {
    FakeSerialPort serial({{1, {}}});
    serial.failingCall = call;
    serial.failure = GetParam().error;
    FakeEventLoop eventLoop;
    bool lineState = false;
    EXPECT_EQ(TestSerialPort(Port(1), serial, eventLoop, lineState), GetParam().expected);
    EXPECT_EQ(serial.Calls().back(), u"close");
  }
}

// The outcome of the probe does not depend on the kind of error.
TEST_P(SerialErrorTest, EndsTheProbeQuietly) {
  FakeSerialPort whole({{1, {.replies = {{115200, Resynchronised}}}}});
  FakeEventLoop loop;
  PortEntry entry;
  ProbeSerialSettings(Port(1), whole, loop, entry);
  for (int call = 1; call <= whole.FallibleCalls(); ++call) {
    SCOPED_TRACE(call);
    FakeSerialPort serial({{1, {.replies = {{115200, Resynchronised}}}}});
    serial.failingCall = call;
    serial.failure = GetParam().error;
    FakeEventLoop eventLoop;
    PortEntry probed;
    ProbeSerialSettings(Port(1), serial, eventLoop, probed);
    // Only the two calls that put the lines back come behind the answer.
    const bool answered = call > whole.FallibleCalls() - 2;
    EXPECT_EQ(probed.AvailText, FixedText<15>(answered ? QStringView(u"11520 Baud ") : Unknown));
    EXPECT_EQ(probed.SettingsFound, answered);
    EXPECT_EQ(serial.FallibleCalls(), call) << "nothing is tried behind the failure";
    EXPECT_EQ(eventLoop.yields, 1);
  }
}

INSTANTIATE_TEST_SUITE_P(
    Discovery, SerialErrorTest,
    testing::Values(ErrorRow{"8002: there is no such port", 8002, SerialTest::NotPresent},
                    ErrorRow{"8005: another program holds the port", 8005, SerialTest::InUse},
                    ErrorRow{"70: the user may not open the port", 70, SerialTest::Failed},
                    ErrorRow{"8000: anything else", 8000, SerialTest::Failed}),
    SentenceName());

TEST(TestSerialPortTest, CodesAreThoseOfTheControl) {
  EXPECT_EQ(static_cast<int>(SerialTest::Opened), 0);
  EXPECT_EQ(static_cast<int>(SerialTest::NotPresent), 1);
  EXPECT_EQ(static_cast<int>(SerialTest::InUse), 2);
  EXPECT_EQ(static_cast<int>(SerialTest::Failed), 3);
}

struct ProbeRow {
  const char* sentence;
  QMap<int, QByteArray> replies;
  QStringView availText;
  bool found;
  std::vector<int> tried;

  friend std::ostream& operator<<(std::ostream& out, const ProbeRow& row) {
    return out << row.sentence;
  }
};

class ProbeTest : public testing::TestWithParam<ProbeRow> {};

TEST_P(ProbeTest, TriesTheRatesInOrderUntilOneIsAnswered) {
  const ProbeRow& row = GetParam();
  FakeSerialPort serial({{3, {.replies = row.replies}}});
  FakeEventLoop eventLoop;
  PortEntry entry;
  entry.AvailText = u"from before";
  ProbeSerialSettings(Port(3), serial, eventLoop, entry);
  EXPECT_EQ(entry.AvailText, FixedText<15>(row.availText));
  EXPECT_EQ(entry.SettingsFound, row.found);
  EXPECT_EQ(serial.Calls(), ProbeCalls(3, row.tried));
  EXPECT_EQ(eventLoop.waits, std::vector(row.tried.size(), milliseconds(210)));
  EXPECT_EQ(eventLoop.yields, 1);
}

const std::vector<int> AllTried{9600, 19200, 38400, 57600, 115200};

INSTANTIATE_TEST_SUITE_P(
    Discovery, ProbeTest,
    testing::Values(
        ProbeRow{"9600 baud", {{9600, Resynchronised}}, u"9600 Baud ", true, {9600}},
        ProbeRow{"19200 baud keeps the comma of the settings",
                 {{19200, Resynchronised}},
                 u"19200, Baud ",
                 true,
                 {9600, 19200}},
        ProbeRow{
            "38400 baud", {{38400, Resynchronised}}, u"38400 Baud ", true, {9600, 19200, 38400}},
        ProbeRow{"57600 baud",
                 {{57600, Resynchronised}},
                 u"57600 Baud ",
                 true,
                 {9600, 19200, 38400, 57600}},
        ProbeRow{"115200 baud loses its last digit",
                 {{115200, Resynchronised}},
                 u"11520 Baud ",
                 true,
                 AllTried},
        ProbeRow{
            "128000 baud is never tried", {{128000, Resynchronised}}, Unknown, false, AllTried},
        ProbeRow{
            "256000 baud is never tried", {{256000, Resynchronised}}, Unknown, false, AllTried},
        ProbeRow{"of two rates the first counts",
                 {{57600, Resynchronised}, {19200, Resynchronised}},
                 u"19200, Baud ",
                 true,
                 {9600, 19200}},
        ProbeRow{"a wrong answer does not hide a right one at a later rate",
                 {{9600, QByteArray::fromHex("FFFFFFFF")}, {19200, Resynchronised}},
                 u"19200, Baud ",
                 true,
                 {9600, 19200}},
        ProbeRow{"silence", {}, Unknown, false, AllTried},
        ProbeRow{"a fifth byte spoils a right answer",
                 {{9600, Resynchronised + QByteArray(1, '\0')}},
                 Unknown,
                 false,
                 AllTried},
        ProbeRow{"a byte in front does too",
                 {{9600, QByteArray(1, '\0') + Resynchronised}},
                 Unknown,
                 false,
                 AllTried},
        ProbeRow{"three bytes are too few",
                 {{9600, QByteArray::fromHex("21E000")}},
                 Unknown,
                 false,
                 AllTried},
        ProbeRow{"first byte wrong",
                 {{9600, QByteArray::fromHex("20E000C1")}},
                 Unknown,
                 false,
                 AllTried},
        ProbeRow{"second byte wrong",
                 {{9600, QByteArray::fromHex("21E100C1")}},
                 Unknown,
                 false,
                 AllTried},
        ProbeRow{"third byte wrong",
                 {{9600, QByteArray::fromHex("21E001C1")}},
                 Unknown,
                 false,
                 AllTried},
        ProbeRow{"fourth byte wrong",
                 {{9600, QByteArray::fromHex("21E000C0")}},
                 Unknown,
                 false,
                 AllTried},
        ProbeRow{"the bytes in another order",
                 {{9600, QByteArray::fromHex("E02100C1")}},
                 Unknown,
                 false,
                 AllTried},
        ProbeRow{"the request itself, from a line that echoes",
                 {{9600, QByteArray::fromHex("12C000D2")}},
                 Unknown,
                 false,
                 AllTried}),
    SentenceName());

TEST(ProbeTest, APortThatDoesNotExistEndsTheProbeAtOnce) {
  FakeSerialPort serial;
  FakeEventLoop eventLoop;
  PortEntry entry;
  ProbeSerialSettings(Port(8192), serial, eventLoop, entry);
  EXPECT_EQ(entry.AvailText, FixedText<15>(Unknown));
  EXPECT_FALSE(entry.SettingsFound);
  EXPECT_EQ(serial.Calls(), Calls{QStringLiteral("open 8192")});
  EXPECT_TRUE(eventLoop.waits.empty());
}

}  // namespace
}  // namespace kartocheck::test
