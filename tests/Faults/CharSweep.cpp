// tests/Faults/CharSweep.cpp: mappings of strings with an exhausted heap.
#include <Ostra/Unicode/CharMappings.h>

#include <functional>
#include <memory>

#include "Faults/Sweep.h"
#include "Ostra/String/StringSupport.h"

namespace
{
const SweepReport report({"Ostra/Buffer/Buffer", "Ostra/String/UString"});

// A text whose block another string holds, and a result that holds what a third one has.
struct State
{
    State(const char16_t* text)
        : string(U(text)),
          sharer(&string),
          result(U(u"old")),
          third(&result)
    {}

    CT_UString string, sharer, result, third;
};

void ExpectUsable(CT_UString& s)
{
    s.v_Set(U(u"something that needs a block of another size"));
    s.v_Append(U(u"!"));
    EXPECT_EQ(Text(s), u"something that needs a block of another size!");
}

// What check sees of the string and its result, the others being whole.
using Check = std::function<void(const State&, bool failed)>;

void SweepState(const char16_t* text, void (*operation)(State&), const Check& check)
{
    Sweep(
        report, [&] { return std::make_unique<State>(text); }, operation,
        [&](State& state, bool failed) {
            check(state, failed);
            EXPECT_EQ(Text(state.sharer), text);
            EXPECT_EQ(Text(state.third), u"old");
            for (CT_UString* s : {&state.string, &state.result, &state.sharer, &state.third})
                ExpectUsable(*s);
        });
}
} // namespace

TEST(CharSweep, StringStaysWholeWithoutABlockOfItsOwn)
{
    SweepState(
        u"xyz\u00E9xyz", [](State& state) { CT_CharMappings::sv_ToBase(&state.string); },
        [](const State& state, bool failed) {
            EXPECT_EQ(Text(state.string), failed ? u"xyz\u00E9xyz" : u"xyzexyz");
        });
}

// Each change asks for itself: the one that has no memory is left out.
TEST(CharSweep, ChangeWithoutMemoryIsLeftOut)
{
    SweepState(
        u"abc", [](State& state) { CT_CharMappings::sv_ToUpper(&state.string); },
        [](const State& state, bool failed) {
            const std::u16string text = Text(state.string);
            EXPECT_TRUE(failed ? text == u"abc" || text == u"aBC" : text == u"ABC") << Narrow(text);
        });
}

TEST(CharSweep, DecompositionOfACharacter)
{
    SweepState(
        u"", [](State& state) { CT_CharMappings::sn_Decompose(0xE9, &state.result); },
        [](const State& state, bool failed) {
            EXPECT_EQ(Text(state.result), failed ? u"old" : u"e\u0301");
        });
}

TEST(CharSweep, DecompositionOfAString)
{
    SweepState(
        u"a\u00E9b\u01D5c\xD800\xDC00",
        [](State& state) { CT_CharMappings::sv_Decompose(&state.string, &state.result); },
        [](const State& state, bool failed) {
            EXPECT_EQ(Text(state.string), u"a\u00E9b\u01D5c\xD800\xDC00");
            EXPECT_TRUE(failed || Text(state.result) == u"e\u0301e\u0301U\u0308\u0304U\u0308\u0304"
                                                        u"\xD800\xDC00");
        });
}

TEST(CharSweep, DecompositionInPlace)
{
    SweepState(
        u"a\u00E9b", [](State& state) { CT_CharMappings::sv_Decompose(&state.string); },
        [](const State& state, bool failed) {
            EXPECT_TRUE(failed || Text(state.string) == u"e\u0301e\u0301");
        });
}
