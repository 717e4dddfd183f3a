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
    DWORD OtherState = 0;  // told besides
    DWORD Events = 1;
    Bytes Atr = *BytesFromHex("3B 80 80 01 01");
    DWORD Protocol = SCARD_PROTOCOL_T1;
  };
  using Transmission = std::function<LONG(const Bytes& command, Bytes& answer)>;

  std::map<std::string, Reader> Readers{{"Reader One 00 00", {}}};
  LONG Established = SCARD_S_SUCCESS;
  LONG Listed = SCARD_S_SUCCESS;
  LONG Connected = SCARD_S_SUCCESS;
  LONG Disconnected = SCARD_S_SUCCESS;
  LONG StateAsked = SCARD_S_SUCCESS;
  LONG Attribute = SCARD_S_SUCCESS;
  Transmission OnTransmit = [](const Bytes&, Bytes& answer) {
    answer = {0x90, 0x00};
    return SCARD_S_SUCCESS;
  };
  // Called with each wait; the time has passed already.
  std::function<void()> WhileWaiting = [] {};

  std::function<void()> WhileConnecting = [] {};
  std::function<void()> WhileDisconnecting = [] {};

  int StateQuestions = 0;
  int EndlessWaits = 0;            // connections to a reader that another program holds
  std::vector<std::string> Calls;  // connects and disconnects
  std::string LastReader;          // whose card was reached
  std::vector<Bytes> Sent;
  int Contexts = 0;
  int Released = 0;  // contexts
  std::vector<DWORD> Waits;
  std::chrono::steady_clock::time_point Time{};

  [[nodiscard]] PcscApi Api() {
    PcscApi api;
    api.Now = [this] { return Time; };
    api.EstablishContext = [this](DWORD, LPCVOID, LPCVOID, LPSCARDCONTEXT context) {
      if (Established != SCARD_S_SUCCESS) return Established;
      *context = ++Contexts;
      return SCARD_S_SUCCESS;
    };
    api.ReleaseContext = [this](SCARDCONTEXT) {
      ++Released;
      return SCARD_S_SUCCESS;
    };
    api.ListReaders = [this](SCARDCONTEXT, LPCSTR, LPSTR names, LPDWORD length) {
      return List(names, length);
    };
    api.GetStatusChange = [this](SCARDCONTEXT, DWORD longest, SCARD_READERSTATE* state, DWORD) {
      return StatusChange(longest, *state);
    };
    api.Connect = [this](SCARDCONTEXT, LPCSTR reader, DWORD mode, DWORD, LPSCARDHANDLE handle,
                         LPDWORD protocol) {
      if (const auto wanted = Readers.find(reader);
          wanted != Readers.end() && wanted->second.IsHeld) {
        ++EndlessWaits;
      }
      if (mode != SCARD_SHARE_DIRECT) {
        Calls.push_back(mode == SCARD_SHARE_EXCLUSIVE ? "connect alone" : "connect");
        if (Connected != SCARD_S_SUCCESS) return Connected;
      }
      if (const LONG code = StateOfCard(Readers.find(reader), mode); code != SCARD_S_SUCCESS) {
        return code;
      }
      current_ = reader;
      *handle = 7;
      *protocol = Readers.at(current_).Protocol;
      if (mode != SCARD_SHARE_DIRECT) {
        LastReader = reader;
        WhileConnecting();
      }
      return SCARD_S_SUCCESS;
    };
    api.Disconnect = [this](SCARDHANDLE, DWORD how) {
      if (how == SCARD_LEAVE_CARD) return SCARD_S_SUCCESS;
      Calls.push_back(how == SCARD_UNPOWER_CARD ? "power down" : "warm reset");
      WhileDisconnecting();
      return Disconnected;
    };
    api.Transmit = [this](SCARDHANDLE, const SCARD_IO_REQUEST*, LPCBYTE command, DWORD size,
                          SCARD_IO_REQUEST*, LPBYTE response, LPDWORD length) {
      Sent.emplace_back(command, command + size);
      Bytes answer;
      const LONG code = OnTransmit(Sent.back(), answer);
      std::copy(answer.begin(), answer.end(), response);
      *length = answer.size();
      return code;
    };
    api.GetAttrib = [this](SCARDHANDLE, DWORD, LPBYTE value, LPDWORD length) {
      const std::uint32_t version = 0x01050002;
      std::memcpy(value, &version, sizeof version);
      *length = sizeof version;
      return Attribute;
    };
    return api;
  }

 private:
  LONG List(LPSTR names, LPDWORD length) const {
    if (Listed != SCARD_S_SUCCESS) return Listed;
    if (Readers.empty()) return SCARD_E_NO_READERS_AVAILABLE;
    std::string text;
    // The service tells them in no particular order.
    for (auto each = Readers.rbegin(); each != Readers.rend(); ++each) text += each->first + '\0';
    text += '\0';
    const bool fits = names != nullptr && *length >= text.size();
    if (fits) std::copy(text.begin(), text.end(), names);
    *length = text.size();
    return fits || names == nullptr ? SCARD_S_SUCCESS : SCARD_E_INSUFFICIENT_BUFFER;
  }

  [[nodiscard]] LONG StateOfCard(std::map<std::string, Reader>::const_iterator reader,
                                 DWORD mode) const {
    if (reader == Readers.end()) return SCARD_E_UNKNOWN_READER;
    if (mode == SCARD_SHARE_DIRECT) return SCARD_S_SUCCESS;
    if (!reader->second.HasCard) return SCARD_E_NO_SMARTCARD;
    return reader->second.IsMute ? SCARD_W_UNPOWERED_CARD : SCARD_S_SUCCESS;
  }

  LONG StatusChange(DWORD longest, SCARD_READERSTATE& state) {
    ++StateQuestions;
    if (StateAsked != SCARD_S_SUCCESS) return StateAsked;
    const DWORD known = state.dwCurrentState;
    if (known != SCARD_STATE_UNAWARE) {
      Waits.push_back(longest);
      Time += std::chrono::milliseconds(longest);
      WhileWaiting();
    }
    const auto reader = Readers.find(state.szReader);
    if (reader == Readers.end()) return SCARD_E_UNKNOWN_READER;
    state.dwEventState = reader->second.Events << 16;
    state.dwEventState |= reader->second.HasCard ? SCARD_STATE_PRESENT : SCARD_STATE_EMPTY;
    if (reader->second.IsMute) state.dwEventState |= SCARD_STATE_MUTE;
    const Bytes& atr = reader->second.Atr;
    state.cbAtr = std::min<DWORD>(atr.size(), sizeof state.rgbAtr);
    std::copy_n(atr.begin(), state.cbAtr, state.rgbAtr);
    if (reader->second.IsHeld) state.dwEventState |= SCARD_STATE_INUSE;
    state.dwEventState |= reader->second.OtherState;
    return state.dwEventState == known ? SCARD_E_TIMEOUT : SCARD_S_SUCCESS;
  }

  std::string current_;
};

}  // namespace ctapi::host::test
