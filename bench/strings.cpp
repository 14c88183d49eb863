// Finding in, copying and trimming strings.
#include <win32.h>

#include <algorithm>
#include <cstdio>
#include <cstring>

#include "exports.h"
#include "measure.h"

namespace {

using namespace bench;

template <class Char>
constexpr bool kIsWide = sizeof(Char) == 2;

template <class Char>
using View = std::basic_string_view<Char>;

template <class Char>
std::string Name(const char* operation) {
  return std::string(operation) + (kIsWide<Char> ? "W" : "");
}

template <class Char>
constexpr const char* PeerName(const char* ofBytes) {
  return kIsWide<Char> ? "u16string_view" : ofBytes;
}

// The peers: for bytes the C library's functions, for wide strings those of a view.

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
void CopyCounted(const Char* source, std::size_t count, Char* dest, std::size_t room) {
  count = std::min(count, room - 1);
  std::char_traits<Char>::copy(dest, source, count);
  dest[count] = 0;
}

// As strlcpy does it, which this C library doesn't have.
template <class Char>
void CopyCut(const Char* psz, Char* dest, std::size_t room) {
  CopyCounted(psz, std::char_traits<Char>::length(psz), dest, room);
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

// As many CharNextA as the rules ask for, each where the one before led.
LPCSTR Walk(LPCSTR psz, std::size_t characters) {
  for (; characters != 0; --characters) psz = CharNextA(psz);
  return psz;
}

double FindGoal(std::size_t length) { return length <= 64 ? 1.0 : 1.2; }

template <class Char>
void CompareFind(std::size_t length, const char* input, const std::basic_string<Char>& text) {
  const double goal = FindGoal(length);
  const Char* psz = text.c_str();
  Compare({Name<Char>("utFindChar"), input, length, goal},
          Ours{[=] { return Form<Char>::FindChar(psz, '!'); }},
          Peer{PeerName<Char>("strchr"), [=] { return FindFirst(psz, '!'); }});
  Compare({Name<Char>("utFindRevChar"), input, length, goal},
          Ours{[=] { return Form<Char>::FindRevChar(psz, '!'); }},
          Peer{PeerName<Char>("strrchr"), [=] { return FindLast(psz, '!'); }});
}

template <class Char>
void CompareFinds() {
  for (const auto length : Lengths()) {
    auto text = Letters<Char>(length);
    CompareFind(length, "no match", text);
    const Char* psz = text.c_str();
    Compare(
        {Name<Char>("utCharNull"), "", length, FindGoal(length)},
        Ours{[=] { return Form<Char>::CharNull(psz); }},
        Peer{PeerName<Char>("strlen"), [=] { return psz + std::char_traits<Char>::length(psz); }});
    if (!text.empty()) text.back() = '!';
    CompareFind(length, "match at the end", text);
  }
}

template <class Char>
void CompareCopies(std::size_t length, const char* input, std::size_t room) {
  const auto text = Letters<Char>(length);
  std::basic_string<Char> buffer(room, 0);
  const Char* psz = text.c_str();
  Char* dest = buffer.data();
  const auto bytes = [](std::size_t units) { return static_cast<DWORD>(units * sizeof(Char)); };
  const auto copied = [=] { return View<Char>(dest, std::min(length, room - 1)); };

  Compare({Name<Char>("utCopyMakeAsciiz"), input, length, 1.0}, Ours{[=] {
            Form<Char>::CopyMakeAsciiz(psz, bytes(length), dest, bytes(room));
            return copied();
          }},
          Peer{"counted copy", [=] { return CopyCounted(psz, length, dest, room), copied(); }});
  const Ours copy{[=] { return Form<Char>::CopyString(psz, dest, bytes(room)), copied(); }};
  const Peer cut{"strlcpy style", [=] { return CopyCut(psz, dest, room), copied(); }};
  const Task task{Name<Char>("utCopyString"), input, length, 1.0};
  if constexpr (kIsWide<Char>) {
    Compare(task, copy, cut);
  } else {
    const Peer print{"snprintf(\"%s\")",
                     [=] { return std::snprintf(dest, room, "%s", psz), copied(); }};
    Compare(task, copy, cut, print);
  }
}

template <class Char>
void CompareLeads(std::size_t length, const char* input, const std::basic_string<Char>& text) {
  const Char* psz = text.c_str();
  const auto ours = [=](auto work) {
    if constexpr (kIsWide<Char>) {
      return Ours{work};
    } else {
      const auto steps = CountLead(psz, ' ');
      return Ours{work, [=] { return Walk(psz, steps); }};
    }
  };
  Compare({Name<Char>("utSkipLeadChar"), input, length, 1.0},
          ours([=] { return Form<Char>::SkipLeadChar(psz, ' '); }),
          Peer{PeerName<Char>("strspn"), [=] { return psz + CountLead(psz, ' '); }});
  Compare({Name<Char>("utCountLeadChar"), input, length, 1.0},
          ours([=] { return Form<Char>::CountLeadChar(psz, ' '); }),
          Peer{PeerName<Char>("strspn"), [=] { return CountLead(psz, ' '); }});
}

// Both sides put the text back first, and both figures contain that.
template <class Char>
void CompareTrim(std::size_t length, const char* input, std::size_t blanks) {
  std::basic_string<Char> text = Letters<Char>(length);
  std::fill_n(text.begin(), blanks, ' ');
  std::fill_n(text.rbegin(), blanks, ' ');
  std::basic_string<Char> buffer(length + 1, 0);
  const Char* source = text.c_str();
  Char* psz = buffer.data();
  const auto putBack = [=] { std::memcpy(psz, source, (length + 1) * sizeof(Char)); };
  const auto trimmed = [=] { return View<Char>(psz, length - 2 * blanks); };

  const auto work = [=] {
    putBack();
    Form<Char>::TrimChar(psz, ' ', UT_TRIM_LEADING | UT_TRIM_TRAILING);
    return trimmed();
  };
  const Peer peer{kIsWide<Char> ? "u16string_view" : "string_view", [=] {
                    putBack();
                    Trim<Char>(psz, ' ');
                    return trimmed();
                  }};
  const Task task{Name<Char>("utTrimChar"), input, length, 1.0};
  if constexpr (kIsWide<Char>) {
    Compare(task, Ours{work}, peer);
  } else {
    // The skipped part, the move of the rest, and the search for the end of that.
    const auto platform = [=] {
      LPCSTR pszRest = Walk(source, blanks);
      if (blanks != 0) lstrcpyA(psz, pszRest);
      return Walk(pszRest, length - blanks);
    };
    Compare(task, Ours{work, platform}, peer);
  }
}

template <class Char>
void CompareTrims() {
  for (const auto length : Lengths()) {
    CompareLeads<Char>(length, "all of it", std::basic_string<Char>(length, ' '));
    CompareTrim<Char>(length, "a quarter at each end", length / 4);
  }
  CompareLeads<Char>(64, "no match", Letters<Char>(64));
  CompareTrim<Char>(64, "nothing to trim", 0);
}

TEST_CASE("Find first, last, terminator") {
  CompareFinds<CHAR>();
  CompareFinds<WCHAR>();
}

TEST_CASE("Counted copy, string copy") {
  for (const auto length : Lengths()) {
    CompareCopies<CHAR>(length, "whole", length + 2);
    CompareCopies<WCHAR>(length, "whole", length + 2);
    CompareCopies<CHAR>(length, "no room for half of it", length / 2 + 1);
    CompareCopies<WCHAR>(length, "no room for half of it", length / 2 + 1);
  }
}

TEST_CASE("Trim, skip, count") {
  CompareTrims<CHAR>();
  CompareTrims<WCHAR>();
}

}  // namespace
