#include "strings/strings.h"

using namespace tavkit;

namespace tavkit {

template CHAR* UT_API FindChar<ByteText>(const CHAR*, WORD);
template CHAR* UT_API FindEnd<ByteText>(const CHAR*);
template CHAR* UT_API SkipLeadChar<ByteText>(const CHAR*, WORD);
template BOOL UT_API CopyMakeAsciiz<ByteText>(LPCVOID, DWORD, CHAR*, DWORD);
template WCHAR* UT_API FindChar<WideText>(const WCHAR*, WORD);
template WCHAR* UT_API FindEnd<WideText>(const WCHAR*);
template WCHAR* UT_API SkipLeadChar<WideText>(const WCHAR*, WORD);
template BOOL UT_API CopyMakeAsciiz<WideText>(LPCVOID, DWORD, WCHAR*, DWORD);

}  // namespace tavkit

#if UINTPTR_MAX > 0xFFFFFFFF
DWORD ByteText::CheckedLength(const Char* psz, DWORD length) {
  if (length == 0) return 0;  // the address may be bad
  return ByteDistance(psz, FindEnd<ByteText>(psz)) < kUncountable ? length : kUncountable;
}
#endif

bool WideText::Copy(Char* pszDest, const Char* pszSource) {
  const Char* pszEnd = FindEnd<WideText>(pszSource);
  MoveBytes(pszDest, pszSource, ByteDistance(pszSource, pszEnd) + kUnit);
  return true;
}

Tail<CHAR> ByteText::FindTail(const Char* psz) {
  Tail<Char> tail = {const_cast<Char*>(psz), nullptr};
  for (;;) {
    tail.pszEnd = reinterpret_cast<Char*>(FirstStop(tail.pszStart, PerhapsLeadByte()));
    if (*tail.pszEnd == 0) return tail;
    tail.pszPrevious = tail.pszEnd;
    tail.pszStart = Next(tail.pszEnd);
  }
}

LPSTR UT_API utCharNext(LPCSTR psz) { return CharNext<ByteText>(psz); }
LPWSTR UT_API utCharNextW(LPCWSTR psz) { return CharNext<WideText>(psz); }

LPSTR UT_API utCharPrev(LPCSTR pszStart, LPCSTR pszCurrent) {
  return CharPrev<ByteText>(pszStart, pszCurrent);
}
LPWSTR UT_API utCharPrevW(LPCWSTR pszStart, LPCWSTR pszCurrent) {
  return CharPrev<WideText>(pszStart, pszCurrent);
}

LPSTR UT_API utCharLast(LPCSTR psz) { return CharLast<ByteText>(psz); }
LPWSTR UT_API utCharLastW(LPCWSTR psz) { return CharLast<WideText>(psz); }

LPSTR UT_API utCharNull(LPCSTR psz) { return ScanEnd<ByteText>(psz); }
LPWSTR UT_API utCharNullW(LPCWSTR psz) { return ScanEnd<WideText>(psz); }

LPSTR UT_API utFindChar(LPCSTR psz, WORD wChar) { return FindChar<ByteText>(psz, wChar); }
LPWSTR UT_API utFindCharW(LPCWSTR psz, WORD wChar) { return FindChar<WideText>(psz, wChar); }

LPSTR UT_API utFindRevChar(LPCSTR psz, WORD wChar) { return FindRevChar<ByteText>(psz, wChar); }
LPWSTR UT_API utFindRevCharW(LPCWSTR psz, WORD wChar) { return FindRevChar<WideText>(psz, wChar); }

LPSTR UT_API utTruncateAtChar(LPSTR psz, WORD wChar) {
  return TruncateAtChar<ByteText>(psz, wChar);
}
LPWSTR UT_API utTruncateAtCharW(LPWSTR psz, WORD wChar) {
  return TruncateAtChar<WideText>(psz, wChar);
}

LPSTR UT_API utSkipLeadChar(LPCSTR psz, WORD wChar) { return SkipLeadChar<ByteText>(psz, wChar); }
LPWSTR UT_API utSkipLeadCharW(LPCWSTR psz, WORD wChar) {
  return SkipLeadChar<WideText>(psz, wChar);
}

DWORD UT_API utCountLeadChar(LPCSTR psz, WORD wChar) { return CountLeadChar<ByteText>(psz, wChar); }
DWORD UT_API utCountLeadCharW(LPCWSTR psz, WORD wChar) {
  return CountLeadChar<WideText>(psz, wChar);
}

BOOL UT_API utTrimChar(LPSTR psz, WORD wChar, WORD wFlags) {
  return TrimChar<ByteText>(psz, wChar, wFlags);
}
BOOL UT_API utTrimCharW(LPWSTR psz, WORD wChar, WORD wFlags) {
  return TrimChar<WideText>(psz, wChar, wFlags);
}

DWORD UT_API utStringSize(LPCSTR psz, BOOL fWithTerminator) {
  return StringSize<ByteText>(psz, fWithTerminator != 0);
}
DWORD UT_API utStringSizeW(LPCWSTR psz, BOOL fWithTerminator) {
  return StringSize<WideText>(psz, fWithTerminator != 0);
}

BOOL UT_API utIsNullOrEmptyString(LPCSTR psz) { return IsNullOrEmpty<ByteText>(psz); }
BOOL UT_API utIsNullOrEmptyStringW(LPCWSTR psz) { return IsNullOrEmpty<WideText>(psz); }

BOOL UT_API utCopyMakeAsciiz(LPCVOID pSource, DWORD cbSource, LPSTR pszDest, DWORD cbDest) {
  return CopyMakeAsciiz<ByteText>(pSource, cbSource, pszDest, cbDest);
}
BOOL UT_API utCopyMakeAsciizW(LPCVOID pSource, DWORD cbSource, LPWSTR pszDest, DWORD cbDest) {
  return CopyMakeAsciiz<WideText>(pSource, cbSource, pszDest, cbDest);
}

BOOL UT_API utCopyString(LPCSTR pszSource, LPSTR pszDest, DWORD cbDest) {
  return CopyString<ByteText>(pszSource, pszDest, cbDest);
}
BOOL UT_API utCopyStringW(LPCWSTR pszSource, LPWSTR pszDest, DWORD cbDest) {
  return CopyString<WideText>(pszSource, pszDest, cbDest);
}

BOOL UT_API utCopyNonNullString(LPCSTR pszSource, LPSTR pszDest, DWORD cbDest) {
  return CopyNonNullString<ByteText>(pszSource, pszDest, cbDest);
}
BOOL UT_API utCopyNonNullStringW(LPCWSTR pszSource, LPWSTR pszDest, DWORD cbDest) {
  return CopyNonNullString<WideText>(pszSource, pszDest, cbDest);
}
