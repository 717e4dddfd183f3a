#pragma once

#include <QStringView>

#include "discovery/terminal_info.h"
#include "platform/port.h"

namespace kartocheck {

enum class KvkFormat { Template, Fixed };

// Corrects the terminal's model from the approval number that a mobile terminal appends to a
// record. port: of the link. The fixed format leaves a Sigma terminal's product code as
// it was.
void CorrectModel(QStringView approvalNumber, KvkFormat format, Port port, TerminalInfo& info);

}  // namespace kartocheck
