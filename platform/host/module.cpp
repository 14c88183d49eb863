#include "module.h"

#include <sys/mman.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <fstream>

#include "pe_format.h"

namespace host {
namespace {

constexpr std::uint32_t kPage = 4096;
constexpr std::uint32_t kMaxImageSize = 64u << 20;

std::size_t livingMappings;

[[noreturn]] void Refuse(const std::string& reason) { throw ModuleError(reason); }

void Require(bool holds, const char* otherwise) {
  if (!holds) Refuse(otherwise);
}

bool IsPowerOfTwo(std::uint32_t value) { return value != 0 && (value & (value - 1)) == 0; }

std::uint32_t RoundUp(std::uint32_t value, std::uint32_t unit) {
  return (value + unit - 1) / unit * unit;
}

// Bytes that are read only after a check that they are there: a file, or a mapped image, whose
// offsets are then RVAs.
class View {
 public:
  View(std::span<const unsigned char> bytes, const char* kind) : bytes_(bytes), kind_(kind) {}

  std::size_t size() const { return bytes_.size(); }

  const unsigned char* Range(std::size_t offset, std::size_t length, const char* what) const {
    if (offset > bytes_.size() || length > bytes_.size() - offset) {
      Refuse(std::string(what) + " lies outside the " + kind_);
    }
    return bytes_.data() + offset;
  }

  template <class T>
  T At(std::size_t offset, const char* what) const {
    T value;
    std::memcpy(&value, Range(offset, sizeof value, what), sizeof value);
    return value;
  }

  std::string_view Text(std::size_t offset, const char* what) const {
    const auto* start = Range(offset, 1, what);
    const auto* end = std::find(start, bytes_.data() + bytes_.size(), 0);
    if (end == bytes_.data() + bytes_.size()) Refuse(std::string(what) + " has no end");
    return {reinterpret_cast<const char*>(start), static_cast<std::size_t>(end - start)};
  }

 private:
  std::span<const unsigned char> bytes_;
  const char* kind_;
};

struct Headers {
  pe::FileHeader file;
  pe::OptionalHeader optional;
  std::vector<pe::SectionHeader> sections;

  pe::DataDirectory Directory(pe::Directory index) const { return optional.directories[index]; }
};

void CheckOptionalHeader(const pe::OptionalHeader& header, std::size_t fileSize) {
  Require(header.magic == pe::kMagicPe32, "the optional header is not that of a PE32 image");
  Require(header.directoryCount == 16, "the number of data directories is not 16");
  Require(IsPowerOfTwo(header.sectionAlignment) && header.sectionAlignment >= kPage &&
              header.sectionAlignment <= kMaxImageSize,
          "the section alignment is not a power of two of at least a page");
  Require(
      header.imageSize != 0 && header.imageSize % kPage == 0 && header.imageSize <= kMaxImageSize,
      "the image size is zero, no multiple of a page, or too large");
  Require(header.headersSize <= fileSize && header.headersSize <= header.imageSize,
          "the headers are larger than the file or the image");
  for (const auto unsupported : {pe::kTls, pe::kDelayImports, pe::kClr}) {
    Require(header.directories[unsupported].rva == 0,
            "the image needs thread-local storage, delayed imports or managed code");
  }
}

void CheckSection(const pe::SectionHeader& section, std::uint32_t lowestRva, const View& file,
                  const pe::OptionalHeader& header) {
  Require(section.rva >= lowestRva && section.rva % header.sectionAlignment == 0,
          "a section is misaligned or overlaps what stands before it");
  Require((section.characteristics & pe::kSectionWrite) == 0 ||
              (section.characteristics & pe::kSectionExecute) == 0,
          "a section is both writable and executable");
  const std::uint32_t size = std::max(section.virtualSize, section.fileSize);
  Require(section.rva <= header.imageSize && size <= header.imageSize - section.rva,
          "a section lies outside the image");
  file.Range(section.fileOffset, section.fileSize, "a section's data");
}

void CheckFileHeader(const pe::FileHeader& header, Module::Kind kind) {
  Require(header.machine == pe::kMachineI386, "the image is not for the i386");
  const bool isLinked = (header.characteristics & pe::kIsExecutable) != 0;
  const bool isDll = (header.characteristics & pe::kIsDll) != 0;
  Require(kind != Module::Kind::kDll || (isLinked && isDll), "the image is not a linked DLL");
  Require(kind != Module::Kind::kProgram || (isLinked && !isDll),
          "the image is not a linked program");
  Require((header.characteristics & pe::kRelocationsStripped) == 0,
          "the image has no relocations: link it without /fixed");
  Require(header.optionalHeaderSize == sizeof(pe::OptionalHeader),
          "the optional header has an unknown size");
}

Headers ReadHeaders(const View& file, Module::Kind kind) {
  Require(file.At<std::uint16_t>(0, "the DOS header") == pe::kDosMagic,
          "the file does not begin with MZ");
  std::size_t offset = file.At<std::uint32_t>(pe::kDosHeaderOffset, "the DOS header");
  Require(file.At<std::uint32_t>(offset, "the PE header") == pe::kSignature,
          "the PE signature is missing");
  offset += sizeof pe::kSignature;

  Headers headers{};
  headers.file = file.At<pe::FileHeader>(offset, "the file header");
  CheckFileHeader(headers.file, kind);
  offset += sizeof(pe::FileHeader);

  headers.optional = file.At<pe::OptionalHeader>(offset, "the optional header");
  CheckOptionalHeader(headers.optional, file.size());
  const std::size_t checksumOffset = offset + offsetof(pe::OptionalHeader, checksum);
  offset += sizeof(pe::OptionalHeader);

  std::uint32_t lowestRva = headers.optional.headersSize;
  for (unsigned i = 0; i < headers.file.sectionCount; ++i, offset += sizeof(pe::SectionHeader)) {
    const auto section = file.At<pe::SectionHeader>(offset, "the section table");
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

void CopySections(const View& file, const Headers& headers, const Mapping& image) {
  std::memcpy(image.data(), file.Range(0, headers.optional.headersSize, "the headers"),
              headers.optional.headersSize);
  for (const auto& section : headers.sections) {
    // What the file holds behind the virtual size only fills its last block.
    const auto size = section.virtualSize == 0 ? section.fileSize
                                               : std::min(section.virtualSize, section.fileSize);
    std::memcpy(image.data() + section.rva,
                file.Range(section.fileOffset, size, "a section's data"), size);
  }
}

void Relocate(const View& view, const Headers& headers, const Mapping& image) {
  const auto delta = static_cast<std::uint32_t>(reinterpret_cast<std::uintptr_t>(image.data())) -
                     headers.optional.imageBase;
  const auto directory = headers.Directory(pe::kRelocations);
  Require(directory.size != 0 || delta == 0, "the image has no relocations");
  view.Range(directory.rva, directory.size, "the relocation directory");
  for (std::uint32_t done = 0; done < directory.size;) {
    const std::uint32_t start = directory.rva + done;
    const auto block = view.At<pe::RelocationBlock>(start, "a relocation block");
    Require(
        block.size >= sizeof block && block.size % 2 == 0 && block.size <= directory.size - done,
        "a relocation block has a wrong size");
    for (std::uint32_t at = sizeof block; at < block.size; at += 2) {
      const auto entry = view.At<std::uint16_t>(start + at, "a relocation");
      const unsigned type = entry >> 12;
      if (type == pe::kRelocationPadding) continue;
      Require(type == pe::kRelocation32Bits, "a relocation has an unknown type");
      const std::uint64_t target = std::uint64_t{block.page} + (entry & 0xFFF);
      Require(target >= headers.optional.headersSize && target <= view.size() - 4,
              "a relocation's target lies outside the image");
      const auto value = view.At<std::uint32_t>(static_cast<std::size_t>(target), "") + delta;
      std::memcpy(image.data() + target, &value, sizeof value);
    }
    done += block.size;
  }
}

// Whether a range lies in one section that holds data, not code.
bool IsInData(std::size_t rva, std::size_t length, const Headers& headers) {
  return std::any_of(headers.sections.begin(), headers.sections.end(), [=](const auto& section) {
    return (section.characteristics & pe::kSectionExecute) == 0 && rva >= section.rva &&
           rva - section.rva + length <= section.virtualSize;
  });
}

std::string NameOfImport(const View& view, std::uint32_t lookup) {
  if (lookup & pe::kImportByOrdinal) return "#" + std::to_string(lookup & 0xFFFF);
  return std::string(view.Text(std::size_t{lookup} + 2, "an import's name"));
}

void BindModule(const View& view, const pe::ImportDescriptor& descriptor, const Headers& headers,
                const Mapping& image, const ImportResolver& resolve) {
  const std::string module(view.Text(descriptor.name, "an imported module's name"));
  Require(descriptor.addressTable % 4 == 0, "an import address table is misaligned");
  const std::size_t lookups =
      descriptor.lookupTable != 0 ? descriptor.lookupTable : descriptor.addressTable;
  for (std::size_t at = 0;; at += 4) {
    const auto lookup = view.At<std::uint32_t>(lookups + at, "an import lookup table");
    Require(lookup != 0 || at != 0, "a module is imported without an operation");
    if (lookup == 0) return;
    const std::string name = NameOfImport(view, lookup);
    void* const address = resolve(module, name);
    if (address == nullptr) Refuse("nothing provides the import " + module + "!" + name);
    Require(IsInData(descriptor.addressTable + at, sizeof address, headers),
            "an import address table lies outside the data");
    std::memcpy(image.data() + descriptor.addressTable + at, &address, sizeof address);
  }
}

void BindImports(const View& view, const Headers& headers, const Mapping& image,
                 const ImportResolver& resolve) {
  const auto directory = headers.Directory(pe::kImports);
  if (directory.rva == 0) {
    Require(headers.Directory(pe::kImportAddresses).rva == 0, "the import directory is missing");
    return;
  }
  for (std::size_t at = 0;; at += sizeof(pe::ImportDescriptor)) {
    Require(at + sizeof(pe::ImportDescriptor) <= directory.size, "the import directory has no end");
    const auto descriptor =
        view.At<pe::ImportDescriptor>(directory.rva + at, "the import directory");
    if (descriptor.name == 0 && descriptor.addressTable == 0) return;
    BindModule(view, descriptor, headers, image, resolve);
  }
}

bool IsInCode(std::uint32_t rva, const Headers& headers) {
  return std::any_of(headers.sections.begin(), headers.sections.end(), [rva](const auto& section) {
    return (section.characteristics & pe::kSectionExecute) != 0 && rva >= section.rva &&
           rva - section.rva < section.virtualSize;
  });
}

int RightsOf(const pe::SectionHeader& section) {
  int rights = PROT_NONE;
  if (section.characteristics & pe::kSectionRead) rights |= PROT_READ;
  if (section.characteristics & pe::kSectionWrite) rights |= PROT_WRITE;
  if (section.characteristics & pe::kSectionExecute) rights |= PROT_EXEC;
  return rights;
}

void ProtectSections(const Headers& headers, const Mapping& image) {
  image.Protect(0, image.size(), PROT_NONE);
  image.Protect(0, headers.optional.headersSize, PROT_READ);
  for (const auto& section : headers.sections) {
    image.Protect(section.rva, std::max(section.virtualSize, section.fileSize), RightsOf(section));
  }
}

// Fills `functions` by ordinal and `names`; gives the ordinal base.
unsigned ReadExports(const View& view, const Headers& headers,
                     std::vector<std::uint32_t>& functions,
                     std::map<std::string, std::uint32_t, std::less<>>& names) {
  const auto directory = headers.Directory(pe::kExports);
  if (directory.rva == 0) return 0;
  Require(directory.size >= sizeof(pe::ExportDirectory), "the export directory is too small");
  const auto table = view.At<pe::ExportDirectory>(directory.rva, "the export directory");
  Require(table.functionCount <= 0x10000 && table.nameCount <= 0x10000,
          "the export table has too many entries");
  for (std::uint32_t i = 0; i < table.functionCount; ++i) {
    const auto rva = view.At<std::uint32_t>(table.functions + std::size_t{4} * i, "an export");
    Require(rva == 0 || rva - directory.rva >= directory.size, "an export is a forwarder");
    Require(rva == 0 || IsInCode(rva, headers), "an export lies outside the code");
    functions.push_back(rva);
  }
  for (std::uint32_t i = 0; i < table.nameCount; ++i) {
    const auto at = view.At<std::uint32_t>(table.names + std::size_t{4} * i, "an export's name");
    const auto index =
        view.At<std::uint16_t>(table.nameOrdinals + std::size_t{2} * i, "an export's ordinal");
    Require(index < functions.size(), "an export's ordinal is out of range");
    const std::string name(view.Text(at, "an export's name"));
    Require(names.empty() || names.rbegin()->first < name, "the export names are not sorted");
    names.emplace_hint(names.end(), name, functions[index]);
  }
  return table.ordinalBase;
}

}  // namespace

Mapping::Mapping(std::size_t size) : size_(size) {
  void* const pages =
      mmap(nullptr, size, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
  if (pages == MAP_FAILED) Refuse("there is no memory to map the image");
  data_ = static_cast<unsigned char*>(pages);
  ++livingMappings;
}

Mapping::~Mapping() {
  munmap(data_, size_);
  --livingMappings;
}

std::size_t Mapping::Living() { return livingMappings; }

void Mapping::Protect(std::size_t offset, std::size_t length, int rights) const {
  const std::size_t rounded = RoundUp(static_cast<std::uint32_t>(length), kPage);
  if (mprotect(data_ + offset, rounded, rights) != 0) {
    Refuse(std::string("a section can't get its rights: ") + std::strerror(errno));
  }
}

std::vector<unsigned char> ReadFile(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  if (!file) Refuse(path + " can't be opened: " + std::strerror(errno));
  std::vector<unsigned char> bytes;
  char block[65536];
  while (file.read(block, sizeof block), file.gcount() > 0) {
    bytes.insert(bytes.end(), block, block + file.gcount());
  }
  if (file.bad()) Refuse(path + " can't be read: " + std::strerror(errno));
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

Module::Module(std::span<const unsigned char> bytes, const ImportResolver& resolve,
               EntryCalls entryCalls, Kind kind)
    : image_(ReadHeaders(View(bytes, "file"), kind).optional.imageSize) {
  const View file(bytes, "file");
  const Headers headers = ReadHeaders(file, kind);
  const View view(image_.bytes(), "image");
  entry_ = headers.optional.entry;
  const bool needsNoEntry = entry_ == 0 && kind == Kind::kDll;
  Require(needsNoEntry || IsInCode(entry_, headers), "the module entry lies outside the code");
  CopySections(file, headers, image_);
  Relocate(view, headers, image_);
  BindImports(view, headers, image_, resolve);
  ordinalBase_ = ReadExports(view, headers, functions_, names_);
  for (const auto& section : headers.sections) {
    const std::string name(section.name, strnlen(section.name, sizeof section.name));
    sections_[name] = {image_.data() + section.rva, section.virtualSize};
  }
  ProtectSections(headers, image_);
  if (entryCalls == EntryCalls::kSkip || kind == Kind::kProgram) return;
  if (!CallEntry(handle(), DLL_PROCESS_ATTACH)) {
    CallEntry(handle(), DLL_PROCESS_DETACH);  // as the platform does after a refusal
    Refuse("the module entry refused the load");
  }
  attached_ = true;
}

Module::~Module() {
  if (attached_) CallEntry(handle(), DLL_PROCESS_DETACH);
}

void* Module::Find(std::string_view name) const {
  const auto found = names_.find(name);
  return found == names_.end() || found->second == 0 ? nullptr : image_.data() + found->second;
}

void* Module::Find(unsigned ordinal) const {
  const unsigned index = ordinal - ordinalBase_;
  if (index >= functions_.size() || functions_[index] == 0) return nullptr;
  return image_.data() + functions_[index];
}

BOOL Module::CallEntry(HMODULE handle, DWORD reason) const {
  if (entry_ == 0) return TRUE;
  using Entry = BOOL(UT_API*)(HMODULE, DWORD, LPVOID);
  return reinterpret_cast<Entry>(image_.data() + entry_)(handle, reason, nullptr);
}

DWORD Module::Run() const {
  using Entry = DWORD(UT_API*)();
  return reinterpret_cast<Entry>(image_.data() + entry_)();
}

std::span<const unsigned char> Module::FindSection(std::string_view name) const {
  const auto found = sections_.find(name);
  return found == sections_.end() ? std::span<const unsigned char>() : found->second;
}

}  // namespace host
