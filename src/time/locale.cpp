// The user's names of days and months, and the user's clock format.
#include <tavkit/convert.h>
#include <tavkit/time.h>
#include <win32.h>

namespace tavkit {
namespace {

bool AskName(LCTYPE fullName, LCTYPE abbreviatedName, INT nStyle, LPSTR pszBuffer, INT cchBuffer) {
  const LCTYPE type = nStyle == UT_NAME_ABBREVIATED ? abbreviatedName : fullName;
  return GetLocaleInfoA(LOCALE_USER_DEFAULT, type, pszBuffer, cchBuffer) != 0;
}

}  // namespace
}  // namespace tavkit

using namespace tavkit;

BOOL UT_API utDayOfWeekName(LPSTR pszBuffer, INT cchBuffer, WORD wDay, INT nStyle) {
  if (wDay >= 7) return FALSE;
  // The platform's week begins with Monday.
  const LCTYPE fromMonday = (wDay + 6u) % 7;
  return AskName(LOCALE_SDAYNAME1 + fromMonday, LOCALE_SABBREVDAYNAME1 + fromMonday, nStyle,
                 pszBuffer, cchBuffer);
}

BOOL UT_API utMonthName(LPSTR pszBuffer, INT cchBuffer, WORD wMonth, INT nStyle) {
  if (wMonth < 1 || wMonth > 12) return FALSE;
  const LCTYPE fromJanuary = wMonth - 1u;
  return AskName(LOCALE_SMONTHNAME1 + fromJanuary, LOCALE_SABBREVMONTHNAME1 + fromJanuary, nStyle,
                 pszBuffer, cchBuffer);
}

BOOL UT_API utTimeFormat(void) {
  CHAR szFormat[17] = {};  // one more than is asked for: it ends whatever comes
  if (!GetLocaleInfoA(LOCALE_USER_DEFAULT, LOCALE_ITIME, szFormat, sizeof szFormat - 1)) {
    return FALSE;
  }
  return utAtoI(szFormat) == 1;
}
