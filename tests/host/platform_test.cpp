// The platform layer's characters, comparisons, journal and planned failures.
#include <codepage.h>
#include <gtest/gtest.h>
#include <heap.h>
#include <host.h>

#include <string>
#include <vector>

namespace {

class Platform : public testing::Test {
 protected:
  void SetUp() override { host::Reset(); }
};

TEST_F(Platform, StepsByTheLeadBytesOfTheCodePage) {
  const struct {
    unsigned codePage;
    std::string text;
    std::vector<std::size_t> starts;  // of the characters
  } rows[] = {
      {1252, "\x81\x5C\xE9", {0, 1, 2}},
      {932, "\x81\x5C\xE9\x40", {0, 2}},
      {932, "\xA0\x5C\xFD\x40", {0, 1, 2, 3}},  // between and above the lead bytes
      {932, "\x80\x81", {0, 1}},                // a lead byte at the end stands alone
      {936, "\xA0\x5C\xFF\x40", {0, 2, 3}},
      {949, "\xFE\xFE\x80\x61", {0, 2, 3}},
      {950, "\x81\x81\x81", {0, 2}},
  };
  for (const auto& row : rows) {
    ASSERT_TRUE(host::SetCodePage(row.codePage));
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
  EXPECT_FALSE(host::SetCodePage(437));
  EXPECT_EQ(host::CodePage(), 950u);
}

TEST_F(Platform, ComparesWithAndWithoutRegardToCase) {
  const struct {
    unsigned codePage;
    const char *first, *second;
    bool same, sameLetters;
  } rows[] = {
      {1252, "", "", true, true},
      {1252, "abc", "abc", true, true},
      {1252, "aBz", "AbZ", false, true},
      {1252, "abc", "abcd", false, false},
      {1252, "@[`{", "`{@[", false, false},
      {1252, "\xE9\xFF\x9A", "\xC9\x9F\x8A", false, true},
      {1252, "\xF7", "\xD7", false, false},  // two signs, no letters
      {932, "\x83\x61", "\x83\x41", false, false},
      {932, "\x83\x61y", "\x83\x61Y", false, true},
      {932, "\xE1", "\xC1", false, false},
  };
  for (const auto& row : rows) {
    host::SetCodePage(row.codePage);
    EXPECT_EQ(lstrcmpA(row.first, row.second) == 0, row.same) << row.first;
    EXPECT_EQ(lstrcmpiA(row.first, row.second) == 0, row.sameLetters) << row.first;
    EXPECT_EQ(lstrcmpA(row.first, row.second), -lstrcmpA(row.second, row.first));
  }
  EXPECT_EQ(lstrcmpiW(u"a\u00E9\u0436\uFFFF", u"A\u00C9\u0416\uFFFF"), 0);
  for (const auto& [lower, upper] :
       {std::pair(u"\u0131", u"I"), {u"\u017F", u"S"}, {u"\u03D0", u"\u0392"}})
    EXPECT_NE(lstrcmpiW(lower, upper), 0);
  EXPECT_NE(lstrcmpW(u"a", u"A"), 0);
  EXPECT_LT(lstrcmpW(u"a\x7FFF", u"a\x8000"), 0);
}

TEST_F(Platform, RecordsCallsAndFailsThePlannedOne) {
  char text[8] = "xab";
  CharNextA(text);  // before the journal
  host::StartJournal();
  lstrlenA(text);
  lstrcpyA(text, text + 1);
  const auto at = reinterpret_cast<std::uintptr_t>(text);
  const std::vector<host::Call> expected = {{"lstrlenA", {at}}, {"lstrcpyA", {at, at + 1}}};
  EXPECT_EQ(host::TakeJournal(), expected);
  EXPECT_TRUE(host::TakeJournal().empty());

  lstrcpyA(text, "ab");
  host::FailCall(2, 5);
  CharNextA(text);  // can't fail and doesn't count
  EXPECT_EQ(lstrlenA(text), 2);
  EXPECT_FALSE(host::FailureCame());
  EXPECT_EQ(lstrcatA(text, "c"), nullptr);
  EXPECT_TRUE(host::FailureCame());
  EXPECT_EQ(host::FailureCode(), 5u);
  EXPECT_EQ(lstrlenA(text), 2);

  host::FailCall(1, 0, "lstrcatA");
  EXPECT_EQ(lstrlenA(text), 2);
  EXPECT_EQ(lstrcatA(text, "c"), nullptr);
  host::SetCodePage(932);
  host::Reset();
  EXPECT_EQ(host::CodePage(), 1252u);
}

TEST_F(Platform, KeepsAccountOfMemory) {
  auto* zero = static_cast<char*>(LocalAlloc(LMEM_ZEROINIT, 64));
  EXPECT_EQ(std::string(zero, 64), std::string(64, '\0'));
  EXPECT_NE(*static_cast<char*>(LocalAlloc(0, 1)), 0);
  EXPECT_EQ(LocalAlloc(0, 0xFFFFFFF0u), nullptr);
  LocalFree(zero);
  LocalFree(nullptr);
  EXPECT_EQ(host::LivingBlocks(), 1u);
  EXPECT_EQ(host::HeapError(), "");
  zero[63] = 1;
  EXPECT_EQ(host::HeapError(), "block written after it was freed");
  EXPECT_EQ(LocalFree(zero), zero);
  EXPECT_EQ(host::HeapError(), "block freed twice");
  host::Reset();
  EXPECT_EQ(host::LivingBlocks(), 0u);
  EXPECT_EQ(LocalFree(this), this);
  EXPECT_EQ(host::HeapError(), "free of no allocated block");
}

}  // namespace
