#include "host/host_library.h"

#include <algorithm>

namespace ctapi::host {

namespace {

// Number of a port among those of its transport, from 0 on.
std::size_t IndexOf(int pn, const ServedPorts& served) {
  return static_cast<std::size_t>(pn - served.Numbers.First);
}

}  // namespace

std::int8_t HostLibrary::Init(std::uint16_t ctn, std::uint16_t pn) {
  const std::lock_guard lock(mutex_);
  const ServedPorts* const served = TransportOf(pn);
  if (links_.contains(ctn) || served == nullptr) return code::InvalidParameter;
  const bool isOpen = std::any_of(links_.begin(), links_.end(),
                                  [pn](const auto& link) { return link.second.Number == pn; });
  if (isOpen) return code::HostError;
  OpenedLink opened = served->Way->Open(IndexOf(pn, *served));
  if (opened.Code == code::Success) links_[ctn] = {pn, std::move(opened.Link)};
  return opened.Code;
}

std::int8_t HostLibrary::Data(std::uint16_t ctn, std::uint8_t& dad, std::uint8_t& sad,
                              ByteView command, std::span<std::uint8_t> response,
                              std::uint16_t& responseLength) {
  const std::lock_guard lock(mutex_);
  responseLength = 0;
  const auto link = links_.find(ctn);
  if (link == links_.end() || command.empty() || response.empty() || !IsUnit(dad) ||
      sad != HostAddress) {
    return code::InvalidParameter;
  }
  sad = dad;
  dad = HostAddress;

  Bytes answer;
  const std::int8_t result = link->second.Link->Exchange(static_cast<Unit>(sad), command, answer);
  if (result != code::Success) return result;
  if (answer.size() > response.size()) return code::BufferTooSmall;
  std::copy(answer.begin(), answer.end(), response.begin());
  responseLength = static_cast<std::uint16_t>(answer.size());
  return code::Success;
}

std::int8_t HostLibrary::Close(std::uint16_t ctn) {
  const std::lock_guard lock(mutex_);
  return links_.erase(ctn) > 0 ? code::Success : code::InvalidParameter;
}

std::int8_t HostLibrary::GetBaudrate(std::uint16_t ctn, std::int32_t& baud) {
  const std::lock_guard lock(mutex_);
  const auto link = links_.find(ctn);
  if (link == links_.end()) return code::InvalidParameter;
  const std::optional<std::int32_t> told = link->second.Link->Baud();
  if (!told) return code::InvalidParameter;
  baud = *told;
  return code::Success;
}

std::int8_t HostLibrary::InfoOf(std::uint16_t pn, PortInfo& info) {
  const std::lock_guard lock(mutex_);
  if (pn == EveryReader) {
    info = {.Trouble = TroubleOfReaders()};
    return code::Success;
  }
  const ServedPorts* const served = TransportOf(pn);
  if (served == nullptr) return code::InvalidParameter;
  info = served->Way->InfoOf(IndexOf(pn, *served));
  return code::Success;
}

const ServedPorts* HostLibrary::TransportOf(int pn) const {
  const auto found =
      std::find_if(transports_.begin(), transports_.end(),
                   [pn](const ServedPorts& served) { return served.Numbers.Contains(pn); });
  return found == transports_.end() ? nullptr : &*found;
}

PortTroubleKind HostLibrary::TroubleOfReaders() {
  for (const ServedPorts& served : transports_) {
    const PortTroubleKind trouble = served.Way->TroubleOfReaders();
    if (trouble != PortTroubleKind::None) return trouble;
  }
  return PortTroubleKind::None;
}

}  // namespace ctapi::host
