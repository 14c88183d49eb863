// The value of one hexadecimal digit.
#ifndef TAVKIT_CONVERT_HEX_VALUE_H
#define TAVKIT_CONVERT_HEX_VALUE_H

#include <tavkit/types.h>

namespace tavkit {

inline bool IsDigit(WORD wChar) { return wChar >= '0' && wChar <= '9'; }

inline constexpr DWORD kNoDigit = 16;

// kNoDigit for what is none.
inline DWORD HexValue(WORD wChar) {
  const DWORD letter = (wChar | DWORD{'a' - 'A'}) - 'a';
  const DWORD value = letter < 6 ? letter + 10 : kNoDigit;
  return IsDigit(wChar) ? wChar - DWORD{'0'} : value;
}

// 0 for what is none.
inline DWORD HexCharValue(WORD wChar) { return HexValue(wChar) % kNoDigit; }

}  // namespace tavkit

#endif  // TAVKIT_CONVERT_HEX_VALUE_H
