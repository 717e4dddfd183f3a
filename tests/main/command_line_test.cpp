#include "main/command_line.h"

#include <gtest/gtest.h>
#include <ostream>

#include "support/printing.h"
#include "support/sentence_name.h"

namespace kartocheck::test {
namespace {

std::variant<CommandLine, CommandLineText> Parse(const QStringList& arguments) {
  return ParseCommandLine(QStringList{QStringLiteral("kartocheck")} + arguments);
}

struct AcceptedRow {
  const char* sentence;
  const char* arguments;  // separated by blanks
  CommandLine expected;

  friend std::ostream& operator<<(std::ostream& out, const AcceptedRow& row) {
    return out << row.sentence;
  }
};

QStringList Split(const char* arguments) {
  return QString::fromUtf8(arguments).split(u' ', Qt::SkipEmptyParts);
}

class AcceptedLineTest : public testing::TestWithParam<AcceptedRow> {};

TEST_P(AcceptedLineTest, IsTakenApart) {
  const auto parsed = Parse(Split(GetParam().arguments));
  ASSERT_TRUE(std::holds_alternative<CommandLine>(parsed))
      << std::get<CommandLineText>(parsed).text.toStdString();
  const auto& line = std::get<CommandLine>(parsed);
  const CommandLine& expected = GetParam().expected;
  EXPECT_EQ(line.ctApi, expected.ctApi);
  EXPECT_EQ(line.simulate, expected.simulate);
  EXPECT_EQ(line.serialPorts, expected.serialPorts);
  EXPECT_EQ(line.schemaDirectory, expected.schemaDirectory);
  EXPECT_EQ(line.console, expected.console);
  EXPECT_EQ(line.json, expected.json);
  EXPECT_EQ(line.eraseRecords, expected.eraseRecords);
  EXPECT_EQ(line.validate, expected.validate);
  EXPECT_EQ(line.port, expected.port);
  EXPECT_EQ(line.diagnose, expected.diagnose);
  EXPECT_EQ(line.quiet, expected.quiet);
  EXPECT_EQ(line.verbose, expected.verbose);
}

// A line with some fields set.
template <typename Set>
CommandLine With(Set set) {
  CommandLine line;
  set(line);
  return line;
}

template <typename Set>
CommandLine ConsoleWith(Set set) {
  CommandLine line;
  line.console = true;
  set(line);
  return line;
}

INSTANTIATE_TEST_SUITE_P(
    Main, AcceptedLineTest,
    testing::Values(
        AcceptedRow{"nothing opens the window", "", {}},
        AcceptedRow{"another library", "--ct-api /lib/libCTNRV32.so", With([](CommandLine& line) {
                      line.ctApi = QStringLiteral("/lib/libCTNRV32.so");
                    })},
        AcceptedRow{"simulate alone takes the bundled practice", "--simulate",
                    With([](CommandLine& line) { line.simulate = QStringLiteral("praxis"); })},
        AcceptedRow{
            "simulate in front of another option", "--simulate --console",
            ConsoleWith([](CommandLine& line) { line.simulate = QStringLiteral("praxis"); })},
        AcceptedRow{"simulate with a scenario", "--simulate leer",
                    With([](CommandLine& line) { line.simulate = QStringLiteral("leer"); })},
        AcceptedRow{"simulate with an equals sign", "--simulate=leer",
                    With([](CommandLine& line) { line.simulate = QStringLiteral("leer"); })},
        AcceptedRow{
            "the directory of the schemas", "--schema-dir /schemas",
            With([](CommandLine& line) { line.schemaDirectory = QStringLiteral("/schemas"); })},
        AcceptedRow{"one serial port", "--serial-port 1=/dev/ttyUSB0", With([](CommandLine& line) {
                      line.serialPorts = {{1, QStringLiteral("/dev/ttyUSB0")}};
                    })},
        AcceptedRow{"several serial ports",
                    "--serial-port 1=/dev/a --serial-port 4=/dev/b --serial-port 256=/dev/c",
                    With([](CommandLine& line) {
                      line.serialPorts = {{1, QStringLiteral("/dev/a")},
                                          {4, QStringLiteral("/dev/b")},
                                          {256, QStringLiteral("/dev/c")}};
                    })},
        AcceptedRow{"a device with an equals sign in its name", "--serial-port 2=/dev/by=id",
                    With([](CommandLine& line) {
                      line.serialPorts = {{2, QStringLiteral("/dev/by=id")}};
                    })},
        AcceptedRow{"the last of two devices for one number counts",
                    "--serial-port 2=/dev/a --serial-port 2=/dev/b", With([](CommandLine& line) {
                      line.serialPorts = {{2, QStringLiteral("/dev/b")}};
                    })},
        AcceptedRow{"the console", "--console", ConsoleWith([](CommandLine&) {})},
        AcceptedRow{"the console with everything for a scan",
                    "--console --json --port 8447 --erase-records --validate",
                    ConsoleWith([](CommandLine& line) {
                      line.json = line.eraseRecords = line.validate = true;
                      line.port = Port(8447);
                    })},
        AcceptedRow{"the console without messages", "--console --quiet",
                    ConsoleWith([](CommandLine& line) { line.quiet = true; })},
        AcceptedRow{
            "the console with a test report", "--console --report bericht.pdf",
            ConsoleWith([](CommandLine& line) { line.report = QStringLiteral("bericht.pdf"); })},
        AcceptedRow{"the console with every step", "--console --verbose",
                    ConsoleWith([](CommandLine& line) { line.verbose = true; })},
        AcceptedRow{"a value that looks like an option with one", "--ct-api --console=1",
                    With([](CommandLine& line) { line.ctApi = QStringLiteral("--console=1"); })},
        AcceptedRow{"the first serial port", "--console --port 1",
                    ConsoleWith([](CommandLine& line) { line.port = Port(1); })},
        AcceptedRow{"the last serial port", "--console --port 256",
                    ConsoleWith([](CommandLine& line) { line.port = Port(256); })},
        AcceptedRow{"the first USB device", "--console --port 8192",
                    ConsoleWith([](CommandLine& line) { line.port = Port(8192); })},
        AcceptedRow{"the guided questions", "--console --diagnose 3",
                    ConsoleWith([](CommandLine& line) { line.diagnose = Port(3); })},
        AcceptedRow{"the guided questions with validation", "--console --diagnose 8192 --validate",
                    ConsoleWith([](CommandLine& line) {
                      line.diagnose = Port(8192);
                      line.validate = true;
                    })}),
    SentenceName());

struct RefusedRow {
  const char* sentence;
  const char* arguments;
  QStringView problem;  // the first line of the text

  friend std::ostream& operator<<(std::ostream& out, const RefusedRow& row) {
    return out << row.sentence;
  }
};

class RefusedLineTest : public testing::TestWithParam<RefusedRow> {};

TEST_P(RefusedLineTest, SaysWhyAndWhereHelpIs) {
  const auto parsed = Parse(Split(GetParam().arguments));
  ASSERT_TRUE(std::holds_alternative<CommandLineText>(parsed));
  const auto& text = std::get<CommandLineText>(parsed);
  EXPECT_TRUE(text.isError);
  EXPECT_EQ(text.text, GetParam().problem + u"\nHilfe: kartocheck --help");
}

constexpr QStringView BadPort = u"--port verlangt eine Zahl von 1 bis 256 oder 8192 bis 8447.";
constexpr QStringView BadDiagnose =
    u"--diagnose verlangt eine Zahl von 1 bis 256 oder 8192 bis 8447.";
constexpr QStringView BadSerialPort = u"--serial-port verlangt N=GERÄT mit N von 1 bis 256.";
constexpr QStringView NeedsConsole =
    u"--json, --port, --erase-records, --validate, --diagnose, --report, --verbose und --quiet "
    u"gelten nur mit --console.";
constexpr QStringView WithDiagnose =
    u"--diagnose verträgt --json, --port, --erase-records, --report und --quiet nicht.";

INSTANTIATE_TEST_SUITE_P(
    Main, RefusedLineTest,
    testing::Values(
        RefusedRow{"an unknown option", "--colour", u"Unbekannte Option: --colour"},
        RefusedRow{"an unknown letter", "-x", u"Unbekannte Option: -x"},
        RefusedRow{"an argument without an option", "praxis", u"Unbekannte Angabe: praxis"},
        RefusedRow{"an option that lacks its value", "--ct-api", u"Einer Option fehlt ihr Wert."},
        RefusedRow{"a value for --console", "--console=1", u"--console nimmt keinen Wert an."},
        RefusedRow{"a value for --json", "--console --json=ja", u"--json nimmt keinen Wert an."},
        RefusedRow{"an empty value", "--console --validate=", u"--validate nimmt keinen Wert an."},
        RefusedRow{"a value for --erase-records", "--console --erase-records=1",
                   u"--erase-records nimmt keinen Wert an."},
        RefusedRow{"a value for --verbose", "--verbose=2", u"--verbose nimmt keinen Wert an."},
        RefusedRow{"a value for --quiet", "--quiet=2", u"--quiet nimmt keinen Wert an."},
        RefusedRow{"a value for --help", "--help=x", u"--help nimmt keinen Wert an."},
        RefusedRow{"a value for its letter", "-h=x", u"-h nimmt keinen Wert an."},
        RefusedRow{"a value for --version", "--version=x", u"--version nimmt keinen Wert an."},
        RefusedRow{"a value for an unknown option", "--sprache=de",
                   u"Unbekannte Option: --sprache"},
        RefusedRow{"the value of one option before the lack of another's", "--json=1 --port",
                   u"--json nimmt keinen Wert an."},
        RefusedRow{"port 0", "--console --port 0", BadPort},
        RefusedRow{"a negative port", "--console --port -1", BadPort},
        RefusedRow{"the number behind the serial ports", "--console --port 257", BadPort},
        RefusedRow{"the number before the USB devices", "--console --port 8191", BadPort},
        RefusedRow{"the number behind the USB devices", "--console --port 8448", BadPort},
        RefusedRow{"a port that is no number", "--console --port COM1", BadPort},
        RefusedRow{"a number with a tail", "--console --port 1x", BadPort},
        RefusedRow{"a number of another base", "--console --port 0x1", BadPort},
        RefusedRow{"a number beyond all bounds", "--console --port 99999999999", BadPort},
        RefusedRow{"a diagnosis of no port", "--console --diagnose 0", BadDiagnose},
        RefusedRow{"a diagnosis of a word", "--console --diagnose eins", BadDiagnose},
        RefusedRow{"a serial port without a device", "--serial-port 1=", BadSerialPort},
        RefusedRow{"a serial port without a number", "--serial-port =/dev/a", BadSerialPort},
        RefusedRow{"a serial port without an equals sign", "--serial-port /dev/a", BadSerialPort},
        RefusedRow{"a serial port 0", "--serial-port 0=/dev/a", BadSerialPort},
        RefusedRow{"a serial port of a USB device", "--serial-port 8192=/dev/a", BadSerialPort},
        RefusedRow{"json without the console", "--json", NeedsConsole},
        RefusedRow{"a port without the console", "--port 1", NeedsConsole},
        RefusedRow{"erasing without the console", "--erase-records", NeedsConsole},
        RefusedRow{"validating without the console", "--validate", NeedsConsole},
        RefusedRow{"diagnosing without the console", "--diagnose 1", NeedsConsole},
        RefusedRow{"silence without the console", "--quiet", NeedsConsole},
        RefusedRow{"a test report without the console", "--report a.txt", NeedsConsole},
        RefusedRow{"every step without the console", "--verbose", NeedsConsole},
        RefusedRow{"silence and every step", "--console --quiet --verbose",
                   u"--verbose und --quiet schließen einander aus."},
        RefusedRow{"a diagnosis that asks in silence", "--console --diagnose 1 --quiet",
                   WithDiagnose},
        RefusedRow{"a diagnosis with a test report", "--console --diagnose 1 --report a.txt",
                   WithDiagnose},
        RefusedRow{"a diagnosis as json", "--console --diagnose 1 --json", WithDiagnose},
        RefusedRow{"a diagnosis beside a port", "--console --diagnose 1 --port 1", WithDiagnose},
        RefusedRow{"a diagnosis that erases unasked", "--console --diagnose 1 --erase-records",
                   WithDiagnose},
        RefusedRow{"a library and simulated terminals", "--ct-api x --simulate leer",
                   u"--ct-api und --simulate schließen einander aus."}),
    SentenceName());

TEST(CommandLineTest, HelpNamesEveryOption) {
  const auto parsed = Parse({QStringLiteral("--help")});
  ASSERT_TRUE(std::holds_alternative<CommandLineText>(parsed));
  const auto& text = std::get<CommandLineText>(parsed);
  EXPECT_FALSE(text.isError);
  for (const char16_t* option :
       {u"--ct-api", u"--simulate", u"--serial-port", u"--schema-dir", u"--console", u"--json",
        u"--port", u"--erase-records", u"--validate", u"--diagnose", u"--verbose", u"--quiet",
        u"--help", u"--version"}) {
    EXPECT_TRUE(text.text.contains(QString::fromUtf16(option)))
        << QString::fromUtf16(option).toStdString();
  }
}

TEST(CommandLineTest, VersionNamesTheProgram) {
  const auto parsed = Parse({QStringLiteral("--version")});
  ASSERT_TRUE(std::holds_alternative<CommandLineText>(parsed));
  EXPECT_TRUE(std::get<CommandLineText>(parsed).text.startsWith(u"KartoCheck "));
  EXPECT_FALSE(std::get<CommandLineText>(parsed).isError);
}

}  // namespace
}  // namespace kartocheck::test
