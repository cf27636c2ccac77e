// Ostra/Containers/BitSet.h: a set of bits of fixed size.
#pragma once

#include <Ostra/Buffer/Buffer.h>
#include <Ostra/Frame/Export.h>

#include <cstring>

// A set of bits of fixed size in a CT_Buffer, with the operations of set algebra. Sets share a
// block and copy it before the first write.
//
// Bit n is bit n & 31, the lowest first, of the 32-bit word n >> 5. The bits of the last word above
// the size are 0; whoever breaks this with a bit number out of range, or with v_Set that keeps, has
// them in counts and comparisons.
//
// Units:   sizes and positions are bits, counted from 0.
// Owns:    its hold on the buffer's block.
// Reports: nothing of its own; 60006 comes from the buffer when the heap is exhausted. A write that
//          can't have a block of its own isn't done.
// Caller:  keeps bit numbers below the size; sets that meet are of one size.
// Threads: one thread at a time; sets that share a block may be read and released on two.
class OSTRA_API CT_BitSet
{
public:
    // ---- Construction ---------------------------------------------------------------------

    // All bits are 0.
    explicit CT_BitSet(unsigned n_NewBits = 256);
    // Takes the other's size and shares its block.
    explicit CT_BitSet(const CT_BitSet* pcco_Set);
    ~CT_BitSet();
    CT_BitSet(const CT_BitSet&) = delete;
    CT_BitSet& operator=(const CT_BitSet&) = delete;

    // A new size. Without b_Keep all bits are 0; with it the words of the old size stay. New ones
    // are 0, or what a larger size before left in the block.
    void v_Set(unsigned n_NewBits, int b_Keep);
    // Like the constructor.
    void v_Set(const CT_BitSet* pcco_Set);

    // ---- Access ---------------------------------------------------------------------------

    unsigned n_GetSize() const { return n_Bits; }
    // 1 or 0; 0 behind the last word.
    int b_GetBit(unsigned n_Bit) const;
    const CT_Buffer* pcco_GetBuffer() const { return &co_Buffer; }

    // The lowest bit that is set; -1 for none.
    unsigned n_FirstSetBit() const;
    unsigned n_NrSetBits() const;
    // The size less the bits that are set, which may be more; then 0.
    unsigned n_NrUnsetBits() const;

    // ---- Comparison -----------------------------------------------------------------------

    // Compares the words of this set's size; the other's size doesn't matter.
    int b_IsEqual(const CT_BitSet* pcco_Set) const;
    // Whether each bit of this set is in the other.
    int b_IsSubset(const CT_BitSet* pcco_Set) const;
    int b_IsEmpty() const;

    // ---- Change: one bit ------------------------------------------------------------------

    // Behind the last word nothing is stored.
    void v_SetBit(unsigned n_Bit, int b_Value);
    void v_Toggle(unsigned n_Bit);
    // Or sets the bit, and clears it, xor flips it: with the other value it stays.
    void v_Or(unsigned n_Bit, int b_Value);
    void v_And(unsigned n_Bit, int b_Value);
    void v_Xor(unsigned n_Bit, int b_Value);

    // ---- Change: all bits -----------------------------------------------------------------

    // Shares the other's block; the size stays.
    void v_Assign(const CT_BitSet* pcco_Set);
    // This set becomes the complement of the other.
    void v_NAssign(const CT_BitSet* pcco_Set);
    // Sets all bits to the value. Like the complement it leaves the last word at 0 when the size is
    // a multiple of 32.
    void v_SetBits(int b_Value);
    void v_Complement();
    void v_Toggle() { v_Complement(); }

    // Words that the other set doesn't have count as 0.
    void v_Or(const CT_BitSet* pcco_Set);
    void v_And(const CT_BitSet* pcco_Set);
    void v_Xor(const CT_BitSet* pcco_Set);
    // Takes the other's bits out of this set; or this set's bits out of the other, into this set.
    void v_Difference(const CT_BitSet* pcco_Set);
    void v_RDifference(const CT_BitSet* pcco_Set);

private:
    // ---- Life -----------------------------------------------------------------------------

    void v_Init(unsigned n_NewBits, int b_Keep);
    void v_Init(const CT_BitSet* pcco_Set);
    void v_Exit() {}

    // ---- Work -----------------------------------------------------------------------------

    static unsigned n_GetIndex(unsigned n_Bit) { return n_Bit >> 5; }
    static unsigned n_GetOffset(unsigned n_Bit) { return n_Bit & 31; }
    static unsigned sn_GetMask(unsigned n_Bit) { return 1U << n_GetOffset(n_Bit); }
    char* pc_GetWords() { return static_cast<char*>(const_cast<void*>(co_Buffer.qcv_Get())); }
    const char* pcc_GetWords() const { return static_cast<const char*>(co_Buffer.qcv_Get()); }
    unsigned n_GetBlockWords() const { return co_Buffer.n_GetUsedSize() / 4; }
    unsigned n_GetHeldWords() const;
    unsigned n_GetCommonWords(const CT_BitSet* pcco_Set) const;
    int b_TakeOwn();
    void v_ClearFrom(unsigned n_Byte);
    char* pc_PrepareWord(unsigned n_Bit);
    void v_MaskLastWord();
    template <class T>
    void v_Combine(const CT_BitSet* pcco_Set, T f_Operation);

    // The order of the members is part of the interface.
    unsigned n_Bits;
    unsigned n_Bytes;
    unsigned n_Words; // of 32 bits, in the machine's byte order
    CT_Buffer co_Buffer;
};

// ---- One bit ------------------------------------------------------------------------------

inline int CT_BitSet::b_GetBit(unsigned n_Bit) const
{
    const unsigned n_At = n_GetIndex(n_Bit) * 4;
    if (n_At >= co_Buffer.n_GetUsedSize())
        return 0;
    unsigned n_Word;
    std::memcpy(&n_Word, pcc_GetWords() + n_At, sizeof n_Word);
    return n_Word >> n_GetOffset(n_Bit) & 1;
}

// The word of the bit, in a block of its own; null for a bit that the block doesn't have.
inline char* CT_BitSet::pc_PrepareWord(unsigned n_Bit)
{
    if (co_Buffer.n_GetUseCount() > 1 && !b_TakeOwn())
        return nullptr;
    const unsigned n_At = n_GetIndex(n_Bit) * 4;
    return n_At < co_Buffer.n_GetUsedSize() ? pc_GetWords() + n_At : nullptr;
}

inline void CT_BitSet::v_Or(unsigned n_Bit, int b_Value)
{
    if (!b_Value)
        return;
    if (char* pc_Word = pc_PrepareWord(n_Bit)) {
        unsigned n_Word;
        std::memcpy(&n_Word, pc_Word, sizeof n_Word);
        n_Word |= sn_GetMask(n_Bit);
        std::memcpy(pc_Word, &n_Word, sizeof n_Word);
    }
}

inline void CT_BitSet::v_And(unsigned n_Bit, int b_Value)
{
    // Kept: the block becomes the set's own also when the bit stays, unlike with or and xor.
    char* pc_Word = pc_PrepareWord(n_Bit);
    if (b_Value || !pc_Word)
        return;
    unsigned n_Word;
    std::memcpy(&n_Word, pc_Word, sizeof n_Word);
    n_Word &= ~sn_GetMask(n_Bit);
    std::memcpy(pc_Word, &n_Word, sizeof n_Word);
}

inline void CT_BitSet::v_Xor(unsigned n_Bit, int b_Value)
{
    if (!b_Value)
        return;
    if (char* pc_Word = pc_PrepareWord(n_Bit)) {
        unsigned n_Word;
        std::memcpy(&n_Word, pc_Word, sizeof n_Word);
        n_Word ^= sn_GetMask(n_Bit);
        std::memcpy(pc_Word, &n_Word, sizeof n_Word);
    }
}

inline void CT_BitSet::v_SetBit(unsigned n_Bit, int b_Value)
{
    if (b_Value)
        v_Or(n_Bit, 1);
    else
        v_And(n_Bit, 0);
}

inline void CT_BitSet::v_Toggle(unsigned n_Bit)
{
    v_Xor(n_Bit, 1);
}
