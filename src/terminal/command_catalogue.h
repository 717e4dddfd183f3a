#pragma once

#include <QStringView>

#include <array>
#include <cstddef>

// The terminal and card commands that the program sends, as hexadecimal text. Class 20 (CT-BCS)
// goes to the terminal (Unit::Terminal), class 00 (ISO 7816-4) to the card in slot 1 (Unit::Card).
namespace kartocheck::CommandCatalogue {

// A command text whose length is part of its type, so that no entry carries trailing blanks: 10,
// 12, 14 or 22 characters, 8 for the two commands without Le and data.
template <std::size_t Length>
struct Command {
  std::array<char16_t, Length> text{};

  consteval Command(const char16_t (&literal)[Length + 1]) {  // NOLINT: reads like a literal
    static_assert(Length % 2 == 0, "a command has two digits a byte");
    for (std::size_t i = 0; i < Length; ++i) {
      const char16_t digit = literal[i];
      const bool isDigit = (digit >= u'0' && digit <= u'9') || (digit >= u'A' && digit <= u'F');
      if (!isDigit) throw "a command holds upper-case hexadecimal digits only";
      text[i] = digit;
    }
  }

  constexpr operator QStringView() const {  // NOLINT: taken by CtExchange unchanged
    return QStringView(text.data(), static_cast<qsizetype>(Length));
  }
};

template <std::size_t Size>
Command(const char16_t (&)[Size]) -> Command<Size - 1>;

// CT-BCS RESET CT: the terminal itself.
inline constexpr Command ResetCt = u"2011000000";
// CT-BCS RESET CT with P1 01: the card in slot 1, no Le.
inline constexpr Command ResetIcc1 = u"20110100";
// CT-BCS REQUEST ICC for slot 1 and slot 2, data 01: waiting time in seconds.
inline constexpr Command RequestIcc1 = u"201201000101";
inline constexpr Command RequestIcc2 = u"201202000101";
// CT-BCS EJECT ICC for slot 1, with and without acknowledgement (P2), data: waiting time in
// seconds.
inline constexpr Command EjectIcc1Ack = u"201501010101";
inline constexpr Command EjectIcc1 = u"201501000100";
// CT-BCS GET STATUS: manufacturer (46), card status (80), functional units (81).
inline constexpr Command GetStatusManufacturer = u"2013004600";
inline constexpr Command GetStatusIcc = u"2013008000";
inline constexpr Command GetStatusFunctionalUnits = u"2013008100";

// SELECT by application name: the KVK application, older and current identifier.
inline constexpr Command SelectKvkOld = u"00A4040006D28000000101";
inline constexpr Command SelectKvk = u"00A4040006D27600000101";
// SELECT by application name without response data: DF.HCA of the eGK.
inline constexpr Command SelectDfHca = u"00A4040C06D27600000102";
// SELECT of an elementary file by file identifier, without response data.
inline constexpr Command SelectEfDir = u"00A4020C022F00";
inline constexpr Command SelectEfAtr = u"00A4020C022F01";
inline constexpr Command SelectEfGdo = u"00A4020C022F02";
inline constexpr Command SelectEfPd = u"00A4020C02D001";
inline constexpr Command SelectEfVd = u"00A4020C02D002";
inline constexpr Command SelectEfGvd = u"00A4020C02D003";
inline constexpr Command SelectEfStatusVd = u"00A4020C02D00C";
// READ BINARY at offset 0: up to 256 bytes, 254 bytes.
inline constexpr Command ReadBinary = u"00B0000000";
inline constexpr Command ReadBinaryFe = u"00B00000FE";
// READ BINARY by short file identifier (P1: bit 8 set): 2 (EF.GDO), 29.
inline constexpr Command ReadBinarySfi2 = u"00B0820000";
inline constexpr Command ReadBinarySfi29 = u"00B09D0000";
// READ RECORD 1 of short file identifier 30 (P2: identifier 30, record number in P1).
inline constexpr Command ReadRecordF4 = u"00B201F400";
// ERASE BINARY of the whole file from offset 0, no data.
inline constexpr Command EraseBinary = u"000E0000";

}  // namespace kartocheck::CommandCatalogue
