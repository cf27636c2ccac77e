// winapi/Fonts/TextMetrics.cpp: what the selected font measures.
#include "Fonts/CharacterSet.h"
#include "Fonts/Font.h"
#include "winapi/Errors/LastError.h"
#include "winapi/Text/CodePage.h"

#include <algorithm>
#include <cstring>

namespace winapi
{
namespace
{
// A character of the font's code page; beyond 255 its high byte leads.
WCHAR ToUnit(UINT page, UINT character)
{
    const char bytes[] = {static_cast<char>(character >> 8), static_cast<char>(character)};
    const int count = character > 0xFF ? 2 : 1;
    WCHAR units[2] = {};
    MultiByteToWideChar(page, 0, bytes + 2 - count, count, units, 2);
    return units[0];
}

// The code page of a font's bytes.
UINT PageOf(const Font& font)
{
    const CharacterSet* const set = FindCharacterSet(font.GetCharacterSet());
    return set ? set->page : CP_ACP;
}

// Calls apply(size, n, character) for the n characters of a range. False if there is no such font
// or range.
template <class Apply>
BOOL ForEach(HDC hdc, UINT first, UINT last, const void* buffer, Apply apply)
{
    const Reference<DeviceContext> context(hdc);
    const FaceSize* const size = context ? context->font->GetSize() : nullptr;
    if (!context)
        return FALSE;
    if (!size || !buffer || last < first || last > 0xFFFF) {
        SetLastError(size ? ERROR_INVALID_PARAMETER : ERROR_NOT_ENOUGH_MEMORY);
        return FALSE;
    }
    for (UINT n = 0; n <= last - first; ++n)
        apply(*context->font, *size, n, first + n);
    return TRUE;
}

BOOL StoreAnsiWidths(HDC hdc, UINT first, UINT last, int* widths)
{
    return ForEach(hdc, first, last, widths,
                   [widths](const Font& font, const FaceSize& size, UINT n, UINT character) {
                       widths[n] = size.GetWidth(ToUnit(PageOf(font), character));
                   });
}

BOOL StoreWideWidths(HDC hdc, UINT first, UINT last, int* widths)
{
    return ForEach(hdc, first, last, widths,
                   [widths](const Font&, const FaceSize& size, UINT n, UINT unit) {
                       widths[n] = size.GetWidth(static_cast<WCHAR>(unit));
                   });
}
} // namespace

BOOL GetTextMetricsA(HDC hdc, TEXTMETRICA* lptm)
{
    const Reference<DeviceContext> context(hdc);
    if (!context || !lptm)
        return FALSE;
    context->font->GetMetrics(*lptm);
    return TRUE;
}

int GetTextFaceA(HDC hdc, int c, LPSTR lpName)
{
    const Reference<DeviceContext> context(hdc);
    const FaceSize* const size = context ? context->font->GetSize() : nullptr;
    if (!size)
        return 0;
    const std::string& name = size->face.family;
    const int whole = static_cast<int>(name.size()) + 1;
    if (!lpName)
        return whole;
    if (c <= 0)
        return 0;
    const int stored = std::min(c, whole) - 1;
    std::memcpy(lpName, name.c_str(), static_cast<std::size_t>(stored));
    lpName[stored] = 0;
    return stored;
}

int GetTextCharsetInfo(HDC hdc, LPFONTSIGNATURE lpSig, DWORD)
{
    const Reference<DeviceContext> context(hdc);
    const FaceSize* const size = context ? context->font->GetSize() : nullptr;
    if (!size)
        return ANY_SET;
    if (lpSig) {
        const FaceFacts& facts = size->face.GetFacts();
        std::copy(std::begin(facts.unicodeRanges), std::end(facts.unicodeRanges), lpSig->fsUsb);
        std::copy(std::begin(facts.codePages), std::end(facts.codePages), lpSig->fsCsb);
    }
    return context->font->GetCharacterSet();
}

BOOL GetCharWidthA(HDC hdc, UINT iFirst, UINT iLast, int* lpBuffer)
{
    return StoreAnsiWidths(hdc, iFirst, iLast, lpBuffer);
}

BOOL GetCharWidth32A(HDC hdc, UINT iFirst, UINT iLast, int* lpBuffer)
{
    return StoreAnsiWidths(hdc, iFirst, iLast, lpBuffer);
}

BOOL GetCharWidthW(HDC hdc, UINT iFirst, UINT iLast, int* lpBuffer)
{
    return StoreWideWidths(hdc, iFirst, iLast, lpBuffer);
}

BOOL GetCharWidth32W(HDC hdc, UINT iFirst, UINT iLast, int* lpBuffer)
{
    return StoreWideWidths(hdc, iFirst, iLast, lpBuffer);
}

BOOL GetCharABCWidthsA(HDC hdc, UINT wFirst, UINT wLast, LPABC lpABC)
{
    return ForEach(hdc, wFirst, wLast, lpABC,
                   [lpABC](const Font& font, const FaceSize& size, UINT n, UINT character) {
                       const Glyph glyph = size.GetGlyph(ToUnit(PageOf(font), character));
                       lpABC[n] = {glyph.left, static_cast<UINT>(glyph.width),
                                   glyph.advance - glyph.left - glyph.width};
                   });
}
} // namespace winapi
