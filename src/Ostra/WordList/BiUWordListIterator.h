// Ostra/WordList/BiUWordListIterator.h: a walk over a bilingual list of 16-bit words.
#pragma once

#include <Ostra/Frame/Export.h>
#include <Ostra/WordList/BiLingualUWordList.h>
#include <Ostra/WordList/BiWordListIteratorOstra.h>

#include <cstddef>

class CT_String;

// A walk over a bilingual list of 16-bit words.
//
// Kept: a step leads behind the next zero byte. Only the first pair stands on its own texts; a step
// from ASCII text leads to its second character, and one from text without a zero byte in it to an
// odd position, whose text is only to be had as a string. The number of steps is that of the pairs.
class OSTRA_API CT_BiUWordListIterator : public CT_BiWordListIteratorOstra
{
public:
    // ---- Construction ---------------------------------------------------------------------

    // At home on the list, or where the other stands.
    explicit CT_BiUWordListIterator(const CT_BiLingualUWordList* pcco_NewList);
    explicit CT_BiUWordListIterator(const CT_BiUWordListIterator* pcco_Iterator);

    static void* operator new(std::size_t n_Size) noexcept;
    static void* operator new(std::size_t, void* pv_Place) noexcept { return pv_Place; }
    static void operator delete(void* pv_Object);

    // ---- Access ---------------------------------------------------------------------------

    // Steps on; whether there is a pair. Behind the last pair it stays on it.
    int b_Next();

    // The current pair; at home the first one. The texts are the list's own, until it changes.
    void v_Get(unsigned short** pqcz_Source, unsigned short** pqcz_Target);
    void v_Get(CT_String* pco_Source, CT_String* pco_Target);
};
