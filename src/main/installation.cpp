#include "main/installation.h"

#include <QDir>
#include <QFileInfo>

namespace kartocheck {

namespace {

constexpr QStringView PrivateDirectory = u"/lib/kartocheck";

QString InPrivateDirectory(const QString& programDirectory, QStringView fileName) {
  return QDir::cleanPath(programDirectory + u"/.." + PrivateDirectory + u'/' + fileName);
}

// Beside the program where it was built, in its private directory where it is installed.
QString PartOfProgram(const QString& programDirectory, QStringView fileName) {
  const QString beside = QDir(programDirectory).filePath(fileName.toString());
  return QFileInfo::exists(beside) ? beside : InPrivateDirectory(programDirectory, fileName);
}

}  // namespace

QString ProgramDirectoryOfPart(const QString& directoryOfPart) {
  if (!directoryOfPart.endsWith(PrivateDirectory)) return directoryOfPart;
  return directoryOfPart.chopped(PrivateDirectory.size()) + u"/bin";
}

QString HelperProgram(const QString& programDirectory) {
  return PartOfProgram(programDirectory, u"kartocheck-helper");
}

QString WindowProgram(const QString& programDirectory) {
  return PartOfProgram(programDirectory, u"kartocheck-window");
}

QString NamedLibrary(const QString& name) {
  const QFileInfo file(name);
  return file.isFile() ? file.absoluteFilePath() : name;
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
