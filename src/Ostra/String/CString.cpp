// Ostra/String/CString.cpp: life, storage and single characters of CT_CString.
#include <Ostra/String/CString.h>

#include <Ostra/Frame/Counts.h>
#include <Ostra/Frame/Report.h>
#include <Ostra/String/TextBuffer.h>
#include <Ostra/String/UString.h>
#include <System/String/StringConvert.h>

#include <cstdlib>

using Bytes = CT_TextBuffer<char>;

static constexpr auto qccz_Source = Bytes::SOURCE;

// ---- Construction ---------------------------------------------------------------------------

CT_CString::CT_CString(const char* qccz_Text, unsigned n_Count, unsigned n_NewCodePage)
    : n_CodePage(n_NewCodePage)
{
    Bytes::sv_Make(co_Buffer, qccz_Text, Bytes::Text::sn_CountOf(qccz_Text, n_Count));
}

CT_CString::CT_CString(const unsigned short* qcuz_Text, unsigned n_Count, unsigned n_NewCodePage)
    : n_CodePage(n_NewCodePage)
{
    CT_CString::vv_Init(qcuz_Text, n_Count);
}

CT_CString::CT_CString(const CT_Buffer* pcco_Buffer, unsigned n_NewCodePage)
    : CT_String(pcco_Buffer),
      n_CodePage(n_NewCodePage)
{}

CT_CString::CT_CString(const CT_String* pcco_Text, unsigned n_NewCodePage)
    : n_CodePage(n_NewCodePage)
{
    CT_CString::vv_Init(pcco_Text);
}

CT_CString::CT_CString(const CT_UString* pcco_Text, unsigned n_NewCodePage)
    : n_CodePage(n_NewCodePage)
{
    CT_CString::vv_Init(pcco_Text);
}

// The base enters no record here: a CT_CString is no kind of CT_String to the type records.
CT_CString::CT_CString(CT_Type*) : n_CodePage(0)
{
    if (!CT_Type::sb_InConstruct(this))
        return;
    CT_Type::sv_Enter(this, &sco_Type);
    if (this == &sco_Object)
        sco_Type.v_Enter();
}

void* CT_CString::operator new(std::size_t n_Size) noexcept
{
    void* pv_Object = std::malloc(n_Size);
    if (!pv_Object)
        CT_Report::sv_Memory(qccz_Source);
    return pv_Object;
}

void CT_CString::operator delete(void* pv_Object)
{
    std::free(pv_Object);
}

CT_String* CT_CString::vpco_Create() const
{
    return new CT_CString(this);
}

// ---- Type -----------------------------------------------------------------------------------

const CT_Type* CT_CString::vpcco_GetType() const
{
    return &sco_Type;
}

void* CT_CString::vpv_IsA(const CT_Type* pcco_Type) const
{
    return pcco_Type == &sco_Type ? const_cast<CT_CString*>(this) : nullptr;
}

void* CT_CString::vpv_IsKindOf(const CT_Type* pcco_Type) const
{
    return sco_Type.pv_CastTo(const_cast<CT_CString*>(this), pcco_Type);
}

// ---- Initialisers -----------------------------------------------------------------------------

void CT_CString::vv_Init()
{
    co_Buffer.v_SetSize(0, 0);
}

void CT_CString::vv_Init(unsigned n_Length)
{
    Bytes::sb_SetEmpty(co_Buffer, std::uint64_t(n_Length) + 1);
}

void CT_CString::vv_Init(const char* qccz_Text, unsigned n_Count, unsigned n_NewCodePage)
{
    n_CodePage = n_NewCodePage;
    n_Count = Bytes::Text::sn_CountOf(qccz_Text, n_Count);
    CT_CString::vv_StringReplace(qccz_Text, n_Count, 0, n_NewCodePage);
}

void CT_CString::vv_Init(const unsigned short* qcuz_Text, unsigned n_Count)
{
    n_Count = CT_TextOperations<unsigned short>::sn_CountOf(qcuz_Text, n_Count);
    CT_CString::vv_StringReplace(qcuz_Text, n_Count, 0);
}

void CT_CString::vv_Init(const CT_Buffer* pcco_Buffer)
{
    co_Buffer.v_Set(pcco_Buffer);
}

void CT_CString::vv_Init(const CT_String* pcco_Text)
{
    if (pcco_Text->vpv_IsA(&sco_Type)) {
        const auto pcco_Bytes = static_cast<const CT_CString*>(pcco_Text);
        co_Buffer.v_Set(&pcco_Bytes->co_Buffer);
        n_CodePage = pcco_Bytes->n_CodePage;
    } else if (pcco_Text->vpv_IsA(CT_UString::spcco_GetType())) {
        CT_CString::vv_Init(static_cast<const CT_UString*>(pcco_Text)->qcuz_Get(),
                            pcco_Text->vn_GetLength());
        if (n_CodePage == SYSTEM_CODE_PAGE || n_CodePage == OWN_CODE_PAGE)
            n_CodePage = 0;
    }
}

// ---- Storage ----------------------------------------------------------------------------------

void CT_CString::vv_SetSize(unsigned n_Length, int b_Keep)
{
    Bytes::sv_SetSize(co_Buffer, n_Length, b_Keep);
}

void CT_CString::vv_SetMinSize(unsigned n_Length, int b_Keep)
{
    Bytes::sv_SetMinSize(co_Buffer, n_Length, b_Keep);
}

void CT_CString::vv_SetLength(unsigned n_Length)
{
    Bytes::sv_SetLength(co_Buffer, n_Length);
}

unsigned CT_CString::vn_GetLength() const
{
    return Bytes::sn_Length(co_Buffer);
}

unsigned CT_CString::vn_GetMaximumLength() const
{
    return Bytes::sn_MaximumLength(co_Buffer);
}

void CT_CString::vv_SetGrowth(unsigned n_Growth)
{
    co_Buffer.v_SetGrowth(n_Growth);
}

unsigned CT_CString::vn_GetGrowth() const
{
    return co_Buffer.n_GetGrowth();
}

void CT_CString::vv_Update()
{
    Bytes::sv_Update(co_Buffer);
}

// ---- Single characters --------------------------------------------------------------------

const char* CT_CString::qccz_Get() const
{
    return Bytes::spc_Get(co_Buffer);
}

char CT_CString::c_GetAt(unsigned n_Offset) const
{
    return Bytes::sc_GetAt(co_Buffer, n_Offset);
}

void CT_CString::v_SetAt(char c_New, unsigned n_Offset)
{
    Bytes::sv_SetAt(co_Buffer, c_New, n_Offset);
}

char CT_CString::vc_GetAt(unsigned n_Offset) const
{
    return Bytes::sc_GetAt(co_Buffer, n_Offset);
}

unsigned short CT_CString::vu_GetAt(unsigned n_Offset) const
{
    return CT_StringConvert::sus_MultiToWide(c_GetAt(n_Offset), n_CodePage);
}

void CT_CString::vv_SetAt(char c_New, unsigned n_Offset)
{
    Bytes::sv_SetAt(co_Buffer, c_New, n_Offset);
}

void CT_CString::vv_SetAt(unsigned short u_New, unsigned n_Offset)
{
    Bytes::sv_SetAt(co_Buffer, CT_StringConvert::sc_WideToMulti(u_New, n_CodePage), n_Offset);
}
