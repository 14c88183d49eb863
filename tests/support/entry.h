// The module entry of the build under test.
#ifndef TESTS_SUPPORT_ENTRY_H
#define TESTS_SUPPORT_ENTRY_H

#include <win32.h>

namespace test {

BOOL CallModuleEntry(HMODULE hModule, DWORD dwReason);

// The handle that the module holds, read from where the module keeps it.
HMODULE StoredModuleHandle();

// Makes it ready to be called, once.
bool Connect();

}  // namespace test

#endif  // TESTS_SUPPORT_ENTRY_H
