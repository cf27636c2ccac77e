// Ostra/WordList/BiLingualWordListOstra.h: what the bilingual word lists of both widths share.
#pragma once

#include <Ostra/Buffer/Buffer.h>
#include <Ostra/CompList/CompList.h>
#include <Ostra/Frame/Export.h>

// The texts of a bilingual word list: all source texts and all target texts, each with its
// terminator, one behind the other in the order of insertion, and the number of pairs.
//
// Units:   sizes and positions are bytes, in the lists of both widths.
// Owns:    its hold on the two blocks; a list made from another shares them.
// Reports: nothing of its own; 60006 comes from the buffers when the heap is exhausted.
// Caller:  takes the texts apart as those of the list's width.
// Threads: one thread at a time; several may read a list that doesn't change.
class OSTRA_API CT_BiLingualWordListOstra
{
public:
    // ---- Construction ---------------------------------------------------------------------

    CT_BiLingualWordListOstra();
    // Shares the texts and takes the count.
    explicit CT_BiLingualWordListOstra(const CT_BiLingualWordListOstra* pcco_List);
    virtual ~CT_BiLingualWordListOstra();
    CT_BiLingualWordListOstra(const CT_BiLingualWordListOstra&) = delete;
    CT_BiLingualWordListOstra& operator=(const CT_BiLingualWordListOstra&) = delete;

    // No texts, or those of the other list. Kept: the count stays what it was.
    void v_Set();
    void v_Set(const CT_BiLingualWordListOstra* pcco_List);

    // ---- Access ---------------------------------------------------------------------------

    const CT_Buffer* pcco_GetSourceBuffer() const { return &co_SourceBuffer; }
    const CT_Buffer* pcco_GetTargetBuffer() const { return &co_TargetBuffer; }
    // The pairs inserted since the list was made.
    unsigned n_GetCount() const { return n_Count; }

protected:
    // Of an index: a handle is a byte position among the texts of the other side.
    static constexpr unsigned HANDLE_SIZE = 4;
    static constexpr unsigned INDEX_GROWTH = 128;

    // The work of the lists of both widths on their indexes.
    template <class Unit>
    static void sv_SetIndex(CT_CompList* pco_Index);
    template <class Unit>
    void v_InsertPair(CT_CompList* pco_SourceIndex, CT_CompList* pco_TargetIndex,
                      const Unit* qc_Source, const Unit* qc_Target);
    template <class Unit>
    static const Unit* sqc_Find(const CT_CompList* pcco_Index, const CT_Buffer* pcco_Texts,
                                const Unit* qc_Word);

private:
    int b_Holds(const void* pcv_Text) const;

    // The order of the members is part of the interface.
    CT_Buffer co_SourceBuffer;
    CT_Buffer co_TargetBuffer;
    unsigned n_Count;
};
