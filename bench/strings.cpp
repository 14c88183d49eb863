// Finding in, copying and trimming strings.
#include <algorithm>
#include <cstring>

#include "bench.h"

namespace {

using namespace bench;

template <class Char>
constexpr bool kIsWide = sizeof(Char) == 2;

template <class Char>
using View = std::basic_string_view<Char>;

// A peer for each form: of bytes a function of the C library, of wide strings one of a view.
template <class Char, class Work>
Peer<Work> FormPeer(const char* ofBytes, Work work) {
  if constexpr (kIsWide<Char>) return {"u16string_view", work};
  return {ofBytes, work, kIsCall};
}

const char* FindFirst(const char* psz, char sought) { return std::strchr(psz, sought); }
const char* FindLast(const char* psz, char sought) { return std::strrchr(psz, sought); }
std::size_t CountLead(const char* psz, char sought) {
  const char set[] = {sought, 0};
  return std::strspn(psz, set);
}

const char16_t* At(const char16_t* psz, std::size_t index) {
  return index == View<char16_t>::npos ? nullptr : psz + index;
}
const char16_t* FindFirst(const char16_t* psz, char16_t sought) {
  return At(psz, View<char16_t>(psz).find(sought));
}
const char16_t* FindLast(const char16_t* psz, char16_t sought) {
  return At(psz, View<char16_t>(psz).rfind(sought));
}
std::size_t CountLead(const char16_t* psz, char16_t sought) {
  const View<char16_t> text(psz);
  return std::min(text.find_first_not_of(sought), text.size());
}

template <class Char>
const Char* End(const Char* psz) {
  return psz + std::char_traits<Char>::length(psz);
}

template <class Char>
void CopyCounted(const Char* source, std::size_t count, Char* dest, std::size_t capacity) {
  count = std::min(count, capacity - 1);
  std::char_traits<Char>::copy(dest, source, count);
  dest[count] = 0;
}

template <class Char>
void Trim(Char* psz, Char sought) {
  const View<Char> text(psz);
  const auto first = std::min(text.find_first_not_of(sought), text.size());
  const auto rest = text.substr(first);
  const auto length = rest.find_last_not_of(sought) + 1;
  std::char_traits<Char>::move(psz, rest.data(), length);
  psz[length] = 0;
}

double FindGoal(std::size_t length) { return length <= 64 ? 1.0 : 1.1; }

template <class Char>
void CompareFind(std::size_t length, const char* input, const std::basic_string<Char>& text) {
  const Char* psz = text.c_str();
  Compare(
      {"find", Name<Char>("utFindChar"), input, length, FindGoal(length)},
      [=] { return BENCH_FORM(utFindChar)(psz, '!'); },
      FormPeer<Char>("strchr", [=] { return FindFirst(psz, '!'); }));
  Compare(
      {"find", Name<Char>("utFindRevChar"), input, length, FindGoal(length)},
      [=] { return BENCH_FORM(utFindRevChar)(psz, '!'); },
      FormPeer<Char>("strrchr", [=] { return FindLast(psz, '!'); }));
}

template <class Char>
void CompareFinds(std::size_t length) {
  auto text = Letters<Char>(length);
  CompareFind(length, "no match", text);
  const Char* psz = text.c_str();
  Compare(
      {"find", Name<Char>("utCharNull"), "", length, FindGoal(length)},
      [=] { return BENCH_FORM(utCharNull)(psz); },
      FormPeer<Char>("strlen", [=] { return End(psz); }));
  text.back() = '!';
  CompareFind(length, "match at the end", text);
}

template <class Char>
void CompareCopies(std::size_t length, const char* input, std::size_t capacity) {
  const auto text = Letters<Char>(length);
  std::basic_string<Char> buffer(capacity, 0);
  const Char* psz = text.c_str();
  Char* dest = buffer.data();
  const auto bytes = [](std::size_t units) { return static_cast<DWORD>(units * sizeof(Char)); };
  const auto copied = [=] { return View<Char>(dest, std::min(length, capacity - 1)); };

  Compare(
      {"copy", Name<Char>("utCopyMakeAsciiz"), input, length, 1.0},
      [=] {
        BENCH_FORM(utCopyMakeAsciiz)(psz, bytes(length), dest, bytes(capacity));
        return copied();
      },
      Peer{"counted copy", [=] { return CopyCounted(psz, length, dest, capacity), copied(); }});
  // As strlcpy does it, which this C library doesn't have.
  const auto copyCut = [=] {
    return CopyCounted(psz, std::char_traits<Char>::length(psz), dest, capacity), copied();
  };
  Compare(
      {"copy", Name<Char>("utCopyString"), input, length, 1.0},
      [=] { return BENCH_FORM(utCopyString)(psz, dest, bytes(capacity)), copied(); },
      Peer{"strlcpy style", copyCut});
}

// The work of an export on a text of its own. A text to be trimmed is put back first, on all sides
// and in all times.
template <class Char>
auto Skip(const Char* psz) {
  return [=] { return std::size_t(BENCH_FORM(utSkipLeadChar)(psz, ' ') - psz); };
}
template <class Char>
auto Count(const Char* psz) {
  return [=] { return BENCH_FORM(utCountLeadChar)(psz, ' '); };
}
template <class Char>
auto Last(const Char* psz) {
  return [=] { return std::size_t(BENCH_FORM(utCharLast)(psz) - psz); };
}
template <class Char>
auto PutBack(const std::basic_string<Char>& text, Char* psz) {
  return [=, source = text.c_str(), size = (text.size() + 1) * sizeof(Char)] {
    std::memcpy(psz, source, size);
  };
}
template <class Char>
auto TrimBoth(const std::basic_string<Char>& text, Char* psz) {
  return [=, putBack = PutBack(text, psz)] {
    putBack();
    return BENCH_FORM(utTrimChar)(psz, ' ', UT_TRIM_LEADING | UT_TRIM_TRAILING);
  };
}

template <class Char>
std::basic_string<Char> Padded(std::size_t length, std::size_t blanks) {
  auto text = Letters<Char>(length);
  std::fill_n(text.begin(), blanks, ' ');
  std::fill_n(text.rbegin(), blanks, ' ');
  return text;
}

template <class Char>
void CompareLeads(std::size_t length, const char* input, const std::basic_string<Char>& text) {
  const Char* psz = text.c_str();
  const auto peer = FormPeer<Char>("strspn", [=] { return CountLead(psz, ' '); });
  Compare({"trim", Name<Char>("utSkipLeadChar"), input, length, 1.0}, Skip(psz), peer);
  Compare({"trim", Name<Char>("utCountLeadChar"), input, length, 1.0}, Count(psz), peer);
}

template <class Char>
void CompareTrim(std::size_t length, const char* input, std::size_t blanks) {
  const auto text = Padded<Char>(length, blanks);
  std::basic_string<Char> buffer(length + 1, 0);
  Char* psz = buffer.data();
  const auto trimmed = [=] { return View<Char>(psz, length - 2 * blanks); };
  Compare(
      {"trim", Name<Char>("utTrimChar"), input, length, 1.0},
      [=, trim = TrimBoth(text, psz)] { return trim(), trimmed(); },
      Peer{kIsWide<Char> ? "u16string_view" : "string_view", [=, putBack = PutBack(text, psz)] {
             putBack();
             Trim<Char>(psz, ' ');
             return trimmed();
           }});
}

template <class Char>
void CompareTrims(std::size_t length) {
  const auto letters = Letters<Char>(length);
  CompareLeads<Char>(length, "all of it", std::basic_string<Char>(length, ' '));
  CompareLeads<Char>(length, "no match", letters);
  CompareTrim<Char>(length, "a quarter at each end", length / 4);
  CompareTrim<Char>(length, "nothing to trim", 0);
  const Char* psz = letters.c_str();
  Compare({"trim", Name<Char>("utCharLast"), "", length, 1.0}, Last(psz),
          FormPeer<Char>("strlen", [=] { return std::char_traits<Char>::length(psz) - 1; }));
}

// A byte form beside its wide twin on as many bytes. The answers differ, in characters.
template <class Bytes, class Wide>
void CompareTwins(const char* operation, const char* input, std::size_t bytes, Bytes byteForm,
                  Wide wideForm) {
  Compare(
      {"trim, wide twin", operation, input, bytes, 1.1}, [=] { return byteForm(), 0; },
      Peer{"wide form", [=] { return wideForm(), 0; }, kIsCall});
}

void CompareTwins(std::size_t bytes) {
  const std::size_t units = bytes / 2;
  const std::string blanks(bytes, ' '), letters = Letters(bytes);
  const std::u16string wideBlanks(units, ' '), wideLetters = Letters<char16_t>(units);
  CompareTwins("utSkipLeadChar", "all of it", bytes, Skip(blanks.c_str()),
               Skip(wideBlanks.c_str()));
  CompareTwins("utCountLeadChar", "all of it", bytes, Count(blanks.c_str()),
               Count(wideBlanks.c_str()));
  CompareTwins("utCharLast", "", bytes, Last(letters.c_str()), Last(wideLetters.c_str()));
  std::string buffer(bytes + 1, 0);
  std::u16string wideBuffer(units + 1, 0);
  const auto text = Padded<char>(bytes, bytes / 4);
  const auto wideText = Padded<char16_t>(units, units / 4);
  CompareTwins("utTrimChar", "a quarter at each end", bytes, TrimBoth(text, buffer.data()),
               TrimBoth(wideText, wideBuffer.data()));
}

// Text whose every second character has two bytes, in code page 932 and as it is in 1252.
template <class Work>
void CompareCodePages(const char* operation, const char* input, std::size_t length, Work work) {
  Compare(
      {"double-byte text", operation, input, length, 0, 932}, [=] { return work(), 0; },
      Peer{"the same in 1252", [=] { return work(), 0; }, kIsCall});
}

void CompareDoubleBytes(std::size_t length) {
  std::string text = Letters(length);
  for (std::size_t i = 1; i + 2 <= length; i += 3) text[i] = '\x83';
  CompareCodePages("utCharLast", "", length, Last(text.c_str()));
  std::string buffer(length + 1, 0);
  CompareCodePages("utTrimChar", "nothing to trim", length, TrimBoth(text, buffer.data()));
  const std::string name = "\\\\" + text + "\\" + text + "\\" + text;
  std::string out(name.size() + 1, 0), parts[3] = {buffer, buffer, buffer};
  const auto cb = static_cast<DWORD>(length + 1);
  CompareCodePages("utBreakUNCName", "", length, [&, psz = name.c_str()] {
    return exports.utBreakUNCName(psz, parts[0].data(), cb, parts[1].data(), cb, parts[2].data(),
                                  cb);
  });
  CompareCodePages("utBuildUNCName", "", length, [&, psz = text.c_str()] {
    return exports.utBuildUNCName(out.data(), static_cast<DWORD>(out.size()), psz, psz, psz);
  });
}

template <class Char>
void CompareForm() {
  for (const auto length : Lengths()) {
    CompareFinds<Char>(length);
    CompareCopies<Char>(length, "whole", length + 2);
    CompareCopies<Char>(length, "cut in half", length / 2 + 1);
    CompareTrims<Char>(length);
  }
}

}  // namespace

void bench::CompareStrings() {
  CompareForm<CHAR>();
  CompareForm<WCHAR>();
  for (const auto length : Lengths()) {
    if (length % 2 == 0) CompareTwins(length);
    CompareDoubleBytes(length);
  }
}
