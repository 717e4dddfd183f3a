#pragma once

#include <QFile>
#include <QString>
#include <QStringView>

#include <cstdint>
#include <span>

namespace kartocheck::test {

// What a flow did, line by line in order of time. Two runs of the same flow give the same bytes, so
// a log has no times, paths or addresses in it.
class FlowLog {
 public:
  // Throws std::runtime_error where the file cannot be written.
  explicit FlowLog(const QString& file);

  void Line(const QString& text);
  // Each line of a text behind a mark.
  void Lines(QStringView mark, const QString& text);
  void Flush() { file_.flush(); }

 private:
  QFile file_;
};

// A text in quotes on one line: CR, LF, tab and whatever else cannot be seen stand as \r, \n, \t,
// \u0000.
[[nodiscard]] QString Quoted(QStringView text);

// The bytes as digits with blanks between them: "62 01".
[[nodiscard]] QString Hexadecimal(std::span<const std::uint8_t> bytes);

}  // namespace kartocheck::test
