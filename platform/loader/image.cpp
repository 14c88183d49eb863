#include "image.h"

#include <sys/mman.h>

#include <algorithm>
#include <cerrno>

namespace host {
namespace {

std::size_t living;

int RightsOf(const pe::SectionHeader& section) {
  int rights = PROT_NONE;
  if (section.characteristics & pe::kSectionRead) rights |= PROT_READ;
  if (section.characteristics & pe::kSectionWrite) rights |= PROT_WRITE;
  if (section.characteristics & pe::kSectionExecute) rights |= PROT_EXEC;
  return rights;
}

}  // namespace

Mapping::Mapping(std::size_t size) : size_(size) {
  void* const pages =
      mmap(nullptr, size, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
  if (pages == MAP_FAILED) throw ModuleError("there is no memory to map the image");
  data_ = static_cast<unsigned char*>(pages);
  ++living;
}

Mapping::~Mapping() {
  munmap(data_, size_);
  --living;
}

std::size_t Mapping::Living() { return living; }

void Mapping::Protect(std::size_t offset, std::size_t length, int rights) const {
  const std::size_t rounded = (length + pe::kPage - 1) / pe::kPage * pe::kPage;
  if (mprotect(data_ + offset, rounded, rights) != 0) {
    throw ModuleError(std::string("a section can't get its rights: ") + std::strerror(errno));
  }
}

void CopySections(const pe::View& file, const pe::Headers& headers, const Mapping& image) {
  std::memcpy(image.data(), file.Range(0, headers.optional.headersSize, "the headers"),
              headers.optional.headersSize);
  for (const auto& section : headers.sections) {
    // What the file holds past the virtual size only fills its last block.
    const auto size = section.virtualSize == 0 ? section.fileSize
                                               : std::min(section.virtualSize, section.fileSize);
    std::memcpy(image.data() + section.rva,
                file.Range(section.fileOffset, size, "a section's data"), size);
  }
}

void Relocate(const pe::Headers& headers, const Mapping& image) {
  const pe::View view = image.view();
  const pe::Word delta = reinterpret_cast<pe::Word>(image.data()) - headers.optional.imageBase;
  const auto directory = headers.At(pe::kRelocations);
  // 64-bit code may hold no address: it reaches everything relative to itself.
  Require(directory.size != 0 || delta == 0 || pe::kIs64Bit, "the image has no relocations");
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
      Require(type == pe::kRelocationOfWord, "a relocation has an unknown type");
      const std::uint64_t target = std::uint64_t{block.page} + (entry & 0xFFF);
      Require(target >= headers.optional.headersSize && target <= view.size() - sizeof(pe::Word),
              "a relocation's target lies outside the image");
      const auto value = view.At<pe::Word>(static_cast<std::size_t>(target), "") + delta;
      std::memcpy(image.data() + target, &value, sizeof value);
    }
    done += block.size;
  }
}

void ProtectSections(const pe::Headers& headers, const Mapping& image) {
  image.Protect(0, image.size(), PROT_NONE);
  image.Protect(0, headers.optional.headersSize, PROT_READ);
  for (const auto& section : headers.sections) {
    image.Protect(section.rva, std::max(section.virtualSize, section.fileSize), RightsOf(section));
  }
}

}  // namespace host
