// The object of an HXBUF. Between any two calls:
//
//   cbFront + cbBack + cbFree = cbBuffer
//   pFree = pBuffer + cbFront, but NULL when cbFree is 0
//   without a buffer every field but dwSignature is 0
#ifndef TAVKIT_XBUF_XBUF_H
#define TAVKIT_XBUF_XBUF_H

#include <tavkit/xbuf.h>

#include "frame/memory.h"

namespace tavkit {

class XBuf {
 public:
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

  // Lets go of the buffer and takes another one, of the given address or allocated. False, and the
  // object is empty, if there is none.
  bool Use(void* pNewBuffer, DWORD cbNewBuffer);
  void SetOwner(DWORD dwOwner);
  void Free();
  void ReleaseBuffer();

  // Takes a block of at least one byte off the free block. NULL, and nothing changes, if it is
  // larger than that or there is no such side.
  void* Reserve(WORD wSide, DWORD cbBlock);

  // False, and nothing changes, if the two sizes don't fit the buffer.
  bool TakeUsed(DWORD cbNewFront, DWORD cbNewBack);

  DWORD Used() const { return cbFront + cbBack; }
  void* Block(WORD wBlock) const;
  DWORD BlockSize(WORD wBlock) const;

 private:
  void Reset();
  void AttachBuffer(void* pNewBuffer, DWORD cbNewBuffer, DWORD fOwns);
  void SetUsed(DWORD cbNewFront, DWORD cbNewBack);
  void UpdateFree();

  BYTE* FrontBlock() const { return cbFront != 0 ? pBuffer : nullptr; }
  BYTE* BackBlock() const { return cbBack != 0 ? AddBytes(pBuffer, cbBuffer - cbBack) : nullptr; }

  static void* AllocBuffer(DWORD cbNewBuffer);
  static void FreeBuffer(void* pOldBuffer);

  DWORD dwSignature;
  BYTE* pBuffer;
  DWORD cbBuffer;
  BYTE* pFree;
  DWORD cbFree;
  DWORD cbFront;
  DWORD cbBack;
  DWORD fOwnsBuffer;
};

inline void XBuf::SetUsed(DWORD cbNewFront, DWORD cbNewBack) {
  cbFront = cbNewFront;
  cbBack = cbNewBack;
  UpdateFree();
}

inline void XBuf::UpdateFree() {
  // Without a buffer all sizes are 0.
  cbFree = cbBuffer - cbBack - cbFront;
  pFree = cbFree != 0 ? pBuffer + cbFront : nullptr;
}

inline void* XBuf::Reserve(WORD wSide, DWORD cbBlock) {
  if (cbBlock > cbFree || wSide > UT_XBUF_BACK) return nullptr;
  cbFree -= cbBlock;
  BYTE* pBlock = pFree;
  if (wSide == UT_XBUF_BACK) {
    pBlock = AddBytes(pBlock, cbFree);
    cbBack += cbBlock;
  } else {
    pFree = AddBytes(pFree, cbBlock);
    cbFront += cbBlock;
  }
  if (cbFree == 0) pFree = nullptr;
  return pBlock;
}

}  // namespace tavkit

#endif  // TAVKIT_XBUF_XBUF_H
