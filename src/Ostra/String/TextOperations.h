// Ostra/String/TextOperations.h: what is the same for texts of bytes and of 16-bit units. Internal.
#pragma once

#include <Ostra/Frame/Counts.h>
#include <Ostra/Frame/Vector.h>
#include <Ostra/String/TextSearch.h>

#include <algorithm>
#include <bit>
#include <cstdint>
#include <cstring>
#include <type_traits>

// Operations on zero-terminated or counted text, by the value of its characters. Nothing here
// allocates or knows of a code page, a locale or a buffer.
template <class Unit>
class CT_TextOperations
{
public:
    using Value = std::make_unsigned_t<Unit>;
    // Characters that are looked at together.
    typedef t_Block<Value> Block;
    static constexpr unsigned BLOCK = sizeof(Block) / sizeof(Unit);

    // ---- Length -----------------------------------------------------------------------------

    static unsigned sn_Length(const Unit* qc_Text)
    {
        if constexpr (sizeof(Unit) == 1)
            return static_cast<unsigned>(std::strlen(qc_Text));
        else
            return sn_Length(qc_Text, NONE);
    }
    // At most n_Max. Neither the text nor the memory behind it need reach that far.
    static unsigned sn_Length(const Unit* qc_Text, unsigned n_Max);
    // The same of a text that is a word most likely: without a call.
    static unsigned sn_WordLength(const Unit* qc_Text);
    // What a count of characters means: ALL is the whole text.
    static unsigned sn_CountOf(const Unit* qc_Text, unsigned n_Count)
    {
        return n_Count == ALL ? sn_Length(qc_Text) : n_Count;
    }

    // ---- Search -----------------------------------------------------------------------------

    // The first c_Find among the n_Count characters and before the terminator, which can be looked
    // for too.
    static unsigned sn_Find(const Unit* qc_Text, unsigned n_Count, Unit c_Find);

    // Where the character first stands in the set; a terminator stands nowhere.
    static unsigned sn_Index(Unit c, const Unit* qc_Set)
    {
        for (unsigned n = 0; qc_Set[n]; ++n)
            if (qc_Set[n] == c)
                return n;
        return NONE;
    }
    static bool sb_InSet(Unit c, const Unit* qc_Set) { return sn_Index(c, qc_Set) != NONE; }
    // Leading characters of the text that are in the set.
    static unsigned sn_Span(const Unit* qc_Text, const Unit* qc_Set)
    {
        const Unit* qc_Rest = qc_Text;
        while (*qc_Rest && sb_InSet(*qc_Rest, qc_Set))
            ++qc_Rest;
        return static_cast<unsigned>(qc_Rest - qc_Text);
    }

    // ---- Comparison ---------------------------------------------------------------------------

    // -1, 0 or 1.
    static int si_Compare(const Unit* qc_Left, const Unit* qc_Right)
    {
        while (*qc_Left && *qc_Left == *qc_Right)
            ++qc_Left, ++qc_Right;
        return si_Order(Value(*qc_Left), Value(*qc_Right));
    }
    // The same of two texts that both have n_Known characters at least, terminators included;
    // b_Block tells whether BLOCK of each lie in memory.
    [[gnu::always_inline]] static int si_CompareKnown(const Unit* qc_Left, const Unit* qc_Right,
                                                      unsigned n_Known, bool b_Block);
    // The difference of the first characters that differ among n_Count.
    static int si_Compare(const Unit* qc_Left, const Unit* qc_Right, unsigned n_Count)
    {
        for (; n_Count; --n_Count, ++qc_Left, ++qc_Right)
            if (*qc_Left != *qc_Right || !*qc_Left)
                return int(Value(*qc_Left)) - int(Value(*qc_Right));
        return 0;
    }
    // The same up to a terminator, with A to Z folded down.
    static int si_CompareNoCase(const Unit* qc_Left, const Unit* qc_Right)
    {
        while (*qc_Left && su_Lower(*qc_Left) == su_Lower(*qc_Right))
            ++qc_Left, ++qc_Right;
        return int(su_Lower(*qc_Left)) - int(su_Lower(*qc_Right));
    }

    // Whether * and ? of the pattern make it the text.
    static bool sb_Match(const Unit* qc_Text, const Unit* qc_Pattern);
    // Whether so many characters of the text are those of the pattern, where ? is any one.
    static bool sb_IsLike(const Unit* qc_Text, const Unit* qc_Pattern, unsigned n_Count)
    {
        // Where they differ can't be foreseen: no branch on it.
        unsigned n_Differ = 0;
        for (unsigned n = 0; n < n_Count; ++n)
            n_Differ |= (qc_Pattern[n] != '?') & (qc_Pattern[n] != qc_Text[n]);
        return !n_Differ;
    }
    // Characters that a match compares for nothing before it takes another way.
    static constexpr unsigned PATIENCE = 2048;

    // ---- The C locale ---------------------------------------------------------------------

    static Value su_Lower(Unit c) { return Value(c - 'A') < 26 ? Value(c | 0x20) : Value(c); }
    static Value su_Upper(Unit c) { return Value(c - 'a') < 26 ? Value(c ^ 0x20) : Value(c); }
    static bool sb_IsSpace(Unit c) { return c == ' ' || (c >= 9 && c <= 13); }
    static void sv_ToLower(Unit* qc_Text) { sv_ChangeCase(qc_Text, 'A'); }
    static void sv_ToUpper(Unit* qc_Text) { sv_ChangeCase(qc_Text, 'a'); }

private:
    static void sv_ChangeCase(Unit* qc_Text, Unit c_First)
    {
        for (; *qc_Text; ++qc_Text)
            if (Value(*qc_Text - c_First) < 26)
                *qc_Text = static_cast<Unit>(*qc_Text ^ 0x20);
    }

    static bool sb_Any(const Unit* qc_Text, Unit c_Find);
    static unsigned sn_Differ(const Unit* qc_Left, const Unit* qc_Right);
    [[gnu::always_inline]] static int si_CompareBlocks(const Unit* qc_Left, const Unit* qc_Right,
                                                       unsigned n_Known);
    static int si_CompareRest(const Unit* qc_Left, const Unit* qc_Right, unsigned n_Known);
    static int si_Order(Value o_Left, Value o_Right)
    {
        return (o_Left > o_Right) - (o_Left < o_Right);
    }
    static unsigned sn_PassBlocks(const Unit* qc_Text, unsigned n_Max);
    static constexpr unsigned STRIDE_SIZE = 128; // bytes
    static unsigned sn_PassWide(const Unit* qc_Text, unsigned n_Max);
    static unsigned sn_FirstBlock(const Unit* qc_Text);
    static bool sb_HasNoPair(const Unit* qc_Text, Unit c_First, Unit c_Second);
    static bool sb_MatchBehind(const Unit* qc_Text, const Unit* qc_Pattern);
    // Characters up to the first that isn't that of the pattern, or ends the text.
    static unsigned sn_SameAs(const Unit* qc_Text, const Unit* qc_Pattern, unsigned n_Count)
    {
        unsigned n = 0;
        while (n < n_Count && (qc_Pattern[n] == qc_Text[n] || (qc_Pattern[n] == '?' && qc_Text[n])))
            ++n;
        return n;
    }
    static bool sb_EndsLike(const Unit* qc_Text, const Unit* qc_Pattern, unsigned n_Count);
};

template <class Unit>
unsigned CT_TextOperations<Unit>::sn_Length(const Unit* qc_Text, unsigned n_Max)
{
    unsigned n = 0;
    while (n < n_Max && qc_Text[n] && reinterpret_cast<std::uintptr_t>(qc_Text + n) % sizeof(Block))
        ++n;
    if (n < n_Max && qc_Text[n])
        n += sn_PassBlocks(qc_Text + n, n_Max - n);
    // NOLINTNEXTLINE(clang-analyzer-core.uninitialized.Branch): it can't see behind the blocks
    while (n < n_Max && qc_Text[n])
        ++n;
    return n;
}

// Passes over aligned blocks without a terminator. A block of which one character may be read can
// be read whole: memory ends between blocks, whatever a sanitizer knows about the object in it.
template <class Unit>
__attribute__((noinline, no_sanitize("address", "thread"))) unsigned
CT_TextOperations<Unit>::sn_PassBlocks(const Unit* qc_Text, unsigned n_Max)
{
    unsigned n = 0;
    for (; n_Max - n >= BLOCK; n += BLOCK) {
        if (reinterpret_cast<std::uintptr_t>(qc_Text + n) % STRIDE_SIZE == 0 &&
            CT_Vector::sb_HasWide()) {
            n += sn_PassWide(qc_Text + n, n_Max - n);
            if (n_Max - n < BLOCK)
                break;
        }
        const Block ao_Block = *reinterpret_cast<const Block*>(qc_Text + n);
        if (!CT_Vector::sb_IsZero(ao_Block == Value(0)))
            break;
    }
    return n;
}

// The same over aligned strides.
template <class Unit>
OSTRA_FOR_WIDE __attribute__((noinline, no_sanitize("address", "thread"))) unsigned
CT_TextOperations<Unit>::sn_PassWide(const Unit* qc_Text, unsigned n_Max)
{
    typedef t_Block<Value, 32> Wide;
    unsigned n = 0;
    for (; n_Max - n >= STRIDE_SIZE / sizeof(Unit); n += STRIDE_SIZE / sizeof(Unit)) {
        const Wide* const po_Blocks = reinterpret_cast<const Wide*>(qc_Text + n);
        const Wide ao_First = po_Blocks[0] < po_Blocks[1] ? po_Blocks[0] : po_Blocks[1];
        const Wide ao_Second = po_Blocks[2] < po_Blocks[3] ? po_Blocks[2] : po_Blocks[3];
        if (!CT_Vector::sb_IsZeroWide((ao_First == 0) | (ao_Second == 0)))
            break;
    }
    return n;
}

// A bit for each byte of the terminators in the aligned block where the text begins, the text's
// first byte lowest.
template <class Unit>
__attribute__((no_sanitize("address", "thread"))) inline unsigned
CT_TextOperations<Unit>::sn_FirstBlock(const Unit* qc_Text)
{
    const auto n_Before = reinterpret_cast<std::uintptr_t>(qc_Text) % sizeof(Block);
    const Block ao_Block =
        *reinterpret_cast<const Block*>(reinterpret_cast<const char*>(qc_Text) - n_Before);
    return CT_Vector::sn_Mask(ao_Block == Value(0)) >> n_Before;
}

template <class Unit>
inline unsigned CT_TextOperations<Unit>::sn_WordLength(const Unit* qc_Text)
{
    if constexpr (CT_Vector::sb_Masks)
        if (const unsigned n_Ends = sn_FirstBlock(qc_Text))
            return static_cast<unsigned>(std::countr_zero(n_Ends)) / sizeof(Unit);
    return sn_Length(qc_Text);
}

// True if the block holds the character or a terminator.
template <class Unit>
bool CT_TextOperations<Unit>::sb_Any(const Unit* qc_Text, Unit c_Find)
{
    Block ao_Block;
    CT_Vector::sv_Load(ao_Block, qc_Text);
    return !CT_Vector::sb_IsZero((ao_Block == Value(c_Find)) | (ao_Block == Value(0)));
}

// A bit for each byte of the characters in which two blocks differ or the left one ends.
template <class Unit>
inline unsigned CT_TextOperations<Unit>::sn_Differ(const Unit* qc_Left, const Unit* qc_Right)
{
    Block ao_Left;
    Block ao_Right;
    CT_Vector::sv_Load(ao_Left, qc_Left);
    CT_Vector::sv_Load(ao_Right, qc_Right);
    // Nothing is left of those.
    const Block ao_Same = ao_Left & reinterpret_cast<Block>(ao_Left == ao_Right);
    return CT_Vector::sn_Mask(ao_Same == Value(0));
}

template <class Unit>
inline int CT_TextOperations<Unit>::si_CompareKnown(const Unit* qc_Left, const Unit* qc_Right,
                                                    unsigned n_Known, bool b_Block)
{
    // Comparing is too short for a choice at run time.
    if constexpr (CT_Vector::sb_Masks)
        return b_Block ? si_CompareBlocks(qc_Left, qc_Right, n_Known)
                       : si_CompareRest(qc_Left, qc_Right, n_Known);
    else
        return si_Compare(qc_Left, qc_Right);
}

// Judges the first two blocks at once, without a branch on how many characters there are: the
// second block lies over the first where there are no more. Texts differ or end among the known
// ones, so what lies behind those in the first block decides nothing.
template <class Unit>
inline int CT_TextOperations<Unit>::si_CompareBlocks(const Unit* qc_Left, const Unit* qc_Right,
                                                     unsigned n_Known)
{
    const unsigned n = std::clamp(n_Known, BLOCK, 2 * BLOCK);
    const unsigned n_Second = n - BLOCK;
    const std::uint64_t n8_Differ =
        sn_Differ(qc_Left, qc_Right) |
        std::uint64_t(sn_Differ(qc_Left + n_Second, qc_Right + n_Second))
            << n_Second * sizeof(Unit);
    if (n8_Differ) {
        const unsigned n_At = static_cast<unsigned>(std::countr_zero(n8_Differ)) / sizeof(Unit);
        return si_Order(Value(qc_Left[n_At]), Value(qc_Right[n_At]));
    }
    return si_CompareRest(qc_Left + n, qc_Right + n, std::max(n_Known, n) - n);
}

template <class Unit>
[[gnu::noinline]] int
CT_TextOperations<Unit>::si_CompareRest(const Unit* qc_Left, const Unit* qc_Right, unsigned n_Known)
{
    unsigned n = 0;
    while (n_Known - n >= BLOCK && !sn_Differ(qc_Left + n, qc_Right + n))
        n += BLOCK;
    return si_Compare(qc_Left + n, qc_Right + n);
}

template <class Unit>
unsigned CT_TextOperations<Unit>::sn_Find(const Unit* qc_Text, unsigned n_Count, Unit c_Find)
{
    unsigned n = 0;
    while (n_Count - n >= BLOCK && !sb_Any(qc_Text + n, c_Find))
        n += BLOCK;
    for (; n < n_Count; ++n)
        if (qc_Text[n] == c_Find)
            return n;
        else if (!qc_Text[n])
            return NONE;
    return NONE;
}

// Whether two characters stand together nowhere in a text that ends in the aligned block where it
// begins. False where that isn't known.
template <class Unit>
__attribute__((no_sanitize("address", "thread"))) inline bool
CT_TextOperations<Unit>::sb_HasNoPair(const Unit* qc_Text, Unit c_First, Unit c_Second)
{
    const auto n_Before = reinterpret_cast<std::uintptr_t>(qc_Text) % sizeof(Block);
    const Block ao_Block =
        *reinterpret_cast<const Block*>(reinterpret_cast<const char*>(qc_Text) - n_Before);
    const unsigned n_Ends = CT_Vector::sn_Mask(ao_Block == Value(0)) >> n_Before;
    const unsigned n_First = CT_Vector::sn_Mask(ao_Block == Value(c_First)) >> n_Before;
    const unsigned n_Second = CT_Vector::sn_Mask(ao_Block == Value(c_Second)) >> n_Before;
    const unsigned n_InText = (n_Ends & -n_Ends) - 1;
    return n_Ends && !(n_First & n_Second >> sizeof(Unit) & n_InText);
}

// Whether the text ends with what is like so many characters of the pattern.
template <class Unit>
inline bool CT_TextOperations<Unit>::sb_EndsLike(const Unit* qc_Text, const Unit* qc_Pattern,
                                                 unsigned n_Count)
{
    const unsigned n_Length = sn_WordLength(qc_Text);
    return n_Length >= n_Count && sb_IsLike(qc_Text + n_Length - n_Count, qc_Pattern, n_Count);
}

template <class Unit>
bool CT_TextOperations<Unit>::sb_Match(const Unit* qc_Text, const Unit* qc_Pattern)
{
    // Kept: an empty pattern matches every text.
    if (!*qc_Pattern)
        return true;
    for (;; ++qc_Text, ++qc_Pattern) {
        if (*qc_Pattern == '*')
            return sb_MatchBehind(qc_Text, qc_Pattern + 1);
        if (!*qc_Text)
            return !*qc_Pattern;
        if (*qc_Pattern != '?' && *qc_Pattern != *qc_Text)
            return false;
    }
}

// The same behind a *, for any end of the text. Only the last * seen can still take another
// character: if an earlier one could, so can this one. What stands behind the last one of the
// pattern can only be the text's end.
template <class Unit>
[[gnu::noinline]] bool CT_TextOperations<Unit>::sb_MatchBehind(const Unit* qc_Text,
                                                               const Unit* qc_Pattern)
{
    unsigned n_Lost = 0;
    for (;;) {
        while (*qc_Pattern == '*')
            ++qc_Pattern;
        unsigned n_Stretch = 0;
        while (qc_Pattern[n_Stretch] && qc_Pattern[n_Stretch] != '*')
            ++n_Stretch;
        if (!qc_Pattern[n_Stretch])
            return !n_Stretch || sb_EndsLike(qc_Text, qc_Pattern, n_Stretch);
        // Most words lack a stretch, which shows without a step whose end isn't foreseen.
        if constexpr (CT_Vector::sb_FastMasks)
            if (n_Stretch > 1 && qc_Pattern[0] != '?' && qc_Pattern[1] != '?' &&
                sb_HasNoPair(qc_Text, qc_Pattern[0], qc_Pattern[1]))
                return false;
        for (;; ++qc_Text) {
            const unsigned n = sn_SameAs(qc_Text, qc_Pattern, n_Stretch);
            if (n == n_Stretch)
                break;
            // Behind this place there are fewer characters yet.
            if (!qc_Text[n])
                return false;
            // A text that misleads so often is searched for what stands behind the *.
            n_Lost += n;
            if (n_Lost > PATIENCE)
                return CT_TextSearch<Unit>::sb_MatchRest(qc_Text + 1, qc_Pattern);
        }
        qc_Text += n_Stretch;
        qc_Pattern += n_Stretch;
    }
}
