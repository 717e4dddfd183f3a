#include <QLabel>

#include <gtest/gtest.h>
#include <ostream>

#include "diagnosis/port_hints.h"
#include "gui/support/simulated_program.h"
#include "host/fake_pcsc.h"
#include "host/host_library_api.h"
#include "host/pcsc_transport.h"
#include "platform/machine_port_directory.h"
#include "support/fake_port_directory.h"
#include "support/printing.h"
#include "support/sentence_name.h"

// The line below the list of further ports, for each trouble of the reader service.

namespace kartocheck::test {
namespace {

using ctapi::host::HostLibrary;
using ctapi::host::PcscCode;
using ctapi::host::PcscTransport;
using ctapi::host::ServedPorts;
using ctapi::host::test::HostLibraryApi;

struct TroubleRow {
  const char* sentence;
  std::function<std::optional<ctapi::host::PcscApi>(ctapi::host::test::FakePcsc&)> load;
  QString shown;  // empty: the line stays hidden

  friend std::ostream& operator<<(std::ostream& out, const TroubleRow& row) {
    return out << row.sentence;
  }
};

class ReaderHintWindowTest : public testing::TestWithParam<TroubleRow> {};

TEST_P(ReaderHintWindowTest, IsShownAfterTheSweep) {
  ctapi::host::test::FakePcsc pcsc;
  std::vector<ServedPorts> transports;
  transports.push_back({ctapi::UsbPorts, std::make_unique<PcscTransport>(GetParam().load(pcsc))});
  HostLibrary library(std::move(transports));
  HostLibraryApi api(library);
  const MachinePortDirectory machine(std::make_unique<FakePortDirectory>(),
                                     [&api](int pn) { return api.InfoOf(pn); });
  SimulatedProgram program(QStringLiteral("leer"), {}, &machine);
  EXPECT_EQ(pcsc.Contexts, 0) << "the start does not wait for the service";
  program.Click(QStringLiteral("Opti_Comx_4"));
  const auto& hint = program.Find<QLabel>(QStringLiteral("Labl_Hinweis"));
  EXPECT_EQ(hint.isVisible(), !GetParam().shown.isEmpty());
  EXPECT_EQ(hint.text(), GetParam().shown);
}

INSTANTIATE_TEST_SUITE_P(
    Gui, ReaderHintWindowTest,
    testing::Values(
        TroubleRow{"PC/SC is not installed", [](auto&) { return std::nullopt; },
                   PortHint({PortTroubleKind::NotInstalled})},
        TroubleRow{"the service does not run",
                   [](auto& pcsc) {
                     pcsc.Established = PcscCode::NoService;
                     return pcsc.Api();
                   },
                   PortHint({PortTroubleKind::NoService})},
        TroubleRow{"there is no reader or no driver",
                   [](auto& pcsc) {
                     pcsc.Readers.clear();
                     return pcsc.Api();
                   },
                   PortHint({PortTroubleKind::NoReader})},
        TroubleRow{
            "the card is held",
            [](auto& pcsc) {
              pcsc.Readers.begin()->second.IsHeld = true;
              return pcsc.Api();
            },
            QStringLiteral("Ein anderes Programm benutzt die Karte im Kartenleser. Beenden Sie "
                           "es und versuchen Sie es noch einmal.")},
        TroubleRow{"all is well", [](auto& pcsc) { return pcsc.Api(); }, {}}),
    SentenceName());

}  // namespace
}  // namespace kartocheck::test
