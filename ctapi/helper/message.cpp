#include "helper/message.h"

#include <algorithm>

namespace ctapi::helper {

namespace {

constexpr std::size_t PayloadLengthAt = 15;

// Numbers have their least significant byte first.
template <typename Number>
void Append(Bytes& bytes, Number number) {
  const auto bits = static_cast<std::make_unsigned_t<Number>>(number);
  for (std::size_t i = 0; i < sizeof bits; ++i) {
    bytes.push_back(static_cast<std::uint8_t>(bits >> (8 * i)));
  }
}

template <typename Number>
Number NumberAt(ByteView bytes, std::size_t position) {
  std::make_unsigned_t<Number> bits = 0;
  for (std::size_t i = sizeof bits; i-- > 0;) {
    bits = static_cast<decltype(bits)>(bits << 8 | bytes[position + i]);
  }
  return static_cast<Number>(bits);
}

bool IsKnown(MessageKind kind) {
  return (kind >= MessageKind::Init && kind <= MessageKind::PortInfo) ||
         (kind >= MessageKind::Loaded && kind <= MessageKind::Threw);
}

}  // namespace

Bytes BytesOf(std::string_view text) {
  return {text.begin(), text.end()};
}

Bytes Encode(const Message& message) {
  const std::size_t length = std::min(message.Payload.size(), LongestPayload);
  Bytes bytes;
  bytes.reserve(HeaderLength + length);
  bytes.push_back(static_cast<std::uint8_t>(message.Kind));
  Append(bytes, message.Code);
  bytes.push_back(message.Dad);
  bytes.push_back(message.Sad);
  bytes.push_back(message.Trouble);
  Append(bytes, message.Ctn);
  Append(bytes, message.Pn);
  Append(bytes, message.Length);
  Append(bytes, message.Baud);
  Append(bytes, static_cast<std::uint16_t>(length));
  bytes.insert(bytes.end(), message.Payload.begin(),
               message.Payload.begin() + static_cast<std::ptrdiff_t>(length));
  return bytes;
}

std::size_t MissingBytes(ByteView received) {
  if (received.size() < HeaderLength) return HeaderLength - received.size();
  const std::size_t whole = HeaderLength + NumberAt<std::uint16_t>(received, PayloadLengthAt);
  return whole - std::min(whole, received.size());
}

std::optional<Message> Decode(ByteView bytes) {
  if (MissingBytes(bytes) > 0) return std::nullopt;
  const ByteView payload = bytes.subspan(HeaderLength);
  const auto kind = static_cast<MessageKind>(bytes[0]);
  if (payload.size() != NumberAt<std::uint16_t>(bytes, PayloadLengthAt) || !IsKnown(kind)) {
    return std::nullopt;
  }
  return Message{.Kind = kind,
                 .Code = NumberAt<std::int8_t>(bytes, 1),
                 .Dad = bytes[2],
                 .Sad = bytes[3],
                 .Trouble = bytes[4],
                 .Ctn = NumberAt<std::uint16_t>(bytes, 5),
                 .Pn = NumberAt<std::uint16_t>(bytes, 7),
                 .Length = NumberAt<std::uint16_t>(bytes, 9),
                 .Baud = NumberAt<std::int32_t>(bytes, 11),
                 .Payload = Bytes(payload.begin(), payload.end())};
}

}  // namespace ctapi::helper
