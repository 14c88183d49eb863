// File times, the calendar, and the user's names of days and months.
#include <file_time.h>
#include <gtest/gtest.h>
#include <host.h>
#include <tavkit.h>
#include <user_locale.h>

#include <array>
#include <chrono>
#include <optional>

#include "support/choices.h"
#include "support/forms.h"

namespace {

using test::CallWithWords;

constexpr DWORD kHigh = 0xABCD0000;  // above the low 16 bits of an argument, where nothing counts

std::uintptr_t Word(const void* p) { return reinterpret_cast<std::uintptr_t>(p); }

constexpr std::uint64_t kTicks = 10'000;  // of a millisecond

FILETIME FileTime(std::uint64_t ticks) {
  return {static_cast<DWORD>(ticks), static_cast<DWORD>(ticks >> 32)};
}
std::uint64_t Ticks(const FILETIME& ft) {
  return std::uint64_t{ft.dwHighDateTime} << 32 | ft.dwLowDateTime;
}

PROPERTY(FileTimeShift, AgreesWith64BitArithmetic, 3000) {
  const DWORD bits = 1u << choices.Below(32);
  const DWORD count = choices.Below(3) == 0 ? bits - choices.Below(2) : choices.Below(0xFFFFFFFF);
  const std::uint64_t zero = 0, half = 0x100000000u, shift = count * kTicks, low = shift % half;
  const std::uint64_t any = choices.Below(0xFFFFFFFF) * half + choices.Below(0xFFFFFFFF);
  // Next to these times a half carries or the whole wraps.
  const auto edge = choices.Of<std::uint64_t>(
      {zero, half, shift, zero - shift, shift + half, low, half - low, any});
  const std::uint64_t time = edge + choices.Below(3) - 1;
  FILETIME later = FileTime(time), earlier = later;
  ASSERT_EQ(utFileTimeAddMilliseconds(&later, count), time + shift >= time) << time;
  ASSERT_EQ(utFileTimeSubMilliseconds(&earlier, count), time >= shift) << time;
  ASSERT_EQ(Ticks(later), time + shift) << time << " + " << count;
  ASSERT_EQ(Ticks(earlier), time - shift) << time << " - " << count;
  ASSERT_EQ(utFileTimeAddMilliseconds(nullptr, count), 0);
  ASSERT_EQ(utFileTimeSubMilliseconds(nullptr, count), 0);
}

constexpr INT kNoMode = 3;  // copies, as any number that is no mode
const std::vector<INT> kModes = {
    UT_TIME_AS_IS, UT_TIME_LOCAL_TO_UTC, UT_TIME_UTC_TO_LOCAL, kNoMode, -1, 0x101, 0x10002};
constexpr BOOL kSuccess = -0x7FFFFFFF - 1;  // what the platform's operations give in these tests
constexpr int kBias = 90;

// Times in the three forms, and one in all of them.
struct Times {
  FILETIME file;
  SYSTEMTIME system;
  WORD date, time;
};
constexpr Times kTimes = {.file = {.dwLowDateTime = 0x09ACA700, .dwHighDateTime = 0x01BD2870},
                          .system = {1998, 1, 6, 24, 2, 30, 30, 0},
                          .date = 18 << 9 | 1 << 5 | 24,
                          .time = 2 << 11 | 30 << 5 | 15};

bool Crosses(INT nMode) { return nMode == UT_TIME_LOCAL_TO_UTC || nMode == UT_TIME_UTC_TO_LOCAL; }

// What a conversion writes: one of the forms.
union Target {
  std::array<unsigned char, 24> bytes;
  FILETIME file;
  SYSTEMTIME system;
  WORD dos[2];

  Target() { bytes.fill(0xCD); }
  friend bool operator==(const Target& a, const Target& b) { return a.bytes == b.bytes; }
};

// A conversion by its format steps, before the crossing and after it.
struct Conversion {
  const char* name;
  BOOL (*call)(const Times& from, Target& to, INT nMode);
  std::string before, after;
};

const std::string kFromSystem = "SystemTimeToFileTime", kToSystem = "FileTimeToSystemTime";
const std::string kFromDos = "DosDateTimeToFileTime", kToDos = "FileTimeToDosDateTime";

#define CALL(call) #call, [](const Times& from, Target& to, INT n) -> BOOL { return call; }
const Conversion kConversions[] = {
    {CALL(utConvertFileTime(&from.file, &to.file, n)), "", ""},
    {CALL(
         CallWithWords(utDosDateTimeToFileTime, kHigh | from.date, kHigh | from.time, &to.file, n)),
     kFromDos, ""},
    {CALL(utSystemTimeToFileTime(&from.system, &to.file, n)), kFromSystem, ""},
    {CALL(utFileTimeToSystemTime(&from.file, &to.system, n)), "", kToSystem},
    {CALL(utFileTimeToDosDateTime(&from.file, &to.dos[0], &to.dos[1], n)), "", kToDos},
    {CALL(utConvertSystemTime(&from.system, &to.system, n)), kFromSystem, kToSystem},
    {CALL(CallWithWords(utDosDateTimeToSystemTime, kHigh | from.date, kHigh | from.time, &to.system,
                        n)),
     kFromDos, kToSystem},
    {CALL(utSystemTimeToDosDateTime(&from.system, &to.dos[0], &to.dos[1], n)), kFromSystem, kToDos},
};
#undef CALL
const auto &kFileTime = kConversions[0], &kSystemTime = kConversions[5];

// What a conversion writes, by the platform's own operations; nothing if one of them refuses it.
std::optional<Target> Converted(const Conversion& conversion, const Times& from, INT nMode) {
  Target to;
  FILETIME ft = from.file;
  BOOL works = 1;
  if (conversion.before == kFromSystem) works = SystemTimeToFileTime(&from.system, &ft);
  if (conversion.before == kFromDos) works = DosDateTimeToFileTime(from.date, from.time, &ft);
  to.file = ft;
  if (works && nMode == UT_TIME_LOCAL_TO_UTC) works = LocalFileTimeToFileTime(&ft, &to.file);
  if (works && nMode == UT_TIME_UTC_TO_LOCAL) works = FileTimeToLocalFileTime(&ft, &to.file);
  ft = to.file;
  if (!conversion.after.empty()) to = {};
  if (works && conversion.after == kToSystem) works = FileTimeToSystemTime(&ft, &to.system);
  if (works && conversion.after == kToDos) {
    works = FileTimeToDosDateTime(&ft, &to.dos[0], &to.dos[1]);
  }
  return works ? std::optional(to) : std::nullopt;
}

std::vector<std::string> StepsOf(const Conversion& conversion, INT nMode) {
  const auto* crossing = nMode == UT_TIME_LOCAL_TO_UTC   ? "LocalFileTimeToFileTime"
                         : nMode == UT_TIME_UTC_TO_LOCAL ? "FileTimeToLocalFileTime"
                                                         : "";
  std::vector<std::string> steps = {conversion.before, crossing, conversion.after};
  std::erase(steps, "");
  return steps;
}

PROPERTY(TimeConversion, AgreesWithThePlatform, 2000) {
  const auto word = [&](unsigned bound) {
    return static_cast<WORD>(choices.Below(choices.Below(16) != 0 ? bound : 0x10000));
  };
  host::SetZoneBias(static_cast<int>(choices.Below(2881)) - 1440);
  Times from = {
      {choices.Below(0xFFFFFFFF), choices.Below(0x02000000) << choices.Below(8)}, {}, 0, 0};
  from.system = {word(10000), word(14), word(8),  word(33),
                 word(25),    word(61), word(61), word(1001)};
  from.date = word(0x10000);
  from.time = word(0x10000);
  const INT nMode = choices.Of(kModes);
  for (const auto& conversion : kConversions) {
    Target target;
    const auto expected = Converted(conversion, from, nMode);
    ASSERT_EQ(conversion.call(from, target, nMode), expected.has_value()) << conversion.name;
    ASSERT_TRUE(target == expected.value_or(Target())) << conversion.name << " with " << nMode;
  }
}

TEST(TimeConversion, MakesItsStepsInOrder) {
  host::SetZoneBias(kBias);
  host::SetTimeSuccess(kSuccess);
  for (const auto& conversion : kConversions) {
    for (const INT nMode : kModes) {
      const auto steps = StepsOf(conversion, nMode);
      SCOPED_TRACE(conversion.name + (" with " + std::to_string(nMode)));
      const auto expected = *Converted(conversion, kTimes, nMode);
      const bool isShort = nMode == UT_TIME_AS_IS && !conversion.before.empty();
      const bool endsWithCopy = conversion.after.empty() && !Crosses(nMode) && !isShort;
      Target target;
      host::StartJournal();
      ASSERT_EQ(conversion.call(kTimes, target, nMode), endsWithCopy ? 1 : kSuccess);
      const auto journal = host::TakeJournal();
      ASSERT_TRUE(target == expected);
      ASSERT_EQ(journal.size(), steps.size());
      for (std::size_t i = 0; i < journal.size(); ++i) {
        ASSERT_EQ(journal[i].operation, steps[i]);
        if (steps[i] == kFromDos) continue;  // its source is no address
        ASSERT_NE(journal[i].arguments[0], journal[i].arguments[1]) << steps[i] << " in place";
      }
      if (journal.empty()) continue;
      // The first step reads the source itself, the last one writes the target itself.
      const auto read = journal.front().arguments[0];
      const bool isMode = nMode == UT_TIME_AS_IS || Crosses(nMode);
      if (conversion.before.empty()) ASSERT_EQ(read == Word(&kTimes.file), isMode);
      if (conversion.before == kFromSystem) ASSERT_EQ(read, Word(&kTimes.system));
      const auto& last = journal.back();
      const auto written = last.operation == kToDos ? last.arguments[1] : last.arguments.back();
      ASSERT_EQ(written == Word(&target), !endsWithCopy);
    }
  }
}

TEST(TimeConversion, WorksInPlace) {
  host::SetZoneBias(kBias);
  host::SetTimeSuccess(kSuccess);
  for (const INT nMode : kModes) {
    Target file, record;
    file.file = kTimes.file;
    host::StartJournal();
    EXPECT_EQ(utConvertFileTime(&file.file, &file.file, nMode), Crosses(nMode) ? kSuccess : 1);
    EXPECT_TRUE(file == Converted(kFileTime, kTimes, nMode));
    for (const auto& call : host::TakeJournal()) EXPECT_NE(call.arguments[1], Word(&file));
    record.system = kTimes.system;
    record.system.wDayOfWeek = 99;  // ignored on the way in, filled in on the way out
    EXPECT_EQ(utConvertSystemTime(&record.system, &record.system, nMode), kSuccess);
    EXPECT_TRUE(record == Converted(kSystemTime, kTimes, nMode));
  }
}

TEST(Calendar, AgreesWithChronoOnEveryDate) {
  using namespace std::chrono;
  unsigned weekdays = 1;  // a Monday
  for (WORD y = 1; y <= 9999; ++y) {
    unsigned days = 0;
    for (WORD m = 1; m <= 12; ++m) {
      const auto length = static_cast<unsigned>((year{y} / m / last).day());
      ASSERT_EQ(CallWithWords(utDaysInMonth, kHigh | y, kHigh | m), length) << y << '-' << m;
      for (WORD d = 1; d <= length; ++d) {
        const auto ask = [&](auto* function) {
          return CallWithWords(function, kHigh | y, kHigh | m, kHigh | d);
        };
        ASSERT_EQ(ask(utDayOfYear), ++days) << y << '-' << m << '-' << d;
        ASSERT_EQ(ask(utDayOfWeek), weekdays++ % 7) << y << '-' << m << '-' << d;
      }
    }
    ASSERT_EQ(CallWithWords(utDaysInYear, kHigh | y), days) << y;
  }
}

TEST(Calendar, TakesAnyNumber) {
  for (unsigned n = 0; n <= 0xFFFF; ++n) {
    const auto w = static_cast<WORD>(n);
    ASSERT_EQ(CallWithWords(utIsLeapYear, kHigh | n),
              std::chrono::year(static_cast<int>(n % 400)).is_leap())
        << n;
    ASSERT_EQ(CallWithWords(utHour24to12, kHigh | n), n % 12 == 0 ? 12 : n % 12) << n;
    // The calendar repeats itself after 400 years, which are whole weeks.
    const auto wSame = static_cast<WORD>(2000 + n % 400);
    if (n != 0) ASSERT_EQ(utDayOfWeek(w, 2, 29), utDayOfWeek(wSame, 2, 29)) << n;
    if (n >= 1 && n <= 12) continue;
    ASSERT_EQ(utDaysInMonth(1996, w), 0) << n;
    ASSERT_EQ(utDayOfYear(1997, w, 5), n == 0 ? 5 : 370) << n;
    ASSERT_EQ(utDayOfYear(1996, w, 65'500), n == 0 ? 65'500 : 65'500 + 366 - 65'536) << n;
  }
  EXPECT_EQ(utDayOfYear(1997, 2, 30), 61);
  EXPECT_EQ(utDayOfWeek(2000, 0, 1), 2);  // 1 + 2000 - 20 + 500 + 5 is 2486: no year is taken off
  EXPECT_EQ(utDayOfWeek(2000, 13, 1), 1);
  EXPECT_EQ(utDayOfWeek(2000, 14, 1), 4);
  EXPECT_EQ(utDayOfWeek(0, 1, 1), 0);
  // (3 * 65535 + 3) / 5 - 65535 / 100 + 65535 / 4 + 65535 / 400 + 4 * 65535 is 317352.
  EXPECT_EQ(utDayOfWeek(0xFFFF, 0xFFFF, 0xFFFF), (317'352 + 1) % 7);
}

// The platform's numbers of what it is asked for, from Monday and January on.
constexpr LCTYPE kClock = 0x23, kDays = 0x2A, kShortDays = 0x31, kMonths = 0x38,
                 kShortMonths = 0x44;
constexpr DWORD kUserDefault = 0x400;

// Asks for a name, and checks what reaches the platform and what comes back.
void CheckName(BOOL(UT_API* ask)(LPSTR, INT, WORD, INT), WORD wNumber, LCTYPE full, LCTYPE brief) {
  for (const INT nStyle : {0, 1, 2, -1, 0x101, 0x10001}) {
    const LCTYPE type = nStyle == UT_NAME_ABBREVIATED ? brief : full;
    char name[80];
    const INT length = GetLocaleInfoA(kUserDefault, type, name, sizeof name);
    for (const INT size : {0, length - 1, length, -1}) {
      char text[80] = "";
      host::StartJournal();
      ASSERT_EQ(CallWithWords(ask, text, size, kHigh | wNumber, nStyle),
                size == 0 || size == length);
      const auto cch = static_cast<std::uintptr_t>(size);
      const std::vector<host::Call> expected = {
          {"GetLocaleInfoA", {kUserDefault, type, Word(text), cch}}};
      ASSERT_EQ(host::TakeJournal(), expected) << wNumber << " with style " << nStyle;
      ASSERT_STREQ(text,
                   size >= length - 1 ? name : "");  // what doesn't fit is stored as far as it goes
    }
  }
}

TEST(LocaleNames, AreAskedForByThePlatformsNumbers) {
  char clock[8] = "";
  GetLocaleInfoA(kUserDefault, kClock, clock, sizeof clock);
  EXPECT_EQ(utTimeFormat(), clock == std::string("1"));
  for (WORD n = 0; n < 7 && !HasFailure(); ++n) {
    const LCTYPE fromMonday = n == 0 ? 6 : n - 1;
    CheckName(utDayOfWeekName, n, kDays + fromMonday, kShortDays + fromMonday);
  }
  for (WORD n = 0; n < 12 && !HasFailure(); ++n) {
    CheckName(utMonthName, n + 1, kMonths + n, kShortMonths + n);
  }
  char text[] = "untouched";
  host::StartJournal();
  for (unsigned n = 0; n <= 0xFFFF; ++n) {
    const auto w = static_cast<WORD>(n);
    if (n >= 7) ASSERT_EQ(utDayOfWeekName(text, sizeof text, w, 0), 0) << n;
    if (n == 0 || n > 12) ASSERT_EQ(utMonthName(text, sizeof text, w, 1), 0) << n;
    ASSERT_STREQ(text, "untouched") << n;
  }
  EXPECT_TRUE(host::TakeJournal().empty());
}

TEST(LocaleNames, TellTheClockByTheNumberOne) {
  const auto clock = [](const char* text) {
    host::SetLocaleText(kClock, text);
    return utTimeFormat();
  };
  for (auto* text : {"1", " 1", "+1", "01", "\t001h", "00000000000001"}) EXPECT_EQ(clock(text), 1);
  for (auto* text : {"", "0", "2", "11", "-1", "h1", "- 1"}) EXPECT_EQ(clock(text), 0) << text;
  host::StartJournal();
  EXPECT_EQ(clock("000000000000001"), 1);
  auto call = host::TakeJournal().at(0);
  call.arguments.erase(call.arguments.begin() + 2);  // the local buffer
  EXPECT_EQ(call, (host::Call{"GetLocaleInfoA", {kUserDefault, kClock, 16}}));
  EXPECT_EQ(clock("0000000000000001"), 0);  // leaves no byte for its terminator
}

}  // namespace
