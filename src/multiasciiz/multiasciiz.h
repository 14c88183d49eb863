// The operations on MultiAsciiz lists, each as one template over the text policy.
#ifndef TAVKIT_MULTIASCIIZ_MULTIASCIIZ_H
#define TAVKIT_MULTIASCIIZ_MULTIASCIIZ_H

#include <tavkit/multiasciiz.h>

#include "frame/memory.h"
#include "multiasciiz/zeros.h"
#include "strings/strings.h"

namespace tavkit {

inline bool InitMultiAsciiz(void* pList, DWORD cbList) {
  if (pList == nullptr || cbList <= 4) return false;
  ZeroBytes(pList, cbList);
  return true;
}

template <class Text>
DWORD UT_API MultiAsciizSize(const Char<Text>* pList, BOOL fWithFinalZero) {
  if (pList == nullptr) return 0;
  const size_t cbUsed = ByteDistance(pList, FindFinalZero<Text>(pList));
  return CountedSize(cbUsed + (fWithFinalZero ? Text::kUnit : 0));
}

template <class Text>
Char<Text>* NextAsciiz(const Char<Text>* pszString) {
  return pszString == nullptr ? nullptr : ScanEnd<Text>(pszString) + 1;
}

template <class Text>
DWORD UT_API StringCount(const Char<Text>* pList) {
  if (pList == nullptr) return 0;
  if constexpr (Text::kMayBeCut) {
    if (IsCut<Text>(pList)) {
      DWORD count = 0;
      ZeroUnits<Text> zeros(pList);
      for (const Char<Text>* pEnd; (pEnd = zeros.Next()) != pList; pList = pEnd + 1) ++count;
      return count;
    }
  }
  return CountZeros<Text>(pList, FindFinalZero<Text>(pList));
}

template <class Text>
BOOL UT_API CopyNextAsciiz(const Char<Text>* pszString, Char<Text>*& pCursor, DWORD& cbRemaining) {
  if (pCursor == nullptr) return FALSE;
  if (IsNullOrEmpty<Text>(pszString)) {
    if (cbRemaining < Text::kUnit) return FALSE;
    Text::Store(pCursor, 0);
    return TRUE;
  }
  const DWORD cbString = SizeToCopy<Text>(pszString);
  if (!Fits(AddSizes(cbString, Text::kUnit), cbRemaining)) return FALSE;
  if (!Text::Copy(pCursor, pszString, cbString)) return FALSE;
  pCursor = AddBytes(pCursor, cbString);
  Text::Store(pCursor, 0);
  cbRemaining -= cbString;
  return TRUE;
}

// Adds a string that isn't empty to a list whose end is known.
template <class Text>
bool AppendAtEnd(const Char<Text>* pszString, const Char<Text>* pList, Char<Text>* pEnd,
                 DWORD cbList) {
  const size_t cbUsed = ByteDistance(pList, pEnd);
  if (cbUsed > cbList) return false;
  DWORD cbRemaining = cbList - static_cast<DWORD>(cbUsed);
  return CopyNextAsciiz<Text>(pszString, pEnd, cbRemaining);
}

template <class Text>
BOOL UT_API AppendMultiAsciiz(const Char<Text>* pszString, Char<Text>* pList, DWORD cbList) {
  if (IsNullOrEmpty<Text>(pszString)) return TRUE;
  return AppendAtEnd<Text>(pszString, pList, FindFinalZero<Text>(pList), cbList);
}

template <class Text>
Char<Text>* UT_API ScanMultiAsciiz(const Char<Text>* pszString, const Char<Text>* pList,
                                   BOOL fCaseSensitive) {
  if (pList == nullptr) return nullptr;
  if (IsNullOrEmpty<Text>(pszString)) return FindFinalZero<Text>(pList);
  for (; Text::Load(pList) != 0; pList = NextAsciiz<Text>(pList)) {
    if (Text::IsSame(pszString, pList, fCaseSensitive != 0)) return const_cast<Char<Text>*>(pList);
  }
  return nullptr;
}

template <class Text>
BOOL UT_API InsertMultiAsciiz(const Char<Text>* pszString, Char<Text>* pInsertAt, Char<Text>* pList,
                              DWORD cbList) {
  if (pInsertAt == nullptr) return FALSE;
  if (IsNullOrEmpty<Text>(pszString)) return TRUE;
  if (pList == nullptr) return FALSE;

  Char<Text>* pEnd = FindFinalZero<Text>(pList);
  const size_t cbFull = ByteDistance(pList, pEnd) + Text::kUnit;
  const size_t cbHead = ByteDistance(pList, pInsertAt);
  if (cbHead >= cbFull) return FALSE;
  const size_t cbTail = cbFull - cbHead;
  if (cbTail <= 2 * Text::kUnit) return AppendAtEnd<Text>(pszString, pList, pEnd, cbList);

  const DWORD cbString = SizeToCopy<Text>(pszString);
  if (!Fits(AddSizes(CountedSize(cbFull), cbString), cbList)) return FALSE;
  MoveBytes(AddBytes(pInsertAt, cbString), pInsertAt, cbTail);
  // A member of the list that stands in the tail has just moved with it.
  const bool hasMoved = ByteDistance(pInsertAt, pszString) < cbTail;
  MoveBytes(pInsertAt, AddBytes(pszString, hasMoved ? cbString : 0), cbString);
  return TRUE;
}

template <class Text>
BOOL UT_API RemoveMultiAsciiz(Char<Text>* pList, DWORD cStrings) {
  if (cStrings == 0) return TRUE;
  if (IsNullOrEmpty<Text>(pList)) return FALSE;
  const Char<Text>* pRest = pList;
  ZeroUnits<Text> zeros(pList);
  for (const Char<Text>* pEnd; cStrings != 0 && (pEnd = zeros.Next()) != pRest; --cStrings) {
    pRest = pEnd + 1;
  }
  MoveBytes(pList, pRest, ByteDistance(pRest, FindFinalZero<Text>(pRest)) + Text::kUnit);
  if (Text::Load(pList) == 0) Text::Store(pList + 1, 0);
  return cStrings == 0;
}

template <class Text>
BOOL UT_API Array2MultiAsciiz(const Char<Text>* const* ppszStrings, Char<Text>* pList, DWORD cbList,
                              LPDWORD pcStored) {
  DWORD stored = 0;
  bool complete = InitMultiAsciiz(pList, cbList);
  for (; complete && ppszStrings != nullptr; ++ppszStrings) {
    const auto* pszString = ReadValue<const Char<Text>*>(ppszStrings);
    if (pszString == nullptr) break;
    if (IsNullOrEmpty<Text>(pszString)) continue;
    complete = CopyNextAsciiz<Text>(pszString, pList, cbList);
    if (complete) ++stored;
  }
  if (pcStored != nullptr) *pcStored = stored;
  return complete;
}

// Stores where the strings of a list begin, as far as the capacity allows, and counts them.
template <class Text>
DWORD StoreStarts(const Char<Text>* pList, const Char<Text>** ppszArray, DWORD capacity) {
  if (pList == nullptr) return 0;
  DWORD stored = 0;
  ZeroUnits<Text> zeros(pList);
  for (const Char<Text>* pEnd; stored < capacity && (pEnd = zeros.Next()) != pList;
       pList = pEnd + 1) {
    WriteValue(&ppszArray[stored++], pList);  // the array may stand at any address
  }
  return stored;
}

template <class Text>
BOOL UT_API MultiAsciiz2Array(const Char<Text>* pList, const Char<Text>** ppszArray, DWORD cbArray,
                              LPDWORD pcStored) {
  DWORD stored = 0;
  const bool accepted = ppszArray != nullptr && cbArray >= sizeof(*ppszArray);
  if (accepted) {
    ZeroBytes(ppszArray, cbArray);
    stored = StoreStarts<Text>(pList, ppszArray, cbArray / sizeof(*ppszArray) - 1);
  }
  if (pcStored != nullptr) *pcStored = stored;
  return accepted;
}

}  // namespace tavkit

#endif  // TAVKIT_MULTIASCIIZ_MULTIASCIIZ_H
