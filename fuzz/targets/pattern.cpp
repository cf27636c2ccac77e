// fuzz/targets/pattern.cpp: patterns that are fed one character at a time, against the meaning of
// their tokens and against the machine of states; and patterns compared with each other.
//
// Input: two pieces of tokens, the text.
#include "Ostra/Pattern/PatternModel.h"

#include "Support/Input.h"
#include "Support/Library.h"

namespace
{
// Tokens and characters that the model knows: few, so that much matches.
std::string Tokens(const std::string& bytes)
{
    const std::string known = "ab*?0AB*cZ";
    std::string tokens;
    for (const char c : bytes)
        tokens += known[static_cast<unsigned char>(c) % known.size()];
    return tokens;
}

std::string Characters(const std::string& bytes)
{
    const std::string known = "ab0ABcZ";
    std::string text;
    for (const char c : bytes)
        text += known[static_cast<unsigned char>(c) % known.size()];
    return text;
}

void Feed(CT_Pattern& made, const std::string& tokens, const std::string& text)
{
    pattern::Model model(tokens);
    made.v_DoMatch();
    model.DoMatch();
    std::string sofar;
    for (const char c : text) {
        const bool matches = made.b_IsMatch(pattern::Character(c)) != 0;
        REQUIRE(matches == (model.IsMatch(c) != 0));
        REQUIRE(made.n_EndStateFrom() == model.EndStateFrom());
        sofar += c;
        // Trying every way takes a time that grows with the power of the runs.
        if (tokens.size() <= 8 && sofar.size() <= 12)
            REQUIRE(matches == pattern::Means(tokens, sofar));
    }
}
} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    Input input(data, size);
    const std::string tokens = Tokens(input.Piece(200)), others = Tokens(input.Piece(20));
    const std::string text = Characters(input.Rest());
    const auto made = pattern::Make(tokens), other = pattern::Make(others);
    Feed(*made, tokens, text);
    pattern::Model model(tokens), otherModel(others);
    REQUIRE(made->et_Compare(other.get()) == model.Compare(otherModel));
    // A copy shares the row until one adds a token; a run begins anew then.
    CT_Pattern copy(made.get());
    pattern::Add(copy, others);
    Feed(copy, tokens + others, text);
    Feed(*made, tokens, text);
    REQUIRE(TakeCode() == 0);
    return 0;
}
