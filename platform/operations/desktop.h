// A small desktop: windows and dialogs, the focus, posted messages and string tables. It is for one
// thread at a time.
#ifndef PLATFORM_OPERATIONS_DESKTOP_H
#define PLATFORM_OPERATIONS_DESKTOP_H

#include <win32.h>

#include <string>

namespace host {

struct Window {
  HWND hWndParent = nullptr;  // NULL for a top-level window
  int id = 0;                 // as a control of its parent
  RECT rect = {};             // in the parent's client area, or on the screen
  POINT client = {};          // where its own client area starts, from its top left corner
  std::string text = {};
  bool isEnabled = true;
  bool isPushButton = true;
  UINT buttonStyle = BS_PUSHBUTTON;
  UINT checkState = 0;
  DWORD defaultId = 0;  // of a dialog: its answer to DM_GETDEFID
};

HWND AddWindow(Window window);

// A window that is there, to look at or to change.
Window& WindowOf(HWND hWnd);

// Gives the focus to a window, or to none. Which one has it, GetFocus() tells.
void SetFocus(HWND hWnd);

// Lets windows handle what was posted to them, in order. Returns how many messages there were.
unsigned RunMessages();

// Puts a string into a module's string table, in which 16 bits of its number count.
void SetString(HINSTANCE hModule, UINT idString, std::string text);

// What the operations on windows give for success, 1 at program start: any other non-zero value
// shows whether a result is handed on unchanged. Questions (IsWindowEnabled, EnableWindow) answer
// with it too.
void SetSuccess(BOOL value);

}  // namespace host

#endif  // PLATFORM_OPERATIONS_DESKTOP_H
