/**
 * @defgroup dialog Windows and dialogs
 *
 * Windows and dialogs: moving and sizing by a difference, texts from string resources, and the
 * default button of a dialog, kept right while buttons are enabled and disabled.
 *
 * Where the last page of a wizard opens, Finish works and is the default; then Next no longer
 * works, and Finish takes over the focus if Next has it:
 *
 * @code
 * utEnableDlgDefButton(hDlg, IDC_FINISH, 1);
 * utDisableDlgDefButton(hDlg, IDC_NEXT, IDC_FINISH, IDC_FINISH);
 * @endcode
 *
 * A dialog's default button shows in two places, which these functions move together: the id that
 * the dialog holds and the style of each button. The library keeps no id: each call asks the dialog
 * or is told by its caller. An id of 0 means no control in idFocus, idDefault and idOld, and no
 * default in the result of utGetDlgDefButton.
 *
 * A window handle goes to the platform as it is, a NULL or foreign one too; what the platform
 * answers then decides. No handle is kept. What the platform does, as it is documented:
 *
 * - Moving and sizing activate the window, and activation brings a top-level window to the top of
 *   the Z order, also where the differences are 0: SetWindowPos is called without SWP_NOACTIVATE.
 * - The parent that GetParent gives of a popup window is its owner.
 * - BM_SETSTYLE replaces a button's type: where a button becomes or stops being the default one, an
 *   owner-drawn button or a check box becomes a push button. So name push buttons only.
 * - WM_NEXTDLGCTL, which moves the focus, also moves the default look to a push button that gets
 *   the focus, and leaves the dialog's id alone. So an idFocus that is a push button other than
 *   idDefault leaves the id and the look apart.
 * - A dialog whose template has no default button answers DM_GETDEFID with the id 1 (IDOK), whether
 *   it has such a control or not.
 * - GetFocus knows the windows of the calling thread only: call from the dialog's thread.
 *
 * @{
 */
#ifndef TAVKIT_DIALOG_H
#define TAVKIT_DIALOG_H

#include "types.h"

/**
 * Gives a window's rectangle in the client coordinates of its parent, of its owner if it is a popup
 * window. The two corners are converted one by one; a corner that the platform does not convert
 * keeps its screen coordinates, as do both in a window without a parent. In a mirrored parent,
 * whose coordinates run from right to left, left comes out larger than right.
 *
 * @param hWnd   the window.
 * @param lpRect receives the rectangle; not NULL. Its content is undefined where the result is 0.
 * @return non-zero, as the platform gave it, if the rectangle was read, else 0.
 */
UT_EXPORT(150) BOOL UT_API utGetChildRect(HWND hWnd, LPRECT lpRect);

/**
 * Moves a top-level window from where it is; its size stays. The platform is called for deltas of 0
 * too, and activates the window (see the overview). A position outside 32 bits wraps around.
 *
 * @param hWnd    the window. For a child window use utMoveChildDelta.
 * @param nDeltaX pixels to the right, negative to the left.
 * @param nDeltaY pixels down, negative up.
 * @return non-zero, as the platform gave it, if the window's rectangle could be read, also where
 *         the move itself then failed; else 0, and nothing was moved.
 */
UT_EXPORT(151) BOOL UT_API utMoveWindowDelta(HWND hWnd, INT nDeltaX, INT nDeltaY);

/**
 * Sizes a window, frame included, from the size it has; its position stays. The platform is called
 * for deltas of 0 too, and activates the window (see the overview). There is no lower limit: what
 * passes the present size reaches the platform as a negative size. A size outside 32 bits wraps
 * around.
 *
 * @param hWnd         the window, top-level or child.
 * @param nDeltaWidth  pixels to add to its width; negative shrinks it.
 * @param nDeltaHeight pixels to add to its height; negative shrinks it.
 * @return as utMoveWindowDelta.
 */
UT_EXPORT(152) BOOL UT_API utSizeWindowDelta(HWND hWnd, INT nDeltaWidth, INT nDeltaHeight);

/**
 * Moves a child window from where it is in its parent; else as utMoveWindowDelta. The place is the
 * left one of utGetChildRect: in a mirrored parent the window also moves by its own width, since
 * the platform sets its right edge there. A popup window has its place in its owner's coordinates,
 * where the platform takes the screen's: move it with utMoveWindowDelta.
 *
 * @param hWnd    the child window.
 * @param nDeltaX pixels to the right, negative to the left.
 * @param nDeltaY pixels down, negative up.
 * @return as utMoveWindowDelta.
 */
UT_EXPORT(153) BOOL UT_API utMoveChildDelta(HWND hWnd, INT nDeltaX, INT nDeltaY);

/**
 * Sets a window's text from a string resource, which the platform's LoadStringA cuts to 255 bytes.
 * A missing or an empty string leaves the text as it was, so this can't clear a text.
 *
 * @param hWnd     the window.
 * @param hModule  the module that holds the string.
 * @param idString the string's id.
 * @return non-zero, as the platform gave it, if the text was set; the platform's result, which is 0
 *         for a missing string, if no string could be loaded or the text could not be set.
 */
UT_EXPORT(160) INT UT_API utSetWindowStringRes(HWND hWnd, HINSTANCE hModule, UINT idString);

/**
 * Tells which button of a dialog is the default.
 *
 * @param hDlg the dialog.
 * @return the button's id, 0 to 0xFFFF; 0 if the dialog says that it has no default. One whose
 *         template has no default button says 1 (IDOK).
 */
UT_EXPORT(180) DWORD UT_API utGetDlgDefButton(HWND hDlg);

/**
 * Finds the checked control of a group. The platform's IsDlgButtonChecked is asked for the ids in
 * rising order, up to the first that is checked; one that is indeterminate or missing is passed
 * over.
 *
 * @param hDlg    the dialog.
 * @param idFirst the first id of the group, any signed number.
 * @param idLast  the last id of the group; below idFirst the group is empty.
 * @return the id of the first checked control; 0 if there is none, or if its id is 0.
 */
UT_EXPORT(181) INT UT_API utWhichDlgButtonChecked(HWND hDlg, INT idFirst, INT idLast);

/**
 * Sets a control's text from a string resource, as utSetWindowStringRes does for a window.
 *
 * @param hDlg     the dialog.
 * @param idItem   the control.
 * @param hModule  the module that holds the string.
 * @param idString the string's id.
 * @return as utSetWindowStringRes.
 */
UT_EXPORT(182)
INT UT_API utSetDlgItemStringRes(HWND hDlg, INT idItem, HINSTANCE hModule, UINT idString);

/**
 * Disables a control, and first hands on what it must not keep: the default, if it is the default
 * button, and the focus, if it has it. A control that is missing or already disabled changes
 * nothing.
 *
 * The focus moves by a posted message, so when the dialog's thread next handles its messages. Until
 * then no control has it, since the platform takes it from a window that is disabled.
 *
 * @param hDlg      the dialog.
 * @param idButton  the control to disable. It is the default if its id is what utGetDlgDefButton
 *                  gives, all 32 bits compared; an id of 0 is so in a dialog without a default.
 * @param idFocus   the control to take over the focus. With 0 the focus goes nowhere: no control
 *                  has it once the one that has it is disabled. For a missing control the message
 *                  is posted with a NULL handle.
 * @param idDefault the button to take over as the default, a push button; 0 leaves the default
 *                  where it is.
 * @return nothing to go by: 0 if the control was missing or already disabled, else what the
 *         platform gave for disabling it, which is 0 too for a control that was enabled.
 */
UT_EXPORT(183)
BOOL UT_API utDisableDlgDefButton(HWND hDlg, INT idButton, INT idFocus, INT idDefault);

/**
 * Enables a control and, if told so, makes it the default button, also where it was enabled
 * already. The button that was the default gives up its default look. The focus stays where it is.
 *
 * @param hDlg         the dialog.
 * @param idButton     the control to enable. It is the default already if its id is what
 *                     utGetDlgDefButton gives, all 32 bits compared; an id of 0 is so in a dialog
 *                     without a default.
 * @param fMakeDefault non-zero to make it the default.
 */
UT_EXPORT(184) void UT_API utEnableDlgDefButton(HWND hDlg, INT idButton, BOOL fMakeDefault);

/**
 * Makes a button the default one. The dialog isn't asked which button was the default before.
 *
 * @param hDlg  the dialog.
 * @param idNew the new default, a push button.
 * @param idOld the push button to give up the default look; 0 for none. Not compared with idNew.
 */
UT_EXPORT(185) void UT_API utSetDlgButtonAsDefault(HWND hDlg, INT idNew, INT idOld);

/** @} */

#endif /* TAVKIT_DIALOG_H */
