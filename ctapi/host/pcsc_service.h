#pragma once

#include <chrono>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "host/pcsc_api.h"
#include "protocol/bytes.h"

namespace ctapi::host {

// What a PC/SC call came to.
enum class PcscResult {
  Ok,
  NoService,  // not installed, not running, or ended meanwhile
  NoReader,
  NoCard,
  Mute,       // a card that does not answer to reset, or in no protocol
  Held,       // by another program
  CardReset,  // by another program
  TooLong,    // the answer does not fit
  Timeout,
  Broken,  // anything else
};

[[nodiscard]] PcscResult ResultOf(LONG code);

struct ReaderState {
  bool HasCard = false;
  bool IsHeld = false;  // a program is connected to the card
  Bytes Atr{};          // the card's answer to reset; empty where it has given none
  DWORD Raw = SCARD_STATE_UNAWARE;

  // Counts how often a card came or went.
  [[nodiscard]] DWORD Events() const { return Raw >> 16; }
};

class CardConnection;

// The PC/SC service over one context, which is renewed where the service was started anew.
class PcscService {
 public:
  explicit PcscService(std::optional<PcscApi> api) : api_(std::move(api)) {}
  ~PcscService();
  PcscService(const PcscService&) = delete;
  PcscService& operator=(const PcscService&) = delete;

  [[nodiscard]] bool IsInstalled() const { return api_.has_value(); }

  // The readers at this moment, in the order of the service. Ok with no name at all where none is
  // attached.
  [[nodiscard]] PcscResult List(std::vector<std::string>& names);

  // The state of a reader now, or as soon as it is another than the known one; Timeout where that
  // does not happen in time.
  [[nodiscard]] PcscResult Query(const std::string& reader, ReaderState& state);
  [[nodiscard]] PcscResult AwaitChange(const std::string& reader, const ReaderState& known,
                                       std::chrono::milliseconds longest, ReaderState& state);

  // Connects to the card, powers it up, and keeps every other program from it. Not for a reader
  // that is held: the service lets the caller wait without limit while another program that shares
  // the card is in a transaction. The same goes for DriverVersion.
  [[nodiscard]] PcscResult Connect(const std::string& reader,
                                   std::unique_ptr<CardConnection>& connection);

  // Version of the reader's driver as 0xMMmmbbbb; nothing where the driver does not tell it. Needs
  // no card and powers none up.
  [[nodiscard]] std::optional<std::uint32_t> DriverVersion(const std::string& reader);

  [[nodiscard]] std::chrono::steady_clock::time_point Now() const { return api_->Now(); }

 private:
  [[nodiscard]] PcscResult Establish();
  void Release();
  [[nodiscard]] PcscResult ListOnce(std::vector<std::string>& names);

  std::optional<PcscApi> api_;
  std::optional<SCARDCONTEXT> context_;
};

// A card that this program is connected to. The destructor ends the connection, too.
class CardConnection {
 public:
  CardConnection(const PcscApi& api, SCARDHANDLE handle, DWORD protocol)
      : api_(api), handle_(handle), protocol_(protocol) {}
  ~CardConnection();
  CardConnection(const CardConnection&) = delete;
  CardConnection& operator=(const CardConnection&) = delete;

  [[nodiscard]] bool UsesT0() const { return protocol_ == SCARD_PROTOCOL_T0; }
  // Ends the connection and powers the card down.
  [[nodiscard]] PcscResult End();
  // Resets the card without taking its power away.
  [[nodiscard]] PcscResult WarmReset();
  // One command as it is, and the card's answer.
  [[nodiscard]] PcscResult Transmit(ByteView command, Bytes& answer);

 private:
  const PcscApi& api_;
  std::optional<SCARDHANDLE> handle_;  // until the end
  DWORD protocol_;
  Bytes buffer_;  // kept, since it has room for the longest answer of all
};

}  // namespace ctapi::host
