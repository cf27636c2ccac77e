// Ostra/CompList/CompListBuilder.h: builds large lists in one pass.
#pragma once

#include <Ostra/CompList/CompList.h>

class CT_LinkedTrie;

// Takes keys in any order and makes the block that adding them to a CT_CompList in that order would
// have left, byte for byte, in a time that is about linear in the bytes of the keys: it keeps the
// keys linked while they come, and writes the block once.
//
// On demand the block is the one that adding the keys in an order of the builder's would have left,
// in which searches pass the fewest alternatives; v_SetOrder tells.
//
// What can't be linked is added to a list key by key, at its pace: everything that is built on a
// block that isn't a sound list, and on from the first key of four-byte elements that holds a zero
// 16-bit unit in front of its end, which a list stores only in part. Such a block stays in the
// order in which keys were added.
//
// Units:   those of CT_CompList: a key is read in elements of the list's element size.
// Owns:    what it knows of the keys, 24 bytes for each place where keys part or end and the
//          elements of each stored tail, with room for half as much again; while that grows, or
//          the block is written, both exist. At its peak that is four times the block for a
//          dictionary in two-byte elements, five to six times for a list of words in bytes, and
//          ten times for keys of two bytes. Weights take 4 bytes more a place, and building by
//          weight up to 28 for its time.
// Reports: 60006 when the heap is exhausted; 60012 for a key that holds the element 10, 13, 25 or
//          26, which the stream reserves; 60021 when an offset outgrows 16 bits without long offset
//          support, or the block 32 bits. A key that was reported isn't added, and what was built
//          stays whole.
// Caller:  gives blocks that are lists.
// Threads: one thread at a time.
class OSTRA_API CT_CompListBuilder
{
public:
    enum et_Order
    {
        bo_AsAdded,
        bo_ByWeight
    };

    // ---- Construction ---------------------------------------------------------------------

    // The parameters of a new list.
    CT_CompListBuilder(CT_CompList::et_ElementSize ec_ElementSize, unsigned n_HandleSize,
                       int b_EmptyStringSupport, int b_LongOffsetSupport, unsigned n_Growth,
                       unsigned n_CodePage);
    // Goes on from a list, or from its block, which is read and not held.
    explicit CT_CompListBuilder(const CT_CompList* pcco_List);
    explicit CT_CompListBuilder(const CT_Buffer* pcco_Buffer);
    ~CT_CompListBuilder();
    CT_CompListBuilder(const CT_CompListBuilder&) = delete;
    CT_CompListBuilder& operator=(const CT_CompListBuilder&) = delete;

    // Starts anew. On a report the builder stays what it was.
    void v_Set(CT_CompList::et_ElementSize ec_ElementSize, unsigned n_HandleSize,
               int b_EmptyStringSupport, int b_LongOffsetSupport, unsigned n_Growth,
               unsigned n_CodePage);
    void v_Set(const CT_CompList* pcco_List);
    void v_Set(const CT_Buffer* pcco_Buffer);

    static void* operator new(std::size_t n_Size) noexcept;
    static void* operator new(std::size_t, void* pv_Place) noexcept { return pv_Place; }
    static void operator delete(void* pv_Object);

    // ---- Access ---------------------------------------------------------------------------

    // Of the list as built so far.
    unsigned n_GetEnd() const;
    unsigned n_GetNrOfEntries() const;
    et_Order ec_GetOrder() const;

    // ---- Change ---------------------------------------------------------------------------

    // Adds a key: 1 when it was added, 0 when it was there, which keeps its handle, or when it was
    // reported. The empty key needs empty string support; each time it takes the new handle and
    // counts as an entry.
    int b_Add(const char* qccz_Key, unsigned n_Handle);
    int b_Add(const unsigned short* qcuz_Key, unsigned n_Handle);
    int b_Add(const CT_CString* pcco_Key, unsigned n_Handle);
    int b_Add(const CT_UString* pcco_Key, unsigned n_Handle);

    // The same for a key with a weight, such as how often it will be asked for; others weigh 1. A
    // key that is there keeps its weight, too, and keys of a list that was read weigh 1.
    int b_Add(const char* qccz_Key, unsigned n_Handle, unsigned n_Weight);
    int b_Add(const unsigned short* qcuz_Key, unsigned n_Handle, unsigned n_Weight);
    int b_Add(const CT_CString* pcco_Key, unsigned n_Handle, unsigned n_Weight);
    int b_Add(const CT_UString* pcco_Key, unsigned n_Handle, unsigned n_Weight);

    // Tells the order of what is built from now on, at any time; it stays when the builder starts
    // anew. By weight, at each place the branch whose keys weigh most together comes first, among
    // equals the one that was added first; but where keys begin the letters a to z, to which
    // searches jump, come last. Branches are made breadth first, and depth first below places with
    // few keys. So searches pass few alternatives, and those of busy places lie together. The list
    // answers alike in each order; its iterators come in the order of the block.
    void v_SetOrder(et_Order ec_NewOrder);

    // Gives the block of the list, which nobody else holds. The builder may go on and build again.
    // On a report the argument stays what it was.
    void v_Build(CT_Buffer* pco_Buffer) const;
    void v_Build(CT_CompList* pco_List) const;

private:
    // ---- Life -----------------------------------------------------------------------------

    void v_Null();
    void v_Init(const CT_CompList* pcco_List);
    void v_InitLinked(const CT_CompList* pcco_List, CT_LinkedTrie* pco_NewTrie);
    void v_InitList(const CT_Buffer* pcco_Buffer);
    void v_Forget();

    // ---- Work -----------------------------------------------------------------------------

    int b_AddKey(const char* pcc_Key, unsigned n_Handle, unsigned n_Weight);
    int b_AddEmptyKey(unsigned n_Handle);
    int b_AddLinked(const char* pcc_Key, unsigned n_Handle, unsigned n_Weight);
    int b_AddToList(const char* pcc_Key, unsigned n_Handle);
    int b_HoldsReserved(const char* pcc_Key) const;
    int b_IsCut(const char* pcc_Key) const;
    void v_BuildLinked(CT_Buffer* pco_Buffer) const;
    void v_CopyList(CT_Buffer* pco_Buffer) const;
    const st_CompListHeader& so_GetHeader() const;

    // One of the two; none when the heap was exhausted at the start.
    CT_LinkedTrie* pco_Trie;
    CT_CompList* pco_List;
    // With the trie: the head as far as it is known, and what the buffer of the list would have.
    st_CompListHeader so_Header;
    unsigned n_Growth;
    unsigned n_Maximum;
    et_Order ec_Order = bo_AsAdded;
};
