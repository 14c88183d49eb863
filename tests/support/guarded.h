// Guarded buffers for tests, and strings in them.
#ifndef TESTS_SUPPORT_GUARDED_H
#define TESTS_SUPPORT_GUARDED_H

#include <gtest/gtest.h>

#include <string>

#include "support/guarded_buffer.h"

namespace test {

// The bytes of a string of either form, with `terminators` zero units behind it.
template <class Char>
std::vector<unsigned char> BytesOf(const std::basic_string<Char>& text,
                                   std::size_t terminators = 1) {
  const auto* start = reinterpret_cast<const unsigned char*>(text.data());
  std::vector<unsigned char> bytes(start, start + text.size() * sizeof(Char));
  bytes.resize(bytes.size() + terminators * sizeof(Char));
  return bytes;
}

// A writable string whose terminator is the last unit in front of an inaccessible page, or whose
// first unit is the first one behind it.
template <class Char>
class GuardedText : public GuardedBuffer {
 public:
  explicit GuardedText(const std::basic_string<Char>& text, Guard guard = Guard::kBehind)
      : GuardedBuffer(BytesOf(text), guard) {}
  Char* get() { return As<Char>(); }
};

}  // namespace test

#endif  // TESTS_SUPPORT_GUARDED_H
