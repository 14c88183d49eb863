// The version of the system that the platform layer claims to be.
#ifndef PLATFORM_OPERATIONS_VERSION_H
#define PLATFORM_OPERATIONS_VERSION_H

#include <win32.h>

namespace host {

// At program start: platform VER_PLATFORM_WIN32_NT, major version 5.
void SetVersion(DWORD platformId, DWORD majorVersion);

}  // namespace host

#endif  // PLATFORM_OPERATIONS_VERSION_H
