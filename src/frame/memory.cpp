// The three memory functions that the compiler may call behind the sources' back. The product links
// no C runtime, so they stand here; a native build takes them from the C library.
#if defined(_WIN32)

#include <stddef.h>

extern "C" {

void* memcpy(void* dest, const void* source, size_t count) {
  void* const result = dest;
  asm volatile("rep movsb" : "+D"(dest), "+S"(source), "+c"(count) : : "memory");
  return result;
}

void* memmove(void* dest, const void* source, size_t count) {
  auto* to = static_cast<char*>(dest);
  auto* from = static_cast<const char*>(source);
  // One unsigned comparison: a destination below the source, or behind its end, copies upward.
  if (reinterpret_cast<size_t>(to) - reinterpret_cast<size_t>(from) >= count) {
    return memcpy(dest, source, count);
  }
  to += count - 1;
  from += count - 1;
  asm volatile("std; rep movsb; cld" : "+D"(to), "+S"(from), "+c"(count) : : "memory", "cc");
  return dest;
}

void* memset(void* dest, int value, size_t count) {
  void* const result = dest;
  asm volatile("rep stosb" : "+D"(dest), "+c"(count) : "a"(value) : "memory");
  return result;
}

}  // extern "C"

#endif
