/*
 * TAVKIT: utility functions for Windows programs of 32 and of 64 bits.
 *
 * Conventions that hold for every export:
 *
 *   Calling    stdcall at 32 bits, the convention of 64-bit Windows there; undecorated names, fixed
 *              ordinals. A 16-bit argument counts with its low 16 bits, whatever the caller's word
 *              holds above them.
 *   Text       A byte form works on strings in the active code page, its twin with the suffix W on
 *              strings of 16-bit units, one unit being one character. Wide strings may lie at odd
 *              addresses.
 *   Sizes      `cb` counts bytes in both forms, `cch` counts characters, `c` counts things. Two
 *              names say `cch` and count bytes: cchBuffer of utDayOfWeekName and utMonthName, and
 *              cchSource of utAscii2Hex. All are 32 bits wide, at 64 bits too. A size that they
 *              don't count is given as 0xFFFFFFFF, and fits nowhere.
 *   Failures   The result alone reports a failure. The library sets no last-error value; a platform
 *              operation that it calls may.
 *   Buffers    belong to the caller; nothing refers to them after a call, except an XBuf to the one
 *              that it holds.
 *   Too small  What a destination that is too small gets, by family:
 *
 *                cut to fit, result 1      string copies, utExtractServer, utExtractServerResource,
 *                                          utMultiAsciiz2Array
 *                cut to fit                utBreakUNCName, whose result tells of the name alone
 *                what fits, result 0       utArray2MultiAsciiz
 *                refused, result 0         all other lists, built names, server names, XBuf,
 *                                          NETRESOURCE, key paths
 *                the default stored        registry texts, with the platform's code where one is
 *                                          given
 *                what the platform does    names of days and months, code-page conversion
 *
 *              What UT_SIZE_UNCHECKED does is said at each operation that takes a size.
 *   Threads    No lock and no shared data: calls on different data may run at the same time.
 */
#ifndef TAVKIT_H
#define TAVKIT_H

#include "tavkit/types.h"

#include "tavkit/convert.h"
#include "tavkit/dialog.h"
#include "tavkit/frame.h"
#include "tavkit/multiasciiz.h"
#include "tavkit/netresource.h"
#include "tavkit/registry.h"
#include "tavkit/strings.h"
#include "tavkit/time.h"
#include "tavkit/unc.h"
#include "tavkit/xbuf.h"

#endif /* TAVKIT_H */
