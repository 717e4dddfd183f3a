#include "discovery/terminal_identification.h"

#include <QString>

#include "terminal/command_catalogue.h"
#include "text/code_page.h"
#include "text/hex_text.h"

namespace kartocheck {

namespace {

using ctapi::ModelTest;
using ctapi::TerminalModel;

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
// follows the manufacturer data. Empty where no object of at least 54 bytes is announced; bytes
// that the terminal leaves out are no digits.
QString HandheldVersion(QStringView data) {
  constexpr qsizetype TagPosition = 35;
  constexpr int LeastLength = 0x36;
  constexpr qsizetype VersionPosition = 101;
  constexpr int VersionBytes = 9;

  const int length = hex::ByteAt(data, TagPosition + 2);
  if (hex::Mid(data, TagPosition, 2) != u"D7" || length < LeastLength) return {};

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

void WritePortText(Port port, bool usbVirtualCom, PortEntry& entry) {
  entry.PortText = port.Description(usbVirtualCom);
  if (usbVirtualCom && port.Kind() == PortKind::Com) entry.AvailText = u"";
}

QString TextOf(std::string_view utf8) {
  return QString::fromUtf8(utf8.data(), static_cast<qsizetype>(utf8.size()));
}

// Null for a code that no model has. Terminals are not strict about its capitals.
const TerminalModel* ModelOf(const TerminalInfo& info) {
  const QByteArray code = info.ProductCode.Padded().toUpper().toLatin1();
  return ctapi::FindTerminalModel({code.data(), static_cast<std::size_t>(code.size())});
}

// Terminals of some models are mobile or stationary; their answer to RESET CT tells.
void TestReset(CtSession& link, const TerminalModel& model, TerminalInfo& info) {
  const CtAnswer answer = link.CtExchange(CommandCatalogue::ResetCt, Unit::Terminal);
  if (!answer.Succeeded()) return;
  info.Reset9501 = answer.Is(sw::MobileExtended);
  info.Reset95 = info.Reset9501 || answer.Is(sw::MobileTerminal);
  if (info.Reset9501) info.ModelName = TextOf(model.ExtendedName);
}

Identification IdentifyByProductCode(CtSession& link, Port port, TerminalInfo& info,
                                     PortEntry& entry) {
  if (const auto result = ReadManufacturerData(link, info); result != Identification::Finished) {
    info.Answered = false;
    return result;
  }
  const TerminalModel* const model = ModelOf(info);
  info.ModelName = model == nullptr ? QStringLiteral("Unbekannt") : TextOf(model->Name);
  if (model == nullptr || model->Tests == ModelTest::None) {
    return Identification::Finished;
  }
  if (model->Tests == ModelTest::ResetAndUsb) TestReset(link, *model, info);
  ProbeUsbVirtualCom(link, info);
  WritePortText(port, info.UsbVirtualCom, entry);
  return Identification::Finished;
}

// Terminals that do not know GET STATUS for the functional units.
void IdentifyByReset(CtSession& link, Port port, TerminalInfo& info, PortEntry& entry) {
  const CtAnswer answer = link.CtExchange(CommandCatalogue::ResetCt, Unit::Terminal);
  if (!answer.Succeeded()) {
    info.Answered = false;
    return;
  }
  if (!answer.Is(sw::MobileTerminal)) {
    info.ModelName = u"Modell Vedra A/B/C/D/E/F";
    return;
  }
  WritePortText(port, false, entry);
  if (port.Kind() == PortKind::Com) {
    info.ModelName = u"Modell Vedra F/Serie Delta/Sigma";
  } else if (port.IsUsb()) {
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

Identification IdentifyTerminal(CtSession& link, Port port, TerminalInfo& info, PortEntry& entry) {
  info.Reset95 = false;
  const CtAnswer answer =
      link.CtExchange(CommandCatalogue::GetStatusFunctionalUnits, Unit::Terminal);
  info.Answered = answer.Succeeded();
  if (!answer.Succeeded()) return Identification::ExchangeFailed;

  if (answer.Is(sw::Ok)) return IdentifyByProductCode(link, port, info, entry);
  if (answer.Is(sw::NotAllowed)) {
    info.ModelName = u"Modell Vedra G im Vedra A-kompatibel Mode";
    return Identification::Finished;
  }
  if (answer.Is(sw::UnknownInstruction)) {
    IdentifyByReset(link, port, info, entry);
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

}  // namespace kartocheck
