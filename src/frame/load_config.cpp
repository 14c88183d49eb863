// The load-configuration record: for Control Flow Guard it lists the functions that an indirect
// call may reach, which are the exports, the module entry and the stand-in below. It holds nothing
// that a C runtime would have to set up; the linker fills in the lists. A native build has no such
// record.
#if defined(_WIN32)

#include <stddef.h>
#include <tavkit/types.h>

namespace tavkit {
namespace {

// The record up to the guard's flags. A value that the linker works out is the address of a symbol.
// The fields not used are versions, settings of the heap and the process, and the security cookie.
struct LoadConfig {
  DWORD size = kSize;
  DWORD unusedNumbers[7] = {};
  const void* unusedPointers[8] = {};
  const void* handlerTable = nullptr;  // of 32-bit images
  const void* handlerCount = nullptr;
  const void* guardCheckFunctionPointer;
  const void* guardDispatchFunctionPointer = nullptr;  // 64-bit only
  const void* guardFunctionTable;
  const void* guardFunctionCount;
  const void* guardFlags;  // a DWORD

  static const DWORD kSize;
};
constexpr DWORD LoadConfig::kSize = offsetof(LoadConfig, guardFlags) + sizeof(DWORD);
static_assert(LoadConfig::kSize == (sizeof(void*) == 8 ? 148 : 92));

// Checks nothing, and leaves all registers as they are.
[[gnu::naked]] void NoGuardCheck() { asm("ret"); }

}  // namespace
}  // namespace tavkit

extern "C" {

// The linker's tables, and numbers in the shape of addresses.
#if defined(__i386__)
extern const char __safe_se_handler_table[], __safe_se_handler_count[];
#endif
extern const char __guard_fids_table[], __guard_fids_count[], __guard_flags[];

// The check that the compiler puts before an indirect call; there is none so far, for calls of
// imports need none. A platform that has the guard puts its own check here, though the page is
// read-only.
extern void (*const __guard_check_icall_fptr)();
void (*const __guard_check_icall_fptr)() = tavkit::NoGuardCheck;

extern const tavkit::LoadConfig _load_config_used;
const tavkit::LoadConfig _load_config_used = {
#if defined(__i386__)
    .handlerTable = __safe_se_handler_table,
    .handlerCount = __safe_se_handler_count,
#endif
    .guardCheckFunctionPointer = &__guard_check_icall_fptr,
    .guardFunctionTable = __guard_fids_table,
    .guardFunctionCount = __guard_fids_count,
    .guardFlags = __guard_flags,
};

}  // extern "C"

#endif
