#include <QElapsedTimer>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QProcessEnvironment>

#include <csignal>
#include <gtest/gtest.h>
#include <ostream>
#include <sys/types.h>
#include <vector>

#include "support/misbehaviour.h"
#include "support/printing.h"
#include "support/sentence_name.h"

// What was read reaches whoever called the program, whatever happens to the library, to the output
// and to the program itself.

namespace kartocheck::test {
namespace {

constexpr int PatienceMs = 30'000;

QString Path(const char* file) {
  return QString::fromLocal8Bit(file);
}

// The built program on its console.
class Program {
 public:
  explicit Program(const QStringList& arguments) : arguments_(arguments) {
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

  // In a shell, by a command in which PROGRAM stands for the program and its arguments.
  void StartInShell(const QString& command) {
    process_.setProcessEnvironment(environment_);
    process_.start(QStringLiteral("/bin/sh"),
                   QStringList{QStringLiteral("-c"),
                               QString(command).replace(QStringLiteral("PROGRAM"),
                                                        QStringLiteral("\"$0\" \"$@\"")),
                               Path(KARTOCHECK_PROGRAM)} +
                       arguments_);
  }

  int Status() {
    EXPECT_TRUE(process_.waitForFinished(PatienceMs));
    out += process_.readAllStandardOutput();
    messages += process_.readAllStandardError();
    EXPECT_EQ(process_.exitStatus(), QProcess::NormalExit);
    return process_.exitCode();
  }

  // Nothing once it has ended.
  void Send(int signal) {
    const auto process = static_cast<pid_t>(process_.processId());
    if (process > 0) ::kill(process, signal);
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

 private:
  QStringList arguments_;
  QProcessEnvironment environment_ = QProcessEnvironment::systemEnvironment();
  QProcess process_;
};

// Over a library that does what `plan` says, see modules/misbehaving_library.cpp of the helper.
class MisbehavingProgram : public Program {
 public:
  MisbehavingProgram(const QString& scenario, const QString& plan, const QStringList& more)
      : Program(QStringList{QStringLiteral("--console"), QStringLiteral("--ct-api"),
                            Path(MISBEHAVING_LIBRARY), QStringLiteral("--port"),
                            QStringLiteral("5"), QStringLiteral("--erase-records")} +
                more) {
    Set("ASAN_OPTIONS", QString::fromLatin1(SanitizersLookAway));
    Set("KARTOCHECK_SCENARIO", scenario);
    Set("KARTOCHECK_MISBEHAVIOUR", plan);
  }
};

QJsonObject PortIn(const QJsonObject& document, const char* pn) {
  return document.value(u"ports").toObject().value(QLatin1StringView(pn)).toObject();
}

bool HasData(const QJsonObject& port) {
  return port.value(u"data").isObject();
}

const QStringList Json{QStringLiteral("--json")};

struct RecordRow {
  const char* sentence;
  const char* scenario;
  QStringView lastName;

  friend std::ostream& operator<<(std::ostream& out, const RecordRow& row) {
    return out << row.sentence;
  }
};

class ErasedRecordTest : public testing::TestWithParam<RecordRow> {
 protected:
  [[nodiscard]] static QString Scenario() { return Path(GetParam().scenario); }
  [[nodiscard]] static QString PlanOf(int exchange, const char* deed) {
    return QStringLiteral("data %1 %2").arg(exchange).arg(QLatin1StringView(deed));
  }
  static void ExpectTheRecord(const QJsonObject& port) {
    ASSERT_TRUE(HasData(port));
    EXPECT_EQ(port.value(u"data").toObject().value(u"elements").toObject().value(u"lastName"),
              GetParam().lastName.toString());
  }
};

// The library dies at every exchange in turn.
TEST_P(ErasedRecordTest, IsShownWhateverComesBehindIt) {
  constexpr int MostExchanges = 40;
  bool isErased = false;
  int shown = 0;
  for (int exchange = 1; exchange <= MostExchanges; ++exchange) {
    SCOPED_TRACE(exchange);
    MisbehavingProgram program(Scenario(), PlanOf(exchange, "crash"), Json);
    (void)program.Start();
    const int status = program.Status();
    const QJsonObject document = program.Document();
    const QJsonObject port = PortIn(document, "5");
    if (status == 0) {
      // There is no such exchange in the whole run.
      EXPECT_TRUE(document.value(u"complete").toBool());
      ExpectTheRecord(port);
      EXPECT_GE(shown, 3) << "erase, eject, closing reset";
      return;
    }
    EXPECT_EQ(status, 3);
    EXPECT_FALSE(document.value(u"complete").toBool(true));
    EXPECT_TRUE(program.messages.contains(
        "\nKartoCheck: Die CT-API-Bibliothek ist abgestürzt (SIGSEGV).\n"))
        << program.messages.toStdString();
    const QJsonArray messages = port.value(u"messages").toArray();
    ASSERT_FALSE(messages.isEmpty());
    EXPECT_EQ(messages.last().toObject().value(u"text").toString(),
              u"Dynamic Link Library (DLL) Fehler !!! ; CTNRV32.dll ");
    isErased = isErased || HasData(port);
    if (isErased) {
      ++shown;
      ExpectTheRecord(port);
    }
  }
  FAIL() << "the run has no end";
}

INSTANTIATE_TEST_SUITE_P(Program, ErasedRecordTest,
                         testing::ValuesIn(std::vector<RecordRow>{
                             {"a KVK record", SCENARIOS "/kvk-gespeichert.json", u"Größl"},
                             {"an eGK record", SCENARIOS "/egk-gespeichert.json", u"Beispiel"},
                         }),
                         SentenceName());

class ProgramFaultTest : public testing::TestWithParam<const char*> {};

// The document parses whatever the library does, and the text report has its end.
TEST_P(ProgramFaultTest, LeavesAWholeReport) {
  const QString plan = QString::fromLatin1(GetParam());
  MisbehavingProgram json(Path(SCENARIOS "/kvk-60.json"), plan, Json);
  (void)json.Start();
  EXPECT_EQ(json.Status(), 3);
  EXPECT_FALSE(json.Document().value(u"complete").toBool(true));
  EXPECT_FALSE(json.out.contains("Mustermann")) << "what the library prints";

  MisbehavingProgram text(Path(SCENARIOS "/kvk-60.json"), plan, {});
  (void)text.Start();
  EXPECT_EQ(text.Status(), 3);
  EXPECT_TRUE(text.out.startsWith("KartoCheck "));
  EXPECT_TRUE(text.out.endsWith("\nDer Lauf wurde vorzeitig beendet.\n")) << text.out.toStdString();
}

INSTANTIATE_TEST_SUITE_P(Program, ProgramFaultTest,
                         testing::Values("load 1 crash", "init 1 crash", "baud 1 crash",
                                         "close 1 crash", "data 3 abort", "data 4 exit",
                                         "data 4 throw", "data 5 write-behind",
                                         "data 5 write-before", "data 5 close-descriptors",
                                         "data 5 parent-leaves", "data 5 write-to-all"),
                         SentenceName());

TEST(ProgramFaultTest, PrintedTextIsNoPartOfTheReport) {
  MisbehavingProgram program(Path(SCENARIOS "/kvk-60.json"), QStringLiteral("data 2 print"), Json);
  (void)program.Start();
  EXPECT_EQ(program.Status(), 0);
  EXPECT_TRUE(program.Document().value(u"complete").toBool());
}

// Nothing is read, and so nothing erased, where the report cannot be handed over.
class OutputTest : public testing::TestWithParam<const char*> {};

TEST_P(OutputTest, ThatTakesNothingEndsTheRunBeforeItBegins) {
  for (const QStringList& more : {Json, QStringList()}) {
    Program program(QStringList{QStringLiteral("--console"), QStringLiteral("--ct-api"),
                                Path(COM_TABLE_LIBRARY), QStringLiteral("--port"),
                                QStringLiteral("5")} +
                    more);
    program.StartInShell(u"PROGRAM " + QString::fromLatin1(GetParam()));
    EXPECT_EQ(program.Status(), 4);
    EXPECT_TRUE(program.messages.endsWith("KartoCheck: Der Bericht lässt sich nicht ausgeben.\n"));
    EXPECT_FALSE(program.messages.contains('<')) << "the library was called";
  }
}

INSTANTIATE_TEST_SUITE_P(Program, OutputTest, testing::Values("> /dev/full", ">&-", "<&- >&-"));

TEST(OutputTest, ThatBreaksLaterEndsTheRunBeforeTheNextRead) {
  Program program({QStringLiteral("--console"), QStringLiteral("--json"),
                   QStringLiteral("--simulate"), QStringLiteral("--erase-records"),
                   QStringLiteral("--verbose")});
  // Takes the first bytes and goes. The status of the program is the last line of the messages.
  program.StartInShell(QStringLiteral("(PROGRAM; echo $? >&2) | head -c 5 > /dev/null"));
  (void)program.Status();
  EXPECT_TRUE(program.messages.contains("COM 1")) << "the read that was under way went on";
  EXPECT_FALSE(program.messages.contains("COM 2"));
  EXPECT_TRUE(program.messages.endsWith("KartoCheck: Der Bericht lässt sich nicht ausgeben.\n4\n"))
      << program.messages.toStdString();
}

class InterruptTest : public testing::TestWithParam<int> {};

TEST_P(InterruptTest, LeavesADocumentThatSaysItIsIncomplete) {
  Program program(
      {QStringLiteral("--console"), QStringLiteral("--json"), QStringLiteral("--simulate")});
  (void)program.Start();
  program.WaitForOutput("\"ports\"");
  program.Send(GetParam());
  EXPECT_EQ(program.Status(), 130);
  EXPECT_FALSE(program.Document().value(u"complete").toBool(true));
}

// A library that does not come back is waited for no longer than usual.
TEST_P(InterruptTest, EndsACallThatDoesNotComeBack) {
  MisbehavingProgram program(Path(SCENARIOS "/kvk-60.json"), QStringLiteral("data 1 wait"), Json);
  (void)program.Start();
  program.WaitForOutput("\"ports\"");
  program.Send(GetParam());
  EXPECT_EQ(program.Status(), 130);
  EXPECT_FALSE(program.Document().value(u"complete").toBool(true));
}

TEST_P(InterruptTest, AskedForTwiceEndsTheProgramAtOnce) {
  MisbehavingProgram program(Path(SCENARIOS "/kvk-60.json"), QStringLiteral("init 1 deaf"), Json);
  QProcess& process = program.Start();
  program.WaitForOutput("\"ports\"");
  QElapsedTimer time;
  time.start();
  program.Send(GetParam());
  // Two requests of one kind that come together are one.
  while (process.state() == QProcess::Running && time.elapsed() < PatienceMs) {
    process.waitForFinished(20);
    program.Send(GetParam());
  }
  EXPECT_LT(time.elapsed(), 2'000);
  EXPECT_EQ(process.exitStatus(), QProcess::CrashExit);
  EXPECT_EQ(process.exitCode(), GetParam());
}

INSTANTIATE_TEST_SUITE_P(Program, InterruptTest, testing::Values(SIGINT, SIGTERM));

}  // namespace
}  // namespace kartocheck::test
