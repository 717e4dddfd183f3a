#include "simulator/simulated_practice.h"

#include <algorithm>
#include <thread>
#include <utility>

#include "protocol/port_number.h"
#include "protocol/unit.h"

namespace ctapi {

namespace {

std::int8_t InitCodeOf(const SimulatedPort& port, std::uint16_t pn) {
  if (port.InitCode) return *port.InitCode;
  switch (port.EffectiveLine().Port) {
    case SerialLine::State::Absent:
      return code::InvalidParameter;
    case SerialLine::State::InUse:
    case SerialLine::State::Failing:
      return code::HostError;
    case SerialLine::State::Present:
      break;
  }
  if (port.Terminal) return code::Success;
  return ComPorts.Contains(pn) ? code::TransmissionError : code::InvalidParameter;
}

}  // namespace

SerialLine SimulatedPort::EffectiveLine() const {
  if (Line) return *Line;
  if (!Terminal) return {};
  return {.Signal = true, .Answer = SerialLine::Probe::Right, .Baud = Baud};
}

void SimulatedPractice::Attach(std::uint16_t pn, SimulatedPort port) {
  const std::size_t faults = port.Faults.size();
  ports_[pn] = {std::move(port), std::vector<unsigned>(faults, 0)};
}

void SimulatedPractice::Detach(std::uint16_t pn) {
  ports_.erase(pn);
}

SimulatedPort* SimulatedPractice::PortAt(std::uint16_t pn) {
  const auto found = ports_.find(pn);
  return found == ports_.end() ? nullptr : &found->second.Port;
}

SimulatedTerminal* SimulatedPractice::TerminalAt(std::uint16_t pn) {
  SimulatedPort* const port = PortAt(pn);
  return port != nullptr && port->Terminal ? &*port->Terminal : nullptr;
}

SerialLine SimulatedPractice::SerialLineAt(std::uint16_t pn) const {
  const auto found = ports_.find(pn);
  if (found == ports_.end() || !ComPorts.Contains(pn)) return {.Port = SerialLine::State::Absent};
  return found->second.Port.EffectiveLine();
}

std::vector<std::uint16_t> SimulatedPractice::AttachedPorts() const {
  std::vector<std::uint16_t> numbers;
  for (const auto& [pn, port] : ports_) numbers.push_back(pn);
  return numbers;
}

std::int8_t SimulatedPractice::Init(std::uint16_t ctn, std::uint16_t pn) {
  const auto found = ports_.find(pn);
  if (links_.contains(ctn) || found == ports_.end()) return code::InvalidParameter;
  const bool held = std::any_of(links_.begin(), links_.end(),
                                [pn](const auto& link) { return link.second == pn; });
  if (held) return code::HostError;
  const std::int8_t result = InitCodeOf(found->second.Port, pn);
  if (result == code::Success) links_[ctn] = pn;
  return result;
}

std::int8_t SimulatedPractice::Data(std::uint16_t ctn, std::uint8_t& dad, std::uint8_t& sad,
                                    ByteView command, std::span<std::uint8_t> response,
                                    std::uint16_t& responseLength) {
  responseLength = 0;
  const auto link = links_.find(ctn);
  if (link == links_.end() || command.empty()) return code::InvalidParameter;
  if (sad != HostAddress || !IsUnit(dad)) return code::InvalidParameter;
  const auto unit = static_cast<Unit>(dad);
  sad = dad;
  dad = HostAddress;

  // A terminal that was unplugged with the link open is silent.
  const auto attached = ports_.find(link->second);
  if (attached == ports_.end()) return code::TransmissionError;
  SimulatedPort& port = attached->second.Port;
  std::this_thread::sleep_for(port.Delay);
  const ScriptedFault* const fault = NextFault(attached->second, command);
  if (!port.Terminal && fault == nullptr) return code::TransmissionError;

  Bytes answer;
  if (port.Terminal && (fault == nullptr || fault->CarriedOut)) {
    answer = unit == Unit::Terminal ? port.Terminal->TransmitToTerminal(command)
                                    : port.Terminal->TransmitToCard(command);
  }
  if (fault != nullptr) {
    if (const auto* const result = std::get_if<std::int8_t>(&fault->Result)) {
      if (*result != code::Success) return *result;
    } else {
      answer = std::get<Bytes>(fault->Result);
    }
  }
  if (answer.size() > response.size()) return code::BufferTooSmall;
  std::copy(answer.begin(), answer.end(), response.begin());
  responseLength = static_cast<std::uint16_t>(answer.size());
  return code::Success;
}

std::int8_t SimulatedPractice::Close(std::uint16_t ctn) {
  const auto link = links_.find(ctn);
  if (link == links_.end()) return code::InvalidParameter;
  const SimulatedPort* const port = PortAt(link->second);
  links_.erase(link);
  return port == nullptr ? code::Success : port->CloseCode;
}

std::int8_t SimulatedPractice::GetBaudrate(std::uint16_t ctn, std::int32_t& baud) const {
  const auto link = links_.find(ctn);
  if (link == links_.end()) return code::InvalidParameter;
  const auto found = ports_.find(link->second);
  if (found == ports_.end()) return code::TransmissionError;
  const SimulatedPort& port = found->second.Port;
  const std::int8_t result = port.BaudCode.value_or(
      ComPorts.Contains(link->second) ? code::Success : code::InvalidParameter);
  if (result == code::Success) baud = port.Baud;
  return result;
}

// The first fault that is due; every fault counts the exchanges that concern it.
const ScriptedFault* SimulatedPractice::NextFault(AttachedPort& attached, ByteView command) {
  const ScriptedFault* due = nullptr;
  for (std::size_t i = 0; i < attached.Port.Faults.size(); ++i) {
    const ScriptedFault& fault = attached.Port.Faults[i];
    if (!fault.Concerns(command)) continue;
    const unsigned count = ++attached.FaultCounts[i];
    if (due == nullptr && (fault.Exchange == 0 || fault.Exchange == count)) due = &fault;
  }
  return due;
}

}  // namespace ctapi
