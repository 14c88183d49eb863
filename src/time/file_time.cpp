// Shifts of a FILETIME, and conversions between the platform's forms of a time. SYSTEMTIME and DOS
// words are the platform's own business: nothing here looks into them.
#include <tavkit/time.h>
#include <win32.h>

#include "frame/memory.h"

namespace tavkit {
namespace {

static_assert(sizeof(FILETIME) == 8 && sizeof(SYSTEMTIME) == 16);

constexpr DWORD kTicksPerMillisecond = 10'000;

// Never above 2^46, so that a time can wrap once at most.
uint64_t TicksOf(DWORD dwMilliseconds) { return uint64_t{dwMilliseconds} * kTicksPerMillisecond; }

// Lets the platform cross between local time and UTC. It never gets one address for both records.
template <class Operation>
BOOL Cross(Operation* operation, const FILETIME* pftSource, LPFILETIME pftTarget) {
  if (pftSource != pftTarget) return operation(pftSource, pftTarget);
  FILETIME ftCrossed;
  const BOOL result = operation(pftSource, &ftCrossed);
  if (result) *pftTarget = ftCrossed;
  return result;
}

}  // namespace
}  // namespace tavkit

using namespace tavkit;

// The low half of a time comes first, so that in memory the two are one number of 64 bits.

BOOL UT_API utFileTimeAddMilliseconds(LPFILETIME pftTime, DWORD dwMilliseconds) {
  if (pftTime == nullptr) return FALSE;
  uint64_t after;
  const bool wrapped =
      __builtin_add_overflow(ReadValue<uint64_t>(pftTime), TicksOf(dwMilliseconds), &after);
  WriteValue(pftTime, after);
  return !wrapped;
}

BOOL UT_API utFileTimeSubMilliseconds(LPFILETIME pftTime, DWORD dwMilliseconds) {
  if (pftTime == nullptr) return FALSE;
  uint64_t after;
  const bool wrapped =
      __builtin_sub_overflow(ReadValue<uint64_t>(pftTime), TicksOf(dwMilliseconds), &after);
  WriteValue(pftTime, after);
  return !wrapped;
}

BOOL UT_API utConvertFileTime(const FILETIME* pftSource, LPFILETIME pftTarget, INT nMode) {
  switch (nMode) {
    case UT_TIME_LOCAL_TO_UTC:
      return Cross(LocalFileTimeToFileTime, pftSource, pftTarget);
    case UT_TIME_UTC_TO_LOCAL:
      return Cross(FileTimeToLocalFileTime, pftSource, pftTarget);
    default:
      if (pftSource != pftTarget) *pftTarget = *pftSource;
      return TRUE;
  }
}

BOOL UT_API utDosDateTimeToFileTime(WORD wDosDate, WORD wDosTime, LPFILETIME pftTarget, INT nMode) {
  if (nMode == UT_TIME_AS_IS) return DosDateTimeToFileTime(wDosDate, wDosTime, pftTarget);
  FILETIME ft;
  if (!DosDateTimeToFileTime(wDosDate, wDosTime, &ft)) return FALSE;
  return utConvertFileTime(&ft, pftTarget, nMode);
}

BOOL UT_API utSystemTimeToFileTime(const SYSTEMTIME* pstSource, LPFILETIME pftTarget, INT nMode) {
  if (nMode == UT_TIME_AS_IS) return SystemTimeToFileTime(pstSource, pftTarget);
  FILETIME ft;
  if (!SystemTimeToFileTime(pstSource, &ft)) return FALSE;
  return utConvertFileTime(&ft, pftTarget, nMode);
}

BOOL UT_API utFileTimeToSystemTime(const FILETIME* pftSource, LPSYSTEMTIME pstTarget, INT nMode) {
  if (nMode == UT_TIME_AS_IS) return FileTimeToSystemTime(pftSource, pstTarget);
  FILETIME ft;
  if (!utConvertFileTime(pftSource, &ft, nMode)) return FALSE;
  return FileTimeToSystemTime(&ft, pstTarget);
}

BOOL UT_API utFileTimeToDosDateTime(const FILETIME* pftSource, LPWORD pwDosDate, LPWORD pwDosTime,
                                    INT nMode) {
  if (nMode == UT_TIME_AS_IS) return FileTimeToDosDateTime(pftSource, pwDosDate, pwDosTime);
  FILETIME ft;
  if (!utConvertFileTime(pftSource, &ft, nMode)) return FALSE;
  return FileTimeToDosDateTime(&ft, pwDosDate, pwDosTime);
}

BOOL UT_API utConvertSystemTime(const SYSTEMTIME* pstSource, LPSYSTEMTIME pstTarget, INT nMode) {
  FILETIME ft;
  if (!SystemTimeToFileTime(pstSource, &ft)) return FALSE;
  return utFileTimeToSystemTime(&ft, pstTarget, nMode);
}

BOOL UT_API utDosDateTimeToSystemTime(WORD wDosDate, WORD wDosTime, LPSYSTEMTIME pstTarget,
                                      INT nMode) {
  FILETIME ft;
  if (!DosDateTimeToFileTime(wDosDate, wDosTime, &ft)) return FALSE;
  return utFileTimeToSystemTime(&ft, pstTarget, nMode);
}

BOOL UT_API utSystemTimeToDosDateTime(const SYSTEMTIME* pstSource, LPWORD pwDosDate,
                                      LPWORD pwDosTime, INT nMode) {
  FILETIME ft;
  if (!SystemTimeToFileTime(pstSource, &ft)) return FALSE;
  return utFileTimeToDosDateTime(&ft, pwDosDate, pwDosTime, nMode);
}
