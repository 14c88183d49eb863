// One value or key in one call, over the platform.
#include <tavkit/registry.h>
#include <tavkit/strings.h>

#include "registry/opened_key.h"

using namespace tavkit;

BOOL UT_API utRegVerifyKey(HKEY hKey, LPCSTR pszSubKey) {
  if (utIsNullOrEmptyString(pszSubKey)) return FALSE;
  return OpenedKey(hKey, pszSubKey, KEY_QUERY_VALUE).code() != ERROR_FILE_NOT_FOUND;
}

BOOL UT_API utRegVerifyValue(HKEY hKey, LPCSTR pszSubKey, LPCSTR pszValueName, LPDWORD pdwType) {
  DWORD cbData = 0;
  return utRegQueryValue(hKey, pszSubKey, pszValueName, pdwType, nullptr, &cbData) == ERROR_SUCCESS;
}

DWORD UT_API utRegQueryValue(HKEY hKey, LPCSTR pszSubKey, LPCSTR pszValueName, LPDWORD pdwType,
                             LPVOID pData, LPDWORD pcbData) {
  const OpenedKey key(hKey, pszSubKey, KEY_QUERY_VALUE);
  if (key.code() != ERROR_SUCCESS) return key.code();
  return static_cast<DWORD>(RegQueryValueExA(key.handle(), pszValueName, nullptr, pdwType,
                                             static_cast<LPBYTE>(pData), pcbData));
}

DWORD UT_API utRegSetValue(HKEY hKey, LPCSTR pszSubKey, LPCSTR pszValueName, DWORD dwType,
                           LPCVOID pData, DWORD cbData, BOOL fCreate) {
  OpenedKey key(hKey, pszSubKey, KEY_SET_VALUE);
  if (fCreate) key.CreateIfMissing(pszSubKey);
  if (key.code() != ERROR_SUCCESS) return key.code();
  return static_cast<DWORD>(RegSetValueExA(key.handle(), pszValueName, 0, dwType,
                                           static_cast<const BYTE*>(pData), cbData));
}

DWORD UT_API utRegDeleteValue(HKEY hKey, LPCSTR pszSubKey, LPCSTR pszValueName) {
  const OpenedKey key(hKey, pszSubKey, KEY_SET_VALUE);
  if (key.code() != ERROR_SUCCESS) return key.code();
  return static_cast<DWORD>(RegDeleteValueA(key.handle(), pszValueName));
}
