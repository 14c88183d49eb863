/*
 * A shopping list, which shows what TAVKIT does for a dialog. Add works while there is something to
 * add: then Enter adds it, and else Enter closes the window. The texts come from a string table in
 * two languages, and the controls follow the edges of a window that the user sizes.
 */
#include "shopping_list.h"

#include <tavkit.h>
#include <windows.h>

static HINSTANCE hModule;
static SIZE smallest; /* the window's */
static SIZE client;   /* as the controls were last placed in it */

/* The last line tells what Enter does, which the default button decides. */
static void ShowHint(HWND hDlg) {
  const UINT idString = utGetDlgDefButton(hDlg) == IDC_ADD ? IDS_ENTER_ADDS : IDS_ENTER_CLOSES;
  utSetDlgItemStringRes(hDlg, IDC_HINT, hModule, idString);
}

/* Where Add is disabled, Close takes over as the default, and the item as what has the focus. */
static void UpdateAdd(HWND hDlg) {
  if (GetWindowTextLengthA(GetDlgItem(hDlg, IDC_ITEM)) > 0) {
    utEnableDlgDefButton(hDlg, IDC_ADD, TRUE);
  } else {
    utDisableDlgDefButton(hDlg, IDC_ADD, IDC_ITEM, IDCANCEL);
  }
  ShowHint(hDlg);
}

/* Remove works while an item is selected. It is never the default. */
static void UpdateRemove(HWND hDlg) {
  if (SendDlgItemMessageA(hDlg, IDC_LIST, LB_GETCURSEL, 0, 0) != LB_ERR) {
    utEnableDlgDefButton(hDlg, IDC_REMOVE, FALSE);
  } else {
    utDisableDlgDefButton(hDlg, IDC_REMOVE, IDC_ITEM, 0);
  }
}

/* Emptying the item sends EN_CHANGE, which brings Add up to date. */
static void AddItem(HWND hDlg) {
  char szItem[80];
  GetDlgItemTextA(hDlg, IDC_ITEM, szItem, sizeof szItem);
  SendDlgItemMessageA(hDlg, IDC_LIST, LB_ADDSTRING, 0, (LPARAM)szItem);
  SetDlgItemTextA(hDlg, IDC_ITEM, "");
}

static void RemoveItem(HWND hDlg) {
  const LRESULT selected = SendDlgItemMessageA(hDlg, IDC_LIST, LB_GETCURSEL, 0, 0);
  SendDlgItemMessageA(hDlg, IDC_LIST, LB_DELETESTRING, (WPARAM)selected, 0);
  UpdateRemove(hDlg);
}

/* A thread's strings are in the language of its locale up to Windows XP, of its interface since. */
static void ShowTexts(HWND hDlg) {
  static const int ids[] = {IDC_ITEM_LABEL, IDC_ADD, IDC_REMOVE, IDCANCEL, IDC_ENGLISH, IDC_GERMAN};
  const int idLanguage = utWhichDlgButtonChecked(hDlg, IDC_ENGLISH, IDC_GERMAN);
  const LANGID language =
      MAKELANGID(idLanguage == IDC_GERMAN ? LANG_GERMAN : LANG_ENGLISH, SUBLANG_DEFAULT);
  size_t i;
  SetThreadLocale(MAKELCID(language, SORT_DEFAULT));
  SetThreadUILanguage(language);

  utSetWindowStringRes(hDlg, hModule, IDS_TITLE);
  for (i = 0; i < ARRAYSIZE(ids); ++i) utSetDlgItemStringRes(hDlg, ids[i], hModule, (UINT)ids[i]);
  ShowHint(hDlg);
}

/* The item and the list grow with the window, and what is beside or below them moves. */
static void FollowEdges(HWND hDlg, int width, int height) {
  static const int right[] = {IDC_ADD, IDC_REMOVE, IDCANCEL};
  static const int bottom[] = {IDC_ENGLISH, IDC_GERMAN, IDC_HINT};
  const int cx = width - client.cx, cy = height - client.cy;
  size_t i;
  utSizeWindowDelta(GetDlgItem(hDlg, IDC_ITEM), cx, 0);
  utSizeWindowDelta(GetDlgItem(hDlg, IDC_LIST), cx, cy);
  for (i = 0; i < ARRAYSIZE(right); ++i) utMoveChildDelta(GetDlgItem(hDlg, right[i]), cx, 0);
  for (i = 0; i < ARRAYSIZE(bottom); ++i) utMoveChildDelta(GetDlgItem(hDlg, bottom[i]), 0, cy);
  client.cx = width;
  client.cy = height;
}

static void Open(HWND hDlg) {
  const BOOL isGerman = PRIMARYLANGID(GetUserDefaultUILanguage()) == LANG_GERMAN;
  RECT window, inside;
  GetWindowRect(hDlg, &window);
  GetClientRect(hDlg, &inside);
  smallest.cx = window.right - window.left;
  smallest.cy = window.bottom - window.top;
  client.cx = inside.right;
  client.cy = inside.bottom;

  CheckRadioButton(hDlg, IDC_ENGLISH, IDC_GERMAN, isGerman ? IDC_GERMAN : IDC_ENGLISH);
  ShowTexts(hDlg);
  UpdateAdd(hDlg);
  UpdateRemove(hDlg);
}

static void HandleCommand(HWND hDlg, int id, int notification) {
  if (id == IDC_ITEM && notification == EN_CHANGE) UpdateAdd(hDlg);
  if (id == IDC_LIST && notification == LBN_SELCHANGE) UpdateRemove(hDlg);
  if (id == IDC_ADD) AddItem(hDlg);
  if (id == IDC_REMOVE) RemoveItem(hDlg);
  if (id == IDC_ENGLISH || id == IDC_GERMAN) ShowTexts(hDlg);
  if (id == IDCANCEL) EndDialog(hDlg, 0);
}

static INT_PTR CALLBACK HandleMessage(HWND hDlg, UINT message, WPARAM wParam, LPARAM lParam) {
  switch (message) {
    case WM_INITDIALOG:
      Open(hDlg);
      return TRUE;
    case WM_COMMAND:
      HandleCommand(hDlg, LOWORD(wParam), HIWORD(wParam));
      return TRUE;
    case WM_SIZE:
      if (wParam != SIZE_MINIMIZED) FollowEdges(hDlg, LOWORD(lParam), HIWORD(lParam));
      return TRUE;
    case WM_GETMINMAXINFO:
      ((MINMAXINFO*)lParam)->ptMinTrackSize.x = smallest.cx;
      ((MINMAXINFO*)lParam)->ptMinTrackSize.y = smallest.cy;
      return TRUE;
    default:
      return FALSE;
  }
}

int WINAPI WinMain(HINSTANCE hInstance, HINSTANCE hPrevious, LPSTR pszCommand, int show) {
  (void)hPrevious, (void)pszCommand, (void)show;
  hModule = hInstance;
  return DialogBoxParamA(hInstance, MAKEINTRESOURCEA(IDD_SHOPPING_LIST), NULL, HandleMessage, 0) <
         0;
}
