#include "imports.h"

#include <cstring>
#include <string>

namespace host {
namespace {

std::string NameOfImport(const pe::View& view, pe::Word lookup) {
  if (lookup & pe::kImportByOrdinal) return "#" + std::to_string(lookup & 0xFFFF);
  return std::string(view.Text(lookup + 2, "an import's name"));
}

void BindModule(const pe::ImportDescriptor& descriptor, const pe::Headers& headers,
                const Mapping& image, const ImportResolver& resolve) {
  const pe::View view = image.view();
  const std::string module(view.Text(descriptor.name, "an imported module's name"));
  Require(descriptor.addressTable % sizeof(pe::Word) == 0, "an import address table is misaligned");
  const std::size_t lookups =
      descriptor.lookupTable != 0 ? descriptor.lookupTable : descriptor.addressTable;
  for (std::size_t at = 0;; at += sizeof(pe::Word)) {
    const auto lookup = view.At<pe::Word>(lookups + at, "an import lookup table");
    Require(lookup != 0 || at != 0, "a module is imported without an operation");
    if (lookup == 0) return;
    const std::string name = NameOfImport(view, lookup);
    void* const address = resolve(module, name);
    if (address == nullptr) throw ModuleError("nothing provides the import " + module + "!" + name);
    Require(pe::IsInData(descriptor.addressTable + at, sizeof address, headers),
            "an import address table lies outside the data");
    std::memcpy(image.data() + descriptor.addressTable + at, &address, sizeof address);
  }
}

}  // namespace

void BindImports(const pe::Headers& headers, const Mapping& image, const ImportResolver& resolve) {
  const pe::View view = image.view();
  const auto directory = headers.At(pe::kImports);
  if (directory.rva == 0) {
    Require(headers.At(pe::kImportAddresses).rva == 0, "the import directory is missing");
    return;
  }
  for (std::size_t at = 0;; at += sizeof(pe::ImportDescriptor)) {
    Require(at + sizeof(pe::ImportDescriptor) <= directory.size, "the import directory has no end");
    const auto descriptor =
        view.At<pe::ImportDescriptor>(directory.rva + at, "the import directory");
    if (descriptor.name == 0 && descriptor.addressTable == 0) return;
    BindModule(descriptor, headers, image, resolve);
  }
}

}  // namespace host
