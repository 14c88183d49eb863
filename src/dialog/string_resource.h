// Texts from string resources.
#ifndef TAVKIT_DIALOG_STRING_RESOURCE_H
#define TAVKIT_DIALOG_STRING_RESOURCE_H

#include <win32.h>

namespace tavkit {

// Hands the string to setText and gives its result, or that of the load where there is no string.
template <class SetText>
INT SetStringRes(HINSTANCE hModule, UINT idString, SetText setText) {
  CHAR szText[256];
  szText[0] = 0;  // the text, if none is stored
  const INT cchText = LoadStringA(hModule, idString, szText, sizeof szText);
  return cchText < 1 ? cchText : setText(szText);
}

}  // namespace tavkit

#endif  // TAVKIT_DIALOG_STRING_RESOURCE_H
