// examples/lexicon/Subtree.cpp
#include "Subtree.h"

namespace lexicon
{
namespace
{
// The item behind a character, its alternative left out.
Item Behind(const ListStream& stream, const Item& character)
{
    const Item item = stream.At(character.next);
    return item.kind == Item::ALTERNATIVE ? stream.At(item.next) : item;
}

// That character among those that can stand at a position; some other kind if it isn't one of them.
Item Find(const ListStream& stream, unsigned position, unsigned character)
{
    for (;;) {
        const Item item = stream.At(position);
        if (item.kind != Item::CHARACTER || item.value == character)
            return item;
        const Item way = stream.At(item.next);
        if (way.kind != Item::ALTERNATIVE)
            return way.kind == Item::CHARACTER ? stream.At(stream.End()) : way;
        position = way.value;
    }
}
} // namespace

bool Subtree::Take(const CT_CompList& list, const std::vector<unsigned>& prefix, unsigned most)
{
    *this = Subtree();
    limit = most;
    const ListStream stream(list);
    if (!TakePrefix(stream, prefix))
        return false;
    while (!branches.empty()) {
        const Branch branch = branches.back();
        branches.pop_back();
        TakeBranch(stream, branch);
        ++rows;
    }
    if (words > limit)
        nodes.clear();
    return words;
}

// The characters of the prefix; what follows the last one is the first branch.
bool Subtree::TakePrefix(const ListStream& stream, const std::vector<unsigned>& prefix)
{
    unsigned position = ListStream::FIRST;
    for (unsigned column = 0; column < prefix.size(); ++column) {
        const Item item = Find(stream, position, prefix[column]);
        if (item.kind != Item::CHARACTER)
            return false;
        nodes.push_back({item.value, item.position, column, 0, Node::NO_NODE, true, Item::NONE, 0});
        const Item behind = Behind(stream, item);
        position = behind.IsEnd() ? behind.next : behind.position;
        const bool last = column + 1 == prefix.size();
        if (last)
            TakeEnd(behind, &nodes.back());
        if (behind.kind == Item::LEAF_END) {
            rows = 1;
            return last;
        }
    }
    branches.push_back({position, Node::NO_NODE, static_cast<unsigned>(prefix.size())});
    return true;
}

void Subtree::TakeBranch(const ListStream& stream, Branch branch)
{
    for (;;) {
        const Item item = stream.At(branch.position);
        if (item.kind != Item::CHARACTER)
            return;
        ++characters;
        const Item way = stream.At(item.next);
        if (way.kind == Item::ALTERNATIVE) {
            ++alternatives;
            branches.push_back({way.value, static_cast<unsigned>(nodes.size()), branch.column});
        }
        Node node = {item.value,   item.position, branch.column, rows,
                     branch.above, false,         Item::NONE,    0};
        const Item behind = Behind(stream, item);
        TakeEnd(behind, &node);
        if (words <= limit)
            nodes.push_back(node);
        if (behind.kind == Item::LEAF_END)
            return;
        branch = {behind.IsEnd() ? behind.next : behind.position, Node::NO_NODE, branch.column + 1};
    }
}

void Subtree::TakeEnd(const Item& end, Node* node)
{
    if (!end.IsEnd())
        return;
    ++words;
    node->end = end.kind;
    node->handle = end.value;
}
} // namespace lexicon
