// Ostra/CompList/CompListStream.h: reading the stream of a list. Internal.
#pragma once

#include <Ostra/CompList/CompList.h>

#include <cstring>

// Kept: whatever growth a list was made with, its block grows in steps of 32 bytes once it grows.
static constexpr unsigned COPY_GROWTH = 32;

template <class T>
static inline unsigned n_Load(const char* pcc_From)
{
    T Value;
    std::memcpy(&Value, pcc_From, sizeof Value);
    return Value;
}

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

    // Where the mark 13 at n_Mark leads to.
    unsigned n_GetTarget(unsigned n_Mark) const
    {
        const char* pcc_Offset = pcc_Block + n_Mark + ELEMENT;
        const int b_Long = n_MarkSize == ELEMENT + 4;
        return n_Mark +
               (b_Long ? n_Load<unsigned>(pcc_Offset) : n_Load<unsigned short>(pcc_Offset));
    }

    const char* pcc_Block;
    unsigned n_Limit;
    unsigned n_MarkSize; // of a mark 13 with its offset
    unsigned n_EndSize;  // of a mark 10 or 26 with its handle
    unsigned n_Elements; // an element can be read at positions below
    unsigned n_Marks;    // a mark 13 with its offset can be read at positions below
};
