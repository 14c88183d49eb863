// Registry values, typed values and private user settings, over the platform layer's registry.
#include <gtest/gtest.h>
#include <host.h>
#include <registry.h>
#include <tavkit.h>

#include <functional>
#include <map>
#include <string>

#include "support/choices.h"
#include "support/guarded.h"

namespace {

using namespace std::string_literals;
using test::GuardedBuffer;
using Names = std::map<const void*, std::string>;
using Value = std::pair<DWORD, std::string>;

const HKEY kUser = HKEY_CURRENT_USER;
constexpr char kPath[] = "Software\\Brindlex\\prod\\sec";
constexpr DWORD kSz = REG_SZ, kExpand = REG_EXPAND_SZ, kBinary = REG_BINARY, kDword = REG_DWORD;
constexpr DWORD kBadData = ERROR_INVALID_DATA, kMoreData = ERROR_MORE_DATA;
constexpr DWORD kMissing = ERROR_FILE_NOT_FOUND, kBad = ERROR_INVALID_PARAMETER;
constexpr BOOL kOwn = 0x55000000;  // a default that is no stored value, in its high byte only

// No zero follows the data: the platform would take it for a text's terminator and store it along.
void Put(const char* path, const char* name, DWORD type, const std::string& data) {
  const auto followed = data + "x";
  ASSERT_EQ(utRegSetValue(kUser, path, name, type, followed.data(), data.size(), 1), 0u);
}

// The platform's registry calls of a piece of work, each argument by its name, as a small number,
// as k for a key that was opened, or as * for another address.
std::string Calls(const std::function<void()>& work, const Names& names = {}) {
  host::StartJournal();
  work();
  std::string calls;
  for (const auto& [operation, arguments] : host::TakeJournal()) {
    if (!operation.starts_with("Reg")) continue;
    calls += operation.substr(3, operation.find_last_not_of("ExA") - 2);
    for (const auto& argument : arguments) {
      const auto name = names.find(reinterpret_cast<const void*>(argument));
      const auto number = &argument == &arguments[0] ? "k"
                          : argument < 0x100000      ? std::to_string(argument)
                                                     : "*";
      calls += ' ' + (name != names.end() ? name->second : number);
    }
    calls += "; ";
  }
  return calls;
}

TEST(RegistryValues, ReachThePlatformAsTheyCome) {
  const HKEY u = kUser;
  const char sub[] = "Software\\Brindlex", v[] = "v", none[] = "Software\\Brindlex\\none",
             empty[] = "";
  DWORD t, n;
  char d[2] = {};
  HKEY key = nullptr;
  const Names names = {{u, "u"},  {sub, "sub"}, {none, "none"}, {empty, "empty"}, {v, "v"},
                       {&t, "t"}, {&n, "n"},    {d, "d"},       {&key, "key"}};
  RegOpenKeyExA(u, empty, 0, KEY_QUERY_VALUE, &key);
  const std::string same = key == u ? "u" : "k";  // the key itself, or another handle to it
  RegCloseKey(std::exchange(key, nullptr));
  // What is called between opening `sub` with an access and closing it; all of it if that is 0.
  // clang-format off
  const struct { std::function<DWORD()> call; DWORD result, access; std::string calls; } rows[] = {
      {[&] { return utRegSetValue(u, none, v, 3, d, 2, 0); }, kMissing, 0, "OpenKey u none 0 2 *; "},
      {[&] { return utRegSetValue(u, none, v, 3, d, 2, 0x10000); }, 0, 0, "OpenKey u none 0 2 *; "
       "CreateKey u none 0 0 0 983103 0 * *; SetValue k v 0 3 d 2; CloseKey k; "},
      {[&] { return utRegSetValue(u, sub, nullptr, 9, d, 0, 1); }, 0, 2, "SetValue k 0 0 9 d 0; "},
      {[&] { return utRegSetValue(u, nullptr, v, 3, d, 2, 1); }, 0, 0, "SetValue u v 0 3 d 2; "},
      {[&] { return utRegQueryValue(u, sub, v, &t, d, &n); }, 0, 1, "QueryValue k v 0 t d n; "},
      {[&] { return utRegQueryValue(u, nullptr, v, nullptr, d, &n); }, kMissing, 0, "QueryValue u v 0 0 d n; "},
      {[&] { return utRegQueryValue(u, empty, v, &t, d, nullptr); }, kBad, 0,
       "OpenKey u empty 0 1 *; QueryValue " + same + " v 0 t d 0; CloseKey " + same + "; "},
      {[&] { return utRegQueryValue(u, none, v, &t, d, &n); }, kMissing, 0, "OpenKey u none 0 1 *; "},
      {[&] { return utRegVerifyValue(u, sub, v, &t); }, 1, 1, "QueryValue k v 0 t 0 *; "},
      {[&] { return utRegVerifyValue(u, nullptr, v, nullptr); }, 0, 0, "QueryValue u v 0 0 0 *; "},
      {[&] { return utRegDeleteValue(u, sub, v); }, 0, 2, "DeleteValue k v; "},
      {[&] { return utRegDeleteValue(u, sub, none); }, kMissing, 2, "DeleteValue k none; "},
      {[&] { return utRegDeleteValue(u, nullptr, v); }, kMissing, 0, "DeleteValue u v; "},
      {[&] { return utRegVerifyKey(u, sub); }, 1, 1, ""},
      {[&] { return utRegVerifyKey(u, none); }, 0, 0, "OpenKey u none 0 1 *; "},
      {[&] { return utRegVerifyKey(u, nullptr) | utRegVerifyKey(u, empty); }, 0, 0, ""},
      {[&] { return utRegOpenPrivateUserKey(nullptr, nullptr, 9, &key); }, 0, 0, "OpenKey u * 0 9 key; "},
      {[&] { return utRegDeletePrivateUserKey(nullptr, nullptr); }, 0, 0, "DeleteKey u *; "},
      {[&] { return utRegVerifyPrivateUserKey(none, nullptr); }, 0, 0, "OpenKey u * 0 1 *; "},
  };
  // clang-format on
  DWORD disposition = 99;
  for (auto [call, result, access, calls] : rows) {
    host::Reset();
    host::ShowCalls([&](const host::Call& shown) {
      if (shown.operation == "RegCreateKeyExA") disposition = *(const DWORD*)shown.arguments[8];
    });
    Put(sub, v, REG_BINARY, "xy");
    n = 2;
    const auto opening = "OpenKey u sub 0 " + std::to_string(access) + " *; ";
    if (access != 0) calls = opening + calls + "CloseKey k; ";
    DWORD got = 99;
    ASSERT_EQ(Calls([&] { got = call(); }, names), calls);
    ASSERT_EQ(got, result) << calls;
    ASSERT_EQ(disposition, 0u) << "before the key was created";
    if (key != nullptr) RegCloseKey(std::exchange(key, nullptr));
  }
  EXPECT_EQ(t, kBinary);
}

TEST(TypedValues, ReadABooleanOrANumberOrGiveTheDefault) {
  // clang-format off
  const struct { DWORD type; std::string data; BOOL value; } rows[] = {
      {kBinary, "\0"s, 0}, {kBinary, "\2"s, 1}, {kBinary, "\0\1"s, 0}, {kBinary, "", kOwn},
      {kBinary, std::string(48, 1), 1}, {kBinary, std::string(49, 1), kOwn},
      {kDword, "\0\0\0\0"s, 0}, {kDword, "\0\1\0\0"s, 1}, {kDword, "\0\0\0\x80"s, 1},
      {kDword, "\1\0\0"s, kOwn}, {kDword, "", kOwn}, {kDword, "\x78\x56\x34\x12", 1},
      {kDword, "\0\0\0\0\1"s, 0}, {kSz, "True\0"s, 1}, {kSz, "yes\0"s, 1}, {kSz, "oN\0"s, 1},
      {kSz, "1\0"s, 1}, {kSz, "false\0"s, 0}, {kSz, "NO\0"s, 0}, {kSz, "off\0"s, 0}, {kSz, "0\0"s, 0},
      {kSz, "maybe\0"s, kOwn}, {kSz, " TRUE\0"s, kOwn}, {kSz, "2\0"s, kOwn}, {kSz, "\0"s, kOwn},
      {kSz, "", kOwn}, {kSz, "TRUE", 1}, {kSz, "ON\0x"s, 1}, {kSz, "TRUEx", kOwn},
      {kSz, std::string(47, 'x') + '\0', kOwn}, {kSz, std::string(48, 'x'), kOwn},
      {kSz, std::string(49, 'x'), kOwn}, {kExpand, "TRUE\0"s, kOwn}, {REG_NONE, "\1"s, kOwn},
      {REG_MULTI_SZ, "1\0\0"s, kOwn},
  };
  // clang-format on
  // A comparison may measure its text first: even 48 bytes stored without a terminator have an end.
  host::ShowCalls([](const host::Call& call) {
    if (call.operation == "lstrcmpiA") ASSERT_LE(std::strlen((const char*)call.arguments[0]), 48u);
  });
  BOOL value = -1;
  GuardedBuffer number(sizeof(DWORD));
  for (const auto& row : rows) {
    SCOPED_TRACE(testing::Message() << row.type << ' ' << testing::PrintToString(row.data));
    Put(kPath, "v", row.type, row.data);
    const DWORD boolCode = row.value != kOwn ? 0 : row.data.size() > 48 ? kMoreData : kBadData;
    ASSERT_EQ(utRegGetValueBool(kUser, kPath, "v", kOwn, &value), boolCode);
    ASSERT_EQ(value, row.value);
    ASSERT_EQ(utRegGetPrivateUserBool("sec", "v", kOwn, "prod"), value);

    const DWORD code = row.data.size() > 4 ? kMoreData : row.type == REG_DWORD ? 0 : kBadData;
    number.Refill();
    const auto expected = [&](DWORD before) {
      std::copy_n(row.data.begin(), code == 0 ? row.data.size() : 0, (char*)&before);
      return code == 0 ? before : kOwn;
    };
    const DWORD kept = expected(*number.As<DWORD>());
    ASSERT_EQ(utRegGetValueDword(kUser, kPath, "v", kOwn, number.As<DWORD>()), code);
    ASSERT_EQ(*number.As<DWORD>(), kept);
    ASSERT_EQ(utRegGetPrivateUserDword("sec", "v", kOwn, "prod"), expected(0));
  }
  EXPECT_EQ(utRegGetValueBool(kUser, kPath, "none", -7, &value), kMissing);
  EXPECT_EQ(value, -7);
  EXPECT_EQ(utRegGetValueDword(kUser, nullptr, "v", 77, number.As<DWORD>()), kMissing);
  EXPECT_EQ(*number.As<DWORD>(), 77u);
  Put(kPath, "v", REG_SZ, "TRUE\0"s);
  host::FailCall(1, 0x10000, "lstrcmpiA");  // a difference in its high half
  EXPECT_EQ(utRegGetValueBool(kUser, kPath, "v", kOwn, &value), kBadData);
}

TEST(TypedValues, ReadATextIntoTheBufferAndNothingBeside) {
  // clang-format off
  const struct { DWORD type; std::string data; const char* pszDefault; DWORD cbBuffer, code;
                 std::string written; } rows[] = {
      {kSz, "text\0"s, "dflt", 8, 0, "text\0"s}, {kSz, "text\0"s, "dflt", 5, 0, "text\0"s},
      {kSz, "text\0"s, "dflt", 4, kMoreData, "dfl\0"s}, {kSz, "text\0"s, "dflt", 1, kMoreData, "\0"s},
      {kSz, "text\0"s, "dflt", 0, kMoreData, ""}, {kSz, "a\0b"s, "dflt", 8, 0, "a\0b\0"s},
      {kSz, "longer than 8\0"s, "dflt", 8, kMoreData, "dflt\0\0"s},
      {kSz, "longer than 8\0"s, nullptr, 8, kMoreData, "\0"s},
      {kSz, "", "dflt", 8, 0, ""}, {kSz, "", "dflt", 0, 0, ""}, {kSz, "ab", "dflt", 8, 0, "ab\0"s},
      {kSz, "abcdefgh", "dflt", 8, 0, "abcdefgh"}, {kDword, "\1\2\3\4", "d", 8, kBadData, "d\0\0\4"s},
      {kDword, "\1\2\3\4", nullptr, 8, kBadData, "\0\2\3\4"s},
      {kExpand, "text\0"s, "defaults", 8, kBadData, "default\0"s},
      {kBinary, "12345678", "ABCDEFG", 8, kBadData, "ABCDEFG\0"s},
  };
  // clang-format on
  for (const auto& row : rows) {
    SCOPED_TRACE(testing::PrintToString(row.data) + " into " + std::to_string(row.cbBuffer));
    Put(kPath, "v", row.type, row.data);
    for (const auto& before : {"????????"s, "old\0????"s, "xxxxx\0??"s}) {
      const auto bytes = test::BytesOf(before.substr(0, row.cbBuffer), 0);
      auto expected = bytes;
      std::copy(row.written.begin(), row.written.end(), expected.begin());
      const auto zero = std::find(expected.begin(), expected.end(), 0);
      const auto length = zero == expected.end() ? row.written.size() : zero - expected.begin();
      GuardedBuffer buffer(row.cbBuffer);
      for (char* psz : {static_cast<char*>(nullptr), buffer.As<char>()}) {
        buffer.Set(bytes);
        ASSERT_EQ(utRegGetPrivateUserString("sec", "v", row.pszDefault, psz, row.cbBuffer, "prod"),
                  psz == nullptr ? 0 : length);
      }
      ASSERT_EQ(buffer.Bytes(), expected);
      buffer.Set(bytes);
      auto* psz = buffer.As<char>();
      const auto code = utRegGetValueString(kUser, kPath, "v", row.pszDefault, psz, row.cbBuffer);
      ASSERT_EQ(code, row.code);
      ASSERT_EQ(buffer.Bytes(), expected);
    }
  }
  GuardedBuffer buffer(7);  // one byte for the terminator that the platform adds
  Put(kPath, "v", REG_SZ, "stored");
  for (const auto& [name, length] : {std::pair("v", 6u), {"none", 4u}}) {
    auto* psz = buffer.As<char>();
    EXPECT_EQ(utRegGetPrivateUserString("sec", name, "dflt", psz, ~0u, "prod"), length);
  }
  EXPECT_EQ(buffer.Bytes(), test::BytesOf("dflt"s, 3));
}

TEST(TypedValues, AreStoredInTheirFormAndMakeTheKeyOnlyIfTold) {
  // clang-format off
  const struct { std::function<DWORD(BOOL)> set; Value stored; DWORD withoutFlag = 0; } rows[] = {
      {[&](BOOL f) { return utRegSetValueString(kUser, kPath, "v", "hello", f); }, {kSz, "hello\0"s}, kMissing},
      {[&](BOOL f) { return utRegSetValueString(kUser, kPath, "v", nullptr, f); }, {kSz, "\0"s}, kMissing},
      {[&](BOOL f) { return utRegSetValueDword(kUser, kPath, "v", 0x44332211, f); }, {kDword, "\x11\"3D"}, kMissing},
      {[&](BOOL f) { return utRegSetValueBool(kUser, kPath, "v", 0x10000, f); }, {kBinary, "\1"}, kMissing},
      {[&](BOOL f) { return utRegSetValueBool(kUser, kPath, "v", 0, f); }, {kBinary, "\0"s}, kMissing},
      {[&](BOOL) { return !utRegWritePrivateUserString("sec", "v", "", "prod"); }, {kSz, "\0"s}},
      {[&](BOOL) { return !utRegWritePrivateUserDword("sec", "v", 5, "prod"); }, {kDword, "\5\0\0\0"s}},
      {[&](BOOL) { return !utRegWritePrivateUserBool("sec", "v", 0x10000, "prod"); }, {kBinary, "\1"}},
      {[&](BOOL) { return !utRegWritePrivateUserBinary("sec", "v", "a", 2, "prod"); }, {kBinary, "a\0"s}},
      {[&](BOOL) { return !utRegWritePrivateUserBinary("sec", "v", "a", 0, "prod"); }, {kBinary, ""}},
  };
  // clang-format on
  for (const auto& row : rows) {
    SCOPED_TRACE("row " + std::to_string(&row - rows));
    for (const BOOL fCreate : {0, 0x100, 0x10000}) {
      ASSERT_EQ(row.set(fCreate), fCreate == 0 ? row.withoutFlag : 0);
      if (fCreate == 0 && row.withoutFlag != 0) continue;
      char buffer[8];
      DWORD type = 0, size = sizeof buffer;
      ASSERT_EQ(utRegGetPrivateUserBinary("sec", "v", &type, buffer, &size, "prod"), 0u);
      ASSERT_EQ(Value(type, std::string(buffer, size)), row.stored);
      ASSERT_EQ(utRegWritePrivateUserString("sec", "v", nullptr, "prod"), 1);
      ASSERT_EQ(row.set(fCreate), 0u);
      ASSERT_EQ(utRegWritePrivateUserBinary("sec", "v", nullptr, 9, "prod"), 1);
      ASSERT_EQ(utRegDeletePrivateUserKey("sec", "prod"), 0u);
    }
  }
}

TEST(PrivateSettings, StandBelowTheRootProductBeforeSection) {
  // clang-format off
  const struct { const char *section, *product; std::string path; } rows[] = {
      {"sec", "prod", kPath}, {nullptr, "prod", "Software\\Brindlex\\prod"},
      {"sec", nullptr, "Software\\Brindlex\\sec"}, {nullptr, nullptr, "Software\\Brindlex"},
      {"sec", "", "Software\\Brindlex\\\\sec"}, {"", "prod", "Software\\Brindlex\\prod\\"},
      {"", "", "Software\\Brindlex\\\\"}, {"a\\b", "c\\d", "Software\\Brindlex\\c\\d\\a\\b"},
      {"\\a", "\\b\\", "Software\\Brindlex\\\\b\\\\\\a"},
  };
  // clang-format on
  for (const auto& row : rows) {
    const auto needed = static_cast<DWORD>(row.path.size() + 1);
    for (const DWORD size : std::vector<DWORD>{0, needed - 1, needed, UT_SIZE_UNCHECKED}) {
      GuardedBuffer buffer(std::min(size, needed));
      ASSERT_EQ(utRegPathBrindlexSoftware(buffer.As<char>(), size, row.section, row.product),
                size >= needed);
      if (size < needed) ASSERT_TRUE(buffer.IsUntouched());
      if (size >= needed) ASSERT_EQ(buffer.Bytes(), test::BytesOf(row.path));
    }
    ASSERT_EQ(utRegPathBrindlexSoftware(nullptr, needed, row.section, row.product), 0);
  }
}

// Every setting call with the given parts of the path; returns the results and what the calls left
// in the caller's variables.
std::vector<DWORD> CallAll(const char* s, const char* p) {
  DWORD type1 = 111, type2 = 222, size = 8, data = 333;
  char text[4] = "???";
  const auto untouched = reinterpret_cast<HKEY>(&type1);
  HKEY key = untouched;
  std::vector<DWORD> results;
  const auto add = [&](auto result) { results.push_back(static_cast<DWORD>(result)); };
  add(utRegWritePrivateUserString(s, "v", "text", p));
  add(utRegWritePrivateUserBinary(s, "v", "by", 2, p));
  add(utRegWritePrivateUserBool(s, "v", 9, p));
  add(utRegWritePrivateUserDword(s, "v", 5, p));
  add(utRegVerifyPrivateUserKey(s, p));
  add(utRegVerifyPrivateUserValue(s, "v", p, &type1));
  add(utRegGetPrivateUserString(s, "v", "d", text, 4, p));
  add(utRegGetPrivateUserDword(s, "v", 77, p));
  add(utRegGetPrivateUserBool(s, "v", 55, p));
  add(utRegGetPrivateUserBinary(s, "v", &type2, &data, &size, p));
  add(utRegOpenPrivateUserKey(s, p, KEY_READ, &key));
  if (key != untouched) RegCloseKey(key);
  add(utRegDeletePrivateUserValue(s, "v", p));
  add(utRegWritePrivateUserString(s, "v", nullptr, p));
  add(utRegWritePrivateUserBinary(s, "v", nullptr, 9, p));
  add(utRegDeletePrivateUserKey(s, p));
  results.insert(results.end(), {type1, type2, size, data, DWORD(text[0]), key == untouched});
  return results;
}

TEST(PrivateSettings, ReachNothingWithAPathThatDoesNotFit) {
  const std::vector<DWORD> fits = {1, 1, 1, 1, 1, 1, 1, 5, 1, 0, 0, 1, 0, 0, 0, 4, 4, 4, 5, 'd', 0};
  const std::vector<DWORD> none = {0, 0, 0, 0,    0,   0,   0, 77,  55,  kBad, kMissing,
                                   0, 0, 0, kBad, 111, 222, 8, 333, '?', 1};
  const std::string part(120, 'x'), longer(121, 'y');
  EXPECT_EQ(CallAll("sec", "prod"), fits);
  EXPECT_EQ(CallAll(part.c_str(), part.c_str()), fits);
  const auto calls = Calls([&] {
    EXPECT_EQ(CallAll(longer.c_str(), part.c_str()), none);
    EXPECT_EQ(CallAll(part.c_str(), longer.c_str()), none);
    EXPECT_EQ(CallAll(std::string(5000, 'z').c_str(), nullptr), none);
  });
  EXPECT_EQ(calls, "");
}

struct Setting {
  const char *section, *product, *name;

  // Where it is: upper case, and an empty part of the path counts for nothing.
  std::string Place() const {
    std::string place;
    for (const char* part : {product, section}) {
      if (part != nullptr && *part != 0) place += part + "\\"s;
    }
    place += '=' + std::string(name == nullptr ? "" : name);
    for (char& c : place) c = static_cast<char>(std::toupper(c));
    return place;
  }
};

// Writes a setting, deletes it or leaves it alone, and the model of all settings likewise.
void Change(test::Choices& choices, const Setting& setting, std::map<std::string, Value>& model) {
  enum { kText, kBytes, kDeletion, kNone };
  const auto& [section, product, name] = setting;
  const int change = choices.Of<int>({kText, kBytes, kDeletion, kNone});
  const auto data = choices.Text<char>({0, 'O', '\xB1'}, choices.Of<unsigned>({5, 60}));
  if (change == kText) {
    ASSERT_EQ(utRegWritePrivateUserString(section, name, data.c_str(), product), 1);
    model[setting.Place()] = {REG_SZ, data.c_str() + "\0"s};
  } else if (change == kBytes) {
    ASSERT_EQ(utRegWritePrivateUserBinary(section, name, data.data(), data.size(), product), 1);
    model[setting.Place()] = {REG_BINARY, data};
  } else if (change == kDeletion) {
    const bool wasThere = model.erase(setting.Place()) != 0;
    ASSERT_EQ(utRegWritePrivateUserString(section, name, nullptr, product), wasThere);
  }
}

// Reads a setting as it is stored; its value is NULL if there is none.
void CheckReads(test::Choices& choices, const Setting& setting, const Value* value) {
  const auto& [section, product, name] = setting;
  GuardedBuffer buffer(choices.Below(64));
  const bool fits = value != nullptr && value->second.size() <= buffer.size();
  DWORD type = 99, size = buffer.size();
  const DWORD code = fits ? 0 : value != nullptr ? kMoreData : kMissing;
  ASSERT_EQ(utRegGetPrivateUserBinary(section, name, &type, buffer.data(), &size, product), code);
  if (fits) ASSERT_EQ(Value(type, std::string(buffer.As<char>(), size)), *value);
  ASSERT_EQ(utRegVerifyPrivateUserValue(section, name, product, nullptr), value != nullptr);
}

PROPERTY(PrivateSettings, LiveAsAMap, 80) {
  std::map<std::string, Value> model;
  for (int step = 0; choices.More() && !testing::Test::HasFailure(); ++step) {
    const Setting setting = {
        .section = choices.Of<const char*>({nullptr, "", "s", "S", "s\\t", "u"}),
        .product = choices.Of<const char*>({nullptr, "", "p", "P", "q\\r"}),
        .name = choices.Of<const char*>({nullptr, "", "v", "V", "w\\x"}),
    };
    SCOPED_TRACE(std::to_string(step) + ": " + setting.Place());
    Change(choices, setting, model);
    const auto found = model.find(setting.Place());
    CheckReads(choices, setting, found == model.end() ? nullptr : &found->second);
  }
}

}  // namespace
