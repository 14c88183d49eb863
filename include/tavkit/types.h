/*
 * The platform's types and constants that the exports use, and the macros that declare an export.
 *
 * Where <windows.h> can be included it gives the types. Elsewhere, or when TAVKIT_NO_WINDOWS_H is
 * defined before the first include, the declarations below stand in for it: the same names, widths
 * and layouts. WCHAR is a 16-bit unit in every case.
 *
 * Pointers and handles are as wide as the processor's addresses, and with them the NETRESOURCE
 * records (32 bytes, or 48 at 64 bits) and arrays of pointers. All other widths are the same.
 */
#ifndef TAVKIT_TYPES_H
#define TAVKIT_TYPES_H

#ifndef TAVKIT_NO_WINDOWS_H
#ifdef __has_include
#if __has_include(<windows.h>)
#define TAVKIT_HAS_WINDOWS_H 1
#endif
#elif defined(_WIN32)
#define TAVKIT_HAS_WINDOWS_H 1
#endif
#endif

/*
 * UT_API is the calling convention of every export: stdcall at 32 bits, and the one of 64-bit
 * Windows there. Programs that run elsewhere and load the DLL call it by the same one.
 */
#if defined(_WIN32)
#define UT_API __stdcall
#elif defined(__i386__)
#define UT_API __attribute__((__stdcall__))
#elif defined(__x86_64__)
#define UT_API __attribute__((__ms_abi__))
#else
#define UT_API
#endif

#if defined(_WIN32) && !defined(TAVKIT_BUILDING)
#define UT_IMPORTED __declspec(dllimport)
#else
#define UT_IMPORTED
#endif

/*
 * Opens the declaration of an export and states its ordinal. The module-definition file, the
 * loader's table and the list of names are generated from these lines.
 */
#ifdef __cplusplus
#define UT_EXPORT(ordinal) extern "C" UT_IMPORTED
#else
#define UT_EXPORT(ordinal) extern UT_IMPORTED
#endif

#ifdef TAVKIT_HAS_WINDOWS_H

#include <windows.h>
/* A lean <windows.h> leaves the next one out. */
#include <winnetwk.h>

#else

#include <stddef.h>
#include <stdint.h>

#if defined(_WIN32)
typedef unsigned long DWORD;
typedef long LONG;
typedef wchar_t WCHAR;
#else
typedef unsigned int DWORD;
typedef int LONG;
#ifdef __cplusplus
typedef char16_t WCHAR;
#else
typedef unsigned short WCHAR;
#endif
#endif

typedef char CHAR;
typedef unsigned char BYTE;
typedef short SHORT;
typedef unsigned short WORD;
typedef int INT;
typedef unsigned int UINT;
typedef int BOOL;

typedef CHAR* LPSTR;
typedef const CHAR* LPCSTR;
typedef WCHAR* LPWSTR;
typedef const WCHAR* LPCWSTR;
typedef BYTE* LPBYTE;
typedef WORD* LPWORD;
typedef DWORD* LPDWORD;
typedef void* LPVOID;
typedef const void* LPCVOID;

#ifndef TRUE
#define TRUE 1
#define FALSE 0
#endif

typedef void* HANDLE;
typedef struct HINSTANCE__* HINSTANCE;
typedef HINSTANCE HMODULE;
typedef struct HWND__* HWND;
typedef struct HKEY__* HKEY;
typedef HKEY* PHKEY;
typedef DWORD REGSAM;

typedef struct _FILETIME {
  DWORD dwLowDateTime;
  DWORD dwHighDateTime;
} FILETIME, *LPFILETIME;

typedef struct _SYSTEMTIME {
  WORD wYear;
  WORD wMonth;
  WORD wDayOfWeek;
  WORD wDay;
  WORD wHour;
  WORD wMinute;
  WORD wSecond;
  WORD wMilliseconds;
} SYSTEMTIME, *LPSYSTEMTIME;

typedef struct tagRECT {
  LONG left;
  LONG top;
  LONG right;
  LONG bottom;
} RECT, *LPRECT;

typedef struct _NETRESOURCEA {
  DWORD dwScope;
  DWORD dwType;
  DWORD dwDisplayType;
  DWORD dwUsage;
  LPSTR lpLocalName;
  LPSTR lpRemoteName;
  LPSTR lpComment;
  LPSTR lpProvider;
} NETRESOURCEA, *LPNETRESOURCEA;

typedef struct _NETRESOURCEW {
  DWORD dwScope;
  DWORD dwType;
  DWORD dwDisplayType;
  DWORD dwUsage;
  LPWSTR lpLocalName;
  LPWSTR lpRemoteName;
  LPWSTR lpComment;
  LPWSTR lpProvider;
} NETRESOURCEW, *LPNETRESOURCEW;

/* The predefined keys are signed numbers: at 64 bits the upper half holds ones. */
#define HKEY_CLASSES_ROOT ((HKEY)(intptr_t)(LONG)0x80000000u)
#define HKEY_CURRENT_USER ((HKEY)(intptr_t)(LONG)0x80000001u)
#define HKEY_LOCAL_MACHINE ((HKEY)(intptr_t)(LONG)0x80000002u)
#define HKEY_USERS ((HKEY)(intptr_t)(LONG)0x80000003u)

#define REG_NONE 0
#define REG_SZ 1
#define REG_EXPAND_SZ 2
#define REG_BINARY 3
#define REG_DWORD 4
#define REG_MULTI_SZ 7

#define KEY_QUERY_VALUE 0x0001
#define KEY_SET_VALUE 0x0002
#define KEY_CREATE_SUB_KEY 0x0004
#define KEY_READ 0x20019
#define KEY_WRITE 0x20006
#define KEY_ALL_ACCESS 0xF003F

#define ERROR_SUCCESS 0
#define ERROR_FILE_NOT_FOUND 2
#define ERROR_ACCESS_DENIED 5
#define ERROR_INVALID_HANDLE 6
#define ERROR_INVALID_DATA 13
#define ERROR_INVALID_PARAMETER 87
#define ERROR_MORE_DATA 234

#endif /* TAVKIT_HAS_WINDOWS_H */

#endif /* TAVKIT_TYPES_H */
