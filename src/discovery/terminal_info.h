#pragma once

#include "protocol/terminal_models.h"
#include "text/fixed_text.h"

namespace kartocheck {

// What is known of the terminal on the port of a slot.
struct TerminalInfo {
  FixedText<50> ModelName;       // display name of the model, or a verdict
  FixedText<25> DisplayText;     // output medium or data format, shown as "Ausgabemedium:"
  FixedText<10> SerialSettings;  // written by the port check
  FixedText<5> ManufacturerId;   // from the manufacturer data object, e.g. "DENRV"
  FixedText<5> ProductCode;      // from the manufacturer data object, e.g. "PKTD "
  FixedText<14> SoftwareVersion;
  bool Answered = false;       // the terminal answered the first status query
  bool SelectRefused = false;  // the KVK select was answered with "6900" after "6200": locked
  bool Reset95 = false;        // mobile terminal: RESET CT answered with "9500" or "9501"
  bool DataRead = false;       // a read produced data for the slot
  bool EgkData = false;        // the slot's data came from an eGK
  bool UsbVirtualCom = false;  // a COM port number that is a USB cable's virtual port
  bool Reset9501 = false;      // mobile terminal that keeps the extended record

  [[nodiscard]] bool IsMobile() const { return Reset95; }
};

// Codes of the manufacturer data object that more is done with than to look a model up.
[[nodiscard]] constexpr QLatin1StringView AsLatin1(std::string_view code) {
  return {code.data(), static_cast<qsizetype>(code.size())};
}
inline constexpr QLatin1StringView MakerNorva = AsLatin1(ctapi::maker::Norva);
inline constexpr QLatin1StringView MakerNorvaHandheld = AsLatin1(ctapi::maker::NorvaHandheld);

namespace product_code {
inline constexpr QLatin1StringView SerieSigma = AsLatin1(ctapi::product_code::SerieSigma);
inline constexpr QLatin1StringView SerieDelta = AsLatin1(ctapi::product_code::SerieDelta);
inline constexpr QLatin1StringView SerieDeltaMobil = AsLatin1(ctapi::product_code::SerieDeltaMobil);
}  // namespace product_code

// Output media shown as "Ausgabemedium:".
namespace output_medium {
inline constexpr QStringView DisplayOrPrinter = u"LCD-Anzeige/Drucker";
inline constexpr QStringView PcAsn1 = u"PC (ASN-1)";
inline constexpr QStringView PcFixedFormat = u"PC (Festformat)";
inline constexpr QStringView PcUnknownFormat = u"PC (Format nicht bekannt)";
}  // namespace output_medium

}  // namespace kartocheck
