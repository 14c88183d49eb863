// Joining the parts of a key path.
#ifndef TAVKIT_REGISTRY_KEY_PATH_H
#define TAVKIT_REGISTRY_KEY_PATH_H

#include <tavkit/types.h>

namespace tavkit {

// Bytes of the joined path with its terminator. A NULL part is left out; an empty one takes part.
DWORD utRegJoinPathSize(LPCSTR pszFirst, LPCSTR pszSecond, LPCSTR pszThird);

// Joins with single backslashes: one precedes a part where something precedes that.
// FALSE, with pszPath untouched, if it is NULL or the path takes more than cbPath bytes.
BOOL utRegJoinPath(LPSTR pszPath, DWORD cbPath, LPCSTR pszFirst, LPCSTR pszSecond, LPCSTR pszThird);

}  // namespace tavkit

#endif  // TAVKIT_REGISTRY_KEY_PATH_H
