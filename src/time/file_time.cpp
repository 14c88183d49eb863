// Shifts of a FILETIME, and conversions between the platform's forms of a time. SYSTEMTIME and DOS
// words are the platform's own business: nothing here looks into them.
#include <tavkit/time.h>
#include <win32.h>

namespace tavkit {
namespace {

static_assert(sizeof(FILETIME) == 8 && sizeof(SYSTEMTIME) == 16);

constexpr DWORD kTicksPerMillisecond = 10'000;

void Store(LPFILETIME pftTarget, DWORD low, DWORD high) {
  pftTarget->dwLowDateTime = low;
  pftTarget->dwHighDateTime = high;
}

uint64_t Load(const FILETIME* pftSource) {
  return uint64_t{pftSource->dwHighDateTime} << 32 | pftSource->dwLowDateTime;
}

void Store(LPFILETIME pftTarget, uint64_t time) {
  Store(pftTarget, static_cast<DWORD>(time), static_cast<DWORD>(time >> 32));
}

// Never above 2^46, so that a time can wrap once at most.
uint64_t TicksOf(DWORD dwMilliseconds) { return uint64_t{dwMilliseconds} * kTicksPerMillisecond; }

// Lets the platform cross between local time and UTC. It never gets one address for both records.
template <class Operation>
BOOL Cross(Operation* operation, const FILETIME* pftSource, LPFILETIME pftTarget) {
  if (pftSource != pftTarget) return operation(pftSource, pftTarget);
  FILETIME ftCrossed;
  const BOOL result = operation(pftSource, &ftCrossed);
  if (result) Store(pftTarget, ftCrossed.dwLowDateTime, ftCrossed.dwHighDateTime);
  return result;
}

// The steps that the conversions are made of. `format` turns another form into the file time that
// it is given the address of, or that file time into another form; then(&ft) goes on with a file
// time.

template <class Format, class Then>
BOOL FormatThen(Format format, Then then) {
  FILETIME ftFormatted;
  return format(&ftFormatted) ? then(&ftFormatted) : FALSE;
}

template <class Format>
BOOL FormatThenCross(Format format, LPFILETIME pftTarget, INT nMode) {
  if (nMode == UT_TIME_AS_IS) return format(pftTarget);
  return FormatThen(format,
                    [=](const FILETIME* pft) { return utConvertFileTime(pft, pftTarget, nMode); });
}

template <class Format>
BOOL CrossThenFormat(const FILETIME* pftSource, INT nMode, Format format) {
  if (nMode == UT_TIME_AS_IS) return format(pftSource);
  FILETIME ftCrossed;
  return utConvertFileTime(pftSource, &ftCrossed, nMode) ? format(&ftCrossed) : FALSE;
}

auto FromSystemTime(const SYSTEMTIME* pstSource) {
  return [=](LPFILETIME pft) { return SystemTimeToFileTime(pstSource, pft); };
}

auto FromDosDateTime(WORD wDosDate, WORD wDosTime) {
  return [=](LPFILETIME pft) { return DosDateTimeToFileTime(wDosDate, wDosTime, pft); };
}

}  // namespace
}  // namespace tavkit

BOOL UT_API utFileTimeAddMilliseconds(LPFILETIME pftTime, DWORD dwMilliseconds) {
  if (pftTime == nullptr) return FALSE;
  const uint64_t before = tavkit::Load(pftTime);
  const uint64_t after = before + tavkit::TicksOf(dwMilliseconds);
  tavkit::Store(pftTime, after);
  return after >= before;
}

BOOL UT_API utFileTimeSubMilliseconds(LPFILETIME pftTime, DWORD dwMilliseconds) {
  if (pftTime == nullptr) return FALSE;
  const uint64_t before = tavkit::Load(pftTime);
  const uint64_t after = before - tavkit::TicksOf(dwMilliseconds);
  tavkit::Store(pftTime, after);
  return after <= before;
}

BOOL UT_API utConvertFileTime(const FILETIME* pftSource, LPFILETIME pftTarget, INT nMode) {
  switch (nMode) {
    case UT_TIME_LOCAL_TO_UTC:
      return tavkit::Cross(LocalFileTimeToFileTime, pftSource, pftTarget);
    case UT_TIME_UTC_TO_LOCAL:
      return tavkit::Cross(FileTimeToLocalFileTime, pftSource, pftTarget);
    default:
      if (pftSource != pftTarget) {
        tavkit::Store(pftTarget, pftSource->dwLowDateTime, pftSource->dwHighDateTime);
      }
      return TRUE;
  }
}

BOOL UT_API utDosDateTimeToFileTime(WORD wDosDate, WORD wDosTime, LPFILETIME pftTarget, INT nMode) {
  return tavkit::FormatThenCross(tavkit::FromDosDateTime(wDosDate, wDosTime), pftTarget, nMode);
}

BOOL UT_API utSystemTimeToFileTime(const SYSTEMTIME* pstSource, LPFILETIME pftTarget, INT nMode) {
  return tavkit::FormatThenCross(tavkit::FromSystemTime(pstSource), pftTarget, nMode);
}

BOOL UT_API utFileTimeToSystemTime(const FILETIME* pftSource, LPSYSTEMTIME pstTarget, INT nMode) {
  return tavkit::CrossThenFormat(
      pftSource, nMode, [=](const FILETIME* pft) { return FileTimeToSystemTime(pft, pstTarget); });
}

BOOL UT_API utFileTimeToDosDateTime(const FILETIME* pftSource, LPWORD pwDosDate, LPWORD pwDosTime,
                                    INT nMode) {
  return tavkit::CrossThenFormat(pftSource, nMode, [=](const FILETIME* pft) {
    return FileTimeToDosDateTime(pft, pwDosDate, pwDosTime);
  });
}

BOOL UT_API utConvertSystemTime(const SYSTEMTIME* pstSource, LPSYSTEMTIME pstTarget, INT nMode) {
  return tavkit::FormatThen(tavkit::FromSystemTime(pstSource), [=](const FILETIME* pft) {
    return utFileTimeToSystemTime(pft, pstTarget, nMode);
  });
}

BOOL UT_API utDosDateTimeToSystemTime(WORD wDosDate, WORD wDosTime, LPSYSTEMTIME pstTarget,
                                      INT nMode) {
  return tavkit::FormatThen(tavkit::FromDosDateTime(wDosDate, wDosTime), [=](const FILETIME* pft) {
    return utFileTimeToSystemTime(pft, pstTarget, nMode);
  });
}

BOOL UT_API utSystemTimeToDosDateTime(const SYSTEMTIME* pstSource, LPWORD pwDosDate,
                                      LPWORD pwDosTime, INT nMode) {
  return tavkit::FormatThen(tavkit::FromSystemTime(pstSource), [=](const FILETIME* pft) {
    return utFileTimeToDosDateTime(pft, pwDosDate, pwDosTime, nMode);
  });
}
