// The operations of platform/win32.h as the system's own header declares them.
#ifndef PLATFORM_WINDOWS_WIN32_H
#define PLATFORM_WINDOWS_WIN32_H

#include <windows.h>

#endif  // PLATFORM_WINDOWS_WIN32_H
