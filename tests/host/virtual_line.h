#pragma once

#include <chrono>
#include <deque>
#include <functional>
#include <gtest/gtest.h>
#include <string>
#include <utility>
#include <vector>

#include "host/block_protocol.h"
#include "host/block_terminal.h"
#include "simulator/bytes.h"
#include "simulator/hex.h"

namespace ctapi::host::test {

// A line whose time passes only while the library waits. It keeps what was sent.
class VirtualLine : public LinePort {
 public:
  void Send(ByteView bytes) override {
    if (Unplugged) throw LineLost("unplugged");
    Sent.push_back(ctapi::test::ToHex(bytes));
    OnSent(bytes);
  }

  Reception Receive(std::chrono::milliseconds longest) override {
    if (Unplugged) throw LineLost("unplugged");
    Waits.push_back(longest);
    if (coming_.empty()) {
      Elapsed += longest;
      const Bytes late = OnSilence();
      return {.Received = late};
    }
    Reception next = std::move(coming_.front());
    coming_.pop_front();
    return next;
  }

  [[nodiscard]] std::chrono::steady_clock::time_point Now() const override {
    return std::chrono::steady_clock::time_point(Elapsed);
  }

  void DiscardInput() override { coming_.clear(); }
  void SetBaud(std::int32_t baud) override { Bauds.push_back(baud); }

  void Deliver(Bytes bytes, bool damaged = false) {
    coming_.push_back({std::move(bytes), damaged});
  }

  std::vector<std::string> Sent;
  std::vector<std::int32_t> Bauds;
  std::vector<std::chrono::milliseconds> Waits;
  std::chrono::milliseconds Elapsed{0};
  bool Unplugged = false;

 protected:
  virtual void OnSent(ByteView /*bytes*/) {}
  virtual Bytes OnSilence() { return {}; }

 private:
  std::deque<Reception> coming_;
};

// A line with a written dialogue: pairs of what the host must send and what comes back. An answer
// is hexadecimal bytes; "|" parts what arrives apart, "!" marks a damaged part, "" is silence.
class ScriptedLine : public VirtualLine {
 public:
  using Script = std::vector<std::pair<std::string, std::string>>;
  explicit ScriptedLine(Script script) : script_(std::move(script)) {}
  ~ScriptedLine() override { EXPECT_EQ(next_, script_.size()) << "blocks that were not sent"; }

 protected:
  void OnSent(ByteView /*bytes*/) override {
    if (next_ >= script_.size()) {
      ADD_FAILURE() << "one block too many: " << Sent.back();
      return;
    }
    const auto& [expected, answer] = script_[next_++];
    EXPECT_EQ(Sent.back(), ctapi::test::ToHex(*BytesFromHex(expected))) << "block " << next_;
    std::string part;
    for (const char c : answer + "|") {
      if (c != '|') {
        part += c;
        continue;
      }
      const bool damaged = !part.empty() && part.front() == '!';
      if (damaged) part.erase(0, 1);
      if (!part.empty() || damaged) Deliver(*BytesFromHex(part), damaged);
      part.clear();
    }
  }

 private:
  Script script_;
  std::size_t next_ = 0;
};

// A line with a terminal at its end. Both directions can be tampered with.
class TerminalLine : public VirtualLine {
 public:
  using Tamper = std::function<void(Bytes& bytes)>;
  explicit TerminalLine(ctapi::test::BlockTerminal& terminal) : terminal_(terminal) {}

  Tamper ToTerminal = [](Bytes&) {};
  Tamper ToHost = [](Bytes&) {};
  std::size_t PieceLength = 1000;  // bytes that arrive at once

 protected:
  void OnSent(ByteView bytes) override {
    Bytes sent(bytes.begin(), bytes.end());
    ToTerminal(sent);
    Answer(terminal_.Take(sent));
  }
  Bytes OnSilence() override {
    Bytes late = terminal_.TakeSilence();
    if (!late.empty()) ToHost(late);
    return late;
  }

 private:
  void Answer(Bytes answer) {
    if (answer.empty()) return;
    ToHost(answer);
    for (std::size_t at = 0; at < answer.size(); at += PieceLength) {
      const ByteView piece =
          ByteView(answer).subspan(at, std::min(PieceLength, answer.size() - at));
      Deliver(Bytes(piece.begin(), piece.end()));
    }
  }

  ctapi::test::BlockTerminal& terminal_;
};

}  // namespace ctapi::host::test
