// Settings in the private tree of the user, over the typed values.
#include <tavkit/frame.h>
#include <tavkit/registry.h>
#include <win32.h>

#include "registry/key_path.h"
#include "registry/typed_values.h"

namespace tavkit {
namespace {

constexpr DWORD kPathSize = 260;

BOOL JoinPrivatePath(LPSTR pszPath, DWORD cbPath, LPCSTR pszSection, LPCSTR pszProduct) {
  return utRegJoinPath(pszPath, cbPath, "Software\\Brindlex", pszProduct, pszSection);
}

// The path of a section below HKEY_CURRENT_USER. Not to be used where it doesn't fit.
class PrivatePath {
 public:
  PrivatePath(LPCSTR pszSection, LPCSTR pszProduct)
      : fits_(JoinPrivatePath(path_, sizeof path_, pszSection, pszProduct) != 0) {}

  bool Fits() const { return fits_; }
  operator LPCSTR() const { return path_; }

 private:
  CHAR path_[kPathSize];
  bool fits_;
};

// Bytes that precede the first zero in the buffer, or cbFilled if there is none. How large an
// unchecked buffer is nobody knows: only what was filled is looked at.
DWORD TextLength(LPCSTR pszText, DWORD cbBuffer, DWORD cbFilled) {
  const DWORD cbSearched = cbBuffer == UT_SIZE_UNCHECKED ? cbFilled : cbBuffer;
  for (DWORD i = 0; i < cbSearched; ++i) {
    // The platform's measure is the result; it looks for the zero without a bound.
    if (pszText[i] == 0) return static_cast<DWORD>(lstrlenA(pszText));
  }
  return cbFilled;
}

}  // namespace
}  // namespace tavkit

using namespace tavkit;

BOOL UT_API utRegPathBrindlexSoftware(LPSTR pszPath, DWORD cbPath, LPCSTR pszSection,
                                      LPCSTR pszProduct) {
  return JoinPrivatePath(pszPath, cbPath, pszSection, pszProduct);
}

DWORD UT_API utRegOpenPrivateUserKey(LPCSTR pszSection, LPCSTR pszProduct, REGSAM samDesired,
                                     PHKEY phkResult) {
  const PrivatePath path(pszSection, pszProduct);
  if (!path.Fits()) return ERROR_FILE_NOT_FOUND;
  return static_cast<DWORD>(RegOpenKeyExA(HKEY_CURRENT_USER, path, 0, samDesired, phkResult));
}

BOOL UT_API utRegVerifyPrivateUserKey(LPCSTR pszSection, LPCSTR pszProduct) {
  const PrivatePath path(pszSection, pszProduct);
  return path.Fits() && utRegVerifyKey(HKEY_CURRENT_USER, path);
}

BOOL UT_API utRegVerifyPrivateUserValue(LPCSTR pszSection, LPCSTR pszValueName, LPCSTR pszProduct,
                                        LPDWORD pdwType) {
  const PrivatePath path(pszSection, pszProduct);
  return path.Fits() && utRegVerifyValue(HKEY_CURRENT_USER, path, pszValueName, pdwType);
}

BOOL UT_API utRegDeletePrivateUserValue(LPCSTR pszSection, LPCSTR pszValueName, LPCSTR pszProduct) {
  const PrivatePath path(pszSection, pszProduct);
  return path.Fits() && utRegDeleteValue(HKEY_CURRENT_USER, path, pszValueName) == ERROR_SUCCESS;
}

DWORD UT_API utRegDeletePrivateUserKey(LPCSTR pszSection, LPCSTR pszProduct) {
  const PrivatePath path(pszSection, pszProduct);
  if (!path.Fits()) return ERROR_INVALID_PARAMETER;
  return static_cast<DWORD>(RegDeleteKeyA(HKEY_CURRENT_USER, path));
}

DWORD UT_API utRegGetPrivateUserString(LPCSTR pszSection, LPCSTR pszValueName, LPCSTR pszDefault,
                                       LPSTR pszBuffer, DWORD cbBuffer, LPCSTR pszProduct) {
  const PrivatePath path(pszSection, pszProduct);
  if (!path.Fits()) return 0;
  DWORD cbFilled;
  ReadString(HKEY_CURRENT_USER, path, pszValueName, pszDefault, pszBuffer, cbBuffer, &cbFilled);
  return pszBuffer == nullptr ? 0 : TextLength(pszBuffer, cbBuffer, cbFilled);
}

DWORD UT_API utRegGetPrivateUserDword(LPCSTR pszSection, LPCSTR pszValueName, DWORD dwDefault,
                                      LPCSTR pszProduct) {
  const PrivatePath path(pszSection, pszProduct);
  if (!path.Fits()) return dwDefault;
  DWORD dwValue = 0;  // a stored value of fewer bytes leaves the others alone
  utRegGetValueDword(HKEY_CURRENT_USER, path, pszValueName, dwDefault, &dwValue);
  return dwValue;
}

BOOL UT_API utRegGetPrivateUserBool(LPCSTR pszSection, LPCSTR pszValueName, BOOL fDefault,
                                    LPCSTR pszProduct) {
  const PrivatePath path(pszSection, pszProduct);
  if (!path.Fits()) return fDefault;
  BOOL fValue;
  utRegGetValueBool(HKEY_CURRENT_USER, path, pszValueName, fDefault, &fValue);
  return fValue;
}

DWORD UT_API utRegGetPrivateUserBinary(LPCSTR pszSection, LPCSTR pszValueName, LPDWORD pdwType,
                                       LPVOID pData, LPDWORD pcbData, LPCSTR pszProduct) {
  const PrivatePath path(pszSection, pszProduct);
  if (!path.Fits()) return ERROR_INVALID_PARAMETER;
  return utRegQueryValue(HKEY_CURRENT_USER, path, pszValueName, pdwType, pData, pcbData);
}

BOOL UT_API utRegWritePrivateUserString(LPCSTR pszSection, LPCSTR pszValueName, LPCSTR pszText,
                                        LPCSTR pszProduct) {
  if (pszText == nullptr) return utRegDeletePrivateUserValue(pszSection, pszValueName, pszProduct);
  const PrivatePath path(pszSection, pszProduct);
  return path.Fits() &&
         utRegSetValueString(HKEY_CURRENT_USER, path, pszValueName, pszText, TRUE) == ERROR_SUCCESS;
}

BOOL UT_API utRegWritePrivateUserDword(LPCSTR pszSection, LPCSTR pszValueName, DWORD dwValue,
                                       LPCSTR pszProduct) {
  const PrivatePath path(pszSection, pszProduct);
  return path.Fits() &&
         utRegSetValueDword(HKEY_CURRENT_USER, path, pszValueName, dwValue, TRUE) == ERROR_SUCCESS;
}

BOOL UT_API utRegWritePrivateUserBool(LPCSTR pszSection, LPCSTR pszValueName, BOOL fValue,
                                      LPCSTR pszProduct) {
  const PrivatePath path(pszSection, pszProduct);
  return path.Fits() &&
         utRegSetValueBool(HKEY_CURRENT_USER, path, pszValueName, fValue, TRUE) == ERROR_SUCCESS;
}

BOOL UT_API utRegWritePrivateUserBinary(LPCSTR pszSection, LPCSTR pszValueName, LPCVOID pData,
                                        DWORD cbData, LPCSTR pszProduct) {
  if (pData == nullptr) return utRegDeletePrivateUserValue(pszSection, pszValueName, pszProduct);
  const PrivatePath path(pszSection, pszProduct);
  return path.Fits() && utRegSetValue(HKEY_CURRENT_USER, path, pszValueName, REG_BINARY, pData,
                                      cbData, TRUE) == ERROR_SUCCESS;
}
