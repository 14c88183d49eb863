// Conversion between character sets, by the names that iconv knows them by. A unit that is not
// valid in its set, or that has no counterpart in the other one, is replaced.
#ifndef PLATFORM_OPERATIONS_CONVERSION_H
#define PLATFORM_OPERATIONS_CONVERSION_H

#include <string>
#include <string_view>

namespace host {

struct Replacement {
  std::string_view text = "?";  // in the target set; of single-byte characters for wide text
  bool wasUsed = false;
};

std::u16string Widen(std::string_view text, const std::string& charset, Replacement& replacement);
std::string Narrow(std::u16string_view text, const std::string& charset, Replacement& replacement);

// The name of a code page.
std::string CharsetOf(unsigned codePage);

}  // namespace host

#endif  // PLATFORM_OPERATIONS_CONVERSION_H
