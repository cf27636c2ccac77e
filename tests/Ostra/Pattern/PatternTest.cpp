// tests/Ostra/Pattern/PatternTest.cpp
#include <Ostra/Pattern/Pattern.h>

#include "PatternModel.h"
#include "Support/Failure.h"

#include <gtest/gtest.h>

#include <new>

namespace
{
using pattern::Add;
using pattern::Character;
using pattern::Make;
using pattern::Row;

typedef CT_Pattern::et_Result Result;

// What each character of a text gives, as in "0@0 1@2": the result and where the match began.
std::string Feed(CT_Pattern& to, const std::string& text)
{
    std::string steps;
    for (const char c : text) {
        const int match = to.b_IsMatch(Character(c));
        steps += (steps.empty() ? "" : " ") + std::to_string(match) + "@" +
                 std::to_string(to.n_EndStateFrom());
    }
    return steps;
}

std::string Match(CT_Pattern& on, const std::string& text)
{
    on.v_DoMatch();
    return Feed(on, text);
}

Result Compare(const std::string& one, const std::string& two)
{
    return Make(one)->et_Compare(Make(two).get());
}

const Failure pending{4711, "(4711): earlier", {"Ostra/Pattern/Pattern"}};

void SetEarlierError()
{
    Errors().v_SetError(4711, Units(u"earlier"));
}
} // namespace

// ---- Numbers ------------------------------------------------------------------------------

TEST(Pattern, TokensAndResultsHaveTheirNumbers)
{
    EXPECT_EQ(CT_Pattern::ty_AnyOne, 1U);
    EXPECT_EQ(CT_Pattern::ty_AnyRun, 2U);
    EXPECT_EQ(CT_Pattern::ty_Character, 3U);
    EXPECT_EQ(CT_Pattern::re_Narrower, 0U);
    EXPECT_EQ(CT_Pattern::re_Wider, 1U);
    EXPECT_EQ(CT_Pattern::re_Same, 2U);
    EXPECT_EQ(CT_Pattern::re_Unrelated, 3U);
    EXPECT_EQ(sizeof(CT_Pattern::st_State), 12U);
}

// ---- The row ------------------------------------------------------------------------------

TEST(Pattern, TokensMakeTheRow)
{
    const struct
    {
        const char* tokens;
        const char* row;
    } cases[] = {
        {"", "0,-"},
        {"a", "3,a 0,-"},
        {"?", "1,- 0,-"},
        {"*", "2,-"},
        {"**", "2,-"},
        {"ab", "3,a 3,b 0,-"},
        {"a*b?", "3,a 2,b 1,- 0,-"},
        {"*?", "2,-,any 0,-"},
        {"*?*", "2,-,any 2,-"},
        {"**?", "2,-,any 0,-"},
        {"a*", "3,a 2,-"},
        {"a**b", "3,a 2,b 0,-"},
        {"*a*", "2,a 2,-"},
        {"*??", "2,-,any 1,- 0,-"},
        {"?*", "1,- 2,-"},
        {"0", "3,- 0,-"},
        {"*0", "2,- 0,-"},
    };
    for (const auto& row : cases) {
        SCOPED_TRACE(row.tokens);
        EXPECT_EQ(Row(*Make(row.tokens)), row.row);
    }
}

TEST(Pattern, TheCharacterOfOtherTokensCountsForNothing)
{
    CT_Pattern made;
    made.v_AddToken(CT_Pattern::ty_AnyOne, 'x');
    made.v_AddToken(CT_Pattern::ty_AnyRun, 'y');
    made.v_AddToken(CT_Pattern::ty_AnyOne, 'z');
    EXPECT_EQ(Row(made), "1,- 2,-,any 0,-");
}

TEST(Pattern, OtherNumbersThanThoseOfTokensAddNothing)
{
    for (const unsigned type : {0U, 4U, 5U, 0x80000000U, 0xFFFFFFFFU}) {
        SCOPED_TRACE(type);
        const auto made = Make("a");
        made->v_AddToken(static_cast<CT_Pattern::et_Type>(type), 'b');
        EXPECT_EQ(Row(*made), "3,a 0,-");
    }
}

TEST(Pattern, StatesAreKeptAtAGrowthOfEight)
{
    CT_Pattern made;
    const CT_VoidArray& states = made.*Private(PatternStates());
    EXPECT_EQ(states.n_GetItemSize(), 12U);
    EXPECT_EQ(states.n_GetGrowth(), 8U);
    made.v_Set();
    EXPECT_EQ(states.n_GetGrowth(), 8U);
    EXPECT_EQ(states.n_GetCount(), 1U);
}

// ---- Matching -----------------------------------------------------------------------------

TEST(Pattern, EachCharacterTellsWhetherTheTextSoFarMatches)
{
    const struct
    {
        const char* tokens;
        const char* text;
        const char* steps;
    } cases[] = {
        {"", "aa", "0@0 0@0"},
        {"ab", "abc", "0@0 1@2 0@0"},
        {"ab", "abab", "0@0 1@2 0@0 0@0"},
        {"*", "axa", "1@1 1@1 1@1"},
        {"*a", "axa", "1@1 0@0 1@3"},
        {"*a", "aaxa", "1@1 1@1 0@0 1@4"},
        {"?", "xx", "1@1 0@0"},
        {"a*", "abc", "1@1 1@1 1@1"},
        {"a*", "bab", "0@0 0@0 0@0"},
        {"xa*", "xay", "0@0 1@2 1@2"},
        {"a*b", "aabbb", "0@0 0@0 1@3 1@3 1@3"},
        {"*?", "xyz", "1@1 1@1 1@1"},
        {"*??", "xyz", "0@0 1@2 1@2"},
        {"*?*", "xyz", "1@1 1@1 1@1"},
        {"*ab*", "xxaby", "0@0 0@0 0@0 1@4 1@4"},
        {"a?c", "abc", "0@0 0@0 1@3"},
        {"0", "0", "1@1"},
        {"0", "a", "0@0"},
        {"?0", "a0a", "0@0 1@2 0@0"},
    };
    for (const auto& row : cases) {
        SCOPED_TRACE(testing::Message() << row.tokens << " on " << row.text);
        EXPECT_EQ(Match(*Make(row.tokens), row.text), row.steps);
    }
}

TEST(Pattern, ANewPatternStandsAtItsEndUntilTheFirstCharacter)
{
    CT_Pattern made;
    made.v_DoMatch();
    EXPECT_EQ((made.*Private(PatternMatchAny()))(), 1);
    EXPECT_EQ(made.n_EndStateFrom(), 0U);
    EXPECT_EQ(made.b_IsMatch('a'), 0);
    EXPECT_EQ((made.*Private(PatternMatchAny()))(), 0);
}

// As if no character were there: any character leads on.
TEST(Pattern, TheCharacterZeroBehindARunIsAnyCharacter)
{
    EXPECT_EQ(Match(*Make("*0"), "a0b"), "1@1 1@1 1@1");
    EXPECT_EQ(Match(*Make("*0b"), "ab"), "0@0 1@2");
    EXPECT_EQ(Match(*Make("*0b"), "b"), "0@0");
    EXPECT_EQ(Match(*Make("*0*"), "ab"), "1@1 1@1");
}

TEST(Pattern, CharactersAreNumbersOf32Bits)
{
    for (const unsigned c :
         {1U, 0x100U, 0xFFFFU, 0x10000U, 0x7FFFFFFFU, 0x80000000U, 0xFFFFFFFFU}) {
        SCOPED_TRACE(c);
        CT_Pattern made, behind_run;
        made.v_AddToken(CT_Pattern::ty_Character, c);
        behind_run.v_AddToken(CT_Pattern::ty_AnyRun, 0);
        behind_run.v_AddToken(CT_Pattern::ty_Character, c);
        for (CT_Pattern* each : {&made, &behind_run}) {
            for (const unsigned other : {0U, c - 1, c + 1, c ^ 0x100, c ^ 0x10000, ~c}) {
                each->v_DoMatch();
                EXPECT_EQ(each->b_IsMatch(other), 0) << other;
            }
            each->v_DoMatch();
            EXPECT_EQ(each->b_IsMatch(c), 1);
        }
    }
}

TEST(Pattern, ANewRunStartsOver)
{
    const auto made = Make("ab");
    EXPECT_EQ(Match(*made, "ab"), "0@0 1@2");
    made->v_DoMatch();
    EXPECT_EQ(made->n_EndStateFrom(), 0U);
    EXPECT_EQ(Feed(*made, "ab"), "0@0 1@2");
    EXPECT_EQ(Match(*made, "b"), "0@0");
    EXPECT_EQ(Match(*made, "ab"), "0@0 1@2");
}

TEST(Pattern, BeforeARunNothingMatches)
{
    const auto made = Make("*");
    EXPECT_EQ(made->b_IsMatch('a'), 0);
    EXPECT_EQ(made->n_EndStateFrom(), 0U);
    EXPECT_EQ(Match(*made, "a"), "1@1");
    made->v_Set();
    EXPECT_EQ(made->n_EndStateFrom(), 0U);
    Add(*made, "*");
    EXPECT_EQ(made->b_IsMatch('a'), 0);
}

TEST(Pattern, AnyNumberOfRunsTakesStepsOfOneSize)
{
    std::string tokens;
    for (unsigned n = 0; n < 500; ++n)
        tokens += "*a";
    const auto made = Make(tokens + "b");
    made->v_DoMatch();
    for (unsigned n = 0; n < 3000; ++n)
        ASSERT_EQ(made->b_IsMatch('a'), 0);
    EXPECT_EQ(made->b_IsMatch('b'), 1);
    EXPECT_EQ(made->n_EndStateFrom(), 3001U);
}

// ---- Tables -------------------------------------------------------------------------------

TEST(Pattern, TellsWhetherItMayYetMatch)
{
    for (const std::size_t before : {0, 1, 62, 63, 64, 130}) {
        SCOPED_TRACE(before);
        const std::string text(before, 'a');
        const auto made = Make(text + "b*c");
        EXPECT_FALSE(made->b_CanMatch());
        made->v_DoMatch();
        EXPECT_TRUE(made->b_CanMatch());
        for (const char c : text)
            made->b_IsMatch(Character(c));
        EXPECT_TRUE(made->b_CanMatch());
        made->b_IsMatch('b');
        for (const char c : std::string("xxcx")) {
            made->b_IsMatch(Character(c));
            EXPECT_TRUE(made->b_CanMatch());
        }
        Match(*made, text + "x");
        EXPECT_FALSE(made->b_CanMatch());
        EXPECT_EQ(made->b_IsMatch('c'), 0);
        made->v_DoMatch();
        EXPECT_TRUE(made->b_CanMatch());
    }
    // At its end alone it has matched.
    const auto one = Make("a");
    EXPECT_EQ(Match(*one, "a"), "1@1");
    EXPECT_TRUE(one->b_CanMatch());
    EXPECT_EQ(one->b_IsMatch('a'), 0);
    EXPECT_FALSE(one->b_CanMatch());
}

TEST(Pattern, ARunAddedDuringARunTakesPartAtOnce)
{
    // It opens no state, so there is room for it.
    for (const std::size_t before : {1, 63, 64, 100}) {
        SCOPED_TRACE(before);
        const std::string text(before, 'a');
        const auto made = Make(text);
        Match(*made, text);
        EXPECT_EQ(made->n_EndStateFrom(), before);
        Add(*made, "*");
        EXPECT_EQ(made->b_IsMatch('x'), 1);
        EXPECT_EQ(made->n_EndStateFrom(), before);
    }
}

// The run under way has no room for a state more; the next one makes it.
TEST(Pattern, ARowThatHasOutgrownItsTablesMatchesNothingUntilTheNextRun)
{
    for (const char* added : {"a", "?"}) {
        SCOPED_TRACE(added);
        const auto made = Make("*");
        EXPECT_EQ(Match(*made, "a"), "1@1");
        Add(*made, added);
        EXPECT_EQ(made->b_IsMatch('a'), 0);
        EXPECT_EQ(made->n_EndStateFrom(), 0U);
        EXPECT_EQ(Match(*made, "aa"), "1@1 1@1");

        Add(*made, added);
        EXPECT_EQ((*made.*Private(PatternContains()))(Make("aa").get()), 1);
    }
}

// Of rows of every size, over the tables' steps of 64 states.
TEST(Pattern, TokensMayBeAddedBetweenRuns)
{
    const auto made = Make("");
    std::string text;
    for (unsigned n = 1; n <= 200; ++n) {
        const char c = static_cast<char>('a' + n % 7);
        Add(*made, std::string(1, c));
        text += c;
        made->v_DoMatch();
        for (unsigned at = 0; at < n; ++at)
            ASSERT_EQ(made->b_IsMatch(text[at]), at + 1 == n) << n;
        EXPECT_EQ(made->b_IsMatch('a'), 0);
    }
}

TEST(Pattern, ComparingWorksAfterMoreTokens)
{
    const auto made = Make("a"), other = Make("a?");
    EXPECT_EQ(made->et_Compare(other.get()), CT_Pattern::re_Unrelated);
    Add(*made, "b");
    EXPECT_EQ(made->et_Compare(other.get()), Make("ab")->et_Compare(Make("a?").get()));
    EXPECT_EQ(made->et_Compare(other.get()), CT_Pattern::re_Same);
    Add(*other, "c");
    EXPECT_EQ(made->et_Compare(other.get()), CT_Pattern::re_Unrelated);
    Add(*made, "c");
    EXPECT_EQ(made->et_Compare(other.get()), CT_Pattern::re_Same);
}

TEST(Pattern, APatternIsAddedToBeforeItsFirstRunWithoutLimit)
{
    const auto made = Make("a");
    Add(*made, std::string(1000, '?') + "*");
    EXPECT_EQ(Match(*made, "a").back(), '0');
    for (unsigned n = 1; n < 1000; ++n)
        ASSERT_EQ(made->b_IsMatch('x'), 0);
    EXPECT_EQ(made->b_IsMatch('x'), 1);
    EXPECT_EQ(made->b_IsMatch('x'), 1);
    EXPECT_EQ(made->n_EndStateFrom(), 1001U);
}

// ---- Construction -------------------------------------------------------------------------

TEST(Pattern, ACopySharesTheRowUntilOneAddsAToken)
{
    const auto made = Make("a");
    CT_Pattern copy(made.get());
    const auto buffer = [](const CT_Pattern& of) {
        return (of.*Private(PatternStates())).pcco_GetBuffer();
    };
    EXPECT_EQ(buffer(copy)->qcv_Get(), buffer(*made)->qcv_Get());
    EXPECT_EQ(buffer(copy)->n_GetUseCount(), 2U);
    Add(copy, "b");
    EXPECT_EQ(Row(*made), "3,a 0,-");
    EXPECT_EQ(Row(copy), "3,a 3,b 0,-");

    CT_Pattern second(made.get());
    Add(*made, "*");
    EXPECT_EQ(Row(*made), "3,a 2,-");
    EXPECT_EQ(Row(second), "3,a 0,-");
}

TEST(Pattern, ARunOfACopyIsItsOwn)
{
    const auto made = Make("ab");
    EXPECT_EQ(Match(*made, "a"), "0@0");
    CT_Pattern copy(made.get());
    EXPECT_EQ(copy.n_EndStateFrom(), 0U);
    EXPECT_EQ(Match(copy, "x"), "0@0");
    EXPECT_EQ(made->b_IsMatch('b'), 1);
    EXPECT_EQ(Match(copy, "ab"), "0@0 1@2");
}

TEST(Pattern, SettingStartsAnew)
{
    const auto made = Make("a*b");
    Match(*made, "ab");
    EXPECT_EQ(made->n_EndStateFrom(), 2U);
    CT_Pattern copy(made.get());
    made->v_Set();
    EXPECT_EQ(Row(*made), "0,-");
    EXPECT_EQ(made->n_EndStateFrom(), 0U);
    EXPECT_EQ(Row(copy), "3,a 2,b 0,-");
    Add(*made, "abcde");
    EXPECT_EQ(Match(*made, "abcde"), "0@0 0@0 0@0 0@0 1@5");
}

TEST(Pattern, SettingToAnotherSharesItsRow)
{
    const auto made = Make("a"), other = Make("xyz*");
    Match(*made, "a");
    made->v_Set(other.get());
    EXPECT_EQ(made->n_EndStateFrom(), 0U);
    EXPECT_EQ(Row(*made), Row(*other));
    EXPECT_EQ(Match(*made, "xyza"), "0@0 0@0 1@3 1@3");
    Add(*made, "a");
    EXPECT_EQ(Row(*other), "3,x 3,y 3,z 2,-");
}

TEST(Pattern, SettingToItselfKeepsTheRow)
{
    const auto made = Make("a*");
    Match(*made, "a");
    made->v_Set(made.get());
    EXPECT_EQ(Row(*made), "3,a 2,-");
    EXPECT_EQ(Match(*made, "ab"), "1@1 1@1");
}

TEST(Pattern, IsMadeOnTheHeapByItsOwnOperators)
{
    CT_Pattern* made = new CT_Pattern;
    ASSERT_NE(made, nullptr);
    EXPECT_EQ(Match(*made, "a"), "0@0");
    delete made;
    alignas(CT_Pattern) char room[sizeof(CT_Pattern)];
    made = ::new (room) CT_Pattern;
    made->~CT_Pattern();
    made = new (room) CT_Pattern;
    EXPECT_EQ(Row(*made), "0,-");
    made->~CT_Pattern();
}

// ---- A pending error ----------------------------------------------------------------------

namespace
{
// A pattern without its row takes no tokens, matches nothing, and can be set.
void ExpectNoRow(CT_Pattern& made)
{
    EXPECT_EQ(Row(made), "");
    Add(made, "a*?");
    EXPECT_EQ(Row(made), "");
    EXPECT_EQ(Match(made, "ab"), "0@0 0@0");
    EXPECT_EQ((made.*Private(PatternMatchAny()))(), 0);
    EXPECT_EQ((made.*Private(PatternMatchSome()))(), 0);
    EXPECT_EQ(made.et_Compare(&made), CT_Pattern::re_Unrelated);
    EXPECT_EQ(made.et_Compare(Make("*").get()), CT_Pattern::re_Unrelated);
    EXPECT_EQ(Make("*")->et_Compare(&made), CT_Pattern::re_Unrelated);
    CT_Pattern copy(&made);
    EXPECT_EQ(Row(copy), "");
    made.v_Set();
    Add(made, "a");
    EXPECT_EQ(Match(made, "a"), "1@1");
    EXPECT_EQ(TakeFailure(), Failure());
}
} // namespace

TEST(Pattern, WithAnErrorSetANewPatternHasNoRow)
{
    SetEarlierError();
    CT_Pattern made;
    EXPECT_EQ(TakeFailure(), pending);
    ExpectNoRow(made);
}

TEST(Pattern, WithAnErrorSetACopyHasNoRow)
{
    const auto source = Make("a");
    SetEarlierError();
    CT_Pattern made(source.get());
    EXPECT_EQ(TakeFailure(), pending);
    ExpectNoRow(made);
    EXPECT_EQ(Row(*source), "3,a 0,-");
}

TEST(Pattern, WithAnErrorSetAPatternThatStartsAnewHasNoRow)
{
    const auto made = Make("a*");
    Match(*made, "a");
    SetEarlierError();
    made->v_Set();
    EXPECT_EQ(TakeFailure(), pending);
    ExpectNoRow(*made);
}

TEST(Pattern, WithAnErrorSetAllElseGoesOnWithoutAPlaceInItsTrail)
{
    const auto made = Make("a"), other = Make("b");
    SetEarlierError();
    made->v_Set(other.get());
    Add(*made, "*");
    EXPECT_EQ(Match(*made, "bx"), "1@1 1@1");
    EXPECT_EQ(made->et_Compare(other.get()), CT_Pattern::re_Same);
    EXPECT_EQ(TakeFailure(), (Failure{4711, "(4711): earlier", {}}));
}

// ---- Comparison ---------------------------------------------------------------------------

TEST(Pattern, ComparesByWhichTakesTheOthersTokens)
{
    const Result narrower = CT_Pattern::re_Narrower, wider = CT_Pattern::re_Wider,
                 same = CT_Pattern::re_Same, unrelated = CT_Pattern::re_Unrelated;
    const struct
    {
        const char* one;
        const char* two;
        Result result, reversed;
    } cases[] = {
        {"a", "a", same, same},
        {"a", "b", unrelated, unrelated},
        {"a", "ab", unrelated, unrelated},
        {"*", "*", same, same},
        {"*", "a", wider, narrower},
        {"*", "a*b", wider, narrower},
        {"a*", "ab", wider, narrower},
        {"a*", "a*b", wider, narrower},
        {"a*", "b*", unrelated, unrelated},
        {"*a", "*b", unrelated, unrelated},
        {"?", "??", unrelated, unrelated},
        {"?*", "*?", same, same},
        {"*?", "*??", wider, narrower},
        {"**", "*", same, same},
        // A character lets the unknown one through.
        {"a", "?", same, same},
        {"ab", "?b", same, same},
        {"ab", "??", same, same},
        // A run whose own character comes behind it is fed as that character alone.
        {"ab", "a*b", same, same},
        // A run at the end takes what matches already.
        {"a", "a*", same, same},
        // Behind a run a character doesn't let the unknown one through.
        {"*a", "*?", narrower, wider},
        {"*a", "?", narrower, wider},
    };
    for (const auto& row : cases) {
        SCOPED_TRACE(testing::Message() << row.one << " and " << row.two);
        EXPECT_EQ(Compare(row.one, row.two), row.result);
        EXPECT_EQ(Compare(row.two, row.one), row.reversed);
    }
}

TEST(Pattern, NothingContainsAPatternWithoutTokens)
{
    for (const char* tokens : {"", "a", "?", "*", "a*"}) {
        SCOPED_TRACE(tokens);
        CT_Pattern empty;
        EXPECT_EQ((*Make(tokens).*Private(PatternContains()))(&empty), 0);
    }
    EXPECT_EQ(Compare("", ""), CT_Pattern::re_Unrelated);
    EXPECT_EQ(Compare("", "a"), CT_Pattern::re_Unrelated);
    // A run alone adds nothing to where the pattern without tokens stands: at its end.
    EXPECT_EQ(Compare("", "*"), CT_Pattern::re_Wider);
    EXPECT_EQ(Compare("*", ""), CT_Pattern::re_Narrower);
}

// Kept: there it is not even fed.
TEST(Pattern, TheCharacterZeroBehindARunIsPassedOverInAComparison)
{
    EXPECT_EQ((*Make("").*Private(PatternContains()))(Make("*0").get()), 1);
    EXPECT_EQ((*Make("*").*Private(PatternContains()))(Make("*0").get()), 1);
    EXPECT_EQ((*Make("*0").*Private(PatternContains()))(Make("*0").get()), 0);
    EXPECT_EQ((*Make("*0").*Private(PatternContains()))(Make("?").get()), 0);
    EXPECT_EQ((*Make("*0").*Private(PatternContains()))(Make("a").get()), 1);
    EXPECT_EQ(Compare("*0", "*0"), CT_Pattern::re_Unrelated);
    // At the start, or behind a character, it is a character like any other.
    EXPECT_EQ(Compare("0", "0"), CT_Pattern::re_Same);
    EXPECT_EQ(Compare("a0", "a0"), CT_Pattern::re_Same);
}

TEST(Pattern, APatternComparesWithItself)
{
    const struct
    {
        const char* tokens;
        Result result;
    } cases[] = {{"", CT_Pattern::re_Unrelated}, {"a", CT_Pattern::re_Same},
                 {"*", CT_Pattern::re_Same},     {"a*b?", CT_Pattern::re_Same},
                 {"*a*", CT_Pattern::re_Same},   {"*0", CT_Pattern::re_Unrelated}};
    for (const auto& row : cases) {
        SCOPED_TRACE(row.tokens);
        const auto made = Make(row.tokens);
        EXPECT_EQ(made->et_Compare(made.get()), row.result);
    }
}

TEST(Pattern, ARunInProgressDoesNotSurviveAComparison)
{
    const auto made = Make("a*"), other = Make("a*");
    Match(*made, "abc");
    Match(*other, "x");
    EXPECT_EQ(made->n_EndStateFrom(), 1U);
    made->et_Compare(other.get());
    // Each has been fed the other's one character.
    EXPECT_EQ(made->n_EndStateFrom(), 1U);
    EXPECT_EQ(other->n_EndStateFrom(), 1U);
    EXPECT_EQ(Feed(*made, "x"), "1@1");
    EXPECT_EQ(Feed(*other, "x"), "1@1");
}

TEST(Pattern, TheUnknownCharacterIsNotCounted)
{
    // Fed a, the unknown one, b.
    const auto made = Make("a?b");
    EXPECT_EQ(made->et_Compare(made.get()), CT_Pattern::re_Same);
    EXPECT_EQ(made->n_EndStateFrom(), 2U);

    // It neither begins nor ends what n_EndStateFrom tells.
    made->v_DoMatch();
    EXPECT_EQ(Feed(*made, "axb"), "0@0 0@0 1@3");
    EXPECT_EQ((*made.*Private(PatternMatchSome()))(), 0);
    EXPECT_EQ(made->n_EndStateFrom(), 3U);
    const auto one = Make("?");
    one->v_DoMatch();
    EXPECT_EQ((*one.*Private(PatternMatchSome()))(), 1);
    EXPECT_EQ(one->n_EndStateFrom(), 0U);
}
