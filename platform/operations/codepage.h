// The active code page of the platform layer.
#ifndef PLATFORM_OPERATIONS_CODEPAGE_H
#define PLATFORM_OPERATIONS_CODEPAGE_H

#include <cstddef>
#include <string_view>

namespace host {

// 1252 (single-byte) at program start; 932, 936, 949 and 950 are double-byte. False for any other
// number, which changes nothing.
bool SetCodePage(unsigned codePage);
unsigned CodePage();

// Whether a byte opens a double-byte character of the active code page.
bool IsLeadByte(unsigned char byte);

// Bytes of the character at a place in a text: 2 for a lead byte and a byte that can follow one.
std::size_t CharacterLength(std::string_view text, std::size_t at);

}  // namespace host

#endif  // PLATFORM_OPERATIONS_CODEPAGE_H
