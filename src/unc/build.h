// Composing UNC names, server names in their two forms, and the leading part of a name.
#ifndef TAVKIT_UNC_BUILD_H
#define TAVKIT_UNC_BUILD_H

#include "unc/parse.h"

namespace tavkit {

template <class Text>
inline constexpr DWORD kUncPrefix = 2 * Text::kUnit;

// The parts of a name to be built, measured once: the server, unless it is missing or empty, then
// the resource and the path, unless they are missing.
template <class Text>
struct MeasuredParts {
  Stretch<Text> server, components[2];

  MeasuredParts(const Char<Text>* pszServer, const Char<Text>* pszResource,
                const Char<Text>* pszPath)
      : components{BareText<Text>(pszResource), BareText<Text>(pszPath)} {
    if (!IsNullOrEmpty<Text>(pszServer)) server = BareText<Text>(pszServer);
  }
};

template <class Text>
DWORD SizeUncName(const MeasuredParts<Text>& parts) {
  DWORD size = parts.server.psz == nullptr ? 0 : AddSizes(parts.server.cb, kUncPrefix<Text>);
  for (const auto& part : parts.components) {
    if (part.psz != nullptr) size = AddSizes(size, AddSizes(part.cb, Text::kUnit));
  }
  return size == 0 ? 0 : AddSizes(size, Text::kUnit);
}

// What a server name takes, leading backslashes included although they aren't written.
template <class Text>
DWORD SizeServerName(const Char<Text>* pszServer, const Stretch<Text>& bare, INT nForm) {
  if (IsNullOrEmpty<Text>(pszServer)) return 0;
  const DWORD cbLead = CountedSize(ByteDistance(pszServer, bare.psz));
  const DWORD cbPrefix = nForm == UT_SERVERNAME_UNC ? kUncPrefix<Text> : 0;
  return AddSizes(AddSizes(cbLead, bare.cb), cbPrefix + Text::kUnit);
}

// The counts of each form by name.
inline constexpr auto& utSizeUNCName = SizeUncName<ByteText>;
inline constexpr auto& utSizeUNCNameW = SizeUncName<WideText>;
inline constexpr auto& utSizeServerName = SizeServerName<ByteText>;
inline constexpr auto& utSizeServerNameW = SizeServerName<WideText>;

// Writes a server name after so many bytes of backslashes.
template <class Text>
void WriteServer(Char<Text>* pszOut, DWORD cbPrefix, const Stretch<Text>& server) {
  Char<Text>* const pszName = pszOut + cbPrefix / Text::kUnit;
  CopyToEnd<Text>(pszName, server);
  while (pszOut != pszName) Text::Store(pszOut++, kBackslash);
}

template <class Text>
BOOL UT_API BuildUncName(Char<Text>* pszOut, DWORD cbOut, const Char<Text>* pszServer,
                         const Char<Text>* pszResource, const Char<Text>* pszPath) {
  if (!IsBuffer(pszOut, cbOut, Text::kUnit)) return FALSE;
  Text::Store(pszOut, 0);
  const MeasuredParts<Text> parts(pszServer, pszResource, pszPath);
  if (!Fits(SizeUncName<Text>(parts), cbOut)) return FALSE;
  if (parts.server.psz != nullptr) WriteServer<Text>(pszOut, kUncPrefix<Text>, parts.server);
  // A character that was the last one still begins where it did, so the next walk begins there.
  const Char<Text>* pszLast = pszOut;
  for (const auto& part : parts.components) {
    if (part.psz == nullptr) continue;
    const auto path = Text::FindTail(pszLast);
    pszLast = LastOf<Text>(path);
    CopyToEnd<Text>(AppendSeparator<Text>(path), part);
  }
  return TRUE;
}

template <class Text>
BOOL UT_API ServerName(const Char<Text>* pszServer, INT nForm, Char<Text>* pszOut, DWORD cbOut) {
  if (!IsBuffer(pszOut, cbOut, Text::kUnit)) return FALSE;
  Text::Store(pszOut, 0);
  if (pszServer == nullptr) return FALSE;
  const auto bare = BareText<Text>(pszServer);
  if (!Fits(SizeServerName<Text>(pszServer, bare, nForm), cbOut)) return FALSE;
  // An empty name counts nothing there, but its prefix and terminator are written all the same.
  const DWORD cbPrefix = nForm == UT_SERVERNAME_UNC ? kUncPrefix<Text> : 0;
  if (!IsBufferSize(cbOut, cbPrefix + Text::kUnit)) return FALSE;
  WriteServer<Text>(pszOut, cbPrefix, bare);
  return TRUE;
}

template <class Text>
void UT_API ConvertServerName(Char<Text>* pszServer, INT nForm) {
  Char<Text> szConverted[64];
  Text::Store(szConverted, 0);
  ServerName<Text>(pszServer, nForm, szConverted, sizeof szConverted);
  Text::Copy(pszServer, szConverted);
}

// Copies a name up to a separator, or all of it where there is none.
template <class Text>
bool CopyUpTo(const Char<Text>* pszName, const Char<Text>* pszSeparator, Char<Text>* pszOut,
              DWORD cbOut) {
  if (pszSeparator == nullptr) return CopyString<Text>(pszName, pszOut, cbOut);
  const DWORD cbName = CountedSize(ByteDistance(pszName, pszSeparator));
  return CopyMakeAsciiz<Text>(pszName, cbName, pszOut, cbOut);
}

template <class Text>
BOOL UT_API ExtractServer(const Char<Text>* pszName, Char<Text>* pszOut, DWORD cbOut) {
  const auto server = ParseUncName<Text>(pszName).server;
  return server.pszStart != nullptr && CopyUpTo<Text>(pszName, server.pszSeparator, pszOut, cbOut);
}

template <class Text>
BOOL UT_API ExtractServerResource(const Char<Text>* pszName, Char<Text>* pszOut, DWORD cbOut) {
  const auto resource = ParseUncName<Text>(pszName).resource;
  return resource.pszStart != nullptr &&
         CopyUpTo<Text>(pszName, resource.pszSeparator, pszOut, cbOut);
}

}  // namespace tavkit

#endif  // TAVKIT_UNC_BUILD_H
