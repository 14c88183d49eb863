#include "version.h"

#include "host.h"

namespace host {
namespace {

DWORD platform = VER_PLATFORM_WIN32_NT;
DWORD major = 5;

[[maybe_unused]] const bool resets = OnReset([] { SetVersion(VER_PLATFORM_WIN32_NT, 5); });

}  // namespace

void SetVersion(DWORD platformId, DWORD majorVersion) {
  platform = platformId;
  major = majorVersion;
}

}  // namespace host

BOOL UT_API GetVersionExA(OSVERSIONINFOA* lpVersionInformation) {
  if (host::Fails("GetVersionExA", lpVersionInformation)) return FALSE;
  if (lpVersionInformation->dwOSVersionInfoSize != sizeof(OSVERSIONINFOA)) return FALSE;
  *lpVersionInformation = {sizeof(OSVERSIONINFOA), host::major, 1, 2600, host::platform, ""};
  return TRUE;
}
