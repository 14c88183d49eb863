// The records of a PE image that the loader reads, laid out as in the file. An image is of the
// width of the process that loads it: PE32 at 32 bits, PE32+ at 64.
#ifndef PLATFORM_LOADER_PE_FORMAT_H
#define PLATFORM_LOADER_PE_FORMAT_H

#include <cstdint>

namespace host::pe {

using Word = std::uintptr_t;  // an address, and what is as wide
inline constexpr bool kIs64Bit = sizeof(Word) == 8;

inline constexpr std::uint16_t kDosMagic = 0x5A4D;       // "MZ"
inline constexpr std::uint32_t kDosHeaderOffset = 0x3C;  // where the offset of the PE header stands
inline constexpr std::uint32_t kSignature = 0x00004550;  // "PE", two zeros
inline constexpr std::uint16_t kMachine = kIs64Bit ? 0x8664 : 0x14C;
inline constexpr std::uint16_t kMagic = kIs64Bit ? 0x20B : 0x10B;
inline constexpr std::uint16_t kRelocationsStripped = 0x0001;
inline constexpr std::uint16_t kIsExecutable = 0x0002;
inline constexpr std::uint16_t kIsDll = 0x2000;

inline constexpr std::uint32_t kSectionExecute = 0x20000000;
inline constexpr std::uint32_t kSectionRead = 0x40000000;
inline constexpr std::uint32_t kSectionWrite = 0x80000000;

inline constexpr Word kImportByOrdinal = Word{1} << (8 * sizeof(Word) - 1);
inline constexpr unsigned kRelocationPadding = 0;
inline constexpr unsigned kRelocationOfWord = kIs64Bit ? 10 : 3;

enum Directory {
  kExports = 0,
  kImports = 1,
  kExceptions = 3,
  kRelocations = 5,
  kTls = 9,
  kImportAddresses = 12,
  kDelayImports = 13,
  kClr = 14
};

struct FileHeader {
  std::uint16_t machine;
  std::uint16_t sectionCount;
  std::uint32_t timestamp;
  std::uint32_t symbolTable;
  std::uint32_t symbolCount;
  std::uint16_t optionalHeaderSize;
  std::uint16_t characteristics;
};
static_assert(sizeof(FileHeader) == 20);

struct DataDirectory {
  std::uint32_t rva;
  std::uint32_t size;
};

struct OptionalHeader {
  std::uint16_t magic;
  std::uint8_t linkerVersion[2];
  std::uint32_t sizes[3];
  std::uint32_t entry;
  std::uint32_t codeAndDataBase[kIs64Bit ? 1 : 2];
  Word imageBase;
  std::uint32_t sectionAlignment;
  std::uint32_t fileAlignment;
  std::uint16_t versions[6];
  std::uint32_t reserved;
  std::uint32_t imageSize;
  std::uint32_t headersSize;
  std::uint32_t checksum;
  std::uint16_t subsystem;
  std::uint16_t dllCharacteristics;
  Word stackAndHeap[4];
  std::uint32_t loaderFlags;
  std::uint32_t directoryCount;
  DataDirectory directories[16];
};
static_assert(sizeof(OptionalHeader) == (kIs64Bit ? 240 : 224));

struct SectionHeader {
  char name[8];
  std::uint32_t virtualSize;
  std::uint32_t rva;
  std::uint32_t fileSize;
  std::uint32_t fileOffset;
  std::uint32_t unused[3];
  std::uint32_t characteristics;
};
static_assert(sizeof(SectionHeader) == 40);

struct ExportDirectory {
  std::uint32_t unused[3];
  std::uint32_t name;
  std::uint32_t ordinalBase;
  std::uint32_t functionCount;
  std::uint32_t nameCount;
  std::uint32_t functions;
  std::uint32_t names;
  std::uint32_t nameOrdinals;
};
static_assert(sizeof(ExportDirectory) == 40);

struct ImportDescriptor {
  std::uint32_t lookupTable;
  std::uint32_t unused[2];
  std::uint32_t name;
  std::uint32_t addressTable;
};
static_assert(sizeof(ImportDescriptor) == 20);

struct RelocationBlock {
  std::uint32_t page;
  std::uint32_t size;
};
static_assert(sizeof(RelocationBlock) == 8);

// How the platform finds the frames of a function at 64 bits.
struct RuntimeFunction {
  std::uint32_t begin;
  std::uint32_t end;
  std::uint32_t unwindInfo;
};
static_assert(sizeof(RuntimeFunction) == 12);

struct UnwindInfo {
  std::uint8_t versionAndFlags;
  std::uint8_t prologueSize;
  std::uint8_t codeCount;  // of two bytes each, which follow
  std::uint8_t frame;
};
static_assert(sizeof(UnwindInfo) == 4);

}  // namespace host::pe

#endif  // PLATFORM_LOADER_PE_FORMAT_H
