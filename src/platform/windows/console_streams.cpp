#include "platform/windows/console_streams.h"

#include <QString>

#include <array>
#include <condition_variable>
#include <mutex>
#include <thread>
#include <utility>

namespace kartocheck {

namespace {

constexpr std::size_t LongestPending = 4096;  // bytes

bool WriteWide(HANDLE console, const std::wstring& text) {
  const wchar_t* rest = text.data();
  auto length = static_cast<DWORD>(text.size());
  while (length > 0) {
    DWORD written = 0;
    if (::WriteConsoleW(console, rest, length, &written, nullptr) == 0 || written == 0) {
      return false;
    }
    rest += written;
    length -= written;
  }
  return true;
}

// A line as it was typed, with its end; nothing where there will be none. Ctrl-C interrupts the
// reading and is a request to the program, not an input.
std::optional<std::wstring> ReadLine(HANDLE console) {
  constexpr wchar_t EndOfInput = 0x1A;  // Ctrl-Z
  std::array<wchar_t, 512> piece{};
  std::wstring line;
  while (line.empty() || line.back() != L'\n') {
    DWORD count = 0;
    ::SetLastError(ERROR_SUCCESS);
    const bool isRead = ::ReadConsoleW(console, piece.data(), piece.size(), &count, nullptr) != 0;
    if (count == 0 && ::GetLastError() == ERROR_OPERATION_ABORTED) continue;
    if (!isRead || count == 0) return std::nullopt;
    line.append(piece.data(), count);
  }
  if (line.front() == EndOfInput) return std::nullopt;
  return line;
}

}  // namespace

ConsoleOutput::int_type ConsoleOutput::overflow(int_type character) {
  if (traits_type::eq_int_type(character, traits_type::eof()))
    return traits_type::not_eof(character);
  const char byte = traits_type::to_char_type(character);
  return xsputn(&byte, 1) == 1 ? character : traits_type::eof();
}

std::streamsize ConsoleOutput::xsputn(const char* text, std::streamsize length) {
  pending_.append(text, static_cast<std::size_t>(length));
  return pending_.size() < LongestPending || sync() == 0 ? length : 0;
}

int ConsoleOutput::sync() {
  QString text = decoder_.decode(std::exchange(pending_, {}));
  // A console may be set to take a line feed for what it says.
  text.replace(u'\n', QStringLiteral("\r\n"));
  return WriteWide(console_, text.toStdWString()) ? 0 : -1;
}

class Keyboard::Reading : public std::enable_shared_from_this<Reading> {
 public:
  bool WaitForLine(std::chrono::milliseconds longest) {
    std::unique_lock lock(mutex_);
    Begin();
    return hasCome_.wait_for(lock, longest, [this] { return !isReading_; });
  }

  std::optional<std::string> TakeLine() {
    std::unique_lock lock(mutex_);
    Begin();
    hasCome_.wait(lock, [this] { return !isReading_; });
    isTaken_ = true;
    return std::exchange(line_, std::nullopt);
  }

 private:
  // One line at a time: what is typed after it may be for another program.
  void Begin() {
    if (!std::exchange(isTaken_, false)) return;
    isReading_ = true;
    std::thread([self = shared_from_this()] { self->Read(); }).detach();
  }

  void Read() {
    const auto line = ReadLine(::GetStdHandle(STD_INPUT_HANDLE));
    const std::lock_guard lock(mutex_);
    if (line) {
      line_ = QString::fromStdWString(*line)
                  .replace(QStringLiteral("\r\n"), QStringLiteral("\n"))
                  .toStdString();
    }
    isReading_ = false;
    hasCome_.notify_all();
  }

  std::mutex mutex_;
  std::condition_variable hasCome_;
  std::optional<std::string> line_;
  bool isReading_ = false;
  bool isTaken_ = true;
};

Keyboard::Keyboard() : reading_(std::make_shared<Reading>()) {}

Keyboard::~Keyboard() = default;

bool Keyboard::WaitForLine(std::chrono::milliseconds longest) {
  return reading_->WaitForLine(longest);
}

std::optional<std::string> Keyboard::TakeLine() {
  return reading_->TakeLine();
}

ConsoleInput::int_type ConsoleInput::underflow() {
  auto line = keyboard_.TakeLine();
  if (!line) return traits_type::eof();
  line_ = *std::move(line);
  setg(line_.data(), line_.data(), line_.data() + line_.size());
  return traits_type::to_int_type(line_.front());
}

}  // namespace kartocheck
