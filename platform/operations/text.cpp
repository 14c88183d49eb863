// Strings in the platform's rules. Byte strings compare as the wide strings that they stand for.
#include "text.h"

#include <algorithm>
#include <cstring>

#include "codepage.h"
#include "collation.h"
#include "conversion.h"
#include "host.h"

namespace host {
namespace {

// Takes the next character of a string.
char16_t TakeUnit(LPCSTR& psz) {
  const auto first = static_cast<unsigned char>(*psz);
  const std::size_t length = IsLeadByte(first) && psz[1] != 0 ? 2 : 1;
  const std::string_view character(psz, length);
  psz += length;
  Replacement replacement;
  return first < 0x80 ? first : Widen(character, CharsetOf(CodePage()), replacement).front();
}

char16_t TakeUnit(LPCWSTR& psz) {
  WCHAR unit;
  // A wide string may stand at an odd address.
  std::memcpy(&unit, static_cast<const void*>(psz), sizeof unit);
  ++psz;
  return unit;
}

// The units that a string is compared by, one after another and then zeros.
template <class Pointer>
class Spellings {
 public:
  Spellings(Pointer psz, bool ignoreCase) : psz_(psz), ignoreCase_(ignoreCase) {}

  char16_t Next() {
    while (next_ == units_.size()) {
      units_ = Spelled(TakeUnit(psz_));
      next_ = 0;
    }
    const char16_t unit = units_[next_++];
    return ignoreCase_ ? UpperCase(unit) : unit;
  }

 private:
  Pointer psz_;
  bool ignoreCase_;
  std::u16string units_;
  std::size_t next_ = 0;
};

// Only the sign of the result counts; its low 16 bits are zero at all times.
template <class Pointer>
int Compare(Pointer psz1, Pointer psz2, bool ignoreCase) {
  Spellings first(psz1, ignoreCase), second(psz2, ignoreCase);
  for (;;) {
    const unsigned c1 = first.Next(), c2 = second.Next();
    if (c1 != c2) return c1 < c2 ? -0x10000 : 0x10000;
    if (c1 == 0) return 0;
  }
}

}  // namespace

std::string FoldName(std::string_view name) {
  Replacement replacement;
  auto wide = Widen(name, CharsetOf(CodePage()), replacement);
  std::transform(wide.begin(), wide.end(), wide.begin(), UpperCase);
  return Narrow(wide, "UTF-8", replacement);
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
