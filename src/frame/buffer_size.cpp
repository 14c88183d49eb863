#include "frame/buffer_size.h"

using namespace tavkit;

BOOL UT_API utIsBuffer(LPCVOID pBuffer, DWORD cbBuffer, DWORD cbNeeded) {
  return IsBuffer(pBuffer, cbBuffer, cbNeeded);
}

BOOL UT_API utIsBufferSize(DWORD cbBuffer, DWORD cbNeeded) {
  return IsBufferSize(cbBuffer, cbNeeded);
}
