// Memory that ends directly at an inaccessible page, so that the first byte read or written behind
// it stops the test; what stands in front of it is checked at the end.
#ifndef TESTS_SUPPORT_GUARDED_H
#define TESTS_SUPPORT_GUARDED_H

#include <gtest/gtest.h>
#include <sys/mman.h>

#include <algorithm>
#include <cstring>
#include <span>
#include <string>
#include <vector>

namespace test {

inline constexpr unsigned char kPattern = 0xCD;

class GuardedBuffer {
 public:
  explicit GuardedBuffer(std::size_t size)
      : size_(size), front_((size / kPage + 1) * kPage - size) {
    mapped_ = front_ + size + kPage;
    void* pages =
        mmap(nullptr, mapped_, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (pages == MAP_FAILED) std::abort();
    start_ = static_cast<unsigned char*>(pages);
    mprotect(start_ + front_ + size, kPage, PROT_NONE);
    std::memset(start_, kPattern, front_ + size);
  }
  ~GuardedBuffer() {
    EXPECT_TRUE(IsPattern(start_, data())) << "a byte in front of the buffer was written";
    munmap(start_, mapped_);
  }
  GuardedBuffer(const GuardedBuffer&) = delete;
  GuardedBuffer& operator=(const GuardedBuffer&) = delete;

  unsigned char* data() { return start_ + front_; }
  std::size_t size() const { return size_; }

  template <class T>
  T* As() {
    return reinterpret_cast<T*>(data());
  }

  void Refill() { std::memset(data(), kPattern, size_); }
  void Set(std::span<const unsigned char> bytes) { std::copy(bytes.begin(), bytes.end(), data()); }

  std::vector<unsigned char> Bytes() { return {data(), data() + size_}; }
  // Whether everything from an offset on still holds the pattern.
  bool IsUntouched(std::size_t from = 0) { return IsPattern(data() + from, data() + size_); }

 private:
  static constexpr std::size_t kPage = 4096;

  static bool IsPattern(const unsigned char* from, const unsigned char* to) {
    return std::all_of(from, to, [](unsigned char byte) { return byte == kPattern; });
  }

  std::size_t size_;
  std::size_t front_;
  std::size_t mapped_;
  unsigned char* start_;
};

// The bytes of a string of either form, with `terminators` zero units behind it.
template <class Char>
std::vector<unsigned char> BytesOf(const std::basic_string<Char>& text,
                                   std::size_t terminators = 1) {
  const auto* start = reinterpret_cast<const unsigned char*>(text.data());
  std::vector<unsigned char> bytes(start, start + text.size() * sizeof(Char));
  bytes.resize(bytes.size() + terminators * sizeof(Char));
  return bytes;
}

// A writable string whose terminator is the last unit in front of an inaccessible page.
template <class Char>
class GuardedText : public GuardedBuffer {
 public:
  explicit GuardedText(const std::basic_string<Char>& text)
      : GuardedBuffer((text.size() + 1) * sizeof(Char)) {
    Set(BytesOf(text));
  }
  Char* get() { return As<Char>(); }
};

}  // namespace test

#endif  // TESTS_SUPPORT_GUARDED_H
