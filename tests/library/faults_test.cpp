// The exports that call the platform, with each of these calls failing in turn, once with every code
// that it may give: the result, the outputs, which call is the last one, and that no key and no block
// stays behind. The string operations (lstr*) fail for bad addresses only; where one does, nothing
// stays behind either. The default button of a dialog, which goes on at every failure, has a model of
// its own in dialog_test.cpp.
#include <desktop.h>
#include <gtest/gtest.h>
#include <heap.h>
#include <host.h>
#include <registry.h>
#include <tavkit.h>
#include <user_locale.h>

#include <set>

namespace {

constexpr DWORD kPathNotFound = 3, kNotEnoughMemory = 8;
constexpr DWORD kNotFoundBelowMore = 0x10000 | ERROR_FILE_NOT_FOUND;

const HKEY kUser = HKEY_CURRENT_USER;
constexpr char kKey[] = "Software\\Brindlex\\p\\s", kNoKey[] = "Software\\Brindlex\\p\\t";
constexpr FILETIME kFile = {0x09ACA700, 0x01BD2870};
constexpr SYSTEMTIME kSystem = {1998, 1, 6, 24, 2, 30, 30, 0};
constexpr WORD kDate = 0x2438, kTime = 0x13CF;
constexpr NETRESOURCEA kRecord = {};
constexpr NETRESOURCEW kWideRecord = {};

// What a call writes to.
union Output {
  std::array<char, 64> bytes;
  CHAR text[9];
  WCHAR wide[8];
  BOOL flag;
  DWORD number;
  FILETIME file;
  SYSTEMTIME system;
  WORD dos[2];
  RECT rect;
  NETRESOURCEA record;
  NETRESOURCEW wideRecord;

  Output() { bytes.fill(0x0D); }
};

// The platform as each call finds it, and what the call works with.
struct Setup {
  Output to = {};
  DWORD size = sizeof to.text;
  HWND hDlg = nullptr;

  Setup() {
    host::Reset();
    utRegSetValueString(kUser, kKey, "sz", "text", 1);
    utRegSetValueDword(kUser, kKey, "dw", 5, 1);
    host::SetLocaleText(LOCALE_ITIME, "1");
    host::SetString(nullptr, 5, "text");
    hDlg = host::AddWindow({});
    host::AddWindow({.hWndParent = hDlg, .id = 7});
  }
};

DWORD OpenAndClose() {
  HKEY key = nullptr;
  const DWORD code = utRegOpenPrivateUserKey("s", "p", KEY_READ, &key);
  if (code == ERROR_SUCCESS) RegCloseKey(key);
  return code;
}

BOOL UseOwnedBuffer() {
  const HXBUF hXBuf = utXBufCreate(0, nullptr);
  const BOOL result = utXBufUseBuffer(hXBuf, 8, nullptr);
  utXBufDestroy(hXBuf);
  return result;
}

// What it means to a call that the key it opens is not found.
enum class MissingKey { kIsAFailure, kIsCreated, kIsTheOnlyFailure };

constexpr DWORD kThatCode = 0xC0DE;  // as a result: the code that the failing call gave

struct Outcome {
  DWORD success, failure;
  std::string_view left = {};  // what a failure leaves at the front of the untouched output
  MissingKey missingKey = MissingKey::kIsAFailure;
};
constexpr Outcome kBoolean = {.success = 1, .failure = 0};
constexpr Outcome kCode = {.success = 0, .failure = kThatCode};
constexpr Outcome kVerdict = {1, 0, "", MissingKey::kIsTheOnlyFailure};
constexpr Outcome kBooleanOfWrite = {1, 0, "", MissingKey::kIsCreated};
constexpr Outcome kCodeOfWrite = {0, kThatCode, "", MissingKey::kIsCreated};
constexpr Outcome kStringLoad = {.success = 1, .failure = kThatCode};

struct Row {
  const char* text;
  DWORD (*call)(Setup& s);
  Outcome outcome;
};

// clang-format off
#define CALL(call) #call, []([[maybe_unused]] Setup& s) -> DWORD { return call; }
const Row kRows[] = {
    {CALL(utRegVerifyKey(kUser, kKey)), kVerdict},
    {CALL(utRegVerifyValue(kUser, kKey, "sz", &s.to.number)), kBoolean},
    {CALL(utRegQueryValue(kUser, kKey, "sz", nullptr, s.to.text, &s.size)), kCode},
    {CALL(utRegSetValue(kUser, kKey, "x", 3, "x", 1, 0)), kCode},
    {CALL(utRegSetValue(kUser, kKey, "x", 3, "x", 1, 1)), kCodeOfWrite},
    {CALL(utRegDeleteValue(kUser, kKey, "sz")), kCode},
    {CALL(utRegGetValueString(kUser, kKey, "sz", "d", s.to.text, 9)), {0, kThatCode, {"d\0", 3}}},
    {CALL(utRegGetValueDword(kUser, kKey, "dw", 'M', &s.to.number)), {0, kThatCode, {"M\0\0", 4}}},
    {CALL(utRegGetValueBool(kUser, kKey, "dw", 'M', &s.to.flag)), {0, kThatCode, {"M\0\0", 4}}},
    {CALL(utRegSetValueString(kUser, kNoKey, "x", "x", 1)), kCodeOfWrite},
    {CALL(utRegSetValueDword(kUser, kNoKey, "x", 7, 1)), kCodeOfWrite},
    {CALL(utRegSetValueBool(kUser, kNoKey, "x", 7, 1)), kCodeOfWrite},
    {CALL(OpenAndClose()), kCode},
    {CALL(utRegVerifyPrivateUserKey("s", "p")), kVerdict},
    {CALL(utRegVerifyPrivateUserValue("s", "sz", "p", &s.to.number)), kBoolean},
    {CALL(utRegDeletePrivateUserValue("s", "sz", "p")), kBoolean},
    {CALL(utRegDeletePrivateUserKey("s", "p")), kCode},
    {CALL(utRegGetPrivateUserString("s", "sz", "d", s.to.text, 9, "p")), {4, 1, {"d\0", 3}}},
    {CALL(utRegGetPrivateUserDword("s", "dw", 77, "p")), {.success = 5, .failure = 77}},
    {CALL(utRegGetPrivateUserBool("s", "dw", 55, "p")), {.success = 1, .failure = 55}},
    {CALL(utRegGetPrivateUserBinary("s", "sz", nullptr, s.to.text, &s.size, "p")), kCode},
    {CALL(utRegWritePrivateUserString("t", "x", "x", "p")), kBooleanOfWrite},
    {CALL(utRegWritePrivateUserString("s", "sz", nullptr, "p")), kBoolean},
    {CALL(utRegWritePrivateUserDword("t", "x", 7, "p")), kBooleanOfWrite},
    {CALL(utRegWritePrivateUserBool("t", "x", 7, "p")), kBooleanOfWrite},
    {CALL(utRegWritePrivateUserBinary("t", "x", "x", 1, "p")), kBooleanOfWrite},
    {CALL(utRegWritePrivateUserBinary("s", "sz", nullptr, 1, "p")), kBoolean},
    {CALL(utConvertFileTime(&kFile, &s.to.file, 1)), kBoolean},
    {CALL(utConvertFileTime(&s.to.file, &s.to.file, 2)), kBoolean},
    {CALL(utDosDateTimeToFileTime(kDate, kTime, &s.to.file, 1)), kBoolean},
    {CALL(utSystemTimeToFileTime(&kSystem, &s.to.file, 0)), kBoolean},
    {CALL(utSystemTimeToFileTime(&kSystem, &s.to.file, 2)), kBoolean},
    {CALL(utFileTimeToSystemTime(&kFile, &s.to.system, 1)), kBoolean},
    {CALL(utFileTimeToDosDateTime(&kFile, &s.to.dos[0], &s.to.dos[1], 2)), kBoolean},
    {CALL(utConvertSystemTime(&kSystem, &s.to.system, 1)), kBoolean},
    {CALL(utDosDateTimeToSystemTime(kDate, kTime, &s.to.system, 2)), kBoolean},
    {CALL(utSystemTimeToDosDateTime(&kSystem, &s.to.dos[0], &s.to.dos[1], 1)), kBoolean},
    {CALL(utDayOfWeekName(s.to.text, 32, 0, 0)), kBoolean},
    {CALL(utMonthName(s.to.text, 32, 1, 1)), kBoolean},
    {CALL(utTimeFormat()), kBoolean}, {CALL(utIsWinNT()), kBoolean},
    {CALL(utA2WHelper(s.to.wide, "ab", 8) == s.to.wide), {1, 1, {"\0", 2}}},
    {CALL(utW2AHelper(s.to.text, u"ab", 8) == s.to.text), {1, 1, {"", 1}}},
    {CALL(UseOwnedBuffer()), kBoolean},
    {CALL(utCopyNETRESOURCE(&kRecord, &s.to.record, 48, UT_NR_ALL, nullptr)), kBoolean},
    {CALL(utCopyNETRESOURCEW(&kWideRecord, &s.to.wideRecord, 48, UT_NR_ALL, nullptr)), kBoolean},
    {CALL(utSetWindowStringRes(s.hDlg, nullptr, 5)), kStringLoad},
    {CALL(utSetDlgItemStringRes(s.hDlg, 7, nullptr, 5)), kStringLoad},
    {CALL(utGetChildRect(s.hDlg, &s.to.rect)), kBoolean},
    {CALL(utMoveWindowDelta(s.hDlg, 1, 2)), kBoolean}, {CALL(utMoveChildDelta(s.hDlg, 1, 2)), kBoolean},
    {CALL(utSizeWindowDelta(s.hDlg, 1, 2)), kBoolean},
};
// clang-format on
#undef CALL

// What a call gave and did.
struct Run {
  Setup setup = {};
  DWORD result = 0;
  std::vector<std::string> operations = {};
  bool failureCame = false;
};

// Makes the call of a row; the n-th call of an operation fails, if n isn't 0.
Run Perform(const Row& row, const char* operation = nullptr, unsigned n = 0, DWORD code = 0) {
  Run run;
  host::FailCall(n, code, operation);
  host::StartJournal();
  run.result = row.call(run.setup);
  for (const auto& call : host::TakeJournal()) run.operations.push_back(call.operation);
  run.failureCame = host::FailureCame();
  return run;
}

std::vector<DWORD> CodesOf(std::string_view operation) {
  if (operation.starts_with("Reg")) {
    return {ERROR_FILE_NOT_FOUND, kPathNotFound,     ERROR_ACCESS_DENIED,
            ERROR_INVALID_HANDLE, kNotEnoughMemory,  ERROR_INVALID_PARAMETER,
            ERROR_MORE_DATA,      kNotFoundBelowMore};
  }
  if (operation == "LoadStringA") return {0, ~0u};
  return {0};
}

bool IsFailure(const Row& row, std::string_view operation, DWORD code) {
  for (const char* ignored : {"RegCloseKey", "SetWindowPos", "GetParent", "ScreenToClient"}) {
    if (operation == ignored) return false;
  }
  const auto missingKey = row.outcome.missingKey;
  if (missingKey == MissingKey::kIsAFailure || operation != "RegOpenKeyExA") return true;
  return (code == ERROR_FILE_NOT_FOUND) == (missingKey == MissingKey::kIsTheOnlyFailure);
}

void CheckFailure(const Outcome& outcome, Run run, const std::string& operation, DWORD code,
                  const host::RegistryKey& before) {
  ASSERT_EQ(run.result, outcome.failure == kThatCode ? code : outcome.failure);
  auto expected = Output().bytes;
  std::copy(outcome.left.begin(), outcome.left.end(), expected.begin());
  ASSERT_EQ(run.setup.to.bytes, expected);
  // What releases, and what measures a default, comes after a failure too.
  for (const char* release : {"RegCloseKey", "LocalFree", "lstrlenA"}) {
    std::erase(run.operations, release);
  }
  ASSERT_EQ(run.operations.back(), operation) << "is the last call";
  // A key that was made for a value stays.
  if (operation != "RegSetValueExA") ASSERT_TRUE(*host::CurrentRegistry() == before);
}

void CheckRow(const Row& row) {
  const auto first = Perform(row);
  ASSERT_EQ(first.result, row.outcome.success) << row.text;
  Setup();
  const auto before = host::CurrentRegistry();
  unsigned failures = 0;
  for (const auto& operation : std::set(first.operations.begin(), first.operations.end())) {
    for (const DWORD code : CodesOf(operation)) {
      for (unsigned n = 1;; ++n, ++failures) {
        const auto run = Perform(row, operation.c_str(), n, code);
        SCOPED_TRACE(row.text + (": " + operation) + " gives " + std::to_string(code));
        ASSERT_EQ(host::LivingKeyHandles() + host::LivingBlocks(), 0u);
        if (!run.failureCame) break;
        if (operation.starts_with("lstr")) continue;
        if (IsFailure(row, operation, code)) {
          CheckFailure(row.outcome, run, operation, code, *before);
        } else {
          ASSERT_EQ(run.result, row.outcome.success);
        }
        if (testing::Test::HasFailure()) return;
      }
    }
  }
  ASSERT_GT(failures, 0u) << row.text;
}

TEST(Faults, EndTheWorkAndLeaveNothingBehind) {
  for (const auto& row : kRows) {
    CheckRow(row);
    if (HasFailure()) return;
  }
}

}  // namespace
