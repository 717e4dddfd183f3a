#include "protocol/private_memory.h"

#include <windows.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <malloc.h>
#include <sddl.h>

// The linker leads every free and realloc of what is linked into the program here, those of the C++
// library (delete) and of static libraries among them. Not covered: what the system's and other
// DLLs free in heaps of their own, and memory that was asked for with an alignment beyond the usual
// one.
extern "C" {

// NOLINTBEGIN(bugprone-reserved-identifier): the linker's names
void __real_free(void* memory);

void __wrap_free(void* memory) {
  if (memory == nullptr) return;
  ::SecureZeroMemory(memory, ::_msize(memory));
  __real_free(memory);
}

// Moves always: the C library's would leave the old place as it is.
void* __wrap_realloc(void* memory, std::size_t size) {
  if (memory == nullptr) return std::malloc(size);
  if (size == 0) {
    __wrap_free(memory);
    return nullptr;
  }
  void* const moved = std::malloc(size);
  if (moved == nullptr) return nullptr;
  std::memcpy(moved, memory, std::min(size, ::_msize(memory)));
  __wrap_free(memory);
  return moved;
}
// NOLINTEND(bugprone-reserved-identifier)
}

namespace ctapi {

namespace {

// Ends a process that crashes without a word to the error reporting, which would write an image of
// it.
LONG WINAPI EndQuietly(EXCEPTION_POINTERS* /*exception*/) {
  return EXCEPTION_EXECUTE_HANDLER;
}

// The report of a crash that gets written all the same is to leave out what stood in memory.
void LeaveMemoryOutOfReports() {
  using SetFlags = HRESULT(WINAPI*)(DWORD);
  constexpr DWORD WithoutHeap = 1;
  const auto setFlags = reinterpret_cast<SetFlags>(
      reinterpret_cast<void*>(::GetProcAddress(::GetModuleHandleW(L"kernel32"), "WerSetFlags")));
  if (setFlags != nullptr) (void)setFlags(WithoutHeap);
}

// Others may wait for the process, end it and ask for its name and its times; the system may do
// all. The last entry keeps its owner from giving itself more.
void RefuseLooks() {
  constexpr const wchar_t* Rules = L"D:P(A;;0x121401;;;WD)(A;;GA;;;SY)(A;;0x121401;;;OW)";
  PSECURITY_DESCRIPTOR descriptor = nullptr;
  if (!::ConvertStringSecurityDescriptorToSecurityDescriptorW(Rules, SDDL_REVISION_1, &descriptor,
                                                              nullptr)) {
    return;
  }
  (void)::SetKernelObjectSecurity(::GetCurrentProcess(), DACL_SECURITY_INFORMATION, descriptor);
  ::LocalFree(descriptor);
}

}  // namespace

void KeepMemoryPrivate() {
  ::SetErrorMode(SEM_FAILCRITICALERRORS | SEM_NOGPFAULTERRORBOX);
  LeaveMemoryOutOfReports();
  ::SetUnhandledExceptionFilter(&EndQuietly);
  RefuseLooks();
}

}  // namespace ctapi
