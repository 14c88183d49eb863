// The tests' surroundings on Linux.
#include <sys/mman.h>
#include <unistd.h>

#include <cstdlib>
#include <cstring>

#include "support/repeated_text.h"
#include "support/surroundings.h"

namespace test {

void StayOnHostLayer(const char*) {}

namespace {

unsigned char* Map(void* at, std::size_t size, int rights, int flags, int file) {
  void* const pages = mmap(at, size, rights, flags, file, 0);
  if (pages == MAP_FAILED) std::abort();
  return static_cast<unsigned char*>(pages);
}

}  // namespace

unsigned char* ReservePages(std::size_t size) {
  return Map(nullptr, size, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS, -1);
}

void OpenPages(unsigned char* pages, std::size_t size) {
  if (mprotect(pages, size, PROT_READ | PROT_WRITE) != 0) std::abort();
}

// One memory file, mapped over and over.
char* RepeatedText(std::size_t size) {
  constexpr std::size_t kFile = 1 << 20;
  static char* const start = [] {
    const int file = memfd_create("text", 0);
    if (ftruncate(file, kFile) != 0) std::abort();
    auto* const pages = Map(nullptr, kLongest + kFile, PROT_READ, MAP_PRIVATE | MAP_ANONYMOUS, -1);
    for (std::size_t at = 0; at < kLongest; at += kFile) {
      Map(pages + at, kFile, PROT_READ | PROT_WRITE, MAP_SHARED | MAP_FIXED, file);
    }
    close(file);
    return static_cast<char*>(std::memset(pages, 'a', kFile));
  }();
  return start + kLongest - size;
}

}  // namespace test
