// Windows and dialogs: what the functions ask and tell the platform, call by call, with every
// platform call failing in turn. On the platform layer only.
#include <desktop.h>
#include <gtest/gtest.h>
#include <host.h>
#include <tavkit.h>

#include <climits>
#include <map>

#include "support/choices.h"
#include "support/journal.h"

namespace {

using test::Line;
using test::Text;

// The calls of a piece of work, the n-th of them failing; none for 0.
template <class Work>
std::vector<host::Call> CallsOf(unsigned n, Work work, int code = 0) {
  host::StartJournal();
  host::FailCall(n, static_cast<DWORD>(code));
  work();
  host::FailCall(0);
  return host::TakeJournal();
}

PROPERTY(Geometry, IsReadInTheParentAndChangedByAnyDelta, 800) {
  using Change = BOOL(UT_API*)(HWND, INT, INT);
  const auto any = static_cast<LONG>(choices.Below(0xFFFFFFFF));
  const std::vector<LONG> numbers = {INT_MIN, INT_MIN + 1, -110, -4, 0, 3, 110, INT_MAX, any};
  const auto number = [&] { return choices.Of(numbers); };
  const HWND hWndOuter = host::AddWindow({});
  const HWND hWndParent = choices.Below(4) == 0 ? nullptr : hWndOuter;
  const RECT inParent = {number(), number(), number(), number()};
  const HWND hWnd = host::AddWindow({.hWndParent = hWndParent});
  host::WindowOf(hWndOuter).rect = {number(), number(), number(), number()};
  host::WindowOf(hWndOuter).client = {number(), number()};
  host::SetSuccess(choices.Of<BOOL>({1, 2, -1, INT_MIN}));
  const auto change =
      choices.Of<Change>({nullptr, utMoveWindowDelta, utSizeWindowDelta, utMoveChildDelta});
  const bool isChild = change == nullptr || change == utMoveChildDelta;
  for (unsigned n = 0; n <= (isChild ? 5 : 2); ++n) {
    host::WindowOf(hWnd).rect = inParent;
    RECT onScreen, rect;
    const BOOL success = GetWindowRect(hWnd, &onScreen);
    const std::int64_t delta1 = number(), delta2 = number();
    const auto calls = CallsOf(n, [&] {
      const BOOL result = change ? change(hWnd, delta1, delta2) : utGetChildRect(hWnd, &rect);
      ASSERT_EQ(result, n == 1 ? 0 : success);
    });
    const auto pRect = calls.at(0).arguments.at(1);
    const std::string read = Line("GetWindowRect", hWnd, pRect);
    std::string next;
    const HWND hWndGiven = n == 2 ? nullptr : hWndParent;
    if (isChild) {
      next = Line("GetParent", hWnd) + Line("ScreenToClient", hWndGiven, pRect) +
             Line("ScreenToClient", hWndGiven, pRect + 8);
    }
    // A corner that the platform does not convert keeps its place on the screen.
    const auto [left, top, x, y] = isChild && n != 2 && n != 3 ? inParent : onScreen;
    const auto [x1, y1, right, bottom] = isChild && n != 2 && n != 4 ? inParent : onScreen;
    if (change == utSizeWindowDelta) {
      next += Line("SetWindowPos", hWnd, 0, 0, 0, delta1 + right - left, delta2 + bottom - top, 6);
    } else if (change) {
      next += Line("SetWindowPos", hWnd, 0, delta1 + left, delta2 + top, 0, 0, 5);
    } else if (n != 1) {
      ASSERT_EQ(Line("", rect.left, rect.top, rect.right, rect.bottom),
                Line("", left, top, right, bottom));
    }
    ASSERT_EQ(Text(calls), n == 1 ? read : read + next) << "call " << n << " fails";
  }
}

PROPERTY(StringResource, SetsTheTextOfAWindowOrAControl, 40) {
  const auto hModule = reinterpret_cast<HINSTANCE>(0x400000);
  const UINT idString = 0x80000005u;
  const HWND hDlg = host::AddWindow({});
  const HWND hWndItem = host::AddWindow({.hWndParent = hDlg, .id = -3});
  host::SetSuccess(-9);
  const auto length = choices.Of<unsigned>({0, 1, 254, 255, 256, choices.Below(1000)});
  if (length != 0) host::SetString(hModule, idString, std::string(length, 't'));
  for (const bool isItem : {false, true}) {
    for (const auto& [n, code] : {std::pair{0u, 0}, {1u, 0}, {1u, -5}, {2u, 0}}) {
      auto& text = host::WindowOf(isItem ? hWndItem : hDlg).text = "old";
      const bool isLoaded = n != 1 && length > 0, isSet = isLoaded && n != 2;
      const auto work = [&] {
        ASSERT_EQ(isItem ? utSetDlgItemStringRes(hDlg, -3, hModule, idString)
                         : utSetWindowStringRes(hDlg, hModule, idString),
                  isSet ? -9 : code);
      };
      const auto calls = CallsOf(n, work, code);
      const auto pText = calls.at(0).arguments.at(2);
      ASSERT_EQ(Text(calls), Line("LoadStringA", hModule, idString, pText, 256) +
                                 (!isLoaded ? ""
                                  : isItem  ? Line("SetDlgItemTextA", hDlg, -3, pText)
                                            : Line("SetWindowTextA", hDlg, pText)));
      ASSERT_EQ(text, isSet ? std::string(std::min(length, 255u), 't') : "old");
    }
  }
  host::FailCall(1, 5);  // the platform gives a length and stores nothing
  EXPECT_EQ(utSetWindowStringRes(hDlg, hModule, idString), -9);
  EXPECT_EQ(host::WindowOf(hDlg).text, "");
}

// The platform calls that each function has to make on a dialog, of which the n-th fails.
struct Model {
  HWND hDlg;
  BOOL wasDisabled = 0;  // what EnableWindow answers
  unsigned failing = 0;  // how many calls are left to the one that fails
  std::string calls = {};

  template <class... Arguments>
  bool Works(const char* operation, Arguments... arguments) {
    calls += Line(operation, arguments...);
    return --failing != 0;
  }
  HWND Item(int id) { return Works("GetDlgItem", hDlg, id) ? GetDlgItem(hDlg, id) : nullptr; }
  bool IsEnabled(HWND hWnd) { return Works("IsWindowEnabled", hWnd) && IsWindowEnabled(hWnd); }
  int Default() {
    const DWORD answer = host::WindowOf(hDlg).defaultId;
    const bool isThere = Works("SendMessageA", hDlg, 0x400, 0, 0) && answer >> 16 == 0x534B;
    return isThere ? answer & 0xFFFF : 0;
  }
  void SetDefault(int idNew, int idOld) {
    if (idOld != 0) Works("SendDlgItemMessageA", hDlg, idOld, 0xF4, 0, 1);
    Works("SendMessageA", hDlg, 0x401, idNew, 0);
    Works("SendDlgItemMessageA", hDlg, idNew, 0xF4, 1, 1);
  }
  BOOL Disable(int idButton, int idFocus, int idDefault) {
    const HWND hWnd = Item(idButton);
    if (!IsEnabled(hWnd)) return 0;
    if (idDefault != 0 && Default() == idButton) SetDefault(idDefault, idButton);
    if (idFocus != 0 && Works("GetFocus") && GetFocus() == hWnd) {
      Works("PostMessageA", hDlg, 0x28, Item(idFocus), 1);
    }
    return Works("EnableWindow", hWnd, 0) ? wasDisabled : 0;
  }
  void Enable(int idButton, bool makeDefault) {
    const HWND hWnd = Item(idButton);
    if (!IsEnabled(hWnd)) Works("EnableWindow", hWnd, 1);
    const int idOld = makeDefault ? Default() : idButton;
    if (idOld != idButton) SetDefault(idButton, idOld);
  }
};

PROPERTY(DefaultButton, IsAskedForAndSetCallByCall, 1600) {
  constexpr int kNowhere = 0x10000;  // an id that no control has, and a flag
  const HWND hDlg = host::AddWindow({});
  for (const int id : {5, 6, 0xFFFF, -1, 0}) host::AddWindow({.hWndParent = hDlg, .id = id});
  enum { kSet, kDisable, kEnable };
  const int operation = choices.Of<int>({kSet, kDisable, kEnable});
  const int idButton = choices.Of<int>({5, 0xFFFF, -1, 0, kNowhere});
  const int id2 = choices.Of<int>({0, 6, -1, kNowhere});
  const int id3 = choices.Of<int>({0, 6, idButton, kNowhere});
  const DWORD idShort = idButton & 0xFFFF, its = 0x534B0000 | idShort;
  const DWORD answer =
      choices.Of<DWORD>({0, its, its, 0x534B0006, 0x534A0000 | idShort, idShort, 0xFFFFFFFF});
  const HWND hWnd = GetDlgItem(hDlg, idButton);
  const HWND hWndFocus = choices.Of<HWND>({nullptr, hWnd, GetDlgItem(hDlg, 6)});
  const bool isEnabled = choices.Below(2) != 0, isOvertaken = hWnd && choices.Below(2) != 0;
  const BOOL success = choices.Of<BOOL>({1, 0x10000});
  host::SetSuccess(success);
  host::ShowCalls([&](const host::Call& call) {  // somebody else disables the button just before
    if (isOvertaken && call.operation == "EnableWindow") host::WindowOf(hWnd).isEnabled = false;
  });
  const unsigned calls = choices.Below(5) == 0 ? 10 : 0;
  for (unsigned n = 0; n <= calls; ++n) {
    host::WindowOf(hDlg).defaultId = answer;
    if (hWnd) host::WindowOf(hWnd).isEnabled = isEnabled;
    host::SetFocus(hWndFocus);
    ASSERT_EQ(utGetDlgDefButton(hDlg), (DWORD)Model{hDlg}.Default());
    Model model{hDlg, isOvertaken ? success : 0, n};
    BOOL expected = 0, result = 0;
    if (operation == kSet) model.SetDefault(idButton, id3);
    if (operation == kDisable) expected = model.Disable(idButton, id2, id3);
    if (operation == kEnable) model.Enable(idButton, id2 != 0);
    const auto made = CallsOf(n, [&] {
      if (operation == kSet) utSetDlgButtonAsDefault(hDlg, idButton, id3);
      if (operation == kDisable) result = utDisableDlgDefButton(hDlg, idButton, id2, id3);
      if (operation == kEnable) utEnableDlgDefButton(hDlg, idButton, id2);
    });
    ASSERT_EQ(Text(made), model.calls) << "call " << n << " fails";
    ASSERT_EQ(result, expected) << "call " << n << " fails";
  }
}

PROPERTY(CheckedButton, IsTheFirstOfItsRange, 1000) {
  const HWND hDlg = host::AddWindow({});
  const std::int64_t base = choices.Of<int>({INT_MIN, -3, 0, 0xFFFC, INT_MAX - 6});
  std::map<std::int64_t, UINT> states;
  for (auto id = base; id < base + 7; ++id) {
    if (choices.Below(4) == 0) continue;
    states[id] = choices.Of<UINT>({0, 0, 1, 2, 3, 0x10001, 0xFFFFFFFF});
    host::AddWindow({.hWndParent = hDlg, .id = (int)id, .checkState = states[id]});
  }
  const std::int64_t first = base + choices.Below(7), last = base + choices.Below(7);
  std::string expected;
  auto id = first;
  for (; id <= last; ++id) {
    expected += Line("IsDlgButtonChecked", hDlg, id);
    if (states[id] == 1) break;
  }
  const auto work = [&] {
    ASSERT_EQ(utWhichDlgButtonChecked(hDlg, (int)first, (int)last), id <= last ? id : 0);
  };
  EXPECT_EQ(Text(CallsOf(0, work)), expected) << first << " to " << last;
}

}  // namespace
