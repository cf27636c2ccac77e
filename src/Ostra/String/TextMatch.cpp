// Ostra/String/TextMatch.cpp: wildcards in texts that mislead.
#include <Ostra/Frame/Counts.h>
#include <Ostra/String/TextOperations.h>
#include <Ostra/String/TextSearch.h>

namespace
{
struct st_Piece
{
    unsigned n_From;
    unsigned n_Count;
};

// The longest piece without a ? of a stretch of the pattern.
template <class Unit>
st_Piece so_LongestPiece(const Unit* qc_Pattern, unsigned n_Stretch)
{
    st_Piece so_Longest{0, 0};
    unsigned n_From = 0;
    for (unsigned n = 0; n <= n_Stretch; ++n) {
        if (n < n_Stretch && qc_Pattern[n] != '?')
            continue;
        if (n - n_From > so_Longest.n_Count)
            so_Longest = {n_From, n - n_From};
        n_From = n + 1;
    }
    return so_Longest;
}

// The first place of a stretch of the pattern in the text, which is as long as it at least. Without
// a ? among its characters that takes one search.
template <class Unit>
unsigned n_FindStretch(const Unit* qc_Text, unsigned n_Count, const Unit* qc_Pattern,
                       unsigned n_Stretch)
{
    const st_Piece so = so_LongestPiece(qc_Pattern, n_Stretch);
    if (!so.n_Count)
        return 0;
    const unsigned n_Last = n_Count - n_Stretch;
    for (unsigned n = 0; n <= n_Last; ++n) {
        const unsigned n_Next = CT_TextSearch<Unit>::sn_Find(
            qc_Text + n + so.n_From, n_Last - n + so.n_Count, qc_Pattern + so.n_From, so.n_Count);
        if (n_Next == NONE)
            return NONE;
        n += n_Next;
        if (CT_TextOperations<Unit>::sb_IsLike(qc_Text + n, qc_Pattern, n_Stretch))
            return n;
    }
    return NONE;
}
} // namespace

template <class Unit>
bool CT_TextSearch<Unit>::sb_MatchRest(const Unit* qc_Text, const Unit* qc_Pattern)
{
    unsigned n_Count = CT_TextOperations<Unit>::sn_Length(qc_Text);
    for (;;) {
        unsigned n_Stretch = 0;
        while (qc_Pattern[n_Stretch] && qc_Pattern[n_Stretch] != '*')
            ++n_Stretch;
        if (n_Stretch > n_Count)
            return false;
        if (!qc_Pattern[n_Stretch])
            return CT_TextOperations<Unit>::sb_IsLike(qc_Text + n_Count - n_Stretch, qc_Pattern,
                                                      n_Stretch);
        const unsigned n = n_FindStretch(qc_Text, n_Count, qc_Pattern, n_Stretch);
        if (n == NONE)
            return false;
        qc_Text += n + n_Stretch;
        n_Count -= n + n_Stretch;
        qc_Pattern += n_Stretch;
        while (*qc_Pattern == '*')
            ++qc_Pattern;
        if (!*qc_Pattern)
            return true;
    }
}

template bool CT_TextSearch<char>::sb_MatchRest(const char*, const char*);
template bool CT_TextSearch<unsigned short>::sb_MatchRest(const unsigned short*,
                                                          const unsigned short*);
