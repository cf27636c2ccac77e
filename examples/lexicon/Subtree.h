// examples/lexicon/Subtree.h: the part of a compressed list below a prefix, laid out in a grid.
#pragma once

#include "ListStream.h"

#include <vector>

namespace lexicon
{
// A character of the stream in its cell. The column is its place in the key. A branch has a row of
// its own: what follows a character stands right of it, and its alternative below it in the same
// column, under all that follows it.
struct Node
{
    static constexpr unsigned NO_NODE = 0xFFFFFFFF;

    unsigned character;
    unsigned position;
    unsigned column;
    unsigned row;
    // The node whose alternative this is.
    unsigned above;
    // Whether it belongs to the prefix.
    bool given;
    // INNER_END or LEAF_END if a key ends here, else NONE.
    Item::Kind end;
    unsigned handle;
};

class Subtree
{
public:
    // The list must be a sound one. False if none of its keys begins with the elements of the
    // prefix. Of more words than the limit there are no nodes, only the count.
    bool Take(const CT_CompList& list, const std::vector<unsigned>& prefix, unsigned limit);

    // Row by row; first those of the prefix.
    const std::vector<Node>& Nodes() const { return nodes; }
    unsigned Rows() const { return rows; }
    unsigned Words() const { return words; }
    // Below the prefix.
    unsigned Characters() const { return characters; }
    unsigned Alternatives() const { return alternatives; }

private:
    struct Branch
    {
        unsigned position;
        unsigned above;
        unsigned column;
    };

    bool TakePrefix(const ListStream& stream, const std::vector<unsigned>& prefix);
    void TakeBranch(const ListStream& stream, Branch branch);
    void TakeEnd(const Item& end, Node* node);

    std::vector<Node> nodes;
    // The branches still to be taken, the next one last.
    std::vector<Branch> branches;
    unsigned limit = 0;
    unsigned rows = 0;
    unsigned words = 0;
    unsigned characters = 0;
    unsigned alternatives = 0;
};
} // namespace lexicon
