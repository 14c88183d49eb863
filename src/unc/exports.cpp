#include "unc/build.h"

using tavkit::ByteText;
using tavkit::WideText;

void UT_API utAppendPathComponent(LPSTR pszPath, LPCSTR pszComponent) {
  tavkit::AppendPathComponent<ByteText>(pszPath, pszComponent);
}

void UT_API utAppendPathComponentW(LPWSTR pszPath, LPCWSTR pszComponent) {
  tavkit::AppendPathComponent<WideText>(pszPath, pszComponent);
}

DWORD UT_API utBreakUNCName(LPCSTR pszName, LPSTR pszServer, DWORD cbServer, LPSTR pszResource,
                            DWORD cbResource, LPSTR pszPath, DWORD cbPath) {
  return tavkit::BreakUncName<ByteText>(pszName, pszServer, cbServer, pszResource, cbResource,
                                        pszPath, cbPath);
}

DWORD UT_API utBreakUNCNameW(LPCWSTR pszName, LPWSTR pszServer, DWORD cbServer, LPWSTR pszResource,
                             DWORD cbResource, LPWSTR pszPath, DWORD cbPath) {
  return tavkit::BreakUncName<WideText>(pszName, pszServer, cbServer, pszResource, cbResource,
                                        pszPath, cbPath);
}

DWORD UT_API utSearchUNCName(LPCSTR pszName, LPSTR* ppszStart, LPSTR* ppszResourceSeparator,
                             LPSTR* ppszPathSeparator) {
  return tavkit::SearchUncName<ByteText>(pszName, ppszStart, ppszResourceSeparator,
                                         ppszPathSeparator);
}

DWORD UT_API utSearchUNCNameW(LPCWSTR pszName, LPWSTR* ppszStart, LPWSTR* ppszResourceSeparator,
                              LPWSTR* ppszPathSeparator) {
  return tavkit::SearchUncName<WideText>(pszName, ppszStart, ppszResourceSeparator,
                                         ppszPathSeparator);
}

// clang-format off
DWORD UT_API utCheckUNCName(LPCSTR pszName)   { return tavkit::CheckUncName<ByteText>(pszName); }
DWORD UT_API utCheckUNCNameW(LPCWSTR pszName) { return tavkit::CheckUncName<WideText>(pszName); }
// clang-format on

BOOL UT_API utBuildUNCName(LPSTR pszOut, DWORD cbOut, LPCSTR pszServer, LPCSTR pszResource,
                           LPCSTR pszPath) {
  return tavkit::BuildUncName<ByteText>(pszOut, cbOut, pszServer, pszResource, pszPath);
}

BOOL UT_API utBuildUNCNameW(LPWSTR pszOut, DWORD cbOut, LPCWSTR pszServer, LPCWSTR pszResource,
                            LPCWSTR pszPath) {
  return tavkit::BuildUncName<WideText>(pszOut, cbOut, pszServer, pszResource, pszPath);
}

BOOL UT_API utServerName(LPCSTR pszServer, INT nForm, LPSTR pszOut, DWORD cbOut) {
  return tavkit::ServerName<ByteText>(pszServer, nForm, pszOut, cbOut);
}

BOOL UT_API utServerNameW(LPCWSTR pszServer, INT nForm, LPWSTR pszOut, DWORD cbOut) {
  return tavkit::ServerName<WideText>(pszServer, nForm, pszOut, cbOut);
}

void UT_API utConvertServerName(LPSTR pszServer, INT nForm) {
  tavkit::ConvertServerName<ByteText>(pszServer, nForm);
}

void UT_API utConvertServerNameW(LPWSTR pszServer, INT nForm) {
  tavkit::ConvertServerName<WideText>(pszServer, nForm);
}

BOOL UT_API utExtractServer(LPCSTR pszName, LPSTR pszOut, DWORD cbOut) {
  return tavkit::ExtractServer<ByteText>(pszName, pszOut, cbOut);
}

BOOL UT_API utExtractServerW(LPCWSTR pszName, LPWSTR pszOut, DWORD cbOut) {
  return tavkit::ExtractServer<WideText>(pszName, pszOut, cbOut);
}

BOOL UT_API utExtractServerResource(LPCSTR pszName, LPSTR pszOut, DWORD cbOut) {
  return tavkit::ExtractServerResource<ByteText>(pszName, pszOut, cbOut);
}

BOOL UT_API utExtractServerResourceW(LPCWSTR pszName, LPWSTR pszOut, DWORD cbOut) {
  return tavkit::ExtractServerResource<WideText>(pszName, pszOut, cbOut);
}
