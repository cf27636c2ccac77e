// Ostra/LIST/VoidList.h: a doubly linked list of raw items of one size.
#pragma once

#include <Ostra/Frame/Export.h>

#include <cstddef>

// A doubly linked list of raw items of one size. A place in it is a position, which stays good
// until its item is removed, whatever else is inserted and removed.
//
// Units:   indexes count from 1; an item has the size given to the constructor.
// Owns:    a heap block for each item; items are copied in and out by their bytes.
// Reports: nothing. An insertion that finds no room leaves the list as it was.
// Caller:  hands back positions of this list only, and none whose item is gone: it is a freed
//          pointer.
// Threads: one thread at a time.
class OSTRA_API CT_VoidList
{
public:
    // A place in the list.
    struct st_Position;

    // ---- Construction ---------------------------------------------------------------------

    // Empty, for items of n_Item bytes.
    explicit CT_VoidList(unsigned n_Item);
    // Takes the item size and copies all items.
    explicit CT_VoidList(const CT_VoidList* pcco_List);
    CT_VoidList(const CT_VoidList&) = delete;
    CT_VoidList& operator=(const CT_VoidList&) = delete;
    ~CT_VoidList();

    // Empties the list; the second form then copies the other's items. The item size stays: longer
    // items are cut, shorter ones filled with zeros. A list that is set to itself stays as it is.
    void v_Set();
    void v_Set(const CT_VoidList* pcco_List);

    static void* operator new(std::size_t n_Size) noexcept;
    static void* operator new(std::size_t, void* pv_Place) noexcept { return pv_Place; }
    static void operator delete(void* pv_Object);

    // ---- Access ---------------------------------------------------------------------------

    unsigned n_GetCount() const { return n_Count; }
    unsigned n_GetItemSize() const { return n_ItemSize; }

    // Null in an empty list.
    st_Position* pso_GetFirst() const { return pso_First; }
    st_Position* pso_GetLast() const { return pso_Last; }
    // The position of an index. The list is a ring here: 0 is the last item, and the index behind
    // the last is the first.
    st_Position* pso_GetPosition(unsigned n_Index) const;
    // i_Steps on from a position, or back with a negative number. Behind the last item comes the
    // first, before the first the last.
    st_Position* pso_Skip(st_Position* pso_Position, int i_Steps) const;

    // Copies an item out or in.
    void v_GetAt(void* pv_Item, st_Position* pso_Position) const;
    void v_SetAt(const void* pcv_Item, st_Position* pso_Position);

    // ---- Search and comparison ------------------------------------------------------------

    // The first item with the same bytes, and its index unless pn_Index is null; null and 0 for
    // none.
    st_Position* pso_Find(const void* pcv_Item, unsigned* pn_Index) const;
    // Whether both have as many items, with the same bytes over this list's item size.
    int b_IsEqual(const CT_VoidList* pcco_List) const;

    // ---- Change ---------------------------------------------------------------------------

    void v_InsertFirst(const void* pcv_Item);
    void v_InsertLast(const void* pcv_Item);
    // Behind a position; null is before the first item.
    void v_InsertAfter(const void* pcv_Item, st_Position* pso_Position);
    // Before a position; null is behind the last item.
    void v_InsertBefore(const void* pcv_Item, st_Position* pso_Position);

    // Copies the item out, unless pv_Item is null, and removes it. A null position is the first.
    void v_RemoveFirst(void* pv_Item);
    void v_RemoveLast(void* pv_Item);
    void v_RemoveAt(void* pv_Item, st_Position* pso_Position);

private:
    void v_Init(const CT_VoidList* pcco_List);
    void v_Exit();
    st_Position* pso_Link(st_Position* pso_Previous, st_Position* pso_Next);
    void v_Link(const void* pcv_Item, st_Position* pso_Previous, st_Position* pso_Next);

    // The order of the members is part of the interface.
    unsigned n_Count;
    unsigned n_ItemSize;
    st_Position* pso_Last;  // null in an empty list
    st_Position* pso_First; // null in an empty list
};
