// Counts allocations.
#ifndef BENCH_HEAP_H
#define BENCH_HEAP_H

namespace bench {

// Blocks taken so far by malloc, calloc and realloc, and by what is made of them: operator new,
// obstacks, LocalAlloc.
unsigned long Allocations();

}  // namespace bench

#endif  // BENCH_HEAP_H
