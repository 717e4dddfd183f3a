#pragma once

#include <algorithm>
#include <chrono>
#include <cstring>
#include <functional>
#include <map>
#include <string>
#include <vector>

#include "host/pcsc_api.h"
#include "simulator/bytes.h"

namespace ctapi::host::test {

// A PC/SC service of the test's own, in which everything can be made to fail. Its clock goes on
// only while a status change is waited for.
class FakePcsc {
 public:
  struct Reader {
    bool HasCard = true;
    bool IsMute = false;
    bool IsHeld = false;
    std::uint32_t OtherState = 0;  // told besides
    std::uint32_t Events = 1;
    Bytes Atr = *BytesFromHex("3B 80 80 01 01");
    std::uint32_t Protocol = card_protocol::T1;
  };
  using Transmission = std::function<PcscCode(const Bytes& command, Bytes& answer)>;

  std::map<std::string, Reader> Readers{{"Reader One 00 00", {}}};
  PcscCode Established = PcscCode::Success;
  PcscCode Listed = PcscCode::Success;
  PcscCode Connected = PcscCode::Success;
  PcscCode Disconnected = PcscCode::Success;
  PcscCode StateAsked = PcscCode::Success;
  PcscCode Attribute = PcscCode::Success;
  Transmission OnTransmit = [](const Bytes&, Bytes& answer) {
    answer = {0x90, 0x00};
    return PcscCode::Success;
  };
  // Called with each wait; the time has passed already.
  std::function<void()> WhileWaiting = [] {};

  std::function<void()> WhileConnecting = [] {};
  std::function<void()> WhileDisconnecting = [] {};

  // A service that does not wait for a change of state.
  bool ReturnsAtOnce = false;

  int StateQuestions = 0;
  int EndlessWaits = 0;            // connections to a reader that another program holds
  std::vector<std::string> Calls;  // connects and disconnects
  std::string LastReader;          // whose card was reached
  std::vector<Bytes> Sent;
  int Contexts = 0;
  int Released = 0;  // contexts
  std::vector<std::uint32_t> Waits;
  std::chrono::steady_clock::time_point Time{};

  [[nodiscard]] PcscApi Api() {
    PcscApi api;
    api.Now = [this] { return Time; };
    api.Pause = [this](std::chrono::milliseconds time) { Time += time; };
    api.EstablishContext = [this](PcscContext& context) {
      if (Established != PcscCode::Success) return Established;
      context = static_cast<PcscContext>(++Contexts);
      return PcscCode::Success;
    };
    api.ReleaseContext = [this](PcscContext) {
      ++Released;
      return PcscCode::Success;
    };
    api.ListReaders = [this](PcscContext, std::span<char> names, std::uint32_t& length) {
      return List(names, length);
    };
    api.GetStatusChange = [this](PcscContext, std::uint32_t longest, ReaderStatus& status) {
      return StatusChange(longest, status);
    };
    api.Connect = [this](PcscContext, const std::string& reader, CardSharing mode, std::uint32_t,
                         PcscCard& handle, std::uint32_t& protocol) {
      if (const auto wanted = Readers.find(reader);
          wanted != Readers.end() && wanted->second.IsHeld) {
        ++EndlessWaits;
      }
      if (mode != CardSharing::Direct) {
        Calls.push_back(mode == CardSharing::Exclusive ? "connect alone" : "connect");
        if (Connected != PcscCode::Success) return Connected;
      }
      if (const PcscCode code = StateOfCard(Readers.find(reader), mode);
          code != PcscCode::Success) {
        return code;
      }
      current_ = reader;
      handle = 7;
      protocol = Readers.at(current_).Protocol;
      if (mode != CardSharing::Direct) {
        LastReader = reader;
        WhileConnecting();
      }
      return PcscCode::Success;
    };
    api.Disconnect = [this](PcscCard, CardDisposition how) {
      if (how == CardDisposition::Leave) return PcscCode::Success;
      Calls.push_back(how == CardDisposition::Unpower ? "power down" : "warm reset");
      WhileDisconnecting();
      return Disconnected;
    };
    api.Transmit = [this](PcscCard, std::uint32_t, ByteView command,
                          std::span<std::uint8_t> response, std::uint32_t& length) {
      Sent.emplace_back(command.begin(), command.end());
      Bytes answer;
      const PcscCode code = OnTransmit(Sent.back(), answer);
      std::copy(answer.begin(), answer.end(), response.begin());
      length = static_cast<std::uint32_t>(answer.size());
      return code;
    };
    api.GetAttrib = [this](PcscCard, std::uint32_t, std::span<std::uint8_t> value,
                           std::uint32_t& length) {
      const std::uint32_t version = 0x01050002;
      std::memcpy(value.data(), &version, sizeof version);
      length = sizeof version;
      return Attribute;
    };
    return api;
  }

 private:
  PcscCode List(std::span<char> names, std::uint32_t& length) const {
    if (Listed != PcscCode::Success) return Listed;
    if (Readers.empty()) return PcscCode::NoReadersAvailable;
    std::string text;
    // The service tells them in no particular order.
    for (auto each = Readers.rbegin(); each != Readers.rend(); ++each) text += each->first + '\0';
    text += '\0';
    const bool fits = names.size() >= text.size();
    if (fits) std::copy(text.begin(), text.end(), names.begin());
    length = static_cast<std::uint32_t>(text.size());
    return fits ? PcscCode::Success : PcscCode::InsufficientBuffer;
  }

  [[nodiscard]] PcscCode StateOfCard(std::map<std::string, Reader>::const_iterator reader,
                                     CardSharing mode) const {
    if (reader == Readers.end()) return PcscCode::UnknownReader;
    if (mode == CardSharing::Direct) return PcscCode::Success;
    if (!reader->second.HasCard) return PcscCode::NoSmartcard;
    return reader->second.IsMute ? PcscCode::UnpoweredCard : PcscCode::Success;
  }

  PcscCode StatusChange(std::uint32_t longest, ReaderStatus& state) {
    ++StateQuestions;
    if (StateAsked != PcscCode::Success) return StateAsked;
    const std::uint32_t known = state.Known;
    if (known != reader_state::Unaware) {
      Waits.push_back(longest);
      if (!ReturnsAtOnce) Time += std::chrono::milliseconds(longest);
      WhileWaiting();
    }
    const auto reader = Readers.find(state.Reader);
    if (reader == Readers.end()) return PcscCode::UnknownReader;
    state.Now = reader->second.Events << 16;
    state.Now |= reader->second.HasCard ? reader_state::Present : reader_state::Empty;
    if (reader->second.IsMute) state.Now |= reader_state::Mute;
    state.Atr = reader->second.Atr;
    if (reader->second.IsHeld) state.Now |= reader_state::InUse;
    state.Now |= reader->second.OtherState;
    const bool isTimeout = state.Now == known && !ReturnsAtOnce;
    return isTimeout ? PcscCode::Timeout : PcscCode::Success;
  }

  std::string current_;
};

}  // namespace ctapi::host::test
