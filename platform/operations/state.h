// What the platform layer remembers. A part of it belongs to the file that is named like it.
#ifndef PLATFORM_OPERATIONS_STATE_H
#define PLATFORM_OPERATIONS_STATE_H

#include <cstdint>
#include <deque>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <utility>
#include <vector>

#include "desktop.h"
#include "registry.h"

namespace host {

struct TimeSettings {
  int bias = 0;
  BOOL success = TRUE;
};

struct Version {
  DWORD platform = VER_PLATFORM_WIN32_NT;
  DWORD major = 5;
};

struct Message {
  HWND hWnd;
  UINT uMsg;
  WPARAM wParam;
  LPARAM lParam;
};

struct Desktop {
  std::map<HWND, Window> windows;
  HWND hWndFocus = nullptr;
  std::deque<Message> posted;
  std::map<std::pair<HINSTANCE, UINT>, std::string> strings;
  BOOL success = TRUE;
};

struct Block {
  std::size_t size;
  bool lives = true;
  std::string whenFreed = {};  // the bytes that it held then
};

struct Heap {
  ~Heap();

  std::mutex mutex;
  std::map<void*, Block> blocks;
  std::size_t living = 0;
  std::string error;
};

struct OpenKey {
  std::shared_ptr<RegistryKey> key;
  REGSAM access = 0;
};

struct Registry {
  std::mutex mutex;
  std::shared_ptr<RegistryKey> root = NewRegistry();
  std::map<HKEY, OpenKey> handles;
  std::uintptr_t lastHandle = 0;
};

// Each part begins as it is at program start.
struct State {
  std::size_t codePage = 0;  // its place in the list
  TimeSettings time;
  Version version;
  std::map<LCTYPE, std::string> localeTexts;  // those that take the place of the locale's
  Desktop desktop;
  Heap heap;
  Registry registry;
};

// It always holds one; Reset() makes it anew.
extern std::unique_ptr<State> state;

}  // namespace host

#endif  // PLATFORM_OPERATIONS_STATE_H
