// Bytes as hexadecimal text and back, sixteen bytes a step where there are as many, then eight.
#include <tavkit/convert.h>

#include "convert/hex_value.h"
#include "frame/sse2.h"

namespace tavkit {
namespace {

constexpr DWORD kHalf = kBlock / 2;

// Values of 0 to 15 as their digits.
__m128i DigitsOf(__m128i values) {
  const __m128i isLetter = _mm_cmpgt_epi8(values, _mm_set1_epi8(9));
  const __m128i gap = _mm_and_si128(isLetter, _mm_set1_epi8('A' - '9' - 1));
  return _mm_add_epi8(_mm_add_epi8(values, _mm_set1_epi8('0')), gap);
}

__m128i HighDigits(__m128i bytes) {
  return DigitsOf(_mm_and_si128(_mm_srli_epi16(bytes, 4), _mm_set1_epi8(0x0F)));
}

__m128i LowDigits(__m128i bytes) { return DigitsOf(_mm_and_si128(bytes, _mm_set1_epi8(0x0F))); }

// Writes the 32 digits of 16 bytes.
void WriteDigits(LPSTR pszTarget, const BYTE* pbSource) {
  const __m128i bytes = LoadBytes(pbSource);
  const __m128i high = HighDigits(bytes), low = LowDigits(bytes);
  StoreBytes(pszTarget, _mm_unpacklo_epi8(high, low));
  StoreBytes(pszTarget + kBlock, _mm_unpackhi_epi8(high, low));
}

// Writes the 16 digits of 8 bytes.
void WriteHalf(LPSTR pszTarget, const BYTE* pbSource) {
  const __m128i bytes = LoadHalf(pbSource);
  StoreBytes(pszTarget, _mm_unpacklo_epi8(HighDigits(bytes), LowDigits(bytes)));
}

// Characters as their values, 0 for those that are no digits.
__m128i ValuesOf(__m128i text) {
  const __m128i digits = _mm_sub_epi8(text, _mm_set1_epi8('0'));
  const __m128i isDigit = _mm_cmpeq_epi8(_mm_min_epu8(digits, _mm_set1_epi8(9)), digits);
  const __m128i letters =
      _mm_sub_epi8(_mm_or_si128(text, _mm_set1_epi8('a' - 'A')), _mm_set1_epi8('a'));
  const __m128i isLetter = _mm_cmpeq_epi8(_mm_min_epu8(letters, _mm_set1_epi8(5)), letters);
  return _mm_or_si128(_mm_and_si128(digits, isDigit),
                      _mm_and_si128(_mm_add_epi8(letters, _mm_set1_epi8(10)), isLetter));
}

// Two values each, the first being the high four bits, as one 16-bit number below 256.
__m128i PairsOf(__m128i values) {
  const __m128i both = _mm_or_si128(_mm_slli_epi16(values, 4), _mm_srli_epi16(values, 8));
  return _mm_and_si128(both, _mm_set1_epi16(0xFF));
}

// Reads the 32 digits of 16 bytes.
void ReadDigits(LPBYTE pbTarget, LPCSTR pszSource) {
  StoreBytes(pbTarget, _mm_packus_epi16(PairsOf(ValuesOf(LoadBytes(pszSource))),
                                        PairsOf(ValuesOf(LoadBytes(pszSource + kBlock)))));
}

// Reads the 16 digits of 8 bytes.
void ReadHalf(LPBYTE pbTarget, LPCSTR pszSource) {
  StoreHalf(pbTarget,
            _mm_packus_epi16(PairsOf(ValuesOf(LoadBytes(pszSource))), _mm_setzero_si128()));
}

DWORD ValueOf(CHAR character) { return HexCharValue(static_cast<BYTE>(character)); }

}  // namespace
}  // namespace tavkit

using namespace tavkit;

void UT_API utHex2Ascii(LPSTR pszTarget, const BYTE* pbSource, DWORD cbSource) {
  if (pszTarget == nullptr || pbSource == nullptr) return;
  for (; cbSource >= kBlock; cbSource -= kBlock) {
    WriteDigits(pszTarget, pbSource);
    pbSource += kBlock;
    pszTarget += 2 * kBlock;
  }
  if (cbSource >= kHalf) {
    WriteHalf(pszTarget, pbSource);
    pbSource += kHalf;
    pszTarget += 2 * kHalf;
    cbSource -= kHalf;
  }
#pragma clang loop unroll(disable) vectorize(disable)
  for (; cbSource != 0; --cbSource) {
    static constexpr char kDigits[] = "0123456789ABCDEF";
    const BYTE byte = *pbSource++;
    *pszTarget++ = kDigits[byte >> 4];
    *pszTarget++ = kDigits[byte & 0x0F];
  }
}

void UT_API utAscii2Hex(LPBYTE pbTarget, LPCSTR pszSource, DWORD cchSource) {
  if (pbTarget == nullptr || pszSource == nullptr) return;
  for (; cchSource >= 2 * kBlock; cchSource -= 2 * kBlock) {
    ReadDigits(pbTarget, pszSource);
    pszSource += 2 * kBlock;
    pbTarget += kBlock;
  }
  if (cchSource >= 2 * kHalf) {
    ReadHalf(pbTarget, pszSource);
    pszSource += 2 * kHalf;
    pbTarget += kHalf;
    cchSource -= 2 * kHalf;
  }
#pragma clang loop unroll(disable) vectorize(disable)
  for (; cchSource >= 2; cchSource -= 2, pszSource += 2) {
    *pbTarget++ = static_cast<BYTE>(ValueOf(pszSource[0]) << 4 | ValueOf(pszSource[1]));
  }
  if (cchSource != 0) *pbTarget = static_cast<BYTE>(ValueOf(*pszSource));
}
