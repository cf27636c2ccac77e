// Ostra/Output/HugeOutput.cpp
#include <Ostra/Output/HugeOutput.h>

#include <Ostra/Output/Refusal.h>

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <cstring>

static constexpr char qccz_Source[] = "Ostra/Output/HugeOutput";

namespace
{
constexpr unsigned DEFAULT_GROWTH = 32;
constexpr unsigned LARGEST_SIZE = 0xFFFFFFFF;
constexpr unsigned ELSEWHERE = 0xFFFFFFFF;
} // namespace

CT_HugeOutput::CT_HugeOutput(void* h_Adopted, unsigned n_AdoptedUsed, unsigned n_Step)
    : n_Growth(n_Step ? n_Step : DEFAULT_GROWTH),
      n_Used(0),
      n_Size(0),
      h_Memory(h_Adopted),
      pv_Memory(nullptr),
      n_Room(0)
{
    if (!h_Memory)
        return;
    n_Used = n_AdoptedUsed;
    n_Size = static_cast<unsigned>(std::min<SIZE_T>(GlobalSize(h_Memory), LARGEST_SIZE));
    pv_Memory = GlobalLock(h_Memory);
    n_Room = pv_Memory ? n_Size : 0;
}

CT_HugeOutput::~CT_HugeOutput()
{
    if (h_Memory)
        sv_Free(h_Memory);
}

void* CT_HugeOutput::operator new(std::size_t n_ObjectSize) noexcept
{
    return CT_Report::spv_New(n_ObjectSize, qccz_Source);
}

void CT_HugeOutput::operator delete(void* pv_Object)
{
    std::free(pv_Object);
}

// A block that somebody else has locked as well stays.
void CT_HugeOutput::sv_Free(void* h_Old)
{
    if (!GlobalUnlock(h_Old))
        GlobalFree(h_Old);
}

void CT_HugeOutput::vv_Append(unsigned char, unsigned) {}

void CT_HugeOutput::vv_Append(CT_FileOutput&) {}

void CT_HugeOutput::vv_Append(const CT_MemoryOutput&) {}

void CT_HugeOutput::vv_Replace(const void*, unsigned, unsigned)
{
    b_Refuse(ERROR_NOT_SUPPORTED, qccz_Source);
}

unsigned CT_HugeOutput::vn_GetSize() const
{
    return n_Used;
}

void* CT_HugeOutput::h_GiveBuffer()
{
    void* h_Given = h_Memory;
    if (h_Given)
        GlobalUnlock(h_Given);
    h_Memory = nullptr;
    return h_Given;
}

// ---- Appending ---------------------------------------------------------------------------------

void CT_HugeOutput::vv_Append(const void* qcv_Data, unsigned n_Count)
{
    if (b_IsGiven()) {
        b_Refuse(ERROR_INVALID_HANDLE, qccz_Source);
        return;
    }
    const unsigned n_Place = n_PlaceOf(qcv_Data);
    if (!b_Reserve(n_Count)) {
        CT_Report::sb_Failed(qccz_Source);
        return;
    }
    if (!n_Count || !pv_Memory)
        return;
    char* pc_Memory = static_cast<char*>(pv_Memory);
    const void* pcv_From = n_Place == ELSEWHERE ? qcv_Data : pc_Memory + n_Place;
    std::memmove(pc_Memory + n_Used, pcv_From, n_Count);
    n_Used += n_Count;
}

// Where in the block the bytes lie: it moves when it grows.
unsigned CT_HugeOutput::n_PlaceOf(const void* qcv_Data) const
{
    const auto n_Place =
        reinterpret_cast<std::uintptr_t>(qcv_Data) - reinterpret_cast<std::uintptr_t>(pv_Memory);
    return n_Place < n_Room ? static_cast<unsigned>(n_Place) : ELSEWHERE;
}

// Room for more bytes.
int CT_HugeOutput::b_Reserve(unsigned n_Extra)
{
    const std::uint64_t n_Need = std::uint64_t(n_Used) + n_Extra;
    if (n_Need <= n_Room)
        return 1;
    std::uint64_t n_Wanted = n_Size;
    // Kept: the steps are counted for all new bytes, not for those that have no room yet.
    if (n_Need > n_Wanted)
        n_Wanted += (n_Extra / n_Growth + std::uint64_t(1)) * n_Growth;
    if (n_Wanted <= LARGEST_SIZE && n_Need <= n_Wanted) {
        // Kept: the size is noted before it is there, and the next growth counts from it.
        n_Size = static_cast<unsigned>(n_Wanted);
        if (b_Move(GlobalAlloc(GMEM_MOVEABLE, n_Size)))
            return 1;
    }
    CT_Report::sv_Memory(qccz_Source);
    return 0;
}

// Takes the bytes over to a new block.
int CT_HugeOutput::b_Move(void* h_New)
{
    void* pv_New = h_New ? GlobalLock(h_New) : nullptr;
    if (!pv_New) {
        if (h_New)
            GlobalFree(h_New);
        return 0;
    }
    if (h_Memory) {
        if (n_Room)
            std::memcpy(pv_New, pv_Memory, std::min(n_Used, n_Room));
        sv_Free(h_Memory);
    }
    h_Memory = h_New;
    pv_Memory = pv_New;
    n_Room = n_Size;
    return 1;
}
