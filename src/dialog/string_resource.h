// Texts from string resources.
#ifndef TAVKIT_DIALOG_STRING_RESOURCE_H
#define TAVKIT_DIALOG_STRING_RESOURCE_H

#include <win32.h>

namespace tavkit {

// A string that a module holds, cut by the platform to the size of the buffer.
struct StringResource {
  CHAR szText[256];
  INT cchLoaded;  // below 1 if there is none

  StringResource(HINSTANCE hModule, UINT idString) {
    szText[0] = 0;  // the text, if the platform counts characters that it doesn't store
    cchLoaded = LoadStringA(hModule, idString, szText, sizeof szText);
  }
};

}  // namespace tavkit

#endif  // TAVKIT_DIALOG_STRING_RESOURCE_H
