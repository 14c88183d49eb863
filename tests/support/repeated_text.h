// A string of gigabytes in a few megabytes of memory: one memory file, mapped over and over.
#ifndef TESTS_SUPPORT_REPEATED_TEXT_H
#define TESTS_SUPPORT_REPEATED_TEXT_H

#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <cstring>
#include <stdexcept>

namespace test {

class RepeatedText {
 public:
  // So many bytes of the letter a, and two zero units of either form.
  explicit RepeatedText(std::size_t size)
      : mapped_((size / kFile + 1) * kFile), file_(memfd_create("text", 0)) {
    Require(file_ >= 0 && ftruncate(file_, kFile) == 0);
    void* reserved = mmap(nullptr, mapped_ + kFile, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    Require(reserved != MAP_FAILED);
    start_ = static_cast<char*>(reserved);
    for (std::size_t at = 0; at < mapped_ - kFile; at += kFile) Map(at, MAP_SHARED, file_);
    std::memset(start_, 'a', kFile);
    Map(mapped_ - kFile, MAP_PRIVATE | MAP_ANONYMOUS, -1);
    std::fill_n(start_ + mapped_ - kFile, size % kFile, 'a');
  }
  ~RepeatedText() {
    munmap(start_, mapped_ + kFile);
    close(file_);
  }
  RepeatedText(const RepeatedText&) = delete;
  RepeatedText& operator=(const RepeatedText&) = delete;

  template <class Char>
  Char* As() const {
    return reinterpret_cast<Char*>(start_);
  }

 private:
  static constexpr std::size_t kFile = 4 << 20;

  static void Require(bool done) {
    if (!done) throw std::runtime_error("there is no address space for a text of gigabytes");
  }
  void Map(std::size_t at, int flags, int file) {
    Require(mmap(start_ + at, kFile, PROT_READ | PROT_WRITE, flags | MAP_FIXED, file, 0) !=
            MAP_FAILED);
  }

  std::size_t mapped_;
  int file_;
  char* start_ = nullptr;
};

}  // namespace test

#endif  // TESTS_SUPPORT_REPEATED_TEXT_H
