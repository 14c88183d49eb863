// The active code page of the platform layer.
#ifndef PLATFORM_HOST_CODEPAGE_H
#define PLATFORM_HOST_CODEPAGE_H

namespace host {

// 1252 (single-byte) at program start; 932, 936, 949 and 950 are double-byte. False for any other
// number, which changes nothing.
bool SetCodePage(unsigned codePage);
unsigned CodePage();

// Whether a byte opens a double-byte character of the active code page.
bool IsLeadByte(unsigned char byte);

}  // namespace host

#endif  // PLATFORM_HOST_CODEPAGE_H
