#include <QDir>
#include <windows.h>

#include <gtest/gtest.h>

#include "platform/machine_serial_port.h"
#include "platform/next_program.h"
#include "platform/private_file.h"
#include "platform/serial_devices.h"
#include "platform/system_names.h"
#include "platform/termination_signal.h"
#include "support/printing.h"
#include "support/temporary_folder.h"

// What only Windows does in its own way.

namespace kartocheck::test {
namespace {

constexpr int AccessViolation = static_cast<int>(0xC0000005);
constexpr int MicrosoftException = static_cast<int>(0xE06D7363);

TEST(CrashTest, IsNamedWithItsCode) {
  EXPECT_EQ(NameOfCrash(AccessViolation), u"Zugriffsverletzung, 0xC0000005");
  EXPECT_EQ(NameOfCrash(static_cast<int>(0xC0000374)), u"beschädigter Speicher, 0xC0000374");
  EXPECT_EQ(NameOfCrash(0x4711), u"0x00004711");
}

TEST(CrashTest, AnExceptionThatNobodyCaughtIsOne) {
  EXPECT_TRUE(IsCrashStatus(MicrosoftException));
  for (const int status : {0, 3, -1, -127}) EXPECT_FALSE(IsCrashStatus(status)) << status;
}

HWND ReceiverOfRequests() {
  const wchar_t* const name = L"KartoCheckTerminationSignal";
  const HWND window = ::FindWindowExW(nullptr, nullptr, name, nullptr);
  return window != nullptr ? window : ::FindWindowExW(HWND_MESSAGE, nullptr, name, nullptr);
}

TEST(TerminationSignalTest, TellsTheEndOfTheSessionOnce) {
  int requests = 0;
  const TerminationSignal signal([&] { ++requests; });
  const HWND window = ReceiverOfRequests();
  ASSERT_NE(window, nullptr);
  EXPECT_NE(::SendMessageW(window, WM_QUERYENDSESSION, 0, 0), 0) << "nothing is in its way";
  ::SendMessageW(window, WM_ENDSESSION, FALSE, 0);
  EXPECT_EQ(requests, 0) << "another program kept the session";
  ::SendMessageW(window, WM_ENDSESSION, TRUE, 0);
  ::SendMessageW(window, WM_CLOSE, 0, 0);
  EXPECT_EQ(requests, 1);
}

TEST(TerminationSignalTest, OneAfterTheOtherListens) {
  {
    const TerminationSignal first([] {});
  }
  EXPECT_EQ(ReceiverOfRequests(), nullptr);
  int requests = 0;
  const TerminationSignal second([&] { ++requests; });
  ::SendMessageW(ReceiverOfRequests(), WM_CLOSE, 0, 0);
  EXPECT_EQ(requests, 1);
}

TEST(GoOnAsTest, AProgramThatIsMissingLeavesThisOne) {
  EXPECT_EQ(GoOnAs(QStringLiteral("C:/nirgends/keines.exe"), nullptr), std::nullopt);
}

TEST(PrivateFileTest, NobodyElseOpensItWhileItIsThere) {
  const TemporaryFolder temporary;
  const PrivateFile file("Inhalt");
  ASSERT_EQ(temporary.Entries().size(), 1);
  const QString path =
      temporary.Path() + u'/' + temporary.Entries().constFirst() + QStringLiteral("/Daten.xml.gz");
  const HANDLE opened = ::CreateFileW(
      QDir::toNativeSeparators(path).toStdWString().c_str(), GENERIC_READ,
      FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr, OPEN_EXISTING, 0, nullptr);
  EXPECT_EQ(opened, INVALID_HANDLE_VALUE);
  EXPECT_EQ(::GetLastError(), static_cast<DWORD>(ERROR_SHARING_VIOLATION));
}

// Error number with which opening COM n fails; 0 where it opens.
int OpenError(const ctapi::ComTable& table, int comNumber) {
  const auto port = MachineSerialPort(table);
  try {
    port->Open(comNumber);
  } catch (const SerialPortError& error) {
    return error.Number;
  }
  return 0;
}

TEST(MachineSerialPortTest, APortThatIsNotThere) {
  EXPECT_EQ(OpenError({}, 1), SerialPortError::InvalidNumber) << "not in the table";
  EXPECT_EQ(OpenError({{1, "COM250"}}, 1), SerialPortError::InvalidNumber);
  EXPECT_EQ(OpenError({{5, "COM5"}}, 5), SerialPortError::InvalidNumber) << "the control has four";
  EXPECT_EQ(StateOfDevice("COM250"), DeviceState::Absent);
}

TEST(MachineSerialPortTest, WithoutAnOpenPortEverythingFails) {
  const auto port = MachineSerialPort({});
  port->Close();
  EXPECT_THROW(port->SetSettings(u"9600,E,8,1"), SerialPortError);
  EXPECT_THROW(port->SetDtr(true), SerialPortError);
  EXPECT_THROW(port->Send("\x01"), SerialPortError);
  EXPECT_THROW((void)port->ReadDsr(), SerialPortError);
  EXPECT_THROW((void)port->Received(), SerialPortError);
}

}  // namespace
}  // namespace kartocheck::test
