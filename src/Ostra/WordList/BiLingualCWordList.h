// Ostra/WordList/BiLingualCWordList.h: a bilingual list of 8-bit words.
#pragma once

#include <Ostra/CompList/CompList.h>
#include <Ostra/Frame/Export.h>
#include <Ostra/WordList/BiLingualWordListOstra.h>

#include <cstddef>

class CT_CString;

// Pairs of a source and a target word of 8 bits a character, each found from the other. Beside the
// texts there are two compressed lists, which index them crosswise: a source word has the place of
// its target text for a handle, a target word that of its source text.
//
// A list is made for some thousand pairs. Its indexes have no long offsets: an alternative further
// away than 65,535 bytes is lost, and with it words, by definition of the format and without a
// report. German words in random order get there at about 4,000 pairs (2,400 of 16-bit words),
// when an index has 66 to 68 kilobytes; order on one side alone doesn't help the other. For a whole
// dictionary examples/lexicon shows the way: two CT_CompLists with long offsets.
//
// Units:   a word is read up to its terminator; positions and handles are bytes.
// Owns:    its hold on the four blocks; a list made from another shares them. To store a list,
//          write the bytes of the two buffers and of the two indexes' buffers.
// Reports: nothing of its own; 60006 comes from the buffers when the heap is exhausted.
// Caller:  gives words without the characters 10, 13, 25 and 26, which the indexes reserve; shares
//          a list only for reading.
// Threads: one thread at a time; several may search a list that doesn't change.
class OSTRA_API CT_BiLingualCWordList : public CT_BiLingualWordListOstra
{
public:
    // ---- Construction ---------------------------------------------------------------------

    CT_BiLingualCWordList();
    // Shares texts and indexes, and takes the count.
    explicit CT_BiLingualCWordList(const CT_BiLingualCWordList* pcco_List);
    ~CT_BiLingualCWordList() override;

    // Empty, or sharing texts and indexes. Kept: the count stays what it was.
    void v_Set();
    void v_Set(const CT_BiLingualCWordList* pcco_List);

    static void* operator new(std::size_t n_Size) noexcept;
    static void* operator new(std::size_t, void* pv_Place) noexcept { return pv_Place; }
    static void operator delete(void* pv_Object);

    // ---- Search ---------------------------------------------------------------------------

    // The text that was inserted first with that word as the source, or as the target; null for
    // none. The empty word leads to the first text of the list; null once v_Set emptied it. The
    // text is the list's own, until it changes.
    const char* qccz_FindSource(const char* qccz_Word) const;
    const char* qccz_FindSource(const CT_CString* pcco_Word) const;
    const char* qccz_FindTarget(const char* qccz_Word) const;
    const char* qccz_FindTarget(const CT_CString* pcco_Word) const;

    // ---- Access ---------------------------------------------------------------------------

    // Source words with the byte positions of their targets in the target buffer, and the other way
    // round.
    const CT_CompList* pcco_GetSourceIndex() const { return &co_SourceIndex; }
    const CT_CompList* pcco_GetTargetIndex() const { return &co_TargetIndex; }

    // ---- Change ---------------------------------------------------------------------------

    // Adds a pair, whether its words are there or not.
    void v_Insert(const char* qccz_SourceWord, const char* qccz_TargetWord);
    void v_Insert(const CT_CString* pcco_Source, const CT_CString* pcco_Target);

private:
    // The order of the members is part of the interface.
    CT_CompList co_SourceIndex;
    CT_CompList co_TargetIndex;
};
