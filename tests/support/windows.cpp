// The tests' surroundings on Windows.
#include <gtest/gtest.h>
#include <windows_system.h>

#include <cstdlib>
#include <cstring>

#include "support/entry.h"
#include "support/repeated_text.h"
#include "support/surroundings.h"

namespace test {

void StayOnHostLayer(const char* need) {
  const testing::TestPartResult result(testing::TestPartResult::kSkip, __FILE__, __LINE__, need);
  testing::internal::AssertHelper(result.type(), __FILE__, __LINE__, need) = testing::Message();
  throw testing::AssertionException(result);
}

unsigned char* ReservePages(std::size_t size) {
  void* const pages = VirtualAlloc(nullptr, size, MEM_RESERVE, PAGE_NOACCESS);
  if (pages == nullptr) std::abort();
  return static_cast<unsigned char*>(pages);
}

void OpenPages(unsigned char* pages, std::size_t size) {
  if (VirtualAlloc(pages, size, MEM_COMMIT, PAGE_READWRITE) == nullptr) std::abort();
}

char* RepeatedText(std::size_t) {
  StayOnHostLayer("strings of gigabytes");
  return nullptr;
}

namespace {

BYTE* Dll() { return reinterpret_cast<BYTE*>(windows::Library()); }

// Says where in the DLL a test crashes.
LONG WINAPI EndAfterException(EXCEPTION_POINTERS* exception) {
  const auto* const place = static_cast<BYTE*>(exception->ExceptionRecord->ExceptionAddress);
  std::printf("signal %lX at TAVKIT.DLL+0x%zx\n", exception->ExceptionRecord->ExceptionCode,
              static_cast<std::size_t>(place - Dll()));
  std::fflush(stdout);
  TerminateProcess(GetCurrentProcess(), 3);
  return EXCEPTION_CONTINUE_SEARCH;
}

// Where the library lies, and that the tests have called all of it.
class WholeLibrary : public testing::Environment {
  void SetUp() override {
    const auto preferred = reinterpret_cast<HMODULE>(TAVKIT_PREFERRED_ADDRESS);
    const bool isTaken = GetModuleHandleA(nullptr) == preferred;
    EXPECT_EQ(windows::Library() != preferred, isTaken) << "the library was moved";
  }
  void TearDown() override {
    if (testing::GTEST_FLAG(filter) == "*")
      EXPECT_EQ(windows::Uncalled(), "") << "not called by any test";
  }
};

// Before the tests' own variables take the addresses of exports.
struct Early {
  Early() { windows::CountCalls(); }
} const early __attribute__((init_priority(101)));

}  // namespace

BOOL CallModuleEntry(HMODULE hModule, DWORD dwReason) {
  using Entry = BOOL(WINAPI*)(HMODULE, DWORD, LPVOID);
  const auto entry =
      Dll() + windows::HeadersOf(windows::Library()).OptionalHeader.AddressOfEntryPoint;
  return reinterpret_cast<Entry>(entry)(hModule, dwReason, nullptr);
}

HMODULE StoredModuleHandle() {
  auto* section = IMAGE_FIRST_SECTION(&windows::HeadersOf(windows::Library()));
  while (std::strcmp(reinterpret_cast<char*>(section->Name), ".data") != 0) ++section;
  return *reinterpret_cast<HMODULE*>(Dll() + section->VirtualAddress);
}

bool Connect() {
  SetUnhandledExceptionFilter(EndAfterException);
  windows::onMissingControl = StayOnHostLayer;
  windows::WatchOperations();
  testing::AddGlobalTestEnvironment(new WholeLibrary);
  std::printf("TAVKIT.DLL at %p, code page %u\n", static_cast<void*>(Dll()), GetACP());
  return true;
}

}  // namespace test
