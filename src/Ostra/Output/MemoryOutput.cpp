// Ostra/Output/MemoryOutput.cpp
#include <Ostra/Output/MemoryOutput.h>

#include <Ostra/File/File.h>
#include <Ostra/Frame/Counts.h>
#include <Ostra/Output/FileOutput.h>
#include <Ostra/Output/Refusal.h>

#include <cstdlib>

static constexpr char qccz_Source[] = "Ostra/Output/MemoryOutput";

namespace
{
constexpr unsigned PIECE_SIZE = 65536;
constexpr unsigned PIECE_GROWTH = 32;
} // namespace

CT_MemoryOutput::CT_MemoryOutput()
{
    v_Take(new CT_Buffer);
}

CT_MemoryOutput::CT_MemoryOutput(const CT_Buffer* pco_Buffer)
{
    v_Take(new CT_Buffer(pco_Buffer));
}

CT_MemoryOutput::~CT_MemoryOutput()
{
    delete pco_Memory;
}

void CT_MemoryOutput::v_Set()
{
    delete pco_Memory;
    v_Take(new CT_Buffer);
}

// The buffer may be this output's own.
void CT_MemoryOutput::v_Set(const CT_Buffer* pco_Buffer)
{
    const CT_Buffer* pco_Old = pco_Memory;
    v_Take(new CT_Buffer(pco_Buffer));
    delete pco_Old;
}

void CT_MemoryOutput::v_Take(CT_Buffer* pco_Buffer, unsigned n_Line)
{
    pco_Memory = pco_Buffer;
    CT_Report::sb_Failed(qccz_Source, n_Line);
}

void* CT_MemoryOutput::operator new(std::size_t n_Size) noexcept
{
    return CT_Report::spv_New(n_Size, qccz_Source);
}

void CT_MemoryOutput::operator delete(void* pv_Object)
{
    std::free(pv_Object);
}

int CT_MemoryOutput::b_IsUsable(unsigned n_Line) const
{
    return pco_Memory || b_Refuse(ERROR_INVALID_HANDLE, qccz_Source, n_Line);
}

void CT_MemoryOutput::vv_Append(unsigned char c_Byte, unsigned n_Count)
{
    if (!b_IsUsable())
        return;
    CT_Buffer co_Run;
    co_Run.v_Replace(c_Byte, n_Count, 0);
    pco_Memory->v_Append(&co_Run, 0, ALL);
}

void CT_MemoryOutput::vv_Append(const void* qcv_Data, unsigned n_Size)
{
    if (b_IsUsable())
        pco_Memory->v_Append(qcv_Data, n_Size);
}

void CT_MemoryOutput::vv_Append(CT_FileOutput& co_Output)
{
    CT_File* pco_File = co_Output.pco_File;
    if (!b_IsUsable() || !co_Output.b_IsUsable())
        return;
    if (pco_File->b_IsOpen())
        pco_File->vv_Close();
    pco_File->vv_Open(CT_File::e_AccessRead, CT_File::e_OpenExisting, CT_File::e_ShareNone,
                      CT_File::e_AttributeNormal, 0);
    if (!CT_Report::sb_Failed(qccz_Source))
        v_ReadAll(pco_File);
}

// Kept: a piece is as large as the room of this output's own buffer. A buffer without a block takes
// nothing.
void CT_MemoryOutput::v_ReadAll(CT_File* pco_File)
{
    CT_Buffer co_Piece(PIECE_SIZE, PIECE_GROWTH);
    if (CT_Report::sb_Failed(qccz_Source))
        return;
    while (pco_File->n_Read(&co_Piece, pco_Memory->n_GetMaximumSize())) {
        pco_Memory->v_Append(&co_Piece, 0, ALL);
        if (CT_Report::sb_Failed(qccz_Source))
            return;
    }
    pco_File->vv_Close();
}

void CT_MemoryOutput::vv_Append(const CT_MemoryOutput& co_Output)
{
    if (b_IsUsable() && co_Output.b_IsUsable())
        pco_Memory->v_Append(co_Output.pco_Memory, 0, ALL);
}

void CT_MemoryOutput::vv_Replace(const void* qcv_Data, unsigned n_Size, unsigned n_Offset)
{
    if (b_IsUsable())
        pco_Memory->v_Replace(qcv_Data, n_Size, n_Offset);
}

unsigned CT_MemoryOutput::vn_GetSize() const
{
    return pco_Memory ? pco_Memory->n_GetUsedSize() : 0;
}

CT_Buffer* CT_MemoryOutput::pco_GiveMemory()
{
    CT_Buffer* pco_Given = pco_Memory;
    pco_Memory = nullptr;
    return pco_Given;
}
