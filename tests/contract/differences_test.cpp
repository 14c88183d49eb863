// Where the platform layer and Wine 8.0 answer differently, and why that stays so. A row shows one
// case of its class.
#include <desktop.h>
#include <gtest/gtest.h>
#include <host.h>

#include <functional>
#include <string>

namespace {

#ifdef _WIN32
constexpr bool kIsLayer = false;
#else
constexpr bool kIsLayer = true;
#endif

const HKEY kUser = HKEY_CURRENT_USER;

bool AreSame(const char16_t* first, const char16_t* second) {
  return lstrcmpW(reinterpret_cast<LPCWSTR>(first), reinterpret_cast<LPCWSTR>(second)) == 0;
}

bool IsDate(WORD wYear, WORD wMonth, WORD wDay) {
  const SYSTEMTIME st = {wYear, wMonth, 0, wDay, 0, 0, 0, 0};
  FILETIME ft;
  return SystemTimeToFileTime(&st, &ft);
}

bool IsDosDate(WORD wDate) {
  FILETIME ft;
  return DosDateTimeToFileTime(wDate, 0, &ft);
}

bool HasDosDate(FILETIME ft) {
  WORD wDate, wTime;
  return FileTimeToDosDateTime(&ft, &wDate, &wTime);
}

LONG Open(std::size_t length) {
  HKEY key = nullptr;
  return RegOpenKeyExA(kUser, std::string(length, 'k').c_str(), 0, KEY_READ, &key);
}

// The disposition, or a negative code.
LONG Create(std::size_t length) {
  HKEY key = nullptr, made = nullptr;
  DWORD is = 0;
  RegCreateKeyExA(kUser, "Software\\Brindlex", 0, nullptr, 0, KEY_ALL_ACCESS, nullptr, &key, &is);
  const LONG code = RegCreateKeyExA(key, std::string(length, 'k').c_str(), 0, nullptr, 0,
                                    KEY_ALL_ACCESS, nullptr, &made, &is);
  for (const HKEY each : {key, made}) RegCloseKey(each);
  return code == ERROR_SUCCESS ? static_cast<LONG>(is) : -code;
}

// Whether the focus goes to the second of two buttons.
bool GoesToTheNext() {
  const HWND hDlg = host::AddWindow({});
  for (const int id : {1, 2}) host::AddWindow({.hWndParent = hDlg, .id = id});
  SendMessageA(hDlg, WM_NEXTDLGCTL, reinterpret_cast<WPARAM>(GetDlgItem(hDlg, 1)), 1);
  SendMessageA(hDlg, WM_NEXTDLGCTL, 0, 0);
  return GetFocus() == GetDlgItem(hDlg, 2);
}

TEST(Differences, AreTheseAlone) {
  WCHAR wide[9] = {'a', 'b'};
  char text[9] = "a";
  DWORD version[39] = {156};
  // clang-format off
  const struct { const char* question; std::function<LONG()> answer; LONG wine, layer;
                 const char* reason; } rows[] = {
      // Nothing that calls the library can tell.
      {"is Z below a", [] { return lstrcmpA("Z", "a") < 0; }, 0, 1, "only equality is asked for"},
      {"-2 bytes widened", [&] { return MultiByteToWideChar(CP_ACP, 0, "a", -2, wide, 9); }, 2, 0,
       "the library measures its texts by -1"},
      {"-2 units narrowed",
       [&] { return WideCharToMultiByte(CP_ACP, 0, wide, -2, text, 9, nullptr, nullptr); }, 2, 0,
       "as before"},
      {"a version record of 156 bytes",
       [&] { return GetVersionExA(reinterpret_cast<OSVERSIONINFOA*>(version)); }, 1, 0,
       "the library's has 148"},
      {"what a key is that an empty name made", [] { return Create(0); }, 1, 2,
       "the library reads no disposition; the key was there"},
      {"the focus to the next control", GoesToTheNext, 1, 0, "the library names the control"},
      // The layer does as documented.
      {"29 February 2023", [] { return IsDate(2023, 2, 29); }, 1, 0, "there is no such day"},
      {"29 February 2023 of DOS", [] { return IsDosDate(43 << 9 | 2 << 5 | 29); }, 1, 0,
       "as before"},
      {"the year 30828", [] { return IsDate(30828, 1, 1); }, 1, 0, "dates end with 30827"},
      {"2108 for DOS", [] { return HasDosDate({0x6803C000, 0x023868B8}); }, 1, 0,
       "its years end with 2107; Wine loses a bit of this one"},
      {"a key's name of 256 bytes", [] { return Create(256); }, 1, -87, "the longest has 255"},
      {"opening a name of 300 bytes", [] { return Open(300); }, 234, ERROR_FILE_NOT_FOUND,
       "there is no such key; Wine speaks of a buffer of its own"},
      // The tables are too large, or somebody else's.
      {"a unit that isn't assigned", [] { return AreSame(u"a\u0378b", u"ab"); }, 1, 0,
       "3,300 units have no weight on Wine, beside the format characters"},
      {"one dot and a full stop", [] { return AreSame(u"\u2024", u"."); }, 1, 0,
       "2,900 units share a weight, beside Latin letters and ligatures"},
      // Not asked here, where no program is German: its short days are "Mo" in the C library's
      // data, from which the layer takes them, and "Mo." in Wine's.
  };
  // clang-format on
  for (const auto& [question, answer, wine, layer, reason] : rows) {
    host::Reset();
    EXPECT_EQ(answer(), kIsLayer ? layer : wine) << question << ": " << reason;
  }
}

}  // namespace
