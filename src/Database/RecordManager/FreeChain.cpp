// Database/RecordManager/FreeChain.cpp
#include <Database/RecordManager/FreeChain.h>

#include <Database/RecordManager/SizeSearch.h>
#include <Ostra/Frame/Counts.h>

#include <algorithm>
#include <bit>
#include <cstdlib>
#include <cstring>
#include <utility>

namespace
{
constexpr unsigned FIRST_ROOM = 256;
// What is larger isn't held, so that sizes compare as signed numbers, and offsets end within 32
// bits.
constexpr unsigned LIMIT = 0x7FFFFFFF;
constexpr unsigned WORDS = 8; // bytes of a block's size and link

// The numbers of a level come in groups of that many, and the level above has one for each group.
// n_Fits looks at one group.
constexpr unsigned GROUP = 16;

constexpr std::size_t n_GroupsOf(std::size_t n_Numbers)
{
    return (n_Numbers + GROUP - 1) / GROUP;
}

// Room for a level: its last group is whole, filled up with zeros.
constexpr std::size_t n_WholeGroups(std::size_t n_Numbers)
{
    return n_GroupsOf(n_Numbers) * GROUP;
}

unsigned n_Largest(const unsigned* pcn_Group)
{
    int i_Largest = 0;
    for (unsigned n_At = 0; n_At < GROUP; ++n_At)
        i_Largest = std::max(i_Largest, static_cast<int>(pcn_Group[n_At]));
    return static_cast<unsigned>(i_Largest);
}
} // namespace

// ---- Life -------------------------------------------------------------------------------------

CT_FreeChain::CT_FreeChain(unsigned n_TheBlockSize)
    : n_BlockSize(n_TheBlockSize),
      n_Shift(std::has_single_bit(n_BlockSize) ? std::countr_zero(n_BlockSize) : 0),
      n_Room(0),
      n_Top(0),
      n_Count(0),
      n_Levels(0),
      pn_Blocks(nullptr),
      apn_Sizes(),
      n_Marks(0),
      pn_Marks(nullptr)
{}

CT_FreeChain::~CT_FreeChain()
{
    std::free(pn_Blocks);
    std::free(pn_Marks);
}

void* CT_FreeChain::operator new(std::size_t n_Size) noexcept
{
    return std::malloc(n_Size);
}

void CT_FreeChain::operator delete(void* pv_Object)
{
    std::free(pv_Object);
}

// ---- Room -------------------------------------------------------------------------------------

int CT_FreeChain::b_MakeRoom()
{
    if (n_Top < n_Room)
        return 1;
    if (n_Top && n_Count <= n_Room / 2) {
        v_Compact();
        return 1;
    }
    return n_Room <= LIMIT / 4 && b_Grow(n_Room ? 2 * n_Room : FIRST_ROOM);
}

// One block of memory: the blocks' offsets, their sizes, and the levels above.
int CT_FreeChain::b_Grow(unsigned n_NewRoom)
{
    std::size_t n_Numbers = n_NewRoom;
    unsigned n_NewLevels = 0;
    for (std::size_t n_Length = n_NewRoom;; n_Length = n_GroupsOf(n_Length)) {
        n_Numbers += n_WholeGroups(n_Length);
        ++n_NewLevels;
        if (n_Length <= GROUP)
            break;
    }
    unsigned* pn_New = static_cast<unsigned*>(std::calloc(n_Numbers, sizeof(unsigned)));
    if (!pn_New)
        return 0;
    if (n_Top) {
        std::memcpy(pn_New, pn_Blocks, n_Top * sizeof(unsigned));
        std::memcpy(pn_New + n_NewRoom, apn_Sizes[0], n_Top * sizeof(unsigned));
    }
    std::free(pn_Blocks);
    pn_Blocks = pn_New;
    pn_New += n_NewRoom;
    std::size_t n_Length = n_NewRoom;
    for (unsigned n_Level = 0; n_Level < n_NewLevels; ++n_Level) {
        apn_Sizes[n_Level] = pn_New;
        pn_New += n_WholeGroups(n_Length);
        n_Length = n_GroupsOf(n_Length);
    }
    n_Room = n_NewRoom;
    n_Levels = n_NewLevels;
    v_Summarize();
    return 1;
}

// Closes the empty positions.
void CT_FreeChain::v_Compact()
{
    unsigned n_To = 0;
    for (unsigned n_From = 0; n_From < n_Top; ++n_From) {
        if (!apn_Sizes[0][n_From])
            continue;
        pn_Blocks[n_To] = pn_Blocks[n_From];
        apn_Sizes[0][n_To++] = apn_Sizes[0][n_From];
    }
    for (unsigned n_At = n_To; n_At < n_Top; ++n_At)
        pn_Blocks[n_At] = apn_Sizes[0][n_At] = 0;
    n_Top = n_To;
    v_Summarize();
}

// Makes the levels above the sizes: each number there is the largest of its group below.
void CT_FreeChain::v_Summarize()
{
    std::size_t n_Length = n_Room;
    for (unsigned n_Level = 1; n_Level < n_Levels; ++n_Level) {
        const unsigned* pcn_Below = apn_Sizes[n_Level - 1];
        n_Length = n_GroupsOf(n_Length);
        for (std::size_t n_At = 0; n_At < n_Length; ++n_At)
            apn_Sizes[n_Level][n_At] = n_Largest(pcn_Below + n_At * GROUP);
    }
}

// Sets a size and what the levels above tell of it, up to the first that it doesn't change.
void CT_FreeChain::v_SetSize(unsigned n_Position, unsigned n_Size)
{
    unsigned n_Old = apn_Sizes[0][n_Position];
    apn_Sizes[0][n_Position] = n_Size;
    for (unsigned n_Level = 1; n_Level < n_Levels; ++n_Level) {
        n_Position /= GROUP;
        unsigned& n_Above = apn_Sizes[n_Level][n_Position];
        const unsigned n_Before = n_Above;
        if (n_Size >= n_Above)
            n_Above = n_Size;
        else if (n_Old == n_Above)
            n_Above = n_Largest(apn_Sizes[n_Level - 1] + n_Position * GROUP);
        if (n_Above == n_Before)
            return;
        n_Old = n_Before;
        n_Size = n_Above;
    }
}

// ---- Marks ------------------------------------------------------------------------------------

int CT_FreeChain::b_MakeMarks(unsigned n_Number)
{
    const unsigned n_New = std::max(n_Marks * 2, (n_Number / 4096 + 1) * 4096);
    std::uint64_t* pn_New = static_cast<std::uint64_t*>(std::realloc(pn_Marks, n_New / 8));
    if (!pn_New)
        return 0;
    pn_Marks = pn_New;
    std::memset(pn_Marks + n_Marks / 64, 0, (n_New - n_Marks) / 8);
    n_Marks = n_New;
    return 1;
}

int CT_FreeChain::b_Mark(unsigned n_Offset)
{
    const unsigned n_Number = n_BlockOf(n_Offset);
    if (n_Number * n_BlockSize != n_Offset || b_IsMarked(n_Number))
        return 0;
    if (n_Number >= n_Marks && !b_MakeMarks(n_Number))
        return 0;
    pn_Marks[n_Number / 64] |= std::uint64_t{1} << n_Number % 64;
    return 1;
}

void CT_FreeChain::v_Unmark(unsigned n_Offset)
{
    const unsigned n_Number = n_BlockOf(n_Offset);
    pn_Marks[n_Number / 64] &= ~(std::uint64_t{1} << n_Number % 64);
}

int CT_FreeChain::b_IsHit(unsigned n_Offset, unsigned n_Size) const
{
    if (!n_Size)
        return 0;
    unsigned n_Number = n_BlockOf(n_Offset);
    const unsigned n_Last = std::min(n_BlockOf(n_Offset + (n_Size - 1)), n_Marks - 1);
    if (n_Offset - n_Number * n_BlockSize >= WORDS)
        ++n_Number;
    for (; n_Number <= n_Last; n_Number = (n_Number / 64 + 1) * 64) {
        std::uint64_t n_Bits = pn_Marks[n_Number / 64] >> n_Number % 64;
        if (n_Last - n_Number < 63)
            n_Bits &= (std::uint64_t{2} << (n_Last - n_Number)) - 1;
        if (n_Bits)
            return 1;
    }
    return 0;
}

// ---- Filling ----------------------------------------------------------------------------------

int CT_FreeChain::b_Push(unsigned n_Block, unsigned n_Size)
{
    if (!n_Size || !n_Block || n_Size > LIMIT || n_Block > LIMIT || !b_MakeRoom() ||
        !b_Mark(n_Block))
        return 0;
    pn_Blocks[n_Top] = n_Block;
    apn_Sizes[0][n_Top] = n_Size;
    unsigned n_Position = n_Top;
    for (unsigned n_Level = 1; n_Level < n_Levels; ++n_Level) {
        n_Position /= GROUP;
        if (apn_Sizes[n_Level][n_Position] >= n_Size)
            break;
        apn_Sizes[n_Level][n_Position] = n_Size;
    }
    ++n_Top;
    ++n_Count;
    return 1;
}

void CT_FreeChain::v_Reverse()
{
    std::reverse(pn_Blocks, pn_Blocks + n_Top);
    std::reverse(apn_Sizes[0], apn_Sizes[0] + n_Top);
    v_Summarize();
}

// ---- The head ---------------------------------------------------------------------------------

void CT_FreeChain::v_PopHead()
{
    v_Unmark(pn_Blocks[--n_Top]);
    --n_Count;
    do {
        pn_Blocks[n_Top] = 0;
        v_SetSize(n_Top, 0);
    } while (n_Top && !apn_Sizes[0][n_Top - 1] && n_Top--);
}

// ---- Searching --------------------------------------------------------------------------------

// The nearest position in front of this one with that size or more; NONE for none. First up to
// where one of the group has it, then down to the last that has it.
unsigned CT_FreeChain::n_FindOlder(unsigned n_Position, unsigned n_Need) const
{
    for (unsigned n_Level = 0; n_Level < n_Levels; ++n_Level) {
        unsigned n_Group = n_Position / GROUP;
        unsigned n_Bits =
            n_Fits(apn_Sizes[n_Level] + n_Group * GROUP, n_Need) & ((1u << n_Position % GROUP) - 1);
        if (n_Bits) {
            for (;;) {
                n_Position = n_Group * GROUP + static_cast<unsigned>(std::bit_width(n_Bits)) - 1;
                if (!n_Level--)
                    return n_Position;
                n_Group = n_Position;
                n_Bits = n_Fits(apn_Sizes[n_Level] + n_Group * GROUP, n_Need);
            }
        }
        n_Position = n_Group;
    }
    return NONE;
}

// The nearest position behind this one with a block; there must be one.
unsigned CT_FreeChain::n_FindNewer(unsigned n_Position) const
{
    unsigned n_Level = 0;
    unsigned n_Bits;
    for (;; ++n_Level) {
        const unsigned n_Behind = ~((2u << n_Position % GROUP) - 1);
        n_Position /= GROUP;
        n_Bits = n_Fits(apn_Sizes[n_Level] + n_Position * GROUP, 1) & n_Behind;
        if (n_Bits)
            break;
    }
    for (;;) {
        n_Position = n_Position * GROUP + static_cast<unsigned>(std::countr_zero(n_Bits));
        if (!n_Level--)
            return n_Position;
        n_Bits = n_Fits(apn_Sizes[n_Level] + n_Position * GROUP, 1);
    }
}

int CT_FreeChain::b_Find(unsigned n_Need, st_Found* pso_Found) const
{
    const unsigned n_Position = n_FindOlder(n_Top - 1, n_Need);
    if (n_Position == NONE) {
        pso_Found->n_Block = pn_Blocks[apn_Sizes[0][0] ? 0 : n_FindNewer(0)];
        return 0;
    }
    const unsigned n_Older = n_FindOlder(n_Position, 1);
    *pso_Found = {n_Position, pn_Blocks[n_FindNewer(n_Position)], pn_Blocks[n_Position],
                  apn_Sizes[0][n_Position], n_Older == NONE ? 0 : pn_Blocks[n_Older]};
    return 1;
}

void CT_FreeChain::v_Take(const st_Found& so_Found)
{
    v_Unmark(so_Found.n_Block);
    pn_Blocks[so_Found.n_Position] = 0;
    v_SetSize(so_Found.n_Position, 0);
    --n_Count;
}

int CT_FreeChain::b_PutRest(const st_Found& so_Found, unsigned n_Need)
{
    const unsigned n_Rest = so_Found.n_Block + n_Need;
    if (n_Rest > LIMIT || !b_Mark(n_Rest))
        return 0;
    pn_Blocks[so_Found.n_Position] = n_Rest;
    v_SetSize(so_Found.n_Position, so_Found.n_Size - n_Need);
    ++n_Count;
    return 1;
}
