// Ostra/String/TwoWay.h: the search that no text makes slow. Internal.
#pragma once

#include <Ostra/Frame/Counts.h>

#include <algorithm>
#include <cstring>

// The two-way search of Crochemore and Perrin: what is looked for is cut at a critical place; its
// right part is compared forward, then its left part backward. It takes no memory, and a time
// linear in both lengths, some times that of a search that a text doesn't mislead.
template <class Unit>
class CT_TwoWay
{
public:
    // The first place of the n_Find characters among n_Count; terminators are characters here.
    static unsigned sn_Find(const Unit* qc_Text, unsigned n_Count, const Unit* qc_Find,
                            unsigned n_Find);

private:
    // A cut and the period of what lies behind it.
    struct st_Cut
    {
        unsigned n_Place;
        unsigned n_Period;
    };

    static st_Cut sso_MaximumSuffix(const Unit* qc_Find, unsigned n_Find, bool b_Reverse);
    static st_Cut sso_Cut(const Unit* qc_Find, unsigned n_Find);
};

// The suffix that is last in the order of characters, or in the reverse order.
template <class Unit>
typename CT_TwoWay<Unit>::st_Cut CT_TwoWay<Unit>::sso_MaximumSuffix(const Unit* qc_Find,
                                                                    unsigned n_Find, bool b_Reverse)
{
    st_Cut so_Cut{0, 1};
    unsigned n_Other = 1;
    unsigned n_Same = 0;
    while (n_Other + n_Same < n_Find) {
        const Unit c_Best = qc_Find[so_Cut.n_Place + n_Same];
        const Unit c_Other = qc_Find[n_Other + n_Same];
        if (c_Other == c_Best) {
            if (++n_Same == so_Cut.n_Period) {
                n_Other += so_Cut.n_Period;
                n_Same = 0;
            }
        } else if ((c_Other < c_Best) != b_Reverse) {
            n_Other += n_Same + 1;
            n_Same = 0;
            so_Cut.n_Period = n_Other - so_Cut.n_Place;
        } else {
            so_Cut = {n_Other, 1};
            n_Other = so_Cut.n_Place + 1;
            n_Same = 0;
        }
    }
    return so_Cut;
}

template <class Unit>
typename CT_TwoWay<Unit>::st_Cut CT_TwoWay<Unit>::sso_Cut(const Unit* qc_Find, unsigned n_Find)
{
    const st_Cut so_Forward = sso_MaximumSuffix(qc_Find, n_Find, false);
    const st_Cut so_Reverse = sso_MaximumSuffix(qc_Find, n_Find, true);
    return so_Forward.n_Place > so_Reverse.n_Place ? so_Forward : so_Reverse;
}

template <class Unit>
unsigned CT_TwoWay<Unit>::sn_Find(const Unit* qc_Text, unsigned n_Count, const Unit* qc_Find,
                                  unsigned n_Find)
{
    const st_Cut so_Cut = sso_Cut(qc_Find, n_Find);
    const unsigned n_Cut = so_Cut.n_Place;
    // Where the left part repeats by the period too, what was compared once is known behind a move.
    const bool b_Periodic = n_Cut + so_Cut.n_Period <= n_Find &&
                            !std::memcmp(qc_Find, qc_Find + so_Cut.n_Period, n_Cut * sizeof(Unit));
    const unsigned n_Move = b_Periodic ? so_Cut.n_Period : std::max(n_Cut, n_Find - n_Cut) + 1;
    unsigned n_Known = 0;
    for (unsigned n_At = 0; n_Count >= n_Find && n_At <= n_Count - n_Find;) {
        const Unit* const qc_At = qc_Text + n_At;
        unsigned n = std::max(n_Cut, n_Known);
        while (n < n_Find && qc_At[n] == qc_Find[n])
            ++n;
        if (n < n_Find) {
            n_At += n - n_Cut + 1;
            n_Known = 0;
            continue;
        }
        n = n_Cut;
        while (n > n_Known && qc_At[n - 1] == qc_Find[n - 1])
            --n;
        if (n <= n_Known)
            return n_At;
        n_At += n_Move;
        n_Known = b_Periodic ? n_Find - so_Cut.n_Period : 0;
    }
    return NONE;
}
