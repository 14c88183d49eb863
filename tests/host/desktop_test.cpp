// The platform layer's desktop: windows in windows.
#include <codepage.h>
#include <desktop.h>
#include <gtest/gtest.h>
#include <host.h>

#include <cstring>

namespace {

TEST(Desktop, PlacesChildrenInTheirParents) {
  host::Reset();
  const HWND hWnd = host::AddWindow({.rect = {10, 20, 310, 220}, .client = {4, 24}});
  const HWND hWndPage =
      host::AddWindow({.hWndParent = hWnd, .rect = {5, 6, 205, 106}, .client = {1, 1}});
  const HWND hWndItem = host::AddWindow({.hWndParent = hWndPage, .rect = {0, 0, 20, 10}});
  const auto isAt = [](HWND hWndAsked, const RECT& expected) {
    RECT rect;
    return GetWindowRect(hWndAsked, &rect) && std::memcmp(&rect, &expected, sizeof rect) == 0;
  };
  EXPECT_TRUE(isAt(hWndItem, {20, 51, 40, 61}));
  EXPECT_TRUE(SetWindowPos(hWnd, nullptr, 110, 120, 9, 9, SWP_NOSIZE));
  EXPECT_TRUE(SetWindowPos(hWndPage, nullptr, 9, 9, 50, -40, SWP_NOMOVE));
  EXPECT_TRUE(isAt(hWnd, {110, 120, 410, 320}));
  EXPECT_TRUE(isAt(hWndPage, {119, 150, 169, 150}));
  EXPECT_TRUE(isAt(hWndItem, {120, 151, 140, 161}));
  EXPECT_TRUE(SetWindowPos(hWnd, nullptr, 40000, -40000, 1 << 30, 9, 0));
  EXPECT_TRUE(isAt(hWnd, {32767, -32768, 65534, -32759}));
}

TEST(Desktop, TakesAwayTheFocusAndLosesMessagesToNoWindow) {
  host::Reset();
  const HWND hWnd = host::AddWindow({});
  host::SetFocus(hWnd);
  EnableWindow(hWnd, FALSE);
  EXPECT_EQ(GetFocus(), nullptr);
  EXPECT_EQ(PostMessageA(reinterpret_cast<HWND>(7), WM_NEXTDLGCTL, 0, 0), 0);
  EXPECT_EQ(host::RunMessages(), 0u);
}

TEST(Desktop, CutsStringsToWholeCharacters) {
  host::Reset();
  host::SetCodePage(932);
  host::SetString(nullptr, 5, "a\x93\x61z");
  const std::pair<int, std::string> rows[] = {
      {1, ""}, {2, "a"}, {3, "a"}, {4, "a\x93\x61"}, {9, "a\x93\x61z"}};
  for (const auto& [cch, expected] : rows) {
    char text[9] = "????????";
    EXPECT_EQ(LoadStringA(nullptr, 0x10005, text, cch), std::ssize(expected)) << cch;
    EXPECT_EQ(text, expected);
  }
  char text[] = "?";
  EXPECT_EQ(LoadStringA(nullptr, 6, text, 1), 0);
  EXPECT_EQ(text[0], 0);
}

}  // namespace
