#include "platform/documents/scratch_file.h"

#include <QDir>
#include <QFile>

namespace kartocheck {

ScratchFile::ScratchFile(QByteArrayView bytes)
    : directory_(QDir::tempPath() + QStringLiteral("/kartocheck-XXXXXX")) {
  if (!directory_.isValid()) return;
  QFile file(directory_.filePath(QStringLiteral("Daten.xml.gz")));
  if (!file.open(QIODevice::WriteOnly, QFileDevice::ReadOwner | QFileDevice::WriteOwner)) return;
  const bool isWritten = file.write(bytes.data(), bytes.size()) == bytes.size() && file.flush();
  file.close();
  if (isWritten && file.error() == QFileDevice::NoError) path_ = file.fileName();
}

}  // namespace kartocheck
