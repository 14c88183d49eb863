// Takes the platform layer's place (the linker's --wrap).
// LocalAlloc is put straight on top of malloc: the layer's own keeps every block that was freed, to
// look for misuse, and would be measured along with the library.
#include "platform.h"

#include <win32.h>

#include <cstdlib>
#include <cstring>

#include "bench.h"

namespace {

std::vector<bench::PlatformCall>* record = nullptr;

}  // namespace

// The DLL keeps the stack 4-byte aligned only.
#define BENCH_STAND_IN extern "C" __attribute__((force_align_arg_pointer))

extern "C" int UT_API __real_lstrlenA(LPCSTR);
extern "C" LPSTR UT_API __real_lstrcpyA(LPSTR, LPCSTR);
extern "C" LPSTR UT_API __real_CharNextA(LPCSTR);

BENCH_STAND_IN int UT_API __wrap_lstrlenA(LPCSTR psz) {
  if (record != nullptr) record->push_back({bench::PlatformCall::kLength, psz, psz});
  return __real_lstrlenA(psz);
}

BENCH_STAND_IN LPSTR UT_API __wrap_lstrcpyA(LPSTR pszDest, LPCSTR pszSource) {
  if (record != nullptr) record->push_back({bench::PlatformCall::kCopy, pszSource, pszSource});
  return __real_lstrcpyA(pszDest, pszSource);
}

BENCH_STAND_IN LPSTR UT_API __wrap_CharNextA(LPCSTR psz) {
  if (record != nullptr) {
    record->push_back({bench::PlatformCall::kNext, psz, std::string(psz, strnlen(psz, 2))});
  }
  return __real_CharNextA(psz);
}

BENCH_STAND_IN HANDLE UT_API __wrap_LocalAlloc(UINT uFlags, SIZE_T cbBlock) {
  if (record != nullptr)
    record->push_back({bench::PlatformCall::kBlock, {}, std::string(cbBlock, 0)});
  return uFlags & LMEM_ZEROINIT ? std::calloc(1, cbBlock) : std::malloc(cbBlock);
}

BENCH_STAND_IN HANDLE UT_API __wrap_LocalFree(HANDLE hBlock) {
  std::free(hBlock);
  return nullptr;
}

namespace bench {

void PlatformCalls::Start() {
  calls_.clear();
  record = &calls_;
}

void PlatformCalls::Stop() {
  record = nullptr;
  std::size_t copied = 0;
  for (auto& call : calls_) {
    const auto& text = call.text;
    if (call.operation == PlatformCall::kBlock) continue;
    if (call.operation == PlatformCall::kCopy) copied += text.size() + 1;
    if (std::strncmp(call.source, text.c_str(), text.size() + 1) != 0) call.source = text.c_str();
  }
  target_.resize(copied);
}

void PlatformCalls::Make() {
  char* target = target_.data();
  for (const auto& call : calls_) {
    switch (call.operation) {
      case PlatformCall::kLength:
        lstrlenA(call.source);
        break;
      case PlatformCall::kCopy:
        lstrcpyA(target, call.source);
        target += call.text.size() + 1;
        break;
      case PlatformCall::kNext:
        CharNextA(call.source);
        break;
      case PlatformCall::kBlock:
        LocalFree(LocalAlloc(LMEM_ZEROINIT, static_cast<SIZE_T>(call.text.size())));
        break;
    }
  }
}

void PlatformCalls::Walk() const {
  for (const auto& call : calls_) asm volatile("" : : "r"(call.operation), "r"(call.source));
}

}  // namespace bench
