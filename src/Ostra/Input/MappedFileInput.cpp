// Ostra/Input/MappedFileInput.cpp
#include <Ostra/Input/MappedFileInput.h>

#include <Ostra/Frame/Report.h>
#include <Ostra/Input/Bytes.h>

#include <cstdlib>
#include <cstring>

static constexpr char qccz_Source[] = "Ostra/Input/MappedFileInput";

CT_MappedFileInput::CT_MappedFileInput(unsigned n_NewBuffer, const CT_String* pco_Name)
    : CT_Input(n_NewBuffer),
      co_File(pco_Name, FILE_BUFFER_SIZE)
{
    v_Null();
}

CT_MappedFileInput::~CT_MappedFileInput()
{
    v_CloseOpen();
}

void CT_MappedFileInput::v_Set(unsigned n_NewBuffer, const CT_String* pco_Name)
{
    v_CloseOpen();
    v_SetBuffer(n_NewBuffer);
    co_File.vv_Set(pco_Name, FILE_BUFFER_SIZE);
    v_Null();
}

void CT_MappedFileInput::v_Null()
{
    pq_Begin = nullptr;
    pq_End = nullptr;
    pq_Current = nullptr;
}

void* CT_MappedFileInput::operator new(std::size_t n_Size) noexcept
{
    return CT_Report::spv_New(n_Size, qccz_Source);
}

void CT_MappedFileInput::operator delete(void* pv_Object)
{
    std::free(pv_Object);
}

// A file that is open is closed first: a second open would lose the handle and the view, and be
// refused for it.
void CT_MappedFileInput::vv_Open()
{
    v_CloseOpen();
    v_Null(); // what an earlier open left behind
    const unsigned n_Size = co_File.vn_GetSize();
    co_File.vv_Open(CT_File::e_AccessRead, CT_File::e_OpenExisting, CT_File::e_ShareNone,
                    CT_File::e_AttributeNormal, 0);
    if (CT_Report::sb_Failed(qccz_Source))
        return;
    co_File.v_SetMapping(1, n_Size);
    if (CT_Report::sb_Failed(qccz_Source))
        return;
    pq_Begin = static_cast<const unsigned char*>(co_File.pv_GetMapping());
    pq_End = pq_Begin + n_Size;
    pq_Current = pq_Begin;
}

// Kept: the three pointers stay, and size and offset with them.
void CT_MappedFileInput::vv_Close()
{
    v_CloseOpen();
}

void CT_MappedFileInput::v_CloseOpen()
{
    if (!co_File.b_IsOpen())
        return;
    co_File.vv_Close();
    CT_Report::sb_Failed(qccz_Source);
}

unsigned CT_MappedFileInput::vn_GetSize() const
{
    return static_cast<unsigned>(pq_End - pq_Begin);
}

unsigned CT_MappedFileInput::vn_GetOffset() const
{
    return static_cast<unsigned>(pq_Current - pq_Begin);
}

int CT_MappedFileInput::vb_IsEmpty() const
{
    return pq_Current >= pq_End;
}

int CT_MappedFileInput::vb_IsUnicode()
{
    return co_File.b_IsUnicode();
}

int CT_MappedFileInput::vb_GetNextBuffer(unsigned n_Size, const unsigned char** ppq_Data,
                                         unsigned* pn_Size)
{
    if (b_IsAtEnd())
        return 0;
    return b_TakeBlock(pq_Current, pq_End, n_Size, ppq_Data, pn_Size);
}

int CT_MappedFileInput::vb_GetNextBuffer(const unsigned char** ppq_Data, unsigned* pn_Size)
{
    return vb_GetNextBuffer(n_GetBuffer(), ppq_Data, pn_Size);
}

int CT_MappedFileInput::vb_CopyNextBuffer(unsigned char* pq_Target, unsigned n_Size)
{
    if (b_IsAtEnd())
        return 0;
    const unsigned n_Count = n_AtMost(pq_Current, pq_End, n_Size);
    std::memcpy(pq_Target, pq_Current, n_Count);
    pq_Current += n_Count;
    return n_Count == n_Size;
}

int CT_MappedFileInput::vb_Skip(unsigned n_Size)
{
    if (b_IsAtEnd())
        return 0;
    pq_Current += n_AtMost(pq_Current, pq_End, n_Size);
    return 1;
}
