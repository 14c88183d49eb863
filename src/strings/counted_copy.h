// The counted copy. It becomes the body of two exports, which all else calls by Text::CopyCounted.
#ifndef TAVKIT_STRINGS_COUNTED_COPY_H
#define TAVKIT_STRINGS_COUNTED_COPY_H

#include "frame/buffer_size.h"
#include "frame/memory.h"
#include "strings/text.h"

namespace tavkit {

template <class Text>
bool CopyMakeAsciiz(const void* pSource, DWORD cbSource, Char<Text>* pszDest, DWORD cbDest) {
  if (!IsBuffer(pszDest, cbDest, Text::kUnit)) return false;
  DWORD count = pSource == nullptr ? 0 : cbSource;
  // UT_SIZE_UNCHECKED is the largest number, so it cuts nothing.
  if (count > cbDest - Text::kUnit) count = cbDest - Text::kUnit;
  MoveBytes(pszDest, pSource, count);
  // The terminator stands at a whole unit, over the half one that an odd count ends with.
  Text::Store(pszDest + count / Text::kUnit, 0);
  return true;
}

}  // namespace tavkit

#endif  // TAVKIT_STRINGS_COUNTED_COPY_H
