#include "frame/memory.h"
#include "strings/strings.h"
#include "xbuf/xbuf.h"

using tavkit::ByteText;
using tavkit::StringSize;
using tavkit::WideText;
using tavkit::XBuf;

namespace {

// Takes a block of at least one byte off the free block. False, and nothing changes, if there is no
// room or no such side.
bool TakeBlock(XBuf& xbuf, WORD wSide, DWORD cbBlock, LPVOID& pBlock) {
  if (cbBlock > xbuf.cbFree) return false;
  switch (wSide) {
    case UT_XBUF_FRONT:
      pBlock = xbuf.pFree;
      xbuf.pFree += cbBlock;
      xbuf.cbFront += cbBlock;
      break;
    case UT_XBUF_BACK:
      pBlock = xbuf.pFree + (xbuf.cbFree - cbBlock);
      xbuf.cbBack += cbBlock;
      break;
    default:
      return false;
  }
  xbuf.cbFree -= cbBlock;
  if (xbuf.cbFree == 0) xbuf.pFree = nullptr;
  return true;
}

}  // namespace

HXBUF UT_API utXBufCreate(DWORD cbBuffer, LPVOID pBuffer) {
  auto* pXBuf = XBuf::Allocate();
  if (pXBuf == nullptr) return nullptr;
  pXBuf->Clear();
  const HXBUF hXBuf = pXBuf->GetHandle();
  utXBufUseBuffer(hXBuf, cbBuffer, pBuffer);
  return hXBuf;
}

void UT_API utXBufDestroy(HXBUF hXBuf) {
  auto* pXBuf = XBuf::FromHandle(hXBuf);
  if (pXBuf == nullptr) return;
  pXBuf->ReleaseBuffer();
  pXBuf->Free();
}

BOOL UT_API utXBufUseBuffer(HXBUF hXBuf, DWORD cbBuffer, LPVOID pBuffer) {
  auto* pXBuf = XBuf::FromHandle(hXBuf);
  if (pXBuf == nullptr) return FALSE;
  pXBuf->Reset();
  if (cbBuffer == 0) return FALSE;
  if (pBuffer != nullptr) {
    pXBuf->AttachBuffer(pBuffer, cbBuffer, FALSE);
    return TRUE;
  }
  LPVOID pOwned = XBuf::AllocBuffer(cbBuffer);
  if (pOwned == nullptr) return FALSE;
  pXBuf->AttachBuffer(pOwned, cbBuffer, TRUE);
  return TRUE;
}

void UT_API utXBufSetOwner(HXBUF hXBuf, DWORD dwOwner) {
  auto* pXBuf = XBuf::FromHandle(hXBuf);
  if (pXBuf != nullptr && pXBuf->pBuffer != nullptr) pXBuf->fOwnsBuffer = dwOwner;
}

BOOL UT_API utXBufReserveBlock(HXBUF hXBuf, WORD wSide, DWORD cbBlock, LPVOID* ppBlock) {
  auto* pXBuf = XBuf::FromHandle(hXBuf);
  if (pXBuf == nullptr) return FALSE;
  LPVOID pBlock = nullptr;
  const bool reserved = cbBlock == 0 || TakeBlock(*pXBuf, wSide, cbBlock, pBlock);
  if (ppBlock != nullptr) *ppBlock = pBlock;
  return reserved;
}

BOOL UT_API utXBufCopyTo(HXBUF hXBuf, WORD wSide, LPCVOID pSource, DWORD cbSource,
                         LPVOID* ppBlock) {
  LPVOID pBlock = nullptr;
  BOOL copied = TRUE;
  if (pSource != nullptr && cbSource != 0) {
    copied = utXBufReserveBlock(hXBuf, wSide, cbSource, &pBlock);
    if (copied) tavkit::MoveBytes(pBlock, pSource, cbSource);
  }
  if (ppBlock != nullptr) *ppBlock = pBlock;
  return copied;
}

BOOL UT_API utXBufCopyStringTo(HXBUF hXBuf, WORD wSide, LPCSTR pszSource, LPVOID* ppBlock) {
  return utXBufCopyTo(hXBuf, wSide, pszSource, StringSize<ByteText>(pszSource, true), ppBlock);
}

BOOL UT_API utXBufCopyWideStringTo(HXBUF hXBuf, WORD wSide, LPCWSTR pwszSource, LPVOID* ppBlock) {
  return utXBufCopyTo(hXBuf, wSide, pwszSource, StringSize<WideText>(pwszSource, true), ppBlock);
}

BOOL UT_API utXBufSetSpaceUsed(HXBUF hXBuf, DWORD cbFront, DWORD cbBack) {
  auto* pXBuf = XBuf::FromHandle(hXBuf);
  if (pXBuf == nullptr) return FALSE;
  // Without a sum of the two, which could wrap.
  if (cbFront > pXBuf->cbBuffer || cbBack > pXBuf->cbBuffer - cbFront) return FALSE;
  pXBuf->SetUsed(cbFront, cbBack);
  return TRUE;
}

DWORD UT_API utXBufGetSpaceUsed(HXBUF hXBuf) {
  const auto* pXBuf = XBuf::FromHandle(hXBuf);
  return pXBuf != nullptr ? pXBuf->cbFront + pXBuf->cbBack : 0;
}

LPVOID UT_API utXBufGetBlock(HXBUF hXBuf, WORD wBlock) {
  const auto* pXBuf = XBuf::FromHandle(hXBuf);
  if (pXBuf == nullptr) return nullptr;
  switch (wBlock) {
    case UT_XBUF_BLOCK_BUFFER:
      return pXBuf->pBuffer;
    case UT_XBUF_BLOCK_FRONT:
      return pXBuf->FrontBlock();
    case UT_XBUF_BLOCK_BACK:
      return pXBuf->BackBlock();
    case UT_XBUF_BLOCK_FREE:
      return pXBuf->pFree;
    default:
      return nullptr;
  }
}

DWORD UT_API utXBufGetBlockSize(HXBUF hXBuf, WORD wBlock) {
  const auto* pXBuf = XBuf::FromHandle(hXBuf);
  if (pXBuf == nullptr) return 0;
  switch (wBlock) {
    case UT_XBUF_BLOCK_BUFFER:
      return pXBuf->cbBuffer;
    case UT_XBUF_BLOCK_FRONT:
      return pXBuf->cbFront;
    case UT_XBUF_BLOCK_BACK:
      return pXBuf->cbBack;
    case UT_XBUF_BLOCK_FREE:
      return pXBuf->cbFree;
    default:
      return 0;
  }
}
