// The calendar: a month with the user's names, checked dates, and the clock in both formats.
// It runs on the Linux platform layer, which is told the user's choice of a format here.
#include <user_locale.h>

#include "example.h"

namespace {

// No calendar function checks its numbers, but a month that isn't one has no days.
bool IsDate(WORD year, WORD month, WORD day) {
  return day >= 1 && day <= utDaysInMonth(year, month);
}

void PrintMonth(WORD year, WORD month) {
  char name[64];
  if (utMonthName(name, sizeof name, month, 0)) std::printf("%s %u\n", name, year);
  for (WORD day = 0; day < 7; ++day) {
    if (utDayOfWeekName(name, sizeof name, day, UT_NAME_ABBREVIATED)) std::printf(" %3s", name);
  }
  const WORD first = utDayOfWeek(year, month, 1);  // 0 is Sunday, as in the names
  std::printf("\n%*s", 4 * first, "");
  const WORD count = utDaysInMonth(year, month);
  for (WORD day = 1; day <= count; ++day) {
    std::printf(" %3u%s", day, (first + day) % 7 == 0 || day == count ? "\n" : "");
  }
}

// The clock as the user has it. Midnight and noon are both 12 on a 12-hour clock.
void PrintTime(WORD hour, WORD minute) {
  if (utTimeFormat()) {
    std::printf(" %02u:%02u", hour, minute);
  } else {
    std::printf(" %u:%02u %s", utHour24to12(hour), minute, hour < 12 ? "am" : "pm");
  }
}

void PrintCalendar() {
  constexpr WORD kHours[] = {0, 9, 12, 23};
  PrintMonth(2024, 2);
  std::printf("30 February 2024 is a date: %d, 29 February: %d\n", IsDate(2024, 2, 30),
              IsDate(2024, 2, 29));
  std::printf("30 February counts on: day %u of the year, as 1 March: %u\n",
              utDayOfYear(2024, 2, 30), utDayOfYear(2024, 3, 1));
  std::printf("2 July 2024 is day %u; %u days remain\n", utDayOfYear(2024, 7, 2),
              utDaysInYear(2024) - utDayOfYear(2024, 7, 2));

  // A name that doesn't fit is refused, not cut, and the buffer isn't to be read then.
  char tight[4];
  std::printf("Wednesday in 4 bytes: %d, abbreviated: %d\n",
              utDayOfWeekName(tight, sizeof tight, 3, 0),
              utDayOfWeekName(tight, sizeof tight, 3, UT_NAME_ABBREVIATED));

  for (LPCSTR format : {"1", "0"}) {
    host::SetLocaleText(LOCALE_ITIME, format);  // the user's choice
    std::printf("%s hours:", utTimeFormat() ? "24" : "12");
    for (const WORD hour : kHours) PrintTime(hour, 5);
    std::puts("");
  }
}

}  // namespace

int main(int argc, char** argv) { return example::Run(argc, argv, PrintCalendar); }
