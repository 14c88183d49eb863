// The exports that call the platform, with each of these calls failing in turn, once with each code
// that it may give. For the string operations (lstr*), which fail for bad addresses only, it is
// checked only that no key and no block is left. The default button of a dialog, which goes on at
// every failure, has a model of its own in dialog_test.cpp. On the platform layer only.
#include <desktop.h>
#include <gtest/gtest.h>
#include <heap.h>
#include <host.h>
#include <registry.h>
#include <tavkit.h>
#include <user_locale.h>

#include <set>

namespace {

constexpr DWORD kPathNotFound = 3, kNotEnoughMemory = 8, kMissingBelowMore = 0x10002;

const HKEY kUser = HKEY_CURRENT_USER;
constexpr char kKey[] = "Software\\Brindlex\\p\\s", kNoKey[] = "Software\\Brindlex\\p\\t";
constexpr FILETIME kFile = {0x09ACA700, 0x01BD2870};
constexpr SYSTEMTIME kSystem = {1998, 1, 6, 24, 2, 30, 30, 0};
constexpr char kUntouched = 0x0D;
constexpr WORD kDate = 0x2438, kTime = 0x13CF;
constexpr NETRESOURCEA kRecord = {};
constexpr NETRESOURCEW kWideRecord = {};

// The platform as each call finds it, and what the call works with.
struct Setup {
  alignas(8) std::array<char, 64> output;
  DWORD size = 9;
  HWND hDlg = nullptr;

  Setup() {
    output.fill(kUntouched);
    host::Reset();
    utRegSetValueString(kUser, kKey, "sz", "text", 1);
    utRegSetValueDword(kUser, kKey, "dw", 5, 1);
    host::SetLocaleText(LOCALE_ITIME, "1");
    host::SetString(nullptr, 5, "text");
    hDlg = host::AddWindow({});
    host::AddWindow({.hWndParent = hDlg, .id = 7});
  }
  template <class T>
  T* To() {
    return reinterpret_cast<T*>(&output);
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
enum MissingKey { kIsAFailure, kIsCreated, kIsTheOnlyFailure };

constexpr DWORD kThatCode = 0xC0DE;  // as a result: the code that the failing call gave

struct Outcome {
  DWORD success, failure;
  std::string_view left = {};  // what a failure leaves at the front of the untouched output
  MissingKey missingKey = kIsAFailure;
};

struct Call {
  const char* text;
  DWORD (*make)(Setup& s);
};

// clang-format off
#define CALL(call) {#call, []([[maybe_unused]] Setup& s) -> DWORD { return call; }}
const struct { Outcome outcome; std::vector<Call> calls; } kCalls[] = {
    {{.success = 1, .failure = 0, .missingKey = kIsTheOnlyFailure}, {
        CALL(utRegVerifyKey(kUser, kKey)), CALL(utRegVerifyPrivateUserKey("s", "p"))}},
    {{.success = 1, .failure = 0}, {
        CALL(utRegVerifyValue(kUser, kKey, "sz", s.To<DWORD>())),
        CALL(utRegVerifyPrivateUserValue("s", "sz", "p", s.To<DWORD>())),
        CALL(utRegDeletePrivateUserValue("s", "sz", "p")),
        CALL(utRegWritePrivateUserString("s", "sz", nullptr, "p")),
        CALL(utRegWritePrivateUserBinary("s", "sz", nullptr, 1, "p")),
        CALL(utConvertFileTime(&kFile, s.To<FILETIME>(), 1)),
        CALL(utConvertFileTime(s.To<FILETIME>(), s.To<FILETIME>(), 2)),
        CALL(utDosDateTimeToFileTime(kDate, kTime, s.To<FILETIME>(), 1)),
        CALL(utSystemTimeToFileTime(&kSystem, s.To<FILETIME>(), 0)),
        CALL(utSystemTimeToFileTime(&kSystem, s.To<FILETIME>(), 2)),
        CALL(utFileTimeToSystemTime(&kFile, s.To<SYSTEMTIME>(), 1)),
        CALL(utFileTimeToDosDateTime(&kFile, s.To<WORD>(), s.To<WORD>() + 1, 2)),
        CALL(utConvertSystemTime(&kSystem, s.To<SYSTEMTIME>(), 1)),
        CALL(utDosDateTimeToSystemTime(kDate, kTime, s.To<SYSTEMTIME>(), 2)),
        CALL(utSystemTimeToDosDateTime(&kSystem, s.To<WORD>(), s.To<WORD>() + 1, 1)),
        CALL(utDayOfWeekName(s.To<char>(), 32, 0, 0)), CALL(utMonthName(s.To<char>(), 32, 1, 1)),
        CALL(utTimeFormat()), CALL(utIsWinNT()), CALL(UseOwnedBuffer()),
        CALL(utCopyNETRESOURCE(&kRecord, s.To<NETRESOURCEA>(), 48, UT_NR_ALL, nullptr)),
        CALL(utCopyNETRESOURCEW(&kWideRecord, s.To<NETRESOURCEW>(), 48, UT_NR_ALL, nullptr)),
        CALL(utGetChildRect(s.hDlg, s.To<RECT>())), CALL(utMoveWindowDelta(s.hDlg, 1, 2)),
        CALL(utMoveChildDelta(s.hDlg, 1, 2)), CALL(utSizeWindowDelta(s.hDlg, 1, 2))}},
    {{.success = 0, .failure = kThatCode}, {
        CALL(utRegQueryValue(kUser, kKey, "sz", nullptr, s.To<char>(), &s.size)),
        CALL(utRegSetValue(kUser, kKey, "x", 3, "x", 1, 0)), CALL(utRegDeleteValue(kUser, kKey, "sz")),
        CALL(OpenAndClose()), CALL(utRegDeletePrivateUserKey("s", "p")),
        CALL(utRegGetPrivateUserBinary("s", "sz", nullptr, s.To<char>(), &s.size, "p"))}},
    {{.success = 0, .failure = kThatCode, .missingKey = kIsCreated}, {
        CALL(utRegSetValue(kUser, kKey, "x", 3, "x", 1, 1)),
        CALL(utRegSetValueString(kUser, kNoKey, "x", "x", 1)),
        CALL(utRegSetValueDword(kUser, kNoKey, "x", 7, 1)),
        CALL(utRegSetValueBool(kUser, kNoKey, "x", 7, 1))}},
    {{.success = 0, .failure = kThatCode, .left = {"d\0", 3}}, {
        CALL(utRegGetValueString(kUser, kKey, "sz", "d", s.To<char>(), 9))}},
    {{.success = 0, .failure = kThatCode, .left = {"M\0\0", 4}}, {
        CALL(utRegGetValueDword(kUser, kKey, "dw", 'M', s.To<DWORD>())),
        CALL(utRegGetValueBool(kUser, kKey, "dw", 'M', s.To<BOOL>()))}},
    {{.success = 4, .failure = 1, .left = {"d\0", 3}}, {
        CALL(utRegGetPrivateUserString("s", "sz", "d", s.To<char>(), 9, "p"))}},
    {{.success = 5, .failure = 77}, {CALL(utRegGetPrivateUserDword("s", "dw", 77, "p"))}},
    {{.success = 1, .failure = 55}, {CALL(utRegGetPrivateUserBool("s", "dw", 55, "p"))}},
    {{.success = 1, .failure = 0, .missingKey = kIsCreated}, {
        CALL(utRegWritePrivateUserString("t", "x", "x", "p")),
        CALL(utRegWritePrivateUserDword("t", "x", 7, "p")),
        CALL(utRegWritePrivateUserBool("t", "x", 7, "p")),
        CALL(utRegWritePrivateUserBinary("t", "x", "x", 1, "p"))}},
    {{.success = 1, .failure = 1, .left = {"\0", 2}}, {CALL(utA2WHelper(s.To<WCHAR>(), "ab", 8) == s.To<WCHAR>())}},
    {{.success = 1, .failure = 1, .left = {"", 1}}, {CALL(utW2AHelper(s.To<char>(), u"ab", 8) == s.To<char>())}},
    {{.success = 1, .failure = kThatCode}, {
        CALL(utSetWindowStringRes(s.hDlg, nullptr, 5)),
        CALL(utSetDlgItemStringRes(s.hDlg, 7, nullptr, 5))}},
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

// Makes a call; the n-th call of an operation fails, if n isn't 0.
Run Perform(const Call& call, const char* operation = nullptr, unsigned n = 0, DWORD code = 0) {
  Run run;
  host::FailCall(n, code, operation);
  host::StartJournal();
  run.result = call.make(run.setup);
  for (const auto& made : host::TakeJournal()) {
    run.operations.push_back(made.operation);
    if (made.operation == "RegCloseKey") EXPECT_NE(made.arguments[0], 0u) << call.text;
  }
  run.failureCame = host::FailureCame();
  return run;
}

std::vector<DWORD> CodesOf(std::string_view operation) {
  if (operation.starts_with("Reg")) {
    return {ERROR_FILE_NOT_FOUND, kPathNotFound,    ERROR_ACCESS_DENIED,
            ERROR_INVALID_HANDLE, kNotEnoughMemory, ERROR_INVALID_PARAMETER,
            ERROR_MORE_DATA,      kMissingBelowMore};
  }
  if (operation == "LoadStringA") return {0, ~0u};
  return {0};
}

// Whether the call ends there and tells its caller; some go on.
bool IsFailure(MissingKey missingKey, std::string_view operation, DWORD code) {
  for (const char* ignored : {"RegCloseKey", "SetWindowPos", "GetParent", "ScreenToClient"})
    if (operation == ignored) return false;
  if (missingKey == kIsAFailure || operation != "RegOpenKeyExA") return true;
  return (code == ERROR_FILE_NOT_FOUND) == (missingKey == kIsTheOnlyFailure);
}

void CheckFailure(const Outcome& outcome, Run run, const std::string& operation, DWORD code,
                  const host::RegistryKey& before) {
  ASSERT_EQ(run.result, outcome.failure == kThatCode ? code : outcome.failure);
  std::array<char, 64> expected;
  expected.fill(kUntouched);
  std::copy(outcome.left.begin(), outcome.left.end(), expected.begin());
  ASSERT_EQ(run.setup.output, expected);
  // What releases, and what measures a default, comes after a failure too.
  for (auto* release : {"RegCloseKey", "LocalFree", "lstrlenA"})
    std::erase(run.operations, release);
  ASSERT_EQ(run.operations.back(), operation) << "is the last call";
  // A key that was made for a value stays.
  if (operation != "RegSetValueExA") ASSERT_TRUE(*host::CurrentRegistry() == before);
}

void Check(const Call& call, const Outcome& outcome) {
  const auto operations = Perform(call).operations;
  Setup();
  const auto before = host::CurrentRegistry();
  unsigned failures = 0;
  for (const auto& operation : std::set(operations.begin(), operations.end())) {
    for (const DWORD code : CodesOf(operation)) {
      SCOPED_TRACE(call.text + (": " + operation) + " gives " + std::to_string(code));
      for (unsigned n = 1;; ++n, ++failures) {  // until there is no n-th call
        const auto run = Perform(call, operation.c_str(), n, code);
        ASSERT_EQ(host::LivingKeyHandles() + host::LivingBlocks(), 0u);
        if (run.failureCame && operation.starts_with("lstr")) continue;
        if (!run.failureCame || !IsFailure(outcome.missingKey, operation, code)) {
          ASSERT_EQ(run.result, outcome.success);
        } else {
          CheckFailure(outcome, run, operation, code, *before);
        }
        if (testing::Test::HasFailure()) return;
        if (!run.failureCame) break;
      }
    }
  }
  ASSERT_GT(failures, 0u) << call.text;
}

TEST(Faults, EndTheWorkAndLeaveNothingBehind) {
  for (const auto& [outcome, calls] : kCalls) {
    for (const auto& call : calls)
      if (!HasFailure()) Check(call, outcome);
  }
}

}  // namespace
