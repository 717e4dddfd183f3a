#pragma once

#include <algorithm>
#include <array>
#include <string_view>

// How terminals are told apart by the manufacturer's data object (CT-BCS, GET STATUS, tag 46):
// codes of five characters for maker and product, padded with blanks.
namespace ctapi {

inline constexpr std::size_t ManufacturerCodeLength = 5;

namespace maker {

using namespace std::string_view_literals;

inline constexpr std::string_view Norva = "DENRV"sv;
inline constexpr std::string_view NorvaHandheld = "NVRHC"sv;

inline constexpr std::array All{Norva, NorvaHandheld};

}  // namespace maker

namespace product_code {

using namespace std::string_view_literals;

inline constexpr std::string_view SerieGamma = "PKT-G"sv;
inline constexpr std::string_view SerieSigma = "PKT-S"sv;
inline constexpr std::string_view SerieOmega = "PKTO "sv;
inline constexpr std::string_view SerieDelta = "PKTD "sv;
inline constexpr std::string_view SerieDeltaMobil = "PKTDM"sv;

}  // namespace product_code

// What identification asks such a terminal besides.
enum class ModelTest {
  None,
  Usb,          // how it is connected
  ResetAndUsb,  // first RESET CT, since it is mobile or stationary
};

struct TerminalModel {
  std::string_view ProductCode;
  std::string_view Name;  // for the user, in German and UTF-8
  ModelTest Tests;
  // The name of the mobile one that keeps extended records; empty where there is none.
  std::string_view ExtendedName{};
};

// Every model that is known by its product code.
inline constexpr auto TerminalModels = std::to_array<TerminalModel>({
    {product_code::SerieGamma, "Serie Gamma", ModelTest::None},
    {product_code::SerieSigma, "Serie Sigma", ModelTest::None},
    {product_code::SerieOmega, "Serie Omega", ModelTest::Usb},
    {product_code::SerieDelta, "Serie Delta", ModelTest::ResetAndUsb, "Norva Delta-2 mobil"},
    {product_code::SerieDeltaMobil, "Serie Delta", ModelTest::ResetAndUsb, "Norva Delta-3 mobil"},
});

// Null for a code that no model has. The code is in capital letters.
[[nodiscard]] constexpr const TerminalModel* FindTerminalModel(std::string_view productCode) {
  const auto* const found =
      std::find_if(TerminalModels.begin(), TerminalModels.end(),
                   [&](const TerminalModel& model) { return model.ProductCode == productCode; });
  return found == TerminalModels.end() ? nullptr : found;
}

// Whether a text of five capital letters is a code by which a maker or a model is known.
[[nodiscard]] constexpr bool IsTerminalCode(std::string_view code) {
  return FindTerminalModel(code) != nullptr ||
         std::find(maker::All.begin(), maker::All.end(), code) != maker::All.end();
}

}  // namespace ctapi
