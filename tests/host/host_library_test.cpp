#include "host/host_library.h"

#include <array>
#include <fstream>
#include <functional>
#include <gtest/gtest.h>
#include <iterator>

#include "host/transports.h"
#include "simulator/bytes.h"
#include "simulator/hex.h"

namespace ctapi::host {
namespace {

using ctapi::test::ToHex;

class EchoLink final : public TerminalLink {
 public:
  EchoLink(std::optional<std::int32_t> baud, std::int8_t& code) : baud_(baud), code_(code) {}
  std::int8_t Exchange(Unit unit, ByteView command, Bytes& response) override {
    if (code_ != code::Success) return code_;
    response.assign(command.begin(), command.end());
    response.push_back(static_cast<std::uint8_t>(unit));
    return code::Success;
  }
  std::optional<std::int32_t> Baud() const override { return baud_; }

 private:
  std::optional<std::int32_t> baud_;
  std::int8_t& code_;
};

// Two ports at index 0 and 255; what is asked for is noted.
class NotedTransport final : public Transport {
 public:
  NotedTransport(std::optional<std::int32_t> baud, std::vector<std::size_t>& asked,
                 std::int8_t& code)
      : baud_(baud), asked_(asked), code_(code) {}
  OpenedLink Open(std::size_t index) override {
    asked_.push_back(index);
    if (index != 0 && index != 255) return {.Code = code::TransmissionError};
    return {code::Success, std::make_unique<EchoLink>(baud_, code_)};
  }
  PortInfo InfoOf(std::size_t index) override {
    return {.Name = (baud_ ? std::to_string(*baud_) : "none") + " at " + std::to_string(index)};
  }
  PortTroubleKind TroubleOfReaders() override {
    return baud_ ? PortTroubleKind::None : PortTroubleKind::NoReader;
  }

 private:
  std::optional<std::int32_t> baud_;
  std::vector<std::size_t>& asked_;
  std::int8_t& code_;
};

class HostLibraryTest : public testing::Test {
 protected:
  int Send(std::uint16_t ctn, std::uint8_t dad, std::uint8_t sad, const Bytes& command,
           std::size_t room = 8) {
    dad_ = dad;
    sad_ = sad;
    response_.fill(0xEE);
    return library_.Data(ctn, dad_, sad_, command, std::span(response_).first(room), length_);
  }

  std::vector<ServedPorts> Transports() {
    std::vector<ServedPorts> transports;
    transports.push_back({SomeComPorts, std::make_unique<NotedTransport>(19200, some_, code_)});
    transports.push_back({ComPorts, std::make_unique<NotedTransport>(38400, serial_, code_)});
    transports.push_back(
        {UsbPorts, std::make_unique<NotedTransport>(std::nullopt, readers_, code_)});
    return transports;
  }

  static constexpr PortRange SomeComPorts{200, 209};
  std::vector<std::size_t> some_;
  std::vector<std::size_t> serial_;
  std::vector<std::size_t> readers_;
  std::int8_t code_ = code::Success;
  HostLibrary library_{Transports()};
  std::uint8_t dad_ = 0;
  std::uint8_t sad_ = 0;
  std::uint16_t length_ = 99;
  std::array<std::uint8_t, 16> response_{};
};

TEST_F(HostLibraryTest, PortNumbersLeadToTheirTransport) {
  EXPECT_EQ(library_.Init(1, 1), 0);
  EXPECT_EQ(library_.Init(2, 256), 0);
  EXPECT_EQ(library_.Init(3, 8192), 0);
  EXPECT_EQ(library_.Init(4, 8447), 0);
  EXPECT_EQ(library_.Init(5, 2), -10) << "the transport's own code";
  EXPECT_EQ(serial_, (std::vector<std::size_t>{0, 255, 1}));
  EXPECT_EQ(readers_, (std::vector<std::size_t>{0, 255}));
}

TEST_F(HostLibraryTest, ATransportMayTakePartOfAnothersNumbers) {
  std::int32_t baud = 0;
  ASSERT_EQ(library_.Init(1, 200), 0);
  EXPECT_EQ(library_.GetBaudrate(1, baud), 0);
  EXPECT_EQ(baud, 19200);
  (void)library_.Init(2, 209);
  (void)library_.Init(3, 199);
  (void)library_.Init(4, 210);
  EXPECT_EQ(some_, (std::vector<std::size_t>{0, 9}));
  EXPECT_EQ(serial_, (std::vector<std::size_t>{198, 209}));
}

TEST_F(HostLibraryTest, EachTransportTellsOfItsOwnPorts) {
  const auto nameOf = [this](std::uint16_t pn) {
    PortInfo info;
    EXPECT_EQ(library_.InfoOf(pn, info), 0) << pn;
    return info.Name;
  };
  EXPECT_EQ(nameOf(1), "38400 at 0");
  EXPECT_EQ(nameOf(205), "19200 at 5");
  EXPECT_EQ(nameOf(8447), "none at 255");
  ASSERT_EQ(library_.Init(1, 1), 0);
  EXPECT_EQ(nameOf(1), "38400 at 0") << "an open port, too";
  PortInfo info;
  EXPECT_EQ(library_.InfoOf(EveryReader, info), 0);
  EXPECT_EQ(info.Trouble, PortTroubleKind::NoReader) << "that of the only ones who have one";
  EXPECT_EQ(library_.InfoOf(257, info), -1);
}

TEST_F(HostLibraryTest, OtherPortNumbersAreRefused) {
  for (const int pn : {0, 257, 8191, 8448, 65535}) {
    EXPECT_EQ(library_.Init(1, static_cast<std::uint16_t>(pn)), -1) << pn;
  }
  EXPECT_TRUE(serial_.empty());
  EXPECT_TRUE(readers_.empty());
}

TEST_F(HostLibraryTest, ATerminalNumberInUseAndAnOpenPortAreRefused) {
  EXPECT_EQ(library_.Init(1, 1), 0);
  EXPECT_EQ(library_.Init(1, 256), -1);
  EXPECT_EQ(library_.Init(2, 1), -127);
  EXPECT_EQ(library_.Close(1), 0);
  EXPECT_EQ(library_.Init(2, 1), 0);
}

TEST_F(HostLibraryTest, WithoutInitNothingWorks) {
  std::int32_t baud = 7;
  EXPECT_EQ(Send(1, 1, 2, {0x20}), -1);
  EXPECT_EQ(length_, 0);
  EXPECT_EQ(library_.Close(1), -1);
  EXPECT_EQ(library_.GetBaudrate(1, baud), -1);
  EXPECT_EQ(baud, 7);
}

TEST_F(HostLibraryTest, TellsWhoAnswered) {
  ASSERT_EQ(library_.Init(1, 1), 0);
  EXPECT_EQ(Send(1, 1, 2, {0x20, 0x11}), 0);
  EXPECT_EQ(dad_, 2);
  EXPECT_EQ(sad_, 1);
  EXPECT_EQ(ToHex(std::span(response_).first(length_)), "201101");
  EXPECT_EQ(Send(1, 0, 2, {0x20, 0x11}), 0);
  EXPECT_EQ(sad_, 0);
  EXPECT_EQ(ToHex(std::span(response_).first(length_)), "201100");
}

TEST_F(HostLibraryTest, RefusesBadParameters) {
  ASSERT_EQ(library_.Init(1, 1), 0);
  EXPECT_EQ(Send(2, 1, 2, {0x20}), -1) << "another terminal number";
  EXPECT_EQ(Send(1, 2, 2, {0x20}), -1) << "unknown unit";
  EXPECT_EQ(Send(1, 3, 2, {0x20}), -1);
  EXPECT_EQ(Send(1, 1, 1, {0x20}), -1) << "another source";
  EXPECT_EQ(Send(1, 1, 2, {}), -1) << "no command";
  EXPECT_EQ(Send(1, 1, 2, {0x20}, 0), -1) << "no room";
}

TEST_F(HostLibraryTest, NeverWritesPastTheBuffer) {
  ASSERT_EQ(library_.Init(1, 1), 0);
  EXPECT_EQ(Send(1, 1, 2, {0x20, 0x11}, 2), -11);
  EXPECT_EQ(length_, 0);
  EXPECT_EQ(ToHex(std::span(response_).first(3)), "EEEEEE");
  EXPECT_EQ(Send(1, 1, 2, {0x20, 0x11}, 3), 0);
  EXPECT_EQ(ToHex(std::span(response_).first(4)), "201101EE");
}

TEST_F(HostLibraryTest, CodesOfTheLinkAreHandedOn) {
  ASSERT_EQ(library_.Init(1, 1), 0);
  for (const int code : {-8, -10, -11, -127, -128}) {
    code_ = static_cast<std::int8_t>(code);
    EXPECT_EQ(Send(1, 1, 2, {0x20}), code);
    EXPECT_EQ(length_, 0);
    EXPECT_EQ(sad_, 1);
  }
}

TEST_F(HostLibraryTest, OnlySerialPortsHaveARate) {
  std::int32_t baud = -1;
  ASSERT_EQ(library_.Init(1, 1), 0);
  ASSERT_EQ(library_.Init(2, 8192), 0);
  EXPECT_EQ(library_.GetBaudrate(1, baud), 0);
  EXPECT_EQ(baud, 38400);
  EXPECT_EQ(library_.GetBaudrate(2, baud), -1);
  EXPECT_EQ(baud, 38400);
}

TEST(PortPages, NameTheNumbersOfEveryTransport) {
  std::ifstream stream(PORT_PAGES);
  const std::string page{std::istreambuf_iterator<char>(stream), {}};
  for (const ServedPorts& served : MakeTransports()) {
    const std::string numbers =
        std::to_string(served.Numbers.First) + " to " + std::to_string(served.Numbers.Last);
    EXPECT_NE(page.find("\n| " + numbers + " |"), std::string::npos) << numbers;
  }
}

}  // namespace
}  // namespace ctapi::host
