// Sixteen bytes at a time. A block is sixteen aligned bytes; a lane is one unit in it; a lane mask
// has all bits of the lanes that pass a comparison; its movemask has one bit for each byte.
#ifndef TAVKIT_FRAME_SSE2_H
#define TAVKIT_FRAME_SSE2_H

#include <emmintrin.h>
#include <tavkit/types.h>

namespace tavkit {

inline constexpr DWORD kBlock = sizeof(__m128i);
static_assert(kBlock == 16);

// Bytes at any address.
inline __m128i LoadBytes(const void* p) { return _mm_loadu_si128(static_cast<const __m128i*>(p)); }
inline void StoreBytes(void* p, __m128i bytes) {
  _mm_storeu_si128(static_cast<__m128i*>(p), bytes);
}
inline __m128i LoadHalf(const void* p) { return _mm_loadl_epi64(static_cast<const __m128i*>(p)); }
inline void StoreHalf(void* p, __m128i bytes) { _mm_storel_epi64(static_cast<__m128i*>(p), bytes); }

// Reads a block that holds at least one byte of a text. It lies in one page, so it may be read
// whole: the one place that reads more than it is asked for. Only a sanitizer would object.
__attribute__((no_sanitize("address"))) inline __m128i LoadBlock(uintptr_t block) {
  return _mm_load_si128(reinterpret_cast<const __m128i*>(block));
}

// As LoadBlock, from a few bytes below the block, which are of the same text.
__attribute__((no_sanitize("address"))) inline __m128i LoadBelow(uintptr_t block, DWORD bytes) {
  return _mm_loadu_si128(reinterpret_cast<const __m128i*>(block - bytes));
}

inline uintptr_t AddressOf(const void* p) { return reinterpret_cast<uintptr_t>(p); }
inline uintptr_t BlockOf(const void* p) { return AddressOf(p) & ~(uintptr_t{kBlock} - 1); }
inline DWORD OffsetInBlock(const void* p) { return AddressOf(p) % kBlock; }

// The bits of the bytes of a block from an address on.
inline DWORD BitsFrom(const void* p) { return ~0u << OffsetInBlock(p); }

inline DWORD Movemask(__m128i lanes) { return static_cast<DWORD>(_mm_movemask_epi8(lanes)); }
inline DWORD LowestBit(DWORD bits) { return static_cast<DWORD>(__builtin_ctz(bits)); }
inline DWORD HighestBit(DWORD bits) { return 31 - static_cast<DWORD>(__builtin_clz(bits)); }

}  // namespace tavkit

#endif  // TAVKIT_FRAME_SSE2_H
