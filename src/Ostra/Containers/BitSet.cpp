// Ostra/Containers/BitSet.cpp
#include <Ostra/Containers/BitSet.h>

#include <Ostra/Containers/BitWords.h>
#include <Ostra/Frame/Counts.h>

#include <algorithm>
#include <bit>

// ---- Construction -------------------------------------------------------------------------

CT_BitSet::CT_BitSet(unsigned n_NewBits)
{
    v_Init(n_NewBits, 0);
}

CT_BitSet::CT_BitSet(const CT_BitSet* pcco_Set)
{
    v_Init(pcco_Set);
}

CT_BitSet::~CT_BitSet()
{
    v_Exit();
}

void CT_BitSet::v_Set(unsigned n_NewBits, int b_Keep)
{
    v_Exit();
    v_Init(n_NewBits, b_Keep);
}

void CT_BitSet::v_Set(const CT_BitSet* pcco_Set)
{
    v_Exit();
    v_Init(pcco_Set);
}

void CT_BitSet::v_Init(unsigned n_NewBits, int b_Keep)
{
    n_Bits = n_NewBits;
    n_Words = n_NewBits / 32 + (n_NewBits % 32 != 0);
    n_Bytes = n_Words * 4;
    const unsigned n_Used = co_Buffer.n_GetUsedSize(), n_Room = co_Buffer.n_GetMaximumSize();
    const bool b_Shared = co_Buffer.n_GetUseCount() > 1;
    co_Buffer.v_SetSize(n_Bytes, b_Keep);
    if (co_Buffer.n_GetUseCount() > 1) {
        // The heap is exhausted, and the old block is still there and shared.
        if (!b_Keep)
            co_Buffer.v_SetSize(0, 0);
        return;
    }
    co_Buffer.v_SetUsedSize(std::min(n_Bytes, co_Buffer.n_GetMaximumSize()));
    // Kept: when bits are kept, those that a smaller size hides stay in the block, and a larger one
    // that the same block serves finds them again.
    if (!b_Keep)
        v_ClearFrom(0);
    else if (b_Shared || co_Buffer.n_GetMaximumSize() != n_Room)
        v_ClearFrom(n_Used);
}

void CT_BitSet::v_Init(const CT_BitSet* pcco_Set)
{
    n_Bits = pcco_Set->n_Bits;
    n_Bytes = pcco_Set->n_Bytes;
    n_Words = pcco_Set->n_Words;
    v_Assign(pcco_Set);
}

// ---- Work ---------------------------------------------------------------------------------

// The words of this set's size that its block has: all, unless the heap was exhausted or a smaller
// set assigned.
unsigned CT_BitSet::n_GetHeldWords() const
{
    return std::min(n_Words, n_GetBlockWords());
}

// Those of them that the other's block has as well, whatever the other's size.
unsigned CT_BitSet::n_GetCommonWords(const CT_BitSet* pcco_Set) const
{
    return std::min(n_GetHeldWords(), pcco_Set->n_GetBlockWords());
}

// Whether the block could be made the set's own.
int CT_BitSet::b_TakeOwn()
{
    if (co_Buffer.n_GetUseCount() <= 1)
        return 1;
    co_Buffer.v_CopyWeWrite();
    if (co_Buffer.n_GetUseCount() > 1)
        return 0;
    v_ClearFrom(co_Buffer.n_GetUsedSize());
    return 1;
}

// Behind the words in use the block is zeros or old bits: what a larger size comes to show is never
// what the heap had there.
void CT_BitSet::v_ClearFrom(unsigned n_Byte)
{
    const unsigned n_Room = co_Buffer.n_GetMaximumSize();
    if (n_Byte < n_Room)
        std::memset(pc_GetWords() + n_Byte, 0, n_Room - n_Byte);
}

void CT_BitSet::v_MaskLastWord()
{
    if (n_Words == 0 || n_GetHeldWords() < n_Words)
        return;
    // Kept: a size that is a multiple of 32 has the mask of no bits, so its last word becomes 0.
    const unsigned n_Mask = sn_GetMask(n_Bits) - 1;
    char* pc_Last = pc_GetWords() + n_Bytes - 4;
    unsigned n_Word;
    std::memcpy(&n_Word, pc_Last, sizeof n_Word);
    n_Word &= n_Mask;
    std::memcpy(pc_Last, &n_Word, sizeof n_Word);
}

// Each word becomes f_Operation(word, the other's word). Words that the other doesn't have are 0.
template <class T>
void CT_BitSet::v_Combine(const CT_BitSet* pcco_Set, T f_Operation)
{
    if (!b_TakeOwn())
        return;
    const unsigned n_Held = n_GetHeldWords();
    const unsigned n_Common = n_GetCommonWords(pcco_Set);
    char* pc_Words = pc_GetWords();
    CT_BitWords::sv_Combine(pc_Words, pcco_Set->pcc_GetWords(), n_Common, f_Operation);
    constexpr char ac_None[4] = {};
    for (unsigned n_Index = n_Common; n_Index < n_Held; ++n_Index)
        CT_BitWords::sv_CombinePlain(pc_Words + n_Index * std::size_t(4), ac_None, 1, f_Operation);
}

// ---- Access and comparison ----------------------------------------------------------------

unsigned CT_BitSet::n_FirstSetBit() const
{
    const unsigned n_Held = n_GetHeldWords();
    const unsigned n_Index = CT_BitWords::sn_Find(pcc_GetWords(), n_Held);
    if (n_Index == n_Held)
        return NONE;
    unsigned n_Word;
    std::memcpy(&n_Word, pcc_GetWords() + std::size_t(n_Index) * 4, sizeof n_Word);
    return n_Index * 32 + static_cast<unsigned>(std::countr_zero(n_Word));
}

unsigned CT_BitSet::n_NrSetBits() const
{
    return CT_BitWords::sn_Count(pcc_GetWords(), n_GetHeldWords());
}

unsigned CT_BitSet::n_NrUnsetBits() const
{
    const unsigned n_Set = n_NrSetBits();
    return n_Set < n_Bits ? n_Bits - n_Set : 0;
}

int CT_BitSet::b_IsEqual(const CT_BitSet* pcco_Set) const
{
    const unsigned n_Held = n_GetHeldWords();
    const unsigned n_Common = n_GetCommonWords(pcco_Set);
    if (n_Common && std::memcmp(pcc_GetWords(), pcco_Set->pcc_GetWords(), n_Common * 4) != 0)
        return 0;
    const unsigned n_Rest = n_Held - n_Common;
    return CT_BitWords::sn_Find(pcc_GetWords() + n_Common * 4, n_Rest) == n_Rest;
}

int CT_BitSet::b_IsSubset(const CT_BitSet* pcco_Set) const
{
    const unsigned n_Held = n_GetHeldWords();
    const unsigned n_Common = n_GetCommonWords(pcco_Set);
    const unsigned n_Rest = n_Held - n_Common;
    return CT_BitWords::sn_FindBeyond(pcc_GetWords(), pcco_Set->pcc_GetWords(), n_Common) ==
               n_Common &&
           CT_BitWords::sn_Find(pcc_GetWords() + n_Common * 4, n_Rest) == n_Rest;
}

int CT_BitSet::b_IsEmpty() const
{
    return n_FirstSetBit() == NONE;
}

// ---- Change -------------------------------------------------------------------------------

void CT_BitSet::v_Assign(const CT_BitSet* pcco_Set)
{
    if (pcco_Set != this)
        co_Buffer.v_Set(&pcco_Set->co_Buffer);
}

void CT_BitSet::v_NAssign(const CT_BitSet* pcco_Set)
{
    v_Assign(pcco_Set);
    v_Complement();
}

void CT_BitSet::v_SetBits(int b_Value)
{
    if (!b_TakeOwn())
        return;
    if (const unsigned n_Held = n_GetHeldWords())
        std::memset(pc_GetWords(), b_Value ? 0xFF : 0, std::size_t(n_Held) * 4);
    v_MaskLastWord();
}

void CT_BitSet::v_Complement()
{
    if (!b_TakeOwn())
        return;
    v_Combine(this, [](unsigned n_Word, unsigned) { return ~n_Word; });
    v_MaskLastWord();
}

void CT_BitSet::v_Or(const CT_BitSet* pcco_Set)
{
    v_Combine(pcco_Set, [](unsigned n_Mine, unsigned n_Other) { return n_Mine | n_Other; });
}

void CT_BitSet::v_And(const CT_BitSet* pcco_Set)
{
    v_Combine(pcco_Set, [](unsigned n_Mine, unsigned n_Other) { return n_Mine & n_Other; });
}

void CT_BitSet::v_Xor(const CT_BitSet* pcco_Set)
{
    v_Combine(pcco_Set, [](unsigned n_Mine, unsigned n_Other) { return n_Mine ^ n_Other; });
}

void CT_BitSet::v_Difference(const CT_BitSet* pcco_Set)
{
    v_Combine(pcco_Set, [](unsigned n_Mine, unsigned n_Other) { return n_Mine & ~n_Other; });
}

void CT_BitSet::v_RDifference(const CT_BitSet* pcco_Set)
{
    v_Combine(pcco_Set, [](unsigned n_Mine, unsigned n_Other) { return n_Other & ~n_Mine; });
}
