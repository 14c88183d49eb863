// The tables of the platform layer's operations, by system module.
#include <strings.h>

#include <algorithm>
#include <iterator>

#include "module.h"
#include "program_operations.h"

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
const Operation kProgramOperations[] = {
#include <program_imports.inc>
};
#undef UT_ENTRY

// The name of a system module counts without regard to case.
bool IsOf(const Operation& operation, std::string_view module) {
  return strcasecmp(std::string(module).c_str(), operation.module) == 0;
}

void* Find(std::span<const Operation> operations, std::string_view module, std::string_view name) {
  for (const auto& operation : operations) {
    if (name == operation.name && IsOf(operation, module)) return operation.address;
  }
  return nullptr;
}

}  // namespace

void* FindPlatformOperation(std::string_view module, std::string_view name) {
  return Find(kOperations, module, name);
}

void* FindProgramOperation(std::string_view module, std::string_view name) {
  return Find(kProgramOperations, module, name);
}

bool IsSystemModule(std::string_view module) {
  return std::any_of(std::begin(kOperations), std::end(kOperations),
                     [=](const auto& operation) { return IsOf(operation, module); });
}

}  // namespace host
