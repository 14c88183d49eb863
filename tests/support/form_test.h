// The memory of checks on buffers of a form: a block of any size that ends at an inaccessible page,
// without a new mapping for each.
#ifndef TESTS_SUPPORT_FORM_TEST_H
#define TESTS_SUPPORT_FORM_TEST_H

#include "support/forms.h"
#include "support/guarded.h"

namespace test {

template <class Form>
class GuardedBlock {
 public:
  using Char = typename Form::Char;
  using String = std::basic_string<Char>;
  static constexpr DWORD kUnit = sizeof(Char);

  // Places a block of at most 512 bytes; two zeros precede it, and the pattern those.
  Char* Place(const Bytes& block) {
    memory_.Refill();
    std::fill_n(Start(block) - kZeros, kZeros, 0);
    std::copy(block.begin(), block.end(), Start(block));
    return reinterpret_cast<Char*>(Start(block));
  }
  // Whether the block that was placed is this one now, and nothing before it was written.
  testing::AssertionResult Contains(const Bytes& block) {
    const auto before = Start(block) - kZeros - memory_.data();
    const auto expected = Over(Bytes(before + kZeros), Pattern(before));
    if (std::equal(expected.begin(), expected.end(), memory_.data())) {
      return SameBytes({Start(block), memory_.data() + memory_.size()}, block);
    }
    return testing::AssertionFailure() << "a byte before the block was written";
  }

 private:
  static constexpr int kZeros = 2;

  unsigned char* Start(const Bytes& block) {
    return memory_.data() + memory_.size() - block.size();
  }

  GuardedBuffer memory_{512 + kZeros};
};

}  // namespace test

#endif  // TESTS_SUPPORT_FORM_TEST_H
