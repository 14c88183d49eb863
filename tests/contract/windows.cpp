// On Windows the environment chooses code page and zone for the whole process.
#include "surroundings.h"

namespace contract {

const bool kIsLayer = false;

void StartAnew() { RegDeleteTreeA(HKEY_CURRENT_USER, "Software\\Contract"); }

bool UseCodePage(unsigned codePage) { return codePage == GetACP(); }

bool UseLocale(unsigned codePage) { return UseCodePage(codePage); }

bool UseZone(int biasMinutes) {
  TIME_ZONE_INFORMATION zone;
  GetTimeZoneInformation(&zone);
  return zone.Bias == biasMinutes;
}

namespace {

INT_PTR CALLBACK LeaveToTheSystem(HWND, UINT, WPARAM, LPARAM) { return FALSE; }

}  // namespace

HWND MakeWindow(Kind kind, RECT rect, HWND hWndParent, int id, UINT style) {
  HWND hWnd;
  if (kind == Kind::kDialog) {
    const struct {
      DLGTEMPLATE dialog = {WS_POPUP | WS_VISIBLE, 0, 0, 0, 0, 9, 9};
      WORD menu = 0, windowClass = 0, title = 0;
    } form;
    hWnd = CreateDialogIndirectParamA(nullptr, &form.dialog, hWndParent, LeaveToTheSystem, 0);
  } else {
    hWnd = CreateWindowA(kind == Kind::kButton ? "BUTTON" : "EDIT", "",
                         WS_CHILD | WS_VISIBLE | WS_TABSTOP | style, 0, 0, 9, 9, hWndParent,
                         reinterpret_cast<HMENU>(static_cast<INT_PTR>(id)), nullptr, nullptr);
  }
  SetWindowPos(hWnd, nullptr, rect.left, rect.top, rect.right - rect.left, rect.bottom - rect.top,
               SWP_NOZORDER);
  return hWnd;
}

UINT ButtonStyle(HWND hWnd) { return GetWindowLongA(hWnd, GWL_STYLE) & 0xF; }

void RunMessages() {
  for (MSG msg; PeekMessageA(&msg, nullptr, 0, 0, PM_REMOVE);) DispatchMessageA(&msg);
}

}  // namespace contract
