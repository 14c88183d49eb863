/*
 * A program that is linked with tavkit.lib: it takes a network name apart, keeps the parts as a
 * list, writes and reads hexadecimal text, and fills a buffer from its front. Where a call answers
 * in an unexpected way, the exit code is the number of the step.
 */
#include "console.h"

/* The parts of a network name as a list of strings, one after the other. */
static BOOL ListParts(LPCSTR pszName, LPSTR pList, DWORD cbList) {
  CHAR szServer[32], szShare[32], szPath[32];
  LPSTR pCursor = pList;
  const DWORD all = UT_UNC_SERVER | UT_UNC_RESOURCE | UT_UNC_PATH;
  if (utBreakUNCName(pszName, szServer, sizeof szServer, szShare, sizeof szShare, szPath,
                     sizeof szPath) != all) {
    return FALSE;
  }
  return utCopyNextAsciiz(szServer, &pCursor, &cbList) &&
         utCopyNextAsciiz(szShare, &pCursor, &cbList) &&
         utCopyNextAsciiz(szPath, &pCursor, &cbList);
}

/* Writes four bytes as text, cuts the text to `cch` characters and reads it as a number. */
static DWORD ReadBack(CHAR* pszText, DWORD cch) {
  static const BYTE bytes[4] = {0x00, 0x1F, 0xA5, 0xFF};
  utHex2Ascii(pszText, bytes, sizeof bytes);
  pszText[cch] = 0;
  return utAtoX(pszText);
}

static BOOL KeepInBuffer(LPCSTR psz) {
  LPVOID pCopy = NULL;
  const HXBUF hXBuf = utXBufCreate(64, NULL);
  const BOOL isKept = utXBufCopyStringTo(hXBuf, UT_XBUF_FRONT, psz, &pCopy);
  if (isKept) PrintLine("kept", (LPCSTR)pCopy);
  utXBufDestroy(hXBuf);
  return isKept;
}

int start(void) {
  CHAR list[64], szText[9];
  LPCSTR pszPart;
  if (!ListParts("\\\\server\\reports\\2024\\may", list, sizeof list)) return 1;
  if (utMultiAsciizStringCount(list) != 3) return 2;
  for (pszPart = list; *pszPart != 0; pszPart = utNextAsciiz(pszPart)) PrintLine("part", pszPart);
  if (ReadBack(szText, 6) != 0x1FA5) return 3;
  PrintLine("text", szText);
  if (!KeepInBuffer(utFindChar("first,second", ','))) return 4;
  return utDaysInMonth(2024, 2) == 29 ? 0 : 5;
}
