// Ostra/CompList/CompListBuilder.cpp
#include <Ostra/CompList/CompListBuilder.h>

#include <Ostra/CompList/CompListStream.h>
#include <Ostra/CompList/CompListText.h>
#include <Ostra/CompList/ElementSize.h>
#include <Ostra/CompList/TypedTrie.h>
#include <Ostra/Frame/Codes.h>
#include <Ostra/Frame/Report.h>
#include <Ostra/Frame/Text.h>

#include <cstdlib>
#include <cstring>

static constexpr char qccz_Source[] = "Ostra/CompList/CompListBuilder";

// ---- Construction -------------------------------------------------------------------------

CT_CompListBuilder::CT_CompListBuilder(CT_CompList::et_ElementSize ec_ElementSize,
                                       unsigned n_HandleSize, int b_EmptyStringSupport,
                                       int b_LongOffsetSupport, unsigned n_NewGrowth,
                                       unsigned n_CodePage)
{
    v_Null();
    v_Set(ec_ElementSize, n_HandleSize, b_EmptyStringSupport, b_LongOffsetSupport, n_NewGrowth,
          n_CodePage);
}

CT_CompListBuilder::CT_CompListBuilder(const CT_CompList* pcco_List)
{
    v_Null();
    v_Init(pcco_List);
}

CT_CompListBuilder::CT_CompListBuilder(const CT_Buffer* pcco_Buffer)
{
    v_Null();
    v_Set(pcco_Buffer);
}

CT_CompListBuilder::~CT_CompListBuilder()
{
    v_Forget();
}

void CT_CompListBuilder::v_Set(CT_CompList::et_ElementSize ec_ElementSize, unsigned n_HandleSize,
                               int b_EmptyStringSupport, int b_LongOffsetSupport,
                               unsigned n_NewGrowth, unsigned n_CodePage)
{
    const CT_CompList co_New(ec_ElementSize, n_HandleSize, b_EmptyStringSupport,
                             b_LongOffsetSupport, n_NewGrowth, n_CodePage);
    if (co_New.pcco_GetBuffer())
        v_Init(&co_New);
    else
        CT_Report::sb_Failed(qccz_Source);
}

void CT_CompListBuilder::v_Set(const CT_CompList* pcco_List)
{
    v_Init(pcco_List);
}

void CT_CompListBuilder::v_Set(const CT_Buffer* pcco_Buffer)
{
    const CT_CompList co_List(pcco_Buffer);
    v_Init(&co_List);
}

void* CT_CompListBuilder::operator new(std::size_t n_Size) noexcept
{
    return CT_Report::spv_New(n_Size, qccz_Source);
}

void CT_CompListBuilder::operator delete(void* pv_Object)
{
    std::free(pv_Object);
}

// ---- Life ---------------------------------------------------------------------------------

void CT_CompListBuilder::v_Null()
{
    pco_Trie = nullptr;
    pco_List = nullptr;
    so_Header = {};
    n_Growth = 0;
    n_Maximum = 0;
}

void CT_CompListBuilder::v_Forget()
{
    delete pco_Trie;
    delete pco_List;
    v_Null();
}

template <class T>
static CT_LinkedTrie* pco_ReadElements(const CT_CompList* pcco_List,
                                       CT_LinkedTrie::et_Result* pec_Result)
{
    CT_TypedTrie<T>* pco_Trie = new CT_TypedTrie<T>(pcco_List);
    *pec_Result = pco_Trie ? pco_Trie->ec_Read(pcco_List) : CT_LinkedTrie::lr_Memory;
    if (*pec_Result != CT_LinkedTrie::lr_Done) {
        delete pco_Trie;
        pco_Trie = nullptr;
    }
    return pco_Trie;
}

// The trie of a list. Null when the result isn't lr_Done.
static CT_LinkedTrie* pco_ReadTrie(const CT_CompList* pcco_List,
                                   CT_LinkedTrie::et_Result* pec_Result)
{
    *pec_Result = CT_LinkedTrie::lr_Foreign;
    return o_ForElement(
        pcco_List->n_GetElementSize(),
        [&](auto o_Type) { return pco_ReadElements<decltype(o_Type)>(pcco_List, pec_Result); },
        []() -> CT_LinkedTrie* { return nullptr; });
}

void CT_CompListBuilder::v_Init(const CT_CompList* pcco_List)
{
    CT_LinkedTrie::et_Result ec_Result;
    CT_LinkedTrie* pco_NewTrie = pco_ReadTrie(pcco_List, &ec_Result);
    if (pco_NewTrie)
        v_InitLinked(pcco_List, pco_NewTrie);
    else if (ec_Result == CT_LinkedTrie::lr_Foreign)
        v_InitList(&pcco_List->co_Buffer);
    else
        CT_Report::sv_Memory(qccz_Source);
}

void CT_CompListBuilder::v_InitLinked(const CT_CompList* pcco_List, CT_LinkedTrie* pco_NewTrie)
{
    v_Forget();
    pco_Trie = pco_NewTrie;
    so_Header = *pcco_List->pso_Header;
    n_Growth = pcco_List->co_Buffer.n_GetGrowth();
    n_Maximum = pcco_List->co_Buffer.n_GetMaximumSize();
}

// Goes on with a list of a block of its own: what is added must not show in the one handed in.
void CT_CompListBuilder::v_InitList(const CT_Buffer* pcco_Buffer)
{
    CT_Buffer co_Own(pcco_Buffer);
    co_Own.v_CopyWeWrite();
    CT_CompList* pco_New = nullptr;
    if (co_Own.n_GetUseCount() == 1)
        pco_New = new CT_CompList(&co_Own);
    if (!pco_New) {
        CT_Report::sb_Failed(qccz_Source);
        return;
    }
    v_Forget();
    pco_List = pco_New;
}

// ---- Access -------------------------------------------------------------------------------

const st_CompListHeader& CT_CompListBuilder::so_GetHeader() const
{
    return pco_List ? *pco_List->pso_Header : so_Header;
}

unsigned CT_CompListBuilder::n_GetEnd() const
{
    return pco_Trie ? pco_Trie->n_GetEnd() : so_GetHeader().n_End;
}

unsigned CT_CompListBuilder::n_GetNrOfEntries() const
{
    return so_GetHeader().n_NrOfEntries;
}

CT_CompListBuilder::et_Order CT_CompListBuilder::ec_GetOrder() const
{
    return ec_Order;
}

// ---- Adding -------------------------------------------------------------------------------

int CT_CompListBuilder::b_Add(const char* qccz_Key, unsigned n_Handle)
{
    return b_AddKey(pcc_Text(qccz_Key), n_Handle, 1);
}

int CT_CompListBuilder::b_Add(const unsigned short* qcuz_Key, unsigned n_Handle)
{
    return b_AddKey(pcc_Text(qcuz_Key), n_Handle, 1);
}

int CT_CompListBuilder::b_Add(const CT_CString* pcco_Key, unsigned n_Handle)
{
    return b_AddKey(pcc_Text(pcco_Key), n_Handle, 1);
}

int CT_CompListBuilder::b_Add(const CT_UString* pcco_Key, unsigned n_Handle)
{
    return b_AddKey(pcc_Text(pcco_Key), n_Handle, 1);
}

int CT_CompListBuilder::b_Add(const char* qccz_Key, unsigned n_Handle, unsigned n_Weight)
{
    return b_AddKey(pcc_Text(qccz_Key), n_Handle, n_Weight);
}

int CT_CompListBuilder::b_Add(const unsigned short* qcuz_Key, unsigned n_Handle, unsigned n_Weight)
{
    return b_AddKey(pcc_Text(qcuz_Key), n_Handle, n_Weight);
}

int CT_CompListBuilder::b_Add(const CT_CString* pcco_Key, unsigned n_Handle, unsigned n_Weight)
{
    return b_AddKey(pcc_Text(pcco_Key), n_Handle, n_Weight);
}

int CT_CompListBuilder::b_Add(const CT_UString* pcco_Key, unsigned n_Handle, unsigned n_Weight)
{
    return b_AddKey(pcc_Text(pcco_Key), n_Handle, n_Weight);
}

int CT_CompListBuilder::b_AddKey(const char* pcc_Key, unsigned n_Handle, unsigned n_Weight)
{
    if (b_HoldsReserved(pcc_Key)) {
        CT_Report::sv_Format(qccz_Source, SEMANTIC_ERROR, SEMANTIC_ERROR,
                             qcuz_Text(u"reserved element in a key"));
        return 0;
    }
    if (pco_List || b_IsCut(pcc_Key))
        return b_AddToList(pcc_Key, n_Handle);
    return pco_Trie ? b_AddLinked(pcc_Key, n_Handle, n_Weight) : 0;
}

template <class T>
static T o_ElementAt(const char* pcc_Key, std::size_t n_At)
{
    return static_cast<T>(n_Load<T>(pcc_Key + n_At * sizeof(T)));
}

template <class T, class t_Test>
static int b_HoldsAny(const char* pcc_Key, t_Test f_Test)
{
    for (std::size_t n_At = 0; const T o_Element = o_ElementAt<T>(pcc_Key, n_At); ++n_At) {
        if (f_Test(o_Element))
            return 1;
    }
    return 0;
}

int CT_CompListBuilder::b_HoldsReserved(const char* pcc_Key) const
{
    return o_ForElement(
        so_GetHeader().n1_ElementSize,
        [&](auto o_Type) {
            return b_HoldsAny<decltype(o_Type)>(pcc_Key, CT_CompList::sb_IsReserved);
        },
        [] { return 0; });
}

// Whether a list stores only a part of the key, as it measures it in units of two bytes.
int CT_CompListBuilder::b_IsCut(const char* pcc_Key) const
{
    return so_GetHeader().n1_ElementSize == 4 &&
           b_HoldsAny<unsigned>(pcc_Key, [](unsigned n_Element) {
               return !(n_Element & 0xFFFF) || !(n_Element >> 16);
           });
}

int CT_CompListBuilder::b_AddLinked(const char* pcc_Key, unsigned n_Handle, unsigned n_Weight)
{
    if (!std::memcmp(pcc_Key, &n4_NoKey, so_Header.n1_ElementSize))
        return b_AddEmptyKey(n_Handle);
    switch (pco_Trie->vec_Add(pcc_Key, n_Handle, n_Weight)) {
    case CT_LinkedTrie::lr_Done:
        ++so_Header.n_NrOfEntries;
        return 1;
    case CT_LinkedTrie::lr_Known:
        return 0;
    case CT_LinkedTrie::lr_Memory:
        CT_Report::sv_Memory(qccz_Source);
        return 0;
    default:
        CT_Report::sv_Format(qccz_Source, LIMITS_VIOLATED, LIMITS_VIOLATED);
        return 0;
    }
}

int CT_CompListBuilder::b_AddEmptyKey(unsigned n_Handle)
{
    if (!(so_Header.n1_Flags & CT_CompList::EMPTY_STRING_SUPPORT))
        return 0;
    // Kept: an earlier handle is replaced, and yet one more entry is counted.
    so_Header.n_EmptyStringHandle = n_Handle;
    ++so_Header.n_NrOfEntries;
    return 1;
}

int CT_CompListBuilder::b_AddToList(const char* pcc_Key, unsigned n_Handle)
{
    if (!pco_List && pco_Trie) {
        CT_Buffer co_Block;
        v_Build(&co_Block);
        if (co_Block.qcv_Get())
            v_InitList(&co_Block);
    }
    return pco_List ? pco_List->b_Add(pcc_Key, n_Handle) : 0;
}

// ---- Building -----------------------------------------------------------------------------

void CT_CompListBuilder::v_SetOrder(et_Order ec_NewOrder)
{
    ec_Order = ec_NewOrder;
}

void CT_CompListBuilder::v_Build(CT_Buffer* pco_Buffer) const
{
    if (pco_Trie)
        v_BuildLinked(pco_Buffer);
    else if (pco_List)
        v_CopyList(pco_Buffer);
}

void CT_CompListBuilder::v_Build(CT_CompList* pco_Result) const
{
    CT_Buffer co_Block;
    v_Build(&co_Block);
    if (co_Block.qcv_Get())
        pco_Result->v_Set(&co_Block);
}

void CT_CompListBuilder::v_BuildLinked(CT_Buffer* pco_Buffer) const
{
    const unsigned n_End = pco_Trie->n_GetEnd();
    CT_Buffer co_Block;
    // Kept: a list that outgrew its first block has one of the smallest steps.
    co_Block.v_SetGrowth(n_End > n_Maximum ? COPY_GROWTH : n_Growth);
    co_Block.v_SetSize(n_End > n_Maximum ? n_End : n_Maximum, 0);
    if (co_Block.n_GetMaximumSize() < n_End) {
        CT_Report::sb_Failed(qccz_Source);
        return;
    }
    co_Block.v_SetUsedSize(n_End);
    st_CompListHeader* pso_Block =
        static_cast<st_CompListHeader*>(const_cast<void*>(co_Block.qcv_Get()));
    *pso_Block = so_Header;
    pso_Block->n_End = n_End;
    switch (ec_Order == bo_ByWeight ? pco_Trie->vec_WriteByWeight(pso_Block)
                                    : pco_Trie->vec_Write(pso_Block)) {
    case CT_LinkedTrie::lr_Done:
        pco_Buffer->v_Set(&co_Block);
        return;
    case CT_LinkedTrie::lr_Memory:
        CT_Report::sv_Memory(qccz_Source);
        return;
    default:
        CT_Report::sv_Format(qccz_Source, LIMITS_VIOLATED, LIMITS_VIOLATED);
    }
}

void CT_CompListBuilder::v_CopyList(CT_Buffer* pco_Buffer) const
{
    CT_Buffer co_Block(&pco_List->co_Buffer);
    co_Block.v_CopyWeWrite();
    if (co_Block.n_GetUseCount() == 1)
        pco_Buffer->v_Set(&co_Block);
    else
        CT_Report::sb_Failed(qccz_Source);
}
