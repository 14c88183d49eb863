// Registry values, typed values and private user settings, over the platform layer's registry.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <host.h>
#include <registry.h>
#include <tavkit.h>
#include <text.h>

#include <functional>
#include <map>
#include <string>

#include "support/failures.h"
#include "support/guarded.h"
#include "support/random.h"

namespace {

using namespace std::string_literals;
using test::GuardedBuffer;
using testing::ElementsAre;
using Value = std::pair<DWORD, std::string>;

const HKEY kUser = HKEY_CURRENT_USER;
constexpr char kPath[] = "Software\\Brindlex\\prod\\sec";

void Put(const char* path, const char* name, DWORD type, const std::string& data) {
  ASSERT_EQ(utRegSetValue(kUser, path, name, type, data.data(), data.size(), 1), 0u);
}

// The platform's registry calls of a piece of work, each argument by its name, as a small number,
// or as * for another address.
std::string Calls(const std::function<void()>& work,
                  const std::map<const void*, std::string>& names = {}) {
  host::StartJournal();
  work();
  std::string calls;
  for (const auto& [operation, arguments] : host::TakeJournal()) {
    if (!operation.starts_with("Reg")) continue;
    calls += operation.substr(3);
    for (const auto argument : arguments) {
      const auto name = names.find(reinterpret_cast<const void*>(argument));
      const auto number = argument < 0x100000 ? std::to_string(argument) : "*";
      calls += ' ' + (name != names.end() ? name->second : number);
    }
    calls += "; ";
  }
  return calls;
}

TEST(RegistryValues, ReachThePlatformAsTheyCome) {
  const HKEY user = kUser;
  const char sub[] = "Software\\Brindlex", v[] = "v", bytes[] = "xy";
  DWORD type = 0, size = 2;
  char data[2];
  HKEY key = nullptr;
  const std::map<const void*, std::string> names = {
      {user, "user"},  {sub, "sub"},    {v, "v"},       {bytes, "bytes"},
      {&type, "type"}, {&size, "size"}, {data, "data"}, {&key, "key"}};
  // clang-format off
  const struct { std::function<DWORD()> call; DWORD result; std::string calls; } rows[] = {
      {[&] { return utRegSetValue(user, sub, v, 3, bytes, 2, 0); }, 2, "OpenKeyExA user sub 0 2 *; "},
      {[&] { return utRegSetValue(user, sub, v, 3, bytes, 2, 0x10000); }, 0,
       "OpenKeyExA user sub 0 2 *; CreateKeyExA user sub 0 0 0 983103 0 * *; "
       "SetValueExA 4 v 0 3 bytes 2; CloseKey 4; "},
      {[&] { return utRegSetValue(user, sub, nullptr, 9, nullptr, 0, 1); }, 0,
       "OpenKeyExA user sub 0 2 *; SetValueExA 8 0 0 9 0 0; CloseKey 8; "},
      {[&] { return utRegSetValue(user, nullptr, v, 3, bytes, 2, 1); }, 0,
       "SetValueExA user v 0 3 bytes 2; "},
      {[&] { return utRegQueryValue(user, sub, v, &type, data, &size); }, 0,
       "OpenKeyExA user sub 0 1 *; QueryValueExA 12 v 0 type data size; CloseKey 12; "},
      {[&] { return utRegQueryValue(user, nullptr, v, nullptr, nullptr, nullptr); }, 0,
       "QueryValueExA user v 0 0 0 0; "},
      {[&] { return utRegQueryValue(user, "", v, &type, data, nullptr); }, 87,
       "OpenKeyExA user * 0 1 *; QueryValueExA 16 v 0 type data 0; CloseKey 16; "},
      {[&] { return utRegQueryValue(user, "none", v, &type, data, &size); }, 2,
       "OpenKeyExA user * 0 1 *; "},
      {[&] { return utRegVerifyValue(user, sub, v, &type); }, 1,
       "OpenKeyExA user sub 0 1 *; QueryValueExA 20 v 0 type 0 *; CloseKey 20; "},
      {[&] { return utRegVerifyValue(user, nullptr, "none", nullptr); }, 0,
       "QueryValueExA user * 0 0 0 *; "},
      {[&] { return utRegDeleteValue(user, sub, v); }, 0,
       "OpenKeyExA user sub 0 2 *; DeleteValueA 24 v; CloseKey 24; "},
      {[&] { return utRegDeleteValue(user, nullptr, "none"); }, 2, "DeleteValueA user *; "},
      {[&] { return utRegVerifyKey(user, sub); }, 1, "OpenKeyExA user sub 0 1 *; CloseKey 28; "},
      {[&] { return utRegVerifyKey(user, "none"); }, 0, "OpenKeyExA user * 0 1 *; "},
      {[&] { return utRegVerifyKey(user, nullptr) | utRegVerifyKey(user, ""); }, 0, ""},
      {[&] { return utRegOpenPrivateUserKey(nullptr, nullptr, 0x1234, &key); }, 0,
       "OpenKeyExA user * 0 4660 key; "},
      {[&] { return utRegDeletePrivateUserKey(nullptr, nullptr); }, 0, "DeleteKeyA user *; "},
  };
  // clang-format on
  for (const auto& row : rows) {
    DWORD result = 99;
    EXPECT_EQ(Calls([&] { result = row.call(); }, names), row.calls);
    EXPECT_EQ(result, row.result) << row.calls;
  }
  EXPECT_EQ(type, 3u);
  RegCloseKey(key);
}

TEST(TypedValues, ReadABooleanOrANumberOrGiveTheDefault) {
  // clang-format off
  const struct { DWORD type; std::string data; DWORD code; BOOL value; } rows[] = {
      {3, "\0"s, 0, 0}, {3, "\2"s, 0, 1}, {3, "\0\1"s, 0, 0}, {3, "", 13, 55},
      {3, std::string(48, 1), 0, 1}, {3, std::string(49, 1), 234, 55}, {4, "\0\0\0\0"s, 0, 0},
      {4, "\0\1\0\0"s, 0, 1}, {4, "\0\0\0\x80"s, 0, 1}, {4, "\1\0\0"s, 13, 55}, {4, "", 13, 55},
      {4, "\x78\x56\x34\x12", 0, 1}, {4, "\0\0\0\0\1"s, 0, 0},
      {1, "True\0"s, 0, 1}, {1, "yes\0"s, 0, 1}, {1, "oN\0"s, 0, 1}, {1, "1\0"s, 0, 1}, {1, "false\0"s, 0, 0}, {1, "NO\0"s, 0, 0}, {1, "off\0"s, 0, 0},
      {1, "0\0"s, 0, 0}, {1, "maybe\0"s, 13, 55}, {1, " TRUE\0"s, 13, 55}, {1, "2\0"s, 13, 55},
      {1, "\0"s, 13, 55}, {1, "", 13, 55}, {1, "TRUE", 0, 1}, {1, "ON\0x"s, 0, 1},
      {1, "TRUEx", 13, 55}, {1, std::string(47, 'x') + '\0', 13, 55},
      {1, std::string(48, 'x'), 13, 55}, {1, std::string(48, 'x') + '\0', 234, 55},
      {2, "TRUE\0"s, 13, 55}, {0, "\1"s, 13, 55}, {7, "1\0\0"s, 13, 55},
  };
  // clang-format on
  BOOL value = -1;
  GuardedBuffer number(sizeof(DWORD));
  for (const auto& row : rows) {
    SCOPED_TRACE(testing::Message() << row.type << ' ' << testing::PrintToString(row.data));
    Put(kPath, "v", row.type, row.data);
    EXPECT_EQ(utRegGetValueBool(kUser, kPath, "v", 55, &value), row.code);
    EXPECT_EQ(value, row.value);
    EXPECT_EQ(utRegGetPrivateUserBool("sec", "v", 55, "prod"), value);

    const DWORD code = row.data.size() > 4 ? 234 : row.type == 4 ? 0 : 13;
    DWORD expected = code == 0 ? 0 : 77;
    if (code == 0) std::copy(row.data.begin(), row.data.end(), reinterpret_cast<char*>(&expected));
    number.Refill();
    EXPECT_EQ(utRegGetValueDword(kUser, kPath, "v", 77, number.As<DWORD>()), code);
    EXPECT_EQ(*number.As<DWORD>(), expected);
    EXPECT_EQ(utRegGetPrivateUserDword("sec", "v", 77, "prod"), expected);
  }
  EXPECT_EQ(utRegGetValueBool(kUser, kPath, "none", -7, &value), 2u);
  EXPECT_EQ(value, -7);
  EXPECT_EQ(utRegGetValueDword(kUser, nullptr, "v", 77, number.As<DWORD>()), 2u);
  EXPECT_EQ(*number.As<DWORD>(), 77u);
}

TEST(TypedValues, ReadATextIntoTheBufferAndNothingBeside) {
  // clang-format off
  const struct { DWORD type; std::string data; const char* pszDefault; DWORD cbBuffer, code;
                 std::string written; } rows[] = {
      {1, "text\0"s, "dflt", 8, 0, "text\0"s}, {1, "text\0"s, "dflt", 5, 0, "text\0"s},
      {1, "text\0"s, "dflt", 4, 234, "dfl\0"s}, {1, "text\0"s, "dflt", 1, 234, "\0"s},
      {1, "text\0"s, "dflt", 0, 234, ""}, {1, "longer than 8\0"s, "dflt", 8, 234, "dflt\0\0"s},
      {1, "longer than 8\0"s, nullptr, 8, 234, "\0"s}, {1, "a\0b"s, "dflt", 8, 0, "a\0b"s},
      {1, "", "dflt", 8, 0, ""}, {1, "", "dflt", 0, 0, ""}, {1, "ab", "dflt", 8, 0, "ab"},
      {1, "abcdefgh", "dflt", 8, 0, "abcdefgh"}, {4, "\1\2\3\4", "d", 8, 13, "d\0\0\4"s},
      {4, "\1\2\3\4", nullptr, 8, 13, "\0\2\3\4"s}, {2, "text\0"s, "defaults", 8, 13, "default\0"s},
      {3, "12345678", "ABCDEFG", 8, 13, "ABCDEFG\0"s},
  };
  // clang-format on
  for (const auto& row : rows) {
    SCOPED_TRACE(testing::PrintToString(row.data) + " into " + std::to_string(row.cbBuffer));
    Put(kPath, "v", row.type, row.data);
    for (const auto& before : {""s, "old\0"s, "xxxxx\0"s}) {
      GuardedBuffer expected(row.cbBuffer), buffer(row.cbBuffer);
      for (auto* target : {&expected, &buffer}) {
        std::copy_n(before.begin(), std::min<DWORD>(before.size(), row.cbBuffer), target->data());
      }
      std::copy(row.written.begin(), row.written.end(), expected.data());
      const auto bytes = expected.Bytes();
      const auto zero = std::find(bytes.begin(), bytes.end(), 0);
      const auto length = zero == bytes.end() ? row.written.size() : zero - bytes.begin();
      const auto read = [&](char* psz) {
        return utRegGetPrivateUserString("sec", "v", row.pszDefault, psz, row.cbBuffer, "prod");
      };
      auto* psz = buffer.As<char>();
      EXPECT_EQ(read(nullptr), 0u);
      EXPECT_EQ(read(psz), length);
      EXPECT_EQ(buffer.Bytes(), bytes);
      EXPECT_EQ(utRegGetValueString(kUser, kPath, "v", row.pszDefault, psz, row.cbBuffer),
                row.code);
      EXPECT_EQ(buffer.Bytes(), bytes);
    }
  }
  GuardedBuffer buffer(6);
  Put(kPath, "v", REG_SZ, "stored");
  for (const auto& [name, length] : {std::pair("v", 6u), {"none", 4u}}) {
    auto* psz = buffer.As<char>();
    EXPECT_EQ(utRegGetPrivateUserString("sec", name, "dflt", psz, ~0u, "prod"), length);
  }
  EXPECT_EQ(buffer.Bytes(), test::BytesOf("dflt"s, 2));
}

TEST(TypedValues, AreStoredInTheirFormAndMakeTheKeyOnlyIfTold) {
  // clang-format off
  const struct { DWORD (*set)(BOOL fCreate); Value stored; } rows[] = {
      {[](BOOL f) { return utRegSetValueString(kUser, "k", "v", "hello", f); }, {1, "hello\0"s}},
      {[](BOOL f) { return utRegSetValueString(kUser, "k", "v", nullptr, f); }, {1, "\0"s}},
      {[](BOOL f) { return utRegSetValueDword(kUser, "k", "v", 0x12345678, f); }, {4, "\x78\x56\x34\x12"}},
      {[](BOOL f) { return utRegSetValueBool(kUser, "k", "v", 0x100, f); }, {3, "\1"}},
      {[](BOOL f) { return utRegSetValueBool(kUser, "k", "v", 0, f); }, {3, "\0"s}},
  };
  // clang-format on
  for (const auto& row : rows) {
    for (const BOOL fCreate : {0x100, 0x10000}) {
      host::Reset();
      EXPECT_EQ(row.set(0), 2u);
      EXPECT_EQ(row.set(fCreate), 0u);
      char buffer[8];
      DWORD type = 0, size = sizeof buffer;
      EXPECT_EQ(utRegQueryValue(kUser, "k", "v", &type, buffer, &size), 0u);
      EXPECT_EQ(Value(type, std::string(buffer, size)), row.stored);
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
  };
  // clang-format on
  for (const auto& row : rows) {
    const auto needed = static_cast<DWORD>(row.path.size() + 1);
    for (const DWORD size : {0u, needed - 1, needed, UT_SIZE_UNCHECKED}) {
      GuardedBuffer buffer(std::min(size, needed));
      EXPECT_EQ(utRegPathBrindlexSoftware(buffer.As<char>(), size, row.section, row.product),
                size >= needed);
      if (size < needed) EXPECT_TRUE(buffer.IsUntouched());
      if (size >= needed) EXPECT_EQ(buffer.Bytes(), test::BytesOf(row.path));
    }
    EXPECT_EQ(utRegPathBrindlexSoftware(nullptr, needed, row.section, row.product), 0);
  }
}

// Every setting call with the given parts of the path, and `plan` in front of each; returns the
// results and what the calls left in the caller's variables.
std::vector<DWORD> CallAll(
    const char* section, const char* product, const std::function<void()>& plan = [] {}) {
  DWORD type = 111, size = 0;
  char buffer[4] = "???";
  HKEY key = nullptr;
  std::vector<DWORD> results;
  const auto add = [&](auto result) {
    results.push_back(static_cast<DWORD>(result));
    plan();
  };
  plan();
  add(utRegWritePrivateUserString(section, "v", "text", product));
  add(utRegWritePrivateUserBinary(section, "v", "by", 2, product));
  add(utRegWritePrivateUserBool(section, "v", 9, product));
  add(utRegWritePrivateUserDword(section, "v", 5, product));
  add(utRegVerifyPrivateUserKey(section, product));
  add(utRegVerifyPrivateUserValue(section, "v", product, &type));
  add(utRegGetPrivateUserString(section, "v", "d", buffer, 4, product));
  add(utRegGetPrivateUserDword(section, "v", 77, product));
  add(utRegGetPrivateUserBool(section, "v", 55, product));
  add(utRegGetPrivateUserBinary(section, "v", nullptr, nullptr, &size, product));
  add(utRegOpenPrivateUserKey(section, product, KEY_READ, &key));
  if (key != nullptr) RegCloseKey(key);
  add(utRegDeletePrivateUserValue(section, "v", product));
  add(utRegWritePrivateUserString(section, "v", nullptr, product));
  add(utRegWritePrivateUserBinary(section, "v", nullptr, 9, product));
  add(utRegDeletePrivateUserKey(section, product));
  for (const DWORD left : {type, size, static_cast<DWORD>(buffer[0])}) add(left);
  return results;
}

TEST(PrivateSettings, ReachNothingWithAPathThatDoesNotFit) {
  const auto fits = ElementsAre(1, 1, 1, 1, 1, 1, 1, 5, 1, 0, 0, 1, 0, 0, 0, 4, 4, 'd');
  const auto doesNot = ElementsAre(0, 0, 0, 0, 0, 0, 0, 77, 55, 87, 2, 0, 0, 0, 87, 111, 0, '?');
  const std::string part(120, 'x'), longer(121, 'y');
  EXPECT_THAT(CallAll("sec", "prod"), fits);
  EXPECT_THAT(CallAll(part.c_str(), part.c_str()), fits);
  const auto calls = Calls([&] {
    EXPECT_THAT(CallAll(longer.c_str(), part.c_str()), doesNot);
    EXPECT_THAT(CallAll(part.c_str(), longer.c_str()), doesNot);
    EXPECT_THAT(CallAll(std::string(5000, 'z').c_str(), nullptr), doesNot);
  });
  EXPECT_EQ(calls, "");
}

TEST(PrivateSettings, CloseEveryKeyAndKeepTheDefaultsWhenThePlatformFails) {
  // clang-format off
  const struct { const char* operation; DWORD code; std::vector<DWORD> results; } rows[] = {
      {"RegOpenKeyExA", 5, {0, 0, 0, 0, 1, 0, 1, 77, 55, 5, 5, 0, 0, 0, 2, 111, 0, 'd'}},
      {"RegOpenKeyExA", 2, {1, 1, 1, 1, 0, 0, 1, 77, 55, 2, 2, 0, 0, 0, 0, 111, 0, 'd'}},
      {"RegCreateKeyExA", 8, {0, 0, 0, 0, 0, 0, 1, 77, 55, 2, 2, 0, 0, 0, 2, 111, 0, 'd'}},
      {"RegSetValueExA", 8, {0, 0, 0, 0, 1, 0, 1, 77, 55, 2, 0, 0, 0, 0, 0, 111, 0, 'd'}},
      {"RegQueryValueExA", 6, {1, 1, 1, 1, 1, 0, 1, 77, 55, 6, 0, 1, 0, 0, 0, 111, 0, 'd'}},
      {"RegDeleteValueA", 5, {1, 1, 1, 1, 1, 1, 1, 5, 1, 0, 0, 0, 0, 0, 0, 4, 4, 'd'}},
      {"RegDeleteKeyA", 5, {1, 1, 1, 1, 1, 1, 1, 5, 1, 0, 0, 1, 0, 0, 5, 4, 4, 'd'}},
      {"RegCloseKey", 6, {1, 1, 1, 1, 1, 1, 1, 5, 1, 0, 0, 1, 0, 0, 0, 4, 4, 'd'}},
  };
  // clang-format on
  for (const auto& row : rows) {
    SCOPED_TRACE(row.operation);
    host::Reset();
    const auto plan = [&] { host::FailCall(1, row.code, row.operation); };
    EXPECT_EQ(CallAll("sec", "prod", plan), row.results);
    EXPECT_EQ(host::LivingKeyHandles(), 0u);
  }
  host::Reset();
  const unsigned failures = test::ForEachFailure(5, [] {
    CallAll("sec", "prod");
    EXPECT_EQ(host::LivingKeyHandles(), 0u);
  });
  EXPECT_GT(failures, 50u);
}

TEST(PrivateSettings, BehaveAsAMapOverARandomLife) {
  const std::vector<const char*> sections = {nullptr, "", "s", "S", "s\\t", "u"};
  const std::vector<const char*> products = {nullptr, "", "p", "P", "q\\r"};
  const std::vector<const char*> names = {nullptr, "", "v", "V", "w\\x"};
  // clang-format off
  const struct { BOOL (*write)(const char* s, const char* v, const char* p); Value value; } writers[] = {
      {[](auto s, auto v, auto p) { return utRegWritePrivateUserString(s, v, "", p); }, {1, "\0"s}},
      {[](auto s, auto v, auto p) { return utRegWritePrivateUserString(s, v, "7 bytes", p); }, {1, "7 bytes\0"s}},
      {[](auto s, auto v, auto p) { return utRegWritePrivateUserString(s, v, "8 bytes.", p); }, {1, "8 bytes.\0"s}},
      {[](auto s, auto v, auto p) { return utRegWritePrivateUserDword(s, v, 0x12345678, p); }, {4, "\x78\x56\x34\x12"}},
      {[](auto s, auto v, auto p) { return utRegWritePrivateUserBool(s, v, 0x100, p); }, {3, "\1"}},
      {[](auto s, auto v, auto p) { return utRegWritePrivateUserBinary(s, v, "a\0b", 3, p); }, {3, "a\0b"s}},
      {[](auto s, auto v, auto p) { return utRegWritePrivateUserBinary(s, v, "", 0, p); }, {3, ""}},
  };
  // clang-format on
  test::Random random(5);
  std::map<std::string, Value> model;
  for (int step = 0; step < 3000; ++step) {
    const auto *section = random.Of(sections), *product = random.Of(products);
    const auto* name = random.Of(names);
    // Upper case, and an empty part counts for nothing.
    std::string place;
    for (const char* part : {product, section}) {
      if (part != nullptr && *part != 0) place += host::FoldName(part) + '\\';
    }
    place += '=' + host::FoldName(name == nullptr ? "" : name);
    const bool isThere = model.contains(place);
    SCOPED_TRACE(std::to_string(step) + ": " + place);

    const auto kind = random.Below(14);
    if (kind < std::size(writers)) {
      EXPECT_EQ(writers[kind].write(section, name, product), 1);
      model[place] = writers[kind].value;
    } else if (kind < 9) {
      EXPECT_EQ(utRegWritePrivateUserString(section, name, nullptr, product), isThere);
      model.erase(place);
    } else {
      const auto value = isThere ? model[place] : Value();
      char buffer[32];
      DWORD type = 0, size = sizeof buffer;
      const DWORD code = utRegGetPrivateUserBinary(section, name, &type, buffer, &size, product);
      EXPECT_EQ(code, isThere ? 0u : 2u);
      EXPECT_EQ(Value(type, std::string(buffer, isThere ? size : 0)), value);
      EXPECT_EQ(utRegVerifyPrivateUserValue(section, name, product, nullptr), isThere);
      EXPECT_EQ(utRegGetPrivateUserDword(section, name, 9, product),
                value.first == REG_DWORD ? 0x12345678u : 9u);
      const DWORD length = utRegGetPrivateUserString(section, name, "none", buffer, 8, product);
      const bool isRead = value.first == REG_SZ && value.second.size() <= 8;
      EXPECT_EQ(std::string(buffer, length + 1), isRead ? value.second : "none\0"s);
    }
  }
}

}  // namespace
