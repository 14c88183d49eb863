// Composing UNC names, server names in their two forms, and the leading part of a name.
#ifndef TAVKIT_UNC_BUILD_H
#define TAVKIT_UNC_BUILD_H

#include "unc/parse.h"

namespace tavkit {

template <class Text>
inline constexpr DWORD kUncPrefix = 2 * Text::kUnit;

// The size of a name without its leading backslashes and its terminator.
template <class Text>
DWORD BareSize(const Char<Text>* psz) {
  return StringSize<Text>(SkipLeadChar<Text>(psz, kBackslash), false);
}

template <class Text>
DWORD SizeUncName(const Char<Text>* pszServer, const Char<Text>* pszResource,
                  const Char<Text>* pszPath) {
  DWORD size = 0;
  if (!IsNullOrEmpty<Text>(pszServer)) size = AddSizes(BareSize<Text>(pszServer), kUncPrefix<Text>);
  const Char<Text>* const parts[] = {pszResource, pszPath};
  for (const auto* pszPart : parts) {
    if (pszPart != nullptr) size = AddSizes(size, AddSizes(BareSize<Text>(pszPart), Text::kUnit));
  }
  return size == 0 ? 0 : AddSizes(size, Text::kUnit);
}

inline DWORD utSizeUNCName(LPCSTR pszServer, LPCSTR pszResource, LPCSTR pszPath) {
  return SizeUncName<ByteText>(pszServer, pszResource, pszPath);
}

inline DWORD utSizeUNCNameW(LPCWSTR pszServer, LPCWSTR pszResource, LPCWSTR pszPath) {
  return SizeUncName<WideText>(pszServer, pszResource, pszPath);
}

// Counts the name's leading backslashes too, although they aren't written.
template <class Text>
DWORD SizeServerName(const Char<Text>* pszServer, INT nForm) {
  if (IsNullOrEmpty<Text>(pszServer)) return 0;
  const DWORD cbPrefix = nForm == UT_SERVERNAME_UNC ? kUncPrefix<Text> : 0;
  return AddSizes(StringSize<Text>(pszServer, true), cbPrefix);
}

inline DWORD utSizeServerName(LPCSTR pszServer, INT nForm) {
  return SizeServerName<ByteText>(pszServer, nForm);
}

inline DWORD utSizeServerNameW(LPCWSTR pszServer, INT nForm) {
  return SizeServerName<WideText>(pszServer, nForm);
}

// Writes a server name without its own leading backslashes behind a prefix of backslashes, and
// tells where it ends.
template <class Text>
Char<Text>* WriteServer(Char<Text>* pszOut, DWORD cbPrefix, const Char<Text>* pszServer) {
  Char<Text>* pszBehind = pszOut + cbPrefix / Text::kUnit;
  Char<Text>* pszEnd = CopyToEnd<Text>(pszBehind, SkipLeadChar<Text>(pszServer, kBackslash));
  while (pszBehind != pszOut) Text::Store(--pszBehind, kBackslash);
  return pszEnd;
}

// The last character of a string whose end is known. In the byte form only a walk finds it.
inline CHAR* LastInFront(CHAR* psz, CHAR* /*pszEnd*/, ByteText) { return CharLast<ByteText>(psz); }
inline WCHAR* LastInFront(WCHAR* psz, WCHAR* pszEnd, WideText) {
  return pszEnd == psz ? psz : pszEnd - 1;
}

template <class Text, auto Size>
bool BuildUncName(Char<Text>* pszOut, DWORD cbOut, const Char<Text>* pszServer,
                  const Char<Text>* pszResource, const Char<Text>* pszPath) {
  if (!IsBuffer(pszOut, cbOut, Text::kUnit)) return false;
  Text::Store(pszOut, 0);
  if (cbOut != UT_SIZE_UNCHECKED && !IsBufferSize(cbOut, Size(pszServer, pszResource, pszPath))) {
    return false;
  }
  Char<Text>* pszEnd = pszOut;
  if (!IsNullOrEmpty<Text>(pszServer)) {
    pszEnd = WriteServer<Text>(pszOut, kUncPrefix<Text>, pszServer);
  }
  const Char<Text>* const parts[] = {pszResource, pszPath};
  for (const auto* pszPart : parts) {
    if (pszPart == nullptr) continue;
    pszEnd = AppendComponent<Text>(LastInFront(pszOut, pszEnd, Text{}), pszEnd, pszPart);
  }
  return true;
}

template <class Text, auto Size>
bool ServerName(const Char<Text>* pszServer, INT nForm, Char<Text>* pszOut, DWORD cbOut) {
  if (!IsBuffer(pszOut, cbOut, Text::kUnit)) return false;
  Text::Store(pszOut, 0);
  if (pszServer == nullptr) return false;
  if (cbOut != UT_SIZE_UNCHECKED && !IsBufferSize(cbOut, Size(pszServer, nForm))) return false;
  // An empty name counts nothing there, but its prefix and terminator are written all the same.
  const DWORD cbPrefix = nForm == UT_SERVERNAME_UNC ? kUncPrefix<Text> : 0;
  if (!IsBufferSize(cbOut, cbPrefix + Text::kUnit)) return false;
  WriteServer<Text>(pszOut, cbPrefix, pszServer);
  return true;
}

template <class Text, auto Size>
void ConvertServerName(Char<Text>* pszServer, INT nForm) {
  Char<Text> szConverted[64];
  Text::Store(szConverted, 0);
  ServerName<Text, Size>(pszServer, nForm, szConverted, sizeof szConverted);
  Text::Copy(pszServer, szConverted);
}

// Copies a name up to a separator, or all of it where there is none.
template <class Text>
bool CopyUpTo(const Char<Text>* pszName, const Char<Text>* pszSeparator, Char<Text>* pszOut,
              DWORD cbOut) {
  if (pszSeparator == nullptr) return CopyString<Text>(pszName, pszOut, cbOut);
  return Text::CopyCounted(pszName, StretchSize<Text>(pszName, pszSeparator), pszOut, cbOut);
}

template <class Text>
bool ExtractServer(const Char<Text>* pszName, Char<Text>* pszOut, DWORD cbOut) {
  const auto parts = ParseUncName<Text>(pszName);
  return parts.pszStart != nullptr &&
         CopyUpTo<Text>(pszName, parts.pszResourceSeparator, pszOut, cbOut);
}

template <class Text>
bool ExtractServerResource(const Char<Text>* pszName, Char<Text>* pszOut, DWORD cbOut) {
  const auto parts = ParseUncName<Text>(pszName);
  return parts.pszResourceSeparator != nullptr &&
         CopyUpTo<Text>(pszName, parts.pszPathSeparator, pszOut, cbOut);
}

}  // namespace tavkit

#endif  // TAVKIT_UNC_BUILD_H
