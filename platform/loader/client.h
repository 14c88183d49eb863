// Lets a Linux program call the exports of the shipped DLL by their own names: it includes
// <tavkit.h>, links this client instead of the library, and connects once at its start.
#ifndef PLATFORM_LOADER_CLIENT_H
#define PLATFORM_LOADER_CLIENT_H

#include <memory>
#include <string>

#include "module.h"

namespace host {

// Loads the DLL and binds its imports, and the names of its exports. Throws ModuleError if the file
// can't be loaded or lacks an export. The module must outlive every call.
std::unique_ptr<Module> ConnectTavkit(const std::string& path, const ImportResolver& resolve);

}  // namespace host

#endif  // PLATFORM_LOADER_CLIENT_H
