// examples/cookbook/matching.cpp: a pattern that follows a text as it comes, and tells of two
// patterns which is the wider.
#include <Ostra/Ostra.h>

#include <cstdio>

// What a pattern text means is the caller's: here * is a run, ? any one, and \ makes either plain.
static void Set(CT_Pattern& pattern, const char* text)
{
    pattern.v_Set();
    for (; *text; ++text)
        if (*text == '*')
            pattern.v_AddToken(CT_Pattern::ty_AnyRun, 0);
        else if (*text == '?')
            pattern.v_AddToken(CT_Pattern::ty_AnyOne, 0);
        else {
            if (*text == '\\' && text[1])
                ++text;
            pattern.v_AddToken(CT_Pattern::ty_Character, static_cast<unsigned char>(*text));
        }
}

static void Follow(CT_Pattern& pattern, const char* text)
{
    pattern.v_DoMatch();
    for (; *text; ++text) {
        const int match = pattern.b_IsMatch(static_cast<unsigned char>(*text));
        std::printf("  %c %s", *text, match ? "matches" : "-");
        if (match)
            std::printf(", from character %u on", pattern.n_EndStateFrom());
        std::printf("\n");
    }
}

int main()
{
    CT_Pattern pattern;
    Set(pattern, "h*s");
    std::printf("h*s\n");
    Follow(pattern, "houses");

    Set(pattern, "h*s\\?*");
    std::printf("h*s\\?*\n");
    Follow(pattern, "hours?!");

    static const char* const stands[] = {"narrower than", "wider than", "the same as",
                                         "unrelated to"};
    CT_Pattern other;
    for (const char* text : {"h*", "hours\\?", "m*"}) {
        Set(other, text);
        std::printf("h*s\\?* is %s %s\n", stands[pattern.et_Compare(&other)], text);
    }
    return CT_ErrorManager::spco_Get()->b_IsSetError();
}
