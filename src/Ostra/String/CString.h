// Ostra/String/CString.h: the string of bytes in a code page.
#pragma once

#include <Ostra/Frame/RawCopy.h>
#include <Ostra/String/String.h>

#include <cstddef>

class CT_UString;

// A text of bytes in one code page. A byte is a character throughout: search, match, comparison and
// casing know nothing of double bytes, and the code page serves in conversions from and to wide
// text alone.
//
// An empty string has no block, or a block that holds the terminator only. It always reads as an
// empty text.
class OSTRA_API CT_CString : public CT_String
{
public:
    // ---- Construction -----------------------------------------------------------------------

    // Empty. The number is a code page, where that of CT_UString is a length.
    CT_CString(unsigned n_NewCodePage = 0) : n_CodePage(n_NewCodePage) {}
    CT_CString(const char* qccz_Text, unsigned n_Count = ALL, unsigned n_CodePage = 0);
    // Converts.
    CT_CString(const unsigned short* qcuz_Text, unsigned n_Count = ALL, unsigned n_CodePage = 0);
    // The same with a u"..." literal.
    CT_CString(const char16_t* qcuz_New, unsigned n_Count = ALL, unsigned n_Page = 0)
        : CT_CString(qcuz_Text(qcuz_New), n_Count, n_Page)
    {}
    // Shares the buffer as it stands: it has to hold a terminated text.
    CT_CString(const CT_Buffer* pcco_Buffer, unsigned n_CodePage = 0);
    // Shares a CT_CString and takes its code page; converts a CT_UString.
    CT_CString(const CT_String* pcco_Text, unsigned n_CodePage = 0);
    CT_CString(const CT_UString* pcco_Text, unsigned n_CodePage = 0);
    // Shares the data, copies the code page.
    CT_CString(const CT_CString* pcco_Text)
        : CT_String(&pcco_Text->co_Buffer),
          n_CodePage(pcco_Text->n_CodePage)
    {}
    // The specimen.
    CT_CString(CT_Type* pco_Type);
    // Kept: copies the members without a hold on the block; the pointer form shares.
    OSTRA_RAW_COPY CT_CString(const CT_CString& co_Other) = default;
    OSTRA_RAW_COPY CT_CString& operator=(const CT_CString& co_Other) = default;

    static void* operator new(std::size_t n_Size) noexcept;
    static void* operator new(std::size_t, void* pv_Place) noexcept { return pv_Place; }
    static void operator delete(void* pv_Object);

    // ---- Access -----------------------------------------------------------------------------

    // The text; never null.
    const char* qccz_Get() const;
    // 0 behind the block's end.
    char c_GetAt(unsigned n_Offset) const;
    void v_SetAt(char c_New, unsigned n_Offset);
    unsigned n_GetCodePage() const { return n_CodePage; }
    // No byte changes.
    void v_SetCodePage(unsigned n_NewCodePage) { n_CodePage = n_NewCodePage; }
    const CT_Buffer* pco_GetBuffer() const { return &co_Buffer; }
    int b_Match(const char* qccz_Pattern) const;

    // ---- Append -----------------------------------------------------------------------------

    // A zero character appends nothing. Wide text is converted to the string's code page.
    void v_Append(char c_Append);
    void v_Append(unsigned short u_Append);
    void v_Append(const char* qccz_Text, unsigned n_Count = ALL);
    void v_Append(const unsigned short* qcuz_Text, unsigned n_Count = ALL);
    // The bytes of a CT_CString as they are, whatever its code page.
    void v_Append(const CT_String* pcco_Text, unsigned n_Count = ALL);

    // ---- The interface of CT_String -----------------------------------------------------------

    const CT_Type* vpcco_GetType() const override;
    void* vpv_IsA(const CT_Type* pcco_Type) const override;
    void* vpv_IsKindOf(const CT_Type* pcco_Type) const override;
    ~CT_CString() override
    {
        if (this == &sco_Object)
            CT_Type::sv_ToDestruct(&sco_Type);
        CT_Type::sb_InDestruct(this);
    }
    CT_String* vpco_Create() const override;
    void vv_SetSize(unsigned n_Length, int b_Keep) override;
    void vv_SetMinSize(unsigned n_Length, int b_Keep) override;
    // Kept: the zero behind the range doesn't change the length when it lands within the text.
    void vv_Replace(unsigned short u_Fill, unsigned n_Count, unsigned n_Offset) override;
    void vv_Replace(char c_Fill, unsigned n_Count, unsigned n_Offset) override;
    char vc_GetAt(unsigned n_Offset) const override;
    // The byte widened alone.
    unsigned short vu_GetAt(unsigned n_Offset) const override;
    void vv_SetAt(unsigned short u_New, unsigned n_Offset) override;
    void vv_SetAt(char c_New, unsigned n_Offset) override;
    void vv_ToLower() override;
    void vv_ToUpper() override;
    void vv_Remove(unsigned n_Count, unsigned n_Offset) override;
    unsigned vn_Find(unsigned short u_Find, unsigned n_From = 0) const override;
    unsigned vn_Find(char c_Find, unsigned n_From = 0) const override;
    unsigned vn_Find(const CT_String* pcco_Find, unsigned n_From = 0) const override;
    void vv_Update() override;
    int vb_Match(const CT_String* pcco_Pattern) const override;
    void vv_Strip(const CT_String* pcco_Set) override;
    // Kept: strings that share the block are cut as well, without a change of their length.
    void vv_StripRight() override;
    void vv_StripLeft() override;
    int vi_Compare(const CT_String* pcco_Other, unsigned n_From = 0, unsigned n_Count = ALL,
                   unsigned n_Offset = 0) const override;
    int vi_Compare(const unsigned short* qcuz_Other, unsigned n_Count = ALL,
                   unsigned n_Offset = 0) const override;
    int vi_Compare(const char* qccz_Other, unsigned n_Count = ALL,
                   unsigned n_Offset = 0) const override;
    using CT_String::vi_Compare;
    // Kept: up to the first character that goes, strings that share the block change as well.
    void vv_Translate(const CT_String* pcco_From, const CT_String* pcco_To) override;
    void vv_SetLength(unsigned n_Length) override;
    unsigned vn_GetLength() const override;
    unsigned vn_GetMaximumLength() const override;
    void vv_SetGrowth(unsigned n_Growth) override;
    unsigned vn_GetGrowth() const override;
    void vv_Format(const CT_String* pcco_Format, va_list args) override;
    void vv_Format(const CT_String* pcco_Format, ...) override;

    // The class's record and its specimen.
    static const CT_Type* spcco_GetType() { return &sco_Type; }
    static CT_Type sco_Type;
    static CT_CString sco_Object;

protected:
    void vv_Init(const CT_Buffer* pcco_Buffer) override;
    void vv_Init(const unsigned short* qcuz_Text, unsigned n_Count) override;
    void vv_Init(const char* qccz_Text, unsigned n_Count, unsigned n_NewCodePage) override;
    void vv_Init(const CT_String* pcco_Text) override;
    void vv_Init(unsigned n_Length) override;
    void vv_Init() override;
    void vv_StringReplace(const CT_String* pcco_Text, unsigned n_From, unsigned n_Count,
                          unsigned n_Offset) override;
    void vv_StringReplace(const unsigned short* qcuz_Text, unsigned n_Count,
                          unsigned n_Offset) override;
    void vv_StringReplace(const char* qccz_Text, unsigned n_Count, unsigned n_Offset,
                          unsigned n_TextCodePage) override;
    void vv_StringInsert(const CT_String* pcco_Text, unsigned n_From, unsigned n_Count,
                         unsigned n_Offset) override;
    void vv_StringInsert(const unsigned short* qcuz_Text, unsigned n_Count,
                         unsigned n_Offset) override;
    void vv_StringInsert(const char* qccz_Text, unsigned n_Count, unsigned n_Offset,
                         unsigned n_TextCodePage) override;

public:
    // What vv_Format does.
    virtual void vv_VFormat(const CT_String* pcco_Format, va_list args);

private:
    int b_RMatch(const char* qccz_Text, const char* qccz_Pattern) const;

    unsigned n_CodePage; // of the bytes; 0 is the system's ANSI code page
};
