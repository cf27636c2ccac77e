// Ostra/WordList/BiLingualWordListOstra.cpp: pairs of texts, and the indexes that lead across.
#include <Ostra/WordList/BiLingualWordListOstra.h>

#include <Ostra/Frame/Counts.h>
#include <Ostra/String/TextOperations.h>

#include <algorithm>
#include <cstdint>

// ---- Construction -------------------------------------------------------------------------

CT_BiLingualWordListOstra::CT_BiLingualWordListOstra() : n_Count(0) {}

CT_BiLingualWordListOstra::CT_BiLingualWordListOstra(const CT_BiLingualWordListOstra* pcco_List)
    : co_SourceBuffer(&pcco_List->co_SourceBuffer),
      co_TargetBuffer(&pcco_List->co_TargetBuffer),
      n_Count(pcco_List->n_Count)
{}

CT_BiLingualWordListOstra::~CT_BiLingualWordListOstra() {}

void CT_BiLingualWordListOstra::v_Set()
{
    // Kept: the count goes on from the pairs that were inserted before.
    co_SourceBuffer.v_Set(0, ALL, 1);
    co_TargetBuffer.v_Set(0, ALL, 1);
}

void CT_BiLingualWordListOstra::v_Set(const CT_BiLingualWordListOstra* pcco_List)
{
    // A buffer that is set to itself has no block.
    if (pcco_List == this)
        return;
    // Kept: the other list's count isn't taken.
    co_SourceBuffer.v_Set(&pcco_List->co_SourceBuffer);
    co_TargetBuffer.v_Set(&pcco_List->co_TargetBuffer);
}

// ---- Indexes ------------------------------------------------------------------------------

// An index without words. Where there is no room for one, none: one that led to texts which are
// gone would give others.
template <class Unit>
void CT_BiLingualWordListOstra::sv_SetIndex(CT_CompList* pco_Index)
{
    pco_Index->v_Set(CT_CompList::et_ElementSize(sizeof(Unit)), HANDLE_SIZE, 0, 0, INDEX_GROWTH, 0);
    if (pco_Index->b_IsEmpty())
        return;
    const CT_Buffer co_NoBlock;
    pco_Index->v_Set(&co_NoBlock);
}

// Room for more texts in a block of the buffer's own; false when the heap is exhausted.
static int b_MakeRoom(CT_Buffer* pco_Texts, std::uint64_t n_More)
{
    const std::uint64_t n_Size = std::min<std::uint64_t>(pco_Texts->n_GetUsedSize() + n_More, ALL);
    pco_Texts->v_SetMinSize(static_cast<unsigned>(n_Size), 1);
    pco_Texts->v_CopyWeWrite();
    return pco_Texts->n_GetMaximumSize() >= n_Size && pco_Texts->n_GetUseCount() < 2;
}

// Whether the text is one of the list's own.
int CT_BiLingualWordListOstra::b_Holds(const void* pcv_Text) const
{
    const auto b_Inside = [pcv_Text](const CT_Buffer& co_Texts) {
        const auto n_Distance = reinterpret_cast<std::uintptr_t>(pcv_Text) -
                                reinterpret_cast<std::uintptr_t>(co_Texts.qcv_Get());
        return n_Distance < co_Texts.n_GetMaximumSize();
    };
    return b_Inside(co_SourceBuffer) || b_Inside(co_TargetBuffer);
}

// The pair is stored whole, or not at all when there is no room for its texts.
template <class Unit>
void CT_BiLingualWordListOstra::v_InsertPair(CT_CompList* pco_SourceIndex,
                                             CT_CompList* pco_TargetIndex, const Unit* qc_Source,
                                             const Unit* qc_Target)
{
    const unsigned n_SourceSize =
        (CT_TextOperations<Unit>::sn_Length(qc_Source) + 1) * unsigned(sizeof(Unit));
    const unsigned n_TargetSize =
        (CT_TextOperations<Unit>::sn_Length(qc_Target) + 1) * unsigned(sizeof(Unit));
    const unsigned n_SourceAt = co_SourceBuffer.n_GetUsedSize();
    const unsigned n_TargetAt = co_TargetBuffer.n_GetUsedSize();
    CT_Buffer co_HeldSources, co_HeldTargets;
    if (b_Holds(qc_Source) || b_Holds(qc_Target)) {
        co_HeldSources.v_Set(&co_SourceBuffer);
        co_HeldTargets.v_Set(&co_TargetBuffer);
    }
    if (!b_MakeRoom(&co_SourceBuffer, n_SourceSize) || !b_MakeRoom(&co_TargetBuffer, n_TargetSize))
        return;
    // Kept: whether a word was added isn't asked. One that is there keeps its first text, an empty
    // one isn't indexed; the pair is stored and counted all the same.
    pco_SourceIndex->b_Add(qc_Source, n_TargetAt);
    pco_TargetIndex->b_Add(qc_Target, n_SourceAt);
    co_SourceBuffer.v_Append(qc_Source, n_SourceSize);
    co_TargetBuffer.v_Append(qc_Target, n_TargetSize);
    ++n_Count;
}

// The text that the index leads to; null for none.
// Kept: the index finds the empty word with handle 0, which is the first text.
template <class Unit>
const Unit* CT_BiLingualWordListOstra::sqc_Find(const CT_CompList* pcco_Index,
                                                const CT_Buffer* pcco_Texts, const Unit* qc_Word)
{
    if (!pcco_Index->pcco_GetBuffer())
        return nullptr;
    const unsigned n_At = pcco_Index->n_Search(qc_Word, nullptr);
    if (n_At >= pcco_Texts->n_GetUsedSize())
        return nullptr;
    return reinterpret_cast<const Unit*>(static_cast<const char*>(pcco_Texts->qcv_Get()) + n_At);
}

// ---- The two widths -----------------------------------------------------------------------

template void CT_BiLingualWordListOstra::sv_SetIndex<char>(CT_CompList*);
template void CT_BiLingualWordListOstra::sv_SetIndex<unsigned short>(CT_CompList*);
template void CT_BiLingualWordListOstra::v_InsertPair(CT_CompList*, CT_CompList*, const char*,
                                                      const char*);
template void CT_BiLingualWordListOstra::v_InsertPair(CT_CompList*, CT_CompList*,
                                                      const unsigned short*, const unsigned short*);
template const char* CT_BiLingualWordListOstra::sqc_Find(const CT_CompList*, const CT_Buffer*,
                                                         const char*);
template const unsigned short*
CT_BiLingualWordListOstra::sqc_Find(const CT_CompList*, const CT_Buffer*, const unsigned short*);
