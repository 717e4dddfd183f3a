#include "platform/qt/qt_serial_port.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>

#include <array>
#include <ctime>
#include <fcntl.h>
#include <grp.h>
#include <gtest/gtest.h>
#include <memory>
#include <optional>
#include <ostream>
#include <sys/file.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <termios.h>
#include <unistd.h>
#include <vector>

#include "discovery/serial_test.h"
#include "platform/qt/qt_event_loop.h"
#include "platform/serial_devices.h"
#include "platform/serial_port_directory.h"
#include "support/printing.h"
#include "support/sentence_name.h"
#include "support/serial_line_terminal.h"

// The serial-port adapter on pseudo-terminals.

namespace kartocheck::test {
namespace {

using Rates = std::vector<int>;

const QByteArray Resynchronised = QByteArray::fromHex("21E000C1");

// Error number with which opening COM n fails; 0 where it opens.
int OpenError(const ctapi::ComTable& table, int comNumber) {
  QtSerialPort port(table);
  try {
    port.Open(comNumber);
  } catch (const SerialPortError& error) {
    return error.Number;
  }
  port.Close();
  return 0;
}

class QtSerialPortTest : public testing::Test {
 protected:
  static void SetUpTestSuite() {
    static int argc = 1;
    static char name[] = "platform_serial_test";
    static char* argv[] = {name, nullptr};
    application_ = std::make_unique<QCoreApplication>(argc, argv);
  }
  static void TearDownTestSuite() { application_.reset(); }

 private:
  static inline std::unique_ptr<QCoreApplication> application_;
};

struct ProbedLine {
  const char* sentence;
  SerialLineTerminal::Behaviour terminal;
  QStringView availText;
  bool found;
  Rates tried;

  friend std::ostream& operator<<(std::ostream& out, const ProbedLine& row) {
    return out << row.sentence;
  }
};

class ProbedLineTest : public QtSerialPortTest, public testing::WithParamInterface<ProbedLine> {};

TEST_P(ProbedLineTest, TheProbeFindsTheRate) {
  const ProbedLine& row = GetParam();
  const SerialLineTerminal terminal(row.terminal);
  QtSerialPort port({{2, terminal.Device().toStdString()}});
  QtEventLoop eventLoop;
  PortEntry entry;
  QElapsedTimer clock;
  clock.start();
  ProbeSerialSettings(Port(2), port, eventLoop, entry);
  EXPECT_EQ(entry.AvailText, FixedText<15>(row.availText));
  EXPECT_EQ(entry.SettingsFound, row.found);
  EXPECT_EQ(terminal.RequestedRates(), row.tried);
  EXPECT_GE(clock.elapsed(), 210 * static_cast<int>(row.tried.size()));
}

INSTANTIATE_TEST_SUITE_P(
    SerialLine, ProbedLineTest,
    testing::Values(
        ProbedLine{"9600 baud", {9600, Resynchronised}, u"9600 Baud ", true, {9600}},
        ProbedLine{"19200 baud", {19200, Resynchronised}, u"19200, Baud ", true, {9600, 19200}},
        ProbedLine{
            "38400 baud", {38400, Resynchronised}, u"38400 Baud ", true, {9600, 19200, 38400}},
        ProbedLine{"57600 baud",
                   {57600, Resynchronised},
                   u"57600 Baud ",
                   true,
                   {9600, 19200, 38400, 57600}},
        ProbedLine{"115200 baud",
                   {115200, Resynchronised},
                   u"11520 Baud ",
                   true,
                   {9600, 19200, 38400, 57600, 115200}},
        ProbedLine{"a rate that is not tried",
                   {230400, Resynchronised},
                   u"Unbekannt! ",
                   false,
                   {9600, 19200, 38400, 57600, 115200}},
        ProbedLine{"four right bytes and a fifth",
                   {9600, Resynchronised + QByteArray(1, '\x21')},
                   u"Unbekannt! ",
                   false,
                   {9600, 19200, 38400, 57600, 115200}},
        ProbedLine{"three bytes",
                   {9600, Resynchronised.first(3)},
                   u"Unbekannt! ",
                   false,
                   {9600, 19200, 38400, 57600, 115200}},
        ProbedLine{"four wrong bytes",
                   {19200, QByteArray::fromHex("21E000C0")},
                   u"Unbekannt! ",
                   false,
                   {9600, 19200, 38400, 57600, 115200}},
        ProbedLine{"silence", {}, u"Unbekannt! ", false, {9600, 19200, 38400, 57600, 115200}}),
    SentenceName());

// No byte of a terminal may be taken for a control character of the line.
TEST_F(QtSerialPortTest, EveryByteComesThroughAsItIs) {
  QByteArray bytes;
  for (int byte = 0; byte < 256; ++byte) bytes.append(static_cast<char>(byte));
  const SerialLineTerminal terminal({.baud = 9600, .answer = bytes});
  QtSerialPort port({{1, terminal.Device().toStdString()}});
  QtEventLoop eventLoop;
  port.Open(1);
  port.SetSettings(u"9600,E,8,1");
  port.EmptyReceiveBuffer();
  port.Send(QByteArray::fromHex("12C000D2"));
  eventLoop.Wait(std::chrono::milliseconds(200));
  EXPECT_EQ(port.Received(), bytes);
  port.Close();
}

TEST_F(QtSerialPortTest, EmptyingTheBufferForgetsWhatCameBefore) {
  const SerialLineTerminal terminal({.baud = 9600, .answer = Resynchronised});
  QtSerialPort port({{1, terminal.Device().toStdString()}});
  QtEventLoop eventLoop;
  port.Open(1);
  port.SetSettings(u"9600,E,8,1");
  port.Send(QByteArray::fromHex("12C000D2"));
  eventLoop.Wait(std::chrono::milliseconds(100));
  port.EmptyReceiveBuffer();
  eventLoop.Wait(std::chrono::milliseconds(20));
  EXPECT_EQ(port.Received(), QByteArray());
  port.Close();
}

// A pseudo-terminal has no modem lines; many USB cables have none either.
TEST_F(QtSerialPortTest, ADeviceWithoutModemLinesGivesNoLineSignal) {
  const SerialLineTerminal terminal({});
  QtSerialPort port({{3, terminal.Device().toStdString()}});
  QtEventLoop eventLoop;
  bool lineState = true;
  QElapsedTimer clock;
  clock.start();
  EXPECT_EQ(TestSerialPort(Port(3), port, eventLoop, lineState), SerialTest::Opened);
  EXPECT_FALSE(lineState);
  EXPECT_GE(clock.elapsed(), 500);
}

TEST_F(QtSerialPortTest, APortCanBeOpenedAgain) {
  const SerialLineTerminal terminal({.baud = 9600, .answer = Resynchronised});
  QtSerialPort port({{1, terminal.Device().toStdString()}});
  QtEventLoop eventLoop;
  for (int time = 0; time < 3; ++time) {
    PortEntry entry;
    ProbeSerialSettings(Port(1), port, eventLoop, entry);
    EXPECT_TRUE(entry.SettingsFound) << time;
  }
  EXPECT_EQ(OpenError({{1, terminal.Device().toStdString()}}, 1), 0) << "and by another program";
}

// The device disappears while a rate is tried.
TEST_F(QtSerialPortTest, ADeviceUnpluggedInTheMiddleEndsTheProbe) {
  for (const int baud : {9600, 38400, 115200}) {
    const SerialLineTerminal terminal({.unpluggedAt = baud});
    QtSerialPort port({{1, terminal.Device().toStdString()}});
    QtEventLoop eventLoop;
    PortEntry entry;
    ProbeSerialSettings(Port(1), port, eventLoop, entry);
    EXPECT_EQ(entry.AvailText, FixedText<15>(u"Unbekannt! "));
    EXPECT_FALSE(entry.SettingsFound);
    EXPECT_EQ(terminal.RequestedRates().back(), baud) << "nothing is sent behind it";
  }
}

// ... and while the port test waits.
TEST_F(QtSerialPortTest, ADeviceUnpluggedInTheMiddleEndsThePortTest) {
  auto terminal = std::make_unique<SerialLineTerminal>(SerialLineTerminal::Behaviour{});
  QtSerialPort port({{1, terminal->Device().toStdString()}});
  struct Unplugging final : EventLoop {
    explicit Unplugging(std::unique_ptr<SerialLineTerminal>& device) : device_(device) {}
    void Yield() override { loop_.Yield(); }
    void Wait(std::chrono::milliseconds duration) override {
      device_.reset();
      loop_.Wait(duration);
    }
    std::unique_ptr<SerialLineTerminal>& device_;
    QtEventLoop loop_;
  } eventLoop(terminal);
  bool lineState = false;
  const std::clock_t before = std::clock();
  EXPECT_EQ(TestSerialPort(Port(1), port, eventLoop, lineState), SerialTest::Failed);
  EXPECT_FALSE(lineState);
  EXPECT_LT(std::clock() - before, CLOCKS_PER_SEC / 4) << "the wait of 500 ms is no busy one";
}

// Every call on a port that is gone fails, none does harm.
TEST_F(QtSerialPortTest, EveryCallOnALostPortIsAnError) {
  const auto call = [](const auto& use) {
    auto terminal = std::make_unique<SerialLineTerminal>(SerialLineTerminal::Behaviour{});
    QtSerialPort port({{1, terminal->Device().toStdString()}});
    QtEventLoop eventLoop;
    port.Open(1);
    terminal.reset();
    eventLoop.Wait(std::chrono::milliseconds(20));
    int error = 0;
    try {
      use(port);
    } catch (const SerialPortError& failure) {
      error = failure.Number;
    }
    port.Close();
    port.Close();
    return error;
  };
  EXPECT_EQ(call([](QtSerialPort& port) { port.SetSettings(u"19200,E,8,1"); }),
            SerialPortError::Other);
  EXPECT_EQ(call([](QtSerialPort& port) { port.SetDtr(true); }), SerialPortError::Other);
  EXPECT_EQ(call([](QtSerialPort& port) { port.SetRts(true); }), SerialPortError::Other);
  EXPECT_EQ(call([](QtSerialPort& port) { (void)port.ReadDsr(); }), SerialPortError::Other);
  EXPECT_EQ(call([](QtSerialPort& port) { port.EmptyReceiveBuffer(); }), SerialPortError::Other);
  EXPECT_EQ(call([](QtSerialPort& port) { port.Send("x"); }), SerialPortError::Other);
  EXPECT_EQ(call([](QtSerialPort& port) { (void)port.Received(); }), SerialPortError::Other);
}

TEST_F(QtSerialPortTest, CallsWithoutAnOpenPortAreErrors) {
  QtSerialPort port({});
  EXPECT_THROW(port.SetSettings(u"9600,E,8,1"), SerialPortError);
  EXPECT_THROW(port.SetDtr(true), SerialPortError);
  EXPECT_THROW((void)port.ReadDsr(), SerialPortError);
  EXPECT_THROW(port.Send("x"), SerialPortError);
  EXPECT_THROW((void)port.Received(), SerialPortError);
  port.Close();
}

// Another program on the same device.
class OtherProgram {
 public:
  explicit OtherProgram(const QString& device)
      : descriptor_(::open(qPrintable(device), O_RDWR | O_NOCTTY | O_CLOEXEC)) {
    EXPECT_GE(descriptor_, 0);
  }
  ~OtherProgram() { ::close(descriptor_); }
  OtherProgram(const OtherProgram&) = delete;
  OtherProgram& operator=(const OtherProgram&) = delete;

  void Lock() { EXPECT_EQ(::flock(descriptor_, LOCK_EX | LOCK_NB), 0); }
  void UseExclusively() { EXPECT_EQ(::ioctl(descriptor_, TIOCEXCL), 0); }

 private:
  int descriptor_;
};

TEST_F(QtSerialPortTest, ADeviceThatAnotherProgramLocksIsInUse) {
  const SerialLineTerminal terminal({});
  OtherProgram other(terminal.Device());
  const ctapi::ComTable table{{1, terminal.Device().toStdString()}};
  EXPECT_EQ(OpenError(table, 1), 0) << "open alone takes nothing";
  other.Lock();
  EXPECT_EQ(OpenError(table, 1), SerialPortError::AlreadyOpen);
}

TEST_F(QtSerialPortTest, ADeviceThatAnotherProgramUsesExclusivelyIsInUse) {
  const SerialLineTerminal terminal({});
  OtherProgram other(terminal.Device());
  other.UseExclusively();
  EXPECT_EQ(OpenError({{1, terminal.Device().toStdString()}}, 1), SerialPortError::AlreadyOpen);
}

// The lock file of older serial programs: the process number, and perhaps more lines.
TEST_F(QtSerialPortTest, ADeviceWithALockFileIsInUseWhileItsProcessLives) {
  const SerialLineTerminal terminal({});
  const ctapi::ComTable table{{1, terminal.Device().toStdString()}};
  QFile lock(u"/var/lock/LCK.." + QFileInfo(terminal.Device()).fileName());
  if (!lock.open(QIODevice::WriteOnly | QIODevice::Truncate)) {
    GTEST_SKIP() << "no lock files can be made here";
  }
  const auto write = [&](const QByteArray& content) {
    lock.resize(0);
    lock.seek(0);
    lock.write(content);
    lock.flush();
  };
  const QByteArray own = QByteArray::number(::getpid());
  const std::pair<QByteArray, int> rows[] = {
      {own.rightJustified(10) + '\n', SerialPortError::AlreadyOpen},
      {own + "\nminicom\nhost\n", SerialPortError::AlreadyOpen},
      {own, SerialPortError::AlreadyOpen},
      {"4194305\n", 0},  // beyond the largest process number
      {"0\n", 0},
      {"-1\n", 0},
      {"no number\n", 0},
      {"", 0},
  };
  for (const auto& [content, expected] : rows) {
    write(content);
    EXPECT_EQ(OpenError(table, 1), expected) << content.toStdString();
  }
  lock.remove();
}

TEST_F(QtSerialPortTest, APortThatIsOpenHereIsInUseElsewhere) {
  const SerialLineTerminal terminal({});
  const ctapi::ComTable table{{1, terminal.Device().toStdString()}};
  QtSerialPort port(table);
  port.Open(1);
  EXPECT_EQ(OpenError(table, 1), SerialPortError::AlreadyOpen);
  port.Close();
  EXPECT_EQ(OpenError(table, 1), 0);
}

TEST_F(QtSerialPortTest, WhatIsNoDeviceIsAnInvalidNumber) {
  EXPECT_EQ(OpenError({}, 1), SerialPortError::InvalidNumber) << "no device is COM 1";
  EXPECT_EQ(OpenError({{1, "/dev/there-is-none"}}, 1), SerialPortError::InvalidNumber);
}

// The control knows COM 1 to 4; whatever the table says of the others.
TEST_F(QtSerialPortTest, EveryNumberButOneToFourIsInvalid) {
  const SerialLineTerminal terminal({});
  ctapi::ComTable table;
  for (const int number : {-1, 0, 1, 4, 5, 6, 256, 8192})
    table.emplace(number, terminal.Device().toStdString());
  for (const int number : {1, 4}) EXPECT_EQ(OpenError(table, number), 0) << number;
  for (const int number : {-1, 0, 5, 6, 256, 8192}) {
    EXPECT_EQ(OpenError(table, number), SerialPortError::InvalidNumber) << number;
  }
}

TEST_F(QtSerialPortTest, WhatIsNoSerialDeviceFails) {
  const QTemporaryDir folder;
  const QString path = folder.filePath(QStringLiteral("no-port"));
  QFile file(path);
  ASSERT_TRUE(file.open(QIODevice::WriteOnly));
  EXPECT_EQ(OpenError({{1, path.toStdString()}}, 1), SerialPortError::Other);
  EXPECT_EQ(OpenError({{1, folder.path().toStdString()}}, 1), SerialPortError::Other);
  const QString pipe = folder.filePath(QStringLiteral("pipe"));
  ASSERT_EQ(::mkfifo(qPrintable(pipe), 0600), 0);
  EXPECT_EQ(OpenError({{1, pipe.toStdString()}}, 1), SerialPortError::Other);
}

// As a user who may do nothing. Whoever is not root stays who they are.
class Nobody {
 public:
  Nobody() {
    if (user_ != 0) return;
    groups_.resize(static_cast<std::size_t>(::getgroups(0, nullptr)));
    EXPECT_GE(::getgroups(static_cast<int>(groups_.size()), groups_.data()), 0);
    EXPECT_EQ(::setgroups(0, nullptr), 0);
    EXPECT_EQ(::setegid(65'534), 0);
    EXPECT_EQ(::seteuid(65'534), 0);
  }
  ~Nobody() {
    if (user_ != 0) return;
    EXPECT_EQ(::seteuid(user_), 0);
    EXPECT_EQ(::setegid(group_), 0);
    EXPECT_EQ(::setgroups(groups_.size(), groups_.data()), 0);
  }
  Nobody(const Nobody&) = delete;
  Nobody& operator=(const Nobody&) = delete;

 private:
  const uid_t user_ = ::geteuid();
  const gid_t group_ = ::getegid();
  std::vector<gid_t> groups_;
};

// Whoever owns a device, or is not of its group, may not open one with these permissions.
constexpr mode_t ForTheGroupOnly = 0060;

TEST_F(QtSerialPortTest, ADeviceThatTheUserMayNotOpenNamesTheGroupThatMay) {
  const SerialLineTerminal terminal({});
  ASSERT_EQ(::chmod(qPrintable(terminal.Device()), ForTheGroupOnly), 0);
  const ctapi::ComTable table{{1, terminal.Device().toStdString()}};
  const SerialPortDirectory directory({}, table);
  const QString group = GroupOfDevice(terminal.Device().toStdString());
  EXPECT_FALSE(group.isEmpty());
  const PortTrouble trouble{
      .Kind = PortTroubleKind::NotPermitted, .Devices = {terminal.Device()}, .Group = group};
  const Nobody nobody;
  EXPECT_EQ(OpenError(table, 1), SerialPortError::NotAllowed);
  EXPECT_EQ(directory.TroubleOf(Port(1)), trouble);
  EXPECT_EQ(directory.TroublesWithoutReader(), std::vector{trouble});
  // In the port test it counts as any other failure.
  QtSerialPort port(table);
  QtEventLoop eventLoop;
  bool lineState = false;
  EXPECT_EQ(TestSerialPort(Port(1), port, eventLoop, lineState), SerialTest::Failed);
}

// To join a group that may not open the device itself would be of no use.
TEST_F(QtSerialPortTest, WithoutAGroupThatMayTheAdministratorIsAsked) {
  const SerialLineTerminal terminal({});
  const SerialPortDirectory directory({}, {{1, terminal.Device().toStdString()}});
  for (const mode_t mode : std::initializer_list<mode_t>{0000, 0040, 0020}) {
    ASSERT_EQ(::chmod(qPrintable(terminal.Device()), mode), 0);
    EXPECT_EQ(GroupOfDevice(terminal.Device().toStdString()), QString()) << mode;
  }
  const Nobody nobody;
  EXPECT_EQ(directory.TroubleOf(Port(1)),
            (PortTrouble{.Kind = PortTroubleKind::NotPermitted, .Devices = {terminal.Device()}}));
}

TEST_F(QtSerialPortTest, DevicesOfAGroupAreToldTogether) {
  const std::array<SerialLineTerminal, 4> terminals{SerialLineTerminal({}), SerialLineTerminal({}),
                                                    SerialLineTerminal({}), SerialLineTerminal({})};
  ctapi::ComTable table;
  for (int i = 0; i < 4; ++i) {
    const QString device = terminals.at(static_cast<std::size_t>(i)).Device();
    table.emplace(i + 1, device.toStdString());
    const mode_t modes[] = {ForTheGroupOnly, 0666, ForTheGroupOnly, 0};
    ASSERT_EQ(::chmod(qPrintable(device), modes[i]), 0);
  }
  const SerialPortDirectory directory({}, table);
  const Nobody nobody;
  const std::vector<PortTrouble> troubles = directory.TroublesWithoutReader();
  ASSERT_EQ(troubles.size(), 2U);
  EXPECT_EQ(troubles[0].Devices, QStringList{terminals[3].Device()});
  EXPECT_EQ(troubles[0].Group, QString());
  EXPECT_EQ(troubles[1].Devices, (QStringList{terminals[0].Device(), terminals[2].Device()}));
  EXPECT_NE(troubles[1].Group, QString());
}

TEST_F(QtSerialPortTest, WhatCanBeOpenedIsNoTrouble) {
  const SerialLineTerminal terminal({});
  const SerialPortDirectory directory(
      {}, {{1, terminal.Device().toStdString()}, {2, "/dev/there-is-none"}});
  EXPECT_EQ(directory.TroubleOf(Port(1)), PortTrouble());
  EXPECT_EQ(directory.TroubleOf(Port(2)), PortTrouble());
  EXPECT_EQ(directory.TroubleOf(Port(3)), PortTrouble());
  EXPECT_EQ(directory.TroubleOf(Port(8192)), PortTrouble());
  EXPECT_TRUE(directory.TroublesWithoutReader().empty());
}

TEST_F(QtSerialPortTest, TheDirectoryKnowsWhatTheSystemSaysOfADevice) {
  const SerialLineTerminal terminal({});
  const SerialLineTerminal other({});
  const QTemporaryDir folder;
  const QString link = folder.filePath(QStringLiteral("by-id"));
  ASSERT_TRUE(QFile::link(terminal.Device(), link));
  const SerialPortDirectory directory(
      {{.Path = terminal.Device().toStdString(), .Identification = "USB VID_FFFE PID_0001 TEST"}},
      {{2, terminal.Device().toStdString()},
       {3, link.toStdString()},
       {4, other.Device().toStdString()}});
  EXPECT_EQ(directory.IdentificationOf(Port(2)), u"USB VID_FFFE PID_0001 TEST");
  EXPECT_EQ(directory.IdentificationOf(Port(3)), u"USB VID_FFFE PID_0001 TEST") << "by a link";
  EXPECT_EQ(directory.IdentificationOf(Port(4)), QString());
  EXPECT_EQ(directory.IdentificationOf(Port(1)), QString());
}

}  // namespace
}  // namespace kartocheck::test
