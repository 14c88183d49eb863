#include "registry/key_path.h"

#include "strings/strings.h"

namespace tavkit {
namespace {

// The size of a path with one more part; its terminator is in it at all times.
DWORD SizeWithPart(DWORD size, LPCSTR pszPart) {
  if (pszPart == nullptr) return size;
  const DWORD cbPart = SizeToCopy<ByteText>(pszPart);
  // After another part, the place of one of the two terminators is the backslash's.
  return size == sizeof(CHAR) ? cbPart : AddSizes(size, cbPart);
}

void AppendPart(LPSTR pszPath, LPCSTR pszPart) {
  if (pszPart == nullptr) return;
  if (*pszPath != 0) lstrcatA(pszPath, "\\");
  lstrcatA(pszPath, pszPart);
}

}  // namespace

DWORD utRegJoinPathSize(LPCSTR pszFirst, LPCSTR pszSecond, LPCSTR pszThird) {
  return SizeWithPart(SizeWithPart(SizeWithPart(sizeof(CHAR), pszFirst), pszSecond), pszThird);
}

BOOL utRegJoinPath(LPSTR pszPath, DWORD cbPath, LPCSTR pszFirst, LPCSTR pszSecond,
                   LPCSTR pszThird) {
  if (pszPath == nullptr || cbPath == 0) return FALSE;
  if (!Fits(utRegJoinPathSize(pszFirst, pszSecond, pszThird), cbPath)) return FALSE;
  *pszPath = 0;
  AppendPart(pszPath, pszFirst);
  AppendPart(pszPath, pszSecond);
  AppendPart(pszPath, pszThird);
  return TRUE;
}

}  // namespace tavkit
