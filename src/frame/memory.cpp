// Moves of many bytes and fills of any size, in steps of sixteen and a last part that overlaps the
// step before it. Nothing is read or written outside the ranges.
#include "frame/memory.h"

namespace tavkit {
namespace {

// 32 to 64 bytes, all read before any is written.
void MoveSome(BYTE* to, const BYTE* from, size_t count) {
  const size_t last = count - kBlock;
  const __m128i a = LoadBytes(from), b = LoadBytes(from + kBlock);
  const __m128i c = LoadBytes(from + last - kBlock), d = LoadBytes(from + last);
  StoreBytes(to, a);
  StoreBytes(to + kBlock, b);
  StoreBytes(to + last - kBlock, c);
  StoreBytes(to + last, d);
}

// For a target below the source, or clear of it. The end is read while it still is what it was.
void MoveUpward(BYTE* to, const BYTE* from, size_t count) {
  const size_t end = count - kBlock;
  const __m128i last = LoadBytes(from + end);
#pragma clang loop unroll_count(4)
  for (size_t at = 0; at < end; at += kBlock) StoreBytes(to + at, LoadBytes(from + at));
  StoreBytes(to + end, last);
}

// For a target that begins inside the source.
void MoveDownward(BYTE* to, const BYTE* from, size_t count) {
  const __m128i first = LoadBytes(from);
#pragma clang loop unroll_count(4)
  for (size_t end = count; end > kBlock; end -= kBlock) {
    StoreBytes(to + end - kBlock, LoadBytes(from + end - kBlock));
  }
  StoreBytes(to, first);
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
  if (count <= 4 * kBlock) {
    MoveSome(to, from, count);
    return;
  }
  // One unsigned comparison: a target below the source, or past its end, is moved upward.
  if (reinterpret_cast<uintptr_t>(to) - reinterpret_cast<uintptr_t>(from) >= count) {
    MoveUpward(to, from, count);
  } else {
    MoveDownward(to, from, count);
  }
}

void FillBytes(void* pDest, BYTE value, size_t count) {
  auto* to = static_cast<BYTE*>(pDest);
  const __m128i bytes = _mm_set1_epi8(static_cast<char>(value));
  if (count < kBlock) {
    FillFew(to, bytes, count);
    return;
  }
  const size_t end = count - kBlock;
#pragma clang loop unroll_count(4)
  for (size_t at = 0; at < end; at += kBlock) StoreBytes(to + at, bytes);
  StoreBytes(to + end, bytes);
}

}  // namespace tavkit

// The compiler may call these where the sources don't. The product links no C runtime, so they
// stand here; a native build takes them from the C library.
#if defined(_WIN32)

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
