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

#include <set>

namespace {

constexpr DWORD kCode = 0xC0DE;  // for a result that is the platform's code

// What it means that a key is not found when it is opened: for most a failure like any other.
enum Missing { kIsFailure, kGoesOn, kIsTheOnlyFailure };

// What a call writes to, of whatever type.
struct Out {
  alignas(8) std::array<char, 64> bytes;
  template <class T>
  operator T*() {
    return reinterpret_cast<T*>(&bytes);
  }
};

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
constexpr NETRESOURCEA kRecord = {};
constexpr NETRESOURCEW kWideRecord = {};
HWND hWnd;
HKEY key;
HXBUF hXBuf;
DWORD size, result;

// clang-format off
#define CALL(call) #call, [](Out& to) -> DWORD { return (void)to, call; }
const Row kRows[] = {
    {CALL(utRegVerifyKey(u, k)), 1, 0, "", kIsTheOnlyFailure},
    {CALL(utRegVerifyValue(u, k, "sz", to)), 1, 0},
    {CALL((size = 9, utRegQueryValue(u, k, "sz", nullptr, to, &size))), 0, kCode},
    {CALL(utRegSetValue(u, k, "x", 3, "x", 1, 0)), 0, kCode},
    {CALL(utRegSetValue(u, k, "x", 3, "x", 1, 1)), 0, kCode, "", kGoesOn},
    {CALL(utRegDeleteValue(u, k, "sz")), 0, kCode},
    {CALL(utRegGetValueString(u, k, "sz", "d", to, 9)), 0, kCode, {"d\0", 3}},
    {CALL(utRegGetValueDword(u, k, "dw", 'M', to)), 0, kCode, {"M\0\0", 4}},
    {CALL(utRegGetValueBool(u, k, "dw", 'M', to)), 0, kCode, {"M\0\0", 4}},
    {CALL(utRegSetValueString(u, none, "x", "x", 1)), 0, kCode, "", kGoesOn},
    {CALL(utRegSetValueDword(u, none, "x", 7, 1)), 0, kCode, "", kGoesOn},
    {CALL(utRegSetValueBool(u, none, "x", 7, 1)), 0, kCode, "", kGoesOn},
    {CALL((result = utRegOpenPrivateUserKey("s", "p", KEY_READ, &key),
           result == 0 && RegCloseKey(key), result)), 0, kCode},
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
    {CALL(utConvertFileTime(&kFile, to, 1)), 1, 0}, {CALL(utConvertFileTime(to, to, 2)), 1, 0},
    {CALL(utDosDateTimeToFileTime(0x2438, 0x13CF, to, 1)), 1, 0},
    {CALL(utSystemTimeToFileTime(&kSystem, to, 0)), 1, 0},
    {CALL(utSystemTimeToFileTime(&kSystem, to, 2)), 1, 0},
    {CALL(utFileTimeToSystemTime(&kFile, to, 1)), 1, 0},
    {CALL(utFileTimeToDosDateTime(&kFile, to, LPWORD(to) + 1, 2)), 1, 0},
    {CALL(utConvertSystemTime(&kSystem, to, 1)), 1, 0},
    {CALL(utDosDateTimeToSystemTime(0x2438, 0x13CF, to, 2)), 1, 0},
    {CALL(utSystemTimeToDosDateTime(&kSystem, to, LPWORD(to) + 1, 1)), 1, 0},
    {CALL(utDayOfWeekName(to, 32, 0, 0)), 1, 0}, {CALL(utMonthName(to, 32, 1, 1)), 1, 0},
    {CALL(utTimeFormat()), 1, 0}, {CALL(utIsWinNT()), 1, 0},
    {CALL(utA2WHelper(to, "ab", 8) == LPWSTR(to)), 1, 1, {"\0", 2}},
    {CALL(utW2AHelper(to, u"ab", 8) == LPSTR(to)), 1, 1, {"", 1}},
    {CALL((hXBuf = utXBufCreate(0, nullptr), result = utXBufUseBuffer(hXBuf, 8, nullptr),
           utXBufDestroy(hXBuf), result)), 1, 0},
    {CALL(utCopyNETRESOURCE(&kRecord, to, 48, UT_NR_ALL, nullptr)), 1, 0},
    {CALL(utCopyNETRESOURCEW(&kWideRecord, to, 48, UT_NR_ALL, nullptr)), 1, 0},
    {CALL(utSetWindowStringRes(hWnd, nullptr, 5)), 1, kCode},
    {CALL(utSetDlgItemStringRes(hWnd, 7, nullptr, 5)), 1, kCode},
    {CALL(utGetChildRect(hWnd, to)), 1, 0}, {CALL(utMoveWindowDelta(hWnd, 1, 2)), 1, 0},
    {CALL(utMoveChildDelta(hWnd, 1, 2)), 1, 0}, {CALL(utSizeWindowDelta(hWnd, 1, 2)), 1, 0},
};
// clang-format on
#undef CALL

bool IsOneOf(const std::string& operation, std::initializer_list<std::string_view> operations) {
  return std::find(operations.begin(), operations.end(), operation) != operations.end();
}

// Runs a row on a platform in a known state, with the n-th call of an operation failing, if n isn't
// 0. Returns the operations that were called; none where there was no call to fail.
std::set<std::string> RunRow(const Row& row, const char* operation, unsigned n, DWORD code) {
  std::shared_ptr<const host::RegistryKey> before;
  for (int i = 0; i < 2; ++i) {  // the same twice: the first one shows what the second one held
    before = host::CurrentRegistry();
    host::Reset();
    utRegSetValueString(u, k, "sz", "text", 1);
    utRegSetValueDword(u, k, "dw", 5, 1);
    host::SetLocaleText(LOCALE_ITIME, "1");
    host::SetString(nullptr, 5, "text");
    host::AddWindow({.hWndParent = hWnd = host::AddWindow({}), .id = 7});
  }
  Out out;
  out.bytes.fill(0x0D);
  auto expected = out.bytes;
  host::FailCall(n, code, operation);
  host::StartJournal();
  const DWORD got = row.call(out);
  std::set<std::string> operations;
  std::string last;
  for (const auto& call : host::TakeJournal()) {
    operations.insert(call.operation);
    // What releases, and what measures a default, comes after a failure too.
    if (!IsOneOf(call.operation, {"RegCloseKey", "LocalFree", "lstrlenA"})) last = call.operation;
  }
  EXPECT_EQ(host::LivingKeyHandles() + host::LivingBlocks(), 0u);
  const bool came = host::FailureCame();
  bool isNoticed =
      !IsOneOf(operation, {"RegCloseKey", "SetWindowPos", "GetParent", "ScreenToClient"});
  if (row.missing != kIsFailure && operation == std::string("RegOpenKeyExA")) {
    isNoticed = (code == ERROR_FILE_NOT_FOUND) == (row.missing == kIsTheOnlyFailure);
  }
  if (!came || !isNoticed) {
    EXPECT_EQ(got, row.success);
    return came || n == 0 ? operations : std::set<std::string>();
  }
  EXPECT_EQ(got, row.failure == kCode ? code : row.failure);
  std::copy(row.left.begin(), row.left.end(), expected.begin());
  EXPECT_EQ(out.bytes, expected);
  EXPECT_EQ(last, operation);
  // A key that was made for a value stays.
  EXPECT_TRUE(last == "RegSetValueExA" || *host::CurrentRegistry() == *before);
  return operations;
}

TEST(Faults, EndTheWorkAndLeaveNothingBehind) {
  for (const auto& row : kRows) {
    unsigned failures = 0;
    for (const auto& operation : RunRow(row, "", 0, 0)) {
      std::vector<DWORD> codes = {0};
      if (operation.starts_with("Reg")) codes = {2, 5, 6, 8, 87, 234, 0x10002};
      if (operation == "LoadStringA") codes = {0, ~0u};
      for (const DWORD code : operation.starts_with("lstr") ? std::vector<DWORD>{} : codes) {
        SCOPED_TRACE(row.text + (": " + operation) + " gives " + std::to_string(code));
        for (unsigned n = 1; !RunRow(row, operation.c_str(), n, code).empty(); ++n) ++failures;
      }
    }
    EXPECT_GT(failures, 0u) << row.text;
  }
}

}  // namespace
