#pragma once

#include <QStringView>

#include "egk/egk_data.h"
#include "egk/egk_reader.h"

namespace kartocheck {

// Takes the status data of a mobile terminal's eGK record apart, hexadecimal text of data objects:
//   A0 19 status of the VSD (25 bytes)   or the 25 bytes alone
//   91 08 reading date                   TTMMJJJJ or JJJJMMTT
//   92 LL approval number                maker;product;version
//   93 01 XOR of all bytes before its value
// The walk ends at the first unknown tag and at a length past the end; what was found until then is
// kept. Faults of the data are shown in message boxes, and the rest is still taken over. A terminal
// that stored neither date nor approval number is no fault: LacksDateAndApproval tells of it.
void ReadStoredStatus(QStringView data, const EgkTarget& target);

// Whether such data hold neither a reading date nor an approval number, nor anything that might be
// a damaged one.
[[nodiscard]] bool LacksDateAndApproval(QStringView data);

}  // namespace kartocheck
