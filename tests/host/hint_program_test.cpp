#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <gtest/gtest.h>
#include <memory>
#include <stdexcept>
#include <string>

#include "diagnosis/port_hints.h"
#include "host/pcsc_api.h"
#include "host/pcscd_service.h"
#include "host/transports.h"
#include "support/printing.h"

// The hints of the program on a machine without the PC/SC service, and on one with it.

namespace kartocheck::test {
namespace {

using ctapi::host::CardDisposition;
using ctapi::host::CardSharing;
using ctapi::host::HostLibrary;
using ctapi::host::PcscCard;
using ctapi::host::PcscCode;
using ctapi::host::PcscContext;
using ctapi::test::Eventually;
using ctapi::test::PcscdService;
using ctapi::test::VirtualCard;
using Clock = std::chrono::steady_clock;

constexpr const char* Reader = "Virtual PCD 00 00";

// COM 1 is no device here: a silent one would cost each call seconds.
QByteArray OutputOf(const std::string& arguments, const char* streams = "2>/dev/null") {
  const std::string call = std::string(KARTOCHECK_PROGRAM) +
                           " --serial-port 1=/dev/there-is-none " + arguments + ' ' + streams;
  FILE* const program = ::popen(call.c_str(), "r");
  if (program == nullptr) throw std::runtime_error("cannot run the program");
  QByteArray output;
  for (int c = std::fgetc(program); c != EOF; c = std::fgetc(program)) {
    output += static_cast<char>(c);
  }
  (void)::pclose(program);
  return output;
}

QString HintOn(PortTroubleKind kind) {
  return PortHint({.Kind = kind});
}

QByteArray Row(const QString& hint) {
  return QByteArray("  Hinweis:                        " + hint.toUtf8() + '\n');
}

// Reasons that are the readers', not those of the machine's serial ports.
QJsonArray ReaderHints(const QJsonObject& report) {
  QJsonArray hints;
  for (const QJsonValue& hint : report.value(u"hints").toArray()) {
    if (!hint.toString().startsWith(u"Sie dürfen ")) hints.append(hint);
  }
  return hints;
}

// The network is left, and with it every service of the machine.
class OwnMachine final : public testing::Environment {
 public:
  void SetUp() override { IsOwn = ctapi::test::EnterOwnNetwork(); }
  static inline bool IsOwn = false;
};
const auto* const TheMachine = testing::AddGlobalTestEnvironment(new OwnMachine);

class HintProgramTest : public testing::Test {
 protected:
  void SetUp() override {
    if (OwnMachine::IsOwn) return;
    Skip("no network namespace");
  }

  static void Skip(const std::string& reason) {
    const char* const ci = std::getenv("CI");
    if (ci != nullptr && std::string(ci) == "true") FAIL() << reason;
    GTEST_SKIP() << reason;
  }

  // Milliseconds of each question, for the record.
  void Time(const char* what) {
    HostLibrary library(ctapi::host::MakeTransports());
    for (const char* const turn : {"first", "second"}) {
      const auto begin = Clock::now();
      ctapi::PortInfo info;
      EXPECT_EQ(library.InfoOf(ctapi::EveryReader, info), ctapi::code::Success);
      EXPECT_EQ(library.InfoOf(8192, info), ctapi::code::Success);
      const double taken = std::chrono::duration<double, std::milli>(Clock::now() - begin).count();
      std::printf("%s, %s question: %.2f ms\n", what, turn, taken);
      EXPECT_LT(taken, 200) << "the window waits for it";
    }
  }
};

TEST_F(HintProgramTest, WithoutTheServiceTheProgramSaysSo) {
  const QString hint = HintOn(PortTroubleKind::NoService);
  const QJsonObject report = QJsonDocument::fromJson(OutputOf("--console --json")).object();
  EXPECT_EQ(ReaderHints(report), QJsonArray{hint});
  EXPECT_TRUE(OutputOf("--console").endsWith(Row(hint)));
  EXPECT_TRUE(OutputOf("--console --port 8192").contains(hint.toUtf8()));
  Time("without the service");
}

TEST_F(HintProgramTest, OfTheReadersOfAnotherLibraryItSaysNothing) {
  for (const char* const other : {"--ct-api " SIMULATOR_LIBRARY, "--simulate leer"}) {
    const QByteArray output = OutputOf(std::string("--console --json ") + other);
    const QJsonObject report = QJsonDocument::fromJson(output).object();
    EXPECT_TRUE(report.contains(u"hints")) << other;
    EXPECT_EQ(ReaderHints(report), QJsonArray()) << other;
  }
}

TEST_F(HintProgramTest, TheOwnLibraryByItsNameIsStillTheOwn) {
  const QByteArray output = OutputOf("--console --json --ct-api " HOST_LIBRARY);
  EXPECT_EQ(ReaderHints(QJsonDocument::fromJson(output).object()),
            QJsonArray{HintOn(PortTroubleKind::NoService)});
}

class HintServiceTest : public HintProgramTest {
 protected:
  void SetUp() override {
    HintProgramTest::SetUp();
    if (IsSkipped() || HasFatalFailure()) return;
    std::string reason;
    service_ = PcscdService::Start(reason);
    if (!service_) Skip(reason);
  }

  [[nodiscard]] static QJsonObject Report() {
    return QJsonDocument::fromJson(OutputOf("--console --json")).object();
  }

  std::unique_ptr<PcscdService> service_;
};

TEST_F(HintServiceTest, WithAReaderThereIsNothingToSay) {
  const auto find = [] { return Report()[u"ports"][u"8192"].isObject(); };
  ASSERT_TRUE(Eventually(find));
  const QJsonObject report = Report();
  EXPECT_EQ(ReaderHints(report), QJsonArray());
  EXPECT_EQ(report[u"ports"][u"8192"][u"hint"], QString());
  EXPECT_EQ(report[u"ports"][u"8192"][u"device"], QString::fromLatin1(Reader));
  Time("with the service");
}

TEST_F(HintServiceTest, ACardThatAnotherProgramHoldsIsTold) {
  const VirtualCard card({.Atr = {0x3B, 0x80, 0x80, 0x01, 0x01},
                          .Transmit = [](const auto&) { return VirtualCard::Bytes{0x6D, 0x00}; }});
  ASSERT_TRUE(card.IsIn());
  const auto api = ctapi::host::LoadPcscApi();
  ASSERT_TRUE(api);
  PcscContext context = 0;
  ASSERT_EQ(api->EstablishContext(context), PcscCode::Success);
  const QString hint = HintOn(PortTroubleKind::CardHeld);
  for (const CardSharing mode : {CardSharing::Shared, CardSharing::Exclusive}) {
    PcscCard handle = 0;
    std::uint32_t protocol = 0;
    ASSERT_TRUE(Eventually([&] {
      return api->Connect(context, Reader, mode, ctapi::host::card_protocol::T1, handle,
                          protocol) == PcscCode::Success;
    }));
    const QJsonObject report = Report();
    EXPECT_EQ(report[u"ports"][u"8192"][u"hint"], hint) << static_cast<std::uint32_t>(mode);
    EXPECT_EQ(ReaderHints(report), QJsonArray());
    EXPECT_TRUE(OutputOf("--console --port 8192").contains(Row(hint)));
    const QByteArray messages = OutputOf("--console --verbose --port 8192", "2>&1 >/dev/null");
    const qsizetype prompt = messages.indexOf("KartoCheck: Bitte eine Krankenversichertenkarte");
    EXPECT_TRUE(
        messages.first(std::max<qsizetype>(prompt, 0)).endsWith(QByteArray(hint.toUtf8() + '\n')))
        << messages.toStdString();
    (void)api->Disconnect(handle, CardDisposition::Leave);
  }
  EXPECT_EQ(Report()[u"ports"][u"8192"][u"hint"], QString()) << "it is free again";
  (void)api->ReleaseContext(context);
}

}  // namespace
}  // namespace kartocheck::test
