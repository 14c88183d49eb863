// The module entry. It stores the module handle and never refuses a load.
#include <win32.h>

namespace tavkit {

// External linkage keeps the store: nothing in the library reads the handle.
HMODULE g_hModule;  // NOLINT(misc-use-internal-linkage)

}  // namespace tavkit

extern "C" BOOL UT_API DllMain(HMODULE hModule, DWORD dwReason, LPVOID /*pReserved*/) {
  if (dwReason == DLL_PROCESS_ATTACH) tavkit::g_hModule = hModule;
  return TRUE;
}
