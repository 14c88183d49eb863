// What a code page stores for a character that it lacks: the nearest of its own.
#ifndef PLATFORM_OPERATIONS_BEST_FIT_H
#define PLATFORM_OPERATIONS_BEST_FIT_H

#include <string>
#include <string_view>

namespace host {

// The bytes for a unit that the set, named as iconv names it, has not; empty if nothing is near.
std::string_view BestFit(std::string_view charset, char16_t unit);

// Whether iconv knows a counterpart in the set where the platform has none.
bool IsLacking(std::string_view charset, char16_t unit);

}  // namespace host

#endif  // PLATFORM_OPERATIONS_BEST_FIT_H
