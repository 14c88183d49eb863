// Windows and dialogs: what the functions ask and tell the platform, call by call, beside a model
// that holds a dialog as plain data, with every platform call failing in turn.
#include <desktop.h>
#include <gtest/gtest.h>
#include <host.h>
#include <tavkit.h>

#include <climits>
#include <map>

#include "support/guarded.h"
#include "support/random.h"

namespace {

// Platform calls as text, a line for each.
std::string Text(const std::vector<host::Call>& calls) {
  std::string text;
  for (const auto& call : calls) {
    text += call.operation;
    for (const auto argument : call.arguments) text += ' ' + std::to_string((int)argument);
    text += '\n';
  }
  return text;
}

template <class... Arguments>
std::string Line(const char* operation, Arguments... arguments) {
  return Text({host::Call{operation, {(std::uintptr_t)arguments...}}});
}

// The calls of a piece of work, the n-th of them failing; none for 0.
template <class Work>
std::vector<host::Call> CallsOf(unsigned n, Work work, int code = 0) {
  host::StartJournal();
  host::FailCall(n, static_cast<DWORD>(code));
  work();
  host::FailCall(0);
  return host::TakeJournal();
}

std::vector<LONG> Sides(const RECT& rect) { return {rect.left, rect.top, rect.right, rect.bottom}; }

TEST(Geometry, GivesAChildsPlaceInItsParent) {
  const HWND hWndParent = host::AddWindow({.rect = {1, 2, 500, 500}, .client = {4, 5}});
  const HWND hWnd = host::AddWindow({.hWndParent = hWndParent, .rect = {5, 13, 105, 213}});
  test::GuardedBuffer buffer(sizeof(RECT));
  auto* const rect = buffer.As<RECT>();
  host::SetSuccess(-7);
  const std::vector<LONG> placesByFailure[] = {
      {5, 13, 105, 213}, {}, {10, 20, 110, 220}, {10, 20, 105, 213}, {5, 13, 110, 220}};
  for (unsigned n = 0; n <= 4; ++n) {
    const auto calls = CallsOf(n, [&] { EXPECT_EQ(utGetChildRect(hWnd, rect), n == 1 ? 0 : -7); });
    const std::string read = Line("GetWindowRect", hWnd, rect);
    const HWND hWndGiven = n == 2 ? nullptr : hWndParent;
    const std::string convert = Line("GetParent", hWnd) +
                                Line("ScreenToClient", hWndGiven, &rect->left) +
                                Line("ScreenToClient", hWndGiven, &rect->right);
    EXPECT_EQ(Text(calls), n == 1 ? read : read + convert);
    if (n != 1) EXPECT_EQ(Sides(*rect), placesByFailure[n]) << n;
  }
}

TEST(Geometry, MovesAndSizesByAnyDelta) {
  const std::pair<BOOL(UT_API*)(HWND, INT, INT), unsigned> rows[] = {
      {utMoveWindowDelta, 2}, {utSizeWindowDelta, 2}, {utMoveChildDelta, 5}};
  const std::vector<LONG> numbers = {INT_MIN, INT_MIN + 1, -110, -4, 0, 3, 110, INT_MAX};
  test::Random random(7);
  const auto number = [&] { return random.Of(numbers); };
  const HWND hWndParent = host::AddWindow({});
  for (int i = 0; i < 300; ++i) {
    const HWND hWnd = host::AddWindow({.hWndParent = i % 4 == 0 ? nullptr : hWndParent});
    host::WindowOf(hWndParent).rect = {number(), number(), number(), number()};
    host::WindowOf(hWndParent).client = {number(), number()};
    const RECT inParent = {number(), number(), number(), number()};
    host::SetSuccess(random.Of<BOOL>({1, 2, -1, INT_MIN}));
    for (const auto& [change, length] : rows) {
      for (unsigned n = 0; n <= length; ++n) {
        host::WindowOf(hWnd).rect = inParent;
        RECT onScreen;
        const BOOL success = GetWindowRect(hWnd, &onScreen);
        const std::int64_t delta1 = number(), delta2 = number();
        BOOL result = 0;
        const auto calls = CallsOf(n, [&, call = change] { result = call(hWnd, delta1, delta2); });
        EXPECT_EQ(result, n == 1 ? 0 : success);
        ASSERT_EQ(calls.size(), n == 1 ? 1 : length);
        EXPECT_EQ(calls[0].operation, "GetWindowRect");
        if (n == 1 || n == length) EXPECT_EQ(Sides(host::WindowOf(hWnd).rect), Sides(inParent));
        if (n == 1) continue;
        const bool isConverted = length == 5 && n != 2 && n != 3;
        const auto [left, top, right, bottom] = isConverted ? inParent : onScreen;
        EXPECT_EQ(Text({calls.back()}),
                  change == utSizeWindowDelta
                      ? Line("SetWindowPos", hWnd, 0, 0, 0, delta1 + right - left,
                             delta2 + bottom - top, 6)
                      : Line("SetWindowPos", hWnd, 0, delta1 + left, delta2 + top, 0, 0, 5));
      }
    }
  }
}

TEST(StringResource, SetsTheTextOfAWindowOrAControl) {
  const auto hModule = reinterpret_cast<HINSTANCE>(0x400000);
  const UINT idString = 0x80000005u;
  const HWND hDlg = host::AddWindow({});
  const HWND hWndItem = host::AddWindow({.hWndParent = hDlg, .id = -3});
  host::SetSuccess(-9);
  for (const unsigned length : {0, 1, 254, 255, 256, 1000}) {
    if (length != 0) host::SetString(hModule, idString, std::string(length, 't'));
    for (const bool isItem : {false, true}) {
      for (const auto& [n, code] : {std::pair{0u, 0}, {1u, 0}, {1u, -5}, {2u, 0}}) {
        auto& text = host::WindowOf(isItem ? hWndItem : hDlg).text = "old";
        INT result = 0;
        const auto work = [&] {
          result = isItem ? utSetDlgItemStringRes(hDlg, -3, hModule, idString)
                          : utSetWindowStringRes(hDlg, hModule, idString);
        };
        const auto calls = CallsOf(n, work, code);
        const bool isLoaded = n != 1 && length > 0, isSet = isLoaded && n != 2;
        EXPECT_EQ(result, isSet ? -9 : code);
        EXPECT_EQ(text, isSet ? std::string(std::min(length, 255u), 't') : "old");
        ASSERT_EQ(calls.size(), isLoaded ? 2 : 1);
        const auto buffer = calls[0].arguments.at(2);
        EXPECT_EQ(Text({calls[0]}), Line("LoadStringA", hModule, idString, buffer, 256));
        if (!isLoaded) continue;
        EXPECT_EQ(Text({calls[1]}), isItem ? Line("SetDlgItemTextA", hDlg, -3, buffer)
                                           : Line("SetWindowTextA", hDlg, buffer));
      }
    }
  }
}

constexpr int kNowhere = 99;  // an id that no control has

// A dialog as plain data: what each function does to it, and the platform calls that it makes, of
// which the n-th fails.
struct Model {
  struct Control {
    HWND hWnd = nullptr;  // NULL in a control that is not there
    bool isEnabled = false;
    UINT style = 0;
  };
  HWND hDlg = nullptr;
  std::map<int, Control> controls = {};
  DWORD answer = 0;  // to the question for the default id
  int focus = kNowhere;
  int posted = kNowhere;

  unsigned failing = 0;  // how many calls are left to the one that fails
  std::string calls = {};

  template <class... Arguments>
  bool Works(const char* operation, Arguments... arguments) {
    calls += Line(operation, arguments...);
    return --failing != 0;
  }
  HWND Item(int id) { return Works("GetDlgItem", hDlg, id) ? controls[id].hWnd : nullptr; }
  bool IsEnabled(int id, HWND hWnd) {
    return Works("IsWindowEnabled", hWnd) && hWnd != nullptr && controls[id].isEnabled;
  }
  void Enable(int id, HWND hWnd, bool enable) {
    if (Works("EnableWindow", hWnd, enable) && hWnd != nullptr) controls[id].isEnabled = enable;
  }
  int Default() {
    const bool isThere = Works("SendMessageA", hDlg, 0x400, 0, 0) && answer >> 16 == 0x534B;
    return isThere ? answer & 0xFFFF : 0;
  }
  void Style(int id, UINT style) {
    if (Works("SendDlgItemMessageA", hDlg, id, 0xF4, style, 1)) controls[id].style = style;
  }

  void SetDefault(int idNew, int idOld) {
    if (idOld != 0) Style(idOld, 0);
    const WORD id = idNew;
    if (Works("SendMessageA", hDlg, 0x401, idNew, 0)) answer = id == 0 ? 0 : 0x534B0000 | id;
    Style(idNew, 1);
  }
  void DisableDefault(int idButton, int idFocus, int idDefault) {
    const HWND hWnd = Item(idButton);
    if (!IsEnabled(idButton, hWnd)) return;
    if (idDefault != 0 && Default() == idButton) SetDefault(idDefault, idButton);
    if (idFocus != 0 && Works("GetFocus") && focus == idButton) {
      const HWND hWndFocus = Item(idFocus);
      if (Works("PostMessageA", hDlg, 0x28, hWndFocus, 1) && hWndFocus) posted = idFocus;
    }
    Enable(idButton, hWnd, false);
  }
  void EnableDefault(int idButton, bool makeDefault) {
    const HWND hWnd = Item(idButton);
    if (!IsEnabled(idButton, hWnd)) Enable(idButton, hWnd, true);
    const int idOld = makeDefault ? Default() : idButton;
    if (idOld != idButton) SetDefault(idButton, idOld);
  }
};

constexpr DWORD kAnswers[] = {0, 0x534B0005, 0x534B0006, 0x534BFFFF, 0x534A0005, 5, 0xFFFFFFFF};

class DefaultButton : public testing::Test {
 protected:
  // Runs a function on a dialog and on its model, the n-th platform call failing, and compares.
  template <class Run, class RunModel>
  void Check(Model model, unsigned n, Run run, RunModel runModel) {
    const HWND hWndFocus = model.controls[model.focus].hWnd;
    host::WindowOf(hDlg_).defaultId = model.answer;
    for (const auto& [id, hWnd] : handles_) {
      host::WindowOf(hWnd).isEnabled = model.controls[id].isEnabled;
      host::WindowOf(hWnd).buttonStyle = model.controls[id].style;
    }
    host::SetFocus(hWndFocus);
    host::SetSuccess(n % 2 == 0 ? 1 : 0x100);
    model.failing = n;
    runModel(model);
    EXPECT_EQ(Text(CallsOf(n, run)), model.calls);
    EXPECT_EQ(GetFocus(), hWndFocus) << "moved before the messages were handled";
    host::RunMessages();
    const auto& next = model.controls[model.posted];  // a disabled control doesn't take the focus
    EXPECT_EQ(GetFocus(), next.hWnd && next.isEnabled ? next.hWnd : hWndFocus);
    EXPECT_EQ(host::WindowOf(hDlg_).defaultId, model.answer);
    for (const auto& [id, hWnd] : handles_) {
      EXPECT_EQ(host::WindowOf(hWnd).isEnabled, model.controls[id].isEnabled) << id;
      EXPECT_EQ(host::WindowOf(hWnd).buttonStyle, model.controls[id].style) << id;
    }
  }

  Model Start() {
    Model model{.hDlg = hDlg_};
    for (const auto& [id, hWnd] : handles_) model.controls[id] = {hWnd, true, 0};
    return model;
  }

  // Every dialog that differs in the control's state, the default and the focus, for each control.
  template <class Work>
  void ForEachDialog(Work work) {
    for (const int idButton : {5, 0xFFFF, -1, 0, kNowhere}) {
      for (unsigned i = 0; i < 6 * std::size(kAnswers); ++i) {
        Model model = Start();
        model.controls[idButton].isEnabled = i % 2 == 0;
        model.focus = i % 3 == 0 ? kNowhere : i % 3 == 1 ? idButton : 6;
        model.answer = kAnswers[i / 6];
        model.controls[static_cast<int>(model.answer & 0xFFFF)].style = 1;
        SCOPED_TRACE(testing::Message() << "control " << idButton << " dialog " << i);
        work(model, idButton);
      }
    }
  }

  void SetUp() override {
    for (const int id : {5, 6, 0xFFFF, -1, 0}) {
      handles_[id] = host::AddWindow({.hWndParent = hDlg_, .id = id});
    }
  }
  HWND hDlg_ = host::AddWindow({});
  std::map<int, HWND> handles_;
};

TEST_F(DefaultButton, IsTheOneThatTheDialogNames) {
  for (const DWORD answer : kAnswers) {
    host::WindowOf(hDlg_).defaultId = answer;
    EXPECT_EQ(utGetDlgDefButton(hDlg_), answer / 0x10000 == 0x534B ? answer % 0x10000 : 0);
  }
}

TEST_F(DefaultButton, IsSetWithoutAQuestion) {
  for (const int idNew : {5, 0xFFFF, -1, 0, kNowhere}) {
    for (const int idOld : {5, 0xFFFF, -1, 0, kNowhere}) {
      for (unsigned n = 0; n <= 3; ++n) {
        const auto run = [&] { utSetDlgButtonAsDefault(hDlg_, idNew, idOld); };
        Check(Start(), n, run, [&](Model& model) { model.SetDefault(idNew, idOld); });
      }
    }
  }
}

TEST_F(DefaultButton, IsHandedOnWithTheFocusWhenDisabled) {
  ForEachDialog([&](const Model& start, int idButton) {
    for (const int idFocus : {0, 6, -1, kNowhere}) {
      for (const int idDefault : {0, 6, idButton, kNowhere}) {
        for (unsigned n = 0; n <= (start.answer == 0x534B0005 ? 10 : 0); ++n) {
          const auto run = [&] { utDisableDlgDefButton(hDlg_, idButton, idFocus, idDefault); };
          Check(start, n, run,
                [&](Model& model) { model.DisableDefault(idButton, idFocus, idDefault); });
        }
      }
    }
  });
}

TEST_F(DefaultButton, IsTakenOverWhenEnabled) {
  ForEachDialog([&](const Model& start, int idButton) {
    for (const BOOL fMakeDefault : {0, 1, 0x100, INT_MIN}) {
      for (unsigned n = 0; n <= (fMakeDefault == 1 ? 7 : 0); ++n) {
        const auto run = [&] { utEnableDlgDefButton(hDlg_, idButton, fMakeDefault); };
        Check(start, n, run,
              [&](Model& model) { model.EnableDefault(idButton, fMakeDefault != 0); });
      }
    }
  });
}

TEST(CheckedButton, IsTheFirstOfItsRange) {
  test::Random random(181);
  for (int i = 0; i < 1000; ++i) {
    host::Reset();
    const HWND hDlg = host::AddWindow({});
    const std::int64_t base = random.Of<int>({INT_MIN, -3, 0, 0xFFFC, INT_MAX - 6});
    std::map<std::int64_t, UINT> states;
    for (auto id = base; id < base + 7; ++id) {
      if (random.Below(4) == 0) continue;
      states[id] = random.Of<UINT>({0, 0, 1, 2, 3, 0x10001, 0xFFFFFFFF});
      host::AddWindow({.hWndParent = hDlg, .id = (int)id, .checkState = states[id]});
    }
    const std::int64_t first = base + random.Below(7), last = base + random.Below(7);
    std::string expected;
    auto id = first;
    for (; id <= last; ++id) {
      expected += Line("IsDlgButtonChecked", hDlg, id);
      if (states[id] == 1) break;
    }
    INT found = 0;
    const auto work = [&] { found = utWhichDlgButtonChecked(hDlg, (int)first, (int)last); };
    EXPECT_EQ(Text(CallsOf(0, work)), expected) << first << " to " << last;
    EXPECT_EQ(found, id <= last ? id : 0);
  }
}

}  // namespace
