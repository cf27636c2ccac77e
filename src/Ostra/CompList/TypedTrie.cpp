// Ostra/CompList/TypedTrie.cpp: following and adding keys, reading and writing the stream.
#include <Ostra/CompList/TypedTrie.h>

#include <Ostra/CompList/AlternativeIndex.h>
#include <Ostra/CompList/CompListStream.h>
#include <Ostra/CompList/WeightOrder.h>

#include <cstdint>
#include <cstdlib>
#include <cstring>

static constexpr unsigned FIRST_ROOM = 256;
static constexpr unsigned LONGEST_RUN = 0x3FFFFFFF;

template <class T>
CT_TypedTrie<T>::CT_TypedTrie(const CT_CompList* pcco_List)
    : CT_LinkedTrie(pcco_List->n_GetHandleSize(), pcco_List->n_OffsetSize),
      p_Text(nullptr),
      n_TextUsed(0),
      n_TextRoom(0)
{}

template <class T>
CT_TypedTrie<T>::~CT_TypedTrie()
{
    std::free(p_Text);
}

// Makes room for so many elements more; 0 when the heap is exhausted.
template <class T>
int CT_TypedTrie<T>::b_MakeText(unsigned n_More)
{
    const std::uint64_t n_Wanted = std::uint64_t{n_TextUsed} + n_More;
    if (n_Wanted <= n_TextRoom)
        return 1;
    std::uint64_t n_Room = std::uint64_t{n_TextRoom} + n_TextRoom / 2 + FIRST_ROOM;
    n_Room = n_Room < n_Wanted ? n_Wanted : n_Room;
    if (n_Room > UINT32_MAX || n_Room > SIZE_MAX / sizeof(T))
        return 0;
    void* pv_New = std::realloc(p_Text, static_cast<std::size_t>(n_Room) * sizeof(T));
    if (!pv_New)
        return 0;
    p_Text = static_cast<T*>(pv_New);
    n_TextRoom = static_cast<unsigned>(n_Room);
    return 1;
}

// ---- Adding -------------------------------------------------------------------------------

template <class T>
static unsigned n_GetElement(const char* pcc_Key, unsigned n_At)
{
    return n_Load<T>(pcc_Key + std::size_t{n_At} * sizeof(T));
}

template <class T>
CT_LinkedTrie::et_Result CT_TypedTrie<T>::vec_Add(const char* pcc_Key, unsigned n_Handle,
                                                  unsigned n_Weight)
{
    if (n_Weight != 1 && !b_MakeWeights())
        return lr_Memory;
    st_Place so_Place = {};
    so_Place.b_Long = 0;
    if (n_Nodes)
        so_Place = so_Follow(pcc_Key);
    return so_Place.b_KeyEnds ? ec_AddEnd(&so_Place, n_Handle, n_Weight)
                              : ec_AddTail(&so_Place, pcc_Key, n_Handle, n_Weight);
}

// Follows a key until it ends, a leaf does, or elements differ with no other way on.
template <class T>
CT_LinkedTrie::st_Place CT_TypedTrie<T>::so_Follow(const char* pcc_Key) const
{
    st_Place so_Place = {};
    const unsigned n_Jump = n_GetJump(n_GetElement<T>(pcc_Key, 0));
    unsigned n_Head = n_Jump ? n_Jump - 1 : 0;
    for (unsigned n_At = 0;;) {
        so_Place.n_Within = 0;
        so_Place.n_Matched = n_At;
        if (!b_Find(n_Head, n_GetElement<T>(pcc_Key, n_At), &so_Place))
            return so_Place;
        const st_Node& so_Node = pso_Nodes[so_Place.n_Node];
        const T* p_Run = p_Text + so_Node.n_Text;
        unsigned n_Within = 1;
        unsigned n_Element = n_GetElement<T>(pcc_Key, ++n_At);
        // An element of the text is never the 0 that ends a key.
        while (n_Within < so_Node.n_Length && p_Run[n_Within] == n_Element) {
            ++n_Within;
            n_Element = n_GetElement<T>(pcc_Key, ++n_At);
        }
        so_Place.n_Within = n_Within;
        so_Place.n_Matched = n_At;
        so_Place.b_KeyEnds = !n_Element;
        if (!n_Element || n_Within < so_Node.n_Length || !so_Node.n_Child)
            return so_Place;
        n_Head = so_Node.n_Child;
    }
}

// The key ends where the trie goes on, or at an end that is there.
template <class T>
CT_LinkedTrie::et_Result CT_TypedTrie<T>::ec_AddEnd(const st_Place* pcso_Place, unsigned n_Handle,
                                                    unsigned n_Weight)
{
    const int b_Inside = pcso_Place->n_Within < pso_Nodes[pcso_Place->n_Node].n_Length;
    if (!b_Inside && pso_Nodes[pcso_Place->n_Node].b_End)
        return lr_Known;
    const unsigned n_Size = sizeof(T) + n_HandleBytes;
    if (!b_Fits(n_Size))
        return lr_Limit;
    if (!b_MakeNodes(1))
        return lr_Memory;
    if (b_Inside)
        v_Split(pcso_Place->n_Node, pcso_Place->n_Within);
    v_SetEnd(pcso_Place->n_Node, n_Handle, n_Weight);
    n_End += n_Size;
    return lr_Done;
}

// The rest of the key becomes a node: behind a leaf in the same branch, else in one of its own.
template <class T>
CT_LinkedTrie::et_Result CT_TypedTrie<T>::ec_AddTail(const st_Place* pcso_Place,
                                                     const char* pcc_Key, unsigned n_Handle,
                                                     unsigned n_Weight)
{
    const char* pcc_Rest = pcc_Key + std::size_t{pcso_Place->n_Matched} * sizeof(T);
    unsigned n_Rest = 0;
    while (n_Rest <= LONGEST_RUN && n_GetElement<T>(pcc_Rest, n_Rest))
        ++n_Rest;
    const int b_First = !n_Nodes;
    const int b_Inside = !b_First && pcso_Place->n_Within < pso_Nodes[pcso_Place->n_Node].n_Length;
    const unsigned n_Mark = b_Inside ? sizeof(T) + n_OffsetBytes : 0;
    const std::uint64_t n_Size = n_Mark + (std::uint64_t{n_Rest} + 1) * sizeof(T) + n_HandleBytes;
    if (n_Rest > LONGEST_RUN || !b_Fits(n_Size))
        return lr_Limit;
    if (!b_MakeNodes(2) || !b_MakeText(n_Rest) || !co_Chains.b_MakeRoom(2))
        return lr_Memory;

    const unsigned n_Tail = n_NewTail(pcc_Rest, n_Rest);
    v_SetEnd(n_Tail, n_Handle, n_Weight);
    pso_Nodes[n_Tail].b_Branch = b_First || b_Inside;
    if (b_Inside && pcso_Place->n_Within) {
        v_Split(pcso_Place->n_Node, pcso_Place->n_Within);
        pso_Nodes[pso_Nodes[pcso_Place->n_Node].n_Child].n_Next = n_Tail;
    } else if (b_Inside)
        v_Append(pcso_Place, n_Tail);
    else if (!b_First)
        pso_Nodes[pcso_Place->n_Node].n_Child = n_Tail;
    if (!pcso_Place->n_Matched)
        v_SetJump(pso_Nodes[n_Tail].n_First, n_Tail);
    n_End += static_cast<unsigned>(n_Size);
    return lr_Done;
}

// The first n_Within elements stay with the node, the others go to a new one below it.
template <class T>
void CT_TypedTrie<T>::v_Split(unsigned n_Node, unsigned n_Within)
{
    const unsigned n_Start = pso_Nodes[n_Node].n_Text + n_Within;
    const unsigned n_Lower = n_NewNode(n_Start, p_Text[n_Start]);
    st_Node& so_Upper = pso_Nodes[n_Node];
    st_Node& so_Lower = pso_Nodes[n_Lower];
    so_Lower.n_Length = so_Upper.n_Length - n_Within;
    so_Lower.b_End = so_Upper.b_End;
    so_Lower.n_Handle = so_Upper.n_Handle;
    so_Lower.n_Child = so_Upper.n_Child;
    if (pn_Weights)
        pn_Weights[n_Lower] = pn_Weights[n_Node];
    so_Upper.n_Length = n_Within;
    so_Upper.b_End = 0;
    so_Upper.n_Child = n_Lower;
}

template <class T>
unsigned CT_TypedTrie<T>::n_NewTail(const char* pcc_Rest, unsigned n_Length)
{
    const unsigned n_Tail = n_NewNode(n_TextUsed, n_GetElement<T>(pcc_Rest, 0));
    std::memcpy(p_Text + n_TextUsed, pcc_Rest, std::size_t{n_Length} * sizeof(T));
    n_TextUsed += n_Length;
    pso_Nodes[n_Tail].n_Length = n_Length;
    return n_Tail;
}

// ---- Reading ------------------------------------------------------------------------------

template <class T>
struct CT_TypedTrie<T>::st_Reader
{
    st_Reader(const CT_CompList* pcco_List)
        : pcco_From(pcco_List),
          so_Stream(pcco_List),
          pco_Branches(CT_AlternativeIndex::spco_New()),
          pco_Targets(CT_AlternativeIndex::spco_New())
    {}
    ~st_Reader()
    {
        CT_AlternativeIndex::sv_Delete(pco_Branches);
        CT_AlternativeIndex::sv_Delete(pco_Targets);
    }

    const CT_CompList* pcco_From;
    const typename CT_CompList::template st_Stream<T> so_Stream;
    unsigned n_At = sizeof(st_CompListHeader);
    unsigned n_Node = 0; // the newest one
    int b_Branch = 1;    // the next character begins a branch
    int b_Behind = 0;    // the next character stands behind an inner end
    // Numbers of nodes and positions of the stream: where the branches begin, and where the nodes'
    // alternatives lead.
    CT_AlternativeIndex* pco_Branches;
    CT_AlternativeIndex* pco_Targets;
};

static int b_IsHandleSize(unsigned n_Size)
{
    return n_Size <= 2 || n_Size == 4;
}

template <class T>
CT_LinkedTrie::et_Result CT_TypedTrie<T>::ec_Read(const CT_CompList* pcco_List)
{
    st_Reader so_Reader(pcco_List);
    if (!so_Reader.pco_Branches || !so_Reader.pco_Targets)
        return lr_Memory;
    if (!b_IsHandleSize(n_HandleBytes) || so_Reader.so_Stream.n_Limit < sizeof(st_CompListHeader))
        return lr_Foreign;
    const unsigned n_ListEnd = CT_CompList::ec_ListEnd;
    while (so_Reader.so_Stream.n_GetElement(so_Reader.n_At) != n_ListEnd) {
        const et_Result ec_Branch = ec_ReadBranch(&so_Reader);
        if (ec_Branch != lr_Done)
            return ec_Branch;
    }
    n_End = so_Reader.n_At + sizeof(T);
    if (n_End != pcco_List->n_GetEnd() || n_End != pcco_List->co_Buffer.n_GetUsedSize())
        return lr_Foreign;
    et_Result ec_Result = ec_LinkAlternatives(&so_Reader);
    if (ec_Result == lr_Done)
        ec_Result = ec_TakeJumps(&so_Reader, pcco_List->pso_Header);
    return ec_Result == lr_Done ? ec_IndexChains() : ec_Result;
}

// Reads items up to a leaf end.
template <class T>
CT_LinkedTrie::et_Result CT_TypedTrie<T>::ec_ReadBranch(st_Reader* pso_Reader)
{
    pso_Reader->b_Branch = 1;
    for (;;) {
        const unsigned n_Stored = pso_Reader->so_Stream.n_GetElement(pso_Reader->n_At);
        const int b_LeafEnd = n_Stored == CT_CompList::ec_LeafEnd;
        const int b_End = b_LeafEnd || n_Stored == CT_CompList::ec_InnerEnd;
        const et_Result ec_Item =
            b_End ? ec_ReadEnd(pso_Reader, n_Stored) : ec_ReadCharacter(pso_Reader, n_Stored);
        if (ec_Item != lr_Done || b_LeafEnd)
            return ec_Item;
    }
}

// Reads a character, with the mark of its alternative.
template <class T>
CT_LinkedTrie::et_Result CT_TypedTrie<T>::ec_ReadCharacter(st_Reader* pso_Reader, unsigned n_Stored)
{
    if (!n_Stored || CT_CompList::sb_IsReserved(n_Stored))
        return lr_Foreign;
    if (!b_MakeText(1) || !b_MakeNodes(1))
        return lr_Memory;
    const unsigned n_Target = pso_Reader->so_Stream.n_GetAlternative(pso_Reader->n_At);
    if (pso_Reader->b_Branch || pso_Reader->b_Behind || n_Target) {
        const unsigned n_Node = n_NewNode(n_TextUsed, n_Stored);
        if (pso_Reader->b_Branch) {
            pso_Nodes[n_Node].b_Branch = 1;
            if (!pso_Reader->pco_Branches->b_Add(n_Node, pso_Reader->n_At))
                return lr_Memory;
        } else
            pso_Nodes[pso_Reader->n_Node].n_Child = n_Node;
        if (n_Target && !pso_Reader->pco_Targets->b_Add(n_Node, n_Target))
            return lr_Memory;
        pso_Reader->n_Node = n_Node;
        pso_Reader->b_Branch = pso_Reader->b_Behind = 0;
    }
    p_Text[n_TextUsed++] = static_cast<T>(n_Stored);
    pso_Nodes[pso_Reader->n_Node].n_Length++;
    pso_Reader->n_At += sizeof(T) + (n_Target ? pso_Reader->so_Stream.n_MarkSize : 0);
    return lr_Done;
}

// Reads an inner or leaf end with its handle.
template <class T>
CT_LinkedTrie::et_Result CT_TypedTrie<T>::ec_ReadEnd(st_Reader* pso_Reader, unsigned n_Stored)
{
    const auto& so_Stream = pso_Reader->so_Stream;
    if (pso_Reader->b_Branch || pso_Reader->b_Behind ||
        so_Stream.n_EndSize >= so_Stream.n_Limit - pso_Reader->n_At)
        return lr_Foreign;
    st_Node& so_Node = pso_Nodes[pso_Reader->n_Node];
    so_Node.b_End = 1;
    so_Node.n_Handle = pso_Reader->pcco_From->n_GetHandle(pso_Reader->n_At + sizeof(T));
    pso_Reader->b_Behind = n_Stored == CT_CompList::ec_InnerEnd;
    pso_Reader->n_At += so_Stream.n_EndSize;
    return lr_Done;
}

// Every branch but the first has to be the alternative of one node, which stands in front of it.
template <class T>
CT_LinkedTrie::et_Result CT_TypedTrie<T>::ec_LinkAlternatives(st_Reader* pso_Reader)
{
    const CT_AlternativeIndex& co_Branches = *pso_Reader->pco_Branches;
    CT_AlternativeIndex& co_Targets = *pso_Reader->pco_Targets;
    co_Targets.v_Sort();
    if (n_Nodes && co_Targets.n_GetCount() + 1 != co_Branches.n_GetCount())
        return lr_Foreign;
    for (unsigned n_At = 0; n_At < co_Targets.n_GetCount(); ++n_At) {
        const unsigned n_From = co_Targets.n_GetPosition(n_At);
        const unsigned n_To = co_Branches.n_GetPosition(n_At + 1);
        if (co_Targets.n_GetTarget(n_At) != co_Branches.n_GetTarget(n_At + 1) || n_From >= n_To)
            return lr_Foreign;
        pso_Nodes[n_From].n_Next = n_To;
    }
    return lr_Done;
}

// Takes over the header's jump offsets, one a letter from a to z, 0 for none. A list that is sound
// keeps this of each: the branch that it names begins with its letter, and is one of those that
// keys begin with (the first branch and the alternatives behind it), the first there with that
// letter. Any other would lead a search into the midst of keys: such a block is foreign.
template <class T>
CT_LinkedTrie::et_Result CT_TypedTrie<T>::ec_TakeJumps(const st_Reader* pcso_Reader,
                                                       const st_CompListHeader* pcso_Header)
{
    unsigned an_Wanted[26]; // the offsets that weren't found to be so
    std::memcpy(an_Wanted, pcso_Header->an4_JumpOffset, sizeof an_Wanted);
    const CT_AlternativeIndex& co_Branches = *pcso_Reader->pco_Branches;
    for (unsigned n_At = 0; n_At < co_Branches.n_GetCount(); ++n_At) {
        const unsigned n_Node = co_Branches.n_GetPosition(n_At);
        const unsigned n_Letter = pso_Nodes[n_Node].n_First - 'a';
        if (n_Letter < 26 && an_Wanted[n_Letter] == co_Branches.n_GetTarget(n_At))
            an_Jump[n_Letter] = n_Node + 1;
    }
    // The branches that keys begin with, in the order of the search.
    for (unsigned n_Node = 0, n_Seen = 0; n_Node < n_Nodes;) {
        const unsigned n_Letter = pso_Nodes[n_Node].n_First - 'a';
        if (n_Letter < 26 && !(n_Seen >> n_Letter & 1)) {
            n_Seen |= 1U << n_Letter;
            if (an_Jump[n_Letter] == n_Node + 1)
                an_Wanted[n_Letter] = 0;
        }
        n_Node = pso_Nodes[n_Node].n_Next ? pso_Nodes[n_Node].n_Next : n_Nodes;
    }
    for (const unsigned n_Missed : an_Wanted) {
        if (n_Missed)
            return lr_Foreign;
    }
    return lr_Done;
}

// ---- Writing ------------------------------------------------------------------------------

template <class T>
struct CT_TypedTrie<T>::st_Writer
{
    void v_Put(const void* pcv_Bytes, std::size_t n_Size)
    {
        std::memcpy(pc_Block + n_At, pcv_Bytes, n_Size);
        n_At += static_cast<unsigned>(n_Size);
    }
    void v_PutElement(unsigned n_Element)
    {
        const T o_Element = static_cast<T>(n_Element);
        v_Put(&o_Element, sizeof o_Element);
    }

    st_CompListHeader* pso_Header;
    const unsigned* pcn_Jump; // of each letter the way + 1; 0 for none
    char* pc_Block;
    unsigned n_At;
    unsigned* pn_Marks; // where the marks stand that lead to the ways
};

// The branches as they come: a way is a node.
template <class T>
struct CT_TypedTrie<T>::st_AddedOrder
{
    unsigned n_GetWays() const { return n_Count; }
    unsigned n_GetNode(unsigned n_Way) const { return n_Way; }
    unsigned n_GetNext(unsigned n_Way) const { return pcso_All[n_Way].n_Next; }
    unsigned n_GetChild(unsigned n_Way) const { return pcso_All[n_Way].n_Child; }
    int b_GetBranch(unsigned* pn_Way)
    {
        while (n_At < n_Count && !pcso_All[n_At].b_Branch)
            ++n_At;
        *pn_Way = n_At;
        return n_At++ < n_Count;
    }
    const unsigned* pcn_GetJump() const { return pcn_Jump; }

    const st_Node* pcso_All;
    const unsigned* pcn_Jump;
    unsigned n_Count;
    unsigned n_At;
};

template <class T>
CT_LinkedTrie::et_Result CT_TypedTrie<T>::vec_Write(st_CompListHeader* pso_Header) const
{
    st_AddedOrder so_Order = {pso_Nodes, an_Jump, n_Nodes, 0};
    return ec_WriteInOrder(&so_Order, pso_Header);
}

template <class T>
CT_LinkedTrie::et_Result CT_TypedTrie<T>::vec_WriteByWeight(st_CompListHeader* pso_Header) const
{
    CT_WeightOrder co_Order(pso_Nodes, n_Nodes, pn_Weights);
    return co_Order.b_Make() ? ec_WriteInOrder(&co_Order, pso_Header) : lr_Memory;
}

template <class T>
template <class t_Order>
CT_LinkedTrie::et_Result CT_TypedTrie<T>::ec_WriteInOrder(t_Order* pco_Order,
                                                          st_CompListHeader* pso_Header) const
{
    unsigned* pn_Marks =
        static_cast<unsigned*>(std::calloc(pco_Order->n_GetWays() + 1, sizeof(unsigned)));
    if (!pn_Marks)
        return lr_Memory;
    st_Writer so_Writer = {pso_Header, pco_Order->pcn_GetJump(),
                           reinterpret_cast<char*>(pso_Header), sizeof(st_CompListHeader),
                           pn_Marks};
    int b_Fit = 1;
    for (unsigned n_Way; b_Fit && pco_Order->b_GetBranch(&n_Way);) {
        const unsigned n_First = pso_Nodes[pco_Order->n_GetNode(n_Way)].n_First;
        b_Fit = b_LeadHere(n_Way, n_First, &so_Writer);
        v_WriteBranch(n_Way, pco_Order, &so_Writer);
    }
    so_Writer.v_PutElement(CT_CompList::ec_ListEnd);
    std::free(pn_Marks);
    return b_Fit ? lr_Done : lr_Limit;
}

// Writes the offset of the mark that leads to the branch, and the jump offset.
template <class T>
int CT_TypedTrie<T>::b_LeadHere(unsigned n_Way, unsigned n_First, st_Writer* pso_Writer) const
{
    const unsigned n_Letter = n_First - 'a';
    if (n_Letter < 26 && pso_Writer->pcn_Jump[n_Letter] == n_Way + 1)
        pso_Writer->pso_Header->an4_JumpOffset[n_Letter] = pso_Writer->n_At;
    const unsigned n_Mark = pso_Writer->pn_Marks[n_Way];
    if (!n_Mark)
        return 1;
    const unsigned n_Offset = pso_Writer->n_At - n_Mark;
    // The low bytes come first.
    std::memcpy(pso_Writer->pc_Block + n_Mark + sizeof(T), &n_Offset, n_OffsetBytes);
    return n_OffsetBytes == 4 || n_Offset <= 0xFFFF;
}

template <class T>
template <class t_Order>
void CT_TypedTrie<T>::v_WriteBranch(unsigned n_Way, const t_Order* pcco_Order,
                                    st_Writer* pso_Writer) const
{
    for (;;) {
        const st_Node& so_Node = pso_Nodes[pcco_Order->n_GetNode(n_Way)];
        const T* p_Run = p_Text + so_Node.n_Text;
        pso_Writer->v_PutElement(so_Node.n_First);
        if (const unsigned n_Next = pcco_Order->n_GetNext(n_Way)) {
            const unsigned n_Unknown = 0;
            pso_Writer->pn_Marks[n_Next] = pso_Writer->n_At;
            pso_Writer->v_PutElement(CT_CompList::ec_Alternative);
            pso_Writer->v_Put(&n_Unknown, n_OffsetBytes);
        }
        pso_Writer->v_Put(p_Run + 1, (so_Node.n_Length - 1) * sizeof(T));
        n_Way = pcco_Order->n_GetChild(n_Way);
        if (so_Node.b_End) {
            pso_Writer->v_PutElement(n_Way ? +CT_CompList::ec_InnerEnd : +CT_CompList::ec_LeafEnd);
            // Kept: a handle is cut to its size.
            pso_Writer->v_Put(&so_Node.n_Handle, n_HandleBytes);
        }
        if (!n_Way)
            return;
    }
}

template class CT_TypedTrie<unsigned char>;
template class CT_TypedTrie<unsigned short>;
template class CT_TypedTrie<unsigned>;
