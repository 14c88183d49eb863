// Takes an inventory of network names, one a line in UTF-8. It trims each name, takes it apart and
// puts it together again, gathers the servers in a list, flattens all names into one block, and
// keeps its settings in a registry file. All of that work is done by the exports of the DLL, on the
// Linux platform layer.
//
// Usage: share_inventory FILE SETTINGS [DLL]
#include <client.h>
#include <file_time.h>
#include <operation_table.h>
#include <registry_file.h>
#include <sys/stat.h>
#include <tavkit.h>
#include <unistd.h>
#include <win32.h>

#include <algorithm>
#include <cstdio>
#include <ctime>
#include <fstream>
#include <iostream>
#include <map>
#include <string>
#include <vector>

#include "utf8.h"

namespace {

using example::FromUtf8;
using example::Padded;
using example::Shown;
using example::ToUtf8;

constexpr WORD kBlank = ' ';
constexpr WORD kSeparator = '\\';

// Where the settings live, below the private tree of the user.
constexpr LPCSTR kProduct = "ShareInventory";
constexpr LPCSTR kSection = "LastRun";

template <class Char>
DWORD SizeOf(const std::basic_string<Char>& buffer) {
  return static_cast<DWORD>(buffer.size() * sizeof(Char));
}

struct Entry {
  unsigned line;
  std::u16string name;
  DWORD parts;  // UT_UNC_SERVER, UT_UNC_RESOURCE, UT_UNC_PATH
  std::u16string server, resource, path;
  std::u16string rebuilt;  // empty for what is no UNC name
};

Entry TakeApart(unsigned line, const std::u16string& name) {
  // No component is longer than the name; one more unit holds the terminator.
  const std::u16string buffer(name.size() + 1, u'\0');
  Entry entry{line, name, 0, buffer, buffer, buffer, std::u16string(name.size() + 2, u'\0')};
  const DWORD size = SizeOf(buffer);
  entry.parts = utBreakUNCNameW(name.c_str(), entry.server.data(), size, entry.resource.data(),
                                size, entry.path.data(), size);
  if (entry.parts & UT_UNC_SERVER) {
    utBuildUNCNameW(entry.rebuilt.data(), SizeOf(entry.rebuilt), entry.server.data(),
                    entry.parts & UT_UNC_RESOURCE ? entry.resource.data() : nullptr,
                    entry.parts & UT_UNC_PATH ? entry.path.data() : nullptr);
  }
  for (auto* text : {&entry.server, &entry.resource, &entry.path, &entry.rebuilt}) {
    text->resize(utStringSizeW(text->c_str(), 0) / sizeof(WCHAR));
  }
  return entry;
}

struct Inventory {
  std::vector<Entry> entries;
  unsigned trimmed = 0, empty = 0;
};

// Tells on a terminal how far a long work has come, on a line that goes when it is done.
class Progress {
 public:
  explicit Progress(const char* what) : what_(what) {}
  ~Progress() {
    if (isShown_) std::fputs("\r\033[K", stderr);
  }

  void Step() {
    if (++count_ % 10'000 != 0 || !isatty(STDERR_FILENO)) return;
    std::fprintf(stderr, "\r%s: %u", what_, count_);
    isShown_ = true;
  }

 private:
  const char* what_;
  unsigned count_ = 0;
  bool isShown_ = false;
};

Inventory ReadInventory(std::istream& file) {
  Inventory inventory;
  Progress progress("lines read");
  unsigned number = 0;
  for (std::string line; std::getline(file, line);) {
    progress.Step();
    if (++number == 1 && line.starts_with("\xEF\xBB\xBF")) line.erase(0, 3);
    if (line.ends_with('\r')) line.pop_back();
    auto name = FromUtf8(line);
    if (utTrimCharW(name.data(), kBlank, UT_TRIM_LEADING | UT_TRIM_TRAILING)) ++inventory.trimmed;
    if (utIsNullOrEmptyStringW(name.data())) {
      ++inventory.empty;
      continue;
    }
    name.resize(utStringSizeW(name.data(), 0) / sizeof(WCHAR));
    inventory.entries.push_back(TakeApart(number, name));
  }
  return inventory;
}

const char* Complaint(const Entry& entry) {
  if (utFindCharW(entry.name.c_str(), example::kReplacement) != nullptr) return "not in UTF-8";
  const DWORD separators = utCountLeadCharW(entry.name.c_str(), kSeparator);
  if (separators == 0) return "no network name";
  if (separators != 2) return "not exactly two leading backslashes";
  if (!(entry.parts & UT_UNC_SERVER)) return "no server";
  if (!(entry.parts & UT_UNC_RESOURCE)) return "a server alone";
  return entry.rebuilt == entry.name ? "" : "put in order";
}

void PrintNames(const Inventory& inventory) {
  std::printf("line  bytes  %-38s %-10s %-10s %s\n", "name", "server", "share", "path");
  for (const auto& entry : inventory.entries) {
    const auto& name = entry.rebuilt.empty() ? entry.name : entry.rebuilt;
    const std::string complaint = Complaint(entry);
    std::printf("%4u  %5u  %s %s %s %s%s\n", entry.line, utStringSizeW(name.c_str(), 1),
                Padded(name, 38).c_str(), Padded(entry.server, 10).c_str(),
                Padded(entry.resource, 10).c_str(), Shown(entry.path).c_str(),
                complaint.empty() ? "" : ("  (" + complaint + ")").c_str());
  }
  std::printf("\n%zu names; %u lines had blanks around them, %u were empty\n",
              inventory.entries.size(), inventory.trimmed, inventory.empty);
}

struct Server {
  const std::u16string* name;  // as it came first
  unsigned names = 0, shares = 0;
};

// The servers of the names in the order of their first ones, told apart without regard to case. A
// search in the list for each name would take the square of the time, so they are sorted instead.
std::vector<Server> Gather(const std::vector<Entry>& entries) {
  std::vector<const Entry*> byServer;
  for (const auto& entry : entries) {
    if (entry.parts & UT_UNC_SERVER) byServer.push_back(&entry);
  }
  std::sort(byServer.begin(), byServer.end(), [](const Entry* a, const Entry* b) {
    const int order = lstrcmpiW(a->server.c_str(), b->server.c_str());
    return order != 0 ? order < 0 : a < b;
  });

  std::map<const Entry*, Server> byFirst;
  const Entry* first = nullptr;
  for (const Entry* entry : byServer) {
    if (first == nullptr || lstrcmpiW(first->server.c_str(), entry->server.c_str()) != 0) {
      first = entry;
    }
    Server& server = byFirst.try_emplace(first, Server{&first->server}).first->second;
    ++server.names;
    if (entry->parts & UT_UNC_RESOURCE) ++server.shares;
  }
  std::vector<Server> servers;
  servers.reserve(byFirst.size());
  for (const auto& [entry, server] : byFirst) servers.push_back(server);
  return servers;
}

// The servers in one list, built in one pass and handed over as an array of pointers into it.
void PrintServers(const std::vector<Entry>& entries) {
  const auto gathered = Gather(entries);
  std::u16string list(2, u'\0');
  for (const auto& server : gathered) list.resize(list.size() + server.name->size() + 1);
  WCHAR* cursor = list.data();
  DWORD remaining = SizeOf(list);
  for (const auto& server : gathered) {
    utCopyNextAsciizW(server.name->c_str(), &cursor, &remaining);
  }

  std::vector<LPCWSTR> servers(utMultiAsciizStringCountW(list.data()) + 1);
  DWORD count = 0;
  utMultiAsciiz2ArrayW(list.data(), servers.data(),
                       static_cast<DWORD>(servers.size() * sizeof(LPCWSTR)), &count);
  std::printf("\n%u servers, in a list of %u bytes\n", count, utMultiAsciizSizeW(list.data(), 1));
  for (DWORD i = 0; i < count && servers[i] != nullptr; ++i) {
    std::printf("  %s %u names, %u of them with a share\n", Padded(servers[i], 12).c_str(),
                gathered[i].names, gathered[i].shares);
  }
}

// All network names as records of one block: the records at its front, their strings at its back.
// Returns the bytes in use.
DWORD PrintFlattened(std::vector<Entry>& entries) {
  std::vector<NETRESOURCEW> records;
  DWORD size = 64;  // to spare, so that the free block shows
  for (auto& entry : entries) {
    if (entry.rebuilt.empty()) continue;
    NETRESOURCEW record{};
    record.dwUsage = entry.line;
    record.lpRemoteName = entry.rebuilt.data();
    record.lpComment = entry.name.data();
    size += utSizeNETRESOURCEW(&record, UT_NR_ALL);
    records.push_back(record);
  }

  const HXBUF block = utXBufCreate(size, nullptr);
  Progress progress("names flattened");
  for (const auto& record : records) {
    progress.Step();
    if (!utCopyNETRESOURCEW_XBuffer(&record, block, UT_NR_ALL, nullptr)) break;
  }
  const auto* start = static_cast<const BYTE*>(utXBufGetBlock(block, UT_XBUF_BLOCK_BUFFER));
  const auto* flattened = reinterpret_cast<const NETRESOURCEW*>(start);
  const DWORD front = utXBufGetBlockSize(block, UT_XBUF_BLOCK_FRONT);
  const DWORD back = utXBufGetBlockSize(block, UT_XBUF_BLOCK_BACK);
  const DWORD count = front / sizeof(NETRESOURCEW);
  std::printf(
      "\none block of %u bytes: %u records in %u bytes at the front, %u bytes free, strings in "
      "%u bytes at the back\n",
      utXBufGetBlockSize(block, UT_XBUF_BLOCK_BUFFER), count, front,
      utXBufGetBlockSize(block, UT_XBUF_BLOCK_FREE), back);
  for (DWORD i = 0; i < count; ++i) {
    const auto* name = reinterpret_cast<const BYTE*>(flattened[i].lpRemoteName);
    std::printf("  line %2u at %4u: %s\n", flattened[i].dwUsage, static_cast<DWORD>(name - start),
                Shown(flattened[i].lpRemoteName).c_str());
  }

  const DWORD head = std::min<DWORD>(front, 24);
  std::string text(2 * head, '\0');
  if (head != 0) utHex2Ascii(text.data(), start, head);
  std::printf("  its head: %s\n", text.c_str());
  const DWORD used = utXBufGetSpaceUsed(block);
  utXBufDestroy(block);
  return used;
}

// A text of the active code page.
std::string FromCodePage(LPCSTR text) {
  std::u16string wide(utStringSize(text, 1), u'\0');
  return Shown(utA2WHelper(wide.data(), text, static_cast<INT>(wide.size())));
}

FILETIME FileTimeOf(time_t seconds) {
  constexpr std::uint64_t kSecondsFrom1601To1970 = 11644473600;
  const std::uint64_t ticks =
      (static_cast<std::uint64_t>(seconds) + kSecondsFrom1601To1970) * 10'000'000;
  return {static_cast<DWORD>(ticks), static_cast<DWORD>(ticks >> 32)};
}

void PrintTimes(const std::vector<Entry>& entries) {
  for (const auto& entry : entries) {
    struct stat status;
    const std::string path = ToUtf8(entry.name);
    if (stat(path.c_str(), &status) != 0) continue;
    const FILETIME modified = FileTimeOf(status.st_mtime);
    SYSTEMTIME local;
    WORD dosDate = 0, dosTime = 0;
    char day[64], month[64];
    if (!utFileTimeToSystemTime(&modified, &local, UT_TIME_UTC_TO_LOCAL) ||
        !utFileTimeToDosDateTime(&modified, &dosDate, &dosTime, UT_TIME_UTC_TO_LOCAL) ||
        !utDayOfWeekName(day, sizeof day, local.wDayOfWeek, 0) ||
        !utMonthName(month, sizeof month, local.wMonth, 0)) {
      continue;
    }
    const bool to24 = utTimeFormat() != 0;
    std::printf(
        "\n%s was changed on %s, %u %s %u, at %u:%02u%s (DOS date %04X, time %04X),\n"
        "day %u of the %u of that year\n",
        Shown(entry.name).c_str(), FromCodePage(day).c_str(), local.wDay,
        FromCodePage(month).c_str(), local.wYear, to24 ? local.wHour : utHour24to12(local.wHour),
        local.wMinute,
        to24               ? ""
        : local.wHour < 12 ? " am"
                           : " pm",
        dosDate, dosTime, utDayOfYear(local.wYear, local.wMonth, local.wDay),
        utDaysInYear(local.wYear));
  }
}

void Greet() {
  const DWORD runs = utRegGetPrivateUserDword(kSection, "Runs", 0, kProduct);
  if (runs == 0) {
    std::printf("This is the first run with these settings.\n\n");
    return;
  }
  char file[260] = "";
  utRegGetPrivateUserString(kSection, "File", "", file, sizeof file, kProduct);
  DWORD used = 0, size = sizeof used;
  utRegGetPrivateUserBinary(kSection, "BytesUsed", nullptr, reinterpret_cast<LPBYTE>(&used), &size,
                            kProduct);
  const bool wasClean = utRegGetPrivateUserBool(kSection, "AllInOrder", 0, kProduct) != 0;
  std::printf("Run %u. The last one read %s, filled %u bytes and found %s.\n\n", runs + 1,
              Shown(FromUtf8(file)).c_str(), used,
              wasClean ? "every name in order" : "names to put in order");
}

bool StoreSettings(const char* file, const Inventory& inventory, DWORD used) {
  const DWORD runs = utRegGetPrivateUserDword(kSection, "Runs", 0, kProduct);
  bool inOrder = true;
  for (const auto& entry : inventory.entries) inOrder &= *Complaint(entry) == 0;
  return utRegWritePrivateUserString(kSection, "File", file, kProduct) &&
         utRegWritePrivateUserDword(kSection, "Runs", runs + 1, kProduct) &&
         utRegWritePrivateUserBool(kSection, "AllInOrder", inOrder, kProduct) &&
         utRegWritePrivateUserBinary(kSection, "BytesUsed", reinterpret_cast<const BYTE*>(&used),
                                     sizeof used, kProduct);
}

int Fail(const std::string& what) {
  std::cerr << "share_inventory: " << what << '\n';
  return 1;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc < 3 || argc > 4) {
    std::cerr << "usage: share_inventory FILE SETTINGS [DLL]\n";
    return 2;
  }
  std::ifstream file(argv[1]);
  if (!file) return Fail(std::string(argv[1]) + " can't be opened; name a file of lines");
  try {
    const auto module = host::ConnectTavkit(argc > 3 ? argv[3] : "dist/bin/TAVKIT.DLL",
                                            host::FindPlatformOperation);
    host::RegistryFile settings(argv[2]);
    const std::time_t now = std::time(nullptr);
    host::SetZoneBias(static_cast<int>(-std::localtime(&now)->tm_gmtoff / 60));

    Greet();
    Inventory inventory = ReadInventory(file);
    if (file.bad()) return Fail(std::string(argv[1]) + " can't be read");
    PrintNames(inventory);
    PrintServers(inventory.entries);
    const DWORD used = PrintFlattened(inventory.entries);
    PrintTimes(inventory.entries);
    if (!StoreSettings(argv[1], inventory, used)) {
      return Fail(std::string("the settings can't be stored for ") + argv[2]);
    }
    settings.Save();
  } catch (const std::exception& error) {
    return Fail(error.what());
  }
  return 0;
}
