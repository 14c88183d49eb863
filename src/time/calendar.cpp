// The Gregorian calendar on 16-bit numbers.
#include <tavkit/time.h>

namespace tavkit {
namespace {

constexpr BYTE kMonthLengths[] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
constexpr WORD kFebruary = 2;
constexpr WORD kMonths = sizeof kMonthLengths;

}  // namespace
}  // namespace tavkit

WORD UT_API utHour24to12(WORD wHour) {
  const WORD wRemainder = wHour % 12;
  return wRemainder == 0 ? 12 : wRemainder;
}

BOOL UT_API utIsLeapYear(WORD wYear) {
  return (wYear % 4 == 0 && wYear % 100 != 0) || wYear % 400 == 0;
}

WORD UT_API utDaysInMonth(WORD wYear, WORD wMonth) {
  if (wMonth < 1 || wMonth > tavkit::kMonths) return 0;
  const bool hasLeapDay = wMonth == tavkit::kFebruary && utIsLeapYear(wYear);
  return static_cast<WORD>(tavkit::kMonthLengths[wMonth - 1] + hasLeapDay);
}

WORD UT_API utDaysInYear(WORD wYear) { return utIsLeapYear(wYear) ? 366 : 365; }

WORD UT_API utDayOfYear(WORD wYear, WORD wMonth, WORD wDay) {
  // The months past December add nothing.
  const WORD wEnd = wMonth <= tavkit::kMonths ? wMonth : tavkit::kMonths + 1;
  for (WORD wPassed = 1; wPassed < wEnd; ++wPassed) {
    wDay = static_cast<WORD>(wDay + utDaysInMonth(wYear, wPassed));
  }
  return wDay;
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
  const int leapDays = year / 4 - year / 100 + year / 400;
  const int days = (3 * month + 3) / 5 + 2 * month + year + leapDays + wDay;
  return static_cast<WORD>((days % 7 + 1) % 7);
}
