// Code-page conversion through iconv and, where that knows no counterpart, the best fit. If the
// target is too small, it is filled as far as whole characters go, without a terminator.
#include "conversion.h"

#include <iconv.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "best_fit.h"
#include "codepage.h"
#include "host.h"

namespace host {
namespace {

// The bytes that the platform takes for the controls of their numbers, and iconv for none.
bool IsControlOf(const std::string& charset, unsigned unit) {
  if (charset == "CP932") return unit == 0x80;
  return charset == "CP1252" &&
         (unit == 0x81 || unit == 0x8D || unit == 0x8F || unit == 0x90 || unit == 0x9D);
}

// How many units from the start of a text are no character of the set and go together: a lead byte
// of code page 932 takes what follows along.
std::size_t BadLength(std::u16string_view, const std::string&) { return 1; }
std::size_t BadLength(std::string_view text, const std::string& charset) {
  const bool isPair = charset == "CP932" && text.size() > 1 && text[1] != 0 &&
                      IsLeadByte(static_cast<unsigned char>(text[0]));
  return isPair ? 2 : 1;
}

// What stands for the units at the start of a text that iconv doesn't convert.
std::u16string Replace(std::string_view text, const std::string& charset,
                       Replacement& replacement) {
  const auto unit = static_cast<unsigned char>(text[0]);
  if (IsControlOf(charset, unit)) return {unit};
  replacement.wasUsed = true;
  return charset == "CP932" ? u"\u30FB" : u"?";
}
std::string Replace(std::u16string_view text, const std::string& charset,
                    Replacement& replacement) {
  if (IsControlOf(charset, text[0])) return {static_cast<char>(text[0])};
  const auto fit = BestFit(charset, text[0]);
  if (fit.empty()) replacement.wasUsed = true;
  return std::string(fit.empty() ? replacement.text : fit);
}

// Is no character of any set.
constexpr char16_t kNoUnit = 0xFFFF;

// Converts all of a text from or to a set; each character that stops the conversion is replaced.
template <class To, class From>
std::basic_string<To> Convert(const Converter& converter, const std::string& charset,
                              std::basic_string_view<From> text, Replacement& replacement) {
  std::string bytes;
  const auto take = [&](std::size_t count) { text.remove_prefix(count); };
  while (!text.empty()) {
    const std::string_view left(reinterpret_cast<const char*>(text.data()),
                                text.size() * sizeof(From));
    take(converter.Convert(left, bytes) / sizeof(From));
    if (text.empty()) break;
    const auto other = Replace(text, charset, replacement);
    bytes.append(reinterpret_cast<const char*>(other.data()), other.size() * sizeof(To));
    take(BadLength(text, charset));
  }
  std::basic_string<To> result(bytes.size() / sizeof(To), To());
  std::memcpy(result.data(), bytes.data(), bytes.size());
  return result;
}

bool IsActive(UINT codePage) { return codePage == CP_ACP || codePage == CodePage(); }

// The source of a conversion: `count` units, or with -1 a string and its terminator. It may stand
// at an odd address.
template <class Unit>
std::basic_string<Unit> Take(const Unit* source, int count) {
  std::basic_string<Unit> taken;
  for (int i = 0; count == -1 || i < count; ++i) {
    Unit unit;
    std::memcpy(&unit, reinterpret_cast<const char*>(source) + i * static_cast<int>(sizeof unit),
                sizeof unit);
    taken.push_back(unit);
    if (count == -1 && unit == 0) break;
  }
  return taken;
}

// How much of a text fits; no half of a double-byte character.
std::size_t Fitting(const std::u16string& text, std::size_t count) {
  return std::min(text.size(), count);
}
std::size_t Fitting(const std::string& text, std::size_t count) {
  std::size_t fitting = 0;
  while (fitting < text.size() && fitting + CharacterLength(text, fitting) <= count) {
    fitting += CharacterLength(text, fitting);
  }
  return fitting;
}

template <class Unit>
int Give(const std::basic_string<Unit>& text, Unit* target, int count) {
  const auto needed = static_cast<int>(text.size());
  if (count == 0) return needed;
  if (count < 0 || target == nullptr) return 0;
  const auto stored = Fitting(text, static_cast<std::size_t>(count));
  std::memcpy(reinterpret_cast<void*>(target), text.data(), stored * sizeof(Unit));
  return needed <= count ? needed : 0;
}

}  // namespace

Converter::Converter(const std::string& to, const std::string& from)
    : handle_(iconv_open(to.c_str(), from.c_str())) {
  if (handle_ != reinterpret_cast<iconv_t>(-1)) return;
  std::fprintf(stderr, "iconv can't convert from %s to %s here\n", from.c_str(), to.c_str());
  std::abort();
}

Converter::~Converter() { iconv_close(handle_); }

std::size_t Converter::Convert(std::string_view text, std::string& result) const {
  auto* from = const_cast<char*>(text.data());
  std::size_t left = text.size();
  bool isChunkFull = false;
  do {
    char chunk[1024];
    char* to = chunk;
    std::size_t capacity = sizeof chunk;
    const bool stopped =
        iconv(handle_, &from, &left, &to, &capacity) == static_cast<std::size_t>(-1);
    isChunkFull = stopped && errno == E2BIG;
    result.append(chunk, to);
  } while (isChunkFull);
  return text.size() - left;
}

std::u16string Widen(std::string_view text, const std::string& charset, Replacement& replacement) {
  return Convert<char16_t>(Converter("UTF-16LE", charset), charset, text, replacement);
}

std::string Narrow(std::u16string_view text, const std::string& charset, Replacement& replacement) {
  // What iconv converts and the platform doesn't is hidden from it.
  std::u16string known(text);
  std::replace_if(
      known.begin(), known.end(), [&](char16_t unit) { return IsLacking(charset, unit); }, kNoUnit);
  return Convert<char, char16_t>(Converter(charset, "UTF-16LE"), charset, known, replacement);
}

std::string CharsetOf(unsigned codePage) { return "CP" + std::to_string(codePage); }

}  // namespace host

int UT_API MultiByteToWideChar(UINT CodePage, DWORD dwFlags, LPCSTR lpMultiByteStr, int cbMultiByte,
                               LPWSTR lpWideCharStr, int cchWideChar) {
  if (host::Fails(__func__, CodePage, dwFlags, lpMultiByteStr, cbMultiByte, lpWideCharStr,
                  cchWideChar)) {
    return 0;
  }
  if (!host::IsActive(CodePage) || lpMultiByteStr == nullptr || cbMultiByte < -1) return 0;
  host::Replacement replacement;
  const auto wide = host::Widen(host::Take(lpMultiByteStr, cbMultiByte),
                                host::CharsetOf(host::CodePage()), replacement);
  if (replacement.wasUsed && (dwFlags & MB_ERR_INVALID_CHARS) != 0) return 0;
  return host::Give(wide, lpWideCharStr, cchWideChar);
}

int UT_API WideCharToMultiByte(UINT CodePage, DWORD dwFlags, LPCWSTR lpWideCharStr, int cchWideChar,
                               LPSTR lpMultiByteStr, int cbMultiByte, LPCSTR lpDefaultChar,
                               BOOL* lpUsedDefaultChar) {
  if (host::Fails(__func__, CodePage, dwFlags, lpWideCharStr, cchWideChar, lpMultiByteStr,
                  cbMultiByte, lpDefaultChar, lpUsedDefaultChar)) {
    return 0;
  }
  if (!host::IsActive(CodePage) || lpWideCharStr == nullptr || cchWideChar < -1) return 0;
  host::Replacement replacement;
  if (lpDefaultChar != nullptr) replacement.text = lpDefaultChar;
  const auto bytes = host::Narrow(host::Take(lpWideCharStr, cchWideChar),
                                  host::CharsetOf(host::CodePage()), replacement);
  if (lpUsedDefaultChar != nullptr) *lpUsedDefaultChar = replacement.wasUsed;
  return host::Give(bytes, lpMultiByteStr, cbMultiByte);
}
