// The platform layer's registry, in memory and in a file.
#include <codepage.h>
#include <conversion.h>
#include <gtest/gtest.h>
#include <host.h>
#include <registry_file.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <sstream>

#include "support/choices.h"

namespace {

using namespace std::string_literals;
namespace fs = std::filesystem;

// What takes the place of write().
ssize_t (*onWrite)(int file);

}  // namespace

extern "C" ssize_t __real_write(int file, const void* bytes, std::size_t count);
extern "C" ssize_t __wrap_write(int file, const void* bytes, std::size_t count) {
  return onWrite == nullptr ? __real_write(file, bytes, count) : onWrite(file);
}

namespace {

class Registry : public testing::Test {
 protected:
  void SetUp() override { host::Reset(); }
  void TearDown() override { EXPECT_EQ(host::LivingKeyHandles(), 0u); }

  std::size_t made_ = 0;  // by host::FindKey
};

std::string Path(const std::string& part, unsigned depth) {
  return depth == 0 ? "" : part + Path(part, depth - 1);
}

TEST_F(Registry, KeepsNamesAsFirstWrittenAndMakesNothingOfBadOnes) {
  const auto registry = host::NewRegistry();
  auto& key = *host::FindKey(registry, "HKEY_USERS\\A\\b", &made_);
  host::SetValue(key, "Name", REG_BINARY, {1});
  host::SetValue(*host::FindKey(registry, "hkey_users\\a\\B\\", &made_), "NAME", 9, {2});
  const auto& value = key.values.begin()->second;
  EXPECT_EQ(std::tuple(key.name, key.values.size(), value.name, value.type),
            std::tuple("b", 1u, "Name", 9u));
  EXPECT_EQ(RegDeleteKeyA(HKEY_CURRENT_USER, ""), ERROR_ACCESS_DENIED);
  EXPECT_EQ(RegOpenKeyExA(HKEY_CURRENT_USER, "", 0, KEY_READ, nullptr), ERROR_INVALID_PARAMETER);
  for (const auto& path : {"made\\" + std::string(256, 'x'), Path("d\\", 512)}) {
    HKEY made = nullptr;
    EXPECT_EQ(RegCreateKeyExA(HKEY_USERS, path.c_str(), 0, nullptr, 0, 0, nullptr, &made, nullptr),
              87);
  }
  EXPECT_TRUE(host::CurrentRegistry()->keys.at("HKEY_USERS")->keys.empty());
}

// Why a piece of work was refused, as "line: reason"; empty if it wasn't.
template <class Work>
std::string Refusal(Work work) {
  try {
    work();
    return "";
  } catch (const host::RegistryFileError& error) {
    return std::to_string(error.line()) + ": " + error.what();
  }
}
auto RefusalOf(const std::string& text) {
  return Refusal([&] { host::ParseRegistry(text); });
}

// A UTF-16LE file with its mark.
std::string Utf16(const std::u16string& text) {
  return "\xFF\xFE" + std::string(reinterpret_cast<const char*>(text.data()), text.size() * 2);
}

TEST_F(Registry, ReadsBothVersionsOfTheTextForm) {
  const auto expected = host::NewRegistry();
  auto& key = *host::FindKey(expected, "HKEY_CURRENT_USER\\Soft", &made_);
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
  const auto& value = japanese->keys.at("HKEY_USERS")->values.begin()->second;
  EXPECT_EQ(value.name, "\x95\\");
  EXPECT_EQ(value.data, (std::vector<unsigned char>{0x95, '\\', 0}));
}

TEST_F(Registry, RefusesADamagedFileWithLineAndReason) {
  const std::string top = "REGEDIT4\n", head = top + "[HKEY_USERS]\n";
  const std::string five = "Windows Registry Editor Version 5.00\n[HKEY_USERS]\n";
  // clang-format off
  const std::pair<std::string, std::string> rows[] = {
      {"", "1: the file is no export"}, {"REGEDIT5\n", "1: the file is no export"},
      {"REGEDIT4 x\n", "1: something"}, {top, "2: the file ends too early"},
      {head + "\"a\"=\"b\"", "3: the file ends"}, {top + "@=\"b\"\n", "2: the value stands"},
      {top + "[HKEY_USERS\n", "2: the key has no"}, {top + "[-HKEY_USERS]\n", "2: the key stands"},
      {top + "[]\n", "2: the key stands"}, {top + "[HKEY_USERS\\a\tb]\n", "2: the name of the"},
      {top + "[HKEY_USERS\\" + std::string(256, 'k') + "]\n", "2: the name of the key is too long"},
      {head + "\n  junk\n", "4: the line"}, {head + "@ \"b\"\n", "3: the name of"},
      {head + "@=-\n", "3: the data of the value"}, {head + "@=\"b\nc\n", "3: the text has no end"},
      {head + "@=\"\\n\"\n", "3: a backslash"}, {head + "\"a\0b\"=\"\"\n"s, "3: the text holds"},
      {head + "@=\"b\" c\n", "3: something"}, {head + "@=dword:\n", "3: a hexadecimal number"},
      {head + "@=dword:123456789\n", "3: something"}, {head + "@=hex:01,\\\n 0g\n", "4: something"},
      {head + "@=hex:01,\\\n", "4: a hexadecimal"}, {head + "@=hex(:01\n", "3: a hexadecimal"},
      {head + "@=hex(1:01\n", "3: the number of"}, {head + "@=hex 01\n", "3: the type of the"},
      {five + "@=hex(1):61\n", "3: a character of"}, {five + "@=\"\xFF\"\n", "3: a character is"},
      {Utf16(u"REGEDIT4\n; \u0416\n"), "2: a character is damaged or not in the active code page"},
      {std::string(host::kMaxRegistryFileSize + 1, '\n'), "0: the file is too large"},
  };
  // clang-format on
  for (const auto& [content, reason] : rows) {
    EXPECT_EQ(RefusalOf(content).substr(0, reason.size()), reason) << content.substr(0, 80);
  }
}

// A registry of keys and values whose names are made of the given characters.
std::shared_ptr<host::RegistryKey> AnyRegistry(test::Choices& choices,
                                               const std::vector<std::string>& characters) {
  const auto name = [&](unsigned maxLength) {
    std::string text;
    for (unsigned i = choices.Below(maxLength + 1); i > 0; --i) text += choices.Of(characters);
    return text;
  };
  auto registry = host::NewRegistry();
  std::vector<std::shared_ptr<host::RegistryKey>> keys;
  for (const auto& [folded, key] : registry->keys) keys.push_back(key);
  std::size_t made = 0;
  for (unsigned left = choices.Below(30); left > 0; --left) {
    auto path = name(6);
    std::erase_if(path, [](char byte) { return static_cast<unsigned char>(byte) < ' '; });
    keys.push_back(host::FindKey(choices.Of(keys), path, &made));
    auto text = name(20);
    if (choices.Below(4) != 0) text += '\0';
    if (choices.Below(4) == 0) text.insert(choices.Below(text.size() + 1), 1, choices.Below(256));
    const DWORD type = choices.Below(8) == 0 ? 0xFFFF0000u : choices.Below(12);
    host::SetValue(*choices.Of(keys), name(8), type, {text.begin(), text.end()});
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

PROPERTY(RegistryFile, HoldsAnyRegistry, 120) {
  const bool isJapanese = choices.Below(2) != 0;
  host::SetCodePage(isJapanese ? 932 : 1252);
  std::vector<std::string> characters;
  if (isJapanese) characters = {"\x81\\", "\x83\x61", "\xE0\xFC"};
  const auto plain = isJapanese ? "aB\\\"]"s : "aB\\\"][ ;=\n\r\1\x7F\x81\xE9\xC9\xFF@"s;
  for (const char byte : plain) characters.emplace_back(1, byte);
  const auto registry = AnyRegistry(choices, characters);
  const auto content = host::FormatRegistry(*registry);
  EXPECT_EQ(*host::ParseRegistry(content), *registry) << content;

  const auto form = choices.Below(3);
  for (auto text = content; choices.More() && text.size() > content.size() / 2;) {
    const auto at = choices.Below(text.size());
    text.erase(at, choices.Below(content.size() / 5));
    text.insert(at, 1, choices.Of(std::vector{'"', '\\', '\n', '\0', '[', ',', '\x81'}));
    auto damaged = form == 0 ? text : AsVersion5(text, form == 1);
    if (choices.Below(2) == 0) damaged[choices.Below(damaged.size())] ^= 1 << choices.Below(8);
    RefusalOf(damaged);
  }
}

// A small registry in any of the ways to write it.
PROPERTY(RegistryFile, TakesAnyWellFormedContent, 200) {
  if (choices.Below(8) == 0) {
    const auto head = choices.Of<std::string>(
        {"", "REGEDIT4\n[HKEY_USERS]\n", "\xFF\xFE", "Windows Registry Editor Version 5.00\n"});
    RefusalOf(head + choices.Rest());
  }
  const auto end = [&] { return choices.Of<std::string>({"\n", "\r\n", " \t\r\n"}); };
  const auto blank = [&] { return choices.Of<std::string>({"", "", " ", "\t "}); };
  const auto number = [&](unsigned value) {
    char digits[9];
    std::snprintf(digits, sizeof digits, choices.Of<const char*>({"%x", "%X", "%02x"}), value);
    return std::string(digits);
  };
  const auto bytes = choices.Text<unsigned char>({0, 1, 0x9F, 0xFF}, 5);
  std::string list;
  for (const auto byte : bytes) {
    if (!list.empty()) list += "," + choices.Of<std::string>({"", "\\" + end()});
    list += blank() + number(byte);
  }
  auto content = "REGEDIT4" + end();
  for (const auto& line :
       {""s, "[hkey_users\\A]"s, "; [x]"s, "@=dword:" + number(0xAB),
        "\"t\"" + blank() + "=" + blank() + "\"\r\"", "\"b\"=hex(" + number(0xABC) + "):" + list}) {
    content += blank() + line + end();
  }
  const auto expected = host::NewRegistry();
  std::size_t made = 0;
  auto& key = *host::FindKey(expected, "HKEY_USERS\\A", &made);
  host::SetValue(key, "", REG_DWORD, {0xAB, 0, 0, 0});
  host::SetValue(key, "t", REG_SZ, {'\r', 0});
  host::SetValue(key, "b", 0xABC, {bytes.begin(), bytes.end()});
  EXPECT_EQ(*host::ParseRegistry(content), *expected) << content;
}

TEST_F(Registry, RefusesACutFileAndNamesThatAreNoText) {
  test::Random random(7);
  for (int round = 0; round < 2; ++round) {
    const auto content = host::FormatRegistry(*AnyRegistry(random, {"a", "\"", "\xE9"}));
    for (std::size_t cut = 0; cut < content.size(); ++cut) {
      EXPECT_NE(RefusalOf(content.substr(0, cut)), "") << cut;
    }
  }
  host::SetCodePage(932);
  for (const auto* name : {"\x81", "\x81\"x"}) {
    auto registry = host::NewRegistry();
    host::SetValue(*registry->keys.at("HKEY_USERS"), name, REG_SZ, {});
    EXPECT_THROW(host::FormatRegistry(*registry), host::RegistryFileError) << name;
  }
}

class RegistryInAFile : public Registry {
 protected:
  void SetUp() override {
    Registry::SetUp();
    fs::create_directory(folder);
  }
  void TearDown() override {
    onWrite = nullptr;
    EXPECT_EQ(std::distance(fs::directory_iterator(folder), {}), 1);
    fs::remove_all(folder);
  }

  std::string Content() const { return (std::stringstream() << std::ifstream(path).rdbuf()).str(); }

  const fs::path folder = fs::temp_directory_path() / ("registry_test." + std::to_string(getpid()));
  const std::string path = folder / "settings.reg";
};

TEST_F(RegistryInAFile, IsSavedAndLoaded) {
  const auto mode = [&] { return static_cast<int>(fs::status(path).permissions()); };

  host::RegistryFile file(path);
  const auto saved = host::NewRegistry();
  auto& soft = *host::FindKey(saved, "HKEY_CURRENT_USER\\Soft", &made_);
  host::SetValue(soft, "Runs", 4, {2, 0, 0, 0});
  host::ReplaceRegistry(saved);
  const mode_t mask = umask(026);
  file.Save();
  umask(mask);
  EXPECT_EQ(mode(), 0640);
  fs::permissions(path, fs::perms(0604));
  file.Save();
  EXPECT_EQ(mode(), 0604);
  EXPECT_EQ(
      Content(),
      "REGEDIT4\r\n; The last line is \"; End\".\r\n\r\n[HKEY_CLASSES_ROOT]\r\n\r\n"
      "[HKEY_CURRENT_USER]\r\n\r\n[HKEY_CURRENT_USER\\Soft]\r\n\"Runs\"=dword:00000002\r\n\r\n"
      "[HKEY_LOCAL_MACHINE]\r\n\r\n[HKEY_USERS]\r\n\r\n; End\r\n");
  host::Reset();
  host::RegistryFile(path.c_str());
  EXPECT_EQ(*host::CurrentRegistry(), *saved);

  // One is damaged, one could be loaded and not be saved again.
  const auto deep = "HKEY_USERS" + Path('\\' + std::string(host::kMaxKeyNameLength, 'd'), 500);
  for (const auto& [content, line, reason] :
       {std::tuple("REGEDIT4\n\njunk\n"s, "3: "s,
                   ":3: the line is neither a key nor a value nor a comment"),
        {"REGEDIT4\n[" + deep + "]\n", "0: ", ": the file is too large"}}) {
    std::ofstream(path) << content;
    EXPECT_EQ(Refusal([&] { host::RegistryFile(path.c_str()); }), line + path + reason);
    EXPECT_EQ(*host::CurrentRegistry(), *saved);
    EXPECT_EQ(Content(), content);
  }
  // Written out to the end, these keys would take more memory than there is.
  const auto deepest = host::FindKey(saved, deep, &made_);
  for (int i = 0; i < 20000; ++i) host::FindKey(deepest, std::to_string(i), &made_);
  EXPECT_THROW(host::FormatRegistry(*saved), host::RegistryFileError);

  fs::remove(path);
  fs::create_directory(path);
  EXPECT_THROW(host::RegistryFile(path.c_str()), host::RegistryFileError);
  EXPECT_THROW(file.Save(), host::RegistryFileError);
}

TEST_F(RegistryInAFile, SurvivesWhatComesInBetween) {
  host::RegistryFile file(path);
  onWrite = [](int) -> ssize_t { return 0; };
  EXPECT_EQ(Refusal([&] { file.Save(); }), "0: " + path + ": can't be saved: Input/output error");
  // A process is killed while it saves.
  onWrite = [](int) -> ssize_t { _exit(0); };
  const pid_t child = fork();
  if (child == 0) file.Save();
  waitpid(child, nullptr, 0);
  onWrite = nullptr;
  EXPECT_FALSE(fs::exists(path));
  file.Save();
  // Another process saves.
  host::RegistryFile other(path);
  host::FindKey(std::const_pointer_cast<host::RegistryKey>(host::CurrentRegistry()),
                "HKEY_USERS\\Other", &made_);
  other.Save();
  const auto content = Content();
  EXPECT_EQ(Refusal([&] { file.Save(); }),
            "0: " + path + ": can't be saved: another process has changed it");
  EXPECT_EQ(Content(), content);
}

TEST_F(RegistryInAFile, IsFoundInOddPlaces) {
  // At the end of links, one of them to a file that isn't there yet.
  const auto inner = folder / "inner";
  fs::create_directory(inner);
  const std::string longest = inner / std::string(255, 'n'), link = inner / "link";
  fs::create_symlink(fs::path(longest).filename(), link);
  host::RegistryFile file(link);
  for (int i = 0; i < 2; ++i) {
    file.Save();
    EXPECT_TRUE(fs::is_symlink(link));
    EXPECT_NO_THROW(host::RegistryFile(longest.c_str()).Save());
    // Only root can give a file away.
    struct stat status;
    if (chown(longest.c_str(), 1, 2) != 0) continue;
    file.Save();
    ASSERT_EQ(stat(longest.c_str(), &status), 0);
    EXPECT_TRUE(status.st_uid == 1 && status.st_gid == 2);
  }
  const std::string pipe = inner / "pipe";
  ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
  EXPECT_EQ(Refusal([&] { host::RegistryFile(pipe.c_str()); }),
            "0: " + pipe + ": is no regular file");
}

}  // namespace
