// examples/ask/Words.cpp
#include "Words.h"

#include <lexicon/Builder.h>
#include <lexicon/Lexicon.h>

#include <Ostra/Unicode/CharMappings.h>
#include <Common/Failure.h>
#include <Common/Output.h>
#include <Common/Utf8.h>

#include <algorithm>
#include <deque>
#include <utility>

namespace ask
{
using namespace common;

namespace
{
constexpr char SOURCE[] = "ask/Words";

constexpr char LINE_END[] = "\r\n";
constexpr std::size_t LONGEST = 255; // What the platform takes for the name of an item.

// The platform's names of items have no case.
std::string FoldOf(std::string_view word)
{
    CT_UString wide;
    common::ToWide(word, &wide);
    CT_CharMappings::sv_ToUpper(&wide);
    return common::ToUtf8(wide.qcuz_Get(), wide.vn_GetLength());
}

bool IsPair(const Addition& addition)
{
    unsigned reserved;
    return common::IsUtf8(addition.word) && common::IsUtf8(addition.translation) &&
           WrongWith(addition.word).empty() && !addition.translation.empty() &&
           lexicon::IsKey(addition.translation, &reserved);
}
} // namespace

std::string WrongWith(std::string_view word)
{
    unsigned reserved;
    if (word.empty())
        return "is empty";
    if (word.size() > LONGEST)
        return "is too long: 255 bytes are the most";
    if (!lexicon::IsKey(word, &reserved) || word.find('\t') != word.npos)
        return "holds a character that no word of a lexicon can hold";
    return {};
}

// All pairs of a file, in its order.
class Words::Pairs
{
public:
    // False with an error set.
    bool Read(const CT_UString& name)
    {
        lexicon::Lexicon lexicon(&name);
        if (!lexicon.Open() || !lexicon.Load(lexicon::SOURCES))
            return false;
        lexicon::Entry entry;
        unsigned position = 0;
        while (lexicon.Next(lexicon::SOURCES, &position, &entry))
            for (const std::string_view other : entry.others)
                list.emplace_back(entry.word, other);
        return !Failed(SOURCE);
    }
    bool Holds(const Addition& addition) const
    {
        return std::find(list.begin(), list.end(), PairOf(addition)) != list.end();
    }
    void Add(const Addition& addition) { list.push_back(PairOf(addition)); }

    const auto& List() const { return list; }

private:
    using Pair = std::pair<std::string, std::string>;

    static Pair PairOf(const Addition& addition) { return {addition.word, addition.translation}; }

    // Their places stay: a builder looks at the texts.
    std::deque<Pair> list;
};

bool Words::Load(const CT_UString& name)
{
    file.v_Set(&name);
    Pairs pairs;
    if (Failing() || !pairs.Read(file))
        return false;
    Take(pairs);
    return true;
}

void Words::Take(const Pairs& pairs)
{
    answers.clear();
    for (const auto& [word, translation] : pairs.List()) {
        std::string& answer = answers[FoldOf(word)];
        answer += (answer.empty() ? "" : LINE_END) + translation;
    }
}

const std::string* Words::Find(std::string_view word) const
{
    const auto found = answers.find(FoldOf(word));
    return found == answers.end() ? nullptr : &found->second;
}

// On a failure the file stays as it is. The thread has no error set, before and after.
bool Words::Save(const Pairs& pairs, Failure* reason) const
{
    lexicon::Builder builder;
    for (const auto& [word, translation] : pairs.List())
        builder.Add({word, translation});
    Output output;
    if (output.Take(file) && output.Start()) {
        Progress progress(nullptr, "");
        builder.Save(&output.Fresh(), &progress);
        output.LeaveToOthers();
    }
    if (!Failing() && output.Commit())
        return true;
    *reason = Failure::Take();
    if (output.IsTaken())
        output.Discard();
    return false;
}

Words::Outcome Words::Add(const Addition& addition, Failure* reason)
{
    if (!IsPair(addition))
        return Outcome::REFUSED;
    Pairs pairs;
    if (!pairs.Read(file)) {
        *reason = Failure::Take();
        return Outcome::FAILED;
    }
    const bool isNew = !pairs.Holds(addition);
    if (isNew) {
        pairs.Add(addition);
        if (!Save(pairs, reason))
            return Outcome::FAILED;
    }
    Take(pairs);
    return isNew ? Outcome::KEPT : Outcome::KNOWN;
}
} // namespace ask
