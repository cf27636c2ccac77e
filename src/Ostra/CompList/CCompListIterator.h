// Ostra/CompList/CCompListIterator.h: a walk over a list of 8-bit keys.
#pragma once

#include <Ostra/CompList/CompListIterator.h>
#include <Ostra/Frame/Export.h>
#include <Ostra/String/CString.h>

// A walk over a list of 8-bit keys. It collects them in a CT_CString of code page 0: the bytes come
// as they are, whatever code page the list has.
class OSTRA_API CT_CCompListIterator : public CT_CompListIterator
{
public:
    explicit CT_CCompListIterator(const CT_CompList* pcco_NewList);
    ~CT_CCompListIterator() override;

    // Lets go of the collected key, too.
    void vv_Set(const CT_CompList* pcco_NewList) override;

private:
    const CT_String* vpcco_GetCollectedString() override;
    unsigned vn_PopCharacter() override;
    void vv_AppendCharacter(unsigned n_Character) override;

    CT_CString co_Collected;
};
