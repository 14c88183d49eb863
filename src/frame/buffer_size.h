// The rule for buffer sizes, for the library's own calls.
#ifndef TAVKIT_FRAME_BUFFER_SIZE_H
#define TAVKIT_FRAME_BUFFER_SIZE_H

#include <stddef.h>
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

// A size that 32 bits don't count. It fits nowhere, not even where UT_SIZE_UNCHECKED is stated.
inline constexpr DWORD kUncountable = ~DWORD{0};

// A string may take part in a sum more than once, so a sum can pass 32 bits where no address space
// holds as many bytes. It saturates: a wrapped one could fit.
inline DWORD AddSizes(DWORD cbFirst, DWORD cbSecond) {
  return cbSecond > kUncountable - cbFirst ? kUncountable : cbFirst + cbSecond;
}

// A distance in memory as a size.
inline DWORD CountedSize(size_t count) {
  return count < kUncountable ? static_cast<DWORD>(count) : kUncountable;
}

// Whether a sum of sizes fits a buffer.
inline bool Fits(DWORD cbNeeded, DWORD cbBuffer) {
  return cbNeeded <= cbBuffer && cbNeeded != kUncountable;
}

}  // namespace tavkit

#endif  // TAVKIT_FRAME_BUFFER_SIZE_H
