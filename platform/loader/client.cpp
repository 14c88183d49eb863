#include "client.h"

#if defined(__x86_64__)
#define UT_JUMP_THROUGH(slot) "jmp *" slot "(%rip)\n"
#else
#define UT_JUMP_THROUGH(slot) "jmp *" slot "\n"
#endif

// A slot for each export, and under the export's name a jump through its slot. The jump leaves the
// caller's arguments and return address where they are, so one thunk serves every signature.
#define UT_ENTRY(ordinal, name, bytes)                              \
  extern "C" void* slotOf_##name;                                   \
  void* slotOf_##name;                                              \
  asm(".text\n.globl " #name "\n.type " #name ", @function\n" #name \
      ":\n" UT_JUMP_THROUGH("slotOf_" #name));
#include <exports.inc>
#undef UT_ENTRY

namespace host {
namespace {

struct Export {
  unsigned ordinal;
  const char* name;
  void** slot;
};

#define UT_ENTRY(ordinal, name, bytes) {ordinal, #name, &slotOf_##name},
constexpr Export kExports[] = {
#include <exports.inc>
};
#undef UT_ENTRY

}  // namespace

std::unique_ptr<Module> ConnectTavkit(const std::string& path, const ImportResolver& resolve) {
  auto module = std::make_unique<Module>(ReadFile(path), resolve);
  for (const auto& entry : kExports) {
    *entry.slot = module->Find(entry.ordinal);
    if (*entry.slot == nullptr) {
      throw ModuleError(path + " lacks " + entry.name + ", ordinal " +
                        std::to_string(entry.ordinal));
    }
  }
  return module;
}

}  // namespace host
