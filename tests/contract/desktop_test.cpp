// What the operations on windows, dialogs and string resources answer.
#include <codepage.h>
#include <desktop.h>
#include <gtest/gtest.h>
#include <host.h>

#include <cstring>
#include <string>

namespace {

class Desktop : public testing::Test {
 protected:
  void SetUp() override { host::Reset(); }
};

TEST_F(Desktop, PlacesChildrenInTheirParents) {
  const HWND hWnd = host::AddWindow({.rect = {10, 20, 310, 220}});
  const HWND hWndItem = host::AddWindow({.hWndParent = hWnd, .id = 1, .rect = {5, 6, 25, 16}});
  const auto isAt = [](HWND hWndAsked, const RECT& expected) {
    RECT rect;
    return GetWindowRect(hWndAsked, &rect) && std::memcmp(&rect, &expected, sizeof rect) == 0;
  };
  EXPECT_TRUE(isAt(hWndItem, {15, 26, 35, 36}));
  EXPECT_TRUE(SetWindowPos(hWnd, nullptr, 110, 120, 9, 9, SWP_NOSIZE | SWP_NOZORDER));
  EXPECT_TRUE(isAt(hWnd, {110, 120, 410, 320}));
  EXPECT_TRUE(isAt(hWndItem, {115, 126, 135, 136}));
  EXPECT_TRUE(SetWindowPos(hWndItem, nullptr, 9, 9, 50, -40, SWP_NOMOVE | SWP_NOZORDER));
  EXPECT_TRUE(isAt(hWndItem, {115, 126, 165, 126}));
  EXPECT_TRUE(SetWindowPos(hWnd, nullptr, 40000, -40000, 1 << 30, 9, SWP_NOZORDER));
  EXPECT_TRUE(isAt(hWnd, {32767, -32768, 65534, -32759}));
  POINT point = {1, 2};
  EXPECT_TRUE(SetWindowPos(hWnd, nullptr, 7, 8, 9, 9, SWP_NOZORDER));
  EXPECT_TRUE(ScreenToClient(hWnd, &point));
  EXPECT_TRUE(point.x == -6 && point.y == -6);
  EXPECT_EQ(GetParent(hWndItem), hWnd);
  EXPECT_EQ(GetDlgItem(hWnd, 1), hWndItem);
  EXPECT_EQ(GetDlgItem(hWnd, 2), nullptr);
  RECT rect;
  EXPECT_FALSE(GetWindowRect(nullptr, &rect));
}

// A dialog with an edit control and three buttons, of which the second is the default.
class Dialog : public Desktop {
 protected:
  void SetUp() override {
    Desktop::SetUp();
    hDlg_ = host::AddWindow({});
    for (int id = kEdit; id <= kLast; ++id) {
      host::AddWindow({.hWndParent = hDlg_, .id = id, .isPushButton = id != kEdit});
    }
    SendMessageA(hDlg_, DM_SETDEFID, kNext, 0);
    Focus(kEdit);
  }
  HWND Item(int id) { return GetDlgItem(hDlg_, id); }
  void Focus(int id) { SendMessageA(hDlg_, WM_NEXTDLGCTL, reinterpret_cast<WPARAM>(Item(id)), 1); }
  // The default id, the buttons' styles, and the id of the control that has the focus.
  std::string Now() {
    std::string state = std::to_string(SendMessageA(hDlg_, DM_GETDEFID, 0, 0) & 0xFFFF) + ' ';
    for (const int id : {kBack, kNext, kLast})
      state += std::to_string(host::WindowOf(Item(id)).buttonStyle);
    for (const int id : {kEdit, kBack, kNext, kLast})
      if (GetFocus() == Item(id)) state += ' ' + std::to_string(id);
    return state;
  }

  enum { kEdit = 1000, kBack, kNext, kLast };
  HWND hDlg_ = nullptr;
};

TEST_F(Dialog, MovesTheDefaultWithItsId) {
  EXPECT_EQ(Now(), "1002 010 1000");
  const std::pair<WPARAM, const char*> rows[] = {
      {kBack, "1001 100 1000"}, {kLast, "1003 001 1000"},           {kEdit, "1000 001 1000"},
      {4444, "4444 000 1000"},  {0x10000 + kBack, "1001 000 1000"}, {0, "0 000 1000"},
      {kNext, "1002 010 1000"}};
  for (const auto& [id, state] : rows) {
    SendMessageA(hDlg_, DM_SETDEFID, id, 0);
    EXPECT_EQ(Now(), state);
  }
  SendDlgItemMessageA(hDlg_, kBack, BM_SETSTYLE, BS_DEFPUSHBUTTON, 1);
  EXPECT_EQ(Now(), "1002 110 1000");
}

TEST_F(Dialog, MovesTheLookOfTheDefaultWithTheFocus) {
  const std::pair<int, const char*> rows[] = {
      {kBack, "1002 100 1001"}, {kEdit, "1002 010 1000"}, {kNext, "1002 010 1002"}};
  for (const auto& [id, state] : rows) {
    Focus(id);
    EXPECT_EQ(Now(), state);
  }
  EXPECT_EQ(EnableWindow(Item(kNext), FALSE), 0);
  EXPECT_EQ(Now(), "1002 010");
  EXPECT_TRUE(PostMessageA(hDlg_, WM_NEXTDLGCTL, reinterpret_cast<WPARAM>(Item(kBack)), 1));
  EXPECT_EQ(Now(), "1002 010");
  host::RunMessages();
  EXPECT_EQ(Now(), "1002 100 1001");
  EXPECT_EQ(EnableWindow(Item(kLast), FALSE), 0);
  EXPECT_FALSE(IsWindowEnabled(Item(kLast)));
  Focus(kLast);
  EXPECT_EQ(Now(), "1002 001 1001");
  EXPECT_NE(EnableWindow(Item(kLast), TRUE), 0);
  Focus(4444);
  EXPECT_EQ(Now(), "1002 000 1001");
  EXPECT_FALSE(PostMessageA(reinterpret_cast<HWND>(7), WM_NEXTDLGCTL, 0, 0));
  EXPECT_EQ(IsDlgButtonChecked(hDlg_, 4444), 0u);
}

TEST_F(Desktop, CutsStringsToWholeCharacters) {
  host::SetString(nullptr, 5, "plain");
  if (host::SetCodePage(932)) host::SetString(nullptr, 6, "a\x93\xFAz");
  // clang-format off
  const struct { unsigned codePage; UINT id; int capacity; std::string text; } rows[] = {
      {1252, 5, 9, "plain"}, {1252, 0x10005, 3, "pl"}, {1252, 7, 9, ""}, {932, 6, 1, ""},
      {932, 6, 2, "a"}, {932, 6, 3, "a"}, {932, 6, 4, "a\x93\xFA"}, {932, 6, 9, "a\x93\xFAz"}};
  // clang-format on
  for (const auto& row : rows) {
    if (!host::SetCodePage(row.codePage)) continue;
    char text[9] = "????????";
    EXPECT_EQ(LoadStringA(nullptr, row.id, text, row.capacity), std::ssize(row.text));
    EXPECT_EQ(text, row.text);
  }
}

}  // namespace
