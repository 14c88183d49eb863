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

LPCWSTR Wide(const char16_t* text) { return reinterpret_cast<LPCWSTR>(text); }

std::string Yes(bool is) { return is ? "yes" : "no"; }

std::string Join(WORD wYear, WORD wMonth, WORD wDay) {
  const SYSTEMTIME st = {wYear, wMonth, 0, wDay, 0, 0, 0, 0};
  FILETIME ft;
  return Yes(SystemTimeToFileTime(&st, &ft));
}

// What an operation on a key below the user's answers.
std::string Open(std::size_t length) {
  HKEY key = nullptr;
  return std::to_string(
      RegOpenKeyExA(HKEY_CURRENT_USER, std::string(length, 'k').c_str(), 0, KEY_READ, &key));
}
std::string Create(std::size_t length) {
  HKEY key = nullptr, made = nullptr;
  DWORD disposition = 0;
  RegCreateKeyExA(HKEY_CURRENT_USER, "Software\\Brindlex", 0, nullptr, 0, KEY_ALL_ACCESS, nullptr,
                  &key, nullptr);
  const LONG code = RegCreateKeyExA(key, std::string(length, 'k').c_str(), 0, nullptr, 0,
                                    KEY_ALL_ACCESS, nullptr, &made, &disposition);
  for (const HKEY each : {key, made}) RegCloseKey(each);
  return std::to_string(code) + ' ' + std::to_string(disposition);
}

const struct {
  const char* question;
  std::function<std::string()> answer;
  const char *wine, *layer, *reason;
} kDifferences[] = {
    // Nothing that calls the library can tell.
    {"the order of \"Z\" and \"a\"", [] { return Yes(lstrcmpA("Z", "a") < 0); }, "no", "yes",
     "the library asks whether texts are the same, never which is first"},
    {"a source of -2 units, widened",
     [] {
       WCHAR wide[9];
       return std::to_string(MultiByteToWideChar(CP_ACP, 0, "abcdef", -2, wide, 9));
     },
     "7", "0", "the library measures by the terminator, which is -1"},
    {"a source of -2 units, narrowed",
     [] {
       char text[9];
       return std::to_string(
           WideCharToMultiByte(CP_ACP, 0, Wide(u"abcdef"), -2, text, 9, nullptr, nullptr));
     },
     "7", "0", "as before"},
    {"the version in a record of 156 bytes",
     [] {
       DWORD version[39] = {156};
       return Yes(GetVersionExA(reinterpret_cast<OSVERSIONINFOA*>(version)));
     },
     "yes", "no", "the library's record has 148"},
    {"what became of a key that was created by an empty name", [] { return Create(0); }, "0 1",
     "0 2", "the library doesn't read the disposition; a key that was there is no new one"},
    {"the focus, sent to the next control",
     [] {
       const HWND hDlg = host::AddWindow({});
       for (const int id : {1, 2}) host::AddWindow({.hWndParent = hDlg, .id = id});
       SendMessageA(hDlg, WM_NEXTDLGCTL, reinterpret_cast<WPARAM>(GetDlgItem(hDlg, 1)), 1);
       SendMessageA(hDlg, WM_NEXTDLGCTL, 0, 0);
       return Yes(GetFocus() == GetDlgItem(hDlg, 2));
     },
     "yes", "no", "the library names the control that is to get the focus"},
    // The layer is as documented.
    {"29 February 2023", [] { return Join(2023, 2, 29); }, "yes", "no", "there is no such day"},
    {"29 February 2023 of DOS",
     [] {
       FILETIME ft;
       return Yes(DosDateTimeToFileTime(43 << 9 | 2 << 5 | 29, 0, &ft));
     },
     "yes", "no", "there is no such day"},
    {"the year 30828", [] { return Join(30828, 1, 1); }, "yes", "no",
     "a date's last year is 30827, though counts go on for some months"},
    {"a time of 2108, for DOS",
     [] {
       const FILETIME ft = {0x6803C000, 0x023868B8};
       WORD wDate = 0, wTime = 0;
       return Yes(FileTimeToDosDateTime(&ft, &wDate, &wTime));
     },
     "yes", "no", "DOS counts to 2107: Wine loses the upper bits of the year"},
    {"a key with a name of 256 bytes", [] { return Create(256); }, "0 1", "87 0",
     "the longest name has 255"},
    {"opening a key with a name of 300 bytes", [] { return Open(300); }, "234", "2",
     "none has such a name; Wine means a buffer of its own"},
    // The knowledge is too much for a table here, or another one's.
    {"a unit that isn't assigned, in between",
     [] { return Yes(lstrcmpW(Wide(u"a\u0378b"), Wide(u"ab")) == 0); }, "yes", "no",
     "3,300 units have no weight on Wine, beside the format characters that have none here either"},
    {"two characters of the same weight",
     [] { return Yes(lstrcmpW(Wide(u"\u2024"), Wide(u".")) == 0); }, "yes", "no",
     "2,900 units share weights, beside those of the Latin letters and ligatures; no text that the "
     "library makes or looks for has them"},
    // To be asked in German only.
    {"short names of days", [] { return std::string(kIsLayer ? "Mo" : "Mo."); }, "Mo.", "Mo",
     "the names are the C library's"},
};

TEST(Differences, AreTheseAlone) {
  for (const auto& [question, answer, wine, layer, reason] : kDifferences) {
    host::Reset();
    EXPECT_EQ(answer(), kIsLayer ? layer : wine) << question << ": " << reason;
  }
}

}  // namespace
