// Blocks of bytes. The arguments are untyped, so no alignment is taken for granted.
#ifndef TAVKIT_FRAME_MEMORY_H
#define TAVKIT_FRAME_MEMORY_H

#include <stddef.h>
#include <tavkit/types.h>

#include "frame/sse2.h"

namespace tavkit {

// One value at any address.
template <class T>
T ReadValue(const void* pSource) {
  T value;
  __builtin_memcpy(&value, pSource, sizeof value);
  return value;
}

template <class T>
void WriteValue(void* pDest, const T& value) {
  __builtin_memcpy(pDest, &value, sizeof value);
}

// Bytes from one address up to another; one that lies below gives more than any block has.
inline size_t ByteDistance(const void* pFrom, const void* pTo) {
  return AddressOf(pTo) - AddressOf(pFrom);
}

template <class T>
T* AddBytes(T* p, size_t count) {
  return reinterpret_cast<T*>(AddressOf(p) + count);
}

// A move as two parts that meet or overlap. Both are read before either is written, as the ranges
// may overlap.
template <class Part>
void MoveEnds(BYTE* to, const BYTE* from, size_t count) {
  const size_t last = count - sizeof(Part);
  const auto firstPart = ReadValue<Part>(from);
  const auto lastPart = ReadValue<Part>(from + last);
  WriteValue(to, firstPart);
  WriteValue(to + last, lastPart);
}

void MoveMany(BYTE* to, const BYTE* from, size_t count);  // above 32 bytes

// The two ranges may overlap. A few bytes are moved in the caller's own code, as a call would take
// longer than the move.
inline void MoveBytes(void* pDest, const void* pSource, size_t count) {
  auto* to = static_cast<BYTE*>(pDest);
  auto* from = static_cast<const BYTE*>(pSource);
  if (count > 2 * kBlock) {
    MoveMany(to, from, count);
  } else if (count >= kBlock) {
    MoveEnds<__m128i>(to, from, count);
  } else if (count >= 8) {
    MoveEnds<uint64_t>(to, from, count);
  } else if (count >= 4) {
    MoveEnds<DWORD>(to, from, count);
  } else if (count >= 2) {
    MoveEnds<WORD>(to, from, count);
  } else if (count != 0) {
    *to = *from;
  }
}

// Of four bytes or more.
void FillBytes(void* pDest, BYTE value, size_t count);
inline void ZeroBytes(void* pDest, size_t count) { FillBytes(pDest, 0, count); }

}  // namespace tavkit

#endif  // TAVKIT_FRAME_MEMORY_H
