// Joining paths, and taking UNC names apart.
#ifndef TAVKIT_UNC_PARSE_H
#define TAVKIT_UNC_PARSE_H

#include <tavkit/unc.h>

#include "strings/strings.h"

namespace tavkit {

inline constexpr WORD kBackslash = '\\';

// A stretch of text and its size in bytes, without a terminator. NULL where there is none.
template <class Text>
struct Stretch {
  const Char<Text>* psz = nullptr;
  DWORD cb = 0;
};

// A string without its leading backslashes, measured.
template <class Text>
Stretch<Text> BareText(const Char<Text>* psz) {
  const Char<Text>* pszBare = SkipLeadChar<Text>(psz, kBackslash);
  return {pszBare, LengthToCopy<Text>(pszBare)};
}

// Copies a text to the end of a string, which it may be a part of, and gives the new end.
template <class Text>
Char<Text>* CopyToEnd(Char<Text>* pszEnd, const Stretch<Text>& text) {
  CopyMakeAsciiz<Text>(text.psz, text.cb, pszEnd, UT_SIZE_UNCHECKED);
  return pszEnd + text.cb / Text::kUnit;
}

// Ends a path with a backslash, unless it does already, and gives its end.
template <class Text>
Char<Text>* AppendSeparator(const Tail<Char<Text>>& path) {
  Char<Text>* pszEnd = path.pszEnd;
  if (Text::Load(LastOf<Text>(path)) == kBackslash) return pszEnd;
  Text::Store(pszEnd++, kBackslash);
  Text::Store(pszEnd, 0);
  return pszEnd;
}

template <class Text>
void UT_API AppendPathComponent(Char<Text>* pszPath, const Char<Text>* pszComponent) {
  if (pszPath == nullptr) return;
  Char<Text>* pszEnd = AppendSeparator<Text>(Text::FindTail(pszPath));
  const auto component = BareText<Text>(pszComponent);
  if (component.cb != kUncountable) CopyToEnd<Text>(pszEnd, component);
}

// A component of a UNC name: where it begins, and the backslash that ends it. NULL where the name
// has none.
template <class Text>
struct Component {
  Char<Text>* pszStart = nullptr;
  Char<Text>* pszSeparator = nullptr;

  // The backslashes of a run are one separator, so the component is empty at the name's end alone.
  bool IsEmpty() const { return pszStart == nullptr || Text::Load(pszStart) == 0; }

  Stretch<Text> Measured() const {
    if (pszStart == nullptr) return {};
    const Char<Text>* pszEnd = pszSeparator != nullptr ? pszSeparator : FindEnd<Text>(pszStart);
    return {pszStart, CountedSize(ByteDistance(pszStart, pszEnd))};
  }
};

template <class Text>
struct UncName {
  Component<Text> server, resource, path;
};

// Past a run of backslashes, which are few. It begins at a separator, so each is a character.
template <class Text>
Char<Text>* SkipRun(Char<Text>* psz) {
  while (Text::Load(psz) == kBackslash) ++psz;
  return psz;
}

// The one parse: all that is said of a name is read off its result.
template <class Text>
UncName<Text> ParseUncName(const Char<Text>* pszName) {
  UncName<Text> name;
  if (pszName == nullptr) return name;
  auto* pszServer = SkipRun<Text>(const_cast<Char<Text>*>(pszName));
  if (pszServer - pszName != 2) return name;
  name.server = {pszServer, FindChar<Text>(pszServer, kBackslash)};
  if (name.server.pszSeparator == nullptr) return name;
  auto* pszResource = SkipRun<Text>(name.server.pszSeparator);
  name.resource = {pszResource, FindChar<Text>(pszResource, kBackslash)};
  if (name.resource.pszSeparator == nullptr) return name;
  name.path.pszStart = SkipRun<Text>(name.resource.pszSeparator);
  return name;
}

inline DWORD UncBits(bool hasServer, bool hasResource, bool hasPath) {
  return (hasServer ? UT_UNC_SERVER : 0) | (hasResource ? UT_UNC_RESOURCE : 0) |
         (hasPath ? UT_UNC_PATH : 0);
}

template <class Text>
DWORD UT_API SearchUncName(const Char<Text>* pszName, Char<Text>** ppszStart,
                           Char<Text>** ppszResourceSeparator, Char<Text>** ppszPathSeparator) {
  if (pszName == nullptr) return 0;
  const auto name = ParseUncName<Text>(pszName);
  const bool isName = name.server.pszStart != nullptr;
  if (ppszStart != nullptr) *ppszStart = isName ? const_cast<Char<Text>*>(pszName) : nullptr;
  if (ppszResourceSeparator != nullptr) *ppszResourceSeparator = name.server.pszSeparator;
  if (ppszPathSeparator != nullptr) *ppszPathSeparator = name.resource.pszSeparator;
  return UncBits(isName, name.server.pszSeparator != nullptr,
                 name.resource.pszSeparator != nullptr);
}

template <class Text>
DWORD UT_API CheckUncName(const Char<Text>* pszName) {
  const auto name = ParseUncName<Text>(pszName);
  return UncBits(!name.server.IsEmpty(), !name.resource.IsEmpty(), !name.path.IsEmpty());
}

template <class Text>
void StoreEmpty(Char<Text>* pszOut, DWORD cbOut) {
  if (IsBuffer(pszOut, cbOut, Text::kUnit)) Text::Store(pszOut, 0);
}

template <class Text>
DWORD UT_API BreakUncName(const Char<Text>* pszName, Char<Text>* pszServer, DWORD cbServer,
                          Char<Text>* pszResource, DWORD cbResource, Char<Text>* pszPath,
                          DWORD cbPath) {
  if (pszName == nullptr) return 0;
  const auto name = ParseUncName<Text>(pszName);
  // Most strings are no such name, and are told so at once.
  if (name.server.pszStart == nullptr) {
    StoreEmpty<Text>(pszServer, cbServer);
    StoreEmpty<Text>(pszResource, cbResource);
    StoreEmpty<Text>(pszPath, cbPath);
    return 0;
  }
  // Lengths come first: a buffer may lie in the name.
  const auto server = name.server.Measured();
  const auto resource = name.resource.Measured();
  const auto path = name.path.Measured();
  CopyMakeAsciiz<Text>(server.psz, server.cb, pszServer, cbServer);
  CopyMakeAsciiz<Text>(resource.psz, resource.cb, pszResource, cbResource);
  CopyMakeAsciiz<Text>(path.psz, path.cb, pszPath, cbPath);
  return UncBits(server.cb != 0, resource.cb != 0, path.cb != 0);
}

}  // namespace tavkit

#endif  // TAVKIT_UNC_PARSE_H
