/**
 * @defgroup xbuf Two-ended buffers
 *
 * XBuf: one block of memory, filled from both of its ends.
 *
 * @code{.unparsed}
 * pBuffer                                                        pBuffer + cbBuffer
 * | front block, upward -> |         free block         | <- back block, downward |
 *        cbFront                        cbFree                    cbBack
 * @endcode
 *
 * Sizes count bytes; nothing is rounded or aligned, so a block may begin at an odd address. The
 * buffer never grows and blocks never move: a reservation that doesn't fit fails.
 *
 * @code
 * HXBUF hXBuf = utXBufCreate(100, NULL);
 * utXBufReserveBlock(hXBuf, UT_XBUF_FRONT, 10, &pRecord);     // bytes 0 to 9
 * utXBufCopyStringTo(hXBuf, UT_XBUF_BACK, "text", &pszText);  // bytes 95 to 99
 * utXBufDestroy(hXBuf);
 * @endcode
 *
 * A handle belongs to the caller, who destroys it and doesn't use it again. NULL is refused, and so
 * is the address of 32 readable bits that aren't UT_XBUF_SIGNATURE; nothing else is checked. Calls
 * on one handle must not overlap, not even those that only read.
 *
 * @{
 */
#ifndef TAVKIT_XBUF_H
#define TAVKIT_XBUF_H

#include "types.h"

/** Handle of an XBuf. */
typedef struct HXBUF__* HXBUF;

/** The first 32 bits at a valid handle: the four bytes "xBuF". */
#define UT_XBUF_SIGNATURE 0x46754278u

/** Side of a buffer: from its first byte upward. Selectors count with their low 16 bits. */
#define UT_XBUF_FRONT 0
/** Side of a buffer: from its last byte downward. */
#define UT_XBUF_BACK 1

/** Block of an XBuf: the whole buffer. */
#define UT_XBUF_BLOCK_BUFFER 0
/** Block of an XBuf: what is in use at the front. */
#define UT_XBUF_BLOCK_FRONT 1
/** Block of an XBuf: what is in use at the back. */
#define UT_XBUF_BLOCK_BACK 2
/** Block of an XBuf: what is free. */
#define UT_XBUF_BLOCK_FREE 3

/**
 * Creates an XBuf and gives it a buffer, as utXBufUseBuffer does.
 *
 * @param cbBuffer size of the buffer in bytes; 0 creates an XBuf without one.
 * @param pBuffer  the caller's buffer, to stay in place as long as the XBuf holds it, or NULL to
 *                 have one allocated, filled with zeros.
 * @return the handle; NULL only if the platform has no memory for the XBuf itself. If it has none
 *         for the buffer, the XBuf has no buffer: UT_XBUF_BLOCK_BUFFER gives NULL. The platform may
 *         then have set a last-error value.
 */
UT_EXPORT(60) HXBUF UT_API utXBufCreate(DWORD cbBuffer, LPVOID pBuffer);

/**
 * Destroys an XBuf. A buffer that it owns is freed first; any other stays.
 *
 * @param hXBuf the handle, not to be used again; an invalid one does nothing.
 */
UT_EXPORT(61) void UT_API utXBufDestroy(HXBUF hXBuf);

/**
 * Lets go of the buffer that an XBuf holds, freeing it if owned, and gives it another, all free.
 *
 * @param hXBuf    the handle.
 * @param cbBuffer size of the new buffer in bytes; 0 leaves the XBuf without one. UT_SIZE_UNCHECKED
 *                 has no meaning here: the back is found by the true size.
 * @param pBuffer  the caller's buffer, whose bytes stay as they are and which has to stay in place
 *                 as long as the XBuf holds it, or NULL to have one allocated, filled with zeros
 *                 and owned by the XBuf. Not the buffer that the XBuf owns now.
 * @return 1 if the XBuf now holds a buffer. 0 for an invalid handle, or with the XBuf left without
 *         a buffer: the earlier one is gone in any case.
 */
UT_EXPORT(62) BOOL UT_API utXBufUseBuffer(HXBUF hXBuf, DWORD cbBuffer, LPVOID pBuffer);

/**
 * Says who frees the buffer. Without a buffer, or with an invalid handle, nothing happens.
 *
 * @param hXBuf   the handle.
 * @param dwOwner 0: the caller, at any time after the XBuf let go of it; a buffer that the XBuf
 *                allocated is then freed with LocalFree. Non-zero: the XBuf, with LocalFree; the
 *                buffer must have come from LocalAlloc.
 */
UT_EXPORT(70) void UT_API utXBufSetOwner(HXBUF hXBuf, DWORD dwOwner);

/**
 * Reserves a block of the free bytes. Its bytes stay as they are.
 *
 * @param hXBuf   the handle.
 * @param wSide   UT_XBUF_FRONT or UT_XBUF_BACK.
 * @param cbBlock size of the block in bytes; 0 gives a NULL block and 1, whatever the side.
 * @param ppBlock receives the block, NULL if none was reserved; may be NULL. An invalid handle
 *                leaves it as it is.
 * @return 1 on success. 0 for an invalid handle, an unknown side, or a block larger than the free
 *         block; the XBuf is then as before.
 */
UT_EXPORT(65)
BOOL UT_API utXBufReserveBlock(HXBUF hXBuf, WORD wSide, DWORD cbBlock, LPVOID* ppBlock);

/**
 * Reserves a block and copies bytes into it.
 *
 * @param hXBuf    the handle.
 * @param wSide    UT_XBUF_FRONT or UT_XBUF_BACK.
 * @param pSource  the bytes, outside the free block. NULL gives a NULL block and 1, whatever the
 *                 other arguments.
 * @param cbSource how many bytes to copy; 0 does as a NULL pSource does.
 * @param ppBlock  receives the block, NULL on every failure; may be NULL.
 * @return 1 on success, else 0 as for utXBufReserveBlock.
 */
UT_EXPORT(63)
BOOL UT_API utXBufCopyTo(HXBUF hXBuf, WORD wSide, LPCVOID pSource, DWORD cbSource, LPVOID* ppBlock);

/**
 * Copies a string with its terminator, as utXBufCopyTo does.
 *
 * @param hXBuf     the handle.
 * @param wSide     UT_XBUF_FRONT or UT_XBUF_BACK.
 * @param pszSource the string. NULL gives a NULL block and 1; an empty string takes its terminator.
 * @param ppBlock   receives the copy, NULL on every failure; may be NULL.
 * @return 1 on success, else 0 as for utXBufReserveBlock.
 */
UT_EXPORT(64)
BOOL UT_API utXBufCopyStringTo(HXBUF hXBuf, WORD wSide, LPCSTR pszSource, LPVOID* ppBlock);
/** Wide form of utXBufCopyStringTo. Nothing is aligned: the copy may lie at an odd address. */
UT_EXPORT(71)
BOOL UT_API utXBufCopyWideStringTo(HXBUF hXBuf, WORD wSide, LPCWSTR pwszSource, LPVOID* ppBlock);

/**
 * States how much is in use at either side, to take reservations back or to account for bytes that
 * the caller wrote. The buffer's bytes stay as they are.
 *
 * @param hXBuf   the handle.
 * @param cbFront bytes in use at the front.
 * @param cbBack  bytes in use at the back.
 * @return 1 on success. 0 for an invalid handle, or if the two don't fit the buffer; the XBuf is
 *         then as before.
 */
UT_EXPORT(66) BOOL UT_API utXBufSetSpaceUsed(HXBUF hXBuf, DWORD cbFront, DWORD cbBack);

/**
 * Tells how much is in use.
 *
 * @param hXBuf the handle.
 * @return the bytes in use at both sides; 0 for an invalid handle.
 */
UT_EXPORT(67) DWORD UT_API utXBufGetSpaceUsed(HXBUF hXBuf);

/**
 * Finds a block.
 *
 * @param hXBuf  the handle.
 * @param wBlock the block, UT_XBUF_BLOCK_BUFFER to UT_XBUF_BLOCK_FREE.
 * @return the block's first byte: at the back that of the block reserved last. NULL for an empty
 *         block, an invalid handle or an unknown selector.
 */
UT_EXPORT(68) LPVOID UT_API utXBufGetBlock(HXBUF hXBuf, WORD wBlock);

/**
 * Measures a block.
 *
 * @param hXBuf  the handle.
 * @param wBlock the block, UT_XBUF_BLOCK_BUFFER to UT_XBUF_BLOCK_FREE.
 * @return the block's size in bytes; 0 for an invalid handle or an unknown selector.
 */
UT_EXPORT(69) DWORD UT_API utXBufGetBlockSize(HXBUF hXBuf, WORD wBlock);

/** @} */

#endif /* TAVKIT_XBUF_H */
