// Ostra/ARRAY/Array.h: the typed face of CT_VoidArray.
#pragma once

#include <Ostra/ARRAY/VoidArray.h>

// A growable sequence of items of the type T, which are copied by their bytes: no constructor or
// destructor of T is called. Units, duties and reports are those of CT_VoidArray.
template <class T>
class CT_Array : public CT_VoidArray
{
public:
    CT_Array() : CT_VoidArray(sizeof(T)) {}
    CT_Array(unsigned n_Growth, unsigned n_Size) : CT_VoidArray(sizeof(T), n_Growth, n_Size) {}
    explicit CT_Array(const CT_Array* pcco_Array) : CT_VoidArray(pcco_Array) {}
    explicit CT_Array(const CT_Buffer* pcco_Buffer) : CT_VoidArray(pcco_Buffer, sizeof(T)) {}

    void v_Set(unsigned n_Growth, unsigned n_Size, int b_Keep);
    void v_Set(const CT_Array* pcco_Array) { CT_VoidArray::v_Set(pcco_Array); }
    void v_Set(const CT_Buffer* pcco_Buffer) { CT_VoidArray::v_Set(pcco_Buffer); }

    void v_GetAt(T* p_Item, int i_Index) const { CT_VoidArray::v_GetAt(p_Item, i_Index); }
    void v_SetAt(const T* p_Item, int i_Index) { CT_VoidArray::v_SetAt(p_Item, i_Index); }

    unsigned n_Find(const T* p_Item) const { return CT_VoidArray::n_Find(p_Item); }
    int b_IsEqual(const CT_Array* pcco_Array) const { return CT_VoidArray::b_IsEqual(pcco_Array); }

    void v_Insert(const T* p_Item)
    {
        if (!CT_VoidArray::b_Put<sizeof(T)>(p_Item))
            CT_VoidArray::v_Insert(p_Item);
    }
    void v_Insert(const T* p_Item, unsigned n_Count) { CT_VoidArray::v_Insert(p_Item, n_Count); }
    void v_InsertAt(const T* p_Item, unsigned n_Index)
    {
        CT_VoidArray::v_InsertAt(p_Item, n_Index);
    }

    void v_Insert(const CT_Array* pcco_Array, unsigned n_First, unsigned n_Count, unsigned n_At);
    void v_Append(const CT_Array* pcco_Array, unsigned n_First, unsigned n_Count);
    void v_Replace(const CT_Array* pcco_Array, unsigned n_First, unsigned n_Count, unsigned n_At);

    void v_AtInsertCopy(unsigned n_At, unsigned n_First, unsigned n_Last);
    void v_AtInsertCopy(unsigned n_At, unsigned n_First, unsigned n_Last,
                        const CT_Array* pcco_Array);
    void v_AtInsertMove(unsigned n_At, unsigned n_First, unsigned n_Last);
    void v_AtInsertMove(unsigned n_At, unsigned n_First, unsigned n_Last, CT_Array* pco_Array);
};

template <class T>
void CT_Array<T>::v_Set(unsigned n_Growth, unsigned n_Size, int b_Keep)
{
    CT_VoidArray::v_Set(n_Growth, n_Size, b_Keep);
}

template <class T>
void CT_Array<T>::v_Insert(const CT_Array* pcco_Array, unsigned n_First, unsigned n_Count,
                           unsigned n_At)
{
    CT_VoidArray::v_Insert(pcco_Array, n_First, n_Count, n_At);
}

template <class T>
void CT_Array<T>::v_Append(const CT_Array* pcco_Array, unsigned n_First, unsigned n_Count)
{
    CT_VoidArray::v_Append(pcco_Array, n_First, n_Count);
}

template <class T>
void CT_Array<T>::v_Replace(const CT_Array* pcco_Array, unsigned n_First, unsigned n_Count,
                            unsigned n_At)
{
    CT_VoidArray::v_Replace(pcco_Array, n_First, n_Count, n_At);
}

template <class T>
void CT_Array<T>::v_AtInsertCopy(unsigned n_At, unsigned n_First, unsigned n_Last)
{
    CT_VoidArray::v_AtInsertCopy(n_At, n_First, n_Last);
}

template <class T>
void CT_Array<T>::v_AtInsertCopy(unsigned n_At, unsigned n_First, unsigned n_Last,
                                 const CT_Array* pcco_Array)
{
    CT_VoidArray::v_AtInsertCopy(n_At, n_First, n_Last, pcco_Array);
}

template <class T>
void CT_Array<T>::v_AtInsertMove(unsigned n_At, unsigned n_First, unsigned n_Last)
{
    CT_VoidArray::v_AtInsertMove(n_At, n_First, n_Last);
}

template <class T>
void CT_Array<T>::v_AtInsertMove(unsigned n_At, unsigned n_First, unsigned n_Last,
                                 CT_Array* pco_Array)
{
    CT_VoidArray::v_AtInsertMove(n_At, n_First, n_Last, pco_Array);
}
