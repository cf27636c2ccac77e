// Ostra/WordList/BiWordListIteratorOstra.cpp: the walk over the pairs of a bilingual word list.
#include <Ostra/WordList/BiWordListIteratorOstra.h>

static constexpr unsigned short u_NoText = 0;

// ---- Construction -------------------------------------------------------------------------

CT_BiWordListIteratorOstra::CT_BiWordListIteratorOstra(
    const CT_BiLingualWordListOstra* pcco_NewList)
{
    v_Set(pcco_NewList);
}

CT_BiWordListIteratorOstra::CT_BiWordListIteratorOstra(
    const CT_BiWordListIteratorOstra* pcco_Iterator)
{
    v_Set(pcco_Iterator);
}

void CT_BiWordListIteratorOstra::v_Set(const CT_BiLingualWordListOstra* pcco_NewList)
{
    pcco_List = pcco_NewList;
    pcco_SourceBuffer = pcco_List->pcco_GetSourceBuffer();
    pcco_TargetBuffer = pcco_List->pcco_GetTargetBuffer();
    n_SourcePosition = n_TargetPosition = 0;
    n_Number = 0;
}

void CT_BiWordListIteratorOstra::v_Set(const CT_BiWordListIteratorOstra* pcco_Iterator)
{
    *this = *pcco_Iterator;
}

// ---- Access -------------------------------------------------------------------------------

int CT_BiWordListIteratorOstra::b_IsEqual(const CT_BiWordListIteratorOstra* pcco_Iterator) const
{
    return pcco_List == pcco_Iterator->pcco_List &&
           pcco_SourceBuffer == pcco_Iterator->pcco_SourceBuffer &&
           pcco_TargetBuffer == pcco_Iterator->pcco_TargetBuffer &&
           n_Number == pcco_Iterator->n_Number;
}

// Behind the next zero byte. Behind the last one it is the beginning again.
static unsigned n_Behind(const CT_Buffer* pcco_Texts, unsigned n_Position)
{
    return pcco_Texts->n_Find(static_cast<unsigned char>(0), n_Position) + 1;
}

int CT_BiWordListIteratorOstra::b_Step()
{
    if (n_Number >= n_GetCount())
        return 0;
    // Kept: in texts of 16-bit units a zero byte isn't yet a terminator. There a step leads behind
    // the first character that has one, not to the next text.
    if (n_Number) {
        n_SourcePosition = n_Behind(pcco_SourceBuffer, n_SourcePosition);
        n_TargetPosition = n_Behind(pcco_TargetBuffer, n_TargetPosition);
    }
    ++n_Number;
    return 1;
}

static const void* pcv_GetText(const CT_Buffer* pcco_Texts, unsigned n_Position)
{
    if (n_Position >= pcco_Texts->n_GetUsedSize())
        return &u_NoText;
    return static_cast<const char*>(pcco_Texts->qcv_Get()) + n_Position;
}

const void* CT_BiWordListIteratorOstra::pcv_GetSource() const
{
    return pcv_GetText(pcco_SourceBuffer, n_SourcePosition);
}

const void* CT_BiWordListIteratorOstra::pcv_GetTarget() const
{
    return pcv_GetText(pcco_TargetBuffer, n_TargetPosition);
}
