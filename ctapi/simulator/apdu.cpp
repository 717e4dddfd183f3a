#include "simulator/apdu.h"

#include <algorithm>

namespace ctapi {

namespace {

constexpr std::size_t HeaderLength = 4;

int LeOf(std::uint8_t byte) {
  return byte == iso7816::LeMaximum ? iso7816::BytesOfLeMaximum : byte;
}

}  // namespace

std::optional<Command> ParseCommand(ByteView bytes) {
  if (bytes.size() < HeaderLength) return std::nullopt;
  Command command{.Cla = bytes[0], .Ins = bytes[1], .P1 = bytes[2], .P2 = bytes[3]};
  const ByteView body = bytes.subspan(HeaderLength);
  if (body.empty()) return command;
  if (body.size() == 1) {
    command.Le = LeOf(body[0]);
    return command;
  }
  const std::size_t lc = body[0];
  const ByteView rest = body.subspan(1);
  if (lc == 0 || rest.size() < lc || rest.size() > lc + 1) return std::nullopt;
  command.Data.assign(rest.begin(), rest.begin() + static_cast<std::ptrdiff_t>(lc));
  if (rest.size() == lc + 1) command.Le = LeOf(rest.back());
  return command;
}

Bytes Answer(StatusWord statusWord) {
  return Answer({}, statusWord);
}

Bytes Answer(ByteView data, StatusWord statusWord) {
  Bytes answer(data.begin(), data.end());
  Append(answer, statusWord.BothBytes());
  return answer;
}

Bytes AnswerPiece(ByteView file, std::size_t offset, int le) {
  if (offset >= file.size()) return Answer(sw::WrongOffset);
  const auto asked = static_cast<std::size_t>(le);
  const ByteView rest = file.subspan(offset);
  // Le 00 asks for whatever there is, up to 256 bytes: no warning then.
  const bool cut = rest.size() < asked && le != iso7816::BytesOfLeMaximum;
  return Answer(rest.first(std::min(asked, rest.size())), cut ? sw::EndOfFile : sw::Ok);
}

bool SelectsApplication(const Command& command) {
  return command.Ins == iso7816::InsSelect && command.P1 == iso7816::SelectByName;
}

bool Names(const Command& command, std::string_view applicationId) {
  return std::equal(command.Data.begin(), command.Data.end(), applicationId.begin(),
                    applicationId.end(),
                    [](std::uint8_t a, char b) { return a == static_cast<std::uint8_t>(b); });
}

}  // namespace ctapi
