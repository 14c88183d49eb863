// Pictures of memory: bytes in rows, each row with its place.
#ifndef EXAMPLES_PICTURE_H
#define EXAMPLES_PICTURE_H

#include <cstdio>
#include <string>

namespace example {

inline char Readable(unsigned char byte) { return byte >= 0x20 && byte < 0x7F ? char(byte) : '.'; }

// One row: "  44  5c 5c 6f 00  \\o.  what stands there".
inline void PrintRow(const void* start, unsigned place, unsigned count, const char* what) {
  const auto* bytes = static_cast<const unsigned char*>(start) + place;
  std::string hexadecimal, text;
  for (unsigned i = 0; i < count; ++i) {
    char digits[4];
    std::snprintf(digits, sizeof digits, "%02x ", bytes[i]);
    hexadecimal += digits;
    text += Readable(bytes[i]);
  }
  std::printf("%4u  %-24s ", place, hexadecimal.c_str());
  if (*what == 0) {
    std::printf("%s\n", text.c_str());
  } else {
    std::printf("%-8s  %s\n", text.c_str(), what);
  }
}

// Rows of up to eight bytes; the first one says what it is.
inline void PrintRows(const void* start, unsigned place, unsigned count, const char* what) {
  constexpr unsigned kRow = 8;
  for (; count > kRow; place += kRow, count -= kRow, what = "") {
    PrintRow(start, place, kRow, what);
  }
  PrintRow(start, place, count, what);
}

}  // namespace example

#endif  // EXAMPLES_PICTURE_H
