#pragma once

#include <QByteArray>
#include <QDir>
#include <QStringList>
#include <QTemporaryDir>

namespace kartocheck::test {

// While it lives, temporary files go to another folder; by default to one of its own, in which what
// is left over can be counted.
class TemporaryFolder {
 public:
  TemporaryFolder() : TemporaryFolder(QString()) {}
  explicit TemporaryFolder(const QString& elsewhere) : previous_(qgetenv(Variable)) {
    qputenv(Variable, QFile::encodeName(elsewhere.isEmpty() ? own_.path() : elsewhere));
  }
  ~TemporaryFolder() {
    if (previous_.isNull()) {
      qunsetenv(Variable);
    } else {
      qputenv(Variable, previous_);
    }
  }
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;

  [[nodiscard]] QString Path() const { return own_.path(); }
  [[nodiscard]] QStringList Entries() const {
    return QDir(own_.path()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot | QDir::Hidden);
  }

 private:
#if defined(Q_OS_WIN)
  static constexpr const char* Variable = "TMP";
#else
  static constexpr const char* Variable = "TMPDIR";
#endif
  QTemporaryDir own_;
  QByteArray previous_;
};

}  // namespace kartocheck::test
