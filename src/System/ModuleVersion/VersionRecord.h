// System/ModuleVersion/VersionRecord.h: the bytes of a version record, and steps within them.
// Internal.
//
// The record consists of nodes: two words, the node's length and that of its value; in the layout
// for 32 bits one more; the key with its terminator; then value and children, each on a multiple of
// 4. Places are told by their distance from the record's start. What is asked for behind the room
// reads as zeros, so a record that lies about its lengths leads nowhere.
#pragma once

#include <Ostra/String/UString.h>

#include <algorithm>
#include <cstring>

class CT_VersionRecord
{
public:
    // Behind the room stand as many zeros as TERMINATOR.
    static constexpr unsigned TERMINATOR = 4;

    CT_VersionRecord(const char* pcv_Data, unsigned n_Size) : pcv_Bytes(pcv_Data), n_Room(n_Size) {}

    void v_SetLayout(int b_Is16Bit) { b_16Bit = b_Is16Bit; }
    unsigned n_GetRoom() const { return n_Room; }

    unsigned n_GetWord(unsigned n_At) const { return n_GetByte(n_At) | n_GetByte(n_At + 1) << 8; }
    unsigned n_GetLength(unsigned n_Node) const { return n_GetWord(n_Node); }
    unsigned n_GetValueLength(unsigned n_Node) const { return n_GetWord(n_Node + 2); }
    // The bytes of a node before its key.
    unsigned n_GetHeader() const { return b_16Bit ? 4 : 6; }

    static unsigned sn_Pad(unsigned n_At, unsigned n_Base) { return n_At + (n_Base - n_At) % 4; }
    unsigned n_SkipText(unsigned n_At) const
    {
        while (n_At < n_Room && n_GetUnit(n_At))
            n_At += n_GetUnitSize();
        return n_At + n_GetUnitSize();
    }
    unsigned n_SkipHeader(unsigned n_Node) const { return n_SkipText(n_Node + n_GetHeader()); }

    // Whether there is that text of ASCII, up to its terminator.
    int b_IsText(unsigned n_At, const char* qccz_Text) const
    {
        for (; *qccz_Text; ++qccz_Text, n_At += n_GetUnitSize())
            if (n_GetUnit(n_At) != static_cast<unsigned char>(*qccz_Text))
                return 0;
        return n_GetUnit(n_At) == 0;
    }
    int b_Holds(unsigned n_At, const char* pc_Text, unsigned n_Count) const
    {
        return n_Room >= n_Count && n_At <= n_Room - n_Count &&
               std::memcmp(pcv_Bytes + n_At, pc_Text, n_Count) == 0;
    }
    // The number that a text of hexadecimal digits begins with, modulo 2 to the power of 32.
    unsigned n_GetHex(unsigned n_At) const
    {
        unsigned n_Number = 0;
        for (;; n_At += n_GetUnitSize()) {
            const unsigned n_Unit = n_GetUnit(n_At);
            const unsigned n_Letter = n_Unit | 0x20;
            if (n_Unit >= '0' && n_Unit <= '9')
                n_Number = n_Number << 4 | (n_Unit - '0');
            else if (n_Letter >= 'a' && n_Letter <= 'f')
                n_Number = n_Number << 4 | (n_Letter - 'a' + 10);
            else
                return n_Number;
        }
    }

    // The text there; in the layout for 16 bits no more bytes of it than told.
    void v_GetText(CT_UString* pco_Out, unsigned n_At, unsigned n_Most) const
    {
        n_At = std::min(n_At, n_Room);
        if (b_16Bit) {
            const char* pc_Text = pcv_Bytes + n_At;
            const auto n_Length = static_cast<unsigned>(std::strlen(pc_Text));
            pco_Out->v_Set(pc_Text, std::min(n_Length, n_Most), 0xFFFFFFFE);
        } else {
            pco_Out->v_Set(reinterpret_cast<const unsigned short*>(pcv_Bytes + n_At));
        }
    }
    // As many bytes as there are.
    void v_Copy(void* pv_Out, unsigned n_At, unsigned n_Count) const
    {
        n_At = std::min(n_At, n_Room);
        std::memcpy(pv_Out, pcv_Bytes + n_At, std::min(n_Count, n_Room - n_At));
    }

private:
    unsigned n_GetUnitSize() const { return b_16Bit ? 1 : 2; }
    unsigned n_GetByte(unsigned n_At) const
    {
        return n_At < n_Room ? static_cast<unsigned char>(pcv_Bytes[n_At]) : 0;
    }
    unsigned n_GetUnit(unsigned n_At) const { return b_16Bit ? n_GetByte(n_At) : n_GetWord(n_At); }

    const char* pcv_Bytes;
    unsigned n_Room;
    int b_16Bit = 0;
};
