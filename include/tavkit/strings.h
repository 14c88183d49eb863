/**
 * @defgroup strings Characters and strings
 *
 * Characters and strings: stepping, finding, cutting, trimming, measuring and copying.
 *
 * How a character argument (wChar, 16 bits in both forms) is compared:
 *
 * - utFindChar, utFindRevChar, utTruncateAtChar: the string is walked byte by byte and wChar counts
 *   with its low 8 bits. 0x5C is found inside a double-byte character too.
 * - utSkipLeadChar, utCountLeadChar, utTrimChar: the string is walked by characters of the active
 *   code page, as the platform's CharNextA steps. Only 0x01 to 0x7F can match: no byte of 0x80 or
 *   above equals any wChar, and no wChar above 0x7F equals any byte.
 * - every W form: unit by unit, all 16 bits.
 *
 * A zero wChar never matches in the skip, count and trim operations: they give the string, 0 and 0.
 *
 * @{
 */
#ifndef TAVKIT_STRINGS_H
#define TAVKIT_STRINGS_H

#include "types.h"

/** Flag of utTrimChar: at the start of the string. Bits that aren't named here have no effect. */
#define UT_TRIM_LEADING 1
/** Flag of utTrimChar: at the end of the string. */
#define UT_TRIM_TRAILING 2

/**
 * Steps to the next character, as the platform's CharNextA does.
 *
 * @param psz position in a string; NULL gives NULL.
 * @return the next character; psz itself on the terminator.
 */
UT_EXPORT(26) LPSTR UT_API utCharNext(LPCSTR psz);
/** Wide form of utCharNext: steps by one unit. */
UT_EXPORT(220) LPWSTR UT_API utCharNextW(LPCWSTR psz);

/**
 * Steps to the previous character, as the platform's CharPrevA does.
 *
 * @param pszStart   start of the string; NULL gives NULL.
 * @param pszCurrent position in the string; NULL gives NULL. Below pszStart the platform decides.
 * @return the character before pszCurrent; pszStart if the two are equal.
 */
UT_EXPORT(27) LPSTR UT_API utCharPrev(LPCSTR pszStart, LPCSTR pszCurrent);
/** Wide form of utCharPrev: steps by one unit, and gives NULL for pszCurrent below pszStart. */
UT_EXPORT(221) LPWSTR UT_API utCharPrevW(LPCWSTR pszStart, LPCWSTR pszCurrent);

/**
 * Finds the last character of a string, walked as the platform's CharNextA steps.
 *
 * @param psz the string; NULL gives NULL.
 * @return the last character (of a double-byte one the lead byte); psz if the string is empty.
 */
UT_EXPORT(28) LPSTR UT_API utCharLast(LPCSTR psz);
/** Wide form of utCharLast. */
UT_EXPORT(222) LPWSTR UT_API utCharLastW(LPCWSTR psz);

/**
 * Finds the terminator of a string.
 *
 * @param psz the string, not NULL.
 * @return the terminator.
 */
UT_EXPORT(29) LPSTR UT_API utCharNull(LPCSTR psz);
/** Wide form of utCharNull. */
UT_EXPORT(231) LPWSTR UT_API utCharNullW(LPCWSTR psz);

/**
 * Finds the first match of a character; the terminator takes part in the search.
 *
 * @param psz   the string, not NULL.
 * @param wChar the character; the low 8 bits count, so 0x0100 finds the terminator.
 * @return the first match, or NULL.
 */
UT_EXPORT(52) LPSTR UT_API utFindChar(LPCSTR psz, WORD wChar);
/** Wide form of utFindChar: all 16 bits count, and 0 finds the terminator. */
UT_EXPORT(223) LPWSTR UT_API utFindCharW(LPCWSTR psz, WORD wChar);

/**
 * Finds the last match of a character; the terminator takes part in the search.
 *
 * @param psz   the string, not NULL.
 * @param wChar the character; the low 8 bits count.
 * @return the last match, or NULL.
 */
UT_EXPORT(53) LPSTR UT_API utFindRevChar(LPCSTR psz, WORD wChar);
/** Wide form of utFindRevChar: all 16 bits count. */
UT_EXPORT(232) LPWSTR UT_API utFindRevCharW(LPCWSTR psz, WORD wChar);

/**
 * Stores a zero over the first match of a character, found as by utFindChar. The bytes after it
 * stay as they were.
 *
 * @param psz   writable string, or NULL, which stores nothing.
 * @param wChar the character; the low 8 bits count.
 * @return the zero that was stored, or NULL if none was.
 */
UT_EXPORT(20) LPSTR UT_API utTruncateAtChar(LPSTR psz, WORD wChar);
/** Wide form of utTruncateAtChar: stores one 16-bit zero. */
UT_EXPORT(233) LPWSTR UT_API utTruncateAtCharW(LPWSTR psz, WORD wChar);

/**
 * Skips every occurrence of a character at the start of a string.
 *
 * @param psz   the string; NULL gives NULL.
 * @param wChar the character to skip, 0x01 to 0x7F.
 * @return the first character that isn't wChar.
 */
UT_EXPORT(21) LPSTR UT_API utSkipLeadChar(LPCSTR psz, WORD wChar);
/** Wide form of utSkipLeadChar: wChar is any non-zero unit. */
UT_EXPORT(224) LPWSTR UT_API utSkipLeadCharW(LPCWSTR psz, WORD wChar);

/**
 * Counts the characters that utSkipLeadChar would skip.
 *
 * @param psz   the string; NULL gives 0.
 * @param wChar the character to count, 0x01 to 0x7F.
 * @return the number of characters.
 */
UT_EXPORT(22) DWORD UT_API utCountLeadChar(LPCSTR psz, WORD wChar);
/** Wide form of utCountLeadChar: wChar is any non-zero unit. */
UT_EXPORT(225) DWORD UT_API utCountLeadCharW(LPCWSTR psz, WORD wChar);

/**
 * Removes every occurrence of a character at the start and/or at the end of a string, in place.
 * Bytes after the new terminator keep what they held.
 *
 * @param psz    writable string; NULL gives 0.
 * @param wChar  the character to remove, 0x01 to 0x7F.
 * @param wFlags UT_TRIM_LEADING and/or UT_TRIM_TRAILING.
 * @return 1 if something was removed, else 0.
 */
UT_EXPORT(23) BOOL UT_API utTrimChar(LPSTR psz, WORD wChar, WORD wFlags);
/** Wide form of utTrimChar: wChar is any non-zero unit. */
UT_EXPORT(234) BOOL UT_API utTrimCharW(LPWSTR psz, WORD wChar, WORD wFlags);

/**
 * Measures a string, by the platform's lstrlenA.
 *
 * @param psz             the string; NULL gives 0 whatever the flag.
 * @param fWithTerminator non-zero to count the terminator, once.
 * @return the size in bytes.
 */
UT_EXPORT(15) DWORD UT_API utStringSize(LPCSTR psz, BOOL fWithTerminator);
/** Wide form of utStringSize: two bytes for each unit and two for the terminator, counted here. */
UT_EXPORT(226) DWORD UT_API utStringSizeW(LPCWSTR psz, BOOL fWithTerminator);

/**
 * Tells whether there is no text.
 *
 * @param psz the string, or NULL.
 * @return 1 if psz is NULL or empty, else 0.
 */
UT_EXPORT(16) BOOL UT_API utIsNullOrEmptyString(LPCSTR psz);
/** Wide form of utIsNullOrEmptyString. */
UT_EXPORT(227) BOOL UT_API utIsNullOrEmptyStringW(LPCWSTR psz);

/**
 * Copies a counted run of bytes and ends it with a terminator. What doesn't fit is cut, which is
 * no failure, and the cut is in bytes: it can part a double-byte character. The bytes aren't looked
 * at, so a zero among them is copied like any other. Source and destination may overlap.
 *
 * @param pSource  the bytes, or NULL for none; no terminator is needed.
 * @param cbSource how many bytes to take.
 * @param pszDest  the destination; NULL is refused.
 * @param cbDest   its size in bytes; 0 is refused. With UT_SIZE_UNCHECKED the caller provides
 *                 cbSource + 1 bytes.
 * @return 1 if a string was stored, 0 if the destination was refused and nothing was stored.
 */
UT_EXPORT(18)
BOOL UT_API utCopyMakeAsciiz(LPCVOID pSource, DWORD cbSource, LPSTR pszDest, DWORD cbDest);
/**
 * Wide form of utCopyMakeAsciiz. Both sizes are in bytes, a cbDest of 0 or 1 is refused, and with
 * UT_SIZE_UNCHECKED the caller provides cbSource + 2 bytes. An odd size is brought down to the even
 * number below, so that only whole units are stored and the terminator is one of them.
 */
UT_EXPORT(229)
BOOL UT_API utCopyMakeAsciizW(LPCVOID pSource, DWORD cbSource, LPWSTR pszDest, DWORD cbDest);

/**
 * Copies a string, cut to fit. A second zero follows the copy where it fits too.
 *
 * @param pszSource the string; NULL stores an empty string.
 * @param pszDest   the destination; NULL is refused.
 * @param cbDest    its size in bytes; 0 is refused. With UT_SIZE_UNCHECKED the caller provides the
 *                  string's length + 2 bytes, which the second zero needs.
 * @return 1 if a string was stored, 0 if the destination was refused and nothing was stored.
 */
UT_EXPORT(17) BOOL UT_API utCopyString(LPCSTR pszSource, LPSTR pszDest, DWORD cbDest);
/**
 * Wide form of utCopyString. cbDest is in bytes; 0 and 1 are refused, an odd size counts as the
 * even number below, and with UT_SIZE_UNCHECKED the caller provides twice the length + 4 bytes.
 */
UT_EXPORT(228) BOOL UT_API utCopyStringW(LPCWSTR pszSource, LPWSTR pszDest, DWORD cbDest);

/**
 * Copies a string as utCopyString does, but refuses NULL.
 *
 * @param pszSource the string; NULL gives 0 and stores nothing.
 * @param pszDest   as for utCopyString.
 * @param cbDest    as for utCopyString, UT_SIZE_UNCHECKED included.
 * @return 1 if a string was stored, else 0.
 */
UT_EXPORT(19) BOOL UT_API utCopyNonNullString(LPCSTR pszSource, LPSTR pszDest, DWORD cbDest);
/** Wide form of utCopyNonNullString; sizes as for utCopyStringW. */
UT_EXPORT(235) BOOL UT_API utCopyNonNullStringW(LPCWSTR pszSource, LPWSTR pszDest, DWORD cbDest);

/** @} */

#endif /* TAVKIT_STRINGS_H */
