// Finds zero units in text of any length, sixteen bytes a step, sixty-four where a list goes on.
#ifndef TAVKIT_MULTIASCIIZ_ZEROS_H
#define TAVKIT_MULTIASCIIZ_ZEROS_H

#include "strings/search.h"

namespace tavkit {

// One bit for each byte of an aligned block, set where the byte is zero.
inline DWORD ZerosOfBlock(uintptr_t block) {
  return BitsOf(EqualUnits(LoadBlock(block), _mm_setzero_si128(), ByteText{}));
}

// The zero bytes of a text, in a window of two blocks whose upper half is the current one.
template <class Text>
class ZeroWindow {
 public:
  // `before` is how many zero bytes are held to be directly in front of the text.
  ZeroWindow(const Char<Text>* psz, DWORD before) : block_(BlockOf(psz)) {
    const DWORD offset = reinterpret_cast<uintptr_t>(psz) % kBlock;
    const DWORD unitEnds = Text::kUnit == 1 ? ~0u : 0xAAAAAAAAu >> (offset & 1);
    unitEnds_ = unitEnds & (~0u << kBlock);
    zeros_ = (ZerosOfBlock(block_) & BitsFrom(psz)) << kBlock;
    zeros_ |= ((1u << before) - 1) << (kBlock + offset - before);
  }

  uintptr_t block() const { return block_; }

  void Advance() { MoveTo(block_ + kBlock, zeros_ >> kBlock); }

  // Goes on at another block, whose block in front is text too.
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
  void MoveTo(uintptr_t block, DWORD zerosInFront) {
    block_ = block;
    zeros_ = ZerosOfBlock(block) << kBlock | zerosInFront;
  }

  uintptr_t block_;
  DWORD zeros_;
  DWORD unitEnds_;
};

// All bits of those units of a block that are zero behind a zero unit.
template <class Text>
__m128i SecondZeros(uintptr_t block) {
  const __m128i pairs = _mm_or_si128(LoadBlock(block), LoadInFront(block, Text::kUnit));
  return EqualUnits(pairs, _mm_setzero_si128(), Text{});
}

// The first of the aligned strides that holds a zero unit behind a zero unit. The unit in front of
// the first of them is of the list too.
template <class Text>
uintptr_t FindEndStride(uintptr_t stride) {
  for (;; stride += kStride) {
    const __m128i lower =
        _mm_or_si128(SecondZeros<Text>(stride), SecondZeros<Text>(stride + kBlock));
    const __m128i upper = _mm_or_si128(SecondZeros<Text>(stride + 2 * kBlock),
                                       SecondZeros<Text>(stride + 3 * kBlock));
    if (BitsOf(_mm_or_si128(lower, upper)) != 0) return stride;
  }
}

// The first zero unit of a list that has a zero unit directly in front of it; the list's own start
// has one too.
template <class Text>
__attribute__((noinline)) Char<Text>* FindFinalZero(const Char<Text>* pList) {
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
    const __m128i ones = _mm_sub_epi8(zero, EqualUnits(LoadBlock(block), zero, Text{}));
    sums = _mm_add_epi32(sums, _mm_sad_epu8(ones, zero));
  }
  const __m128i sum = _mm_add_epi32(sums, _mm_unpackhi_epi64(sums, sums));
  return static_cast<DWORD>(_mm_cvtsi128_si32(sum)) / Text::kUnit;
}

// The zero units of a block, among those whose bytes are given by a bit each.
template <class Text>
DWORD CountZerosAmong(uintptr_t block, DWORD bytes) {
  const DWORD zeros = BitsOf(EqualUnits(LoadBlock(block), _mm_setzero_si128(), Text{}));
  return static_cast<DWORD>(__builtin_popcount(zeros & bytes)) / Text::kUnit;
}

// How many zero units stand between two places of a text that the blocks don't cut. What stands
// around them in their blocks is another's, who may be writing to it.
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
