// Ostra/WordList/BiUWordListIterator.cpp: a walk over a bilingual list of 16-bit words.
#include <Ostra/WordList/BiUWordListIterator.h>

#include <Ostra/Frame/Counts.h>
#include <Ostra/Frame/Report.h>
#include <Ostra/String/UString.h>

#include <cstdlib>
#include <cstring>

static constexpr char qccz_Source[] = "Ostra/WordList/BiUWordListIterator";

CT_BiUWordListIterator::CT_BiUWordListIterator(const CT_BiLingualUWordList* pcco_NewList)
    : CT_BiWordListIteratorOstra(pcco_NewList)
{}

CT_BiUWordListIterator::CT_BiUWordListIterator(const CT_BiUWordListIterator* pcco_Iterator)
    : CT_BiWordListIteratorOstra(pcco_Iterator)
{}

void* CT_BiUWordListIterator::operator new(std::size_t n_Size) noexcept
{
    return CT_Report::spv_New(n_Size, qccz_Source);
}

void CT_BiUWordListIterator::operator delete(void* pv_Object)
{
    std::free(pv_Object);
}

int CT_BiUWordListIterator::b_Next()
{
    return b_Step();
}

void CT_BiUWordListIterator::v_Get(unsigned short** pqcz_Source, unsigned short** pqcz_Target)
{
    *pqcz_Source = static_cast<unsigned short*>(const_cast<void*>(pcv_GetSource()));
    *pqcz_Target = static_cast<unsigned short*>(const_cast<void*>(pcv_GetTarget()));
}

// Kept: a step may have led to an odd position. From there the text may run into the end of the
// buffer, which ends it.
static void sv_SetText(CT_String* pco_To, const CT_Buffer* pcco_Texts, const void* pcv_Text,
                       unsigned n_Position)
{
    if (n_Position % sizeof(unsigned short) == 0) {
        pco_To->v_Set(static_cast<const unsigned short*>(pcv_Text), ALL);
        return;
    }
    CT_UString co_Text;
    unsigned short u_Unit;
    while (n_Position + sizeof(u_Unit) <= pcco_Texts->n_GetUsedSize()) {
        std::memcpy(&u_Unit, static_cast<const char*>(pcco_Texts->qcv_Get()) + n_Position,
                    sizeof(u_Unit));
        if (!u_Unit)
            break;
        co_Text.v_Append(u_Unit);
        n_Position += sizeof(u_Unit);
    }
    pco_To->v_Set(co_Text.qcuz_Get(), ALL);
}

void CT_BiUWordListIterator::v_Get(CT_String* pco_Source, CT_String* pco_Target)
{
    sv_SetText(pco_Source, pcco_SourceBuffer, pcv_GetSource(), n_SourcePosition);
    sv_SetText(pco_Target, pcco_TargetBuffer, pcv_GetTarget(), n_TargetPosition);
}
