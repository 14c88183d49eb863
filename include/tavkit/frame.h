/**
 * @defgroup frame Buffer sizes
 *
 * The rule for buffer sizes.
 *
 * A size is an unsigned 32-bit count of bytes in the byte forms and in the W forms alike: a wide
 * buffer of 10 characters has the size 20. UT_SIZE_UNCHECKED in its place says that the caller
 * vouches for the buffer's size; each operation's own text tells what it does with that value.
 *
 * @{
 */
#ifndef TAVKIT_FRAME_H
#define TAVKIT_FRAME_H

#include "types.h"

/** Buffer size by which the caller says that the buffer is large enough. */
#define UT_SIZE_UNCHECKED 0xFFFFFFFFu

/**
 * Tells whether a buffer exists and a stated size covers what is needed.
 *
 * @param pBuffer  the buffer; NULL is refused, even with UT_SIZE_UNCHECKED. Never read or written.
 * @param cbBuffer its size in bytes, or UT_SIZE_UNCHECKED, which covers everything.
 * @param cbNeeded the size needed, in bytes.
 * @return 0 if pBuffer is NULL, else what utIsBufferSize gives for the two sizes.
 */
UT_EXPORT(30) BOOL UT_API utIsBuffer(LPCVOID pBuffer, DWORD cbBuffer, DWORD cbNeeded);

/**
 * Tells whether a stated size covers what is needed.
 *
 * @param cbBuffer the stated size in bytes, or UT_SIZE_UNCHECKED, which covers everything.
 * @param cbNeeded the size needed, in bytes.
 * @return 1 if cbBuffer is UT_SIZE_UNCHECKED or, unsigned, at least cbNeeded; else 0.
 */
UT_EXPORT(31) BOOL UT_API utIsBufferSize(DWORD cbBuffer, DWORD cbNeeded);

/** @} */

#endif /* TAVKIT_FRAME_H */
