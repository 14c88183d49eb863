// Character and string primitives, each as one template over the text policy. Results point into
// the caller's string, so they carry no const, as with the C library's strchr.
#ifndef TAVKIT_STRINGS_STRINGS_H
#define TAVKIT_STRINGS_STRINGS_H

#include <tavkit/strings.h>

#include "frame/buffer_size.h"
#include "frame/memory.h"
#include "strings/text.h"

namespace tavkit {

inline DWORD WideText::Length(const Char* psz) {
  // In bytes, not in units: the two pointers may be odd.
  return static_cast<DWORD>(reinterpret_cast<const char*>(WideText::End(psz)) -
                            reinterpret_cast<const char*>(psz));
}

inline void WideText::Copy(Char* pszDest, const Char* pszSource) {
  MoveBytes(pszDest, pszSource, Length(pszSource) + kUnit);
}

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

// Where the last character of a string begins, or its terminator if it is empty. Only a walk from
// the start tells trail bytes from characters.
inline CHAR* FindLast(CHAR* psz, ByteText) {
  if (ByteText::Load(psz) == 0) return psz;
  for (CHAR* pszNext = ByteText::Next(psz); ByteText::Load(pszNext) != 0;
       pszNext = ByteText::Next(psz)) {
    psz = pszNext;
  }
  return psz;
}

inline WCHAR* FindLast(WCHAR* psz, WideText) {
  WCHAR* pszEnd = WideText::End(psz);
  return pszEnd == psz ? psz : pszEnd - 1;
}

template <class Text>
Char<Text>* CharLast(const Char<Text>* psz) {
  return psz == nullptr ? nullptr : FindLast(const_cast<Char<Text>*>(psz), Text{});
}

template <class Text>
Char<Text>* TruncateAtChar(Char<Text>* psz, WORD wChar) {
  if (psz == nullptr) return nullptr;
  auto* pszFound = Text::Find(psz, wChar);
  if (pszFound != nullptr) Text::Store(pszFound, 0);
  return pszFound;
}

template <class Text>
Char<Text>* SkipLeadChar(const Char<Text>* psz, WORD wChar) {
  auto* pszRest = const_cast<Char<Text>*>(psz);
  if (psz == nullptr) return nullptr;
  while (Text::IsChar(pszRest, wChar)) pszRest = Text::Next(pszRest);
  return pszRest;
}

template <class Text>
DWORD CountLeadChar(const Char<Text>* psz, WORD wChar) {
  DWORD count = 0;
  if (psz == nullptr) return 0;
  for (; Text::IsChar(psz, wChar); psz = Text::Next(psz)) ++count;
  return count;
}

template <class Text>
bool TrimLead(Char<Text>* psz, WORD wChar) {
  const auto* pszRest = SkipLeadChar<Text>(psz, wChar);
  if (pszRest == psz) return false;
  Text::Copy(psz, pszRest);
  return true;
}

// The start of the run of wChar that ends the string, NULL if there is none. A trail byte must not
// be taken for a character, so the byte form can only walk forward.
inline CHAR* FindTrailRun(CHAR* psz, WORD wChar, ByteText) {
  CHAR* pszRun = nullptr;
  for (; ByteText::Load(psz) != 0; psz = ByteText::Next(psz)) {
    if (!ByteText::IsChar(psz, wChar)) {
      pszRun = nullptr;
    } else if (pszRun == nullptr) {
      pszRun = psz;
    }
  }
  return pszRun;
}

inline WCHAR* FindTrailRun(WCHAR* psz, WORD wChar, WideText) {
  WCHAR* pszRun = nullptr;
  for (WCHAR* pszEnd = WideText::End(psz); pszEnd != psz; pszRun = pszEnd) {
    --pszEnd;
    if (!WideText::IsChar(pszEnd, wChar)) break;
  }
  return pszRun;
}

template <class Text>
bool TrimTrail(Char<Text>* psz, WORD wChar) {
  auto* pszRun = FindTrailRun(psz, wChar, Text{});
  if (pszRun == nullptr) return false;
  Text::Store(pszRun, 0);
  return true;
}

template <class Text>
bool TrimChar(Char<Text>* psz, WORD wChar, WORD wFlags) {
  bool trimmed = false;
  if (psz == nullptr) return false;
  if (wFlags & UT_TRIM_LEADING) trimmed |= TrimLead<Text>(psz, wChar);
  if (wFlags & UT_TRIM_TRAILING) trimmed |= TrimTrail<Text>(psz, wChar);
  return trimmed;
}

// In bytes, for both forms.
template <class Text>
DWORD StringSize(const Char<Text>* psz, bool withTerminator) {
  if (psz == nullptr) return 0;
  return AddSizes(Text::Length(psz), withTerminator ? Text::kUnit : 0);
}

template <class Text>
bool CopyString(const Char<Text>* pszSource, Char<Text>* pszDest, DWORD cbDest) {
  return Text::CopyCounted(pszSource, StringSize<Text>(pszSource, true), pszDest, cbDest);
}

template <class Text>
bool CopyNonNullString(const Char<Text>* pszSource, Char<Text>* pszDest, DWORD cbDest) {
  return pszSource != nullptr && CopyString<Text>(pszSource, pszDest, cbDest);
}

}  // namespace tavkit

#endif  // TAVKIT_STRINGS_STRINGS_H
