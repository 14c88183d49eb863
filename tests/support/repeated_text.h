// Strings of gigabytes in a few megabytes of memory: one memory file, mapped over and over.
#ifndef TESTS_SUPPORT_REPEATED_TEXT_H
#define TESTS_SUPPORT_REPEATED_TEXT_H

#include <gtest/gtest.h>
#include <sys/mman.h>
#include <unistd.h>

#include <cstring>

namespace test {

// The longest such string, in bytes.
inline constexpr std::size_t kLongest = sizeof(void*) == 4 ? 0x80100000 : 0x100100000;

// The last `size` bytes of a string of the letter a, which two zero units of either form follow.
inline char* RepeatedText(std::size_t size) {
  constexpr std::size_t kFile = 1 << 20;
  static char* const start = [] {
    const int file = memfd_create("text", 0);
    EXPECT_EQ(ftruncate(file, kFile), 0);
    void* pages = mmap(nullptr, kLongest + kFile, PROT_READ, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    EXPECT_NE(pages, MAP_FAILED);
    for (std::size_t at = 0; at < kLongest; at += kFile) {
      EXPECT_NE(mmap(static_cast<char*>(pages) + at, kFile, PROT_READ | PROT_WRITE,
                     MAP_SHARED | MAP_FIXED, file, 0),
                MAP_FAILED);
    }
    close(file);
    return static_cast<char*>(std::memset(pages, 'a', kFile));
  }();
  return start + kLongest - size;
}

}  // namespace test

#endif  // TESTS_SUPPORT_REPEATED_TEXT_H
