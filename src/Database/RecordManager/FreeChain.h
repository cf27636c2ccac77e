// Database/RecordManager/FreeChain.h: the chain of free blocks of a record file, as memory has it.
// Internal.
//
// The chain lies in the file, a block linked to the next, and the first block that is large enough
// is the one to take. Walking there reads every block on the way. Here stand the same blocks and
// sizes one behind the other, the oldest first and the head last, with the largest size of each 16,
// of each 256 and so on: the same block is found in a few steps.
//
// The file stays the truth. Whoever writes to it tells the place, and what is found is compared
// with the file; at the first difference the whole of this goes, and the chain is walked again.
#pragma once

#include <cstddef>
#include <cstdint>

// Units:   offsets and sizes are bytes, sizes aligned; positions count from 0.
// Owns:    its tables, from the heap.
// Reports: nothing; without memory it can't hold a block, and goes.
class CT_FreeChain
{
public:
    struct st_Found
    {
        unsigned n_Position;
        unsigned n_Newer; // the block that links to it
        unsigned n_Block;
        unsigned n_Size;
        unsigned n_Older; // the block that it links to, 0 at the end
    };

    explicit CT_FreeChain(unsigned n_BlockSize);
    CT_FreeChain(const CT_FreeChain&) = delete;
    CT_FreeChain& operator=(const CT_FreeChain&) = delete;
    ~CT_FreeChain();

    static void* operator new(std::size_t n_Size) noexcept;
    static void operator delete(void* pv_Object);

    // ---- Filling ----------------------------------------------------------------------------

    // Adds a new head. False for a block that can't be held: one that is in the chain already, that
    // isn't on the bounds of blocks, or for which there is no memory.
    int b_Push(unsigned n_Block, unsigned n_Size);
    // Turns the blocks round: they were pushed from the head on.
    void v_Reverse();

    // ---- The head ---------------------------------------------------------------------------

    unsigned n_GetCount() const { return n_Count; }
    // 0 for none.
    unsigned n_GetHead() const { return n_Top ? pn_Blocks[n_Top - 1] : 0; }
    void v_PopHead();

    // ---- Searching --------------------------------------------------------------------------

    // The first block of the size or more behind the head; false for none. Then only n_Block is
    // told, which is the last block of the chain.
    int b_Find(unsigned n_Need, st_Found* pso_Found) const;
    // Takes the block out, of which the caller uses the front.
    void v_Take(const st_Found& so_Found);
    // Puts the rest of the block in its place. False if it can't be held.
    int b_PutRest(const st_Found& so_Found, unsigned n_Need);

    // ---- Watching ---------------------------------------------------------------------------

    // Whether a write there hits the two words of a block of the chain.
    int b_IsHit(unsigned n_Offset, unsigned n_Size) const;

private:
    static constexpr unsigned LEVELS = 8;

    unsigned n_BlockOf(unsigned n_Offset) const
    {
        return n_Shift ? n_Offset >> n_Shift : n_Offset / n_BlockSize;
    }
    int b_IsMarked(unsigned n_Number) const
    {
        return n_Number < n_Marks && pn_Marks[n_Number / 64] >> n_Number % 64 & 1;
    }
    int b_Mark(unsigned n_Offset);
    void v_Unmark(unsigned n_Offset);
    int b_MakeMarks(unsigned n_Number);
    int b_MakeRoom();
    int b_Grow(unsigned n_NewRoom);
    void v_Compact();
    void v_Summarize();
    void v_SetSize(unsigned n_Position, unsigned n_Size);
    unsigned n_FindOlder(unsigned n_Position, unsigned n_Need) const;
    unsigned n_FindNewer(unsigned n_Position) const;

    unsigned n_BlockSize;
    unsigned n_Shift; // of a block size that is a power of two, else 0
    unsigned n_Room;  // positions
    unsigned n_Top;   // positions in use, some of them empty: size and block are 0 there
    unsigned n_Count; // blocks
    unsigned n_Levels;
    unsigned* pn_Blocks;
    unsigned* apn_Sizes[LEVELS]; // the sizes, and above them the largest of each 16
    unsigned n_Marks;            // bits of the next
    std::uint64_t* pn_Marks;     // a bit a block of the file: whether the chain has it
};
