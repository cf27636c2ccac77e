// Ostra/CompList/CCompListIterator.cpp: the string of a walk over a list of 8-bit keys.
#include <Ostra/CompList/CCompListIterator.h>

#include <Ostra/CompList/CollectedString.h>

using Collected = CT_CollectedString<CT_CString, char>;

CT_CCompListIterator::CT_CCompListIterator(const CT_CompList* pcco_NewList)
    : CT_CompListIterator(pcco_NewList)
{
    v_KnowNarrow();
}

CT_CCompListIterator::~CT_CCompListIterator() {}

void CT_CCompListIterator::vv_Set(const CT_CompList* pcco_NewList)
{
    CT_CompListIterator::vv_Set(pcco_NewList);
    if (!Collected::sb_Empty(&co_Collected))
        v_Stop();
}

const CT_String* CT_CCompListIterator::vpcco_GetCollectedString()
{
    return &co_Collected;
}

unsigned CT_CCompListIterator::vn_PopCharacter()
{
    char c_Last;
    if (!Collected::sb_Pop(&co_Collected, &c_Last))
        v_Stop();
    // Kept: a byte from 0x80 up comes with its sign, whether the processor's char has one or not.
    return static_cast<unsigned>(static_cast<signed char>(c_Last));
}

void CT_CCompListIterator::vv_AppendCharacter(unsigned n_Character)
{
    if (!Collected::sb_Append(&co_Collected, n_Character))
        v_Stop();
}
