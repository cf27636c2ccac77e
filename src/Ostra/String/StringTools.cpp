// Ostra/String/StringTools.cpp
#include <Ostra/String/StringTools.h>

#include <Ostra/Frame/Counts.h>
#include <Ostra/Frame/Report.h>
#include <Ostra/String/Scratch.h>
#include <Ostra/String/TextOperations.h>
#include <Ostra/String/UString.h>

#include <charconv>
#include <cstddef>
#include <cstring>

static constexpr char qccz_Source[] = "Ostra/String/StringTools";

using Units = CT_TextOperations<unsigned short>;

static constexpr unsigned NUMBER_WIDTH = 16; // of a field without a width

// ---- Search -----------------------------------------------------------------------------------

// Leaves the end alone where there is no walk: for another step, and from behind the text.
void CT_StringTools::sv_CheckOffset(const CT_UString* pcco_In, unsigned n_From, int i_Step,
                                    unsigned* pn_End)
{
    const unsigned n_Length = pcco_In->vn_GetLength();
    if (n_From > n_Length)
        return;
    if (i_Step == -1)
        *pn_End = NONE;
    else if (i_Step == 1)
        *pn_End = n_Length;
}

static unsigned n_Walk(const unsigned short* qcuz_Set, const unsigned short* qcuz_Text,
                       unsigned n_From, unsigned n_End, int i_Step, bool b_InSet)
{
    for (unsigned n = n_From; n != n_End; n += i_Step)
        if (Units::sb_InSet(qcuz_Text[n], qcuz_Set) == b_InSet)
            return n;
    return NONE;
}

unsigned CT_StringTools::sn_FindAny(const unsigned short* qcuz_Set, const CT_UString* pcco_In,
                                    unsigned n_From, int i_Step)
{
    unsigned n_End = n_From;
    sv_CheckOffset(pcco_In, n_From, i_Step, &n_End);
    return n_Walk(qcuz_Set, pcco_In->qcuz_Get(), n_From, n_End, i_Step, true);
}

unsigned CT_StringTools::sn_FindNot(const unsigned short* qcuz_Set, const CT_UString* pcco_In,
                                    unsigned n_From, int i_Step)
{
    unsigned n_End = n_From;
    sv_CheckOffset(pcco_In, n_From, i_Step, &n_End);
    return n_Walk(qcuz_Set, pcco_In->qcuz_Get(), n_From, n_End, i_Step, false);
}

// ---- Replacement ------------------------------------------------------------------------------

unsigned CT_StringTools::sn_Replace(CT_String* pco_String, const CT_String* pcco_Find,
                                    const CT_String* pcco_With)
{
    const unsigned n_Position = pco_String->vn_Find(pcco_Find, 0);
    // Kept: 0 passes for "nothing to do" although it is a position.
    if (n_Position && n_Position != NONE) {
        pco_String->vv_Remove(pcco_Find->vn_GetLength(), n_Position);
        pco_String->v_Insert(pcco_With, ALL, n_Position);
    }
    return n_Position;
}

// ---- Numbers ----------------------------------------------------------------------------------

namespace
{
// A field that is filled from its right end; what finds no room is left out.
class CT_Field
{
public:
    CT_Field(char* pc_Field, unsigned n_Width) : pc_First(pc_Field), pc_At(pc_Field + n_Width) {}

    bool b_HasRoom() const { return pc_At != pc_First; }
    const char* qccz_Written() const { return pc_At; }
    void v_Put(char c)
    {
        if (b_HasRoom())
            *--pc_At = c;
    }

private:
    char* pc_First;
    char* pc_At;
};

// The digits of a number with its sign, from the last one on.
class CT_Digits
{
public:
    explicit CT_Digits(int i_Number)
        : qcc_End(std::to_chars(ac_Digits, ac_Digits + sizeof(ac_Digits), i_Number).ptr)
    {}

    bool b_IsEnd() const { return qcc_End == ac_Digits; }
    bool b_IsSign() const { return qcc_End[-1] == '-'; }
    // Kept: the sign is handed out as any digit is, whether it comes to stand among decimals or
    // not.
    // NOLINTNEXTLINE(clang-analyzer-core.uninitialized.UndefReturn): b_IsEnd has been asked
    char c_Next() { return *--qcc_End; }

private:
    char ac_Digits[12];
    const char* qcc_End;
};

void v_PutDecimals(CT_Field& co_Field, CT_Digits& co_Digits, char c_Decimal, unsigned n_Decimals)
{
    for (; n_Decimals && co_Field.b_HasRoom(); --n_Decimals)
        co_Field.v_Put(co_Digits.b_IsEnd() ? '0' : co_Digits.c_Next());
    co_Field.v_Put(c_Decimal);
    if (co_Digits.b_IsEnd())
        co_Field.v_Put('0');
}

void v_PutWhole(CT_Field& co_Field, CT_Digits& co_Digits, char c_Thousands)
{
    for (unsigned n = 0; !co_Digits.b_IsEnd(); ++n) {
        if (c_Thousands && n && n % 3 == 0 && !co_Digits.b_IsSign())
            co_Field.v_Put(c_Thousands);
        co_Field.v_Put(co_Digits.c_Next());
    }
}
} // namespace

void CT_StringTools::sv_FormatNumber(CT_String* pco_Out, unsigned n_Number, unsigned n_Width,
                                     char c_Thousands, char c_Decimal, unsigned n_Decimals)
{
    const unsigned n_Room = n_Width == ALL ? NUMBER_WIDTH : n_Width;
    const CT_Scratch<char> co_Scratch(std::size_t(n_Room) + 1);
    if (!co_Scratch.pc_Get()) {
        CT_Report::sv_Memory(qccz_Source);
        return;
    }
    std::memset(co_Scratch.pc_Get(), ' ', n_Room);
    CT_Field co_Field(co_Scratch.pc_Get(), n_Room);
    CT_Digits co_Digits(static_cast<int>(n_Number));
    if (n_Decimals)
        v_PutDecimals(co_Field, co_Digits, c_Decimal, n_Decimals);
    v_PutWhole(co_Field, co_Digits, c_Thousands);
    const char* qccz_Text = n_Width == ALL ? co_Field.qccz_Written() : co_Scratch.pc_Get();
    pco_Out->v_Set(qccz_Text, ALL, OWN_CODE_PAGE);
}
