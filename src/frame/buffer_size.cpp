#include "frame/buffer_size.h"

BOOL UT_API utIsBuffer(LPCVOID pBuffer, DWORD cbBuffer, DWORD cbNeeded) {
  return tavkit::IsBuffer(pBuffer, cbBuffer, cbNeeded);
}

BOOL UT_API utIsBufferSize(DWORD cbBuffer, DWORD cbNeeded) {
  return tavkit::IsBufferSize(cbBuffer, cbNeeded);
}
