#pragma once

#include <QByteArrayView>
#include <QString>
#include <QTemporaryDir>

namespace kartocheck {

// Bytes for a library that reads files only, in the file "Daten.xml.gz" (mode 0600) of a directory
// of its own (mode 0700). File and directory are gone with the object.
class ScratchFile {
 public:
  explicit ScratchFile(QByteArrayView bytes);

  // Empty where the bytes could not be written.
  [[nodiscard]] const QString& Path() const { return path_; }

 private:
  QTemporaryDir directory_;
  QString path_;
};

}  // namespace kartocheck
