#include "helper/library.h"

#include <algorithm>
#include <filesystem>

#include "protocol/return_code.h"

namespace ctapi::helper {

namespace {

// Paths are UTF-8 on every system.
bool Exists(const std::string& file) {
  std::error_code error;
  return std::filesystem::exists(std::u8string(file.begin(), file.end()), error);
}

}  // namespace

SharedLibrary LoadFirst(const std::vector<std::string>& candidates) {
  LoadFailure failure{LoadTrouble::FileMissing, {}};
  for (const std::string& candidate : candidates) {
    if (!IsBareName(candidate) && !Exists(candidate)) {
      failure = {LoadTrouble::FileMissing, candidate};
      continue;
    }
    try {
      return SharedLibrary(candidate);
    } catch (const LoadFailure& error) {
      if (error.Trouble != LoadTrouble::FileMissing) throw;
      failure = error;
    }
  }
  throw failure;
}

Library::Library(SharedLibrary library)
    : library_(std::move(library)),
      init_(EntryPoint<CTDENRVT1_init_t>("CTDENRVT1_init")),
      data_(EntryPoint<CTDENRVT1_data_t>("CTDENRVT1_data")),
      close_(EntryPoint<CTDENRVT1_close_t>("CTDENRVT1_close")) {}

template <typename Function>
Function Library::EntryPoint(const char* name) const {
  void* const address = library_.Resolve(name);
  if (address == nullptr) throw MissingEntryPoint{name};
  return reinterpret_cast<Function>(address);
}

Message Library::Answer(const Message& call) {
  try {
    switch (call.Kind) {
      case MessageKind::Init:
        return Init(call);
      case MessageKind::Data:
        return Data(call);
      case MessageKind::Close:
        return Close(call);
      case MessageKind::GetBaudrate:
        return GetBaudrate(call);
      case MessageKind::PortInfo:
        return PortInfo(call);
      default:
        return {.Code = code::InvalidParameter};
    }
  } catch (const MissingEntryPoint& missing) {
    return {.Kind = MessageKind::EntryPointMissing, .Payload = BytesOf(missing.Name)};
  } catch (...) {
    // What it says stays here: it may speak of a card's data.
    return {.Kind = MessageKind::Threw};
  }
}

Message Library::Init(const Message& call) {
  return {.Code = init_(call.Ctn, call.Pn)};
}

Message Library::Data(const Message& call) {
  const std::span<std::uint8_t> response = buffer_.Prepare(call.Length);
  Message answer{.Dad = call.Dad, .Sad = call.Sad, .Length = call.Length};
  answer.Code =
      data_(call.Ctn, &answer.Dad, &answer.Sad, static_cast<std::uint16_t>(call.Payload.size()),
            call.Payload.data(), &answer.Length, response.data());
  if (!buffer_.IsIntact()) return {.Kind = MessageKind::Overrun};
  if (answer.Code == code::Success) {
    const auto told = response.first(std::min<std::size_t>(answer.Length, response.size()));
    answer.Payload.assign(told.begin(), told.end());
  }
  // Nothing of a card stays here.
  (void)buffer_.Prepare(0);
  return answer;
}

Message Library::Close(const Message& call) {
  return {.Code = close_(call.Ctn)};
}

Message Library::GetBaudrate(const Message& call) {
  Message answer{.Baud = call.Baud};
  answer.Code = EntryPoint<CT_get_baudrate_t>("CT_get_baudrate")(call.Ctn, &answer.Baud);
  return answer;
}

// A library that has no such entry point tells nothing of its ports.
Message Library::PortInfo(const Message& call) {
  const auto tell =
      reinterpret_cast<KARTOCHECK_port_info_t>(library_.Resolve("KARTOCHECK_port_info"));
  if (tell == nullptr) return {};
  const std::span<std::uint8_t> name = buffer_.Prepare(call.Length);
  Message answer{.Length = call.Length};
  answer.Code = tell(call.Pn, &answer.Trouble, &answer.Length, name.data());
  if (!buffer_.IsIntact()) return {.Kind = MessageKind::Overrun};
  if (answer.Code != code::Success) return {.Code = answer.Code};
  const auto told = name.first(std::min<std::size_t>(answer.Length, name.size()));
  answer.Payload.assign(told.begin(), told.end());
  return answer;
}

}  // namespace ctapi::helper
