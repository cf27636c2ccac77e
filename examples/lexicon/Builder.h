// examples/lexicon/Builder.h: a lexicon is made from pairs and saved.
#pragma once

#include "Input.h"
#include "Storage.h"

#include <Ostra/Buffer/Buffer.h>
#include <Common/Progress.h>

#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

namespace lexicon
{
// Finds numbers by what they stand for, which others keep: a table of hash values. No node and no
// block for each, so a whole dictionary takes little room.
class HashIndex
{
public:
    // The number with that hash for which same(number) is true; if there is none, next, which is
    // entered.
    template <class Same>
    unsigned Number(std::uint32_t hash, unsigned next, Same same)
    {
        if (used >= slots.size() / 4 * 3)
            Grow();
        size_t at = hash & (slots.size() - 1);
        for (; slots[at].number != NONE; at = (at + 1) & (slots.size() - 1)) {
            if (slots[at].hash == hash && same(slots[at].number))
                return slots[at].number;
        }
        slots[at] = {hash, next};
        ++used;
        return next;
    }

    // Lets go of all.
    void Clear();

private:
    static constexpr unsigned NONE = 0xFFFFFFFF;
    struct Slot
    {
        std::uint32_t hash = 0;
        unsigned number = NONE;
    };

    void Grow();

    std::vector<Slot> slots; // a power of two
    size_t used = 0;
};

// The words of one side in the order in which they appeared.
class WordTable
{
public:
    // The number of a word, which joins the table if it is new.
    unsigned Number(std::string_view text);
    // From now on no word can be asked for.
    void Close() { index.Clear(); }

    std::string_view operator[](unsigned number) const { return words[number]; }
    unsigned Count() const { return static_cast<unsigned>(words.size()); }

private:
    std::vector<std::string_view> words;
    HashIndex index;
};

// The memory of the pairs' texts has to stay until the lexicon is saved.
class Builder
{
public:
    // Takes a pair; one that is known already changes nothing.
    void Add(const Pair& pair);

    // Makes both sides and stores them in a new record file; false with an error set. Nothing can be
    // added afterwards.
    bool Save(const CT_String* name, common::Progress* progress);

    unsigned Pairs() const { return static_cast<unsigned>(pairs.size()); }
    unsigned Words(Side side) const { return tables[side].Count(); }

private:
    unsigned Enter(Side side, std::string_view word);
    bool SaveContents(CT_RecordManager* manager, common::Progress* progress);
    bool SaveSide(Side side, CT_RecordManager* manager, Directory* directory,
                  common::Progress* progress);
    bool SaveList(Side side, CT_RecordManager* manager, Part* part, common::Progress* progress);
    bool Fill(Side side, CT_Buffer* list, common::Progress* progress);
    bool SaveTexts(Side side, CT_RecordManager* manager, Texts* texts) const;
    using Span = std::span<const unsigned>;
    void Collect(Side side);
    Span PartnersOf(unsigned number) const;
    unsigned EntrySize(Side side, unsigned number) const;
    void AppendEntry(Side side, unsigned number, CT_Buffer* texts) const;

    // The numbers of two words that belong together.
    struct Couple
    {
        unsigned words[SIDES];
    };

    WordTable tables[SIDES];
    std::vector<Couple> pairs;
    HashIndex known;                // pairs
    std::uint64_t room[SIDES] = {}; // that the texts take
    unsigned stored = 0;

    // Of the side that is saved: all partners word by word, and where those of a word end.
    std::vector<unsigned> partners;
    std::vector<unsigned> ends;
};
} // namespace lexicon
