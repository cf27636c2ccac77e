// Ostra/CompList/CompList.h: a lexicon in one relocatable block of bytes.
#pragma once

#include <Ostra/Buffer/Buffer.h>
#include <Ostra/Frame/Export.h>

#include <cstddef>

class CT_AlternativeIndex;
class CT_CString;
class CT_UString;
template <class T>
class CT_TypedTrie;

// The head of a list's block; the stream of elements follows it at byte 132.
// docs/formats/compressed-list.md tells both.
//
//   offset  size  field
//        0     4  n_Magic                19970101
//        4     4  n_End                  byte position behind the last element of the stream
//        8     4  n_CodePage             as given; stored and reported, never used
//       12     4  n_EmptyStringHandle    0xFFFFFFFF until the empty string is added
//       16   104  an4_JumpOffset         for a to z: where the keys with that letter begin; 0: none
//      120     4  n_NrOfEntries
//      124     1  n1_NetworkByteOrder    written 0
//      125     1  n1_ElementSize         1, 2 or 4
//      126     1  n1_HandleSize          0, 1, 2 or 4
//      127     1  n1_Flags               bit 0: empty string support; bit 1: long offset support
//      128     1  n1_Format              written 1, never read
//      129     3  an1_Reserved           written 0, never read
struct st_CompListHeader
{
    unsigned n_Magic;
    unsigned n_End;
    unsigned n_CodePage;
    unsigned n_EmptyStringHandle;
    unsigned an4_JumpOffset[26];
    unsigned n_NrOfEntries;
    unsigned char n1_NetworkByteOrder;
    unsigned char n1_ElementSize;
    unsigned char n1_HandleSize;
    unsigned char n1_Flags;
    unsigned char n1_Format;
    unsigned char an1_Reserved[3];
};

// A map from zero-terminated keys to small numbers, the handles: a trie of characters in one block
// without pointers, which is its stored form as it stands. A list is built once by adding keys,
// then searched; nothing is removed. Adding takes a time on the order of the list's size;
// CT_CompListBuilder makes large lists.
//
// Units:   a key is read in elements of the list's element size, whatever the type of the pointer.
// Owns:    its hold on the block; a list made from a list or a buffer shares the block.
// Reports: 60021 when keys are gathered and outgrow 32 bits; 60006 comes from the buffer when the
//          heap is exhausted.
// Caller:  gives keys without the elements 10, 13, 25 and 26, which the stream reserves, and blocks
//          that are lists; shares a block only for reading: a key added through one holder may show
//          in the other.
// Threads: several may search a list that doesn't change; adding takes one thread at a time.
class OSTRA_API CT_CompList
{
public:
    // The width of an element in bytes.
    enum et_ElementSize : int
    {
        es_Byte = 1,
        es_Short = 2,
        es_Long = 4
    };

    // ---- Construction ---------------------------------------------------------------------

    // A new list. Handles are cut to n_HandleSize bytes: 0, 1, 2 or 4. Without long offset support
    // a branch reaches 65535 bytes at most. A growth below 128 bytes counts as 128.
    CT_CompList(et_ElementSize ec_ElementSize, unsigned n_HandleSize, int b_EmptyStringSupport,
                int b_LongOffsetSupport, unsigned n_Growth, unsigned n_CodePage);
    // Shares the block. A buffer is taken for a list at its word.
    explicit CT_CompList(const CT_CompList* pcco_List);
    explicit CT_CompList(const CT_Buffer* pcco_Buffer);
    ~CT_CompList();
    CT_CompList(const CT_CompList&) = delete;
    CT_CompList& operator=(const CT_CompList&) = delete;

    // Like the constructors. A new list that finds no memory leaves this one as it was.
    void v_Set(et_ElementSize ec_ElementSize, unsigned n_HandleSize, int b_EmptyStringSupport,
               int b_LongOffsetSupport, unsigned n_Growth, unsigned n_CodePage);
    void v_Set(const CT_CompList* pcco_List);
    void v_Set(const CT_Buffer* pcco_Buffer);

    static void* operator new(std::size_t n_Size) noexcept;
    static void* operator new(std::size_t, void* pv_Place) noexcept { return pv_Place; }
    static void operator delete(void* pv_Object);

    // ---- Access ---------------------------------------------------------------------------

    unsigned n_GetElementSize() const { return pso_Header->n1_ElementSize; }
    unsigned n_GetHandleSize() const { return pso_Header->n1_HandleSize; }
    // The bytes of the block that the list takes.
    unsigned n_GetEnd() const { return pso_Header->n_End; }
    unsigned n_GetNrOfEntries() const { return pso_Header->n_NrOfEntries; }
    unsigned n_GetCodePage() const { return pso_Header->n_CodePage; }
    // The bit of the flag, 1 and 2, not 1 for both.
    int b_HasEmptyStringSupport() const { return pso_Header->n1_Flags & EMPTY_STRING_SUPPORT; }
    int b_HasLongOffsetSupport() const { return pso_Header->n1_Flags & LONG_OFFSET_SUPPORT; }
    // A list that holds only the empty string is empty.
    int b_IsEmpty() const { return n_GetEnd() == n_FirstPosition + n_GetElementSize(); }
    // Whether bytes were inserted since the list was made or set.
    int b_IsChanged() const { return b_Changed; }
    int b_IsInNetworkByteOrder() const { return pso_Header->n1_NetworkByteOrder; }
    // The block; null when the list has none.
    const CT_Buffer* pcco_GetBuffer() const { return co_Buffer.qcv_Get() ? &co_Buffer : nullptr; }

    // ---- Search ---------------------------------------------------------------------------

    // The key's handle; 0xFFFFFFFF when it isn't there. n_Matched may be null; it takes the number
    // of elements that were followed, and 0 where elements differ with no other way on. The empty
    // key without empty string support has handle 0.
    unsigned n_Search(const char* qccz_Key, unsigned* pn_Matched) const;
    unsigned n_Search(const unsigned short* qcuz_Key, unsigned* pn_Matched) const;
    unsigned n_Search(const CT_CString* pcco_Key, unsigned* pn_Matched) const;
    unsigned n_Search(const CT_UString* pcco_Key, unsigned* pn_Matched) const;
    // Whether n_Search gives anything but 0xFFFFFFFF: not so for a key with that very handle.
    int b_Search(const char* qccz_Key, unsigned* pn_Matched) const;
    int b_Search(const unsigned short* qcuz_Key, unsigned* pn_Matched) const;
    int b_Search(const CT_CString* pcco_Key, unsigned* pn_Matched) const;
    int b_Search(const CT_UString* pcco_Key, unsigned* pn_Matched) const;

    // n_Search for each of n_Count keys, many side by side: while one waits for the memory the
    // others go on, so a large list answers many keys in a fraction of the time. pn_Handles takes
    // the handles, in the order of the keys, and pn_Matched, which may be null, what was matched.
    void v_SearchAll(const char* const* pqccz_Keys, unsigned n_Count, unsigned* pn_Handles,
                     unsigned* pn_Matched) const;
    void v_SearchAll(const unsigned short* const* pqcuz_Keys, unsigned n_Count,
                     unsigned* pn_Handles, unsigned* pn_Matched) const;
    void v_SearchAll(const CT_CString* const* ppcco_Keys, unsigned n_Count, unsigned* pn_Handles,
                     unsigned* pn_Matched) const;
    void v_SearchAll(const CT_UString* const* ppcco_Keys, unsigned n_Count, unsigned* pn_Handles,
                     unsigned* pn_Matched) const;

    // ---- Contents -------------------------------------------------------------------------

    // Appends all keys with their handles to the caller's buffers, in the order in which an
    // iterator hands them out, and without a block for each: to pco_Keys the keys in elements of
    // the list, each with its zero element; to pco_Places for each key the byte position in
    // pco_Keys at which it begins, and to pco_Handles its handle, both as numbers of 4 bytes. The
    // last two may be null. No key is the empty string.
    //
    // When the heap is exhausted, or pco_Keys would outgrow 32 bits, the buffers are left with what
    // they held. Of a damaged list it takes the keys up to where the damage shows.
    void v_GetAll(CT_Buffer* pco_Keys, CT_Buffer* pco_Places, CT_Buffer* pco_Handles) const;

    // ---- Change ---------------------------------------------------------------------------

    // Adds a key: 1 when it was added, 0 when it was there, which keeps its handle, or when the
    // heap is exhausted. The empty key needs empty string support; each time it takes the new
    // handle and counts as an entry.
    int b_Add(const char* qccz_Key, unsigned n_Handle);
    int b_Add(const unsigned short* qcuz_Key, unsigned n_Handle);
    int b_Add(const CT_CString* pcco_Key, unsigned n_Handle);
    int b_Add(const CT_UString* pcco_Key, unsigned n_Handle);

private:
    friend class CT_CompListIterator;
    friend struct CompListPeer; // tests of the walk
    friend class CT_CompListBuilder;
    template <class T>
    friend class CT_TypedTrie;

    enum et_WalkMode
    {
        wm_Search,
        wm_Match,
        wm_Add
    };

    // What an element of the stream says when it is no character.
    enum et_Element : unsigned
    {
        ec_InnerEnd = 10,
        ec_Alternative = 13,
        ec_ListEnd = 25,
        ec_LeafEnd = 26
    };

    enum et_Flag
    {
        EMPTY_STRING_SUPPORT = 1,
        LONG_OFFSET_SUPPORT = 2
    };

    // Why following a key came to a stop.
    enum et_Stop
    {
        ws_KeyEnds,
        ws_BranchEnds,
        ws_Differs
    };
    struct st_Walk;
    template <class T>
    struct st_Stream;
    struct st_Keys;
    template <class T, class t_Offset>
    struct st_Lanes;
    struct st_Tail;
    template <class T>
    struct st_Gathering;

    // ---- Life -----------------------------------------------------------------------------

    void v_Null();
    void v_Init(et_ElementSize ec_ElementSize, unsigned n_HandleSize, int b_EmptyStringSupport,
                int b_LongOffsetSupport, unsigned n_Growth, unsigned n_CodePage);
    void v_Init(const CT_CompList* pcco_List);
    void v_Init(const CT_Buffer* pcco_Buffer);
    void v_Forget();
    void v_TakeHeader();
    void v_WriteHeader(et_ElementSize ec_ElementSize, unsigned n_HandleSize,
                       int b_EmptyStringSupport, int b_LongOffsetSupport, unsigned n_CodePage);
    void v_SetOffsetSize();

    // ---- Numbers --------------------------------------------------------------------------

    static int sb_IsReserved(unsigned n_Element)
    {
        return n_Element == ec_InnerEnd || n_Element == ec_Alternative || n_Element == ec_ListEnd ||
               n_Element == ec_LeafEnd;
    }
    unsigned n_GetNumber(const char* pcc_From, unsigned n_Size) const;
    void v_SetNumber(char* pc_To, unsigned n_Size, unsigned n_Value);
    unsigned n_GetCharacter(const char* pcc_From) const;
    void v_SetCharacter(char* pc_To, unsigned n_Character);
    unsigned n_GetHandle(unsigned n_Position) const;
    void v_SetHandle(char* pc_To, unsigned n_Handle);
    void v_SetOffset(char* pc_To, unsigned n_Offset);
    unsigned n_GetEmptyStringHandle() const;
    void v_SetEmptyStringHandle(unsigned n_Handle);
    // Where the keys with that first element begin; 0 for an element that isn't one of a to z, or
    // has no key yet.
    unsigned n_GetJumpOffset(unsigned n_Character) const
    {
        const unsigned n_Letter = n_Character - 'a';
        return n_Letter < 26 ? pso_Header->an4_JumpOffset[n_Letter] : 0;
    }
    void v_SetJumpOffset(unsigned n_Character, unsigned n_Position);

    // ---- Walk -----------------------------------------------------------------------------

    unsigned n_Walk(const char* pcc_Key, et_WalkMode ec_Mode, unsigned n_Handle,
                    unsigned* pn_Matched);
    template <class T>
    unsigned n_WalkElements(const char* pcc_Key, et_WalkMode ec_Mode, unsigned n_Handle,
                            unsigned* pn_Matched);
    unsigned n_WalkEmptyKey(et_WalkMode ec_Mode, unsigned n_Handle, unsigned* pn_Matched);
    template <class T>
    unsigned n_Answer(const st_Walk* pcso_Walk, et_Stop ec_Stop, et_WalkMode ec_Mode,
                      unsigned* pn_Matched) const;
    unsigned n_Extend(const st_Walk* pcso_Walk, et_Stop ec_Stop, unsigned n_Handle);
    unsigned n_AddInnerEnd(const st_Walk* pcso_Walk, unsigned n_Handle);
    unsigned n_AddBehindEnd(const st_Walk* pcso_Walk, unsigned n_Handle);
    unsigned n_AddAlternative(const st_Walk* pcso_Walk, unsigned n_Handle);
    int b_AddTail(const st_Walk* pcso_Walk, unsigned n_Position, unsigned n_Handle);
    int b_AddKey(const char* pcc_Key, unsigned n_Handle);
    unsigned n_SearchKey(const char* pcc_Key, unsigned* pn_Matched) const;
    void v_SearchKeys(const st_Keys* pcso_Keys) const;
    unsigned n_GetKeySize(const char* pcc_Key) const;
    unsigned n_GetLimit() const;

    // ---- Gaps -----------------------------------------------------------------------------

    char* pc_InsertBytes(unsigned n_Position, unsigned n_Count);
    void v_OpenGap(unsigned n_Position, unsigned n_Count);
    void v_RemoveBytes(unsigned n_Position, unsigned n_Count);
    void v_RecalcAltPos(unsigned n_Position, unsigned n_Count);
    template <class T>
    void v_RecalcOffsets(unsigned n_Position, unsigned n_Count);
    void v_PrepareIndex(const char* pcc_Key);
    int b_IsPlainKey(const char* pcc_Key) const;
    int b_BuildIndex();
    template <class T>
    int b_CollectAlternatives();
    template <class T>
    int b_VerifyTargets() const;
    void v_NoteAlternative(unsigned n_Position, unsigned n_Target);
    void v_FollowGap(unsigned n_Position, unsigned n_Count);
    void v_ScanFromNow();
    void v_DropIndex();
    char* pc_GetAt(unsigned n_Position) { return reinterpret_cast<char*>(pso_Header) + n_Position; }

    // The order of the members is part of the interface.
    CT_Buffer co_Buffer; // the block
    st_CompListHeader*
        pso_Header; // at the block's start; a header of zeros when the block has no room for one
    unsigned n_FirstPosition; // of the stream: 132
    int b_Changed;
    unsigned n_OffsetSize;    // 2, or 4 with long offset support
    unsigned n_MaximumOffset; // 65535 or 0xFFFFFFFF; set and copied, never tested
    CT_AlternativeIndex*
        pco_Index; // of the block, while keys are added; null: the stream is scanned
    int b_Scan;    // no index can be had
};
