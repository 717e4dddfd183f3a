#include "protocol/private_memory.h"

#include <windows.h>

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <gtest/gtest.h>
#include <string>

#include "protocol/windows/handle.h"
#include "support/windows/wine.h"

namespace ctapi {
namespace {

constexpr std::size_t Size = 200'000;  // beyond what a heap would hand out again at once
constexpr unsigned char Secret = 0x5A;

// How many bytes of a block that was given back still hold what stood there, as far as the memory
// can be read at all.
std::size_t Remains(std::uintptr_t block) {
  std::string copy(Size, '\0');
  SIZE_T count = 0;
  ::ReadProcessMemory(::GetCurrentProcess(), reinterpret_cast<void*>(block), copy.data(), Size,
                      &count);
  return static_cast<std::size_t>(std::count(copy.begin(), copy.end(), static_cast<char>(Secret)));
}

TEST(PrivateMemory, IsOverwrittenWhenItIsFreed) {
  void* const block = std::malloc(Size);
  const auto address = reinterpret_cast<std::uintptr_t>(block);
  std::memset(block, Secret, Size);
  ASSERT_EQ(Remains(address), Size);
  std::free(block);
  EXPECT_EQ(Remains(address), 0U);
}

TEST(PrivateMemory, IsOverwrittenWhenItIsDeleted) {
  auto* const block = new std::string(Size, static_cast<char>(Secret));
  const auto address = reinterpret_cast<std::uintptr_t>(block->data());
  ASSERT_EQ(Remains(address), Size);
  delete block;
  EXPECT_EQ(Remains(address), 0U);
}

TEST(PrivateMemory, IsOverwrittenWhereItMoved) {
  void* const block = std::malloc(Size);
  const auto address = reinterpret_cast<std::uintptr_t>(block);
  std::memset(block, Secret, Size);
  auto* const moved = static_cast<unsigned char*>(std::realloc(block, 2 * Size));
  EXPECT_EQ(std::count(moved, moved + Size, Secret), static_cast<std::ptrdiff_t>(Size));
  EXPECT_EQ(Remains(address), 0U);
  std::free(moved);
}

TEST(PrivateMemory, CanBeAskedForAndFreedAtTheEdges) {
  std::free(nullptr);
  void* const block = std::realloc(nullptr, 10);
  ASSERT_NE(block, nullptr);
  EXPECT_EQ(std::realloc(block, 0), nullptr);
}

TEST(PrivateMemory, IsNotReadByOtherProcesses) {
  const DWORD self = ::GetCurrentProcessId();
  ASSERT_TRUE(Handle(::OpenProcess(PROCESS_VM_READ, FALSE, self)).IsOpen());
  KeepMemoryPrivate();
  EXPECT_FALSE(Handle(::OpenProcess(PROCESS_VM_READ, FALSE, self)).IsOpen());
  EXPECT_FALSE(Handle(::OpenProcess(PROCESS_DUP_HANDLE, FALSE, self)).IsOpen());
  // Wine does not know that an owner's rights can be named.
  if (!kartocheck::test::IsWine()) {
    EXPECT_FALSE(Handle(::OpenProcess(WRITE_DAC, FALSE, self)).IsOpen());
  }
  EXPECT_TRUE(Handle(::OpenProcess(SYNCHRONIZE, FALSE, self)).IsOpen()) << "to wait for its end";
}

}  // namespace
}  // namespace ctapi
