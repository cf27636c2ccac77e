// tests/Faults/PatternSweep.cpp: patterns with an exhausted heap.
#include <Ostra/Pattern/Pattern.h>

#include "Faults/Sweep.h"
#include "Ostra/Pattern/PatternModel.h"

#include <memory>
#include <string>

namespace
{
using pattern::Add;
using pattern::Make;
using pattern::Row;

const SweepReport report("Ostra/Buffer/Buffer");

// A pattern of `count` characters, and another on its row.
struct Two
{
    explicit Two(unsigned count) : made(Make(std::string(count, 'a'))), other(made.get()) {}
    std::unique_ptr<CT_Pattern> made;
    CT_Pattern other;
};

std::string Characters(unsigned count)
{
    std::string row;
    for (unsigned n = 0; n < count; ++n)
        row += "3,a ";
    return row;
}

// The array that has found no room may get it when it asks again.
void ExpectNewOrNone(const CT_Pattern& made, bool failed)
{
    EXPECT_TRUE(Row(made) == "0,-" || (failed && Row(made) == "")) << Row(made);
}

// Allocations that the operation asks for.
template <typename T_Operation>
unsigned Asked(T_Operation operation)
{
    FailingHeap::Arm(0, FailingHeap::ONCE);
    operation();
    const unsigned asked = FailingHeap::Asked();
    FailingHeap::Disarm();
    return asked;
}
} // namespace

TEST(PatternSweep, NewObject)
{
    struct Pointer
    {
        ~Pointer() { delete made; }
        CT_Pattern* made = nullptr;
    };
    Sweep(
        {"Ostra/Pattern/Pattern", "Ostra/Buffer/Buffer"},
        [] { return std::make_unique<Pointer>(); },
        [](Pointer& state) { state.made = new CT_Pattern; },
        [](Pointer& state, bool failed) {
            if (!state.made)
                return;
            ExpectNewOrNone(*state.made, failed);
            state.made->v_DoMatch();
            EXPECT_EQ(state.made->b_IsMatch('a'), 0);
            state.made->v_Set();
            EXPECT_EQ(Row(*state.made), "0,-");
        });
}

TEST(PatternSweep, APatternThatFindsNoRoomToStartAnewHasNoRow)
{
    Sweep(
        report, [] { return std::make_unique<Two>(3); }, [](Two& state) { state.made->v_Set(); },
        [](Two& state, bool failed) {
            ExpectNewOrNone(*state.made, failed);
            EXPECT_EQ(Row(state.other), Characters(3) + "0,-");
            state.made->v_Set(&state.other);
            EXPECT_EQ(Row(*state.made), Characters(3) + "0,-");
        });
}

TEST(PatternSweep, ATokenIsAddedWholeOrNotAtAllAndToNoOther)
{
    const struct
    {
        CT_Pattern::et_Type type;
        const char* row;
    } cases[] = {{CT_Pattern::ty_Character, "3,b 0,-"},
                 {CT_Pattern::ty_AnyOne, "1,- 0,-"},
                 {CT_Pattern::ty_AnyRun, "2,-"}};
    for (const auto& row : cases)
        for (unsigned count = 0; count < 40; ++count) {
            SCOPED_TRACE(testing::Message() << "type " << row.type << " to " << count);
            Sweep(
                report, [=] { return std::make_unique<Two>(count); },
                [&](Two& state) { state.made->v_AddToken(row.type, 'b'); },
                [&](Two& state, bool failed) {
                    const std::string before = Characters(count) + "0,-";
                    const std::string after = Characters(count) + row.row;
                    EXPECT_EQ(Row(state.other), before);
                    if (failed && Row(*state.made) == before)
                        state.made->v_AddToken(row.type, 'b');
                    EXPECT_EQ(Row(*state.made), after);
                    EXPECT_EQ(Row(state.other), before);
                });
        }
}

// Kept: nobody hears of it. A run without tables matches nothing.
TEST(PatternSweep, TablesAreMissedInSilence)
{
    for (const unsigned count : {1U, 100U}) {
        SCOPED_TRACE(count);
        const auto made = Make(std::string(count, '?') + "*");
        FailingHeap::Arm(1, FailingHeap::FROM);
        made->v_DoMatch();
        EXPECT_EQ(FailingHeap::Disarm(), 1U);
        EXPECT_EQ(TakeFailure(), Failure());
        for (unsigned n = 0; n < count; ++n)
            EXPECT_EQ(made->b_IsMatch('a'), 0);
        EXPECT_EQ(made->n_EndStateFrom(), 0U);

        FailingHeap::Arm(1, FailingHeap::FROM);
        EXPECT_EQ(made->et_Compare(made.get()), CT_Pattern::re_Unrelated);
        EXPECT_GT(FailingHeap::Disarm(), 0U);
        EXPECT_EQ(TakeFailure(), Failure());

        made->v_DoMatch();
        for (unsigned n = 1; n <= count; ++n)
            EXPECT_EQ(made->b_IsMatch('a'), n == count);
    }
}

TEST(PatternSweep, OnlyTheFirstRunAllocates)
{
    for (const unsigned count : {1U, 100U}) {
        SCOPED_TRACE(count);
        const auto made = Make(std::string(count, 'a') + "*b");
        EXPECT_GT(Asked([&] { made->v_DoMatch(); }), 0U);
        const unsigned asked = Asked([&] {
            for (unsigned run = 0; run < 3; ++run) {
                for (unsigned n = 0; n < 500; ++n)
                    made->b_IsMatch(n % 7 ? 'a' : 'b');
                made->v_DoMatch();
            }
        });
        EXPECT_EQ(asked, 0U);
        made->v_Set(made.get());
        EXPECT_GT(Asked([&] { made->v_DoMatch(); }), 0U);
    }
}
