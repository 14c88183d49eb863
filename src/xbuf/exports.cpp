#include "strings/strings.h"
#include "xbuf/xbuf.h"

using namespace tavkit;

namespace {

// A string that 32 bits don't count has no block that is large enough.
BOOL CopyText(HXBUF hXBuf, WORD wSide, LPCVOID pszSource, DWORD cbSource, LPVOID* ppBlock) {
  if (cbSource != kUncountable) return utXBufCopyTo(hXBuf, wSide, pszSource, cbSource, ppBlock);
  if (ppBlock != nullptr) *ppBlock = nullptr;
  return FALSE;
}

}  // namespace

HXBUF UT_API utXBufCreate(DWORD cbBuffer, LPVOID pBuffer) {
  auto* pXBuf = XBuf::Allocate();
  if (pXBuf == nullptr) return nullptr;
  pXBuf->Clear();
  pXBuf->Use(pBuffer, cbBuffer);
  return pXBuf->GetHandle();
}

void UT_API utXBufDestroy(HXBUF hXBuf) {
  auto* pXBuf = XBuf::FromHandle(hXBuf);
  if (pXBuf == nullptr) return;
  pXBuf->ReleaseBuffer();
  pXBuf->Free();
}

BOOL UT_API utXBufUseBuffer(HXBUF hXBuf, DWORD cbBuffer, LPVOID pBuffer) {
  auto* pXBuf = XBuf::FromHandle(hXBuf);
  return pXBuf != nullptr && pXBuf->Use(pBuffer, cbBuffer);
}

void UT_API utXBufSetOwner(HXBUF hXBuf, DWORD dwOwner) {
  auto* pXBuf = XBuf::FromHandle(hXBuf);
  if (pXBuf != nullptr) pXBuf->SetOwner(dwOwner);
}

BOOL UT_API utXBufReserveBlock(HXBUF hXBuf, WORD wSide, DWORD cbBlock, LPVOID* ppBlock) {
  auto* pXBuf = XBuf::FromHandle(hXBuf);
  if (pXBuf == nullptr) return FALSE;
  LPVOID pBlock = cbBlock == 0 ? nullptr : pXBuf->Reserve(wSide, cbBlock);
  if (ppBlock != nullptr) *ppBlock = pBlock;
  return cbBlock == 0 || pBlock != nullptr;
}

BOOL UT_API utXBufCopyTo(HXBUF hXBuf, WORD wSide, LPCVOID pSource, DWORD cbSource,
                         LPVOID* ppBlock) {
  LPVOID pBlock = nullptr;
  BOOL copied = TRUE;
  if (pSource != nullptr && cbSource != 0) {
    copied = utXBufReserveBlock(hXBuf, wSide, cbSource, &pBlock);
    if (copied) MoveBytes(pBlock, pSource, cbSource);
  }
  if (ppBlock != nullptr) *ppBlock = pBlock;
  return copied;
}

BOOL UT_API utXBufCopyStringTo(HXBUF hXBuf, WORD wSide, LPCSTR pszSource, LPVOID* ppBlock) {
  return CopyText(hXBuf, wSide, pszSource, SizeToCopy<ByteText>(pszSource), ppBlock);
}

BOOL UT_API utXBufCopyWideStringTo(HXBUF hXBuf, WORD wSide, LPCWSTR pwszSource, LPVOID* ppBlock) {
  return CopyText(hXBuf, wSide, pwszSource, SizeToCopy<WideText>(pwszSource), ppBlock);
}

BOOL UT_API utXBufSetSpaceUsed(HXBUF hXBuf, DWORD cbFront, DWORD cbBack) {
  auto* pXBuf = XBuf::FromHandle(hXBuf);
  return pXBuf != nullptr && pXBuf->TakeUsed(cbFront, cbBack);
}

DWORD UT_API utXBufGetSpaceUsed(HXBUF hXBuf) {
  const auto* pXBuf = XBuf::FromHandle(hXBuf);
  return pXBuf != nullptr ? pXBuf->Used() : 0;
}

LPVOID UT_API utXBufGetBlock(HXBUF hXBuf, WORD wBlock) {
  const auto* pXBuf = XBuf::FromHandle(hXBuf);
  return pXBuf != nullptr ? pXBuf->Block(wBlock) : nullptr;
}

DWORD UT_API utXBufGetBlockSize(HXBUF hXBuf, WORD wBlock) {
  const auto* pXBuf = XBuf::FromHandle(hXBuf);
  return pXBuf != nullptr ? pXBuf->BlockSize(wBlock) : 0;
}
