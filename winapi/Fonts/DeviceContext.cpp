// winapi/Fonts/DeviceContext.cpp: what texts are measured on.
#include "Fonts/Font.h"
#include "winapi/Errors/LastError.h"

#include <cstring>
#include <new>

namespace winapi
{
namespace
{
constexpr int DOTS_PER_INCH = 96;
// No window that a program made has this number.
constexpr std::uintptr_t DESKTOP = 0x10;
} // namespace

HWND GetDesktopWindow()
{
    return reinterpret_cast<HWND>(DESKTOP);
}

HDC GetDC(HWND)
{
    const HGDIOBJ font = GetStockObject(SYSTEM_FONT);
    std::unique_ptr<Object> context(font ? new (std::nothrow) DeviceContext(font) : nullptr);
    if (context)
        return static_cast<HDC>(MakeHandle(std::move(context)));
    SetLastError(ERROR_NOT_ENOUGH_MEMORY);
    return nullptr;
}

int ReleaseDC(HWND, HDC hDC)
{
    return Reference<DeviceContext>(hDC) && ReleaseHandle(hDC, false);
}

int GetDeviceCaps(HDC hdc, int index)
{
    const Reference<DeviceContext> context(hdc);
    return context && (index == LOGPIXELSX || index == LOGPIXELSY) ? DOTS_PER_INCH : 0;
}

HGDIOBJ SelectObject(HDC hdc, HGDIOBJ h)
{
    Reference<DeviceContext> context(hdc);
    Reference<Font> font(h);
    if (!context || !font)
        return nullptr;
    const HGDIOBJ old = context->handle;
    context->handle = h;
    context->font = std::move(font);
    return old;
}

BOOL SystemParametersInfoA(UINT uiAction, UINT, LPVOID pvParam, UINT)
{
    if (uiAction != SPI_GETICONTITLELOGFONT || !pvParam) {
        SetLastError(ERROR_INVALID_PARAMETER);
        return FALSE;
    }
    LOGFONTA& font = *static_cast<LOGFONTA*>(pvParam);
    font = {};
    font.lfHeight = -11;
    font.lfWeight = 400;
    font.lfPitchAndFamily = 0x22; // varying widths, no serifs
    StoreText(font.lfFaceName, LF_FACESIZE, "MS Shell Dlg");
    return TRUE;
}
} // namespace winapi
