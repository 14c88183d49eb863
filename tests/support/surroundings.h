// What the tests ask of the system under them, beside the controls of the platform layer. There are
// two implementations of both: the platform layer on Linux, and Windows, where a control that a
// program can't have ends the test as skipped.
#ifndef TESTS_SUPPORT_SURROUNDINGS_H
#define TESTS_SUPPORT_SURROUNDINGS_H

#include <cstddef>

namespace test {

// To be called first by a test that only the platform layer has all for: on Windows it ends as
// skipped, and `need` says why.
void StayOnHostLayer(const char* need);

// Pages that can't be touched, whole ones of 4,096 bytes; and opens some of them.
unsigned char* ReservePages(std::size_t size);
void OpenPages(unsigned char* pages, std::size_t size);

}  // namespace test

#endif  // TESTS_SUPPORT_SURROUNDINGS_H
