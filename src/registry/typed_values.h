// Typed values, for the floor above.
#ifndef TAVKIT_REGISTRY_TYPED_VALUES_H
#define TAVKIT_REGISTRY_TYPED_VALUES_H

#include <tavkit/types.h>

namespace tavkit {

// Reads a text as utRegGetValueString does, and tells in *pcbText how far its terminator may be
// looked for: the bytes that were delivered or, for the default, which always has one, cbBuffer.
DWORD ReadString(HKEY hKey, LPCSTR pszSubKey, LPCSTR pszValueName, LPCSTR pszDefault,
                 LPSTR pszBuffer, DWORD cbBuffer, DWORD* pcbText);

}  // namespace tavkit

#endif  // TAVKIT_REGISTRY_TYPED_VALUES_H
