// Ostra/String/UString.cpp: life, storage and single characters of CT_UString.
#include <Ostra/String/UString.h>

#include <Ostra/Frame/Counts.h>
#include <Ostra/Frame/Report.h>
#include <Ostra/String/CString.h>
#include <Ostra/String/TextBuffer.h>
#include <System/String/StringConvert.h>

#include <algorithm>
#include <cstdlib>

using Units = CT_TextBuffer<unsigned short>;

static constexpr auto qccz_Source = Units::SOURCE;

// ---- Construction ---------------------------------------------------------------------------

CT_UString::CT_UString(unsigned n_Length)
{
    CT_UString::vv_Init(n_Length);
}

CT_UString::CT_UString(const char* qccz_Text, unsigned n_Count, unsigned n_CodePage)
{
    CT_UString::vv_Init(qccz_Text, n_Count, n_CodePage);
}

CT_UString::CT_UString(const unsigned short* qcuz_Text, unsigned n_Count)
{
    Units::sv_Make(co_Buffer, qcuz_Text, Units::Text::sn_CountOf(qcuz_Text, n_Count));
}

CT_UString::CT_UString(const CT_Buffer* pcco_Buffer) : CT_String(pcco_Buffer) {}

CT_UString::CT_UString(const CT_String* pcco_Text)
{
    CT_UString::vv_Init(pcco_Text);
}

CT_UString::CT_UString(const CT_CString* pcco_Text)
{
    CT_UString::vv_Init(pcco_Text);
}

// The base enters its record first: a CT_UString is a kind of CT_String to the type records.
CT_UString::CT_UString(CT_Type* pco_Type) : CT_String(pco_Type)
{
    if (!CT_Type::sb_InConstruct(this))
        return;
    CT_Type::sv_Enter(this, &sco_Type);
    if (this == &sco_Object)
        sco_Type.v_Enter();
}

void* CT_UString::operator new(std::size_t n_Size) noexcept
{
    void* pv_Object = std::malloc(n_Size);
    if (!pv_Object)
        CT_Report::sv_Memory(qccz_Source);
    return pv_Object;
}

void CT_UString::operator delete(void* pv_Object)
{
    std::free(pv_Object);
}

CT_String* CT_UString::vpco_Create() const
{
    return new CT_UString(this);
}

// ---- Type -----------------------------------------------------------------------------------

const CT_Type* CT_UString::vpcco_GetType() const
{
    return &sco_Type;
}

void* CT_UString::vpv_IsA(const CT_Type* pcco_Type) const
{
    return pcco_Type == &sco_Type ? const_cast<CT_UString*>(this) : nullptr;
}

void* CT_UString::vpv_IsKindOf(const CT_Type* pcco_Type) const
{
    return sco_Type.pv_CastTo(const_cast<CT_UString*>(this), pcco_Type);
}

// ---- Initialisers -----------------------------------------------------------------------------

void CT_UString::vv_Init()
{
    co_Buffer.v_SetSize(0, 0);
}

void CT_UString::vv_Init(unsigned n_Length)
{
    // Kept: the length has no room for the terminator added.
    Units::sb_SetEmpty(co_Buffer, std::max(n_Length, 1u));
}

void CT_UString::vv_Init(const char* qccz_Text, unsigned n_Count, unsigned n_CodePage)
{
    n_Count = CT_TextOperations<char>::sn_CountOf(qccz_Text, n_Count);
    CT_UString::vv_StringReplace(qccz_Text, n_Count, 0, n_CodePage);
}

void CT_UString::vv_Init(const unsigned short* qcuz_Text, unsigned n_Count)
{
    n_Count = Units::Text::sn_CountOf(qcuz_Text, n_Count);
    CT_UString::vv_StringReplace(qcuz_Text, n_Count, 0);
}

void CT_UString::vv_Init(const CT_Buffer* pcco_Buffer)
{
    co_Buffer.v_Set(pcco_Buffer);
}

void CT_UString::vv_Init(const CT_String* pcco_Text)
{
    if (pcco_Text->vpv_IsA(&sco_Type))
        co_Buffer.v_Set(&static_cast<const CT_UString*>(pcco_Text)->co_Buffer);
    else if (pcco_Text->vpv_IsA(CT_CString::spcco_GetType())) {
        const auto pcco_Bytes = static_cast<const CT_CString*>(pcco_Text);
        CT_UString::vv_Init(pcco_Bytes->qccz_Get(), pcco_Bytes->vn_GetLength(),
                            pcco_Bytes->n_GetCodePage());
    }
}

// ---- Storage ----------------------------------------------------------------------------------

void CT_UString::vv_SetSize(unsigned n_Length, int b_Keep)
{
    Units::sv_SetSize(co_Buffer, n_Length, b_Keep);
}

void CT_UString::vv_SetMinSize(unsigned n_Length, int b_Keep)
{
    Units::sv_SetMinSize(co_Buffer, n_Length, b_Keep);
}

void CT_UString::vv_SetLength(unsigned n_Length)
{
    Units::sv_SetLength(co_Buffer, n_Length);
}

unsigned CT_UString::vn_GetLength() const
{
    return Units::sn_Length(co_Buffer);
}

unsigned CT_UString::vn_GetMaximumLength() const
{
    return Units::sn_MaximumLength(co_Buffer);
}

void CT_UString::vv_SetGrowth(unsigned n_Growth)
{
    co_Buffer.v_SetGrowth(2 * n_Growth);
}

unsigned CT_UString::vn_GetGrowth() const
{
    return co_Buffer.n_GetGrowth() / 2;
}

void CT_UString::vv_Update()
{
    Units::sv_Update(co_Buffer);
}

// ---- Single characters --------------------------------------------------------------------

const unsigned short* CT_UString::qcuz_Get() const
{
    return Units::spc_Get(co_Buffer);
}

unsigned short CT_UString::u_GetAt(unsigned n_Offset) const
{
    return Units::sc_GetAt(co_Buffer, n_Offset);
}

void CT_UString::v_SetAt(unsigned short u_New, unsigned n_Offset)
{
    Units::sv_SetAt(co_Buffer, u_New, n_Offset);
}

char CT_UString::vc_GetAt(unsigned n_Offset) const
{
    return CT_StringConvert::sc_WideToMulti(u_GetAt(n_Offset), 0);
}

unsigned short CT_UString::vu_GetAt(unsigned n_Offset) const
{
    return Units::sc_GetAt(co_Buffer, n_Offset);
}

void CT_UString::vv_SetAt(unsigned short u_New, unsigned n_Offset)
{
    Units::sv_SetAt(co_Buffer, u_New, n_Offset);
}

void CT_UString::vv_SetAt(char c_New, unsigned n_Offset)
{
    Units::sv_SetAt(co_Buffer, CT_StringConvert::sus_MultiToWide(c_New, 0), n_Offset);
}
