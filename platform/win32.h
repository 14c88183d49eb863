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

// Memory. LocalAlloc gives a fixed block, or NULL on failure; LMEM_ZEROINIT fills it with zeros.
inline constexpr UINT LMEM_ZEROINIT = 0x40;
using SIZE_T = uintptr_t;
UT_IMPORT(KERNEL32) HANDLE UT_API LocalAlloc(UINT uFlags, SIZE_T cbBlock);
UT_IMPORT(KERNEL32) HANDLE UT_API LocalFree(HANDLE hBlock);

// Windows. Rectangles and points are in pixels.
using WPARAM = uintptr_t;
using LPARAM = intptr_t;
using LRESULT = intptr_t;

struct POINT {
  LONG x;
  LONG y;
};
using LPPOINT = POINT*;

inline constexpr UINT SWP_NOSIZE = 1;
inline constexpr UINT SWP_NOMOVE = 2;
inline constexpr UINT SWP_NOZORDER = 4;

UT_IMPORT(USER32) BOOL UT_API GetWindowRect(HWND hWnd, LPRECT lpRect);
UT_IMPORT(USER32) HWND UT_API GetParent(HWND hWnd);
UT_IMPORT(USER32) BOOL UT_API ScreenToClient(HWND hWnd, LPPOINT lpPoint);
UT_IMPORT(USER32)
BOOL UT_API SetWindowPos(HWND hWnd, HWND hWndInsertAfter, int x, int y, int cx, int cy,
                         UINT uFlags);
UT_IMPORT(USER32) BOOL UT_API SetWindowTextA(HWND hWnd, LPCSTR psz);
UT_IMPORT(USER32) BOOL UT_API IsWindowEnabled(HWND hWnd);
UT_IMPORT(USER32) BOOL UT_API EnableWindow(HWND hWnd, BOOL fEnable);
UT_IMPORT(USER32) HWND UT_API GetFocus();
UT_IMPORT(USER32) int UT_API LoadStringA(HINSTANCE hModule, UINT idString, LPSTR psz, int cch);

// Dialogs, and the messages that move a default button and the focus.
inline constexpr UINT WM_NEXTDLGCTL = 0x28;
inline constexpr UINT BM_SETSTYLE = 0xF4;
inline constexpr UINT DM_GETDEFID = 0x400;
inline constexpr UINT DM_SETDEFID = 0x401;
inline constexpr DWORD DC_HASDEFID = 0x534B;
inline constexpr UINT BS_PUSHBUTTON = 0;
inline constexpr UINT BS_DEFPUSHBUTTON = 1;
inline constexpr UINT BST_CHECKED = 1;

UT_IMPORT(USER32) LRESULT UT_API SendMessageA(HWND hWnd, UINT uMsg, WPARAM wParam, LPARAM lParam);
UT_IMPORT(USER32) BOOL UT_API PostMessageA(HWND hWnd, UINT uMsg, WPARAM wParam, LPARAM lParam);
UT_IMPORT(USER32) HWND UT_API GetDlgItem(HWND hDlg, int idItem);
UT_IMPORT(USER32)
LRESULT UT_API SendDlgItemMessageA(HWND hDlg, int idItem, UINT uMsg, WPARAM wParam, LPARAM lParam);
UT_IMPORT(USER32) BOOL UT_API SetDlgItemTextA(HWND hDlg, int idItem, LPCSTR psz);
UT_IMPORT(USER32) UINT UT_API IsDlgButtonChecked(HWND hDlg, int idItem);

// The system's version.
struct OSVERSIONINFOA {
  DWORD dwOSVersionInfoSize;  // in bytes, set by the caller
  DWORD dwMajorVersion;
  DWORD dwMinorVersion;
  DWORD dwBuildNumber;
  DWORD dwPlatformId;
  CHAR szCSDVersion[128];
};
static_assert(sizeof(OSVERSIONINFOA) == 148);
inline constexpr DWORD VER_PLATFORM_WIN32_NT = 2;

// Non-zero on success.
UT_IMPORT(KERNEL32) BOOL UT_API GetVersionExA(OSVERSIONINFOA* lpVersionInformation);

// Conversion between a code page and wide strings. A source count of -1 stands for a string and its
// terminator. Both give the units stored, 0 on failure; with a target of 0 units, those needed.
inline constexpr UINT CP_ACP = 0;  // the active code page
inline constexpr DWORD MB_PRECOMPOSED = 1;
inline constexpr DWORD MB_ERR_INVALID_CHARS = 8;
UT_IMPORT(KERNEL32)
int UT_API MultiByteToWideChar(UINT CodePage, DWORD dwFlags, LPCSTR lpMultiByteStr, int cbMultiByte,
                               LPWSTR lpWideCharStr, int cchWideChar);
UT_IMPORT(KERNEL32)
int UT_API WideCharToMultiByte(UINT CodePage, DWORD dwFlags, LPCWSTR lpWideCharStr, int cchWideChar,
                               LPSTR lpMultiByteStr, int cbMultiByte, LPCSTR lpDefaultChar,
                               BOOL* lpUsedDefaultChar);

// Time conversions, each non-zero on success.
UT_IMPORT(KERNEL32)
BOOL UT_API SystemTimeToFileTime(const SYSTEMTIME* lpSystemTime, LPFILETIME lpFileTime);
UT_IMPORT(KERNEL32)
BOOL UT_API FileTimeToSystemTime(const FILETIME* lpFileTime, LPSYSTEMTIME lpSystemTime);
UT_IMPORT(KERNEL32)
BOOL UT_API DosDateTimeToFileTime(WORD wFatDate, WORD wFatTime, LPFILETIME lpFileTime);
UT_IMPORT(KERNEL32)
BOOL UT_API FileTimeToDosDateTime(const FILETIME* lpFileTime, LPWORD lpFatDate, LPWORD lpFatTime);
UT_IMPORT(KERNEL32)
BOOL UT_API LocalFileTimeToFileTime(const FILETIME* lpLocalFileTime, LPFILETIME lpFileTime);
UT_IMPORT(KERNEL32)
BOOL UT_API FileTimeToLocalFileTime(const FILETIME* lpFileTime, LPFILETIME lpLocalFileTime);

// The user's settings, as text. The bytes stored, terminator included, or 0 on failure; with a size
// of 0, the bytes needed.
using LCTYPE = DWORD;
inline constexpr DWORD LOCALE_USER_DEFAULT = 0x400;
inline constexpr LCTYPE LOCALE_ITIME = 0x23;              // "0": 12 hours, "1": 24 hours
inline constexpr LCTYPE LOCALE_SDAYNAME1 = 0x2A;          // Monday; six more follow
inline constexpr LCTYPE LOCALE_SABBREVDAYNAME1 = 0x31;    // Monday; six more follow
inline constexpr LCTYPE LOCALE_SMONTHNAME1 = 0x38;        // January; eleven more follow
inline constexpr LCTYPE LOCALE_SABBREVMONTHNAME1 = 0x44;  // January; eleven more follow
UT_IMPORT(KERNEL32)
int UT_API GetLocaleInfoA(DWORD Locale, LCTYPE LCType, LPSTR lpLCData, int cchData);

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
