// winapi/Fonts/Font.h: fonts, device contexts to measure with, and the system's settings of fonts.
//
// Nothing is drawn and no display is opened: a device context is a record that has a font, at 96
// dots per inch. Heights and widths are dots. Faces are those that Fontconfig knows and that can be
// scaled; FreeType measures them, with the hints of the font.
//
// A device context and what is selected into it belong to one thread at a time; fonts may be shared
// by threads.
#pragma once

#include "winapi/Base/Constants.h"

struct HDC__;
using HDC = HDC__*;
struct HFONT__;
using HFONT = HFONT__*;
using HGDIOBJ = void*;

constexpr int LF_FACESIZE = 32;
constexpr int LF_FULLFACESIZE = 64;

struct tagLOGFONTA
{
    LONG lfHeight; // Below 0 that of the letters, above with the internal leading; 0 is 16.
    LONG lfWidth;
    LONG lfEscapement;
    LONG lfOrientation;
    LONG lfWeight;
    BYTE lfItalic;
    BYTE lfUnderline;
    BYTE lfStrikeOut;
    BYTE lfCharSet;
    BYTE lfOutPrecision;
    BYTE lfClipPrecision;
    BYTE lfQuality;
    BYTE lfPitchAndFamily;
    CHAR lfFaceName[LF_FACESIZE];
};
using LOGFONTA = tagLOGFONTA;

struct tagENUMLOGFONTA
{
    LOGFONTA elfLogFont;
    BYTE elfFullName[LF_FULLFACESIZE];
    BYTE elfStyle[LF_FACESIZE];
};
using ENUMLOGFONTA = tagENUMLOGFONTA;

struct tagTEXTMETRICA
{
    LONG tmHeight;
    LONG tmAscent;
    LONG tmDescent;
    LONG tmInternalLeading;
    LONG tmExternalLeading;
    LONG tmAveCharWidth;
    LONG tmMaxCharWidth;
    LONG tmWeight;
    LONG tmOverhang;
    LONG tmDigitizedAspectX;
    LONG tmDigitizedAspectY;
    BYTE tmFirstChar;
    BYTE tmLastChar;
    BYTE tmDefaultChar;
    BYTE tmBreakChar;
    BYTE tmItalic;
    BYTE tmUnderlined;
    BYTE tmStruckOut;
    BYTE tmPitchAndFamily;
    BYTE tmCharSet;
};
using TEXTMETRICA = tagTEXTMETRICA;

// The fields of a TEXTMETRICA, and what a scalable face has besides.
struct tagNEWTEXTMETRICA
{
    LONG tmHeight;
    LONG tmAscent;
    LONG tmDescent;
    LONG tmInternalLeading;
    LONG tmExternalLeading;
    LONG tmAveCharWidth;
    LONG tmMaxCharWidth;
    LONG tmWeight;
    LONG tmOverhang;
    LONG tmDigitizedAspectX;
    LONG tmDigitizedAspectY;
    BYTE tmFirstChar;
    BYTE tmLastChar;
    BYTE tmDefaultChar;
    BYTE tmBreakChar;
    BYTE tmItalic;
    BYTE tmUnderlined;
    BYTE tmStruckOut;
    BYTE tmPitchAndFamily;
    BYTE tmCharSet;
    DWORD ntmFlags; // 1 italic, 20h bold, 40h regular
    UINT ntmSizeEM;
    UINT ntmCellHeight;
    UINT ntmAvgWidth;
};
using NEWTEXTMETRICA = tagNEWTEXTMETRICA;

struct ABC
{
    int abcA;  // from the place of writing to the glyph
    UINT abcB; // the glyph
    int abcC;  // from there to the next place
};
using LPABC = ABC*;

struct FONTSIGNATURE
{
    DWORD fsUsb[4];
    DWORD fsCsb[2]; // a bit a character set
};
using LPFONTSIGNATURE = FONTSIGNATURE*;

struct LOCALESIGNATURE
{
    DWORD lsUsb[4];
    DWORD lsCsbDefault[2];
    DWORD lsCsbSupported[2];
};

using FONTENUMPROCA = int(CALLBACK*)(const LOGFONTA* font, const TEXTMETRICA* metrics, DWORD type,
                                     LPARAM parameter);

namespace winapi
{
constexpr UINT SPI_GETICONTITLELOGFONT = 31;
constexpr int LOGPIXELSX = 88;
constexpr int LOGPIXELSY = 90;
constexpr int SYSTEM_FONT = 13;
constexpr DWORD TRUETYPE_FONTTYPE = 4;

WINAPI_EXPORT HWND GetDesktopWindow();
// A new device context, whatever the window, with the system font selected; null without memory.
WINAPI_EXPORT HDC GetDC(HWND hWnd);
// 1, or 0 for what is no device context.
WINAPI_EXPORT int ReleaseDC(HWND hWnd, HDC hDC);
// 96 for the dots per inch both ways; 0 for all else.
WINAPI_EXPORT int GetDeviceCaps(HDC hdc, int index);
// Gives the object selected before; null, with nothing changed, for what isn't one.
WINAPI_EXPORT HGDIOBJ SelectObject(HDC hdc, HGDIOBJ h);
// 0 for what is no object. A stock object stays and gives 1; a font that is selected somewhere
// lives on there.
WINAPI_EXPORT BOOL DeleteObject(HGDIOBJ ho);
// The system font for 13, always the same handle; null for the others.
WINAPI_EXPORT HGDIOBJ GetStockObject(int i);

// Finds the face that fits best; there is always one. Null for null only, and without memory.
WINAPI_EXPORT HFONT CreateFontIndirectA(const LOGFONTA* lplf);
// Calls back for each family and each of its character sets, in the order of the names; with a
// name for each style and character set of that family. Ends with the first answer of 0; the result
// is the last answer, 1 without one. Metrics are in units of the face.
WINAPI_EXPORT int EnumFontFamiliesA(HDC hdc, LPCSTR lpLogfont, FONTENUMPROCA lpProc, LPARAM lParam);

// Of the font that is selected. All give 0 for what is no device context (6).
WINAPI_EXPORT BOOL GetTextMetricsA(HDC hdc, TEXTMETRICA* lptm);
// The name of the face taken, cut to c - 1 bytes and ended; the bytes stored without the end.
// Without a place the room needed.
WINAPI_EXPORT int GetTextFaceA(HDC hdc, int c, LPSTR lpName);
// The character set, with what the face says that it has.
WINAPI_EXPORT int GetTextCharsetInfo(HDC hdc, LPFONTSIGNATURE lpSig, DWORD dwFlags);
// Widths of the characters from iFirst to iLast: bytes of the font's code page, or units. Where the
// face has no glyph it is that of the face's glyph for such. 1, or 0 for a range that ends before
// it begins (87).
WINAPI_EXPORT BOOL GetCharWidthA(HDC hdc, UINT iFirst, UINT iLast, int* lpBuffer);
WINAPI_EXPORT BOOL GetCharWidthW(HDC hdc, UINT iFirst, UINT iLast, int* lpBuffer);
WINAPI_EXPORT BOOL GetCharWidth32A(HDC hdc, UINT iFirst, UINT iLast, int* lpBuffer);
WINAPI_EXPORT BOOL GetCharWidth32W(HDC hdc, UINT iFirst, UINT iLast, int* lpBuffer);
// 1 for a face that can be scaled.
WINAPI_EXPORT BOOL GetCharABCWidthsA(HDC hdc, UINT wFirst, UINT wLast, LPABC lpABC);

// The font of icon titles, to a LOGFONTA, for SPI_GETICONTITLELOGFONT; all else gives 0 (87).
WINAPI_EXPORT BOOL SystemParametersInfoA(UINT uiAction, UINT uiParam, LPVOID pvParam, UINT fWinIni);
} // namespace winapi
