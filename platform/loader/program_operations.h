// The operations that programs may import besides those of win32.h: what a small console program
// takes to load the library and to print. The DLL itself imports none of them.
#ifndef PLATFORM_LOADER_PROGRAM_OPERATIONS_H
#define PLATFORM_LOADER_PROGRAM_OPERATIONS_H

#include <win32.h>

inline constexpr DWORD STD_OUTPUT_HANDLE = static_cast<DWORD>(-11);
inline constexpr DWORD STD_ERROR_HANDLE = static_cast<DWORD>(-12);

// Modules. LoadLibraryA takes a name without a folder and looks beside the program. GetProcAddress
// takes a name, or an ordinal where the address is below 0x10000.
UT_IMPORT(KERNEL32) HMODULE UT_API LoadLibraryA(LPCSTR pszName);
UT_IMPORT(KERNEL32) BOOL UT_API FreeLibrary(HMODULE hModule);
UT_IMPORT(KERNEL32) LPVOID UT_API GetProcAddress(HMODULE hModule, LPCSTR pszName);

UT_IMPORT(KERNEL32) void UT_API ExitProcess(UINT uExitCode);

// Output. A handle of another kind than the two above is refused.
UT_IMPORT(KERNEL32) HANDLE UT_API GetStdHandle(DWORD dwStdHandle);
UT_IMPORT(KERNEL32)
BOOL UT_API WriteFile(HANDLE hFile, LPCVOID pBuffer, DWORD cbToWrite, LPDWORD pcbWritten,
                      LPVOID pOverlapped);

#endif  // PLATFORM_LOADER_PROGRAM_OPERATIONS_H
