// Joining paths, and taking UNC names apart.
#ifndef TAVKIT_UNC_PARSE_H
#define TAVKIT_UNC_PARSE_H

#include <tavkit/unc.h>

#include "strings/strings.h"

namespace tavkit {

inline constexpr WORD kBackslash = '\\';

// Copies a string, which may be the one that it is copied to the end of, and tells where its copy
// ends.
template <class Text>
Char<Text>* CopyToEnd(Char<Text>* pszEnd, const Char<Text>* psz) {
  const DWORD size = StringSize<Text>(psz, false);
  Text::CopyCounted(psz, size, pszEnd, UT_SIZE_UNCHECKED);
  return pszEnd + size / Text::kUnit;
}

// Appends a component to a path of which the last character and the end are known, and tells where
// the path ends then.
template <class Text>
Char<Text>* AppendComponent(const Char<Text>* pszLast, Char<Text>* pszEnd,
                            const Char<Text>* pszComponent) {
  if (Text::Load(pszLast) != kBackslash) {
    Text::Store(pszEnd, kBackslash);
    Text::Store(++pszEnd, 0);
  }
  if (IsNullOrEmpty<Text>(pszComponent)) return pszEnd;
  return CopyToEnd<Text>(pszEnd, SkipLeadChar<Text>(pszComponent, kBackslash));
}

template <class Text>
void AppendPathComponent(Char<Text>* pszPath, const Char<Text>* pszComponent) {
  if (pszPath == nullptr) return;
  const Char<Text>* pszLast = CharLast<Text>(pszPath);
  AppendComponent<Text>(pszLast, Text::End(pszLast), pszComponent);
}

// Where the parts of a UNC name stand; NULL for one that the name doesn't have.
template <class Text>
struct UncParts {
  Char<Text>* pszStart;
  Char<Text>* pszServer;
  Char<Text>* pszResourceSeparator;
  Char<Text>* pszResource;
  Char<Text>* pszPathSeparator;
  Char<Text>* pszPath;
};

template <class Text>
Char<Text>* FindSeparator(const Char<Text>* psz) {
  return psz == nullptr ? nullptr : Text::Find(psz, kBackslash);
}

// The one parse: all that is said of a name is read off its result.
template <class Text>
UncParts<Text> ParseUncName(const Char<Text>* pszName) {
  UncParts<Text> parts = {};
  if (CountLeadChar<Text>(pszName, kBackslash) != 2) return parts;
  parts.pszStart = const_cast<Char<Text>*>(pszName);
  parts.pszServer = SkipLeadChar<Text>(pszName, kBackslash);
  parts.pszResourceSeparator = FindSeparator<Text>(parts.pszServer);
  parts.pszResource = SkipLeadChar<Text>(parts.pszResourceSeparator, kBackslash);
  parts.pszPathSeparator = FindSeparator<Text>(parts.pszResource);
  parts.pszPath = SkipLeadChar<Text>(parts.pszPathSeparator, kBackslash);
  return parts;
}

inline DWORD UncBits(bool hasServer, bool hasResource, bool hasPath) {
  return (hasServer ? UT_UNC_SERVER : 0) | (hasResource ? UT_UNC_RESOURCE : 0) |
         (hasPath ? UT_UNC_PATH : 0);
}

template <class Text>
DWORD SearchUncName(const Char<Text>* pszName, Char<Text>** ppszStart,
                    Char<Text>** ppszResourceSeparator, Char<Text>** ppszPathSeparator) {
  if (pszName == nullptr) return 0;
  const auto parts = ParseUncName<Text>(pszName);
  if (ppszStart != nullptr) *ppszStart = parts.pszStart;
  if (ppszResourceSeparator != nullptr) *ppszResourceSeparator = parts.pszResourceSeparator;
  if (ppszPathSeparator != nullptr) *ppszPathSeparator = parts.pszPathSeparator;
  return UncBits(parts.pszStart != nullptr, parts.pszResourceSeparator != nullptr,
                 parts.pszPathSeparator != nullptr);
}

// Bytes from one position of a string up to a later one.
template <class Text>
DWORD StretchSize(const Char<Text>* pszFrom, const Char<Text>* pszTo) {
  return static_cast<DWORD>(pszTo - pszFrom) * Text::kUnit;
}

// Bytes of a component, which reaches up to its separator or, without one, to the end of the
// string.
template <class Text>
DWORD ComponentSize(const Char<Text>* pszComponent, const Char<Text>* pszSeparator) {
  return pszSeparator == nullptr ? StringSize<Text>(pszComponent, false)
                                 : StretchSize<Text>(pszComponent, pszSeparator);
}

// Copies a component as far as it fits. One without a start leaves an empty string.
template <class Text>
void CopyComponent(const Char<Text>* psz, DWORD cb, Char<Text>* pszOut, DWORD cbOut) {
  if (psz != nullptr) {
    Text::CopyCounted(psz, cb, pszOut, cbOut);
  } else if (IsBuffer(pszOut, cbOut, Text::kUnit)) {
    Text::Store(pszOut, 0);
  }
}

template <class Text>
DWORD BreakUncName(const Char<Text>* pszName, Char<Text>* pszServer, DWORD cbServer,
                   Char<Text>* pszResource, DWORD cbResource, Char<Text>* pszPath, DWORD cbPath) {
  if (pszName == nullptr) return 0;
  const auto parts = ParseUncName<Text>(pszName);
  const DWORD server = ComponentSize<Text>(parts.pszServer, parts.pszResourceSeparator);
  const DWORD resource = ComponentSize<Text>(parts.pszResource, parts.pszPathSeparator);
  const DWORD path = ComponentSize<Text>(parts.pszPath, nullptr);
  CopyComponent<Text>(parts.pszServer, server, pszServer, cbServer);
  CopyComponent<Text>(parts.pszResource, resource, pszResource, cbResource);
  CopyComponent<Text>(parts.pszPath, path, pszPath, cbPath);
  return UncBits(server != 0, resource != 0, path != 0);
}

template <class Text>
DWORD CheckUncName(const Char<Text>* pszName) {
  return BreakUncName<Text>(pszName, nullptr, 0, nullptr, 0, nullptr, 0);
}

}  // namespace tavkit

#endif  // TAVKIT_UNC_PARSE_H
