#pragma once

#include <chrono>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "host/bounded_caller.h"
#include "host/pcsc_api.h"
#include "protocol/bytes.h"

namespace ctapi::host {

// What a PC/SC call came to.
enum class PcscResult {
  Ok,
  NoService,  // not installed, not running, ended meanwhile, or without an answer
  Refused,    // by the service, which does not serve this user
  NoReader,
  NoCard,
  Mute,       // a card that does not answer to reset, or in no protocol
  Held,       // by another program
  CardReset,  // by another program
  TooLong,    // the answer does not fit
  Timeout,    // no change of state, or no return of the call, in time
  Broken,     // anything else
};

[[nodiscard]] PcscResult ResultOf(PcscCode code);

struct ReaderState {
  bool HasCard = false;
  bool IsHeld = false;  // a program is connected to the card
  Bytes Atr{};          // the card's answer to reset; empty where it has given none
  std::uint32_t Raw = reader_state::Unaware;

  // Counts how often a card came or went.
  [[nodiscard]] std::uint32_t Events() const { return Raw >> 16; }
};

class CardConnection;

// A context for the next connection to a card, handed back where the last one has ended: to make
// one costs as much as ten exchanges with a quick card.
using SpareContext = std::shared_ptr<std::optional<PcscContext>>;

// The PC/SC service over one context, which is renewed where the service was started anew. No call
// waits without limit: one that does not return in time takes its context with it.
class PcscService {
 public:
  // Time for what the service does by itself, and for powering a card up or down. It takes some
  // seconds until a card is found mute.
  static constexpr std::chrono::milliseconds AnswerTime{10'000};

  explicit PcscService(std::optional<PcscApi> api,
                       std::chrono::milliseconds answerTime = AnswerTime)
      : api_(api ? std::make_shared<const PcscApi>(*std::move(api)) : nullptr),
        answerTime_(answerTime) {}
  ~PcscService();
  PcscService(const PcscService&) = delete;
  PcscService& operator=(const PcscService&) = delete;

  [[nodiscard]] bool IsInstalled() const { return api_ != nullptr; }

  // The readers at this moment, in the order of the service. Ok with no name at all where none is
  // attached.
  [[nodiscard]] PcscResult List(std::vector<std::string>& names);

  // The state of a reader now, or as soon as it is another than the known one; Timeout where that
  // does not happen in time.
  [[nodiscard]] PcscResult Query(const std::string& reader, ReaderState& state);
  [[nodiscard]] PcscResult AwaitChange(const std::string& reader, const ReaderState& known,
                                       std::chrono::milliseconds longest, ReaderState& state);

  // Connects to the card, powers it up, and keeps every other program from it. Better not for a
  // reader that is held: the service keeps the caller waiting while another program that shares
  // the card is in a transaction, up to the limit, which is told as Held. The same goes for
  // DriverVersion.
  [[nodiscard]] PcscResult Connect(const std::string& reader,
                                   std::unique_ptr<CardConnection>& connection);

  // Version of the reader's driver as 0xMMmmbbbb; nothing where the driver does not tell it. Needs
  // no card and powers none up.
  [[nodiscard]] std::optional<std::uint32_t> DriverVersion(const std::string& reader);

  [[nodiscard]] std::chrono::steady_clock::time_point Now() const { return api_->Now(); }

 private:
  // A call with this service's context.
  template <typename Result>
  [[nodiscard]] std::optional<Result> Call(
      std::chrono::milliseconds longest,
      std::function<Result(const PcscApi& api, PcscContext context)> call);
  [[nodiscard]] PcscResult Establish();
  [[nodiscard]] PcscResult EstablishForCard();
  [[nodiscard]] PcscResult EstablishInto(std::optional<PcscContext>& context);
  void Release();
  [[nodiscard]] PcscResult ListOnce(std::vector<std::string>& names);

  std::shared_ptr<const PcscApi> api_;  // none: not installed
  std::chrono::milliseconds answerTime_;
  std::shared_ptr<BoundedCaller> caller_ = std::make_shared<BoundedCaller>();
  std::optional<PcscContext> context_;
  SpareContext forCard_ = std::make_shared<std::optional<PcscContext>>();
};

// A card that this program is connected to, by a context of its own: a call that does not return
// keeps nobody else waiting. The destructor ends the connection, too.
class CardConnection {
 public:
  struct Handle {
    PcscContext Context = 0;
    PcscCard Card = 0;
    std::uint32_t Protocol = 0;
  };

  CardConnection(std::shared_ptr<const PcscApi> api, std::shared_ptr<BoundedCaller> caller,
                 const Handle& handle, SpareContext spare, std::chrono::milliseconds answerTime)
      : api_(std::move(api)),
        caller_(std::move(caller)),
        handle_(handle),
        spare_(std::move(spare)),
        answerTime_(answerTime) {}
  ~CardConnection();
  CardConnection(const CardConnection&) = delete;
  CardConnection& operator=(const CardConnection&) = delete;

  [[nodiscard]] bool UsesT0() const { return handle_ && handle_->Protocol == card_protocol::T0; }
  // Ends the connection and powers the card down.
  [[nodiscard]] PcscResult End() { return EndBy(CardDisposition::Unpower); }
  // Ends the connection and resets the card without taking its power away. To stay connected over
  // the reset would be to wait for whoever waits for the card meanwhile.
  [[nodiscard]] PcscResult EndByReset() { return EndBy(CardDisposition::Reset); }
  // Ends the connection and leaves the card as it is.
  [[nodiscard]] PcscResult Leave() { return EndBy(CardDisposition::Leave); }
  // One command as it is, and the card's answer.
  [[nodiscard]] PcscResult Transmit(ByteView command, Bytes& answer);

 private:
  [[nodiscard]] PcscResult EndBy(CardDisposition disposition);

  std::shared_ptr<const PcscApi> api_;
  std::shared_ptr<BoundedCaller> caller_;
  std::optional<Handle> handle_;  // until the end
  SpareContext spare_;
  std::chrono::milliseconds answerTime_;
};

}  // namespace ctapi::host
