// Ostra/String/UString.h: the string of UTF-16 units.
#pragma once

#include <Ostra/Frame/RawCopy.h>
#include <Ostra/String/String.h>

#include <concepts>
#include <cstddef>

class CT_CString;

// A text of UTF-16 units. A unit is a character throughout: a surrogate pair counts as two, and is
// searched, matched and converted unit by unit.
//
// An empty string has no block, or a block that holds the terminator only. It always reads as an
// empty text.
class OSTRA_API CT_UString : public CT_String
{
public:
    // ---- Construction -----------------------------------------------------------------------

    CT_UString() {}
    // Empty, with room for that length. The number is a length, where that of CT_CString is a code
    // page.
    CT_UString(unsigned n_Length);
    // Converts.
    CT_UString(const char* qccz_Text, unsigned n_Count = ALL, unsigned n_CodePage = 0);
    CT_UString(const unsigned short* qcuz_Text, unsigned n_Count = ALL);
    // The same with a u"..." literal.
    CT_UString(const char16_t* qcuz_New, unsigned n_Count = ALL)
        : CT_UString(qcuz_Text(qcuz_New), n_Count)
    {}
    // Shares the buffer as it stands: it has to hold a terminated text.
    CT_UString(const CT_Buffer* pcco_Buffer);
    // Shares a CT_UString; converts a CT_CString by its own code page.
    CT_UString(const CT_String* pcco_Text);
    CT_UString(const CT_CString* pcco_Text);
    CT_UString(const CT_UString* pcco_Text) : CT_String(&pcco_Text->co_Buffer) {}
    // The specimen.
    CT_UString(CT_Type* pco_Type);
    // Kept: copies the members without a hold on the block; the pointer form shares.
    OSTRA_RAW_COPY CT_UString(const CT_UString& co_Other) = default;
    OSTRA_RAW_COPY CT_UString& operator=(const CT_UString& co_Other) = default;

    static void* operator new(std::size_t n_Size) noexcept;
    static void* operator new(std::size_t, void* pv_Place) noexcept { return pv_Place; }
    static void operator delete(void* pv_Object);

    // ---- Access -----------------------------------------------------------------------------

    // The text; never null.
    const unsigned short* qcuz_Get() const;
    // 0 behind the block's end.
    unsigned short u_GetAt(unsigned n_Offset) const;
    void v_SetAt(unsigned short u_New, unsigned n_Offset);
    int b_Match(const unsigned short* qcuz_Pattern) const;

    // ---- Append -----------------------------------------------------------------------------

    // A zero character appends nothing.
    void v_Append(char c_Append, unsigned n_CodePage);
    // By code page 0. For a char alone: numbers and characters of other types are units.
    template <std::same_as<char> Char>
    void v_Append(Char c_Append)
    {
        v_Append(c_Append, 0u);
    }
    // Grows to twice the size that it needs.
    void v_Append(unsigned short u_Append);
    // Kept: appends as many units as the text has bytes; where they convert to fewer, zero units
    // fill up.
    void v_Append(const char* qccz_Text, unsigned n_Count, unsigned n_CodePage);
    void v_Append(const unsigned short* qcuz_Text, unsigned n_Count = ALL);
    // Kept: a CT_CString is converted by code page 0, whatever its own.
    void v_Append(const CT_String* pcco_Text, unsigned n_Count = ALL);

    // ---- The interface of CT_String -----------------------------------------------------------

    const CT_Type* vpcco_GetType() const override;
    void* vpv_IsA(const CT_Type* pcco_Type) const override;
    void* vpv_IsKindOf(const CT_Type* pcco_Type) const override;
    ~CT_UString() override
    {
        if (this == &sco_Object)
            CT_Type::sv_ToDestruct(&sco_Type);
        CT_Type::sb_InDestruct(this);
    }
    CT_String* vpco_Create() const override;
    void vv_SetSize(unsigned n_Length, int b_Keep) override;
    void vv_SetMinSize(unsigned n_Length, int b_Keep) override;
    // A count of -2 means all of it as well. The zero behind the range is always written.
    void vv_Replace(unsigned short u_Fill, unsigned n_Count, unsigned n_Offset) override;
    // The zero behind the range is written only at the end of the text.
    void vv_Replace(char c_Fill, unsigned n_Count, unsigned n_Offset) override;
    char vc_GetAt(unsigned n_Offset) const override;
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
    // With a count, the difference of the first units that differ.
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
    static CT_UString sco_Object;

protected:
    void vv_Init(const CT_Buffer* pcco_Buffer) override;
    void vv_Init(const unsigned short* qcuz_Text, unsigned n_Count) override;
    void vv_Init(const char* qccz_Text, unsigned n_Count, unsigned n_CodePage) override;
    void vv_Init(const CT_String* pcco_Text) override;
    void vv_Init(unsigned n_Length) override;
    void vv_Init() override;
    void vv_StringReplace(const CT_String* pcco_Text, unsigned n_From, unsigned n_Count,
                          unsigned n_Offset) override;
    void vv_StringReplace(const unsigned short* qcuz_Text, unsigned n_Count,
                          unsigned n_Offset) override;
    void vv_StringReplace(const char* qccz_Text, unsigned n_Count, unsigned n_Offset,
                          unsigned n_CodePage) override;
    void vv_StringInsert(const CT_String* pcco_Text, unsigned n_From, unsigned n_Count,
                         unsigned n_Offset) override;
    void vv_StringInsert(const unsigned short* qcuz_Text, unsigned n_Count,
                         unsigned n_Offset) override;
    void vv_StringInsert(const char* qccz_Text, unsigned n_Count, unsigned n_Offset,
                         unsigned n_CodePage) override;

public:
    // What vv_Format does.
    virtual void vv_VFormat(const CT_String* pcco_Format, va_list args);

private:
    int b_RMatch(const unsigned short* qcuz_Text, const unsigned short* qcuz_Pattern) const;
};
