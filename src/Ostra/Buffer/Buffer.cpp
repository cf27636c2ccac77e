// Ostra/Buffer/Buffer.cpp
#include <Ostra/Buffer/Buffer.h>

#include <Ostra/Buffer/Block.h>
#include <Ostra/Frame/Codes.h>
#include <Ostra/Frame/Counts.h>
#include <Ostra/Frame/Report.h>

#include <algorithm>
#include <cstddef>
#include <cstdlib>
#include <cstring>
#include <utility>

static constexpr char qccz_Source[] = "Ostra/Buffer/Buffer";

static_assert(sizeof(CT_Buffer::st_BufferData) == CT_Block::HEADER_SIZE);
static_assert(offsetof(CT_Buffer::st_BufferData, n_UseCount) == 0);
static_assert(offsetof(CT_Buffer::st_BufferData, n_MaximumSize) == 4);
static_assert(offsetof(CT_Buffer::st_BufferData, n_UsedSize) == 8);

namespace
{
constexpr unsigned COPY_GROWTH = 32;
constexpr unsigned SCRATCH_SIZE = 32;

void v_Move(char* pc_To, const void* qcv_From, unsigned n_Count)
{
    if (n_Count > 0)
        std::memmove(pc_To, qcv_From, n_Count);
}

// How many bytes of the block come with it when it moves. Those behind the used ones of a shared
// block stay where they are, and no copy of it has them.
unsigned n_GetKeptSize(const CT_Buffer& co_Source)
{
    const unsigned n_Used = co_Source.n_GetUsedSize(), n_Room = co_Source.n_GetMaximumSize();
    return n_Used > n_Room || co_Source.n_GetUseCount() > 1 ? n_Used : n_Room;
}
} // namespace

// ---- Construction ---------------------------------------------------------------------------

CT_Buffer::CT_Buffer(unsigned n_Size, unsigned n_NewGrowth)
{
    v_Null();
    v_Init(n_Size, n_NewGrowth);
}

CT_Buffer::CT_Buffer(const void* qcv_Data, unsigned n_Size, unsigned n_NewGrowth)
{
    v_Null();
    v_Init(qcv_Data, n_Size, n_NewGrowth);
}

void* CT_Buffer::operator new(std::size_t n_Size) noexcept
{
    return CT_Report::spv_New(n_Size, qccz_Source);
}

void CT_Buffer::operator delete(void* pv_Object)
{
    std::free(pv_Object);
}

void CT_Buffer::v_Null()
{
    n_Growth = 0;
    pc_Data = nullptr;
}

void CT_Buffer::v_Init(unsigned n_NewGrowth)
{
    v_SetGrowth(n_NewGrowth);
    pc_Data = nullptr;
}

void CT_Buffer::v_Init(unsigned n_Size, unsigned n_NewGrowth)
{
    v_Init(n_NewGrowth);
    if (n_Size == 0)
        return;
    pc_Data = CT_Block::spc_New(CT_Block::sn_Maximum(n_Size, n_Growth));
    sco_AllocCount.i4_Inc();
    if (!pc_Data)
        sv_Exhausted();
}

void CT_Buffer::sv_Exhausted()
{
    CT_Report::sv_Memory(qccz_Source);
}

void CT_Buffer::v_Init(const void* qcv_Data, unsigned n_Size, unsigned n_NewGrowth)
{
    v_Init(n_Size, n_NewGrowth);
    if (!pc_Data)
        return;
    std::memcpy(pc_Data, qcv_Data, n_Size);
    v_SetUsedBufferSize(n_Size);
}

void CT_Buffer::v_Init(const CT_Buffer* pcco_Buffer)
{
    n_Growth = pcco_Buffer->n_Growth;
    pc_Data = pcco_Buffer->pc_Data;
    v_IncUseCount();
}

unsigned CT_Buffer::sn_GetAllocCount()
{
    return static_cast<unsigned>(sco_AllocCount.i4_Get());
}

// ---- Comparison and search ------------------------------------------------------------------

int CT_Buffer::b_IsEqual(const void* qcv_Data, unsigned n_Size, unsigned n_Offset) const
{
    const unsigned n_Used = n_GetUsedSize();
    if (n_Offset > n_Used)
        return 0;
    // Kept: what passes the used end isn't compared, so an equal beginning is enough.
    n_Size = std::min(n_Size, n_Used - n_Offset);
    return n_Size == 0 || std::memcmp(pc_Data + n_Offset, qcv_Data, n_Size) == 0;
}

int CT_Buffer::b_IsEqual(const CT_Buffer* pcco_Buffer, unsigned n_From, unsigned n_Size,
                         unsigned n_Offset) const
{
    n_Size = pcco_Buffer->n_RangeOf(n_Size, n_From);
    return b_IsEqual(n_Size ? pcco_Buffer->pc_Data + n_From : nullptr, n_Size, n_Offset);
}

unsigned CT_Buffer::n_Find(unsigned char c_Byte, unsigned n_From) const
{
    const unsigned n_Used = n_GetUsedSize();
    if (n_From >= n_Used)
        return NONE;
    const void* pcv_At = std::memchr(pc_Data + n_From, c_Byte, n_Used - n_From);
    return pcv_At ? static_cast<unsigned>(static_cast<const char*>(pcv_At) - pc_Data) : NONE;
}

unsigned CT_Buffer::n_Find(const void* qcv_Data, unsigned n_Size, unsigned n_From) const
{
    if (!pc_Data)
        return NONE;
    const unsigned n_Used = n_GetUsedSize();
    const unsigned char c_First = *static_cast<const unsigned char*>(qcv_Data);
    for (unsigned n_At = n_Find(c_First, n_From); n_At != NONE; n_At = n_Find(c_First, n_At + 1)) {
        if (n_Size > n_Used - n_At)
            return NONE;
        if (std::memcmp(pc_Data + n_At, qcv_Data, n_Size) == 0)
            return n_At;
    }
    return NONE;
}

// How many of that many bytes the buffer has at n_From; a count of -1 means all.
unsigned CT_Buffer::n_RangeOf(unsigned n_Count, unsigned n_From) const
{
    const unsigned n_Used = n_GetUsedSize();
    return n_From < n_Used ? std::min(n_Count, n_Used - n_From) : 0;
}

// ---- Storage --------------------------------------------------------------------------------

void CT_Buffer::v_Set(unsigned n_Size, unsigned n_NewGrowth, int b_Keep)
{
    if (n_NewGrowth != ALL)
        v_SetGrowth(n_NewGrowth);
    if (!b_Keep || b_IsShared()) {
        v_LetGo();
        v_Init(n_Size, n_Growth);
        return;
    }
    const unsigned n_Maximum = CT_Block::sn_Maximum(n_Size, n_Growth);
    if (n_GetMaximumSize() < n_Maximum) {
        v_LetGo();
        // Kept: the total is rounded a second time, so a size of 10 with growth 32 yields a block
        // of 64.
        v_Init(n_Maximum == CT_Block::TOO_LARGE ? ALL : n_Maximum + CT_Block::HEADER_SIZE,
               n_Growth);
        return;
    }
    v_SetUsedBufferSize(0);
}

void CT_Buffer::v_Set(const void* qcv_Data, unsigned n_Size, unsigned n_NewGrowth)
{
    // The old block goes last: the bytes may be its own, and without memory it stays.
    CT_Buffer co_New(qcv_Data, n_Size, n_NewGrowth == ALL ? n_Growth : n_NewGrowth);
    if (n_Size && !co_New.pc_Data)
        return;
    n_Growth = co_New.n_Growth;
    std::swap(pc_Data, co_New.pc_Data);
}

void CT_Buffer::v_Set(const CT_Buffer* pcco_Buffer)
{
    if (pcco_Buffer == this)
        return;
    v_DecUseCount();
    v_Init(pcco_Buffer);
}

void CT_Buffer::v_SetSize(unsigned n_Size, int b_Keep)
{
    if (n_Size == 0) {
        v_LetGo();
        return;
    }
    const unsigned n_Maximum = CT_Block::sn_Maximum(n_Size, n_Growth);
    const int b_Own = pc_Data && n_ReadUseCount() == 1;
    const unsigned n_Used = b_Keep ? std::min(n_GetUsedSize(), n_Maximum) : 0;
    if (b_Own && n_GetMaximumSize() == n_Maximum) {
        if (!b_Keep)
            v_SetUsedBufferSize(0);
        return;
    }
    const int b_Resize = b_Own && b_Keep;
    char* pc_New =
        b_Resize ? CT_Block::spc_Resize(pc_Data, n_Maximum) : CT_Block::spc_New(n_Maximum);
    sco_AllocCount.i4_Inc();
    if (!pc_New) {
        CT_Report::sv_Memory(qccz_Source);
        return;
    }
    if (!b_Resize) {
        if (pc_Data)
            std::memcpy(pc_New, pc_Data, std::min(n_Used, n_GetMaximumSize()));
        v_DecUseCount();
    }
    pc_Data = pc_New;
    v_SetUsedBufferSize(n_Used);
}

void CT_Buffer::v_SetMinSize(unsigned n_Size, int b_Keep)
{
    if (!pc_Data || n_GetMaximumSize() < n_Size)
        v_SetSize(n_Size, b_Keep);
}

void CT_Buffer::v_SetUsedSize(unsigned n_Size)
{
    v_CopyWeWrite();
    v_SetUsedBufferSize(n_Size);
}

void CT_Buffer::v_CopyWeWrite()
{
    if (b_IsShared())
        v_CopyBeforeWrite();
}

// ---- Overwriting ----------------------------------------------------------------------------

// Makes the block ready for overwriting and raises the used size. The place to write at; null for
// nothing.
// Kept: a block that could not be copied is written while others share it.
char* CT_Buffer::pc_ReplaceAt(unsigned& n_Count, unsigned n_Offset)
{
    if (n_Count == ALL)
        n_Count = n_RangeOf(ALL, n_Offset);
    v_Room(CT_Block::sn_Sum(n_Offset, n_Count));
    const unsigned n_Maximum = n_GetMaximumSize();
    if (!pc_Data || n_Offset > n_Maximum)
        return nullptr;
    // Behind a failed growth the write stops at the end of the old room.
    n_Count = std::min(n_Count, n_Maximum - n_Offset);
    const unsigned n_Used = n_GetUsedSize();
    if (n_Offset > n_Used)
        std::memset(pc_Data + n_Used, 0, n_Offset - n_Used);
    if (n_Offset + n_Count > n_Used)
        v_SetUsedBufferSize(n_Offset + n_Count);
    return pc_Data + n_Offset;
}

void CT_Buffer::v_Replace(unsigned char c_Byte, unsigned n_Count, unsigned n_Offset)
{
    if (char* pc_At = pc_ReplaceAt(n_Count, n_Offset))
        std::memset(pc_At, c_Byte, n_Count);
}

// Bytes of the buffer's own, also of its unused room, are looked up behind the growth, which may
// move them.
void CT_Buffer::v_ReplaceOwn(unsigned n_From, unsigned n_Count, unsigned n_Offset)
{
    const unsigned n_Held = n_GetKeptSize(*this) - n_From;
    if (char* pc_At = pc_ReplaceAt(n_Count, n_Offset))
        v_Move(pc_At, pc_Data + n_From, std::min(n_Count, n_Held));
}

void CT_Buffer::v_Replace(const void* qcv_Data, unsigned n_Count, unsigned n_Offset)
{
    const unsigned n_From = n_PlaceOf(qcv_Data);
    if (n_From < n_GetKeptSize(*this))
        v_ReplaceOwn(n_From, n_Count, n_Offset);
    else if (char* pc_At = pc_ReplaceAt(n_Count, n_Offset))
        v_Move(pc_At, qcv_Data, n_Count);
}

void CT_Buffer::v_Replace(const CT_Buffer* pcco_Buffer)
{
    v_Set(pcco_Buffer);
}

// The source is looked up behind the growth, which may move it when it is this buffer.
void CT_Buffer::v_Replace(const CT_Buffer* pcco_Buffer, unsigned n_From, unsigned n_Count,
                          unsigned n_Offset)
{
    n_Count = pcco_Buffer->n_RangeOf(n_Count, n_From);
    char* pc_At = pc_ReplaceAt(n_Count, n_Offset);
    if (pc_At && n_Count)
        std::memmove(pc_At, pcco_Buffer->pc_Data + n_From, n_Count);
}

// ---- Inserting ------------------------------------------------------------------------------

// Opens a gap and raises the used size. The place to write at; null for nothing.
char* CT_Buffer::pc_InsertAt(unsigned& n_Count, unsigned n_Offset)
{
    const unsigned n_Used = n_GetUsedSize();
    v_Room(CT_Block::sn_Sum(n_Used, n_Count));
    const unsigned n_Maximum = n_GetMaximumSize();
    // Behind a failed growth the insertion stops at the end of the old room.
    n_Count = n_Used < n_Maximum ? std::min(n_Count, n_Maximum - n_Used) : 0;
    if (n_Count == 0)
        return nullptr;
    char* pc_At = pc_Data + std::min(n_Offset, n_Used);
    if (n_Offset < n_Used)
        std::memmove(pc_At + n_Count, pc_At, n_Used - n_Offset);
    v_SetUsedBufferSize(n_Used + n_Count);
    return pc_At;
}

void CT_Buffer::v_Insert(unsigned char c_Byte, unsigned n_Count, unsigned n_Offset)
{
    if (char* pc_At = pc_InsertAt(n_Count, n_Offset))
        std::memset(pc_At, c_Byte, n_Count);
}

// A range of the buffer's own. The gap moves the used bytes behind it, and may lie within the
// range. The room behind the used bytes is read as it stands when the gap is open.
void CT_Buffer::v_InsertOwn(unsigned n_From, unsigned n_Count, unsigned n_Offset)
{
    const unsigned n_Kept = n_GetKeptSize(*this);
    const unsigned n_Used = n_RangeOf(n_Count, n_From);
    char* pc_At = pc_InsertAt(n_Count, n_Offset);
    if (!pc_At || n_From >= n_Kept)
        return;
    const unsigned n_Held = std::min(n_Count, n_Used);
    const unsigned n_Before = n_Offset > n_From ? std::min(n_Held, n_Offset - n_From) : 0;
    v_Move(pc_At, pc_Data + n_From, n_Before);
    v_Move(pc_At + n_Before, pc_Data + n_From + n_Before + n_Count, n_Held - n_Before);
    v_Move(pc_At + n_Held, pc_Data + n_From + n_Held, std::min(n_Count, n_Kept - n_From) - n_Held);
}

void CT_Buffer::v_Insert(const void* qcv_Data, unsigned n_Count, unsigned n_Offset)
{
    const unsigned n_From = n_PlaceOf(qcv_Data);
    if (n_From < n_GetKeptSize(*this))
        v_InsertOwn(n_From, n_Count, n_Offset);
    else if (char* pc_At = pc_InsertAt(n_Count, n_Offset))
        std::memmove(pc_At, qcv_Data, n_Count);
}

void CT_Buffer::v_Insert(const CT_Buffer* pcco_Buffer, unsigned n_From, unsigned n_Count,
                         unsigned n_Offset)
{
    n_Count = pcco_Buffer->n_RangeOf(n_Count, n_From);
    if (pcco_Buffer->pc_Data == pc_Data)
        v_InsertOwn(n_From, n_Count, n_Offset);
    else if (char* pc_At = pc_InsertAt(n_Count, n_Offset))
        std::memcpy(pc_At, pcco_Buffer->pc_Data + n_From, n_Count);
}

void CT_Buffer::v_Append(unsigned char c_Byte)
{
    const unsigned n_Used = n_GetUsedSize();
    if (n_Used == n_GetMaximumSize())
        v_SetSize(CT_Block::sn_Sum(n_Used, 1), 1);
    else
        v_CopyWeWrite();
    if (n_Used >= n_GetMaximumSize())
        return;
    pc_Data[n_Used] = static_cast<char>(c_Byte);
    v_SetUsedBufferSize(n_Used + 1);
}

void CT_Buffer::v_Append(const void* qcv_Data, unsigned n_Count)
{
    // Most small pieces come from elsewhere, and fit what the heap gave.
    char* const pc_At = n_PlaceOf(qcv_Data) == ALL ? pc_Step(n_Count) : nullptr;
    if (pc_At)
        std::memmove(pc_At, qcv_Data, n_Count);
    else
        v_AppendAny(qcv_Data, n_Count);
}

// By a call, so that the way above has no registers to save.
[[gnu::noinline]] void CT_Buffer::v_AppendAny(const void* qcv_Data, unsigned n_Count)
{
    char* const pc_At = n_Count && n_PlaceOf(qcv_Data) == ALL ? pc_Take(n_Count) : nullptr;
    if (pc_At)
        std::memmove(pc_At, qcv_Data, n_Count);
    else
        v_Insert(qcv_Data, n_Count, n_GetUsedSize());
}

void CT_Buffer::v_Append(const CT_Buffer* pcco_Buffer, unsigned n_From, unsigned n_Count)
{
    v_Insert(pcco_Buffer, n_From, n_Count, n_GetUsedSize());
}

void CT_Buffer::v_Remove(unsigned n_Count, unsigned n_Offset)
{
    v_CopyWeWrite();
    const unsigned n_Used = n_GetUsedSize();
    if (n_Count == ALL) {
        // Kept: the offset isn't compared with the used size, so this may also raise it.
        v_SetUsedBufferSize(n_Offset);
    } else if (n_Offset < n_Used) {
        n_Count = std::min(n_Count, n_Used - n_Offset);
        char* pc_At = pc_Data + n_Offset;
        std::memmove(pc_At, pc_At + n_Count, n_Used - n_Offset - n_Count);
        v_SetUsedBufferSize(n_Used - n_Count);
    }
}

// ---- Ranges of the same buffer --------------------------------------------------------------

void CT_Buffer::v_AtInsertCopy(unsigned n_From, unsigned n_Count, unsigned n_To)
{
    v_CopyWeWrite();
    n_To = std::min(n_To, n_GetUsedSize());
    if (CT_Block::sn_Sum(n_GetUsedSize(), n_Count) <= n_GetMaximumSize())
        v_CopyWithin(n_From, n_Count, n_To);
    else
        v_CopyToLarger(n_From, n_Count, n_To);
}

// A range that passes the used end is read only up to there; the rest of the gap is left as it is.
void CT_Buffer::v_CopyWithin(unsigned n_From, unsigned n_Count, unsigned n_To)
{
    const unsigned n_Used = n_GetUsedSize();
    if (n_From < n_Used) {
        char* pc_To = pc_Data + n_To;
        v_Move(pc_To + n_Count, pc_To, n_Used - n_To);
        const unsigned n_Known = std::min(n_Count, n_Used - n_From);
        v_Move(pc_To, pc_Data + n_From + (n_To <= n_From ? n_Count : 0), n_Known);
    }
    v_SetUsedBufferSize(n_Used + n_Count);
}

// Kept: the growth becomes that of the larger buffer, 32.
void CT_Buffer::v_CopyToLarger(unsigned n_From, unsigned n_Count, unsigned n_To)
{
    const unsigned n_Used = n_GetUsedSize();
    CT_Buffer co_Larger(CT_Block::sn_Sum(n_Used, n_Count), COPY_GROWTH);
    char* pc_Larger = co_Larger.pc_Data;
    if (!pc_Larger)
        return;
    v_Move(pc_Larger, pc_Data, n_To);
    if (n_From < n_Used)
        v_Move(pc_Larger + n_To, pc_Data + n_From, std::min(n_Count, n_Used - n_From));
    v_Move(pc_Larger + n_To + n_Count, pc_Data + n_To, n_Used - n_To);
    co_Larger.v_SetUsedBufferSize(n_Used + n_Count);
    v_Set(&co_Larger);
}

void CT_Buffer::v_AtInsertCopy(const CT_Buffer* pcco_Buffer, unsigned n_From, unsigned n_Count,
                               unsigned n_To)
{
    v_Insert(pcco_Buffer, n_From, n_Count, n_To);
}

void CT_Buffer::v_AtInsertMove(unsigned n_From, unsigned n_Count, unsigned n_To)
{
    if (n_To == n_From)
        return;
    v_CopyWeWrite();
    const unsigned n_Used = n_GetUsedSize();
    if (n_From > n_Used || n_Count > n_Used - n_From || n_To > n_Used)
        return;
    char ac_Scratch[SCRATCH_SIZE];
    if (CT_Block::sn_Sum(n_Used, n_Count) <= n_GetMaximumSize()) {
        v_MoveThrough(pc_Data + n_Used, n_From, n_Count, n_To);
    } else if (n_Count <= SCRATCH_SIZE) {
        v_MoveThrough(ac_Scratch, n_From, n_Count, n_To);
    } else if (char* pc_Scratch = static_cast<char*>(std::malloc(n_Count))) {
        v_MoveThrough(pc_Scratch, n_From, n_Count, n_To);
        std::free(pc_Scratch);
    } else {
        // Kept: this report alone carries code 0 with the format of exhaustion.
        CT_Report::sv_Format(qccz_Source, 0, OUT_OF_MEMORY);
    }
}

void CT_Buffer::v_MoveThrough(char* pc_Scratch, unsigned n_From, unsigned n_Count, unsigned n_To)
{
    v_Move(pc_Scratch, pc_Data + n_From, n_Count);
    if (n_To < n_From) {
        v_Move(pc_Data + n_To + n_Count, pc_Data + n_To, n_From - n_To);
    } else if (n_To >= n_From + n_Count) {
        v_Move(pc_Data + n_From, pc_Data + n_From + n_Count, n_To - n_From - n_Count);
        n_To -= n_Count;
    } else {
        return;
    }
    v_Move(pc_Data + n_To, pc_Scratch, n_Count);
}

void CT_Buffer::v_AtInsertMove(CT_Buffer* pco_Buffer, unsigned n_From, unsigned n_Count,
                               unsigned n_To)
{
    n_Count = pco_Buffer->n_RangeOf(n_Count, n_From);
    if (pco_Buffer == this) {
        v_AtInsertMove(n_From, n_Count, n_To);
        return;
    }
    // All the memory comes first. A source that shares the block may be its sole holder then.
    if (!b_Room(CT_Block::sn_Sum(n_GetUsedSize(), n_Count)) || !pco_Buffer->b_Room(0))
        return;
    v_Insert(pco_Buffer, n_From, n_Count, n_To);
    pco_Buffer->v_Remove(n_Count, n_From);
}

// ---- Work: the block ------------------------------------------------------------------------

void CT_Buffer::v_IncUseCount()
{
    if (pc_Data)
        CT_Interlocked::si4_Inc(pso_GetData()->n_UseCount);
}

// The heap's own call comes last, so that it can be a jump.
void CT_Buffer::v_DeleteData()
{
    char* const pc_Block = pc_Data;
    pc_Data = nullptr;
    CT_Block::sv_Delete(pc_Block);
}

void CT_Buffer::v_LetGo()
{
    v_DecUseCount();
    pc_Data = nullptr;
}

void CT_Buffer::v_CopyBeforeWrite()
{
    const unsigned n_Used = n_GetUsedSize();
    const unsigned n_Maximum = n_GetMaximumSize();
    char* pc_New = CT_Block::spc_New(n_Maximum);
    sco_AllocCount.i4_Inc();
    if (!pc_New) {
        CT_Report::sv_Memory(qccz_Source);
        return;
    }
    std::memcpy(pc_New, pc_Data, std::min(n_Used, n_Maximum));
    v_DecUseCount();
    pc_Data = pc_New;
    v_SetUsedBufferSize(n_Used);
}

// Room for n_Size bytes in a block of its own, with the bytes kept.
void CT_Buffer::v_Room(unsigned n_Size)
{
    if (n_Size > n_GetMaximumSize())
        v_SetSize(n_Size, 1);
    else
        v_CopyWeWrite();
}

// The same; whether it was to be had.
int CT_Buffer::b_Room(unsigned n_Size)
{
    v_Room(n_Size);
    return n_Size <= n_GetMaximumSize() && !b_IsShared();
}

void CT_Buffer::v_SetUsedBufferSize(unsigned n_Size)
{
    if (pc_Data)
        pso_GetData()->n_UsedSize = n_Size;
}
