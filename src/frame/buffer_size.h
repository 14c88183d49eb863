// The rule for buffer sizes, for the library's own calls.
#ifndef TAVKIT_FRAME_BUFFER_SIZE_H
#define TAVKIT_FRAME_BUFFER_SIZE_H

#include <tavkit/frame.h>

namespace tavkit {

inline bool IsBufferSize(DWORD cbBuffer, DWORD cbNeeded) {
  // UT_SIZE_UNCHECKED is the largest number, so it passes the comparison without a test of its own.
  static_assert(UT_SIZE_UNCHECKED == ~DWORD{0});
  return cbBuffer >= cbNeeded;
}

inline bool IsBuffer(LPCVOID pBuffer, DWORD cbBuffer, DWORD cbNeeded) {
  return pBuffer != nullptr && IsBufferSize(cbBuffer, cbNeeded);
}

}  // namespace tavkit

#endif  // TAVKIT_FRAME_BUFFER_SIZE_H
