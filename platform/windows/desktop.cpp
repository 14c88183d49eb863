// Windows and dialogs that tests make, as the controls of desktop.h describe them.
#include <desktop.h>

#include <string>
#include <vector>

#include "windows_system.h"

namespace {

std::vector<HWND> topWindows;

INT_PTR WINAPI HandleNothing(HWND, UINT, WPARAM, LPARAM) { return FALSE; }

HWND NewDialog() {
  struct {
    DLGTEMPLATE header;
    WORD menu, windowClass, title;
  } const dialog = {{WS_POPUP | WS_VISIBLE, 0, 0, 0, 0, 0, 0}, 0, 0, 0};
  topWindows.push_back(CreateDialogIndirectParamA(GetModuleHandleA(nullptr), &dialog.header,
                                                  nullptr, HandleNothing, 0));
  return topWindows.back();
}

}  // namespace

namespace windows {

void CloseWindows() {
  for (const HWND hWnd : topWindows) DestroyWindow(hWnd);
  topWindows.clear();
}

}  // namespace windows

namespace host {

HWND AddWindow(Window window) {
  const auto& [left, top, right, bottom] = window.rect;
  if (window.hWndParent == nullptr) {
    const HWND hDlg = NewDialog();
    MoveWindow(hDlg, left, top, right - left, bottom - top, FALSE);
    SetWindowTextA(hDlg, window.text.c_str());
    SendMessageA(hDlg, DM_SETDEFID, LOWORD(window.defaultId), 0);
    return hDlg;
  }
  const HWND hWnd =
      CreateWindowExA(0, window.isPushButton ? "BUTTON" : "EDIT", window.text.c_str(),
                      WS_CHILD | WS_VISIBLE | WS_TABSTOP | window.buttonStyle, left, top,
                      right - left, bottom - top, window.hWndParent,
                      reinterpret_cast<HMENU>(static_cast<INT_PTR>(window.id)), nullptr, nullptr);
  SendMessageA(hWnd, BM_SETCHECK, window.checkState, 0);
  return hWnd;
}

// What can be told of it as it is now; to change it there takes nothing.
Window& WindowOf(HWND hWnd) {
  static Window window;
  char text[64] = "";
  GetWindowTextA(hWnd, text, sizeof text);
  window.text = text;
  window.buttonStyle = GetWindowLongA(hWnd, GWL_STYLE) & BS_TYPEMASK;
  return window;
}

void SetFocus(HWND hWnd) { ::SetFocus(hWnd); }

// Counts those that were posted to a window, of the kind that the library posts.
unsigned RunMessages() {
  unsigned count = 0;
  for (MSG message; PeekMessageA(&message, nullptr, 0, 0, PM_REMOVE);) {
    count += message.message == WM_NEXTDLGCTL;
    DispatchMessageA(&message);
  }
  return count;
}

void SetString(HINSTANCE hModule, UINT idString, std::string text) {
  char there[64] = "";
  LoadStringA(hModule, idString, there, sizeof there);
  if (text != there) windows::onMissingControl("string resources made at run time");
}

}  // namespace host
