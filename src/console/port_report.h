#pragma once

#include <QString>
#include <QStringList>

#include <vector>

#include "discovery/terminal_info.h"
#include "egk/egk_data.h"
#include "kvk/insured_data.h"
#include "platform/dialogs.h"
#include "platform/port.h"
#include "terminal/port_entry.h"

namespace kartocheck {

// A box that a window would have shown, and what it was answered.
struct ReportedMessage {
  Icon icon = Icon::Information;
  QString title;
  QString text;
  bool isQuestion = false;
  Answer answer = Answer::Ok;
};

// What became of one port.
struct PortReport {
  Port port{1};
  PortEntry entry;
  TerminalInfo terminal;
  InsuredData insured;
  EgkData egk;
  QString identification;  // of the device, as the operating system tells it
  QString hint;            // what to do where the port cannot be used
  std::vector<ReportedMessage> messages;
};

// What became of a run.
struct RunReport {
  std::vector<PortReport> ports;
  QStringList hints;        // why no reader was found, and what to do
  bool isComplete = false;  // every port was looked at
};

}  // namespace kartocheck
