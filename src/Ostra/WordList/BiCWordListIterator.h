// Ostra/WordList/BiCWordListIterator.h: a walk over a bilingual list of 8-bit words.
#pragma once

#include <Ostra/Frame/Export.h>
#include <Ostra/WordList/BiLingualCWordList.h>
#include <Ostra/WordList/BiWordListIteratorOstra.h>

#include <cstddef>

class CT_String;

// A walk over a bilingual list of 8-bit words.
class OSTRA_API CT_BiCWordListIterator : public CT_BiWordListIteratorOstra
{
public:
    // ---- Construction ---------------------------------------------------------------------

    // At home on the list, or where the other stands.
    explicit CT_BiCWordListIterator(const CT_BiLingualCWordList* pcco_NewList);
    explicit CT_BiCWordListIterator(const CT_BiCWordListIterator* pcco_Iterator);

    static void* operator new(std::size_t n_Size) noexcept;
    static void* operator new(std::size_t, void* pv_Place) noexcept { return pv_Place; }
    static void operator delete(void* pv_Object);

    // ---- Access ---------------------------------------------------------------------------

    // Steps on; whether there is a pair. Behind the last pair it stays on it.
    int b_Next();

    // The current pair; at home the first one. The texts are the list's own, until it changes.
    void v_Get(char** pqcz_Source, char** pqcz_Target);
    void v_Get(CT_String* pco_Source, CT_String* pco_Target);
};
