// The default button of a dialog, the checked button of a group, and texts of controls.
#include <tavkit/dialog.h>

#include "dialog/string_resource.h"

namespace tavkit {
namespace {

void SetButtonStyle(HWND hDlg, INT idButton, WPARAM style) {
  SendDlgItemMessageA(hDlg, idButton, BM_SETSTYLE, style, TRUE);
}

bool IsDefault(INT idButton, DWORD idDefault) { return static_cast<DWORD>(idButton) == idDefault; }

}  // namespace
}  // namespace tavkit

using namespace tavkit;

DWORD UT_API utGetDlgDefButton(HWND hDlg) {
  const auto dwAnswer = static_cast<DWORD>(SendMessageA(hDlg, DM_GETDEFID, 0, 0));
  return dwAnswer >> 16 == DC_HASDEFID ? dwAnswer & 0xFFFF : 0;
}

void UT_API utSetDlgButtonAsDefault(HWND hDlg, INT idNew, INT idOld) {
  if (idOld != 0) SetButtonStyle(hDlg, idOld, BS_PUSHBUTTON);
  SendMessageA(hDlg, DM_SETDEFID, static_cast<WPARAM>(idNew), 0);
  SetButtonStyle(hDlg, idNew, BS_DEFPUSHBUTTON);
}

BOOL UT_API utDisableDlgDefButton(HWND hDlg, INT idButton, INT idFocus, INT idDefault) {
  const HWND hWndButton = GetDlgItem(hDlg, idButton);
  if (!IsWindowEnabled(hWndButton)) return FALSE;
  if (idDefault != 0 && IsDefault(idButton, utGetDlgDefButton(hDlg))) {
    utSetDlgButtonAsDefault(hDlg, idDefault, idButton);
  }
  // Posted, not sent: the dialog manager moves the focus when the control is already disabled.
  if (idFocus != 0 && GetFocus() == hWndButton) {
    const HWND hWndFocus = GetDlgItem(hDlg, idFocus);
    PostMessageA(hDlg, WM_NEXTDLGCTL, reinterpret_cast<WPARAM>(hWndFocus), TRUE);
  }
  return EnableWindow(hWndButton, FALSE);
}

void UT_API utEnableDlgDefButton(HWND hDlg, INT idButton, BOOL fMakeDefault) {
  const HWND hWndButton = GetDlgItem(hDlg, idButton);
  if (!IsWindowEnabled(hWndButton)) EnableWindow(hWndButton, TRUE);
  if (fMakeDefault == 0) return;
  const DWORD idDefault = utGetDlgDefButton(hDlg);
  if (!IsDefault(idButton, idDefault)) {
    utSetDlgButtonAsDefault(hDlg, idButton, static_cast<INT>(idDefault));
  }
}

INT UT_API utWhichDlgButtonChecked(HWND hDlg, INT idFirst, INT idLast) {
  if (idFirst > idLast) return 0;
  // The end is checked before the step: idLast may be the largest number.
  for (INT id = idFirst;; ++id) {
    if (IsDlgButtonChecked(hDlg, id) == BST_CHECKED) return id;
    if (id == idLast) return 0;
  }
}

INT UT_API utSetDlgItemStringRes(HWND hDlg, INT idItem, HINSTANCE hModule, UINT idString) {
  const StringResource text(hModule, idString);
  return text.cchLoaded < 1 ? text.cchLoaded : SetDlgItemTextA(hDlg, idItem, text.szText);
}
