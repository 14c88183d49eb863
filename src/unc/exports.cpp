#include "unc/build.h"

using namespace tavkit;

void UT_API utAppendPathComponent(LPSTR pszPath, LPCSTR pszComponent) {
  AppendPathComponent<ByteText>(pszPath, pszComponent);
}
void UT_API utAppendPathComponentW(LPWSTR pszPath, LPCWSTR pszComponent) {
  AppendPathComponent<WideText>(pszPath, pszComponent);
}

DWORD UT_API utBreakUNCName(LPCSTR pszName, LPSTR pszServer, DWORD cbServer, LPSTR pszResource,
                            DWORD cbResource, LPSTR pszPath, DWORD cbPath) {
  return BreakUncName<ByteText>(pszName, pszServer, cbServer, pszResource, cbResource, pszPath,
                                cbPath);
}
DWORD UT_API utBreakUNCNameW(LPCWSTR pszName, LPWSTR pszServer, DWORD cbServer, LPWSTR pszResource,
                             DWORD cbResource, LPWSTR pszPath, DWORD cbPath) {
  return BreakUncName<WideText>(pszName, pszServer, cbServer, pszResource, cbResource, pszPath,
                                cbPath);
}

DWORD UT_API utSearchUNCName(LPCSTR pszName, LPSTR* ppszStart, LPSTR* ppszResourceSeparator,
                             LPSTR* ppszPathSeparator) {
  return SearchUncName<ByteText>(pszName, ppszStart, ppszResourceSeparator, ppszPathSeparator);
}
DWORD UT_API utSearchUNCNameW(LPCWSTR pszName, LPWSTR* ppszStart, LPWSTR* ppszResourceSeparator,
                              LPWSTR* ppszPathSeparator) {
  return SearchUncName<WideText>(pszName, ppszStart, ppszResourceSeparator, ppszPathSeparator);
}

DWORD UT_API utCheckUNCName(LPCSTR pszName) { return CheckUncName<ByteText>(pszName); }
DWORD UT_API utCheckUNCNameW(LPCWSTR pszName) { return CheckUncName<WideText>(pszName); }

BOOL UT_API utBuildUNCName(LPSTR pszOut, DWORD cbOut, LPCSTR pszServer, LPCSTR pszResource,
                           LPCSTR pszPath) {
  return BuildUncName<ByteText>(pszOut, cbOut, pszServer, pszResource, pszPath);
}
BOOL UT_API utBuildUNCNameW(LPWSTR pszOut, DWORD cbOut, LPCWSTR pszServer, LPCWSTR pszResource,
                            LPCWSTR pszPath) {
  return BuildUncName<WideText>(pszOut, cbOut, pszServer, pszResource, pszPath);
}

BOOL UT_API utServerName(LPCSTR pszServer, INT nForm, LPSTR pszOut, DWORD cbOut) {
  return ServerName<ByteText>(pszServer, nForm, pszOut, cbOut);
}
BOOL UT_API utServerNameW(LPCWSTR pszServer, INT nForm, LPWSTR pszOut, DWORD cbOut) {
  return ServerName<WideText>(pszServer, nForm, pszOut, cbOut);
}

void UT_API utConvertServerName(LPSTR pszServer, INT nForm) {
  ConvertServerName<ByteText>(pszServer, nForm);
}
void UT_API utConvertServerNameW(LPWSTR pszServer, INT nForm) {
  ConvertServerName<WideText>(pszServer, nForm);
}

BOOL UT_API utExtractServer(LPCSTR pszName, LPSTR pszOut, DWORD cbOut) {
  return ExtractServer<ByteText>(pszName, pszOut, cbOut);
}
BOOL UT_API utExtractServerW(LPCWSTR pszName, LPWSTR pszOut, DWORD cbOut) {
  return ExtractServer<WideText>(pszName, pszOut, cbOut);
}

BOOL UT_API utExtractServerResource(LPCSTR pszName, LPSTR pszOut, DWORD cbOut) {
  return ExtractServerResource<ByteText>(pszName, pszOut, cbOut);
}
BOOL UT_API utExtractServerResourceW(LPCWSTR pszName, LPWSTR pszOut, DWORD cbOut) {
  return ExtractServerResource<WideText>(pszName, pszOut, cbOut);
}
