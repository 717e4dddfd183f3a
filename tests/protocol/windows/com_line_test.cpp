#include "protocol/windows/com_line.h"

#include <gtest/gtest.h>
#include <string_view>
#include <thread>

#include "protocol/windows/serial_pair.h"
#include "support/windows/wine.h"

namespace ctapi {
namespace {

using std::chrono::milliseconds;
using std::chrono::steady_clock;

TEST(ComLine, ThatIsNoneIsRefused) {
  for (const char* const port : {"COM250", "NUL", "", "COM1\\x"}) {
    const OpenedComLine opened = ComLine::Open(port);
    EXPECT_TRUE(MeansNoComPort(opened.Error)) << port << ": " << opened.Error;
    EXPECT_EQ(opened.Line, nullptr);
  }
}

TEST(ComLine, TellsWhyAPortCannotBeOpened) {
  EXPECT_TRUE(MeansComPortInUse(ERROR_ACCESS_DENIED));
  EXPECT_TRUE(MeansComPortInUse(ERROR_SHARING_VIOLATION));
  EXPECT_FALSE(MeansComPortInUse(ERROR_FILE_NOT_FOUND));
  EXPECT_FALSE(MeansNoComPort(ERROR_ACCESS_DENIED));
}

Bytes BytesOf(std::string_view text) {
  return {text.begin(), text.end()};
}

// Both ends of a line.
class ComLinePair : public testing::Test {
 protected:
  void SetUp() override {
    if (!pair_.Exists()) GTEST_SKIP() << "KARTOCHECK_SERIAL_PAIR names no pair of ports";
    OpenedComLine here = ComLine::Open(pair_.Near);
    OpenedComLine there = ComLine::Open(pair_.Far);
    ASSERT_EQ(here.Error, DWORD{ERROR_SUCCESS});
    ASSERT_EQ(there.Error, DWORD{ERROR_SUCCESS});
    near_ = std::move(here.Line);
    far_ = std::move(there.Line);
  }

  // What has come after at most a second, until as many bytes are there.
  static Bytes Take(ComLine& line, std::size_t count) {
    Bytes bytes;
    const auto end = steady_clock::now() + std::chrono::seconds(1);
    while (bytes.size() < count && steady_clock::now() < end) {
      const ComLine::Reception part = line.Read(milliseconds(100));
      EXPECT_FALSE(part.Damaged);
      bytes.insert(bytes.end(), part.Received.begin(), part.Received.end());
    }
    return bytes;
  }

  test::SerialPair pair_ = test::TheSerialPair();
  std::unique_ptr<ComLine> near_;
  std::unique_ptr<ComLine> far_;
};

TEST_F(ComLinePair, CarriesEveryByteBothWays) {
  Bytes all;
  for (int value = 0; value < 256; ++value) all.push_back(static_cast<std::uint8_t>(value));
  near_->Write(all, milliseconds(1000));
  EXPECT_EQ(Take(*far_, all.size()), all);
  far_->Write(all, milliseconds(1000));
  EXPECT_EQ(Take(*near_, all.size()), all);
}

TEST_F(ComLinePair, CarriesMoreThanABufferHolds) {
  Bytes sent(20'000);
  for (std::size_t i = 0; i < sent.size(); ++i) sent[i] = static_cast<std::uint8_t>(i * 7);
  std::thread sender([&] { near_->Write(sent, milliseconds(30'000)); });
  const Bytes received = Take(*far_, sent.size());
  sender.join();
  EXPECT_EQ(received, sent);
}

TEST_F(ComLinePair, ReadsNothingWithoutWaiting) {
  const auto begin = steady_clock::now();
  EXPECT_TRUE(near_->Read(milliseconds(0)).Received.empty());
  EXPECT_LT(steady_clock::now() - begin, milliseconds(100));
}

TEST_F(ComLinePair, WaitsForTheGivenTime) {
  const auto begin = steady_clock::now();
  EXPECT_TRUE(near_->Read(milliseconds(200)).Received.empty());
  const auto time = steady_clock::now() - begin;
  EXPECT_GE(time, milliseconds(150));
  EXPECT_LT(time, milliseconds(800));
}

TEST_F(ComLinePair, EndsTheWaitWithTheFirstBytes) {
  std::thread sender([this] {
    std::this_thread::sleep_for(milliseconds(100));
    far_->Write(BytesOf("abc"), milliseconds(1000));
  });
  const auto begin = steady_clock::now();
  const Bytes first = near_->Read(milliseconds(5000)).Received;
  const auto time = steady_clock::now() - begin;
  sender.join();
  EXPECT_FALSE(first.empty());
  EXPECT_LT(time, milliseconds(2000));
}

TEST_F(ComLinePair, ForgetsWhatHasCome) {
  far_->Write(BytesOf("old"), milliseconds(1000));
  std::this_thread::sleep_for(milliseconds(200));
  near_->DiscardInput();
  EXPECT_TRUE(near_->Read(milliseconds(100)).Received.empty());
  far_->Write(BytesOf("new"), milliseconds(1000));
  EXPECT_EQ(Take(*near_, 3), BytesOf("new"));
}

TEST_F(ComLinePair, BelongsToOneProgram) {
  if (kartocheck::test::IsWine()) GTEST_SKIP() << "Wine lets every program have a port";
  const OpenedComLine second = ComLine::Open(pair_.Near);
  EXPECT_TRUE(MeansComPortInUse(second.Error)) << second.Error;
  near_.reset();
  EXPECT_EQ(ComLine::Open(pair_.Near).Error, DWORD{ERROR_SUCCESS});
}

TEST_F(ComLinePair, TakesEverySettingOfATerminal) {
  for (const std::int32_t baud : {9600, 19200, 38400, 57600, 115200}) {
    for (const auto parity : {ComLine::Parity::Even, ComLine::Parity::Odd, ComLine::Parity::None}) {
      near_->SetSettings(baud, parity);
      near_->SetDtr(false);
      near_->SetRts(false);
      near_->SetDtr(true);
      near_->SetRts(true);
      far_->SetSettings(baud, parity);
      near_->Write(BytesOf("\x12\x00\x05\xFF"), milliseconds(1000));
      EXPECT_EQ(Take(*far_, 1), BytesOf("\x12")) << baud;
    }
  }
}

}  // namespace
}  // namespace ctapi
