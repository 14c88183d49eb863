// Blocks of bytes. The arguments are untyped, so no alignment is taken for granted.
#ifndef TAVKIT_FRAME_MEMORY_H
#define TAVKIT_FRAME_MEMORY_H

#include <tavkit/types.h>

namespace tavkit {

// The two ranges may overlap.
inline void MoveBytes(void* pDest, const void* pSource, DWORD count) {
  if (count != 0) __builtin_memmove(pDest, pSource, count);
}

inline void ZeroBytes(void* pDest, DWORD count) {
  __builtin_memset(pDest, 0, count);
}

}  // namespace tavkit

#endif  // TAVKIT_FRAME_MEMORY_H
