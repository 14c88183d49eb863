/* What both programs take from the system, and how they print. */
#ifndef CONSOLE_H
#define CONSOLE_H

#include <tavkit.h>

/* Without a <windows.h> the system's operations are declared here. */
#ifndef TAVKIT_HAS_WINDOWS_H
#define SYSTEM(type) __declspec(dllimport) type __stdcall
#define STD_OUTPUT_HANDLE ((DWORD)(-11))
typedef INT(__stdcall* FARPROC)(void);
SYSTEM(HMODULE) LoadLibraryA(LPCSTR pszName);
SYSTEM(BOOL) FreeLibrary(HMODULE hModule);
SYSTEM(FARPROC) GetProcAddress(HMODULE hModule, LPCSTR pszName);
SYSTEM(void) ExitProcess(UINT uExitCode);
SYSTEM(HANDLE) GetStdHandle(DWORD dwStdHandle);
SYSTEM(int) lstrlenA(LPCSTR psz);
SYSTEM(BOOL)
WriteFile(HANDLE hFile, LPCVOID pBuffer, DWORD cbToWrite, LPDWORD pcbWritten, LPVOID pOverlapped);
#endif

static void Print(LPCSTR psz) {
  DWORD cbWritten;
  WriteFile(GetStdHandle(STD_OUTPUT_HANDLE), psz, (DWORD)lstrlenA(psz), &cbWritten, NULL);
}

static void PrintLine(LPCSTR pszLabel, LPCSTR psz) {
  Print(pszLabel);
  Print(": ");
  Print(psz);
  Print("\r\n");
}

#endif
