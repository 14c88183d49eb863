// Each operation that the library imports, behind a function that the controls of host.h are asked in.
#include <host.h>

#include <cstring>

#include "imports.h"

namespace windows {
namespace {

constexpr BYTE kUninitialised = 0xA5;  // what a block that isn't asked to be zero holds in tests

template <class Tag, class Function>
struct Watched;

template <class Tag, class Result, class... Arguments>
struct Watched<Tag, Result(WINAPI*)(Arguments...)> {
  static inline Result(WINAPI* system)(Arguments...);

  static Result WINAPI Call(Arguments... arguments) {
    if (!Tag::CanFail()) {
      host::Enter(Tag::kName, arguments...);
    } else if (host::Fails(Tag::kName, arguments...)) {
      if (Is("RegCloseKey")) Note(system(arguments...), arguments...);  // which closes all the same
      return Failure();
    }
    const Result result = system(arguments...);
    Note(result, arguments...);
    return result;
  }

 private:
  static bool Is(const char* name) { return std::strcmp(Tag::kName, name) == 0; }
  static Result Failure() {
    if constexpr (std::is_pointer_v<Result>) {
      return nullptr;
    } else {
      return static_cast<Result>(host::FailureCode());
    }
  }
  // Keeps count of what was given and given back.
  static void Note(Result result, Arguments... arguments) {
    if constexpr (std::is_same_v<Result, HLOCAL> && sizeof...(Arguments) == 2) {
      [&](UINT uFlags, SIZE_T cb) {
        if (result == nullptr) return;
        InterlockedIncrement(&livingBlocks);
        if (!(uFlags & LMEM_ZEROINIT)) std::memset(result, kUninitialised, cb);
      }(arguments...);
    } else if constexpr (std::is_same_v<Result, HLOCAL> && sizeof...(Arguments) == 1) {
      if (result != nullptr) InterlockedIncrement(&wrongFrees);
      if (result == nullptr && ((arguments != nullptr) && ...)) InterlockedDecrement(&livingBlocks);
    } else if constexpr (std::is_same_v<Result, LONG>) {
      if (result != ERROR_SUCCESS) return;
      if (Is("RegOpenKeyExA") || Is("RegCreateKeyExA")) InterlockedIncrement(&livingKeys);
      if (Is("RegCloseKey")) InterlockedDecrement(&livingKeys);
    }
  }
};

bool IsOneOf(std::initializer_list<const char*> names, const char* name) {
  for (const char* other : names)
    if (std::strcmp(name, other) == 0) return true;
  return false;
}

#define UT_ENTRY(module, name, bytes)                                                           \
  struct Tag##name {                                                                            \
    static constexpr const char* kName = #name;                                                 \
    static bool CanFail() {                                                                     \
      return !IsOneOf(                                                                          \
          {"CharNextA", "CharPrevA", "LocalFree", "lstrcmpA", "lstrcmpW", "lstrcmpiW"}, kName); \
    }                                                                                           \
  };                                                                                            \
  using Watched##name = Watched<Tag##name, decltype(&::name)>;
#include <imports.inc>
#undef UT_ENTRY

struct Operation {
  const char* name;
  void* watched;
};

#define UT_ENTRY(module, name, bytes) {#name, reinterpret_cast<void*>(&Watched##name::Call)},
const Operation kOperations[] = {
#include <imports.inc>
};
#undef UT_ENTRY

}  // namespace

void WatchOperations() {
#define UT_ENTRY(module, name, bytes) Watched##name::system = &::name;
#include <imports.inc>
#undef UT_ENTRY
  const auto watch = [](auto&, const std::string& name, void* address) {
    for (const auto& operation : kOperations)
      if (name == operation.name) return operation.watched;
    return address;
  };
  ReplaceImports(GetModuleHandleA(nullptr), watch);
  ReplaceImports(GetModuleHandleA("TAVKIT.DLL"), watch);
}

}  // namespace windows
