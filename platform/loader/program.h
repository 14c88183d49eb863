// Runs 32-bit Windows console programs in a 32-bit Linux process.
#ifndef PLATFORM_LOADER_PROGRAM_H
#define PLATFORM_LOADER_PROGRAM_H

#include <win32.h>

#include <string>

#include "imports.h"

namespace host {

// Runs a program and gives its exit code. Its imports are bound to what the resolver finds, to the
// operations of program_operations.h, and to DLLs that lie beside it; such a DLL is bound to what
// the resolver finds alone. Throws ModuleError if one of the files can't be loaded. One program
// runs at a time, on one thread.
DWORD RunProgram(const std::string& path, const ImportResolver& resolve);

}  // namespace host

#endif  // PLATFORM_LOADER_PROGRAM_H
