// Moves of many bytes and fills of any size, in steps of sixteen and a last part that overlaps the
// step before it. Nothing is read or written outside the ranges.
#include "frame/memory.h"

#include <emmintrin.h>

namespace tavkit {
namespace {

constexpr size_t kStep = sizeof(__m128i);

__m128i Load(const BYTE* p) { return _mm_loadu_si128(reinterpret_cast<const __m128i*>(p)); }
void Store(BYTE* p, __m128i bytes) { _mm_storeu_si128(reinterpret_cast<__m128i*>(p), bytes); }

// 32 to 64 bytes, all read before any is written.
void MoveSome(BYTE* to, const BYTE* from, size_t count) {
  const size_t last = count - kStep;
  const __m128i a = Load(from), b = Load(from + kStep);
  const __m128i c = Load(from + last - kStep), d = Load(from + last);
  Store(to, a);
  Store(to + kStep, b);
  Store(to + last - kStep, c);
  Store(to + last, d);
}

// For a target below the source, or clear of it. The end is read while it still is what it was.
void MoveUpward(BYTE* to, const BYTE* from, size_t count) {
  const size_t end = count - kStep;
  const __m128i last = Load(from + end);
#pragma clang loop unroll_count(4)
  for (size_t at = 0; at < end; at += kStep) Store(to + at, Load(from + at));
  Store(to + end, last);
}

// For a target that begins inside the source.
void MoveDownward(BYTE* to, const BYTE* from, size_t count) {
  const __m128i first = Load(from);
#pragma clang loop unroll_count(4)
  for (size_t end = count; end > kStep; end -= kStep) {
    Store(to + end - kStep, Load(from + end - kStep));
  }
  Store(to, first);
}

template <class Part>
void FillEnds(BYTE* to, __m128i bytes, size_t count) {
  const auto part = ReadValue<Part>(&bytes);
  WriteValue(to, part);
  WriteValue(to + count - sizeof(Part), part);
}

void FillFew(BYTE* to, __m128i bytes, size_t count) {
  if (count >= 8) {
    FillEnds<uint64_t>(to, bytes, count);
  } else {
    FillEnds<DWORD>(to, bytes, count);
  }
}

}  // namespace

void MoveMany(BYTE* to, const BYTE* from, size_t count) {
  if (count <= 4 * kStep) {
    MoveSome(to, from, count);
    return;
  }
  // One unsigned comparison: a target below the source, or behind its end, is moved upward.
  if (reinterpret_cast<uintptr_t>(to) - reinterpret_cast<uintptr_t>(from) >= count) {
    MoveUpward(to, from, count);
  } else {
    MoveDownward(to, from, count);
  }
}

void FillBytes(void* pDest, BYTE value, size_t count) {
  auto* to = static_cast<BYTE*>(pDest);
  const __m128i bytes = _mm_set1_epi8(static_cast<char>(value));
  if (count < kStep) {
    FillFew(to, bytes, count);
    return;
  }
  const size_t end = count - kStep;
#pragma clang loop unroll_count(4)
  for (size_t at = 0; at < end; at += kStep) Store(to + at, bytes);
  Store(to + end, bytes);
}

}  // namespace tavkit

// The compiler may call these behind the sources' back. The product links no C runtime, so they
// stand here; a native build takes them from the C library.
#if defined(_WIN32)

#include <stddef.h>

extern "C" {

void* memmove(void* dest, const void* source, size_t count) {
  tavkit::MoveBytes(dest, source, count);
  return dest;
}

void* memcpy(void* dest, const void* source, size_t count) { return memmove(dest, source, count); }

void* memset(void* dest, int value, size_t count) {
  if (count >= sizeof(DWORD)) {
    tavkit::FillBytes(dest, static_cast<BYTE>(value), count);
    return dest;
  }
  auto* to = static_cast<volatile BYTE*>(dest);  // or the compiler would call memset for the loop
  while (count != 0) to[--count] = static_cast<BYTE>(value);
  return dest;
}

}  // extern "C"

#endif
