// Digits and numbers at the start of a text.
#include <tavkit/convert.h>

#include "convert/hex_value.h"
#include "strings/strings.h"

namespace tavkit {
namespace {

bool IsHexDigit(WORD wChar) { return HexValue(wChar) != kNoDigit; }

bool IsSpace(WORD wChar) { return wChar == ' ' || (wChar >= '\t' && wChar <= '\r'); }

// The bytes of a class are characters of their own.
template <class IsInClass>
bool IsStrOf(LPCSTR pszText, LPSTR* ppszBad, IsInClass isInClass) {
  if (pszText == nullptr) return true;
  while (isInClass(ByteText::Load(pszText))) ++pszText;
  if (ByteText::Load(pszText) == 0) return true;
  if (ppszBad != nullptr) *ppszBad = const_cast<LPSTR>(pszText);
  return false;
}

}  // namespace
}  // namespace tavkit

using namespace tavkit;

BOOL UT_API utIsStrDigit(LPCSTR pszText, LPSTR* ppszBad) {
  return IsStrOf(pszText, ppszBad, IsDigit);
}

BOOL UT_API utIsStrHexDigit(LPCSTR pszText, LPSTR* ppszBad) {
  return IsStrOf(pszText, ppszBad, IsHexDigit);
}

INT UT_API utHexCharValue(WORD wChar) { return static_cast<INT>(HexCharValue(wChar)); }

INT UT_API utAtoI(LPCSTR pszText) {
  while (IsSpace(ByteText::Load(pszText))) ++pszText;
  const bool isNegative = *pszText == '-';
  if (isNegative || *pszText == '+') ++pszText;
  // Unsigned, so that a number too large wraps.
  DWORD value = 0;
  for (; IsDigit(ByteText::Load(pszText)); ++pszText) {
    value = 10 * value + (ByteText::Load(pszText) - DWORD{'0'});
  }
  return static_cast<INT>(isNegative ? 0 - value : value);
}

DWORD UT_API utAtoX(LPCSTR pszText) {
  constexpr unsigned kMaxDigits = 2 * sizeof(DWORD);
  DWORD value = 0;
  if (IsNullOrEmpty<ByteText>(pszText)) return 0;
#pragma clang loop unroll(disable)
  for (unsigned taken = 0; taken < kMaxDigits; ++taken) {
    const DWORD digit = HexValue(ByteText::Load(pszText));
    if (digit == kNoDigit) break;
    value = 16 * value + digit;
    ++pszText;  // a digit is a character of its own
  }
  return value;
}
