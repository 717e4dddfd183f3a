#pragma once

#include <QString>
#include <QStringView>

namespace kartocheck {

// A text field of fixed width, in characters: left-justified, blank-padded on the right, cut when
// longer. Comparing it sees the padding: a FixedText<5> that was given "PKTD" equals "PKTD ".
template <int Width>
class FixedText {
 public:
  FixedText() : text_(Width, u' ') {}
  FixedText(QStringView value) : text_(Fitted(value)) {}  // NOLINT: a record field takes a text

  FixedText(QLatin1StringView value) : text_(Fitted(QString(value))) {}  // NOLINT: the same

  FixedText& operator=(QStringView value) {
    text_ = Fitted(value);
    return *this;
  }
  FixedText& operator=(QLatin1StringView value) { return *this = QStringView(QString(value)); }

  [[nodiscard]] const QString& Padded() const { return text_; }

  // Without the blanks on the right, as a label shows it.
  [[nodiscard]] QString Trimmed() const {
    qsizetype length = text_.size();
    while (length > 0 && text_.at(length - 1) == u' ') --length;
    return text_.first(length);
  }

  [[nodiscard]] bool IsBlank() const { return Trimmed().isEmpty(); }

  friend bool operator==(const FixedText& left, QStringView right) { return left.text_ == right; }
  friend bool operator==(const FixedText& left, QLatin1StringView right) {
    return left.text_ == right;
  }
  friend bool operator==(const FixedText& left, const FixedText& right) {
    return left.text_ == right.text_;
  }

 private:
  static QString Fitted(QStringView value) {
    return value.first(qMin<qsizetype>(value.size(), Width)).toString().leftJustified(Width, u' ');
  }

  QString text_;
};

}  // namespace kartocheck
