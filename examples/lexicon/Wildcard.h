// examples/lexicon/Wildcard.h: a pattern of words as it is typed.
#pragma once

#include <Ostra/Pattern/Pattern.h>
#include <Ostra/String/UString.h>

namespace lexicon
{
// "*" stands for any run of characters, "?" for any one, and a backslash takes the character behind
// it as it is. A character beyond U+FFFF is two elements of a key, but one character here.
class Wildcard
{
public:
    // False with an error set for a text that is no pattern.
    bool Parse(const CT_UString& text);

    // Whether the pattern matches the key as a whole.
    bool Matches(const CT_UString& key);

private:
    CT_Pattern pattern;
};
} // namespace lexicon
