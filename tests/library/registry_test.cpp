// Registry values, typed values and private user settings, over the platform layer's registry.
#include <gtest/gtest.h>
#include <host.h>
#include <registry.h>
#include <tavkit.h>
#include <text.h>

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

void Put(const char* path, const char* name, DWORD type, const std::string& data) {
  ASSERT_EQ(utRegSetValue(kUser, path, name, type, data.data(), data.size(), 1), 0u);
}

// The platform's registry calls of a piece of work, each argument by its name, as a small number,
// or as * for another address.
std::string Calls(const std::function<void()>& work, const Names& names = {}) {
  host::StartJournal();
  work();
  std::string calls;
  for (const auto& [operation, arguments] : host::TakeJournal()) {
    if (!operation.starts_with("Reg")) continue;
    calls += operation.substr(3, operation.find_last_not_of("ExA") - 2);
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
  const HKEY u = kUser;
  const char sub[] = "Software\\Brindlex", v[] = "v", none[] = "none", empty[] = "";
  DWORD t, n;
  char d[2] = {};
  HKEY key = nullptr;
  const Names names = {{u, "u"},  {sub, "sub"}, {none, "none"}, {empty, "empty"}, {v, "v"},
                       {&t, "t"}, {&n, "n"},    {d, "d"},       {&key, "key"}};
  // What is called between opening `sub` with an access and closing it; all of it if that is 0.
  // clang-format off
  const struct { std::function<DWORD()> call; DWORD result, access; std::string calls; } rows[] = {
      {[&] { return utRegSetValue(u, none, v, 3, d, 2, 0); }, 2, 0, "OpenKey u none 0 2 *; "},
      {[&] { return utRegSetValue(u, none, v, 3, d, 2, 0x10000); }, 0, 0, "OpenKey u none 0 2 *; "
       "CreateKey u none 0 0 0 983103 0 * *; SetValue 8 v 0 3 d 2; CloseKey 8; "},
      {[&] { return utRegSetValue(u, sub, nullptr, 9, d, 0, 1); }, 0, 2, "SetValue 8 0 0 9 d 0; "},
      {[&] { return utRegSetValue(u, nullptr, v, 3, d, 2, 1); }, 0, 0, "SetValue u v 0 3 d 2; "},
      {[&] { return utRegQueryValue(u, sub, v, &t, d, &n); }, 0, 1, "QueryValue 8 v 0 t d n; "},
      {[&] { return utRegQueryValue(u, nullptr, v, nullptr, d, &n); }, 2, 0,
       "QueryValue u v 0 0 d n; "},
      {[&] { return utRegQueryValue(u, empty, v, &t, d, nullptr); }, 87, 0,
       "OpenKey u empty 0 1 *; QueryValue 8 v 0 t d 0; CloseKey 8; "},
      {[&] { return utRegQueryValue(u, none, v, &t, d, &n); }, 2, 0, "OpenKey u none 0 1 *; "},
      {[&] { return utRegVerifyValue(u, sub, v, &t); }, 1, 1, "QueryValue 8 v 0 t 0 *; "},
      {[&] { return utRegVerifyValue(u, nullptr, v, nullptr); }, 0, 0, "QueryValue u v 0 0 0 *; "},
      {[&] { return utRegDeleteValue(u, sub, v); }, 0, 2, "DeleteValue 8 v; "},
      {[&] { return utRegDeleteValue(u, sub, none); }, 2, 2, "DeleteValue 8 none; "},
      {[&] { return utRegDeleteValue(u, nullptr, v); }, 2, 0, "DeleteValue u v; "},
      {[&] { return utRegVerifyKey(u, sub); }, 1, 1, ""},
      {[&] { return utRegVerifyKey(u, none); }, 0, 0, "OpenKey u none 0 1 *; "},
      {[&] { return utRegVerifyKey(u, nullptr) | utRegVerifyKey(u, empty); }, 0, 0, ""},
      {[&] { return utRegOpenPrivateUserKey(nullptr, nullptr, 9, &key); }, 0, 0,
       "OpenKey u * 0 9 key; "},
      {[&] { return utRegDeletePrivateUserKey(nullptr, nullptr); }, 0, 0, "DeleteKey u *; "},
      {[&] { return utRegVerifyPrivateUserKey(none, nullptr); }, 0, 0, "OpenKey u * 0 1 *; "},
  };
  // clang-format on
  for (auto [call, result, access, calls] : rows) {
    host::Reset();
    Put(sub, v, REG_BINARY, "xy");
    n = 2;
    const auto opening = "OpenKey u sub 0 " + std::to_string(access) + " *; ";
    if (access != 0) calls = opening + calls + "CloseKey 8; ";
    DWORD got = 99;
    EXPECT_EQ(Calls([&] { got = call(); }, names), calls);
    EXPECT_EQ(got, result) << calls;
    if (key != nullptr) RegCloseKey(key);
    key = nullptr;
  }
  EXPECT_EQ(t, 3u);
}

TEST(TypedValues, ReadABooleanOrANumberOrGiveTheDefault) {
  // clang-format off
  const struct { DWORD type; std::string data; BOOL value; } rows[] = {
      {3, "\0"s, 0}, {3, "\2"s, 1}, {3, "\0\1"s, 0}, {3, "", 55}, {3, std::string(48, 1), 1},
      {3, std::string(49, 1), 55}, {4, "\0\0\0\0"s, 0}, {4, "\0\1\0\0"s, 1}, {4, "\0\0\0\x80"s, 1},
      {4, "\1\0\0"s, 55}, {4, "", 55}, {4, "\x78\x56\x34\x12", 1}, {4, "\0\0\0\0\1"s, 0},
      {1, "True\0"s, 1}, {1, "yes\0"s, 1}, {1, "oN\0"s, 1}, {1, "1\0"s, 1}, {1, "false\0"s, 0},
      {1, "NO\0"s, 0}, {1, "off\0"s, 0}, {1, "0\0"s, 0}, {1, "maybe\0"s, 55}, {1, " TRUE\0"s, 55},
      {1, "2\0"s, 55}, {1, "\0"s, 55}, {1, "", 55}, {1, "TRUE", 1}, {1, "ON\0x"s, 1},
      {1, "TRUEx", 55}, {1, std::string(47, 'x') + '\0', 55}, {1, std::string(48, 'x'), 55},
      {1, std::string(49, 'x'), 55}, {2, "TRUE\0"s, 55}, {0, "\1"s, 55}, {7, "1\0\0"s, 55},
  };
  // clang-format on
  BOOL value = -1;
  GuardedBuffer number(sizeof(DWORD));
  for (const auto& row : rows) {
    SCOPED_TRACE(testing::Message() << row.type << ' ' << testing::PrintToString(row.data));
    Put(kPath, "v", row.type, row.data);
    const DWORD boolCode = row.value != 55 ? 0 : row.data.size() > 48 ? 234 : 13;
    EXPECT_EQ(utRegGetValueBool(kUser, kPath, "v", 55, &value), boolCode);
    EXPECT_EQ(value, row.value);
    EXPECT_EQ(utRegGetPrivateUserBool("sec", "v", 55, "prod"), value);

    const DWORD code = row.data.size() > 4 ? 234 : row.type == 4 ? 0 : 13;
    number.Refill();
    const auto expected = [&](DWORD before) {
      std::copy_n(row.data.begin(), code == 0 ? row.data.size() : 0, (char*)&before);
      return code == 0 ? before : 77;
    };
    const DWORD kept = expected(*number.As<DWORD>());
    EXPECT_EQ(utRegGetValueDword(kUser, kPath, "v", 77, number.As<DWORD>()), code);
    EXPECT_EQ(*number.As<DWORD>(), kept);
    EXPECT_EQ(utRegGetPrivateUserDword("sec", "v", 77, "prod"), expected(0));
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
    for (const auto& before : {"????????"s, "old\0????"s, "xxxxx\0??"s}) {
      const auto bytes = test::BytesOf(before.substr(0, row.cbBuffer), 0);
      auto expected = bytes;
      std::copy(row.written.begin(), row.written.end(), expected.begin());
      const auto zero = std::find(expected.begin(), expected.end(), 0);
      const auto length = zero == expected.end() ? row.written.size() : zero - expected.begin();
      GuardedBuffer buffer(row.cbBuffer);
      for (char* psz : {static_cast<char*>(nullptr), buffer.As<char>()}) {
        buffer.Set(bytes);
        EXPECT_EQ(utRegGetPrivateUserString("sec", "v", row.pszDefault, psz, row.cbBuffer, "prod"),
                  psz == nullptr ? 0 : length);
      }
      EXPECT_EQ(buffer.Bytes(), expected);
      buffer.Set(bytes);
      auto* psz = buffer.As<char>();
      const auto code = utRegGetValueString(kUser, kPath, "v", row.pszDefault, psz, row.cbBuffer);
      EXPECT_EQ(code, row.code);
      EXPECT_EQ(buffer.Bytes(), expected);
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
  const HKEY u = kUser;
  const auto& k = kPath;
  // clang-format off
  const struct { std::function<DWORD(BOOL)> set; Value stored; } rows[] = {
      {[&](BOOL f) { return utRegSetValueString(u, k, "v", "hello", f); }, {1, "hello\0"s}},
      {[&](BOOL f) { return utRegSetValueString(u, k, "v", nullptr, f); }, {1, "\0"s}},
      {[&](BOOL f) { return utRegSetValueDword(u, k, "v", 0x44332211, f); }, {4, "\x11\"3D"}},
      {[&](BOOL f) { return utRegSetValueBool(u, k, "v", ~0x7FFFFFFF, f); }, {3, "\1"}},
      {[&](BOOL f) { return utRegSetValueBool(u, k, "v", 0, f); }, {3, "\0"s}},
      {[&](BOOL) { return !utRegWritePrivateUserString("sec", "v", "", "prod"); }, {1, "\0"s}},
      {[&](BOOL) { return !utRegWritePrivateUserDword("sec", "v", 5, "prod"); }, {4, "\5\0\0\0"s}},
      {[&](BOOL) { return !utRegWritePrivateUserBool("sec", "v", 0x100, "prod"); }, {3, "\1"}},
      {[&](BOOL) { return !utRegWritePrivateUserBinary("sec", "v", "a", 2, "prod"); }, {3, "a\0"s}},
  };
  // clang-format on
  for (const auto& row : rows) {
    if (&row < rows + 5) EXPECT_EQ(row.set(0), 2u);
    for (const BOOL fCreate : {0x100, 0x10000}) {
      EXPECT_EQ(row.set(fCreate), 0u);
      char buffer[8];
      DWORD type = 0, size = sizeof buffer;
      EXPECT_EQ(utRegGetPrivateUserBinary("sec", "v", &type, buffer, &size, "prod"), 0u);
      EXPECT_EQ(Value(type, std::string(buffer, size)), row.stored);
      EXPECT_EQ(utRegWritePrivateUserString("sec", "v", nullptr, "prod"), 1);
      EXPECT_EQ(row.set(fCreate), 0u);
      EXPECT_EQ(utRegWritePrivateUserBinary("sec", "v", nullptr, 9, "prod"), 1);
      EXPECT_EQ(utRegDeletePrivateUserKey("sec", "prod"), 0u);
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

// Every setting call with the given parts of the path; returns the results and what the calls left
// in the caller's variables.
std::vector<DWORD> CallAll(const char* s, const char* p) {
  DWORD type = 111, size = 0;
  char buffer[4] = "???";
  HKEY key = nullptr;
  std::vector<DWORD> results;
  const auto add = [&](auto result) { results.push_back(static_cast<DWORD>(result)); };
  add(utRegWritePrivateUserString(s, "v", "text", p));
  add(utRegWritePrivateUserBinary(s, "v", "by", 2, p));
  add(utRegWritePrivateUserBool(s, "v", 9, p));
  add(utRegWritePrivateUserDword(s, "v", 5, p));
  add(utRegVerifyPrivateUserKey(s, p));
  add(utRegVerifyPrivateUserValue(s, "v", p, &type));
  add(utRegGetPrivateUserString(s, "v", "d", buffer, 4, p));
  add(utRegGetPrivateUserDword(s, "v", 77, p));
  add(utRegGetPrivateUserBool(s, "v", 55, p));
  add(utRegGetPrivateUserBinary(s, "v", nullptr, nullptr, &size, p));
  add(utRegOpenPrivateUserKey(s, p, KEY_READ, &key));
  if (key != nullptr) RegCloseKey(key);
  add(utRegDeletePrivateUserValue(s, "v", p));
  add(utRegWritePrivateUserString(s, "v", nullptr, p));
  add(utRegWritePrivateUserBinary(s, "v", nullptr, 9, p));
  add(utRegDeletePrivateUserKey(s, p));
  for (const DWORD left : {type, size, static_cast<DWORD>(buffer[0])}) add(left);
  return results;
}

TEST(PrivateSettings, ReachNothingWithAPathThatDoesNotFit) {
  const std::vector<DWORD> fits = {1, 1, 1, 1, 1, 1, 1, 5, 1, 0, 0, 1, 0, 0, 0, 4, 4, 'd'};
  const std::vector<DWORD> none = {0, 0, 0, 0, 0, 0, 0, 77, 55, 87, 2, 0, 0, 0, 87, 111, 0, '?'};
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

std::string PathOf(const char* product, const char* section) {
  char path[100];
  utRegPathBrindlexSoftware(path, sizeof path, section, product);
  return path;
}

// What a value gives as a boolean.
BOOL BoolOf(const Value& value, BOOL fDefault) {
  const auto& [type, data] = value;
  if (data.size() > 48 || data.empty()) return fDefault;
  if (type == REG_BINARY) return data[0] != 0;
  if (type == REG_DWORD && data.size() >= 4) return data.substr(0, 4) != "\0\0\0\0"s;
  if (type != REG_SZ) return fDefault;
  const auto text = host::FoldName(data.c_str());
  for (const char* yes : {"TRUE", "YES", "ON", "1"})
    if (text == yes) return 1;
  for (const char* no : {"FALSE", "NO", "OFF", "0"})
    if (text == no) return 0;
  return fDefault;
}

// What a read as a text leaves in a buffer: the value where it fits, and over it, unless it is a
// text, as much of the default as fits, with a second zero where there is room.
std::string BufferWith(const Value* value, const char* pszDefault, std::string buffer) {
  const auto put = [&](std::string bytes, std::size_t zeros) {
    bytes.append(zeros, 0).resize(std::min(bytes.size(), buffer.size()));
    buffer.replace(0, bytes.size(), bytes);
  };
  const bool fits = value != nullptr && value->second.size() <= buffer.size();
  if (fits) put(value->second, 0);
  if ((fits && value->first == REG_SZ) || buffer.empty()) return buffer;
  const auto text = ""s + (pszDefault == nullptr ? "" : pszDefault);
  put(text.substr(0, buffer.size() - 1), pszDefault == nullptr ? 1 : 2);
  return buffer;
}

PROPERTY(PrivateSettings, LiveAsAMap, 80) {
  const std::vector<const char*> sections = {nullptr, "", "s", "S", "s\\t", "u"};
  const std::vector<const char*> products = {nullptr, "", "p", "P", "q\\r"};
  const std::vector<const char*> names = {nullptr, "", "v", "V", "w\\x"};
  const std::vector<std::string> texts = {
      "", "on", "nO", "1", "longer than eight", std::string(60, 'x')};
  std::map<std::string, Value> model;
  for (int step = 0; choices.More(); ++step) {
    const char* section = choices.Of(sections);
    const char* product = choices.Of(products);
    const char* name = choices.Of(names);
    const auto text = choices.Of(texts);
    // Upper case, and an empty part counts for nothing.
    std::string place;
    for (const char* part : {product, section}) {
      if (part != nullptr && *part != 0) place += host::FoldName(part) + '\\';
    }
    place += '=' + host::FoldName(name == nullptr ? "" : name);
    const bool wasThere = model.contains(place);
    SCOPED_TRACE(std::to_string(step) + ": " + place);

    const auto kind = choices.Below(8);
    if (kind == 0) {
      EXPECT_EQ(utRegWritePrivateUserString(section, name, text.c_str(), product), 1);
      model[place] = {REG_SZ, text + '\0'};
    } else if (kind == 1) {
      EXPECT_EQ(utRegWritePrivateUserDword(section, name, 0x12345678, product), 1);
      model[place] = {REG_DWORD, "\x78\x56\x34\x12"};
    } else if (kind == 2) {
      const BOOL value = choices.Of<BOOL>({0, 1, 0x100});
      EXPECT_EQ(utRegWritePrivateUserBool(section, name, value, product), 1);
      model[place] = {REG_BINARY, std::string(1, value != 0)};
    } else if (kind == 3) {
      const auto path = PathOf(product, section);
      const auto type = choices.Of<DWORD>({REG_BINARY, REG_SZ, REG_DWORD, REG_EXPAND_SZ, 99});
      const auto data =
          choices.Text<char>({0, 1, 'O', 'n', 'N', '\x81'}, choices.Of<unsigned>({5, 60}));
      Put(path.c_str(), name, type, data);
      model[place] = {type, data};
    } else if (kind == 4) {
      EXPECT_EQ(utRegWritePrivateUserString(section, name, nullptr, product), wasThere);
      model.erase(place);
    }

    const bool isThere = model.contains(place);
    const Value* value = isThere ? &model[place] : nullptr;
    GuardedBuffer buffer(choices.Below(64));
    DWORD type = 99, size = buffer.size();
    const DWORD code =
        utRegGetPrivateUserBinary(section, name, &type, buffer.data(), &size, product);
    const bool fits = isThere && value->second.size() <= buffer.size();
    EXPECT_EQ(code, fits ? 0u : isThere ? 234u : 2u);
    EXPECT_EQ(type, isThere ? value->first : 99);
    if (isThere) EXPECT_EQ(size, value->second.size());
    if (fits) EXPECT_EQ(std::memcmp(buffer.data(), value->second.data(), size), 0);
    EXPECT_EQ(utRegVerifyPrivateUserValue(section, name, product, nullptr), isThere);
    DWORD number = 9;
    if (isThere && value->first == REG_DWORD && value->second.size() <= 4) {
      number = 0;
      std::memcpy(&number, value->second.data(), value->second.size());
    }
    EXPECT_EQ(utRegGetPrivateUserDword(section, name, 9, product), number);
    EXPECT_EQ(utRegGetPrivateUserBool(section, name, 55, product),
              isThere ? BoolOf(*value, 55) : 55);
    const char* pszDefault = choices.Of<const char*>({nullptr, "", "none"});
    buffer.Refill();
    const std::string before(buffer.size(), static_cast<char>(test::kPattern));
    const auto after = BufferWith(value, pszDefault, before);
    const bool isRead = fits && value->first == REG_SZ;
    EXPECT_EQ(utRegGetPrivateUserString(section, name, pszDefault, buffer.As<char>(), buffer.size(),
                                        product),
              std::min(after.find('\0'), isRead ? value->second.size() : after.size()));
    EXPECT_EQ(std::string(buffer.As<char>(), buffer.size()), after);
  }
}

}  // namespace
