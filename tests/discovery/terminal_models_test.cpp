#include "protocol/terminal_models.h"

#include <gtest/gtest.h>
#include <ostream>
#include <set>

#include "discovery/terminal_identification.h"
#include "platform/simulated/ct_api_simulated.h"
#include "support/link_fixture.h"
#include "support/printing.h"

// The table of models, identification and the simulated families go together.

namespace ctapi {

void PrintTo(const TerminalModel& model, std::ostream* out) {
  *out << model.ProductCode;
}

}  // namespace ctapi

namespace kartocheck::test {
namespace {

using ctapi::TerminalFamily;
using ctapi::TerminalModel;

constexpr Port Com1(1);

std::string NameOf(const TerminalFamily& family) {
  ctapi::SimulatedPractice practice;
  practice.Attach(1, {.Terminal = ctapi::SimulatedTerminal(family.Profile)});
  CtApiSimulated api(practice);
  Link link(api);
  TerminalInfo info;
  PortEntry port;
  EXPECT_EQ(link.session.CtOpen(Com1), 0);
  EXPECT_EQ(IdentifyTerminal(link.session, Com1, info, port), Identification::Finished);
  return info.ModelName.Trimmed().toStdString();
}

class TerminalModelTest : public testing::TestWithParam<TerminalModel> {};

TEST_P(TerminalModelTest, HasAFamilyForEachOfItsNames) {
  const TerminalModel& model = GetParam();
  std::set<std::string> found;
  for (const TerminalFamily& family : ctapi::TerminalFamilies()) {
    const auto& manufacturer = family.Profile.Maker;
    if (!manufacturer || manufacturer->ProductCode != model.ProductCode) continue;
    EXPECT_TRUE(ctapi::IsTerminalCode(manufacturer->Maker)) << family.Name;
    found.insert(NameOf(family));
  }
  std::set<std::string> expected{std::string(model.Name)};
  if (!model.ExtendedName.empty()) expected.emplace(model.ExtendedName);
  EXPECT_EQ(found, expected);
}

TEST_P(TerminalModelTest, HasACodeOfItsOwnInCapitals) {
  const std::string_view code = GetParam().ProductCode;
  EXPECT_EQ(code.size(), ctapi::ManufacturerCodeLength);
  EXPECT_EQ(ctapi::FindTerminalModel(code)->Name, GetParam().Name);
  for (const char c : code) EXPECT_FALSE(c >= 'a' && c <= 'z') << code;
}

INSTANTIATE_TEST_SUITE_P(Discovery, TerminalModelTest, testing::ValuesIn(ctapi::TerminalModels));

TEST(TerminalModelsTest, EachCodeStandsOnceInTheTable) {
  std::set<std::string_view> codes;
  for (const TerminalModel& model : ctapi::TerminalModels) {
    EXPECT_TRUE(codes.insert(model.ProductCode).second) << model.ProductCode;
  }
}

// A family whose model has no row is told as an unknown terminal.
TEST(TerminalModelsTest, EveryFamilyButTheUnknownOneIsOfAKnownModel) {
  for (const TerminalFamily& family : ctapi::TerminalFamilies()) {
    EXPECT_EQ(NameOf(family) == "Unbekannt", family.Name == "unknownProduct") << family.Name;
  }
}

TEST(TerminalModelsTest, OtherCodesAreNone) {
  for (const char* const code : {"", "PKTO", "PKT-H", "TST-1", "pkto "}) {
    EXPECT_EQ(ctapi::FindTerminalModel(code), nullptr) << code;
    EXPECT_FALSE(ctapi::IsTerminalCode(code)) << code;
  }
  EXPECT_TRUE(ctapi::IsTerminalCode("DENRV"));
  EXPECT_TRUE(ctapi::IsTerminalCode("NVRHC"));
}

}  // namespace
}  // namespace kartocheck::test
