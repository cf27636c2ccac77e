// Ostra/CompList/CompListIterator.h: a walk over the entries of a compressed list.
#pragma once

#include <Ostra/ARRAY/VoidArray.h>
#include <Ostra/CompList/CompList.h>
#include <Ostra/Frame/Export.h>

class CT_String;

// A walk over the entries of a list, key by key with its handle. The keys are put together again
// from the characters along the way; CT_CCompListIterator and CT_UCompListIterator hold the string
// for that.
//
//     CT_CCompListIterator co_Walk(&co_List);
//     while (co_Walk.b_GetNext(&co_Key, &n_Handle))
//         Print(&co_Key, n_Handle);
//
// Keys come in the order of the block, not of the alphabet: a key before those that go on from it,
// and of the characters that stand at one place the one that was added last first. The empty string
// isn't among them, though it counts as an entry.
//
// Owns:    the collected string and the branches still to be taken; keeps the pointer of the list.
//          A key of the iterator's own encoding shares the block of the collected string.
// Reports: nothing of its own; when the heap is exhausted 60006 comes from buffer and strings, and
//          the walk ends.
// Caller:  keeps the list, which doesn't change during a walk.
// Threads: one thread at a time; several iterators may walk one list.
class OSTRA_API CT_CompListIterator
{
public:
    virtual ~CT_CompListIterator();
    CT_CompListIterator(const CT_CompListIterator&) = delete;
    CT_CompListIterator& operator=(const CT_CompListIterator&) = delete;

    // Back to the start, of the same list or another one. The room for the branches stays.
    virtual void vv_Set(const CT_CompList* pcco_NewList);

private:
    virtual const CT_String* vpcco_GetCollectedString() = 0;
    // Takes the last character off and gives it.
    virtual unsigned vn_PopCharacter() = 0;
    virtual void vv_AppendCharacter(unsigned n_Character) = 0;

public:
    // The next entry: 1, or 0 behind the last one, which leaves key and handle as they are. A key
    // of the other encoding is converted. pn_Handle may be null.
    int b_GetNext(CT_String* pco_Key, unsigned* pn_Handle);

protected:
    // At the start of the list.
    explicit CT_CompListIterator(const CT_CompList* pcco_NewList);

    // For the constructors of the two classes of the library.
    void v_KnowNarrow();
    void v_KnowWide();

    // For want of memory: the walk is at its end.
    void v_Stop();

private:
    // A character with another way on that was taken first.
    struct st_Branch
    {
        unsigned n_Position;  // of the mark 13 behind it
        unsigned n_Length;    // of the collected string in front of it
        unsigned n_Character; // as popped
    };

    template <class Unit>
    int b_WalkElements(CT_Buffer* pco_Text, CT_String* pco_Key, unsigned* pn_Handle);
    template <class T, class Unit>
    int b_WalkToEnd(CT_Buffer* pco_Text, CT_String* pco_Key, unsigned* pn_Handle);
    template <class T, class Unit>
    void v_RunAhead(const CT_CompList::st_Stream<T>& so_Stream, CT_Buffer* pco_Text);
    void v_TakeAlternative(unsigned n_Target);
    void v_Push(const st_Branch* pcso_Branch, unsigned n_Target);
    int b_PushInPlace(const st_Branch* pcso_Branch);
    int b_Pop(st_Branch* pso_Branch);
    void v_HandOut(CT_String* pco_Key, unsigned* pn_Handle);
    template <class Unit>
    void v_Restore(CT_Buffer* pco_Text, unsigned n_MarkSize);

    // The order of the members is part of the interface.
    const CT_CompList* pcco_List;
    unsigned n_Position; // in the block
    CT_VoidArray co_Branches;
};
