#pragma once

#include <QStringDecoder>
#include <windows.h>

#include <chrono>
#include <memory>
#include <optional>
#include <streambuf>
#include <string>

namespace kartocheck {

// Text in UTF-8 for a console, whatever code page that is set to.
class ConsoleOutput final : public std::streambuf {
 public:
  explicit ConsoleOutput(HANDLE console) : console_(console) {}

 protected:
  int_type overflow(int_type character) override;
  std::streamsize xsputn(const char* text, std::streamsize length) override;
  int sync() override;

 private:
  HANDLE console_;
  std::string pending_;
  QStringDecoder decoder_{QStringDecoder::Utf8};  // a letter may come in two pieces
};

// The lines that a person types at a console, in UTF-8. A console keeps a line to itself until
// somebody reads: a thread does, whose line is taken when it is there.
class Keyboard {
 public:
  Keyboard();
  ~Keyboard();
  Keyboard(const Keyboard&) = delete;
  Keyboard& operator=(const Keyboard&) = delete;

  // Whether a line, or the end of the input, has come within the time.
  [[nodiscard]] bool WaitForLine(std::chrono::milliseconds longest);
  // The line with its end; nothing at the end of the input. Waits for it.
  [[nodiscard]] std::optional<std::string> TakeLine();

 private:
  class Reading;
  std::shared_ptr<Reading> reading_;  // the thread's as well, which may outlive this
};

// What is typed, for a stream.
class ConsoleInput final : public std::streambuf {
 public:
  explicit ConsoleInput(Keyboard& keyboard) : keyboard_(keyboard) {}

 protected:
  int_type underflow() override;

 private:
  Keyboard& keyboard_;
  std::string line_;
};

}  // namespace kartocheck
