// The platform operations that the library may call, by system module. This is the one list: the
// import libraries of the DLL and the table that the module loader binds imports from are generated
// from these lines. Nothing else of the platform is called.
#ifndef PLATFORM_WIN32_H
#define PLATFORM_WIN32_H

#include <tavkit/types.h>

// Opens the declaration of an operation and names the system module that exports it.
#if defined(_WIN32)
#define UT_IMPORT(module) extern "C" __declspec(dllimport)
#else
#define UT_IMPORT(module) extern "C"
#endif

// The module entry's reasons.
inline constexpr DWORD DLL_PROCESS_DETACH = 0;
inline constexpr DWORD DLL_PROCESS_ATTACH = 1;
inline constexpr DWORD DLL_THREAD_ATTACH = 2;
inline constexpr DWORD DLL_THREAD_DETACH = 3;

// Characters of the active code page: the only knowledge of multi-byte text.
UT_IMPORT(USER32) LPSTR UT_API CharNextA(LPCSTR psz);
UT_IMPORT(USER32) LPSTR UT_API CharPrevA(LPCSTR pszStart, LPCSTR pszCurrent);

// Strings in the platform's rules. lstrcpyA copies first byte first, so it may move text down.
UT_IMPORT(KERNEL32) int UT_API lstrlenA(LPCSTR psz);
UT_IMPORT(KERNEL32) LPSTR UT_API lstrcpyA(LPSTR pszDest, LPCSTR pszSource);
UT_IMPORT(KERNEL32) LPSTR UT_API lstrcatA(LPSTR pszDest, LPCSTR pszSource);
UT_IMPORT(KERNEL32) int UT_API lstrcmpA(LPCSTR psz1, LPCSTR psz2);
UT_IMPORT(KERNEL32) int UT_API lstrcmpiA(LPCSTR psz1, LPCSTR psz2);
UT_IMPORT(KERNEL32) int UT_API lstrcmpW(LPCWSTR psz1, LPCWSTR psz2);
UT_IMPORT(KERNEL32) int UT_API lstrcmpiW(LPCWSTR psz1, LPCWSTR psz2);

// The registry. RegCreateKeyExA takes the record of security attributes untyped: it is always NULL.
inline constexpr DWORD REG_OPTION_NON_VOLATILE = 0;
UT_IMPORT(ADVAPI32)
LONG UT_API RegOpenKeyExA(HKEY hKey, LPCSTR pszSubKey, DWORD dwOptions, REGSAM samDesired,
                          PHKEY phkResult);
UT_IMPORT(ADVAPI32)
LONG UT_API RegCreateKeyExA(HKEY hKey, LPCSTR pszSubKey, DWORD dwReserved, LPSTR pszClass,
                            DWORD dwOptions, REGSAM samDesired, LPVOID pSecurityAttributes,
                            PHKEY phkResult, LPDWORD pdwDisposition);
UT_IMPORT(ADVAPI32)
LONG UT_API RegQueryValueExA(HKEY hKey, LPCSTR pszValueName, LPDWORD pdwReserved, LPDWORD pdwType,
                             LPBYTE pData, LPDWORD pcbData);
UT_IMPORT(ADVAPI32)
LONG UT_API RegSetValueExA(HKEY hKey, LPCSTR pszValueName, DWORD dwReserved, DWORD dwType,
                           const BYTE* pData, DWORD cbData);
UT_IMPORT(ADVAPI32) LONG UT_API RegDeleteValueA(HKEY hKey, LPCSTR pszValueName);
UT_IMPORT(ADVAPI32) LONG UT_API RegDeleteKeyA(HKEY hKey, LPCSTR pszSubKey);
UT_IMPORT(ADVAPI32) LONG UT_API RegCloseKey(HKEY hKey);

#endif  // PLATFORM_WIN32_H
