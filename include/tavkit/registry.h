/**
 * @defgroup registry Registry values
 *
 * Registry values in one call each: as stored, and with a type and a default. What holds for all
 * registry operations, those on private user settings included:
 *
 * - Form: byte strings only; there are no wide twins.
 * - hKey: an open key or a predefined one. It is never closed here, and what a call opens it closes
 *   itself, on every path; only utRegOpenPrivateUserKey leaves that to its caller.
 * - pszSubKey: the path of a key below hKey. NULL means hKey itself, which is then used as it was
 *   opened. An empty path is a path: the key is opened once more, for this call.
 * - Value name: as the platform takes it. NULL and "" both name the default value of the key.
 * - Sizes: in bytes, the terminator of a text included.
 * - Access: a key is opened with KEY_QUERY_VALUE to probe and to read, with KEY_SET_VALUE to write
 *   and to delete a value, and created with KEY_ALL_ACCESS. An hKey used as it was opened needs the
 *   same; what the platform asks of the key that a path starts from is the platform's matter.
 * - Result: an error code of the platform, 0 for success, where nothing else is said.
 *
 * @{
 */
#ifndef TAVKIT_REGISTRY_H
#define TAVKIT_REGISTRY_H

#include "types.h"

/**
 * Tells whether a key is there.
 *
 * @param hKey      the key to start from.
 * @param pszSubKey the path below it; NULL or "" gives 0.
 * @return 0 if the platform reports ERROR_FILE_NOT_FOUND, else 1: a key that exists and can't be
 *         opened, for lack of rights or for another reason, counts as there. So does any key whose
 *         opening fails with another code: the platform has others for an hKey that is not valid
 *         and for a path that begins with a backslash.
 */
UT_EXPORT(44) BOOL UT_API utRegVerifyKey(HKEY hKey, LPCSTR pszSubKey);

/**
 * Tells whether a value is there and may be read. Its data are not read, whatever their size.
 *
 * @param hKey, pszSubKey, pszValueName the value.
 * @param pdwType receives the value's type; may be NULL. What it holds if the result is 0 is the
 *                platform's matter.
 * @return 1 if the value can be queried, else 0.
 */
UT_EXPORT(43)
BOOL UT_API utRegVerifyValue(HKEY hKey, LPCSTR pszSubKey, LPCSTR pszValueName, LPDWORD pdwType);

/**
 * Reads a value of any type, as the platform delivers it. The last three arguments reach the
 * platform as they come, and what they refer to after a failure is the platform's matter, but for
 * the size that ERROR_MORE_DATA comes with. To a text that was stored without a terminator the
 * platform may add one, where the stated size covers it; otherwise the text has none.
 *
 * @param hKey, pszSubKey, pszValueName the value.
 * @param pdwType receives its type; may be NULL.
 * @param pData   receives its data; NULL asks for the size only.
 * @param pcbData the size of pData in bytes, and then that of the data. NULL only if pData is NULL.
 *                UT_SIZE_UNCHECKED is a number like any other, and no value is larger: the caller
 *                provides the bytes of any stored value and one more.
 * @return 0, or the code of the platform operation that failed: ERROR_FILE_NOT_FOUND for a missing
 *         key or value; ERROR_MORE_DATA, with the size needed in *pcbData, for data that don't fit.
 */
UT_EXPORT(40)
DWORD UT_API utRegQueryValue(HKEY hKey, LPCSTR pszSubKey, LPCSTR pszValueName, LPDWORD pdwType,
                             LPVOID pData, LPDWORD pcbData);

/**
 * Writes a value of any type.
 *
 * @param hKey, pszSubKey, pszValueName the value; a missing one is made.
 * @param dwType  its type.
 * @param pData   its data, as the platform takes them.
 * @param cbData  their size in bytes.
 * @param fCreate non-zero to make a key that isn't there, with every level above it. Without effect
 *                for a NULL pszSubKey and for a key that can't be opened for another reason.
 * @return 0, or the code of the platform operation that failed. A key that was made stays if the
 *         value can't be written.
 */
UT_EXPORT(41)
DWORD UT_API utRegSetValue(HKEY hKey, LPCSTR pszSubKey, LPCSTR pszValueName, DWORD dwType,
                           LPCVOID pData, DWORD cbData, BOOL fCreate);

/**
 * Deletes a value.
 *
 * @param hKey, pszSubKey, pszValueName the value.
 * @return 0, or the code of the platform operation that failed: ERROR_FILE_NOT_FOUND for a missing
 *         key or value.
 */
UT_EXPORT(42) DWORD UT_API utRegDeleteValue(HKEY hKey, LPCSTR pszSubKey, LPCSTR pszValueName);

/**
 * Reads a text, or puts a default in its place. Only REG_SZ is taken. The value is read straight
 * into pszBuffer and gets no terminator from the library: a text that was stored without one has
 * one there only if the platform adds it, as for utRegQueryValue.
 *
 * @param hKey, pszSubKey, pszValueName the value.
 * @param pszDefault the text to store at a failure, cut to fit as by utCopyString; NULL for
 *                   an empty one. It must not lie in pszBuffer.
 * @param pszBuffer  receives the text; with NULL nothing is stored.
 * @param cbBuffer   its size in bytes. With 0 nothing is stored; with UT_SIZE_UNCHECKED the caller
 *                   provides the larger of two: any stored value and one byte more, and the
 *                   default's length + 2 bytes.
 * @return 0; ERROR_INVALID_DATA for a value of another type; or the code of utRegQueryValue. The
 *         buffer holds the default at every failure, and nothing tells how much was read.
 */
UT_EXPORT(110)
DWORD UT_API utRegGetValueString(HKEY hKey, LPCSTR pszSubKey, LPCSTR pszValueName,
                                 LPCSTR pszDefault, LPSTR pszBuffer, DWORD cbBuffer);

/**
 * Reads a number, or puts a default in its place. Only REG_DWORD is taken; one that was stored with
 * fewer than four bytes leaves the other bytes of *pdwValue as they were.
 *
 * @param hKey, pszSubKey, pszValueName the value.
 * @param dwDefault the number to store at a failure.
 * @param pdwValue  receives the number; not NULL.
 * @return 0; ERROR_INVALID_DATA for a value of another type; ERROR_MORE_DATA for one of more than
 *         four bytes, whatever its type; or another code of utRegQueryValue.
 */
UT_EXPORT(111)
DWORD UT_API utRegGetValueDword(HKEY hKey, LPCSTR pszSubKey, LPCSTR pszValueName, DWORD dwDefault,
                                LPDWORD pdwValue);

/**
 * Reads a boolean, or puts a default in its place. Taken are REG_BINARY by its first byte,
 * REG_DWORD by its 32 bits, and a REG_SZ that is, without regard to case, one of the words TRUE,
 * YES, ON, 1 and FALSE, NO, OFF, 0, compared by the platform's lstrcmpiA. A text that was stored
 * without a terminator ends where its data end. A REG_BINARY of no bytes and a REG_DWORD of fewer
 * than four are no boolean.
 *
 * @param hKey, pszSubKey, pszValueName the value.
 * @param fDefault what to store at a failure, exactly as it comes.
 * @param pfValue  receives 1 or 0, or fDefault; not NULL.
 * @return 0; ERROR_INVALID_DATA for a value that is no boolean; ERROR_MORE_DATA for one of more
 *         than 48 bytes, whatever its type; or another code of utRegQueryValue.
 */
UT_EXPORT(112)
DWORD UT_API utRegGetValueBool(HKEY hKey, LPCSTR pszSubKey, LPCSTR pszValueName, BOOL fDefault,
                               BOOL* pfValue);

/**
 * Writes a text, as REG_SZ with its terminator.
 *
 * @param hKey, pszSubKey, pszValueName the value.
 * @param pszText the text; NULL writes an empty one. More bytes than 32 bits count are refused.
 * @param fCreate non-zero to make a key that isn't there.
 * @return the result of utRegSetValue; ERROR_INVALID_PARAMETER for a text that was refused.
 */
UT_EXPORT(113)
DWORD UT_API utRegSetValueString(HKEY hKey, LPCSTR pszSubKey, LPCSTR pszValueName, LPCSTR pszText,
                                 BOOL fCreate);

/**
 * Writes a number, as REG_DWORD.
 *
 * @param hKey, pszSubKey, pszValueName the value.
 * @param dwValue the number.
 * @param fCreate non-zero to make a key that isn't there.
 * @return the result of utRegSetValue.
 */
UT_EXPORT(114)
DWORD UT_API utRegSetValueDword(HKEY hKey, LPCSTR pszSubKey, LPCSTR pszValueName, DWORD dwValue,
                                BOOL fCreate);

/**
 * Writes a boolean, as REG_BINARY of one byte: 1 for any fValue but 0.
 *
 * @param hKey, pszSubKey, pszValueName the value.
 * @param fValue  the boolean.
 * @param fCreate non-zero to make a key that isn't there.
 * @return the result of utRegSetValue.
 */
UT_EXPORT(115)
DWORD UT_API utRegSetValueBool(HKEY hKey, LPCSTR pszSubKey, LPCSTR pszValueName, BOOL fValue,
                               BOOL fCreate);

/** @} */

/**
 * @defgroup settings Private user settings
 *
 * Registry values in a tree of the user's own. A setting takes no key handle:
 *
 * @code
 * utRegWritePrivateUserDword("Window", "Width", 640, "Viewer");
 * width = utRegGetPrivateUserDword("Window", "Width", 320, "Viewer");
 * @endcode
 *
 * writes and reads the value "Width" of `HKEY_CURRENT_USER\Software\Brindlex\Viewer\Window`.
 *
 * Below HKEY_CURRENT_USER the key of a setting is `Software\Brindlex`, pszProduct and pszSection,
 * joined with single backslashes: in the path the product precedes the section, in the arguments
 * the section comes first. NULL leaves a part out; an empty part takes part in the join, which
 * gives a doubled or a trailing backslash. A part may hold backslashes of its own. What the
 * platform makes of such a path is its own matter.
 *
 * A path that takes more than 260 bytes with its terminator does not fit: lengths of product and
 * section that add up to 240 do. It reaches no platform operation; each text says what is given
 * then. Only utRegPathBrindlexSoftware has no such limit, but the size that it is given.
 *
 * @{
 */

/**
 * Writes the path of a setting's key, without HKEY_CURRENT_USER.
 *
 * @param pszPath    receives the path; NULL gives 0. It must not overlap the two parts.
 * @param cbPath     its size in bytes; 0 gives 0. UT_SIZE_UNCHECKED is a number like any other, so
 *                   every path that 32 bits can measure fits, and the caller provides its bytes.
 * @param pszSection, pszProduct the parts of the path, each of any length.
 * @return 1, or 0 if the path doesn't fit; pszPath then stays untouched.
 */
UT_EXPORT(83)
BOOL UT_API utRegPathBrindlexSoftware(LPSTR pszPath, DWORD cbPath, LPCSTR pszSection,
                                      LPCSTR pszProduct);

/**
 * Opens a key of the tree. The caller closes it, with RegCloseKey.
 *
 * @param pszSection, pszProduct the key.
 * @param samDesired the access to ask for.
 * @param phkResult  receives the key; as the platform takes it. What it holds after a failure is
 *                   the platform's matter; nothing is stored if the path doesn't fit.
 * @return 0, or the platform's code; ERROR_FILE_NOT_FOUND if the path doesn't fit.
 */
UT_EXPORT(81)
DWORD UT_API utRegOpenPrivateUserKey(LPCSTR pszSection, LPCSTR pszProduct, REGSAM samDesired,
                                     PHKEY phkResult);

/**
 * Tells whether a key of the tree is there.
 *
 * @param pszSection, pszProduct the key.
 * @return the result of utRegVerifyKey; 0 if the path doesn't fit.
 */
UT_EXPORT(82) BOOL UT_API utRegVerifyPrivateUserKey(LPCSTR pszSection, LPCSTR pszProduct);

/**
 * Tells whether a setting is there.
 *
 * @param pszSection, pszValueName, pszProduct the setting.
 * @param pdwType as for utRegVerifyValue; untouched if the path doesn't fit.
 * @return the result of utRegVerifyValue; 0 if the path doesn't fit.
 */
UT_EXPORT(80)
BOOL UT_API utRegVerifyPrivateUserValue(LPCSTR pszSection, LPCSTR pszValueName, LPCSTR pszProduct,
                                        LPDWORD pdwType);

/**
 * Deletes a setting.
 *
 * @param pszSection, pszValueName, pszProduct the setting.
 * @return 1 if it was deleted; 0 if it wasn't there, for any other failure, and if the path doesn't
 *         fit.
 */
UT_EXPORT(73)
BOOL UT_API utRegDeletePrivateUserValue(LPCSTR pszSection, LPCSTR pszValueName, LPCSTR pszProduct);

/**
 * Deletes a key of the tree with its values. Whether one with sub-keys is deleted is the platform's
 * matter.
 *
 * @param pszSection, pszProduct the key; with both NULL the root of the tree.
 * @return 0, or the platform's code; ERROR_INVALID_PARAMETER if the path doesn't fit.
 */
UT_EXPORT(86) DWORD UT_API utRegDeletePrivateUserKey(LPCSTR pszSection, LPCSTR pszProduct);

/**
 * Reads a text as utRegGetValueString does, and measures it.
 *
 * @param pszSection, pszValueName, pszProduct the setting.
 * @param pszDefault as for utRegGetValueString.
 * @param pszBuffer  receives the text or the default; NULL gives 0.
 * @param cbBuffer   as for utRegGetValueString, UT_SIZE_UNCHECKED included; 0 gives 0.
 * @return the bytes before the terminator, which doesn't tell a stored text from the default. For a
 *         text that the platform delivers without a terminator, the bytes up to the next zero in
 *         the buffer, or those of the text if there is none; with UT_SIZE_UNCHECKED no zero after
 *         it is looked for. 0, with the buffer untouched, if the path doesn't fit.
 */
UT_EXPORT(74)
DWORD UT_API utRegGetPrivateUserString(LPCSTR pszSection, LPCSTR pszValueName, LPCSTR pszDefault,
                                       LPSTR pszBuffer, DWORD cbBuffer, LPCSTR pszProduct);

/**
 * Reads a number as utRegGetValueDword does; bytes that a short one lacks are zero.
 *
 * @param pszSection, pszValueName, pszProduct the setting.
 * @param dwDefault what to give at any failure.
 * @return the number, or dwDefault; that too if the path doesn't fit.
 */
UT_EXPORT(75)
DWORD UT_API utRegGetPrivateUserDword(LPCSTR pszSection, LPCSTR pszValueName, DWORD dwDefault,
                                      LPCSTR pszProduct);

/**
 * Reads a boolean as utRegGetValueBool does.
 *
 * @param pszSection, pszValueName, pszProduct the setting.
 * @param fDefault what to give at any failure, exactly as it comes.
 * @return 1 or 0, or fDefault; that too if the path doesn't fit.
 */
UT_EXPORT(76)
BOOL UT_API utRegGetPrivateUserBool(LPCSTR pszSection, LPCSTR pszValueName, BOOL fDefault,
                                    LPCSTR pszProduct);

/**
 * Reads a setting of any type as utRegQueryValue does.
 *
 * @param pszSection, pszValueName, pszProduct the setting.
 * @param pdwType, pData, pcbData as for utRegQueryValue.
 * @return the result of utRegQueryValue; ERROR_INVALID_PARAMETER if the path doesn't fit.
 */
UT_EXPORT(84)
DWORD UT_API utRegGetPrivateUserBinary(LPCSTR pszSection, LPCSTR pszValueName, LPDWORD pdwType,
                                       LPVOID pData, LPDWORD pcbData, LPCSTR pszProduct);

/**
 * Writes a text as utRegSetValueString does, and the key if it isn't there, or deletes the setting.
 *
 * @param pszSection, pszValueName, pszProduct the setting.
 * @param pszText the text; NULL deletes the setting instead.
 * @return 1, or 0 for a failure, such as a path that doesn't fit; with NULL the result of
 *         utRegDeletePrivateUserValue.
 */
UT_EXPORT(77)
BOOL UT_API utRegWritePrivateUserString(LPCSTR pszSection, LPCSTR pszValueName, LPCSTR pszText,
                                        LPCSTR pszProduct);

/**
 * Writes a number as utRegSetValueDword does, and the key if it isn't there.
 *
 * @param pszSection, pszValueName, pszProduct the setting.
 * @param dwValue the number.
 * @return 1, or 0 for a failure, such as a path that doesn't fit.
 */
UT_EXPORT(78)
BOOL UT_API utRegWritePrivateUserDword(LPCSTR pszSection, LPCSTR pszValueName, DWORD dwValue,
                                       LPCSTR pszProduct);

/**
 * Writes a boolean as utRegSetValueBool does, and the key if it isn't there.
 *
 * @param pszSection, pszValueName, pszProduct the setting.
 * @param fValue the boolean.
 * @return 1, or 0 for a failure, such as a path that doesn't fit.
 */
UT_EXPORT(79)
BOOL UT_API utRegWritePrivateUserBool(LPCSTR pszSection, LPCSTR pszValueName, BOOL fValue,
                                      LPCSTR pszProduct);

/**
 * Writes bytes as REG_BINARY, and the key if it isn't there, or deletes the setting.
 *
 * @param pszSection, pszValueName, pszProduct the setting.
 * @param pData  the bytes; NULL deletes the setting instead, whatever cbData says.
 * @param cbData their number.
 * @return 1, or 0 for a failure, such as a path that doesn't fit; with NULL the result of
 *         utRegDeletePrivateUserValue.
 */
UT_EXPORT(85)
BOOL UT_API utRegWritePrivateUserBinary(LPCSTR pszSection, LPCSTR pszValueName, LPCVOID pData,
                                        DWORD cbData, LPCSTR pszProduct);

/** @} */

#endif /* TAVKIT_REGISTRY_H */
