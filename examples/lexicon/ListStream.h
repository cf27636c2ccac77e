// examples/lexicon/ListStream.h: the stream of a compressed list, item by item.
#pragma once

#include <Ostra/CompList/CompList.h>

namespace lexicon
{
// What stands at a place of the stream.
struct Item
{
    enum Kind
    {
        CHARACTER,
        ALTERNATIVE,
        INNER_END,
        LEAF_END,
        LIST_END,
        NONE // behind the end, or cut by it
    };

    // A key ends here.
    bool IsEnd() const { return kind == INNER_END || kind == LEAF_END; }

    Kind kind;
    unsigned position;
    // The character, the position that an alternative leads to, or the handle of an end.
    unsigned value;
    // Where the next item stands.
    unsigned next;
};

// Reads the block of a list whatever its sizes, and never outside of it.
class ListStream
{
public:
    static constexpr unsigned FIRST = 132;

    // Keeps the block, not the list.
    explicit ListStream(const CT_CompList& list);

    Item At(unsigned position) const;

    // Where the keys that begin with a letter from a to z start: 0 for none, and for any other
    // character.
    unsigned JumpOffset(unsigned character) const;

    unsigned End() const { return end; }
    unsigned ElementSize() const { return elementSize; }
    unsigned HandleSize() const { return handleSize; }
    unsigned OffsetSize() const { return offsetSize; }

private:
    unsigned NumberAt(unsigned position, unsigned size) const;
    Item With(Item::Kind kind, unsigned position, unsigned size) const;

    CT_Buffer block;
    unsigned end;
    unsigned elementSize;
    unsigned handleSize;
    unsigned offsetSize;
};
} // namespace lexicon
