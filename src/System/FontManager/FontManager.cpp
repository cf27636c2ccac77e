// System/FontManager/FontManager.cpp: the pool of fonts.
#include <System/FontManager/FontManager.h>

#include <Ostra/Frame/Counts.h>
#include <Ostra/Frame/Report.h>
#include <Ostra/String/CString.h>
#include <Ostra/String/StringKind.h>
#include <Ostra/String/UString.h>
#include <System/FontManager/LogicalFont.h>

#include <windows.h>

#include <algorithm>
#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <cstring>

static constexpr char qccz_Source[] = "System/FontManager/FontManager";

static constexpr unsigned LONGEST_PLAIN = 64; // a name that is looked for without conversion
// Stages of asking the system.
static constexpr unsigned UNREAD = 0;
static constexpr unsigned READING = 1;
static constexpr unsigned READ = 2;
static constexpr DWORD LONGEST_READING = 10000; // milliseconds

static constexpr unsigned FONTS = 32;           // places of a new pool
static constexpr unsigned GROWTH = 8;           // of the pool
static constexpr unsigned LIST_GROWTH = 128;    // of the list of families, in bytes
static constexpr int RESOLUTION = 90;           // the device's dots per inch, up and down
static constexpr unsigned ICON_TITLE_FONT = 31; // a setting of the system
static constexpr int POINTS_PER_INCH = 72;
static constexpr unsigned ANY_CHARSET = 1;
static constexpr int TRUETYPE = 4; // a kind of font
static constexpr DWORD STYLE_ITALIC = 0x01;
static constexpr DWORD STYLE_BOLD = 0x20;

CT_FontManager* CT_FontManager::spco_FontManager;
HINSTANCE CT_FontManager::sh_Instance;

// The whole screen, for the life of a scope.
namespace
{
class CT_Screen
{
public:
    CT_Screen() : h_Window(GetDesktopWindow()), h_DC(GetDC(h_Window)) {}
    ~CT_Screen() { ReleaseDC(h_Window, h_DC); }
    CT_Screen(const CT_Screen&) = delete;
    CT_Screen& operator=(const CT_Screen&) = delete;
    HDC h_Get() const { return h_DC; }

private:
    HWND h_Window;
    HDC h_DC;
};
} // namespace

// ---- The one object -----------------------------------------------------------------------

void* CT_FontManager::operator new(std::size_t n_Size) noexcept
{
    return CT_Report::spv_New(n_Size, qccz_Source);
}

void CT_FontManager::operator delete(void* pv_Object)
{
    std::free(pv_Object);
}

CT_FontManager::CT_FontManager(unsigned n_Fonts)
    : co_Fonts(sizeof(CT_LogicalFont*), GROWTH, 0),
      co_Families(CT_CompList::es_Byte, 4, 0, 0, LIST_GROWTH, 0),
      n_Stage(UNREAD),
      b_IsEnded(false)
{
    v_Null();
    v_Init(n_Fonts);
}

void CT_FontManager::v_Null()
{
    pco_SystemFont = nullptr;
    pco_SystemDefaultFont = nullptr;
}

void CT_FontManager::v_Init(unsigned n_Fonts)
{
    n_MaxFonts = n_Fonts;
}

void CT_FontManager::sv_Init(HINSTANCE h_Instance)
{
    sh_Instance = h_Instance;
    spco_FontManager = new CT_FontManager(FONTS);
}

CT_FontManager* CT_FontManager::spco_GetFontManager()
{
    // Not at start-up: a library that is being loaded must not wait for the system's fonts, and
    // few programs ask for them.
    if (spco_FontManager)
        spco_FontManager->v_ReadOnce();
    return spco_FontManager;
}

// Whoever has the object has the fonts: threads that come meanwhile wait for the one that reads.
void CT_FontManager::v_ReadOnce()
{
    const std::atomic_ref<unsigned> co_Stage(n_Stage);
    unsigned n_Now = co_Stage.load(std::memory_order_acquire);
    if (n_Now == READ)
        return;
    if (n_Now == UNREAD && co_Stage.compare_exchange_strong(n_Now, READING)) {
        v_ReadSystem();
        co_Stage.store(READ, std::memory_order_release);
        return;
    }
    // Not for ever: in a child of a process that was reading nobody goes on with it.
    for (const DWORD n_Start = GetTickCount();
         n_Now == READING && GetTickCount() - n_Start < LONGEST_READING;)
        n_Now = co_Stage.load(std::memory_order_acquire);
}

void CT_FontManager::sv_Exit()
{
    delete spco_FontManager;
    spco_FontManager = nullptr;
}

void CT_FontManager::v_Exit()
{
    // After v_Set the end of the process comes by once more.
    if (b_IsEnded)
        return;
    b_IsEnded = true;
    for (unsigned n = co_Fonts.n_GetCount(); n; --n)
        delete pco_GetAt(n);
    delete pco_SystemFont;
    delete pco_SystemDefaultFont;
    v_Null();
}

static int CALLBACK i_EnumFonts(const LOGFONTA* pcso_Font, const TEXTMETRICA* pcso_Metric,
                                DWORD n_Type, LPARAM l_Context)
{
    return CT_FontManager::sb_EnumFonts(
        reinterpret_cast<ENUMLOGFONTA*>(const_cast<LOGFONTA*>(pcso_Font)),
        reinterpret_cast<NEWTEXTMETRICA*>(const_cast<TEXTMETRICA*>(pcso_Metric)),
        static_cast<int>(n_Type), reinterpret_cast<st_FontsFamilies*>(l_Context));
}

static int CALLBACK i_EnumFamily(const LOGFONTA* pcso_Font, const TEXTMETRICA* pcso_Metric,
                                 DWORD n_Type, LPARAM l_Context)
{
    return CT_FontManager::sb_EnumFamily(
        reinterpret_cast<ENUMLOGFONTA*>(const_cast<LOGFONTA*>(pcso_Font)),
        reinterpret_cast<NEWTEXTMETRICA*>(const_cast<TEXTMETRICA*>(pcso_Metric)),
        static_cast<int>(n_Type), reinterpret_cast<st_FontsFamilies*>(l_Context));
}

void CT_FontManager::v_ReadSystem()
{
    const CT_Screen co_Screen;
    const HDC h_DC = co_Screen.h_Get();
    CT_UString co_Name;
    pco_SystemFont = new CT_LogicalFont(sh_Instance, h_DC, &co_Name, ANY_CHARSET, 0, 0, 0, 0, 0);
    unsigned n_Size = 0;
    sv_GetSystemDefaultFont(&co_Name, &n_Size);
    pco_SystemDefaultFont =
        new CT_LogicalFont(sh_Instance, h_DC, &co_Name, ANY_CHARSET, n_Size, 0, 0, 0, 0);
    st_FontsFamilies so_Context = {h_DC, &co_Families, 0, 0};
    EnumFontFamiliesA(h_DC, nullptr, i_EnumFonts, reinterpret_cast<LPARAM>(&so_Context));
}

int CT_FontManager::sb_EnumFonts(tagENUMLOGFONTA* pso_Font, tagNEWTEXTMETRICA*, int,
                                 st_FontsFamilies* pso_Context)
{
    EnumFontFamiliesA(pso_Context->h_DC, pso_Font->elfLogFont.lfFaceName, i_EnumFamily,
                      reinterpret_cast<LPARAM>(pso_Context));
    return 1;
}

int CT_FontManager::sb_EnumFamily(tagENUMLOGFONTA* pso_Font, tagNEWTEXTMETRICA* pso_Metric,
                                  int i_Type, st_FontsFamilies* pso_Context)
{
    // A field that has no terminator ends with its room.
    const char* const pcc_Face = pso_Font->elfLogFont.lfFaceName;
    const char* const pcc_End = std::find(pcc_Face, pcc_Face + LF_FACESIZE, '\0');
    const int i_Length = static_cast<int>(pcc_End - pcc_Face);
    char ac_Key[LF_FACESIZE + 1 + LF_FACESIZE + 1];
    if (i_Type == TRUETYPE)
        std::snprintf(ac_Key, sizeof(ac_Key), "%.*s %.*s", i_Length, pcc_Face, LF_FACESIZE,
                      reinterpret_cast<const char*>(pso_Font->elfStyle));
    else
        std::snprintf(ac_Key, sizeof(ac_Key), "%.*s", i_Length, pcc_Face);
    unsigned n_Value = static_cast<unsigned>(i_Length);
    if (!pso_Context->b_NoBold && pso_Metric->ntmFlags & STYLE_BOLD)
        n_Value |= 1U << 16;
    if (!pso_Context->b_NoItalic && pso_Metric->ntmFlags & STYLE_ITALIC)
        n_Value |= 1U << 24;
    pso_Context->pco_Families->b_Add(ac_Key, n_Value);
    return 1;
}

// ---- The pool -----------------------------------------------------------------------------

CT_LogicalFont* CT_FontManager::pco_GetAt(unsigned n_Position) const
{
    CT_LogicalFont* pco_Font = nullptr;
    co_Fonts.v_GetAt(&pco_Font, static_cast<int>(n_Position));
    return pco_Font;
}

// A name of ASCII alone, which is the same in each form and needs no conversion; false for others,
// and for those that may end in the suffix of a set.
bool CT_FontManager::sb_TakePlain(char* pc_Name, const CT_String* pcco_Name, unsigned n_Charset)
{
    const unsigned n_Length = pcco_Name->vn_GetLength();
    if (n_Length >= LONGEST_PLAIN || sb_MayHaveSuffix(pcco_Name, n_Charset))
        return false;
    unsigned n_All = 0; // the bits of all characters
    unsigned n_None = 0;
    const auto v_Take = [&](const auto* pc_Text) {
        for (unsigned n = 0; n < n_Length; ++n) {
            const unsigned n_Character = static_cast<unsigned>(pc_Text[n]);
            n_All |= n_Character;
            n_None |= !n_Character;
            pc_Name[n] = static_cast<char>(n_Character);
        }
    };
    if (const CT_UString* const pcco_Wide = pcco_Units(pcco_Name))
        v_Take(pcco_Wide->qcuz_Get());
    else if (const CT_CString* const pcco_Narrow = pcco_Bytes(pcco_Name);
             pcco_Narrow && !pcco_Narrow->n_GetCodePage())
        v_Take(reinterpret_cast<const unsigned char*>(pcco_Narrow->qccz_Get()));
    else
        return false;
    pc_Name[n_Length] = 0;
    return n_All < 0x80 && !n_None;
}

// The youngest font of a request; 0 for none.
unsigned CT_FontManager::n_FindFont(const CT_String* pcco_Name, unsigned n_Charset, unsigned n_Size,
                                    int b_Bold, int b_Italic, int b_Underline, int b_StrikeOut,
                                    unsigned n_Resolution) const
{
    unsigned n = co_Fonts.n_GetCount();
    if (char ac_Name[LONGEST_PLAIN]; sb_TakePlain(ac_Name, pcco_Name, n_Charset)) {
        const auto b_IsIt = [&](const CT_LogicalFont* pcco_Font) {
            return pcco_Font->b_IsRequest(n_Charset, n_Size, b_Bold, b_Italic, b_Underline,
                                          b_StrikeOut, n_Resolution) &&
                   !std::strcmp(pcco_Font->co_Name.qccz_Get(), ac_Name);
        };
        while (n && !b_IsIt(pco_GetAt(n)))
            --n;
        return n;
    }
    CT_UString co_Name(pcco_Name);
    sv_StripCharsetSpecifier(&co_Name, n_Charset);
    while (n && !pco_GetAt(n)->b_IsEqual(&co_Name, n_Charset, n_Size, b_Bold, b_Italic, b_Underline,
                                         b_StrikeOut, n_Resolution))
        --n;
    return n;
}

CT_LogicalFont* CT_FontManager::pco_Hire(HDC h_DC, const CT_String* pcco_Name, unsigned n_Charset,
                                         unsigned n_Size, int b_Bold, int b_Italic, int b_Underline,
                                         int b_StrikeOut)
{
    if (!pcco_Name->vn_GetLength() || b_IsEnded)
        return pco_SystemFont;
    const unsigned n_Resolution = static_cast<unsigned>(GetDeviceCaps(h_DC, RESOLUTION));
    const unsigned n = n_FindFont(pcco_Name, n_Charset, n_Size, b_Bold, b_Italic, b_Underline,
                                  b_StrikeOut, n_Resolution);
    CT_LogicalFont* pco_Font;
    if (n) {
        pco_Font = pco_GetAt(n);
        v_MoveToEnd(n);
    } else {
        CT_UString co_Name(pcco_Name);
        sv_StripCharsetSpecifier(&co_Name, n_Charset);
        pco_Font = new CT_LogicalFont(sh_Instance, h_DC, &co_Name, n_Charset, n_Size, b_Bold,
                                      b_Italic, b_Underline, b_StrikeOut);
        if (!pco_Font || !b_Place(pco_Font))
            return nullptr;
    }
    pco_Font->v_Lock();
    return pco_Font;
}

// Puts a new font at the end of the pool. Without memory for its place the font is destroyed.
bool CT_FontManager::b_Place(CT_LogicalFont* pco_Font)
{
    v_MakeRoom();
    const unsigned n_Count = co_Fonts.n_GetCount();
    co_Fonts.v_Insert(&pco_Font);
    if (co_Fonts.n_GetCount() != n_Count)
        return true;
    delete pco_Font;
    return false;
}

// Keeps a font from being the next to go. With free places in the pool none goes.
void CT_FontManager::v_MoveToEnd(unsigned n_Position)
{
    if (n_Position >= n_MaxFonts || co_Fonts.n_GetCount() != n_MaxFonts)
        return;
    CT_LogicalFont* const pco_Font = pco_GetAt(n_Position);
    co_Fonts.v_RemoveAt(n_Position);
    co_Fonts.v_Insert(&pco_Font);
}

// In a full pool the oldest font that nobody has hired goes; if there is none, the pool grows.
void CT_FontManager::v_MakeRoom()
{
    if (co_Fonts.n_GetCount() != n_MaxFonts)
        return;
    for (unsigned n = 1; n <= n_MaxFonts; ++n) {
        CT_LogicalFont* const pco_Font = pco_GetAt(n);
        if (pco_Font->b_IsLocked())
            continue;
        delete pco_Font;
        co_Fonts.v_RemoveAt(n);
        return;
    }
    ++n_MaxFonts;
}

void CT_FontManager::v_Fire(CT_LogicalFont* pco_Font)
{
    // Behind v_Set there are no fonts any more.
    if (pco_Font && pco_Font != pco_SystemFont && !b_IsEnded)
        pco_Font->v_Unlock();
}

void CT_FontManager::v_FreeUnused()
{
    for (unsigned n = b_IsEnded ? 0 : co_Fonts.n_GetCount(); n; --n) {
        CT_LogicalFont* const pco_Font = pco_GetAt(n);
        if (pco_Font->b_IsLocked())
            continue;
        co_Fonts.v_RemoveAt(n);
        delete pco_Font;
    }
}

// ---- Questions ----------------------------------------------------------------------------

int CT_FontManager::b_StripFlagFont(const CT_String* pcco_Name, unsigned* pn_Length, int* pb_Bold,
                                    int* pb_Italic)
{
    const CT_CString co_Name(pcco_Name);
    const unsigned n_Value = co_Families.n_Search(&co_Name, nullptr);
    *pn_Length = n_Value ? n_Value & 0xFFFF : pcco_Name->vn_GetLength();
    // Kept: a name that isn't in the list has the value 0xFFFFFFFF, which is taken apart like any.
    *pb_Bold = static_cast<int>(n_Value >> 16 & 0xFF);
    *pb_Italic = static_cast<int>(n_Value >> 24);
    return n_Value != 0;
}

HFONT CT_FontManager::h_GetSystemFont() const
{
    return pco_SystemFont ? pco_SystemFont->h_GetHandle() : nullptr;
}

HFONT CT_FontManager::h_GetSystemDefaultFont() const
{
    return pco_SystemDefaultFont ? pco_SystemDefaultFont->h_GetHandle() : nullptr;
}

void CT_FontManager::sv_GetSystemDefaultFont(CT_String* pco_Name, unsigned* pn_Size)
{
    LOGFONTA so_Font = {};
    SystemParametersInfoA(ICON_TITLE_FONT, sizeof(so_Font), &so_Font, 0);
    pco_Name->v_Set(so_Font.lfFaceName, ALL, OWN_CODE_PAGE);
    if (!pn_Size)
        return;
    const CT_Screen co_Screen;
    const int i_Resolution = GetDeviceCaps(co_Screen.h_Get(), RESOLUTION);
    *pn_Size = i_Resolution
                   ? static_cast<unsigned>(-(so_Font.lfHeight * POINTS_PER_INCH) / i_Resolution)
                   : 0;
}
