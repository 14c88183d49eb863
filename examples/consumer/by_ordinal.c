/*
 * A program that loads TAVKIT.DLL while it runs and finds what it calls by ordinal. It needs no
 * import library, and it can say so itself where the DLL is missing.
 */
#include "console.h"

/* The signatures stand in the header, and the ordinals at the declarations there. */
typedef INT(UT_API* AtoI)(LPCSTR pszText);
typedef LPSTR(UT_API* FindRevChar)(LPCSTR psz, WORD wChar);
enum { kAtoI = 145, kFindRevChar = 53, kNone = 24 };

/* A function of whichever signature, to be cast to its own. */
typedef void (*Function)(void);

static Function Find(HMODULE hModule, UINT ordinal) {
  return (Function)GetProcAddress(hModule, (LPCSTR)(uintptr_t)ordinal);
}

static void Fail(LPCSTR pszReason) {
  PrintLine("by_ordinal", pszReason);
  ExitProcess(1);
}

int start(void) {
  const HMODULE hModule = LoadLibraryA("tavkit.dll");
  AtoI atoI;
  FindRevChar findRevChar;
  if (hModule == NULL) Fail("TAVKIT.DLL can't be loaded: put it beside this program");
  atoI = (AtoI)Find(hModule, kAtoI);
  findRevChar = (FindRevChar)Find(hModule, kFindRevChar);
  if (atoI == NULL || findRevChar == NULL) Fail("TAVKIT.DLL lacks an export");
  if (Find(hModule, kNone) != NULL) Fail("TAVKIT.DLL has an export too many");

  PrintLine("last part", findRevChar("\\\\server\\reports\\may", '\\') + 1);
  PrintLine("the number", atoI(" 42 pages") == 42 ? "as expected" : "wrong");
  return FreeLibrary(hModule) ? 0 : 2;
}
