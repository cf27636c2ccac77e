// Ostra/WordList/BiLingualUWordList.cpp: a bilingual list of 16-bit words.
#include <Ostra/WordList/BiLingualUWordList.h>

#include <Ostra/Frame/Report.h>
#include <Ostra/String/UString.h>

#include <cstdlib>

static constexpr char qccz_Source[] = "Ostra/WordList/BiLingualUWordList";

// ---- Construction -------------------------------------------------------------------------

CT_BiLingualUWordList::CT_BiLingualUWordList()
    : co_SourceIndex(CT_CompList::es_Short, HANDLE_SIZE, 0, 0, INDEX_GROWTH, 0),
      co_TargetIndex(CT_CompList::es_Short, HANDLE_SIZE, 0, 0, INDEX_GROWTH, 0)
{}

CT_BiLingualUWordList::CT_BiLingualUWordList(const CT_BiLingualUWordList* pcco_List)
    : CT_BiLingualWordListOstra(pcco_List),
      co_SourceIndex(&pcco_List->co_SourceIndex),
      co_TargetIndex(&pcco_List->co_TargetIndex)
{}

CT_BiLingualUWordList::~CT_BiLingualUWordList() {}

void CT_BiLingualUWordList::v_Set()
{
    CT_BiLingualWordListOstra::v_Set();
    sv_SetIndex<unsigned short>(&co_SourceIndex);
    sv_SetIndex<unsigned short>(&co_TargetIndex);
}

void CT_BiLingualUWordList::v_Set(const CT_BiLingualUWordList* pcco_List)
{
    CT_BiLingualWordListOstra::v_Set(pcco_List);
    co_SourceIndex.v_Set(&pcco_List->co_SourceIndex);
    co_TargetIndex.v_Set(&pcco_List->co_TargetIndex);
}

void* CT_BiLingualUWordList::operator new(std::size_t n_Size) noexcept
{
    return CT_Report::spv_New(n_Size, qccz_Source);
}

void CT_BiLingualUWordList::operator delete(void* pv_Object)
{
    std::free(pv_Object);
}

// ---- Search -------------------------------------------------------------------------------

const unsigned short* CT_BiLingualUWordList::qcuz_FindSource(const unsigned short* qcuz_Word) const
{
    return sqc_Find(&co_SourceIndex, pcco_GetTargetBuffer(), qcuz_Word);
}

const unsigned short* CT_BiLingualUWordList::qcuz_FindSource(const CT_UString* pcco_Word) const
{
    return qcuz_FindSource(pcco_Word->qcuz_Get());
}

const unsigned short* CT_BiLingualUWordList::qcuz_FindTarget(const unsigned short* qcuz_Word) const
{
    return sqc_Find(&co_TargetIndex, pcco_GetSourceBuffer(), qcuz_Word);
}

const unsigned short* CT_BiLingualUWordList::qcuz_FindTarget(const CT_UString* pcco_Word) const
{
    return qcuz_FindTarget(pcco_Word->qcuz_Get());
}

// ---- Change -------------------------------------------------------------------------------

void CT_BiLingualUWordList::v_Insert(const unsigned short* qcuz_SourceWord,
                                     const unsigned short* qcuz_TargetWord)
{
    v_InsertPair(&co_SourceIndex, &co_TargetIndex, qcuz_SourceWord, qcuz_TargetWord);
}

void CT_BiLingualUWordList::v_Insert(const CT_UString* pcco_Source, const CT_UString* pcco_Target)
{
    v_Insert(pcco_Source->qcuz_Get(), pcco_Target->qcuz_Get());
}
