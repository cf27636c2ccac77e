// System/FontManager/FontManager.h: the pool of fonts, and what a program asks about fonts.
#pragma once

#include <Ostra/ARRAY/VoidArray.h>
#include <Ostra/CompList/CompList.h>
#include <Ostra/Frame/Exit.h>
#include <Ostra/Frame/Export.h>
#include <Ostra/Frame/Platform.h>

#include <cstddef>

class CT_LogicalFont;
class CT_String;

// What an enumeration of the system's fonts fills.
struct st_FontsFamilies
{
    HDC h_DC;
    CT_CompList* pco_Families;
    int b_NoBold;   // leaves the bold style out of the values
    int b_NoItalic; // leaves the italic style out of the values
};

// The one pool of fonts of a process. A font is hired by what it has to be, is shared with all who
// ask for the same, and is fired when done with; it stays in the pool until that needs its place.
// The manager also knows the system's fonts, the faces of the machine with their styles, and what
// belongs to a character set: code page, suffix of names, sample text.
//
// The one object exists from the loading of the library on. It reads the system's fonts when it is
// asked for first, so that programs without fonts don't pay for them.
//
// Units:   character sets are the platform's numbers (0 is Western European, 204 Cyrillic, 128
//          Japanese), sizes points of 1/72 inch.
// Owns:    its fonts; hired ones belong to it too.
// Reports: nothing; 60006 where the heap is exhausted. pco_Hire then gives null.
// Caller:  fires each font that it hired once, and uses neither the manager nor its fonts after
//          v_Set.
// Threads: one thread at a time, normally that of the user interface. Any may ask for the object.
class OSTRA_API CT_FontManager
{
public:
    // ---- The one object ---------------------------------------------------------------------

    // Makes the manager. Kept: one that is there already is forgotten, not freed.
    static void sv_Init(HINSTANCE h_Instance);
    // Null before sv_Init, and while the library is unloaded.
    static CT_FontManager* spco_GetFontManager();

    static void* operator new(std::size_t n_Size) noexcept;
    static void* operator new(std::size_t, void* pv_Place) noexcept { return pv_Place; }
    static void operator delete(void* pv_Object);

    // ---- The pool ---------------------------------------------------------------------------

    // A font for the device, shared. A suffix of the name that fits the character set is taken off,
    // as in "Arial Cyr" with 204. An empty name gives the system font, which isn't counted.
    CT_LogicalFont* pco_Hire(HDC h_DC, const CT_String* pcco_Name, unsigned n_Charset,
                             unsigned n_Size, int b_Bold, int b_Italic, int b_Underline,
                             int b_StrikeOut);
    // Gives a hired font back. Null and the system font are left alone.
    void v_Fire(CT_LogicalFont* pco_Font);
    // Destroys all fonts that nobody has hired.
    void v_FreeUnused();
    // Kept: destroys all fonts, hired ones too, and leaves the pool with pointers to them. The
    // manager is of no use afterwards: it hires nothing out.
    void v_Set() { v_Exit(); }

    // ---- Questions --------------------------------------------------------------------------

    // Takes a full name of the machine's fonts apart, such as "Arial Bold": the length of the face
    // in it, and its styles as 0 or 1. Gives 1. Kept: so it does for names that the machine lacks,
    // with 65535, 255 and 255; only an empty name gives 0, with no style.
    int b_StripFlagFont(const CT_String* pcco_Name, unsigned* pn_Length, int* pb_Bold,
                        int* pb_Italic);

    HFONT h_GetSystemFont() const;
    // The font of icon titles.
    HFONT h_GetSystemDefaultFont() const;
    const CT_LogicalFont* pcco_GetSystemDefaultFont() const { return pco_SystemDefaultFont; }

    // 0 for a set that isn't known.
    static unsigned sn_GetCodePage(unsigned n_Charset);
    // The suffix of names: "Cyr" for 204. Gives 0, and leaves the string, where a set has none.
    static int sb_GetCharsetSpecifier(CT_String* pco_Specifier, unsigned n_Charset);
    // Takes blank and suffix off the end of the name. Kept: where they stand in the middle too,
    // they stay at the end.
    static void sv_StripCharsetSpecifier(CT_String* pco_Name, unsigned n_Charset);
    // A text to show a font with.
    static void sv_GetFontSampleText(CT_String* pco_Text, unsigned n_Charset);
    // Face and size of icon titles; pn_Size may be null. The size is 0 where the screen has no
    // resolution.
    static void sv_GetSystemDefaultFont(CT_String* pco_Name, unsigned* pn_Size);

    // What the enumeration of the system calls, for each family and for each style of one: always
    // 1.
    static int sb_EnumFonts(tagENUMLOGFONTA* pso_Font, tagNEWTEXTMETRICA* pso_Metric, int i_Type,
                            st_FontsFamilies* pso_Context);
    static int sb_EnumFamily(tagENUMLOGFONTA* pso_Font, tagNEWTEXTMETRICA* pso_Metric, int i_Type,
                             st_FontsFamilies* pso_Context);

    // ---- Sample texts -----------------------------------------------------------------------

    // In the code page of their character set.
    static const char sacz_Default[];
    static const char sacz_WestEuropean[];
    static const char sacz_CentralEuropean[];
    static const char sacz_Greek[];
    static const char sacz_Cyrillic[];
    static const char sacz_Turkish[];
    static const char sacz_Baltic[];
    static const char sacz_Japanese[];
    static const char sacz_ChiSimplified[];
    static const char sacz_ChiTraditional[];

private:
    explicit CT_FontManager(unsigned n_Fonts);
    CT_FontManager(const CT_FontManager&) = delete;
    CT_FontManager& operator=(const CT_FontManager&) = delete;
    ~CT_FontManager() { v_Exit(); }

    static void sv_Exit();
    void v_Null();
    void v_Init(unsigned n_Fonts);
    void v_Exit();
    void v_ReadOnce();
    void v_ReadSystem();
    CT_LogicalFont* pco_GetAt(unsigned n_Position) const;
    static bool sb_MayHaveSuffix(const CT_String* pcco_Name, unsigned n_Charset);
    static bool sb_TakePlain(char* pc_Name, const CT_String* pcco_Name, unsigned n_Charset);
    unsigned n_FindFont(const CT_String* pcco_Name, unsigned n_Charset, unsigned n_Size, int b_Bold,
                        int b_Italic, int b_Underline, int b_StrikeOut,
                        unsigned n_Resolution) const;
    void v_MoveToEnd(unsigned n_Position);
    void v_MakeRoom();
    bool b_Place(CT_LogicalFont* pco_Font);

    // The order of the members is part of the interface.
    CT_VoidArray co_Fonts; // CT_LogicalFont*, the one placed last at the end
    unsigned n_MaxFonts;
    CT_LogicalFont* pco_SystemFont;
    CT_LogicalFont* pco_SystemDefaultFont;
    CT_CompList co_Families; // full names, each with length and styles of the face
    unsigned n_Stage;        // of asking the system
    bool b_IsEnded;          // the fonts are gone

    static CT_FontManager* spco_FontManager;
    static HINSTANCE sh_Instance;
    static CT_Exit sco_Exit;
};
