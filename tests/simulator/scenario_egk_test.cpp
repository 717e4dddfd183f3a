#include <algorithm>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <iterator>

#include "simulator/gzip.h"
#include "simulator/hex.h"
#include "simulator/inflate.h"
#include "simulator/scenario.h"
#include "simulator/scenario_support.h"

namespace ctapi {
namespace {

namespace fs = std::filesystem;

using test::ErrorOf;
using test::Exchange;
using test::Folder;
using test::Inflate;
using test::PrintTo;
using test::TerminalWith;

constexpr const char* Place = "ports[0].terminal.";

std::string CardWith(const std::string& what) {
  return TerminalWith(R"("card": {"egk": {)" + what + "}}");
}

std::string RecordWith(const std::string& what) {
  return TerminalWith(R"("reset": "9501", "records": [{"egk": {)" + what + "}}]");
}

struct BadEgk {
  const char* Name;
  std::string Text;
  std::string Error;
};

class EgkScenarioErrors : public testing::TestWithParam<BadEgk> {};

TEST_P(EgkScenarioErrors, NamePlaceAndReason) {
  EXPECT_EQ(ErrorOf(GetParam().Text), Place + GetParam().Error);
}

INSTANTIATE_TEST_SUITE_P(
    Card, EgkScenarioErrors,
    testing::Values(
        BadEgk{"NoKindOfCard", TerminalWith(R"("card": {})"),
               "card: one of the keys 'kvk' and 'egk' is needed"},
        BadEgk{"TwoKindsOfCard", TerminalWith(R"("card": {"kvk": {"hex": "60"}, "egk": {}})"),
               "card: one of the keys 'kvk' and 'egk' is needed"},
        BadEgk{"UnknownKey", CardWith(R"("colour": "blue")"), "card.egk: unknown key 'colour'"},
        BadEgk{"UnknownGeneration", CardWith(R"("generation": "G3")"),
               "card.egk.generation: unknown generation 'G3'"},
        BadEgk{"SerialNumber", CardWith(R"("iccsn": "802")"),
               "card.egk: the card serial number needs an even number of digits"},
        BadEgk{"UnknownApplication", CardWith(R"("application": "off")"),
               "card.egk.application: unknown state of the application 'off'"},
        BadEgk{"UnknownPlace", CardWith(R"("gvdPlace": "there")"),
               "card.egk.gvdPlace: unknown place 'there'"},
        BadEgk{"UnknownOffsets", CardWith(R"("noGvdOffsets": "FF")"),
               "card.egk.noGvdOffsets: unknown offsets 'FF'"},
        BadEgk{"UnknownPadding", CardWith(R"("padding": "FF")"),
               "card.egk.padding: unknown padding 'FF'"},
        BadEgk{"UnknownKeyOfTheStatus", CardWith(R"("status": {"x": 1})"),
               "card.egk.status: unknown key 'x'"},
        BadEgk{"Transaction", CardWith(R"("status": {"transaction": "2"})"),
               "card.egk.status.transaction: expected '0' or '1'"},
        BadEgk{"Timestamp", CardWith(R"("status": {"timestamp": "2024010100000"})"),
               "card.egk.status.timestamp: expected 14 digits JJJJMMTThhmmss"},
        BadEgk{"TimestampLetters", CardWith(R"("status": {"timestamp": "2024010100000x"})"),
               "card.egk.status.timestamp: expected 14 digits JJJJMMTThhmmss"},
        BadEgk{"Version", CardWith(R"("status": {"version": "0050"})"),
               "card.egk.status.version: expected 5 bytes of hexadecimal digits"},
        BadEgk{"Reserved", CardWith(R"("status": {"reserved": "x"})"),
               "card.egk.status.reserved: expected hexadecimal digits, two a byte"},
        BadEgk{"ReadingDateOfACard", CardWith(R"("readingDate": "05032024")"),
               "card.egk: unknown key 'readingDate'"}),
    test::RowName<BadEgk>);

INSTANTIATE_TEST_SUITE_P(
    Record, EgkScenarioErrors,
    testing::Values(
        BadEgk{"NumberOfACard", RecordWith(R"("iccsn": "80")"),
               "records[0].egk: unknown key 'iccsn'"},
        BadEgk{"UnknownLayout", RecordWith(R"("statusLayout": "x")"),
               "records[0].egk.statusLayout: unknown layout 'x'"},
        BadEgk{"ApprovalTooLong", RecordWith(R"("approvalNumber": "123", "approvalLength": 2)"),
               "records[0].egk: the approval number is longer than its object"},
        BadEgk{"ApprovalLength", RecordWith(R"("approvalLength": 256)"),
               "records[0].egk.approvalLength: expected a whole number from 0 to 255"},
        BadEgk{"Checksum", RecordWith(R"("checksum": "x")"),
               "records[0].egk.checksum: expected 'computed', 'absent', 'empty' or two hexadecimal "
               "digits"},
        BadEgk{"ExtendedIsNoFlag", RecordWith(R"("extended": 1)"),
               "records[0].egk.extended: expected true or false"},
        BadEgk{"InPiecesIsNoFlag", RecordWith(R"("inPieces": "yes")"),
               "records[0].egk.inPieces: expected true or false"}),
    test::RowName<BadEgk>);

// The error that a scenario gives in a folder with these files.
std::string ErrorWith(const Folder& folder, const std::string& text) {
  const fs::path file = folder.Write("test.json", text);
  try {
    (void)LoadScenario(file);
  } catch (const ScenarioError& error) {
    return std::string(error.what()).substr(file.string().size() + 2);
  }
  return "";
}

TEST(EgkScenario, NamesMissingDocuments) {
  const Folder folder;
  const auto here = folder.Write("a.xml", "<a/>").parent_path();
  const auto in = [&here](const char* name) { return (here / name).string(); };
  EXPECT_EQ(ErrorWith(folder, CardWith(R"("person": "nobody")")),
            "ports[0].terminal.card.egk.person: the folder '" + in("nobody") +
                "' has no pd.xml, vd.xml or gvd.xml");
  EXPECT_EQ(ErrorWith(folder, CardWith(R"("pd": "b.xml")")),
            "ports[0].terminal.card.egk.pd: cannot read the file '" + in("b.xml") + "'");
  EXPECT_EQ(ErrorWith(folder, CardWith(R"("vdBlock": "b.gz")")),
            "ports[0].terminal.card.egk.vdBlock: cannot read the file '" + in("b.gz") + "'");
  EXPECT_EQ(ErrorWith(folder, CardWith(R"("efGvd": "b.bin")")),
            "ports[0].terminal.card.egk.efGvd: cannot read the file '" + in("b.bin") + "'");
  EXPECT_EQ(ErrorWith(folder, CardWith(R"("pd": "a.xml", "pdBlock": "a.xml")")),
            "ports[0].terminal.card.egk: only one of the keys 'pd' and 'pdBlock' is allowed");
}

TEST(EgkScenario, NamesABlockThatIsTooLargeForItsFile) {
  const Folder folder;
  folder.Write("large.gz", std::string(849, 'x'));
  EXPECT_EQ(ErrorWith(folder, CardWith(R"("pdBlock": "large.gz")")),
            "ports[0].terminal.card.egk: the data are larger than their file of 850 bytes");
}

std::string WithoutWord(const std::string& answer) {
  EXPECT_EQ(answer.substr(answer.size() - 4), "9000");
  return answer.substr(0, answer.size() - 4);
}

Bytes ReadFileOfCard(SimulatedPractice& practice, const char* select, std::size_t offset,
                     std::size_t length) {
  EXPECT_EQ(Exchange(practice, "00A4040C06D27600000102"), "9000");
  EXPECT_EQ(Exchange(practice, select), "9000");
  Bytes content;
  while (content.size() < length) {
    Bytes command{0x00, 0xB0};
    AppendBigEndian(command, offset + content.size());
    command.push_back(
        static_cast<std::uint8_t>(std::min<std::size_t>(length - content.size(), 252)));
    const std::string piece = WithoutWord(Exchange(practice, test::ToHex(command).c_str()));
    if (piece.empty()) break;
    Append(content, *BytesFromHex(piece));
  }
  EXPECT_EQ(content.size(), length);
  return content;
}

std::size_t NumberAt(const Bytes& bytes, std::size_t position) {
  return static_cast<std::size_t>((bytes.at(position) << 8) | bytes.at(position + 1));
}

struct Documents {
  std::optional<std::string> Pd;
  std::optional<std::string> Vd;
  std::optional<std::string> Gvd;
};

constexpr const char* SelectPd = "00A4020C02D001";
constexpr const char* SelectVd = "00A4020C02D002";
constexpr const char* SelectGvd = "00A4020C02D003";

// The documents of the card on port 1, read as a practice program does; the GVD from EF.VD.
Documents ReadCard(SimulatedPractice& practice) {
  EXPECT_EQ(practice.Init(1, 1), 0);
  EXPECT_EQ(Exchange(practice, "2011000000"), "9000");
  EXPECT_EQ(Exchange(practice, "201201000101"), "9001");
  Documents documents;
  const std::size_t length = NumberAt(ReadFileOfCard(practice, SelectPd, 0, 2), 0);
  if (length > 0) documents.Pd = Inflate(ReadFileOfCard(practice, SelectPd, 2, length));
  const Bytes offsets = ReadFileOfCard(practice, SelectVd, 0, 8);
  const auto block = [&](std::size_t position) -> std::optional<std::string> {
    const std::size_t start = NumberAt(offsets, position);
    const std::size_t end = NumberAt(offsets, position + 2);
    if (start == 0 || start == 0xFFFF) return std::nullopt;
    return Inflate(ReadFileOfCard(practice, SelectVd, start, end - start + 1));
  };
  documents.Vd = block(0);
  documents.Gvd = block(4);
  return documents;
}

std::string Contents(const fs::path& file) {
  std::ifstream stream(file, std::ios::binary);
  return {std::istreambuf_iterator<char>(stream), {}};
}

struct PersonRow {
  std::string Name;  // letters, digits and _
  std::string Folder;
};

std::vector<PersonRow> People() {
  std::vector<PersonRow> people;
  for (const auto& entry : fs::directory_iterator(BUNDLED_SCENARIOS "/personen")) {
    const std::string folder = entry.path().filename().string();
    std::string name = folder;
    std::replace(name.begin(), name.end(), '-', '_');
    people.push_back({name, folder});
  }
  std::sort(people.begin(), people.end(),
            [](const auto& a, const auto& b) { return a.Name < b.Name; });
  return people;
}

class BundledPerson : public testing::TestWithParam<PersonRow> {};

TEST_P(BundledPerson, IsReadFromTheCardAsWritten) {
  const fs::path scenarios = BUNDLED_SCENARIOS;
  const std::string& name = GetParam().Folder;
  SimulatedPractice practice = LoadScenario(scenarios / ("egk-" + name + ".json"));
  const Documents documents = ReadCard(practice);
  const fs::path folder = scenarios / "personen" / name;
  EXPECT_EQ(documents.Pd, Contents(folder / "pd.xml"));
  EXPECT_EQ(documents.Vd, Contents(folder / "vd.xml"));
  if (fs::exists(folder / "gvd.xml")) {
    EXPECT_EQ(documents.Gvd, Contents(folder / "gvd.xml"));
  } else {
    EXPECT_EQ(documents.Gvd, std::nullopt);
  }
}

INSTANTIATE_TEST_SUITE_P(People, BundledPerson, testing::ValuesIn(People()),
                         test::RowName<PersonRow>);

TEST(EgkScenario, EveryKeyOfACard) {
  const Folder folder;
  folder.Write("p/pd.xml", "<pd/>");
  folder.Write("p/vd.xml", "<vd/>");
  folder.Write("p/gvd.xml", "<gvd/>");
  SimulatedPractice practice = LoadScenario(folder.Write("test.json", CardWith(R"(
      "person": "p", "iccsn": "80271234", "generation": "G1+", "gvdPlace": "both",
      "padding": "none", "application": "active",
      "status": {"transaction": "1", "timestamp": "20240101123456", "version": "0102030405",
                 "reserved": "060708090A"})")));
  const Documents documents = ReadCard(practice);
  EXPECT_EQ(documents.Pd, "<pd/>");
  EXPECT_EQ(documents.Vd, "<vd/>");
  EXPECT_EQ(documents.Gvd, "<gvd/>");
  const std::size_t length = NumberAt(ReadFileOfCard(practice, SelectGvd, 0, 2), 0);
  EXPECT_EQ(Inflate(ReadFileOfCard(practice, SelectGvd, 2, length)), "<gvd/>");
  EXPECT_EQ(Exchange(practice, "00B07F0001"), "6B00");
  EXPECT_EQ(Exchange(practice, "00B08C0000"),
            "313230323430313031313233343536"
            "0102030405060708090A9000");
  EXPECT_EQ(Exchange(practice, "20110100"), "9001");
  EXPECT_EQ(Exchange(practice, "00B0820000"), "5A04802712349000");
  EXPECT_EQ(Exchange(practice, "00B2018400"), "00300000009000");
}

TEST(EgkScenario, DocumentsReplaceAPersonsOwn) {
  const Folder folder;
  folder.Write("p/pd.xml", "<pd/>");
  folder.Write("p/vd.xml", "<vd/>");
  folder.Write("other.xml", "<other/>");
  SimulatedPractice practice =
      LoadScenario(folder.Write("test.json", CardWith(R"("person": "p", "vd": "other.xml")")));
  const Documents documents = ReadCard(practice);
  EXPECT_EQ(documents.Pd, "<pd/>");
  EXPECT_EQ(documents.Vd, "<other/>");
  EXPECT_EQ(documents.Gvd, std::nullopt);
}

TEST(EgkScenario, BlocksAndFilesAsTheyAre) {
  const Folder folder;
  folder.Write("block.bin", std::string("\x01\x02\x03"));
  folder.Write("file.bin", std::string("\x00\x09", 2));
  SimulatedPractice practice = LoadScenario(folder.Write("test.json", CardWith(R"(
      "pdBlock": "block.bin", "vdBlock": "block.bin", "gvdBlock": "block.bin",
      "efGvd": "file.bin", "efStatusVd": "block.bin", "gvdPlace": "nowhere",
      "noGvdOffsets": "FFFF")")));
  ASSERT_EQ(practice.Init(1, 1), 0);
  ASSERT_EQ(Exchange(practice, "201201000101"), "9001");
  EXPECT_EQ(test::ToHex(ReadFileOfCard(practice, SelectPd, 0, 5)), "0003010203");
  EXPECT_EQ(test::ToHex(ReadFileOfCard(practice, SelectVd, 0, 11)), "0008000AFFFFFFFF010203");
  EXPECT_EQ(test::ToHex(ReadFileOfCard(practice, SelectGvd, 0, 2)), "0009");
  EXPECT_EQ(Exchange(practice, "00B08C0000"), "0102039000");
}

TEST(EgkScenario, WholeFilesInPlaceOfPdAndVd) {
  const Folder folder;
  folder.Write("file.bin", std::string("\x00\x09", 2));
  SimulatedPractice practice = LoadScenario(
      folder.Write("test.json", CardWith(R"("efPd": "file.bin", "efVd": "file.bin")")));
  ASSERT_EQ(practice.Init(1, 1), 0);
  ASSERT_EQ(Exchange(practice, "201201000101"), "9001");
  EXPECT_EQ(Exchange(practice, "00A4040C06D27600000102"), "9000");
  EXPECT_EQ(Exchange(practice, "00B0810000"), "00099000");
  EXPECT_EQ(Exchange(practice, "00B0820000"), "00099000");
}

TEST(EgkScenario, StatesOfTheApplication) {
  const std::pair<const char*, const char*> rows[] = {
      {"active", "9000"}, {"deactivated", "6283"}, {"missing", "6A82"}};
  for (const auto& [state, expected] : rows) {
    SimulatedPractice practice =
        test::Load(CardWith(std::string(R"("application": ")") + state + "\""));
    ASSERT_EQ(practice.Init(1, 1), 0);
    ASSERT_EQ(Exchange(practice, "201201000101"), "9001");
    EXPECT_EQ(Exchange(practice, "00A4040C06D27600000102"), expected) << state;
  }
}

SimulatedPractice Presenting(const std::string& scenario, const Folder& folder) {
  SimulatedPractice practice = LoadScenario(folder.Write("test.json", scenario));
  EXPECT_EQ(practice.Init(1, 1), 0);
  EXPECT_EQ(Exchange(practice, "201201000101"), "9001");
  EXPECT_EQ(Exchange(practice, "00A4040C06D27600000102"), "9000");
  return practice;
}

TEST(EgkScenario, EveryKeyOfARecord) {
  const Folder folder;
  folder.Write("p/gvd.xml", "<gvd/>");
  SimulatedPractice practice = Presenting(RecordWith(R"(
      "person": "p", "readingDate": "20240305", "approvalNumber": "A;B", "approvalLength": 4,
      "checksum": "EE", "statusLayout": "raw", "inPieces": true, "extended": true,
      "status": {"reserved": "0000000000"})"),
                                          folder);
  EXPECT_EQ(Exchange(practice, "00B08C0000"),
            "303230323530343037313031303538005002000000000000009108323032343033303592"
            "04413B4220"
            "9301EE9000");
  const std::string gvd = test::ToHex(Gzip(BytesOf("<gvd/>")));
  EXPECT_EQ(Exchange(practice, "00B0830000").substr(4, gvd.size()), gvd);
  EXPECT_EQ(Exchange(practice, "00B0820000").size(), 2 * (256u + 2));
}

TEST(EgkScenario, ARecordFollowsItsTerminal) {
  const Folder folder;
  folder.Write("p/gvd.xml", "<gvd/>");
  SimulatedPractice extended = Presenting(RecordWith(R"("person": "p")"), folder);
  EXPECT_EQ(Exchange(extended, "00B08C0000").size(), 2 * (80u + 2));
  EXPECT_EQ(Exchange(extended, "00B0830002").substr(4), "9000");
  EXPECT_EQ(Exchange(extended, "00B0820404"), "000000009000");

  const std::string plainTerminal =
      R"({"ports": [{"port": 1, "terminal": {"family": "delta", "records": [
          {"egk": {"person": "p"}}]}}]})";
  SimulatedPractice plain = Presenting(plainTerminal, folder);
  EXPECT_EQ(Exchange(plain, "00B08C0000").size(), 2 * (69u + 2));
  EXPECT_EQ(Exchange(plain, "00B0830002"), "6A82");
  EXPECT_EQ(Exchange(plain, "00B0820402"), "00089000");
}

}  // namespace
}  // namespace ctapi
