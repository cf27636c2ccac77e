// Ostra/CompList/UCompListIterator.h: a walk over a list of 16-bit keys.
#pragma once

#include <Ostra/CompList/CompListIterator.h>
#include <Ostra/Frame/Export.h>
#include <Ostra/String/UString.h>

// A walk over a list of 16-bit keys. It collects them in a CT_UString.
class OSTRA_API CT_UCompListIterator : public CT_CompListIterator
{
public:
    explicit CT_UCompListIterator(const CT_CompList* pcco_NewList);
    ~CT_UCompListIterator() override;

    // Lets go of the collected key, too.
    void vv_Set(const CT_CompList* pcco_NewList) override;

private:
    const CT_String* vpcco_GetCollectedString() override;
    unsigned vn_PopCharacter() override;
    void vv_AppendCharacter(unsigned n_Character) override;

    CT_UString co_Collected;
};
