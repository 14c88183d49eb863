// Memory that ends or begins directly at an inaccessible page, so that the first byte touched on
// that side stops the program; what stands on its other side is checked for writes at the end. For
// whatever calls the library with buffers that it must not leave: tests, fuzzers.
#ifndef TESTS_SUPPORT_GUARDED_BUFFER_H
#define TESTS_SUPPORT_GUARDED_BUFFER_H

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <map>
#include <span>
#include <vector>

#include "support/surroundings.h"

namespace test {

inline constexpr unsigned char kPattern = 0xCD;

enum class Guard { kBehind, kInFront };

class GuardedBuffer {
 public:
  // What happens when a written byte is found beside a buffer: the program ends with a message,
  // unless it puts a function of its own here.
  static void (*&OnOverrun())(const char* what) {
    static void (*handler)(const char*) = [](const char* what) {
      std::fprintf(stderr, "%s\n", what);
      std::abort();
    };
    return handler;
  }

  explicit GuardedBuffer(std::size_t size, Guard guard = Guard::kBehind)
      : size_(size), room_((size / kPage + 1) * kPage), pages_(TakePages(room_)) {
    std::memset(pages_ + kPage, kPattern, room_);
    data_ = pages_ + kPage + (guard == Guard::kBehind ? room_ - size : 0);
    std::memset(data_ - ZerosInFront(), 0, ZerosInFront());
  }
  explicit GuardedBuffer(const std::vector<unsigned char>& bytes, Guard guard = Guard::kBehind)
      : GuardedBuffer(bytes.size(), guard) {
    Set(bytes);
  }
  ~GuardedBuffer() {
    constexpr unsigned char kZeros[kZeroBytes] = {};
    auto* zeros = data_ - ZerosInFront();
    if (!IsPattern(pages_ + kPage, zeros) || std::memcmp(zeros, kZeros, ZerosInFront()) != 0) {
      OnOverrun()("a byte before the buffer was written");
    }
    if (!IsPattern(data_ + size_, pages_ + kPage + room_)) {
      OnOverrun()("a byte after the buffer was written");
    }
    Spare(room_).push_back(pages_);
  }
  GuardedBuffer(const GuardedBuffer&) = delete;
  GuardedBuffer& operator=(const GuardedBuffer&) = delete;

  unsigned char* data() { return data_; }
  std::size_t size() const { return size_; }

  template <class T>
  T* As() {
    return reinterpret_cast<T*>(data_);
  }

  void Refill() { std::memset(data_, kPattern, size_); }
  void Set(std::span<const unsigned char> bytes) { std::copy(bytes.begin(), bytes.end(), data_); }

  std::vector<unsigned char> Bytes() { return {data_, data_ + size_}; }
  // Whether everything from an offset on still holds the pattern.
  bool IsUntouched(std::size_t from = 0) { return IsPattern(data_ + from, data_ + size_); }

 private:
  static constexpr std::size_t kPage = 4096;
  static constexpr std::size_t kZeroBytes = 2;

  // What precedes a buffer ends with a zero of either form, which a search that reads
  // more than it was given must not take for one of the buffer's.
  std::size_t ZerosInFront() const {
    return std::min<std::size_t>(kZeroBytes, data_ - (pages_ + kPage));
  }

  static bool IsPattern(const unsigned char* from, const unsigned char* to) {
    // Each byte equals the one after it, and one of them the pattern.
    return from == to || (*from == kPattern && std::memcmp(from, from + 1, to - from - 1) == 0);
  }

  // Pages of earlier buffers, by their room: mapping anew for each would take most of the time.
  static std::vector<unsigned char*>& Spare(std::size_t room) {
    static std::map<std::size_t, std::vector<unsigned char*>> spare;
    return spare[room];
  }

  // An inaccessible page, `room` bytes, and another inaccessible page.
  static unsigned char* TakePages(std::size_t room) {
    auto& spare = Spare(room);
    if (spare.empty()) {
      spare.push_back(ReservePages(room + 2 * kPage));
      OpenPages(spare.back() + kPage, room);
    }
    auto* pages = spare.back();
    spare.pop_back();
    return pages;
  }

  std::size_t size_;
  std::size_t room_;
  unsigned char* pages_;
  unsigned char* data_;
};

}  // namespace test

#endif  // TESTS_SUPPORT_GUARDED_BUFFER_H
