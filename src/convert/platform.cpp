// The system family, and conversion between the active code page and wide strings.
#include <tavkit/convert.h>
#include <win32.h>

#include "frame/memory.h"
#include "strings/text.h"

using namespace tavkit;

SHORT UT_API utIsWinNT(void) {
  OSVERSIONINFOA info;
  ZeroBytes(&info, sizeof info);
  info.dwOSVersionInfoSize = sizeof info;
  if (!GetVersionExA(&info)) return 0;
  if (info.dwPlatformId != VER_PLATFORM_WIN32_NT) return 0;
  return info.dwMajorVersion < 4 ? -1 : 1;
}

// In both helpers the zero is what remains if the conversion stores nothing.

LPWSTR UT_API utA2WHelper(LPWSTR pwszTarget, LPCSTR pszSource, INT cchTarget) {
  if (pszSource == nullptr) return nullptr;
  WideText::Store(pwszTarget, 0);
  MultiByteToWideChar(CP_ACP, MB_PRECOMPOSED | MB_ERR_INVALID_CHARS, pszSource, -1, pwszTarget,
                      cchTarget);
  return pwszTarget;
}

LPSTR UT_API utW2AHelper(LPSTR pszTarget, LPCWSTR pwszSource, INT cbTarget) {
  if (pwszSource == nullptr) return nullptr;
  ByteText::Store(pszTarget, 0);
  WideCharToMultiByte(CP_ACP, 0, pwszSource, -1, pszTarget, cbTarget, nullptr, nullptr);
  return pszTarget;
}
