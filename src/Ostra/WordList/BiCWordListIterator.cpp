// Ostra/WordList/BiCWordListIterator.cpp: a walk over a bilingual list of 8-bit words.
#include <Ostra/WordList/BiCWordListIterator.h>

#include <Ostra/Frame/Counts.h>
#include <Ostra/Frame/Report.h>
#include <Ostra/String/String.h>

#include <cstdlib>

static constexpr char qccz_Source[] = "Ostra/WordList/BiCWordListIterator";

CT_BiCWordListIterator::CT_BiCWordListIterator(const CT_BiLingualCWordList* pcco_NewList)
    : CT_BiWordListIteratorOstra(pcco_NewList)
{}

CT_BiCWordListIterator::CT_BiCWordListIterator(const CT_BiCWordListIterator* pcco_Iterator)
    : CT_BiWordListIteratorOstra(pcco_Iterator)
{}

void* CT_BiCWordListIterator::operator new(std::size_t n_Size) noexcept
{
    return CT_Report::spv_New(n_Size, qccz_Source);
}

void CT_BiCWordListIterator::operator delete(void* pv_Object)
{
    std::free(pv_Object);
}

int CT_BiCWordListIterator::b_Next()
{
    return b_Step();
}

void CT_BiCWordListIterator::v_Get(char** pqcz_Source, char** pqcz_Target)
{
    *pqcz_Source = static_cast<char*>(const_cast<void*>(pcv_GetSource()));
    *pqcz_Target = static_cast<char*>(const_cast<void*>(pcv_GetTarget()));
}

void CT_BiCWordListIterator::v_Get(CT_String* pco_Source, CT_String* pco_Target)
{
    pco_Source->v_Set(static_cast<const char*>(pcv_GetSource()), ALL, OWN_CODE_PAGE);
    pco_Target->v_Set(static_cast<const char*>(pcv_GetTarget()), ALL, OWN_CODE_PAGE);
}
