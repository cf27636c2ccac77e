// Ostra/String/String.cpp
#include <Ostra/String/String.h>

#include <Ostra/Frame/Counts.h>
#include <Ostra/Frame/Print.h>
#include <Ostra/String/CString.h>
#include <Ostra/String/TextOperations.h>

#include <algorithm>

namespace
{
// Room of a formatted text, terminator included.
constexpr unsigned FORMAT_ROOM = 2048;

using Bytes = CT_TextOperations<char>;
using Units = CT_TextOperations<unsigned short>;
} // namespace

// ---- Construction ---------------------------------------------------------------------------

CT_String::CT_String(CT_Type*)
{
    if (!CT_Type::sb_InConstruct(this))
        return;
    CT_Type::sv_Enter(this, &sco_Type);
    if (this == &sco_Object)
        sco_Type.v_Enter();
}

// ---- The interface, empty here ----------------------------------------------------------------

const CT_Type* CT_String::spcco_GetType()
{
    return &sco_Type;
}

const CT_Type* CT_String::vpcco_GetType() const
{
    return &sco_Type;
}

void* CT_String::vpv_IsA(const CT_Type* pcco_Type) const
{
    return pcco_Type == &sco_Type ? const_cast<CT_String*>(this) : nullptr;
}

void* CT_String::vpv_IsKindOf(const CT_Type* pcco_Type) const
{
    return sco_Type.pv_CastTo(const_cast<CT_String*>(this), pcco_Type);
}

CT_String* CT_String::vpco_Create() const
{
    return nullptr;
}

// clang-format off
void CT_String::vv_SetSize(unsigned, int) {}
void CT_String::vv_SetMinSize(unsigned, int) {}
void CT_String::vv_Replace(unsigned short, unsigned, unsigned) {}
void CT_String::vv_Replace(char, unsigned, unsigned) {}
char CT_String::vc_GetAt(unsigned) const { return 0; }
unsigned short CT_String::vu_GetAt(unsigned) const { return 0; }
void CT_String::vv_SetAt(unsigned short, unsigned) {}
void CT_String::vv_SetAt(char, unsigned) {}
void CT_String::vv_ToLower() {}
void CT_String::vv_ToUpper() {}
void CT_String::vv_Remove(unsigned, unsigned) {}
unsigned CT_String::vn_Find(unsigned short, unsigned) const { return 0; }
unsigned CT_String::vn_Find(char, unsigned) const { return 0; }
unsigned CT_String::vn_Find(const CT_String*, unsigned) const { return 0; }
void CT_String::vv_Update() {}
int CT_String::vb_Match(const CT_String*) const { return 0; }
void CT_String::vv_Strip(const CT_String*) {}
void CT_String::vv_StripRight() {}
void CT_String::vv_StripLeft() {}
int CT_String::vi_Compare(const CT_String*, unsigned, unsigned, unsigned) const { return 0; }
int CT_String::vi_Compare(const unsigned short*, unsigned, unsigned) const { return 0; }
int CT_String::vi_Compare(const char*, unsigned, unsigned) const { return 0; }
void CT_String::vv_Translate(const CT_String*, const CT_String*) {}
void CT_String::vv_SetLength(unsigned) {}
unsigned CT_String::vn_GetLength() const { return 0; }
unsigned CT_String::vn_GetMaximumLength() const { return 0; }
void CT_String::vv_SetGrowth(unsigned) {}
unsigned CT_String::vn_GetGrowth() const { return 0; }
void CT_String::vv_Format(const CT_String*, va_list) {}
void CT_String::vv_Format(const CT_String*, ...) {}
void CT_String::vv_Init(const CT_Buffer*) {}
void CT_String::vv_Init(const unsigned short*, unsigned) {}
void CT_String::vv_Init(const char*, unsigned, unsigned) {}
void CT_String::vv_Init(const CT_String*) {}
void CT_String::vv_Init(unsigned) {}
void CT_String::vv_Init() {}
void CT_String::vv_StringReplace(const CT_String*, unsigned, unsigned, unsigned) {}
void CT_String::vv_StringReplace(const unsigned short*, unsigned, unsigned) {}
void CT_String::vv_StringReplace(const char*, unsigned, unsigned, unsigned) {}
void CT_String::vv_StringInsert(const CT_String*, unsigned, unsigned, unsigned) {}
void CT_String::vv_StringInsert(const unsigned short*, unsigned, unsigned) {}
void CT_String::vv_StringInsert(const char*, unsigned, unsigned, unsigned) {}
// clang-format on

// ---- Set --------------------------------------------------------------------------------------

void CT_String::v_Set(unsigned n_Length, int b_Keep)
{
    if (b_Keep && vn_GetMaximumLength() >= n_Length)
        vv_SetLength(0);
    else
        vv_Init(n_Length);
}

void CT_String::v_Set(const char* qccz_Text, unsigned n_Count, unsigned n_CodePage)
{
    if (n_CodePage == OWN_CODE_PAGE) {
        const void* pcv_Bytes = vpv_IsA(CT_CString::spcco_GetType());
        n_CodePage = pcv_Bytes ? static_cast<const CT_CString*>(this)->n_GetCodePage() : 0;
    }
    vv_Init(qccz_Text, n_Count, n_CodePage);
}

void CT_String::v_Set(const unsigned short* qcuz_Text, unsigned n_Count)
{
    vv_Init(qcuz_Text, n_Count);
}

void CT_String::v_Set(const CT_String* pcco_Text)
{
    vv_Init(pcco_Text);
}

void CT_String::v_Set(const CT_Buffer* pcco_Buffer)
{
    vv_Init(pcco_Buffer);
}

// ---- Replace and insert -------------------------------------------------------------------

// A CT_UString that bytes go into takes them for text in the system's code page.

void CT_String::v_Replace(const CT_String* pcco_Text, unsigned n_From, unsigned n_Count,
                          unsigned n_Offset)
{
    if (n_Count == ALL)
        n_Count = pcco_Text->vn_GetLength() - n_From;
    vv_StringReplace(pcco_Text, n_From, n_Count, n_Offset);
}

void CT_String::v_Replace(const char* qccz_Text, unsigned n_Count, unsigned n_Offset)
{
    vv_StringReplace(qccz_Text, Bytes::sn_CountOf(qccz_Text, n_Count), n_Offset, SYSTEM_CODE_PAGE);
}

void CT_String::v_Replace(const unsigned short* qcuz_Text, unsigned n_Count, unsigned n_Offset)
{
    vv_StringReplace(qcuz_Text, Units::sn_CountOf(qcuz_Text, n_Count), n_Offset);
}

void CT_String::v_Insert(const char* qccz_Text, unsigned n_Count, unsigned n_Offset)
{
    vv_StringInsert(qccz_Text, Bytes::sn_CountOf(qccz_Text, n_Count), n_Offset, SYSTEM_CODE_PAGE);
}

void CT_String::v_Insert(const unsigned short* qcuz_Text, unsigned n_Count, unsigned n_Offset)
{
    vv_StringInsert(qcuz_Text, Units::sn_CountOf(qcuz_Text, n_Count), n_Offset);
}

void CT_String::v_Insert(const CT_String* pcco_Text, unsigned n_Count, unsigned n_Offset)
{
    vv_StringInsert(pcco_Text, 0, n_Count == ALL ? pcco_Text->vn_GetLength() : n_Count, n_Offset);
}

// ---- Append -------------------------------------------------------------------------------

void CT_String::v_Append(char c_Append)
{
    const char acz_Text[] = {c_Append, 0};
    v_Append(acz_Text);
}

void CT_String::v_Append(unsigned short u_Append)
{
    const unsigned short auz_Text[] = {u_Append, 0};
    v_Append(auz_Text);
}

void CT_String::v_Append(const char* qccz_Text, unsigned n_Count)
{
    n_Count = Bytes::sn_CountOf(qccz_Text, n_Count);
    if (n_Count)
        vv_StringInsert(qccz_Text, n_Count, vn_GetLength(), SYSTEM_CODE_PAGE);
}

void CT_String::v_Append(const unsigned short* qcuz_Text, unsigned n_Count)
{
    n_Count = Units::sn_CountOf(qcuz_Text, n_Count);
    if (n_Count)
        vv_StringInsert(qcuz_Text, n_Count, vn_GetLength());
}

void CT_String::v_Append(const CT_String* pcco_Text, unsigned n_Count)
{
    vv_StringInsert(pcco_Text, 0, std::min(n_Count, pcco_Text->vn_GetLength()), vn_GetLength());
}

// ---- Formatting --------------------------------------------------------------------------

void CT_String::v_Format(const char* qccz_Format, ...)
{
    va_list args;
    va_start(args, qccz_Format);
    v_Format(qccz_Format, args);
    va_end(args);
}

void CT_String::v_Format(const char* qccz_Format, va_list args)
{
    char acz_Text[FORMAT_ROOM];
    CT_Print::si_Print(acz_Text, FORMAT_ROOM, qccz_Format, args);
    v_Set(acz_Text, ALL, OWN_CODE_PAGE);
}

void CT_String::v_Format(const unsigned short* qcuz_Format, ...)
{
    va_list args;
    va_start(args, qcuz_Format);
    v_Format(qcuz_Format, args);
    va_end(args);
}

void CT_String::v_Format(const unsigned short* qcuz_Format, va_list args)
{
    unsigned short auz_Text[FORMAT_ROOM];
    CT_Print::si_Print(auz_Text, FORMAT_ROOM, qcuz_Format, args);
    vv_Init(auz_Text, ALL);
}
