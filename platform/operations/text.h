// Names without regard to case, by the letters of the active code page.
#ifndef PLATFORM_OPERATIONS_TEXT_H
#define PLATFORM_OPERATIONS_TEXT_H

#include <string>
#include <string_view>

namespace host {

// The name in upper case and UTF-8: two names are the same if this is.
std::string FoldName(std::string_view name);

}  // namespace host

#endif  // PLATFORM_OPERATIONS_TEXT_H
