#include "main/called_program.h"

#include <QJsonDocument>

#include <gtest/gtest.h>
#include <utility>

#include "support/misbehaviour.h"

namespace kartocheck::test {

CalledProgram::CalledProgram(QStringList arguments) : arguments_(std::move(arguments)) {
  Set("LC_ALL", QStringLiteral("C.UTF-8"));
}

void CalledProgram::Set(const char* variable, const QString& value) {
  environment_.insert(QString::fromLatin1(variable), value);
}

QProcess& CalledProgram::Start() {
  StartBy(Path(KARTOCHECK_PROGRAM), arguments_);
  return process_;
}

void CalledProgram::StartBy(const QString& caller, const QStringList& arguments) {
  process_.setProcessEnvironment(environment_);
  process_.start(caller, arguments);
  EXPECT_TRUE(process_.waitForStarted(PatienceMs));
}

int CalledProgram::Status() {
  EXPECT_TRUE(process_.waitForFinished(PatienceMs));
  out += process_.readAllStandardOutput();
  messages += process_.readAllStandardError();
  EXPECT_EQ(process_.exitStatus(), QProcess::NormalExit);
  return process_.exitCode();
}

void CalledProgram::WaitForOutput(QByteArrayView text) {
  while (!out.contains(text)) {
    ASSERT_TRUE(process_.waitForReadyRead(PatienceMs)) << out.toStdString();
    out += process_.readAllStandardOutput();
  }
}

QJsonObject CalledProgram::Document() const {
  QJsonParseError error;
  const QJsonDocument document = QJsonDocument::fromJson(out, &error);
  EXPECT_EQ(error.error, QJsonParseError::NoError) << out.toStdString();
  return document.object();
}

MisbehavingProgram::MisbehavingProgram(const QString& scenario, const QString& plan,
                                       const QStringList& more)
    : CalledProgram(QStringList{QStringLiteral("--console"), QStringLiteral("--ct-api"),
                                Path(MISBEHAVING_LIBRARY), QStringLiteral("--port"),
                                QStringLiteral("5"), QStringLiteral("--erase-records")} +
                    more) {
  Set("ASAN_OPTIONS", QString::fromLatin1(SanitizersLookAway));
  Set("KARTOCHECK_SCENARIO", scenario);
  Set("KARTOCHECK_MISBEHAVIOUR", plan);
}

}  // namespace kartocheck::test
