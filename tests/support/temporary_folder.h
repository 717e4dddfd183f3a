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
  explicit TemporaryFolder(const QString& elsewhere) : previous_(qgetenv("TMPDIR")) {
    qputenv("TMPDIR", QFile::encodeName(elsewhere.isEmpty() ? own_.path() : elsewhere));
  }
  ~TemporaryFolder() {
    if (previous_.isNull()) {
      qunsetenv("TMPDIR");
    } else {
      qputenv("TMPDIR", previous_);
    }
  }
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;

  [[nodiscard]] QString Path() const { return own_.path(); }
  [[nodiscard]] QStringList Entries() const {
    return QDir(own_.path()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot | QDir::Hidden);
  }

 private:
  QTemporaryDir own_;
  QByteArray previous_;
};

}  // namespace kartocheck::test
