// The platform layer's times, user's settings and code-page conversion.
#include <codepage.h>
#include <file_time.h>
#include <gtest/gtest.h>
#include <host.h>

#include <cstdlib>
#include <cstring>

namespace {

class Settings : public testing::Test {
 protected:
  void SetUp() override { host::Reset(); }
};

TEST_F(Settings, ConvertTimesWithinThePlatformsLimits) {
  const std::pair<SYSTEMTIME, std::uint64_t> valid[] = {
      {{1601, 1, 1, 1, 0, 0, 0, 0}, 0},
      {{1970, 1, 4, 1, 0, 0, 0, 1}, 116'444'736'000'010'000},
      {{2000, 2, 2, 29, 23, 59, 59, 999}, 125'963'423'999'990'000},
      {{30827, 12, 5, 31, 23, 59, 59, 999}, 0x7FFF35F4F06C58F0}};
  FILETIME ft, shifted;
  SYSTEMTIME st;
  for (const auto& [time, ticks] : valid) {
    ASSERT_EQ(SystemTimeToFileTime(&time, &ft), 1) << time.wYear;
    EXPECT_EQ(std::uint64_t{ft.dwHighDateTime} << 32 | ft.dwLowDateTime, ticks);
    ASSERT_EQ(FileTimeToSystemTime(&ft, &st), 1);
    EXPECT_EQ(std::memcmp(&st, &time, sizeof st), 0) << time.wYear;
  }
  const SYSTEMTIME invalid[] = {{1600, 12, 0, 31, 23, 59, 59, 999}, {30828, 1, 0, 1, 0, 0, 0, 0},
                                {1900, 2, 0, 29, 0, 0, 0, 0},       {1999, 13, 0, 1, 0, 0, 0, 0},
                                {1999, 1, 0, 0, 0, 0, 0, 0},        {1999, 1, 0, 1, 24, 0, 0, 0},
                                {1999, 1, 0, 1, 0, 60, 0, 0},       {1999, 1, 0, 1, 0, 0, 60, 0},
                                {1999, 1, 0, 1, 0, 0, 0, 1000},     {65535, 1, 0, 1, 0, 0, 0, 0},
                                {1999, 257, 0, 1, 0, 0, 0, 0},      {1999, 1, 0, 257, 0, 0, 0, 0}};
  for (const auto& time : invalid)
    EXPECT_EQ(SystemTimeToFileTime(&time, &ft), 0) << &time - invalid;
  for (const DWORD high : {0x7FFF35F5u, 0x80000000u, 0xFFFFFFFFu}) {
    ft = {0, high};
    EXPECT_EQ(FileTimeToSystemTime(&ft, &st), 0);
  }
  ft = {0, 0};
  host::SetZoneBias(-60);
  EXPECT_EQ(LocalFileTimeToFileTime(&ft, &shifted), 1);
  EXPECT_EQ(shifted.dwHighDateTime, ~0u - (36'000'000'000 >> 32));
  EXPECT_EQ(FileTimeToLocalFileTime(&ft, &shifted), 1);
  EXPECT_EQ(shifted.dwHighDateTime, 36'000'000'000 >> 32);
}

TEST_F(Settings, ConvertEveryDosDateAndTime) {
  unsigned dates = 0, times = 0;
  const auto check = [](WORD wDate, WORD wTime, unsigned& count) {
    FILETIME ft;
    WORD back[2] = {};
    if (!DosDateTimeToFileTime(wDate, wTime, &ft)) return;
    ++count;
    // To an odd second, unless that takes a carry.
    if (ft.dwLowDateTime < 0xFFFFFFFF - 10'000'000) ft.dwLowDateTime += 10'000'000;
    EXPECT_EQ(FileTimeToDosDateTime(&ft, &back[0], &back[1]), 1);
    EXPECT_TRUE(back[0] == wDate && back[1] == wTime) << wDate << ' ' << wTime;
  };
  for (unsigned n = 0; n <= 0xFFFF; ++n) {
    check(static_cast<WORD>(n), 0, dates);
    check(0x21, static_cast<WORD>(n), times);
  }
  EXPECT_EQ(dates, 128u * 365 + 31);  // 2000 is a leap year, 2100 is none
  EXPECT_EQ(times, 24u * 60 * 30);
}

TEST_F(Settings, AnswerFromTheLocaleData) {
  setenv("LC_ALL", "C", 1);
  const std::pair<LCTYPE, std::string> rows[] = {{LOCALE_SDAYNAME1, "Monday"},
                                                 {LOCALE_SABBREVDAYNAME1 + 6, "Sun"},
                                                 {LOCALE_SMONTHNAME1 + 11, "December"},
                                                 {LOCALE_SABBREVMONTHNAME1, "Jan"},
                                                 {LOCALE_ITIME, "1"},
                                                 {0x50, ""}};
  for (const auto& [type, expected] : rows) {
    char text[16] = "";
    EXPECT_EQ(GetLocaleInfoA(LOCALE_USER_DEFAULT, type, text, 16) != 0, !expected.empty());
    EXPECT_EQ(text, expected);
  }
}

TEST_F(Settings, ReplaceWhatHasNoCounterpart) {
  host::SetCodePage(932);
  WCHAR wide[4], full[3] = u"xy";
  EXPECT_EQ(MultiByteToWideChar(CP_ACP, 0, "\x82\xA0\x81", -1, wide, 4), 3);
  EXPECT_EQ(std::u16string(wide), u"\u3042?");
  EXPECT_EQ(MultiByteToWideChar(CP_ACP, 0, "abc", 3, full, 2), 0);
  EXPECT_EQ(std::u16string(full), u"ab");
  char bytes[8];
  BOOL usedDefault = FALSE;
  const auto* text = u"\u3042\u00E9\U0001F600";
  EXPECT_EQ(WideCharToMultiByte(CP_ACP, 0, text, -1, bytes, 8, "*", &usedDefault), 6);
  EXPECT_STREQ(bytes, "\x82\xA0***");
  EXPECT_EQ(usedDefault, TRUE);
  std::memset(bytes, 'x', sizeof bytes);
  EXPECT_EQ(WideCharToMultiByte(CP_ACP, 0, u"a\u3042", -1, bytes, 2, nullptr, nullptr), 0);
  EXPECT_EQ(std::string(bytes, 3), "axx");
  // Bytes that stand for controls, and one that doesn't.
  host::SetCodePage(1252);
  EXPECT_EQ(MultiByteToWideChar(CP_ACP, MB_ERR_INVALID_CHARS, "\x81\x80", -1, wide, 4), 3);
  EXPECT_EQ(std::u16string(wide), u"\u0081\u20AC");
  EXPECT_EQ(WideCharToMultiByte(CP_ACP, 0, u"\u009D\u0080", -1, bytes, 8, nullptr, nullptr), 3);
  EXPECT_STREQ(bytes, "\x9D?");
}

}  // namespace
