// The object behind an HXBUF. Between any two calls:
//
//   cbFront + cbBack + cbFree = cbBuffer
//   pFree = pBuffer + cbFront, but NULL when cbFree is 0
//   without a buffer every field but dwSignature is 0
#ifndef TAVKIT_XBUF_XBUF_H
#define TAVKIT_XBUF_XBUF_H

#include <stddef.h>
#include <tavkit/xbuf.h>

#include "frame/memory.h"

namespace tavkit {

class XBuf {
 public:
  DWORD dwSignature;
  BYTE* pBuffer;
  DWORD cbBuffer;
  BYTE* pFree;
  DWORD cbFree;
  DWORD cbFront;
  DWORD cbBack;
  DWORD fOwnsBuffer;

  // NULL if there is no memory. The object is zero but for its signature.
  static XBuf* Allocate();
  HXBUF GetHandle();
  void Clear();

  // The object of a valid handle, NULL for any other. Reads 32 bits at most.
  static XBuf* FromHandle(HXBUF hXBuf) {
    return IsValid(hXBuf) ? reinterpret_cast<XBuf*>(hXBuf) : nullptr;
  }
  static bool IsValid(HXBUF hXBuf) {
    // What isn't an object may have any address, an odd one too.
    return hXBuf != nullptr && ReadValue<DWORD>(hXBuf) == UT_XBUF_SIGNATURE;
  }

  // Lets go of the buffer; the object is empty then.
  void Reset();
  void ReleaseBuffer();

  void AttachBuffer(void* pNewBuffer, DWORD cbNewBuffer, DWORD fOwns);
  void SetUsed(DWORD cbNewFront, DWORD cbNewBack);
  void UpdateFree();

  BYTE* FrontBlock() const;
  BYTE* BackBlock() const;

  static void* AllocBuffer(DWORD cbNewBuffer);
  static void FreeBuffer(void* pOldBuffer);
  void Free();
};

// The layout with the product's pointers: eight fields of 32 bits.
static_assert(sizeof(void*) != 4 ||
              (offsetof(XBuf, dwSignature) == 0 && offsetof(XBuf, pBuffer) == 4 &&
               offsetof(XBuf, cbBuffer) == 8 && offsetof(XBuf, pFree) == 12 &&
               offsetof(XBuf, cbFree) == 16 && offsetof(XBuf, cbFront) == 20 &&
               offsetof(XBuf, cbBack) == 24 && offsetof(XBuf, fOwnsBuffer) == 28 &&
               sizeof(XBuf) == 32));

}  // namespace tavkit

#endif  // TAVKIT_XBUF_XBUF_H
