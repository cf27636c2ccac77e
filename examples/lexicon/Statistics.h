// examples/lexicon/Statistics.h: what a compressed list is made of.
#pragma once

#include "ListStream.h"

#include <ostream>
#include <unordered_map>
#include <vector>

namespace lexicon
{
// How often each number came.
class Histogram
{
public:
    void Add(unsigned number);

    unsigned long long Count() const { return count; }
    // 0 without a number.
    unsigned Least() const;
    unsigned Most() const;
    unsigned long long Sum() const { return sum; }
    // Of the numbers from first to last.
    unsigned long long Between(unsigned long long first, unsigned long long last) const;

private:
    std::vector<unsigned> counts;
    unsigned long long count = 0;
    unsigned long long sum = 0;
};

// The stream is read once from start to end: where an alternative leads to lies always behind it.
// So the same pass tells whether the stream is a sound one: whole items, branches that are each
// reached in exactly one way, and the list end behind the last of them. A walk over a list that
// passed comes to an end and stays within the block.
class Statistics
{
public:
    // False if the list is not sound.
    bool Take(const CT_CompList& list);

    // As tables, lines of text.
    void Print(std::ostream& output) const;

    unsigned Bytes() const { return bytes; }
    unsigned Items(Item::Kind kind) const { return items[kind]; }
    unsigned Words() const { return items[Item::INNER_END] + items[Item::LEAF_END]; }
    // The characters that can stand at a place, of each place.
    const Histogram& Ways() const { return ways; }
    // The elements of each word.
    const Histogram& Lengths() const { return lengths; }
    // The characters that a search for each word looks at.
    const Histogram& Steps() const { return steps; }

private:
    // In front of a character: the elements of the key so far, the characters that a search has
    // looked at, and those that stand at this place already.
    struct Place
    {
        unsigned length;
        unsigned steps;
        unsigned ways;
    };

    bool TakeBranches(const ListStream& stream);
    bool TakeBranch(const ListStream& stream, unsigned* position, Place place);
    bool TakeCharacter(const ListStream& stream, unsigned* position, Place* place);
    Item Next(const ListStream& stream, unsigned* position);
    void PrintBytes(std::ostream& output) const;

    unsigned bytes = 0;
    unsigned elementSize = 0;
    unsigned handleSize = 0;
    unsigned offsetSize = 0;
    unsigned items[Item::NONE + 1] = {};
    Histogram ways;
    Histogram lengths;
    Histogram steps;
    // Where the branches begin that are still to come.
    std::unordered_map<unsigned, Place> branches;
};
} // namespace lexicon
