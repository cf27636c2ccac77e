// Ostra/String/TextBuffer.h: a terminated text in a buffer, the same for bytes and for 16-bit
// units. Internal.
#pragma once

#include <Ostra/Buffer/Block.h>
#include <Ostra/String/TextOperations.h>

#include <algorithm>

// The work of the two string classes on their buffer. Lengths, counts and offsets are characters.
//
// An operation that finds no room after it asked for it stops, with the report of the buffer set
// and the text as it was.
template <class Unit>
class CT_TextBuffer
{
public:
    using Text = CT_TextOperations<Unit>;

    // The class whose text it is: what fails here is reported as its place.
    static constexpr const char* SOURCE =
        sizeof(Unit) == 1 ? "Ostra/String/CString" : "Ostra/String/UString";
    static constexpr unsigned SIZE = sizeof(Unit);
    // What an empty string reads as.
    static constexpr Unit EMPTY[4] = {};

    // ---- Access -----------------------------------------------------------------------------

    static const Unit* spc_Get(const CT_Buffer& co_Buffer)
    {
        return co_Buffer.n_GetUsedSize() ? static_cast<const Unit*>(co_Buffer.qcv_Get()) : EMPTY;
    }
    static Unit sc_GetAt(const CT_Buffer& co_Buffer, unsigned n_Offset)
    {
        return n_Offset < sn_Room(co_Buffer) ? spc_Data(co_Buffer)[n_Offset] : Unit(0);
    }
    static unsigned sn_Length(const CT_Buffer& co_Buffer)
    {
        return sn_LessTerminator(sn_Used(co_Buffer));
    }
    static unsigned sn_MaximumLength(const CT_Buffer& co_Buffer)
    {
        return sn_LessTerminator(sn_Room(co_Buffer));
    }
    // The text from an offset on; empty behind the end.
    static const Unit* spc_From(const CT_Buffer& co_Buffer, unsigned n_Offset)
    {
        return n_Offset <= sn_Length(co_Buffer) ? spc_Get(co_Buffer) + n_Offset : EMPTY;
    }
    // Whether the offset lies in the text or at its end.
    static bool sb_Has(const CT_Buffer& co_Buffer, unsigned n_Offset)
    {
        return n_Offset < sn_Used(co_Buffer);
    }
    // The texts from offsets on, which are empty behind the end: -1, 0 or 1, or, of a count, the
    // difference of the first characters that differ.
    static int si_Compare(const CT_Buffer& co_Left, unsigned n_Left, const CT_Buffer& co_Right,
                          unsigned n_Right, unsigned n_Count)
    {
        if (n_Count != ALL)
            return Text::si_Compare(spc_From(co_Left, n_Left), spc_From(co_Right, n_Right),
                                    n_Count);
        if (!sb_Has(co_Left, n_Left) || !sb_Has(co_Right, n_Right))
            return Text::si_Compare(spc_From(co_Left, n_Left), spc_From(co_Right, n_Right));
        return Text::si_CompareKnown(
            spc_Data(co_Left) + n_Left, spc_Data(co_Right) + n_Right,
            std::min(sn_Used(co_Left) - n_Left, sn_Used(co_Right) - n_Right),
            sn_Room(co_Left) - n_Left >= Text::BLOCK && sn_Room(co_Right) - n_Right >= Text::BLOCK);
    }
    // The characters that two whole texts both have, terminators included, if memory has a block of
    // each; otherwise 0. They tell si_CompareWhole what it may read.
    static unsigned sn_KnownOfBoth(const CT_Buffer& co_Left, const CT_Buffer& co_Right)
    {
        const bool b_Block = sn_Room(co_Left) >= Text::BLOCK && sn_Room(co_Right) >= Text::BLOCK;
        return b_Block ? std::min(co_Left.n_GetUsedSize(), co_Right.n_GetUsedSize()) / SIZE : 0;
    }
    static int si_CompareWhole(const CT_Buffer& co_Left, const CT_Buffer& co_Right,
                               unsigned n_Known)
    {
        return Text::si_CompareKnown(spc_Data(co_Left), spc_Data(co_Right), n_Known, true);
    }
    static unsigned sn_FindFrom(const CT_Buffer& co_Buffer, Unit c_Find, unsigned n_From);
    static unsigned sn_FindFrom(const CT_Buffer& co_Buffer, const Unit* qc_Find, unsigned n_From);

    // ---- Room -------------------------------------------------------------------------------

    static void sv_SetSize(CT_Buffer& co_Buffer, unsigned n_Length, int b_Keep);
    static void sv_SetMinSize(CT_Buffer& co_Buffer, unsigned n_Length, int b_Keep)
    {
        if (!sb_Fits(co_Buffer, n_Length))
            sv_SetSize(co_Buffer, n_Length, b_Keep);
    }
    static void sv_SetLength(CT_Buffer& co_Buffer, unsigned n_Length);
    // An empty text in a block of n_Room characters; false without the room.
    static bool sb_SetEmpty(CT_Buffer& co_Buffer, std::uint64_t n_Room);
    // An empty text in the block, or in a larger one where n_Length doesn't fit.
    static bool sb_MakeEmpty(CT_Buffer& co_Buffer, unsigned n_Length);
    // The room in memory of a block in which a text can be written anew, whatever the block's size;
    // 0 if it's not the string's own, or so large that a smaller text would give some back.
    static unsigned sn_Reusable(const CT_Buffer& co_Buffer);
    // Makes that text, written there, the string's. All is as if it had been set to a length of 0
    // and the text appended. False if that takes memory, with nothing done.
    static bool sb_Reuse(CT_Buffer& co_Buffer, unsigned n_Count);
    // More such room, if there is memory for it.
    static void sv_Reserve(CT_Buffer& co_Buffer);
    static void sv_Update(CT_Buffer& co_Buffer);

    // ---- Change -----------------------------------------------------------------------------

    static void sv_SetAt(CT_Buffer& co_Buffer, Unit c_New, unsigned n_Offset);
    // Fills, and writes a terminator behind the range: b_Cut even within the text, whose length
    // stays in any case.
    static void sv_Fill(CT_Buffer& co_Buffer, Unit c_Fill, unsigned n_Count, unsigned n_Offset,
                        bool b_Cut);
    static void sv_StringReplace(CT_Buffer& co_Buffer, const Unit* pcc_Text, unsigned n_Count,
                                 unsigned n_Offset);
    // The text of a string that has no block yet.
    static void sv_Make(CT_Buffer& co_Buffer, const Unit* pcc_Text, unsigned n_Count);
    // Room behind n_Offset for a conversion into a block of the string's own; null when there is
    // none.
    static Unit* spc_Prepare(CT_Buffer& co_Buffer, std::uint64_t n_Count, unsigned n_Offset);
    // Room for a conversion of n_Bytes in a block of the string's own, whose content goes; null
    // when there is none.
    static Unit* spc_Target(CT_Buffer& co_Buffer, std::uint64_t n_Bytes);
    // Ends the text at that length.
    static void sv_End(CT_Buffer& co_Buffer, unsigned n_Length);
    // The string has a block.
    static void sv_StringInsert(CT_Buffer& co_Buffer, const Unit* pcc_Text, unsigned n_Count,
                                unsigned n_Offset);
    static void sv_Append(CT_Buffer& co_Buffer, const Unit* pcc_Text, unsigned n_Count);
    // Asks for n_Factor times the room that it needs.
    static void sv_Append(CT_Buffer& co_Buffer, Unit c_Append, unsigned n_Factor)
    {
        if (Unit* pc_To = spc_Spare(co_Buffer, 1)) {
            const Unit ac_End[2] = {c_Append, 0};
            std::memcpy(pc_To, ac_End, sizeof(ac_End));
        } else if (Unit* pc_Room = spc_AppendRoom(co_Buffer, 1, n_Factor)) {
            *pc_Room = c_Append;
        }
    }
    static void sv_Remove(CT_Buffer& co_Buffer, unsigned n_Count, unsigned n_Offset);
    static void sv_StripLeft(CT_Buffer& co_Buffer);
    static void sv_Strip(CT_Buffer& co_Buffer, const Unit* qc_Set);
    // Cuts the text in the block as it stands, shared or not.
    static void sv_CutInPlace(CT_Buffer& co_Buffer, unsigned n_Length);
    static void sv_Translate(CT_Buffer& co_Buffer, const Unit* qc_From, const Unit* qc_To,
                             unsigned n_To);
    static void sv_ToLower(CT_Buffer& co_Buffer)
    {
        if (sb_Own(co_Buffer) && co_Buffer.n_GetUsedSize())
            Text::sv_ToLower(spc_Data(co_Buffer));
    }
    static void sv_ToUpper(CT_Buffer& co_Buffer)
    {
        if (sb_Own(co_Buffer) && co_Buffer.n_GetUsedSize())
            Text::sv_ToUpper(spc_Data(co_Buffer));
    }

    // True if the block is now the string's own.
    static bool sb_Own(CT_Buffer& co_Buffer)
    {
        co_Buffer.v_CopyWeWrite();
        return co_Buffer.n_GetUseCount() < 2;
    }

private:
    static unsigned sn_LessTerminator(unsigned n) { return n ? n - 1 : 0; }
    static unsigned sn_Used(const CT_Buffer& co_Buffer) { return co_Buffer.n_GetUsedSize() / SIZE; }
    static unsigned sn_Room(const CT_Buffer& co_Buffer)
    {
        return co_Buffer.n_GetMaximumSize() / SIZE;
    }
    static Unit* spc_Data(const CT_Buffer& co_Buffer)
    {
        return static_cast<Unit*>(const_cast<void*>(co_Buffer.qcv_Get()));
    }
    static bool sb_Fits(const CT_Buffer& co_Buffer, unsigned n_Length)
    {
        return sn_Room(co_Buffer) ? n_Length < sn_Room(co_Buffer) : !n_Length;
    }
    static bool sb_SetSize(CT_Buffer& co_Buffer, std::uint64_t n_Bytes, int b_Keep);
    // The place for n_Count characters more, which count as used from now on, if it takes no change
    // of the block; the caller writes the terminator behind them.
    static Unit* spc_Spare(CT_Buffer& co_Buffer, unsigned n_Count)
    {
        char* const pc_Data = co_Buffer.pc_Data;
        if (!pc_Data)
            return nullptr;
        CT_Buffer::st_BufferData* const pso_Data = co_Buffer.pso_GetData();
        const unsigned n_Used = pso_Data->n_UsedSize;
        const std::uint64_t n_Bytes = n_Used + std::uint64_t(n_Count) * SIZE;
        if (n_Used < SIZE || n_Bytes > pso_Data->n_MaximumSize || co_Buffer.n_ReadUseCount() > 1)
            return nullptr;
        pso_Data->n_UsedSize = static_cast<unsigned>(n_Bytes);
        return reinterpret_cast<Unit*>(pc_Data + (n_Used & -SIZE)) - 1;
    }
    // Does the work on a text that may lie in the block itself, which then stays until the work is
    // done.
    template <class Work>
    static void sv_Hold(CT_Buffer& co_Buffer, const Unit* pcc_Text, Work f_Do)
    {
        if (!sb_Inside(co_Buffer, pcc_Text)) {
            f_Do();
            return;
        }
        const CT_Buffer co_Hold(&co_Buffer);
        f_Do();
    }
    static Unit* spc_AppendRoom(CT_Buffer& co_Buffer, unsigned n_Count, unsigned n_Factor);
    static Unit* spc_Compact(Unit* pc_Rest, Unit* pc_End, const Unit* qc_From, const Unit* qc_To,
                             unsigned n_To);
    static bool sb_Inside(const CT_Buffer& co_Buffer, const Unit* pcc_Text)
    {
        const auto n_Distance = reinterpret_cast<std::uintptr_t>(pcc_Text) -
                                reinterpret_cast<std::uintptr_t>(co_Buffer.qcv_Get());
        return n_Distance < co_Buffer.n_GetMaximumSize();
    }
};

template <class Unit>
inline void CT_TextBuffer<Unit>::sv_Make(CT_Buffer& co_Buffer, const Unit* pcc_Text,
                                         unsigned n_Count)
{
    constexpr unsigned MOST = 0x40000000;
    if (!n_Count || n_Count >= MOST) {
        sv_StringReplace(co_Buffer, pcc_Text, n_Count, 0);
        return;
    }
    const unsigned n_Bytes = (n_Count + 1) * SIZE;
    char* const pc_Data = CT_Block::spc_New(CT_Block::sn_Maximum(n_Bytes, co_Buffer.n_Growth));
    co_Buffer.pc_Data = pc_Data;
    CT_Buffer::sco_AllocCount.i4_Inc();
    if (!pc_Data) {
        CT_Buffer::sv_Exhausted();
        return;
    }
    std::memcpy(pc_Data, pcc_Text, n_Bytes - SIZE);
    spc_Data(co_Buffer)[n_Count] = 0;
    co_Buffer.pso_GetData()->n_UsedSize = n_Bytes;
}

template <class Unit>
inline unsigned CT_TextBuffer<Unit>::sn_Reusable(const CT_Buffer& co_Buffer)
{
    if (!co_Buffer.pc_Data || co_Buffer.n_ReadUseCount() != 1 ||
        (co_Buffer.n_Growth & (co_Buffer.n_Growth - 1)))
        return 0;
    const unsigned n_Room = CT_Block::sn_Room(co_Buffer.pc_Data);
    // A growth of 0, or one that the room doesn't hold, has a maximum above the room.
    return n_Room <= CT_Block::KEPT_ROOM &&
                   n_Room >= CT_Block::sn_SmallMaximum(SIZE, co_Buffer.n_Growth)
               ? n_Room / SIZE
               : 0;
}

template <class Unit>
inline bool CT_TextBuffer<Unit>::sb_Reuse(CT_Buffer& co_Buffer, unsigned n_Count)
{
    const unsigned n_Bytes = (n_Count + 1) * SIZE;
    // The length of 0 comes first, and is a step to a smaller block and back.
    const unsigned n_Empty = CT_Block::sn_SmallMaximum(SIZE, co_Buffer.n_Growth);
    const unsigned n_Maximum =
        std::max(CT_Block::sn_SmallMaximum(n_Bytes, co_Buffer.n_Growth), n_Empty);
    if (n_Maximum > CT_Block::sn_Room(co_Buffer.pc_Data))
        return false;
    CT_Buffer::st_BufferData* pso_Data = co_Buffer.pso_GetData();
    // Which of them change the size can't be foreseen: no branch.
    CT_Buffer::sco_AllocCount.v_Add((pso_Data->n_MaximumSize != n_Empty) + (n_Empty != n_Maximum));
    pso_Data->n_MaximumSize = n_Maximum;
    pso_Data->n_UsedSize = n_Bytes;
    reinterpret_cast<Unit*>(pso_Data + 1)[n_Count] = 0;
    return true;
}

template <class Unit>
inline void CT_TextBuffer<Unit>::sv_Reserve(CT_Buffer& co_Buffer)
{
    constexpr unsigned ROOM = 276; // that of a block of 288 bytes
    co_Buffer.pc_Data = CT_Block::spc_Reserve(co_Buffer.pc_Data, ROOM);
}
