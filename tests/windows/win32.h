// The operations of platform/win32.h as the system's own header declares them.
#ifndef TESTS_WINDOWS_WIN32_H
#define TESTS_WINDOWS_WIN32_H

#include <windows.h>

#endif  // TESTS_WINDOWS_WIN32_H
