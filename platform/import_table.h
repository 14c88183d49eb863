// A table of functions by the names that an image imports them under.
#ifndef PLATFORM_IMPORT_TABLE_H
#define PLATFORM_IMPORT_TABLE_H

#include <strings.h>

#include <span>
#include <string>
#include <string_view>

namespace host {

struct Importable {
  const char* module;
  const char* name;
  void* address;
};

// What a line of a generated table of operations stands for.
#define UT_IMPORTABLE(module, name, bytes) \
  {#module ".dll", #name, reinterpret_cast<void*>(&::name)},

// NULL if the table has no such function. The name of the module counts without regard to case.
inline void* FindIn(std::span<const Importable> table, std::string_view module,
                    std::string_view name) {
  for (const auto& entry : table) {
    if (name == entry.name && strcasecmp(std::string(module).c_str(), entry.module) == 0) {
      return entry.address;
    }
  }
  return nullptr;
}

}  // namespace host

#endif  // PLATFORM_IMPORT_TABLE_H
