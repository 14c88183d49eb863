// NETRESOURCE records, measured and flattened: each operation one template over the text policy.
#include <tavkit/netresource.h>

#include "strings/strings.h"
#include "xbuf/xbuf.h"

namespace tavkit {
namespace {

template <class Text>
struct RecordOf;
template <>
struct RecordOf<ByteText> {
  using Type = NETRESOURCEA;
};
template <>
struct RecordOf<WideText> {
  using Type = NETRESOURCEW;
};
template <class Text>
using Record = typename RecordOf<Text>::Type;

static_assert(sizeof(NETRESOURCEA) == (sizeof(void*) == 8 ? 48 : 32));
static_assert(sizeof(NETRESOURCEW) == sizeof(NETRESOURCEA));

// The strings of a record in the order in which they are placed, each with its bit of the mask.
template <class Text>
struct StringField {
  Char<Text>* Record<Text>::* psz;
  DWORD dwBit;
};

constexpr unsigned kStrings = 4;
template <class Text>
constexpr StringField<Text> kStringFields[kStrings] = {
    {&Record<Text>::lpLocalName, UT_NR_LOCALNAME},
    {&Record<Text>::lpRemoteName, UT_NR_REMOTENAME},
    {&Record<Text>::lpComment, UT_NR_COMMENT},
    {&Record<Text>::lpProvider, UT_NR_PROVIDER}};

// What a mask takes of a record. A field that is left out is 0 or NULL.
template <class Text>
struct TakenRecord {
  Record<Text> fields = {};
  DWORD cbStrings[kStrings] = {};  // with their terminators
  DWORD cbVar = 0;                 // their sum
  DWORD cbNeeded = 0;              // 0 without a record

  // The record may stand at any address.
  TakenRecord(const Record<Text>* pResource, DWORD dwMask) {
    if (pResource == nullptr) return;
    fields = ReadValue<Record<Text>>(pResource);
    if (!(dwMask & UT_NR_SCOPE)) fields.dwScope = 0;
    if (!(dwMask & UT_NR_TYPE)) fields.dwType = 0;
    if (!(dwMask & UT_NR_DISPLAYTYPE)) fields.dwDisplayType = 0;
    if (!(dwMask & UT_NR_USAGE)) fields.dwUsage = 0;
    for (unsigned i = 0; i < kStrings; ++i) {
      const auto& field = kStringFields<Text>[i];
      if (!(dwMask & field.dwBit)) fields.*field.psz = nullptr;
      cbStrings[i] = SizeToCopy<Text>(fields.*field.psz);
      cbVar = AddSizes(cbVar, cbStrings[i]);
    }
    cbNeeded = AddSizes(sizeof fields, cbVar);
  }

  bool FitsInto(DWORD cbFree) const { return cbNeeded != 0 && Fits(cbNeeded, cbFree); }
};

// Moves the record to the front and its strings to the back, which the caller knows to fit. The
// strings were measured once, so that nothing is written but what was found to fit. The record's
// pointers lead to the copies then.
template <class Text>
void Flatten(TakenRecord<Text>& taken, XBuf& xbuf) {
  void* const pCopy = xbuf.Reserve(UT_XBUF_FRONT, sizeof taken.fields);
  for (unsigned i = 0; i < kStrings; ++i) {
    auto& psz = taken.fields.*kStringFields<Text>[i].psz;
    if (psz == nullptr) continue;
    void* const pString = xbuf.Reserve(UT_XBUF_BACK, taken.cbStrings[i]);
    MoveBytes(pString, psz, taken.cbStrings[i]);
    psz = static_cast<Char<Text>*>(pString);
  }
  WriteValue(pCopy, taken.fields);  // the copy may stand at an odd address
}

// The flattening of each form by name.
[[maybe_unused]] constexpr auto& utFlattenNETRESOURCE = Flatten<ByteText>;
[[maybe_unused]] constexpr auto& utFlattenNETRESOURCEW = Flatten<WideText>;

template <class Text>
bool CopyToBuffer(TakenRecord<Text>& taken, LPVOID pBuffer, DWORD cbBuffer) {
  if (pBuffer == nullptr || !taken.FitsInto(cbBuffer)) return false;
  const HXBUF hXBuf = utXBufCreate(cbBuffer, pBuffer);
  if (hXBuf == nullptr) return false;
  Flatten<Text>(taken, *XBuf::FromHandle(hXBuf));
  utXBufDestroy(hXBuf);
  return true;
}

template <class Text>
bool CopyToXBuf(TakenRecord<Text>& taken, HXBUF hXBuf) {
  auto* pXBuf = XBuf::FromHandle(hXBuf);
  if (pXBuf == nullptr || !taken.FitsInto(pXBuf->BlockSize(UT_XBUF_BLOCK_FREE))) return false;
  Flatten<Text>(taken, *pXBuf);
  return true;
}

template <class Text>
bool Copy(const Record<Text>* pResource, LPVOID pBuffer, DWORD cbBuffer, DWORD dwMask,
          LPDWORD pcbNeeded) {
  TakenRecord<Text> taken(pResource, dwMask);
  const bool copied = CopyToBuffer<Text>(taken, pBuffer, cbBuffer);
  if (pcbNeeded != nullptr) *pcbNeeded = taken.cbNeeded;
  return copied;
}

template <class Text>
bool CopyXBuffer(const Record<Text>* pResource, HXBUF hXBuf, DWORD dwMask, LPDWORD pcbNeeded) {
  TakenRecord<Text> taken(pResource, dwMask);
  const bool copied = CopyToXBuf<Text>(taken, hXBuf);
  if (pcbNeeded != nullptr) *pcbNeeded = taken.cbNeeded;
  return copied;
}

}  // namespace
}  // namespace tavkit

using namespace tavkit;

DWORD UT_API utSizeNETRESOURCE(const NETRESOURCEA* pResource, DWORD dwMask) {
  return TakenRecord<ByteText>(pResource, dwMask).cbNeeded;
}
DWORD UT_API utSizeNETRESOURCEW(const NETRESOURCEW* pResource, DWORD dwMask) {
  return TakenRecord<WideText>(pResource, dwMask).cbNeeded;
}

DWORD UT_API utVarSizeNETRESOURCE(const NETRESOURCEA* pResource, DWORD dwMask) {
  return TakenRecord<ByteText>(pResource, dwMask).cbVar;
}
DWORD UT_API utVarSizeNETRESOURCEW(const NETRESOURCEW* pResource, DWORD dwMask) {
  return TakenRecord<WideText>(pResource, dwMask).cbVar;
}

BOOL UT_API utCopyNETRESOURCE(const NETRESOURCEA* pResource, LPVOID pBuffer, DWORD cbBuffer,
                              DWORD dwMask, LPDWORD pcbNeeded) {
  return Copy<ByteText>(pResource, pBuffer, cbBuffer, dwMask, pcbNeeded);
}
BOOL UT_API utCopyNETRESOURCEW(const NETRESOURCEW* pResource, LPVOID pBuffer, DWORD cbBuffer,
                               DWORD dwMask, LPDWORD pcbNeeded) {
  return Copy<WideText>(pResource, pBuffer, cbBuffer, dwMask, pcbNeeded);
}

BOOL UT_API utCopyNETRESOURCE_XBuffer(const NETRESOURCEA* pResource, HXBUF hXBuf, DWORD dwMask,
                                      LPDWORD pcbNeeded) {
  return CopyXBuffer<ByteText>(pResource, hXBuf, dwMask, pcbNeeded);
}
BOOL UT_API utCopyNETRESOURCEW_XBuffer(const NETRESOURCEW* pResource, HXBUF hXBuf, DWORD dwMask,
                                       LPDWORD pcbNeeded) {
  return CopyXBuffer<WideText>(pResource, hXBuf, dwMask, pcbNeeded);
}
