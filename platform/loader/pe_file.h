// The PE file format: the headers of a file, and its bytes, none of which is trusted.
#ifndef PLATFORM_LOADER_PE_FILE_H
#define PLATFORM_LOADER_PE_FILE_H

#include <cstdint>
#include <cstring>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "pe_format.h"

namespace host {

// What is wrong with a file that can't be loaded.
struct ModuleError : std::runtime_error {
  using std::runtime_error::runtime_error;
};

// Throws a ModuleError unless the condition holds.
inline void Require(bool holds, const char* otherwise) {
  if (!holds) throw ModuleError(otherwise);
}

enum class ImageKind { kDll, kProgram };

// Reads a whole file; throws ModuleError if that can't be done.
std::vector<unsigned char> ReadFile(const std::string& path);

// Adds up a file as the checksum in its optional header does, that field itself left out.
std::uint32_t ImageChecksum(std::span<const unsigned char> file, std::size_t checksumOffset);

}  // namespace host

namespace host::pe {

inline constexpr std::uint32_t kPage = 4096;

// Bytes that are read only after a check that they are there: a file, or a mapped image, whose
// offsets are then RVAs.
class View {
 public:
  View(std::span<const unsigned char> bytes, const char* kind) : bytes_(bytes), kind_(kind) {}

  std::size_t size() const { return bytes_.size(); }

  // The bytes of a range, the value or the string at an offset; `what` names them in the error.
  const unsigned char* Range(std::size_t offset, std::size_t length, const char* what) const;
  template <class T>
  T At(std::size_t offset, const char* what) const {
    T value;
    std::memcpy(&value, Range(offset, sizeof value, what), sizeof value);
    return value;
  }
  std::string_view Text(std::size_t offset, const char* what) const;

 private:
  std::span<const unsigned char> bytes_;
  const char* kind_;
};

struct Headers {
  FileHeader file;
  OptionalHeader optional;
  std::vector<SectionHeader> sections;

  DataDirectory At(Directory index) const { return optional.directories[index]; }
};

// The headers of a file, once everything in them was checked.
Headers ReadHeaders(const View& file, ImageKind kind);

// Whether an RVA lies in a section of code, and a range in one section that holds none.
bool IsInCode(std::uint32_t rva, const Headers& headers);
bool IsInData(std::size_t rva, std::size_t length, const Headers& headers);

}  // namespace host::pe

#endif  // PLATFORM_LOADER_PE_FILE_H
