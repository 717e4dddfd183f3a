#pragma once

#include <QByteArray>
#include <QJsonObject>
#include <QProcess>
#include <QProcessEnvironment>
#include <QString>
#include <QStringList>

// The built program on its console, called as its users call it.
namespace kartocheck::test {

inline constexpr int PatienceMs = 30'000;

inline QString Path(const char* file) {
  return QString::fromLocal8Bit(file);
}

class CalledProgram {
 public:
  explicit CalledProgram(QStringList arguments);

  void Set(const char* variable, const QString& value);

  QProcess& Start();
  // Another program in its place, a shell for example, which is to call it.
  void StartBy(const QString& caller, const QStringList& arguments);
  [[nodiscard]] const QStringList& Arguments() const { return arguments_; }

  // 0 where it does not run.
  [[nodiscard]] qint64 ProcessNumber() const { return process_.processId(); }

  // Waits for its end.
  int Status();
  void WaitForOutput(QByteArrayView text);
  [[nodiscard]] QJsonObject Document() const;

  QByteArray out;
  QByteArray messages;

 private:
  QStringList arguments_;
  QProcessEnvironment environment_ = QProcessEnvironment::systemEnvironment();
  QProcess process_;
};

// Over a library that does what `plan` says, see modules/misbehaving_library.cpp of the helper.
class MisbehavingProgram : public CalledProgram {
 public:
  MisbehavingProgram(const QString& scenario, const QString& plan, const QStringList& more);
};

inline const QStringList Json{QStringLiteral("--json")};

}  // namespace kartocheck::test
