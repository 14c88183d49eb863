// An image in memory: its pages, with the sections of a file at their places.
#ifndef PLATFORM_LOADER_IMAGE_H
#define PLATFORM_LOADER_IMAGE_H

#include <cstddef>
#include <span>

#include "pe_file.h"

namespace host {

// The pages of a mapped image.
class Mapping {
 public:
  explicit Mapping(std::size_t size);
  ~Mapping();
  Mapping(const Mapping&) = delete;
  Mapping& operator=(const Mapping&) = delete;

  unsigned char* data() const { return data_; }
  std::size_t size() const { return size_; }
  pe::View view() const { return {{data_, size_}, "image"}; }

  // How many images are mapped at present.
  static std::size_t Living();

  // Gives the pages of a range the rights PROT_READ, PROT_WRITE, PROT_EXEC.
  void Protect(std::size_t offset, std::size_t length, int rights) const;

 private:
  unsigned char* data_;
  std::size_t size_;
};

void CopySections(const pe::View& file, const pe::Headers& headers, const Mapping& image);

// Adapts the addresses in the image to where it is.
void Relocate(const pe::Headers& headers, const Mapping& image);

// Gives each page the rights of its section.
void ProtectSections(const pe::Headers& headers, const Mapping& image);

}  // namespace host

#endif  // PLATFORM_LOADER_IMAGE_H
