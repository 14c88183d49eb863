// Blocks of bytes. The arguments are untyped, so no alignment is taken for granted.
#ifndef TAVKIT_FRAME_MEMORY_H
#define TAVKIT_FRAME_MEMORY_H

#include <tavkit/types.h>

namespace tavkit {

// The two ranges may overlap.
void MoveBytes(void* pDest, const void* pSource, DWORD count);

// Of four bytes or more.
void FillBytes(void* pDest, BYTE value, DWORD count);
inline void ZeroBytes(void* pDest, DWORD count) { FillBytes(pDest, 0, count); }

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

}  // namespace tavkit

#endif  // TAVKIT_FRAME_MEMORY_H
