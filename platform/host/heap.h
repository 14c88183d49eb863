// The blocks of LocalAlloc, for tests: how many live, and whether LocalFree was misused.
#ifndef PLATFORM_HOST_HEAP_H
#define PLATFORM_HOST_HEAP_H

#include <cstddef>
#include <string>

namespace host {

// Blocks that were allocated and not freed.
std::size_t LivingBlocks();

// What the first wrong free since the last Reset() was; empty if there was none.
std::string HeapError();

}  // namespace host

#endif  // PLATFORM_HOST_HEAP_H
