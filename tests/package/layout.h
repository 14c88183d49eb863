/* What the DLL takes for granted of the platform's types, wherever tavkit.h has them from. */
#include <stddef.h>
#include <tavkit.h>

#if defined(_WINDOWS_) == defined(TAVKIT_NO_WINDOWS_H)
#error "the types come from the wrong place"
#endif

#define HOLDS(name, condition) typedef char name[(condition) ? 1 : -1]
#define AT(record, member, offset) (offsetof(record, member) == (offset))

HOLDS(widths, sizeof(CHAR) == 1 && sizeof(BYTE) == 1 && sizeof(WCHAR) == 2 && sizeof(WORD) == 2 &&
                  sizeof(SHORT) == 2 && sizeof(INT) == 4 && sizeof(UINT) == 4 && sizeof(BOOL) == 4);
HOLDS(words, sizeof(LONG) == 4 && sizeof(DWORD) == 4 && sizeof(REGSAM) == 4);
HOLDS(signs, (BYTE)-1 > 0 && (WCHAR)-1 > 0 && (WORD)-1 > 0 && (UINT)-1 > 0 && (DWORD)-1 > 0 &&
                 (SHORT)-1 < 0 && (LONG)-1 < 0 && (BOOL)-1 < 0);
HOLDS(file_time, sizeof(FILETIME) == 8 && AT(FILETIME, dwHighDateTime, 4));
HOLDS(system_time, sizeof(SYSTEMTIME) == 16 && AT(SYSTEMTIME, wDayOfWeek, 4) &&
                       AT(SYSTEMTIME, wDay, 6) && AT(SYSTEMTIME, wMilliseconds, 14));
HOLDS(rectangle, sizeof(RECT) == 16 && AT(RECT, top, 4) && AT(RECT, bottom, 12));
#define HOLDS_RECORD(name, record)                                                   \
  HOLDS(name, sizeof(record) == 16 + 4 * sizeof(void*) && AT(record, dwUsage, 12) && \
                  AT(record, lpLocalName, 16) && AT(record, lpProvider, 16 + 3 * sizeof(void*)))
HOLDS(handles, sizeof(HKEY) == sizeof(void*) && sizeof(HWND) == sizeof(void*));
HOLDS_RECORD(byte_record, NETRESOURCEA);
HOLDS_RECORD(wide_record, NETRESOURCEW);
