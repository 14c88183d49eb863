// NETRESOURCE records, measured and flattened: each operation one template over the two forms.
#include <tavkit/netresource.h>

#include "frame/buffer_size.h"
#include "frame/memory.h"
#include "strings/strings.h"

namespace tavkit {
namespace {

void utFlattenNETRESOURCE(const NETRESOURCEA* pResource, HXBUF hXBuf, DWORD dwMask);
void utFlattenNETRESOURCEW(const NETRESOURCEW* pResource, HXBUF hXBuf, DWORD dwMask);

// What differs between the forms.
struct ByteResource {
  using Record = NETRESOURCEA;
  using String = LPSTR;
  using Text = ByteText;
  static constexpr auto* CopyStringTo = &utXBufCopyStringTo;
  static constexpr auto* Flatten = &utFlattenNETRESOURCE;
};

struct WideResource {
  using Record = NETRESOURCEW;
  using String = LPWSTR;
  using Text = WideText;
  static constexpr auto* CopyStringTo = &utXBufCopyWideStringTo;
  static constexpr auto* Flatten = &utFlattenNETRESOURCEW;
};

static_assert(sizeof(NETRESOURCEA) == 4 * sizeof(DWORD) + 4 * sizeof(LPSTR));
static_assert(sizeof(NETRESOURCEW) == sizeof(NETRESOURCEA));

template <class Form>
using Record = typename Form::Record;

// A copy of the record in which the fields that the mask leaves out are 0 or NULL. The source may
// stand at any address.
template <class Form>
Record<Form> TakeFields(const Record<Form>* pResource, DWORD dwMask) {
  auto taken = ReadValue<Record<Form>>(pResource);
  if (!(dwMask & UT_NR_SCOPE)) taken.dwScope = 0;
  if (!(dwMask & UT_NR_TYPE)) taken.dwType = 0;
  if (!(dwMask & UT_NR_DISPLAYTYPE)) taken.dwDisplayType = 0;
  if (!(dwMask & UT_NR_USAGE)) taken.dwUsage = 0;
  if (!(dwMask & UT_NR_LOCALNAME)) taken.lpLocalName = nullptr;
  if (!(dwMask & UT_NR_REMOTENAME)) taken.lpRemoteName = nullptr;
  if (!(dwMask & UT_NR_COMMENT)) taken.lpComment = nullptr;
  if (!(dwMask & UT_NR_PROVIDER)) taken.lpProvider = nullptr;
  return taken;
}

template <class Form>
DWORD VarSize(const Record<Form>* pResource, DWORD dwMask) {
  if (pResource == nullptr) return 0;
  const auto taken = TakeFields<Form>(pResource, dwMask);
  // A NULL string has the size 0.
  DWORD cbStrings = StringSize<typename Form::Text>(taken.lpLocalName, true);
  cbStrings = AddSizes(cbStrings, StringSize<typename Form::Text>(taken.lpRemoteName, true));
  cbStrings = AddSizes(cbStrings, StringSize<typename Form::Text>(taken.lpComment, true));
  return AddSizes(cbStrings, StringSize<typename Form::Text>(taken.lpProvider, true));
}

template <class Form>
DWORD Size(const Record<Form>* pResource, DWORD dwMask) {
  if (pResource == nullptr) return 0;
  return AddSizes(sizeof(Record<Form>), VarSize<Form>(pResource, dwMask));
}

template <class Form>
void MoveStringToBack(HXBUF hXBuf, typename Form::String& psz) {
  LPVOID pCopy = nullptr;  // and of a NULL string there is no copy
  Form::CopyStringTo(hXBuf, UT_XBUF_BACK, psz, &pCopy);
  psz = static_cast<typename Form::String>(pCopy);
}

// The free block is large enough: the caller has made sure of it.
template <class Form>
void Flatten(const Record<Form>* pResource, HXBUF hXBuf, DWORD dwMask) {
  LPVOID pCopy = nullptr;
  utXBufCopyTo(hXBuf, UT_XBUF_FRONT, pResource, sizeof(Record<Form>), &pCopy);
  auto flattened = TakeFields<Form>(pResource, dwMask);
  MoveStringToBack<Form>(hXBuf, flattened.lpLocalName);
  MoveStringToBack<Form>(hXBuf, flattened.lpRemoteName);
  MoveStringToBack<Form>(hXBuf, flattened.lpComment);
  MoveStringToBack<Form>(hXBuf, flattened.lpProvider);
  WriteValue(pCopy, flattened);  // the copy may stand at an odd address
}

void utFlattenNETRESOURCE(const NETRESOURCEA* pResource, HXBUF hXBuf, DWORD dwMask) {
  Flatten<ByteResource>(pResource, hXBuf, dwMask);
}

void utFlattenNETRESOURCEW(const NETRESOURCEW* pResource, HXBUF hXBuf, DWORD dwMask) {
  Flatten<WideResource>(pResource, hXBuf, dwMask);
}

template <class Form>
bool CopyToBuffer(const Record<Form>* pResource, LPVOID pBuffer, DWORD cbBuffer, DWORD dwMask,
                  DWORD cbNeeded) {
  if (!Fits(cbNeeded, cbBuffer) || pBuffer == nullptr || cbNeeded == 0) return false;
  const HXBUF hXBuf = utXBufCreate(cbBuffer, pBuffer);
  if (hXBuf == nullptr) return false;
  Form::Flatten(pResource, hXBuf, dwMask);
  utXBufDestroy(hXBuf);
  return true;
}

template <class Form>
bool CopyToXBuf(const Record<Form>* pResource, HXBUF hXBuf, DWORD dwMask, DWORD cbNeeded) {
  const DWORD cbFree = utXBufGetBlockSize(hXBuf, UT_XBUF_BLOCK_FREE);
  if (!Fits(cbNeeded, cbFree) || cbNeeded == 0) return false;
  Form::Flatten(pResource, hXBuf, dwMask);
  return true;
}

template <class Form>
bool Copy(const Record<Form>* pResource, LPVOID pBuffer, DWORD cbBuffer, DWORD dwMask,
          LPDWORD pcbNeeded) {
  const DWORD cbNeeded = Size<Form>(pResource, dwMask);
  const bool copied = CopyToBuffer<Form>(pResource, pBuffer, cbBuffer, dwMask, cbNeeded);
  if (pcbNeeded != nullptr) *pcbNeeded = cbNeeded;
  return copied;
}

template <class Form>
bool CopyXBuffer(const Record<Form>* pResource, HXBUF hXBuf, DWORD dwMask, LPDWORD pcbNeeded) {
  const DWORD cbNeeded = Size<Form>(pResource, dwMask);
  const bool copied = CopyToXBuf<Form>(pResource, hXBuf, dwMask, cbNeeded);
  if (pcbNeeded != nullptr) *pcbNeeded = cbNeeded;
  return copied;
}

}  // namespace
}  // namespace tavkit

using tavkit::ByteResource;
using tavkit::WideResource;

DWORD UT_API utSizeNETRESOURCE(const NETRESOURCEA* pResource, DWORD dwMask) {
  return tavkit::Size<ByteResource>(pResource, dwMask);
}

DWORD UT_API utSizeNETRESOURCEW(const NETRESOURCEW* pResource, DWORD dwMask) {
  return tavkit::Size<WideResource>(pResource, dwMask);
}

DWORD UT_API utVarSizeNETRESOURCE(const NETRESOURCEA* pResource, DWORD dwMask) {
  return tavkit::VarSize<ByteResource>(pResource, dwMask);
}

DWORD UT_API utVarSizeNETRESOURCEW(const NETRESOURCEW* pResource, DWORD dwMask) {
  return tavkit::VarSize<WideResource>(pResource, dwMask);
}

BOOL UT_API utCopyNETRESOURCE(const NETRESOURCEA* pResource, LPVOID pBuffer, DWORD cbBuffer,
                              DWORD dwMask, LPDWORD pcbNeeded) {
  return tavkit::Copy<ByteResource>(pResource, pBuffer, cbBuffer, dwMask, pcbNeeded);
}

BOOL UT_API utCopyNETRESOURCEW(const NETRESOURCEW* pResource, LPVOID pBuffer, DWORD cbBuffer,
                               DWORD dwMask, LPDWORD pcbNeeded) {
  return tavkit::Copy<WideResource>(pResource, pBuffer, cbBuffer, dwMask, pcbNeeded);
}

BOOL UT_API utCopyNETRESOURCE_XBuffer(const NETRESOURCEA* pResource, HXBUF hXBuf, DWORD dwMask,
                                      LPDWORD pcbNeeded) {
  return tavkit::CopyXBuffer<ByteResource>(pResource, hXBuf, dwMask, pcbNeeded);
}

BOOL UT_API utCopyNETRESOURCEW_XBuffer(const NETRESOURCEW* pResource, HXBUF hXBuf, DWORD dwMask,
                                       LPDWORD pcbNeeded) {
  return tavkit::CopyXBuffer<WideResource>(pResource, hXBuf, dwMask, pcbNeeded);
}
