// Between UTF-8, which files and terminals use here, and the 16-bit units of the wide exports.
#ifndef EXAMPLES_UTF8_H
#define EXAMPLES_UTF8_H

#include <locale>
#include <string>
#include <string_view>

namespace example {

using Utf16 = std::codecvt<char16_t, char8_t, std::mbstate_t>;

inline const Utf16& Converter() { return std::use_facet<Utf16>(std::locale::classic()); }

// Stands for a byte that is no UTF-8, so that it shows.
inline constexpr char16_t kReplacement = u'\uFFFD';

inline std::u16string FromUtf8(std::string_view text) {
  std::u16string wide(text.size(), u'\0');
  char16_t* to = wide.data();
  const auto* from = reinterpret_cast<const char8_t*>(text.data());
  const char8_t* const end = from + text.size();
  while (from != end) {
    std::mbstate_t state{};
    Converter().in(state, from, end, from, to, wide.data() + wide.size(), to);
    if (from == end) break;
    *to++ = kReplacement;
    ++from;
  }
  wide.resize(static_cast<std::size_t>(to - wide.data()));
  return wide;
}

inline std::string ToUtf8(std::u16string_view wide) {
  std::string text(3 * wide.size(), '\0');
  auto* const start = reinterpret_cast<char8_t*>(text.data());
  char8_t* to = start;
  const char16_t* from = wide.data();
  std::mbstate_t state{};
  Converter().out(state, from, from + wide.size(), from, start, start + text.size(), to);
  text.resize(static_cast<std::size_t>(to - start));
  return text;
}

// The text as a terminal may have it: what steers one is replaced.
inline std::string Shown(std::u16string text) {
  for (char16_t& unit : text) {
    if (unit < u' ' || (unit >= u'\x7F' && unit < u'\xA0')) unit = kReplacement;
  }
  return ToUtf8(text);
}

// The text, with blanks up to `width` characters: printf would count bytes.
inline std::string Padded(const std::u16string& text, std::size_t width) {
  return Shown(text) + std::string(text.size() < width ? width - text.size() : 0, ' ');
}

}  // namespace example

#endif  // EXAMPLES_UTF8_H
