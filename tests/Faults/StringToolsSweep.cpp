// tests/Faults/StringToolsSweep.cpp: ready-made work on strings with an exhausted heap.
#include <Ostra/String/Compare.h>
#include <Ostra/String/HashFunction.h>
#include <Ostra/String/LoadString.h>
#include <Ostra/String/StringScanner.h>
#include <Ostra/String/StringTools.h>

#include <functional>
#include <memory>
#include <set>

#include "Faults/Sweep.h"
#include "Ostra/String/StringSupport.h"
#include "Support/TestStrings.h"

namespace
{
const SweepReport report({"Ostra/Buffer/Buffer", "Ostra/String/CString", "Ostra/String/StringTools",
                          "Ostra/String/UString"});

const char* const BEFORE = "before";
const char* const LONG_TEXT =
    "first item of no great length;the second one is longer than the least block;third";
const char* const SECOND = "the second one is longer than the least block";

// A string that shares its block, and a text of its class with a set.
struct State
{
    State(bool wide, const char* own)
        : string(Make(wide, own)),
          sharer(Share(*string)),
          text(Make(wide, LONG_TEXT)),
          set(Make(wide, ";"))
    {}

    std::unique_ptr<CT_String> string, sharer, text, set;
};

// Sweeps an operation that leaves one of these texts when it fails.
void SweepText(bool wide, const char* before, const std::function<void(State&)>& operation,
               const std::string& after, const std::set<std::string>& halfway = {})
{
    Sweep(
        report, [&] { return std::make_unique<State>(wide, before); }, operation,
        [&](State& state, bool failed) {
            const std::string text = Ascii(*state.string);
            EXPECT_TRUE(text == after || (failed && (text == before || halfway.contains(text))))
                << text;
            EXPECT_EQ(Ascii(*state.sharer), before);
            EXPECT_EQ(Ascii(*state.text), LONG_TEXT);
            state.string->v_Set(LONG_TEXT, ALL, 1252);
            EXPECT_EQ(Ascii(*state.string), LONG_TEXT);
        });
}

CT_StringScanner scanner;
} // namespace

TEST(StringToolsSweep, ItemThatFindsNoRoomLeavesTheString)
{
    OnBoth([](bool wide) {
        SweepText(
            wide, BEFORE, [](State& s) { scanner.v_Item(s.string.get(), s.text.get(), ';', 2); },
            SECOND);
        SweepText(
            wide, BEFORE, [](State& s) { scanner.v_Item(s.string.get(), s.text.get(), ';', 9); },
            "");
    });
}

TEST(StringToolsSweep, WordThatFindsNoRoomLeavesTheStringOrEmptiesIt)
{
    OnBoth([](bool wide) {
        SweepText(wide, BEFORE,
                  [](State& s) { scanner.v_SubWord(s.string.get(), s.text.get(), s.set.get(), 2); },
                  SECOND, {""});
    });
}

TEST(StringToolsSweep, WordOfAStringIntoItselfThatFindsNoRoomLeavesTheStringOrEmptiesIt)
{
    OnBoth([](bool wide) {
        SweepText(
            wide, LONG_TEXT,
            [](State& s) { scanner.v_SubWord(s.string.get(), s.string.get(), s.set.get(), 2); },
            SECOND, {""});
    });
}

TEST(StringToolsSweep, NewScanner)
{
    struct Pointer
    {
        ~Pointer() { delete made; }
        CT_StringScanner* made = nullptr;
    };
    Sweep(
        "Ostra/String/StringScanner", [] { return std::make_unique<Pointer>(); },
        [](Pointer& state) { state.made = new CT_StringScanner; },
        [](Pointer& state, bool failed) { EXPECT_EQ(state.made == nullptr, failed); });
}

TEST(StringToolsSweep, RemovalThatFindsNoRoomLeavesTheString)
{
    const std::string after = std::string("first item of no great length;") + ";third";
    OnBoth([&](bool wide) {
        SweepText(
            wide, LONG_TEXT, [](State& s) { scanner.v_RemoveItem(s.string.get(), ';', 2); }, after);
        SweepText(
            wide, LONG_TEXT, [](State& s) { scanner.v_RemoveWord(s.string.get(), s.set.get(), 2); },
            after);
    });
}

TEST(StringToolsSweep, ReplacementMayStopAfterTheRemoval)
{
    OnBoth([](bool wide) {
        SweepText(
            wide, "a;b",
            [](State& s) { CT_StringTools::sn_Replace(s.string.get(), s.set.get(), s.text.get()); },
            std::string("a") + LONG_TEXT + "b", {"ab", std::string("a") + LONG_TEXT + ";b"});
    });
}

TEST(StringToolsSweep, NumberThatFindsNoRoomLeavesTheString)
{
    OnBoth([](bool wide) {
        SweepText(
            wide, BEFORE,
            [](State& s) {
                CT_StringTools::sv_FormatNumber(s.string.get(), 123456, 60, ',', '.', 2);
            },
            std::string(52, ' ') + "1,234.56");
    });
}

TEST(StringToolsSweep, NumberInANewStringReportsTheScratchBlock)
{
    OnBoth([](bool wide) {
        SweepText(
            wide, "",
            [](State& s) { CT_StringTools::sv_FormatNumber(s.string.get(), 5, -1, ',', '.', 2); },
            "0.05");
    });
}

TEST(StringToolsSweep, LoadedTextThatFindsNoRoomLeavesTheString)
{
    OnBoth([](bool wide) {
        SweepText(
            wide, BEFORE,
            [](State& s) { CT_LoadString::sv_LoadString(s.string.get(), 0, TEST_STRING_PLAIN); },
            "Plain text");
        SweepText(
            wide, BEFORE,
            [](State& s) {
                CT_LoadString::sv_LoadStringVA(s.string.get(), 0, TEST_STRING_NUMBER, 1u, 2);
            },
            "Number 1 of 2");
    });
}

// A temporary string without room counts as empty.
TEST(StringToolsSweep, ComparisonGoesOnWithWhatItHas)
{
    struct Pair
    {
        CT_CString left{LONG_TEXT, ALL, 1252}, right{SECOND, ALL, 1252};
        int order = 0;
        unsigned bucket = 0;
    };
    Sweep(
        report, [] { return std::make_unique<Pair>(); },
        [](Pair& pair) {
            const CT_String* left = &pair.left;
            const CT_String* right = &pair.right;
            pair.order = CT_Compare::si_CompareStringPPCO(&left, &right);
            pair.bucket = CT_HashFunction::sn_HashStringNoCasePPCO(&left, 101);
        },
        [](Pair& pair, bool failed) {
            EXPECT_TRUE(pair.order == -1 || (failed && (pair.order == 0 || pair.order == 1)));
            const unsigned bucket = CT_HashFunction::sn_HashNoCaseQCZ(LONG_TEXT, 101);
            EXPECT_TRUE(pair.bucket == bucket || (failed && pair.bucket == 1u));
            EXPECT_EQ(Text(pair.left), LONG_TEXT);
            EXPECT_EQ(Text(pair.right), SECOND);
        });
}
