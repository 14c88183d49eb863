// A key that one call opens for itself.
#ifndef TAVKIT_REGISTRY_OPENED_KEY_H
#define TAVKIT_REGISTRY_OPENED_KEY_H

#include <win32.h>

namespace tavkit {

// Opens the key at a path below hKey and closes it at the end of the scope. For a NULL path hKey
// itself stands in: nothing is opened and nothing closed.
class OpenedKey {
 public:
  OpenedKey(HKEY hKey, LPCSTR pszSubKey, REGSAM samDesired) : hKey_(hKey) {
    if (pszSubKey == nullptr) return;
    Take(RegOpenKeyExA(hKey, pszSubKey, 0, samDesired, &hOpened_));
  }
  ~OpenedKey() {
    if (isOpen_) RegCloseKey(hOpened_);
  }
  OpenedKey(const OpenedKey&) = delete;
  OpenedKey& operator=(const OpenedKey&) = delete;

  // Creates the key, with every level above it, where the open did not find it.
  void CreateIfMissing(LPCSTR pszSubKey) {
    if (code_ != ERROR_FILE_NOT_FOUND) return;
    DWORD dwDisposition = 0;
    Take(RegCreateKeyExA(hKey_, pszSubKey, 0, nullptr, REG_OPTION_NON_VOLATILE, KEY_ALL_ACCESS,
                         nullptr, &hOpened_, &dwDisposition));
  }

  // The platform's code of the last attempt; there is a handle to work on if it is 0.
  DWORD code() const { return code_; }
  HKEY handle() const { return isOpen_ ? hOpened_ : hKey_; }

 private:
  void Take(LONG code) {
    code_ = static_cast<DWORD>(code);
    isOpen_ = code == ERROR_SUCCESS;
  }

  HKEY hKey_;
  HKEY hOpened_ = nullptr;
  bool isOpen_ = false;
  DWORD code_ = ERROR_SUCCESS;
};

}  // namespace tavkit

#endif  // TAVKIT_REGISTRY_OPENED_KEY_H
