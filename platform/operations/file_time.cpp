// The six time conversions: counts below 2^63, dates of the years 1601 to 30827, DOS years 1980 to
// 2107 in steps of two seconds, an odd second being rounded down. A time outside these, or with an
// invalid field, is refused.
// Between local time and UTC every count is converted.
#include "file_time.h"

#include <chrono>
#include <cstdint>
#include <limits>
#include <optional>

#include "host.h"
#include "state.h"

namespace host {
namespace {

using std::chrono::days;
using std::chrono::hours;
using std::chrono::milliseconds;
using std::chrono::minutes;
using std::chrono::seconds;
using std::chrono::sys_days;

// FILETIME's count.
using Ticks = std::chrono::duration<std::int64_t, std::ratio<1, 10'000'000>>;
using Time = std::chrono::sys_time<Ticks>;

constexpr Time kFirst = sys_days{std::chrono::year{1601} / 1 / 1};
constexpr int kLastYear = 30827;
constexpr int kFirstDosYear = 1980;
constexpr int kLastDosYear = 2107;

std::uint64_t Count(const FILETIME* pft) {
  return std::uint64_t{pft->dwHighDateTime} << 32 | pft->dwLowDateTime;
}

std::optional<Time> Read(const FILETIME* pft) {
  const auto ticks = Count(pft);
  if (ticks > std::numeric_limits<std::int64_t>::max()) return {};
  return kFirst + Ticks{static_cast<std::int64_t>(ticks)};
}

BOOL Store(std::uint64_t ticks, LPFILETIME pft) {
  *pft = {static_cast<DWORD>(ticks), static_cast<DWORD>(ticks >> 32)};
  return state->time.success;
}

BOOL Store(std::optional<Time> time, LPFILETIME pft) {
  if (!time || *time < kFirst) return FALSE;
  return Store(static_cast<std::uint64_t>((*time - kFirst).count()), pft);
}

// A date and a time of day; the fields are checked by Join() only.
struct Fields {
  int year;
  unsigned month, day;
  int hour, minute, second, millisecond;
};

Fields Split(Time time) {
  const auto day = std::chrono::floor<days>(time);
  const std::chrono::year_month_day date{day};
  const std::chrono::hh_mm_ss clock{std::chrono::floor<milliseconds>(time - day)};
  return {static_cast<int>(date.year()),
          static_cast<unsigned>(date.month()),
          static_cast<unsigned>(date.day()),
          static_cast<int>(clock.hours().count()),
          static_cast<int>(clock.minutes().count()),
          static_cast<int>(clock.seconds().count()),
          static_cast<int>(clock.subseconds().count())};
}

std::optional<Time> Join(const Fields& fields) {
  const std::chrono::year_month_day date{std::chrono::year{fields.year},
                                         std::chrono::month{fields.month},
                                         std::chrono::day{fields.day}};
  // The calendar's own types keep the low byte of a month or a day only.
  if (fields.month > 12 || fields.day > 31 || !date.ok() || fields.hour > 23 ||
      fields.minute > 59 || fields.second > 59 || fields.millisecond > 999) {
    return {};
  }
  return sys_days{date} + hours{fields.hour} + minutes{fields.minute} + seconds{fields.second} +
         milliseconds{fields.millisecond};
}

// Counts past either end begin anew at the other.
BOOL Shift(const FILETIME* pftFrom, LPFILETIME pftTo, int byMinutes) {
  const auto shift = static_cast<std::uint64_t>(Ticks{minutes{byMinutes}}.count());
  return Store(Count(pftFrom) + shift, pftTo);
}

}  // namespace

void SetZoneBias(int byMinutes) { state->time.bias = byMinutes; }

void SetTimeSuccess(BOOL result) { state->time.success = result; }

}  // namespace host

BOOL UT_API SystemTimeToFileTime(const SYSTEMTIME* lpSystemTime, LPFILETIME lpFileTime) {
  if (host::Fails(__func__, lpSystemTime, lpFileTime)) return FALSE;
  const SYSTEMTIME& st = *lpSystemTime;
  if (st.wYear > host::kLastYear) return FALSE;
  return host::Store(host::Join({st.wYear, st.wMonth, st.wDay, st.wHour, st.wMinute, st.wSecond,
                                 st.wMilliseconds}),
                     lpFileTime);
}

BOOL UT_API FileTimeToSystemTime(const FILETIME* lpFileTime, LPSYSTEMTIME lpSystemTime) {
  if (host::Fails(__func__, lpFileTime, lpSystemTime)) return FALSE;
  const auto time = host::Read(lpFileTime);
  if (!time) return FALSE;
  const auto fields = host::Split(*time);
  const std::chrono::weekday weekday{std::chrono::floor<host::days>(*time)};
  const auto word = [](auto value) { return static_cast<WORD>(value); };
  *lpSystemTime = {word(fields.year),   word(fields.month),      word(weekday.c_encoding()),
                   word(fields.day),    word(fields.hour),       word(fields.minute),
                   word(fields.second), word(fields.millisecond)};
  return host::state->time.success;
}

BOOL UT_API DosDateTimeToFileTime(WORD wFatDate, WORD wFatTime, LPFILETIME lpFileTime) {
  if (host::Fails(__func__, wFatDate, wFatTime, lpFileTime)) return FALSE;
  return host::Store(
      host::Join({host::kFirstDosYear + (wFatDate >> 9), wFatDate >> 5 & 0xFu, wFatDate & 0x1Fu,
                  wFatTime >> 11, wFatTime >> 5 & 0x3F, (wFatTime & 0x1F) * 2, 0}),
      lpFileTime);
}

BOOL UT_API FileTimeToDosDateTime(const FILETIME* lpFileTime, LPWORD lpFatDate, LPWORD lpFatTime) {
  if (host::Fails(__func__, lpFileTime, lpFatDate, lpFatTime)) return FALSE;
  const auto time = host::Read(lpFileTime);
  if (!time) return FALSE;
  const auto fields = host::Split(*time);
  if (fields.year < host::kFirstDosYear || fields.year > host::kLastDosYear) return FALSE;
  const auto years = static_cast<unsigned>(fields.year - host::kFirstDosYear);
  *lpFatDate = static_cast<WORD>(years << 9 | fields.month << 5 | fields.day);
  *lpFatTime = static_cast<WORD>(fields.hour << 11 | fields.minute << 5 | fields.second / 2);
  return host::state->time.success;
}

BOOL UT_API LocalFileTimeToFileTime(const FILETIME* lpLocalFileTime, LPFILETIME lpFileTime) {
  if (host::Fails(__func__, lpLocalFileTime, lpFileTime)) return FALSE;
  return host::Shift(lpLocalFileTime, lpFileTime, host::state->time.bias);
}

BOOL UT_API FileTimeToLocalFileTime(const FILETIME* lpFileTime, LPFILETIME lpLocalFileTime) {
  if (host::Fails(__func__, lpFileTime, lpLocalFileTime)) return FALSE;
  return host::Shift(lpFileTime, lpLocalFileTime, -host::state->time.bias);
}
