// A value as a text, a number or a boolean, over the values of one call each.
#include "registry/typed_values.h"

#include <tavkit/registry.h>
#include <tavkit/strings.h>
#include <win32.h>

#include "strings/strings.h"

namespace tavkit {
namespace {

constexpr LPCSTR kTrueWords[] = {"TRUE", "YES", "ON", "1"};
constexpr LPCSTR kFalseWords[] = {"FALSE", "NO", "OFF", "0"};

// What a boolean is read into. The query may fill kSize bytes; the zero after them ends a text
// that was stored without its terminator.
struct BoolData {
  static constexpr DWORD kSize = 48;
  CHAR bytes[kSize + 1] = {};
};

// The code for a value that was read and is of no use.
DWORD Refused(DWORD code) { return code == ERROR_SUCCESS ? ERROR_INVALID_DATA : code; }

bool IsOneOf(LPCSTR pszText, const LPCSTR (&words)[4]) {
  for (LPCSTR pszWord : words) {
    if (lstrcmpiA(pszText, pszWord) == 0) return true;
  }
  return false;
}

BOOL utRegBoolFromWord(LPCSTR pszText, BOOL* pfValue) {
  const bool isTrue = IsOneOf(pszText, kTrueWords);
  if (!isTrue && !IsOneOf(pszText, kFalseWords)) return FALSE;
  *pfValue = isTrue;
  return TRUE;
}

// Stores the boolean that a value of this type and size stands for; false if it stands for none.
bool BoolFromData(DWORD dwType, const BoolData& data, DWORD cbData, BOOL* pfValue) {
  switch (dwType) {
    case REG_BINARY:
      if (cbData == 0) return false;
      *pfValue = data.bytes[0] != 0;
      return true;
    case REG_DWORD:
      if (cbData < sizeof(DWORD)) return false;
      *pfValue = ReadValue<DWORD>(data.bytes) != 0;
      return true;
    case REG_SZ:
      return utRegBoolFromWord(data.bytes, pfValue);
    default:
      return false;
  }
}

}  // namespace

DWORD ReadString(HKEY hKey, LPCSTR pszSubKey, LPCSTR pszValueName, LPCSTR pszDefault,
                 LPSTR pszBuffer, DWORD cbBuffer, DWORD* pcbFilled) {
  DWORD dwType = 0;
  DWORD cbData = cbBuffer;
  const DWORD code = utRegQueryValue(hKey, pszSubKey, pszValueName, &dwType, pszBuffer, &cbData);
  if (code == ERROR_SUCCESS && dwType == REG_SZ) {
    *pcbFilled = cbData < cbBuffer ? cbData : cbBuffer;
    return ERROR_SUCCESS;
  }
  *pcbFilled = utCopyString(pszDefault, pszBuffer, cbBuffer) ? cbBuffer : 0;
  return Refused(code);
}

}  // namespace tavkit

using namespace tavkit;

DWORD UT_API utRegGetValueString(HKEY hKey, LPCSTR pszSubKey, LPCSTR pszValueName,
                                 LPCSTR pszDefault, LPSTR pszBuffer, DWORD cbBuffer) {
  DWORD cbFilled;
  return ReadString(hKey, pszSubKey, pszValueName, pszDefault, pszBuffer, cbBuffer, &cbFilled);
}

DWORD UT_API utRegGetValueDword(HKEY hKey, LPCSTR pszSubKey, LPCSTR pszValueName, DWORD dwDefault,
                                LPDWORD pdwValue) {
  DWORD dwType = 0;
  DWORD cbData = sizeof *pdwValue;
  const DWORD code = utRegQueryValue(hKey, pszSubKey, pszValueName, &dwType, pdwValue, &cbData);
  if (code == ERROR_SUCCESS && dwType == REG_DWORD) return ERROR_SUCCESS;
  *pdwValue = dwDefault;
  return Refused(code);
}

DWORD UT_API utRegGetValueBool(HKEY hKey, LPCSTR pszSubKey, LPCSTR pszValueName, BOOL fDefault,
                               BOOL* pfValue) {
  BoolData data;
  DWORD dwType = 0;
  DWORD cbData = data.kSize;
  const DWORD code = utRegQueryValue(hKey, pszSubKey, pszValueName, &dwType, data.bytes, &cbData);
  *pfValue = fDefault;
  if (code == ERROR_SUCCESS && BoolFromData(dwType, data, cbData, pfValue)) {
    return ERROR_SUCCESS;
  }
  return Refused(code);
}

DWORD UT_API utRegSetValueString(HKEY hKey, LPCSTR pszSubKey, LPCSTR pszValueName, LPCSTR pszText,
                                 BOOL fCreate) {
  if (pszText == nullptr) pszText = "";
  const DWORD cbText = SizeToCopy<ByteText>(pszText);
  if (cbText == kUncountable) return ERROR_INVALID_PARAMETER;
  return utRegSetValue(hKey, pszSubKey, pszValueName, REG_SZ, pszText, cbText, fCreate);
}

DWORD UT_API utRegSetValueDword(HKEY hKey, LPCSTR pszSubKey, LPCSTR pszValueName, DWORD dwValue,
                                BOOL fCreate) {
  return utRegSetValue(hKey, pszSubKey, pszValueName, REG_DWORD, &dwValue, sizeof dwValue, fCreate);
}

DWORD UT_API utRegSetValueBool(HKEY hKey, LPCSTR pszSubKey, LPCSTR pszValueName, BOOL fValue,
                               BOOL fCreate) {
  const BYTE flag = fValue != 0;
  return utRegSetValue(hKey, pszSubKey, pszValueName, REG_BINARY, &flag, sizeof flag, fCreate);
}
