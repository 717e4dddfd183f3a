#pragma once

#include <QStringView>

// Status words SW1SW2 (ISO 7816-4, CT-BCS), as the last four characters of a response text.
namespace kartocheck::status_word {

inline constexpr QStringView Ok = u"9000";                  // done; for REQUEST ICC: memory card
inline constexpr QStringView OkProcessorCard = u"9001";     // done: processor card, asynchronous
inline constexpr QStringView MobileTerminal = u"9500";      // RESET CT of a mobile terminal
inline constexpr QStringView MobileExtended = u"9501";      // ... that keeps the extended record
inline constexpr QStringView NoCard = u"6200";              // no card within the waiting time
inline constexpr QStringView CardAlreadyPresent = u"6201";  // card was activated before
inline constexpr QStringView EndOfFile = u"6282";           // file ended before the asked length
inline constexpr QStringView Deactivated = u"6283";         // selected file is deactivated
inline constexpr QStringView ReadFailed = u"6501";       // a mobile terminal's record: not released
inline constexpr QStringView NotAllowed = u"6900";       // command not allowed
inline constexpr QStringView SecurityStatus = u"6982";   // security status not satisfied
inline constexpr QStringView ConditionsOfUse = u"6985";  // conditions of use not satisfied
inline constexpr QStringView FileNotFound = u"6A82";     // file or application not found
inline constexpr QStringView UnknownInstruction = u"6D00";  // instruction code not supported
inline constexpr QStringView NoDiagnosis = u"6F00";         // no precise diagnosis

}  // namespace kartocheck::status_word
