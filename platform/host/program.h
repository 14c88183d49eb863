// Runs 32-bit Windows console programs in a 32-bit Linux process.
#ifndef PLATFORM_HOST_PROGRAM_H
#define PLATFORM_HOST_PROGRAM_H

#include <win32.h>

#include <string>

namespace host {

// Runs a program and gives its exit code. Its imports are bound to the platform layer and to DLLs
// that lie beside it; such a DLL is bound to the platform layer alone. Throws ModuleError if one of
// the files can't be loaded. One program runs at a time, on one thread.
DWORD RunProgram(const std::string& path);

}  // namespace host

#endif  // PLATFORM_HOST_PROGRAM_H
