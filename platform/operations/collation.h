// What the platform compares characters as, where that is not themselves.
#ifndef PLATFORM_OPERATIONS_COLLATION_H
#define PLATFORM_OPERATIONS_COLLATION_H

#include <string>

namespace host {

// The units that a unit counts as: itself, several (the letters of a ligature, a letter and its
// accent), or none.
std::u16string Spelled(char16_t unit);

char16_t UpperCase(char16_t unit);

}  // namespace host

#endif  // PLATFORM_OPERATIONS_COLLATION_H
