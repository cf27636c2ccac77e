// Ostra/CompList/CompList.cpp: the life of a list, its head, and the numbers of its stream.
#include <Ostra/CompList/CompList.h>

#include <Ostra/CompList/CompListSource.h>
#include <Ostra/CompList/CompListStream.h>
#include <Ostra/Frame/Counts.h>

#include <cstdlib>
#include <cstring>

static constexpr unsigned MAGIC = 19970101;
static constexpr unsigned FIRST_POSITION = sizeof(st_CompListHeader);
static constexpr unsigned MINIMUM_GROWTH = 128;

// Stands in for the head of a block that is too short for one, so that such a list reads as having
// no elements.
static constexpr st_CompListHeader so_NoHeader = {};

// ---- Construction -------------------------------------------------------------------------

CT_CompList::CT_CompList(et_ElementSize ec_ElementSize, unsigned n_HandleSize,
                         int b_EmptyStringSupport, int b_LongOffsetSupport, unsigned n_Growth,
                         unsigned n_CodePage)
{
    v_Null();
    v_Init(ec_ElementSize, n_HandleSize, b_EmptyStringSupport, b_LongOffsetSupport, n_Growth,
           n_CodePage);
}

CT_CompList::CT_CompList(const CT_CompList* pcco_List)
{
    v_Null();
    v_Init(pcco_List);
}

CT_CompList::CT_CompList(const CT_Buffer* pcco_Buffer)
{
    v_Null();
    v_Init(pcco_Buffer);
}

CT_CompList::~CT_CompList()
{
    v_DropIndex();
}

void CT_CompList::v_Set(et_ElementSize ec_ElementSize, unsigned n_HandleSize,
                        int b_EmptyStringSupport, int b_LongOffsetSupport, unsigned n_Growth,
                        unsigned n_CodePage)
{
    v_Init(ec_ElementSize, n_HandleSize, b_EmptyStringSupport, b_LongOffsetSupport, n_Growth,
           n_CodePage);
}

void CT_CompList::v_Set(const CT_CompList* pcco_List)
{
    if (pcco_List != this)
        v_Init(pcco_List);
}

void CT_CompList::v_Set(const CT_Buffer* pcco_Buffer)
{
    v_Init(pcco_Buffer);
}

void* CT_CompList::operator new(std::size_t n_Size) noexcept
{
    return CT_Report::spv_New(n_Size, qccz_Source);
}

void CT_CompList::operator delete(void* pv_Object)
{
    std::free(pv_Object);
}

// ---- Life ---------------------------------------------------------------------------------

void CT_CompList::v_Null()
{
    b_Changed = 0;
    n_FirstPosition = FIRST_POSITION;
    pco_Index = nullptr;
    b_Scan = 0;
    v_TakeHeader();
    v_SetOffsetSize();
}

void CT_CompList::v_Init(et_ElementSize ec_ElementSize, unsigned n_HandleSize,
                         int b_EmptyStringSupport, int b_LongOffsetSupport, unsigned n_Growth,
                         unsigned n_CodePage)
{
    const unsigned n_Size = FIRST_POSITION + ec_ElementSize;
    co_Buffer.v_SetGrowth(n_Growth > MINIMUM_GROWTH ? n_Growth : MINIMUM_GROWTH);
    co_Buffer.v_SetSize(n_Size, 0);
    // Without room the buffer has reported, and the list stays what it was.
    if (co_Buffer.n_GetUsedSize() || co_Buffer.n_GetMaximumSize() < n_Size)
        return;
    v_Forget();
    co_Buffer.v_SetUsedSize(n_Size);
    v_TakeHeader();
    v_WriteHeader(ec_ElementSize, n_HandleSize, b_EmptyStringSupport, b_LongOffsetSupport,
                  n_CodePage);
    v_SetOffsetSize();
    b_Changed = 0;
    v_SetCharacter(pc_GetAt(FIRST_POSITION), ec_ListEnd);
}

void CT_CompList::v_Init(const CT_CompList* pcco_List)
{
    v_Forget();
    co_Buffer.v_Set(&pcco_List->co_Buffer);
    v_TakeHeader();
    b_Changed = pcco_List->b_Changed;
    n_OffsetSize = pcco_List->n_OffsetSize;
    n_MaximumOffset = pcco_List->n_MaximumOffset;
}

void CT_CompList::v_Init(const CT_Buffer* pcco_Buffer)
{
    v_Forget();
    co_Buffer.v_Set(pcco_Buffer);
    // Kept: neither the magic nor a size is looked at: who hands in a block vouches for it.
    v_TakeHeader();
    v_SetOffsetSize();
    b_Changed = 0;
}

// Lets go of what is known of an earlier block.
void CT_CompList::v_Forget()
{
    v_DropIndex();
    b_Scan = 0;
}

void CT_CompList::v_TakeHeader()
{
    const void* pcv_Header = co_Buffer.qcv_Get();
    if (co_Buffer.n_GetMaximumSize() < FIRST_POSITION)
        pcv_Header = &so_NoHeader;
    pso_Header = static_cast<st_CompListHeader*>(const_cast<void*>(pcv_Header));
}

void CT_CompList::v_WriteHeader(et_ElementSize ec_ElementSize, unsigned n_HandleSize,
                                int b_EmptyStringSupport, int b_LongOffsetSupport,
                                unsigned n_CodePage)
{
    // Reserved bytes are cleared, so that lists of equal content are equal bytes.
    std::memset(pso_Header, 0, co_Buffer.n_GetUsedSize());
    pso_Header->n_Magic = MAGIC;
    pso_Header->n_End = co_Buffer.n_GetUsedSize();
    pso_Header->n_CodePage = n_CodePage;
    pso_Header->n_EmptyStringHandle = NO_HANDLE;
    pso_Header->n1_ElementSize = static_cast<unsigned char>(ec_ElementSize);
    pso_Header->n1_HandleSize = static_cast<unsigned char>(n_HandleSize);
    pso_Header->n1_Flags =
        static_cast<unsigned char>((b_EmptyStringSupport ? EMPTY_STRING_SUPPORT : 0) |
                                   (b_LongOffsetSupport ? LONG_OFFSET_SUPPORT : 0));
    pso_Header->n1_Format = 1;
}

void CT_CompList::v_SetOffsetSize()
{
    n_OffsetSize = b_HasLongOffsetSupport() ? 4 : 2;
    n_MaximumOffset = b_HasLongOffsetSupport() ? 0xFFFFFFFF : 0xFFFF;
}

// ---- Numbers ------------------------------------------------------------------------------
// Numbers of the stream lie at any address.

void CT_CompList::v_SetNumber(char* pc_To, unsigned n_Size, unsigned n_Value)
{
    // Kept: a value wider than its field is cut without a check.
    const unsigned short n2_Value = static_cast<unsigned short>(n_Value);
    switch (n_Size) {
    case 1:
        *pc_To = static_cast<char>(n_Value);
        return;
    case 2:
        std::memcpy(pc_To, &n2_Value, 2);
        return;
    case 4:
        std::memcpy(pc_To, &n_Value, 4);
        return;
    }
}

unsigned CT_CompList::n_GetCharacter(const char* pcc_From) const
{
    return n_GetNumber(pcc_From, n_GetElementSize());
}

void CT_CompList::v_SetCharacter(char* pc_To, unsigned n_Character)
{
    v_SetNumber(pc_To, n_GetElementSize(), n_Character);
}

void CT_CompList::v_SetHandle(char* pc_To, unsigned n_Handle)
{
    v_SetNumber(pc_To, n_GetHandleSize(), n_Handle);
}

void CT_CompList::v_SetOffset(char* pc_To, unsigned n_Offset)
{
    v_SetNumber(pc_To, n_OffsetSize, n_Offset);
}

unsigned CT_CompList::n_GetEmptyStringHandle() const
{
    return b_HasEmptyStringSupport() ? pso_Header->n_EmptyStringHandle : NO_HANDLE;
}

void CT_CompList::v_SetEmptyStringHandle(unsigned n_Handle)
{
    if (b_HasEmptyStringSupport())
        pso_Header->n_EmptyStringHandle = n_Handle;
}

void CT_CompList::v_SetJumpOffset(unsigned n_Character, unsigned n_Position)
{
    const unsigned n_Letter = n_Character - 'a';
    if (n_Letter < 26)
        pso_Header->an4_JumpOffset[n_Letter] = n_Position;
}
