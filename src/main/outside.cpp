#include "main/outside.h"

#include <QDir>
#include <QFileInfo>

#include <stdexcept>
#include <utility>
#include <vector>

#include "main/installation.h"
#include "platform/machine_port_directory.h"
#include "platform/machine_serial_port.h"
#include "platform/qt/ct_api_library.h"
#include "platform/serial_port_directory.h"
#include "platform/simulated/ct_api_simulated.h"
#include "platform/simulated/serial_port_simulated.h"
#include "protocol/com_table.h"
#include "simulator/scenario.h"

namespace kartocheck {

namespace {

QStringList SchemaDirectoriesOf(const CommandLine& line, const QString& programDirectory) {
  if (!line.schemaDirectory) return DataDirectories(programDirectory);
  if (!QFileInfo(*line.schemaDirectory).isDir()) {
    throw std::runtime_error("Ordner nicht gefunden: " + line.schemaDirectory->toStdString());
  }
  return {*line.schemaDirectory};
}

QStringList Candidates(const CommandLine& line, const QString& programDirectory) {
  QStringList candidates =
      line.ctApi ? QStringList{NamedLibrary(*line.ctApi)} : CtApiCandidates(programDirectory);
  // As the system's loader takes them, and its users read them.
  for (QString& candidate : candidates) candidate = QDir::toNativeSeparators(candidate);
  return candidates;
}

}  // namespace

Outside::Outside(const CommandLine& line, const QString& programDirectory) {
  if (line.simulate) {
    Simulate(*line.simulate, programDirectory);
  } else {
    UseMachine(line, programDirectory);
  }
  schemaDirectories_ = SchemaDirectoriesOf(line, programDirectory);
}

void Outside::BeginLoading() {
  beginLoading_();
}

void Outside::Simulate(const QString& scenario, const QString& programDirectory) {
  const auto file = ScenarioFile(programDirectory, scenario);
  if (!file) throw std::runtime_error("Szenario nicht gefunden: " + scenario.toStdString());
  practice_ = ctapi::LoadScenario(file->toStdU16String());
  api_ = std::make_unique<CtApiSimulated>(practice_);
  serial_ = std::make_unique<SerialPortSimulated>(practice_);
  directory_ = std::make_unique<PortDirectorySimulated>(practice_);
  libraryText_ = [text = QString(u"Simulation (" + QDir::toNativeSeparators(*file) + u')')] {
    return text;
  };
}

void Outside::UseMachine(const CommandLine& line, const QString& programDirectory) {
  ctapi::ComTable overrides;
  for (auto entry = line.serialPorts.cbegin(); entry != line.serialPorts.cend(); ++entry) {
    overrides.emplace(entry.key(), entry.value().toStdString());
  }
  const std::vector<ctapi::ComDevice> devices = ctapi::FindComDevices();
  const ctapi::ComTable table = ctapi::MakeComTable(devices, overrides);
  // The library opens the same devices under the same numbers.
  qputenv(ctapi::ComTableVariable, QByteArray::fromStdString(ctapi::ComTableText(table)));
  auto library = std::make_unique<CtApiLibrary>(HelperProgram(programDirectory),
                                                Candidates(line, programDirectory), pending_);
  CtApiLibrary& loaded = *library;
  beginLoading_ = [&loaded] { loaded.BeginLoading(); };
  libraryText_ = [&loaded] { return loaded.LoadedFile(); };
  api_ = std::move(library);
  serial_ = MachineSerialPort(table);
  directory_ =
      std::make_unique<MachinePortDirectory>(std::make_unique<SerialPortDirectory>(devices, table),
                                             [&loaded](int pn) { return loaded.InfoOf(pn); });
}

}  // namespace kartocheck
