// File times, the calendar, and the user's names of days and months.
#include <file_time.h>
#include <gtest/gtest.h>
#include <host.h>
#include <tavkit.h>
#include <user_locale.h>

#include <chrono>

#include "support/failures.h"
#include "support/forms.h"
#include "support/guarded.h"
#include "support/random.h"

namespace {

using test::GuardedBuffer;

std::uintptr_t Word(const void* p) { return reinterpret_cast<std::uintptr_t>(p); }

constexpr std::uint64_t kTicks = 10'000;  // of a millisecond

FILETIME FileTime(std::uint64_t ticks) {
  return {static_cast<DWORD>(ticks), static_cast<DWORD>(ticks >> 32)};
}
std::uint64_t Ticks(const FILETIME& ft) {
  return std::uint64_t{ft.dwHighDateTime} << 32 | ft.dwLowDateTime;
}

TEST(FileTimeShift, AgreesWith64BitArithmetic) {
  std::vector<DWORD> shifts = {0, 1, 0x7FFFFFFF, 0x80000000, 0xFFFFFFFE, 0xFFFFFFFF};
  for (const DWORD chunks : {1u, 2u, 5000u, 10034u}) {
    for (const DWORD near : {-1, 0, 1}) shifts.push_back(chunks * 428'000 + near);
  }
  test::Random random(98);
  for (int i = 0; i < 20; ++i) shifts.push_back(random.Below(i % 2 == 0 ? 2'000'000 : 0xFFFFFFFF));
  for (const DWORD count : shifts) {
    const std::uint64_t shift = count * kTicks, half = 0x100000000u;
    // Next to these times a half carries or the whole wraps.
    for (const std::uint64_t edge : {std::uint64_t{0}, half, shift, 0 - shift, shift + half, shift % half,
                                     half - shift % half, half * random.Below(0xFFFFFFFF) + random.Below(0xFFFFFFFF)}) {
      for (const std::uint64_t time : {edge - 1, edge, edge + 1}) {
        FILETIME later = FileTime(time), earlier = later;
        EXPECT_EQ(utFileTimeAddMilliseconds(&later, count), time + shift >= time) << time << " + " << count;
        EXPECT_EQ(Ticks(later), time + shift) << time << " + " << count;
        EXPECT_EQ(utFileTimeSubMilliseconds(&earlier, count), time >= shift) << time << " - " << count;
        EXPECT_EQ(Ticks(earlier), time - shift) << time << " - " << count;
      }
    }
  }
  EXPECT_EQ(utFileTimeAddMilliseconds(nullptr, 0), 0);
  EXPECT_EQ(utFileTimeSubMilliseconds(nullptr, 1), 0);
}

constexpr INT kModes[] = {UT_TIME_AS_IS, UT_TIME_LOCAL_TO_UTC, UT_TIME_UTC_TO_LOCAL, 3, -1, 0x10001};
constexpr BOOL kSuccess = 0x40;  // what the platform's operations give in these tests
constexpr int kBias = 90;

// One point in time in the three forms.
constexpr FILETIME kFileTime = {0x09ACA700, 0x01BD2870};
constexpr SYSTEMTIME kSystemTime = {1998, 1, 6, 24, 2, 30, 30, 0};
constexpr WORD kDosDate = 18 << 9 | 1 << 5 | 24;
constexpr WORD kDosTime = 2 << 11 | 30 << 5 | 15;

int MinutesOf(INT nMode) {
  return nMode == UT_TIME_LOCAL_TO_UTC ? kBias : nMode == UT_TIME_UTC_TO_LOCAL ? -kBias : 0;
}
FILETIME Crossed(INT nMode) {
  return FileTime(Ticks(kFileTime) + static_cast<std::uint64_t>(MinutesOf(nMode)) * 60'000 * kTicks);
}

std::vector<unsigned char> Bytes(const auto& record) {
  const auto* start = reinterpret_cast<const unsigned char*>(&record);
  return {start, start + sizeof record};
}

// What a conversion has to give in each form; two DOS words stand one behind the other.
std::vector<unsigned char> InFileTime(INT nMode) { return Bytes(Crossed(nMode)); }
std::vector<unsigned char> InSystemTime(INT nMode) {
  const FILETIME ft = Crossed(nMode);
  SYSTEMTIME st = {};
  FileTimeToSystemTime(&ft, &st);
  return Bytes(st);
}
std::vector<unsigned char> InDosWords(INT nMode) {
  const FILETIME ft = Crossed(nMode);
  WORD words[2] = {};
  FileTimeToDosDateTime(&ft, &words[0], &words[1]);
  return Bytes(words);
}

// A conversion by its format steps, in front of the crossing and behind it.
struct Conversion {
  BOOL (*call)(void* target, INT nMode);
  const char *before, *after;
  std::vector<unsigned char> (*expected)(INT nMode);
};

LPWORD Words(void* target) { return static_cast<LPWORD>(target); }
LPFILETIME File(void* target) { return static_cast<LPFILETIME>(target); }
LPSYSTEMTIME System(void* target) { return static_cast<LPSYSTEMTIME>(target); }

constexpr char kFromSystem[] = "SystemTimeToFileTime", kToSystem[] = "FileTimeToSystemTime";
constexpr char kFromDos[] = "DosDateTimeToFileTime", kToDos[] = "FileTimeToDosDateTime";

#define CALL(call) [](void* p, INT n) -> BOOL { return call; }
const Conversion kConversions[] = {
    {CALL(utConvertFileTime(&kFileTime, File(p), n)), nullptr, nullptr, InFileTime},
    {CALL(utDosDateTimeToFileTime(kDosDate, kDosTime, File(p), n)), kFromDos, nullptr, InFileTime},
    {CALL(utSystemTimeToFileTime(&kSystemTime, File(p), n)), kFromSystem, nullptr, InFileTime},
    {CALL(utFileTimeToSystemTime(&kFileTime, System(p), n)), nullptr, kToSystem, InSystemTime},
    {CALL(utFileTimeToDosDateTime(&kFileTime, Words(p), Words(p) + 1, n)), nullptr, kToDos, InDosWords},
    {CALL(utConvertSystemTime(&kSystemTime, System(p), n)), kFromSystem, kToSystem, InSystemTime},
    {CALL(utDosDateTimeToSystemTime(kDosDate, kDosTime, System(p), n)), kFromDos, kToSystem, InSystemTime},
    {CALL(utSystemTimeToDosDateTime(&kSystemTime, Words(p), Words(p) + 1, n)), kFromSystem, kToDos, InDosWords},
};
#undef CALL

std::vector<std::string> StepsOf(const Conversion& conversion, INT nMode) {
  std::vector<std::string> steps;
  if (conversion.before != nullptr) steps.emplace_back(conversion.before);
  if (nMode == UT_TIME_LOCAL_TO_UTC) steps.emplace_back("LocalFileTimeToFileTime");
  if (nMode == UT_TIME_UTC_TO_LOCAL) steps.emplace_back("FileTimeToLocalFileTime");
  if (conversion.after != nullptr) steps.emplace_back(conversion.after);
  return steps;
}

TEST(TimeConversion, MakesItsStepsInOrderAndStopsAtAFailure) {
  host::SetZoneBias(kBias);
  for (const auto& conversion : kConversions) {
    for (const INT nMode : kModes) {
      const auto steps = StepsOf(conversion, nMode);
      SCOPED_TRACE(testing::PrintToString(steps) + " with " + std::to_string(nMode));
      const auto expected = conversion.expected(nMode);
      const bool isShort = nMode == UT_TIME_AS_IS && conversion.before != nullptr;
      const bool endsWithCopy = conversion.after == nullptr && MinutesOf(nMode) == 0 && !isShort;
      host::SetTimeSuccess(kSuccess);
      const unsigned failures = test::ForEachFailure(0, [&] {
        GuardedBuffer target(expected.size());
        host::StartJournal();
        const BOOL result = conversion.call(target.data(), nMode);
        const auto journal = host::TakeJournal();
        std::vector<std::string> made;
        for (const auto& call : journal) made.push_back(call.operation);
        if (host::FailureCame()) {
          EXPECT_EQ(result, 0);
          EXPECT_TRUE(target.IsUntouched());
          EXPECT_TRUE(std::equal(made.begin(), made.end(), steps.begin(), steps.begin() + made.size()));
          return;
        }
        EXPECT_EQ(result, endsWithCopy ? 1 : kSuccess);
        EXPECT_EQ(target.Bytes(), expected);
        EXPECT_EQ(made, steps);
        for (const auto& call : journal) EXPECT_NE(call.arguments[0], call.arguments[1]);
        if (journal.empty()) return;
        // The first step reads the source itself, the last one writes the target itself.
        const bool readsFileTime = conversion.before == nullptr && nMode >= 0 && nMode <= 2;
        if (readsFileTime) EXPECT_EQ(journal.front().arguments[0], Word(&kFileTime));
        const auto& last = journal.back();
        const auto written = last.operation == kToDos ? last.arguments[1] : last.arguments.back();
        EXPECT_EQ(written == Word(target.data()), !endsWithCopy);
      });
      EXPECT_EQ(failures, steps.size());
    }
  }
}

TEST(TimeConversion, WorksInPlace) {
  host::SetZoneBias(kBias);
  host::SetTimeSuccess(kSuccess);
  for (const INT nMode : kModes) {
    for (const bool fails : {false, true}) {
      FILETIME ft = kFileTime;
      const bool crosses = MinutesOf(nMode) != 0;
      host::FailCall(fails);
      host::StartJournal();
      EXPECT_EQ(utConvertFileTime(&ft, &ft, nMode), !crosses ? 1 : fails ? 0 : kSuccess);
      EXPECT_EQ(Bytes(ft), fails ? Bytes(kFileTime) : InFileTime(nMode));
      for (const auto& call : host::TakeJournal()) EXPECT_NE(call.arguments[1], Word(&ft));
    }
    SYSTEMTIME st = kSystemTime;
    st.wDayOfWeek = 99;  // ignored on the way in, filled in on the way out
    host::FailCall(0);
    EXPECT_EQ(utConvertSystemTime(&st, &st, nMode), kSuccess);
    EXPECT_EQ(Bytes(st), InSystemTime(nMode));
  }
}

TEST(Calendar, AgreesWithChronoOnEveryDate) {
  using namespace std::chrono;
  for (WORD wYear = 1; wYear <= 9999; ++wYear) {
    const year y{wYear};
    ASSERT_EQ(utDaysInYear(wYear), y.is_leap() ? 366 : 365) << wYear;
    for (WORD wMonth = 1; wMonth <= 12; ++wMonth) {
      const sys_days first = y / wMonth / 1;
      const auto length = static_cast<unsigned>((y / wMonth / last).day());
      const auto passed = (first - sys_days{y / 1 / 1}).count();
      const unsigned weekdayOfFirst = weekday{first}.c_encoding();
      ASSERT_EQ(utDaysInMonth(wYear, wMonth), length) << wYear << '-' << wMonth;
      for (WORD wDay = 1; wDay <= length; ++wDay) {
        ASSERT_EQ(utDayOfYear(wYear, wMonth, wDay), passed + wDay) << wYear << '-' << wMonth << '-' << wDay;
        ASSERT_EQ(utDayOfWeek(wYear, wMonth, wDay), (weekdayOfFirst + wDay - 1) % 7) << wYear << '-' << wMonth << '-' << wDay;
      }
    }
  }
}

TEST(Calendar, TakesAnyNumber) {
  for (unsigned n = 0; n <= 0xFFFF; ++n) {
    const auto w = static_cast<WORD>(n);
    ASSERT_EQ(utIsLeapYear(w), std::chrono::year(static_cast<int>(n % 400)).is_leap()) << n;
    ASSERT_EQ(utHour24to12(w), n % 12 == 0 ? 12 : n % 12) << n;
    if (n >= 1 && n <= 12) continue;
    ASSERT_EQ(utDaysInMonth(1996, w), 0) << n;
    ASSERT_EQ(utDayOfYear(1997, w, 5), n == 0 ? 5 : 370) << n;
    ASSERT_EQ(utDayOfYear(1996, w, 65'500), n == 0 ? 65'500 : 65'500 + 366 - 65'536) << n;
  }
  EXPECT_EQ(utDayOfYear(1997, 2, 30), 61);
  EXPECT_EQ(utDayOfWeek(2000, 13, 1), 1);
  EXPECT_EQ(utDayOfWeek(2000, 14, 1), 4);
  EXPECT_EQ(utDayOfWeek(0, 1, 1), 0);
  // (3 * 65535 + 3) / 5 - 65535 / 100 + 65535 / 4 + 65535 / 400 + 4 * 65535 is 317352.
  EXPECT_EQ(utDayOfWeek(0xFFFF, 0xFFFF, 0xFFFF), (317'352 + 1) % 7);
}

TEST(Time, CountsSixteenBitArgumentsByTheirLowHalf) {
  const DWORD high = 0xABCD0000;
  SYSTEMTIME st;
  EXPECT_EQ(test::CallWithWords(utDosDateTimeToSystemTime, high | kDosDate, high | kDosTime, &st, 3), 1);
  EXPECT_EQ(Bytes(st), Bytes(kSystemTime));
  EXPECT_EQ(test::CallWithWords(utHour24to12, high | 13u), 1);
  EXPECT_EQ(test::CallWithWords(utIsLeapYear, high | 1996u), 1);
  EXPECT_EQ(test::CallWithWords(utDaysInMonth, high | 2000u, high | 2u), 29);
  EXPECT_EQ(test::CallWithWords(utDaysInYear, high | 1900u), 365);
  EXPECT_EQ(test::CallWithWords(utDayOfYear, high | 1997u, high | 12u, high | 31u), 365);
  EXPECT_EQ(test::CallWithWords(utDayOfWeek, high | 1997u, high | 12u, high | 23u), 2);
  EXPECT_EQ(test::CallWithWords(utDayOfWeekName, nullptr, 0, high | 6u, 0), 1);
  EXPECT_EQ(test::CallWithWords(utMonthName, nullptr, 0, high | 12u, 0), 1);
}

// Asks for a name, and checks what reaches the platform and what comes back.
void CheckName(BOOL(UT_API* ask)(LPSTR, INT, WORD, INT), WORD wNumber, LCTYPE full, LCTYPE abbreviated) {
  for (const INT nStyle : {0, 1, 2, -1}) {
    const LCTYPE type = nStyle == UT_NAME_ABBREVIATED ? abbreviated : full;
    host::SetLocaleText(type, "abc");
    for (DWORD size = 0; size <= 5; ++size) {
      GuardedBuffer buffer(size);
      host::StartJournal();
      EXPECT_EQ(ask(buffer.As<char>(), static_cast<INT>(size), wNumber, nStyle), size == 0 || size >= 4);
      const std::vector<host::Call> expected = {{"GetLocaleInfoA", {0x400, type, Word(buffer.data()), size}}};
      EXPECT_EQ(host::TakeJournal(), expected) << wNumber;
      EXPECT_TRUE(size < 4 ? buffer.IsUntouched() : buffer.As<char>() == std::string("abc"));
    }
  }
  host::FailCall(1);
  EXPECT_EQ(ask(nullptr, 0, wNumber, 0), 0);
}

TEST(LocaleNames, AreAskedForByThePlatformsNumbers) {
  CheckName(utDayOfWeekName, 0, 0x30, 0x37);  // Sunday is the platform's last day
  for (WORD wDay = 1; wDay <= 6; ++wDay) CheckName(utDayOfWeekName, wDay, 0x29u + wDay, 0x30u + wDay);
  for (WORD wMonth = 1; wMonth <= 12; ++wMonth) CheckName(utMonthName, wMonth, 0x37u + wMonth, 0x43u + wMonth);
  GuardedBuffer none(0);
  host::StartJournal();
  for (unsigned n = 0; n <= 0xFFFF; ++n) {
    const auto w = static_cast<WORD>(n);
    if (n > 6) ASSERT_EQ(utDayOfWeekName(none.As<char>(), 16, w, 0), 0) << n;
    if (n < 1 || n > 12) ASSERT_EQ(utMonthName(none.As<char>(), 16, w, 1), 0) << n;
  }
  EXPECT_TRUE(host::TakeJournal().empty());
}

TEST(LocaleNames, TellTheClockByTheNumberOne) {
  const auto clock = [](const char* text) {
    host::SetLocaleText(LOCALE_ITIME, text);
    return utTimeFormat();
  };
  for (const char* text : {"1", " 1", "+1", "01", "\t001h", "00000000000001"}) EXPECT_EQ(clock(text), 1) << text;
  for (const char* text : {"", "0", "2", "11", "-1", "h1", "- 1"}) EXPECT_EQ(clock(text), 0) << text;
  EXPECT_EQ(clock("0000000000000001"), 0);  // leaves no room for its terminator
  host::FailCall(1);
  EXPECT_EQ(clock("1"), 0);
}

}  // namespace
