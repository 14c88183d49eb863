// What the operations on text answer: characters, comparison, conversion.
#include <codepage.h>
#include <gtest/gtest.h>
#include <host.h>

#include <string>
#include <vector>

namespace {

using namespace std::string_literals;

class Text : public testing::Test {
 protected:
  void SetUp() override { host::Reset(); }
};

// Wide text, whichever type its units have.
LPCWSTR Wide(const char16_t* text) { return reinterpret_cast<LPCWSTR>(text); }

TEST_F(Text, StepsByTheLeadBytesOfTheCodePage) {
  // clang-format off
  const struct { unsigned codePage; std::string text; std::vector<std::size_t> starts; } rows[] = {
      {1252, "\x81\x5C\xE9", {0, 1, 2}}, {932, "\x81\x5C\xE9\x40", {0, 2}},
      {932, "\xA0\x5C\xFD\x40", {0, 1, 2, 3}},  // between and above the lead bytes
      {932, "\x80\x81", {0, 1}},                // a lead byte at the end stands alone
      {936, "\xA0\x5C\xFF\x40", {0, 2, 3}}, {949, "\xFE\xFE\x80\x61", {0, 2, 3}},
      {950, "\x81\x81\x81", {0, 2}},
  };
  // clang-format on
  for (const auto& row : rows) {
    if (!host::SetCodePage(row.codePage)) continue;
    std::vector<std::size_t> starts;
    const char* text = row.text.c_str();
    for (const char* at = text; *at != 0; at = CharNextA(at)) {
      EXPECT_EQ(CharPrevA(text, CharNextA(at)), at);
      starts.push_back(static_cast<std::size_t>(at - text));
    }
    EXPECT_EQ(starts, row.starts) << row.codePage;
    EXPECT_EQ(CharPrevA(text, text), text);
    EXPECT_EQ(CharPrevA(text, text + row.text.size() + 1), text + row.text.size());
    EXPECT_EQ(*CharNextA(text + row.text.size()), 0);
  }
}

// How two strings compare: 2 the same, 1 but for the case, 0 not.
template <class Pointer, class Compare>
int Likeness(Compare compare, Compare ignoring, Pointer first, Pointer second) {
  EXPECT_EQ(compare(first, second) < 0, compare(second, first) > 0);
  EXPECT_EQ(ignoring(first, second) == 0, ignoring(second, first) == 0);
  return (compare(first, second) == 0) + (ignoring(first, second) == 0);
}

TEST_F(Text, ComparesByWeights) {
  // clang-format off
  const struct { unsigned codePage; const char *first, *second; int likeness; } bytes[] = {
      {1252, "", "", 2}, {1252, "abc", "abc", 2}, {1252, "aBz", "AbZ", 1}, {1252, "abc", "abcd", 0},
      {1252, "@[`{", "`{@[", 0}, {1252, "\xE9\xFF\x9A", "\xC9\x9F\x8A", 1},
      {1252, "\xF7", "\xD7", 0}, {1252, "y\xADs", "ys", 2}, {1252, "a\xDF", "ass", 2},
      {1252, "\xE6\xFE\x9C", "aethoe", 2}, {1252, "\xC6", "ae", 1}, {1252, "\x88", "^", 2},
      {1252, "\xE4", "a", 0}, {932, "\x83\x61", "\x83\x41", 0}, {932, "\x83\x61y", "\x83\x61Y", 1},
      {932, "\xE1", "\xC1", 0}, {932, "\x82\x60", "\x82\x81", 1}, {932, "\x83\x9F", "\x83\xBF", 1},
      {932, "\x81", "\x82", 2},
  };
  const struct { const char16_t *first, *second; int likeness; } wide[] = {
      {u"a\u00E9\u0436\uFFFF", u"A\u00C9\u0416\uFFFF", 1}, {u"\u0131", u"I", 0},
      {u"\u017F", u"S", 0}, {u"\u03D0", u"\u0392", 0}, {u"\u00E9", u"e\u0301", 2},
      {u"\u017Be", u"z\u0307E", 1}, {u"\u00DF", u"ss", 2}, {u"\uFB01", u"fi", 2},
      {u"a\u200D\u00ADb", u"ab", 2}, {u"\uFF21", u"\uFF41", 1}, {u"\u0133", u"ij", 2},
      {u"\u0105", u"a\u0328", 2}, {u"\u02CB", u"`", 2},
  };
  // clang-format on
  for (const auto& row : wide) {
    EXPECT_EQ(Likeness(lstrcmpW, lstrcmpiW, Wide(row.first), Wide(row.second)), row.likeness)
        << &row - wide;
  }
  for (const auto& row : bytes) {
    if (!host::SetCodePage(row.codePage)) continue;
    EXPECT_EQ(Likeness(lstrcmpA, lstrcmpiA, row.first, row.second), row.likeness) << row.first;
  }
  EXPECT_EQ(lstrcmpW(Wide(u"\\"), Wide(u"\u00A5")) == 0, host::CodePage() == 932);
}

// The number of units that a conversion gives, and the buffer, in which dots are left from before.
template <class Unit, class Convert>
std::basic_string<Unit> Converted(Convert convert) {
  std::basic_string<Unit> buffer(8, Unit{'.'});
  const int count = convert(buffer.data());
  return buffer.insert(0, 1, static_cast<Unit>('0' + count));
}

TEST_F(Text, IsConverted) {
  constexpr DWORD kExact = MB_PRECOMPOSED | MB_ERR_INVALID_CHARS;
  // clang-format off
  const struct { unsigned codePage; const char* text; DWORD flags; int capacity;
                 std::u16string answer; } widened[] = {
      {1252, "\x81\x80", kExact, 8, u"3\u0081\u20AC\0....."s},
      {1252, "\x8D\x8F\x90\x9D", kExact, 8, u"5\u008D\u008F\u0090\u009D\0..."s},
      {1252, "abc", kExact, 2, u"0ab......"}, {1252, "abc", kExact, 0, u"4........"},
      {932, "\x93\xFA\x80", kExact, 8, u"3\u65E5\u0080\0....."s},
      {932, "\x93\xFA\x81", kExact, 8, u"0........"},
      {932, "\x93\xFA\x81", 0, 8, u"3\u65E5\u30FB\0....."s},
      {932, "a\x81\x20z", 0, 8, u"4a\u30FBz\0...."s},
  };
  const struct { unsigned codePage; const char16_t* text; int capacity;
                 std::string answer; } narrowed[] = {
      {1252, u"\u0416\u65E5", 8, "3??\0....."s}, {1252, u"\u009D\u0080", 8, "3\x9D?\0....."s},
      {1252, u"\u0100\u0131\u221E", 8, "4Ai8\0...."s},
      {1252, u"\uFF01\uFF0E\uFF5E", 8, "4!.~\0...."s},
      {1252, u"e\u0301\u2550\u30FB", 8, "5e\xB4-\xB7\0..."s}, {1252, u"abc", 2, "0ab......"},
      {932, u"\u00E4\u00A9\u00AB", 8, "5ac\x81\xE1\0..."s},
      {932, u"\u2212\u301C\u2014", 8, "4???\0...."s},
      {932, u"\uF8F1\uF8F0\u2225", 8, "5\xFD\xA0\x81\x61\0..."s}, {932, u"a\u65E5", 2, "0a......."},
      {932, u"a\u65E5", 0, "4........"},
  };
  // clang-format on
  for (const auto& [codePage, text, flags, capacity, answer] : widened) {
    if (!host::SetCodePage(codePage)) continue;
    EXPECT_EQ(Converted<char16_t>([&](char16_t* to) {
                return MultiByteToWideChar(CP_ACP, flags, text, -1, reinterpret_cast<LPWSTR>(to),
                                           capacity);
              }),
              answer)
        << text;
  }
  for (const auto& [codePage, text, capacity, answer] : narrowed) {
    if (!host::SetCodePage(codePage)) continue;
    EXPECT_EQ(Converted<char>([&](char* to) {
                return WideCharToMultiByte(CP_ACP, 0, Wide(text), -1, to, capacity, nullptr,
                                           nullptr);
              }),
              answer)
        << answer;
  }
}

// Every unit at once; of the bytes the sum that was measured on Wine.
TEST_F(Text, HasABestFitForManyCharacters) {
  std::u16string all;
  for (char32_t unit = 1; unit < 0x10000; ++unit) all += static_cast<char16_t>(unit);
  for (const auto& [codePage, expected] : {std::pair(1252u, 377530250u), {932u, 4155431183u}}) {
    if (!host::SetCodePage(codePage)) continue;
    std::string bytes(0x20000, 0);
    WideCharToMultiByte(CP_ACP, 0, Wide(all.c_str()), -1, bytes.data(), 0x20000, nullptr, nullptr);
    DWORD sum = 0;
    for (const char byte : bytes) sum = sum * 31 + static_cast<unsigned char>(byte);
    EXPECT_EQ(sum, expected) << codePage;
  }
}

}  // namespace
