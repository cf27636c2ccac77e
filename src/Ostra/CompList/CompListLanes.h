// Ostra/CompList/CompListLanes.h: several keys on their way through the stream. Internal.
#pragma once

#include <Ostra/CompList/CompListStream.h>
#include <Ostra/CompList/CompListText.h>

#include <algorithm>
#include <cstdint>
#include <cstring>

// The keys to search for, and where the answers go.
struct CT_CompList::st_Keys
{
    // Of an array of pointers to keys in one of their forms.
    template <class t_Key>
    st_Keys(const t_Key* pt_Keys, unsigned n_NewCount, unsigned* pn_NewHandles,
            unsigned* pn_NewMatched)
        : pcv_Keys(pt_Keys),
          pf_GetKey([](const void* pcv_Array, unsigned n_Key) {
              return pcc_Text(static_cast<const t_Key*>(pcv_Array)[n_Key]);
          }),
          n_Count(n_NewCount),
          pn_Handles(pn_NewHandles),
          pn_Matched(pn_NewMatched)
    {}

    const char* pcc_GetKey(unsigned n_Key) const { return pf_GetKey(pcv_Keys, n_Key); }

    void v_Search(const CT_CompList* pcco_List, unsigned n_Key) const
    {
        pn_Handles[n_Key] = pcco_List->n_SearchKey(pcc_GetKey(n_Key), pn_MatchedOf(n_Key));
    }
    unsigned* pn_MatchedOf(unsigned n_Key) const
    {
        return pn_Matched ? pn_Matched + n_Key : nullptr;
    }

    const void* pcv_Keys;
    const char* (*pf_GetKey)(const void* pcv_Keys, unsigned n_Key);
    unsigned n_Count;
    unsigned* pn_Handles;
    unsigned* pn_Matched;
};

// A search in a large list mostly waits: each alternative lies elsewhere, and which way a key goes
// can't be guessed. Here each of some keys takes a step in turn, and the memory of its next one is
// asked for; no branch of a step hangs on what the list holds. Whatever isn't a plain step, at the
// latest the key's end, is left to the way of a single search.
template <class T, class t_Offset>
struct CT_CompList::st_Lanes
{
    static constexpr unsigned LANES = 16;
    static constexpr unsigned ELEMENT = sizeof(T);

    st_Lanes(const CT_CompList* pcco_NewList, const st_Keys* pcso_NewKeys)
        : pcco_List(pcco_NewList),
          pcso_Keys(pcso_NewKeys),
          so_Stream(pcco_NewList),
          n_Steps(so_Stream.n_Limit < STEP ? 0 : so_Stream.n_Limit - STEP + 1),
          an1_Kinds(),
          aso_Moves(),
          n_Next(0),
          n_Used(0)
    {
        v_MakeMoves();
        while (n_Used < LANES && b_Enter(&aso_Lanes[n_Used]))
            ++n_Used;
    }

    void v_Run()
    {
        while (n_Used == LANES) {
// Written out by the compiler, a lane behind the other.
#pragma GCC unroll 16
            for (unsigned n = 0; n < LANES; ++n) {
                if (!b_Step(&aso_Lanes[n]) && !b_Renew(n)) [[unlikely]]
                    break;
            }
        }
        while (n_Used) {
            for (unsigned n = 0; n < n_Used; ++n) {
                if (!b_Step(&aso_Lanes[n]))
                    b_Renew(n);
            }
        }
    }

private:
    // What a step reads: a character, a mark and its offset.
    static constexpr unsigned MARK = ELEMENT + sizeof(t_Offset);
    static constexpr unsigned STEP = ELEMENT == 4 ? 12 : 8;
    struct st_Item
    {
        explicit st_Item(const char* pcc_At)
        {
            if constexpr (ELEMENT == 4) {
                n_Stored = n_Load<T>(pcc_At);
                n_Mark = n_Load<T>(pcc_At + ELEMENT);
                n_Offset = n_Load<t_Offset>(pcc_At + 2 * ELEMENT);
            } else {
                std::uint64_t n8_All;
                std::memcpy(&n8_All, pcc_At, sizeof n8_All);
                n_Stored = static_cast<T>(n8_All);
                n_Mark = static_cast<T>(n8_All >> 8 * ELEMENT);
                n_Offset = static_cast<t_Offset>(n8_All >> 16 * ELEMENT);
            }
        }

        unsigned n_Stored, n_Mark, n_Offset;
    };

    // What a step comes to: bytes to go on by, 0 for no plain step, and the bits to take of the
    // offset. It is looked up, by what the item is, as a branch would mostly be guessed wrong.
    static constexpr unsigned CHARACTER = ec_LeafEnd + 1;
    static constexpr unsigned KINDS = ELEMENT == 1 ? 256 : CHARACTER + 1;
    unsigned n_GetKind(unsigned n_Element) const
    {
        if constexpr (ELEMENT == 1)
            return an1_Kinds[n_Element];
        else
            return an1_Kinds[std::min(n_Element, CHARACTER)];
    }
    struct st_Move
    {
        unsigned n_On, n_Take;
    };
    void v_MakeMoves()
    {
        an1_Kinds[ec_InnerEnd] = 4;
        std::fill(an1_Kinds + CHARACTER, an1_Kinds + KINDS, 8);
        for (const unsigned b_Mark : {0, 1}) {
            // A mark behind a character that is followed is passed with it.
            aso_Moves[1 + 2 * b_Mark + 8].n_On = ELEMENT + b_Mark * MARK;
            aso_Moves[2 * b_Mark + 4].n_On = so_Stream.n_EndSize;
        }
        aso_Moves[2 + 8] = {ELEMENT, 0xFFFFFFFF};
    }

    struct st_Lane
    {
        const char* pcc_Rest;      // of the key
        std::uint64_t n8_Position; // behind an offset of damage it lies far behind the list
        unsigned n_Key;
    };

    // Takes the next key; 0 when there is none.
    bool b_Enter(st_Lane* pso_Lane)
    {
        for (; n_Next < pcso_Keys->n_Count; ++n_Next) {
            const char* pcc_Key = pcso_Keys->pcc_GetKey(n_Next);
            if (const unsigned n_First = n_Load<T>(pcc_Key)) {
                const unsigned n_Jump = pcco_List->n_GetJumpOffset(n_First);
                *pso_Lane = {pcc_Key, n_Jump ? n_Jump : pcco_List->n_FirstPosition, n_Next++};
                return true;
            }
            pcso_Keys->v_Search(pcco_List, n_Next);
        }
        return false;
    }

    // Follows the key by one element, or to one alternative, or over an end within it; false for
    // all that isn't plain, with the lane as it was.
    bool b_Step(st_Lane* pso_Lane) const
    {
        const std::uint64_t n8_Position = pso_Lane->n8_Position;
        const unsigned n_Wanted = n_Load<T>(pso_Lane->pcc_Rest);
        if (n8_Position >= n_Steps || n_Wanted <= ec_LeafEnd)
            return false;
        const st_Item so_Item(so_Stream.pcc_Block + n8_Position);
        const unsigned b_Same = so_Item.n_Stored == n_Wanted;
        const st_Move& so_Move = aso_Moves[b_Same + 2 * (so_Item.n_Mark == ec_Alternative) +
                                           n_GetKind(so_Item.n_Stored)];
        if (!so_Move.n_On)
            return false;
        const std::uint64_t n8_To =
            n8_Position + so_Move.n_On + (so_Item.n_Offset & so_Move.n_Take);
        pso_Lane->pcc_Rest += ELEMENT * b_Same;
        pso_Lane->n8_Position = n8_To;
        __builtin_prefetch(so_Stream.pcc_Block + n8_To);
        return true;
    }

    // Answers the lane's key and gives it the next one. When there is none, which is told by false,
    // the lane takes over from the last one.
    [[gnu::noinline]] bool b_Renew(unsigned n_Lane)
    {
        v_Answer(&aso_Lanes[n_Lane]);
        if (b_Enter(&aso_Lanes[n_Lane]))
            return true;
        aso_Lanes[n_Lane] = aso_Lanes[--n_Used];
        return false;
    }

    void v_Answer(const st_Lane* pcso_Lane) const
    {
        const unsigned n_Key = pcso_Lane->n_Key;
        // Out of the block only damage leads. And a key with the element of the mark, which no list
        // holds, follows the mark that was passed.
        const unsigned n_Wanted = n_Load<T>(pcso_Lane->pcc_Rest);
        if (pcso_Lane->n8_Position >= so_Stream.n_Limit || n_Wanted == ec_Alternative) {
            pcso_Keys->v_Search(pcco_List, n_Key);
            return;
        }
        const unsigned n_Position = static_cast<unsigned>(pcso_Lane->n8_Position);
        // A key that has ended passes one mark, which a step may have done.
        if (!n_Wanted && so_Stream.n_GetElement(n_Position) == ec_Alternative) {
            pcso_Keys->v_Search(pcco_List, n_Key);
            return;
        }
        st_Walk so_Walk = {pcso_Keys->pcc_GetKey(n_Key), 0, n_Position, 0, 0};
        const et_Stop ec_Stop = so_Stream.ec_Follow(pcso_Lane->pcc_Rest, &so_Walk);
        pcso_Keys->pn_Handles[n_Key] =
            pcco_List->n_Answer<T>(&so_Walk, ec_Stop, wm_Search, pcso_Keys->pn_MatchedOf(n_Key));
    }

    const CT_CompList* pcco_List;
    const st_Keys* pcso_Keys;
    const st_Stream<T> so_Stream;
    const unsigned n_Steps;         // a step can be taken at positions below
    unsigned char an1_Kinds[KINDS]; // of elements, in two bytes and more up to CHARACTER
    st_Move aso_Moves[16];
    unsigned n_Next; // of the keys
    unsigned n_Used;
    st_Lane aso_Lanes[LANES];
};
