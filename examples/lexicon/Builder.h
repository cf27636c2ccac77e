// examples/lexicon/Builder.h: a lexicon is made from pairs and saved.
#pragma once

#include "Input.h"
#include "Storage.h"

#include <Ostra/Buffer/Buffer.h>
#include <Common/Progress.h>

#include <cstdint>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace lexicon
{
// The words of one side in the order in which they appeared, each with the numbers of its partners.
class WordTable
{
public:
    struct Word
    {
        std::string_view text;
        std::vector<unsigned> partners;
    };

    // The number of a word, which joins the table if it is new.
    unsigned Number(std::string_view text);

    Word& operator[](unsigned number) { return words[number]; }
    const Word& operator[](unsigned number) const { return words[number]; }
    unsigned Count() const { return static_cast<unsigned>(words.size()); }

private:
    std::vector<Word> words;
    std::unordered_map<std::string_view, unsigned> numbers;
};

// The memory of the pairs' texts has to stay until the lexicon is saved.
class Builder
{
public:
    // Takes a pair; one that is known already changes nothing.
    void Add(const Pair& pair);

    // Makes both sides and stores them in a new record file; false with an error set.
    bool Save(const CT_String* name, common::Progress* progress);

    unsigned Pairs() const { return pairs; }
    unsigned Words(Side side) const { return tables[side].Count(); }

private:
    bool SaveContents(CT_RecordManager* manager, common::Progress* progress);
    bool SaveSide(Side side, CT_RecordManager* manager, Directory* directory,
                  common::Progress* progress);
    bool Fill(Side side, CT_Buffer* list, CT_Buffer* texts, common::Progress* progress);
    void AppendEntry(Side side, unsigned number, CT_Buffer* texts) const;
    std::uint64_t TextRoom(Side side) const;

    WordTable tables[SIDES];
    unsigned pairs = 0;
    unsigned stored = 0;
};
} // namespace lexicon
