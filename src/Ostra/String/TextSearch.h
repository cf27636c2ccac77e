// Ostra/String/TextSearch.h: searches in texts that may be long. Internal.
#pragma once

// Searches by the value of characters, many at a time. Neither allocates; the time that they take
// is linear in the lengths.
template <class Unit>
class CT_TextSearch
{
public:
    // The first c_Find among the n_Count characters and before the terminator, which can be looked
    // for too; NONE where there is none.
    static unsigned sn_Find(const Unit* qc_Text, unsigned n_Count, Unit c_Find);
    // The same for a text of n_Find characters, at least one and none of them a terminator.
    static unsigned sn_Find(const Unit* qc_Text, unsigned n_Count, const Unit* qc_Find,
                            unsigned n_Find);

    // Whether what stands behind a * in a pattern, which is no * and no end, matches some end of
    // the text. Linear but for stretches with a ? between their characters.
    static bool sb_MatchRest(const Unit* qc_Text, const Unit* qc_Pattern);
};
