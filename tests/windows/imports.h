// What a module in memory imports, to be looked at and changed.
#ifndef TESTS_WINDOWS_IMPORTS_H
#define TESTS_WINDOWS_IMPORTS_H

#include <windows.h>

#include <functional>
#include <string>

namespace windows {

// Shows each address that `hModule` was bound to, with the module that it imports from, in lower case,
// and the name, or # and the ordinal. What `replace` returns takes the place of the address.
void ReplaceImports(HMODULE hModule,
                    const std::function<void*(const std::string& module, const std::string& name,
                                              void* address)>& replace);

// Has each call of the library's exports counted. `Uncalled` names the exports that were not called, with
// a comma between them.
void CountCalls();
std::string Uncalled();

// Lets the controls of host.h see and refuse what the library and the tests ask of the system.
void WatchOperations();

// Closes what tests have opened.
void CloseWindows();

// Blocks and keys that they got and did not give back.
extern volatile LONG livingBlocks, livingKeys, wrongFrees;

}  // namespace windows

#endif  // TESTS_WINDOWS_IMPORTS_H
