// Ostra/String/CharacterPlaces.h: where characters stand in a set, asked often. Internal.
#pragma once

#include <Ostra/String/TextOperations.h>

#include <algorithm>
#include <cstdint>
#include <cstdlib>

// The place where a character first stands in a set. The set is looked through until that has taken
// a while; then a table tells, if the heap has it. The set stays as it is meanwhile.
template <class Unit>
class CT_CharacterPlaces
{
public:
    using Text = CT_TextOperations<Unit>;

    // b_Table is false for a set that may change.
    explicit CT_CharacterPlaces(const Unit* qc_NewSet, bool b_Table = true)
        : qc_Set(qc_NewSet),
          n_Patience(b_Table ? PATIENCE : UINT64_MAX)
    {}
    ~CT_CharacterPlaces() { std::free(pn_Table); }
    CT_CharacterPlaces(const CT_CharacterPlaces&) = delete;
    CT_CharacterPlaces& operator=(const CT_CharacterPlaces&) = delete;

    // NONE for a character that isn't in the set, and for a terminator.
    unsigned n_Index(Unit c)
    {
        if (pn_Table)
            return pn_Table[an_Rows[sn_Row(c)] + Value(c) % ROW];
        const unsigned n = Text::sn_Index(c, qc_Set);
        n_Compared += n == NONE ? n_Length : n;
        if (n_Compared > n_Patience)
            v_MakeTable();
        return n;
    }
    bool b_Has(Unit c) { return n_Index(c) != NONE; }

private:
    using Value = typename Text::Value;

    static constexpr unsigned ROW = 256;
    static constexpr std::uint64_t PATIENCE = 4096; // characters compared

    static unsigned sn_Row(Unit c) { return unsigned(Value(c)) / ROW; }
    void v_MakeTable();

    const Unit* qc_Set;
    std::uint64_t n_Patience;
    std::uint64_t n_Compared = 0;
    unsigned n_Length = Text::sn_Length(qc_Set);
    unsigned* pn_Table = nullptr;
    unsigned an_Rows[ROW]; // where the row of characters with that high byte begins in the table
};

// The first row is that of the characters whose high byte the set doesn't have.
template <class Unit>
void CT_CharacterPlaces<Unit>::v_MakeTable()
{
    n_Patience = UINT64_MAX;
    std::fill_n(an_Rows, ROW, 0);
    unsigned n_Size = ROW;
    for (unsigned n = 0; n < n_Length; ++n) {
        unsigned& n_Start = an_Rows[sn_Row(qc_Set[n])];
        if (!n_Start) {
            n_Start = n_Size;
            n_Size += ROW;
        }
    }
    pn_Table = static_cast<unsigned*>(std::malloc(n_Size * sizeof(unsigned)));
    if (!pn_Table)
        return;
    std::fill_n(pn_Table, n_Size, NONE);
    for (unsigned n = n_Length; n--;)
        pn_Table[an_Rows[sn_Row(qc_Set[n])] + Value(qc_Set[n]) % ROW] = n;
}
