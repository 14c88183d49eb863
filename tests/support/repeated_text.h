// Strings of gigabytes in a few megabytes of memory.
#ifndef TESTS_SUPPORT_REPEATED_TEXT_H
#define TESTS_SUPPORT_REPEATED_TEXT_H

#include <cstddef>

namespace test {

// The longest such string, in bytes.
inline constexpr std::size_t kLongest = sizeof(void*) == 4 ? 0x80100000 : 0x100100000;

// The last `size` bytes of a string of the letter a, which two zero units of either form follow.
char* RepeatedText(std::size_t size);

}  // namespace test

#endif  // TESTS_SUPPORT_REPEATED_TEXT_H
