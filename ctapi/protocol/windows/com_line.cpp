#include "protocol/windows/com_line.h"

#include <algorithm>

#include "protocol/windows/wide_text.h"

namespace ctapi {

namespace {

using std::chrono::milliseconds;

constexpr std::size_t MostAtOnce = 4096;  // bytes

BYTE ParityOf(ComLine::Parity parity) {
  switch (parity) {
    case ComLine::Parity::Odd:
      return ODDPARITY;
    case ComLine::Parity::Even:
      return EVENPARITY;
    case ComLine::Parity::None:
      break;
  }
  return NOPARITY;
}

// 0 and MAXDWORD have meanings of their own.
DWORD TimeOf(milliseconds time) {
  constexpr std::int64_t Longest = MAXDWORD - 1;
  return static_cast<DWORD>(std::clamp<std::int64_t>(time.count(), 1, Longest));
}

}  // namespace

bool MeansNoComPort(DWORD error) {
  switch (error) {
    case ERROR_FILE_NOT_FOUND:
    case ERROR_PATH_NOT_FOUND:
    case ERROR_INVALID_NAME:
    case ERROR_DEV_NOT_EXIST:
    case ERROR_BAD_UNIT:
    case ERROR_GEN_FAILURE:
    case ERROR_DEVICE_NOT_CONNECTED:
      return true;
    default:
      return false;
  }
}

bool MeansComPortInUse(DWORD error) {
  return error == ERROR_ACCESS_DENIED || error == ERROR_SHARING_VIOLATION || error == ERROR_BUSY;
}

OpenedComLine ComLine::Open(const std::string& port) {
  // The prefix names a device, and never a file of that name; without it COM10 and up are none.
  const std::wstring path = L"\\\\.\\" + WideText(port);
  constexpr DWORD SharedWithNobody = 0;
  Handle file(::CreateFileW(path.c_str(), GENERIC_READ | GENERIC_WRITE, SharedWithNobody, nullptr,
                            OPEN_EXISTING, 0, nullptr));
  if (!file.IsOpen()) return {.Error = ::GetLastError()};
  // Other devices (NUL) can be opened as well, but have no settings.
  DCB settings{};
  settings.DCBlength = sizeof settings;
  if (!::GetCommState(file.Get(), &settings)) return {.Error = ERROR_FILE_NOT_FOUND};
  std::unique_ptr<ComLine> line(new ComLine(std::move(file)));
  constexpr std::int32_t Usual = 9600;
  try {
    line->SetSettings(Usual, Parity::None);
    line->SetDtr(true);
    line->SetRts(true);
    line->DiscardAll();
  } catch (const ComLineLost&) {
    return {.Error = ERROR_GEN_FAILURE};
  }
  return {ERROR_SUCCESS, std::move(line)};
}

void ComLine::SetSettings(std::int32_t baud, Parity parity) {
  DCB settings{};
  settings.DCBlength = sizeof settings;
  settings.BaudRate = static_cast<DWORD>(baud);
  settings.fBinary = TRUE;
  settings.fParity = parity != Parity::None;
  settings.Parity = ParityOf(parity);
  settings.fDtrControl = isDtrOn_ ? DTR_CONTROL_ENABLE : DTR_CONTROL_DISABLE;
  settings.fRtsControl = isRtsOn_ ? RTS_CONTROL_ENABLE : RTS_CONTROL_DISABLE;
  settings.ByteSize = 8;
  settings.StopBits = ONESTOPBIT;
  constexpr char XOn = 0x11;
  constexpr char XOff = 0x13;
  settings.XonChar = XOn;  // unused, but drivers refuse two alike
  settings.XoffChar = XOff;
  if (!::SetCommState(line_.Get(), &settings)) ThrowWhereLost();
}

void ComLine::SetDtr(bool on) {
  isDtrOn_ = on;
  if (!::EscapeCommFunction(line_.Get(), on ? SETDTR : CLRDTR)) ThrowWhereLost();
}

void ComLine::SetRts(bool on) {
  isRtsOn_ = on;
  if (!::EscapeCommFunction(line_.Get(), on ? SETRTS : CLRRTS)) ThrowWhereLost();
}

bool ComLine::ReadDsr() {
  DWORD lines = 0;
  if (!::GetCommModemStatus(line_.Get(), &lines)) {
    ThrowWhereLost();
    return false;
  }
  return (lines & MS_DSR_ON) != 0;
}

void ComLine::DiscardInput() {
  if (!::PurgeComm(line_.Get(), PURGE_RXCLEAR)) throw ComLineLost("purge");
  ThrowWhereLost();
  isDamaged_ = false;
}

void ComLine::DiscardAll() {
  if (!::PurgeComm(line_.Get(), PURGE_TXABORT | PURGE_TXCLEAR)) throw ComLineLost("purge");
  DiscardInput();
}

void ComLine::Write(ByteView bytes, milliseconds longest) {
  times_.WriteTotalTimeoutMultiplier = 0;
  times_.WriteTotalTimeoutConstant = TimeOf(longest);
  if (!::SetCommTimeouts(line_.Get(), &times_)) throw ComLineLost("time of a write");
  DWORD written = 0;
  const auto size = static_cast<DWORD>(bytes.size());
  if (!::WriteFile(line_.Get(), bytes.data(), size, &written, nullptr)) throw ComLineLost("write");
  if (written != size) throw ComLineLost("stuck");
}

// One byte is waited for, and the driver then asked how many have come: so a wait ends with the
// first byte on every driver.
ComLine::Reception ComLine::Read(milliseconds longest) {
  Reception reception;
  std::size_t waiting = TakeState().cbInQue;
  if (waiting == 0) {
    if (longest <= milliseconds(0)) return reception;
    SetReadTime(longest);
    if (ReadInto(reception.Received, 1) == 0) {
      ThrowWhereLost();
      return reception;
    }
    waiting = TakeState().cbInQue;
  }
  while (waiting > 0) {
    const std::size_t count = ReadInto(reception.Received, std::min(waiting, MostAtOnce));
    if (count == 0) break;
    waiting -= std::min(waiting, count);
  }
  ThrowWhereLost();
  reception.Damaged = std::exchange(isDamaged_, false);
  return reception;
}

void ComLine::SetReadTime(milliseconds longest) {
  times_.ReadIntervalTimeout = 0;
  times_.ReadTotalTimeoutMultiplier = 0;
  times_.ReadTotalTimeoutConstant = TimeOf(longest);
  if (!::SetCommTimeouts(line_.Get(), &times_)) throw ComLineLost("time of a read");
}

COMSTAT ComLine::TakeState() {
  DWORD errors = 0;
  COMSTAT state{};
  if (!::ClearCommError(line_.Get(), &errors, &state)) throw ComLineLost("state");
  if ((errors & (CE_RXPARITY | CE_FRAME)) != 0) isDamaged_ = true;
  return state;
}

std::size_t ComLine::ReadInto(Bytes& bytes, std::size_t longest) {
  const std::size_t before = bytes.size();
  bytes.resize(before + longest);
  DWORD count = 0;
  if (!::ReadFile(line_.Get(), bytes.data() + before, static_cast<DWORD>(longest), &count,
                  nullptr)) {
    throw ComLineLost("read");
  }
  bytes.resize(before + count);
  return count;
}

}  // namespace ctapi
