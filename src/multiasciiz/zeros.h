// Finds zero units in text of any length, a block a step, four where a list goes on.
#ifndef TAVKIT_MULTIASCIIZ_ZEROS_H
#define TAVKIT_MULTIASCIIZ_ZEROS_H

#include "strings/search.h"

namespace tavkit {

// The movemask of the zero bytes of a block.
inline DWORD ZerosOfBlock(uintptr_t block) {
  return Movemask(Terminator<ByteText>::Lanes(LoadBlock(block)));
}

// The zero bytes of a text, in a window of two blocks:
//
//   bit     0 ... 15             16 ... 31
//   byte    previous block       current block
//   run     a run that began in the previous block is seen whole where it ends
template <class Text>
class ZeroWindow {
 public:
  // `before` is how many zero bytes are taken to precede the text directly.
  ZeroWindow(const Char<Text>* psz, DWORD before) : block_(BlockOf(psz)) {
    const DWORD offset = OffsetInBlock(psz);
    const DWORD unitEnds = Text::kUnit == 1 ? ~0u : 0xAAAAAAAAu >> (offset & 1);
    unitEnds_ = unitEnds & (~0u << kBlock);
    zeros_ = (ZerosOfBlock(block_) & BitsFrom(psz)) << kBlock;
    zeros_ |= ((1u << before) - 1) << (kBlock + offset - before);
  }

  uintptr_t block() const { return block_; }

  void Advance() { MoveTo(block_ + kBlock, zeros_ >> kBlock); }

  // Goes on at another block; the one that precedes it is text too.
  void MoveTo(uintptr_t block) { MoveTo(block, ZerosOfBlock(block - kBlock)); }

  // The units of the current block that end a run of so many zero bytes, by the bit of their last
  // byte.
  template <DWORD kRun>
  DWORD RunEnds() const {
    static_assert(kRun == 1 || kRun == 2 || kRun == 4);
    DWORD runEnds = zeros_;
    if (kRun >= 2) runEnds &= runEnds << 1;
    if (kRun >= 4) runEnds &= runEnds << 2;
    return runEnds & unitEnds_;
  }

  // The lowest of such units.
  Char<Text>* Lowest(DWORD runEnds) const {
    const DWORD lastByte = LowestBit(runEnds) - kBlock;
    return reinterpret_cast<Char<Text>*>(block_ + lastByte + 1 - Text::kUnit);
  }

 private:
  void MoveTo(uintptr_t block, DWORD previousZeros) {
    block_ = block;
    zeros_ = ZerosOfBlock(block) << kBlock | previousZeros;
  }

  uintptr_t block_;
  DWORD zeros_;
  DWORD unitEnds_;
};

// The lane mask of the zero units of a block that follow a zero unit.
template <class Text>
__m128i SecondZeros(uintptr_t block) {
  return Terminator<Text>::Lanes(_mm_or_si128(LoadBlock(block), LoadBelow(block, Text::kUnit)));
}

// The first of the strides that holds a zero unit which follows a zero unit. The unit that precedes
// the first stride is of the list too.
template <class Text>
uintptr_t FindEndStride(uintptr_t stride) {
  for (;; stride += kStride) {
    const __m128i low = _mm_or_si128(SecondZeros<Text>(stride), SecondZeros<Text>(stride + kBlock));
    const __m128i high = _mm_or_si128(SecondZeros<Text>(stride + 2 * kBlock),
                                      SecondZeros<Text>(stride + 3 * kBlock));
    if (Movemask(_mm_or_si128(low, high)) != 0) return stride;
  }
}

// The first zero unit of a list that follows a zero unit; the list's start counts as preceded by
// one. Not inlined: it is large, a list is walked by it once, and seven operations call it.
template <class Text>
[[gnu::noinline]] Char<Text>* FindFinalZero(const Char<Text>* pList) {
  constexpr DWORD kRun = 2 * Text::kUnit;
  ZeroWindow<Text> window(pList, Text::kUnit);
  DWORD runEnds = window.template RunEnds<kRun>();
  while (runEnds == 0) {
    const uintptr_t next = window.block() + kBlock;
    if (next % kStride == 0 && !IsCut<Text>(pList)) {
      window.MoveTo(FindEndStride<Text>(next));
    } else {
      window.Advance();
    }
    runEnds = window.template RunEnds<kRun>();
  }
  return window.Lowest(runEnds);
}

// The zero units of blocks that are text throughout, from one up to another.
template <class Text>
DWORD CountZerosOfBlocks(uintptr_t block, uintptr_t end) {
  const __m128i zero = _mm_setzero_si128();
  __m128i sums = zero;
  for (; block < end; block += kBlock) {
    const __m128i ones = _mm_sub_epi8(zero, Terminator<Text>::Lanes(LoadBlock(block)));
    sums = _mm_add_epi32(sums, _mm_sad_epu8(ones, zero));
  }
  const __m128i sum = _mm_add_epi32(sums, _mm_unpackhi_epi64(sums, sums));
  return static_cast<DWORD>(_mm_cvtsi128_si32(sum)) / Text::kUnit;
}

// The zero units of a block, among those whose bytes are given by a bit each.
template <class Text>
DWORD CountZerosAmong(uintptr_t block, DWORD bytes) {
  const DWORD zeros = Movemask(Terminator<Text>::Lanes(LoadBlock(block)));
  return static_cast<DWORD>(__builtin_popcount(zeros & bytes)) / Text::kUnit;
}

// How many zero units stand between two places of a text that the blocks don't cut. The other bytes
// of their blocks belong to others, who may be writing to them.
template <class Text>
DWORD CountZeros(const Char<Text>* pFrom, const Char<Text>* pTo) {
  const uintptr_t first = BlockOf(pFrom), last = BlockOf(pTo);
  if (first == last) return CountZerosAmong<Text>(first, BitsFrom(pFrom) & ~BitsFrom(pTo));
  return CountZerosAmong<Text>(first, BitsFrom(pFrom)) +
         CountZerosOfBlocks<Text>(first + kBlock, last) +
         CountZerosAmong<Text>(last, ~BitsFrom(pTo));
}

// The zero units of a text, one after the other.
template <class Text>
class ZeroUnits {
 public:
  explicit ZeroUnits(const Char<Text>* psz)
      : window_(psz, 0), ends_(window_.template RunEnds<Text::kUnit>()) {}

  Char<Text>* Next() {
    while (ends_ == 0) {
      window_.Advance();
      ends_ = window_.template RunEnds<Text::kUnit>();
    }
    auto* pszEnd = window_.Lowest(ends_);
    ends_ &= ends_ - 1;
    return pszEnd;
  }

 private:
  ZeroWindow<Text> window_;
  DWORD ends_;
};

}  // namespace tavkit

#endif  // TAVKIT_MULTIASCIIZ_ZEROS_H
