// Each operation that the library imports, behind a function that asks the controls of host.h
// first.
#include <host.h>

#include <algorithm>
#include <cstring>

#include "windows_system.h"

namespace windows {

LONG livingBlocks, livingKeys, refusedBlocks;

namespace {

#define UT_ENTRY(module, name, bytes)           \
  struct Of##name {                             \
    static constexpr const char* kName = #name; \
  };
#include <imports.inc>
#undef UT_ENTRY

// Operations that report no failure.
template <class Operation>
bool CanFail() {
  constexpr const char* kOthers[] = {"CharNextA", "CharPrevA", "LocalFree",
                                     "lstrcmpA",  "lstrcmpW",  "lstrcmpiW"};
  return std::none_of(std::begin(kOthers), std::end(kOthers),
                      [](const char* name) { return std::strcmp(name, Operation::kName) == 0; });
}

// Keeps the books of what was given and given back; of most operations there is nothing to note.
template <class Operation>
struct Books {
  static void Note(...) {}
};

template <>
struct Books<OfLocalAlloc> {
  static constexpr BYTE kUninitialised = 0xA5;  // what no test takes for zero

  static void Note(HLOCAL hBlock, UINT uFlags, SIZE_T cb) {
    if (hBlock == nullptr) return;
    InterlockedIncrement(&livingBlocks);
    if (!(uFlags & LMEM_ZEROINIT)) std::memset(hBlock, kUninitialised, cb);
  }
};
template <>
struct Books<OfLocalFree> {
  static void Note(HLOCAL hLeft, HLOCAL hBlock) {
    if (hLeft != nullptr) InterlockedIncrement(&refusedBlocks);
    if (hLeft == nullptr && hBlock != nullptr) InterlockedDecrement(&livingBlocks);
  }
};
struct OpeningBooks {
  template <class... Arguments>
  static void Note(LONG code, Arguments...) {
    if (code == ERROR_SUCCESS) InterlockedIncrement(&livingKeys);
  }
};
template <>
struct Books<OfRegOpenKeyExA> : OpeningBooks {};
template <>
struct Books<OfRegCreateKeyExA> : OpeningBooks {};
template <>
struct Books<OfRegCloseKey> {
  static void Note(LONG code, HKEY) {
    if (code == ERROR_SUCCESS) InterlockedDecrement(&livingKeys);
  }
};

template <class Operation, class Function>
struct Watched;

template <class Operation, class Result, class... Arguments>
struct Watched<Operation, Result(WINAPI*)(Arguments...)> {
  static inline Result(WINAPI* system)(Arguments...);

  static Result WINAPI Call(Arguments... arguments) {
    bool fails = false;
    if (CanFail<Operation>()) {
      fails = host::Fails(Operation::kName, arguments...);
    } else {
      host::Enter(Operation::kName, arguments...);
    }
    // A key is closed all the same.
    if (fails && !std::is_same_v<Operation, OfRegCloseKey>) return Failure();
    const Result result = system(arguments...);
    Books<Operation>::Note(result, arguments...);
    return fails ? Failure() : result;
  }

 private:
  static Result Failure() {
    if constexpr (std::is_pointer_v<Result>) {
      return nullptr;
    } else {
      return static_cast<Result>(host::FailureCode());
    }
  }
};

#define UT_ENTRY(module, name, bytes) using Watched##name = Watched<Of##name, decltype(&::name)>;
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
  ReplaceImports(Library(), watch);
}

}  // namespace windows
