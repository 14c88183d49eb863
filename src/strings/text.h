// The two text policies: all that differs between strings in the active code page (ByteText) and
// strings of 16-bit units (WideText). Every algorithm on strings is one template over them.
#ifndef TAVKIT_STRINGS_TEXT_H
#define TAVKIT_STRINGS_TEXT_H

#include <tavkit/strings.h>
#include <win32.h>

#include "frame/buffer_size.h"
#include "frame/memory.h"
#include "frame/sse2.h"

namespace tavkit {

struct ByteText;
struct WideText;

// The characters that end a string and are one unit each, so that they may be walked backwards.
template <class Unit>
struct Tail {
  Unit* pszStart;
  Unit* pszEnd;                 // the terminator
  Unit* pszPrevious = nullptr;  // the character of more units that precedes them, if one does
};

struct ByteText {
  using Char = CHAR;
  static constexpr DWORD kUnit = sizeof(Char);
  static constexpr bool kMayBeCut = false;

  static WORD Load(const Char* psz) { return static_cast<BYTE>(*psz); }
  static void Store(Char* psz, WORD wUnit) { *psz = static_cast<Char>(wUnit); }

  // What a search by units looks for: the low 8 bits.
  static WORD Sought(WORD wChar) { return wChar & 0xFF; }

  // What can match in a walk by characters. Such a byte is always a character of its own.
  static bool CanMatch(WORD wChar) { return wChar != 0 && IsSingle(wChar); }

  // The platform's own answer, whatever it is.
  static Char* Next(const Char* psz) { return CharNextA(psz); }
  static Char* Previous(const Char* pszStart, const Char* pszCurrent) {
    return CharPrevA(pszStart, pszCurrent);
  }

  // A lead byte is 0x80 or above, so that only from there on the platform has to be asked where a
  // character ends.
  static constexpr WORD kFirstLeadByte = 0x80;
  static bool IsSingle(WORD wUnit) { return wUnit < kFirstLeadByte; }
  static Tail<Char> FindTail(const Char* psz);

  // Bytes that precede the terminator. The platform counts them in 32 bits, so that at 64 bits a
  // longer string is found out by its end.
  static DWORD Length(const Char* psz);
  static DWORD CheckedLength(const Char* psz, DWORD length);

  // Copies through the terminator, first byte first; false if the platform fails to. One form is
  // told the size.
  static bool Copy(Char* pszDest, const Char* pszSource) {
    return lstrcpyA(pszDest, pszSource) != nullptr;
  }
  static bool Copy(Char* pszDest, const Char* pszSource, DWORD) { return Copy(pszDest, pszSource); }

  static bool IsSame(const Char* psz1, const Char* psz2, bool caseSensitive) {
    return (caseSensitive ? lstrcmpA(psz1, psz2) : lstrcmpiA(psz1, psz2)) == 0;
  }

  static __m128i Broadcast(WORD wUnit) { return _mm_set1_epi8(static_cast<char>(wUnit)); }
  static __m128i EqualLanes(__m128i a, __m128i b) { return _mm_cmpeq_epi8(a, b); }
};

struct WideText {
  using Char = WCHAR;
  static constexpr DWORD kUnit = sizeof(Char);

  // A wide string may stand at an odd address, where blocks cut its units; so these go through a
  // packed record.
  static constexpr bool kMayBeCut = true;
  struct __attribute__((packed, may_alias)) Unaligned {
    WORD wUnit;
  };

  static WORD Load(const Char* psz) { return reinterpret_cast<const Unaligned*>(psz)->wUnit; }
  // NOLINTNEXTLINE(clang-analyzer-core.NullDereference): callers give a string
  static void Store(Char* psz, WORD wUnit) { reinterpret_cast<Unaligned*>(psz)->wUnit = wUnit; }

  static WORD Sought(WORD wChar) { return wChar; }
  static bool CanMatch(WORD wChar) { return wChar != 0; }

  static Char* Next(const Char* psz) { return const_cast<Char*>(Load(psz) == 0 ? psz : psz + 1); }
  static Char* Previous(const Char* pszStart, const Char* pszCurrent) {
    if (pszCurrent < pszStart) return nullptr;
    return const_cast<Char*>(pszCurrent == pszStart ? pszStart : pszCurrent - 1);
  }

  static Tail<Char> FindTail(const Char* psz);
  static DWORD Length(const Char* psz);
  static bool Copy(Char* pszDest, const Char* pszSource);
  static bool Copy(Char* pszDest, const Char* pszSource, DWORD cbSource) {
    MoveBytes(pszDest, pszSource, cbSource);
    return true;
  }

  static bool IsSame(const Char* psz1, const Char* psz2, bool caseSensitive) {
    return (caseSensitive ? lstrcmpW(psz1, psz2) : lstrcmpiW(psz1, psz2)) == 0;
  }

  static __m128i Broadcast(WORD wUnit) { return _mm_set1_epi16(static_cast<short>(wUnit)); }
  static __m128i EqualLanes(__m128i a, __m128i b) { return _mm_cmpeq_epi16(a, b); }
};

static_assert(ByteText::kUnit == 1 && WideText::kUnit == 2);

template <class Text>
using Char = typename Text::Char;

// Templates that only an export calls use its calling convention and result type, so that the
// export compiles to a jump; the smallest are worked into it instead.

// The operations that all layers above share. Each form is compiled once, in exports.cpp.

// The first match, the terminator included; NULL if there is none.
template <class Text>
[[gnu::noinline]] Char<Text>* UT_API FindChar(const Char<Text>* psz, WORD wChar);

// The terminator.
template <class Text>
[[gnu::noinline]] Char<Text>* UT_API FindEnd(const Char<Text>* psz);

// The first character that isn't wChar; NULL for NULL.
template <class Text>
[[gnu::noinline]] Char<Text>* UT_API SkipLeadChar(const Char<Text>* psz, WORD wChar);

// The counted copy: as much as fits, and a terminator.
template <class Text>
[[gnu::noinline]] BOOL UT_API CopyMakeAsciiz(LPCVOID pSource, DWORD cbSource, Char<Text>* pszDest,
                                             DWORD cbDest);

extern template CHAR* UT_API FindChar<ByteText>(const CHAR*, WORD);
extern template CHAR* UT_API FindEnd<ByteText>(const CHAR*);
extern template CHAR* UT_API SkipLeadChar<ByteText>(const CHAR*, WORD);
extern template BOOL UT_API CopyMakeAsciiz<ByteText>(LPCVOID, DWORD, CHAR*, DWORD);
extern template WCHAR* UT_API FindChar<WideText>(const WCHAR*, WORD);
extern template WCHAR* UT_API FindEnd<WideText>(const WCHAR*);
extern template WCHAR* UT_API SkipLeadChar<WideText>(const WCHAR*, WORD);
extern template BOOL UT_API CopyMakeAsciiz<WideText>(LPCVOID, DWORD, WCHAR*, DWORD);

inline DWORD ByteText::Length(const Char* psz) {
  const auto length = static_cast<DWORD>(lstrlenA(psz));
  return sizeof(size_t) > sizeof(DWORD) ? CheckedLength(psz, length) : length;
}

inline DWORD WideText::Length(const Char* psz) {
  return CountedSize(ByteDistance(psz, FindEnd<WideText>(psz)));
}

inline Tail<WCHAR> WideText::FindTail(const Char* psz) {
  return {const_cast<Char*>(psz), FindEnd<WideText>(psz)};
}

}  // namespace tavkit

#endif  // TAVKIT_STRINGS_TEXT_H
