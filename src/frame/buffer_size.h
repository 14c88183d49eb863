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

// One string may stand in several places, so a sum can pass 32 bits although no address space holds
// as many bytes. It then stays at the top and marks what fits nowhere; a wrapped one could fit.
inline DWORD AddSizes(DWORD cbFirst, DWORD cbSecond) {
  const DWORD cbTop = ~DWORD{0};
  return cbSecond > cbTop - cbFirst ? cbTop : cbFirst + cbSecond;
}

}  // namespace tavkit

#endif  // TAVKIT_FRAME_BUFFER_SIZE_H
