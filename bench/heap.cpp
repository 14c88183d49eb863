// The C library's allocators with a counter in front of them, and LocalAlloc straight on top: the
// platform layer's own keeps every block that was freed, to look for misuse, and would be measured
// along with the library. The linker puts these two in its place (--wrap).
#include "heap.h"

#include <win32.h>

#include <cstdlib>

namespace {

unsigned long allocations;

}  // namespace

unsigned long bench::Allocations() { return allocations; }

extern "C" {

void* __libc_malloc(size_t size);
void* __libc_calloc(size_t count, size_t size);
void* __libc_realloc(void* block, size_t size);
void __libc_free(void* block);

void* malloc(size_t size) {
  ++allocations;
  return __libc_malloc(size);
}

void* calloc(size_t count, size_t size) {
  ++allocations;
  return __libc_calloc(count, size);
}

void* realloc(void* block, size_t size) {
  ++allocations;
  return __libc_realloc(block, size);
}

void free(void* block) { __libc_free(block); }

__attribute__((force_align_arg_pointer)) HANDLE UT_API __wrap_LocalAlloc(UINT uFlags,
                                                                         DWORD cbBlock) {
  return uFlags & LMEM_ZEROINIT ? calloc(1, cbBlock) : malloc(cbBlock);
}

__attribute__((force_align_arg_pointer)) HANDLE UT_API __wrap_LocalFree(HANDLE hBlock) {
  free(hBlock);
  return nullptr;
}

}  // extern "C"
