// A wizard that keeps its buttons right: Back, Next and Finish are enabled and disabled as its
// pages turn, the default button and the focus move along, and the page is printed after each step.
//
// Usage: wizard_page [PATH OF TAVKIT.DLL]
//
// It is a Linux program that calls the shipped DLL; the windows are those of the platform layer.
#include <desktop.h>

#include "example.h"

namespace {

enum : int { kBack = 101, kNext, kFinish, kTypical = 201, kComplete, kCustom };
enum : UINT { kTextFirstPage = 1, kTextLastPage, kTextInstall };

constexpr struct {
  int id;
  const char* name;
} kButtons[] = {{kBack, "Back"}, {kNext, "Next"}, {kFinish, "Finish"}},
  kChoices[] = {{kTypical, "Typical"}, {kComplete, "Complete"}, {kCustom, "Custom"}};

// The program's own module, which holds its string table.
const HINSTANCE hModule = reinterpret_cast<HINSTANCE>(0x400000);

const char* ChoiceName(int id) {
  for (const auto& choice : kChoices) {
    if (choice.id == id) return choice.name;
  }
  return "none";
}

HWND OpenWizard() {
  host::SetString(hModule, kTextFirstPage, "Setup - what to install");
  host::SetString(hModule, kTextLastPage, "Setup - ready");
  host::SetString(hModule, kTextInstall, "Install");
  const HWND hDlg =
      host::AddWindow({.rect = {100, 80, 500, 360}, .client = {4, 24}, .text = "Setup"});
  LONG left = 130;
  for (const auto& [id, name] : kButtons) {
    host::AddWindow({.hWndParent = hDlg,
                     .id = id,
                     .rect = {left, 210, left + 75, 233},
                     .text = name,
                     .isEnabled = id == kNext});
    left += 85;
  }
  for (const auto& [id, name] : kChoices) {
    host::AddWindow({.hWndParent = hDlg, .id = id, .text = name, .isPushButton = false});
  }
  utSetDlgButtonAsDefault(hDlg, kNext, 0);
  host::SetFocus(GetDlgItem(hDlg, kNext));
  return hDlg;
}

void Choose(HWND hDlg, int idChosen) {
  for (const auto& [id, name] : kChoices) {
    host::WindowOf(GetDlgItem(hDlg, id)).checkState = id == idChosen ? BST_CHECKED : 0;
  }
}

// The posted change of focus takes effect first, as in a program that runs its message loop.
void PrintPage(const char* step, HWND hDlg) {
  host::RunMessages();
  const auto& dialog = host::WindowOf(hDlg);
  const auto& [left, top, right, bottom] = dialog.rect;
  std::printf("%s\n  \"%s\" at %d, %d, size %d x %d\n", step, dialog.text.c_str(), left, top,
              right - left, bottom - top);
  std::printf("  chosen: %s, focus: %s\n",
              ChoiceName(utWhichDlgButtonChecked(hDlg, kTypical, kCustom)),
              host::WindowOf(GetFocus()).text.c_str());
  const DWORD idDefault = utGetDlgDefButton(hDlg);
  for (const auto& [id, name] : kButtons) {
    const HWND hWnd = GetDlgItem(hDlg, id);
    const auto& button = host::WindowOf(hWnd);
    RECT place;
    utGetChildRect(hWnd, &place);
    std::printf("  [ %-7s ] at %d, %d, %s%s%s\n", button.text.c_str(), place.left, place.top,
                button.isEnabled ? "enabled" : "disabled",
                idDefault == static_cast<DWORD>(id) ? ", default" : "",
                button.buttonStyle == BS_DEFPUSHBUTTON ? ", drawn as default" : "");
  }
  std::puts("");
}

void RunWizard() {
  const HWND hDlg = OpenWizard();
  utSetWindowStringRes(hDlg, hModule, kTextFirstPage);
  PrintPage("The wizard opens: Next is the default and has the focus.", hDlg);

  utDisableDlgDefButton(hDlg, kNext, kTypical, 0);
  PrintPage("Nothing is chosen: Next is disabled but stays the default; the focus goes to Typical.",
            hDlg);

  Choose(hDlg, kComplete);
  utEnableDlgDefButton(hDlg, kNext, FALSE);
  host::SetFocus(GetDlgItem(hDlg, kNext));
  PrintPage("A choice is made: Next works again, and the user steps to it.", hDlg);

  utSetWindowStringRes(hDlg, hModule, kTextLastPage);
  utSetDlgItemStringRes(hDlg, kFinish, hModule, kTextInstall);
  utEnableDlgDefButton(hDlg, kBack, FALSE);
  utEnableDlgDefButton(hDlg, kFinish, FALSE);
  utDisableDlgDefButton(hDlg, kNext, kFinish, kFinish);
  PrintPage("The last page: Next hands the default and the focus to Finish, and is disabled.",
            hDlg);

  utSizeWindowDelta(hDlg, 0, 60);
  utMoveWindowDelta(hDlg, 0, -30);
  for (const auto& [id, name] : kButtons) utMoveChildDelta(GetDlgItem(hDlg, id), 0, 60);
  PrintPage("Details unfold: the window grows by 60 and moves up by 30, the buttons move down.",
            hDlg);

  utDisableDlgDefButton(hDlg, kFinish, kBack, kBack);
  PrintPage("The disk is full: Finish is disabled, and Back takes over both.", hDlg);

  utEnableDlgDefButton(hDlg, kFinish, TRUE);
  PrintPage("There is room again: Finish is enabled and the default; the focus stays.", hDlg);
}

}  // namespace

int main(int argc, char** argv) { return example::Run(argc, argv, RunWizard); }
