#pragma once

#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QProcessEnvironment>

#include <gtest/gtest.h>

#include "support/misbehaviour.h"

// The built program on its console, called as its users call it.
namespace kartocheck::test {

inline constexpr int PatienceMs = 30'000;

inline QString Path(const char* file) {
  return QString::fromLocal8Bit(file);
}

class CalledProgram {
 public:
  explicit CalledProgram(const QStringList& arguments) : arguments_(arguments) {
    environment_.insert(QStringLiteral("LC_ALL"), QStringLiteral("C.UTF-8"));
  }

  void Set(const char* variable, const QString& value) {
    environment_.insert(QString::fromLatin1(variable), value);
  }

  QProcess& Start() {
    process_.setProcessEnvironment(environment_);
    process_.start(Path(KARTOCHECK_PROGRAM), arguments_);
    EXPECT_TRUE(process_.waitForStarted(PatienceMs));
    return process_;
  }

  int Status() {
    EXPECT_TRUE(process_.waitForFinished(PatienceMs));
    out += process_.readAllStandardOutput();
    messages += process_.readAllStandardError();
    EXPECT_EQ(process_.exitStatus(), QProcess::NormalExit);
    return process_.exitCode();
  }

  void WaitForOutput(QByteArrayView text) {
    while (!out.contains(text)) {
      ASSERT_TRUE(process_.waitForReadyRead(PatienceMs)) << out.toStdString();
      out += process_.readAllStandardOutput();
    }
  }

  [[nodiscard]] QJsonObject Document() const {
    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(out, &error);
    EXPECT_EQ(error.error, QJsonParseError::NoError) << out.toStdString();
    return document.object();
  }

  QByteArray out;
  QByteArray messages;

 protected:
  QStringList arguments_;
  QProcessEnvironment environment_ = QProcessEnvironment::systemEnvironment();
  QProcess process_;
};

// Over a library that does what `plan` says, see modules/misbehaving_library.cpp of the helper.
class MisbehavingProgram : public CalledProgram {
 public:
  MisbehavingProgram(const QString& scenario, const QString& plan, const QStringList& more)
      : CalledProgram(QStringList{QStringLiteral("--console"), QStringLiteral("--ct-api"),
                                  Path(MISBEHAVING_LIBRARY), QStringLiteral("--port"),
                                  QStringLiteral("5"), QStringLiteral("--erase-records")} +
                      more) {
    Set("ASAN_OPTIONS", QString::fromLatin1(SanitizersLookAway));
    Set("KARTOCHECK_SCENARIO", scenario);
    Set("KARTOCHECK_MISBEHAVIOUR", plan);
  }
};

inline const QStringList Json{QStringLiteral("--json")};

}  // namespace kartocheck::test
