/*
 * A stand-in for the platform's header: the names that tavkit.h and its small callers take from
 * there, and macros of it that must not get in the way.
 */
#ifndef WINDOWS_H
#define WINDOWS_H

#include <stddef.h>
#include <stdint.h>

#define near
#define far
#define small char
#define interface struct
#define IN
#define OUT
#define min(a, b) ((a) < (b) ? (a) : (b))
#define max(a, b) ((a) > (b) ? (a) : (b))

#if defined(_WIN32)
#define WINAPI __stdcall
typedef wchar_t WCHAR;
#else
#define WINAPI __attribute__((__stdcall__))
typedef unsigned short WCHAR;
#endif

typedef char CHAR, *LPSTR, *PSTR;
typedef const CHAR *LPCSTR, *PCSTR;
typedef WCHAR *LPWSTR, *PWSTR;
typedef const WCHAR *LPCWSTR, *PCWSTR;
typedef unsigned char BYTE, *PBYTE, *LPBYTE;
typedef short SHORT;
typedef unsigned short WORD, *PWORD, *LPWORD;
typedef int INT, BOOL;
typedef unsigned int UINT;
typedef long LONG;
typedef unsigned long DWORD, *PDWORD, *LPDWORD, ACCESS_MASK, REGSAM;
typedef void *PVOID, *LPVOID, *HANDLE;
typedef const void* LPCVOID;
typedef struct HINSTANCE__ {
  int unused;
} *HINSTANCE, *HMODULE;
typedef struct HWND__ {
  int unused;
}* HWND;
typedef struct HKEY__ {
  int unused;
} *HKEY, **PHKEY;
typedef INT(WINAPI* FARPROC)();

#define FALSE 0
#define TRUE 1

typedef struct _FILETIME {
  DWORD dwLowDateTime, dwHighDateTime;
} FILETIME, *PFILETIME, *LPFILETIME;
typedef struct _SYSTEMTIME {
  WORD wYear, wMonth, wDayOfWeek, wDay, wHour, wMinute, wSecond, wMilliseconds;
} SYSTEMTIME, *PSYSTEMTIME, *LPSYSTEMTIME;
typedef struct tagRECT {
  LONG left, top, right, bottom;
} RECT, *PRECT, *LPRECT;

#ifdef __cplusplus
extern "C" {
#endif
HMODULE WINAPI LoadLibraryA(LPCSTR);
BOOL WINAPI FreeLibrary(HMODULE);
FARPROC WINAPI GetProcAddress(HMODULE, LPCSTR);
void WINAPI ExitProcess(UINT);
#define STD_OUTPUT_HANDLE ((DWORD)(-11))
HANDLE WINAPI GetStdHandle(DWORD);
BOOL WINAPI WriteFile(HANDLE, LPCVOID, DWORD, LPDWORD, LPVOID);
INT WINAPI lstrlenA(LPCSTR);
#ifdef __cplusplus
}
#endif

#endif
