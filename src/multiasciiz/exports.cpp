#include "multiasciiz/multiasciiz.h"

using tavkit::ByteText;
using tavkit::WideText;

BOOL UT_API utInitMultiAsciiz(LPVOID pList, DWORD cbList) {
  return tavkit::InitMultiAsciiz(pList, cbList);
}

// clang-format off
DWORD  UT_API utMultiAsciizSize(LPCSTR pList, BOOL fWithFinalZero)   { return tavkit::MultiAsciizSize<ByteText>(pList, fWithFinalZero != 0); }
DWORD  UT_API utMultiAsciizSizeW(LPCWSTR pList, BOOL fWithFinalZero) { return tavkit::MultiAsciizSize<WideText>(pList, fWithFinalZero != 0); }
DWORD  UT_API utMultiAsciizStringCount(LPCSTR pList)   { return tavkit::StringCount<ByteText>(pList); }
DWORD  UT_API utMultiAsciizStringCountW(LPCWSTR pList) { return tavkit::StringCount<WideText>(pList); }
LPSTR  UT_API utNextAsciiz(LPCSTR pszString)   { return tavkit::NextAsciiz<ByteText>(pszString); }
LPWSTR UT_API utNextAsciizW(LPCWSTR pszString) { return tavkit::NextAsciiz<WideText>(pszString); }
// clang-format on

BOOL UT_API utCopyNextAsciiz(LPCSTR pszString, LPSTR* ppCursor, LPDWORD pcbRemaining) {
  return tavkit::CopyNextAsciiz<ByteText>(pszString, *ppCursor, *pcbRemaining);
}

BOOL UT_API utCopyNextAsciizW(LPCWSTR pszString, LPWSTR* ppCursor, LPDWORD pcbRemaining) {
  return tavkit::CopyNextAsciiz<WideText>(pszString, *ppCursor, *pcbRemaining);
}

BOOL UT_API utAppendMultiAsciiz(LPCSTR pszString, LPSTR pList, DWORD cbList) {
  return tavkit::AppendMultiAsciiz<ByteText>(pszString, pList, cbList);
}

BOOL UT_API utAppendMultiAsciizW(LPCWSTR pszString, LPWSTR pList, DWORD cbList) {
  return tavkit::AppendMultiAsciiz<WideText>(pszString, pList, cbList);
}

LPSTR UT_API utScanMultiAsciiz(LPCSTR pszString, LPCSTR pList, BOOL fCaseSensitive) {
  return tavkit::ScanMultiAsciiz<ByteText>(pszString, pList, fCaseSensitive != 0);
}

LPWSTR UT_API utScanMultiAsciizW(LPCWSTR pszString, LPCWSTR pList, BOOL fCaseSensitive) {
  return tavkit::ScanMultiAsciiz<WideText>(pszString, pList, fCaseSensitive != 0);
}

BOOL UT_API utInsertMultiAsciiz(LPCSTR pszString, LPSTR pInsertAt, LPSTR pList, DWORD cbList) {
  return tavkit::InsertMultiAsciiz<ByteText>(pszString, pInsertAt, pList, cbList);
}

BOOL UT_API utInsertMultiAsciizW(LPCWSTR pszString, LPWSTR pInsertAt, LPWSTR pList, DWORD cbList) {
  return tavkit::InsertMultiAsciiz<WideText>(pszString, pInsertAt, pList, cbList);
}

BOOL UT_API utRemoveMultiAsciiz(LPSTR pList, DWORD cStrings) {
  return tavkit::RemoveMultiAsciiz<ByteText>(pList, cStrings);
}

BOOL UT_API utRemoveMultiAsciizW(LPWSTR pList, DWORD cStrings) {
  return tavkit::RemoveMultiAsciiz<WideText>(pList, cStrings);
}

BOOL UT_API utArray2MultiAsciiz(const LPCSTR* ppszStrings, LPSTR pList, DWORD cbList,
                                LPDWORD pcStored) {
  return tavkit::Array2MultiAsciiz<ByteText>(ppszStrings, pList, cbList, pcStored);
}

BOOL UT_API utArray2MultiAsciizW(const LPCWSTR* ppszStrings, LPWSTR pList, DWORD cbList,
                                 LPDWORD pcStored) {
  return tavkit::Array2MultiAsciiz<WideText>(ppszStrings, pList, cbList, pcStored);
}

BOOL UT_API utMultiAsciiz2Array(LPCSTR pList, LPCSTR* ppszArray, DWORD cbArray, LPDWORD pcStored) {
  return tavkit::MultiAsciiz2Array<ByteText>(pList, ppszArray, cbArray, pcStored);
}

BOOL UT_API utMultiAsciiz2ArrayW(LPCWSTR pList, LPCWSTR* ppszArray, DWORD cbArray,
                                 LPDWORD pcStored) {
  return tavkit::MultiAsciiz2Array<WideText>(pList, ppszArray, cbArray, pcStored);
}
