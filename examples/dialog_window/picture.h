/* Pictures of windows as PNG files. */
#ifndef PICTURE_H
#define PICTURE_H

#include <windows.h>

#include <gdiplus/gdiplus.h>

/* What the screen shows where the window is. */
static HBITMAP TakePicture(HWND hWnd) {
  RECT place;
  HDC hScreen, hMemory;
  HBITMAP hPicture;
  HGDIOBJ hBefore;
  GetWindowRect(hWnd, &place);
  hScreen = GetDC(NULL);
  hMemory = CreateCompatibleDC(hScreen);
  hPicture = CreateCompatibleBitmap(hScreen, place.right - place.left, place.bottom - place.top);
  hBefore = SelectObject(hMemory, hPicture);
  BitBlt(hMemory, 0, 0, place.right - place.left, place.bottom - place.top, hScreen, place.left,
         place.top, SRCCOPY);
  SelectObject(hMemory, hBefore);
  DeleteDC(hMemory);
  ReleaseDC(NULL, hScreen);
  return hPicture;
}

static BOOL SavePicture(HWND hWnd, const char* pszFile) {
  static const CLSID png = {0x557cf406, 0x1a04, 0x11d3, {0x9a, 0x73, 0, 0, 0xf8, 0x1e, 0xf3, 0x2e}};
  const GdiplusStartupInput input = {.GdiplusVersion = 1};
  const HBITMAP hPicture = TakePicture(hWnd);
  WCHAR file[MAX_PATH];
  ULONG_PTR token;
  GpBitmap* pImage = NULL;
  GpStatus status;
  MultiByteToWideChar(CP_ACP, 0, pszFile, -1, file, MAX_PATH);
  GdiplusStartup(&token, &input, NULL);
  GdipCreateBitmapFromHBITMAP(hPicture, NULL, &pImage);
  status = GdipSaveImageToFile((GpImage*)pImage, file, &png, NULL);
  GdipDisposeImage((GpImage*)pImage);
  GdiplusShutdown(token);
  DeleteObject(hPicture);
  return status == Ok;
}

#endif
