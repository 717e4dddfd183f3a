#include "simulator/terminal_profile.h"

#include <algorithm>
#include <vector>

#include "protocol/ct_bcs.h"
#include "protocol/terminal_models.h"

namespace ctapi {

namespace {

constexpr std::uint8_t HandheldTag = 0xD7;
constexpr std::size_t HandheldLength = 54;
constexpr std::size_t HandheldVersionOffset = 31;
constexpr std::size_t HandheldVersionWidth = 9;

std::string Padded(std::string text, std::size_t width) {
  text.resize(width, ' ');
  return text;
}

Bytes HandheldObject(const std::string& version) {
  std::string value(HandheldLength, ' ');
  value.replace(HandheldVersionOffset, HandheldVersionWidth, Padded(version, HandheldVersionWidth));
  Bytes object;
  AppendObject(object, HandheldTag, value);
  return object;
}

Manufacturer NorvaProduct(std::string_view productCode, const char* version) {
  return {.Maker = std::string(maker::Norva),
          .ProductCode = std::string(productCode),
          .Version = version};
}

TerminalProfile Known(Manufacturer manufacturer, StatusWord reset,
                      UsbQuery usb = UsbQuery::Unknown) {
  TerminalProfile profile;
  profile.Maker = std::move(manufacturer);
  profile.Reset = reset;
  profile.Usb = usb;
  return profile;
}

TerminalProfile Older(StatusWord functionalUnits, StatusWord reset) {
  TerminalProfile profile;
  profile.FunctionalUnits = functionalUnits;
  profile.Reset = reset;
  return profile;
}

TerminalProfile EarlyCtBcs() {
  TerminalProfile profile = Older(sw::NoDiagnosis, sw::Ok);
  profile.Maker = NorvaProduct("PKT-H", "0.90");
  return profile;
}

Manufacturer HandheldProduct() {
  return {.Maker = std::string(maker::NorvaHandheld),
          .ProductCode = std::string(product_code::SerieDeltaMobil),
          .Version = "3.00",
          .HandheldVersion = "003001002"};
}

TerminalProfile StationaryHandheld() {
  TerminalProfile profile = Known(HandheldProduct(), sw::Ok, UsbQuery::OtherDevice);
  profile.RefusesSelect = true;
  return profile;
}

const std::vector<TerminalFamily>& Families() {
  static const std::vector<TerminalFamily> families{
      {"gamma", Known(NorvaProduct(product_code::SerieGamma, "1.20"), sw::Ok)},
      {"sigma", Known(NorvaProduct(product_code::SerieSigma, "2.10"), sw::MobileTerminal)},
      {"omega",
       Known(NorvaProduct(product_code::SerieOmega, "4.01"), sw::Ok, UsbQuery::OtherDevice)},
      {"delta", Known(NorvaProduct(product_code::SerieDelta, "1.80"), sw::MobileTerminal,
                      UsbQuery::OtherDevice)},
      {"deltaStationary",
       Known(NorvaProduct(product_code::SerieDelta, "1.80"), sw::Ok, UsbQuery::OtherDevice)},
      {"deltaMobil", Known(NorvaProduct(product_code::SerieDelta, "2.40"), sw::MobileExtended,
                           UsbQuery::OtherDevice)},
      {"delta3", Known(NorvaProduct(product_code::SerieDeltaMobil, "3.00"), sw::MobileTerminal,
                       UsbQuery::OtherDevice)},
      {"delta3Mobil", Known(NorvaProduct(product_code::SerieDeltaMobil, "3.10"), sw::MobileExtended,
                            UsbQuery::OtherDevice)},
      {"vedraA", Older(sw::UnknownInstruction, sw::Ok)},
      {"vedraF", Older(sw::UnknownInstruction, sw::MobileTerminal)},
      {"vedraG", Older(sw::NotAllowed, sw::Ok)},
      {"pktH", EarlyCtBcs()},
      {"handheld", Known(HandheldProduct(), sw::MobileExtended, UsbQuery::OtherDevice)},
      {"handheldStationary", StationaryHandheld()},
      {"unknownProduct",
       Known({.Maker = "XXTST", .ProductCode = "TST-1", .Version = "1.00"}, sw::Ok)},
      {"unknownAnswer", Older(sw::UnknownClass, sw::Ok)},
  };
  return families;
}

}  // namespace

Bytes TerminalProfile::AnswerToManufacturerQuery() const {
  if (ManufacturerAnswer) return *ManufacturerAnswer;
  if (!Maker) return Answer(FunctionalUnits == sw::Ok ? sw::WrongParameters : FunctionalUnits);

  Bytes data;
  AppendObject(data, ct_bcs::ObjectManufacturer,
               Padded(Maker->Maker, ManufacturerCodeLength) +
                   Padded(Maker->ProductCode, ManufacturerCodeLength) +
                   Padded(Maker->Version, ManufacturerCodeLength));
  if (!Maker->HandheldVersion.empty()) Append(data, HandheldObject(Maker->HandheldVersion));
  return Answer(data, sw::Ok);
}

std::span<const TerminalFamily> TerminalFamilies() {
  return Families();
}

std::optional<TerminalProfile> ProfileOf(std::string_view family) {
  const auto found = std::find_if(Families().begin(), Families().end(),
                                  [family](const auto& entry) { return entry.Name == family; });
  if (found == Families().end()) return std::nullopt;
  return found->Profile;
}

}  // namespace ctapi
