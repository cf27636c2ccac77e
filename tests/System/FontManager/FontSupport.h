// tests/System/FontManager/FontSupport.h: what the tests of fonts share.
#pragma once

#include <Ostra/String/CString.h>
#include <System/FontManager/FontManager.h>
#include <System/FontManager/LogicalFont.h>

#include <windows.h>

#include <gtest/gtest.h>

#include <string>

// The screen, with what was selected into it at the end as at the beginning.
class Screen
{
public:
    Screen() : dc(GetDC(GetDesktopWindow())) {}
    ~Screen() { ReleaseDC(GetDesktopWindow(), dc); }
    Screen(const Screen&) = delete;
    Screen& operator=(const Screen&) = delete;
    operator HDC() const { return dc; }

private:
    HDC dc;
};

inline int CALLBACK CountFont(const LOGFONTA*, const TEXTMETRICA*, DWORD, LPARAM count)
{
    ++*reinterpret_cast<int*>(count);
    return 1;
}

// How many styles and character sets of a family the system tells.
inline int StylesOf(const char* family)
{
    int count = 0;
    EnumFontFamiliesA(Screen(), family, CountFont, reinterpret_cast<LPARAM>(&count));
    return count;
}

// Wine for 32-bit programs has no device contexts that work.
inline bool HasFonts()
{
    return GetDeviceCaps(Screen(), LOGPIXELSY) == 96 && StylesOf("DejaVu Sans") > 0 &&
           StylesOf("Liberation Serif") > 0;
}

#define OSTRA_NEEDS_FONTS()                                                                        \
    if (!HasFonts())                                                                               \
    GTEST_SKIP() << "there are no device contexts with DejaVu and Liberation here"

// What a font is asked for by.
struct Request
{
    std::string name = "DejaVu Sans";
    unsigned charset = 0;
    unsigned points = 12;
    int bold = 0, italic = 0, underline = 0, strikeOut = 0;

    bool operator==(const Request&) const = default;
};

inline CT_LogicalFont* Hire(HDC dc, const Request& r)
{
    const CT_CString name(r.name.c_str());
    return CT_FontManager::spco_GetFontManager()->pco_Hire(dc, &name, r.charset, r.points, r.bold,
                                                           r.italic, r.underline, r.strikeOut);
}

struct MadeFont
{
    MadeFont(HDC dc, const Request& r)
        : name(r.name.c_str()),
          font(nullptr, dc, &name, r.charset, r.points, r.bold, r.italic, r.underline, r.strikeOut)
    {}
    CT_LogicalFont* operator->() { return &font; }

    CT_CString name;
    CT_LogicalFont font;
};
