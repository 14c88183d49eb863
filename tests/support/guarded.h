// Guarded buffers for tests, strings in them, and the comparison of bytes.
#ifndef TESTS_SUPPORT_GUARDED_H
#define TESTS_SUPPORT_GUARDED_H

#include <gtest/gtest.h>

#include <string>

#include "support/guarded_buffer.h"

namespace test {

using Bytes = std::vector<unsigned char>;

inline Bytes Pattern(std::size_t size) { return Bytes(size, kPattern); }

// Bytes with others laid over their front, as long as the longer of the two.
inline Bytes Over(Bytes below, const Bytes& above) {
  below.resize(std::max(below.size(), above.size()));
  std::copy(above.begin(), above.end(), below.begin());
  return below;
}

// The bytes of a string of either form, followed by `terminators` zero units.
template <class Char>
Bytes BytesOf(const std::basic_string<Char>& text, std::size_t terminators = 1) {
  const auto* start = reinterpret_cast<const unsigned char*>(text.data());
  Bytes bytes(start, start + text.size() * sizeof(Char));
  bytes.resize(bytes.size() + terminators * sizeof(Char));
  return bytes;
}

// Up to 32 bytes around a place, in hexadecimal.
inline std::string Hex(const Bytes& bytes, std::size_t place) {
  std::string text;
  char digits[3];
  for (auto i = place - std::min<std::size_t>(place, 16); i < bytes.size() && i < place + 16; ++i) {
    std::snprintf(digits, sizeof digits, "%02X", bytes[i]);
    text += (i == place ? '[' : i == place + 1 ? ']' : ' ') + std::string(digits);
  }
  return text;
}

// Whether two blocks are the same; if not, the result says where they begin to differ.
inline testing::AssertionResult SameBytes(const Bytes& actual, const Bytes& expected) {
  if (actual == expected) return testing::AssertionSuccess();
  std::size_t at = 0;
  while (at < actual.size() && at < expected.size() && actual[at] == expected[at]) ++at;
  return testing::AssertionFailure()
         << "byte " << at << " of " << actual.size() << " (of " << expected.size()
         << " expected) differs\n  actual:   " << Hex(actual, at)
         << "\n  expected: " << Hex(expected, at) << '\n';
}

// A writable string whose terminator is the last unit before an inaccessible page, or whose first
// unit is the first one after it.
template <class Char>
class GuardedText : public GuardedBuffer {
 public:
  explicit GuardedText(const std::basic_string<Char>& text, Guard guard = Guard::kBehind)
      : GuardedBuffer(BytesOf(text), guard) {}
  Char* get() { return As<Char>(); }
};

}  // namespace test

#endif  // TESTS_SUPPORT_GUARDED_H
