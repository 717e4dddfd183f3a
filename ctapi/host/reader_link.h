#pragma once

#include <chrono>
#include <memory>
#include <string>

#include "host/card_commands.h"
#include "host/pcsc_service.h"
#include "host/terminal_link.h"

namespace ctapi::host {

// A PC/SC reader that answers the commands of a card terminal (CT-BCS) itself and hands card
// commands on. From the request for a card to its release no other program reaches the card.
class ReaderLink final : public TerminalLink {
 public:
  // The reader is one that the service has just listed. What its calls came to is told in
  // trouble: None with an active card, nothing where no reach for the card tells more than a look.
  ReaderLink(PcscService& service, std::string reader, std::optional<PortTroubleKind>& trouble)
      : service_(service), reader_(std::move(reader)), trouble_(trouble), seenAt_(service.Now()) {}

  ~ReaderLink() override { Drop(); }

  [[nodiscard]] std::int8_t Exchange(Unit unit, ByteView command, Bytes& response) override;
  [[nodiscard]] std::optional<std::int32_t> Baud() const override { return std::nullopt; }

 private:
  // Ok with a response, or what kept the reader from one.
  [[nodiscard]] PcscResult ToTerminal(ByteView command, Bytes& response);
  [[nodiscard]] PcscResult ToCard(ByteView command, Bytes& response);

  [[nodiscard]] PcscResult Send(ByteView command, Bytes& response);
  [[nodiscard]] PcscResult SendAfterAll(ByteView command, Bytes& response);

  [[nodiscard]] PcscResult ResetCt(Bytes& response);
  [[nodiscard]] PcscResult ResetIcc(ByteView command, Bytes& response);
  [[nodiscard]] PcscResult RequestIcc(ByteView command, Bytes& response);
  [[nodiscard]] PcscResult GetStatus(ByteView command, Bytes& response);
  [[nodiscard]] PcscResult EjectIcc(ByteView command, Bytes& response);

  // Waits until then for another program to leave the card.
  [[nodiscard]] PcscResult ActivateBy(std::chrono::steady_clock::time_point end, ByteView command,
                                      ReaderState state, Bytes& response);
  // Connects to the card of a reader in this state. NoCard where there is none; a card that cannot
  // be used is told in the response.
  [[nodiscard]] PcscResult Activate(ByteView command, ReaderState state, Bytes& response);
  [[nodiscard]] Bytes ActivationAnswer(ByteView command) const;
  void Drop();
  // Asks for the reader's state. Drops a card that was pulled since: one put in again is another.
  [[nodiscard]] PcscResult Look(ReaderState& state);
  [[nodiscard]] bool WasSeenJustNow() const;
  // Why an exchange with the card broke: readers tell late that their card was pulled.
  [[nodiscard]] PcscResult ReasonFor(PcscResult result);
  // Waits for the next change of the reader, a slice of time at the most.
  [[nodiscard]] PcscResult Wait(std::chrono::steady_clock::time_point end,
                                std::chrono::milliseconds slice, ReaderState& state);

  PcscService& service_;
  std::string reader_;
  std::optional<PortTroubleKind>& trouble_;
  std::chrono::steady_clock::time_point seenAt_;  // when the service last told of it
  std::unique_ptr<CardConnection> card_;          // none: no active card
  std::uint32_t eventsAtActivation_ = 0;
  Bytes atr_;
  bool isMemory_ = false;
  bool isCardUsed_ = false;  // since its activation
  KvkMemory memory_;
  Bytes manufacturer_;  // the answer to that query, once asked for
  bool isLost_ = false;
};

}  // namespace ctapi::host
