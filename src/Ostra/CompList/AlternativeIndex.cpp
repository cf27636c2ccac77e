// Ostra/CompList/AlternativeIndex.cpp
#include <Ostra/CompList/AlternativeIndex.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <limits>

static constexpr unsigned FIRST_ROOM = 64;

CT_AlternativeIndex* CT_AlternativeIndex::spco_New()
{
    return static_cast<CT_AlternativeIndex*>(std::calloc(1, sizeof(CT_AlternativeIndex)));
}

void CT_AlternativeIndex::sv_Delete(CT_AlternativeIndex* pco_Index)
{
    if (pco_Index)
        std::free(pco_Index->pso_Alternatives);
    std::free(pco_Index);
}

int CT_AlternativeIndex::b_Add(unsigned n_Position, unsigned n_Target)
{
    if (n_Count == n_Room) {
        const unsigned n_More = n_Room ? 2 * n_Room : FIRST_ROOM;
        void* pv_More =
            std::realloc(pso_Alternatives, std::size_t{n_More} * sizeof(st_Alternative));
        if (!pv_More)
            return 0;
        pso_Alternatives = static_cast<st_Alternative*>(pv_More);
        n_Room = n_More;
    }
    pso_Alternatives[n_Count++] = {n_Position, n_Target};
    return 1;
}

void CT_AlternativeIndex::v_Sort()
{
    const auto b_Less = [](const st_Alternative& so_First, const st_Alternative& so_Second) {
        return so_First.n_Target < so_Second.n_Target;
    };
    std::sort(pso_Alternatives, pso_Alternatives + n_Count, b_Less);
}

// The number of the first alternative that leads to n_Position or behind it.
unsigned CT_AlternativeIndex::n_FindTarget(unsigned n_Position) const
{
    const auto b_Before = [](const st_Alternative& so_Alternative, unsigned n_Wanted) {
        return so_Alternative.n_Target < n_Wanted;
    };
    st_Alternative* pso_End = pso_Alternatives + n_Count;
    return static_cast<unsigned>(std::lower_bound(pso_Alternatives, pso_End, n_Position, b_Before) -
                                 pso_Alternatives);
}

template <class T>
int CT_AlternativeIndex::b_Follow(char* pc_Block, unsigned n_Element, unsigned n_Position,
                                  unsigned n_Size)
{
    unsigned n_Widest = 0;
    for (unsigned n_At = n_FindTarget(n_Position); n_At < n_Count; ++n_At) {
        st_Alternative& so_Alternative = pso_Alternatives[n_At];
        so_Alternative.n_Target += n_Size;
        so_Alternative.n_Position += so_Alternative.n_Position >= n_Position ? n_Size : 0;
        const unsigned n_Offset = so_Alternative.n_Target - so_Alternative.n_Position;
        const T o_Offset = static_cast<T>(n_Offset);
        std::memcpy(pc_Block + so_Alternative.n_Position + n_Element, &o_Offset, sizeof o_Offset);
        n_Widest = std::max(n_Widest, n_Offset);
    }
    return n_Widest <= std::numeric_limits<T>::max();
}

template int CT_AlternativeIndex::b_Follow<unsigned short>(char*, unsigned, unsigned, unsigned);
template int CT_AlternativeIndex::b_Follow<unsigned>(char*, unsigned, unsigned, unsigned);
