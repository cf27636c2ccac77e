// System/FontManager/LogicalFont.cpp: a font as the system realised it.
#include <System/FontManager/LogicalFont.h>

#include <Ostra/Frame/Counts.h>
#include <Ostra/Frame/Report.h>
#include <Ostra/String/UString.h>
#include <System/FontManager/FontManager.h>
#include <System/OS/OS.h>

#include <windows.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>

static constexpr char qccz_Source[] = "System/FontManager/LogicalFont";

static constexpr unsigned STANDARD_SIZE = 10; // points
static constexpr int POINTS_PER_INCH = 72;
static constexpr int RESOLUTION = 90; // the device's dots per inch, up and down
static constexpr int STOCK_FONT = 13;
static constexpr int BOLD = 700;
static constexpr int REGULAR = 400;
static constexpr unsigned ANY_CHARSET = 1;
static constexpr unsigned FONT_SIGNATURE = 88; // the locale's
// The double-byte character sets.
static constexpr unsigned FIRST_DOUBLE = 0x80;
static constexpr unsigned LAST_DOUBLE = 0x88;
// The characters in the table of widths.
static constexpr unsigned FIRST_WIDTH = 0x20;
static constexpr unsigned LAST_WIDTH = 0x7F;
static constexpr unsigned WIDTHS = LAST_WIDTH - FIRST_WIDTH + 1;

// ---- Life ---------------------------------------------------------------------------------

void* CT_LogicalFont::operator new(std::size_t n_Size) noexcept
{
    return CT_Report::spv_New(n_Size, qccz_Source);
}

void CT_LogicalFont::operator delete(void* pv_Object)
{
    std::free(pv_Object);
}

CT_LogicalFont::CT_LogicalFont(HINSTANCE h_Instance, HDC h_DC, const CT_String* pcco_Name,
                               unsigned n_Charset, unsigned n_Size, int b_Bold, int b_Italic,
                               int b_Underline, int b_StrikeOut)
{
    v_Null();
    v_Init(h_Instance, h_DC, pcco_Name, n_Charset, n_Size, b_Bold, b_Italic, b_Underline,
           b_StrikeOut, 0);
}

CT_LogicalFont::CT_LogicalFont(const CT_LogicalFont& co_Other) = default;
CT_LogicalFont& CT_LogicalFont::operator=(const CT_LogicalFont& co_Other) = default;

void CT_LogicalFont::v_Null()
{
    h_Font = nullptr;
    n_Lock = 0;
    pn_Widths = nullptr;
    std::memset(ac_TextMetric, 0, sizeof(ac_TextMetric));
}

void CT_LogicalFont::v_Init(HINSTANCE h_Instance, HDC h_DC, const CT_String* pcco_Name,
                            unsigned n_Charset, unsigned n_Size, int b_Bold, int b_Italic,
                            int b_Underline, int b_StrikeOut, unsigned n_Requested)
{
    n_PixelsPerInch = static_cast<unsigned>(GetDeviceCaps(h_DC, RESOLUTION));
    n_Points = n_Size ? n_Size : STANDARD_SIZE;
    static_cast<CT_String&>(co_Name).v_Set(pcco_Name);
    v_InitRequest(n_Charset, b_Bold, b_Italic, b_Underline, b_StrikeOut);
    const HANDLE h_Old = h_Realise(h_DC);

    char ac_Face[LF_FACESIZE] = "";
    GetTextFaceA(h_DC, LF_FACESIZE, ac_Face);
    if (b_IsSubstituted(ac_Face, n_Charset)) {
        if (n_Charset) {
            SelectObject(h_DC, h_Old);
            DeleteObject(h_Font);
            v_Init(h_Instance, h_DC, pcco_Name, 0, n_Size, b_Bold, b_Italic, b_Underline,
                   b_StrikeOut, n_Charset);
            return;
        }
        v_TakeFace(h_DC, ac_Face);
    }
    if (n_Requested)
        pso_GetLogFont()->lfCharSet = static_cast<BYTE>(n_Charset = n_Requested);
    ABC so_Blank;
    b_TrueType = GetCharABCWidthsA(h_DC, ' ', ' ', &so_Blank);
    v_InitWidths(h_DC);
    SelectObject(h_DC, h_Old);
    n_CodePage = CT_FontManager::sn_GetCodePage(n_GetCharSet());
    n_RequestedCharset = n_Charset;
}

void CT_LogicalFont::v_InitRequest(unsigned n_Charset, int b_Bold, int b_Italic, int b_Underline,
                                   int b_StrikeOut)
{
    tagLOGFONTA* const pso_LogFont = pso_GetLogFont();
    std::memset(pso_LogFont, 0, sizeof(*pso_LogFont));
    const unsigned n_Scaled = POINTS_PER_INCH / 2 + n_Points * n_PixelsPerInch;
    pso_LogFont->lfHeight = static_cast<int>(0 - n_Scaled) / POINTS_PER_INCH;
    pso_LogFont->lfItalic = static_cast<BYTE>(b_Italic);
    pso_LogFont->lfUnderline = static_cast<BYTE>(b_Underline);
    pso_LogFont->lfWeight = b_Bold ? BOLD : REGULAR;
    pso_LogFont->lfCharSet = static_cast<BYTE>(n_Charset);
    pso_LogFont->lfStrikeOut = static_cast<BYTE>(b_StrikeOut);
    // A longer name is cut: no face has one.
    std::strncpy(pso_LogFont->lfFaceName, co_Name.qccz_Get(), LF_FACESIZE - 1);
}

// Makes the font and leaves it selected; gives what was selected before.
HANDLE CT_LogicalFont::h_Realise(HDC h_DC)
{
    h_Font = co_Name.vn_GetLength() ? CreateFontIndirectA(pso_GetLogFont())
                                    : static_cast<HFONT>(GetStockObject(STOCK_FONT));
    const HANDLE h_Old = SelectObject(h_DC, h_Font);
    GetTextMetricsA(h_DC, pso_GetTextMetric());
    return h_Old;
}

bool CT_LogicalFont::b_IsSubstituted(const char* qccz_Face, unsigned n_Charset) const
{
    CT_CString co_Face(qccz_Face);
    CT_FontManager::sv_StripCharsetSpecifier(&co_Face, n_Charset);
    return std::strcmp(pcso_GetLogFont()->lfFaceName, co_Face.qccz_Get()) != 0;
}

// Takes name and character set of the first of its answers, which ends an enumeration.
static int CALLBACK i_TakeFirst(const LOGFONTA* pcso_Font, const TEXTMETRICA*, DWORD, LPARAM l_To)
{
    tagLOGFONTA* const pso_To = reinterpret_cast<tagLOGFONTA*>(l_To);
    std::memcpy(pso_To->lfFaceName, pcso_Font->lfFaceName, LF_FACESIZE);
    pso_To->lfCharSet = pcso_Font->lfCharSet;
    return 0;
}

void CT_LogicalFont::v_TakeFace(HDC h_DC, const char* qccz_Face)
{
    EnumFontFamiliesA(h_DC, qccz_Face, i_TakeFirst, reinterpret_cast<LPARAM>(pso_GetLogFont()));
}

void CT_LogicalFont::v_InitWidths(HDC h_DC)
{
    if (b_IsDBCS())
        return;
    // Without the table each character costs a call.
    pn_Widths = static_cast<int*>(std::calloc(WIDTHS, sizeof(*pn_Widths)));
    if (!pn_Widths)
        return;
    if (CT_OS::sb_GetIsWindows95())
        GetCharWidthA(h_DC, FIRST_WIDTH, LAST_WIDTH, pn_Widths);
    else
        GetCharWidth32W(h_DC, FIRST_WIDTH, LAST_WIDTH, pn_Widths);
}

void CT_LogicalFont::v_Exit()
{
    if (h_Font && co_Name.vn_GetLength())
        DeleteObject(h_Font);
    std::free(pn_Widths);
    pn_Widths = nullptr;
}

// ---- Questions ----------------------------------------------------------------------------

int CT_LogicalFont::b_IsEqual(const CT_String* pcco_Name, unsigned n_Charset, unsigned n_Size,
                              int b_Bold, int b_Italic, int b_Underline, int b_StrikeOut,
                              unsigned n_Resolution) const
{
    return !co_Name.vi_Compare(pcco_Name, 0, ALL, 0) &&
           b_IsRequest(n_Charset, n_Size, b_Bold, b_Italic, b_Underline, b_StrikeOut, n_Resolution);
}

int CT_LogicalFont::b_IsRequest(unsigned n_Charset, unsigned n_Size, int b_Bold, int b_Italic,
                                int b_Underline, int b_StrikeOut, unsigned n_Resolution) const
{
    const tagLOGFONTA* const pcso_LogFont = pcso_GetLogFont();
    return n_Charset == n_RequestedCharset && b_Bold == b_GetBold() &&
           static_cast<BYTE>(b_Italic) == pcso_LogFont->lfItalic &&
           static_cast<BYTE>(b_Underline) == pcso_LogFont->lfUnderline &&
           static_cast<BYTE>(b_StrikeOut) == pcso_LogFont->lfStrikeOut && n_Size == n_Points &&
           n_Resolution == n_PixelsPerInch;
}

// How many characters of a text are to be measured.
static unsigned n_GetCount(const CT_String* pcco_Text, unsigned n_Start, unsigned n_Length)
{
    const unsigned n_All = pcco_Text->vn_GetLength();
    return n_Start < n_All ? std::min(n_Length, n_All - n_Start) : 0;
}

unsigned CT_LogicalFont::n_GetTextExtent(HDC h_DC, const CT_CString* pcco_Text, unsigned n_Start,
                                         unsigned n_Length) const
{
    unsigned n_Extent = static_cast<unsigned>(pcso_GetTextMetric()->tmOverhang);
    const unsigned n_Count = n_GetCount(pcco_Text, n_Start, n_Length);
    if (!n_Count)
        return n_Extent;
    const unsigned char* pcc_At =
        reinterpret_cast<const unsigned char*>(pcco_Text->qccz_Get()) + n_Start;
    const unsigned char* const pcc_End = pcc_At + n_Count;
    const int b_Double = b_IsDBCS();
    while (pcc_At < pcc_End) {
        unsigned n_Character = *pcc_At++;
        // The partner of a last lead byte is the terminator, or what stands behind the range.
        if (b_Double && IsDBCSLeadByteEx(n_CodePage, static_cast<BYTE>(n_Character)))
            n_Character |= static_cast<unsigned>(*pcc_At++) << 8;
        n_Extent += n_GetWidth(h_DC, n_Character);
    }
    return n_Extent;
}

unsigned CT_LogicalFont::n_GetWidth(HDC h_DC, unsigned n_Character) const
{
    if (pn_Widths && n_Character >= FIRST_WIDTH && n_Character <= LAST_WIDTH)
        return static_cast<unsigned>(pn_Widths[n_Character - FIRST_WIDTH]);
    // A system that looks for lead bytes in the upper half takes a pair for two characters.
    int ai_Widths[2] = {};
    if (CT_OS::sb_GetIsWindowsNT())
        GetCharWidth32A(h_DC, n_Character, n_Character, ai_Widths);
    else
        GetCharWidthA(h_DC, n_Character, n_Character, ai_Widths);
    return static_cast<unsigned>(ai_Widths[0]);
}

unsigned CT_LogicalFont::n_GetTextExtent(HDC h_DC, const CT_UString* pcco_Text, unsigned n_Start,
                                         unsigned n_Length) const
{
    unsigned n_Extent = static_cast<unsigned>(pcso_GetTextMetric()->tmOverhang);
    const unsigned n_Count = n_GetCount(pcco_Text, n_Start, n_Length);
    if (!n_Count)
        return n_Extent;
    if (CT_OS::sb_GetIsWindows32s()) {
        CT_CString co_Text(n_CodePage);
        co_Text.v_Replace(pcco_Text, n_Start, n_Count, 0);
        return n_GetTextExtent(h_DC, &co_Text, 0, ALL);
    }
    const unsigned short* const qcuz_Text = pcco_Text->qcuz_Get() + n_Start;
    for (unsigned n = 0; n < n_Count; ++n)
        n_Extent += n_GetWideWidth(h_DC, qcuz_Text[n]);
    return n_Extent;
}

unsigned CT_LogicalFont::n_GetWideWidth(HDC h_DC, unsigned short u_Character) const
{
    int i_Width = 0;
    if (pn_Widths && u_Character >= FIRST_WIDTH && u_Character <= LAST_WIDTH)
        i_Width = pn_Widths[u_Character - FIRST_WIDTH];
    else if (CT_OS::sb_GetIsWindows95())
        GetCharWidthW(h_DC, u_Character, u_Character, &i_Width);
    else
        GetCharWidth32W(h_DC, u_Character, u_Character, &i_Width);
    // Fonts of some character sets have no glyph at this place, and paths would be measured short.
    if (!i_Width && u_Character == '\\')
        i_Width = pcso_GetTextMetric()->tmAveCharWidth;
    return static_cast<unsigned>(i_Width);
}

int CT_LogicalFont::b_IsLocaleSupported(HDC h_DC, unsigned n_Locale) const
{
    const HANDLE h_Old = SelectObject(h_DC, h_Font);
    LOCALESIGNATURE so_Locale;
    FONTSIGNATURE so_Font;
    DWORD n_Sets = 0;
    if (GetLocaleInfoA(n_Locale, FONT_SIGNATURE, reinterpret_cast<char*>(&so_Locale),
                       sizeof(so_Locale)) &&
        GetTextCharsetInfo(h_DC, &so_Font, 0) != static_cast<int>(ANY_CHARSET))
        n_Sets = so_Font.fsCsb[0] & so_Locale.lsCsbSupported[0];
    SelectObject(h_DC, h_Old);
    return static_cast<int>(n_Sets);
}

void CT_LogicalFont::v_GetFontSampleText(CT_CString* pco_Text)
{
    CT_FontManager::sv_GetFontSampleText(pco_Text, n_GetCharSet());
}

// ---- Access -------------------------------------------------------------------------------

const tagLOGFONTA* CT_LogicalFont::pcso_GetLogFont() const
{
    static_assert(sizeof(tagLOGFONTA) == sizeof(ac_LogFont) && alignof(tagLOGFONTA) == 4);
    return reinterpret_cast<const tagLOGFONTA*>(ac_LogFont);
}

const tagTEXTMETRICA* CT_LogicalFont::pcso_GetTextMetric() const
{
    static_assert(sizeof(tagTEXTMETRICA) == sizeof(ac_TextMetric) && alignof(tagTEXTMETRICA) == 4);
    return reinterpret_cast<const tagTEXTMETRICA*>(ac_TextMetric);
}

tagLOGFONTA* CT_LogicalFont::pso_GetLogFont()
{
    return const_cast<tagLOGFONTA*>(pcso_GetLogFont());
}

tagTEXTMETRICA* CT_LogicalFont::pso_GetTextMetric()
{
    return const_cast<tagTEXTMETRICA*>(pcso_GetTextMetric());
}

unsigned CT_LogicalFont::n_GetCharSet() const
{
    return pcso_GetLogFont()->lfCharSet;
}

int CT_LogicalFont::i_GetHeight() const
{
    return pcso_GetLogFont()->lfHeight;
}

int CT_LogicalFont::b_GetBold() const
{
    return pcso_GetLogFont()->lfWeight == BOLD;
}

int CT_LogicalFont::b_GetItalic() const
{
    return pcso_GetLogFont()->lfItalic;
}

int CT_LogicalFont::b_GetUnderline() const
{
    return pcso_GetLogFont()->lfUnderline;
}

int CT_LogicalFont::b_GetStrikeOut() const
{
    return pcso_GetLogFont()->lfStrikeOut;
}

int CT_LogicalFont::b_IsDBCS() const
{
    const unsigned n_Charset = pcso_GetTextMetric()->tmCharSet;
    return n_Charset >= FIRST_DOUBLE && n_Charset <= LAST_DOUBLE;
}
