// Ostra/CompList/CompListStream.h: reading the stream of a list. Internal.
#pragma once

#include <Ostra/CompList/CompList.h>
#include <Ostra/CompList/ElementSize.h>

#include <cstring>

// Kept: whatever growth a list was made with, its block grows in steps of 32 bytes once it grows.
static constexpr unsigned COPY_GROWTH = 32;

template <class T>
static inline unsigned n_Load(const char* pcc_From)
{
    T o_Value;
    std::memcpy(&o_Value, pcc_From, sizeof o_Value);
    return o_Value;
}

inline unsigned CT_CompList::n_GetNumber(const char* pcc_From, unsigned n_Size) const
{
    return o_ForElement(
        n_Size, [&](auto o_Type) { return n_Load<decltype(o_Type)>(pcc_From); }, [] { return 0u; });
}

// The handle at a position; 0 where the block ends before.
inline unsigned CT_CompList::n_GetHandle(unsigned n_Position) const
{
    if (n_Position + n_GetHandleSize() > co_Buffer.n_GetUsedSize())
        return 0;
    return n_GetNumber(reinterpret_cast<const char*>(pso_Header) + n_Position, n_GetHandleSize());
}

// How far the stream can be read: no further than the block's bytes, whatever its head says.
inline unsigned CT_CompList::n_GetLimit() const
{
    const unsigned n_Used = co_Buffer.n_GetUsedSize();
    return n_GetEnd() < n_Used ? n_GetEnd() : n_Used;
}

// A key on its way through the stream.
struct CT_CompList::st_Walk
{
    const char* pcc_Key;
    unsigned n_First;    // the key's first element
    unsigned n_Position; // in the block, of the element looked at
    unsigned n_Offset;   // in the key, of the element looked at
    unsigned n_Stored;   // the element at n_Position
};

// The stream as elements of the type T. Behind its last element it reads as the list end.
template <class T>
struct CT_CompList::st_Stream
{
    static constexpr unsigned ELEMENT = sizeof(T);

    explicit st_Stream(const CT_CompList* pcco_List)
        : pcc_Block(reinterpret_cast<const char*>(pcco_List->pso_Header)),
          n_Limit(pcco_List->n_GetLimit()),
          n_MarkSize(ELEMENT + pcco_List->n_OffsetSize),
          n_EndSize(ELEMENT + pcco_List->n_GetHandleSize()),
          n_Elements(n_Limit < ELEMENT ? 0 : n_Limit - ELEMENT + 1),
          n_Marks(n_Limit < n_MarkSize ? 0 : n_Limit - n_MarkSize + 1)
    {}

    unsigned n_GetElement(unsigned n_Position) const
    {
        return n_Position < n_Elements ? n_Load<T>(pcc_Block + n_Position) : +ec_ListEnd;
    }

    // The bytes of an item that begins with that element.
    unsigned n_GetItemSize(unsigned n_Element) const
    {
        if (n_Element == ec_InnerEnd || n_Element == ec_LeafEnd)
            return n_EndSize;
        return n_Element == ec_Alternative ? n_MarkSize : ELEMENT;
    }

    // Where the alternative to the character at n_Position is; 0 for none.
    unsigned n_GetAlternative(unsigned n_Position) const
    {
        const unsigned n_Mark = n_Position + ELEMENT;
        if (n_Mark >= n_Marks || n_Load<T>(pcc_Block + n_Mark) != ec_Alternative)
            return 0;
        return n_GetTarget(n_Mark);
    }
    // Whether a search goes on there, and where. One that leads back, which no list has by itself,
    // would let it run in circles. The test is the carry of a sum.
    bool b_GetAlternative(unsigned n_Position, unsigned& n_Alternative) const
    {
        const unsigned n_Mark = n_Position + ELEMENT;
        if (n_Mark >= n_Marks || n_Load<T>(pcc_Block + n_Mark) != ec_Alternative)
            return false;
        n_Alternative = n_GetTarget(n_Mark);
        return n_Alternative >= n_Mark;
    }

    // Where the mark 13 at n_Mark leads to.
    unsigned n_GetTarget(unsigned n_Mark) const
    {
        const char* pcc_Offset = pcc_Block + n_Mark + ELEMENT;
        const int b_Long = n_MarkSize == ELEMENT + 4;
        return n_Mark +
               (b_Long ? n_Load<unsigned>(pcc_Offset) : n_Load<unsigned short>(pcc_Offset));
    }

    // Follows the key, or what is left of it, until it ends, the stored branch ends, or elements
    // differ with no other way on.
    et_Stop ec_Follow(const char* pcc_Rest, st_Walk* pso_Walk) const
    {
        unsigned n_Position = pso_Walk->n_Position;
        while (const unsigned n_Wanted = n_Load<T>(pcc_Rest)) {
            unsigned n_Stored = n_GetElement(n_Position);
            // Most steps go from a character to its alternative.
            while (n_Stored != n_Wanted && n_Stored > ec_LeafEnd) {
                unsigned n_Alternative;
                if (!b_GetAlternative(n_Position, n_Alternative))
                    return ec_StopAt(pso_Walk, pcc_Rest, n_Position, ws_Differs);
                n_Position = n_Alternative;
                n_Stored = n_GetElement(n_Position);
            }
            if (n_Stored == n_Wanted && n_Stored != ec_ListEnd) {
                n_Position += ELEMENT;
                pcc_Rest += ELEMENT;
            } else if (n_Stored == ec_InnerEnd)
                n_Position += n_EndSize;
            else if (n_Stored == ec_Alternative)
                n_Position += n_MarkSize;
            else if (n_Stored == ec_ListEnd || n_Stored == ec_LeafEnd)
                return ec_StopAt(pso_Walk, pcc_Rest, n_Position, ws_BranchEnds);
            else if (unsigned n_Alternative; b_GetAlternative(n_Position, n_Alternative))
                n_Position = n_Alternative;
            else
                return ec_StopAt(pso_Walk, pcc_Rest, n_Position, ws_Differs);
        }
        if (n_GetElement(n_Position) == ec_Alternative)
            n_Position += n_MarkSize;
        return ec_StopAt(pso_Walk, pcc_Rest, n_Position, ws_KeyEnds);
    }

    et_Stop ec_StopAt(st_Walk* pso_Walk, const char* pcc_Rest, unsigned n_Position,
                      et_Stop ec_Stop) const
    {
        pso_Walk->n_Position = n_Position;
        pso_Walk->n_Offset = static_cast<unsigned>(pcc_Rest - pso_Walk->pcc_Key);
        pso_Walk->n_Stored = n_GetElement(n_Position);
        return ec_Stop;
    }

    const char* pcc_Block;
    unsigned n_Limit;
    unsigned n_MarkSize; // of a mark 13 with its offset
    unsigned n_EndSize;  // of a mark 10 or 26 with its handle
    unsigned n_Elements; // an element can be read at positions below
    unsigned n_Marks;    // a mark 13 with its offset can be read at positions below
};
