// The ground of checks on buffers of a form: a block of any size directly in front of an
// inaccessible page, without a new mapping for each.
#ifndef TESTS_SUPPORT_FORM_TEST_H
#define TESTS_SUPPORT_FORM_TEST_H

#include "support/forms.h"
#include "support/guarded.h"

namespace test {

using Bytes = std::vector<unsigned char>;

inline Bytes Pattern(std::size_t size) { return Bytes(size, kPattern); }

// Bytes with others laid over their front, as long as the longer of the two.
inline Bytes Over(Bytes below, const Bytes& above) {
  below.resize(std::max(below.size(), above.size()));
  std::copy(above.begin(), above.end(), below.begin());
  return below;
}

template <class Form>
class Ground {
 public:
  using Char = typename Form::Char;
  using String = std::basic_string<Char>;
  static constexpr DWORD kUnit = sizeof(Char);

  // Puts a block of at most 512 bytes; two zeros stand in front of it, and the pattern before them.
  Char* Put(const Bytes& block) {
    memory_.Refill();
    std::fill_n(Start(block) - 2, 2, 0);
    std::copy(block.begin(), block.end(), Start(block));
    return reinterpret_cast<Char*>(Start(block));
  }
  // Whether the block that was put is this one now, and nothing in front of it was written.
  bool Holds(const Bytes& block) {
    auto expected = Pattern(memory_.size() - block.size() - 2);
    expected.resize(expected.size() + 2);
    expected.insert(expected.end(), block.begin(), block.end());
    return memory_.Bytes() == expected;
  }

 private:
  unsigned char* Start(const Bytes& block) {
    return memory_.data() + memory_.size() - block.size();
  }

  GuardedBuffer memory_{514};
};

}  // namespace test

#endif  // TESTS_SUPPORT_FORM_TEST_H
