#include <gtest/gtest.h>
#include <memory>

#include "app/bas_mkt_test.h"
#include "host/fake_pcsc.h"
#include "host/host_library_api.h"
#include "host/pcsc_transport.h"
#include "platform/machine_port_directory.h"
#include "support/fake_dialogs.h"
#include "support/fake_display.h"
#include "support/fake_event_loop.h"
#include "support/fake_port_directory.h"
#include "support/fake_serial_port.h"
#include "support/link_fixture.h"
#include "support/open_module.h"
#include "support/printing.h"

// Program and library must mean the same reader by a port number, whatever is plugged in meanwhile.

namespace kartocheck::test {
namespace {

using ctapi::PortInfo;
using ctapi::host::HostLibrary;
using ctapi::host::OpenedLink;
using ctapi::host::PcscTransport;
using ctapi::host::ServedPorts;
using ctapi::host::TerminalLink;
using ctapi::host::Transport;
using ctapi::host::test::FakePcsc;
using ctapi::host::test::HostLibraryApi;

constexpr Port SerialPortNumber(5);
constexpr Port FirstReader(ctapi::UsbPorts.First);

class SilentLink final : public TerminalLink {
 public:
  std::int8_t Exchange(ctapi::Unit /*unit*/, ctapi::ByteView /*command*/,
                       ctapi::Bytes& /*response*/) override {
    return ctapi::code::TransmissionError;
  }
  std::optional<std::int32_t> Baud() const override { return std::nullopt; }
};

// Something on COM 5 that opens.
class OneSerialPort final : public Transport {
 public:
  OpenedLink Open(std::size_t index) override {
    if (index != SerialPortNumber.Number() - 1) return {};
    return {ctapi::code::Success, std::make_unique<SilentLink>()};
  }
  PortInfo InfoOf(std::size_t /*index*/) override { return {}; }
  ctapi::PortTroubleKind TroubleOfReaders() override { return ctapi::PortTroubleKind::None; }
};

class ReaderNumbersTest : public testing::Test {
 protected:
  std::vector<ServedPorts> Transports() {
    std::vector<ServedPorts> transports;
    transports.push_back({ctapi::ComPorts, std::make_unique<OneSerialPort>()});
    transports.push_back({ctapi::UsbPorts, std::make_unique<PcscTransport>(pcsc.Api())});
    return transports;
  }

  FakePcsc pcsc;
  HostLibrary library{Transports()};
  HostLibraryApi api{library};
  MachinePortDirectory directory{std::make_unique<FakePortDirectory>(),
                                 [this](int pn) { return api.InfoOf(pn); }};
  FakeDialogs dialogs;
  FakeDisplay display;
  FakeEventLoop eventLoop;
  FakeSerialPort serial{FakeSerialPort::FourPorts()};
  OpenModule module{{.api = api,
                     .dialogs = dialogs,
                     .display = display,
                     .eventLoop = eventLoop,
                     .serial = serial,
                     .directory = directory,
                     .terminate = [](const auto&) { throw Terminated{}; }}};
};

TEST_F(ReaderNumbersTest, TheReaderThatIsNamedIsTheOneThatIsRead) {
  pcsc.Readers = {{"Zeta", {}}};
  module.SweepPorts([](int) { return true; });
  ASSERT_EQ(module.FurtherPorts, (std::vector{SerialPortNumber, FirstReader}));
  module.UseFurtherPort(SerialPortNumber);
  EXPECT_EQ(module.IdentificationOf(FurtherPortSlot), QString());

  pcsc.Readers["Alpha"] = {};
  module.UseFurtherPort(FirstReader);
  EXPECT_EQ(module.IdentificationOf(FurtherPortSlot), u"Zeta");
  module.CheckPort(FirstReader);
  EXPECT_EQ(module.Terminals[FurtherPortSlot].ManufacturerId.Trimmed(), u"Zeta");
  (void)module.StatusCheck(FirstReader);
  EXPECT_EQ(pcsc.LastReader, "Zeta");
  EXPECT_EQ(module.IdentificationOf(FurtherPortSlot), u"Zeta");
}

TEST_F(ReaderNumbersTest, AReaderThatIsGoneIsNotNamedAfterTheOneThatCame) {
  pcsc.Readers = {{"Zeta", {}}};
  module.SweepPorts([](int) { return true; });
  pcsc.Readers = {{"Alpha", {}}};
  module.UseFurtherPort(FirstReader);
  EXPECT_EQ(module.IdentificationOf(FurtherPortSlot), QString());
  module.CheckPort(FirstReader);
  EXPECT_FALSE(module.Terminals[FurtherPortSlot].Answered);
}

}  // namespace
}  // namespace kartocheck::test
