#include "helper/shared_library.h"

#include <windows.h>

#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>

#include "helper/library.h"
#include "protocol/windows/wide_text.h"

namespace ctapi::helper {
namespace {

namespace fs = std::filesystem;

std::string Utf8(const fs::path& path) {
  return Utf8Text(path.wstring());
}

// A folder of the test's own, whose name no code page holds.
class SharedLibraryTest : public testing::Test {
 protected:
  SharedLibraryTest()
      : folder_(fs::temp_directory_path() /
                (L"kartocheck-\u00E4\u0416-" + std::to_wstring(::GetCurrentProcessId()))) {
    fs::create_directories(folder_);
  }
  ~SharedLibraryTest() override {
    std::error_code ignored;  // loaded libraries stay
    fs::remove_all(folder_, ignored);
  }

  [[nodiscard]] fs::path Copy(const char* library, const wchar_t* name) const {
    fs::copy_file(library, folder_ / name);
    return folder_ / name;
  }

  [[nodiscard]] fs::path Write(const wchar_t* name, const std::string& content) const {
    std::ofstream(folder_ / name, std::ios::binary) << content;
    return folder_ / name;
  }

  fs::path folder_;
};

LoadFailure FailureOf(const std::string& file) {
  try {
    const SharedLibrary library(file);
    ADD_FAILURE() << file << " was loaded from " << library.File();
  } catch (const LoadFailure& failure) {
    return failure;
  }
  return {};
}

void ExpectFailure(const std::string& file, LoadTrouble trouble, const std::string& detail) {
  const LoadFailure failure = FailureOf(file);
  EXPECT_EQ(failure.Trouble, trouble) << file;
  EXPECT_EQ(failure.Detail, detail);
}

TEST_F(SharedLibraryTest, IsFoundByItsPath) {
  const fs::path file = Copy(WINDOW_LIBRARY, L"found.dll");
  const SharedLibrary library(Utf8(file));
  EXPECT_TRUE(fs::equivalent(fs::path(WideText(library.File())), file));
  EXPECT_TRUE(fs::path(WideText(library.File())).is_absolute());
}

TEST_F(SharedLibraryTest, ThatDoesNotExistIsTold) {
  const std::string file = Utf8(folder_ / "none.dll");
  ExpectFailure(file, LoadTrouble::FileMissing, file);
}

TEST_F(SharedLibraryTest, ThatIsNoneIsTold) {
  for (const fs::path& file :
       {Write(L"text.dll", "no library"), Write(L"empty.dll", ""), Write(L"mz.dll", "MZ"),
        Write(L"half.dll", "MZ" + std::string(58, '\0') + std::string("\xFF\xFF\xFF\x7F", 4))}) {
    ExpectFailure(Utf8(file), LoadTrouble::NotALibrary, Utf8(file));
  }
  ExpectFailure(Utf8(folder_), LoadTrouble::NotALibrary, Utf8(folder_));
}

// The headers of a library of 64 bits, as far as anybody looks.
std::string HeadersOf64Bits() {
  IMAGE_DOS_HEADER dos{};
  dos.e_magic = IMAGE_DOS_SIGNATURE;
  dos.e_lfanew = sizeof dos;
  IMAGE_NT_HEADERS64 headers{};
  headers.Signature = IMAGE_NT_SIGNATURE;
  headers.FileHeader.Machine = IMAGE_FILE_MACHINE_AMD64;
  headers.FileHeader.Characteristics = IMAGE_FILE_DLL | IMAGE_FILE_EXECUTABLE_IMAGE;
  headers.FileHeader.SizeOfOptionalHeader = sizeof headers.OptionalHeader;
  headers.OptionalHeader.Magic = IMAGE_NT_OPTIONAL_HDR64_MAGIC;
  std::string bytes(reinterpret_cast<const char*>(&dos), sizeof dos);
  bytes.append(reinterpret_cast<const char*>(&headers), sizeof headers);
  bytes.resize(4096, '\0');
  return bytes;
}

TEST_F(SharedLibraryTest, OfAnotherWordSizeIsTold) {
  const std::string file = Utf8(Write(L"wide.dll", HeadersOf64Bits()));
  ExpectFailure(file, LoadTrouble::WrongWordSize, file);
}

TEST_F(SharedLibraryTest, ThatNeedsAnotherOneIsToldWithItsName) {
  const std::string file = Utf8(Copy(NEEDING_LIBRARY, L"needing.dll"));
  ExpectFailure(file, LoadTrouble::DependencyMissing, "needed_library.dll");
}

TEST_F(SharedLibraryTest, FindsWhatItNeedsBesideItself) {
  const fs::path file = Copy(NEEDING_LIBRARY, L"needing-all.dll");
  (void)Copy(NEEDED_LIBRARY, L"needed_library.dll");
  const SharedLibrary library(Utf8(file));
  EXPECT_NE(library.Resolve("CTDENRVT1_init"), nullptr);
}

TEST_F(SharedLibraryTest, FindsWhatItLoadsLaterBesideItself) {
  const fs::path file = Copy(LATE_LIBRARY, L"late.dll");
  (void)Copy(NEEDED_LIBRARY, L"part-of-it.dll");
  const SharedLibrary library(Utf8(file));
  const auto loadsItsPart = reinterpret_cast<int (*)()>(library.Resolve("LoadsItsPart"));
  ASSERT_NE(loadsItsPart, nullptr);
  EXPECT_EQ(loadsItsPart(), 1);
}

TEST_F(SharedLibraryTest, OfABareNameIsLookedForInTheSystemsFolderOnly) {
  (void)Copy(WINDOW_LIBRARY, L"kartocheck-bare.dll");
  const fs::path before = fs::current_path();
  fs::current_path(folder_);
  const std::wstring path = _wgetenv(L"PATH");
  ::_wputenv_s(L"PATH", (folder_.wstring() + L';' + path).c_str());
  ExpectFailure("kartocheck-bare.dll", LoadTrouble::FileMissing, "kartocheck-bare.dll");
  ::_wputenv_s(L"PATH", path.c_str());
  fs::current_path(before);

  const SharedLibrary library("version.dll");
  EXPECT_NE(library.Resolve("GetFileVersionInfoSizeW"), nullptr);
}

TEST_F(SharedLibraryTest, ComesBehindCandidatesThatDoNotExist) {
  const fs::path file = Copy(WINDOW_LIBRARY, L"third.dll");
  const SharedLibrary library =
      LoadFirst({"no-such-library.dll", Utf8(folder_ / "none.dll"), Utf8(file)});
  EXPECT_TRUE(fs::equivalent(fs::path(WideText(library.File())), file));
}

class EntryPointNames : public testing::TestWithParam<const char*> {};

TEST_P(EntryPointNames, AreKnownWithTheirMarks) {
  const SharedLibrary library(GetParam());
  for (const char* const name : {"CTDENRVT1_init", "CTDENRVT1_data", "CTDENRVT1_close"}) {
    EXPECT_NE(library.Resolve(name), nullptr) << name;
  }
  EXPECT_EQ(library.Resolve("CTDENRVT1"), nullptr);
  EXPECT_EQ(library.Resolve("KARTOCHECK_port_info"), nullptr);
}

INSTANTIATE_TEST_SUITE_P(Helper, EntryPointNames,
                         testing::Values(SIMULATOR_LIBRARY, WINDOW_LIBRARY, MARKED_LIBRARY));

TEST(EntryPoints, ThatAreMissingAreTold) {
  EXPECT_THROW(Library(SharedLibrary("version.dll")), MissingEntryPoint);
}

TEST(BareName, IsOneWithoutAFolder) {
  EXPECT_TRUE(IsBareName("CTNRV32.dll"));
  for (const char* const path : {"C:CTNRV32.dll", ".\\CTNRV32.dll", "lib/CTNRV32.dll"}) {
    EXPECT_FALSE(IsBareName(path)) << path;
  }
}

}  // namespace
}  // namespace ctapi::helper
