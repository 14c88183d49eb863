// Typed values, for the floor above.
#ifndef TAVKIT_REGISTRY_TYPED_VALUES_H
#define TAVKIT_REGISTRY_TYPED_VALUES_H

#include <tavkit/types.h>

namespace tavkit {

// Reads a text as utRegGetValueString does, and tells in *pcbFilled how many bytes from the start
// of the buffer can be told to hold something: what was delivered, or cbBuffer for the default,
// which ends with a terminator somewhere in there.
DWORD ReadString(HKEY hKey, LPCSTR pszSubKey, LPCSTR pszValueName, LPCSTR pszDefault,
                 LPSTR pszBuffer, DWORD cbBuffer, DWORD* pcbFilled);

}  // namespace tavkit

#endif  // TAVKIT_REGISTRY_TYPED_VALUES_H
