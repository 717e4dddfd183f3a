#include <windows.h>

#include <array>
#include <cstdlib>
#include <gtest/gtest.h>

#include "ctnrv32.h"
#include "host/serial_device.h"
#include "host/serial_transport.h"
#include "host/windows/com_terminal.h"
#include "protocol/windows/serial_pair.h"
#include "protocol/windows/wide_text.h"
#include "simulator/hex.h"
#include "simulator/simulated_terminal.h"

// A simulated terminal at the other end of a serial line.
namespace ctapi::host {
namespace {

using ctapi::test::ComTerminal;
using ctapi::test::ToHex;

TEST(SerialDevice, ThatIsNoneIsRefused) {
  EXPECT_EQ(OpenSerialDevice("COM250").Code, code::InvalidParameter);
  EXPECT_EQ(OpenSerialDevice("NUL").Code, code::InvalidParameter);
}

class SerialTerminal : public testing::Test {
 protected:
  void SetUp() override {
    if (!pair_.Exists()) GTEST_SKIP() << "KARTOCHECK_SERIAL_PAIR names no pair of ports";
    EgkContents contents;
    contents.Vsd.EfPd = Bytes(600, 0x3C);
    terminal_.Insert(EgkCard(contents));
    line_ = std::make_unique<ComTerminal>(
        [this](int unit, const Bytes& command) {
          return unit == 1 ? terminal_.TransmitToTerminal(command)
                           : terminal_.TransmitToCard(command);
        },
        pair_.Far);
    ::_putenv_s(ComTableVariable, ("3=" + pair_.Near).c_str());
  }
  ~SerialTerminal() override { ::_putenv_s(ComTableVariable, ""); }

  static OpenedLink OpenCom3() {
    SerialTransport transport;
    return transport.Open(2);
  }

  static std::string Ask(TerminalLink& link, Unit unit, const char* command) {
    Bytes response;
    const int code = link.Exchange(unit, *BytesFromHex(command), response);
    return code == 0 ? ToHex(response) : "code " + std::to_string(code);
  }

  ctapi::test::SerialPair pair_ = ctapi::test::TheSerialPair();
  SimulatedTerminal terminal_{*ProfileOf("gamma")};
  std::unique_ptr<ComTerminal> line_;
};

TEST_F(SerialTerminal, HasItsCardRead) {
  const OpenedLink opened = OpenCom3();
  ASSERT_EQ(opened.Code, code::Success);
  EXPECT_EQ(Ask(*opened.Link, Unit::Terminal, "2013008100"), "8101019000");
  EXPECT_EQ(Ask(*opened.Link, Unit::Terminal, "201201000101"), "9001");
  EXPECT_EQ(Ask(*opened.Link, Unit::Card, "00A4040C06D27600000102"), "9000");
  EXPECT_EQ(Ask(*opened.Link, Unit::Card, "00B0810000"), ToHex(Bytes(256, 0x3C)) + "9000");
}

TEST_F(SerialTerminal, IsNamedByItsPort) {
  SerialTransport transport;
  EXPECT_EQ(transport.InfoOf(2).Name, pair_.Near);
}

TEST_F(SerialTerminal, ThatDoesNotAnswerIsTold) {
  line_->BeSilent();
  EXPECT_EQ(OpenCom3().Code, code::TransmissionError);
}

// As a foreign program would: the built library by its C interface.
TEST_F(SerialTerminal, IsReachedThroughTheBuiltLibrary) {
  const HMODULE library = ::LoadLibraryW(WideText(HOST_LIBRARY).c_str());
  ASSERT_NE(library, nullptr);
  const auto find = [library](const char* name) {
    return reinterpret_cast<void*>(::GetProcAddress(library, name));
  };
  const auto init = reinterpret_cast<CTDENRVT1_init_t>(find("CTDENRVT1_init"));
  const auto data = reinterpret_cast<CTDENRVT1_data_t>(find("CTDENRVT1_data"));
  const auto close = reinterpret_cast<CTDENRVT1_close_t>(find("CTDENRVT1_close"));
  ASSERT_TRUE(init != nullptr && data != nullptr && close != nullptr);
  ASSERT_EQ(init(1, 3), code::Success);
  constexpr std::array<std::uint8_t, 5> Command{0x20, 0x13, 0x00, 0x81, 0x00};
  std::array<std::uint8_t, 100> response{};
  std::uint8_t dad = 1;
  std::uint8_t sad = 2;
  std::uint16_t length = response.size();
  EXPECT_EQ(data(1, &dad, &sad, Command.size(), Command.data(), &length, response.data()), 0);
  EXPECT_EQ(ToHex(Bytes(response.begin(), response.begin() + length)), "8101019000");
  EXPECT_EQ(close(1), code::Success);

  // A thread that a call keeps would run on in code that is gone.
  ::FreeLibrary(library);
  EXPECT_NE(::GetModuleHandleW(WideText(HOST_LIBRARY).c_str()), nullptr);
}

}  // namespace
}  // namespace ctapi::host
