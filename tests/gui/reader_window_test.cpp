#include <QListWidget>
#include <QMap>
#include <QRadioButton>
#include <QTableWidget>

#include <array>
#include <cstdlib>
#include <gtest/gtest.h>
#include <memory>
#include <optional>
#include <sys/stat.h>

#include "gui/support/box_answerer.h"
#include "gui/support/quick_event_loop.h"
#include "gui/support/screen.h"
#include "gui/support/window_visitor.h"
#include "host/pcscd_service.h"
#include "host/service_view.h"
#include "host/virtual_egk.h"
#include "simulator/scenario.h"
#include "support/fake_port_directory.h"
#include "support/fake_serial_port.h"
#include "support/loaded_library.h"
#include "support/printing.h"
#include "ui/form_mkt_test.h"
#include "ui/main_window/test_flow.h"

// The window over the built library and the system's PC/SC service, with an eGK in its virtual
// reader. Skipped by name where the service cannot start; an error there where CI=true.

namespace kartocheck::test {
namespace {

using ctapi::test::Eventually;
using ctapi::test::PcscdService;
using ctapi::test::ServiceSeesACard;
using ctapi::test::VirtualCard;

constexpr int FirstReader = 8192;

// /run is a new one then, in which Qt looks for the user's folder.
bool LeaveTheNetwork() {
  constexpr const char* UserFolder = "/run/user";
  return ctapi::test::EnterOwnNetwork() && ::mkdir(UserFolder, S_IRWXU) == 0 &&
         qputenv("XDG_RUNTIME_DIR", UserFolder);
}

// Before main, since a process can leave the network only while it has no second thread.
const bool IsNetworkOwn = LeaveTheNetwork();

class ReaderWindowTest : public testing::Test {
 protected:
  void SetUp() override {
    std::string reason = "no network namespace";
    if (IsNetworkOwn) service_ = PcscdService::Start(reason);
    if (!service_) {
      if (qEnvironmentVariable("CI") == u"true") FAIL() << reason;
      GTEST_SKIP() << reason;
    }
    qputenv("KARTOCHECK_COM_PORTS", "");
    card_ = std::make_unique<VirtualCard>(ctapi::test::CardOf(Terminal()));
    ASSERT_TRUE(Eventually([this] { return IsCardAnnounced(); }));
    screen_.emplace(window_);
    window_.Attach(flow_, view_, module_);
    window_.show();
    Activate(window_);
  }
  void TearDown() override { card_.reset(); }

  // Its card lets the protected data be read.
  ctapi::SimulatedTerminal& Terminal() { return *practice_.TerminalAt(1); }

  bool IsCardAnnounced() {
    if (library_.Init(1, FirstReader) != 0) return false;
    const std::array<std::uint8_t, 5> cardStatus{0x20, 0x13, 0x00, 0x80, 0x00};
    std::array<std::uint8_t, 5> answer{};
    std::uint8_t dad = 1;
    std::uint8_t sad = 2;
    std::uint16_t length = answer.size();
    const bool isAnswered = library_.Data(1, dad, sad, cardStatus, answer, length) == 0;
    EXPECT_EQ(library_.Close(1), 0);
    return isAnswered && answer[2] == 1;
  }

  void PutTheCardIn() { card_ = std::make_unique<VirtualCard>(ctapi::test::CardOf(Terminal())); }

  // What the card says without any reader in between.
  QString StatusOnTheCard() {
    (void)Terminal().TransmitToCard(*ctapi::BytesFromHex("00A4040C06D27600000102"));
    const ctapi::Bytes answer = Terminal().TransmitToCard(*ctapi::BytesFromHex("00B08C0019"));
    const QByteArrayView bytes(answer.data(), static_cast<qsizetype>(answer.size()) - 2);
    return QString::fromLatin1(bytes.toByteArray().toHex().toUpper());
  }

  ctapi::SimulatedPractice practice_ = ctapi::LoadScenario(KARTOCHECK_SCENARIOS "/praxis.json");
  std::unique_ptr<PcscdService> service_;
  std::unique_ptr<VirtualCard> card_;
  CtApiLibrary library_ = LoadedLibrary({QStringLiteral(HOST_LIBRARY)});
  FakeSerialPort serial_;
  FakePortDirectory directory_;
  QuickEventLoop eventLoop_;
  Form_MKT_Test window_{{}};
  Bas_MKT_Test module_{{.api = library_,
                        .dialogs = window_.Boxes(),
                        .display = window_,
                        .eventLoop = eventLoop_,
                        .serial = serial_,
                        .directory = directory_,
                        .terminate = [](const auto&) { std::abort(); }}};
  ViewState view_;
  TestFlow flow_{module_, window_.Boxes(), window_, view_, window_};
  std::optional<Screen> screen_;
};

QMap<QString, QString> Elements(Screen& screen, int kind) {
  screen.Click(QStringLiteral("CmdB_VsdKind_%1").arg(kind));
  const auto& grid = screen.Find<QTableWidget>(QStringLiteral("MSFlexGrid1"));
  QMap<QString, QString> elements;
  for (int row = 0; row < grid.rowCount(); ++row) {
    elements[grid.item(row, 0)->text()] = grid.item(row, 1)->text();
  }
  return elements;
}

TEST_F(ReaderWindowTest, AScanFindsTheReaderAndReadsTheCard) {
  const BoxAnswerer user({});
  QString result;
  {
    const WindowVisitor visitor(QStringLiteral("Form_DatenInfo"), [&](QWidget& window) {
      result = Screen(window).Text(QStringLiteral("Labe_DatenInfo1_4"));
    });
    screen_->Click(QStringLiteral("CmdB_MKt_Test_0"));
  }
  // The virtual reader has two slots, which the service shows as two readers.
  EXPECT_EQ(result, u"2 Chipkartenleser gefunden.\nSiehe Schnittstellen weitere ...");
  const auto& list = screen_->Find<QListWidget>(QStringLiteral("List1"));
  ASSERT_EQ(list.count(), 2);
  EXPECT_EQ(list.item(0)->text(), u"USB Device 1 (CTAPI pn=8192)");
  EXPECT_EQ(screen_->Text(QStringLiteral("Labl_Status_4_3")), u"Virtu");
  EXPECT_EQ(screen_->Text(QStringLiteral("Labl_Wert_7")), u"Erika");
  EXPECT_EQ(screen_->Text(QStringLiteral("Labl_Wert_9")), u"Beispiel");
  EXPECT_EQ(screen_->Text(QStringLiteral("Labl_Wert_0")), u"GKV Beispiel Nordwest");

  screen_->Click(QStringLiteral("cmdeGK"));
  QWidget& egkWindow = SideWindow(QStringLiteral("Form_egK_Info"));
  Screen egk(egkWindow);
  EXPECT_EQ(Elements(egk, 0).value(QStringLiteral("Versicherten_ID")), u"A000000017");
  EXPECT_EQ(Elements(egk, 1).value(QStringLiteral("WOP")), u"71");
  EXPECT_EQ(Elements(egk, 2).value(QStringLiteral("BesonderePersonengruppe")), u"04");
  egk.Click(QStringLiteral("Command4"));
  EXPECT_EQ(egk.Text(QStringLiteral("Label3")), u"ICC Serial Number:       0x80276001230000000017");
  const QString status = StatusOnTheCard();
  EXPECT_EQ(status.size(), 50);
  EXPECT_EQ(egk.Text(QStringLiteral("Label10")), u"Containerinhalt: 0x" + status);
  egkWindow.close();
}

// A user with one reader who puts the card in when "Lesen" asks for it.
TEST_F(ReaderWindowTest, FromPluggingInToTheData) {
  card_.reset();
  ASSERT_TRUE(Eventually([] { return !ServiceSeesACard(); }));
  const auto expectReaderNamed = [](const QMessageBox& box) {
    EXPECT_TRUE(box.text().endsWith(u"USB Device 1")) << box.text().toStdString();
  };
  BoxAnswerer user({[&](QMessageBox& box) {
                      expectReaderNamed(box);
                      PressButton(QMessageBox::Cancel)(box);
                    },
                    [&](QMessageBox& box) {
                      expectReaderNamed(box);
                      PutTheCardIn();
                      EXPECT_TRUE(Eventually([] { return ServiceSeesACard(); }));
                      PressButton(QMessageBox::Ok)(box);
                    }});
  {
    const WindowVisitor visitor(QStringLiteral("Form_DatenInfo"), [](QWidget&) {});
    screen_->Click(QStringLiteral("CmdB_MKt_Test_0"));
  }
  EXPECT_TRUE(screen_->Find<QRadioButton>(QStringLiteral("Opti_Comx_4")).isChecked());
  EXPECT_EQ(screen_->Text(QStringLiteral("Labl_StatusText")), u"Das USB device 1 wurde ausgewählt");

  screen_->Click(QStringLiteral("CmdB_MKt_Test_3"));
  EXPECT_EQ(user.seen.size(), 2U);
  EXPECT_EQ(screen_->Text(QStringLiteral("Labl_Wert_9")), u"Beispiel");
}

}  // namespace
}  // namespace kartocheck::test
