// The blocks of LocalAlloc, for tests: how many live, and whether they were misused.
#ifndef PLATFORM_OPERATIONS_HEAP_H
#define PLATFORM_OPERATIONS_HEAP_H

#include <cstddef>
#include <string>

namespace host {

// Blocks that were allocated and not freed.
std::size_t LivingBlocks();

// What the first wrong free since the last Reset() was, or else whether a freed block was written;
// empty if there was neither.
std::string HeapError();

}  // namespace host

#endif  // PLATFORM_OPERATIONS_HEAP_H
