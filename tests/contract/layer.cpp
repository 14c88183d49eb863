#include <codepage.h>
#include <desktop.h>
#include <file_time.h>
#include <host.h>

#include <clocale>
#include <cstdlib>

#include "surroundings.h"

namespace contract {

const bool kIsLayer = true;

void StartAnew() {
  host::Reset();
  host::SetString(nullptr, 5, "plain");
  host::SetString(nullptr, 6, "a\x93\xFAz");
}

bool UseCodePage(unsigned codePage) { return host::SetCodePage(codePage); }

bool UseLocale(unsigned codePage) {
  setenv("LC_ALL", codePage == 932 ? "ja_JP.UTF-8" : "C", 1);
  return UseCodePage(codePage) && std::setlocale(LC_ALL, "") != nullptr;
}

bool UseZone(int biasMinutes) {
  host::SetZoneBias(biasMinutes);
  return true;
}

HWND MakeWindow(Kind kind, RECT rect, HWND hWndParent, int id, UINT style) {
  return host::AddWindow({.hWndParent = hWndParent,
                          .id = id,
                          .rect = rect,
                          .isPushButton = kind == Kind::kButton,
                          .buttonStyle = style});
}

UINT ButtonStyle(HWND hWnd) { return host::WindowOf(hWnd).buttonStyle; }

void RunMessages() { host::RunMessages(); }

}  // namespace contract
