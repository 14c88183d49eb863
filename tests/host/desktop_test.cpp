// The platform layer's desktop: windows in windows.
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
  EXPECT_TRUE(isAt(hWndPage, {119, 150, 169, 110}));
  EXPECT_TRUE(isAt(hWndItem, {120, 151, 140, 161}));
}

}  // namespace
