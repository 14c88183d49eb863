// Windows and dialogs as who uses them sees them, on any desktop.
#include <desktop.h>
#include <gtest/gtest.h>
#include <tavkit.h>

#include <tuple>

namespace {

constexpr UINT kPush = 0, kDefaultPush = 1, kThreeState = 5;
constexpr DWORD kDefaultIsFive = 0x534B0005;

auto Tied(const RECT& rect) { return std::tuple(rect.left, rect.top, rect.right, rect.bottom); }

TEST(Windows, MoveAndGrowByDifferences) {
  const HWND hDlg = host::AddWindow({.rect = {100, 120, 400, 320}});
  const HWND hWnd = host::AddWindow({.hWndParent = hDlg, .id = 5, .rect = {30, 40, 90, 60}});
  RECT before, after;
  ASSERT_NE(GetWindowRect(hDlg, &before), 0);
  EXPECT_NE(utMoveWindowDelta(hDlg, 7, -5), 0);
  EXPECT_NE(utSizeWindowDelta(hDlg, -20, 30), 0);
  ASSERT_NE(GetWindowRect(hDlg, &after), 0);
  EXPECT_EQ(Tied(after),
            std::tuple(before.left + 7, before.top - 5, before.right - 13, before.bottom + 25));
  EXPECT_NE(utGetChildRect(hWnd, &after), 0);
  EXPECT_EQ(Tied(after), std::tuple(30, 40, 90, 60));
  EXPECT_NE(utMoveChildDelta(hWnd, -4, 3), 0);
  EXPECT_NE(utSizeWindowDelta(hWnd, 10, -1), 0);
  EXPECT_NE(utGetChildRect(hWnd, &after), 0);
  EXPECT_EQ(Tied(after), std::tuple(26, 43, 96, 62));
  EXPECT_EQ(utGetChildRect(nullptr, &after), 0);
  for (auto* change : {utMoveWindowDelta, utSizeWindowDelta, utMoveChildDelta}) {
    EXPECT_EQ(change(nullptr, 1, 1), 0);
  }
}

TEST(Windows, TakeTheirTextsFromResources) {
  const HWND hDlg = host::AddWindow({});
  const HWND hWnd = host::AddWindow({.hWndParent = hDlg, .id = 5, .text = "old"});
  host::SetString(nullptr, 5, "plain");
  EXPECT_EQ(utSetDlgItemStringRes(hDlg, 5, nullptr, 7), 0);
  EXPECT_EQ(host::WindowOf(hWnd).text, "old");
  EXPECT_NE(utSetDlgItemStringRes(hDlg, 5, nullptr, 5), 0);
  EXPECT_NE(utSetWindowStringRes(hDlg, nullptr, 5), 0);
  for (const HWND hWndChanged : {hDlg, hWnd}) EXPECT_EQ(host::WindowOf(hWndChanged).text, "plain");
}

TEST(Windows, HandOnDefaultAndFocus) {
  const HWND hDlg = host::AddWindow({.defaultId = kDefaultIsFive});
  HWND hWnd[8];
  for (const int id : {5, 6, 7}) {
    const UINT style = id == 5 ? kDefaultPush : kPush;
    hWnd[id] = host::AddWindow({.hWndParent = hDlg, .id = id, .buttonStyle = style});
  }
  host::SetFocus(hWnd[5]);
  const auto check = [&](int idDefault, bool isFiveEnabled) {
    SCOPED_TRACE(idDefault);
    EXPECT_EQ(utGetDlgDefButton(hDlg), static_cast<DWORD>(idDefault));
    EXPECT_EQ(IsWindowEnabled(hWnd[5]) != 0, isFiveEnabled);
    for (const int id : {5, 6, 7}) {
      EXPECT_EQ(host::WindowOf(hWnd[id]).buttonStyle, id == idDefault ? kDefaultPush : kPush) << id;
    }
  };
  check(5, true);
  EXPECT_EQ(utDisableDlgDefButton(hDlg, 5, 6, 6), 0);
  check(6, false);
  EXPECT_EQ(host::RunMessages(), 1u);
  EXPECT_EQ(GetFocus(), hWnd[6]);
  utEnableDlgDefButton(hDlg, 5, 0);
  check(6, true);
  utEnableDlgDefButton(hDlg, 5, 1);
  check(5, true);
  utSetDlgButtonAsDefault(hDlg, 7, 5);
  check(7, true);
  EXPECT_EQ(utDisableDlgDefButton(hDlg, 5, 0, 6), 0);
  check(7, false);
  EXPECT_EQ(utDisableDlgDefButton(hDlg, 8, 6, 6), 0);  // which is missing
  check(7, false);
  EXPECT_EQ(GetFocus(), hWnd[6]);
}

TEST(Windows, TellWhichOfAGroupIsChecked) {
  const HWND hDlg = host::AddWindow({});
  for (int id = 5; const UINT state : {0u, 2u, 1u, 1u}) {
    host::AddWindow(
        {.hWndParent = hDlg, .id = id++, .buttonStyle = kThreeState, .checkState = state});
  }
  EXPECT_EQ(utWhichDlgButtonChecked(hDlg, 4, 9), 7);
  EXPECT_EQ(utWhichDlgButtonChecked(hDlg, 8, 8), 8);
  EXPECT_EQ(utWhichDlgButtonChecked(hDlg, 5, 6), 0);
}

}  // namespace
