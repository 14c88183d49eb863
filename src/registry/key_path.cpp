#include "registry/key_path.h"

#include <win32.h>

#include "frame/buffer_size.h"

namespace tavkit {
namespace {

DWORD LengthWithPart(DWORD length, LPCSTR pszPart) {
  if (pszPart == nullptr) return length;
  if (length != 0) length = AddSizes(length, sizeof(CHAR));
  return AddSizes(length, static_cast<DWORD>(lstrlenA(pszPart)));
}

void AppendPart(LPSTR pszPath, LPCSTR pszPart) {
  if (pszPart == nullptr) return;
  if (*pszPath != 0) lstrcatA(pszPath, "\\");
  lstrcatA(pszPath, pszPart);
}

}  // namespace

DWORD utRegJoinPathSize(LPCSTR pszFirst, LPCSTR pszSecond, LPCSTR pszThird) {
  const DWORD length = LengthWithPart(LengthWithPart(0, pszFirst), pszSecond);
  return AddSizes(LengthWithPart(length, pszThird), sizeof(CHAR));
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
