// Ostra/String/TextBuffer.cpp
//
// A string is in one of two states. Without a block, used size and room are 0, and it reads as an
// empty text. With a block the used size counts the terminator: that of an empty text is one
// character. What changes the length changes the used size with it, by sv_End or by the buffer's
// own insertion and removal. Only sv_Fill and sv_CutInPlace may put a terminator into the text and
// leave the used size.
//
// What writes takes a block of the string's own before, by sb_SetSize or b_Own, and does nothing if
// it has none afterwards. Where a shared block is written all the same, it says "Kept".
#include <Ostra/String/TextBuffer.h>

#include <Ostra/Frame/Report.h>
#include <Ostra/String/CharacterPlaces.h>
#include <Ostra/String/TextSearch.h>

#include <algorithm>

// ---- Access ---------------------------------------------------------------------------------

template <class Unit>
unsigned CT_TextBuffer<Unit>::sn_FindFrom(const CT_Buffer& co_Buffer, Unit c_Find, unsigned n_From)
{
    // The terminator can be found too, also that of a string without a block.
    const unsigned n_Count = std::max(sn_Used(co_Buffer), 1u);
    if (n_From >= n_Count)
        return NONE;
    const unsigned n =
        CT_TextSearch<Unit>::sn_Find(spc_Get(co_Buffer) + n_From, n_Count - n_From, c_Find);
    return n == NONE ? n : n + n_From;
}

template <class Unit>
unsigned CT_TextBuffer<Unit>::sn_FindFrom(const CT_Buffer& co_Buffer, const Unit* qc_Find,
                                          unsigned n_From)
{
    if (!*qc_Find)
        return n_From;
    if (n_From >= sn_Length(co_Buffer))
        return NONE;
    const unsigned n =
        CT_TextSearch<Unit>::sn_Find(spc_Get(co_Buffer) + n_From, sn_Length(co_Buffer) - n_From,
                                     qc_Find, Text::sn_Length(qc_Find));
    return n == NONE ? n : n + n_From;
}

// ---- Room -----------------------------------------------------------------------------------

// True if the buffer has given itself the room of that size, or had it. It doesn't say so; its room
// does.
template <class Unit>
bool CT_TextBuffer<Unit>::sb_SetSize(CT_Buffer& co_Buffer, std::uint64_t n_Bytes, int b_Keep)
{
    // A size that the buffer's sums can't hold is more than any heap has.
    if (n_Bytes + co_Buffer.n_GetGrowth() + 16 > 0xFFFFFFFF) {
        CT_Report::sv_Memory(SOURCE);
        return false;
    }
    co_Buffer.v_SetSize(static_cast<unsigned>(n_Bytes), b_Keep);
    return co_Buffer.n_GetUseCount() < 2 && co_Buffer.n_GetMaximumSize() >= n_Bytes &&
           co_Buffer.n_GetMaximumSize() - n_Bytes < co_Buffer.n_GetGrowth();
}

template <class Unit>
void CT_TextBuffer<Unit>::sv_SetSize(CT_Buffer& co_Buffer, unsigned n_Length, int b_Keep)
{
    if (!n_Length) {
        co_Buffer.v_SetSize(0, 0);
        return;
    }
    if (!sb_SetSize(co_Buffer, (std::uint64_t(n_Length) + 1) * SIZE, b_Keep))
        return;
    if (!b_Keep || !co_Buffer.n_GetUsedSize())
        sv_End(co_Buffer, 0);
    else if (sn_Used(co_Buffer) > n_Length)
        sv_End(co_Buffer, n_Length);
}

template <class Unit>
void CT_TextBuffer<Unit>::sv_SetLength(CT_Buffer& co_Buffer, unsigned n_Length)
{
    // Kept: a length of 0 gives back the room as well.
    if (!n_Length)
        sb_SetEmpty(co_Buffer, 1);
    else if (spc_Prepare(co_Buffer, n_Length, 0))
        sv_End(co_Buffer, n_Length);
}

template <class Unit>
bool CT_TextBuffer<Unit>::sb_SetEmpty(CT_Buffer& co_Buffer, std::uint64_t n_Room)
{
    if (!sb_SetSize(co_Buffer, n_Room * SIZE, 0))
        return false;
    sv_End(co_Buffer, 0);
    return true;
}

template <class Unit>
bool CT_TextBuffer<Unit>::sb_MakeEmpty(CT_Buffer& co_Buffer, unsigned n_Length)
{
    if (n_Length >= sn_Room(co_Buffer))
        return sb_SetEmpty(co_Buffer, std::uint64_t(n_Length) + 1);
    if (!sb_Own(co_Buffer))
        return false;
    sv_End(co_Buffer, 0);
    return true;
}

template <class Unit>
Unit* CT_TextBuffer<Unit>::spc_Prepare(CT_Buffer& co_Buffer, std::uint64_t n_Count,
                                       unsigned n_Offset)
{
    const auto n_Length =
        static_cast<unsigned>(std::min<std::uint64_t>(n_Count + n_Offset, 0xFFFFFFFF));
    sv_SetMinSize(co_Buffer, n_Length, 1);
    return n_Length < sn_Room(co_Buffer) && sb_Own(co_Buffer) ? spc_Data(co_Buffer) + n_Offset
                                                              : nullptr;
}

template <class Unit>
Unit* CT_TextBuffer<Unit>::spc_Target(CT_Buffer& co_Buffer, std::uint64_t n_Bytes)
{
    if (!sb_Own(co_Buffer) ||
        (co_Buffer.n_GetMaximumSize() < n_Bytes && !sb_SetSize(co_Buffer, n_Bytes, 0)))
        return nullptr;
    return spc_Data(co_Buffer);
}

template <class Unit>
void CT_TextBuffer<Unit>::sv_End(CT_Buffer& co_Buffer, unsigned n_Length)
{
    spc_Data(co_Buffer)[n_Length] = 0;
    co_Buffer.v_SetUsedSize((n_Length + 1) * SIZE);
}

template <class Unit>
void CT_TextBuffer<Unit>::sv_Update(CT_Buffer& co_Buffer)
{
    // A text that lost its terminator ends with the room.
    const unsigned n_Room = sn_Room(co_Buffer);
    const unsigned n_Length = Text::sn_Length(spc_Get(co_Buffer), n_Room);
    if (n_Room && sb_Own(co_Buffer))
        sv_End(co_Buffer, std::min(n_Length, n_Room - 1));
}

// ---- Change ---------------------------------------------------------------------------------

template <class Unit>
void CT_TextBuffer<Unit>::sv_SetAt(CT_Buffer& co_Buffer, Unit c_New, unsigned n_Offset)
{
    const unsigned n_Room = sn_Room(co_Buffer);
    if (n_Offset >= n_Room)
        return;
    // Over the terminator of a full block, it needs room for another one.
    const bool b_Full = c_New && n_Offset + 1 == n_Room && sn_Used(co_Buffer) == n_Room;
    if (!(b_Full ? sb_SetSize(co_Buffer, (std::uint64_t(n_Room) + 1) * SIZE, 1)
                 : sb_Own(co_Buffer)))
        return;
    if (!c_New) {
        sv_End(co_Buffer, n_Offset);
        return;
    }
    spc_Data(co_Buffer)[n_Offset] = c_New;
    if (b_Full)
        spc_Data(co_Buffer)[n_Room] = 0;
}

template <class Unit>
void CT_TextBuffer<Unit>::sv_Fill(CT_Buffer& co_Buffer, Unit c_Fill, unsigned n_Count,
                                  unsigned n_Offset, bool b_Cut)
{
    // Nothing at the start of a string without a block leaves an empty text in a block.
    if (!n_Count && !n_Offset && !sn_Room(co_Buffer)) {
        sb_SetEmpty(co_Buffer, 1);
        return;
    }
    Unit* pc_Fill = spc_Prepare(co_Buffer, n_Count, n_Offset);
    if (!pc_Fill)
        return;
    std::fill_n(pc_Fill, n_Count, c_Fill);
    if (sn_Used(co_Buffer) <= n_Count + n_Offset)
        sv_End(co_Buffer, n_Count + n_Offset);
    else if (b_Cut)
        pc_Fill[n_Count] = 0;
}

template <class Unit>
void CT_TextBuffer<Unit>::sv_StringReplace(CT_Buffer& co_Buffer, const Unit* pcc_Text,
                                           unsigned n_Count, unsigned n_Offset)
{
    if (!n_Count && !n_Offset) {
        sv_SetLength(co_Buffer, 0);
        return;
    }
    sv_Hold(co_Buffer, pcc_Text, [&] {
        Unit* pc_To = spc_Prepare(co_Buffer, n_Count, n_Offset);
        if (!pc_To)
            return;
        if (n_Count)
            std::memcpy(pc_To, pcc_Text, std::size_t(n_Count) * SIZE);
        // Kept: what stood behind the replaced range goes.
        sv_End(co_Buffer, n_Count + n_Offset);
    });
}

template <class Unit>
void CT_TextBuffer<Unit>::sv_StringInsert(CT_Buffer& co_Buffer, const Unit* pcc_Text,
                                          unsigned n_Count, unsigned n_Offset)
{
    sv_Hold(co_Buffer, pcc_Text, [&] {
        const std::uint64_t n_Bytes = co_Buffer.n_GetUsedSize() + std::uint64_t(n_Count) * SIZE;
        if (n_Bytes > co_Buffer.n_GetMaximumSize() ? sb_SetSize(co_Buffer, n_Bytes, 1)
                                                   : sb_Own(co_Buffer))
            co_Buffer.v_Insert(pcc_Text, n_Count * SIZE,
                               std::min(n_Offset, sn_Length(co_Buffer)) * SIZE);
    });
}

// Where n_Count characters more go, with the used size and the terminator set behind them; null
// without the room.
template <class Unit>
Unit* CT_TextBuffer<Unit>::spc_AppendRoom(CT_Buffer& co_Buffer, unsigned n_Count, unsigned n_Factor)
{
    if (!co_Buffer.n_GetUsedSize() && !sb_SetSize(co_Buffer, 1, 1))
        return nullptr;
    const unsigned n_Used = std::max(co_Buffer.n_GetUsedSize(), SIZE);
    const std::uint64_t n_Bytes = n_Used + std::uint64_t(n_Count) * SIZE;
    if (!(n_Bytes > co_Buffer.n_GetMaximumSize() ? sb_SetSize(co_Buffer, n_Factor * n_Bytes, 1)
                                                 : sb_Own(co_Buffer)))
        return nullptr;
    Unit* pc_To = spc_Data(co_Buffer) + n_Used / SIZE - 1;
    pc_To[n_Count] = 0;
    co_Buffer.v_SetUsedSize(static_cast<unsigned>(n_Bytes));
    return pc_To;
}

template <class Unit>
void CT_TextBuffer<Unit>::sv_Append(CT_Buffer& co_Buffer, const Unit* pcc_Text, unsigned n_Count)
{
    if (Unit* pc_To = spc_Spare(co_Buffer, n_Count)) {
        // The text may be the one that is appended to.
        std::memmove(pc_To, pcc_Text, std::size_t(n_Count) * SIZE);
        pc_To[n_Count] = 0;
        return;
    }
    sv_Hold(co_Buffer, pcc_Text, [&] {
        if (Unit* pc_To = spc_AppendRoom(co_Buffer, n_Count, 1))
            std::memcpy(pc_To, pcc_Text, std::size_t(n_Count) * SIZE);
    });
}

template <class Unit>
void CT_TextBuffer<Unit>::sv_Remove(CT_Buffer& co_Buffer, unsigned n_Count, unsigned n_Offset)
{
    const unsigned n_Length = sn_Length(co_Buffer);
    n_Count = std::min(n_Count, n_Length - std::min(n_Offset, n_Length));
    if (n_Count && sb_Own(co_Buffer))
        co_Buffer.v_Remove(n_Count * SIZE, n_Offset * SIZE);
}

template <class Unit>
void CT_TextBuffer<Unit>::sv_StripLeft(CT_Buffer& co_Buffer)
{
    const Unit* qc_Rest = spc_Get(co_Buffer);
    while (Text::sb_IsSpace(*qc_Rest))
        ++qc_Rest;
    sv_Remove(co_Buffer, static_cast<unsigned>(qc_Rest - spc_Get(co_Buffer)), 0);
}

template <class Unit>
void CT_TextBuffer<Unit>::sv_Strip(CT_Buffer& co_Buffer, const Unit* qc_Set)
{
    CT_CharacterPlaces<Unit> co_Places(qc_Set);
    const Unit* qc_Rest = spc_Get(co_Buffer);
    while (co_Places.b_Has(*qc_Rest))
        ++qc_Rest;
    sv_Remove(co_Buffer, static_cast<unsigned>(qc_Rest - spc_Get(co_Buffer)), 0);
    const unsigned n_Length = sn_Length(co_Buffer);
    unsigned n_End = n_Length;
    while (n_End > 1 && co_Places.b_Has(spc_Get(co_Buffer)[n_End - 1]))
        --n_End;
    sv_Remove(co_Buffer, n_Length - n_End, n_End);
}

template <class Unit>
void CT_TextBuffer<Unit>::sv_CutInPlace(CT_Buffer& co_Buffer, unsigned n_Length)
{
    if (n_Length < sn_Room(co_Buffer))
        spc_Data(co_Buffer)[n_Length] = 0;
}

// Translates the characters from pc_Rest on, which itself goes, and yields the new end.
template <class Unit>
Unit* CT_TextBuffer<Unit>::spc_Compact(Unit* pc_Rest, Unit* pc_End, const Unit* qc_From,
                                       const Unit* qc_To, unsigned n_To)
{
    CT_CharacterPlaces<Unit> co_Places(qc_From);
    Unit* pc_Write = pc_Rest;
    while (++pc_Rest < pc_End) {
        const unsigned n = co_Places.n_Index(*pc_Rest);
        if (n == NONE)
            *pc_Write++ = *pc_Rest;
        else if (n < n_To)
            *pc_Write++ = qc_To[n];
    }
    return pc_Write;
}

template <class Unit>
void CT_TextBuffer<Unit>::sv_Translate(CT_Buffer& co_Buffer, const Unit* qc_From, const Unit* qc_To,
                                       unsigned n_To)
{
    const unsigned n_Length = sn_Length(co_Buffer);
    Unit* pc_Text = spc_Data(co_Buffer);
    // A replacement may go into the set too, where both are one text.
    CT_CharacterPlaces<Unit> co_Places(qc_From, !sb_Inside(co_Buffer, qc_From));
    for (unsigned n = 0; n < n_Length; ++n) {
        const unsigned n_Index = co_Places.n_Index(pc_Text[n]);
        if (n_Index == NONE)
            continue;
        if (n_Index < n_To) {
            // Kept: a replacement goes into the block as it stands, for all strings that share it.
            pc_Text[n] = qc_To[n_Index];
            continue;
        }
        if (!sb_Own(co_Buffer))
            return;
        pc_Text = spc_Data(co_Buffer);
        Unit* pc_End = spc_Compact(pc_Text + n, pc_Text + n_Length, qc_From, qc_To, n_To);
        sv_End(co_Buffer, static_cast<unsigned>(pc_End - pc_Text));
        return;
    }
}

template class CT_TextBuffer<char>;
template class CT_TextBuffer<unsigned short>;
