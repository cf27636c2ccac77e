// tests/Faults/StandardUTF8Sweep.cpp: standard UTF-8 with an exhausted heap.
#include <System/String/StandardUTF8.h>

#include <memory>

#include "Faults/Sweep.h"
#include "Ostra/String/StringSupport.h"

namespace
{
const SweepReport report("Ostra/Buffer/Buffer");
constexpr CT_StandardUTF8::et_IllFormed REPLACE = CT_StandardUTF8::e_Replace;

const char* const BYTES = "a text of some length, \xE2\x82\xAC and \xF0\x9F\x98\x80, and \xFF";
const std::u16string UNITS = u"a text of some length, \u20AC and \U0001F600, and \uFFFD";

struct State
{
    CT_UString wide{U(u"before")};
    CT_CString narrow{"before"};
    CT_StandardUTF8::st_ToWide toWide;
    CT_StandardUTF8::st_FromWide fromWide;
};

std::unique_ptr<State> Prepare()
{
    return std::make_unique<State>();
}
} // namespace

TEST(StandardUTF8Sweep, WholeTextToWide)
{
    Sweep(
        report, Prepare,
        [](State& state) { CT_StandardUTF8::sb_ToWide(&state.wide, BYTES, ALL, REPLACE); },
        [](State& state, bool failed) { EXPECT_EQ(Text(state.wide), failed ? u"before" : UNITS); });
}

TEST(StandardUTF8Sweep, WholeTextFromWide)
{
    Sweep(
        report, Prepare,
        [](State& state) { CT_StandardUTF8::sb_FromWide(&state.narrow, U(UNITS.data())); },
        [](State& state, bool failed) {
            EXPECT_EQ(Text(state.narrow).substr(0, 6), failed ? "before" : "a text");
            EXPECT_EQ(state.narrow.n_GetCodePage(), failed ? 0u : 65001u);
        });
}

TEST(StandardUTF8Sweep, PieceToWide)
{
    Sweep(
        report, Prepare,
        [](State& state) {
            CT_StandardUTF8::sb_PieceToWide(&state.wide, &state.toWide, BYTES, ALL, REPLACE);
        },
        [](State& state, bool failed) {
            EXPECT_EQ(Text(state.wide), failed ? u"before" : u"before" + UNITS);
            EXPECT_EQ(state.toWide.n8_Taken, failed ? 0u : std::strlen(BYTES));
            EXPECT_TRUE(CT_StandardUTF8::sb_EndToWide(&state.wide, &state.toWide, REPLACE));
        });
}

TEST(StandardUTF8Sweep, PieceFromWide)
{
    Sweep(
        report, Prepare,
        [](State& state) {
            CT_StandardUTF8::sb_PieceFromWide(&state.narrow, &state.fromWide, U(UNITS.data()));
        },
        [](State& state, bool failed) {
            EXPECT_EQ(state.narrow.vn_GetLength() > 6, !failed);
            EXPECT_EQ(state.fromWide.n8_Taken, failed ? 0u : UNITS.size());
        });
}
