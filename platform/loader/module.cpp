#include "module.h"

#include <cstring>

namespace host {
namespace {

// Fills `functions` by ordinal and `names`; gives the ordinal base.
unsigned ReadExports(const pe::View& view, const pe::Headers& headers,
                     std::vector<std::uint32_t>& functions,
                     std::map<std::string, std::uint32_t, std::less<>>& names) {
  const auto directory = headers.At(pe::kExports);
  if (directory.rva == 0) return 0;
  Require(directory.size >= sizeof(pe::ExportDirectory), "the export directory is too small");
  const auto table = view.At<pe::ExportDirectory>(directory.rva, "the export directory");
  Require(table.functionCount <= 0x10000 && table.nameCount <= 0x10000,
          "the export table has too many entries");
  for (std::uint32_t i = 0; i < table.functionCount; ++i) {
    const auto rva = view.At<std::uint32_t>(table.functions + std::size_t{4} * i, "an export");
    Require(rva == 0 || rva - directory.rva >= directory.size, "an export is a forwarder");
    Require(rva == 0 || pe::IsInCode(rva, headers), "an export lies outside the code");
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

// The functions whose frames the platform can tell stand in order, each with its data. There are
// such tables at 64 bits alone.
void CheckUnwindTable(const pe::View& view, const pe::Headers& headers) {
  const auto directory = headers.At(pe::kExceptions);
  Require(directory.size % sizeof(pe::RuntimeFunction) == 0, "the unwind table has a wrong size");
  std::uint32_t last = 0;
  for (std::size_t at = 0; at < directory.size; at += sizeof(pe::RuntimeFunction)) {
    const auto function = view.At<pe::RuntimeFunction>(directory.rva + at, "the unwind table");
    Require(last <= function.begin && function.begin < function.end,
            "the unwind table is unsorted");
    Require(pe::IsInCode(function.begin, headers) && pe::IsInCode(function.end - 1, headers),
            "an unwind table's function lies outside the code");
    last = function.end;
    const auto info = view.At<pe::UnwindInfo>(function.unwindInfo, "an unwind record");
    const std::size_t size = sizeof info + 2 * std::size_t{info.codeCount};
    Require(pe::IsInData(function.unwindInfo, size, headers),
            "an unwind record lies outside the data");
    Require(info.versionAndFlags == 1, "an unwind record has an unknown version or a handler");
  }
}

}  // namespace

Module::Module(std::span<const unsigned char> bytes, const ImportResolver& resolve,
               EntryCalls entryCalls, Kind kind)
    : image_(pe::ReadHeaders({bytes, "file"}, kind).optional.imageSize) {
  const pe::View file(bytes, "file");
  const pe::Headers headers = pe::ReadHeaders(file, kind);
  entry_ = headers.optional.entry;
  const bool needsNoEntry = entry_ == 0 && kind == Kind::kDll;
  Require(needsNoEntry || pe::IsInCode(entry_, headers), "the module entry lies outside the code");
  CopySections(file, headers, image_);
  Relocate(headers, image_);
  BindImports(headers, image_, resolve);
  if (pe::kIs64Bit) CheckUnwindTable(image_.view(), headers);
  ordinalBase_ = ReadExports(image_.view(), headers, functions_, names_);
  for (const auto& section : headers.sections) {
    const std::string name(section.name, strnlen(section.name, sizeof section.name));
    sections_[name] = {image_.data() + section.rva, section.virtualSize};
  }
  ProtectSections(headers, image_);
  if (entryCalls == EntryCalls::kSkip || kind == Kind::kProgram) return;
  if (!CallEntry(handle(), DLL_PROCESS_ATTACH)) {
    CallEntry(handle(), DLL_PROCESS_DETACH);  // as the platform does after a refusal
    throw ModuleError("the module entry refused the load");
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
