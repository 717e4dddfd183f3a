#include "simulator/scenario.h"

#include <algorithm>
#include <array>
#include <fstream>
#include <gtest/gtest.h>

#include "simulator/hex.h"
#include "simulator/scenario_support.h"

namespace ctapi {
namespace {

using test::ErrorOf;
using test::Exchange;
using test::Folder;
using test::KvkWith;
using test::Load;
using test::PortWith;
using test::PrintTo;
using test::TerminalWith;

namespace fs = std::filesystem;

struct BadScenario {
  const char* Name;
  std::string Text;
  const char* Error;
};

class ScenarioErrors : public testing::TestWithParam<BadScenario> {};

TEST_P(ScenarioErrors, NamePlaceAndReason) {
  EXPECT_EQ(ErrorOf(GetParam().Text), GetParam().Error);
}

INSTANTIATE_TEST_SUITE_P(
    Rows, ScenarioErrors,
    testing::Values(
        BadScenario{"RootIsNoObject", "[]", "expected an object"},
        BadScenario{"NoPorts", "{}", "the key 'ports' is missing"},
        BadScenario{"PortsAreNoList", R"({"ports": 1})", "ports: expected a list"},
        BadScenario{"UnknownKeyAtTheRoot", R"({"ports": [], "port": 1})", "unknown key 'port'"},
        BadScenario{"UnknownKeyOfTwoLines", R"({"ports": [], "a\n\u001b[2J": 1})",
                    "unknown key 'a??[2J'"},
        BadScenario{"DescriptionIsNoText", R"({"description": 1, "ports": []})",
                    "description: expected a text"},
        BadScenario{"PortIsNoObject", R"({"ports": [7]})", "ports[0]: expected an object"},
        BadScenario{"PortWithoutNumber", R"({"ports": [{}]})",
                    "ports[0]: the key 'port' is missing"},
        BadScenario{"PortNumberIsAText", R"({"ports": [{"port": "1"}]})",
                    "ports[0].port: expected a whole number from 1 to 8447"},
        BadScenario{"PortNumberIsBroken", R"({"ports": [{"port": 1.5}]})",
                    "ports[0].port: expected a whole number from 1 to 8447"},
        BadScenario{"PortNumberIsHuge", R"({"ports": [{"port": 18446744073709551615}]})",
                    "ports[0].port: expected a whole number from 1 to 8447"},
        BadScenario{"PortNumber0", R"({"ports": [{"port": 0}]})",
                    "ports[0].port: expected a whole number from 1 to 8447"},
        BadScenario{"PortNumber257", R"({"ports": [{"port": 257}]})",
                    "ports[0].port: expected 1 to 256 for a serial port or 8192 to 8447 for a USB "
                    "device"},
        BadScenario{"PortTwice", R"({"ports": [{"port": 3}, {"port": 3}]})",
                    "ports[1].port: the port 3 is described twice"},
        BadScenario{"UnknownKeyOfAPort", PortWith(R"("speed": 1)"),
                    "ports[0]: unknown key 'speed'"},
        BadScenario{"CodeOutOfRange", PortWith(R"("initCode": -129)"),
                    "ports[0].initCode: expected a whole number from -128 to 127"},
        BadScenario{"Baud0", PortWith(R"("baud": 0)"),
                    "ports[0].baud: expected a whole number from 1 to 2147483647"},
        BadScenario{"NegativeDelay", PortWith(R"("delay": -1)"),
                    "ports[0].delay: expected a whole number from 0 to 60000"},
        BadScenario{"UnknownLineState", PortWith(R"("line": {"state": "broken"})"),
                    "ports[0].line.state: unknown state 'broken'"},
        BadScenario{"SignalIsNoFlag", PortWith(R"("line": {"signal": 1})"),
                    "ports[0].line.signal: expected true or false"},
        BadScenario{"UnknownProbe", PortWith(R"("line": {"probe": "x"})"),
                    "ports[0].line.probe: unknown probe answer 'x'"},
        BadScenario{"UnknownKeyOfALine", PortWith(R"("line": {"dsr": true})"),
                    "ports[0].line: unknown key 'dsr'"},
        BadScenario{"TerminalWithoutFamily", PortWith(R"("terminal": {})"),
                    "ports[0].terminal: the key 'family' is missing"},
        BadScenario{"UnknownFamily",
                    R"({"ports": [{"port": 1}, {"port": 2}, {"port": 3,
                        "terminal": {"family": "x"}}]})",
                    "ports[2].terminal.family: unknown family 'x'"},
        BadScenario{"UnknownKeyOfATerminal", TerminalWith(R"("colour": "grey")"),
                    "ports[0].terminal: unknown key 'colour'"},
        BadScenario{"MakerTooLong", TerminalWith(R"("maker": "DENRVX")"),
                    "ports[0].terminal.maker: expected at most 5 ASCII characters"},
        BadScenario{"ProductCodeNotAscii", TerminalWith(R"("productCode": "PKTÄ")"),
                    "ports[0].terminal.productCode: expected at most 5 ASCII characters"},
        BadScenario{"HandheldVersionTooLong", TerminalWith(R"("handheldVersion": "0010020030")"),
                    "ports[0].terminal.handheldVersion: expected at most 9 ASCII characters"},
        BadScenario{"StatusWordOfOneByte", TerminalWith(R"("reset": "95")"),
                    "ports[0].terminal.reset: expected a status word of four hexadecimal digits"},
        BadScenario{"StatusWordIsANumber", TerminalWith(R"("functionalUnits": 9000)"),
                    "ports[0].terminal.functionalUnits: expected a text"},
        BadScenario{"AnswerIsNoHex", TerminalWith(R"("manufacturerAnswer": "460")"),
                    "ports[0].terminal.manufacturerAnswer: expected hexadecimal digits, two a "
                    "byte"},
        BadScenario{"UnknownUsb", TerminalWith(R"("usb": "yes")"),
                    "ports[0].terminal.usb: unknown USB answer 'yes'"},
        BadScenario{"UnknownMedium", TerminalWith(R"("outputMedium": "lcd")"),
                    "ports[0].terminal.outputMedium: unknown output medium 'lcd'"},
        BadScenario{"UnknownCondition", TerminalWith(R"("condition": "off")"),
                    "ports[0].terminal.condition: unknown condition 'off'"},
        BadScenario{"UnknownRelease", TerminalWith(R"("release": "yes")"),
                    "ports[0].terminal.release: unknown release 'yes'"},
        BadScenario{"RecordsAreNoList", TerminalWith(R"("records": {})"),
                    "ports[0].terminal.records: expected a list"},
        BadScenario{"UnknownKeyOfACard",
                    TerminalWith("\"card\": {\"kvk\": {\"hex\": \"60\"}, "
                                 R"("x": 1})"),
                    "ports[0].terminal.card: unknown key 'x'"},
        BadScenario{"KvkWithoutContent", KvkWith(""),
                    "ports[0].terminal.card.kvk: one of the keys 'elements', 'hex' and 'file' is "
                    "needed"},
        BadScenario{"KvkWithTwoContents", KvkWith(R"("hex": "60", "elements": {})"),
                    "ports[0].terminal.card.kvk: one of the keys 'elements', 'hex' and 'file' is "
                    "needed"},
        BadScenario{"FormOfGivenBytes", KvkWith(R"("hex": "60", "form": "60")"),
                    "ports[0].terminal.card.kvk: unknown key 'form'"},
        BadScenario{"UnknownForm", KvkWith(R"("elements": {}, "form": "6083")"),
                    "ports[0].terminal.card.kvk.form: unknown form '6083'"},
        BadScenario{"UnknownElement", KvkWith(R"("elements": {"name": "x"})"),
                    "ports[0].terminal.card.kvk.elements: unknown key 'name'"},
        BadScenario{"FormerKeyOfTheLastName", KvkWith(R"("elements": {"familyName": "x"})"),
                    "ports[0].terminal.card.kvk.elements: unknown key 'familyName'"},
        BadScenario{"FormerKeyOfTheStatus", KvkWith(R"("elements": {"insuredStatus": "1"})"),
                    "ports[0].terminal.card.kvk.elements: unknown key 'insuredStatus'"},
        BadScenario{"ChecksumIsNoElement", KvkWith(R"("elements": {"checksum": "00"})"),
                    "ports[0].terminal.card.kvk.elements: unknown key 'checksum'"},
        BadScenario{"ElementOfTheSupplementOnTheCard",
                    KvkWith(R"("elements": {"readingDate": "05032024"})"),
                    "ports[0].terminal.card.kvk.elements: unknown key 'readingDate'"},
        BadScenario{"ElementIsNoText", KvkWith(R"("elements": {"town": 5})"),
                    "ports[0].terminal.card.kvk.elements.town: expected a text"},
        BadScenario{"ElementThatCannotBeWritten", KvkWith(R"("elements": {"town": "Łódź"})"),
                    "ports[0].terminal.card.kvk: 'Łódź' begins with a character that DIN 66003 "
                    "does not have"},
        BadScenario{"ElementTooWide",
                    KvkWith(R"("elements": {"validUntil": "12345"}, "form": "fixed219")"),
                    "ports[0].terminal.card.kvk: '12345' is wider than its field"},
        BadScenario{"BadChecksum", KvkWith(R"("elements": {}, "checksum": "0")"),
                    "ports[0].terminal.card.kvk.checksum: expected 'computed', 'absent', 'empty' "
                    "or two hexadecimal digits"},
        BadScenario{"UnknownKeyOfASupplement",
                    KvkWith(R"("elements": {}, "supplement": {"date": ""})"),
                    "ports[0].terminal.card.kvk.supplement: unknown key 'date'"},
        BadScenario{"ElementOfTheCardInASupplement",
                    KvkWith(R"("elements": {}, "supplement": {"lastName": ""})"),
                    "ports[0].terminal.card.kvk.supplement: unknown key 'lastName'"},
        BadScenario{"UnknownIdentifier", KvkWith(R"("hex": "60", "identifier": "x")"),
                    "ports[0].terminal.card.kvk.identifier: unknown identifier 'x'"},
        BadScenario{"FaultWithoutResult", PortWith(R"("faults": [{}])"),
                    "ports[0].faults[0]: one of the keys 'code', 'statusWord', 'response' and "
                    "'garbage' is needed"},
        BadScenario{"FaultWithTwoResults", PortWith(R"("faults": [{"code": -1, "response": ""}])"),
                    "ports[0].faults[0]: one of the keys 'code', 'statusWord', 'response' and "
                    "'garbage' is needed"},
        BadScenario{"FaultWithoutFault", PortWith(R"("faults": [{"code": 0}])"),
                    "ports[0].faults[0].code: a fault needs a code other than 0"},
        BadScenario{"FaultAtANegativeExchange",
                    PortWith(R"("faults": [{"code": -1, "exchange": -1}])"),
                    "ports[0].faults[0].exchange: expected a whole number from 0 to 2147483647"},
        BadScenario{"UnknownKeyOfAFault", PortWith(R"("faults": [{"code": -1, "n": 1}])"),
                    "ports[0].faults[0]: unknown key 'n'"}),
    test::RowName<BadScenario>);

TEST(Scenario, NamesTheLineOfTextThatIsNoJson) {
  EXPECT_EQ(ErrorOf("{\n  \"ports\": [,]\n}").substr(0, 36),
            "parse error at line 2, column 13: sy");
}

TEST(Scenario, NamesAFileThatIsMissing) {
  const Folder folder;
  const fs::path file = folder.Write("test.json", KvkWith(R"("file": "karte.bin")"));
  try {
    (void)LoadScenario(file);
    FAIL() << "loaded without its card";
  } catch (const ScenarioError& error) {
    EXPECT_EQ(std::string(error.what()),
              file.string() + ": ports[0].terminal.card.kvk.file: cannot read the file '" +
                  (file.parent_path() / "karte.bin").string() + "'");
  }
}

TEST(Scenario, NamesAnErrorInAFileOfElements) {
  const Folder folder;
  const fs::path file = folder.Write("test.json", KvkWith(R"("elements": "p.json")"));
  const fs::path person = folder.Write("p.json", R"({"town": 1})");
  try {
    (void)LoadScenario(file);
    FAIL() << "loaded without its elements";
  } catch (const ScenarioError& error) {
    EXPECT_EQ(std::string(error.what()), file.string() + ": ports[0].terminal.card.kvk.elements: " +
                                             person.string() + ": town: expected a text");
  }
}

TEST(Scenario, AScenarioThatIsMissing) {
  try {
    (void)LoadScenario("/nowhere/x.json");
    FAIL() << "loaded";
  } catch (const ScenarioError& error) {
    EXPECT_STREQ(error.what(), "/nowhere/x.json: cannot read the file");
  }
}

TEST(Scenario, AFolderIsNoScenario) {
  EXPECT_THROW((void)LoadScenario(fs::temp_directory_path()), ScenarioError);
}

TEST(Scenario, EveryKeyOfAPort) {
  SimulatedPractice practice = Load(R"({"description": "all of them", "ports": [{
    "port": 2, "closeCode": -8, "baud": 38400, "delay": 1, "deviceId": "USB 1",
    "line": {"state": "present", "signal": true, "probe": "fifthByte", "baud": 19200},
    "terminal": {"family": "gamma"},
    "faults": [
      {"exchange": 1, "statusWord": "6F00"},
      {"exchange": 2, "response": "90"},
      {"exchange": 3, "response": ""},
      {"exchange": 4, "garbage": 3},
      {"command": "2013", "exchange": 1, "code": -11, "carriedOut": true}]}]})");
  ASSERT_EQ(practice.Init(1, 2), 0);
  std::int32_t baud = 0;
  EXPECT_EQ(practice.GetBaudrate(1, baud), 0);
  EXPECT_EQ(baud, 38400);
  EXPECT_EQ(practice.PortAt(2)->Delay, std::chrono::milliseconds(1));
  EXPECT_EQ(practice.PortAt(2)->DeviceId, "USB 1");
  EXPECT_TRUE(practice.PortAt(2)->Faults[4].CarriedOut);
  const SerialLine line = practice.SerialLineAt(2);
  EXPECT_TRUE(line.Signal);
  EXPECT_EQ(line.Answer, SerialLine::Probe::FifthByte);
  EXPECT_EQ(line.Baud, 19200);

  EXPECT_EQ(Exchange(practice, "2011000000"), "6F00");
  EXPECT_EQ(Exchange(practice, "2011000000"), "90");
  EXPECT_EQ(Exchange(practice, "2011000000"), "");
  EXPECT_EQ(Exchange(practice, "2011000000"), test::ToHex(GarbageOf(3, 3)));
  EXPECT_EQ(Exchange(practice, "2013008100"), "code -11");
  EXPECT_EQ(Exchange(practice, "2013008100"), "8101019000");
  EXPECT_EQ(practice.Close(1), -8);
}

TEST(Scenario, CodesOfInitAndBaudRate) {
  SimulatedPractice practice = Load(R"({"ports": [
    {"port": 1, "terminal": {"family": "gamma"}, "initCode": -127},
    {"port": 2, "terminal": {"family": "gamma"}, "baudCode": -8}]})");
  EXPECT_EQ(practice.Init(1, 1), -127);
  EXPECT_EQ(practice.Init(1, 2), 0);
  std::int32_t baud = 0;
  EXPECT_EQ(practice.GetBaudrate(1, baud), -8);
}

TEST(Scenario, ALineKeepsWhatItsTerminalImplies) {
  SimulatedPractice practice = Load(R"({"ports": [
    {"port": 1, "baud": 19200, "terminal": {"family": "gamma"}, "line": {"signal": false}},
    {"port": 2, "line": {"state": "inUse"}},
    {"port": 3, "line": {"state": "absent"}},
    {"port": 4, "line": {"state": "failing"}}]})");
  EXPECT_FALSE(practice.SerialLineAt(1).Signal);
  EXPECT_EQ(practice.SerialLineAt(1).Answer, SerialLine::Probe::Right);
  EXPECT_EQ(practice.SerialLineAt(1).Baud, 19200);
  EXPECT_EQ(practice.SerialLineAt(2).Port, SerialLine::State::InUse);
  EXPECT_EQ(practice.SerialLineAt(3).Port, SerialLine::State::Absent);
  EXPECT_EQ(practice.SerialLineAt(4).Port, SerialLine::State::Failing);
}

TEST(Scenario, EveryKeyOfATerminal) {
  SimulatedPractice practice = Load(TerminalWith(
      R"("maker": "NVRHC", "productCode": "PKTD", "version": "9.87", "handheldVersion": "1 2 3 4 5",
         "reset": "9501", "usb": "virtualCom", "outputMedium": "displayPrinter",
         "release": "notInserted", "refusesSelect": true)"));
  ASSERT_EQ(practice.Init(1, 1), 0);
  EXPECT_EQ(Exchange(practice, "2013004600").substr(0, 38),
            "460F4E56524843504B544420392E383720D736");
  EXPECT_EQ(Exchange(practice, "2013004600").substr(100, 18), "312032203320342035");
  EXPECT_EQ(Exchange(practice, "2011000000"), "9501");
  EXPECT_EQ(Exchange(practice, "2071000100").substr(20, 2), "02");
  EXPECT_EQ(Exchange(practice, "00A4040006D27600000101"), "6985");
  const SimulatedTerminal& terminal = *practice.TerminalAt(1);
  EXPECT_EQ(terminal.State().HealthCard, Release::NotInserted);
  EXPECT_TRUE(terminal.Profile().RefusesSelect);
}

TEST(Scenario, AnswersOfATerminalAsTheyAre) {
  SimulatedPractice practice =
      Load(TerminalWith(R"("functionalUnits": "6F00", "manufacturerAnswer": "46 0E 90 00")"));
  ASSERT_EQ(practice.Init(1, 1), 0);
  EXPECT_EQ(Exchange(practice, "2013008100"), "6F00");
  EXPECT_EQ(Exchange(practice, "2013004600"), "460E9000");
}

TEST(Scenario, AMakerGivenToATerminalWithoutOne) {
  SimulatedPractice practice =
      Load(R"({"ports": [{"port": 1, "terminal": {"family": "vedraA", "maker": "XXTST"}}]})");
  ASSERT_EQ(practice.Init(1, 1), 0);
  EXPECT_EQ(Exchange(practice, "2013004600"), "460F5858545354202020202020202020209000");
}

TEST(Scenario, ConditionsOfATerminal) {
  const std::pair<const char*, const char*> rows[] = {
      {"ready", "9000"}, {"menuActive", "6900"}, {"locked", "6900"}, {"lockedSilently", "6200"}};
  for (const auto& [condition, expected] : rows) {
    SimulatedPractice practice = Load(
        std::string(R"({"ports": [{"port": 1, "terminal": {"family": "gamma", "condition": ")") +
        condition + R"(", "card": {"kvk": {"hex": "6000"}}}}]})");
    ASSERT_EQ(practice.Init(1, 1), 0);
    EXPECT_EQ(Exchange(practice, "201201000101"), expected) << condition;
  }
}

std::string ReadKvkOf(SimulatedPractice practice) {
  EXPECT_EQ(practice.Init(1, 1), 0);
  EXPECT_EQ(Exchange(practice, "201201000101"), "9000");
  EXPECT_EQ(Exchange(practice, "00A4040006D27600000101"), "9000");
  const std::string answer = Exchange(practice, "00B0000000");
  EXPECT_EQ(answer.substr(answer.size() - 4), "9000");
  return answer.substr(0, answer.size() - 4);
}

TEST(Scenario, AKvkOfElements) {
  EXPECT_EQ(ReadKvkOf(Load(KvkWith(R"("elements": {"insurerName": "AB", "town": "Ö"},
                                       "form": "6082", "checksum": "empty")"))),
            "60820009800241428C015C8E00");
}

TEST(Scenario, AKvkAsItIs) {
  EXPECT_EQ(ReadKvkOf(Load(KvkWith(R"("hex": "60 02 80 00")"))), "60028000");
}

TEST(Scenario, AKvkFromAFile) {
  const Folder folder;
  folder.Write("karten/karte.bin", std::string("\x60\x02\x80\x00", 4));
  EXPECT_EQ(
      ReadKvkOf(LoadScenario(folder.Write("test.json", KvkWith(R"("file": "karten/karte.bin")")))),
      "60028000");
}

TEST(Scenario, AKvkOfAFileOfElements) {
  const Folder folder;
  folder.Write("p.json", R"({"insurerName": "AB"})");
  EXPECT_EQ(ReadKvkOf(LoadScenario(folder.Write(
                "test.json", KvkWith(R"("elements": "p.json", "checksum": "absent")")))),
            "600480024142");
}

TEST(Scenario, FormsOfAKvk) {
  const std::pair<const char*, std::size_t> rows[] = {
      {"automatic", 9},  {"60", 9},         {"6081", 10},     {"6082", 11},
      {"fixed219", 219}, {"fixed231", 231}, {"fixed255", 255}};
  for (const auto& [form, length] : rows) {
    const std::string text =
        std::string(
            "{\"ports\": [{\"port\": 1, \"terminal\": {\"family\": \"gamma\", \"card\": "
            "{\"kvk\": {\"elements\": {\"insurerName\": \"AB\"}, \"form\": \"") +
        form + "\"}}}}]}";
    EXPECT_EQ(ReadKvkOf(Load(text)).size(), 2 * length) << form;
  }
}

TEST(Scenario, IdentifiersOfAKvk) {
  SimulatedPractice practice = Load(KvkWith(R"("hex": "6000", "identifier": "old")"));
  ASSERT_EQ(practice.Init(1, 1), 0);
  EXPECT_EQ(Exchange(practice, "201201000101"), "9000");
  EXPECT_EQ(Exchange(practice, "00A4040006D27600000101"), "6A82");
  EXPECT_EQ(Exchange(practice, "00A4040006D28000000101"), "9000");
}

TEST(Scenario, StoredRecordsInTheirOrder) {
  SimulatedPractice practice = Load(R"({"ports": [{"port": 1, "terminal": {"family": "vedraF",
    "records": [
      {"kvk": {"elements": {"insurerName": "AB"}, "checksum": "absent",
               "supplement": {"readingDate": "05032024", "approvalNumber": "109"}}},
      {"kvk": {"hex": "6000"}}]}}]})");
  EXPECT_EQ(practice.TerminalAt(1)->StoredRecords(), 2u);
  EXPECT_EQ(ReadKvkOf(practice), "6004800241429108303530333230323492033130399301A0");
}

struct BundledScenario {
  std::string Name;  // letters, digits and _
  fs::path File;
};

std::vector<BundledScenario> BundledScenarios() {
  std::vector<BundledScenario> scenarios;
  for (const auto& entry : fs::directory_iterator(BUNDLED_SCENARIOS)) {
    if (entry.path().extension() != ".json") continue;
    std::string name = entry.path().stem().string();
    std::replace(name.begin(), name.end(), '-', '_');
    scenarios.push_back({std::move(name), entry.path()});
  }
  std::sort(scenarios.begin(), scenarios.end(),
            [](const auto& a, const auto& b) { return a.Name < b.Name; });
  return scenarios;
}

class Bundled : public testing::TestWithParam<BundledScenario> {};

TEST_P(Bundled, LoadsAndOpens) {
  SimulatedPractice practice = LoadScenario(GetParam().File);
  const auto ports = practice.AttachedPorts();
  EXPECT_FALSE(ports.empty());
  for (const std::uint16_t pn : ports) {
    const bool answers = practice.Init(1, pn) == 0;
    const SimulatedPort& port = *practice.PortAt(pn);
    EXPECT_EQ(answers, port.Terminal.has_value() && !port.InitCode) << pn;
    if (answers) {
      EXPECT_EQ(practice.Close(1), 0);
    }
  }
}

INSTANTIATE_TEST_SUITE_P(Scenarios, Bundled, testing::ValuesIn(BundledScenarios()),
                         test::RowName<BundledScenario>);

TEST(BundledScenarios, EveryFamilyHasOne) {
  std::string all;
  for (const BundledScenario& scenario : BundledScenarios()) {
    std::ifstream stream(scenario.File);
    all.append(std::istreambuf_iterator<char>(stream), {});
  }
  for (const TerminalFamily& family : TerminalFamilies()) {
    EXPECT_NE(all.find("\"family\": \"" + std::string(family.Name) + '"'), std::string::npos)
        << family.Name;
  }
}

TEST(ScenarioPages, NameEveryFamily) {
  std::ifstream stream(SCENARIO_PAGES);
  const std::string page{std::istreambuf_iterator<char>(stream), {}};
  for (const TerminalFamily& family : TerminalFamilies()) {
    EXPECT_NE(page.find("\n| `" + std::string(family.Name) + '`'), std::string::npos)
        << family.Name;
  }
}

}  // namespace
}  // namespace ctapi
