// Scans of text, a block a step, and four where nothing is found. A stop is a unit that ends one.
#ifndef TAVKIT_STRINGS_SEARCH_H
#define TAVKIT_STRINGS_SEARCH_H

#include "strings/text.h"

namespace tavkit {

// The kinds of stops. Lanes() gives the lane mask of the stops of a block, Is() tells of a unit
// that a block would cut. The terminator is one of each kind's stops.

template <class Text>
struct Terminator {
  static __m128i Lanes(__m128i units) { return Text::EqualLanes(units, _mm_setzero_si128()); }
  static bool Is(WORD wUnit) { return wUnit == 0; }
};

template <class Text>
struct UnitOrTerminator {
  explicit UnitOrTerminator(WORD wSought) : wUnit(wSought), unit(Text::Broadcast(wSought)) {}

  __m128i Lanes(__m128i units) const {
    return _mm_or_si128(Text::EqualLanes(units, unit), Terminator<Text>::Lanes(units));
  }
  bool Is(WORD wFound) const { return wFound == wUnit || wFound == 0; }

  WORD wUnit;
  __m128i unit;
};

// Anything but one unit, which isn't zero.
template <class Text>
struct OtherUnit {
  explicit OtherUnit(WORD wSkipped) : wUnit(wSkipped), unit(Text::Broadcast(wSkipped)) {}

  __m128i Lanes(__m128i units) const {
    return _mm_xor_si128(Text::EqualLanes(units, unit), _mm_set1_epi8(-1));
  }
  bool Is(WORD wFound) const { return wFound != wUnit; }

  WORD wUnit;
  __m128i unit;
};

// Whatever may not be a character of one byte.
struct PerhapsLeadByte {
  static __m128i Lanes(__m128i units) {
    // As signed bytes, the terminator and those from there on are not above zero.
    static_assert(ByteText::kFirstLeadByte == 0x80);
    return _mm_cmplt_epi8(units, _mm_set1_epi8(1));
  }
};

// A block that holds stops, with the movemask of these.
struct Hit {
  uintptr_t block;
  DWORD stops;

  uintptr_t First() const { return block + LowestBit(stops); }
};

template <class Stops>
Hit LookAt(uintptr_t block, const Stops& stops) {
  return {block, Movemask(stops.Lanes(LoadBlock(block)))};
}

inline constexpr DWORD kStride = 4 * kBlock;

// Lanes that pass if one of the lanes at their place in four blocks is a stop.
template <class Stops>
__m128i LanesOfFour(__m128i a, __m128i b, __m128i c, __m128i d, const Stops& stops) {
  return _mm_or_si128(_mm_or_si128(stops.Lanes(a), stops.Lanes(b)),
                      _mm_or_si128(stops.Lanes(c), stops.Lanes(d)));
}

// A zero byte is the least of those at its place.
inline __m128i LanesOfFour(__m128i a, __m128i b, __m128i c, __m128i d,
                           const Terminator<ByteText>& stops) {
  return stops.Lanes(_mm_min_epu8(_mm_min_epu8(a, b), _mm_min_epu8(c, d)));
}

template <class Stops>
bool HasStop(uintptr_t stride, const Stops& stops) {
  return Movemask(LanesOfFour(LoadBlock(stride), LoadBlock(stride + kBlock),
                              LoadBlock(stride + 2 * kBlock), LoadBlock(stride + 3 * kBlock),
                              stops)) != 0;
}

// The next block with a stop after one with none that counts.
template <class Stops>
Hit ScanAfter(uintptr_t block, const Stops& stops) {
  // Most texts are short: three blocks are looked at one by one.
#pragma clang loop unroll(full)
  for (unsigned looked = 0; looked < 3; ++looked) {
    block += kBlock;
    const Hit hit = LookAt(block, stops);
    if (hit.stops != 0) return hit;
  }
  // The stride that the next block lies in; the blocks that precede it there hold no stop.
  uintptr_t stride = (block + kBlock) & ~uintptr_t{kStride - 1};
  while (!HasStop(stride, stops)) stride += kStride;
  Hit hit = LookAt(stride, stops);
  while (hit.stops == 0) hit = LookAt(hit.block + kBlock, stops);
  return hit;
}

// The address of the first stop. One in the first block is counted from the address itself.
template <class Stops>
uintptr_t FirstStop(const void* p, const Stops& stops) {
  const Hit hit = LookAt(BlockOf(p), stops);
  const DWORD near = hit.stops >> OffsetInBlock(p);
  return near != 0 ? AddressOf(p) + LowestBit(near) : ScanAfter(hit.block, stops).First();
}

// Whether the units of a text are cut by the blocks. Bytes never are.
template <class Text>
bool IsCut(const Char<Text>* psz) {
  return AddressOf(psz) % Text::kUnit != 0;
}

template <class Text, class Stops>
Char<Text>* Scan(const Char<Text>* psz, const Stops& stops) {
  if constexpr (Text::kMayBeCut) {
    if (IsCut<Text>(psz)) {
      while (!stops.Is(Text::Load(psz))) ++psz;
      return const_cast<Char<Text>*>(psz);
    }
  }
  return reinterpret_cast<Char<Text>*>(FirstStop(psz, stops));
}

// As FindEnd, in the caller's own code.
template <class Text>
Char<Text>* ScanEnd(const Char<Text>* psz) {
  return Scan<Text>(psz, Terminator<Text>());
}

template <class Text>
Char<Text>* UT_API FindEnd(const Char<Text>* psz) {
  return ScanEnd<Text>(psz);
}

template <class Text>
Char<Text>* UT_API FindChar(const Char<Text>* psz, WORD wChar) {
  const WORD wSought = Text::Sought(wChar);
  Char<Text>* pszStop = Scan<Text>(psz, UnitOrTerminator<Text>(wSought));
  return Text::Load(pszStop) == wSought ? pszStop : nullptr;
}

// The last match, the terminator included; NULL if there is none.
template <class Text>
Char<Text>* UT_API FindRevChar(const Char<Text>* psz, WORD wChar) {
  const WORD wSought = Text::Sought(wChar);
  if constexpr (Text::kMayBeCut) {
    if (IsCut<Text>(psz)) {
      const Char<Text>* pszFound = nullptr;
      for (;; ++psz) {
        if (Text::Load(psz) == wSought) pszFound = psz;
        if (Text::Load(psz) == 0) return const_cast<Char<Text>*>(pszFound);
      }
    }
  }
  const UnitOrTerminator<Text> stops(wSought);
  uintptr_t found = 0;
  Hit hit = LookAt(BlockOf(psz), stops);
  for (hit.stops &= BitsFrom(psz);; hit.stops = 0) {
    if (hit.stops == 0) hit = ScanAfter(hit.block, stops);
    const __m128i units = LoadBlock(hit.block);
    const DWORD ends = Movemask(Terminator<Text>::Lanes(units)) & hit.stops;
    const DWORD upToEnd = ends ^ (ends - 1);  // all bits where there is no end
    const DWORD matches = Movemask(Text::EqualLanes(units, stops.unit)) & hit.stops & upToEnd;
    if (matches != 0) found = hit.block + (HighestBit(matches) & ~(Text::kUnit - 1));
    if (ends != 0) return reinterpret_cast<Char<Text>*>(found);
  }
}

// Where the run of a unit begins that ends at pszEnd, not below pszStart.
template <class Text>
Char<Text>* FindRunStart(Char<Text>* pszStart, Char<Text>* pszEnd, WORD wUnit) {
  if (pszStart == pszEnd || Text::Load(pszEnd - 1) != wUnit) return pszEnd;
  if constexpr (Text::kMayBeCut) {
    if (IsCut<Text>(pszEnd)) {
      while (pszEnd != pszStart && Text::Load(pszEnd - 1) == wUnit) --pszEnd;
      return pszEnd;
    }
  }
  const OtherUnit<Text> others(wUnit);
  const uintptr_t first = BlockOf(pszStart);
  uintptr_t block = BlockOf(pszEnd);
  DWORD found = Movemask(others.Lanes(LoadBlock(block))) & ~BitsFrom(pszEnd);
  while (found == 0 && block != first) {
    block -= kBlock;
    found = Movemask(others.Lanes(LoadBlock(block)));
  }
  const uintptr_t run = found == 0 ? block : block + HighestBit(found) + 1;
  return run < AddressOf(pszStart) ? pszStart : reinterpret_cast<Char<Text>*>(run);
}

}  // namespace tavkit

#endif  // TAVKIT_STRINGS_SEARCH_H
