#include <algorithm>
#include <cstring>
#include <map>

#include "windows_system.h"

namespace windows {

HMODULE Library() { return GetModuleHandleA("TAVKIT.DLL"); }

const IMAGE_NT_HEADERS& HeadersOf(HMODULE hModule) {
  const auto* const base = reinterpret_cast<const BYTE*>(hModule);
  return *reinterpret_cast<const IMAGE_NT_HEADERS*>(
      base + reinterpret_cast<const IMAGE_DOS_HEADER*>(base)->e_lfanew);
}

void ReplaceImports(HMODULE hModule, const Replacement& replacement) {
  auto* const base = reinterpret_cast<BYTE*>(hModule);
  const auto* const directories = HeadersOf(hModule).OptionalHeader.DataDirectory;
  const auto imported = directories[IMAGE_DIRECTORY_ENTRY_IMPORT].VirtualAddress;
  auto* imports = reinterpret_cast<IMAGE_IMPORT_DESCRIPTOR*>(base + imported);
  for (; imports->Name != 0; ++imports) {
    std::string module = reinterpret_cast<char*>(base + imports->Name);
    std::transform(module.begin(), module.end(), module.begin(), tolower);
    auto* names = reinterpret_cast<IMAGE_THUNK_DATA*>(base + imports->OriginalFirstThunk);
    auto* slots = reinterpret_cast<void**>(base + imports->FirstThunk);
    for (; names->u1.AddressOfData != 0; ++names, ++slots) {
      const auto* const byName =
          reinterpret_cast<IMAGE_IMPORT_BY_NAME*>(base + names->u1.AddressOfData);
      const auto name = IMAGE_SNAP_BY_ORDINAL(names->u1.Ordinal)
                            ? '#' + std::to_string(IMAGE_ORDINAL(names->u1.Ordinal))
                            : std::string(reinterpret_cast<const char*>(byName->Name));
      DWORD protection;
      VirtualProtect(slots, sizeof *slots, PAGE_READWRITE, &protection);
      *slots = replacement(module, name, *slots);
      VirtualProtect(slots, sizeof *slots, protection, &protection);
    }
  }
}

namespace {

// Counts, and jumps on to what it stands for. `inc` and `jmp` reach the count and the target by
// their address at 32 bits, by the distance at 64.
struct Counter {
  void* target;
  DWORD count = 0;
  BYTE code[12] = {0xFF, 0x05, 0, 0, 0, 0, 0xFF, 0x25, 0, 0, 0, 0};

  explicit Counter(void* function) : target(function) {
    Point(2, &count);
    Point(8, &target);
  }
  void Point(int at, const void* to) {
    const auto base = sizeof(void*) == 4 ? 0 : reinterpret_cast<INT_PTR>(code + at + 4);
    const auto distance = static_cast<LONG>(reinterpret_cast<INT_PTR>(to) - base);
    std::memcpy(code + at, &distance, sizeof distance);
  }
};

struct Export {
  const char* name;
  Counter* counter = nullptr;
};

// By the name and by the ordinal.
std::map<std::string, Export*>& Exports() {
#define UT_ENTRY(ordinal, name, bytes) {#ordinal, {#name}},
  static std::map<std::string, Export> byOrdinal = {
#include <exports.inc>
  };
#undef UT_ENTRY
  static std::map<std::string, Export*> exports = [] {
    std::map<std::string, Export*> both;
    for (auto& [ordinal, entry] : byOrdinal) both['#' + ordinal] = both[entry.name] = &entry;
    return both;
  }();
  return exports;
}

}  // namespace

void CountCalls() {
  auto* memory = static_cast<Counter*>(VirtualAlloc(nullptr, Exports().size() * sizeof(Counter),
                                                    MEM_COMMIT, PAGE_EXECUTE_READWRITE));
  ReplaceImports(GetModuleHandleA(nullptr), [&](auto& module, auto& name, void* address) -> void* {
    if (module != "tavkit.dll") return address;
    auto*& counter = Exports().at(name)->counter;
    counter = new (memory++) Counter(address);
    return counter->code;
  });
}

std::string Uncalled() {
  std::string names;
  for (const auto& [key, entry] : Exports()) {
    const bool isCalled = entry->counter != nullptr && entry->counter->count != 0;
    if (key[0] == '#' && !isCalled) names += (names.empty() ? "" : ", ") + std::string(entry->name);
  }
  return names;
}

}  // namespace windows
