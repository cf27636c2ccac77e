// Ostra/WordList/BiLingualCWordList.cpp: a bilingual list of 8-bit words.
#include <Ostra/WordList/BiLingualCWordList.h>

#include <Ostra/Frame/Report.h>
#include <Ostra/String/CString.h>

#include <cstdlib>

static constexpr char qccz_Source[] = "Ostra/WordList/BiLingualCWordList";

// ---- Construction -------------------------------------------------------------------------

CT_BiLingualCWordList::CT_BiLingualCWordList()
    : co_SourceIndex(CT_CompList::es_Byte, HANDLE_SIZE, 0, 0, INDEX_GROWTH, 0),
      co_TargetIndex(CT_CompList::es_Byte, HANDLE_SIZE, 0, 0, INDEX_GROWTH, 0)
{}

CT_BiLingualCWordList::CT_BiLingualCWordList(const CT_BiLingualCWordList* pcco_List)
    : CT_BiLingualWordListOstra(pcco_List),
      co_SourceIndex(&pcco_List->co_SourceIndex),
      co_TargetIndex(&pcco_List->co_TargetIndex)
{}

CT_BiLingualCWordList::~CT_BiLingualCWordList() {}

void CT_BiLingualCWordList::v_Set()
{
    CT_BiLingualWordListOstra::v_Set();
    sv_SetIndex<char>(&co_SourceIndex);
    sv_SetIndex<char>(&co_TargetIndex);
}

void CT_BiLingualCWordList::v_Set(const CT_BiLingualCWordList* pcco_List)
{
    CT_BiLingualWordListOstra::v_Set(pcco_List);
    co_SourceIndex.v_Set(&pcco_List->co_SourceIndex);
    co_TargetIndex.v_Set(&pcco_List->co_TargetIndex);
}

void* CT_BiLingualCWordList::operator new(std::size_t n_Size) noexcept
{
    return CT_Report::spv_New(n_Size, qccz_Source);
}

void CT_BiLingualCWordList::operator delete(void* pv_Object)
{
    std::free(pv_Object);
}

// ---- Search -------------------------------------------------------------------------------

const char* CT_BiLingualCWordList::qccz_FindSource(const char* qccz_Word) const
{
    return sqc_Find(&co_SourceIndex, pcco_GetTargetBuffer(), qccz_Word);
}

const char* CT_BiLingualCWordList::qccz_FindSource(const CT_CString* pcco_Word) const
{
    return qccz_FindSource(pcco_Word->qccz_Get());
}

const char* CT_BiLingualCWordList::qccz_FindTarget(const char* qccz_Word) const
{
    return sqc_Find(&co_TargetIndex, pcco_GetSourceBuffer(), qccz_Word);
}

const char* CT_BiLingualCWordList::qccz_FindTarget(const CT_CString* pcco_Word) const
{
    return qccz_FindTarget(pcco_Word->qccz_Get());
}

// ---- Change -------------------------------------------------------------------------------

void CT_BiLingualCWordList::v_Insert(const char* qccz_SourceWord, const char* qccz_TargetWord)
{
    v_InsertPair(&co_SourceIndex, &co_TargetIndex, qccz_SourceWord, qccz_TargetWord);
}

void CT_BiLingualCWordList::v_Insert(const CT_CString* pcco_Source, const CT_CString* pcco_Target)
{
    v_Insert(pcco_Source->qccz_Get(), pcco_Target->qccz_Get());
}
