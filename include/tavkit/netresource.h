/**
 * @defgroup netresource NETRESOURCE records
 *
 * NETRESOURCE records in one block of memory: a copy of the record at the front, copies of its
 * strings at the back, and the copy's pointers aimed at the copied strings. A field mask picks what
 * is taken; a field that isn't taken comes out 0 or NULL.
 *
 * @code{.unparsed}
 * | fixed record |        spare bytes, not written        | provider | comment | remote | local |
 * @endcode
 *
 * The strings lie one directly below the other, each with its terminator, and end at the last byte
 * of the buffer (or below what the back of an XBuf holds already). A field that isn't taken, or is
 * NULL, leaves no gap; an empty string takes its terminator. Nothing is aligned: wide strings may
 * lie at odd addresses, and so may the record in an XBuf whose front holds an odd number of bytes.
 *
 * The pointers are absolute, so a block is good only where it was made. The source and its strings
 * must lie outside the target and not change during a call; they are only read, and a string that
 * the mask leaves out is never looked at. All sizes are in bytes, in the wide forms too.
 *
 * @{
 */
#ifndef TAVKIT_NETRESOURCE_H
#define TAVKIT_NETRESOURCE_H

#include "xbuf.h"

/* Field masks, one bit for each field in the order of the record. */
#define UT_NR_SCOPE 0x01u       /**< Field mask: dwScope. */
#define UT_NR_TYPE 0x02u        /**< Field mask: dwType. */
#define UT_NR_DISPLAYTYPE 0x04u /**< Field mask: dwDisplayType. */
#define UT_NR_USAGE 0x08u       /**< Field mask: dwUsage. */
#define UT_NR_LOCALNAME 0x10u   /**< Field mask: lpLocalName. */
#define UT_NR_REMOTENAME 0x20u  /**< Field mask: lpRemoteName. */
#define UT_NR_COMMENT 0x40u     /**< Field mask: lpComment. */
#define UT_NR_PROVIDER 0x80u    /**< Field mask: lpProvider. */
#define UT_NR_ALL 0xFFu         /**< All eight fields. Higher bits have no effect. */

/**
 * Tells the size that a flattened block needs.
 *
 * @param pResource the record; NULL gives 0.
 * @param dwMask    the fields to take.
 * @return the bytes of the fixed record (32, or 48 at 64 bits) and of the strings; 0xFFFFFFFF as
 *         for utVarSizeNETRESOURCE.
 */
UT_EXPORT(200) DWORD UT_API utSizeNETRESOURCE(const NETRESOURCEA* pResource, DWORD dwMask);
/** Wide form of utSizeNETRESOURCE: two bytes for each character and terminator. */
UT_EXPORT(204) DWORD UT_API utSizeNETRESOURCEW(const NETRESOURCEW* pResource, DWORD dwMask);

/**
 * Tells the size of the strings alone.
 *
 * @param pResource the record; NULL gives 0.
 * @param dwMask    the fields to take.
 * @return the bytes of the strings with their terminators; 0 if none is taken. 0xFFFFFFFF if the
 *         sum passes 32 bits, as where several fields name one huge string; the copies refuse that
 *         size.
 */
UT_EXPORT(201) DWORD UT_API utVarSizeNETRESOURCE(const NETRESOURCEA* pResource, DWORD dwMask);
/** Wide form of utVarSizeNETRESOURCE: two bytes for each character and terminator. */
UT_EXPORT(205) DWORD UT_API utVarSizeNETRESOURCEW(const NETRESOURCEW* pResource, DWORD dwMask);

/**
 * Flattens a record into a buffer.
 *
 * @param pResource the record; NULL gives 0.
 * @param pBuffer   the target; NULL gives 0, and the size needed.
 * @param cbBuffer  its true size in bytes, since the strings are placed from the end that it gives.
 *                  UT_SIZE_UNCHECKED must not be passed.
 * @param dwMask    the fields to take.
 * @param pcbNeeded receives the size needed (0 where pResource is NULL), on success and on failure;
 *                  may be NULL.
 * @return 1 on success. 0 if the buffer is too small, or if the platform has no memory for one
 *         small allocation that lives as long as the call; nothing of the buffer was then written.
 */
UT_EXPORT(202)
BOOL UT_API utCopyNETRESOURCE(const NETRESOURCEA* pResource, LPVOID pBuffer, DWORD cbBuffer,
                              DWORD dwMask, LPDWORD pcbNeeded);
/** Wide form of utCopyNETRESOURCE. */
UT_EXPORT(206)
BOOL UT_API utCopyNETRESOURCEW(const NETRESOURCEW* pResource, LPVOID pBuffer, DWORD cbBuffer,
                               DWORD dwMask, LPDWORD pcbNeeded);

/**
 * Flattens a record into an XBuf: the fixed record to its front, the strings to its back. Called
 * again on the same XBuf it gives an array of records, with the first record's strings the highest.
 *
 * @param pResource the record; NULL gives 0.
 * @param hXBuf     the target; an invalid handle gives 0.
 * @param dwMask    the fields to take.
 * @param pcbNeeded receives the size needed (0 where pResource is NULL), on success and on failure;
 *                  may be NULL.
 * @return 1 on success. 0 if the free block is too small; the XBuf and its buffer are then as
 *         before.
 */
UT_EXPORT(203)
BOOL UT_API utCopyNETRESOURCE_XBuffer(const NETRESOURCEA* pResource, HXBUF hXBuf, DWORD dwMask,
                                      LPDWORD pcbNeeded);
/** Wide form of utCopyNETRESOURCE_XBuffer. */
UT_EXPORT(207)
BOOL UT_API utCopyNETRESOURCEW_XBuffer(const NETRESOURCEW* pResource, HXBUF hXBuf, DWORD dwMask,
                                       LPDWORD pcbNeeded);

/** @} */

#endif /* TAVKIT_NETRESOURCE_H */
