// The exports that call the platform, with every call that may fail failing in turn, once with each
// code that it may give. The default button of a dialog, which goes on at every failure, has a
// model of its own in dialog_test.cpp.
#include <desktop.h>
#include <gtest/gtest.h>
#include <heap.h>
#include <host.h>
#include <registry.h>
#include <tavkit.h>
#include <user_locale.h>

#include <cstring>
#include <set>

namespace {

// What a call writes to, of whatever type.
struct Out {
  alignas(8) BYTE bytes[64];

  Out() { std::memset(bytes, 0xCD, sizeof bytes); }
  template <class T>
  operator T*() {
    return reinterpret_cast<T*>(bytes);
  }
};

constexpr DWORD kCode = 0xC0DE;  // for a result that is the platform's code

// What it means that a key is not found when it is opened: for most a failure like any other.
enum Missing { kIsFailure, kGoesOn, kIsTheOnlyFailure };

struct Row {
  const char* text;
  DWORD (*call)(Out& to);
  DWORD success, failure;      // the results
  std::string_view left = {};  // what a failure leaves at the front of the untouched output
  Missing missing = kIsFailure;
};

const HKEY u = HKEY_CURRENT_USER;
const char k[] = "Software\\Brindlex\\p\\s", none[] = "Software\\Brindlex\\p\\t";
constexpr FILETIME kFile = {0x09ACA700, 0x01BD2870};
constexpr SYSTEMTIME kSystem = {1998, 1, 6, 24, 2, 30, 30, 0};
constexpr NETRESOURCEA kRecord = {1, 2, 3, 4, nullptr, nullptr, nullptr, nullptr};
constexpr NETRESOURCEW kWideRecord = {1, 2, 3, 4, nullptr, nullptr, nullptr, nullptr};
HWND hWnd;

DWORD OpenAndClose(Out&) {
  HKEY hKey = nullptr;
  const DWORD code = utRegOpenPrivateUserKey("s", "p", KEY_READ, &hKey);
  if (hKey != nullptr) RegCloseKey(hKey);
  return code;
}

DWORD UseOwnBuffer(Out&) {
  const HXBUF hXBuf = utXBufCreate(0, nullptr);
  const BOOL result = utXBufUseBuffer(hXBuf, 8, nullptr);
  utXBufDestroy(hXBuf);
  return result;
}

#define CALL(call) #call, [](Out& to) -> DWORD { return (void)to, call; }
DWORD size;
// clang-format off
const Row kRows[] = {
    {CALL(utRegVerifyKey(u, k)), 1, 0, "", kIsTheOnlyFailure},
    {CALL(utRegVerifyValue(u, k, "sz", to)), 1, 0},
    {CALL((size = 9, utRegQueryValue(u, k, "sz", nullptr, to, &size))), 0, kCode},
    {CALL(utRegSetValue(u, k, "x", 3, "x", 1, 0)), 0, kCode},
    {CALL(utRegSetValue(u, k, "x", 3, "x", 1, 1)), 0, kCode, "", kGoesOn},
    {CALL(utRegSetValue(u, none, "x", 3, "x", 1, 1)), 0, kCode, "", kGoesOn},
    {CALL(utRegDeleteValue(u, k, "sz")), 0, kCode},
    {CALL(utRegGetValueString(u, k, "sz", "d", to, 9)), 0, kCode, {"d\0", 3}},
    {CALL(utRegGetValueDword(u, k, "dw", 'M', to)), 0, kCode, {"M\0\0", 4}},
    {CALL(utRegGetValueBool(u, k, "dw", 'M', to)), 0, kCode, {"M\0\0", 4}},
    {CALL(utRegSetValueString(u, none, "x", "x", 1)), 0, kCode, "", kGoesOn},
    {CALL(utRegSetValueDword(u, none, "x", 7, 1)), 0, kCode, "", kGoesOn},
    {CALL(utRegSetValueBool(u, none, "x", 7, 1)), 0, kCode, "", kGoesOn},
    {"utRegOpenPrivateUserKey", OpenAndClose, 0, kCode},
    {CALL(utRegVerifyPrivateUserKey("s", "p")), 1, 0, "", kIsTheOnlyFailure},
    {CALL(utRegVerifyPrivateUserValue("s", "sz", "p", to)), 1, 0},
    {CALL(utRegDeletePrivateUserValue("s", "sz", "p")), 1, 0},
    {CALL(utRegDeletePrivateUserKey("s", "p")), 0, kCode},
    {CALL(utRegGetPrivateUserString("s", "sz", "d", to, 9, "p")), 4, 1, {"d\0", 3}},
    {CALL(utRegGetPrivateUserDword("s", "dw", 77, "p")), 5, 77},
    {CALL(utRegGetPrivateUserBool("s", "dw", 55, "p")), 1, 55},
    {CALL((size = 9, utRegGetPrivateUserBinary("s", "sz", nullptr, to, &size, "p"))), 0, kCode},
    {CALL(utRegWritePrivateUserString("t", "x", "x", "p")), 1, 0, "", kGoesOn},
    {CALL(utRegWritePrivateUserString("s", "sz", nullptr, "p")), 1, 0},
    {CALL(utRegWritePrivateUserDword("t", "x", 7, "p")), 1, 0, "", kGoesOn},
    {CALL(utRegWritePrivateUserBool("t", "x", 7, "p")), 1, 0, "", kGoesOn},
    {CALL(utRegWritePrivateUserBinary("t", "x", "x", 1, "p")), 1, 0, "", kGoesOn},
    {CALL(utRegWritePrivateUserBinary("s", "sz", nullptr, 1, "p")), 1, 0},
    {CALL(utConvertFileTime(&kFile, to, 1)), 1, 0},
    {CALL((*to.operator FILETIME*() = kFile, utConvertFileTime(to, to, 2))), 1, 0,
     {reinterpret_cast<const char*>(&kFile), sizeof kFile}},
    {CALL(utDosDateTimeToFileTime(0x2438, 0x13CF, to, 1)), 1, 0},
    {CALL(utDosDateTimeToFileTime(0x2438, 0x13CF, to, 0)), 1, 0},
    {CALL(utSystemTimeToFileTime(&kSystem, to, 2)), 1, 0},
    {CALL(utSystemTimeToFileTime(&kSystem, to, 0)), 1, 0},
    {CALL(utFileTimeToSystemTime(&kFile, to, 1)), 1, 0},
    {CALL(utFileTimeToSystemTime(&kFile, to, 0)), 1, 0},
    {CALL(utFileTimeToDosDateTime(&kFile, to, &to.operator WORD*()[1], 2)), 1, 0},
    {CALL(utFileTimeToDosDateTime(&kFile, to, &to.operator WORD*()[1], 0)), 1, 0},
    {CALL(utConvertSystemTime(&kSystem, to, 1)), 1, 0},
    {CALL(utDosDateTimeToSystemTime(0x2438, 0x13CF, to, 2)), 1, 0},
    {CALL(utSystemTimeToDosDateTime(&kSystem, to, &to.operator WORD*()[1], 1)), 1, 0},
    {CALL(utDayOfWeekName(to, 32, 0, 0)), 1, 0},
    {CALL(utMonthName(to, 32, 1, 1)), 1, 0},
    {CALL(utTimeFormat()), 1, 0},
    {CALL(utIsWinNT()), 1, 0},
    {CALL(utA2WHelper(to, "ab", 8) == to.operator WCHAR*()), 1, 1, {"\0", 2}},
    {CALL(utW2AHelper(to, u"ab", 8) == to.operator CHAR*()), 1, 1, {"", 1}},
    {"utXBufCreate and utXBufUseBuffer", UseOwnBuffer, 1, 0},
    {CALL(utCopyNETRESOURCE(&kRecord, to, 48, UT_NR_ALL, nullptr)), 1, 0},
    {CALL(utCopyNETRESOURCEW(&kWideRecord, to, 48, UT_NR_ALL, nullptr)), 1, 0},
    {CALL(utSetWindowStringRes(hWnd, nullptr, 5)), 1, kCode},
    {CALL(utSetDlgItemStringRes(hWnd, 7, nullptr, 5)), 1, kCode},
    {CALL(utGetChildRect(hWnd, to)), 1, 0},
    {CALL(utMoveWindowDelta(hWnd, 1, 2)), 1, 0},
    {CALL(utMoveChildDelta(hWnd, 1, 2)), 1, 0},
    {CALL(utSizeWindowDelta(hWnd, 1, 2)), 1, 0},
};
// clang-format on
#undef CALL

void Prepare() {
  host::Reset();
  utRegSetValueString(u, k, "sz", "text", 1);
  utRegSetValueDword(u, k, "dw", 5, 1);
  host::SetLocaleText(LOCALE_ITIME, "1");
  hWnd = host::AddWindow({});
  host::AddWindow({.hWndParent = hWnd, .id = 7});
  host::SetString(nullptr, 5, "text");
}

bool IsOneOf(const std::string& operation, std::initializer_list<const char*> operations) {
  return std::find(operations.begin(), operations.end(), operation) != operations.end();
}

// Runs a row with the n-th call of an operation failing; false if there is no such call.
bool RunFailing(const Row& row, const std::string& operation, unsigned n, DWORD code) {
  Prepare();
  const auto before = host::CurrentRegistry();
  Prepare();
  host::FailCall(n, code, operation.c_str());
  host::StartJournal();
  Out out, expected;
  const DWORD result = row.call(out);
  auto journal = host::TakeJournal();
  const bool came = host::FailureCame();
  host::FailCall(0);
  EXPECT_EQ(host::LivingKeyHandles() + host::LivingBlocks(), 0u);
  const bool isMissing = operation == "RegOpenKeyExA" && code == 2;
  bool isNoticed =
      !IsOneOf(operation, {"RegCloseKey", "SetWindowPos", "GetParent", "ScreenToClient"});
  if (operation == "RegOpenKeyExA") {
    isNoticed = row.missing == kIsFailure || isMissing == (row.missing == kIsTheOnlyFailure);
  }
  if (!came || !isNoticed) {
    EXPECT_EQ(result, row.success);
    return came;
  }
  EXPECT_EQ(result, row.failure == kCode ? code : row.failure);
  std::copy(row.left.begin(), row.left.end(), expected.bytes);
  EXPECT_EQ(std::memcmp(out.bytes, expected.bytes, sizeof out), 0);
  // Nothing comes after the failure but what releases and what measures the default.
  while (IsOneOf(journal.back().operation, {"RegCloseKey", "LocalFree", "lstrlenA"}))
    journal.pop_back();
  EXPECT_EQ(journal.back().operation, operation);
  // A key that was made for the value stays.
  EXPECT_TRUE(operation == "RegSetValueExA" || *before == *host::CurrentRegistry());
  return true;
}

TEST(Faults, EndTheWorkAndLeaveNothingBehind) {
  for (const auto& row : kRows) {
    Prepare();
    host::StartJournal();
    Out out;
    EXPECT_EQ(row.call(out), row.success) << row.text;
    std::set<std::string> operations;
    for (const auto& call : host::TakeJournal()) operations.insert(call.operation);
    unsigned failures = 0;
    for (const auto& operation : operations) {
      if (operation.starts_with("lstr")) continue;  // which don't fail on a string
      std::vector<DWORD> codes = {0};
      if (operation.starts_with("Reg")) codes = {2, 5, 6, 8, 87, 234, 1018};
      if (operation == "LoadStringA") codes = {0, ~0u};
      for (const DWORD code : codes) {
        SCOPED_TRACE(row.text + (": " + operation) + " gives " + std::to_string(code));
        for (unsigned n = 1; RunFailing(row, operation, n, code); ++n) ++failures;
      }
    }
    EXPECT_GT(failures, 0u) << row.text;
  }
}

}  // namespace
