// Text sixteen bytes at a time: the one place that reads beyond what it is asked for.
#ifndef TAVKIT_STRINGS_BLOCKS_H
#define TAVKIT_STRINGS_BLOCKS_H

#include <emmintrin.h>

#include "strings/text.h"

namespace tavkit {

inline constexpr DWORD kBlock = sizeof(__m128i);
static_assert(kBlock == 16);

// Reads an aligned block that holds at least one byte of a text. It lies in one page, so it may be
// read whole; only a sanitizer would object.
__attribute__((no_sanitize("address"))) inline __m128i LoadBlock(uintptr_t block) {
  return _mm_load_si128(reinterpret_cast<const __m128i*>(block));
}

// As LoadBlock, from a little in front of the block, where the same text stands.
__attribute__((no_sanitize("address"))) inline __m128i LoadInFront(uintptr_t block, DWORD bytes) {
  return _mm_loadu_si128(reinterpret_cast<const __m128i*>(block - bytes));
}

// The block that an address lies in, and one bit for each byte of that block from the address on.
inline uintptr_t BlockOf(const void* p) {
  return reinterpret_cast<uintptr_t>(p) & ~(uintptr_t{kBlock} - 1);
}
inline DWORD BitsFrom(const void* p) { return ~0u << reinterpret_cast<uintptr_t>(p) % kBlock; }

// A block that holds one unit over and over.
inline __m128i Repeat(WORD wUnit, ByteText) { return _mm_set1_epi8(static_cast<char>(wUnit)); }
inline __m128i Repeat(WORD wUnit, WideText) { return _mm_set1_epi16(static_cast<short>(wUnit)); }

// All bits of those units that two blocks have in common.
inline __m128i EqualUnits(__m128i a, __m128i b, ByteText) { return _mm_cmpeq_epi8(a, b); }
inline __m128i EqualUnits(__m128i a, __m128i b, WideText) { return _mm_cmpeq_epi16(a, b); }

// One bit for each byte of a comparison.
inline DWORD BitsOf(__m128i equal) { return static_cast<DWORD>(_mm_movemask_epi8(equal)); }

inline DWORD LowestBit(DWORD bits) { return static_cast<DWORD>(__builtin_ctz(bits)); }
inline DWORD HighestBit(DWORD bits) { return 31 - static_cast<DWORD>(__builtin_clz(bits)); }

}  // namespace tavkit

#endif  // TAVKIT_STRINGS_BLOCKS_H
