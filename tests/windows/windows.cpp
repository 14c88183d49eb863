// The controls of the platform layer, and what else the tests ask of the system, on Windows.
#include <codepage.h>
#include <file_time.h>
#include <gtest/gtest.h>
#include <heap.h>
#include <host.h>
#include <registry.h>
#include <user_locale.h>
#include <version.h>

#include <cstdlib>
#include <cstring>

#include "imports.h"
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

BYTE* Dll() { return reinterpret_cast<BYTE*>(GetModuleHandleA("TAVKIT.DLL")); }
IMAGE_NT_HEADERS* Headers() {
  return reinterpret_cast<IMAGE_NT_HEADERS*>(Dll() +
                                             reinterpret_cast<IMAGE_DOS_HEADER*>(Dll())->e_lfanew);
}

LONG WINAPI EndAfterException(EXCEPTION_POINTERS* exception) {
  const auto* const place = static_cast<BYTE*>(exception->ExceptionRecord->ExceptionAddress);
  std::printf("signal %lX at TAVKIT.DLL+0x%zx\n", exception->ExceptionRecord->ExceptionCode,
              static_cast<std::size_t>(place - Dll()));
  std::fflush(stdout);
  TerminateProcess(GetCurrentProcess(), 3);
  return EXCEPTION_CONTINUE_SEARCH;
}

class EveryExport : public testing::Environment {
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
  const auto entry = Dll() + Headers()->OptionalHeader.AddressOfEntryPoint;
  return reinterpret_cast<Entry>(entry)(hModule, dwReason, nullptr);
}

HMODULE StoredModuleHandle() {
  auto* section = IMAGE_FIRST_SECTION(Headers());
  while (std::strcmp(reinterpret_cast<char*>(section->Name), ".data") != 0) ++section;
  return *reinterpret_cast<HMODULE*>(Dll() + section->VirtualAddress);
}

bool Connect() {
  SetUnhandledExceptionFilter(EndAfterException);
  windows::WatchOperations();
  testing::AddGlobalTestEnvironment(new EveryExport);
  std::printf("TAVKIT.DLL at %p, code page %u\n", static_cast<void*>(Dll()), GetACP());
  return true;
}

}  // namespace test

namespace host {

void Reset() {
  ResetControls();
  for (auto* count : {&windows::livingBlocks, &windows::livingKeys, &windows::wrongFrees})
    *count = 0;
  RegDeleteTreeA(HKEY_CURRENT_USER, "Software\\Brindlex");
}

std::size_t LivingBlocks() { return windows::livingBlocks; }
std::size_t LivingKeyHandles() { return windows::livingKeys; }
std::string HeapError() {
  if (windows::wrongFrees != 0) return "the system refused to free a block";
  return HeapValidate(GetProcessHeap(), 0, nullptr) ? "" : "the heap is damaged";
}

// The environment chooses these for the whole process.
bool SetCodePage(unsigned codePage) { return codePage == GetACP(); }
unsigned CodePage() { return GetACP(); }
bool IsLeadByte(unsigned char byte) { return IsDBCSLeadByte(byte) != 0; }
void SetZoneBias(int) {}

void SetTimeSuccess(BOOL) { test::StayOnHostLayer("what time conversions answer"); }
void SetLocaleText(LCTYPE, const std::string&) { test::StayOnHostLayer("the text of a setting"); }
void SetVersion(DWORD, DWORD) { test::StayOnHostLayer("the system's version"); }

}  // namespace host
