// The table of the platform layer's operations, by system module.
#include <strings.h>

#include "module.h"

namespace host {
namespace {

struct Operation {
  const char* module;
  const char* name;
  void* address;
};

#define UT_ENTRY(module, name, bytes) {#module ".dll", #name, reinterpret_cast<void*>(&::name)},
const Operation kOperations[] = {
#include <imports.inc>
};
#undef UT_ENTRY

}  // namespace

void* FindPlatformOperation(std::string_view module, std::string_view name) {
  for (const auto& operation : kOperations) {
    // The name of a system module counts without regard to case.
    if (name == operation.name && strcasecmp(std::string(module).c_str(), operation.module) == 0) {
      return operation.address;
    }
  }
  return nullptr;
}

}  // namespace host
