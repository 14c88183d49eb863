// The controls of the platform layer on Windows: what there is to ask, and what a program can't
// have.
#include <codepage.h>
#include <file_time.h>
#include <heap.h>
#include <host.h>
#include <registry.h>
#include <user_locale.h>
#include <version.h>

#include <cstdio>
#include <cstdlib>

#include "windows_system.h"

namespace windows {

void (*onMissingControl)(const char* what) = [](const char* what) {
  std::fprintf(stderr, "there is no control of %s\n", what);
  std::abort();
};

}  // namespace windows

namespace host {

void Reset() {
  ResetControls();
  windows::livingBlocks = windows::livingKeys = windows::refusedBlocks = 0;
  windows::CloseWindows();
  RegDeleteValueA(HKEY_CURRENT_USER, "v");  // of the user's own key, which some tests write
  RegDeleteTreeA(HKEY_CURRENT_USER, "Software\\Brindlex");
}

std::size_t LivingBlocks() { return windows::livingBlocks; }
std::size_t LivingKeyHandles() { return windows::livingKeys; }
std::string HeapError() {
  if (windows::refusedBlocks != 0) return "the system refused to free a block";
  return HeapValidate(GetProcessHeap(), 0, nullptr) ? "" : "the heap is damaged";
}

// The environment chooses these for the whole process.
bool SetCodePage(unsigned codePage) { return codePage == GetACP(); }
unsigned CodePage() { return GetACP(); }
bool IsLeadByte(unsigned char byte) { return IsDBCSLeadByte(byte) != 0; }
void SetZoneBias(int) {}

void SetTimeSuccess(BOOL) { windows::onMissingControl("what time conversions answer"); }
void SetLocaleText(LCTYPE, const std::string&) {
  windows::onMissingControl("the text of a setting");
}
void SetVersion(DWORD, DWORD) { windows::onMissingControl("the system's version"); }

}  // namespace host
