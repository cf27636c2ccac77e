// examples/ask/Words.h: a lexicon in memory, answered from and added to.
#pragma once

#include "Command.h"

#include <Ostra/String/UString.h>
#include <Common/Failure.h>

#include <string>
#include <string_view>
#include <unordered_map>

namespace ask
{
// What a word must not be to be an item and a key: why not, or an empty text.
std::string WrongWith(std::string_view word);

class Words
{
public:
    enum class Outcome
    {
        KEPT,
        KNOWN,   // The pair is there: nothing is written.
        REFUSED, // It is none.
        FAILED   // It couldn't be kept; the reason is told.
    };

    // Reads the file; false with an error set.
    bool Load(const CT_UString& name);

    // The translations of all words that differ from this one in case only, those of one below the
    // other; null for none. Lines end as in the platform's clipboard.
    const std::string* Find(std::string_view word) const;

    // Adds a pair to the file, as it is then: what others have put there stays. It is replaced in
    // one step, and on the disk at the end.
    Outcome Add(const Addition& addition, common::Failure* reason);

    unsigned Count() const { return static_cast<unsigned>(answers.size()); }

private:
    class Pairs;

    void Take(const Pairs& pairs);
    bool Save(const Pairs& pairs, common::Failure* reason) const;

    CT_UString file;
    std::unordered_map<std::string, std::string> answers; // by the folded word
};
} // namespace ask
