#include "multiasciiz/multiasciiz.h"

using namespace tavkit;

BOOL UT_API utInitMultiAsciiz(LPVOID pList, DWORD cbList) { return InitMultiAsciiz(pList, cbList); }

DWORD UT_API utMultiAsciizSize(LPCSTR pList, BOOL fWithFinalZero) {
  return MultiAsciizSize<ByteText>(pList, fWithFinalZero);
}
DWORD UT_API utMultiAsciizSizeW(LPCWSTR pList, BOOL fWithFinalZero) {
  return MultiAsciizSize<WideText>(pList, fWithFinalZero);
}

DWORD UT_API utMultiAsciizStringCount(LPCSTR pList) { return StringCount<ByteText>(pList); }
DWORD UT_API utMultiAsciizStringCountW(LPCWSTR pList) { return StringCount<WideText>(pList); }

LPSTR UT_API utNextAsciiz(LPCSTR pszString) { return NextAsciiz<ByteText>(pszString); }
LPWSTR UT_API utNextAsciizW(LPCWSTR pszString) { return NextAsciiz<WideText>(pszString); }

BOOL UT_API utCopyNextAsciiz(LPCSTR pszString, LPSTR* ppCursor, LPDWORD pcbRemaining) {
  return CopyNextAsciiz<ByteText>(pszString, *ppCursor, *pcbRemaining);
}
BOOL UT_API utCopyNextAsciizW(LPCWSTR pszString, LPWSTR* ppCursor, LPDWORD pcbRemaining) {
  return CopyNextAsciiz<WideText>(pszString, *ppCursor, *pcbRemaining);
}

BOOL UT_API utAppendMultiAsciiz(LPCSTR pszString, LPSTR pList, DWORD cbList) {
  return AppendMultiAsciiz<ByteText>(pszString, pList, cbList);
}
BOOL UT_API utAppendMultiAsciizW(LPCWSTR pszString, LPWSTR pList, DWORD cbList) {
  return AppendMultiAsciiz<WideText>(pszString, pList, cbList);
}

LPSTR UT_API utScanMultiAsciiz(LPCSTR pszString, LPCSTR pList, BOOL fCaseSensitive) {
  return ScanMultiAsciiz<ByteText>(pszString, pList, fCaseSensitive);
}
LPWSTR UT_API utScanMultiAsciizW(LPCWSTR pszString, LPCWSTR pList, BOOL fCaseSensitive) {
  return ScanMultiAsciiz<WideText>(pszString, pList, fCaseSensitive);
}

BOOL UT_API utInsertMultiAsciiz(LPCSTR pszString, LPSTR pInsertAt, LPSTR pList, DWORD cbList) {
  return InsertMultiAsciiz<ByteText>(pszString, pInsertAt, pList, cbList);
}
BOOL UT_API utInsertMultiAsciizW(LPCWSTR pszString, LPWSTR pInsertAt, LPWSTR pList, DWORD cbList) {
  return InsertMultiAsciiz<WideText>(pszString, pInsertAt, pList, cbList);
}

BOOL UT_API utRemoveMultiAsciiz(LPSTR pList, DWORD cStrings) {
  return RemoveMultiAsciiz<ByteText>(pList, cStrings);
}
BOOL UT_API utRemoveMultiAsciizW(LPWSTR pList, DWORD cStrings) {
  return RemoveMultiAsciiz<WideText>(pList, cStrings);
}

BOOL UT_API utArray2MultiAsciiz(const LPCSTR* ppszStrings, LPSTR pList, DWORD cbList,
                                LPDWORD pcStored) {
  return Array2MultiAsciiz<ByteText>(ppszStrings, pList, cbList, pcStored);
}
BOOL UT_API utArray2MultiAsciizW(const LPCWSTR* ppszStrings, LPWSTR pList, DWORD cbList,
                                 LPDWORD pcStored) {
  return Array2MultiAsciiz<WideText>(ppszStrings, pList, cbList, pcStored);
}

BOOL UT_API utMultiAsciiz2Array(LPCSTR pList, LPCSTR* ppszArray, DWORD cbArray, LPDWORD pcStored) {
  return MultiAsciiz2Array<ByteText>(pList, ppszArray, cbArray, pcStored);
}
BOOL UT_API utMultiAsciiz2ArrayW(LPCWSTR pList, LPCWSTR* ppszArray, DWORD cbArray,
                                 LPDWORD pcStored) {
  return MultiAsciiz2Array<WideText>(pList, ppszArray, cbArray, pcStored);
}
