#include "main/installation.h"

#include <QDir>
#include <QFileInfo>

#include "platform/system_layout.h"

namespace kartocheck {

namespace {

QString InDirectory(const QString& programDirectory, QStringView directory) {
  return QDir::cleanPath(programDirectory + u'/' + directory);
}

QString InPrivateDirectory(const QString& programDirectory, QStringView fileName) {
  const QStringView directory = LayoutOfThisSystem().PrivateDirectory;
  return InDirectory(programDirectory, directory) + u'/' + fileName;
}

// Beside the program where it was built, in its private directory where it is installed.
QString PartOfProgram(const QString& programDirectory, QStringView name) {
  const QString fileName = name + LayoutOfThisSystem().ProgramSuffix;
  const QString beside = QDir(programDirectory).filePath(fileName);
  return QFileInfo::exists(beside) ? beside : InPrivateDirectory(programDirectory, fileName);
}

QString LibraryIn(LibraryPlace place, const QString& programDirectory) {
  QString fileName = LayoutOfThisSystem().LibraryFile.toString();
  switch (place) {
    case LibraryPlace::ProgramDirectory:
      return QDir(programDirectory).filePath(fileName);
    case LibraryPlace::PrivateDirectory:
      return InPrivateDirectory(programDirectory, fileName);
    case LibraryPlace::SearchPath:
      break;
  }
  return fileName;
}

}  // namespace

QString ProgramDirectoryOfPart(const QString& directoryOfPart) {
  const SystemLayout layout = LayoutOfThisSystem();
  QString program = InDirectory(directoryOfPart, layout.ProgramDirectory);
  const bool isPrivate = InDirectory(program, layout.PrivateDirectory) == directoryOfPart;
  return isPrivate ? program : directoryOfPart;
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

QStringList CtApiCandidates(const QString& programDirectory) {
  QStringList candidates;
  for (const LibraryPlace place : LayoutOfThisSystem().LibraryPlaces) {
    candidates.append(LibraryIn(place, programDirectory));
  }
  return candidates;
}

QStringList DataDirectories(const QString& programDirectory) {
  return {programDirectory, InDirectory(programDirectory, LayoutOfThisSystem().DataDirectory)};
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
