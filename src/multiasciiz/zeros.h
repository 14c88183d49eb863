// Finds zero units in text of any length, sixteen bytes a step.
#ifndef TAVKIT_MULTIASCIIZ_ZEROS_H
#define TAVKIT_MULTIASCIIZ_ZEROS_H

#include "strings/search.h"

namespace tavkit {

// One bit for each byte of an aligned block, set where the byte is zero.
inline DWORD ZerosOfBlock(uintptr_t block) {
  return BitsOf(EqualUnits(LoadBlock(block), _mm_setzero_si128(), ByteText{}));
}

// The first zero unit of a text that has kUnits - 1 zero units directly in front of it; the text's
// own start has them too.
template <class Text, DWORD kUnits>
TAVKIT_ONCE Char<Text>* FindZeros(const Char<Text>* psz) {
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
      const DWORD lastByte = LowestBit(runEnds) - kBlock;
      return reinterpret_cast<Char<Text>*>(block + lastByte + 1 - Text::kUnit);
    }
    block += kBlock;
    window = ZerosOfBlock(block) << kBlock | window >> kBlock;
  }
}

}  // namespace tavkit

#endif  // TAVKIT_MULTIASCIIZ_ZEROS_H
