#include "desktop.h"

#include <algorithm>
#include <cstring>
#include <utility>

#include "codepage.h"
#include "host.h"
#include "state.h"

namespace host {
namespace {

BOOL Answer(bool is) { return is ? state->desktop.success : FALSE; }

Window* Find(HWND hWnd) {
  const auto found = state->desktop.windows.find(hWnd);
  return found == state->desktop.windows.end() ? nullptr : &found->second;
}

HWND FindItem(HWND hDlg, int idItem) {
  if (hDlg == nullptr) return nullptr;
  for (const auto& [hWnd, window] : state->desktop.windows) {
    if (window.hWndParent == hDlg && window.id == idItem) return hWnd;
  }
  return nullptr;
}

LONG Sum(LONG a, LONG b) {
  return static_cast<LONG>(static_cast<DWORD>(a) + static_cast<DWORD>(b));
}
POINT Sum(POINT a, POINT b) { return {Sum(a.x, b.x), Sum(a.y, b.y)}; }
// Positions and sizes are kept as 16-bit numbers.
LONG Clamp(LONG a) { return std::clamp(a, -0x8000, 0x7FFF); }
LONG Negative(LONG a) { return static_cast<LONG>(-static_cast<DWORD>(a)); }

// Where a window's client area starts on the screen; that of no window is the screen itself.
POINT ClientOrigin(HWND hWnd) {
  const auto* window = Find(hWnd);
  if (window == nullptr) return {};
  const POINT inParent = Sum({window->rect.left, window->rect.top}, window->client);
  return Sum(ClientOrigin(window->hWndParent), inParent);
}

bool IsPushButton(HWND hWnd) {
  const auto* const window = Find(hWnd);
  return window != nullptr && window->isPushButton;
}

// The button of a dialog that looks like the default: the one of this id, if it does.
HWND FindDefaultLook(HWND hDlg, int idFirst) {
  const auto looks = [](HWND hWnd) {
    return IsPushButton(hWnd) && Find(hWnd)->buttonStyle == BS_DEFPUSHBUTTON;
  };
  const HWND hWndFirst = FindItem(hDlg, idFirst);
  if (looks(hWndFirst)) return hWndFirst;
  for (const auto& [hWnd, window] : state->desktop.windows) {
    if (window.hWndParent == hDlg && looks(hWnd)) return hWnd;
  }
  return nullptr;
}

// Moves the look of the default within a dialog, to a push button or to none.
void MoveDefaultLook(HWND hDlg, int idDefault, HWND hWndNew) {
  const HWND hWndOld = FindDefaultLook(hDlg, idDefault);
  if (hWndOld != nullptr) Find(hWndOld)->buttonStyle = BS_PUSHBUTTON;
  if (hWndNew != nullptr) Find(hWndNew)->buttonStyle = BS_DEFPUSHBUTTON;
}

int DefaultIdOf(const Window& dialog) { return static_cast<int>(dialog.defaultId & 0xFFFF); }

// The id of no control, or of one that is no push button, is remembered all the same.
LRESULT SetDefaultId(HWND hDlg, Window& dialog, DWORD id) {
  const HWND hWndNew = FindItem(hDlg, static_cast<int>(id));
  if (hWndNew == nullptr || IsPushButton(hWndNew)) {
    MoveDefaultLook(hDlg, DefaultIdOf(dialog), hWndNew);
  }
  dialog.defaultId = id == 0 ? 0 : DC_HASDEFID << 16 | (id & 0xFFFF);
  return TRUE;
}

// The focus goes to a control that can take it. A button with the focus looks like the default;
// while another control has it, the default itself does.
void MoveFocus(HWND hDlg, const Window& dialog, HWND hWndNext) {
  const auto* const next = Find(hWndNext);
  if (next != nullptr && next->isEnabled) SetFocus(hWndNext);
  const int idDefault = DefaultIdOf(dialog);
  if (next != nullptr && !next->isPushButton) hWndNext = FindItem(hDlg, idDefault);
  MoveDefaultLook(hDlg, idDefault, IsPushButton(hWndNext) ? hWndNext : nullptr);
}

// What a window does with a message.
LRESULT Handle(const Message& message) {
  auto* const window = Find(message.hWnd);
  if (window == nullptr) return 0;
  switch (message.uMsg) {
    case DM_GETDEFID:
      return static_cast<LRESULT>(window->defaultId);
    case DM_SETDEFID:
      return SetDefaultId(message.hWnd, *window, static_cast<DWORD>(message.wParam));
    case BM_SETSTYLE:
      if (window->isPushButton) window->buttonStyle = message.wParam & 0xFFFF;
      return 0;
    case WM_NEXTDLGCTL:
      if (message.lParam != 0) {
        MoveFocus(message.hWnd, *window, reinterpret_cast<HWND>(message.wParam));
      }
      return 0;
    default:
      return 0;
  }
}

BOOL SetText(HWND hWnd, LPCSTR psz) {
  auto* const window = Find(hWnd);
  if (window == nullptr) return FALSE;
  window->text = psz == nullptr ? "" : psz;
  return state->desktop.success;
}

}  // namespace

HWND AddWindow(Window window) {
  const auto hWnd = reinterpret_cast<HWND>(0x10004 + 2 * state->desktop.windows.size());
  state->desktop.windows.emplace(hWnd, std::move(window));
  return hWnd;
}

Window& WindowOf(HWND hWnd) { return state->desktop.windows.at(hWnd); }

void SetFocus(HWND hWnd) { state->desktop.hWndFocus = hWnd; }

unsigned RunMessages() {
  unsigned count = 0;
  for (; !state->desktop.posted.empty(); ++count) {
    const Message message = state->desktop.posted.front();
    state->desktop.posted.pop_front();
    Handle(message);
  }
  return count;
}

void SetString(HINSTANCE hModule, UINT idString, std::string text) {
  state->desktop.strings[{hModule, idString & 0xFFFF}] = std::move(text);
}

void SetSuccess(BOOL value) { state->desktop.success = value; }

}  // namespace host

BOOL UT_API GetWindowRect(HWND hWnd, LPRECT lpRect) {
  if (host::Fails(__func__, hWnd, lpRect) || lpRect == nullptr) return FALSE;
  const auto* const window = host::Find(hWnd);
  if (window == nullptr) return FALSE;
  const POINT origin = host::ClientOrigin(window->hWndParent);
  *lpRect = {host::Sum(window->rect.left, origin.x), host::Sum(window->rect.top, origin.y),
             host::Sum(window->rect.right, origin.x), host::Sum(window->rect.bottom, origin.y)};
  return host::state->desktop.success;
}

HWND UT_API GetParent(HWND hWnd) {
  if (host::Fails(__func__, hWnd)) return nullptr;
  const auto* const window = host::Find(hWnd);
  return window == nullptr ? nullptr : window->hWndParent;
}

BOOL UT_API ScreenToClient(HWND hWnd, LPPOINT lpPoint) {
  if (host::Fails(__func__, hWnd, lpPoint) || host::Find(hWnd) == nullptr) return FALSE;
  const POINT origin = host::ClientOrigin(hWnd);
  *lpPoint = host::Sum(*lpPoint, {host::Negative(origin.x), host::Negative(origin.y)});
  return host::state->desktop.success;
}

// A position is in the parent's client area, or on the screen; children go along with their parent.
BOOL UT_API SetWindowPos(HWND hWnd, HWND hWndInsertAfter, int x, int y, int cx, int cy,
                         UINT uFlags) {
  if (host::Fails(__func__, hWnd, hWndInsertAfter, x, y, cx, cy, uFlags)) return FALSE;
  auto* const window = host::Find(hWnd);
  if (window == nullptr) return FALSE;
  RECT& rect = window->rect;
  if (uFlags & SWP_NOMOVE) x = rect.left, y = rect.top;
  if (uFlags & SWP_NOSIZE) {
    cx = host::Sum(rect.right, host::Negative(rect.left));
    cy = host::Sum(rect.bottom, host::Negative(rect.top));
  }
  x = host::Clamp(x), y = host::Clamp(y);
  rect = {x, y, x + std::max(host::Clamp(cx), 0), y + std::max(host::Clamp(cy), 0)};
  return host::state->desktop.success;
}

BOOL UT_API SetWindowTextA(HWND hWnd, LPCSTR psz) {
  return host::Fails(__func__, hWnd, psz) ? FALSE : host::SetText(hWnd, psz);
}

BOOL UT_API IsWindowEnabled(HWND hWnd) {
  if (host::Fails(__func__, hWnd)) return FALSE;
  const auto* const window = host::Find(hWnd);
  return host::Answer(window != nullptr && window->isEnabled);
}

// The answer: whether the window was disabled before.
BOOL UT_API EnableWindow(HWND hWnd, BOOL fEnable) {
  if (host::Fails(__func__, hWnd, fEnable)) return FALSE;
  auto* const window = host::Find(hWnd);
  if (window == nullptr) return FALSE;
  // Who can't have the focus loses it.
  if (fEnable == 0 && host::state->desktop.hWndFocus == hWnd) host::SetFocus(nullptr);
  return host::Answer(!std::exchange(window->isEnabled, fEnable != 0));
}

HWND UT_API GetFocus() { return host::Fails(__func__) ? nullptr : host::state->desktop.hWndFocus; }

// A planned failure gives the failure's code, 0 or a negative number, as the result.
int UT_API LoadStringA(HINSTANCE hModule, UINT idString, LPSTR psz, int cch) {
  if (host::Fails(__func__, hModule, idString, psz, cch)) {
    return static_cast<int>(host::FailureCode());
  }
  const auto found = host::state->desktop.strings.find({hModule, idString & 0xFFFF});
  if (cch < 1) return 0;
  std::string text;
  if (found != host::state->desktop.strings.end()) {
    const std::string& whole = found->second;
    // As many whole characters as fit.
    for (std::size_t next = 0; text.size() < whole.size(); text = whole.substr(0, next)) {
      next += host::CharacterLength(whole, next);
      if (next >= static_cast<std::size_t>(cch)) break;
    }
  }
  std::memcpy(psz, text.c_str(), text.size() + 1);
  return static_cast<int>(text.size());
}

LRESULT UT_API SendMessageA(HWND hWnd, UINT uMsg, WPARAM wParam, LPARAM lParam) {
  if (host::Fails(__func__, hWnd, uMsg, wParam, lParam)) return 0;
  return host::Handle({hWnd, uMsg, wParam, lParam});
}

BOOL UT_API PostMessageA(HWND hWnd, UINT uMsg, WPARAM wParam, LPARAM lParam) {
  if (host::Fails(__func__, hWnd, uMsg, wParam, lParam)) return FALSE;
  if (host::Find(hWnd) == nullptr) return FALSE;
  host::state->desktop.posted.push_back({hWnd, uMsg, wParam, lParam});
  return host::state->desktop.success;
}

HWND UT_API GetDlgItem(HWND hDlg, int idItem) {
  return host::Fails(__func__, hDlg, idItem) ? nullptr : host::FindItem(hDlg, idItem);
}

LRESULT UT_API SendDlgItemMessageA(HWND hDlg, int idItem, UINT uMsg, WPARAM wParam, LPARAM lParam) {
  if (host::Fails(__func__, hDlg, idItem, uMsg, wParam, lParam)) return 0;
  return host::Handle({host::FindItem(hDlg, idItem), uMsg, wParam, lParam});
}

BOOL UT_API SetDlgItemTextA(HWND hDlg, int idItem, LPCSTR psz) {
  if (host::Fails(__func__, hDlg, idItem, psz)) return FALSE;
  return host::SetText(host::FindItem(hDlg, idItem), psz);
}

UINT UT_API IsDlgButtonChecked(HWND hDlg, int idItem) {
  if (host::Fails(__func__, hDlg, idItem)) return 0;
  const auto* const window = host::Find(host::FindItem(hDlg, idItem));
  return window == nullptr ? 0 : window->checkState;
}
