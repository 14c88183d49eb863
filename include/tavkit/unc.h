/**
 * @defgroup unc Paths and UNC names
 *
 * Path components and UNC names.
 *
 * A string is a UNC name if it begins with exactly two backslashes. It has up to three components,
 * and a run of backslashes between two of them counts as one separator:
 *
 * @code{.unparsed}
 * \\server\resource\dir\file
 *   server, resource, path dir\file
 * @endcode
 *
 * The path reaches to the end of the string, with whatever backslashes it holds. A forward slash is
 * no separator, and nothing else of a name is looked at. The resource separator is the first
 * backslash of the run after the server, the path separator the first one of the run after the
 * resource.
 *
 * Double-byte characters in the byte forms: the leading backslashes are counted by characters, but
 * a separator is found by bytes, so a trail byte of 0x5C ends a component. utAppendPathComponent
 * looks at the last character: such a trail byte at the end of a path is no separator.
 *
 * @{
 */
#ifndef TAVKIT_UNC_H
#define TAVKIT_UNC_H

#include "types.h"

/** Bit of the results of utBreakUNCName, utSearchUNCName and utCheckUNCName: the server. */
#define UT_UNC_SERVER 1u
/** Bit of the same results: the resource. */
#define UT_UNC_RESOURCE 2u
/** Bit of the same results: the path. */
#define UT_UNC_PATH 4u

/** Form of a server name with two leading backslashes. Any other value means the name alone. */
#define UT_SERVERNAME_UNC 1

/**
 * Appends a component to a path, in place. Unless the path ends with a backslash it gets one, an
 * empty path too; then the component follows without its leading backslashes.
 *
 * @param pszPath      writable string whose buffer also holds one backslash, the component and the
 *                     terminator; NULL does nothing.
 * @param pszComponent the component; NULL or an empty one leaves the path with its backslash, and
 *                     so does one of more bytes than 32 bits count. It may be the path itself,
 *                     which is appended with its backslash.
 */
UT_EXPORT(56) void UT_API utAppendPathComponent(LPSTR pszPath, LPCSTR pszComponent);
/** Wide form of utAppendPathComponent. */
UT_EXPORT(230) void UT_API utAppendPathComponentW(LPWSTR pszPath, LPCWSTR pszComponent);

/**
 * Copies the components of a name out. A component that the name doesn't have comes as an empty
 * string, and so do all three where the string is no UNC name. One that is too long is cut, as
 * utCopyMakeAsciiz does it. The result depends on the name alone.
 *
 * @param pszName     the name; NULL gives 0 and touches no buffer.
 * @param pszServer   receives the server; NULL to leave it out.
 * @param cbServer    size of that buffer in bytes; with 0 it stays untouched. With
 *                    UT_SIZE_UNCHECKED the caller provides the bytes of the component and its
 *                    terminator.
 * @param pszResource receives the resource; likewise.
 * @param cbResource  size of that buffer; likewise.
 * @param pszPath     receives the path; likewise.
 * @param cbPath      size of that buffer; likewise.
 * @return UT_UNC_SERVER, UT_UNC_RESOURCE and UT_UNC_PATH, each for a component that has at least
 *         one character, whether it was cut or not.
 */
UT_EXPORT(33)
DWORD UT_API utBreakUNCName(LPCSTR pszName, LPSTR pszServer, DWORD cbServer, LPSTR pszResource,
                            DWORD cbResource, LPSTR pszPath, DWORD cbPath);
/** Wide form of utBreakUNCName; sizes are in bytes, and a buffer below 2 stays untouched. */
UT_EXPORT(251)
DWORD UT_API utBreakUNCNameW(LPCWSTR pszName, LPWSTR pszServer, DWORD cbServer, LPWSTR pszResource,
                             DWORD cbResource, LPWSTR pszPath, DWORD cbPath);

/**
 * Finds the parts of a name. Unlike utBreakUNCName it reports separators, with or without anything
 * after them. A separator is the first backslash of its run: utSkipLeadChar leads to what follows.
 *
 * @param pszName               the name; NULL gives 0 and stores nothing.
 * @param ppszStart             receives pszName if it is a UNC name, else NULL; may be NULL.
 * @param ppszResourceSeparator receives the resource separator, or NULL; may be NULL.
 * @param ppszPathSeparator     receives the path separator, or NULL; may be NULL.
 * @return UT_UNC_SERVER for a UNC name, UT_UNC_RESOURCE and UT_UNC_PATH for the separators found.
 */
UT_EXPORT(36)
DWORD UT_API utSearchUNCName(LPCSTR pszName, LPSTR* ppszStart, LPSTR* ppszResourceSeparator,
                             LPSTR* ppszPathSeparator);
/** Wide form of utSearchUNCName. */
UT_EXPORT(254)
DWORD UT_API utSearchUNCNameW(LPCWSTR pszName, LPWSTR* ppszStart, LPWSTR* ppszResourceSeparator,
                              LPWSTR* ppszPathSeparator);

/**
 * Tells which components a name has.
 *
 * @param pszName the name; NULL gives 0.
 * @return what utBreakUNCName gives.
 */
UT_EXPORT(34) DWORD UT_API utCheckUNCName(LPCSTR pszName);
/** Wide form of utCheckUNCName. */
UT_EXPORT(252) DWORD UT_API utCheckUNCNameW(LPCWSTR pszName);

/**
 * Composes a name. Each part loses its leading backslashes. A resource or path that isn't NULL gets
 * its separator even if it is empty, and without a server the name begins with a single backslash.
 *
 * The size asked for is two bytes and the name for a server, one byte and the name for a resource
 * or path, and one byte for the terminator: never less than is written. Names count without their
 * leading backslashes, unlike that of utServerName. A name without any part asks for nothing, and
 * its terminator is written.
 *
 * @param pszOut      receives the name; NULL is refused. The parts don't overlap it.
 * @param cbOut       its size in bytes; 0 is refused. With UT_SIZE_UNCHECKED every size fits that
 *                    32 bits count, and the caller provides the size asked for.
 * @param pszServer   the server; NULL or an empty one leaves it out.
 * @param pszResource the resource; NULL leaves it out.
 * @param pszPath     the path; NULL leaves it out.
 * @return 1, or 0 with pszOut empty if the name didn't fit, or untouched if pszOut was refused.
 */
UT_EXPORT(32)
BOOL UT_API utBuildUNCName(LPSTR pszOut, DWORD cbOut, LPCSTR pszServer, LPCSTR pszResource,
                           LPCSTR pszPath);
/** Wide form of utBuildUNCName: every character counts two bytes, and 0 and 1 are refused. */
UT_EXPORT(250)
BOOL UT_API utBuildUNCNameW(LPWSTR pszOut, DWORD cbOut, LPCWSTR pszServer, LPCWSTR pszResource,
                            LPCWSTR pszPath);

/**
 * Writes a server name in one of two forms. It loses its leading backslashes, and gets exactly two
 * with UT_SERVERNAME_UNC.
 *
 * The size asked for is that of the name as it is passed, with its leading backslashes, of the two
 * that nForm adds, and of the terminator: `\\srv` asks for 8 bytes with UT_SERVERNAME_UNC, and 6
 * are written. An empty name asks for what is written, 3 bytes or 1.
 *
 * @param pszServer the name; NULL gives 0 and an empty pszOut.
 * @param nForm     UT_SERVERNAME_UNC, or any other value for the name alone.
 * @param pszOut    receives the name; NULL is refused. The name doesn't overlap it:
 *                  utConvertServerName works in place.
 * @param cbOut     its size in bytes; 0 is refused. With UT_SIZE_UNCHECKED every size fits that 32
 *                  bits count, and the caller provides the size asked for.
 * @return 1, or 0 with pszOut empty if the name didn't fit, or untouched if pszOut was refused.
 */
UT_EXPORT(35) BOOL UT_API utServerName(LPCSTR pszServer, INT nForm, LPSTR pszOut, DWORD cbOut);
/** Wide form of utServerName: every character counts two bytes, and 0 and 1 are refused. */
UT_EXPORT(253) BOOL UT_API utServerNameW(LPCWSTR pszServer, INT nForm, LPWSTR pszOut, DWORD cbOut);

/**
 * Brings a server name into one of the two forms of utServerName, in place. A name, with its
 * leading backslashes, of more than 61 bytes with UT_SERVERNAME_UNC, or of more than 63 bytes with
 * any other form, becomes empty: a double-byte character counts two.
 *
 * @param pszServer writable string, not NULL; with UT_SERVERNAME_UNC its buffer holds two bytes
 *                  more. Nothing after the new terminator is touched.
 * @param nForm     UT_SERVERNAME_UNC, or any other value for the name alone.
 */
UT_EXPORT(39) void UT_API utConvertServerName(LPSTR pszServer, INT nForm);
/** Wide form of utConvertServerName, with the same limits and the two more in 16-bit units. */
UT_EXPORT(257) void UT_API utConvertServerNameW(LPWSTR pszServer, INT nForm);

/**
 * Cuts the server out of a name, with the two backslashes before it.
 *
 * @param pszName the name; NULL, or one that is no UNC name, gives 0 and leaves pszOut alone.
 * @param pszOut  receives `\\server`, cut to fit; NULL is refused.
 * @param cbOut   its size in bytes; 0 is refused. With UT_SIZE_UNCHECKED the caller provides the
 *                bytes of the part and two terminators.
 * @return 1 if something was copied, else 0.
 */
UT_EXPORT(37) BOOL UT_API utExtractServer(LPCSTR pszName, LPSTR pszOut, DWORD cbOut);
/** Wide form of utExtractServer; cbOut is in bytes, and 0 and 1 are refused. */
UT_EXPORT(255) BOOL UT_API utExtractServerW(LPCWSTR pszName, LPWSTR pszOut, DWORD cbOut);

/**
 * Cuts server and resource out of a name, with all backslashes before them and between them.
 *
 * @param pszName the name; NULL, or one without a resource separator, gives 0 and leaves pszOut
 *                alone.
 * @param pszOut  receives `\\server\resource`, cut to fit; NULL is refused.
 * @param cbOut   as for utExtractServer.
 * @return 1 if something was copied, else 0.
 */
UT_EXPORT(38) BOOL UT_API utExtractServerResource(LPCSTR pszName, LPSTR pszOut, DWORD cbOut);
/** Wide form of utExtractServerResource; cbOut is in bytes, and 0 and 1 are refused. */
UT_EXPORT(256) BOOL UT_API utExtractServerResourceW(LPCWSTR pszName, LPWSTR pszOut, DWORD cbOut);

/** @} */

#endif /* TAVKIT_UNC_H */
