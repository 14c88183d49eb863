// Code pages and the two operations that step by characters.
#include "codepage.h"

#include <algorithm>
#include <iterator>

#include "host.h"
#include "state.h"

namespace host {
namespace {

struct Range {
  unsigned char first;
  unsigned char last;
};

struct CodePageRow {
  unsigned number;
  Range lead[2];  // an empty range where first is above last
};

constexpr CodePageRow kCodePages[] = {
    {1252, {{1, 0}, {1, 0}}},      {932, {{0x81, 0x9F}, {0xE0, 0xFC}}},
    {936, {{0x81, 0xFE}, {1, 0}}}, {949, {{0x81, 0xFE}, {1, 0}}},
    {950, {{0x81, 0xFE}, {1, 0}}},
};

const CodePageRow& Active() { return kCodePages[state->codePage]; }

// A lead byte takes the byte that follows along, unless the string ends there.
LPCSTR Step(LPCSTR psz) {
  if (*psz == 0) return psz;
  const bool isPair = IsLeadByte(static_cast<unsigned char>(*psz)) && psz[1] != 0;
  return psz + (isPair ? 2 : 1);
}

}  // namespace

bool SetCodePage(unsigned codePage) {
  const auto* row = std::find_if(std::begin(kCodePages), std::end(kCodePages),
                                 [=](const auto& each) { return each.number == codePage; });
  if (row == std::end(kCodePages)) return false;
  state->codePage = static_cast<std::size_t>(row - kCodePages);
  return true;
}

unsigned CodePage() { return Active().number; }

bool IsLeadByte(unsigned char byte) {
  for (const auto& range : Active().lead) {
    if (byte >= range.first && byte <= range.last) return true;
  }
  return false;
}

std::size_t CharacterLength(std::string_view text, std::size_t at) {
  const bool hasTrail = at + 1 < text.size() && static_cast<unsigned char>(text[at + 1]) >= 0x40;
  return hasTrail && IsLeadByte(static_cast<unsigned char>(text[at])) ? 2 : 1;
}

}  // namespace host

LPSTR UT_API CharNextA(LPCSTR psz) {
  host::Enter(__func__, psz);
  return const_cast<LPSTR>(host::Step(psz));
}

LPSTR UT_API CharPrevA(LPCSTR pszStart, LPCSTR pszCurrent) {
  host::Enter(__func__, pszStart, pszCurrent);
  LPCSTR psz = pszStart;
  while (*psz != 0 && host::Step(psz) < pszCurrent) psz = host::Step(psz);
  return const_cast<LPSTR>(psz);
}
