// Ostra/Buffer/Buffer.h: the growable byte store that everything else stands on.
#pragma once

#include <Ostra/Frame/Counter.h>
#include <Ostra/Frame/Export.h>
#include <Ostra/Frame/Interlocked.h>
#include <Ostra/Frame/Platform.h>
#include <Ostra/Frame/RawCopy.h>

#include <atomic>
#include <cstddef>
#include <cstdint>

// A run of bytes in a block that buffers share by a use count and copy before the first write.
//
// The block of n bytes has a total size of the least multiple of the growth that holds them and the
// 12-byte header; all growth is by this rule. Who wants fewer steps sets a larger growth or calls
// v_SetMinSize.
//
// Units:   sizes, counts and offsets are bytes; a count of -1 (0xFFFFFFFF) means "to the end". A
//          range of a buffer ends with its used bytes at the latest. A growth of 0 counts as 32.
// Owns:    its hold on the block; the last holder frees it.
// Reports: 60006 when the heap is exhausted; the old block then stays, and a change stops at the
//          end of its room.
// Caller:  keeps offsets within the used size; nothing checks them. Bytes to copy, and the other
//          buffer, may be the buffer's own: the bytes are taken as they were before the change.
// Threads: one thread at a time; two buffers on one block may be read and released on two threads.
class OSTRA_API CT_Buffer
{
public:
    // What lies directly in front of the data.
    struct st_BufferData
    {
        LONG n_UseCount; // buffers that hold the block; changed by interlocked operations only
        unsigned n_MaximumSize;
        unsigned n_UsedSize;
    };

    // ---- Construction -----------------------------------------------------------------------

    // Growth 32, no block.
    CT_Buffer() : n_Growth(DEFAULT_GROWTH), pc_Data(nullptr) {}
    // Room for n_Size bytes, used size 0; no block for 0.
    CT_Buffer(unsigned n_Size, unsigned n_Growth);
    // The same, with the bytes copied in.
    CT_Buffer(const void* qcv_Data, unsigned n_Size, unsigned n_Growth);
    // Shares the block and takes the growth.
    CT_Buffer(const CT_Buffer* pcco_Buffer)
        : n_Growth(pcco_Buffer->n_Growth),
          pc_Data(pcco_Buffer->pc_Data)
    {
        if (pc_Data)
            CT_Interlocked::si4_Inc(pso_GetData()->n_UseCount);
    }
    // Kept: by reference the two members are copied without a use of the block; the pointer form
    // and v_Set share.
    OSTRA_RAW_COPY CT_Buffer(const CT_Buffer& co_Other) = default;
    OSTRA_RAW_COPY CT_Buffer& operator=(const CT_Buffer& co_Other) = default;
    ~CT_Buffer() { v_DecUseCount(); }

    static void* operator new(std::size_t n_Size) noexcept;
    static void* operator new(std::size_t, void* pv_Place) noexcept { return pv_Place; }
    static void operator delete(void* pv_Object);

    // ---- Access -----------------------------------------------------------------------------

    // The first byte; null with no block.
    const void* qcv_Get() const { return pc_Data; }
    unsigned n_GetUsedSize() const { return pc_Data ? pso_GetData()->n_UsedSize : 0; }
    unsigned n_GetMaximumSize() const { return pc_Data ? pso_GetData()->n_MaximumSize : 0; }
    // 1 with no block.
    unsigned n_GetUseCount() const { return pc_Data ? n_ReadUseCount() : 1; }
    unsigned n_GetGrowth() const { return n_Growth; }
    // Allocations of blocks tried since the library was loaded.
    static unsigned sn_GetAllocCount();

    // ---- Comparison and search --------------------------------------------------------------

    // Kept: a candidate longer than what is left behind the offset is compared only as far as the
    // buffer goes.
    int b_IsEqual(const void* qcv_Data, unsigned n_Size, unsigned n_Offset = 0) const;
    int b_IsEqual(const CT_Buffer* pcco_Buffer, unsigned n_From, unsigned n_Size,
                  unsigned n_Offset = 0) const;

    // First offset of the byte, or the bytes, at or behind n_From; -1 for none.
    unsigned n_Find(unsigned char c_Byte, unsigned n_From = 0) const;
    unsigned n_Find(const void* qcv_Data, unsigned n_Size, unsigned n_From = 0) const;

    // ---- Change -----------------------------------------------------------------------------

    // The block stays as it is.
    void v_SetGrowth(unsigned n_NewGrowth)
    {
        n_Growth = n_NewGrowth ? n_NewGrowth : DEFAULT_GROWTH;
    }
    // Discards the content and makes room; -1 keeps the growth. b_Keep keeps an unshared block that
    // is large enough.
    void v_Set(unsigned n_Size, unsigned n_NewGrowth, int b_Keep);
    // A block of its own with these bytes; -1 keeps the growth. Without memory nothing changes.
    void v_Set(const void* qcv_Data, unsigned n_Size, unsigned n_NewGrowth);
    // Shares the other's block and takes its growth.
    void v_Set(const CT_Buffer* pcco_Buffer);
    // Gives the block the room for n_Size bytes, larger or smaller; 0 lets go of it. b_Keep keeps
    // the bytes that fit, else the used size is 0.
    void v_SetSize(unsigned n_Size, int b_Keep);
    // The same, only if the room is smaller.
    void v_SetMinSize(unsigned n_Size, int b_Keep);
    // Not checked against the room; with no block it does nothing.
    void v_SetUsedSize(unsigned n_Size);
    // Takes a block of its own if others hold this one.
    void v_CopyWeWrite();

    // Overwrite, growing as needed; the used size never shrinks. A count of -1 goes to the used
    // end, of this buffer for bytes, of the other one for a buffer.
    void v_Replace(unsigned char c_Byte, unsigned n_Count, unsigned n_Offset);
    void v_Replace(const void* qcv_Data, unsigned n_Count, unsigned n_Offset);
    void v_Replace(const CT_Buffer* pcco_Buffer, unsigned n_From, unsigned n_Count,
                   unsigned n_Offset);
    // Shares, like v_Set.
    void v_Replace(const CT_Buffer* pcco_Buffer);

    // Insert, growing as needed; an offset behind the used end counts as that end. Of another
    // buffer -1 goes to its used end; a count of bytes is taken as it is.
    void v_Insert(unsigned char c_Byte, unsigned n_Count, unsigned n_Offset);
    void v_Insert(const void* qcv_Data, unsigned n_Count, unsigned n_Offset);
    void v_Insert(const CT_Buffer* pcco_Buffer, unsigned n_From, unsigned n_Count,
                  unsigned n_Offset);
    // Insert at the used end.
    void v_Append(unsigned char c_Byte);
    void v_Append(const void* qcv_Data, unsigned n_Count);
    void v_Append(const CT_Buffer* pcco_Buffer, unsigned n_From, unsigned n_Count);
    // Takes bytes out. A count of -1 makes n_Offset the used size, whatever it was.
    void v_Remove(unsigned n_Count, unsigned n_Offset);

    // Inserts at n_To a copy of a range of this buffer, or of the other one.
    void v_AtInsertCopy(unsigned n_From, unsigned n_Count, unsigned n_To);
    void v_AtInsertCopy(const CT_Buffer* pcco_Buffer, unsigned n_From, unsigned n_Count,
                        unsigned n_To);
    // Moves a range in front of the byte that is at n_To before the move. Reports with code 0.
    void v_AtInsertMove(unsigned n_From, unsigned n_Count, unsigned n_To);
    // Inserts a range of the other buffer here and takes it out there; without memory neither.
    void v_AtInsertMove(CT_Buffer* pco_Buffer, unsigned n_From, unsigned n_Count, unsigned n_To);

private:
    friend class CT_VoidArray; // appends items without a call
    template <class Unit>
    friend class CT_TextBuffer; // makes blocks of a text and appends to them without a call

    static constexpr unsigned DEFAULT_GROWTH = 32;

    // ---- Life -------------------------------------------------------------------------------

    void v_Null();
    void v_Init() { v_Init(DEFAULT_GROWTH); }
    void v_Init(unsigned n_NewGrowth);
    void v_Init(unsigned n_Size, unsigned n_NewGrowth);
    void v_Init(const void* qcv_Data, unsigned n_Size, unsigned n_NewGrowth);
    void v_Init(const CT_Buffer* pcco_Buffer);

    // ---- Work -------------------------------------------------------------------------------

    st_BufferData* pso_GetData() const { return reinterpret_cast<st_BufferData*>(pc_Data) - 1; }
    unsigned n_ReadUseCount() const
    {
        // Whoever sees another thread's release must also see what it did before.
        return static_cast<unsigned>(
            std::atomic_ref<LONG>(pso_GetData()->n_UseCount).load(std::memory_order_acquire));
    }
    int b_IsShared() const { return pc_Data && n_ReadUseCount() >= 2; }
    void v_IncUseCount();
    void v_DecUseCount()
    {
        // Nobody can join a sole holder meanwhile, which spares it the interlocked operation. For
        // others the value that the decrement returned decides: of two that let go together only
        // one gets the 0.
        if (pc_Data &&
            (n_ReadUseCount() == 1 || CT_Interlocked::si4_Dec(pso_GetData()->n_UseCount) == 0))
            v_DeleteData();
    }
    void v_LetGo();
    void v_DeleteData();
    static void sv_Exhausted(); // reports that no block could be had
    void v_CopyBeforeWrite();
    void v_SetUsedBufferSize(unsigned n_Size);

    char* pc_Take(unsigned n_Count);
    char* pc_Step(unsigned n_Count);
    void v_AppendAny(const void* qcv_Data, unsigned n_Count);
    void v_Room(unsigned n_Size);
    char* pc_ReplaceAt(unsigned& n_Count, unsigned n_Offset);
    char* pc_InsertAt(unsigned& n_Count, unsigned n_Offset);
    void v_ReplaceOwn(unsigned n_From, unsigned n_Count, unsigned n_Offset);
    void v_InsertOwn(unsigned n_From, unsigned n_Count, unsigned n_Offset);
    unsigned n_RangeOf(unsigned n_Count, unsigned n_From) const;
    // Where in the block's room the bytes lie; -1 for bytes of elsewhere.
    unsigned n_PlaceOf(const void* qcv_Data) const
    {
        const auto n_Place =
            reinterpret_cast<std::uintptr_t>(qcv_Data) - reinterpret_cast<std::uintptr_t>(pc_Data);
        return n_Place < n_GetMaximumSize() ? static_cast<unsigned>(n_Place) : 0xFFFFFFFF;
    }
    int b_Room(unsigned n_Size);
    void v_CopyWithin(unsigned n_From, unsigned n_Count, unsigned n_To);
    void v_CopyToLarger(unsigned n_From, unsigned n_Count, unsigned n_To);
    void v_MoveThrough(char* pc_Scratch, unsigned n_From, unsigned n_Count, unsigned n_To);

    // The order of the members is part of the interface.
    unsigned n_Growth; // step of the block's total size
    char* pc_Data;     // the first data byte, directly behind the header; null with no block

    static CT_Counter sco_AllocCount;
};

// Raises the used size by that much, if the block is the buffer's own and has the room. The place
// to write at; null if not.
inline char* CT_Buffer::pc_Take(unsigned n_Count)
{
    if (!pc_Data || n_ReadUseCount() != 1)
        return nullptr;
    st_BufferData* pso_Data = pso_GetData();
    const unsigned n_Used = pso_Data->n_UsedSize;
    if (n_Used + std::uint64_t(n_Count) > pso_Data->n_MaximumSize)
        return nullptr;
    pso_Data->n_UsedSize = n_Used + n_Count;
    return pc_Data + n_Used;
}
