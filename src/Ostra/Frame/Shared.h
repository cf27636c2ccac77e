// Ostra/Frame/Shared.h: base of objects that live as long as someone refers to them.
#pragma once

#include <Ostra/Frame/Export.h>

// Counts references, and deletes itself when the last one is given back.
//
// Owns:    itself: an object made with new, referred to through v_TakeReference and v_GiveReference
//          only.
// Reports: nothing.
// Threads: one; the count is changed by plain reads and writes.
class OSTRA_API CT_Shared
{
public:
    // Starts with no reference: the first owner takes one.
    CT_Shared();
    // Kept: a copy starts with the count of its source, and assignment copies the count too.
    CT_Shared(const CT_Shared& co_Other) = default;
    CT_Shared& operator=(const CT_Shared& co_Other) = default;

    // Counts one more owner, who has to give the reference back.
    void v_TakeReference();
    // Deletes the object when the count becomes 0. A count of 0 becomes 0xFFFFFFFF and nothing is
    // deleted.
    void v_GiveReference();
    unsigned n_GetReferences() const;

protected:
    virtual ~CT_Shared();

private:
    unsigned n_References;
};
