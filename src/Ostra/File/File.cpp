// Ostra/File/File.cpp
#include <Ostra/File/File.h>

#include <Ostra/File/FileSystem.h>
#include <Ostra/File/Sources.h>
#include <Ostra/Frame/Counts.h>
#include <Ostra/Frame/Report.h>

static constexpr auto& qccz_Source = qccz_FileSource;

// ---- Construction ------------------------------------------------------------------------------

CT_File::CT_File()
{
    v_Null();
    v_Init();
}

CT_File::CT_File(const CT_String* pco_FullName, unsigned n_Size)
{
    v_Null();
    v_Init(pco_FullName, n_Size);
}

CT_File::CT_File(const CT_File* pco_File)
{
    v_Null();
    v_Init(pco_File);
}

CT_File::~CT_File() {}

// The file may be this one.
void CT_File::vv_Set(const CT_File* pco_File)
{
    const unsigned n_Size = pco_File->n_BufferSize;
    CT_File::vv_Set(&pco_File->co_FullName, 0);
    n_BufferSize = n_Size;
}

// The name may be the object's own.
void CT_File::vv_Set(const CT_String* pco_FullName, unsigned n_Size)
{
    const CT_UString co_Given(pco_FullName);
    v_Empty();
    v_Init(&co_Given, n_Size);
}

void CT_File::vv_Set()
{
    v_Empty();
    v_Init();
}

void CT_File::v_Null()
{
    n_BufferSize = 0;
    v_Init();
}

void CT_File::v_Init()
{
    n_BufferOffset = 0;
    v_NullOpen();
}

void CT_File::v_Init(const CT_String* pco_FullName, unsigned n_Size)
{
    v_Init();
    n_BufferSize = (n_Size + 1023) & ~1023U;
    v_SetFullName(pco_FullName);
}

void CT_File::v_Init(const CT_File* pco_File)
{
    v_Init();
    n_BufferSize = pco_File->n_BufferSize;
    v_SetFullName(&pco_File->co_FullName);
}

void CT_File::v_Empty()
{
    for (CT_UString* pco_Text : {&co_FullName, &co_Drive, &co_Directory, &co_Name, &co_Extension})
        pco_Text->vv_SetSize(0, 0);
    co_Buffer.v_SetSize(0, 0);
}

void CT_File::v_NullOpen()
{
    ec_FileAccess = e_FileAccessNone;
    b_Open = 0;
    ec_OpenAccess = e_AccessNone;
    ec_OpenModi = et_Open();
    ec_OpenShare = e_ShareNone;
    n_OpenAttribut = 0;
    n_OpenFlag = 0;
}

// ---- Names -------------------------------------------------------------------------------------

void CT_File::v_SetFullName(const CT_String* pco_FullName)
{
    co_FullName.v_Set(pco_FullName);
    v_SplitPath();
}

void CT_File::v_SetDrive(const CT_String* pco_Drive)
{
    co_Drive.v_Set(pco_Drive);
    v_MakePath();
}

void CT_File::v_SetDirectory(const CT_String* pco_Directory)
{
    co_Directory.v_Set(pco_Directory);
    v_MakePath();
}

void CT_File::v_SetName(const CT_String* pco_Name)
{
    co_Name.v_Set(pco_Name);
    v_MakePath();
}

void CT_File::v_SetExtension(const CT_String* pco_Extension)
{
    co_Extension.v_Set(pco_Extension);
    v_MakePath();
}

void CT_File::v_SplitPath()
{
    CT_FileSystem::sv_SplitPath(&co_FullName, &co_Drive, &co_Directory, &co_Name, &co_Extension);
}

void CT_File::v_MakePath()
{
    CT_FileSystem::sv_MakePath(&co_FullName, &co_Drive, &co_Directory, &co_Name, &co_Extension);
}

void CT_File::v_FullPath()
{
    CT_FileSystem::sv_FullPath(&co_FullName);
    CT_Report::sb_Failed(qccz_Source);
    v_SplitPath();
}

int CT_File::b_IsExistent() const
{
    return CT_FileSystem::sb_IsExistent(&co_FullName);
}

// ---- Transfers ---------------------------------------------------------------------------------

void CT_File::v_SetAccess(et_FileAccess ec_Access)
{
    if (ec_Access == ec_FileAccess)
        return;
    const CT_Report::CT_Since co_Since;
    const unsigned n_Offset = vn_GetOffset();
    if (co_Since.b_Failed(qccz_Source))
        return;
    vv_SetOffset(e_OriginBegin, static_cast<int>(n_Offset));
    if (!co_Since.b_Failed(qccz_Source))
        ec_FileAccess = ec_Access;
}

unsigned CT_File::n_Read(CT_Buffer* pco_Buffer, unsigned n_Size)
{
    if (!n_Size)
        return 0;
    pco_Buffer->v_SetMinSize(n_Size, 0);
    pco_Buffer->v_CopyWeWrite();
    // Without room of its own there is nothing to read into.
    if (pco_Buffer->n_GetMaximumSize() < n_Size || pco_Buffer->n_GetUseCount() > 1) {
        CT_Report::sb_Failed(qccz_Source);
        return 0;
    }
    const unsigned n_Count = vn_Read(const_cast<void*>(pco_Buffer->qcv_Get()), n_Size);
    pco_Buffer->v_SetUsedSize(n_Count);
    return CT_Report::sb_Failed(qccz_Source) ? 0 : n_Count;
}

unsigned CT_File::n_Write(const CT_Buffer* pco_Buffer, unsigned n_Size)
{
    const unsigned n_Used = pco_Buffer->n_GetUsedSize();
    if (!n_Size || !n_Used)
        return 0;
    if (n_Size == ALL)
        n_Size = n_Used;
    // Kept: what lies behind the used size is written too, if that is asked for; the room is the
    // limit.
    if (n_Size > pco_Buffer->n_GetMaximumSize())
        n_Size = pco_Buffer->n_GetMaximumSize();
    const unsigned n_Count = vn_Write(pco_Buffer->qcv_Get(), n_Size);
    return CT_Report::sb_Failed(qccz_Source) ? 0 : n_Count;
}

void CT_File::v_Append(const CT_File* pco_Source, unsigned n_ChunkSize)
{
    CT_Buffer co_Chunk(n_ChunkSize, 32);
    if (CT_Report::sb_Failed(qccz_Source))
        return;
    CT_File* pco_From = const_cast<CT_File*>(pco_Source);
    pco_From->vv_Open(e_AccessRead, e_OpenExisting, e_ShareNone, 1, 0);
    if (CT_Report::sb_Failed(qccz_Source))
        return;
    vv_Open(e_AccessWrite, e_OpenAppend, e_ShareNone, 1, 0);
    if (CT_Report::sb_Failed(qccz_Source))
        return;
    while (pco_From->n_Read(&co_Chunk, n_ChunkSize)) {
        n_Write(&co_Chunk, ALL);
        if (CT_Report::sb_Failed(qccz_Source))
            return;
    }
    vv_Close();
    pco_From->vv_Close();
    CT_Report::sb_Failed(qccz_Source);
}
