// Ostra/WordList/BiWordListIteratorOstra.h: what the walks over bilingual word lists share.
#pragma once

#include <Ostra/Frame/Export.h>
#include <Ostra/WordList/BiLingualWordListOstra.h>

// A walk over the pairs of a bilingual word list, in the order of insertion. It begins at home,
// before the first pair.
//
// Owns:    nothing; keeps the pointers of the list and its buffers.
// Reports: nothing.
// Caller:  keeps the list.
// Threads: one thread at a time; several iterators may walk one list.
class OSTRA_API CT_BiWordListIteratorOstra
{
public:
    // ---- Construction ---------------------------------------------------------------------

    // At home on the list, or where the other stands.
    explicit CT_BiWordListIteratorOstra(const CT_BiLingualWordListOstra* pcco_List);
    explicit CT_BiWordListIteratorOstra(const CT_BiWordListIteratorOstra* pcco_Iterator);

    // Like the constructors.
    void v_Set(const CT_BiLingualWordListOstra* pcco_NewList);
    void v_Set(const CT_BiWordListIteratorOstra* pcco_Iterator);

    // ---- Access ---------------------------------------------------------------------------

    // In front of the first pair, where there is no text.
    int b_AtHome() const { return n_Number == 0; }
    // On the last pair; on an empty list at home, too.
    int b_AtEnd() const { return n_Number == n_GetCount(); }
    // Whether both stand on the same number of the same list, wherever in its texts.
    int b_IsEqual(const CT_BiWordListIteratorOstra* pcco_Iterator) const;
    // The pairs of the list.
    unsigned n_GetCount() const { return pcco_List->n_GetCount(); }

protected:
    int b_Step();
    // The current text. Where the buffer has none, an empty one.
    const void* pcv_GetSource() const;
    const void* pcv_GetTarget() const;

    // The order of the members is part of the interface.
    const CT_BiLingualWordListOstra* pcco_List;
    const CT_Buffer* pcco_SourceBuffer;
    const CT_Buffer* pcco_TargetBuffer;
    unsigned n_SourcePosition; // in bytes, as is the other
    unsigned n_TargetPosition;
    unsigned n_Number; // of the current pair, from 1; 0 at home
};
