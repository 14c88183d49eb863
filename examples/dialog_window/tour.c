/*
 * Uses the shopping list as its user does, from another process, and compares what the window shows
 * after each step with what it should show. Both programs lie in the folder that it is started in.
 *
 * Usage: tour [FOLDER]     FOLDER: where to put the pictures; it is there already
 */
#include <windows.h>

#include <stdio.h>
#include <string.h>

#include "picture.h"
#include "shopping_list.h"

enum { kPatience = 10000, kInterval = 20, kTimeToDraw = 300 }; /* in milliseconds */

typedef char State[512]; /* in UTF-8 */

static int passed, failed;
static HWND hDlg;
static RECT opened[IDC_GERMAN + 1]; /* where each control was when the window opened */

static HWND Control(int id) { return GetDlgItem(hDlg, id); }

static HWND Focus(void) {
  GUITHREADINFO info = {.cbSize = sizeof info};
  GetGUIThreadInfo(GetWindowThreadProcessId(hDlg, NULL), &info);
  return info.hwndFocus;
}

static RECT PlaceOf(int id) {
  RECT place = {0, 0, 0, 0};
  GetWindowRect(Control(id), &place);
  MapWindowPoints(NULL, hDlg, (POINT*)&place, 2);
  return place;
}

/* What the user does. Keys and clicks are posted: the dialog's message loop gets them, as input. */

static void Click(int id) {
  const LPARAM place = MAKELPARAM(8, 6);
  PostMessageA(Control(id), WM_LBUTTONDOWN, MK_LBUTTON, place);
  PostMessageA(Control(id), WM_LBUTTONUP, 0, place);
}

static void Type(const char* pszText) {
  Click(IDC_ITEM);
  for (; *pszText != 0; ++pszText) PostMessageA(Control(IDC_ITEM), WM_CHAR, (WPARAM)*pszText, 1);
}

static void Grow(int width, int height) {
  RECT now;
  GetWindowRect(hDlg, &now);
  SetWindowPos(hDlg, NULL, 0, 0, now.right - now.left + width, now.bottom - now.top + height,
               SWP_NOMOVE | SWP_NOZORDER);
}

static void Wait(void) {}
static void TypeBread(void) { Type("Bread"); }
static void TypeTea(void) { Type("Tea"); }
static void TypeBrot(void) { Type("Brot"); }
static void PressEnter(void) { PostMessageA(Focus(), WM_KEYDOWN, VK_RETURN, 1); }
static void ClickAdd(void) { Click(IDC_ADD); }
static void ClickList(void) { Click(IDC_LIST); }
static void ClickRemove(void) { Click(IDC_REMOVE); }
static void ClickGerman(void) { Click(IDC_GERMAN); }
static void GrowBothWays(void) { Grow(60, 40); }
static void ShrinkTooFar(void) { Grow(-40, -90); }

/* What the window shows, as text. */

/* A window's text as it is read, without the mark of its access key. */
static const char* TextOf(HWND hWnd) {
  static State text;
  WCHAR wide[128] = {0};
  char* pMark;
  SendMessageW(hWnd, WM_GETTEXT, ARRAYSIZE(wide), (LPARAM)wide);
  WideCharToMultiByte(CP_UTF8, 0, wide, -1, text, sizeof text, NULL, NULL);
  if ((pMark = strchr(text, '&')) != NULL) memmove(pMark, pMark + 1, strlen(pMark));
  return text;
}

/* A control goes by its text, and the list by its kind. */
static const char* NameOf(HWND hWnd) {
  if (hWnd == NULL) return "nothing";
  if (hWnd == Control(IDC_LIST)) return "list";
  return TextOf(hWnd == Control(IDC_ITEM) ? Control(IDC_ITEM_LABEL) : hWnd);
}

static void Append(char* pszState, const char* psz) { strcat(pszState, psz); }

/* "-Add": it is disabled. "[Add]": it is the default, by the dialog's id and by its own look. */
static void AppendButton(char* pszState, int id) {
  const LONG style = GetWindowLongA(Control(id), GWL_STYLE);
  Append(pszState, style & WS_DISABLED ? " -" : " ");
  Append(pszState, LOWORD(SendMessageA(hDlg, DM_GETDEFID, 0, 0)) == id ? "[" : "");
  Append(pszState, TextOf(Control(id)));
  Append(pszState, (style & BS_TYPEMASK) == BS_DEFPUSHBUTTON ? "]" : "");
}

/* By how many pixels the edges of a control have moved since the window opened, if they have. */
static void AppendShift(char* pszState, const char* pszName, int id) {
  const RECT now = PlaceOf(id), then = opened[id];
  if (memcmp(&now, &then, sizeof now) == 0) return;
  sprintf(pszState + strlen(pszState), ", %s %+ld%+ld%+ld%+ld", pszName, now.left - then.left,
          now.top - then.top, now.right - then.right, now.bottom - then.bottom);
}

static void Describe(State state) {
  strcpy(state, TextOf(hDlg));
  Append(state, ":");
  AppendButton(state, IDC_ADD);
  AppendButton(state, IDC_REMOVE);
  AppendButton(state, IDCANCEL);
  Append(state, ", focus ");
  Append(state, NameOf(Focus()));
  sprintf(state + strlen(state), ", items %d",
          (int)SendMessageA(Control(IDC_LIST), LB_GETCOUNT, 0, 0));
  AppendShift(state, "Add", IDC_ADD);
  AppendShift(state, "list", IDC_LIST);
  AppendShift(state, "hint", IDC_HINT);
  Append(state, ". ");
  Append(state, TextOf(Control(IDC_HINT)));
}

/* Waits until the window shows a state. What it shows in the end is in `shown`. */
static BOOL Shows(const char* pszState, State shown) {
  int waited;
  for (waited = 0; waited < kPatience; waited += kInterval) {
    Describe(shown);
    if (strcmp(shown, pszState) == 0) return TRUE;
    Sleep(kInterval);
  }
  return FALSE;
}

/* The tour. */

typedef struct {
  const char* pszStep;
  void (*act)(void);
  const char* pszPicture;
  const char* pszState;
} Step;

static const Step steps[] = {
    {"the window opens: Close is the default", Wait, NULL,
     "Shopping list: -Add -Remove [Close], focus Item:, items 0. Enter closes the window."},
    {"what is typed makes Add the default", TypeBread, NULL,
     "Shopping list: [Add] -Remove Close, focus Item:, items 0. Enter adds the item."},
    {"Enter adds it, and Close is the default again", PressEnter, NULL,
     "Shopping list: -Add -Remove [Close], focus Item:, items 1. Enter closes the window."},
    {"something else is typed", TypeTea, "shopping_list_add.png",
     "Shopping list: [Add] -Remove Close, focus Item:, items 1. Enter adds the item."},
    {"a click on Add adds it, and the focus goes back", ClickAdd, "shopping_list_close.png",
     "Shopping list: -Add -Remove [Close], focus Item:, items 2. Enter closes the window."},
    {"an item is selected, and Remove enabled", ClickList, NULL,
     "Shopping list: -Add Remove [Close], focus list, items 2. Enter closes the window."},
    {"a click on Remove disables it, and the focus goes back", ClickRemove, NULL,
     "Shopping list: -Add -Remove [Close], focus Item:, items 1. Enter closes the window."},
    {"the texts change to German", ClickGerman, NULL,
     "Einkaufsliste: -Hinzufügen -Entfernen [Schließen], focus Deutsch, items 1. "
     "Die Eingabetaste schließt."},
    {"what is typed makes Hinzufügen the default", TypeBrot, "shopping_list_german.png",
     "Einkaufsliste: [Hinzufügen] -Entfernen Schließen, focus Ware:, items 1. "
     "Die Eingabetaste fügt hinzu."},
    {"Enter adds it", PressEnter, NULL,
     "Einkaufsliste: -Hinzufügen -Entfernen [Schließen], focus Ware:, items 2. "
     "Die Eingabetaste schließt."},
    {"controls follow a window that grows", GrowBothWays, NULL,
     "Einkaufsliste: -Hinzufügen -Entfernen [Schließen], focus Ware:, items 2, "
     "Add +60+0+60+0, list +0+0+60+40, hint +0+40+0+40. Die Eingabetaste schließt."},
    {"and one that shrinks, which stops at its first height", ShrinkTooFar, NULL,
     "Einkaufsliste: -Hinzufügen -Entfernen [Schließen], focus Ware:, items 2, "
     "Add +20+0+20+0, list +0+0+20+0. Die Eingabetaste schließt."},
};

/* Starts the program, and waits for its window. */
static HANDLE Start(void) {
  STARTUPINFOA startup = {.cb = sizeof startup};
  PROCESS_INFORMATION process;
  int id, waited;
  if (!CreateProcessA("shopping_list.exe", NULL, NULL, NULL, FALSE, 0, NULL, NULL, &startup,
                      &process)) {
    return NULL;
  }
  for (waited = 0; hDlg == NULL && waited < kPatience; waited += kInterval) {
    Sleep(kInterval);
    hDlg = FindWindowA("#32770", "Shopping list");
  }
  for (id = IDC_ITEM; id <= IDC_GERMAN; ++id) opened[id] = PlaceOf(id);
  SetForegroundWindow(hDlg);
  return process.hProcess;
}

/* Enter closes the window, which ends the program. */
static BOOL Ends(HANDLE hProcess) {
  DWORD exitCode = 1;
  PressEnter();
  if (WaitForSingleObject(hProcess, kPatience) == WAIT_OBJECT_0) {
    GetExitCodeProcess(hProcess, &exitCode);
  }
  return exitCode == 0;
}

/* The caption is drawn as that of an active window, and the program given the time to draw. */
static BOOL TakesPicture(const char* pszFolder, const char* pszName) {
  char szFile[MAX_PATH];
  if (pszFolder == NULL || pszName == NULL) return TRUE;
  SendMessageA(hDlg, WM_NCACTIVATE, TRUE, 0);
  Sleep(kTimeToDraw);
  snprintf(szFile, sizeof szFile, "%s/%s", pszFolder, pszName);
  return SavePicture(hDlg, szFile);
}

static void Report(BOOL isGood, const char* pszStep, const char* pszShown) {
  printf("%s  %s\n", isGood ? "ok  " : "FAIL", pszStep);
  if (!isGood) printf("      %s\n", pszShown);
  ++*(isGood ? &passed : &failed);
}

static void Play(const Step* pStep, const char* pszFolder) {
  State shown;
  pStep->act();
  if (!Shows(pStep->pszState, shown)) {
    Report(FALSE, pStep->pszStep, shown);
  } else {
    Report(TakesPicture(pszFolder, pStep->pszPicture), pStep->pszStep, "no picture can be saved");
  }
}

/* A step that fails is the last one: those that follow begin where it should have ended. */
int main(int argc, char** argv) {
  const HANDLE hProcess = Start();
  size_t i;
  Report(hDlg != NULL, "the program starts", "its window isn't there");
  for (i = 0; failed == 0 && i < ARRAYSIZE(steps); ++i) {
    Play(&steps[i], argc > 1 ? argv[1] : NULL);
  }
  if (failed == 0) Report(Ends(hProcess), "Enter closes the window", "the program still runs");
  if (failed != 0) TerminateProcess(hProcess, 1);
  printf("%d passed, %d failed\n", passed, failed);
  return failed;
}
