// Takes an inventory of network names, one a line in UTF-8: trims each, measures it and splits it
// at its separators, and prints a table and a summary. All string work is done by the exports of
// the DLL.
//
// Usage: share_inventory FILE [DLL]
#include <client.h>
#include <tavkit.h>

#include <cstdio>
#include <fstream>
#include <iostream>
#include <locale>
#include <string>
#include <vector>

namespace {

constexpr WORD kBlank = ' ';
constexpr WORD kSeparator = '\\';

using Utf16 = std::codecvt<char16_t, char8_t, std::mbstate_t>;

std::u16string FromUtf8(const std::string& text) {
  const auto& facet = std::use_facet<Utf16>(std::locale::classic());
  std::u16string wide(text.size(), u'\0');
  std::mbstate_t state{};
  const auto* from = reinterpret_cast<const char8_t*>(text.data());
  const char8_t* fromNext;
  char16_t* toNext;
  facet.in(state, from, from + text.size(), fromNext, wide.data(), wide.data() + wide.size(),
           toNext);
  wide.resize(static_cast<std::size_t>(toNext - wide.data()));
  return wide;
}

std::string ToUtf8(const std::u16string& wide) {
  const auto& facet = std::use_facet<Utf16>(std::locale::classic());
  std::string text(3 * wide.size(), '\0');
  std::mbstate_t state{};
  auto* to = reinterpret_cast<char8_t*>(text.data());
  const char16_t* fromNext;
  char8_t* toNext;
  facet.out(state, wide.data(), wide.data() + wide.size(), fromNext, to, to + text.size(), toNext);
  text.resize(static_cast<std::size_t>(toNext - to));
  return text;
}

struct Entry {
  unsigned line;
  std::u16string name;
  DWORD leading;  // separators in front
  std::vector<std::u16string> components;
};

// The stretches of a name between runs of separators.
std::vector<std::u16string> Split(const char16_t* name) {
  std::vector<std::u16string> components;
  for (const char16_t* at = utSkipLeadCharW(name, kSeparator); !utIsNullOrEmptyStringW(at);
       at = utSkipLeadCharW(at, kSeparator)) {
    const char16_t* end = utFindCharW(at, kSeparator);
    if (end == nullptr) end = utCharNullW(at);
    std::u16string component(static_cast<std::size_t>(end - at) + 1, u'\0');
    const auto size = static_cast<DWORD>(component.size() * sizeof(WCHAR));
    utCopyMakeAsciizW(at, size - sizeof(WCHAR), component.data(), size);
    component.pop_back();
    components.push_back(component);
    at = end;
  }
  return components;
}

std::vector<Entry> ReadEntries(std::istream& file, unsigned& blanks, unsigned& trimmed) {
  std::vector<Entry> entries;
  unsigned number = 0;
  for (std::string line; std::getline(file, line);) {
    ++number;
    auto name = FromUtf8(line);
    if (utTrimCharW(name.data(), kBlank, UT_TRIM_LEADING | UT_TRIM_TRAILING)) ++trimmed;
    if (utIsNullOrEmptyStringW(name.data())) {
      ++blanks;
      continue;
    }
    name.resize(utStringSizeW(name.data(), 0) / sizeof(WCHAR));
    entries.push_back(
        {number, name, utCountLeadCharW(name.data(), kSeparator), Split(name.data())});
  }
  return entries;
}

// printf pads by bytes; this pads by characters.
std::string Padded(const std::u16string& text, std::size_t width) {
  return ToUtf8(text) + std::string(text.size() < width ? width - text.size() : 0, ' ');
}

void PrintTable(const std::vector<Entry>& entries) {
  std::printf("line  chars  bytes  slashes  %-42s components\n", "name");
  for (const auto& entry : entries) {
    std::string components;
    for (const auto& component : entry.components) {
      components += (components.empty() ? "" : " | ") + ToUtf8(component);
    }
    std::printf("%4u  %5zu  %5u  %7u  %s %s\n", entry.line, entry.name.size(),
                utStringSizeW(entry.name.c_str(), 1), entry.leading, Padded(entry.name, 42).c_str(),
                components.c_str());
  }
}

}  // namespace

int main(int argc, char** argv) {
  if (argc < 2 || argc > 3) {
    std::cerr << "usage: share_inventory FILE [DLL]\n";
    return 2;
  }
  std::ifstream file(argv[1]);
  if (!file) {
    std::cerr << "share_inventory: " << argv[1] << " can't be opened; name a file of lines\n";
    return 1;
  }
  try {
    const auto module = host::ConnectTavkit(argc > 2 ? argv[2] : "dist/bin/TAVKIT.DLL");
    unsigned blanks = 0, trimmed = 0, shares = 0;
    const auto entries = ReadEntries(file, blanks, trimmed);
    for (const auto& entry : entries) shares += entry.leading == 2 && entry.components.size() >= 2;
    PrintTable(entries);
    std::printf(
        "\n%zu names, %u of them with two leading backslashes, a server and a share;\n"
        "%u lines had blanks around them, %u were empty\n",
        entries.size(), shares, trimmed, blanks);
  } catch (const host::ModuleError& error) {
    std::cerr << "share_inventory: " << error.what() << '\n';
    return 1;
  }
  return 0;
}
