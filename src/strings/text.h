// The two text policies. Every algorithm on strings is one template over them: ByteText for strings
// in the active code page, WideText for strings of 16-bit units.
#ifndef TAVKIT_STRINGS_TEXT_H
#define TAVKIT_STRINGS_TEXT_H

#include <tavkit/strings.h>
#include <win32.h>

namespace tavkit {

struct ByteText {
  using Char = CHAR;
  static constexpr DWORD kUnit = sizeof(Char);

  static WORD Load(const Char* psz) { return static_cast<BYTE>(*psz); }
  static void Store(Char* psz, WORD wUnit) { *psz = static_cast<Char>(wUnit); }

  // What a search by units looks for: the low 8 bits.
  static WORD Sought(WORD wChar) { return wChar & 0xFF; }

  // A match in the operations that step by characters: never a byte that is negative as a char.
  static bool IsChar(const Char* psz, WORD wChar) {
    return wChar != 0 && wChar <= 0x7F && Load(psz) == wChar;
  }

  static Char* Next(const Char* psz) { return CharNextA(psz); }
  static Char* Previous(const Char* pszStart, const Char* pszCurrent) {
    return CharPrevA(pszStart, pszCurrent);
  }

  static Char* Find(const Char* psz, WORD wChar) { return utFindChar(psz, wChar); }
  static Char* End(const Char* psz) { return utCharNull(psz); }

  static bool CopyCounted(const void* pSource, DWORD cbSource, Char* pszDest, DWORD cbDest) {
    return utCopyMakeAsciiz(pSource, cbSource, pszDest, cbDest) != 0;
  }

  // Bytes in front of the terminator.
  static DWORD Length(const Char* psz) { return static_cast<DWORD>(lstrlenA(psz)); }

  // Copies through the terminator, first byte first.
  static void Copy(Char* pszDest, const Char* pszSource) { lstrcpyA(pszDest, pszSource); }
};

struct WideText {
  using Char = WCHAR;
  static constexpr DWORD kUnit = sizeof(Char);

  // A wide string may stand at an odd address, so units go through a packed record.
  struct __attribute__((packed, may_alias)) Unaligned {
    WORD wUnit;
  };

  static WORD Load(const Char* psz) { return reinterpret_cast<const Unaligned*>(psz)->wUnit; }
  // NOLINTNEXTLINE(clang-analyzer-core.NullDereference): callers give a string
  static void Store(Char* psz, WORD wUnit) { reinterpret_cast<Unaligned*>(psz)->wUnit = wUnit; }

  static WORD Sought(WORD wChar) { return wChar; }
  static bool IsChar(const Char* psz, WORD wChar) { return wChar != 0 && Load(psz) == wChar; }

  static Char* Next(const Char* psz) { return const_cast<Char*>(Load(psz) == 0 ? psz : psz + 1); }
  static Char* Previous(const Char* pszStart, const Char* pszCurrent) {
    if (pszCurrent < pszStart) return nullptr;
    return const_cast<Char*>(pszCurrent == pszStart ? pszStart : pszCurrent - 1);
  }

  static Char* Find(const Char* psz, WORD wChar) { return utFindCharW(psz, wChar); }
  static Char* End(const Char* psz) { return utCharNullW(psz); }

  static bool CopyCounted(const void* pSource, DWORD cbSource, Char* pszDest, DWORD cbDest) {
    return utCopyMakeAsciizW(pSource, cbSource, pszDest, cbDest) != 0;
  }

  static DWORD Length(const Char* psz);
  static void Copy(Char* pszDest, const Char* pszSource);
};

static_assert(ByteText::kUnit == 1 && WideText::kUnit == 2);

template <class Text>
using Char = typename Text::Char;

}  // namespace tavkit

#endif  // TAVKIT_STRINGS_TEXT_H
