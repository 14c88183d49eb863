/**
 * @defgroup convert Numbers, system family and code pages
 *
 * Numbers as text, the system family, and conversion between the active code page and wide strings.
 *
 * Digits are the bytes 0x30 to 0x39, hexadecimal digits also 0x41 to 0x46 and 0x61 to 0x66. No
 * locale and no code page changes that, and no byte of 0x80 or above is one of them. Hexadecimal
 * text is written in upper case and read in either case.
 *
 * @code
 * char szText[8];
 * utHex2Ascii(szText, pbKey, 4);  // writes "001FA5FF" without a terminator
 * utAscii2Hex(pbKey, szText, 8);  // and reads the four bytes back
 * @endcode
 *
 * @{
 */
#ifndef TAVKIT_CONVERT_H
#define TAVKIT_CONVERT_H

#include "types.h"

/**
 * Tells the system family, as the platform's GetVersionExA reports it at each call.
 *
 * @return 1 on the NT family from major version 4 on, -1 on the NT family below it, 0 on any other
 *         system and if the platform doesn't say. So the NT family as such is any value but 0.
 */
UT_EXPORT(139) SHORT UT_API utIsWinNT(void);

/**
 * Tells whether a string is made of digits only. It is walked by characters, as the platform's
 * CharNextA steps.
 *
 * @param pszText the string; NULL and an empty one have no other character, so they give 1.
 * @param ppszBad receives the address of the first character that is no digit; NULL if it isn't
 *                wanted. Written only if the result is 0.
 * @return 1 if there is no other character, else 0.
 */
UT_EXPORT(140) BOOL UT_API utIsStrDigit(LPCSTR pszText, LPSTR* ppszBad);

/** Tells whether a string is made of hexadecimal digits only; otherwise as utIsStrDigit. */
UT_EXPORT(141) BOOL UT_API utIsStrHexDigit(LPCSTR pszText, LPSTR* ppszBad);

/**
 * Gives the value of a hexadecimal digit.
 *
 * @param wChar the character.
 * @return 0 to 15; 0 for anything that is no hexadecimal digit, all characters above 0xFF included.
 */
UT_EXPORT(144) INT UT_API utHexCharValue(WORD wChar);

/**
 * Reads the decimal number at the start of a text: white space (0x09 to 0x0D, 0x20), one sign,
 * digits.
 *
 * @param pszText the text, not NULL. The first character that doesn't belong to the number ends it.
 * @return the number, 0 if there is no digit. A number that doesn't fit wraps modulo 2^32.
 */
UT_EXPORT(145) INT UT_API utAtoI(LPCSTR pszText);

/**
 * Reads the hexadecimal number at the start of a text: up to eight digits, with neither white space
 * nor a sign nor a prefix before them. What follows the eighth digit is left alone.
 *
 * @param pszText the text; NULL gives 0.
 * @return the number, 0 if there is no digit.
 */
UT_EXPORT(146) DWORD UT_API utAtoX(LPCSTR pszText);

/**
 * Writes bytes as hexadecimal text, two characters for each, without a terminator. Does nothing if
 * either address is NULL. The two ranges may not overlap.
 *
 * @param pszTarget receives the text; it holds twice cbSource bytes.
 * @param pbSource  the bytes.
 * @param cbSource  their number; 0 writes nothing.
 */
UT_EXPORT(147) void UT_API utHex2Ascii(LPSTR pszTarget, const BYTE* pbSource, DWORD cbSource);

/**
 * Reads hexadecimal text into bytes, two characters for each; of an odd count, the last character
 * gives a byte of its own with that value. A character that is no hexadecimal digit counts as 0.
 * Does nothing if either address is NULL. The text may be read in place, that is with one address
 * for both; otherwise the two ranges may not overlap.
 *
 * @param pbTarget  receives the bytes; it holds half of cchSource, rounded up.
 * @param pszSource the text; a terminator is neither needed nor looked for.
 * @param cchSource the number of characters, which are bytes here; 0 writes nothing.
 */
UT_EXPORT(148) void UT_API utAscii2Hex(LPBYTE pbTarget, LPCSTR pszSource, DWORD cchSource);

/**
 * Converts a string of the active code page to a wide string, by the platform's MultiByteToWideChar
 * with the flags MB_PRECOMPOSED and MB_ERR_INVALID_CHARS. A single sequence that isn't valid in the
 * code page fails the whole conversion.
 *
 * A failed conversion isn't reported: one that stores nothing leaves an empty string, and one for
 * which the target is too small leaves what the platform stored, which may lack a terminator.
 *
 * Where the active code page is UTF-8, the platform's documentation has these flags refused: the
 * target is then an empty string, whatever the source.
 *
 * @param pwszTarget receives the wide string, terminator included; not NULL unless pszSource is.
 *                   Its first character is written whatever cchTarget says.
 * @param pszSource  the string; NULL leaves the target untouched.
 * @param cchTarget  the target's capacity in wide characters, the terminator included.
 * @return pwszTarget; NULL if pszSource is NULL.
 */
UT_EXPORT(260) LPWSTR UT_API utA2WHelper(LPWSTR pwszTarget, LPCSTR pszSource, INT cchTarget);

/**
 * Converts a wide string to the active code page, by the platform's WideCharToMultiByte without
 * flags. Failures are as in utA2WHelper.
 *
 * A character without a counterpart becomes a similar one where the platform knows one, else its
 * default character. So U+FF3C, a full-width backslash, may become a backslash: check a path after
 * it is converted, not before.
 *
 * A 16-bit unit takes up to two bytes in a double-byte code page, and up to three where the active
 * code page is UTF-8.
 *
 * @param pszTarget  receives the string, terminator included; not NULL unless pwszSource is. Its
 *                   first byte is written whatever cbTarget says.
 * @param pwszSource the wide string; NULL leaves the target untouched.
 * @param cbTarget   the target's capacity in bytes, the terminator included.
 * @return pszTarget; NULL if pwszSource is NULL.
 */
UT_EXPORT(261) LPSTR UT_API utW2AHelper(LPSTR pszTarget, LPCWSTR pwszSource, INT cbTarget);

/** @} */

#endif /* TAVKIT_CONVERT_H */
