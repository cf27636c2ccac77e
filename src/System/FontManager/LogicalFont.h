// System/FontManager/LogicalFont.h: a font as the system realised it, and widths of texts in it.
#pragma once

#include <Ostra/Frame/Export.h>
#include <Ostra/Frame/Platform.h>
#include <Ostra/Frame/RawCopy.h>
#include <Ostra/String/CString.h>

#include <cstddef>

// The system's font handle with the request that it was made from, the metrics that it really has,
// the widths of the printable ASCII characters, and a count of its users.
//
// Texts are measured by adding up the widths of their characters, so that 8-bit and wide texts get
// the same answer; there is no kerning. Characters outside ASCII, and all those of the double-byte
// sets, cost a call of the system each.
//
// A face that the system lacks in the character set asked for is asked for again without a set; the
// wish is remembered, and n_GetCharSet tells it. A face that it lacks altogether is replaced by the
// system, and pcso_GetLogFont names the face taken. Kept: a face of which small and capital letters
// are spelled otherwise is taken for lacking.
//
// Fonts are hired from CT_FontManager, which owns them.
//
// Units:   sizes in points of 1/72 inch, heights and widths in units of the device; offsets and
//          lengths are bytes of a CT_CString and units of a CT_UString.
// Owns:    the font handle, unless it is a stock font, and the table of widths.
// Reports: nothing; 60006 where a new font finds the heap exhausted. A font that can't be made has
//          a null handle, and metrics that mean nothing.
// Caller:  selects the font into the device context before texts are measured that aren't ASCII.
//          Keeps no copy by reference: handle and table would be freed twice.
// Threads: one thread at a time.
class OSTRA_API CT_LogicalFont
{
public:
    // ---- Life -------------------------------------------------------------------------------

    // Asks for a face, in a character set of the platform's numbers (1 is any), at a size (0 is
    // 10). An empty name is the system's stock font, whatever the rest.
    CT_LogicalFont(HINSTANCE h_Instance, HDC h_DC, const CT_String* pcco_Name, unsigned n_Charset,
                   unsigned n_Size, int b_Bold, int b_Italic, int b_Underline, int b_StrikeOut);
    // Kept: copies handle and table, without a hold on the block of the name.
    OSTRA_RAW_COPY CT_LogicalFont(const CT_LogicalFont& co_Other);
    OSTRA_RAW_COPY CT_LogicalFont& operator=(const CT_LogicalFont& co_Other);
    ~CT_LogicalFont() { v_Exit(); }

    static void* operator new(std::size_t n_Size) noexcept;
    static void* operator new(std::size_t, void* pv_Place) noexcept { return pv_Place; }
    static void operator delete(void* pv_Object);

    // ---- Questions --------------------------------------------------------------------------

    // True for the very request that the font was made from. Kept: a size of 0 and a truth value
    // other than 0 and 1 fit no font.
    int b_IsEqual(const CT_String* pcco_Name, unsigned n_Charset, unsigned n_Size, int b_Bold,
                  int b_Italic, int b_Underline, int b_StrikeOut, unsigned n_Resolution) const;

    // The width of a range of the text; a length of -1 is all from n_Start on.
    unsigned n_GetTextExtent(HDC h_DC, const CT_CString* pcco_Text, unsigned n_Start,
                             unsigned n_Length) const;
    unsigned n_GetTextExtent(HDC h_DC, const CT_UString* pcco_Text, unsigned n_Start,
                             unsigned n_Length) const;

    // The character sets, as bits, that both the font and the locale have; 0 for none.
    int b_IsLocaleSupported(HDC h_DC, unsigned n_Locale) const;

    // A text to show the font with.
    void v_GetFontSampleText(CT_CString* pco_Text);

    // ---- Users ------------------------------------------------------------------------------

    void v_Lock() { ++n_Lock; }
    void v_Unlock() { --n_Lock; }
    int b_IsLocked() const { return static_cast<int>(n_Lock); }

    // ---- Access -----------------------------------------------------------------------------

    unsigned n_GetPoints() const { return n_Points; }
    // The face as it was asked for.
    const CT_String* pcco_GetName() const { return &co_Name; }
    unsigned n_GetCharSet() const;
    // Below 0: the height of the letters without the internal leading.
    int i_GetHeight() const;
    int b_GetBold() const;
    int b_GetItalic() const;
    int b_GetUnderline() const;
    int b_GetStrikeOut() const;
    int b_IsTrueType() const { return b_TrueType; }
    // True for the character sets 128 to 136.
    int b_IsDBCS() const;
    HFONT h_GetHandle() const { return h_Font; }
    const tagTEXTMETRICA* pcso_GetTextMetric() const;
    const tagLOGFONTA* pcso_GetLogFont() const;
    unsigned n_GetCodePage() const { return n_CodePage; }

private:
    friend class CT_FontManager;

    void v_Null();
    void v_Init(HINSTANCE h_Instance, HDC h_DC, const CT_String* pcco_Name, unsigned n_Charset,
                unsigned n_Size, int b_Bold, int b_Italic, int b_Underline, int b_StrikeOut,
                unsigned n_Requested);
    void v_Exit();
    void v_InitRequest(unsigned n_Charset, int b_Bold, int b_Italic, int b_Underline,
                       int b_StrikeOut);
    // The request but for the name.
    int b_IsRequest(unsigned n_Charset, unsigned n_Size, int b_Bold, int b_Italic, int b_Underline,
                    int b_StrikeOut, unsigned n_Resolution) const;
    HANDLE h_Realise(HDC h_DC);
    bool b_IsSubstituted(const char* qccz_Face, unsigned n_Charset) const;
    void v_TakeFace(HDC h_DC, const char* qccz_Face);
    void v_InitWidths(HDC h_DC);
    unsigned n_GetWidth(HDC h_DC, unsigned n_Character) const;
    unsigned n_GetWideWidth(HDC h_DC, unsigned short u_Character) const;
    tagLOGFONTA* pso_GetLogFont();
    tagTEXTMETRICA* pso_GetTextMetric();

    // The order of the members is part of the interface; the structures are the platform's.
    HFONT h_Font;
    alignas(4) char ac_LogFont[60];    // tagLOGFONTA: the request as it was made
    alignas(4) char ac_TextMetric[56]; // tagTEXTMETRICA: the metrics as realised
    unsigned n_CodePage;
    unsigned n_RequestedCharset;
    int b_TrueType;
    CT_CString co_Name;
    unsigned n_Points;
    unsigned n_PixelsPerInch;
    unsigned n_Lock;
    int* pn_Widths; // those of 0x20 to 0x7F; null for the double-byte sets
};
