// Ostra/String/StringScanner.cpp
#include <Ostra/String/StringScanner.h>

#include <Ostra/Frame/Counts.h>
#include <Ostra/Frame/Report.h>
#include <Ostra/String/CString.h>
#include <Ostra/String/TextOperations.h>
#include <Ostra/String/UString.h>
#include <System/String/StringConvert.h>

#include <cstdlib>

static constexpr char qccz_Source[] = "Ostra/String/StringScanner";

namespace
{
// A stretch of a text.
struct st_Piece
{
    unsigned n_Start;
    unsigned n_Count;
};

// Where the pieces of a text lie.
template <class Unit>
class CT_Pieces
{
public:
    explicit CT_Pieces(const Unit* qc) : qc_Text(qc) {}

    // ---- Items ------------------------------------------------------------------------------

    bool b_Item(st_Piece& so, Unit c_Separator, unsigned n_Item) const
    {
        const unsigned n_Length = Text::sn_Length(qc_Text);
        so = {0, n_ToSeparator(0, n_Length, c_Separator)};
        for (; n_Item != 1; --n_Item) {
            const unsigned n_End = so.n_Start + so.n_Count;
            if (n_End == n_Length)
                return false;
            so = {n_End + 1, n_ToSeparator(n_End + 1, n_Length, c_Separator)};
        }
        return true;
    }

    unsigned n_Separators(Unit c_Separator) const
    {
        unsigned n_Count = 0;
        for (const Unit* qc = qc_Text; *qc; ++qc)
            n_Count += *qc == c_Separator;
        return n_Count;
    }

    // ---- Words ------------------------------------------------------------------------------

    // There is no word 0.
    bool b_Word(st_Piece& so, const Unit* qc_Set, unsigned n_Word) const
    {
        so = {};
        for (unsigned n = 0; n != n_Word; ++n)
            if (!b_NextWord(so, qc_Set))
                return false;
        return n_Word != 0;
    }

    unsigned n_Words(const Unit* qc_Set) const
    {
        st_Piece so = {};
        unsigned n_Count = 0;
        while (b_NextWord(so, qc_Set))
            ++n_Count;
        return n_Count;
    }

private:
    using Text = CT_TextOperations<Unit>;

    unsigned n_ToSeparator(unsigned n_From, unsigned n_Length, Unit c_Separator) const
    {
        const unsigned n_Rest = n_Length - n_From;
        const unsigned n = Text::sn_Find(qc_Text + n_From, n_Rest, c_Separator);
        return n == NONE ? n_Rest : n;
    }

    // Goes on to the word behind the piece.
    bool b_NextWord(st_Piece& so, const Unit* qc_Set) const
    {
        const Unit* qc = qc_Text + so.n_Start + so.n_Count;
        qc += Text::sn_Span(qc, qc_Set);
        so.n_Start = static_cast<unsigned>(qc - qc_Text);
        while (*qc && !Text::sb_InSet(*qc, qc_Set))
            ++qc;
        so.n_Count = static_cast<unsigned>(qc - qc_Text) - so.n_Start;
        return so.n_Count != 0;
    }

    const Unit* qc_Text;
};

// ---- The two classes --------------------------------------------------------------------------

const char* qc_Get(const CT_CString* pcco_Text)
{
    return pcco_Text->qccz_Get();
}

const unsigned short* qc_Get(const CT_UString* pcco_Text)
{
    return pcco_Text->qcuz_Get();
}

void v_Set(CT_CString* pco_Out, const char* qccz_Text, unsigned n_Count)
{
    pco_Out->v_Set(qccz_Text, n_Count, OWN_CODE_PAGE);
}

void v_Set(CT_UString* pco_Out, const unsigned short* qcuz_Text, unsigned n_Count)
{
    pco_Out->v_Set(qcuz_Text, n_Count);
}

char c_Separator(unsigned short u_Separator)
{
    return CT_StringConvert::sc_WideToMulti(u_Separator, 0);
}

template <class... Strings>
bool b_AreAll(const CT_Type* pcco_Type, const Strings*... pcco_Text)
{
    return (... && pcco_Text->vpv_IsA(pcco_Type));
}

template <class... Strings>
bool b_AreBytes(const Strings*... pcco_Text)
{
    return b_AreAll(CT_CString::spcco_GetType(), pcco_Text...);
}

template <class... Strings>
bool b_AreUnits(const Strings*... pcco_Text)
{
    return b_AreAll(CT_UString::spcco_GetType(), pcco_Text...);
}

CT_CString* pco_C(CT_String* pco_Text)
{
    return static_cast<CT_CString*>(pco_Text);
}

const CT_CString* pco_C(const CT_String* pcco_Text)
{
    return static_cast<const CT_CString*>(pcco_Text);
}

CT_UString* pco_U(CT_String* pco_Text)
{
    return static_cast<CT_UString*>(pco_Text);
}

const CT_UString* pco_U(const CT_String* pcco_Text)
{
    return static_cast<const CT_UString*>(pcco_Text);
}

// ---- What is the same for both ----------------------------------------------------------------

template <class String, class Unit>
void v_CopyItem(String* pco_Out, const String* pcco_In, Unit c_Separator, unsigned n_Item)
{
    st_Piece so;
    if (CT_Pieces(qc_Get(pcco_In)).b_Item(so, c_Separator, n_Item))
        v_Set(pco_Out, qc_Get(pcco_In) + so.n_Start, so.n_Count);
    else
        pco_Out->v_Set(0u, 1);
}

template <class String, class Unit>
void v_CutItem(String* pco_String, Unit c_Separator, unsigned n_Item)
{
    st_Piece so;
    if (CT_Pieces(qc_Get(pco_String)).b_Item(so, c_Separator, n_Item))
        pco_String->vv_Remove(so.n_Count, so.n_Start);
}

template <class String>
void v_CopyWord(String* pco_Out, const String* pcco_In, const String* pcco_Set, unsigned n_Word)
{
    if (pco_Out == pcco_In || pco_Out == pcco_Set) {
        const String co_Held(pco_Out);
        v_CopyWord(pco_Out, pco_Out == pcco_In ? &co_Held : pcco_In,
                   pco_Out == pcco_Set ? &co_Held : pcco_Set, n_Word);
        return;
    }
    pco_Out->v_Set(0u, 1);
    st_Piece so;
    if (CT_Pieces(qc_Get(pcco_In)).b_Word(so, qc_Get(pcco_Set), n_Word))
        v_Set(pco_Out, qc_Get(pcco_In) + so.n_Start, so.n_Count);
}

template <class String>
void v_CutWord(String* pco_String, const String* pcco_Set, unsigned n_Word)
{
    st_Piece so;
    if (CT_Pieces(qc_Get(pco_String)).b_Word(so, qc_Get(pcco_Set), n_Word))
        pco_String->vv_Remove(so.n_Count, so.n_Start);
}
} // namespace

// ---- Objects ----------------------------------------------------------------------------------

void* CT_StringScanner::operator new(std::size_t n_Size) noexcept
{
    return CT_Report::spv_New(n_Size, qccz_Source);
}

void CT_StringScanner::operator delete(void* pv_Object)
{
    std::free(pv_Object);
}

// ---- Items ------------------------------------------------------------------------------------

void CT_StringScanner::v_Item(CT_String* pco_Out, const CT_String* pcco_In,
                              unsigned short u_Separator, unsigned n_Item)
{
    if (b_AreBytes(pco_Out, pcco_In))
        v_ItemC(pco_C(pco_Out), pco_C(pcco_In), c_Separator(u_Separator), n_Item);
    else if (b_AreUnits(pco_Out, pcco_In))
        v_ItemU(pco_U(pco_Out), pco_U(pcco_In), u_Separator, n_Item);
}

void CT_StringScanner::v_ItemC(CT_CString* pco_Out, const CT_CString* pcco_In, char c_Separator,
                               unsigned n_Item)
{
    v_CopyItem(pco_Out, pcco_In, c_Separator, n_Item);
}

void CT_StringScanner::v_ItemU(CT_UString* pco_Out, const CT_UString* pcco_In,
                               unsigned short u_Separator, unsigned n_Item)
{
    v_CopyItem(pco_Out, pcco_In, u_Separator, n_Item);
}

void CT_StringScanner::v_RemoveItem(CT_String* pco_String, unsigned short u_Separator,
                                    unsigned n_Item)
{
    if (b_AreBytes(pco_String))
        v_RemoveItemC(pco_C(pco_String), c_Separator(u_Separator), n_Item);
    else if (b_AreUnits(pco_String))
        v_RemoveItemU(pco_U(pco_String), u_Separator, n_Item);
}

void CT_StringScanner::v_RemoveItemC(CT_CString* pco_String, char c_Separator, unsigned n_Item)
{
    v_CutItem(pco_String, c_Separator, n_Item);
}

void CT_StringScanner::v_RemoveItemU(CT_UString* pco_String, unsigned short u_Separator,
                                     unsigned n_Item)
{
    v_CutItem(pco_String, u_Separator, n_Item);
}

// Kept: counts separators, not items; callers add 1.
unsigned CT_StringScanner::n_ItemCount(const CT_String* pcco_In, unsigned short u_Separator) const
{
    if (b_AreBytes(pcco_In))
        return n_ItemCountC(pco_C(pcco_In), c_Separator(u_Separator));
    return b_AreUnits(pcco_In) ? n_ItemCountU(pco_U(pcco_In), u_Separator) : 0;
}

unsigned CT_StringScanner::n_ItemCountC(const CT_CString* pcco_In, char c_Separator) const
{
    return CT_Pieces(qc_Get(pcco_In)).n_Separators(c_Separator);
}

unsigned CT_StringScanner::n_ItemCountU(const CT_UString* pcco_In, unsigned short u_Separator) const
{
    return CT_Pieces(qc_Get(pcco_In)).n_Separators(u_Separator);
}

// ---- Words ------------------------------------------------------------------------------------

void CT_StringScanner::v_SubWord(CT_String* pco_Out, const CT_String* pcco_In,
                                 const CT_String* pcco_Separators, unsigned n_Word)
{
    if (b_AreBytes(pco_Out, pcco_In, pcco_Separators))
        v_SubWordC(pco_C(pco_Out), pco_C(pcco_In), pco_C(pcco_Separators), n_Word);
    else if (b_AreUnits(pco_Out, pcco_In, pcco_Separators))
        v_SubWordU(pco_U(pco_Out), pco_U(pcco_In), pco_U(pcco_Separators), n_Word);
}

void CT_StringScanner::v_SubWordC(CT_CString* pco_Out, const CT_CString* pcco_In,
                                  const CT_CString* pcco_Separators, unsigned n_Word)
{
    v_CopyWord(pco_Out, pcco_In, pcco_Separators, n_Word);
}

void CT_StringScanner::v_SubWordU(CT_UString* pco_Out, const CT_UString* pcco_In,
                                  const CT_UString* pcco_Separators, unsigned n_Word)
{
    v_CopyWord(pco_Out, pcco_In, pcco_Separators, n_Word);
}

void CT_StringScanner::v_RemoveWord(CT_String* pco_String, const CT_String* pcco_Separators,
                                    unsigned n_Word)
{
    if (b_AreBytes(pco_String, pcco_Separators))
        v_RemoveWordC(pco_C(pco_String), pco_C(pcco_Separators), n_Word);
    else if (b_AreUnits(pco_String, pcco_Separators))
        v_RemoveWordU(pco_U(pco_String), pco_U(pcco_Separators), n_Word);
}

void CT_StringScanner::v_RemoveWordC(CT_CString* pco_String, const CT_CString* pcco_Separators,
                                     unsigned n_Word)
{
    v_CutWord(pco_String, pcco_Separators, n_Word);
}

void CT_StringScanner::v_RemoveWordU(CT_UString* pco_String, const CT_UString* pcco_Separators,
                                     unsigned n_Word)
{
    v_CutWord(pco_String, pcco_Separators, n_Word);
}

unsigned CT_StringScanner::n_WordCount(const CT_String* pcco_In,
                                       const CT_String* pcco_Separators) const
{
    if (b_AreBytes(pcco_In, pcco_Separators))
        return n_WordCountC(pco_C(pcco_In), pco_C(pcco_Separators));
    if (b_AreUnits(pcco_In, pcco_Separators))
        return n_WordCountU(pco_U(pcco_In), pco_U(pcco_Separators));
    return 0;
}

unsigned CT_StringScanner::n_WordCountC(const CT_CString* pcco_In,
                                        const CT_CString* pcco_Separators) const
{
    return CT_Pieces(qc_Get(pcco_In)).n_Words(qc_Get(pcco_Separators));
}

unsigned CT_StringScanner::n_WordCountU(const CT_UString* pcco_In,
                                        const CT_UString* pcco_Separators) const
{
    return CT_Pieces(qc_Get(pcco_In)).n_Words(qc_Get(pcco_Separators));
}
