#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QProcessEnvironment>
#include <QTemporaryDir>
#include <QThread>

#include <csignal>
#include <gtest/gtest.h>
#include <sys/types.h>

#include "support/printing.h"

// One name for two programs: the built program as the way to its window.

namespace kartocheck::test {
namespace {

constexpr int PatienceMs = 30'000;
constexpr int MomentMs = 20;

class WindowProgramTest : public testing::Test {
 protected:
  WindowProgramTest() {
    for (const char* name : {"DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM", "XDG_SESSION_TYPE"}) {
      environment.remove(QString::fromLatin1(name));
    }
    Set("XDG_CONFIG_HOME", folder.path());
    Set("XDG_RUNTIME_DIR", folder.path());
    Set("LC_ALL", QStringLiteral("C.UTF-8"));
  }

  void Set(const char* name, const QString& value) {
    environment.insert(QString::fromLatin1(name), value);
  }
  void Start(const QStringList& arguments) {
    process.setProcessEnvironment(environment);
    process.start(QStringLiteral(KARTOCHECK_PROGRAM), arguments);
    ASSERT_TRUE(process.waitForStarted(PatienceMs));
  }
  // Called for its window, the program ends with the way that needs none, and not by a crash.
  void ExpectNoWindow() {
    Start({QStringLiteral("--simulate")});
    ASSERT_TRUE(process.waitForFinished(PatienceMs));
    EXPECT_EQ(process.exitStatus(), QProcess::NormalExit);
    EXPECT_EQ(process.exitCode(), 3);
    const QByteArray told = process.readAllStandardError();
    EXPECT_TRUE(told.startsWith(NoWindow)) << told.toStdString();
    EXPECT_FALSE(told.contains("Reinstalling")) << told.toStdString();
    EXPECT_EQ(process.readAllStandardOutput(), QByteArray());
  }
  // Whether SIGTERM has a handler.
  [[nodiscard]] bool ListensToRequests() const {
    QFile status(QStringLiteral("/proc/%1/status").arg(process.processId()));
    if (!status.open(QIODevice::ReadOnly)) return false;
    const QByteArray text = status.readAll();
    const qsizetype at = text.indexOf("SigCgt:");
    const QByteArray caught = text.mid(at + 7, text.indexOf('\n', at) - at - 7).trimmed();
    return at >= 0 && (caught.toULongLong(nullptr, 16) >> (SIGTERM - 1) & 1U) != 0;
  }
  [[nodiscard]] QString RunningFile() const {
    return QFileInfo(QStringLiteral("/proc/%1/exe").arg(process.processId())).symLinkTarget();
  }

#if defined(KARTOCHECK_WITH_WINDOW)
  static constexpr const char* NoWindow =
      "KartoCheck: Hier lässt sich kein Fenster öffnen. Ohne Fenster: kartocheck --console\n";
#else
  static constexpr const char* NoWindow =
      "Diese Fassung hat kein Fenster; bitte mit --console aufrufen.\n";
#endif

  QTemporaryDir folder;
  QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
  QProcess process;
};

TEST_F(WindowProgramTest, WithoutADisplayTheWayWithoutAWindowIsNamed) {
  ExpectNoWindow();
}

TEST_F(WindowProgramTest, ADisplayThatDoesNotAnswerIsNone) {
  Set("DISPLAY", QStringLiteral(":987"));
  ExpectNoWindow();
}

TEST_F(WindowProgramTest, ACompositorThatIsNotThereIsNone) {
  Set("WAYLAND_DISPLAY", QStringLiteral("wayland-nowhere"));
  Set("XDG_SESSION_TYPE", QStringLiteral("wayland"));
  ExpectNoWindow();
}

TEST_F(WindowProgramTest, APlatformThatIsNotThereIsNone) {
  Set("QT_QPA_PLATFORM", QStringLiteral("nirgends"));
  ExpectNoWindow();
}

#if defined(KARTOCHECK_WITH_WINDOW)
// Desktops, service managers and scripts wait for the process that they started.
TEST_F(WindowProgramTest, TheWindowIsTheProcessThatWasCalled) {
  Set("QT_QPA_PLATFORM", QStringLiteral("offscreen"));
  Start({QStringLiteral("--simulate"), QStringLiteral("leer")});
  const QString window =
      QFileInfo(QStringLiteral(KARTOCHECK_PROGRAM)).path() + u"/kartocheck-window";
  for (int waited = 0; waited < PatienceMs && RunningFile() != window; waited += MomentMs) {
    QThread::msleep(MomentMs);
  }
  EXPECT_EQ(RunningFile(), window);
  // Asked once it listens, and only once, it ends in order.
  for (int waited = 0; waited < PatienceMs && !ListensToRequests(); waited += MomentMs) {
    QThread::msleep(MomentMs);
  }
  ::kill(static_cast<pid_t>(process.processId()), SIGTERM);
  (void)process.waitForFinished(PatienceMs);
  EXPECT_EQ(process.exitStatus(), QProcess::NormalExit);
  EXPECT_EQ(process.exitCode(), 0);
}
#endif

// What a run loads: the loader tells of each file, of plugins too.
TEST_F(WindowProgramTest, TheConsoleLoadsNoLibraryOfWindows) {
  Set("LD_DEBUG", QStringLiteral("files"));
  Set("QT_QPA_PLATFORM", QStringLiteral("offscreen"));
  Start({QStringLiteral("--console"), QStringLiteral("--simulate"), QStringLiteral("kvk-60"),
         QStringLiteral("--port"), QStringLiteral("1")});
  ASSERT_TRUE(process.waitForFinished(PatienceMs));
  EXPECT_EQ(process.exitCode(), 0);
  const QByteArray loaded = process.readAllStandardError();
  EXPECT_TRUE(loaded.contains("libQt6Core.so")) << "the loader tells";
  for (const char* name : {"libQt6Gui", "libQt6Widgets", "libQt6DBus", "/plugins/", "libX11",
                           "libxcb", "libwayland", "libGL", "libEGL", "libfontconfig"}) {
    EXPECT_FALSE(loaded.contains(name)) << name;
  }
}

}  // namespace
}  // namespace kartocheck::test
