#include "support/answer_book.h"

#include <algorithm>

namespace kartocheck::test {

namespace {

constexpr std::int32_t Baud = 9600;

}  // namespace

AnswerBook::AnswerBook(const std::string& script) {
  using Kind = DialogueStep::Kind;
  for (const DialogueStep& step : ParseDialogue(script)) {
    if (step.kind == Kind::Open) openCode_ = static_cast<std::int8_t>(step.code);
    if (step.kind == Kind::Close) closeCode_ = static_cast<std::int8_t>(step.code);
    if (step.kind != Kind::Exchange) continue;
    replies_[step.command].push_back({step.response, step.code});
    ++exchanges_;
  }
}

std::int8_t AnswerBook::Init(std::uint16_t /*ctn*/, std::uint16_t /*pn*/) {
  return openCode_;
}

std::int8_t AnswerBook::Data(std::uint16_t /*ctn*/, std::uint8_t& dad, std::uint8_t& sad,
                             std::span<const std::uint8_t> command,
                             std::span<std::uint8_t> response, std::uint16_t& responseLength) {
  const QByteArray sent(reinterpret_cast<const char*>(command.data()),
                        static_cast<qsizetype>(command.size()));
  sad = dad;
  dad = 2;
  Reply reply{QByteArray::fromHex("6D00"), 0};
  if (const auto known = replies_.find(sent); known != replies_.end()) {
    reply = known->front();
    if (known->size() > 1) known->pop_front();
  }
  const auto length = std::min(response.size(), static_cast<std::size_t>(reply.response.size()));
  std::copy_n(reply.response.begin(), length, response.begin());
  responseLength = static_cast<std::uint16_t>(length);
  return static_cast<std::int8_t>(reply.code);
}

std::int8_t AnswerBook::Close(std::uint16_t /*ctn*/) {
  return closeCode_;
}

std::int8_t AnswerBook::GetBaudrate(std::uint16_t /*ctn*/, std::int32_t& baud) {
  baud = Baud;
  return 0;
}

}  // namespace kartocheck::test
