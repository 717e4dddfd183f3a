#include <algorithm>
#include <array>
#include <cstdlib>
#include <dlfcn.h>
#include <gtest/gtest.h>
#include <memory>
#include <string>

#include "ctnrv32.h"
#include "host/pty_terminal.h"
#include "protocol/com_table.h"
#include "simulator/hex.h"
#include "simulator/simulated_terminal.h"

// The library as built, loaded through its C interface as any program would, and a terminal with an
// eGK on a pseudo-terminal that is COM 3.
namespace ctapi {
namespace {

constexpr std::uint16_t Com3 = 3;
constexpr std::uint8_t Untouched = 0xEE;
constexpr std::array<std::uint8_t, 5> GetStatus{0x20, 0x13, 0x00, 0x81, 0x00};  // answer: 5 bytes

class BuiltLibrary : public testing::Test {
 protected:
  BuiltLibrary() : handle_(dlopen(HOST_LIBRARY, RTLD_NOW | RTLD_LOCAL), &dlclose) {
    if (!handle_) throw std::runtime_error(dlerror());
    Resolve(Init, "CTDENRVT1_init");
    Resolve(Data, "CTDENRVT1_data");
    Resolve(Close, "CTDENRVT1_close");
    Resolve(GetBaudrate, "CT_get_baudrate");
    Resolve(PortInfo, "KARTOCHECK_port_info");
    EgkContents contents;
    contents.Vsd.EfPd = Bytes(600, 0x3C);
    terminal_.Insert(EgkCard(contents));
    setenv(ComTableVariable, ("3=" + pty_.Device()).c_str(), 1);
  }
  [[nodiscard]] std::string Device() const { return pty_.Device(); }

  ~BuiltLibrary() override {
    (void)Close(1);
    unsetenv(ComTableVariable);
  }

  CTDENRVT1_init_t Init = nullptr;
  CTDENRVT1_data_t Data = nullptr;
  CTDENRVT1_close_t Close = nullptr;
  CT_get_baudrate_t GetBaudrate = nullptr;
  KARTOCHECK_port_info_t PortInfo = nullptr;

  // The answer, or the code. Whatever it is, nothing is written behind the room that was offered.
  std::string Send(std::uint8_t unit, const Bytes& command, std::uint16_t room = 4098,
                   std::uint16_t ctn = 1) {
    dad = unit;
    sad = 2;
    length = room;
    Bytes response(room + 512U, Untouched);
    const int code = Data(ctn, &dad, &sad, static_cast<std::uint16_t>(command.size()),
                          command.data(), &length, response.data());
    const auto behind = response.begin() + (code == 0 ? length : 0);
    EXPECT_LE(length, room);
    EXPECT_TRUE(std::all_of(behind, response.end(), [](auto byte) { return byte == Untouched; }))
        << "room " << room;
    return code == 0 ? test::ToHex(ByteView(response).first(length))
                     : "code " + std::to_string(code);
  }
  std::string Send(std::uint8_t unit, const char* hex, std::uint16_t room = 4098) {
    return Send(unit, *BytesFromHex(hex), room);
  }

  std::uint8_t dad = 0;
  std::uint8_t sad = 0;
  std::uint16_t length = 0;

 private:
  template <typename Function>
  void Resolve(Function& function, const char* name) {
    function = reinterpret_cast<Function>(dlsym(handle_.get(), name));
    if (function == nullptr) throw std::runtime_error(std::string("missing ") + name);
  }

  std::unique_ptr<void, int (*)(void*)> handle_;
  SimulatedTerminal terminal_{*ProfileOf("gamma")};
  test::PtyTerminal pty_{[this](int unit, const Bytes& command) {
                           return unit == 1 ? terminal_.TransmitToTerminal(command)
                                            : terminal_.TransmitToCard(command);
                         },
                         {.Baud = 38400}};
};

TEST_F(BuiltLibrary, ReadsACard) {
  ASSERT_EQ(Init(1, Com3), 0);
  std::int32_t baud = -1;
  EXPECT_EQ(GetBaudrate(1, &baud), 0);
  EXPECT_EQ(baud, 38400);
  EXPECT_EQ(Send(1, "2013008100"), "8101019000");
  EXPECT_EQ(dad, 2);
  EXPECT_EQ(sad, 1);
  EXPECT_EQ(Send(1, "201201000101"), "9001");
  EXPECT_EQ(Send(0, "00A4040C06D27600000102"), "9000");
  EXPECT_EQ(dad, 2);
  EXPECT_EQ(sad, 0);
  EXPECT_EQ(Send(0, "00B0810000"), test::ToHex(Bytes(256, 0x3C)) + "9000");
  EXPECT_EQ(Close(1), 0);
}

TEST_F(BuiltLibrary, TellsWhatItHasOnAPort) {
  const std::string device = Device();
  std::uint8_t trouble = Untouched;
  std::array<std::uint8_t, 64> name{};
  name.fill(Untouched);
  const auto ask = [&](std::uint16_t pn, std::size_t room) {
    trouble = Untouched;
    length = static_cast<std::uint16_t>(room);
    return PortInfo(pn, &trouble, &length, name.data());
  };
  EXPECT_EQ(ask(Com3, device.size() - 1), -11);
  EXPECT_EQ(name[0], Untouched);
  EXPECT_EQ(ask(Com3, device.size()), 0);
  EXPECT_EQ(std::string(name.begin(), name.begin() + length), device);
  EXPECT_EQ(name[length], Untouched);
  EXPECT_EQ(trouble, 0);
  EXPECT_EQ(ask(4, name.size()), 0);
  EXPECT_EQ(length, 0) << "no device is COM 4";
  EXPECT_EQ(ask(257, name.size()), -1);
  EXPECT_EQ(length, 0);
  EXPECT_EQ(trouble, 0);
  EXPECT_EQ(PortInfo(Com3, nullptr, &length, name.data()), -1);
  EXPECT_EQ(PortInfo(Com3, &trouble, nullptr, name.data()), -1);
  EXPECT_EQ(PortInfo(Com3, &trouble, &length, nullptr), -1);
}

TEST_F(BuiltLibrary, WithoutInitEveryCallIsRefused) {
  std::int32_t baud = 7;
  EXPECT_EQ(Send(1, "2013008100"), "code -1");
  EXPECT_EQ(Send(0, "00B0000000"), "code -1");
  EXPECT_EQ(GetBaudrate(1, &baud), -1);
  EXPECT_EQ(baud, 7);
  EXPECT_EQ(Close(1), -1);
}

TEST_F(BuiltLibrary, AfterCloseEveryCallIsRefused) {
  ASSERT_EQ(Init(1, Com3), 0);
  ASSERT_EQ(Close(1), 0);
  std::int32_t baud = 7;
  EXPECT_EQ(Send(1, "2013008100"), "code -1");
  EXPECT_EQ(GetBaudrate(1, &baud), -1);
  EXPECT_EQ(Close(1), -1);
  EXPECT_EQ(Init(1, Com3), 0) << "and it can be opened again";
}

TEST_F(BuiltLibrary, AWrongTerminalNumberIsRefused) {
  ASSERT_EQ(Init(1, Com3), 0);
  for (const std::uint16_t ctn : std::to_array<std::uint16_t>({0, 2, 65535})) {
    std::int32_t baud = 7;
    EXPECT_EQ(Send(1, Bytes(GetStatus.begin(), GetStatus.end()), 4098, ctn), "code -1") << ctn;
    EXPECT_EQ(GetBaudrate(ctn, &baud), -1) << ctn;
    EXPECT_EQ(baud, 7) << ctn;
    EXPECT_EQ(Close(ctn), -1) << ctn;
  }
  EXPECT_EQ(Init(1, Com3), -1) << "the number is in use";
  EXPECT_EQ(Init(2, Com3), -127) << "the port is in use";
  EXPECT_EQ(Send(1, "2013008100"), "8101019000");
}

TEST_F(BuiltLibrary, PortsThatAreNotThereAreRefused) {
  for (const std::uint16_t pn :
       std::to_array<std::uint16_t>({0, 1, 2, 4, 256, 257, 8191, 8448, 65535})) {
    EXPECT_EQ(Init(1, pn), -1) << pn;
    EXPECT_EQ(Close(1), -1) << pn;
  }
}

TEST_F(BuiltLibrary, NullPointersAreRefused) {
  ASSERT_EQ(Init(1, Com3), 0);
  std::uint8_t unit = 1;
  std::uint8_t host = 2;
  std::uint16_t room = 8;
  std::array<std::uint8_t, 8> answer{};
  answer.fill(Untouched);
  const std::uint8_t* const command = GetStatus.data();
  EXPECT_EQ(Data(1, nullptr, &host, 5, command, &room, answer.data()), -1);
  EXPECT_EQ(Data(1, &unit, nullptr, 5, command, &room, answer.data()), -1);
  EXPECT_EQ(Data(1, &unit, &host, 5, nullptr, &room, answer.data()), -1);
  EXPECT_EQ(Data(1, &unit, &host, 5, command, nullptr, answer.data()), -1);
  EXPECT_EQ(Data(1, &unit, &host, 5, command, &room, nullptr), -1);
  EXPECT_EQ(GetBaudrate(1, nullptr), -1);
  EXPECT_EQ(test::ToHex(answer), "EEEEEEEEEEEEEEEE");
  EXPECT_EQ(unit, 1);
  EXPECT_EQ(host, 2);
  EXPECT_EQ(Data(1, &unit, &host, 5, command, &room, answer.data()), 0);
  EXPECT_EQ(test::ToHex(answer), "8101019000EEEEEE");
}

TEST_F(BuiltLibrary, ZeroLengthsAreRefused) {
  ASSERT_EQ(Init(1, Com3), 0);
  dad = 1;
  sad = 2;
  length = 8;
  std::array<std::uint8_t, 8> answer{};
  EXPECT_EQ(Data(1, &dad, &sad, 0, GetStatus.data(), &length, answer.data()), -1);
  EXPECT_EQ(length, 0);
  EXPECT_EQ(Send(1, "2013008100", 0), "code -1");
}

TEST_F(BuiltLibrary, UnknownUnitsAreRefused) {
  ASSERT_EQ(Init(1, Com3), 0);
  for (int unit = 2; unit <= 255; ++unit) {
    EXPECT_EQ(Send(static_cast<std::uint8_t>(unit), "2013008100"), "code -1") << unit;
  }
  std::array<std::uint8_t, 8> answer{};
  for (const std::uint8_t source : std::to_array<std::uint8_t>({0, 1, 3, 255})) {
    dad = 1;
    sad = source;
    length = 8;
    EXPECT_EQ(Data(1, &dad, &sad, 5, GetStatus.data(), &length, answer.data()), -1) << +source;
  }
}

TEST_F(BuiltLibrary, NeverWritesPastTheBuffer) {
  ASSERT_EQ(Init(1, Com3), 0);
  for (const std::uint16_t room : std::to_array<std::uint16_t>({1, 2, 3, 4})) {
    EXPECT_EQ(Send(1, "2013008100", room), "code -11") << room;
    EXPECT_EQ(length, 0);
  }
  EXPECT_EQ(Send(1, "2013008100", 5), "8101019000");
  EXPECT_EQ(Send(1, "201201000101"), "9001");
  EXPECT_EQ(Send(0, "00A4040C06D27600000102"), "9000");
  for (const std::uint16_t room : std::to_array<std::uint16_t>({1, 2, 255, 256, 257})) {
    EXPECT_EQ(Send(0, "00B0810000", room), "code -11") << room;
  }
  EXPECT_EQ(Send(0, "00B0810000", 258).size(), 2U * 258);
}

}  // namespace
}  // namespace ctapi
