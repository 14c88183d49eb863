// The registry in a file, in the text form in which the platform exports keys. Read are
// "Windows Registry Editor Version 5.00", in UTF-16LE with its mark or in UTF-8, and "REGEDIT4", in
// the active code page; written is REGEDIT4, which keeps every byte of names and data.
//
// A file written here has a mark at its end, without which it is refused. A file that another
// program wrote has none: if it was cut at the end of a line, nobody can tell.
//
//   host::RegistryFile file("settings.reg");  // a missing file is an empty registry
//   ...
//   file.Save();
#ifndef PLATFORM_OPERATIONS_REGISTRY_FILE_H
#define PLATFORM_OPERATIONS_REGISTRY_FILE_H

#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>

#include "atomic_file.h"
#include "registry.h"

namespace host {

// Why a file was refused or couldn't be written: "settings.reg:12: the text has no end".
class RegistryFileError : public std::runtime_error {
 public:
  RegistryFileError(unsigned line, const std::string& reason)
      : std::runtime_error(reason), line_(line) {}

  // From 1; 0 if no line of the file is at fault.
  unsigned line() const { return line_; }

 private:
  unsigned line_;
};

// Larger files, and files with more keys, are refused.
inline constexpr std::size_t kMaxRegistryFileSize = 4u << 20;
inline constexpr std::size_t kMaxRegistryFileKeys = 65536;

// Reads the content of a file. Nothing in it is trusted; the errors don't name the file.
std::shared_ptr<RegistryKey> ParseRegistry(std::string_view content);

// Writes such a content, and reads it back: what can't be loaded again as it was is refused. That
// is a name that is no text of the active code page, one of a key with a control character, and
// more than a file may hold.
std::string FormatRegistry(const RegistryKey& registry);

// Binds the registry to a file.
class RegistryFile {
 public:
  // Loads the file over the registry. One that can't be read, is damaged or could not be saved
  // again, since the written form may be longer, is refused with a RegistryFileError; file and
  // registry stay as they were.
  explicit RegistryFile(std::string path);

  // Puts the registry into the file, as AtomicFile::Replace() does it: a crash leaves the old file
  // or the new one. Throws a RegistryFileError, also if another process changed the file since it
  // was loaded or saved here; its changes are had by loading the file anew. No other operation on
  // the registry may run meanwhile.
  void Save();

 private:
  AtomicFile file_;
};

}  // namespace host

#endif  // PLATFORM_OPERATIONS_REGISTRY_FILE_H
