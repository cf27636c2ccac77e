// examples/lexicon/Wildcard.cpp
#include "Wildcard.h"

#include <Common/Failure.h>

namespace lexicon
{
using namespace common;

namespace
{
constexpr char SOURCE[] = "lexicon/Wildcard";

// The characters of wide text one by one.
class Characters
{
public:
    explicit Characters(const CT_UString& text)
        : next(text.qcuz_Get()),
          end(next + text.vn_GetLength())
    {}

    bool IsEnd() const { return next == end; }
    unsigned Next()
    {
        const unsigned first = *next++;
        if ((first & 0xFC00) != 0xD800 || IsEnd() || (*next & 0xFC00) != 0xDC00)
            return first;
        return 0x10000 + ((first & 0x3FF) << 10) + (*next++ & 0x3FF);
    }

private:
    const unsigned short* next;
    const unsigned short* end;
};
} // namespace

bool Wildcard::Parse(const CT_UString& text)
{
    if (!text.vn_GetLength())
        Fail(SOURCE, u"the pattern is empty");
    pattern.v_Set();
    Characters characters(text);
    while (!Failing() && !characters.IsEnd()) {
        unsigned character = characters.Next();
        CT_Pattern::et_Type type = CT_Pattern::ty_Character;
        if (character == '*')
            type = CT_Pattern::ty_AnyRun;
        else if (character == '?')
            type = CT_Pattern::ty_AnyOne;
        else if (character == '\\' && characters.IsEnd())
            Fail(SOURCE, u"the pattern ends with a backslash, which takes a character behind it");
        else if (character == '\\')
            character = characters.Next();
        pattern.v_AddToken(type, character);
    }
    return !Failed(SOURCE);
}

bool Wildcard::Matches(const CT_UString& key)
{
    bool match = false;
    pattern.v_DoMatch();
    for (Characters characters(key); !characters.IsEnd();)
        match = pattern.b_IsMatch(characters.Next());
    return match;
}
} // namespace lexicon
