#include "pe_file.h"

#include <algorithm>
#include <cerrno>
#include <fstream>

namespace host {

std::vector<unsigned char> ReadFile(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  if (!file) throw ModuleError(path + " can't be opened: " + std::strerror(errno));
  std::vector<unsigned char> bytes;
  char block[65536];
  while (file.read(block, sizeof block), file.gcount() > 0) {
    bytes.insert(bytes.end(), block, block + file.gcount());
  }
  if (file.bad()) throw ModuleError(path + " can't be read: " + std::strerror(errno));
  return bytes;
}

// The sum of all 16-bit words with the carries folded in, plus the size of the file.
std::uint32_t ImageChecksum(std::span<const unsigned char> file, std::size_t checksumOffset) {
  std::uint32_t sum = 0;
  for (std::size_t i = 0; i < file.size(); ++i) {
    const bool isInField = i - checksumOffset < 4;
    if (!isInField) sum += static_cast<std::uint32_t>(file[i]) << (i % 2 * 8);
    sum = (sum & 0xFFFF) + (sum >> 16);
  }
  return sum + static_cast<std::uint32_t>(file.size());
}

}  // namespace host

namespace host::pe {
namespace {

constexpr std::uint32_t kMaxImageSize = 64u << 20;

bool IsPowerOfTwo(std::uint32_t value) { return value != 0 && (value & (value - 1)) == 0; }

void CheckOptionalHeader(const OptionalHeader& header, std::size_t fileSize) {
  Require(header.magic == kMagic, kIs64Bit ? "the optional header is not that of a PE32+ image"
                                           : "the optional header is not that of a PE32 image");
  Require(header.directoryCount == 16, "the number of data directories is not 16");
  Require(IsPowerOfTwo(header.sectionAlignment) && header.sectionAlignment >= kPage &&
              header.sectionAlignment <= kMaxImageSize,
          "the section alignment is not a power of two of at least a page");
  Require(
      header.imageSize != 0 && header.imageSize % kPage == 0 && header.imageSize <= kMaxImageSize,
      "the image size is zero, no multiple of a page, or too large");
  Require(header.headersSize <= fileSize && header.headersSize <= header.imageSize,
          "the headers are larger than the file or the image");
  for (const auto unsupported : {kTls, kDelayImports, kClr}) {
    Require(header.directories[unsupported].rva == 0,
            "the image needs thread-local storage, delayed imports or managed code");
  }
}

void CheckSection(const SectionHeader& section, std::uint32_t lowestRva, const View& file,
                  const OptionalHeader& header) {
  Require(section.rva >= lowestRva && section.rva % header.sectionAlignment == 0,
          "a section is misaligned or overlaps what stands before it");
  Require((section.characteristics & kSectionWrite) == 0 ||
              (section.characteristics & kSectionExecute) == 0,
          "a section is both writable and executable");
  const std::uint32_t size = std::max(section.virtualSize, section.fileSize);
  Require(section.rva <= header.imageSize && size <= header.imageSize - section.rva,
          "a section lies outside the image");
  file.Range(section.fileOffset, section.fileSize, "a section's data");
}

void CheckFileHeader(const FileHeader& header, ImageKind kind) {
  Require(header.machine == kMachine, kIs64Bit ? "the image is not for 64-bit x86 processors"
                                               : "the image is not for 32-bit x86 processors");
  const bool isLinked = (header.characteristics & kIsExecutable) != 0;
  const bool isDll = (header.characteristics & kIsDll) != 0;
  Require(kind != ImageKind::kDll || (isLinked && isDll), "the image is not a linked DLL");
  Require(kind != ImageKind::kProgram || (isLinked && !isDll), "the image is not a linked program");
  Require((header.characteristics & kRelocationsStripped) == 0,
          "the image has no relocations: link it without /fixed");
  Require(header.optionalHeaderSize == sizeof(OptionalHeader),
          "the optional header has an unknown size");
}

}  // namespace

const unsigned char* View::Range(std::size_t offset, std::size_t length, const char* what) const {
  if (offset > bytes_.size() || length > bytes_.size() - offset) {
    throw ModuleError(std::string(what) + " lies outside the " + kind_);
  }
  return bytes_.data() + offset;
}

std::string_view View::Text(std::size_t offset, const char* what) const {
  const auto* start = Range(offset, 1, what);
  const auto* end = std::find(start, bytes_.data() + bytes_.size(), 0);
  if (end == bytes_.data() + bytes_.size()) throw ModuleError(std::string(what) + " has no end");
  return {reinterpret_cast<const char*>(start), static_cast<std::size_t>(end - start)};
}

Headers ReadHeaders(const View& file, ImageKind kind) {
  Require(file.At<std::uint16_t>(0, "the DOS header") == kDosMagic,
          "the file does not begin with MZ");
  std::size_t offset = file.At<std::uint32_t>(kDosHeaderOffset, "the DOS header");
  Require(file.At<std::uint32_t>(offset, "the PE header") == kSignature,
          "the PE signature is missing");
  offset += sizeof kSignature;

  Headers headers{};
  headers.file = file.At<FileHeader>(offset, "the file header");
  CheckFileHeader(headers.file, kind);
  offset += sizeof(FileHeader);

  headers.optional = file.At<OptionalHeader>(offset, "the optional header");
  CheckOptionalHeader(headers.optional, file.size());
  const std::size_t checksumOffset = offset + offsetof(OptionalHeader, checksum);
  offset += sizeof(OptionalHeader);

  std::uint32_t lowestRva = headers.optional.headersSize;
  for (unsigned i = 0; i < headers.file.sectionCount; ++i, offset += sizeof(SectionHeader)) {
    const auto section = file.At<SectionHeader>(offset, "the section table");
    CheckSection(section, lowestRva, file, headers.optional);
    lowestRva = section.rva + std::max(section.virtualSize, section.fileSize);
    headers.sections.push_back(section);
  }
  Require(!headers.sections.empty(), "the image has no section");
  Require(offset <= headers.optional.headersSize, "the section table lies outside the headers");
  const std::uint32_t checksum = headers.optional.checksum;
  const std::span whole(file.Range(0, file.size(), "the file"), file.size());
  Require(checksum == 0 || checksum == ImageChecksum(whole, checksumOffset),
          "the checksum does not match: the file was changed or cut after it was linked");
  return headers;
}

bool IsInCode(std::uint32_t rva, const Headers& headers) {
  return std::any_of(headers.sections.begin(), headers.sections.end(), [rva](const auto& section) {
    return (section.characteristics & kSectionExecute) != 0 && rva >= section.rva &&
           rva - section.rva < section.virtualSize;
  });
}

bool IsInData(std::size_t rva, std::size_t length, const Headers& headers) {
  return std::any_of(headers.sections.begin(), headers.sections.end(), [=](const auto& section) {
    return (section.characteristics & kSectionExecute) == 0 && rva >= section.rva &&
           rva - section.rva + length <= section.virtualSize;
  });
}

}  // namespace host::pe
