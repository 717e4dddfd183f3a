#include "helper/message.h"

#include <gtest/gtest.h>

namespace ctapi::helper {
namespace {

Message FullMessage() {
  return {.Kind = MessageKind::Data,
          .Code = -128,
          .Dad = 1,
          .Sad = 2,
          .Trouble = 5,
          .Ctn = 0x0102,
          .Pn = 8447,
          .Length = 4098,
          .Baud = -1,
          .Payload = {0x20, 0x13, 0x00, 0x46, 0x00}};
}

TEST(MessageTest, ComesOutAsItWentIn) {
  EXPECT_EQ(Decode(Encode(FullMessage())), FullMessage());
  EXPECT_EQ(Decode(Encode({})), Message());
}

TEST(MessageTest, EveryKindIsTaken) {
  for (const int kind : {1, 2, 3, 4, 5, 0x81, 0x82, 0x83, 0x84, 0x85, 0x86}) {
    Message message = FullMessage();
    message.Kind = static_cast<MessageKind>(kind);
    EXPECT_EQ(Decode(Encode(message)), message) << kind;
  }
}

TEST(MessageTest, AnUnknownKindIsNone) {
  for (const int kind : {0, 6, 0x80, 0x87, 0xFF}) {
    Message message = FullMessage();
    message.Kind = static_cast<MessageKind>(kind);
    EXPECT_EQ(Decode(Encode(message)), std::nullopt) << kind;
  }
}

TEST(MessageTest, TheLongestPayload) {
  Message message{.Payload = Bytes(LongestPayload, 0x5A)};
  EXPECT_EQ(Decode(Encode(message)), message);
  message.Payload.push_back(0x5A);
  EXPECT_EQ(Encode(message).size(), HeaderLength + LongestPayload) << "the rest is cut";
}

TEST(MessageTest, WhatIsMissingIsTold) {
  const Bytes bytes = Encode(FullMessage());
  EXPECT_EQ(MissingBytes({}), HeaderLength);
  for (std::size_t length = 0; length < bytes.size(); ++length) {
    const ByteView begin = ByteView(bytes).first(length);
    EXPECT_EQ(MissingBytes(begin),
              length < HeaderLength ? HeaderLength - length : bytes.size() - length);
    EXPECT_EQ(Decode(begin), std::nullopt) << length;
  }
  EXPECT_EQ(MissingBytes(bytes), 0U);
}

TEST(MessageTest, BytesBehindItAreNoPartOfAMessage) {
  Bytes bytes = Encode(FullMessage());
  bytes.push_back(0);
  EXPECT_EQ(MissingBytes(bytes), 0U);
  EXPECT_EQ(Decode(bytes), std::nullopt);
}

}  // namespace
}  // namespace ctapi::helper
