/**
 * @defgroup time File times and calendar
 *
 * File times, calendar arithmetic, and the user's names of days and months.
 *
 * Calendar numbers are full years (1997, not 97), months from 1 for January, days of the month from
 * 1, and days of the week from 0 for Sunday to 6 for Saturday. The Gregorian rules hold for every
 * year, also before the calendar's adoption, but for utDayOfWeek in the first months of year 0.
 *
 * Every conversion between time forms can cross between local time and UTC on its way:
 *
 * @code
 * utDosDateTimeToFileTime(wDate, wTime, &ftUtc, UT_TIME_LOCAL_TO_UTC);
 * @endcode
 *
 * The platform makes the crossing, by LocalFileTimeToFileTime and FileTimeToLocalFileTime, which
 * take the difference that is in force at the time of the call: a summer's time that is converted
 * in winter comes out by the winter's difference, an hour from what a clock showed then.
 *
 * A conversion gives a value other than 0, not necessarily 1, on success, and 0 on failure. Which
 * times can be converted the platform decides. If a conversion fails before the step that writes
 * the target, the target is as it was. Its pointers reach the platform unexamined and may not be
 * NULL.
 *
 * @{
 */
#ifndef TAVKIT_TIME_H
#define TAVKIT_TIME_H

#include "types.h"

/** No crossing. Any mode that isn't named here behaves so too. */
#define UT_TIME_AS_IS 0
/** Mode: what is given is local time, what is stored is UTC. */
#define UT_TIME_LOCAL_TO_UTC 1
/** Mode: what is given is UTC, what is stored is local time. */
#define UT_TIME_UTC_TO_LOCAL 2

/** The style of a name; any other value asks for the full name. */
#define UT_NAME_ABBREVIATED 1

/**
 * Copies a file time or carries it between local time and UTC.
 *
 * @param pftSource the time.
 * @param pftTarget receives the result; may equal pftSource, but may not overlap it otherwise. On
 *                  failure the record that both point to is as it was.
 * @param nMode     the crossing.
 * @return 1 if there is no crossing; otherwise the platform's result, 0 on failure.
 */
UT_EXPORT(90)
BOOL UT_API utConvertFileTime(const FILETIME* pftSource, LPFILETIME pftTarget, INT nMode);

/**
 * Carries a system time between local time and UTC. It passes through a file time even if there is
 * no crossing, so the platform checks it and fills in every member of the target.
 *
 * @param pstSource the time.
 * @param pstTarget receives the result; may equal pstSource.
 * @param nMode     the crossing.
 * @return not 0 on success, 0 on failure.
 */
UT_EXPORT(91)
BOOL UT_API utConvertSystemTime(const SYSTEMTIME* pstSource, LPSYSTEMTIME pstTarget, INT nMode);

/**
 * Converts a DOS date and time.
 *
 * @param wDosDate  the date.
 * @param wDosTime  the time of day.
 * @param pftTarget receives the file time.
 * @param nMode     the crossing.
 * @return not 0 on success, 0 on failure.
 */
UT_EXPORT(92)
BOOL UT_API utDosDateTimeToFileTime(WORD wDosDate, WORD wDosTime, LPFILETIME pftTarget, INT nMode);

/** Converts a DOS date and time to a system time; otherwise as utDosDateTimeToFileTime. */
UT_EXPORT(93)
BOOL UT_API utDosDateTimeToSystemTime(WORD wDosDate, WORD wDosTime, LPSYSTEMTIME pstTarget,
                                      INT nMode);

/**
 * Converts a file time to a system time.
 *
 * @param pftSource the file time.
 * @param pstTarget receives the system time.
 * @param nMode     the crossing.
 * @return not 0 on success, 0 on failure.
 */
UT_EXPORT(94)
BOOL UT_API utFileTimeToSystemTime(const FILETIME* pftSource, LPSYSTEMTIME pstTarget, INT nMode);

/**
 * Converts a file time to a DOS date and time.
 *
 * @param pftSource the file time.
 * @param pwDosDate receives the date.
 * @param pwDosTime receives the time of day.
 * @param nMode     the crossing.
 * @return not 0 on success, 0 on failure.
 */
UT_EXPORT(95)
BOOL UT_API utFileTimeToDosDateTime(const FILETIME* pftSource, LPWORD pwDosDate, LPWORD pwDosTime,
                                    INT nMode);

/**
 * Converts a system time to a file time.
 *
 * @param pstSource the system time.
 * @param pftTarget receives the file time.
 * @param nMode     the crossing.
 * @return not 0 on success, 0 on failure.
 */
UT_EXPORT(96)
BOOL UT_API utSystemTimeToFileTime(const SYSTEMTIME* pstSource, LPFILETIME pftTarget, INT nMode);

/** Converts a system time to a DOS date and time; otherwise as utFileTimeToDosDateTime. */
UT_EXPORT(97)
BOOL UT_API utSystemTimeToDosDateTime(const SYSTEMTIME* pstSource, LPWORD pwDosDate,
                                      LPWORD pwDosTime, INT nMode);

/**
 * Shifts a file time forward, modulo 2^64 ticks.
 *
 * @param pftTime        the time to shift; NULL gives 0.
 * @param dwMilliseconds the shift, unsigned.
 * @return 1; 0 if the time wrapped, which is stored all the same.
 */
UT_EXPORT(98) BOOL UT_API utFileTimeAddMilliseconds(LPFILETIME pftTime, DWORD dwMilliseconds);

/** Shifts a file time backward; otherwise as utFileTimeAddMilliseconds. */
UT_EXPORT(99) BOOL UT_API utFileTimeSubMilliseconds(LPFILETIME pftTime, DWORD dwMilliseconds);

/**
 * Asks for the name of a day of the week in the user's language, by the platform's GetLocaleInfoA.
 *
 * @param pszBuffer receives the name. It and its size reach the platform unexamined. For any other
 *                  day it stays untouched; what it holds after the platform refused, which may be a
 *                  part of the name without a terminator, is the platform's matter.
 * @param cchBuffer its size, in bytes despite its prefix; UT_SIZE_UNCHECKED has no meaning here.
 *                  With 0 nothing is written and the result tells whether the platform has the
 *                  name.
 * @param wDay      the day, 0 for Sunday to 6.
 * @param nStyle    UT_NAME_ABBREVIATED or any other value.
 * @return 1 if the platform gave the name; 0 for any other day and if the platform refused, as it
 *         does with a buffer that is too small.
 */
UT_EXPORT(120) BOOL UT_API utDayOfWeekName(LPSTR pszBuffer, INT cchBuffer, WORD wDay, INT nStyle);

/** Asks for the name of a month, 1 to 12, in the same way; otherwise as utDayOfWeekName. */
UT_EXPORT(121) BOOL UT_API utMonthName(LPSTR pszBuffer, INT cchBuffer, WORD wMonth, INT nStyle);

/**
 * Asks for the user's clock format.
 *
 * @return 1 if the clock runs to 24 hours; 0 if it has 12 hours or the platform doesn't say.
 */
UT_EXPORT(122) BOOL UT_API utTimeFormat(void);

/**
 * Gives an hour as it reads on a 12-hour clock.
 *
 * @param wHour the hour; there is no upper bound.
 * @return 1 to 12.
 */
UT_EXPORT(123) WORD UT_API utHour24to12(WORD wHour);

/**
 * Tells whether a year is a leap year.
 *
 * @param wYear the year.
 * @return 1 or 0.
 */
UT_EXPORT(124) BOOL UT_API utIsLeapYear(WORD wYear);

/**
 * Gives the length of a month.
 *
 * @param wYear  the year.
 * @param wMonth the month.
 * @return 28 to 31; 0 for a month outside 1 to 12.
 */
UT_EXPORT(125) WORD UT_API utDaysInMonth(WORD wYear, WORD wMonth);

/**
 * Gives the length of a year.
 *
 * @param wYear the year.
 * @return 365 or 366.
 */
UT_EXPORT(126) WORD UT_API utDaysInYear(WORD wYear);

/**
 * Gives the day of the year, 1 for the first of January. No number is checked: month 0 counts as
 * January, a month above 12 begins where the year ends, and the result wraps at 65,536.
 *
 * @param wYear  the year.
 * @param wMonth the month.
 * @param wDay   the day of the month.
 * @return the day of the year.
 */
UT_EXPORT(127) WORD UT_API utDayOfYear(WORD wYear, WORD wMonth, WORD wDay);

/**
 * Gives the day of the week. No number is checked: a day after the end of the month counts on, and
 * months 13 and 14 are January and February of the next year. For month 0 and the months above 14
 * the result is from 0 to 6 and means nothing, and in January and February of year 0 it is a day
 * too late.
 *
 * @param wYear  the year.
 * @param wMonth the month.
 * @param wDay   the day of the month.
 * @return 0 for Sunday to 6 for Saturday.
 */
UT_EXPORT(128) WORD UT_API utDayOfWeek(WORD wYear, WORD wMonth, WORD wDay);

/** @} */

#endif /* TAVKIT_TIME_H */
