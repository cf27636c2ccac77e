// Ostra/CompList/UCompListIterator.cpp: the string of a walk over a list of 16-bit keys.
#include <Ostra/CompList/UCompListIterator.h>

#include <Ostra/CompList/CollectedString.h>

using Collected = CT_CollectedString<CT_UString, unsigned short>;

CT_UCompListIterator::CT_UCompListIterator(const CT_CompList* pcco_NewList)
    : CT_CompListIterator(pcco_NewList)
{
    v_KnowWide();
}

CT_UCompListIterator::~CT_UCompListIterator() {}

void CT_UCompListIterator::vv_Set(const CT_CompList* pcco_NewList)
{
    CT_CompListIterator::vv_Set(pcco_NewList);
    if (!Collected::sb_Empty(&co_Collected))
        v_Stop();
}

const CT_String* CT_UCompListIterator::vpcco_GetCollectedString()
{
    return &co_Collected;
}

unsigned CT_UCompListIterator::vn_PopCharacter()
{
    unsigned short u_Last;
    if (!Collected::sb_Pop(&co_Collected, &u_Last))
        v_Stop();
    return static_cast<unsigned>(u_Last);
}

void CT_UCompListIterator::vv_AppendCharacter(unsigned n_Character)
{
    if (!Collected::sb_Append(&co_Collected, n_Character))
        v_Stop();
}
