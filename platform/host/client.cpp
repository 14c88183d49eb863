#include "client.h"

// One slot for each ordinal, and under each export's name a jump through its slot. The jump leaves
// the caller's arguments and return address where they are, so one thunk serves every signature.
extern "C" void* tavkitSlots[262];
void* tavkitSlots[262];

#define UT_ENTRY(ordinal, name, bytes)                              \
  asm(".text\n.globl " #name "\n.type " #name ", @function\n" #name \
      ":\n"                                                         \
      "jmp *tavkitSlots+4*" #ordinal "\n");
#include <exports.inc>
#undef UT_ENTRY

namespace host {
namespace {

struct Export {
  unsigned ordinal;
  const char* name;
};

#define UT_ENTRY(ordinal, name, bytes) {ordinal, #name},
constexpr Export kExports[] = {
#include <exports.inc>
};
#undef UT_ENTRY

}  // namespace

std::unique_ptr<Module> ConnectTavkit(const std::string& path) {
  auto module = std::make_unique<Module>(ReadFile(path));
  for (const auto& entry : kExports) {
    tavkitSlots[entry.ordinal] = module->Find(entry.ordinal);
    if (tavkitSlots[entry.ordinal] == nullptr) {
      throw ModuleError(path + " lacks " + entry.name + ", ordinal " +
                        std::to_string(entry.ordinal));
    }
  }
  return module;
}

}  // namespace host
