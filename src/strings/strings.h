// Character and string primitives, each as one template over the text policy. Results point into
// the caller's string, so they carry no const, as with the C library's strchr.
#ifndef TAVKIT_STRINGS_STRINGS_H
#define TAVKIT_STRINGS_STRINGS_H

#include "strings/search.h"

namespace tavkit {

template <class Text>
bool IsNullOrEmpty(const Char<Text>* psz) {
  return psz == nullptr || Text::Load(psz) == 0;
}

template <class Text>
Char<Text>* CharNext(const Char<Text>* psz) {
  return psz == nullptr ? nullptr : Text::Next(psz);
}

template <class Text>
Char<Text>* CharPrev(const Char<Text>* pszStart, const Char<Text>* pszCurrent) {
  if (pszStart == nullptr || pszCurrent == nullptr) return nullptr;
  return Text::Previous(pszStart, pszCurrent);
}

// The last character of a string, given its tail; the terminator if the string is empty.
template <class Text>
Char<Text>* LastOf(const Tail<Char<Text>>& tail) {
  if (tail.pszStart != tail.pszEnd) return tail.pszEnd - 1;
  return tail.pszPrevious != nullptr ? tail.pszPrevious : tail.pszEnd;
}

template <class Text>
Char<Text>* CharLast(const Char<Text>* psz) {
  return psz == nullptr ? nullptr : LastOf<Text>(Text::FindTail(psz));
}

template <class Text>
Char<Text>* UT_API TruncateAtChar(Char<Text>* psz, WORD wChar) {
  if (psz == nullptr) return nullptr;
  auto* pszFound = FindChar<Text>(psz, wChar);
  if (pszFound != nullptr) Text::Store(pszFound, 0);
  return pszFound;
}

template <class Text>
Char<Text>* UT_API SkipLeadChar(const Char<Text>* psz, WORD wChar) {
  if (psz == nullptr || Text::Load(psz) != wChar || !Text::CanMatch(wChar)) {
    return const_cast<Char<Text>*>(psz);
  }
  return Scan<Text>(psz, OtherUnit<Text>(wChar));
}

template <class Text>
DWORD UT_API CountLeadChar(const Char<Text>* psz, WORD wChar) {
  return CountedSize(ByteDistance(psz, SkipLeadChar<Text>(psz, wChar)) / Text::kUnit);
}

// In bytes, for both forms.
template <class Text>
DWORD StringSize(const Char<Text>* psz, bool withTerminator) {
  if (psz == nullptr) return 0;
  return AddSizes(Text::Length(psz), withTerminator ? Text::kUnit : 0);
}

// The length in bytes of a string that is to be copied; 0 for NULL. Where the platform counts
// nothing of one that isn't empty it has failed, and no buffer is large enough.
template <class Text>
DWORD LengthToCopy(const Char<Text>* psz) {
  const DWORD cb = StringSize<Text>(psz, false);
  return cb == 0 && !IsNullOrEmpty<Text>(psz) ? kUncountable : cb;
}

// The same with the terminator, which NULL doesn't have.
template <class Text>
DWORD SizeToCopy(const Char<Text>* psz) {
  return psz == nullptr ? 0 : AddSizes(LengthToCopy<Text>(psz), Text::kUnit);
}

// Both ends are found before the text is moved, since reading what was just written takes longer.
// What the platform fails to move stays as it is.
template <class Text>
BOOL UT_API TrimChar(Char<Text>* psz, WORD wChar, WORD wFlags) {
  if (psz == nullptr || !Text::CanMatch(wChar)) return FALSE;
  auto* pszRest = wFlags & UT_TRIM_LEADING ? SkipLeadChar<Text>(psz, wChar) : psz;
  Char<Text>* pszRun = nullptr;
  if (wFlags & UT_TRIM_TRAILING) {
    const auto tail = Text::FindTail(pszRest);
    pszRun = FindRunStart<Text>(tail.pszStart, tail.pszEnd, wChar);
    if (pszRun == tail.pszEnd) pszRun = nullptr;
  }
  if (pszRest != psz && !Text::Copy(psz, pszRest)) return TRUE;
  if (pszRun != nullptr) Text::Store(pszRun - (pszRest - psz), 0);
  return pszRest != psz || pszRun != nullptr;
}

template <class Text>
BOOL UT_API CopyMakeAsciiz(LPCVOID pSource, DWORD cbSource, Char<Text>* pszDest, DWORD cbDest) {
  if (!IsBuffer(pszDest, cbDest, Text::kUnit)) return FALSE;
  DWORD count = pSource == nullptr ? 0 : cbSource;
  const bool isCut = count > cbDest - Text::kUnit && cbDest != UT_SIZE_UNCHECKED;
  if (isCut) count = cbDest - Text::kUnit;
  MoveBytes(pszDest, pSource, count);
  // The terminator stands at a whole unit, over the half one that an odd count ends with.
  Text::Store(pszDest + count / Text::kUnit, 0);
  return TRUE;
}

// The count takes in the source's terminator, so that a second one follows it where both fit.
template <class Text>
BOOL UT_API CopyString(const Char<Text>* pszSource, Char<Text>* pszDest, DWORD cbDest) {
  return CopyMakeAsciiz<Text>(pszSource, StringSize<Text>(pszSource, true), pszDest, cbDest);
}

template <class Text>
BOOL UT_API CopyNonNullString(const Char<Text>* pszSource, Char<Text>* pszDest, DWORD cbDest) {
  return pszSource != nullptr && CopyString<Text>(pszSource, pszDest, cbDest);
}

}  // namespace tavkit

#endif  // TAVKIT_STRINGS_STRINGS_H
