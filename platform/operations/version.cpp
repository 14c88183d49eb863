#include "version.h"

#include "host.h"
#include "state.h"

void host::SetVersion(DWORD platformId, DWORD majorVersion) {
  state->version = {platformId, majorVersion};
}

BOOL UT_API GetVersionExA(OSVERSIONINFOA* lpVersionInformation) {
  if (host::Fails(__func__, lpVersionInformation)) return FALSE;
  if (lpVersionInformation->dwOSVersionInfoSize != sizeof(OSVERSIONINFOA)) return FALSE;
  const auto& [platform, major] = host::state->version;
  *lpVersionInformation = {sizeof(OSVERSIONINFOA), major, 1, 2600, platform, ""};
  return TRUE;
}
