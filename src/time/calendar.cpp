// The Gregorian calendar on 16-bit numbers.
#include <tavkit/time.h>

namespace tavkit {
namespace {

constexpr BYTE kMonthLengths[] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
constexpr WORD kFebruary = 2;
constexpr WORD kMonths = sizeof kMonthLengths;

// The days that precede each month, in a common year and in a leap year. The months past December
// add nothing.
constexpr WORD kDaysBefore[2][kMonths + 2] = {
    {0, 0, 31, 59, 90, 120, 151, 181, 212, 243, 273, 304, 334, 365},
    {0, 0, 31, 60, 91, 121, 152, 182, 213, 244, 274, 305, 335, 366}};

}  // namespace
}  // namespace tavkit

using namespace tavkit;

WORD UT_API utHour24to12(WORD wHour) {
  const WORD wRemainder = wHour % 12;
  return wRemainder == 0 ? 12 : wRemainder;
}

BOOL UT_API utIsLeapYear(WORD wYear) {
  // Of the years that 25 divides, 4 divides those that 100 divides, and 16 those that 400 divides.
  return wYear % (wYear % 25 == 0 ? 16 : 4) == 0;
}

WORD UT_API utDaysInMonth(WORD wYear, WORD wMonth) {
  if (wMonth < 1 || wMonth > kMonths) return 0;
  const bool hasLeapDay = wMonth == kFebruary && utIsLeapYear(wYear);
  return static_cast<WORD>(kMonthLengths[wMonth - 1] + hasLeapDay);
}

WORD UT_API utDaysInYear(WORD wYear) { return utIsLeapYear(wYear) ? 366 : 365; }

WORD UT_API utDayOfYear(WORD wYear, WORD wMonth, WORD wDay) {
  const WORD wEnd = wMonth <= kMonths ? wMonth : kMonths + 1;
  return static_cast<WORD>(wDay + kDaysBefore[utIsLeapYear(wYear)][wEnd]);
}

// Zeller's congruence. It starts the year in March: January and February are the months 13 and 14
// of the year before.
WORD UT_API utDayOfWeek(WORD wYear, WORD wMonth, WORD wDay) {
  int year = wYear;
  int month = wMonth;
  if (month == 1 || month == 2) {
    month += 12;
    --year;
  }
  // The quotients truncate toward zero, so that those of the year -1 are 0.
  const DWORD full = year < 0 ? 0 : static_cast<DWORD>(year);
  const DWORD centuries = full / 100;
  const int leapDays = static_cast<int>(full / 4 - centuries + centuries / 4);
  const int days = (3 * month + 3) / 5 + 2 * month + year + leapDays + wDay;
  return static_cast<WORD>((static_cast<DWORD>(days) + 1) % 7);  // the days are never below zero
}
