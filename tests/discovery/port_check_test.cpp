#include "discovery/port_check.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <optional>
#include <ostream>
#include <string>
#include <vector>

#include "support/answer_book.h"
#include "support/dialogue.h"
#include "support/fake_serial_port.h"
#include "support/link_fixture.h"
#include "support/printing.h"
#include "support/sentence_name.h"

namespace kartocheck::test {
namespace {

// Resynchronisation response of a terminal on a serial line.
const QByteArray Resynchronised = QByteArray::fromHex("21E000C1");

// Records as an earlier check left them, every field filled.
TerminalInfo FilledTerminal() {
  TerminalInfo info;
  info.ModelName = u"Norva Delta-2 mobil";
  info.DisplayText = u"PC (ASN-1)";
  info.SerialSettings = u"9600 Baud";
  info.ManufacturerId = u"DENRV";
  info.ProductCode = u"PKTD ";
  info.SoftwareVersion = u"1.002";
  info.Answered = info.SelectRefused = info.Reset95 = true;
  info.DataRead = info.EgkData = info.UsbVirtualCom = info.Reset9501 = true;
  return info;
}

PortEntry FilledPort() {
  PortEntry port;
  port.PortText = u"USB Virtuell COM (CTAPI pn=3)";
  port.AvailText = u"9600 Baud";
  port.BaudText = u"9600";
  port.SettingsFound = port.PortPresent = port.PortError = port.LineState = true;
  port.ScanResult = 77;
  return port;
}

// Both records of a slot, comparable and printable.
QString Describe(const TerminalInfo& info, const PortEntry& port) {
  const auto flag = [](bool is, QStringView name) {
    return is ? u' ' + name.toString() : QString();
  };
  return u"port '" + port.PortText.Trimmed() + u"' '" + port.AvailText.Trimmed() + u"' '" +
         port.BaudText.Trimmed() + u"' result " + QString::number(port.ScanResult) +
         flag(port.PortPresent, u"present") + flag(port.PortError, u"error") +
         flag(port.LineState, u"line") + flag(port.SettingsFound, u"settings") + u"\nterminal '" +
         info.ModelName.Trimmed() + u"' '" + info.ManufacturerId.Padded() + u"' '" +
         info.ProductCode.Padded() + u"' '" + info.SoftwareVersion.Trimmed() + u"' '" +
         info.DisplayText.Trimmed() + u"' '" + info.SerialSettings.Trimmed() + u"'" +
         flag(info.Answered, u"answered") + flag(info.SelectRefused, u"refused") +
         flag(info.Reset95, u"95") + flag(info.Reset9501, u"9501") +
         flag(info.UsbVirtualCom, u"usb-com") + flag(info.DataRead, u"data") +
         flag(info.EgkData, u"egk");
}

// A port entry as literals can write it.
struct ExpectedPort {
  QStringView PortText{};
  QStringView AvailText{};
  bool SettingsFound = false;
  bool PortPresent = false;
  bool PortError = false;
  bool LineState = false;
  int ScanResult = 0;
  QStringView BaudText{};

  [[nodiscard]] PortEntry Entry() const {
    return {PortText,  AvailText,  SettingsFound, PortPresent, PortError,
            LineState, ScanResult, BaudText,      true};
  }
};

struct CheckRow {
  const char* sentence;
  int pn = 1;
  std::optional<FakeSerialLine> line = FakeSerialLine{};  // none: there is no such port
  std::string script{};                                   // what the library is called for
  QStringView settings{};                                 // in the list of further ports
  ExpectedPort port{};                                    // expected
  TerminalInfo info{};                                    // expected

  friend std::ostream& operator<<(std::ostream& out, const CheckRow& row) {
    return out << row.sentence;
  }
};

class CheckPortTest : public testing::TestWithParam<CheckRow> {
 protected:
  static void Check(TerminalInfo before, PortEntry portBefore, const TerminalInfo& expected) {
    const CheckRow& row = GetParam();
    Dialogue dialogue(row.script);
    Link link(dialogue);
    FakeSerialPort serial;
    if (row.line) serial[row.pn] = *row.line;
    // The link writes the baud rate into the session's own entry of the slot.
    PortEntry& port = link.ports[Port(row.pn).Slot()];
    port = std::move(portBefore);
    TerminalInfo info = std::move(before);
    CheckPort(Port(row.pn), {.link = link.session,
                             .info = info,
                             .port = port,
                             .serial = serial,
                             .eventLoop = link.eventLoop,
                             .settingsOf = [&](Port asked) {
                               EXPECT_EQ(asked, Port(row.pn));
                               return row.settings.toString();
                             }});
    EXPECT_EQ(Describe(info, port), Describe(expected, row.port.Entry()));
    EXPECT_FALSE(link.session.IsOpen());
    EXPECT_TRUE(link.dialogs.boxes.empty());
  }
};

TEST_P(CheckPortTest, FillsBothRecords) {
  Check({}, {}, GetParam().info);
}

// That a terminal answered is forgotten only where a link opens: then it is known anew.
TEST_P(CheckPortTest, NothingOfTheTerminalBeforeIsLeft) {
  TerminalInfo expected = GetParam().info;
  const bool opens = GetParam().script.find("> 20") != std::string::npos;
  if (!opens) expected.Answered = true;
  Check(FilledTerminal(), FilledPort(), expected);
}

std::string Open(int pn) {
  return "open " + std::to_string(pn) + "\n";
}

constexpr const char* IsOmega = R"(
  > 20 13 00 81 00
  < 90 00
  > 20 13 00 46 00
  < 46 0F 'DENRVPKTO 1.002' 90 00
  > 20 71 00 01 00
  < 6D 00
)";

// A stationary terminal whose identification tells of no port.
constexpr const char* IsVedraG = R"(
  > 20 13 00 81 00
  < 69 00
)";

constexpr const char* DoesNotAnswer = R"(
  > 20 13 00 81 00
  < -> -10
)";

TerminalInfo Omega() {
  TerminalInfo info;
  info.ModelName = u"Serie Omega";
  info.ManufacturerId = u"DENRV";
  info.ProductCode = u"PKTO ";
  info.SoftwareVersion = u"1.002";
  info.Answered = true;
  return info;
}

TerminalInfo OmegaWith(QStringView settings) {
  TerminalInfo info = Omega();
  info.SerialSettings = settings;
  return info;
}

TerminalInfo VedraG() {
  TerminalInfo info;
  info.ModelName = u"Modell Vedra G im Vedra A-kompatibel Mode";
  info.Answered = true;
  return info;
}

TerminalInfo Model(QStringView name) {
  TerminalInfo info;
  info.ModelName = name;
  return info;
}

FakeSerialLine Silent() {
  return {.dsr = false};
}

FakeSerialLine AnswersAt(int baud, bool dsr = true) {
  return {.dsr = dsr, .replies = {{baud, Resynchronised}}};
}

FakeSerialLine Refuses(int error) {
  return {.openError = error};
}

INSTANTIATE_TEST_SUITE_P(
    FurtherPort, CheckPortTest,
    testing::Values(
        CheckRow{
            .sentence = "a USB device is not tested as a serial port; its rate comes from the link",
            .pn = 8192,
            .line = std::nullopt,
            .script = Open(8192) + "baud 115200" + IsOmega + "close",
            .port = {.PortText = u"USB (CTAPI pn=8192)",
                     .AvailText = u"115200",
                     .PortPresent = true,
                     .BaudText = u"115200"},
            .info = Omega()},
        CheckRow{.sentence = "a link that tells no rate leaves the text empty",
                 .pn = 8447,
                 .line = std::nullopt,
                 .script = Open(8447) + "baud -> -1" + IsOmega + "close",
                 .port = {.PortText = u"USB (CTAPI pn=8447)", .PortPresent = true},
                 .info = Omega()},
        CheckRow{.sentence = "COM 5 has no number that the control knows",
                 .pn = 5,
                 .line = std::nullopt,
                 .script = Open(5) + "baud 9600" + IsOmega + "close",
                 .port = {.PortText = u"COM (CTAPI pn=5)",
                          .AvailText = u"9600",
                          .PortPresent = true,
                          .BaudText = u"9600"},
                 .info = Omega()},
        CheckRow{.sentence = "a terminal whose identification writes no port text",
                 .pn = 8193,
                 .line = std::nullopt,
                 .script = Open(8193) + "baud 9600" + IsVedraG + "close",
                 .port = {.PortText = u"USB Device 2 (CTAPI pn=8193)",
                          .AvailText = u"9600",
                          .PortPresent = true,
                          .BaudText = u"9600"},
                 .info = VedraG()},
        CheckRow{.sentence = "a terminal that opens but does not answer",
                 .pn = 7,
                 .line = std::nullopt,
                 .script = Open(7) + "baud 9600" + DoesNotAnswer + "close",
                 .port = {.PortText = u"COM 7 (CTAPI pn=7)",
                          .AvailText = u"9600",
                          .PortPresent = true,
                          .BaudText = u"9600"}},
        CheckRow{.sentence = "an open that fails with a transmission error",
                 .pn = 8192,
                 .line = std::nullopt,
                 .script = "open 8192 -> -10",
                 .port = {.PortText = u"USB Device 1 (CTAPI pn=8192)",
                          .AvailText = u"Unbekannt! ",
                          .PortPresent = true,
                          .ScanResult = -10},
                 .info = Model(u"Modell nicht bekannt!")},
        CheckRow{.sentence = "an open that fails with a host error",
                 .pn = 256,
                 .line = std::nullopt,
                 .script = "open 256 -> -127",
                 .port = {.PortText = u"COM 256 (CTAPI pn=256)",
                          .AvailText = u"Unbekannt! ",
                          .PortPresent = true,
                          .ScanResult = -127},
                 .info = Model(u"Unbekanntes Gerät?! ")},
        CheckRow{.sentence = "an open that fails with a code that is none of CT-API's",
                 .pn = 8192,
                 .line = std::nullopt,
                 .script = "open 8192 -> 5",
                 .port = {.PortText = u"USB Device 1 (CTAPI pn=8192)",
                          .AvailText = u"Unbekannt! ",
                          .PortPresent = true,
                          .ScanResult = 5},
                 .info = Model(u"Unbekanntes Gerät?! ")}),
    SentenceName());

INSTANTIATE_TEST_SUITE_P(
    UnusablePort, CheckPortTest,
    testing::Values(
        CheckRow{.sentence = "a port that does not exist",
                 .pn = 2,
                 .line = std::nullopt,
                 .port = {.PortText = u"Ist nicht vorhanden bzw. wird vom System benutzt!",
                          .ScanResult = 1}},
        CheckRow{.sentence = "a port that another program holds is not opened through the library",
                 .pn = 3,
                 .line = Refuses(8005),
                 .port = {.PortText = u"Wird vom System benutzt!",
                          .PortPresent = true,
                          .ScanResult = 1}},
        CheckRow{.sentence = "a port that cannot be opened for another reason",
                 .pn = 4,
                 .line = Refuses(8000),
                 .port = {.PortText = u"PortOpen Fehlermeldung!!!",
                          .PortPresent = true,
                          .PortError = true,
                          .ScanResult = 3}},
        CheckRow{.sentence = "a port that the user may not open",
                 .pn = 1,
                 .line = Refuses(70),
                 .port = {.PortText = u"PortOpen Fehlermeldung!!!",
                          .PortPresent = true,
                          .PortError = true,
                          .ScanResult = 3}}),
    SentenceName());

INSTANTIATE_TEST_SUITE_P(
    WithLineSignal, CheckPortTest,
    testing::Values(
        CheckRow{.sentence = "a terminal that answers link and probe",
                 .line = AnswersAt(9600),
                 .script = Open(1) + "baud 19200" + IsOmega + "close",
                 .port = {.PortText = u"Ist verfügbar! ",
                          .AvailText = u"9600 Baud ",
                          .SettingsFound = true,
                          .PortPresent = true,
                          .LineState = true,
                          .BaudText = u"19200"},
                 .info = Omega()},
        CheckRow{.sentence = "a terminal that does not answer the probe has the link's rate",
                 .pn = 4,
                 .script = Open(4) + "baud 19200" + IsOmega + "close",
                 .port = {.PortText = u"Ist verfügbar! ",
                          .AvailText = u"19200",
                          .PortPresent = true,
                          .LineState = true,
                          .BaudText = u"19200"},
                 .info = Omega()},
        CheckRow{.sentence = "settings that the list of further ports tells",
                 .script = Open(1) + "baud 9600" + IsOmega + "close",
                 .settings = u"9600,E,8,1",
                 .port = {.PortText = u"Ist verfügbar! ",
                          .AvailText = u"9600",
                          .PortPresent = true,
                          .LineState = true,
                          .BaudText = u"9600"},
                 .info = OmegaWith(u"9600,E,8,1")},
        CheckRow{.sentence = "settings are not taken when the identification fails",
                 .script = Open(1) + "baud 9600" + DoesNotAnswer + "close",
                 .settings = u"9600,E,8,1",
                 .port = {.PortText = u"Ist verfügbar! ",
                          .AvailText = u"9600",
                          .PortPresent = true,
                          .LineState = true,
                          .BaudText = u"9600"}},
        CheckRow{.sentence = "settings are not taken when the close fails",
                 .script = Open(1) + "baud 9600" + IsOmega + "close -> -8",
                 .settings = u"9600,E,8,1",
                 .port = {.PortText = u"Ist verfügbar! ",
                          .AvailText = u"9600",
                          .PortPresent = true,
                          .LineState = true,
                          .BaudText = u"9600"},
                 .info = Omega()},
        CheckRow{.sentence = "a link that fails with a transmission error",
                 .script = "open 1 -> -10",
                 .port = {.PortText = u"Ist verfügbar! ",
                          .AvailText = u"Unbekannt! ",
                          .PortPresent = true,
                          .LineState = true,
                          .ScanResult = -10},
                 .info = Model(u"Modell nicht bekannt!")},
        CheckRow{
            .sentence = "a link that fails where the probe was answered keeps the probe's text",
            .line = AnswersAt(57600),
            .script = "open 1 -> -10",
            .port = {.PortText = u"Ist verfügbar! ",
                     .AvailText = u"57600 Baud ",
                     .SettingsFound = true,
                     .PortPresent = true,
                     .LineState = true,
                     .ScanResult = -10},
            .info = Model(u"Modell nicht bekannt!")},
        CheckRow{.sentence = "a link that fails with a host error, in spite of the signal",
                 .script = "open 1 -> -127",
                 .port = {.PortText = u"Ist verfügbar! ",
                          .AvailText = u"Unbekannt! ",
                          .PortPresent = true,
                          .LineState = true,
                          .ScanResult = -127},
                 .info = Model(u"Unbekanntes Gerät?! ")},
        CheckRow{.sentence = "a link that fails otherwise",
                 .pn = 2,
                 .script = "open 2 -> -1",
                 .port = {.PortText = u"Ist verfügbar! ",
                          .AvailText = u"Unbekannt! ",
                          .PortPresent = true,
                          .LineState = true,
                          .ScanResult = -1},
                 .info = Model(u"Unbekanntes Gerät?! ")}),
    SentenceName());

TerminalInfo UsbCableOmega() {
  TerminalInfo info = Omega();
  info.UsbVirtualCom = true;
  return info;
}

INSTANTIATE_TEST_SUITE_P(
    WithoutLineSignal, CheckPortTest,
    testing::Values(
        CheckRow{.sentence = "a terminal that answers all the same hangs on a wrong cable",
                 .line = Silent(),
                 .script = Open(1) + "baud 9600" + IsOmega + "close",
                 .port = {.PortText = u"USB-Kabel oder falsches RS 232 Kabel/Verbinder!",
                          .AvailText = u"9600",
                          .PortPresent = true,
                          .ScanResult = 4,
                          .BaudText = u"9600"},
                 .info = Omega()},
        CheckRow{.sentence = "a USB cable's virtual port needs no line signal, and has no rate",
                 .pn = 3,
                 .line = AnswersAt(115200, false),
                 .script = Open(3) + R"(
                   baud 9600
                   > 20 13 00 81 00
                   < 90 00
                   > 20 13 00 46 00
                   < 46 0F 'DENRVPKTO 1.002' 90 00
                   > 20 71 00 01 00
                   < 12 01 00 00 00 00 00 00 00 00 02 90 00
                   close
                 )",
                 .port = {.PortText = u"USB Virtuell COM (CTAPI pn=3)",
                          .SettingsFound = true,
                          .PortPresent = true,
                          .ScanResult = 4,
                          .BaudText = u"9600"},
                 .info = UsbCableOmega()},
        CheckRow{.sentence = "a terminal that opens but does not answer hangs on a wrong cable too",
                 .line = Silent(),
                 .script = Open(1) + "baud 9600" + DoesNotAnswer + "close",
                 .port = {.PortText = u"USB-Kabel oder falsches RS 232 Kabel/Verbinder!",
                          .AvailText = u"9600",
                          .PortPresent = true,
                          .ScanResult = 4,
                          .BaudText = u"9600"}},
        CheckRow{.sentence = "a close that fails changes nothing",
                 .line = Silent(),
                 .script = Open(1) + "baud 9600" + IsOmega + "close -> -8",
                 .settings = u"9600,E,8,1",
                 .port = {.PortText = u"USB-Kabel oder falsches RS 232 Kabel/Verbinder!",
                          .AvailText = u"9600",
                          .PortPresent = true,
                          .ScanResult = 4,
                          .BaudText = u"9600"},
                 .info = Omega()},
        CheckRow{.sentence = "a host error tells of another program",
                 .line = Silent(),
                 .script = "open 1 -> -127",
                 .port = {.PortText = u"Wird vom System benutzt!",
                          .PortPresent = true,
                          .ScanResult = -127}},
        CheckRow{.sentence = "a transmission error leaves the result at 0",
                 .pn = 2,
                 .line = Silent(),
                 .script = "open 2 -> -10",
                 .port = {.PortText = u"Ist verfügbar! ",
                          .AvailText = u"Unbekannt! ",
                          .PortPresent = true},
                 .info = Model(u"Modell nicht bekannt!")},
        CheckRow{.sentence = "any other code tells of a free port",
                 .line = Silent(),
                 .script = "open 1 -> -1",
                 .port = {.PortText = u"Ist verfügbar!", .PortPresent = true, .ScanResult = 5}},
        CheckRow{.sentence = "so does a code that is none of CT-API's",
                 .line = AnswersAt(9600, false),
                 .script = "open 1 -> 3",
                 .port = {.PortText = u"Ist verfügbar!",
                          .SettingsFound = true,
                          .PortPresent = true,
                          .ScanResult = 5}}),
    SentenceName());

// The end of an open link: RESET CT, then close.
TEST(CheckPortOrderTest, ALinkStillOpenIsEndedBetweenProbeAndOpen) {
  for (const int pn : {1, 8192}) {
    Dialogue dialogue(R"(
      open 2
      > 20 11 00 00 00
      < 95 00
      close
      open )" + std::to_string(pn) +
                      " -> -10");
    Link link(dialogue);
    ASSERT_EQ(link.session.CtOpen(Port(2)), 0);
    FakeSerialPort serial(FakeSerialPort::FourPorts());
    bool probed = false;
    serial.onCall = [&](const QString& call) {
      EXPECT_TRUE(link.session.IsOpen());
      probed = probed || call == QStringLiteral("open %1").arg(pn);
    };
    TerminalInfo info;
    CheckPort(Port(pn), {link.session, info, link.ports[Port(pn).Slot()], serial, link.eventLoop,
                         [](Port) { return QString(); }});
    EXPECT_TRUE(probed);
    EXPECT_FALSE(info.Reset95) << "the answer to the reset is another terminal's";
  }
}

// Nothing but the tests of the control before the library is asked; then the control is closed.
TEST(CheckPortOrderTest, ThePortIsTestedProbedAndThenOpened) {
  AnswerBook book("open 1 -> -10");
  Link link(book);
  FakeSerialPort serial(FakeSerialPort::FourPorts());
  TerminalInfo info;
  CheckPort(Port(1), {link.session, info, link.ports[1], serial, link.eventLoop,
                      [](Port) { return QString(); }});
  using std::chrono::milliseconds;
  EXPECT_EQ(link.eventLoop.waits,
            (std::vector{milliseconds(500), milliseconds(210), milliseconds(210), milliseconds(210),
                         milliseconds(210), milliseconds(210)}));
  EXPECT_EQ(std::count(serial.Calls().begin(), serial.Calls().end(), QStringLiteral("open 1")), 2);
  EXPECT_EQ(serial.Calls().back(), u"close");
  EXPECT_GE(link.eventLoop.yields, 3) << "around the test and after the probe";
}

TEST(CheckPortOrderTest, AFurtherPortCostsNoWait) {
  AnswerBook book("open 9 -> -10");
  Link link(book);
  FakeSerialPort serial(FakeSerialPort::FourPorts());
  TerminalInfo info;
  CheckPort(Port(9), {link.session, info, link.ports[5], serial, link.eventLoop,
                      [](Port) { return QString(); }});
  EXPECT_TRUE(link.eventLoop.waits.empty());
  EXPECT_EQ(serial.Calls(), std::vector{QStringLiteral("open 9")}) << "one vain try";
}

}  // namespace
}  // namespace kartocheck::test
