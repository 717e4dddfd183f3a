#include "main/installation.h"

#include <QDir>
#include <QFileInfo>

namespace kartocheck {

QStringList CtApiCandidates(const QString& programDirectory, QStringView fileName) {
  const QDir directory(programDirectory);
  return {directory.filePath(fileName.toString()),
          QDir::cleanPath(directory.filePath(QStringLiteral("../lib/kartocheck/") + fileName)),
          fileName.toString()};
}

QStringList DataDirectories(const QString& programDirectory) {
  return {programDirectory,
          QDir::cleanPath(QDir(programDirectory).filePath(QStringLiteral("../share/kartocheck")))};
}

std::optional<QString> ScenarioFile(const QString& programDirectory, const QString& nameOrPath) {
  if (QFileInfo(nameOrPath).isFile()) return nameOrPath;
  for (const QString& directory : DataDirectories(programDirectory)) {
    const QString file = directory + u"/scenarios/" + nameOrPath + u".json";
    if (QFileInfo(file).isFile()) return file;
  }
  return std::nullopt;
}

}  // namespace kartocheck
