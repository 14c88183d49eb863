// Finds zero units in text of any length, sixteen bytes a step.
#ifndef TAVKIT_MULTIASCIIZ_ZEROS_H
#define TAVKIT_MULTIASCIIZ_ZEROS_H

#include <emmintrin.h>

#include "strings/text.h"

namespace tavkit {

inline constexpr DWORD kBlock = sizeof(__m128i);

// One bit for each byte of an aligned block, set where the byte is zero. A block holds at least one
// byte of the text and lies in one page, so it may be read whole; only a sanitizer would object.
__attribute__((no_sanitize("address"))) inline DWORD ZerosOfBlock(uintptr_t block) {
  static_assert(kBlock == 16);
  const __m128i bytes = _mm_load_si128(reinterpret_cast<const __m128i*>(block));
  return static_cast<DWORD>(_mm_movemask_epi8(_mm_cmpeq_epi8(bytes, _mm_setzero_si128())));
}

// The first zero unit of a text that has kUnits - 1 zero units directly in front of it; the text's
// own start has them too.
template <class Text, DWORD kUnits>
Char<Text>* FindZeros(const Char<Text>* psz) {
  constexpr DWORD kRun = kUnits * Text::kUnit;
  static_assert(kRun == 1 || kRun == 2 || kRun == 4);
  constexpr DWORD kBefore = kRun - Text::kUnit;
  const auto start = reinterpret_cast<uintptr_t>(psz);
  const DWORD offset = start % kBlock;
  // The bytes at which a unit ends, in a window of two blocks whose upper half is the current
  // block.
  const DWORD unitEnds = (Text::kUnit == 1 ? ~0u : 0xAAAAAAAAu >> (offset & 1)) & (~0u << kBlock);

  uintptr_t block = start - offset;
  DWORD window = (ZerosOfBlock(block) & (~0u << offset)) << kBlock;
  window |= ((1u << kBefore) - 1) << (kBlock + offset - kBefore);
  for (;;) {
    DWORD runEnds = window;
    if (kRun >= 2) runEnds &= runEnds << 1;
    if (kRun >= 4) runEnds &= runEnds << 2;
    runEnds &= unitEnds;
    if (runEnds != 0) {
      const DWORD lastByte = static_cast<DWORD>(__builtin_ctz(runEnds)) - kBlock;
      return reinterpret_cast<Char<Text>*>(block + lastByte + 1 - Text::kUnit);
    }
    block += kBlock;
    window = ZerosOfBlock(block) << kBlock | window >> kBlock;
  }
}

}  // namespace tavkit

#endif  // TAVKIT_MULTIASCIIZ_ZEROS_H
