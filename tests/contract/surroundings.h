// What the contract of the platform operations is asked of: the platform layer, or Windows itself.
#ifndef TESTS_CONTRACT_SURROUNDINGS_H
#define TESTS_CONTRACT_SURROUNDINGS_H

#include <win32.h>

namespace contract {

extern const bool kIsLayer;

// As at program start, with nothing of an earlier test in the registry.
void StartAnew();

// False where the program runs under another code page, or zone, and can't change that.
bool UseCodePage(unsigned codePage);
// The same of the locale that goes with a code page here: "C" and Japanese.
bool UseLocale(unsigned codePage);
bool UseZone(int biasMinutes);

enum class Kind { kDialog, kButton, kEdit };

// A visible window without a frame, placed as Window::rect says; a button begins with a style.
HWND MakeWindow(Kind kind, RECT rect, HWND hWndParent = nullptr, int id = 0, UINT style = 0);
UINT ButtonStyle(HWND hWnd);
void RunMessages();

// Wide text, whichever type its units have.
inline LPCWSTR Wide(const char16_t* text) { return reinterpret_cast<LPCWSTR>(text); }

}  // namespace contract

#endif  // TESTS_CONTRACT_SURROUNDINGS_H
