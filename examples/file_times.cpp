// File times: local time goes to UTC and back, in three forms, and is shifted.
// It runs on the Linux platform layer, which is told the time zone here.
#include <file_time.h>

#include "example.h"

namespace {

void Print(const char* label, const FILETIME& time) {
  SYSTEMTIME parts;
  if (!utFileTimeToSystemTime(&time, &parts, UT_TIME_AS_IS)) return;
  std::printf("%s: %u-%02u-%02u %02u:%02u:%02u.%03u (%08X %08X)\n", label, parts.wYear,
              parts.wMonth, parts.wDay, parts.wHour, parts.wMinute, parts.wSecond,
              parts.wMilliseconds, time.dwHighDateTime, time.dwLowDateTime);
}

// A time that would wrap is stored wrapped, so the shift is made on a copy.
bool GoBack(FILETIME& time, DWORD milliseconds) {
  FILETIME shifted = time;
  if (!utFileTimeSubMilliseconds(&shifted, milliseconds)) return false;
  time = shifted;
  return true;
}

void PrintTimes() {
  host::SetZoneBias(-120);  // two hours ahead of UTC

  // The selector tells the way, and a time crosses once: to UTC as it comes in, to local time as it
  // is shown. Success is any value but 0, so no result is compared with TRUE.
  const SYSTEMTIME meeting{2026, 5, 0, 1, 1, 30, 20, 250};  // the day of the week doesn't count
  FILETIME utc, local;
  if (!utSystemTimeToFileTime(&meeting, &utc, UT_TIME_LOCAL_TO_UTC)) return;
  utConvertFileTime(&utc, &local, UT_TIME_UTC_TO_LOCAL);
  Print("UTC", utc);
  Print("local", local);

  // A DOS pair is local time by custom, and keeps even seconds only.
  WORD dosDate, dosTime;
  FILETIME second = utc;
  utFileTimeSubMilliseconds(&second, 250);
  if (!utFileTimeToDosDateTime(&second, &dosDate, &dosTime, UT_TIME_UTC_TO_LOCAL)) return;
  std::printf("DOS pair: %04X %04X\n", dosDate, dosTime);
  utDosDateTimeToFileTime(dosDate, dosTime, &second, UT_TIME_LOCAL_TO_UTC);
  Print("and back in UTC", second);

  // The count is unsigned and holds 49 days, so longer shifts go day by day.
  FILETIME later = utc;
  constexpr DWORD kDay = 24 * 60 * 60 * 1000;
  for (int day = 0; day < 90; ++day) utFileTimeAddMilliseconds(&later, kDay);
  Print("90 days on", later);

  FILETIME early{.dwLowDateTime = 5000, .dwHighDateTime = 0};  // half a millisecond
  const bool isShifted = GoBack(early, 1);
  std::printf("1 ms back from the first: %d, still %u ticks\n", isShifted, early.dwLowDateTime);
}

}  // namespace

int main(int argc, char** argv) { return example::Run(argc, argv, PrintTimes); }
