// Moving and sizing windows by a difference, and texts of windows.
#include <tavkit/dialog.h>

#include <stddef.h>

#include "dialog/string_resource.h"

namespace tavkit {
namespace {

// A rectangle is two points, one after the other.
static_assert(sizeof(POINT) == 8 && sizeof(RECT) == 2 * sizeof(POINT));
static_assert(offsetof(RECT, top) == offsetof(POINT, y) && offsetof(RECT, right) == sizeof(POINT));

// Sums of coordinates wrap around.
INT Add(LONG n1, LONG n2) {
  return static_cast<INT>(static_cast<DWORD>(n1) + static_cast<DWORD>(n2));
}

INT Difference(LONG n1, LONG n2) {
  return static_cast<INT>(static_cast<DWORD>(n1) - static_cast<DWORD>(n2));
}

BOOL MoveDelta(BOOL(UT_API* getRect)(HWND, LPRECT), HWND hWnd, INT nDeltaX, INT nDeltaY) {
  RECT rect;
  const BOOL isRead = getRect(hWnd, &rect);
  if (isRead != 0) {
    SetWindowPos(hWnd, nullptr, Add(rect.left, nDeltaX), Add(rect.top, nDeltaY), 0, 0,
                 SWP_NOSIZE | SWP_NOZORDER);
  }
  return isRead;
}

}  // namespace
}  // namespace tavkit

using namespace tavkit;

BOOL UT_API utGetChildRect(HWND hWnd, LPRECT lpRect) {
  const BOOL isRead = GetWindowRect(hWnd, lpRect);
  if (isRead == 0) return FALSE;
  const HWND hWndParent = GetParent(hWnd);
  auto* const pCorners = reinterpret_cast<LPPOINT>(lpRect);
  ScreenToClient(hWndParent, pCorners);
  ScreenToClient(hWndParent, pCorners + 1);
  return isRead;
}

BOOL UT_API utMoveWindowDelta(HWND hWnd, INT nDeltaX, INT nDeltaY) {
  return MoveDelta(GetWindowRect, hWnd, nDeltaX, nDeltaY);
}

BOOL UT_API utMoveChildDelta(HWND hWnd, INT nDeltaX, INT nDeltaY) {
  return MoveDelta(utGetChildRect, hWnd, nDeltaX, nDeltaY);
}

BOOL UT_API utSizeWindowDelta(HWND hWnd, INT nDeltaWidth, INT nDeltaHeight) {
  RECT rect;
  const BOOL isRead = GetWindowRect(hWnd, &rect);
  if (isRead != 0) {
    const INT cx = Difference(rect.right, rect.left);
    const INT cy = Difference(rect.bottom, rect.top);
    SetWindowPos(hWnd, nullptr, 0, 0, Add(cx, nDeltaWidth), Add(cy, nDeltaHeight),
                 SWP_NOMOVE | SWP_NOZORDER);
  }
  return isRead;
}

INT UT_API utSetWindowStringRes(HWND hWnd, HINSTANCE hModule, UINT idString) {
  const StringResource text(hModule, idString);
  return text.cchLoaded < 1 ? text.cchLoaded : SetWindowTextA(hWnd, text.szText);
}
