// Ostra/CompList/CompListContents.cpp: all keys of a list at once.
#include <Ostra/CompList/CompList.h>

#include <Ostra/CompList/CompListSource.h>
#include <Ostra/CompList/CompListStream.h>
#include <Ostra/CompList/ElementSize.h>
#include <Ostra/Frame/Codes.h>

#include <algorithm>
#include <cstring>

// ---- Room ---------------------------------------------------------------------------------

// What is appended to a buffer; v_TakeBack undoes all of it. No buffer takes nothing.
struct CT_CompList::st_Tail
{
    // Bytes that may be written behind the room that was asked for.
    static constexpr unsigned SLACK = 16;

    explicit st_Tail(CT_Buffer* pco_NewBuffer)
        : pco_Buffer(pco_NewBuffer),
          n_Before(pco_NewBuffer ? pco_NewBuffer->n_GetUsedSize() : 0),
          pc_Block(nullptr),
          pc_Next(nullptr),
          pc_End(nullptr)
    {}

    // Makes ready, with room for n_Wanted bytes. 0 when there is none; that is reported.
    int b_Begin(unsigned n_Wanted) { return !pco_Buffer || b_Grow(n_Before, 1, n_Wanted); }

    // Makes room for n_Count bytes more.
    int b_MakeRoom(std::size_t n_Count)
    {
        if (n_Count <= static_cast<std::size_t>(pc_End - pc_Next))
            return 1;
        const unsigned n_Size = n_GetPlace(pc_Next);
        pco_Buffer->v_SetUsedSize(n_Size);
        return b_Grow(n_Size, n_Count, n_Size / 2);
    }

    int b_Add(unsigned n_Number)
    {
        if (pc_Next >= pc_End && (!pco_Buffer || !b_MakeRoom(sizeof n_Number)))
            return !pco_Buffer;
        std::memcpy(pc_Next, &n_Number, sizeof n_Number);
        pc_Next += sizeof n_Number;
        return 1;
    }

    unsigned n_GetPlace(const char* pcc_At) const
    {
        return static_cast<unsigned>(pcc_At - pc_Block);
    }

    void v_Keep() const
    {
        if (pc_Next)
            pco_Buffer->v_SetUsedSize(n_GetPlace(pc_Next));
    }
    void v_TakeBack() const
    {
        if (pc_Next)
            pco_Buffer->v_SetUsedSize(n_Before);
    }

    CT_Buffer* pco_Buffer;
    unsigned n_Before;
    char* pc_Block;
    char* pc_Next; // null until it has begun
    char* pc_End;

private:
    static constexpr unsigned long long LIMIT = 0xFFFFFF00;

    // Behind n_Size bytes room for n_Count, better for n_Wanted, in a block of the buffer's own.
    int b_Grow(unsigned n_Size, std::size_t n_Count, unsigned n_Wanted)
    {
        const unsigned long long n8_Least = 0ull + n_Size + n_Count + SLACK;
        if (n8_Least > LIMIT) {
            CT_Report::sv_Format(qccz_Source, LIMITS_VIOLATED, LIMITS_VIOLATED);
            return 0;
        }
        const unsigned long long n8_Wanted = 0ull + n_Size + n_Wanted + SLACK;
        const auto n_Room = static_cast<unsigned>(std::min(std::max(n8_Least, n8_Wanted), LIMIT));
        pco_Buffer->v_CopyWeWrite();
        if (pco_Buffer->n_GetUseCount() != 1)
            return 0;
        pco_Buffer->v_SetMinSize(n_Room, 1);
        if (pco_Buffer->n_GetMaximumSize() < n_Room)
            return 0;
        pc_Block = static_cast<char*>(const_cast<void*>(pco_Buffer->qcv_Get()));
        pc_Next = pc_Block + n_Size;
        pc_End = pc_Block + pco_Buffer->n_GetMaximumSize() - SLACK;
        return 1;
    }
};

// ---- Gathering ----------------------------------------------------------------------------

// A walk over all items of a stream. The key of the way that it has come is put together where the
// keys are gathered; the next one begins with a copy of what they have in common.
template <class T>
struct CT_CompList::st_Gathering
{
    static constexpr unsigned ELEMENT = sizeof(T);

    st_Gathering(const CT_CompList* pcco_NewList, CT_Buffer* pco_Keys, CT_Buffer* pco_Places,
                 CT_Buffer* pco_Handles)
        : pcco_List(pcco_NewList),
          so_Stream(pcco_NewList),
          so_Keys(pco_Keys),
          so_Places(pco_Places),
          so_Handles(pco_Handles),
          so_Branches(&co_Branches),
          n_Start(0),
          n_Budget(so_Stream.n_Limit)
    {}

    void v_Run()
    {
        if (b_Begin() && b_Walk()) {
            // The place of a next key is taken back.
            so_Keys.pc_Next = so_Keys.pc_Block + n_Start;
            so_Keys.v_Keep();
            so_Places.v_Keep();
            so_Handles.v_Keep();
        } else {
            so_Keys.v_TakeBack();
            so_Places.v_TakeBack();
            so_Handles.v_TakeBack();
        }
    }

private:
    // A character with another way on that was taken first.
    struct st_Branch
    {
        unsigned n_Position;  // of the mark 13 behind it
        unsigned n_Length;    // of the key in front of it, in bytes
        unsigned n_Character; // 0 for none
    };

    // How a step of the walk came out.
    enum et_Step
    {
        gs_On,
        gs_End,
        gs_NoRoom
    };

    int b_Begin()
    {
        // The head of a damaged list may tell any number.
        const unsigned n_Keys =
            std::min(pcco_List->n_GetNrOfEntries(), so_Stream.n_Limit / ELEMENT);
        const unsigned n_Numbers = std::min(n_Keys, 0x20000000u) * 4;
        n_Start = so_Keys.n_Before;
        return so_Keys.b_Begin(so_Stream.n_Limit) && so_Places.b_Begin(n_Numbers) &&
               so_Handles.b_Begin(n_Numbers) && so_Branches.b_Begin(32 * sizeof(st_Branch));
    }

    // 0 when there was no room.
    int b_Walk()
    {
        unsigned n_At = pcco_List->n_FirstPosition;
        et_Step ec_Step = gs_On;
        while (ec_Step == gs_On) {
            const unsigned n_Begin = n_At;
            const unsigned n_Element = n_Follow(&n_At);
            switch (n_Element) {
            case ec_ListEnd:
                return 1;
            case ec_Alternative:
                ec_Step = ec_TakeAlternative(n_Begin, &n_At);
                break;
            case ec_InnerEnd:
            case ec_LeafEnd:
                ec_Step = ec_TakeEnd(n_Element, n_Begin, &n_At);
                break;
            default:
                return 0;
            }
        }
        return ec_Step == gs_End;
    }

    // Appends characters up to the next other element, which it gives; 0 when there was no room.
    unsigned n_Follow(unsigned* pn_At)
    {
        unsigned n_At = *pn_At;
        char* pc_Next = so_Keys.pc_Next;
        unsigned n_Element = so_Stream.n_GetElement(n_At);
        while (n_Element > ec_LeafEnd || !sb_IsReserved(n_Element)) {
            if (pc_Next >= so_Keys.pc_End) {
                so_Keys.pc_Next = pc_Next;
                if (!so_Keys.b_MakeRoom(ELEMENT))
                    return 0;
                pc_Next = so_Keys.pc_Next;
            }
            const T o_Element = static_cast<T>(n_Element);
            std::memcpy(pc_Next, &o_Element, ELEMENT);
            // An element of 0, which no list has by itself, would end the key.
            pc_Next += n_Element ? ELEMENT : 0;
            n_At += ELEMENT;
            n_Element = so_Stream.n_GetElement(n_At);
        }
        so_Keys.pc_Next = pc_Next;
        *pn_At = n_At;
        return n_Element;
    }

    // Where there is room.
    void v_Append(unsigned n_Element)
    {
        const T o_Element = static_cast<T>(n_Element);
        std::memcpy(so_Keys.pc_Next, &o_Element, ELEMENT);
        so_Keys.pc_Next += ELEMENT;
    }

    // In a list every byte is passed once. Alternatives that lead to the same place, which no list
    // has by itself, could be passed for ever, so to say.
    int b_IsSpent(unsigned n_Begin, unsigned n_End)
    {
        const unsigned n_Passed = n_End - n_Begin;
        if (n_Passed > n_Budget)
            return 1;
        n_Budget -= n_Passed;
        return 0;
    }

    // The last character waits; its alternative comes first.
    et_Step ec_TakeAlternative(unsigned n_Begin, unsigned* pn_At)
    {
        const unsigned n_Mark = *pn_At;
        if (n_Mark >= so_Stream.n_Marks || so_Stream.n_GetTarget(n_Mark) <= n_Mark ||
            b_IsSpent(n_Begin, n_Mark + so_Stream.n_MarkSize))
            return gs_End;
        st_Branch so_Branch = {n_Mark, n_GetLength(), 0};
        if (so_Branch.n_Length) {
            so_Keys.pc_Next -= ELEMENT;
            so_Branch.n_Length -= ELEMENT;
            so_Branch.n_Character = n_Load<T>(so_Keys.pc_Next);
        }
        if (!so_Branches.b_MakeRoom(sizeof so_Branch))
            return gs_NoRoom;
        std::memcpy(so_Branches.pc_Next, &so_Branch, sizeof so_Branch);
        so_Branches.pc_Next += sizeof so_Branch;
        *pn_At = so_Stream.n_GetTarget(n_Mark);
        return gs_On;
    }

    // A key ends: it stays, and the next one begins with all of it or with what it has in common
    // with the next branch.
    et_Step ec_TakeEnd(unsigned n_Mark, unsigned n_Begin, unsigned* pn_At)
    {
        const unsigned n_Behind = *pn_At + so_Stream.n_EndSize;
        if (b_IsSpent(n_Begin, n_Behind))
            return gs_End;
        const unsigned n_Length = n_GetLength();
        if (!so_Places.b_Add(n_Start) || !so_Handles.b_Add(n_GetHandle(*pn_At + ELEMENT)) ||
            !so_Keys.b_MakeRoom(n_Length + 2 * std::size_t{ELEMENT}))
            return gs_NoRoom;
        v_Append(0);
        st_Branch so_Branch = {n_Behind - so_Stream.n_MarkSize, n_Length, 0};
        if (n_Mark == ec_LeafEnd && (!b_Pop(&so_Branch) || so_Branch.n_Length > n_Length)) {
            n_Start = so_Keys.n_GetPlace(so_Keys.pc_Next);
            return gs_End;
        }
        *pn_At = so_Branch.n_Position + so_Stream.n_MarkSize;
        v_BeginNext(so_Branch.n_Length);
        if (so_Branch.n_Character)
            v_Append(so_Branch.n_Character);
        return gs_On;
    }

    unsigned n_GetHandle(unsigned n_At) const
    {
        return so_Stream.n_EndSize == ELEMENT + 4 && n_At + 4ull <= so_Stream.n_Limit
                   ? n_Load<unsigned>(so_Stream.pcc_Block + n_At)
                   : pcco_List->n_GetHandle(n_At);
    }

    // 0 when none is left.
    int b_Pop(st_Branch* pso_Branch)
    {
        if (so_Branches.pc_Next == so_Branches.pc_Block)
            return 0;
        so_Branches.pc_Next -= sizeof(st_Branch);
        std::memcpy(pso_Branch, so_Branches.pc_Next, sizeof(st_Branch));
        return 1;
    }

    // Begins a key with so many bytes of the last one, for which there is room. Whole pieces, and
    // there is room for these, too, take less than a count of bytes.
    void v_BeginNext(unsigned n_Length)
    {
        const char* pcc_From = so_Keys.pc_Block + n_Start;
        char* pc_To = so_Keys.pc_Next;
        n_Start = so_Keys.n_GetPlace(pc_To);
        so_Keys.pc_Next = pc_To + n_Length;
        for (unsigned n_At = 0; n_At < n_Length; n_At += st_Tail::SLACK) {
            char ac_Piece[st_Tail::SLACK];
            std::memcpy(ac_Piece, pcc_From + n_At, sizeof ac_Piece);
            std::memcpy(pc_To + n_At, ac_Piece, sizeof ac_Piece);
        }
    }

    // Of the key so far, in bytes.
    unsigned n_GetLength() const { return so_Keys.n_GetPlace(so_Keys.pc_Next) - n_Start; }

    const CT_CompList* pcco_List;
    const st_Stream<T> so_Stream;
    CT_Buffer co_Branches;
    st_Tail so_Keys;
    st_Tail so_Places;
    st_Tail so_Handles;
    st_Tail so_Branches;
    unsigned n_Start;  // of the key
    unsigned n_Budget; // bytes of the stream that may still be passed
};

void CT_CompList::v_GetAll(CT_Buffer* pco_Keys, CT_Buffer* pco_Places, CT_Buffer* pco_Handles) const
{
    o_ForElement(n_GetElementSize(), [&](auto o_Type) {
        st_Gathering<decltype(o_Type)>(this, pco_Keys, pco_Places, pco_Handles).v_Run();
    });
}
