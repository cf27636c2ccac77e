// System/DDE/Conversation.h: what both sides of a conversation make of the system's messages.
// Internal.
#pragma once

#include <Ostra/Buffer/Buffer.h>
#include <Ostra/Frame/Platform.h>

#include <windows.h>

#include <cstring>

// The messages of the exchange.
inline constexpr unsigned DDE_INITIATE = 0x03E0;
inline constexpr unsigned DDE_TERMINATE = 0x03E1;
inline constexpr unsigned DDE_ACK = 0x03E4;
inline constexpr unsigned DDE_DATA = 0x03E5;
inline constexpr unsigned DDE_REQUEST = 0x03E6;
inline constexpr unsigned DDE_POKE = 0x03E7;
inline constexpr unsigned DDE_EXECUTE = 0x03E8;

inline constexpr unsigned TEXT_FORMAT = 1; // the one format that is spoken here

// The status of an acknowledgement.
inline constexpr unsigned STATUS_ACK = 0x8000;
inline constexpr unsigned STATUS_BUSY = 0x4000;

// The head of a block that carries a value: a word of flags, a word of the format.
inline constexpr unsigned HEAD = 4;
inline constexpr unsigned short HEAD_RESPONSE = 0x1000;
inline constexpr unsigned short HEAD_RELEASE = 0x2000; // who receives the block frees it
inline constexpr unsigned short HEAD_ACK = 0x8000;     // the sender waits for an acknowledgement

// Two words as a message carries them.
inline LPARAM l_Pack(unsigned n_Low, unsigned n_High)
{
    return static_cast<LPARAM>((n_Low & 0xFFFF) | n_High << 16);
}

inline unsigned short u_Low(LPARAM l_Words)
{
    return static_cast<unsigned short>(l_Words & 0xFFFF);
}

inline unsigned short u_High(LPARAM l_Words)
{
    return static_cast<unsigned short>(l_Words >> 16 & 0xFFFF);
}

// Takes the two parts of a message out of their record, which is gone then.
inline void v_Unpack(unsigned n_Message, LPARAM l_Parameter, UINT_PTR* pn_Low, UINT_PTR* pn_High)
{
    *pn_Low = *pn_High = 0;
    UnpackDDElParam(n_Message, l_Parameter, pn_Low, pn_High);
    FreeDDElParam(n_Message, l_Parameter);
}

inline HGLOBAL h_Block(UINT_PTR n_Part)
{
    return reinterpret_cast<HGLOBAL>(n_Part);
}

// A block that carries a value, locked for the life of a scope.
class CT_ValueBlock
{
public:
    explicit CT_ValueBlock(HGLOBAL h_NewBlock)
        : h_Memory(h_NewBlock),
          pc_Block(static_cast<char*>(GlobalLock(h_NewBlock)))
    {
        if (pc_Block && GlobalSize(h_Memory) < HEAD) {
            GlobalUnlock(h_Memory);
            pc_Block = nullptr;
        }
    }
    ~CT_ValueBlock()
    {
        if (pc_Block)
            GlobalUnlock(h_Memory);
    }
    CT_ValueBlock(const CT_ValueBlock&) = delete;
    CT_ValueBlock& operator=(const CT_ValueBlock&) = delete;

    // False for what is no block, or one without a head.
    explicit operator bool() const { return pc_Block != nullptr; }

    unsigned short u_GetFlags() const { return u_GetWord(0); }
    void v_SetFlags(unsigned short u_Flags) { v_SetWord(u_Flags, 0); }
    void v_SetFormat(unsigned short u_Format) { v_SetWord(u_Format, 2); }

    char* pc_GetValue() const { return pc_Block + HEAD; }
    // A text with its terminator; one that has none ends with the block.
    void v_CopyText(CT_Buffer* pco_Out, unsigned n_Growth) const
    {
        const void* const pcv_End = pcv_FindEnd();
        if (!pcv_End) {
            pco_Out->v_Set(pc_GetValue(), n_GetRoom(), n_Growth);
            pco_Out->v_Append("", 1);
            return;
        }
        const auto n_Length = static_cast<const char*>(pcv_End) - pc_GetValue();
        pco_Out->v_Set(pc_GetValue(), static_cast<unsigned>(n_Length) + 1, n_Growth);
    }
    // The value where a terminator follows: in the block, or, if that has none, in a copy of the
    // block. Null without room for the copy.
    char* pc_GetText(CT_Buffer* pco_Copy) const
    {
        if (pcv_FindEnd())
            return pc_GetValue();
        const unsigned n_Size = HEAD + n_GetRoom();
        pco_Copy->v_Set(n_Size + 1, pco_Copy->n_GetGrowth(), 0);
        char* const pc_Copy = static_cast<char*>(const_cast<void*>(pco_Copy->qcv_Get()));
        if (!pc_Copy)
            return nullptr;
        std::memcpy(pc_Copy, pc_Block, n_Size);
        pc_Copy[n_Size] = 0;
        return pc_Copy + HEAD;
    }

private:
    unsigned n_GetRoom() const { return static_cast<unsigned>(GlobalSize(h_Memory)) - HEAD; }
    const void* pcv_FindEnd() const { return std::memchr(pc_GetValue(), 0, n_GetRoom()); }
    unsigned short u_GetWord(unsigned n_Offset) const
    {
        unsigned short u_Word;
        std::memcpy(&u_Word, pc_Block + n_Offset, sizeof(u_Word));
        return u_Word;
    }
    void v_SetWord(unsigned short u_Word, unsigned n_Offset)
    {
        std::memcpy(pc_Block + n_Offset, &u_Word, sizeof(u_Word));
    }

    HGLOBAL h_Memory;
    char* pc_Block;
};

// Posts a message with two parts. False, with nothing left of the message, if that can't be done.
inline bool b_PostParts(HWND h_To, HWND h_From, unsigned n_Message, UINT_PTR n_Low, UINT_PTR n_High)
{
    const LPARAM l_Parameter = PackDDElParam(n_Message, n_Low, n_High);
    if (!l_Parameter)
        return false;
    if (PostMessageA(h_To, n_Message, reinterpret_cast<WPARAM>(h_From), l_Parameter))
        return true;
    FreeDDElParam(n_Message, l_Parameter);
    return false;
}

// Answers a message whose item goes back to the sender. False if it couldn't be posted.
inline bool b_PostAck(HWND h_To, HWND h_From, unsigned n_Status, unsigned n_Item)
{
    return b_PostParts(h_To, h_From, DDE_ACK, n_Status, n_Item);
}

// A class of hidden windows for the instance, registered unless it is. False with the last error
// set.
inline bool b_RegisterClass(HINSTANCE h_Instance, const char* qccz_Name, WNDPROC f_Procedure,
                            int i_Extra)
{
    WNDCLASSA so_Class = {};
    if (GetClassInfoA(h_Instance, qccz_Name, &so_Class))
        return true;
    so_Class = {};
    so_Class.lpfnWndProc = f_Procedure;
    so_Class.hInstance = h_Instance;
    so_Class.lpszClassName = qccz_Name;
    so_Class.cbWndExtra = i_Extra;
    return RegisterClassA(&so_Class) != 0;
}

inline HWND h_CreateHidden(HINSTANCE h_Instance, const char* qccz_Class)
{
    return CreateWindowExA(0, qccz_Class, nullptr, WS_POPUP, 0, 0, 0, 0, nullptr, nullptr,
                           h_Instance, nullptr);
}
