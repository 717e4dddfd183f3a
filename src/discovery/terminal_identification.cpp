#include "discovery/terminal_identification.h"

#include <QString>

#include "terminal/command_catalogue.h"
#include "text/code_page.h"
#include "text/hex_text.h"

namespace kartocheck {

namespace {

// Vendor-specific status query: is the terminal attached through a USB virtual COM port?
constexpr QStringView UsbVirtualComQuery = u"2071000100";

constexpr QStringView ManufacturerTag = u"46";
constexpr int ManufacturerLength = 15;  // maker, product code and version, five bytes each

// The text of `count` bytes whose digits start at `position`.
QString TextAt(QStringView response, qsizetype position, int count) {
  QString text;
  for (int i = 0; i < count; ++i) text += CharacterOf(hex::ByteAt(response, position + 2 * i));
  return text;
}

// Version of the second maker's terminals: three groups of three digits in the data object D7 that
// follows the manufacturer data. Empty where there is no whole object of at least 54 bytes.
QString HandheldVersion(QStringView data) {
  constexpr qsizetype TagPosition = 35;
  constexpr qsizetype ValuePosition = TagPosition + 4;
  constexpr int LeastLength = 0x36;
  constexpr qsizetype VersionPosition = 101;
  constexpr int VersionBytes = 9;

  const int length = hex::ByteAt(data, TagPosition + 2);
  const bool whole = hex::From(data, ValuePosition).size() >= 2 * length;
  if (hex::Mid(data, TagPosition, 2) != u"D7" || length < LeastLength || !whole) return {};

  QString version = QStringLiteral("V ");
  for (int i = 0; i < VersionBytes; ++i) {
    const quint8 code = hex::ByteAt(data, VersionPosition + 2 * i);
    if (code >= '0' && code <= '9') version += CharacterOf(code);
    if (i == 2 || i == 5) version += u'.';
  }
  return version;
}

void ProbeUsbVirtualCom(CtSession& link, TerminalInfo& info) {
  info.UsbVirtualCom = false;
  const CtAnswer answer = link.CtExchange(UsbVirtualComQuery, Unit::Terminal);
  const QString response = answer.HexText();
  info.UsbVirtualCom = answer.Is(sw::Ok) && response.size() > 17 &&
                       hex::Mid(response, 1, 2) == u"12" && hex::Mid(response, 3, 2) == u"01" &&
                       hex::Mid(response, 21, 2) == u"02";
}

void WritePortText(int pn, bool usbVirtualCom, PortEntry& port) {
  port.PortText = PortDescription(pn, usbVirtualCom);
  if (usbVirtualCom && pn <= LastComPort) port.AvailText = u"";
}

// Terminals of the Delta series are mobile or stationary; their answer to RESET CT tells.
void TestDeltaReset(CtSession& link, QStringView productCode, TerminalInfo& info) {
  const CtAnswer answer = link.CtExchange(CommandCatalogue::ResetCt, Unit::Terminal);
  if (!answer.Succeeded()) return;
  info.Reset9501 = answer.Is(sw::MobileExtended);
  info.Reset95 = info.Reset9501 || answer.Is(sw::MobileTerminal);
  if (info.Reset9501) {
    info.ModelName = productCode == product_code::SerieDeltaMobil ? u"Norva Delta-3 mobil"
                                                                  : u"Norva Delta-2 mobil";
  }
}

Identification IdentifyByProductCode(CtSession& link, int pn, TerminalInfo& info, PortEntry& port) {
  if (const auto result = ReadManufacturerData(link, info); result != Identification::Finished) {
    info.Answered = false;
    return result;
  }
  const QString productCode = info.ProductCode.Padded().toUpper();
  if (productCode == product_code::SerieGamma) {
    info.ModelName = u"Serie Gamma";
    return Identification::Finished;
  }
  if (productCode == product_code::SerieSigma) {
    info.ModelName = u"Serie Sigma";
    return Identification::Finished;
  }
  if (productCode == product_code::SerieOmega) {
    info.ModelName = u"Serie Omega";
  } else if (productCode == product_code::SerieDelta ||
             productCode == product_code::SerieDeltaMobil) {
    info.ModelName = u"Serie Delta";
    TestDeltaReset(link, productCode, info);
  } else {
    info.ModelName = u"Unbekannt";
    return Identification::Finished;
  }
  ProbeUsbVirtualCom(link, info);
  WritePortText(pn, info.UsbVirtualCom, port);
  return Identification::Finished;
}

// Terminals that do not know GET STATUS for the functional units.
void IdentifyByReset(CtSession& link, int pn, TerminalInfo& info, PortEntry& port) {
  const CtAnswer answer = link.CtExchange(CommandCatalogue::ResetCt, Unit::Terminal);
  if (!answer.Succeeded()) {
    info.Answered = false;
    return;
  }
  if (!answer.Is(sw::MobileTerminal)) {
    info.ModelName = u"Modell Vedra A/B/C/D/E/F";
    return;
  }
  WritePortText(pn, false, port);
  if (pn <= LastComPort) {
    info.ModelName = u"Modell Vedra F/Serie Delta/Sigma";
  } else if (IsUsbPort(pn)) {
    // A USB device of this family answers like a Delta terminal and is recorded as one.
    info.ModelName = u"Serie Delta";
    info.ProductCode = product_code::SerieDelta;
    info.ManufacturerId = MakerNorva;
  }
  info.Reset95 = true;
}

Identification IdentifyEarlyCtBcs(CtSession& link, TerminalInfo& info) {
  const auto result = ReadManufacturerData(link, info);
  if (result == Identification::Finished) {
    info.ModelName = u"Modell PKT H CT-BCS (0.9)";
  } else {
    info.Answered = false;
  }
  return result;
}

}  // namespace

Identification IdentifyTerminal(CtSession& link, int pn, TerminalInfo& info, PortEntry& port) {
  info.Reset95 = false;
  const CtAnswer answer =
      link.CtExchange(CommandCatalogue::GetStatusFunctionalUnits, Unit::Terminal);
  info.Answered = answer.Succeeded();
  if (!answer.Succeeded()) return Identification::ExchangeFailed;

  if (answer.Is(sw::Ok)) return IdentifyByProductCode(link, pn, info, port);
  if (answer.Is(sw::NotAllowed)) {
    info.ModelName = u"Modell Vedra G im Vedra A-kompatibel Mode";
    return Identification::Finished;
  }
  if (answer.Is(sw::UnknownInstruction)) {
    IdentifyByReset(link, pn, info, port);
    return Identification::Finished;
  }
  if (answer.Is(sw::NoDiagnosis)) return IdentifyEarlyCtBcs(link, info);

  info.ModelName = u"Modell nicht bekannt!";
  info.Answered = false;
  return Identification::Finished;
}

Identification ReadManufacturerData(CtSession& link, TerminalInfo& info) {
  const CtAnswer answer = link.CtExchange(CommandCatalogue::GetStatusManufacturer, Unit::Terminal);
  if (!answer.Succeeded()) return Identification::ExchangeFailed;

  const QString data = answer.HexData();
  const bool whole = hex::From(data, 5).size() >= 2 * ManufacturerLength;
  if (hex::Mid(data, 1, 2) != ManufacturerTag || hex::ByteAt(data, 3) < ManufacturerLength ||
      !whole) {
    return Identification::NoManufacturerData;
  }
  info.ManufacturerId = TextAt(data, 5, 5);
  info.ProductCode = TextAt(data, 15, 5);
  info.SoftwareVersion = TextAt(data, 25, 5);
  if (info.ManufacturerId == MakerNorvaHandheld) {
    const QString version = HandheldVersion(data);
    if (!version.isEmpty()) info.SoftwareVersion = version;
  }
  return Identification::Finished;
}

void ResetTerminalInfo(TerminalInfo& info) {
  info.ModelName = u"";
  info.ManufacturerId = u"";
  info.ProductCode = u"";
  info.SoftwareVersion = u"";
  info.DisplayText = u"";
  info.SerialSettings = u"";
}

QString PortDescription(int pn, bool usbVirtualCom) {
  QString kind = QStringLiteral("? ");
  if (pn <= LastComPort) {
    kind = usbVirtualCom ? QStringLiteral("USB Virtuell COM ") : QStringLiteral("COM ");
  } else if (IsUsbPort(pn)) {
    kind = QStringLiteral("USB ");
  }
  return kind + QStringLiteral("(CTAPI pn=") + QString::number(pn) + u')';
}

}  // namespace kartocheck
