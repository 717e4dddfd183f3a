#include "platform/documents/scratch_file.h"

#include <QFile>
#include <QFileInfo>

#include <gtest/gtest.h>

#ifdef Q_OS_LINUX
#include <array>
#include <cerrno>
#include <csignal>
#include <cstddef>
#include <linux/filter.h>
#include <linux/seccomp.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>
#endif

#include "platform/documents/gzip.h"
#include "support/gzip_data.h"
#include "support/printing.h"
#include "support/temporary_folder.h"

namespace kartocheck {
namespace {

using test::TemporaryFolder;

constexpr GunzipLimits Limits{.pieceSize = 2048, .cap = 32768};

QByteArray ContentOf(const QString& path) {
  QFile file(path);
  return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

TEST(ScratchFileTest, HoldsTheBytesWhileItLives) {
  const TemporaryFolder temporary;
  const QByteArray bytes("In\0halt\r\n\x1A", 10);
  QString path;
  {
    const ScratchFile scratch(bytes);
    path = scratch.Path();
    EXPECT_TRUE(path.startsWith(temporary.Path() + u'/'));
    EXPECT_EQ(QFileInfo(path).fileName(), QStringLiteral("Daten.xml.gz"));
    EXPECT_EQ(ContentOf(path), bytes);
  }
  EXPECT_FALSE(QFileInfo::exists(path));
  EXPECT_EQ(temporary.Entries(), QStringList());
}

TEST(ScratchFileTest, OfNoBytesIsAnEmptyFile) {
  const TemporaryFolder temporary;
  const ScratchFile scratch({});
  EXPECT_TRUE(QFileInfo(scratch.Path()).isFile());
  EXPECT_EQ(QFileInfo(scratch.Path()).size(), 0);
}

TEST(ScratchFileTest, TwoAtATimeKnowNothingOfEachOther) {
  const TemporaryFolder temporary;
  const ScratchFile first("die erste");
  QString pathOfSecond;
  {
    const ScratchFile second("die zweite");
    pathOfSecond = second.Path();
    EXPECT_EQ(ContentOf(first.Path()), QByteArray("die erste"));
    EXPECT_EQ(ContentOf(pathOfSecond), QByteArray("die zweite"));
  }
  EXPECT_FALSE(QFileInfo::exists(pathOfSecond));
  EXPECT_EQ(ContentOf(first.Path()), QByteArray("die erste"));
}

TEST(ScratchFileTest, HasNoPathWhereNothingCanBeWritten) {
  const TemporaryFolder temporary(QStringLiteral("/dev/null"));
  EXPECT_EQ(ScratchFile("Inhalt").Path(), QString());
  EXPECT_EQ(Gunzip(test::Gzip("Text"), Limits, GunzipStorage::PrivateDirectory).outcome,
            GunzipOutcome::Failed);
}

#ifdef Q_OS_LINUX

// The mask with which the user's shell takes rights away must not be what keeps others out.
TEST(ScratchFileTest, IsOfNobodyElseWhateverTheMaskOfRights) {
  constexpr mode_t Rights = 07777;
  const TemporaryFolder temporary;
  const mode_t mask = ::umask(0);
  const ScratchFile scratch("Inhalt");
  ::umask(mask);
  struct stat file{};
  struct stat folder{};
  ASSERT_EQ(::stat(QFile::encodeName(scratch.Path()).constData(), &file), 0);
  ASSERT_EQ(::stat(QFile::encodeName(QFileInfo(scratch.Path()).path()).constData(), &folder), 0);
  EXPECT_EQ(file.st_mode & Rights, S_IRUSR | S_IWUSR);
  EXPECT_EQ(folder.st_mode & Rights, S_IRWXU);
  EXPECT_EQ(file.st_uid, ::geteuid());
}

// A file of this process can grow to so many bytes only, as on a full disk.
class LargestFile {
 public:
  explicit LargestFile(rlim_t bytes) : handler_(std::signal(SIGXFSZ, SIG_IGN)) {
    ::getrlimit(RLIMIT_FSIZE, &before_);
    const rlimit limit{bytes, before_.rlim_max};
    ::setrlimit(RLIMIT_FSIZE, &limit);
  }
  ~LargestFile() {
    ::setrlimit(RLIMIT_FSIZE, &before_);
    std::signal(SIGXFSZ, handler_);
  }
  LargestFile(const LargestFile&) = delete;
  LargestFile& operator=(const LargestFile&) = delete;

 private:
  rlimit before_{};
  void (*handler_)(int);
};

TEST(ScratchFileTest, LeavesNothingWhereTheDiskIsFull) {
  const TemporaryFolder temporary;
  QString path;
  {
    const LargestFile largest(4096);
    const ScratchFile scratch(QByteArray(100'000, 'x'));
    path = scratch.Path();
  }
  EXPECT_EQ(path, QString());
  EXPECT_EQ(temporary.Entries(), QStringList());
}

// Runs in a process of its own and gives its exit status; -1 where it ended otherwise.
template <typename Work>
int StatusOf(Work work) {
  const pid_t child = ::fork();
  if (child == 0) ::_exit(work());
  int status = 0;
  if (child < 0 || ::waitpid(child, &status, 0) != child || !WIFEXITED(status)) return -1;
  return WEXITSTATUS(status);
}

TEST(ScratchFileTest, OfASecondProgramIsAnotherOne) {
  const TemporaryFolder temporary;
  const ScratchFile scratch("Inhalt");
  EXPECT_EQ(StatusOf([&] {
              const ScratchFile other("anderer Inhalt");
              const bool isOwn = ContentOf(other.Path()) == "anderer Inhalt";
              return isOwn && other.Path() != scratch.Path() ? 0 : 1;
            }),
            0);
  EXPECT_EQ(ContentOf(scratch.Path()), QByteArray("Inhalt"));
}

// Makes the kernel refuse this process a file in memory, as one without such files does.
bool RefuseMemoryFiles() {
  std::array<sock_filter, 4> program{{
      BPF_STMT(BPF_LD | BPF_W | BPF_ABS, offsetof(seccomp_data, nr)),
      BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, SYS_memfd_create, 0, 1),
      BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ERRNO | ENOSYS),
      BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ALLOW),
  }};
  const sock_fprog filter{static_cast<unsigned short>(program.size()), program.data()};
  return ::prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) == 0 &&
         ::prctl(PR_SET_SECCOMP, SECCOMP_MODE_FILTER, &filter) == 0;
}

TEST(ScratchFileTest, StandsInWhereTheSystemHasNoFileInMemory) {
  constexpr int CannotRefuse = 77;
  const TemporaryFolder temporary;
  const QByteArray member = test::Gzip("Text");
  const int status = StatusOf([&] {
    if (!RefuseMemoryFiles()) return CannotRefuse;
    const Gunzipped output = Gunzip(member, Limits, GunzipStorage::PrivateFile);
    return output.outcome == GunzipOutcome::Complete && output.bytes == "Text" ? 0 : 1;
  });
  if (status == CannotRefuse) GTEST_SKIP() << "the kernel filters no system calls";
  EXPECT_EQ(status, 0);
  EXPECT_EQ(temporary.Entries(), QStringList());
}

#endif

}  // namespace
}  // namespace kartocheck
