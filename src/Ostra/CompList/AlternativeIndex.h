// Ostra/CompList/AlternativeIndex.h: where a list's alternatives stand and lead. Internal.
#pragma once

// What a list that is being built knows of its alternatives beside its block, so that an insertion
// repairs the offsets that cross it without a scan of the stream.
//
// New branches go to the end of the stream, so alternatives come in the order of their targets;
// those that lead in front of an insertion also stand in front of it, and are passed over by
// halving.
//
// An index lives on the heap and says nothing when that is exhausted: the list then scans its
// stream.
class CT_AlternativeIndex
{
public:
    // Null when the heap is exhausted.
    static CT_AlternativeIndex* spco_New();
    static void sv_Delete(CT_AlternativeIndex* pco_Index);

    unsigned n_GetCount() const { return n_Count; }
    unsigned n_GetPosition(unsigned n_Alternative) const
    {
        return pso_Alternatives[n_Alternative].n_Position;
    }
    unsigned n_GetTarget(unsigned n_Alternative) const
    {
        return pso_Alternatives[n_Alternative].n_Target;
    }

    // Adds an alternative; 0 when the heap is exhausted. Without v_Sort the targets have to rise.
    int b_Add(unsigned n_Position, unsigned n_Target);
    void v_Sort();

    // Lets all alternatives follow a gap of n_Size bytes that was opened at n_Position, and writes
    // their offsets into the block; a position is that of the mark, which has n_Element bytes.
    // The result is 0 when an offset outgrew the type T.
    template <class T>
    int b_Follow(char* pc_Block, unsigned n_Element, unsigned n_Position, unsigned n_Size);

    // The end of the stream that the index is true for.
    unsigned n_End;

private:
    struct st_Alternative
    {
        unsigned n_Position;
        unsigned n_Target;
    };

    unsigned n_FindTarget(unsigned n_Position) const;

    unsigned n_Count;
    unsigned n_Room;
    st_Alternative* pso_Alternatives;
};
