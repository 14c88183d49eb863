// What the operations on times, settings, memory and the system's version answer.
#include <codepage.h>
#include <file_time.h>
#include <gtest/gtest.h>
#include <host.h>

#include <cstring>
#include <string>

namespace {

class Settings : public testing::Test {
 protected:
  void SetUp() override { host::Reset(); }
};

std::uint64_t Ticks(const FILETIME& ft) {
  return std::uint64_t{ft.dwHighDateTime} << 32 | ft.dwLowDateTime;
}
FILETIME FileTime(std::uint64_t ticks) {
  return {static_cast<DWORD>(ticks), static_cast<DWORD>(ticks >> 32)};
}

TEST_F(Settings, ConvertTimesWithinTheirLimits) {
  const std::pair<SYSTEMTIME, std::uint64_t> valid[] = {
      {{1601, 1, 1, 1, 0, 0, 0, 0}, 0},
      {{1970, 1, 4, 1, 0, 0, 0, 1}, 116'444'736'000'010'000},
      {{2000, 2, 2, 29, 23, 59, 59, 999}, 125'963'423'999'990'000},
      {{30827, 12, 5, 31, 23, 59, 59, 999}, 0x7FFF35F4F06C58F0}};
  FILETIME ft, shifted;
  SYSTEMTIME st;
  for (const auto& [time, ticks] : valid) {
    ASSERT_EQ(SystemTimeToFileTime(&time, &ft), 1) << time.wYear;
    EXPECT_EQ(Ticks(ft), ticks);
    ASSERT_EQ(FileTimeToSystemTime(&ft, &st), 1);
    EXPECT_EQ(std::memcmp(&st, &time, sizeof st), 0) << time.wYear;
  }
  // clang-format off
  const SYSTEMTIME invalid[] = {
      {1600, 12, 0, 31, 23, 59, 59, 999}, {1999, 4, 0, 31, 0, 0, 0, 0},
      {1900, 2, 0, 30, 0, 0, 0, 0}, {1999, 13, 0, 1, 0, 0, 0, 0}, {1999, 1, 0, 0, 0, 0, 0, 0},
      {1999, 1, 0, 1, 24, 0, 0, 0}, {1999, 1, 0, 1, 0, 60, 0, 0}, {1999, 1, 0, 1, 0, 0, 60, 0},
      {1999, 1, 0, 1, 0, 0, 0, 1000}, {1999, 257, 0, 1, 0, 0, 0, 0}, {1999, 1, 0, 257, 0, 0, 0, 0}};
  // clang-format on
  for (const auto& time : invalid)
    EXPECT_EQ(SystemTimeToFileTime(&time, &ft), 0) << &time - invalid;
  ft = FileTime(0x7FFFFFFFFFFFFFFF);
  ASSERT_EQ(FileTimeToSystemTime(&ft, &st), 1);
  const SYSTEMTIME last = {30828, 9, 4, 14, 2, 48, 5, 477};
  EXPECT_EQ(std::memcmp(&st, &last, sizeof st), 0);
  for (const DWORD high : {0x80000000u, 0xFFFFFFFFu}) {
    ft = {0, high};
    EXPECT_EQ(FileTimeToSystemTime(&ft, &st), 0);
  }
  // Windows is Japanese in Tokyo. Past either end a count begins anew at the other.
  if (!host::SetCodePage(932)) return;
  host::SetZoneBias(-540);
  ft = FileTime(0);
  EXPECT_EQ(LocalFileTimeToFileTime(&ft, &shifted), 1);
  EXPECT_EQ(Ticks(shifted), -540 * 600'000'000ull);
  EXPECT_EQ(FileTimeToLocalFileTime(&shifted, &ft), 1);
  EXPECT_EQ(Ticks(ft), 0u);
}

TEST_F(Settings, ConvertEveryDosDateAndTime) {
  unsigned dates = 0, times = 0;
  const auto check = [](WORD wDate, WORD wTime, unsigned& count) {
    FILETIME ft;
    SYSTEMTIME st;
    WORD back[2] = {};
    if (!DosDateTimeToFileTime(wDate, wTime, &ft) || !FileTimeToSystemTime(&ft, &st)) return;
    // Wine goes on to March.
    if (st.wDay != (wDate & 0x1F)) return;
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

TEST_F(Settings, AnswerFromTheLocale) {
#ifndef _WIN32
  setenv("LC_ALL", "C", 1);
#endif
  // clang-format off
  const struct { LCTYPE type; int capacity; std::string stored; } rows[] = {
      {LOCALE_SDAYNAME1, 16, "Monday"}, {LOCALE_SABBREVDAYNAME1 + 6, 4, "Sun"},
      {LOCALE_SABBREVDAYNAME1 + 6, 2, "Su"}, {LOCALE_SMONTHNAME1 + 11, 16, "December"},
      {LOCALE_SABBREVMONTHNAME1, 16, "Jan"}, {0xFFFF, 16, ""}};
  // clang-format on
  if (host::CodePage() != 1252) return;
  for (const auto& [type, capacity, stored] : rows) {
    char text[16] = "";
    const auto needed = stored.empty() ? 0 : static_cast<int>(stored.size()) + 1;
    EXPECT_EQ(GetLocaleInfoA(LOCALE_USER_DEFAULT, type, text, capacity),
              needed <= capacity ? needed : 0);
    EXPECT_EQ(text, stored);
  }
}

TEST_F(Settings, OfTheSystem) {
  OSVERSIONINFOA version = {148, 0, 0, 0, 0, ""};
  EXPECT_NE(GetVersionExA(&version), 0);
  EXPECT_EQ(version.dwPlatformId, VER_PLATFORM_WIN32_NT);
  EXPECT_GE(version.dwMajorVersion, 4u);
  version.dwOSVersionInfoSize = 147;
  EXPECT_EQ(GetVersionExA(&version), 0);
  auto* zero = static_cast<char*>(LocalAlloc(LMEM_ZEROINIT, 64));
  EXPECT_EQ(std::string(zero, 64), std::string(64, '\0'));
  EXPECT_EQ(LocalFree(zero), nullptr);
  EXPECT_EQ(LocalFree(nullptr), nullptr);
}

}  // namespace
