#include "xbuf/xbuf.h"

#include <win32.h>

namespace tavkit {

XBuf* XBuf::Allocate() {
  auto* pXBuf = static_cast<XBuf*>(LocalAlloc(LMEM_ZEROINIT, sizeof(XBuf)));
  if (pXBuf != nullptr) pXBuf->dwSignature = UT_XBUF_SIGNATURE;
  return pXBuf;
}

HXBUF XBuf::GetHandle() { return reinterpret_cast<HXBUF>(this); }

void XBuf::Clear() {
  pBuffer = nullptr;
  cbBuffer = 0;
  pFree = nullptr;
  cbFree = 0;
  cbFront = 0;
  cbBack = 0;
  fOwnsBuffer = 0;
}

void XBuf::Reset() {
  ReleaseBuffer();
  Clear();
}

void XBuf::ReleaseBuffer() {
  if (fOwnsBuffer != 0 && pBuffer != nullptr) FreeBuffer(pBuffer);
  pBuffer = nullptr;
}

void XBuf::AttachBuffer(void* pNewBuffer, DWORD cbNewBuffer, DWORD fOwns) {
  pBuffer = static_cast<BYTE*>(pNewBuffer);
  cbBuffer = cbNewBuffer;
  fOwnsBuffer = fOwns;
  SetUsed(0, 0);
}

void XBuf::SetUsed(DWORD cbNewFront, DWORD cbNewBack) {
  cbFront = cbNewFront;
  cbBack = cbNewBack;
  UpdateFree();
}

void XBuf::UpdateFree() {
  pFree = nullptr;
  cbFree = 0;
  if (cbBuffer == 0) return;
  cbFree = cbBuffer - cbBack - cbFront;
  if (cbFree != 0) pFree = pBuffer + cbFront;
}

BYTE* XBuf::FrontBlock() const { return cbFront != 0 ? pBuffer : nullptr; }

BYTE* XBuf::BackBlock() const { return cbBack != 0 ? pBuffer + (cbBuffer - cbBack) : nullptr; }

void* XBuf::AllocBuffer(DWORD cbNewBuffer) { return LocalAlloc(LMEM_ZEROINIT, cbNewBuffer); }

void XBuf::FreeBuffer(void* pOldBuffer) {
  if (pOldBuffer != nullptr) LocalFree(pOldBuffer);
}

void XBuf::Free() {
  dwSignature = 0;
  LocalFree(this);
}

}  // namespace tavkit
