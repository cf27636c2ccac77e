// tools/check/ListCheck.cpp
#include "ListCheck.h"

#include "ListLayout.h"

#include <unordered_set>
#include <vector>

namespace
{
// What begins at a byte of the stream.
enum Item : unsigned char
{
    NOTHING,
    CHARACTER,
    MARK,
    INNER,
    LEAF,
    END,
};

class Checker
{
public:
    Checker(const unsigned char* data, std::size_t count) : bytes(data), length(count) {}

    ListVerdict Run()
    {
        verdict.sound = length < LIST_HEAD ? Broken(length, "shorter than a head") : Rules();
        return verdict;
    }

private:
    bool Rules()
    {
        return Head() && Items() && Sequence() && Alternatives() && Chains() && Jumps() &&
               Entries();
    }

    bool Broken(std::uint64_t offset, const std::string& rule)
    {
        verdict.offset = offset;
        verdict.rule = rule;
        return false;
    }

    std::uint32_t Word(std::size_t offset) const { return ListNumber(bytes + offset, 4); }
    std::uint32_t Element(std::size_t at) const { return ListNumber(bytes + at, shape.element); }
    bool HasEmptyString() const { return bytes[LIST_FLAGS] & LIST_EMPTY_SUPPORT; }

    bool Head()
    {
        if (Word(0) != LIST_MAGIC)
            return Broken(0, "not the magic of a list");
        if (Word(LIST_END) != length)
            return Broken(LIST_END, "the end isn't the number of bytes");
        shape = ListShape(bytes);
        if (bytes[LIST_ORDER] != 0)
            return Broken(LIST_ORDER, "numbers in network byte order");
        if (!shape.ElementIsKnown())
            return Broken(LIST_ELEMENT, "an element size other than 1, 2 and 4");
        if (!shape.HandleIsKnown())
            return Broken(LIST_HANDLE, "a handle size other than 0, 1, 2 and 4");
        if (bytes[LIST_FLAGS] > (LIST_EMPTY_SUPPORT | LIST_LONG_OFFSETS))
            return Broken(LIST_FLAGS, "an unknown flag");
        if (bytes[LIST_FORMAT] != 1)
            return Broken(LIST_FORMAT, "a format mark other than 1");
        if (!HasEmptyString() && Word(LIST_EMPTY) != LIST_NO_HANDLE)
            return Broken(LIST_EMPTY, "a handle of the empty string without support for it");
        return true;
    }

    // The stream falls into whole items, the last of them the list end.
    bool Items()
    {
        items.assign(length, NOTHING);
        std::size_t at = LIST_HEAD;
        for (; at + shape.element <= length; at += shape.ItemSize(Element(at))) {
            const std::uint32_t element = Element(at);
            if (element == 0)
                return Broken(at, "an element of value 0");
            if (element == STREAM_END && at + shape.element != length)
                return Broken(at, "a list end before the end");
            if (at + shape.ItemSize(element) > length)
                return Broken(at, "an item that passes the end");
            items[at] = Kind(element);
        }
        if (at != length)
            return Broken(at, "the rest of an element");
        if (at == LIST_HEAD || items[length - shape.element] != END)
            return Broken(length, "no list end");
        return true;
    }

    static Item Kind(std::uint32_t element)
    {
        switch (element) {
        case INNER_END:
            return INNER;
        case ALTERNATIVE:
            return MARK;
        case STREAM_END:
            return END;
        case LEAF_END:
            return LEAF;
        default:
            return CHARACTER;
        }
    }

    // A branch begins with a character and ends in a leaf end; ends and marks stand behind
    // characters, and behind an inner end the branch goes on.
    bool Sequence()
    {
        Item before = LEAF;
        for (std::size_t at = LIST_HEAD; at < length; at += shape.ItemSize(Element(at))) {
            const Item item = static_cast<Item>(items[at]);
            const bool starts = before == LEAF;
            if (item == MARK && before != CHARACTER)
                return Broken(at, "an alternative that isn't behind a character");
            if (item == INNER && (starts || before == INNER))
                return Broken(at, "an inner end that isn't behind a character");
            if (item == LEAF && (starts || before == INNER))
                return Broken(at, "a leaf end that isn't behind a character");
            if (item == END && !starts)
                return Broken(at, "a branch without a leaf end");
            if (starts && item == CHARACTER)
                branches.push_back(at);
            keys += item == INNER || item == LEAF;
            before = item;
        }
        return true;
    }

    // Where the alternative behind the character at that position leads; 0 for none.
    std::size_t Alternative(std::size_t character) const
    {
        const std::size_t mark = character + shape.element;
        if (items[mark] != MARK)
            return 0;
        return mark + ListNumber(bytes + mark + shape.element, shape.offset);
    }

    // Every branch but the first is the alternative of one character in front of it.
    bool Alternatives()
    {
        std::vector<unsigned char> open(length, 0);
        for (std::size_t branch : branches)
            open[branch] = branch != LIST_HEAD;
        for (std::size_t at = LIST_HEAD; at < length; at += shape.ItemSize(Element(at))) {
            if (items[at] != CHARACTER || !Alternative(at))
                continue;
            const std::size_t target = Alternative(at), mark = at + shape.element;
            if (target <= mark)
                return Broken(mark, "an offset that doesn't lead forward");
            if (target >= length || items[target] == NOTHING)
                return Broken(mark, "an offset that doesn't lead to an element");
            if (!open[target])
                return Broken(mark, "an offset that doesn't lead to a branch of its own");
            open[target] = 0;
        }
        for (std::size_t branch : branches)
            if (open[branch])
                return Broken(branch, "a branch that no alternative leads to");
        return true;
    }

    // The characters that can stand at one place differ.
    bool Chains()
    {
        std::vector<unsigned char> seen(length, 0);
        for (std::size_t at = LIST_HEAD; at < length; at += shape.ItemSize(Element(at))) {
            if (items[at] != CHARACTER || seen[at] || !Alternative(at))
                continue;
            std::unordered_set<std::uint32_t> characters;
            for (std::size_t way = at; way; way = Alternative(way)) {
                seen[way] = 1;
                if (!characters.insert(Element(way)).second)
                    return Broken(way, "the same character twice at one place");
            }
        }
        return true;
    }

    // A letter's jump offset is where the chain of first characters has it.
    bool Jumps()
    {
        std::uint32_t jumps[LIST_LETTERS] = {};
        std::size_t way = items[LIST_HEAD] == CHARACTER ? LIST_HEAD : 0;
        for (; way; way = Alternative(way))
            if (Element(way) - 'a' < LIST_LETTERS)
                jumps[Element(way) - 'a'] = static_cast<std::uint32_t>(way);
        for (unsigned letter = 0; letter < LIST_LETTERS; ++letter)
            if (Word(LIST_JUMPS + 4 * letter) != jumps[letter])
                return Broken(LIST_JUMPS + 4 * letter, "a jump offset that misses its letter");
        return true;
    }

    // Each adding of the empty string counts as an entry.
    bool Entries()
    {
        const std::uint32_t entries = Word(LIST_ENTRIES);
        if (entries < keys || (entries > keys && !HasEmptyString()))
            return Broken(LIST_ENTRIES, "the number of entries isn't that of the keys");
        return true;
    }

    const unsigned char* bytes;
    std::size_t length;
    ListVerdict verdict;
    ListShape shape{NO_HEAD};
    std::vector<unsigned char> items; // what begins at each byte
    std::vector<std::size_t> branches;
    std::uint32_t keys = 0;

    static constexpr unsigned char NO_HEAD[LIST_HEAD] = {};
};
} // namespace

ListVerdict CheckList(const unsigned char* bytes, std::size_t length)
{
    return Checker(bytes, length).Run();
}

ListVerdict CheckList(const std::string& bytes)
{
    return CheckList(reinterpret_cast<const unsigned char*>(bytes.data()), bytes.size());
}

std::string DescribeListVerdict(const ListVerdict& verdict)
{
    if (verdict.sound)
        return "sound\n";
    return "damaged at " + std::to_string(verdict.offset) + ": " + verdict.rule + "\n";
}
