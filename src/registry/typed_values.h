// Typed values, for the layer above.
#ifndef TAVKIT_REGISTRY_TYPED_VALUES_H
#define TAVKIT_REGISTRY_TYPED_VALUES_H

#include <tavkit/types.h>

namespace tavkit {

// Reads a text as utRegGetValueString does, and tells in *pcbFilled how much of the buffer may be
// looked at: the bytes that were delivered or, for the default, which has a terminator, cbBuffer.
DWORD ReadString(HKEY hKey, LPCSTR pszSubKey, LPCSTR pszValueName, LPCSTR pszDefault,
                 LPSTR pszBuffer, DWORD cbBuffer, DWORD* pcbFilled);

}  // namespace tavkit

#endif  // TAVKIT_REGISTRY_TYPED_VALUES_H
