// The platform layer's desktop: windows in windows.
#include <desktop.h>
#include <gtest/gtest.h>
#include <host.h>

#include <vector>

namespace {

using Sides = std::vector<LONG>;

Sides ScreenRect(HWND hWnd) {
  RECT rect = {};
  EXPECT_TRUE(GetWindowRect(hWnd, &rect));
  return {rect.left, rect.top, rect.right, rect.bottom};
}

TEST(Desktop, PlacesChildrenInTheirParents) {
  host::Reset();
  const HWND hWnd = host::AddWindow({.rect = {10, 20, 310, 220}, .client = {4, 24}});
  const HWND hWndPage =
      host::AddWindow({.hWndParent = hWnd, .rect = {5, 6, 205, 106}, .client = {1, 1}});
  const HWND hWndItem = host::AddWindow({.hWndParent = hWndPage, .rect = {0, 0, 20, 10}});
  EXPECT_EQ(ScreenRect(hWndItem), (Sides{20, 51, 40, 61}));
  EXPECT_TRUE(SetWindowPos(hWnd, nullptr, 110, 120, 9, 9, SWP_NOSIZE));
  EXPECT_TRUE(SetWindowPos(hWndPage, nullptr, 9, 9, 50, -40, SWP_NOMOVE));
  EXPECT_EQ(ScreenRect(hWnd), (Sides{110, 120, 410, 320}));
  EXPECT_EQ(ScreenRect(hWndPage), (Sides{119, 150, 169, 110}));
  EXPECT_EQ(ScreenRect(hWndItem), (Sides{120, 151, 140, 161}));
}

}  // namespace
