#include "platform/documents/gzip.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#ifdef Q_OS_LINUX
#include <chrono>
#include <signal.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>
#endif

#include "platform/private_file.h"
#include "support/gzip_data.h"
#include "support/printing.h"
#include "support/temporary_folder.h"

namespace kartocheck {
namespace {

using test::TemporaryFolder;

constexpr GunzipLimits Limits{.pieceSize = 2048, .cap = 32768};

// A text that hardly compresses, so that a cut in the middle leaves some of it.
QByteArray NoisyText(int size) {
  QByteArray text;
  unsigned state = 1;
  while (text.size() < size) {
    state = state * 1103515245U + 12345U;
    text.append(static_cast<char>('!' + (state >> 16) % 90));
  }
  return text;
}

class GunzipTest : public testing::TestWithParam<GunzipStorage> {
 protected:
  Gunzipped Run(const QByteArray& compressed) const {
    return Gunzip(compressed, Limits, GetParam());
  }
  QStringList Leftovers() const { return temporary_.Entries(); }

  void ExpectText(const QByteArray& compressed, const QByteArray& text) const {
    const Gunzipped output = Run(compressed);
    EXPECT_EQ(output.outcome, GunzipOutcome::Complete);
    EXPECT_EQ(output.bytes, text);
    EXPECT_EQ(Leftovers(), QStringList());
  }
  void ExpectOutcome(const QByteArray& compressed, GunzipOutcome outcome) const {
    const Gunzipped output = Run(compressed);
    EXPECT_EQ(output.outcome, outcome);
    EXPECT_EQ(output.bytes, QByteArray());
    EXPECT_EQ(Leftovers(), QStringList());
  }

  const QByteArray text_ = NoisyText(900);
  const QByteArray member_ = test::Gzip(text_);

 private:
  const test::TemporaryFolder temporary_;
};

TEST_P(GunzipTest, AnIntactMemberDeliversItsText) {
  ASSERT_TRUE(member_.startsWith(QByteArray::fromHex("1F8B0800")));
  ExpectText(member_, text_);
}

TEST_P(GunzipTest, AnyTimeAndSystemByteIsTaken) {
  QByteArray member = member_;
  member.replace(4, 4, QByteArray::fromHex("FFEEDDCC"));
  member[9] = '\xFF';
  ExpectText(member, text_);
}

TEST_P(GunzipTest, ZeroPaddingBehindTheMemberIsIgnored) {
  ExpectText(member_ + QByteArray(300, '\0'), text_);
}

TEST_P(GunzipTest, GarbageBehindTheMemberIsIgnored) {
  ExpectText(member_ + QByteArray("\xFF\xFE\x01garbage", 10), text_);
}

TEST_P(GunzipTest, AMissingTrailerIsForgiven) {
  ExpectText(member_.chopped(8), text_);
}

TEST_P(GunzipTest, ACutMemberDeliversWhatCameBefore) {
  const Gunzipped output = Run(member_.first(member_.size() / 2));
  EXPECT_EQ(output.outcome, GunzipOutcome::Complete);
  EXPECT_GT(output.bytes.size(), 100);
  EXPECT_LT(output.bytes.size(), text_.size());
  EXPECT_TRUE(text_.startsWith(output.bytes));
}

TEST_P(GunzipTest, AWrongChecksumFails) {
  QByteArray member = member_;
  member[member.size() - 8] = static_cast<char>(member.at(member.size() - 8) ^ 1);
  ExpectOutcome(member, GunzipOutcome::Failed);
}

TEST_P(GunzipTest, AWrongLengthFails) {
  QByteArray member = member_;
  member[member.size() - 1] = '\x01';
  ExpectOutcome(member, GunzipOutcome::Failed);
}

TEST_P(GunzipTest, AWrongByteInTheBodyFails) {
  QByteArray member = member_;
  const qsizetype middle = member.size() / 2;
  member[middle] = static_cast<char>(member.at(middle) ^ 0x55);
  ExpectOutcome(member, GunzipOutcome::Failed);
}

TEST_P(GunzipTest, TwoMembersAreJoined) {
  ExpectText(member_ + test::Gzip("und noch einer"), text_ + "und noch einer");
}

TEST_P(GunzipTest, WhatIsNotGzipDataComesAsItIs) {
  const QByteArray plain("<a>\x00\xE4</a>", 9);
  ExpectText(plain, plain);
}

TEST_P(GunzipTest, AnUnknownCompressionMethodFails) {
  ExpectOutcome(QByteArray::fromHex("1F8B0700") + QByteArray(30, 'x'), GunzipOutcome::Failed);
}

TEST_P(GunzipTest, TextsOfWholePiecesAreComplete) {
  for (const int size : {2047, 2048, 2049, 4096, 30720}) {
    const QByteArray text = NoisyText(size);
    ExpectText(test::Gzip(text), text);
  }
}

TEST_P(GunzipTest, OneCharacterBelowTheCapIsComplete) {
  const QByteArray text(32767, 'x');
  ExpectText(test::Gzip(text), text);
}

TEST_P(GunzipTest, TheCapIsTooLong) {
  ExpectOutcome(test::Gzip(QByteArray(32768, 'x')), GunzipOutcome::TooLong);
}

TEST_P(GunzipTest, ABombIsTooLongAndNotInflatedFurther) {
  ExpectOutcome(test::Gzip(QByteArray(10'000'000, '\0')), GunzipOutcome::TooLong);
}

TEST_P(GunzipTest, PlainDataReachTheCapToo) {
  ExpectText(QByteArray(32767, 'x'), QByteArray(32767, 'x'));
  ExpectOutcome(QByteArray(32768, 'x'), GunzipOutcome::TooLong);
}

INSTANTIATE_TEST_SUITE_P(Storages, GunzipTest,
                         testing::Values(GunzipStorage::PrivateFile,
                                         GunzipStorage::PrivateDirectory),
                         [](const auto& row) {
                           return row.param == GunzipStorage::PrivateFile ? "PrivateFile"
                                                                          : "PrivateDirectory";
                         });

TEST(PrivateFileTest, GivesItsBytesOnceAndLeavesNothing) {
  const TemporaryFolder temporary;
  {
    PrivateFile file("Inhalt");
    const std::optional<int> descriptor = file.TakeDescriptor();
    ASSERT_TRUE(descriptor);
    EXPECT_EQ(file.TakeDescriptor(), std::nullopt);
    QFile reader;
    ASSERT_TRUE(reader.open(*descriptor, QIODevice::ReadOnly, QFileDevice::AutoCloseHandle));
    EXPECT_EQ(reader.readAll(), QByteArray("Inhalt"));
  }
  {
    const PrivateFile notTaken("Inhalt");
  }
  EXPECT_EQ(temporary.Entries(), QStringList());
}

// A user's name is part of the path of the temporary folder on some systems.
TEST(PrivateFileTest, AFolderNameMayHaveLettersOfEveryKind) {
  const QTemporaryDir outer;
  const QString inner = outer.filePath(QStringLiteral("Jörg Größl"));
  ASSERT_TRUE(QDir().mkpath(inner));
  const TemporaryFolder temporary(inner);
  for (const auto storage : {GunzipStorage::PrivateFile, GunzipStorage::PrivateDirectory}) {
    EXPECT_EQ(Gunzip(test::Gzip("Text"), Limits, storage).bytes, QByteArray("Text"));
  }
}

#ifdef Q_OS_LINUX
TEST(PrivateFileTest, HasNoNameInTheFileSystem) {
  PrivateFile file("Inhalt");
  const std::optional<int> descriptor = file.TakeDescriptor();
  ASSERT_TRUE(descriptor);
  const QString target = QFile::symLinkTarget(QStringLiteral("/proc/self/fd/%1").arg(*descriptor));
  EXPECT_TRUE(target.contains(u"memfd:")) << target.toStdString();
  char bytes[7] = {};
  EXPECT_EQ(read(*descriptor, bytes, 6), 6);
  EXPECT_STREQ(bytes, "Inhalt");
  CloseDescriptor(*descriptor);
}

TEST(PrivateFileTest, KeepsNoDescriptorOpen) {
  const auto openDescriptors = [] {
    return QDir(QStringLiteral("/proc/self/fd")).entryList(QDir::AllEntries | QDir::System).size();
  };
  const auto before = openDescriptors();
  for (int i = 0; i < 10; ++i) {
    (void)Gunzip(test::Gzip("Text"), Limits);
    const PrivateFile notTaken("Text");
  }
  EXPECT_EQ(openDescriptors(), before);
}

// The reader is killed at a moment of its own choosing, many times over.
TEST(PrivateFileTest, LeavesNothingBehindAKilledProgram) {
  QTemporaryDir directory;
  const QByteArray member = test::Gzip(NoisyText(900));
  for (int milliseconds = 1; milliseconds <= 5; ++milliseconds) {
    const pid_t child = fork();
    ASSERT_GE(child, 0);
    if (child == 0) {
      qputenv("TMPDIR", directory.path().toLocal8Bit());
      if (chdir(directory.path().toLocal8Bit().constData()) != 0) _exit(1);
      for (;;) (void)Gunzip(member, Limits);
    }
    std::this_thread::sleep_for(std::chrono::milliseconds(milliseconds));
    ASSERT_EQ(kill(child, SIGKILL), 0);
    int status = 0;
    ASSERT_EQ(waitpid(child, &status, 0), child);
    ASSERT_TRUE(WIFSIGNALED(status));
    EXPECT_TRUE(directory.isValid());
    EXPECT_EQ(
        QDir(directory.path()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot | QDir::Hidden),
        QStringList());
  }
}
#endif

}  // namespace
}  // namespace kartocheck
