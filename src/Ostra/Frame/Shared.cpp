// Ostra/Frame/Shared.cpp
#include <Ostra/Frame/Shared.h>

CT_Shared::CT_Shared() : n_References(0) {}

CT_Shared::~CT_Shared() {}

void CT_Shared::v_TakeReference()
{
    ++n_References;
}

void CT_Shared::v_GiveReference()
{
    if (--n_References == 0)
        delete this;
}

unsigned CT_Shared::n_GetReferences() const
{
    return n_References;
}
