// Conversion between character sets, by the names that iconv knows them by. A character that is not
// valid in its set, or that has neither a counterpart nor a best fit in the other one, is replaced.
#ifndef PLATFORM_OPERATIONS_CONVERSION_H
#define PLATFORM_OPERATIONS_CONVERSION_H

#include <cstddef>
#include <string>
#include <string_view>

namespace host {

struct Replacement {
  std::string_view text = "?";  // for a character of wide text
  bool wasUsed = false;
};

// An open conversion. Where iconv knows none between the two sets, the program ends.
class Converter {
 public:
  Converter(const std::string& to, const std::string& from);
  ~Converter();
  Converter(const Converter&) = delete;
  Converter& operator=(const Converter&) = delete;

  // Converts the text up to its first unit that is not valid or has no counterpart, appends the
  // bytes to the result, and gives the number of bytes that were taken.
  std::size_t Convert(std::string_view text, std::string& result) const;

 private:
  void* handle_;
};

std::u16string Widen(std::string_view text, const std::string& charset, Replacement& replacement);
std::string Narrow(std::u16string_view text, const std::string& charset, Replacement& replacement);

// The name of a code page.
std::string CharsetOf(unsigned codePage);

}  // namespace host

#endif  // PLATFORM_OPERATIONS_CONVERSION_H
