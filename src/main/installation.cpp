#include "main/installation.h"

#include <QDir>
#include <QFileInfo>

namespace kartocheck {

namespace {

QString InPrivateDirectory(const QString& programDirectory, QStringView fileName) {
  return QDir::cleanPath(programDirectory + u"/../lib/kartocheck/" + fileName);
}

}  // namespace

QString HelperProgram(const QString& programDirectory) {
  constexpr QStringView FileName = u"kartocheck-helper";
  const QString beside = QDir(programDirectory).filePath(FileName.toString());
  return QFileInfo::exists(beside) ? beside : InPrivateDirectory(programDirectory, FileName);
}

QStringList CtApiCandidates(const QString& programDirectory, QStringView fileName) {
  const QDir directory(programDirectory);
  return {directory.filePath(fileName.toString()), InPrivateDirectory(programDirectory, fileName),
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
