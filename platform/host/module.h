// A loader for 32-bit Windows DLLs and programs in a 32-bit Linux process.
#ifndef PLATFORM_HOST_MODULE_H
#define PLATFORM_HOST_MODULE_H

#include <win32.h>

#include <cstdint>
#include <functional>
#include <map>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace host {

// What is wrong with a file that can't be loaded.
struct ModuleError : std::runtime_error {
  using std::runtime_error::runtime_error;
};

// Finds the function to bind an import to; NULL if there is none. An import by ordinal has a name
// like "#52".
using ImportResolver = std::function<void*(std::string_view module, std::string_view name)>;

// The resolver that finds the operations of this platform layer which the library may import.
void* FindPlatformOperation(std::string_view module, std::string_view name);

// The same for the operations that programs may import besides.
void* FindProgramOperation(std::string_view module, std::string_view name);

// Whether this is the name of a system module that the platform layer stands in for.
bool IsSystemModule(std::string_view module);

// Reads a whole file; throws ModuleError if that can't be done.
std::vector<unsigned char> ReadFile(const std::string& path);

// Adds up a file as the checksum in its optional header does, that field itself left out.
std::uint32_t ImageChecksum(std::span<const unsigned char> file, std::size_t checksumOffset);

// The pages of a mapped image.
class Mapping {
 public:
  explicit Mapping(std::size_t size);
  ~Mapping();
  Mapping(const Mapping&) = delete;
  Mapping& operator=(const Mapping&) = delete;

  unsigned char* data() const { return data_; }
  std::size_t size() const { return size_; }
  std::span<unsigned char> bytes() const { return {data_, size_}; }

  // How many images are mapped at present.
  static std::size_t Living();

  // Gives the pages of a range the rights PROT_READ, PROT_WRITE, PROT_EXEC.
  void Protect(std::size_t offset, std::size_t length, int rights) const;

 private:
  unsigned char* data_;
  std::size_t size_;
};

// A loaded DLL or program. Nothing in the file is trusted: every offset, size and count is checked
// before use, and what can't be loaded gives a ModuleError. Each page has the rights of its
// section.
class Module {
 public:
  enum class EntryCalls { kMake, kSkip };
  enum class Kind { kDll, kProgram };

  // Maps the image, relocates it and binds its imports. The entry of a DLL is called with
  // DLL_PROCESS_ATTACH now and with DLL_PROCESS_DETACH at the end, unless that is to be skipped;
  // that of a program waits for Run().
  explicit Module(std::span<const unsigned char> bytes,
                  const ImportResolver& resolve = FindPlatformOperation,
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

#endif  // PLATFORM_HOST_MODULE_H
