// A loader for Windows DLLs and programs in a Linux process of their width, 32 or 64 bits.
#ifndef PLATFORM_LOADER_MODULE_H
#define PLATFORM_LOADER_MODULE_H

#include <win32.h>

#include <cstdint>
#include <map>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "image.h"
#include "imports.h"

namespace host {

// A loaded DLL or program. Nothing in the file is trusted: every offset, size and count is checked
// before use, and what can't be loaded gives a ModuleError. Each page has the rights of its
// section.
class Module {
 public:
  enum class EntryCalls { kMake, kSkip };
  using Kind = ImageKind;

  // Maps the image, relocates it and binds its imports. The entry of a DLL is called with
  // DLL_PROCESS_ATTACH now and with DLL_PROCESS_DETACH at the end, unless that is to be skipped;
  // that of a program waits for Run().
  explicit Module(std::span<const unsigned char> bytes, const ImportResolver& resolve,
                  EntryCalls entryCalls = EntryCalls::kMake, Kind kind = Kind::kDll);
  ~Module();
  Module(const Module&) = delete;
  Module& operator=(const Module&) = delete;

  // The address of an export; NULL if there is none, as for an ordinal in a hole.
  void* Find(std::string_view name) const;
  void* Find(unsigned ordinal) const;

  // Calls the module entry, as the platform does at a notification.
  BOOL CallEntry(HMODULE handle, DWORD reason) const;

  // Calls the entry of a program, which returns the exit code.
  DWORD Run() const;

  HMODULE handle() const { return reinterpret_cast<HMODULE>(image_.data()); }

  // The mapped bytes of a section; none if there is no such section.
  std::span<const unsigned char> FindSection(std::string_view name) const;

 private:
  Mapping image_;
  std::uint32_t entry_;  // 0: the image has none
  unsigned ordinalBase_ = 0;
  std::vector<std::uint32_t> functions_;  // by ordinal less the base; 0 is a hole
  std::map<std::string, std::uint32_t, std::less<>> names_;
  std::map<std::string, std::span<const unsigned char>, std::less<>> sections_;
  bool attached_ = false;
};

}  // namespace host

#endif  // PLATFORM_LOADER_MODULE_H
