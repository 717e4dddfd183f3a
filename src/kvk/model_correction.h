#pragma once

#include <QStringView>

#include "discovery/terminal_info.h"

namespace kartocheck {

enum class KvkFormat { Template, Fixed };

// Corrects the terminal's model from the approval number that a mobile terminal appends to a
// record. pn: port number of the link. The fixed format leaves a Sigma terminal's product code as
// it was.
void CorrectModel(QStringView approvalNumber, KvkFormat format, int pn, TerminalInfo& info);

}  // namespace kartocheck
