// Ostra/ARRAY/Pending.h: work that waits until other work is done. Internal.
#pragma once

#include <cstdlib>
#include <cstring>
#include <type_traits>

// What recursion would keep on the stack: there are places for some items, more are on the heap.
// The last item that was pushed is popped first. Nothing is reported.
template <class T>
class CT_Pending
{
public:
    CT_Pending() = default;
    CT_Pending(const CT_Pending&) = delete;
    CT_Pending& operator=(const CT_Pending&) = delete;
    ~CT_Pending()
    {
        if (p_Items != a_First)
            std::free(p_Items);
    }

    // False when the heap is exhausted: the item isn't in.
    bool b_Push(const T& o_Item)
    {
        if (n_Count == n_Room && !b_Grow())
            return false;
        p_Items[n_Count++] = o_Item;
        return true;
    }
    // False with nothing left.
    bool b_Pop(T* p_Item)
    {
        if (!n_Count)
            return false;
        *p_Item = p_Items[--n_Count];
        return true;
    }

private:
    static_assert(std::is_trivially_copyable_v<T>);
    static constexpr unsigned FIRST = 32;

    bool b_Grow()
    {
        T* p_Old = p_Items == a_First ? nullptr : p_Items;
        void* pv_Larger = std::realloc(p_Old, std::size_t{n_Room} * 2 * sizeof(T));
        if (!pv_Larger)
            return false;
        if (!p_Old)
            std::memcpy(pv_Larger, a_First, sizeof a_First);
        p_Items = static_cast<T*>(pv_Larger);
        n_Room *= 2;
        return true;
    }

    T a_First[FIRST];
    T* p_Items = a_First;
    unsigned n_Count = 0;
    unsigned n_Room = FIRST;
};
