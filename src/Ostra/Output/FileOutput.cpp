// Ostra/Output/FileOutput.cpp
#include <Ostra/Output/FileOutput.h>

#include <Ostra/File/WinFile.h>
#include <Ostra/Output/MemoryOutput.h>
#include <Ostra/Output/Refusal.h>

#include <cstdlib>

static constexpr char qccz_Source[] = "Ostra/Output/FileOutput";

namespace
{
constexpr unsigned FILE_BUFFER_SIZE = 16384;
constexpr unsigned PIECE_SIZE = 65536;
} // namespace

// ---- Construction ------------------------------------------------------------------------------

CT_FileOutput::CT_FileOutput(const CT_String* pco_Name)
{
    v_Init(pco_Name);
}

CT_FileOutput::CT_FileOutput(CT_File* pco_NewFile)
{
    v_Init(pco_NewFile);
}

CT_FileOutput::~CT_FileOutput()
{
    v_Exit();
}

void CT_FileOutput::v_Set(const CT_String* pco_Name)
{
    v_Exit();
    v_Init(pco_Name);
}

void CT_FileOutput::v_Set(CT_File* pco_NewFile)
{
    v_Exit();
    v_Init(pco_NewFile);
}

void CT_FileOutput::v_Init(const CT_String* pco_Name)
{
    b_OwnFile = 1;
    b_CloseFile = 1;
    pco_File = new CT_WinFile(pco_Name, FILE_BUFFER_SIZE);
    if (CT_Report::sb_Failed(qccz_Source))
        return;
    v_OpenEmpty();
    CT_Report::sb_Failed(qccz_Source);
}

void CT_FileOutput::v_Init(CT_File* pco_NewFile)
{
    b_OwnFile = 0;
    pco_File = pco_NewFile;
    b_CloseFile = !pco_File->b_IsOpen();
    if (b_CloseFile) {
        v_OpenEmpty();
        if (CT_Report::sb_Failed(qccz_Source))
            return;
    }
    pco_File->vv_SetOffset(CT_File::e_OriginEnd, 0);
    CT_Report::sb_Failed(qccz_Source);
}

// Kept: the close isn't asked for its failure.
void CT_FileOutput::v_Exit()
{
    if (!pco_File)
        return;
    if (b_CloseFile && pco_File->b_IsOpen())
        pco_File->vv_Close();
    if (!b_OwnFile)
        return;
    delete pco_File;
    pco_File = nullptr;
}

void* CT_FileOutput::operator new(std::size_t n_Size) noexcept
{
    return CT_Report::spv_New(n_Size, qccz_Source);
}

void CT_FileOutput::operator delete(void* pv_Object)
{
    std::free(pv_Object);
}

// ---- The file ----------------------------------------------------------------------------------

int CT_FileOutput::b_IsUsable(unsigned n_Line) const
{
    return pco_File || b_Refuse(ERROR_INVALID_HANDLE, qccz_Source, n_Line);
}

void CT_FileOutput::v_OpenEmpty()
{
    pco_File->vv_Open(CT_File::e_AccessWrite, CT_File::e_OpenCreate, CT_File::e_ShareNone,
                      CT_File::e_AttributeNormal, 0);
}

// What a join that failed has left open is closed first: an open would lose the handle, and be
// refused for it.
void CT_FileOutput::v_OpenAtEnd()
{
    if (pco_File->b_IsOpen())
        pco_File->vv_Close();
    pco_File->vv_Open(CT_File::e_AccessWrite, CT_File::e_OpenExisting, CT_File::e_ShareNone,
                      CT_File::e_AttributeNormal, 0);
    pco_File->vv_SetOffset(CT_File::e_OriginEnd, 0);
}

unsigned CT_FileOutput::vn_GetSize() const
{
    return b_IsUsable() ? pco_File->vn_GetSize() : 0;
}

CT_File* CT_FileOutput::pco_GiveFile()
{
    CT_File* pco_Given = pco_File;
    if (pco_Given && pco_Given->b_IsOpen()) {
        pco_Given->vv_Close();
        CT_Report::sb_Failed(qccz_Source);
    }
    pco_File = nullptr;
    return pco_Given;
}

// ---- Appending ---------------------------------------------------------------------------------

void CT_FileOutput::vv_Append(const void* qcv_Data, unsigned n_Size)
{
    if (!b_IsUsable())
        return;
    pco_File->vn_Write(qcv_Data, n_Size);
    CT_Report::sb_Failed(qccz_Source);
}

void CT_FileOutput::vv_Append(unsigned char c_Byte, unsigned n_Count)
{
    CT_Buffer co_Run;
    co_Run.v_Replace(c_Byte, n_Count, 0);
    vv_Append(co_Run.qcv_Get(), co_Run.n_GetUsedSize());
}

void CT_FileOutput::vv_Append(const CT_MemoryOutput& co_Output)
{
    const CT_Buffer* pcco_Memory = co_Output.pcco_GetMemory();
    if (pcco_Memory)
        vv_Append(pcco_Memory->qcv_Get(), pcco_Memory->n_GetUsedSize());
    else
        b_Refuse(ERROR_INVALID_HANDLE, qccz_Source);
}

// Kept: both files are closed whether they are open or not, and no failure stops the sequence.
void CT_FileOutput::vv_Append(CT_FileOutput& co_Output)
{
    if (!b_IsUsable() || !co_Output.b_IsUsable())
        return;
    if (co_Output.pco_File == pco_File) {
        b_Refuse(ERROR_SHARING_VIOLATION, qccz_Source);
        return;
    }
    pco_File->vv_Close();
    co_Output.pco_File->vv_Close();
    pco_File->v_Append(co_Output.pco_File, PIECE_SIZE);
    v_OpenAtEnd();
    co_Output.v_OpenAtEnd();
}

// Kept: no step is asked for its failure, so bytes whose place can't be reached are written where
// the file stands.
void CT_FileOutput::vv_Replace(const void* qcv_Data, unsigned n_Size, unsigned n_Offset)
{
    if (!b_IsUsable())
        return;
    pco_File->vv_SetOffset(CT_File::e_OriginBegin, static_cast<int>(n_Offset));
    vv_Append(qcv_Data, n_Size);
    pco_File->vv_SetOffset(CT_File::e_OriginEnd, 0);
}
