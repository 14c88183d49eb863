// The rows were measured on the platform. Many units of other scripts have weights there that can't
// be told by rule; here they count as themselves.
#include "collation.h"

#include <locale.h>
#include <wctype.h>

#include <string_view>

#include "codepage.h"

namespace host {
namespace {

struct Spelling {
  char16_t unit;
  std::u16string_view as;
};

constexpr Spelling kSpellings[] = {
    {0xC6, u"AE"},  {0xDE, u"TH"},   {0xDF, u"ss"},   {0xE6, u"ae"},   {0xFE, u"th"},
    {0x132, u"IJ"}, {0x133, u"ij"},  {0x152, u"OE"},  {0x153, u"oe"},  {0x2C6, u"^"},
    {0x2CB, u"`"},  {0xFB00, u"ff"}, {0xFB01, u"fi"}, {0xFB02, u"fl"},
};

// From 0xC0 on: the letter that an accent stands on, and the accent by what it looks like.
constexpr char16_t kFirstAccented = 0xC0;
constexpr std::string_view kLetters =
    "AAAAAA CEEEEIIII NOOOOO  UUUUY  aaaaaa ceeeeiiii nooooo  uuuuy yAaAaAaCcCcCcCcDd  Ee"
    "EeEeEeEeGgGgGgGgHh  IiIiIiIiI   JjKk LlLlLl    NnNnNn   OoOoOo  RrRrRrSsSsSsSsTtTt  "
    "UuUuUuUuUuUuWwYyYZzZzZz";
constexpr std::string_view kAccents =
    "`'^~:o ,`'^:`'^: ~`'^~:  `'^:'  `'^~:o ,`'^:`'^: ~`'^~:  `'^:' :--((;;''^^..vvvv  --"
    "((..;;vv^^((..,,^^  ~~--((;;.   ^^,, '',,vv    '',,vv   --((\"\"  '',,vv''^^,,vv,,vv  "
    "~~--((oo\"\";;^^^^:''..vv";
constexpr std::string_view kLooks = "`'^~-(.:o\"v,;";
constexpr std::u16string_view kMarks =
    u"\u0300\u0301\u0302\u0303\u0304\u0306\u0307\u0308\u030A\u030B\u030C\u0327\u0328";

// Format characters count for nothing.
bool IsIgnored(char16_t unit) {
  return unit == 0xAD || unit == 0xFEFF || (unit >= 0x200C && unit <= 0x200F) ||
         (unit >= 0x202A && unit <= 0x202E) || (unit >= 0x2060 && unit <= 0x206F && unit != 0x2065);
}

}  // namespace

std::u16string Spelled(char16_t unit) {
  if (unit < 0x80) return {unit};
  if (IsIgnored(unit)) return {};
  // In Japan a yen sign stands where others have a backslash.
  if (unit == 0xA5 && CodePage() == 932) return u"\\";
  for (const auto& [of, as] : kSpellings) {
    if (of == unit) return std::u16string(as);
  }
  const auto place = static_cast<std::size_t>(unit - kFirstAccented);
  if (unit < kFirstAccented || place >= kLetters.size() || kLetters[place] == ' ') return {unit};
  return {static_cast<char16_t>(kLetters[place]), kMarks[kLooks.find(kAccents[place])]};
}

char16_t UpperCase(char16_t unit) {
  if (unit < 0x80) return unit >= 'a' && unit <= 'z' ? static_cast<char16_t>(unit - 0x20) : unit;
  static const locale_t locale = newlocale(LC_CTYPE_MASK, "C.UTF-8", nullptr);
  const auto to = [](wint_t (*c)(wint_t), wint_t (*l)(wint_t, locale_t), wint_t from) {
    return locale == nullptr ? c(from) : l(from, locale);
  };
  // A letter that is no other one's lower case, like the dotless i, stays as it is.
  const wint_t upper = to(towupper, towupper_l, unit);
  return to(towlower, towlower_l, upper) == unit ? static_cast<char16_t>(upper) : unit;
}

}  // namespace host
