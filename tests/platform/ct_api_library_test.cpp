#include "platform/qt/ct_api_library.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>

#include <array>
#include <gtest/gtest.h>
#include <ostream>
#include <vector>

#include "support/kvk_records.h"
#include "support/link_fixture.h"
#include "support/loaded_library.h"
#include "support/printing.h"
#include "support/sentence_name.h"
#include "support/system.h"

// These tests load real shared libraries through the system's loader.

namespace kartocheck::test {
namespace {

// Whole paths: a test may change the working directory, and with it the drive.
const QString EchoLibrary = QFileInfo(QStringLiteral(ECHO_LIBRARY)).absoluteFilePath();
const QString NamedLibrary = QFileInfo(QStringLiteral(NAMED_LIBRARY)).absoluteFilePath();

// Names that are no file of this system.
const QString MissingFile = QStringLiteral("/nonexistent/libCTNRV32.so");
const QString MissingName = QStringLiteral("libKartoCheckNoSuchLibrary.so");

QString WriteTextFile(const QTemporaryDir& directory) {
  QFile file(directory.filePath(QStringLiteral("libCTNRV32.so")));
  if (!file.open(QIODevice::WriteOnly)) throw std::runtime_error("cannot write");
  file.write("this is no shared library\n");
  return file.fileName();
}

TEST(CtApiLibraryTest, NothingIsLoadedBeforeTheFirstCall) {
  const CtApiLibrary library = LoadedLibrary({EchoLibrary});
  EXPECT_EQ(library.LoadedFile(), QString());
  EXPECT_NO_THROW(const CtApiLibrary missing = LoadedLibrary({MissingFile}));
}

TEST(CtApiLibraryTest, EveryEntryPointGetsItsArgumentsAndGivesItsCode) {
  CtApiLibrary library = LoadedLibrary({EchoLibrary});
  EXPECT_EQ(library.Init(1, 0), 0);
  EXPECT_EQ(QDir::fromNativeSeparators(library.LoadedFile()), EchoLibrary);
  EXPECT_EQ(library.Close(7), -7);

  std::int32_t baud = 0;
  EXPECT_EQ(library.GetBaudrate(1, baud), 0);
  EXPECT_EQ(baud, 19'201);

  std::uint8_t dad = 1;
  std::uint8_t sad = 2;
  constexpr std::array<std::uint8_t, 5> Command{0x20, 0x13, 0x00, 0x46, 0x00};
  std::array<std::uint8_t, 300> response{};
  std::uint16_t length = 0;
  EXPECT_EQ(library.Data(1, dad, sad, Command, response, length), 0);
  const QByteArray answer(reinterpret_cast<const char*>(response.data()), length);
  // ctn 1, dad 1, sad 2, a buffer of 300 bytes, the command, the status word.
  EXPECT_EQ(HexOf(answer), u"000100010002012C20130046009000");
  EXPECT_EQ(dad, 2);
  EXPECT_EQ(sad, 1);
}

TEST(CtApiLibraryTest, CodesAreSignedEightBitNumbers) {
  CtApiLibrary library = LoadedLibrary({EchoLibrary});
  EXPECT_EQ(library.Init(1, 127), 127);
  EXPECT_EQ(library.Init(1, 128), -128);
  EXPECT_EQ(library.Init(1, 200), -56);
  EXPECT_EQ(library.Init(1, 255), -1);
}

TEST(CtApiLibraryTest, WhatALibraryTellsOfAPort) {
  CtApiLibrary library = LoadedLibrary({EchoLibrary});
  EXPECT_EQ(library.InfoOf(4).Name, "") << "nothing is loaded for a question";
  EXPECT_EQ(library.LoadedFile(), QString());
  (void)library.Init(1, 0);
  const ctapi::PortInfo info = library.InfoOf(4);
  EXPECT_EQ(info.Trouble, ctapi::PortTroubleKind::CardHeld);
  EXPECT_EQ(info.Name, "Gerät");
  EXPECT_EQ(library.InfoOf(ctapi::EveryReader).Trouble, ctapi::PortTroubleKind::None);
  EXPECT_EQ(library.InfoOf(0x0104).Name, "") << "it returns -1";
  EXPECT_EQ(library.InfoOf(0x0104).Trouble, ctapi::PortTroubleKind::None);
  constexpr int Unknown = static_cast<int>(ctapi::LastPortTrouble) + 1;
  EXPECT_EQ(library.InfoOf(Unknown).Trouble, ctapi::PortTroubleKind::None)
      << "no trouble known here";
  EXPECT_EQ(library.InfoOf(Unknown).Name, "Gerät");
  EXPECT_EQ(library.InfoOf(255).Name.size(), 1024U) << "more than the buffer holds";
}

TEST(CtApiLibraryTest, ALibraryMayHaveNothingToTell) {
  CtApiLibrary library = LoadedLibrary({NamedLibrary});
  (void)library.Init(1, 0);
  EXPECT_NE(library.LoadedFile(), QString());
  EXPECT_EQ(library.InfoOf(4).Trouble, ctapi::PortTroubleKind::None);
  EXPECT_EQ(library.InfoOf(4).Name, "");
}

enum class EntryPoint { Init, Data, Close, GetBaudrate };

void Call(CtApiLibrary& library, EntryPoint entryPoint) {
  std::uint8_t dad = 1;
  std::uint8_t sad = 2;
  std::array<std::uint8_t, 10> buffer{};
  std::uint16_t length = 0;
  std::int32_t baud = 0;
  switch (entryPoint) {
    case EntryPoint::Init:
      (void)library.Init(1, 1);
      break;
    case EntryPoint::Data:
      (void)library.Data(1, dad, sad, buffer, buffer, length);
      break;
    case EntryPoint::Close:
      (void)library.Close(1);
      break;
    case EntryPoint::GetBaudrate:
      (void)library.GetBaudrate(1, baud);
      break;
  }
}

constexpr std::array AllEntryPoints{EntryPoint::Init, EntryPoint::Data, EntryPoint::Close,
                                    EntryPoint::GetBaudrate};

struct IncompleteRow {
  const char* missing;
  QStringView file;

  friend std::ostream& operator<<(std::ostream& out, const IncompleteRow& row) {
    return out << row.missing;
  }
};

class IncompleteLibraryTest : public testing::TestWithParam<IncompleteRow> {};

TEST_P(IncompleteLibraryTest, IsRefusedAtTheFirstCallWhicheverItIs) {
  for (const EntryPoint entryPoint : AllEntryPoints) {
    CtApiLibrary library = LoadedLibrary({GetParam().file.toString()});
    try {
      Call(library, entryPoint);
      FAIL() << "taken";
    } catch (const LibraryUnusable& error) {
      EXPECT_EQ(error.Fault,
                (LibraryFault{LibraryFaultKind::EntryPointMissing, GetParam().missing}));
    }
    EXPECT_THROW(Call(library, entryPoint), LibraryUnusable) << "and at the next call again";
  }
}

TEST_P(IncompleteLibraryTest, EndsTheProgramWithTheMessageOfALibraryFault) {
  CtApiLibrary library = LoadedLibrary({GetParam().file.toString()});
  Link link(library);
  EXPECT_THROW((void)link.session.CtOpen(Port(1)), Terminated);
  EXPECT_EQ(link.dialogs.Texts(), (std::vector<QString>{QStringLiteral(
                                      "Dynamic Link Library (DLL) Fehler !!! ; CTNRV32.dll ")}));
}

INSTANTIATE_TEST_SUITE_P(CtApiLibrary, IncompleteLibraryTest,
                         testing::ValuesIn(std::vector<IncompleteRow>{
                             {"CTDENRVT1_init", LIBRARY_WITHOUT_INIT},
                             {"CTDENRVT1_data", LIBRARY_WITHOUT_DATA},
                             {"CTDENRVT1_close", LIBRARY_WITHOUT_CLOSE},
                         }),
                         SentenceName());

// Some libraries do not know the rate of the line, and some programs do not ask for it.
TEST(CtApiLibraryTest, TheRateOfTheLineIsMissedOnlyByWhoeverAsksForIt) {
  CtApiLibrary library = LoadedLibrary({QStringView(LIBRARY_WITHOUT_BAUDRATE).toString()});
  Call(library, EntryPoint::Init);
  Call(library, EntryPoint::Data);
  Call(library, EntryPoint::Close);
  try {
    Call(library, EntryPoint::GetBaudrate);
    FAIL() << "taken";
  } catch (const LibraryUnusable& error) {
    EXPECT_EQ(error.Fault, (LibraryFault{LibraryFaultKind::EntryPointMissing, "CT_get_baudrate"}));
  }
}

void ExpectNotFound(const QStringList& candidates) {
  for (const EntryPoint entryPoint : AllEntryPoints) {
    CtApiLibrary library = LoadedLibrary(candidates);
    EXPECT_THROW(Call(library, entryPoint), LibraryNotFound);
    EXPECT_EQ(library.LoadedFile(), QString());
  }
  CtApiLibrary library = LoadedLibrary(candidates);
  Link link(library);
  EXPECT_THROW((void)link.session.CtExchange(u"2011000000", Unit::Terminal), Terminated);
  EXPECT_EQ(link.dialogs.Texts(),
            (std::vector<QString>{QStringLiteral("Datei nicht gefunden, CTNRV32.dll !!!")}));
}

TEST(CtApiLibraryTest, AMissingFile) {
  ExpectNotFound({MissingFile});
}

TEST(CtApiLibraryTest, AMissingName) {
  ExpectNotFound({MissingName});
}

TEST(CtApiLibraryTest, NoCandidateAtAll) {
  ExpectNotFound({});
}

TEST(CtApiLibraryTest, AFileThatIsNoLibrary) {
  const QTemporaryDir directory;
  ExpectNotFound({WriteTextFile(directory)});
}

TEST(CtApiLibraryTest, ADirectory) {
  const QTemporaryDir directory;
  ExpectNotFound({directory.path()});
}

TEST(LoadFaultTest, TellsTheFileThatIsMissing) {
  EXPECT_EQ(LoadFaultOf(MissingFile),
            (LibraryFault{LibraryFaultKind::FileMissing, MissingFile.toStdString()}));
  EXPECT_EQ(LoadFaultOf(MissingName),
            (LibraryFault{LibraryFaultKind::FileMissing, MissingName.toStdString()}));
}

TEST(LoadFaultTest, TellsWhatIsNoLibrary) {
  const QTemporaryDir directory;
  EXPECT_EQ(LoadFaultOf(directory.path()),
            (LibraryFault{LibraryFaultKind::NotALibrary, directory.path().toStdString()}));
  const QString file = WriteTextFile(directory);
  EXPECT_EQ(LoadFaultOf(file), (LibraryFault{LibraryFaultKind::NotALibrary, file.toStdString()}));
}

TEST(LoadFaultTest, TellsWhereTheHelperDoesNotStart) {
  PendingCall pending;
  for (const QString& helper :
       {QStringLiteral("/nonexistent/helper"), QStringLiteral("/etc/passwd")}) {
    CtApiLibrary library(helper, {EchoLibrary}, pending);
    try {
      (void)library.Init(1, 0);
      FAIL() << "started";
    } catch (const LibraryUnusable& failure) {
      EXPECT_EQ(failure.Fault,
                (LibraryFault{LibraryFaultKind::HelperMissing, helper.toStdString()}));
    }
  }
}

// Another program in the helper's place says something else, or nothing.
TEST(LoadFaultTest, TellsAHelperThatIsNone) {
  PendingCall pending;
  const ForeignProgram speaker = ProgramThatSays(QStringLiteral("This is no helper at all."));
  CtApiLibrary speaking(speaker.file, speaker.arguments, pending);
  EXPECT_THROW((void)speaking.Init(1, 0), LibraryUnusable);
  const ForeignProgram idler = SilentProgram();
  CtApiLibrary silent(idler.file, idler.arguments, pending);
  EXPECT_THROW((void)silent.Init(1, 0), LibraryUnusable);
}

TEST(CtApiLibraryTest, CandidatesThatAreMissingAreSkipped) {
  CtApiLibrary library = LoadedLibrary({MissingFile, MissingName, EchoLibrary});
  EXPECT_EQ(library.Init(1, 0), 0);
  EXPECT_EQ(QDir::fromNativeSeparators(library.LoadedFile()), EchoLibrary);
}

TEST(CtApiLibraryTest, TheFirstCandidateThatExistsIsTaken) {
  CtApiLibrary library = LoadedLibrary({MissingFile, EchoLibrary, NamedLibrary});
  EXPECT_EQ(library.Init(1, 0), 0);
  EXPECT_EQ(QDir::fromNativeSeparators(library.LoadedFile()), EchoLibrary);
}

TEST(CtApiLibraryTest, ABrokenFileIsNotPassedOverForALaterOne) {
  const QTemporaryDir directory;
  ExpectNotFound({WriteTextFile(directory), EchoLibrary});
}

TEST(CtApiLibraryTest, AnIncompleteLibraryIsNotPassedOverForALaterOne) {
  CtApiLibrary library = LoadedLibrary({QStringView(LIBRARY_WITHOUT_INIT).toString(), EchoLibrary});
  EXPECT_THROW((void)library.Init(1, 0), LibraryUnusable);
}

TEST(CtApiLibraryTest, ABareNameIsLookedForOnTheSystemsSearchPath) {
  const QString directory = QFileInfo(NamedLibrary).path();
  if (!qEnvironmentVariable("LD_LIBRARY_PATH").split(u':').contains(directory)) {
    GTEST_SKIP() << "ctest puts " << directory.toStdString() << " on the search path";
  }
  CtApiLibrary library = LoadedLibrary({QStringLiteral("libKartoCheckTestCTNRV32.so")});
  EXPECT_EQ(library.Init(1, 0), 0);
}

TEST(CtApiLibraryTest, ABareNameIsNotLookedForInTheWorkingDirectory) {
  const QTemporaryDir directory;
  const QString name = QStringLiteral("libKartoCheckWorkingDirectory.so");
  ASSERT_TRUE(QFile::copy(EchoLibrary, directory.filePath(name)));
  const QString before = QDir::currentPath();
  ASSERT_TRUE(QDir::setCurrent(directory.path()));
  ExpectNotFound({name});
  EXPECT_TRUE(QDir::setCurrent(before));
}

TEST(CtApiLibraryTest, ASessionSpeaksThroughTheRealInterface) {
  CtApiLibrary library = LoadedLibrary({EchoLibrary});
  Link link(library);
  EXPECT_EQ(link.session.CtOpen(Port(8192)), 0);
  EXPECT_EQ(link.ports[5].BaudText, u"19201   ");
  const CtAnswer answer = link.session.CtExchange(u"00B0000000", Unit::Card);
  // ctn 1, dad 0 (the card), sad 2 (the host), a buffer of 4,098 bytes.
  EXPECT_EQ(answer.HexText(),
            u"0001000000021002"
            u"00B0000000"
            u"9000");
  EXPECT_EQ(link.session.CtClose(), -1);
  EXPECT_FALSE(link.session.IsOpen());
}

class FaultyLibraryTest : public testing::TestWithParam<QStringView> {};

TEST_P(FaultyLibraryTest, EndsTheProgramWithTheMessageOfALibraryFault) {
  CtApiLibrary library = LoadedLibrary({EchoLibrary});
  Link link(library);
  EXPECT_THROW((void)link.session.CtExchange(GetParam(), Unit::Card), Terminated);
  EXPECT_EQ(link.dialogs.Texts(), (std::vector<QString>{QStringLiteral(
                                      "Dynamic Link Library (DLL) Fehler !!! ; CTNRV32.dll ")}));
}

// Reports 65,535 bytes, writes past the buffer, throws.
INSTANTIATE_TEST_SUITE_P(CtApiLibrary, FaultyLibraryTest, testing::Values(u"E1", u"E2", u"E3"));

}  // namespace
}  // namespace kartocheck::test
