// The platform layer's registry, in memory and in a file.
#include <codepage.h>
#include <conversion.h>
#include <gtest/gtest.h>
#include <host.h>
#include <registry_file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <sstream>

#include "support/random.h"

namespace {

using namespace std::string_literals;
namespace fs = std::filesystem;

class Registry : public testing::Test {
 protected:
  void SetUp() override { host::Reset(); }
  void TearDown() override { EXPECT_EQ(host::LivingKeyHandles(), 0u); }
};

HKEY Make(HKEY parent, const char* path, REGSAM access, DWORD expected = 1) {
  HKEY key = nullptr;
  DWORD disposition = 0;
  EXPECT_EQ(RegCreateKeyExA(parent, path, 0, nullptr, 0, access, nullptr, &key, &disposition), 0);
  EXPECT_EQ(disposition, expected);
  return key;
}

TEST_F(Registry, HoldsCallersToTheRightsOfTheirHandles) {
  const BYTE data[] = {1, 2, 3};
  BYTE buffer[3] = {};
  DWORD type = 0, size = 2;
  const HKEY writer = Make(HKEY_CURRENT_USER, "A\\b\\C", KEY_SET_VALUE);
  const HKEY reader = Make(HKEY_CURRENT_USER, "a\\\\B\\c\\", KEY_QUERY_VALUE, 2);
  EXPECT_EQ(host::LivingKeyHandles(), 2u);
  EXPECT_EQ(RegSetValueExA(reader, "Name", 0, 3, data, 3), ERROR_ACCESS_DENIED);
  EXPECT_EQ(RegSetValueExA(writer, "Name", 0, 3, data, 3), 0);
  EXPECT_EQ(RegSetValueExA(writer, "NAME", 0, 9, data, 3), 0);
  EXPECT_EQ(RegQueryValueExA(writer, "name", nullptr, nullptr, nullptr, &size),
            ERROR_ACCESS_DENIED);
  EXPECT_EQ(RegQueryValueExA(reader, "name", nullptr, &type, buffer, &size), ERROR_MORE_DATA);
  EXPECT_EQ(std::tuple(type, size, buffer[0]), std::tuple(9u, 3u, 0));
  EXPECT_EQ(RegQueryValueExA(reader, "name", nullptr, nullptr, buffer, &size), 0);
  EXPECT_EQ(buffer[2], 3);
  EXPECT_EQ(RegQueryValueExA(reader, "x", nullptr, nullptr, nullptr, nullptr),
            ERROR_FILE_NOT_FOUND);
  EXPECT_EQ(RegDeleteValueA(reader, "name"), ERROR_ACCESS_DENIED);

  const auto& user = *host::CurrentRegistry()->keys.at("HKEY_CURRENT_USER");
  EXPECT_EQ(user.keys.at("A")->keys.at("B")->name, "b");  // as it was first written
  EXPECT_EQ(user.keys.at("A")->keys.at("B")->keys.at("C")->values.at("NAME").name, "Name");
  EXPECT_EQ(RegDeleteKeyA(HKEY_CURRENT_USER, "a\\b"), ERROR_ACCESS_DENIED);
  EXPECT_EQ(RegDeleteKeyA(HKEY_CURRENT_USER, ""), ERROR_ACCESS_DENIED);
  EXPECT_EQ(RegDeleteKeyA(HKEY_CURRENT_USER, "a\\b\\c"), 0);
  EXPECT_EQ(RegDeleteKeyA(HKEY_CURRENT_USER, "a\\b\\c"), ERROR_FILE_NOT_FOUND);
  EXPECT_EQ(RegSetValueExA(writer, "Name", 0, 3, data, 3), 1018);  // the key is deleted
  for (const HKEY key : {reader, writer, HKEY_USERS}) EXPECT_EQ(RegCloseKey(key), 0);
  EXPECT_EQ(RegCloseKey(reader), ERROR_INVALID_HANDLE);

  HKEY key = nullptr;
  EXPECT_EQ(RegOpenKeyExA(reader, "x", 0, KEY_READ, &key), ERROR_INVALID_HANDLE);
  EXPECT_EQ(RegOpenKeyExA(HKEY_CURRENT_USER, "\\a", 0, KEY_READ, &key), 161);
  EXPECT_EQ(RegOpenKeyExA(HKEY_CURRENT_USER, "a", 0, KEY_READ, nullptr), ERROR_INVALID_PARAMETER);
  std::string deep;
  while (deep.size() < 1040) deep += "d\\";
  for (const auto& path : {"made\\"s + std::string(256, 'x'), deep}) {
    EXPECT_EQ(RegCreateKeyExA(HKEY_USERS, path.c_str(), 0, nullptr, 0, 0, nullptr, &key, nullptr),
              ERROR_INVALID_PARAMETER);
  }
  EXPECT_TRUE(host::CurrentRegistry()->keys.at("HKEY_USERS")->keys.empty());
}

// A UTF-16LE file with its mark.
std::string Utf16(const std::u16string& text) {
  return "\xFF\xFE" + std::string(reinterpret_cast<const char*>(text.data()), text.size() * 2);
}

TEST_F(Registry, ReadsBothVersionsOfTheTextForm) {
  const auto expected = host::NewRegistry();
  std::size_t made = 0;
  auto& key = *host::FindKey(expected, "HKEY_CURRENT_USER\\Soft", &made);
  host::SetValue(key, "", REG_SZ, {'"', 'b', '"', '\\', 0});
  host::SetValue(key, "\xE9=", REG_DWORD, {255, 0, 0, 0});
  host::SetValue(key, "bin", REG_BINARY, {1, 2, 3});
  host::SetValue(key, "x", REG_EXPAND_SZ, {0x61, 0xE9, 0});
  const std::string version4 =
      "REGEDIT4\r\n\r\n[HKEY_CURRENT_USER\\Soft]\r\n@=\"\\\"b\\\"\\\\\"\r\n"
      "\"\xE9=\"=dword:000000ff\r\n\"bin\"=hex:01,02,\\\r\n  03\r\n\"x\"=hex(2):61,E9,00\r\n";
  const std::u16string body =
      u"Windows Registry Editor Version 5.00\n\n; a comment\n [hkey_current_user\\Soft] \n"
      u"@=\"\\\"b\\\"\\\\\"\n\"\u00E9=\" = dword:FF \n\"bin\"=hex:1,2,3\n"
      u"\"x\"=hex(2):61,00,e9,00,00,00\n";
  std::string utf8(body.begin(), body.end());
  utf8.replace(utf8.find('\xE9'), 1, "\xC3\xA9");
  for (const auto& content : {version4, Utf16(body), utf8, "\xEF\xBB\xBF" + utf8}) {
    EXPECT_EQ(*host::ParseRegistry(content), *expected) << content;
  }
  host::SetCodePage(932);
  const auto japanese = host::ParseRegistry(
      Utf16(u"Windows Registry Editor Version 5.00\n[HKEY_USERS]\n\"\u8868\"=hex(1):68,88,0,0\n"));
  const auto& value = japanese->keys.at("HKEY_USERS")->values.at("\x95\\");
  EXPECT_EQ(value.data, (std::vector<unsigned char>{0x95, '\\', 0}));
}

TEST_F(Registry, RefusesADamagedFileWithLineAndReason) {
  const std::string head = "REGEDIT4\n[HKEY_USERS]\n";
  // clang-format off
  const struct { std::string content; unsigned line; std::string reason; } rows[] = {
      {"", 1, "the file is no export"}, {"REGEDIT5\n", 1, "the file is no export"},
      {"REGEDIT4 x\n", 1, "something stands behind"}, {"REGEDIT4\n", 2, "the file ends too early"},
      {head + "\"a\"=\"b\"", 3, "the file ends too early"}, {"REGEDIT4\n@=\"b\"\n", 2, "the value stands"},
      {"REGEDIT4\n[HKEY_USERS\n", 2, "the key has no closing bracket"},
      {"REGEDIT4\n[-HKEY_USERS]\n", 2, "the key stands"}, {"REGEDIT4\n[]\n", 2, "the key stands"},
      {"REGEDIT4\n[HKEY_USERS\\a\tb]\n", 2, "the name of the key is no text"},
      {"REGEDIT4\n[HKEY_USERS\\" + std::string(256, 'k') + "]\n", 2, "the name of the key is too"},
      {head + "\n  junk\n", 4, "the line is neither"}, {head + "@ \"b\"\n", 3, "the name of the value"},
      {head + "@=-\n", 3, "the data of the value"}, {head + "@=\"b\nc\n", 3, "the text has no end"},
      {head + "@=\"\\n\"\n", 3, "a backslash"}, {head + "\"a\0b\"=\"\"\n"s, 3, "the text holds"},
      {head + "@=\"b\" c\n", 3, "something"}, {head + "@=dword:\n", 3, "a hexadecimal number"},
      {head + "@=dword:123456789\n", 3, "something"}, {head + "@=hex:01,\\\n 0g\n", 4, "something"},
      {head + "@=hex:01,\\\n", 4, "a hexadecimal"}, {head + "@=hex(:01\n", 3, "a hexadecimal"},
      {head + "@=hex(1:01\n", 3, "the number of the type"}, {head + "@=hex 01\n", 3, "the type of the"},
      {"Windows Registry Editor Version 5.00\n[HKEY_USERS]\n@=hex(1):61\n", 3, "a character of the"},
      {"Windows Registry Editor Version 5.00\n\n@=\"\xFF\"\n", 3, "a character is damaged"},
      {Utf16(u"REGEDIT4\n; \u0416\n"), 2, "a character is damaged or not in the active code page"},
      {std::string(host::kMaxRegistryFileSize + 1, '\n'), 0, "the file is too large"},
  };
  // clang-format on
  for (const auto& row : rows) {
    SCOPED_TRACE(row.content.substr(0, 80));
    try {
      host::ParseRegistry(row.content);
      ADD_FAILURE() << "was read";
    } catch (const host::RegistryFileError& error) {
      EXPECT_EQ(error.line(), row.line);
      EXPECT_EQ(std::string(error.what()).substr(0, row.reason.size()), row.reason);
    }
  }
}

// A registry of random keys and values whose names are made of the given characters.
std::shared_ptr<host::RegistryKey> RandomRegistry(test::Random& random,
                                                  const std::vector<std::string>& characters) {
  const auto name = [&](unsigned maxLength) {
    std::string text;
    for (unsigned i = random.Below(maxLength + 1); i > 0; --i) text += random.Of(characters);
    return text;
  };
  auto registry = host::NewRegistry();
  std::vector<std::shared_ptr<host::RegistryKey>> keys;
  for (const auto& [folded, key] : registry->keys) keys.push_back(key);
  std::size_t made = 0;
  for (unsigned left = random.Below(12); left > 0; --left) {
    auto path = name(6);
    std::erase_if(path, [](char byte) { return static_cast<unsigned char>(byte) < ' '; });
    keys.push_back(host::FindKey(random.Of(keys), path, &made));
  }
  for (unsigned left = random.Below(30); left > 0; --left) {
    auto text = name(20);
    if (random.Below(4) != 0) text += '\0';
    if (random.Below(4) == 0) text.insert(random.Below(text.size() + 1), 1, random.Below(256));
    const DWORD type = random.Below(8) == 0 ? 0xFFFF0000u : random.Below(12);
    host::SetValue(*random.Of(keys), name(8), type, {text.begin(), text.end()});
  }
  return registry;
}

// The text of a REGEDIT4 file in the other version, in UTF-16 or UTF-8.
std::string AsVersion5(const std::string& text, bool isUtf16) {
  host::Replacement replacement;
  const auto body = text.substr(std::min(text.size(), "REGEDIT4"s.size()));
  const auto wide = host::Widen("Windows Registry Editor Version 5.00" + body,
                                host::CharsetOf(host::CodePage()), replacement);
  return isUtf16 ? Utf16(wide) : host::Narrow(wide, "UTF-8", replacement);
}

bool IsRead(const std::string& content) {
  try {
    host::ParseRegistry(content);
    return true;
  } catch (const host::RegistryFileError&) {
    return false;
  }
}

TEST_F(Registry, IsTheSameAfterItsTextFormWasRead) {
  std::vector<std::string> plain;
  for (const char byte : "aB\\\"][ ;=\n\r\1\x7F\x81\xE9\xC9\xFF@"s) plain.emplace_back(1, byte);
  const std::vector<std::string> japanese = {"a",        "\\",       "\"", "\x81\\",
                                             "\x83\x61", "\xE0\xFC", "]"};
  test::Random random(7);
  for (int round = 0; round < 300; ++round) {
    host::SetCodePage(round % 2 == 0 ? 1252 : 932);
    const auto registry = RandomRegistry(random, round % 2 == 0 ? plain : japanese);
    const auto content = host::FormatRegistry(*registry);
    EXPECT_EQ(*host::ParseRegistry(content), *registry) << content;

    for (auto text = content; text.size() > content.size() / 2;) {
      const auto at = random.Below(text.size());
      text.erase(at, random.Below(content.size() / 5));
      text.insert(at, 1, random.Of(std::vector{'"', '\\', '\n', '\0', '[', ',', '\x81'}));
      auto damaged = round % 3 == 0 ? text : AsVersion5(text, round % 3 == 1);
      if (random.Below(2) == 0) damaged[random.Below(damaged.size())] ^= 1 << random.Below(8);
      IsRead(damaged);
    }
    for (std::size_t cut = 0; round < 4 && cut < content.size(); ++cut) {
      EXPECT_FALSE(IsRead(content.substr(0, cut))) << cut;
    }
  }
  host::SetCodePage(932);
  for (const auto* name : {"\x81", "\x81\"x"}) {
    auto registry = host::NewRegistry();
    host::SetValue(*registry->keys.at("HKEY_USERS"), name, REG_SZ, {});
    EXPECT_THROW(host::FormatRegistry(*registry), host::RegistryFileError) << name;
  }
}

TEST_F(Registry, IsRefusedWhereItsTextFormWouldBeTooLarge) {
  std::string path = "HKEY_USERS";
  for (int i = 0; i < 500; ++i) path += '\\' + std::string(host::kMaxKeyNameLength, 'd');
  const auto registry = host::ParseRegistry("REGEDIT4\n[" + path + "]\n");
  // Written out to the end, these keys would take more memory than there is.
  std::size_t made = 0;
  const auto deepest = host::FindKey(registry, path, nullptr);
  for (int i = 0; i < 20000; ++i) host::FindKey(deepest, std::to_string(i), &made);
  EXPECT_THROW(host::FormatRegistry(*registry), host::RegistryFileError);
}

TEST_F(Registry, LivesInAFile) {
  const auto folder = fs::temp_directory_path() / ("registry_test." + std::to_string(getpid()));
  fs::create_directory(folder);
  const std::string path = folder / "settings.reg";
  const auto read = [&] { return (std::stringstream() << std::ifstream(path).rdbuf()).str(); };
  const auto mode = [&] { return static_cast<int>(fs::status(path).permissions()); };

  host::RegistryFile file(path);
  const HKEY key = Make(HKEY_CURRENT_USER, "Soft", KEY_SET_VALUE);
  const BYTE runs[] = {2, 0, 0, 0};
  EXPECT_EQ(RegSetValueExA(key, "Runs", 0, REG_DWORD, runs, 4), 0);
  RegCloseKey(key);
  const auto saved = host::CurrentRegistry();
  const mode_t mask = umask(026);
  file.Save();
  umask(mask);
  EXPECT_EQ(mode(), 0640);
  fs::permissions(path, fs::perms(0604));
  file.Save();
  EXPECT_EQ(mode(), 0604);
  EXPECT_EQ(
      read(),
      "REGEDIT4\r\n; The last line is \"; End\".\r\n\r\n[HKEY_CLASSES_ROOT]\r\n\r\n"
      "[HKEY_CURRENT_USER]\r\n\r\n[HKEY_CURRENT_USER\\Soft]\r\n\"Runs\"=dword:00000002\r\n\r\n"
      "[HKEY_LOCAL_MACHINE]\r\n\r\n[HKEY_USERS]\r\n\r\n; End\r\n");
  host::Reset();
  host::RegistryFile again(path);
  EXPECT_EQ(*host::CurrentRegistry(), *saved);

  // Damaged, or such as could be loaded and not be saved again.
  std::string deep = "REGEDIT4\n[HKEY_USERS";
  while (deep.size() < 100'000) deep += '\\' + std::string(200, 'd');
  for (const auto& [content, reason] :
       {std::pair("REGEDIT4\n\njunk\n"s, ":3: the line is neither a key nor a value nor a comment"),
        {deep + "]\n", ": the file is too large"}}) {
    std::ofstream(path) << content;
    try {
      host::RegistryFile refused(path);
      ADD_FAILURE() << "was read";
    } catch (const host::RegistryFileError& error) {
      EXPECT_EQ(error.what(), path + reason);
    }
    EXPECT_EQ(*host::CurrentRegistry(), *saved);
    EXPECT_EQ(read(), content);
  }
  fs::remove(path);
  fs::create_directory(path);
  EXPECT_THROW(host::RegistryFile(path.c_str()), host::RegistryFileError);
  EXPECT_THROW(again.Save(), host::RegistryFileError);
  EXPECT_EQ(std::distance(fs::directory_iterator(folder), {}), 1);
  fs::remove_all(folder);
}

}  // namespace
