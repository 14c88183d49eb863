// The library on a Windows: the controls of the platform layer are there too, as far as a program
// has them. Calls between the tests, the library and the system are watched where modules are bound
// to each other, in their import tables.
#ifndef PLATFORM_WINDOWS_WINDOWS_SYSTEM_H
#define PLATFORM_WINDOWS_WINDOWS_SYSTEM_H

#include <windows.h>

#include <functional>
#include <string>

namespace windows {

// Asks, for each address that a module was bound to, what to take in its place. `module` is the one
// imported from, in lower case; `name` is the function's, or # and its ordinal.
using Replacement =
    std::function<void*(const std::string& module, const std::string& name, void* address)>;
void ReplaceImports(HMODULE hModule, const Replacement& replacement);

// The library's module, and the headers of any.
HMODULE Library();
const IMAGE_NT_HEADERS& HeadersOf(HMODULE hModule);

// Has the program's calls of exports counted. Then Uncalled() names the exports without a call.
void CountCalls();
std::string Uncalled();

// Shows the controls of host.h what the library and the program ask of the system.
void WatchOperations();

// What is called where a test reaches for a control that a program on Windows has not. It must not
// return; the program ends with a message unless a handler of its own stands here.
extern void (*onMissingControl)(const char* what);

// Destroys the windows that tests have made.
void CloseWindows();

// Blocks and keys that were given and not given back, and blocks that the system refused to free.
extern LONG livingBlocks, livingKeys, refusedBlocks;

}  // namespace windows

#endif  // PLATFORM_WINDOWS_WINDOWS_SYSTEM_H
