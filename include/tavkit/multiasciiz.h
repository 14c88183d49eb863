/**
 * @defgroup multiasciiz MultiAsciiz lists
 *
 * MultiAsciiz lists: any number of strings in one flat block of memory.
 *
 * Each string directly follows the one before it, each with its terminator, and one more zero, the
 * final zero, ends the list. The strings ab and x make this list of six bytes:
 *
 * @code{.unparsed}
 * index   0     1     2     3     4     5
 *         'a'   'b'   0     'x'   0     0
 *                                       final zero
 * @endcode
 *
 * The W form has a 16-bit unit in the place of each byte. There is no header and no count, no
 * member is empty, and nothing after the final zero belongs to the list: a block whose first unit
 * is zero is an empty list, whatever follows. The strings are in no order, and one may occur twice.
 *
 * Two sizes are in use, both in bytes: the used size, which is the strings with their terminators
 * (5 above), and the full size, which is the used size and the final zero (6 above).
 *
 * What a call costs. utMultiAsciizSize, utMultiAsciizStringCount, utScanMultiAsciiz,
 * utAppendMultiAsciiz, utInsertMultiAsciiz, utRemoveMultiAsciiz and utMultiAsciiz2Array read the
 * list from its head, and utMultiAsciizStringCount reads it twice. So a list that is built with
 * utAppendMultiAsciiz takes time that grows with the square of its size. utCopyNextAsciiz reads
 * nothing of the list: building one with it takes time that grows with its size. The reading relies
 * on the final zero and looks for nothing else.
 *
 * Sizes are compared without wrapping: a string or a list so large that the size needed passes 32
 * bits is refused.
 *
 * @code
 * CHAR list[64];
 * LPSTR cursor = list;
 * DWORD left = sizeof list;
 * if (!utCopyNextAsciiz("ab", &cursor, &left) || !utCopyNextAsciiz("x", &cursor, &left)) {
 *   // The list is full, and whole: it ends with the last string that was taken.
 * }
 * for (LPSTR member = list; *member != 0; member = utNextAsciiz(member)) Use(member);
 * @endcode
 *
 * @{
 */
#ifndef TAVKIT_MULTIASCIIZ_H
#define TAVKIT_MULTIASCIIZ_H

#include "types.h"

/**
 * Makes a buffer an empty list of either form, by setting all of it to zero.
 *
 * @param pList  the buffer; NULL is refused.
 * @param cbList its true size in bytes, never UT_SIZE_UNCHECKED; 4 or less is refused, for lists of
 *               the W form too.
 * @return 1, or 0 if the buffer was refused and left alone.
 */
UT_EXPORT(46) BOOL UT_API utInitMultiAsciiz(LPVOID pList, DWORD cbList);

/**
 * Measures a list.
 *
 * @param pList          the list; NULL gives 0 whatever the flag.
 * @param fWithFinalZero non-zero to count the final zero.
 * @return the used size in bytes, or the full size with the flag.
 */
UT_EXPORT(50) DWORD UT_API utMultiAsciizSize(LPCSTR pList, BOOL fWithFinalZero);
/** Wide form of utMultiAsciizSize: the final zero counts two bytes. */
UT_EXPORT(240) DWORD UT_API utMultiAsciizSizeW(LPCWSTR pList, BOOL fWithFinalZero);

/**
 * Counts the strings of a list.
 *
 * @param pList the list; NULL gives 0.
 * @return the number of strings.
 */
UT_EXPORT(57) DWORD UT_API utMultiAsciizStringCount(LPCSTR pList);
/** Wide form of utMultiAsciizStringCount. */
UT_EXPORT(241) DWORD UT_API utMultiAsciizStringCountW(LPCWSTR pList);

/**
 * Steps over a string and its terminator. It knows nothing of the list: the caller stops at the
 * final zero, where the string is empty. On the final zero itself it gives the address after the
 * list.
 *
 * @param pszString a string of a list; NULL gives NULL.
 * @return the next string, or the final zero after the last one.
 */
UT_EXPORT(51) LPSTR UT_API utNextAsciiz(LPCSTR pszString);
/** Wide form of utNextAsciiz. */
UT_EXPORT(245) LPWSTR UT_API utNextAsciizW(LPCWSTR pszString);

/**
 * Adds a string at a cursor, for building a list in one pass. Cursor and count start as
 * the buffer and its size. After each string that was taken, the buffer from its start through the
 * cursor is a whole list; until then, an empty string makes the buffer one.
 *
 * @param pszString    the string, which doesn't run across the cursor. NULL or an empty one closes
 *                     the list: a zero is stored at the cursor, and neither cursor nor count moves.
 *                     That takes a count of at least 1.
 * @param ppCursor     the caller's cursor, not NULL. It moves to the new final zero. A cursor that
 *                     is NULL is refused.
 * @param pcbRemaining the caller's count of bytes from the cursor to the end of the buffer, not
 *                     NULL. It goes down by the string with its terminator; the size needed is one
 *                     byte more. UT_SIZE_UNCHECKED is a number like any other and is reduced too.
 * @return 1, or 0 if the string was refused: list, cursor and count then stay as they were.
 */
UT_EXPORT(54) BOOL UT_API utCopyNextAsciiz(LPCSTR pszString, LPSTR* ppCursor, LPDWORD pcbRemaining);
/**
 * Wide form of utCopyNextAsciiz: the count is in bytes, the size needed is two bytes more than the
 * string with its terminator, and closing the list takes a count of 2.
 */
UT_EXPORT(246)
BOOL UT_API utCopyNextAsciizW(LPCWSTR pszString, LPWSTR* ppCursor, LPDWORD pcbRemaining);

/**
 * Adds a string at the end of a list. It walks the whole list to find the end.
 *
 * @param pszString the string, which may be a member of the list. NULL or an empty one changes
 *                  nothing and gives 1.
 * @param pList     the list, not NULL.
 * @param cbList    the size of its buffer in bytes. What the list doesn't use of it has to cover
 *                  the string, its terminator and the final zero; a size below what the list
 *                  already uses is refused. UT_SIZE_UNCHECKED passes as a very large number.
 * @return 1, or 0 if the string didn't fit; the list then stays as it was.
 */
UT_EXPORT(55) BOOL UT_API utAppendMultiAsciiz(LPCSTR pszString, LPSTR pList, DWORD cbList);
/** Wide form of utAppendMultiAsciiz; cbList is in bytes. */
UT_EXPORT(242) BOOL UT_API utAppendMultiAsciizW(LPCWSTR pszString, LPWSTR pList, DWORD cbList);

/**
 * Looks for a string in a list. Whole strings are compared by the platform's lstrcmp or lstrcmpi,
 * whose rules are those of the user's language.
 *
 * @param pszString      the string. NULL or an empty one finds the final zero, which is where a
 *                       string would be appended.
 * @param pList          the list; NULL gives NULL.
 * @param fCaseSensitive 0 to compare without regard to case.
 * @return the first member that compares equal, or NULL.
 */
UT_EXPORT(47) LPSTR UT_API utScanMultiAsciiz(LPCSTR pszString, LPCSTR pList, BOOL fCaseSensitive);
/** Wide form of utScanMultiAsciiz. */
UT_EXPORT(247)
LPWSTR UT_API utScanMultiAsciizW(LPCWSTR pszString, LPCWSTR pList, BOOL fCaseSensitive);

/**
 * Inserts a string into a list. Only the bounds of the position are looked at, so the caller takes
 * care that a string begins there. A position inside a string splits it, and its first part runs
 * into the new string: X inserted at index 4 of ab, cd gives ab, cX, d. On a terminator other than
 * the last the new string joins the one before it and the list ends there: X at index 2 gives abX.
 *
 * @param pszString the string, which may be a member of the list. NULL or an empty one changes
 *                  nothing and gives 1.
 * @param pInsertAt the member that is to follow the string; the final zero, or the terminator of
 *                  the last string, to append as utAppendMultiAsciiz does. NULL is refused,
 *                  whatever the string, and so is a position outside the list.
 * @param pList     the list; NULL is refused.
 * @param cbList    the size of its buffer in bytes. One below what the list already uses is
 *                  refused. UT_SIZE_UNCHECKED passes as a very large number.
 * @return 1, or 0 if the position was refused or the string didn't fit; the list then stays as it
 *         was.
 */
UT_EXPORT(58)
BOOL UT_API utInsertMultiAsciiz(LPCSTR pszString, LPSTR pInsertAt, LPSTR pList, DWORD cbList);
/**
 * Wide form of utInsertMultiAsciiz. The position lies on a whole unit of the list; cbList is in
 * bytes.
 */
UT_EXPORT(243)
BOOL UT_API utInsertMultiAsciizW(LPCWSTR pszString, LPWSTR pInsertAt, LPWSTR pList, DWORD cbList);

/**
 * Removes strings from the front of a list. Bytes after the new final zero keep what they held,
 * but a second zero follows the final zero of an emptied list, as utInitMultiAsciiz leaves it.
 *
 * @param pList    the list; NULL counts as an empty one.
 * @param cStrings how many strings to remove; with 0 the list isn't looked at.
 * @return 1 if that many were removed; 0 if the list held fewer, and is now empty.
 */
UT_EXPORT(59) BOOL UT_API utRemoveMultiAsciiz(LPSTR pList, DWORD cStrings);
/** Wide form of utRemoveMultiAsciiz. */
UT_EXPORT(244) BOOL UT_API utRemoveMultiAsciizW(LPWSTR pList, DWORD cStrings);

/**
 * Makes a list of the strings of an array, in the place of whatever the buffer held.
 *
 * @param ppszStrings the strings, ended by a NULL entry; NULL gives an empty list. Empty strings
 *                    are left out. None of them may lie in the buffer, which is set to zero first.
 * @param pList       the buffer; NULL is refused.
 * @param cbList      its true size in bytes, never UT_SIZE_UNCHECKED; 4 or less is refused.
 * @param pcStored    receives the number of strings stored, whatever the result; may be NULL.
 * @return 1 if every string was stored. 0 if the buffer was refused and left alone, or if one of
 *         the strings didn't fit: the list then holds those before that one.
 */
UT_EXPORT(48)
BOOL UT_API utArray2MultiAsciiz(const LPCSTR* ppszStrings, LPSTR pList, DWORD cbList,
                                LPDWORD pcStored);
/** Wide form of utArray2MultiAsciiz; cbList is in bytes, and 4 or less is refused here too. */
UT_EXPORT(248)
BOOL UT_API utArray2MultiAsciizW(const LPCWSTR* ppszStrings, LPWSTR pList, DWORD cbList,
                                 LPDWORD pcStored);

/**
 * Makes an array of pointers to the strings of a list, ended by a NULL entry, as
 * utArray2MultiAsciiz takes it. The pointers are good as long as the list stays where it is,
 * unchanged.
 *
 * @param pList     the list; NULL counts as an empty one.
 * @param ppszArray the array; NULL is refused.
 * @param cbArray   its true size in bytes, never UT_SIZE_UNCHECKED; less than one pointer is
 *                  refused. All of it is set to zero, and the last whole pointer stays NULL.
 * @param pcStored  receives the number of pointers stored, whatever the result; may be NULL.
 * @return 1, also if the array took only the first strings of the list, which pcStored shows; 0 if
 *         the array was refused and left alone.
 */
UT_EXPORT(49)
BOOL UT_API utMultiAsciiz2Array(LPCSTR pList, LPCSTR* ppszArray, DWORD cbArray, LPDWORD pcStored);
/** Wide form of utMultiAsciiz2Array. */
UT_EXPORT(249)
BOOL UT_API utMultiAsciiz2ArrayW(LPCWSTR pList, LPCWSTR* ppszArray, DWORD cbArray,
                                 LPDWORD pcStored);

/** @} */

#endif /* TAVKIT_MULTIASCIIZ_H */
