#include <QClipboard>
#include <QGuiApplication>

#include <array>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <fstream>
#include <gtest/gtest.h>
#include <sstream>
#include <string>
#include <string_view>
#include <sys/mman.h>
#include <unistd.h>
#include <vector>

#include "gui/support/library_program.h"
#include "support/printing.h"

// Nothing of a card stays in the memory of the program once its data have been reset. The cards are
// in another process, that of the library, so that what is found is the program's.

namespace kartocheck::test {
namespace {

// The name of the insured person in this folder's scenario, so that this program does not hold it:
// each letter is one behind its own. Too long for what std::string keeps in itself, on the stack.
std::string DistinctiveName() {
  std::string name = "Rvbs{gbmufsjoofotufjo";
  for (char& letter : name) --letter;
  return name;
}

std::string Hexadecimal(std::string_view bytes) {
  constexpr std::string_view Digits = "0123456789ABCDEF";
  std::string text;
  for (const char byte : bytes) {
    const auto value = static_cast<unsigned char>(byte);
    text += Digits[value >> 4U];
    text += Digits[value & 0xFU];
  }
  return text;
}

std::string Wide(std::string_view text) {
  std::string wide;
  for (const char character : text) {
    wide += character;
    wide += '\0';
  }
  return wide;
}

// The forms in which the name goes through the program.
std::vector<std::string> FormsOfTheName() {
  const std::string name = DistinctiveName();
  return {name, Wide(name), Hexadecimal(name), Wide(Hexadecimal(name))};
}

// Memory that the search itself works in, and does not search.
class Workspace {
 public:
  explicit Workspace(std::size_t size)
      : size_(size),
        memory_(static_cast<char*>(
            ::mmap(nullptr, size, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0))) {}
  ~Workspace() { ::munmap(memory_, size_); }
  Workspace(const Workspace&) = delete;
  Workspace& operator=(const Workspace&) = delete;

  [[nodiscard]] char* Memory() const { return memory_; }
  [[nodiscard]] std::size_t Size() const { return size_; }
  [[nodiscard]] bool Holds(std::uintptr_t address) const {
    const auto begin = reinterpret_cast<std::uintptr_t>(memory_);
    return address >= begin && address < begin + size_;
  }

 private:
  std::size_t size_;
  char* memory_;
};

// Where one of the forms stands in the writable memory of this process, besides here.
std::vector<std::string> PlacesOf(const std::vector<std::string>& forms) {
  constexpr std::size_t Piece = 1 << 20;
  const Workspace workspace(Piece);
  const int memory = ::open("/proc/self/mem", O_RDONLY | O_CLOEXEC);
  if (memory < 0) throw std::runtime_error("no access to the own memory");

  std::vector<std::string> places;
  std::ifstream maps("/proc/self/maps");
  for (std::string line; std::getline(maps, line);) {
    unsigned long begin = 0;
    unsigned long end = 0;
    std::array<char, 5> rights{};
    if (std::sscanf(line.c_str(), "%lx-%lx %4s", &begin, &end, rights.data()) != 3) continue;
    if (rights[1] != 'w' || workspace.Holds(begin)) continue;
    for (unsigned long at = begin; at < end; at += Piece) {
      const std::size_t wanted = std::min<std::size_t>(Piece, end - at);
      const ssize_t count = ::pread(memory, workspace.Memory(), wanted, static_cast<off_t>(at));
      if (count <= 0) continue;
      const std::string_view piece(workspace.Memory(), static_cast<std::size_t>(count));
      for (std::size_t form = 0; form < forms.size(); ++form) {
        std::size_t found = piece.find(forms[form]);
        for (; found != std::string_view::npos; found = piece.find(forms[form], found + 1)) {
          const bool isTheFormItself =
              at + found == reinterpret_cast<std::uintptr_t>(forms[form].data());
          if (isTheFormItself) continue;
          std::ostringstream place;
          place << "form " << form << " at " << std::hex << at + found << " in " << line;
          places.push_back(place.str());
        }
      }
    }
  }
  ::close(memory);
  return places;
}

// The scenario is named before the library's process starts, with the first call.
class WindowMemoryTest : public testing::Test, public LibraryProgram {
 protected:
  WindowMemoryTest() : LibraryProgram(SIMULATOR_LIBRARY, std::chrono::seconds(5)) {
    ::setenv("KARTOCHECK_SCENARIO", MEMORY_SCENARIO, 1);
  }

  void Read(int slot) {
    screen.Click(QStringLiteral("Opti_Comx_%1").arg(slot - 1));
    screen.Click(QStringLiteral("CmdB_MKt_Test_3"));
    QCoreApplication::processEvents();
  }
};

class CardMemoryTest : public WindowMemoryTest, public testing::WithParamInterface<int> {};

TEST_P(CardMemoryTest, HoldsNothingOfACardAfterItsResetAndAFurtherRead) {
  constexpr int OtherCard = 3;
  Read(GetParam());
  EXPECT_EQ(screen.Text(QStringLiteral("Labl_Wert_9")).toStdString(), DistinctiveName());
  EXPECT_FALSE(PlacesOf(FormsOfTheName()).empty()) << "the search finds what is there";
  screen.Click(QStringLiteral("CmdB_MKt_Test_5"));
  Read(OtherCard);
  EXPECT_EQ(screen.Text(QStringLiteral("Labl_Wert_9")), u"Größl");

  for (const std::string& place : PlacesOf(FormsOfTheName())) ADD_FAILURE() << place;
}

// The documents of an eGK go through many hands: decompressed, parsed, shown.
TEST_F(WindowMemoryTest, HoldsNothingOfItRightAfterTheReset) {
  constexpr int Egk = 1;
  Read(Egk);
  screen.Click(QStringLiteral("cmdeGK"));
  SideWindow(QStringLiteral("Form_egK_Info")).close();
  screen.Click(QStringLiteral("CmdB_MKt_Test_5"));
  // What is drawn anew, and windows that are closed.
  QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  QCoreApplication::processEvents();

  for (const std::string& place : PlacesOf(FormsOfTheName())) ADD_FAILURE() << place;
}

// An eGK and a KVK.
INSTANTIATE_TEST_SUITE_P(Gui, CardMemoryTest, testing::Values(1, 2));

}  // namespace
}  // namespace kartocheck::test
