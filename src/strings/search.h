// Searches for units of text, sixteen bytes a step, and sixty-four where nothing is to be found.
// They become the bodies of exports, which all else calls by Text::Find and Text::End.
#ifndef TAVKIT_STRINGS_SEARCH_H
#define TAVKIT_STRINGS_SEARCH_H

#include "strings/blocks.h"

namespace tavkit {

// A stop is a unit that ends a search: the sought one, or the terminator.

// All bits of those units of a block that are stops.
template <class Text>
__m128i StopsOf(__m128i units, __m128i sought) {
  return _mm_or_si128(EqualUnits(units, sought, Text{}),
                      EqualUnits(units, _mm_setzero_si128(), Text{}));
}

template <class Text>
DWORD StopsOfBlock(uintptr_t block, __m128i sought) {
  return BitsOf(StopsOf<Text>(LoadBlock(block), sought));
}

// Zero in those bytes that are stops.
inline __m128i ZeroAtStops(__m128i bytes, __m128i sought) {
  return _mm_min_epu8(_mm_xor_si128(bytes, sought), bytes);
}

// Whether one of four blocks holds a stop.
inline bool HasStop(__m128i a, __m128i b, __m128i c, __m128i d, __m128i sought, ByteText) {
  const __m128i least = _mm_min_epu8(_mm_min_epu8(ZeroAtStops(a, sought), ZeroAtStops(b, sought)),
                                     _mm_min_epu8(ZeroAtStops(c, sought), ZeroAtStops(d, sought)));
  return BitsOf(_mm_cmpeq_epi8(least, _mm_setzero_si128())) != 0;
}

inline bool HasStop(__m128i a, __m128i b, __m128i c, __m128i d, __m128i sought, WideText) {
  const __m128i stops =
      _mm_or_si128(_mm_or_si128(StopsOf<WideText>(a, sought), StopsOf<WideText>(b, sought)),
                   _mm_or_si128(StopsOf<WideText>(c, sought), StopsOf<WideText>(d, sought)));
  return BitsOf(stops) != 0;
}

inline constexpr DWORD kStride = 4 * kBlock;

// The first of the aligned strides that holds a stop. Those in front of it are text throughout, so
// its first byte is text too.
template <class Text>
uintptr_t FindStride(uintptr_t stride, __m128i sought) {
  while (!HasStop(LoadBlock(stride), LoadBlock(stride + kBlock), LoadBlock(stride + 2 * kBlock),
                  LoadBlock(stride + 3 * kBlock), sought, Text{})) {
    stride += kStride;
  }
  return stride;
}

// The block to look into behind one that holds no stop.
template <class Text>
uintptr_t NextBlock(uintptr_t block, __m128i sought) {
  block += kBlock;
  return block % kStride == 0 ? FindStride<Text>(block, sought) : block;
}

// The units of a text at an odd address are cut by the blocks; bytes never are.
template <class Text>
bool IsCut(const Char<Text>* psz) {
  return reinterpret_cast<uintptr_t>(psz) % Text::kUnit != 0;
}

// The first stop.
template <class Text>
Char<Text>* FindStop(const Char<Text>* psz, WORD wSought) {
  if (IsCut<Text>(psz)) {
    while (Text::Load(psz) != wSought && Text::Load(psz) != 0) ++psz;
    return const_cast<Char<Text>*>(psz);
  }
  const __m128i sought = Repeat(wSought, Text{});
  uintptr_t block = BlockOf(psz);
  DWORD stops = StopsOfBlock<Text>(block, sought) & BitsFrom(psz);
  while (stops == 0) {
    block = NextBlock<Text>(block, sought);
    stops = StopsOfBlock<Text>(block, sought);
  }
  return reinterpret_cast<Char<Text>*>(block + LowestBit(stops));
}

// The terminator.
template <class Text>
Char<Text>* FindEnd(const Char<Text>* psz) {
  return FindStop<Text>(psz, 0);
}

// The first match, the terminator included; NULL if there is none.
template <class Text>
Char<Text>* FindChar(const Char<Text>* psz, WORD wChar) {
  const WORD wSought = Text::Sought(wChar);
  Char<Text>* pszStop = FindStop<Text>(psz, wSought);
  return Text::Load(pszStop) == wSought ? pszStop : nullptr;
}

template <class Text>
Char<Text>* FindLastInBlocks(const Char<Text>* psz, WORD wSought) {
  const __m128i sought = Repeat(wSought, Text{});
  uintptr_t block = BlockOf(psz), found = 0;
  DWORD matches = 0;
  for (DWORD text = BitsFrom(psz);; text = ~0u) {
    const __m128i units = LoadBlock(block);
    const DWORD end = BitsOf(EqualUnits(units, _mm_setzero_si128(), Text{})) & text;
    const DWORD upToEnd = end ^ (end - 1);
    const DWORD here = BitsOf(EqualUnits(units, sought, Text{})) & text & upToEnd;
    if (here != 0) {
      found = block;
      matches = here;
    }
    if (end != 0) break;
    block = NextBlock<Text>(block, sought);
  }
  if (matches == 0) return nullptr;
  return reinterpret_cast<Char<Text>*>(found + (HighestBit(matches) & ~(Text::kUnit - 1)));
}

// The last match, the terminator included; NULL if there is none.
template <class Text>
Char<Text>* FindRevChar(const Char<Text>* psz, WORD wChar) {
  const WORD wSought = Text::Sought(wChar);
  if (!IsCut<Text>(psz)) return FindLastInBlocks<Text>(psz, wSought);
  const Char<Text>* pszFound = nullptr;
  for (;; ++psz) {
    if (Text::Load(psz) == wSought) pszFound = psz;
    if (Text::Load(psz) == 0) return const_cast<Char<Text>*>(pszFound);
  }
}

}  // namespace tavkit

#endif  // TAVKIT_STRINGS_SEARCH_H
