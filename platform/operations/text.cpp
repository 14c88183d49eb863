// Strings in the platform's rules. Two strings compare equal without regard to case if they are the
// same after every letter was made upper case; the trail byte of a double-byte character is no
// letter.
#include "text.h"

#include <locale.h>
#include <wctype.h>

#include <cstring>

#include "codepage.h"
#include "host.h"

namespace host {
namespace {

wint_t UpperCase(wint_t unit) {
  static const locale_t locale = newlocale(LC_CTYPE_MASK, "C.UTF-8", nullptr);
  if (locale == nullptr) return towupper(unit);
  // A letter that is no other one's lower case, like the dotless i, stays as it is.
  const wint_t upper = towupper_l(unit, locale);
  return towlower_l(upper, locale) == unit ? upper : unit;
}

// The bytes 0x80 to 0x9F of code page 1252 that are letters in both cases, lower case first.
constexpr unsigned char kLetters1252[][2] = {
    {0x9A, 0x8A}, {0x9C, 0x8C}, {0x9E, 0x8E}, {0xFF, 0x9F}};

unsigned UpperCaseByte(unsigned char byte) {
  if (byte >= 'a' && byte <= 'z') return byte - 0x20u;
  if (CodePage() != 1252) return byte;
  for (const auto& letter : kLetters1252) {
    if (byte == letter[0]) return letter[1];
  }
  const bool isLatin1Letter = byte >= 0xE0 && byte != 0xF7;
  return isLatin1Letter ? byte - 0x20u : byte;
}

// Takes the next character of a byte string as one number.
unsigned TakeCharacter(LPCSTR& psz, bool ignoreCase) {
  const auto first = static_cast<unsigned char>(*psz++);
  if (IsLeadByte(first) && *psz != 0) return first * 256u + static_cast<unsigned char>(*psz++);
  return ignoreCase ? UpperCaseByte(first) : first;
}

unsigned TakeCharacter(LPCWSTR& psz, bool ignoreCase) {
  WCHAR unit;
  // A wide string may stand at an odd address.
  std::memcpy(&unit, static_cast<const void*>(psz), sizeof unit);
  ++psz;
  return ignoreCase ? UpperCase(unit) : unit;
}

// Only the sign of the result counts; its low 16 bits are zero at all times.
template <class Pointer>
int Compare(Pointer psz1, Pointer psz2, bool ignoreCase) {
  for (;;) {
    const unsigned c1 = TakeCharacter(psz1, ignoreCase);
    const unsigned c2 = TakeCharacter(psz2, ignoreCase);
    if (c1 != c2) return c1 < c2 ? -0x10000 : 0x10000;
    if (c1 == 0) return 0;
  }
}

}  // namespace

std::string FoldName(std::string_view name) {
  std::string folded(name);
  for (std::size_t at = 0, length = 0; at < folded.size(); at += length) {
    length = CharacterLength(folded, at);
    if (length > 1) continue;
    folded[at] = static_cast<char>(UpperCaseByte(static_cast<unsigned char>(folded[at])));
  }
  return folded;
}

}  // namespace host

int UT_API lstrlenA(LPCSTR psz) {
  if (host::Fails(__func__, psz)) return static_cast<int>(host::FailureCode());
  if (psz == nullptr) return 0;
  return static_cast<int>(std::strlen(psz));
}

LPSTR UT_API lstrcpyA(LPSTR pszDest, LPCSTR pszSource) {
  if (host::Fails(__func__, pszDest, pszSource)) return nullptr;
  LPSTR pszTo = pszDest;
  while ((*pszTo++ = *pszSource++) != 0) {
  }
  return pszDest;
}

LPSTR UT_API lstrcatA(LPSTR pszDest, LPCSTR pszSource) {
  if (host::Fails(__func__, pszDest, pszSource)) return nullptr;
  std::strcat(pszDest, pszSource);
  return pszDest;
}

int UT_API lstrcmpA(LPCSTR psz1, LPCSTR psz2) {
  host::Enter(__func__, psz1, psz2);
  return host::Compare(psz1, psz2, false);
}

// A planned failure gives the failure's code as the result.
int UT_API lstrcmpiA(LPCSTR psz1, LPCSTR psz2) {
  if (host::Fails(__func__, psz1, psz2)) return static_cast<int>(host::FailureCode());
  return host::Compare(psz1, psz2, true);
}

int UT_API lstrcmpW(LPCWSTR psz1, LPCWSTR psz2) {
  host::Enter(__func__, psz1, psz2);
  return host::Compare(psz1, psz2, false);
}

int UT_API lstrcmpiW(LPCWSTR psz1, LPCWSTR psz2) {
  host::Enter(__func__, psz1, psz2);
  return host::Compare(psz1, psz2, true);
}
