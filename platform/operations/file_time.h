// Controls of the platform layer's time conversions.
#ifndef PLATFORM_OPERATIONS_FILE_TIME_H
#define PLATFORM_OPERATIONS_FILE_TIME_H

#include <win32.h>

namespace host {

// The minutes to add to local time for UTC; 0 at program start. The zone has no daylight saving
// time.
void SetZoneBias(int minutes);

// What a time conversion returns on success, 1 at program start.
void SetTimeSuccess(BOOL result);

}  // namespace host

#endif  // PLATFORM_OPERATIONS_FILE_TIME_H
