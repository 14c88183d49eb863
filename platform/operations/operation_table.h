// The operations of win32.h by the names that an image imports them under.
#ifndef PLATFORM_OPERATIONS_OPERATION_TABLE_H
#define PLATFORM_OPERATIONS_OPERATION_TABLE_H

#include <string_view>

namespace host {

// The operation that a system module exports; NULL if there is none. The name of the module counts
// without regard to case.
void* FindPlatformOperation(std::string_view module, std::string_view name);

}  // namespace host

#endif  // PLATFORM_OPERATIONS_OPERATION_TABLE_H
