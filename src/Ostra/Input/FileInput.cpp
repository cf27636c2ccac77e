// Ostra/Input/FileInput.cpp
#include <Ostra/Input/FileInput.h>

#include <Ostra/Frame/Report.h>
#include <Ostra/Input/Bytes.h>

#include <algorithm>
#include <cstdlib>

static constexpr char qccz_Source[] = "Ostra/Input/FileInput";

CT_FileInput::CT_FileInput(unsigned n_NewBuffer, const CT_String* pco_Name)
    : CT_Input(n_NewBuffer),
      co_File(pco_Name, FILE_BUFFER_SIZE),
      n_Size(0),
      n_Offset(0)
{}

CT_FileInput::~CT_FileInput()
{
    v_CloseOpen();
}

void CT_FileInput::v_Set(unsigned n_NewBuffer, const CT_String* pco_Name)
{
    v_CloseOpen();
    v_SetBuffer(n_NewBuffer);
    co_File.vv_Set(pco_Name, FILE_BUFFER_SIZE);
    n_Offset = 0;
    n_Size = 0;
}

void* CT_FileInput::operator new(std::size_t n_ObjectSize) noexcept
{
    return CT_Report::spv_New(n_ObjectSize, qccz_Source);
}

void CT_FileInput::operator delete(void* pv_Object)
{
    std::free(pv_Object);
}

// The size isn't asked for its failure: what can't be measured can't be opened either. A file that
// is open is closed first: a second open would lose the handle, and be refused for it.
void CT_FileInput::vv_Open()
{
    v_CloseOpen();
    co_Buffer.v_SetSize(n_GetBuffer(), 0);
    if (CT_Report::sb_Failed(qccz_Source))
        return;
    n_Size = co_File.vn_GetSize();
    n_Offset = 0;
    co_File.vv_Open(CT_File::e_AccessRead, CT_File::e_OpenExisting, CT_File::e_ShareNone,
                    CT_File::e_AttributeNormal, 0);
    CT_Report::sb_Failed(qccz_Source);
}

void CT_FileInput::vv_Close()
{
    v_CloseOpen();
}

void CT_FileInput::v_CloseOpen()
{
    if (!co_File.b_IsOpen())
        return;
    co_File.vv_Close();
    CT_Report::sb_Failed(qccz_Source);
}

unsigned CT_FileInput::vn_GetSize() const
{
    return n_Size;
}

unsigned CT_FileInput::vn_GetOffset() const
{
    return n_Offset;
}

int CT_FileInput::vb_IsEmpty() const
{
    return n_Offset >= n_Size;
}

// Kept: the file is rewound, and the offset counts on.
int CT_FileInput::vb_IsUnicode()
{
    return co_File.b_IsUnicode();
}

int CT_FileInput::vb_GetNextBuffer(unsigned n_BlockSize, const unsigned char** ppq_Data,
                                   unsigned* pn_Size)
{
    if (vb_IsEmpty())
        return 0;
    *pn_Size = co_File.n_Read(&co_Buffer, n_BlockSize);
    if (!*pn_Size)
        return b_EndRead();
    *ppq_Data = static_cast<const unsigned char*>(co_Buffer.qcv_Get());
    n_Offset += *pn_Size;
    return 1;
}

int CT_FileInput::vb_GetNextBuffer(const unsigned char** ppq_Data, unsigned* pn_Size)
{
    return vb_GetNextBuffer(n_GetBuffer(), ppq_Data, pn_Size);
}

int CT_FileInput::vb_CopyNextBuffer(unsigned char* pq_Target, unsigned n_BlockSize)
{
    if (vb_IsEmpty())
        return 0;
    const unsigned n_Count = co_File.vn_Read(pq_Target, n_BlockSize);
    if (!n_Count)
        return b_EndRead();
    n_Offset += n_Count;
    // Kept: a short copy gives 0, though its bytes are delivered and counted.
    return n_Count == n_BlockSize;
}

// Kept: a read that brings nothing closes the file, whatever the reason.
int CT_FileInput::b_EndRead(unsigned n_Line)
{
    CT_Report::sb_Failed(qccz_Source, n_Line);
    if (!co_File.b_IsOpen())
        return 0;
    const CT_Report::CT_Since co_Since;
    co_File.vv_Close();
    co_Since.b_Failed(qccz_Source);
    return 0;
}

// Kept: the seek isn't asked for its failure.
int CT_FileInput::vb_Skip(unsigned n_Count)
{
    if (vb_IsEmpty())
        return 0;
    n_Offset += std::min(n_Count, n_Size - n_Offset);
    co_File.vv_SetOffset(CT_File::e_OriginBegin, static_cast<int>(n_Offset));
    return 1;
}
