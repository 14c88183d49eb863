// What the operations on the registry answer.
#include <codepage.h>
#include <gtest/gtest.h>
#include <host.h>

#include <cstring>
#include <string>

namespace {

using namespace std::string_literals;

class RegistryKeys : public testing::Test {
 protected:
  void SetUp() override {
    host::Reset();
    key_ = Make("", KEY_ALL_ACCESS, 1);
  }
  void TearDown() override { RegCloseKey(key_); }

  // Below a key of the library's, which no other test leaves anything in.
  static HKEY Make(const std::string& path, REGSAM access, DWORD expected) {
    HKEY key = nullptr;
    DWORD disposition = 0;
    RegCreateKeyExA(HKEY_CURRENT_USER, ("Software\\Brindlex" + path).c_str(), 0, nullptr, 0, access,
                    nullptr, &key, &disposition);
    EXPECT_EQ(disposition, expected);
    return key;
  }
  // What a query answers and leaves: the code, the type, the size, and nine bytes of the buffer.
  std::string Query(const char* name, int room) {
    BYTE data[9];
    std::memset(data, '.', sizeof data);
    DWORD type = 77, size = room < 0 ? 88 : static_cast<DWORD>(room);
    const LONG code =
        RegQueryValueExA(key_, name, nullptr, &type, room < 0 ? nullptr : data, &size);
    return std::to_string(code) + ' ' + std::to_string(type) + ' ' + std::to_string(size) + ' ' +
           std::string(data, data + 9);
  }
  LONG Set(const char* name, DWORD type, const std::string& data, std::size_t size) {
    return RegSetValueExA(key_, name, 0, type, reinterpret_cast<const BYTE*>(data.data()),
                          static_cast<DWORD>(size));
  }

  HKEY key_ = nullptr;
};

TEST_F(RegistryKeys, HoldsCallersToTheRightsOfTheirHandles) {
  const BYTE data[] = {1, 2, 3};
  BYTE buffer[3] = {};
  DWORD size = 3;
  const HKEY writer = Make("\\A\\b\\C", KEY_SET_VALUE, 1);
  const HKEY reader = Make("\\a\\b\\c", KEY_QUERY_VALUE, 2);
  EXPECT_EQ(RegSetValueExA(reader, "Name", 0, 3, data, 3), ERROR_ACCESS_DENIED);
  EXPECT_EQ(RegSetValueExA(writer, "Name", 0, 3, data, 3), 0);
  EXPECT_EQ(RegQueryValueExA(writer, "name", nullptr, nullptr, nullptr, &size), 5);
  size = 3;
  EXPECT_EQ(RegQueryValueExA(reader, "NAME", nullptr, nullptr, buffer, &size), 0);
  EXPECT_EQ(buffer[2], 3);
  EXPECT_EQ(RegQueryValueExA(reader, "NAME", nullptr, nullptr, buffer, nullptr), 87);
  EXPECT_EQ(RegDeleteValueA(reader, "name"), ERROR_ACCESS_DENIED);
  EXPECT_EQ(RegDeleteValueA(writer, "name"), 0);
  EXPECT_EQ(RegDeleteValueA(writer, "name"), ERROR_FILE_NOT_FOUND);

  EXPECT_EQ(RegDeleteKeyA(key_, "a\\b"), ERROR_ACCESS_DENIED);
  EXPECT_EQ(RegDeleteKeyA(key_, "a\\b\\c"), 0);
  EXPECT_EQ(RegDeleteKeyA(key_, "a\\b\\c"), ERROR_FILE_NOT_FOUND);
  EXPECT_EQ(RegSetValueExA(writer, "Name", 0, 3, data, 3), 1018);  // the key is deleted
  for (const HKEY key : {reader, writer}) EXPECT_EQ(RegCloseKey(key), 0);
  EXPECT_EQ(RegCloseKey(reader), ERROR_INVALID_HANDLE);
}

TEST_F(RegistryKeys, OpensKeysOrGivesNull) {
  RegCloseKey(Make("\\A\\B", KEY_READ, 1));
  RegCloseKey(Make("\\A\\\\B\\", KEY_READ, 2));
  // clang-format off
  const std::pair<const char*, LONG> rows[] = {
      {"a", 0}, {"A\\b", 0}, {"", 0}, {"x", 2}, {"x\\y", 2}, {"A/B", 2}, {"\\", 161}, {"\\a", 161}};
  // clang-format on
  for (const auto& [path, code] : rows) {
    auto key = reinterpret_cast<HKEY>(1);
    EXPECT_EQ(RegOpenKeyExA(key_, path, 0, KEY_READ, &key), code) << path;
    EXPECT_EQ(key == nullptr, code != 0) << path;
    if (code == 0) EXPECT_EQ(RegCloseKey(key), 0);
  }
  auto key = reinterpret_cast<HKEY>(1);
  EXPECT_EQ(RegOpenKeyExA(reinterpret_cast<HKEY>(0x7770), "x", 0, KEY_READ, &key), 6);
  EXPECT_EQ(key, nullptr);
}

TEST_F(RegistryKeys, KeepsValuesAndTellsOfMissingOnes) {
  EXPECT_EQ(Query("v", 9), "2 0 9 .........");
  EXPECT_EQ(Query("v", -1), "2 0 0 .........");
  EXPECT_EQ(Query(nullptr, -1), "2 0 0 .........");
  EXPECT_EQ(RegSetValueExA(key_, "v", 0, REG_BINARY, nullptr, 3), 998);
  // Data with what follows them, and how many of them are stored.
  // clang-format off
  const struct { DWORD type; std::string data; std::size_t size; int room;
                 std::string answer; } rows[] = {
      {9, "\1\2\3", 3, 3, "0 9 3 \1\2\3......"}, {9, "\1\2\3", 3, 2, "234 9 3 ........."},
      {9, "\1\2\3", 3, -1, "0 9 3 ........."}, {REG_BINARY, "hello", 5, 9, "0 3 5 hello...."},
      {REG_SZ, "hello more", 5, 5, "0 1 5 hello...."},
      {REG_SZ, "hello more", 5, 6, "0 1 5 hello\0..."s},
      {REG_SZ, "hello", 5, -1, "0 1 6 ........."}, {REG_SZ, "hello", 5, 5, "234 1 6 ........."},
      {REG_SZ, "hello", 6, 9, "0 1 6 hello\0..."s}, {REG_SZ, "", 0, 9, "0 1 0 ........."},
      {REG_EXPAND_SZ, "hello more", 5, 9, "0 2 5 hello\0..."s},
      {REG_MULTI_SZ, "a\0bc"s, 4, 9, "0 7 5 a\0bc\0...."s},
  };
  // clang-format on
  for (const auto& row : rows) {
    ASSERT_EQ(Set("V", row.type, row.data, row.size), 0);
    EXPECT_EQ(Query("v", row.room), row.answer) << &row - rows;
  }
  for (const auto& [length, code, answer] : {std::tuple(16383u, 0, "0 3 1 d........"),
                                             {16384u, 87, "2 0 1 ........."},
                                             {32766u, 87, "2 0 1 ........."},
                                             {32767u, 87, "87 0 1 ........."}}) {
    const std::string name(length, 'n');
    EXPECT_EQ(Set(name.c_str(), 3, "d", 1), code) << length;
    EXPECT_EQ(Query(name.c_str(), 1), answer) << length;
  }
}

TEST_F(RegistryKeys, TakesNamesAndTextsForWideOnes) {
  if (host::SetCodePage(1252)) {
    Set("\xE9\xFF", 3, "d", 1);
    EXPECT_EQ(Query("\xC9\x9F", 1), "0 3 1 d........");
  }
  if (!host::SetCodePage(932)) return;
  for (const std::string name : {"\x82\x60\x82\x81", "\x84\x40\x84\x70", "\x9A\x8A"}) {
    const auto half = name.size() / 2;
    Set(name.substr(0, half).c_str(), 3, "d", 1);
    EXPECT_EQ(Query(name.substr(half).c_str(), 1), "0 3 1 d........");
    RegDeleteValueA(key_, name.substr(half).c_str());
  }
  // Half a character at the end takes the terminator along, which is added again.
  for (const auto& [text, size] :
       {std::pair("\x93\xFA\x9D"s, '4'), {"\x93\xFA\x81 ", '5'}, {"\x93\xFA\xEB@", '5'}}) {
    Set("v", REG_SZ, text, text.size() + 1);
    EXPECT_EQ(Query("v", 9), "0 1 "s + size + " \x93\xFA\x81\x45\0...."s);
  }
}

}  // namespace
