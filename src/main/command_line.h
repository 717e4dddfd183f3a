#pragma once

#include <QMap>
#include <QString>
#include <QStringList>

#include <optional>
#include <variant>

#include "platform/port.h"

namespace kartocheck {

// What the program was called with.
struct CommandLine {
  std::optional<QString> ctApi;     // this library instead of the installed one
  std::optional<QString> simulate;  // name or file of a scenario
  QMap<int, QString> serialPorts;   // COM number to device file
  std::optional<QString> schemaDirectory;
  bool console = false;
  bool json = false;
  bool eraseRecords = false;
  bool validate = false;
  bool quiet = false;             // no messages on standard error
  bool verbose = false;           // status texts there, terminal or not
  std::optional<QString> report;  // the file that takes the test report
  std::optional<Port> port;
  std::optional<Port> diagnose;  // the port of the guided questions
};

// A call that only wants to be told something, or that cannot be carried out: the text to print,
// and whether it is an error.
struct CommandLineText {
  QString text;
  bool isError = false;
};

// Takes the arguments apart, the program's name first.
[[nodiscard]] std::variant<CommandLine, CommandLineText> ParseCommandLine(QStringList arguments);

}  // namespace kartocheck
