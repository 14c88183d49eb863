#include "xbuf/xbuf.h"

#include <stddef.h>
#include <win32.h>

namespace tavkit {

XBuf* XBuf::Allocate() {
  // Four fields that take a pointer each, two of them numbers with padding, and four numbers more.
  constexpr size_t kPointer = sizeof(void*), kNumbers = 4 * kPointer;
  static_assert(offsetof(XBuf, dwSignature) == 0 && offsetof(XBuf, pBuffer) == kPointer &&
                offsetof(XBuf, cbBuffer) == 2 * kPointer && offsetof(XBuf, pFree) == 3 * kPointer &&
                offsetof(XBuf, cbFree) == kNumbers && offsetof(XBuf, cbFront) == kNumbers + 4 &&
                offsetof(XBuf, cbBack) == kNumbers + 8 &&
                offsetof(XBuf, fOwnsBuffer) == kNumbers + 12 && sizeof(XBuf) == kNumbers + 16);
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

bool XBuf::Use(void* pNewBuffer, DWORD cbNewBuffer) {
  Reset();
  if (cbNewBuffer == 0) return false;
  const bool owns = pNewBuffer == nullptr;
  if (owns) pNewBuffer = AllocBuffer(cbNewBuffer);
  if (pNewBuffer == nullptr) return false;
  AttachBuffer(pNewBuffer, cbNewBuffer, owns);
  return true;
}

void XBuf::AttachBuffer(void* pNewBuffer, DWORD cbNewBuffer, DWORD fOwns) {
  pBuffer = static_cast<BYTE*>(pNewBuffer);
  cbBuffer = cbNewBuffer;
  fOwnsBuffer = fOwns;
  SetUsed(0, 0);
}

void XBuf::SetOwner(DWORD dwOwner) {
  if (pBuffer != nullptr) fOwnsBuffer = dwOwner;
}

bool XBuf::TakeUsed(DWORD cbNewFront, DWORD cbNewBack) {
  // Without a sum of the two, which could wrap.
  if (cbNewFront > cbBuffer || cbNewBack > cbBuffer - cbNewFront) return false;
  SetUsed(cbNewFront, cbNewBack);
  return true;
}

void* XBuf::Block(WORD wBlock) const {
  switch (wBlock) {
    case UT_XBUF_BLOCK_BUFFER:
      return pBuffer;
    case UT_XBUF_BLOCK_FRONT:
      return FrontBlock();
    case UT_XBUF_BLOCK_BACK:
      return BackBlock();
    case UT_XBUF_BLOCK_FREE:
      return pFree;
    default:
      return nullptr;
  }
}

DWORD XBuf::BlockSize(WORD wBlock) const {
  switch (wBlock) {
    case UT_XBUF_BLOCK_BUFFER:
      return cbBuffer;
    case UT_XBUF_BLOCK_FRONT:
      return cbFront;
    case UT_XBUF_BLOCK_BACK:
      return cbBack;
    case UT_XBUF_BLOCK_FREE:
      return cbFree;
    default:
      return 0;
  }
}

void* XBuf::AllocBuffer(DWORD cbNewBuffer) { return LocalAlloc(LMEM_ZEROINIT, cbNewBuffer); }

void XBuf::FreeBuffer(void* pOldBuffer) {
  if (pOldBuffer != nullptr) LocalFree(pOldBuffer);
}

void XBuf::Free() {
  dwSignature = 0;
  LocalFree(this);
}

}  // namespace tavkit
