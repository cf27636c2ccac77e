// Ostra/Input/MemoryInput.cpp
#include <Ostra/Input/MemoryInput.h>

#include <Ostra/Frame/Report.h>
#include <Ostra/Input/Bytes.h>

#include <windows.h>

#include <cstdlib>
#include <cstring>

static constexpr char qccz_Source[] = "Ostra/Input/MemoryInput";

namespace
{
constexpr unsigned JUDGED_SIZE = 100; // bytes that tell whether all of them are UTF-16
}

CT_MemoryInput::CT_MemoryInput(unsigned n_NewBuffer, const unsigned char* pq_Data, unsigned n_Size)
    : CT_Input(n_NewBuffer)
{
    v_Set(n_NewBuffer, pq_Data, n_Size);
}

void CT_MemoryInput::v_Set(unsigned n_NewBuffer, const unsigned char* pq_Data, unsigned n_Size)
{
    v_SetBuffer(n_NewBuffer);
    pq_Begin = pq_Data;
    pq_End = pq_Data + n_Size;
    pq_Current = pq_Data;
}

void* CT_MemoryInput::operator new(std::size_t n_Size) noexcept
{
    return CT_Report::spv_New(n_Size, qccz_Source);
}

void CT_MemoryInput::operator delete(void* pv_Object)
{
    std::free(pv_Object);
}

void CT_MemoryInput::vv_Open() {}

void CT_MemoryInput::vv_Close() {}

unsigned CT_MemoryInput::vn_GetSize() const
{
    return static_cast<unsigned>(pq_End - pq_Begin);
}

unsigned CT_MemoryInput::vn_GetOffset() const
{
    return static_cast<unsigned>(pq_Current - pq_Begin);
}

int CT_MemoryInput::vb_IsEmpty() const
{
    return pq_Current >= pq_End;
}

int CT_MemoryInput::vb_IsUnicode()
{
    const unsigned n_Size = n_AtMost(pq_Begin, pq_End, JUDGED_SIZE);
    return IsTextUnicode(pq_Begin, static_cast<int>(n_Size), nullptr);
}

int CT_MemoryInput::vb_GetNextBuffer(unsigned n_Size, const unsigned char** ppq_Data,
                                     unsigned* pn_Size)
{
    return b_TakeBlock(pq_Current, pq_End, n_Size, ppq_Data, pn_Size);
}

int CT_MemoryInput::vb_GetNextBuffer(const unsigned char** ppq_Data, unsigned* pn_Size)
{
    return vb_GetNextBuffer(n_GetBuffer(), ppq_Data, pn_Size);
}

// Kept: the copy isn't cut at the end. A part of a larger memory may be left in one go. The target
// may lie in the source.
int CT_MemoryInput::vb_CopyNextBuffer(unsigned char* pq_Target, unsigned n_Size)
{
    if (pq_Current >= pq_End)
        return 0;
    std::memmove(pq_Target, pq_Current, n_Size);
    pq_Current += n_Size;
    return 1;
}

// Kept: the skip isn't cut, and its result tells of what lies behind it, where a file's tells of
// what lay before it.
int CT_MemoryInput::vb_Skip(unsigned n_Size)
{
    pq_Current += n_Size;
    return pq_Current < pq_End;
}
