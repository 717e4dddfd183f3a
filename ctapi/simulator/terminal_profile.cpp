#include "simulator/terminal_profile.h"

#include <algorithm>
#include <array>

#include "protocol/ct_bcs.h"

namespace ctapi {

namespace {

constexpr std::size_t TextWidth = 5;

constexpr std::uint8_t HandheldTag = 0xD7;
constexpr std::size_t HandheldLength = 54;
constexpr std::size_t HandheldVersionOffset = 31;
constexpr std::size_t HandheldVersionWidth = 9;

constexpr const char* Norva = "DENRV";
constexpr const char* NorvaHandheld = "NVRHC";

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

Manufacturer NorvaProduct(const char* productCode, const char* version) {
  return {.Maker = Norva, .ProductCode = productCode, .Version = version};
}

TerminalProfile Known(Manufacturer maker, StatusWord reset, UsbQuery usb = UsbQuery::Unknown) {
  TerminalProfile profile;
  profile.Maker = std::move(maker);
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
  return {.Maker = NorvaHandheld,
          .ProductCode = "PKTDM",
          .Version = "3.00",
          .HandheldVersion = "003001002"};
}

TerminalProfile StationaryHandheld() {
  TerminalProfile profile = Known(HandheldProduct(), sw::Ok, UsbQuery::OtherDevice);
  profile.RefusesSelect = true;
  return profile;
}

std::span<const TerminalFamily> Families() {
  static const auto families = std::to_array<TerminalFamily>({
      {"gamma", Known(NorvaProduct("PKT-G", "1.20"), sw::Ok)},
      {"sigma", Known(NorvaProduct("PKT-S", "2.10"), sw::MobileTerminal)},
      {"omega", Known(NorvaProduct("PKTO ", "4.01"), sw::Ok, UsbQuery::OtherDevice)},
      {"delta", Known(NorvaProduct("PKTD ", "1.80"), sw::MobileTerminal, UsbQuery::OtherDevice)},
      {"deltaStationary", Known(NorvaProduct("PKTD ", "1.80"), sw::Ok, UsbQuery::OtherDevice)},
      {"deltaMobil",
       Known(NorvaProduct("PKTD ", "2.40"), sw::MobileExtended, UsbQuery::OtherDevice)},
      {"delta3", Known(NorvaProduct("PKTDM", "3.00"), sw::MobileTerminal, UsbQuery::OtherDevice)},
      {"delta3Mobil",
       Known(NorvaProduct("PKTDM", "3.10"), sw::MobileExtended, UsbQuery::OtherDevice)},
      {"vedraA", Older(sw::UnknownInstruction, sw::Ok)},
      {"vedraF", Older(sw::UnknownInstruction, sw::MobileTerminal)},
      {"vedraG", Older(sw::NotAllowed, sw::Ok)},
      {"pktH", EarlyCtBcs()},
      {"handheld", Known(HandheldProduct(), sw::MobileExtended, UsbQuery::OtherDevice)},
      {"handheldStationary", StationaryHandheld()},
      {"unknownProduct",
       Known({.Maker = "XXTST", .ProductCode = "TST-1", .Version = "1.00"}, sw::Ok)},
      {"unknownAnswer", Older(sw::UnknownClass, sw::Ok)},
  });
  return families;
}

}  // namespace

Bytes TerminalProfile::AnswerToManufacturerQuery() const {
  if (ManufacturerAnswer) return *ManufacturerAnswer;
  if (!Maker) return Answer(FunctionalUnits == sw::Ok ? sw::WrongParameters : FunctionalUnits);

  Bytes data;
  AppendObject(data, ct_bcs::ObjectManufacturer,
               Padded(Maker->Maker, TextWidth) + Padded(Maker->ProductCode, TextWidth) +
                   Padded(Maker->Version, TextWidth));
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
