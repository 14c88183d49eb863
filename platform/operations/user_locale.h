// The user's settings of the platform layer: those of the locale that the environment names.
#ifndef PLATFORM_OPERATIONS_USER_LOCALE_H
#define PLATFORM_OPERATIONS_USER_LOCALE_H

#include <win32.h>

#include <string>

namespace host {

// Gives a setting a text of its own, in the active code page, in place of the locale's.
void SetLocaleText(LCTYPE type, const std::string& text);

}  // namespace host

#endif  // PLATFORM_OPERATIONS_USER_LOCALE_H
