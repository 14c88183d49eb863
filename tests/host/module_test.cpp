// The module loader, on the shipped DLL and on broken copies of it.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <module.h>
#include <operation_table.h>
#include <pe_format.h>

#include <cinttypes>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <map>
#include <set>

#include "support/choices.h"

namespace {

namespace pe = host::pe;
using host::Module;
using host::ModuleError;
using testing::HasSubstr;
using Bytes = std::vector<unsigned char>;

Bytes ShippedDll() {
  const char* path = std::getenv("TAVKIT_DLL");
  const char* const shipped = pe::kIs64Bit ? "dist/x64/bin/TAVKIT.DLL" : "dist/bin/TAVKIT.DLL";
  return host::ReadFile(path == nullptr ? shipped : path);
}

template <class T>
T Get(const Bytes& bytes, std::size_t offset) {
  T value;
  std::memcpy(&value, &bytes.at(offset), sizeof value);
  return value;
}

void Put(Bytes& bytes, std::size_t offset, std::uint64_t value, unsigned width = 4) {
  ASSERT_LE(offset + width, bytes.size());
  std::memcpy(&bytes[offset], &value, width);
}

// Places in the file, by what stands there.
struct Places {
  explicit Places(const Bytes& dll)
      : file(Get<std::uint32_t>(dll, pe::kDosHeaderOffset) + 4),
        optional(file + sizeof(pe::FileHeader)),
        sections(optional + sizeof(pe::OptionalHeader)) {}

  std::size_t Directory(unsigned index) const {
    return optional + offsetof(pe::OptionalHeader, directories) + 8 * index;
  }
  std::size_t Section(unsigned index) const { return sections + sizeof(pe::SectionHeader) * index; }
  std::size_t Checksum() const { return optional + offsetof(pe::OptionalHeader, checksum); }

  std::size_t file, optional, sections;
};

// The place in the file that the RVA at another place leads to.
std::size_t Pointed(const Bytes& dll, std::size_t offset) {
  const Places places(dll);
  const auto rva = Get<std::uint32_t>(dll, offset);
  for (unsigned i = 0; i < Get<std::uint16_t>(dll, places.file + 2); ++i) {
    const auto section = Get<pe::SectionHeader>(dll, places.Section(i));
    if (rva - section.rva < section.fileSize) return section.fileOffset + rva - section.rva;
  }
  throw std::out_of_range("no section holds this RVA");
}

void MendChecksum(Bytes& dll) {
  if (dll.size() < pe::kDosHeaderOffset + 4) return;
  const std::size_t offset = Places(dll).Checksum();
  if (dll.size() >= 4 && offset <= dll.size() - 4)
    Put(dll, offset, host::ImageChecksum(dll, offset));
}

// What the loader says of an image, empty if it takes it. The code is not run.
std::string Refusal(const Bytes& dll, Module::Kind kind = Module::Kind::kDll) {
  try {
    const Module module(dll, host::FindPlatformOperation, Module::EntryCalls::kSkip, kind);
    for (unsigned ordinal = 0; ordinal < 300; ++ordinal) {
      const auto* code = static_cast<const volatile unsigned char*>(module.Find(ordinal));
      if (code != nullptr) static_cast<void>(*code);
    }
    return "";
  } catch (const ModuleError& error) {
    return error.what();
  }
}

class ModuleTest : public testing::Test {
 protected:
  void TearDown() override { EXPECT_EQ(host::Mapping::Living(), 0u); }

  const Bytes dll_ = ShippedDll();
  const Places at_{dll_};
};

TEST_F(ModuleTest, FindsExportsByNameAndByOrdinal) {
  const Module module(dll_, host::FindPlatformOperation);
  using IsBufferSize = BOOL(UT_API*)(DWORD, DWORD);
  const auto call = reinterpret_cast<IsBufferSize>(module.Find(31));
  ASSERT_NE(call, nullptr);
  EXPECT_EQ(call(5, 5), 1);
  EXPECT_EQ(call(4, 5), 0);
  const std::map<unsigned, const char*> exports = {
#define UT_ENTRY(ordinal, name, bytes) {ordinal, #name},
#include <exports.inc>
#undef UT_ENTRY
  };
  // Every ordinal that a caller can state leads where its name does, or nowhere.
  std::set<void*> functions;
  for (unsigned ordinal = 0; ordinal <= 0x10000; ++ordinal) {
    const auto found = exports.find(ordinal);
    void* const wanted = found == exports.end() ? nullptr : module.Find(found->second);
    EXPECT_EQ(module.Find(ordinal), wanted) << ordinal;
    functions.insert(wanted);
  }
  EXPECT_EQ(functions.size(), exports.size() + 1) << "all functions, and NULL for the holes";
  EXPECT_EQ(module.Find(0xFFFFFFFFu), nullptr);
  for (const char* name : {"", "utIsBufferSiz", "utIsBufferSize@8", "UTISBUFFERSIZE"}) {
    EXPECT_EQ(module.Find(name), nullptr) << name;
  }
}

TEST_F(ModuleTest, GivesPagesTheRightsOfTheirSections) {
  const Module module(dll_, host::FindPlatformOperation);
  const auto rightsAt = [](const void* address) {
    std::ifstream maps("/proc/self/maps");
    for (std::string line; std::getline(maps, line);) {
      std::uintptr_t from = 0, to = 0;
      char rights[5] = "";
      std::sscanf(line.c_str(), "%" SCNxPTR "-%" SCNxPTR " %4s", &from, &to, rights);
      const auto at = reinterpret_cast<std::uintptr_t>(address);
      if (at >= from && at < to) return std::string(rights);
    }
    return std::string("none");
  };
  EXPECT_EQ(rightsAt(module.handle()), "r--p");
  // An emulated processor does not show the right to execute, which the calls of other tests prove.
  EXPECT_THAT(rightsAt(module.FindSection(".text").data()), testing::StartsWith("r-"));
  EXPECT_EQ(rightsAt(module.FindSection(".rdata").data()), "r--p");
  EXPECT_EQ(rightsAt(module.FindSection(".data").data()), "rw-p");
  EXPECT_EQ(module.FindSection(".nowhere").data(), nullptr);
}

TEST_F(ModuleTest, RefusesWhatIsNoImage) {
  EXPECT_THAT(Refusal({}), HasSubstr("DOS header"));
  EXPECT_THAT(Refusal({'M', 'Z'}), HasSubstr("DOS header"));
  EXPECT_THAT(Refusal(Bytes(4096, 0)), HasSubstr("MZ"));
  const char* const otherWidth = pe::kIs64Bit ? "dist/bin/TAVKIT.DLL" : "dist/x64/bin/TAVKIT.DLL";
  EXPECT_THAT(Refusal(host::ReadFile(otherWidth)), HasSubstr("bit x86 processors"));
  EXPECT_THROW(host::ReadFile("no/such/file.dll"), ModuleError);
  EXPECT_THROW(host::ReadFile("."), ModuleError);
  for (int size = 0; size < std::ssize(dll_); size += size < 1024 ? 1 : 97) {
    EXPECT_NE(Refusal({dll_.begin(), dll_.begin() + size}), "") << size;
  }
}

TEST_F(ModuleTest, NamesWhatIsTwisted) {
  const auto optional = [&](std::size_t field) { return at_.optional + field; };
  const auto pointed = [&](std::size_t offset) { return Pointed(dll_, offset); };
  using Header = pe::OptionalHeader;
  using Section = pe::SectionHeader;
  using Exports = pe::ExportDirectory;
  using Imports = pe::ImportDescriptor;
  const auto exports = pointed(at_.Directory(pe::kExports));
  const auto imports = pointed(at_.Directory(pe::kImports)), lookups = pointed(imports);
  const auto relocations = pointed(at_.Directory(pe::kRelocations));
  const auto functions = pointed(exports + offsetof(Exports, functions));
  const auto names = pointed(exports + offsetof(Exports, names));
  const auto ordinals = pointed(exports + offsetof(Exports, nameOrdinals));
  const auto count = Get<std::uint32_t>(dll_, exports + offsetof(Exports, functionCount));
  const auto exportsRva = Get<std::uint32_t>(dll_, at_.Directory(pe::kExports));
  const auto dataRva = Get<std::uint32_t>(dll_, at_.Section(2) + offsetof(Section, rva));
  // An offset, the value that is put there, its width and what is refused.
  using Row = std::tuple<std::size_t, std::uint64_t, unsigned, const char*>;
  std::vector<Row> rows = {
      {pe::kDosHeaderOffset, 0xFFFFFFF0, 4, "PE header lies outside"},
      {at_.file - 4, 0x4551, 4, "PE signature"},
      {at_.file, 0x1C4, 2, "bit x86 processors"},
      {at_.file + 2, 0, 2, "no section"},
      {at_.file + 2, 0xFFFF, 2, "section"},
      {at_.file + 16, 96, 2, "unknown size"},
      {at_.file + 18, pe::kIsExecutable, 2, "not a linked DLL"},
      {at_.file + 18, 0x2003, 2, "no relocations"},
      {at_.optional, 0x107, 2, "PE32"},
      {optional(offsetof(Header, entry)), 0x10, 4, "entry lies outside the code"},
      {optional(offsetof(Header, entry)), 0xFFFFFFFF, 4, "entry lies outside the code"},
      {optional(offsetof(Header, sectionAlignment)), 512, 4, "section alignment"},
      {optional(offsetof(Header, sectionAlignment)), 0, 4, "section alignment"},
      {optional(offsetof(Header, imageSize)), 0, 4, "image size"},
      {optional(offsetof(Header, imageSize)), 0x80000000, 4, "image size"},
      {optional(offsetof(Header, imageSize)), 0x2000, 4, "section lies outside the image"},
      {optional(offsetof(Header, headersSize)), 0xFFFFFFFF, 4, "headers are larger"},
      {optional(offsetof(Header, headersSize)), 64, 4, "section table lies outside"},
      {optional(offsetof(Header, directoryCount)), 15, 4, "data directories"},
      {optional(offsetof(Header, checksum)), 1, 4, "checksum"},
      {at_.Directory(pe::kTls), 0x1000, 4, "thread-local"},
      {at_.Section(0) + offsetof(Section, rva), 0x0800, 4, "misaligned or overlaps"},
      {at_.Section(1) + offsetof(Section, rva), 0x1000, 4, "misaligned or overlaps"},
      {at_.Section(1) + offsetof(Section, rva), 0xFFFFF000, 4, "section lies outside the image"},
      {at_.Section(0) + offsetof(Section, virtualSize), 0xFFFFFFFF, 4, "outside the image"},
      {at_.Section(0) + offsetof(Section, fileOffset), 0xFFFFFF00, 4, "outside the file"},
      {at_.Section(0) + offsetof(Section, characteristics), 0x40000000, 4, "outside the code"},
      {at_.Directory(pe::kRelocations) + 4, 0xFFFFFF, 4, "relocation directory"},
      {relocations, 0xFFFFFFF0, 4, "relocation's target"},
      {relocations, 0, 4, "relocation's target"},
      {relocations + 4, 7, 4, "relocation block"},
      {relocations + 4, 0xFFFFFFFE, 4, "relocation block"},
      {relocations + 8, 0x1000, 2, "unknown type"},
      {at_.Section(0) + offsetof(Section, characteristics), 0xE0000020, 4, "both writable"},
      {at_.Directory(pe::kImports), 0xFFFFFFF0, 4, "import directory"},
      {at_.Directory(pe::kImports), 0, 4, "import directory is missing"},
      {at_.Directory(pe::kImports) + 4, 39, 4, "import directory has no end"},
      {at_.Directory(pe::kExports) + 4, 39, 4, "export directory is too small"},
      {imports + offsetof(Imports, name), 0, 4, "import"},
      {imports + offsetof(Imports, addressTable), 0x1000, 4, "outside the data"},
      {imports + offsetof(Imports, addressTable), 0x2001, 4, "misaligned"},
      {lookups, 0, 4, "without an operation"},
      {imports, 0xFFFFFFFC, 4, "import lookup table"},
      {imports + offsetof(Imports, name), 0xFFFFFF, 4, "module's name"},
      {imports + offsetof(Imports, addressTable), 0xFFFFFFFC, 4, "import address table"},
      {lookups, pe::kImportByOrdinal | 0xFFFF, sizeof(pe::Word), "import KERNEL32.dll!#65535"},
      {lookups, 0x7FFFFFFF, 4, "import's name"},
      {lookups, exportsRva, 4, "nothing provides"},
      {at_.Directory(pe::kExports), 0xFFFFFFF0, 4, "export directory"},
      {exports + offsetof(Exports, functionCount), 0x10001, 4, "too many"},
      {exports + offsetof(Exports, nameCount), 0xFFFFFFFF, 4, "too many"},
      {exports + offsetof(Exports, functions), 0xFFFFFFFC, 4, "an export lies outside"},
      {functions, exportsRva + 4, 4, "forwarder"},
      {functions, dataRva, 4, "outside the code"},
      {exports + offsetof(Exports, nameOrdinals), 0xFFFFFFF0, 4, "ordinal lies outside"},
      {ordinals, count, 2, "ordinal is out of range"},
      {names, 0xFFFFFF, 4, "export's name"},
      {names + 4, Get<std::uint32_t>(dll_, names), 4, "not sorted"},
  };
  if (pe::kIs64Bit) {
    const auto table = at_.Directory(pe::kExceptions), unwind = pointed(table);
    const auto codeRva = Get<std::uint32_t>(dll_, at_.Section(0) + offsetof(Section, rva));
    const Row unwindRows[] = {
        {table, 0xFFFFFFF0, 4, "unwind table lies outside"},
        {table + 4, 13, 4, "unwind table has a wrong size"},
        {unwind, 0xFFFFFFFF, 4, "unwind table is unsorted"},
        {unwind, 0, 4, "unwind table's function"},
        {unwind + 4, 0, 4, "unwind table is unsorted"},
        {unwind + 4, 0x7FFFFFFF, 4, "unwind table's function"},
        {unwind + 8, 0xFFFFFFF0, 4, "unwind record lies outside the image"},
        {unwind + 8, codeRva, 4, "unwind record lies outside the data"},
        {pointed(unwind + 8), 2, 1, "unknown version"},
    };
    rows.insert(rows.end(), std::begin(unwindRows), std::end(unwindRows));
  } else {
    rows.push_back({at_.Directory(pe::kRelocations) + 4, 0, 4, "no relocations"});
  }
  for (const auto& [offset, value, width, refusal] : rows) {
    auto twisted = dll_;
    Put(twisted, offset, value, width);
    if (offset != at_.Checksum()) MendChecksum(twisted);
    EXPECT_THAT(Refusal(twisted), HasSubstr(refusal)) << "at " << offset;
  }
}

TEST_F(ModuleTest, TellsProgramsFromDlls) {
  auto program = dll_;
  Put(program, at_.file + offsetof(pe::FileHeader, characteristics), pe::kIsExecutable, 2);
  MendChecksum(program);
  EXPECT_EQ(Refusal(program, Module::Kind::kProgram), "");
  EXPECT_THAT(Refusal(program), HasSubstr("not a linked DLL"));
  EXPECT_THAT(Refusal(dll_, Module::Kind::kProgram), HasSubstr("not a linked program"));
  Put(program, at_.optional + offsetof(pe::OptionalHeader, entry), 0);
  MendChecksum(program);
  EXPECT_THAT(Refusal(program, Module::Kind::kProgram), HasSubstr("entry lies outside the code"));
}

// With a checksum that matches, or none, so that the checks after it are on their own. What is
// taken nevertheless, with a changed timestamp for example, has all its exports in readable pages.
PROPERTY(ModuleLoader, SurvivesChangedTables, 1000) {
  static const Bytes dll = ShippedDll();
  static const Places at(dll);
  static const auto tables = [] {
    std::vector<std::size_t> offsets = {0, at.file, at.optional, at.sections};
    for (const auto index : {pe::kExports, pe::kImports, pe::kRelocations, pe::kExceptions}) {
      if (Get<std::uint32_t>(dll, at.Directory(index)) == 0) continue;
      offsets.push_back(Pointed(dll, at.Directory(index)));
    }
    using Exports = pe::ExportDirectory;
    const auto exports = offsets[4], imports = offsets[5];
    for (const auto table :
         {exports + offsetof(Exports, functions), exports + offsetof(Exports, names),
          exports + offsetof(Exports, nameOrdinals), imports}) {
      offsets.push_back(Pointed(dll, table));
    }
    return offsets;
  }();
  auto changed = dll;
  Put(changed, at.Checksum(), 0);
  // Most of the time goes into the names.
  if (choices.Below(4) != 3) Put(changed, tables[4] + offsetof(pe::ExportDirectory, nameCount), 5);
  do {
    // Most fields that count stand at the front of a table; some fit another field's number.
    const auto field = [&] {
      return choices.Of(tables) + 2 * choices.Below(choices.Of<unsigned>({16, 80}));
    };
    const std::size_t offset = field();
    const auto old = Get<std::uint32_t>(changed, offset);
    const auto other = Get<std::uint32_t>(changed, field());
    Put(changed, offset,
        choices.Of<std::uint32_t>({0, 1, 0x7FFFFFFF, 0x80000000, 0xFFFFFFFC, ~0u,
                                   old ^ 1u << choices.Below(32), old + choices.Below(3) - 1,
                                   other + choices.Below(3) - 1, choices.Below(0x10000)}),
        choices.Of<unsigned>({2, 4}));
  } while (choices.Below(3) != 0);
  if (choices.Below(4) == 0) {  // often within the headers
    changed.resize(choices.Below(choices.Of<unsigned>({1024, 2 * unsigned(dll.size())})));
    changed.shrink_to_fit();  // so that the sanitizer watches its end
  }
  if (choices.Below(16) == 0) MendChecksum(changed);
  Refusal(changed);
  EXPECT_EQ(host::Mapping::Living(), 0u);
}

}  // namespace
