// tests/Faults/StringSweep.cpp: the string classes and conversions with an exhausted heap.
#include <System/String/StringConvert.h>
#include <System/String/UTF.h>

#include <functional>
#include <memory>
#include <new>

#include "Faults/Sweep.h"
#include "Ostra/String/StringSupport.h"

namespace
{
const SweepReport report({"Ostra/Buffer/Buffer", "Ostra/String/CString", "Ostra/String/UString",
                          "System/String/StringConvert"});

const char* const TWENTY_LONG = "0123456789ABCDEFGHIJ";
const char* const LONG_TEXT =
    "a text that is longer than what a block of the least size has room for";

// A string of either class, and another one that may share its block.
struct State
{
    State(bool wide, const std::string& text, bool share) : string(Make(wide, text.c_str()))
    {
        // Full: whatever is added needs a larger block.
        string->vv_SetSize(string->vn_GetLength(), 1);
        if (share)
            sharer = Share(*string);
        CT_UTF::sv_UTF8ToWideInit();
    }
    CT_CString& Narrow() { return static_cast<CT_CString&>(*string); }
    CT_UString& Wide() { return static_cast<CT_UString&>(*string); }

    std::unique_ptr<CT_String> string;
    std::unique_ptr<CT_String> sharer;
};

using Operation = std::function<void(State&)>;

// The object can be used: takes a text, and gives it back.
void ExpectUsable(CT_String& s)
{
    s.v_Set(LONG_TEXT, ALL, 1252);
    EXPECT_EQ(Ascii(s), LONG_TEXT);
    s.v_Append("!");
    s.vv_Remove(2, 0);
    EXPECT_EQ(Ascii(s), std::string(LONG_TEXT).substr(2) + "!");
}

// Sweeps an operation that has its full effect or none, whether the block is shared or not.
void SweepText(bool wide, const std::string& before, const Operation& operation,
               const std::string& after)
{
    for (bool share : {false, true}) {
        SCOPED_TRACE(share ? "shared block" : "own block");
        Sweep(
            report, [&] { return std::make_unique<State>(wide, before, share); }, operation,
            [&](State& state, bool failed) {
                EXPECT_EQ(Ascii(*state.string), failed ? before : after);
                EXPECT_EQ(state.string->vu_GetAt(state.string->vn_GetLength()), 0);
                if (share) {
                    EXPECT_EQ(Ascii(*state.sharer), before);
                    ExpectUsable(*state.sharer);
                }
                ExpectUsable(*state.string);
            });
    }
}

// The same on both classes.
void SweepBoth(const std::string& before, const Operation& operation, const std::string& after)
{
    OnBoth([&](bool wide) { SweepText(wide, before, operation, after); });
}

// The same for an operation that needs the heap only to take a block of its own.
void SweepShared(const std::string& before, const Operation& operation, const std::string& after)
{
    OnBoth([&](bool wide) {
        Sweep(
            report, [&] { return std::make_unique<State>(wide, before, true); }, operation,
            [&](State& state, bool failed) {
                EXPECT_EQ(Ascii(*state.string), failed ? before : after);
                EXPECT_EQ(Ascii(*state.sharer), before);
                ExpectUsable(*state.string);
                EXPECT_EQ(Ascii(*state.sharer), before);
            });
    });
}

const CT_CString narrowLong(LONG_TEXT, ALL, 1252);
const CT_UString wideLong(LONG_TEXT, ALL, 1252);
const CT_CString narrowShort("xy", ALL, 1252);
const CT_UString wideShort("xy", ALL, 1252);
} // namespace

// ---- Objects ------------------------------------------------------------------------------

namespace
{
template <class S>
struct Maker
{
    ~Maker()
    {
        if (made)
            made->~S();
    }
    alignas(S) char place[sizeof(S)];
    S* made = nullptr;
};

template <class S>
void SweepMake(const std::function<S*(void*)>& make)
{
    Sweep(
        report, [] { return std::make_unique<Maker<S>>(); },
        [&](Maker<S>& state) { state.made = make(state.place); },
        [](Maker<S>& state, bool failed) {
            // A byte of UTF-7 can't be widened alone.
            if constexpr (std::is_same_v<S, CT_CString>)
                state.made->v_SetCodePage(1252);
            EXPECT_EQ(Ascii(*state.made), failed ? "" : LONG_TEXT);
            ExpectUsable(*state.made);
        });
}

template <class S>
struct Pointer
{
    ~Pointer() { delete made; }
    S* made = nullptr;
};

template <class S>
void SweepNew(const char* source)
{
    const S text(LONG_TEXT);
    Sweep(
        SweepReport(source), [] { return std::make_unique<Pointer<CT_String>>(); },
        [&](Pointer<CT_String>& state) { state.made = text.vpco_Create(); },
        [&](Pointer<CT_String>& state, bool failed) {
            EXPECT_EQ(state.made == nullptr, failed);
            EXPECT_EQ(UsesOf(text), failed ? 1u : 2u);
        });
    Sweep(
        SweepReport(source), [] { return std::make_unique<Pointer<S>>(); },
        [&](Pointer<S>& state) { state.made = new S; },
        [&](Pointer<S>& state, bool failed) { EXPECT_EQ(state.made == nullptr, failed); });
}
} // namespace

TEST(StringSweep, NewObjectAndCreate)
{
    SweepNew<CT_CString>("Ostra/String/CString");
    SweepNew<CT_UString>("Ostra/String/UString");
}

TEST(StringSweep, ConstructorsLeaveAnEmptyString)
{
    SweepMake<CT_CString>([](void* at) { return new (at) CT_CString(LONG_TEXT); });
    SweepMake<CT_CString>(
        [](void* at) { return new (at) CT_CString(wideLong.qcuz_Get(), ALL, 1252); });
    SweepMake<CT_CString>([](void* at) { return new (at) CT_CString(&wideLong, UTF8); });
    SweepMake<CT_CString>([](void* at) { return new (at) CT_CString(&wideLong, UTF7); });
    SweepMake<CT_UString>([](void* at) { return new (at) CT_UString(LONG_TEXT, ALL, 1252); });
    SweepMake<CT_UString>([](void* at) { return new (at) CT_UString(wideLong.qcuz_Get()); });
    SweepMake<CT_UString>([](void* at) { return new (at) CT_UString(&narrowLong); });
}

// ---- Set, replace, insert, append ---------------------------------------------------------

TEST(StringSweep, SetKeepsTheOldText)
{
    SweepBoth(
        TWENTY_LONG, [](State& s) { s.string->v_Set(LONG_TEXT, ALL, 1252); }, LONG_TEXT);
    SweepBoth(
        TWENTY_LONG, [](State& s) { s.string->v_Set(wideLong.qcuz_Get()); }, LONG_TEXT);
    SweepText(
        false, TWENTY_LONG, [](State& s) { s.string->v_Set(&wideLong); }, LONG_TEXT);
    SweepText(
        true, TWENTY_LONG, [](State& s) { s.string->v_Set(&narrowLong); }, LONG_TEXT);
    SweepBoth(
        TWENTY_LONG, [](State& s) { s.string->v_Set(200u, 0); }, "");
    SweepBoth(
        TWENTY_LONG, [](State& s) { s.string->v_Format("%s", LONG_TEXT); }, LONG_TEXT);
    SweepBoth(
        TWENTY_LONG, [](State& s) { s.string->v_Format(U(u"%S"), LONG_TEXT); }, LONG_TEXT);
}

TEST(StringSweep, ReplaceKeepsTheOldText)
{
    const std::string after = std::string("01") + LONG_TEXT;
    SweepBoth(
        TWENTY_LONG, [](State& s) { s.string->v_Replace(LONG_TEXT, ALL, 2); }, after);
    SweepBoth(
        TWENTY_LONG, [](State& s) { s.string->v_Replace(wideLong.qcuz_Get(), ALL, 2); }, after);
    SweepBoth(
        TWENTY_LONG, [](State& s) { s.string->v_Replace(&narrowLong, 0, ALL, 2); }, after);
    SweepBoth(
        TWENTY_LONG, [](State& s) { s.string->v_Replace(&wideLong, 0, ALL, 2); }, after);
    SweepShared(
        TWENTY_LONG, [](State& s) { s.string->v_Replace("xy", 2, 2); }, "01xy");
    SweepBoth(
        TWENTY_LONG, [](State& s) { s.string->vv_Replace('x', 200, 0); }, std::string(200, 'x'));
    SweepBoth(
        TWENTY_LONG,
        [](State& s) { s.string->vv_Replace(static_cast<unsigned short>('x'), 200, 0); },
        std::string(200, 'x'));
}

TEST(StringSweep, InsertKeepsTheOldText)
{
    const std::string after = std::string("01") + LONG_TEXT + (TWENTY_LONG + 2);
    SweepBoth(
        TWENTY_LONG, [](State& s) { s.string->v_Insert(LONG_TEXT, ALL, 2); }, after);
    SweepBoth(
        TWENTY_LONG, [](State& s) { s.string->v_Insert(wideLong.qcuz_Get(), ALL, 2); }, after);
    SweepBoth(
        TWENTY_LONG, [](State& s) { s.string->v_Insert(&narrowLong, ALL, 2); }, after);
    SweepBoth(
        TWENTY_LONG, [](State& s) { s.string->v_Insert(&wideLong, ALL, 2); }, after);
}

TEST(StringSweep, InsertIntoABlocklessStringLeavesItEmpty)
{
    OnBoth([](bool wide) {
        Sweep(
            report,
            [&] {
                auto state = std::make_unique<State>(wide, "", false);
                state->string->vv_SetSize(0, 0);
                return state;
            },
            [](State& s) { s.string->v_Insert(LONG_TEXT); },
            [](State& s, bool failed) {
                EXPECT_EQ(Ascii(*s.string), failed ? "" : LONG_TEXT);
                ExpectUsable(*s.string);
            });
    });
}

TEST(StringSweep, AppendKeepsTheOldText)
{
    const std::string after = std::string(TWENTY_LONG) + LONG_TEXT;
    SweepBoth(
        TWENTY_LONG, [](State& s) { s.string->v_Append(LONG_TEXT); }, after);
    SweepBoth(
        TWENTY_LONG, [](State& s) { s.string->v_Append(wideLong.qcuz_Get()); }, after);
    SweepBoth(
        TWENTY_LONG, [](State& s) { s.string->v_Append(&narrowLong); }, after);
    SweepBoth(
        TWENTY_LONG, [](State& s) { s.string->v_Append(&wideLong); }, after);
    SweepShared(
        TWENTY_LONG, [](State& s) { s.string->v_Append('x'); }, std::string(TWENTY_LONG) + "x");
}

TEST(StringSweep, OwnAppendsKeepTheOldText)
{
    const std::string after = std::string(TWENTY_LONG) + LONG_TEXT;
    SweepText(
        false, TWENTY_LONG, [](State& s) { s.Narrow().v_Append(LONG_TEXT); }, after);
    SweepText(
        false, TWENTY_LONG, [](State& s) { s.Narrow().v_Append(wideLong.qcuz_Get()); }, after);
    SweepText(
        false, TWENTY_LONG, [](State& s) { s.Narrow().v_Append(&narrowLong); }, after);
    SweepText(
        false, TWENTY_LONG, [](State& s) { s.Narrow().v_Append(&wideLong); }, after);
    SweepText(
        true, TWENTY_LONG, [](State& s) { s.Wide().v_Append(LONG_TEXT, ALL, 1252); }, after);
    SweepText(
        true, TWENTY_LONG, [](State& s) { s.Wide().v_Append(wideLong.qcuz_Get()); }, after);
    SweepText(
        true, TWENTY_LONG, [](State& s) { s.Wide().v_Append(&narrowLong); }, after);
    SweepText(
        true, TWENTY_LONG, [](State& s) { s.Wide().v_Append(&wideLong); }, after);
}

TEST(StringSweep, AppendOfSingleCharactersStopsAtTheRoom)
{
    // Some arrive and some don't: what arrived is a text with its terminator.
    OnBoth([](bool wide) {
        Sweep(
            report, [&] { return std::make_unique<State>(wide, "0123456", true); },
            [=](State& s) {
                for (char c = 'a'; c <= 'z'; ++c)
                    if (wide)
                        s.Wide().v_Append(static_cast<unsigned short>(c));
                    else
                        s.Narrow().v_Append(c);
            },
            [](State& s, bool failed) {
                const std::string text = Ascii(*s.string);
                EXPECT_EQ(text.substr(0, 7), "0123456");
                EXPECT_TRUE(failed || text.size() == 33u);
                EXPECT_TRUE(std::is_sorted(text.begin(), text.end()));
                EXPECT_EQ(Ascii(*s.sharer), "0123456");
                ExpectUsable(*s.string);
            });
    });
}

// ---- Storage and changes ------------------------------------------------------------------

TEST(StringSweep, SizesKeepTheOldText)
{
    SweepBoth(
        TWENTY_LONG, [](State& s) { s.string->vv_SetSize(500, 1); }, TWENTY_LONG);
    SweepBoth(
        TWENTY_LONG, [](State& s) { s.string->vv_SetSize(500, 0); }, "");
    SweepBoth(
        TWENTY_LONG, [](State& s) { s.string->vv_SetSize(3, 0); }, "");
    SweepBoth(
        TWENTY_LONG, [](State& s) { s.string->vv_SetMinSize(500, 1); }, TWENTY_LONG);
    SweepBoth(
        TWENTY_LONG, [](State& s) { s.string->vv_SetLength(0); }, "");
    SweepShared(
        TWENTY_LONG, [](State& s) { s.string->vv_SetLength(3); }, "012");
    SweepShared(
        TWENTY_LONG, [](State& s) { s.string->v_Set(3u, 0); }, "");
}

// The block is as large as it has to be, but others hold it.
TEST(StringSweep, AnInsertionIntoASharedBlockWithoutATextIsLeftOut)
{
    Sweep(
        report,
        [] {
            auto state = std::make_unique<State>(false, "", false);
            const_cast<CT_Buffer*>(state->string->pcco_GetBuffer())->v_SetSize(64, 0);
            state->sharer = Share(*state->string);
            return state;
        },
        [](State& state) { state.string->v_Insert("abc", 3, 0); },
        [](State& state, bool failed) {
            EXPECT_EQ(Ascii(*state.string), failed ? "" : "abc");
            EXPECT_EQ(Ascii(*state.sharer), "");
            ExpectUsable(*state.string);
        });
}

TEST(StringSweep, ChangesOfASharedBlockAreLeftOut)
{
    const std::string spaced = "  aBc  ";
    SweepShared(
        spaced, [](State& s) { s.string->vv_ToLower(); }, "  abc  ");
    SweepShared(
        spaced, [](State& s) { s.string->vv_ToUpper(); }, "  ABC  ");
    SweepShared(
        spaced, [](State& s) { s.string->vv_Remove(2, 3); }, "  a  ");
    SweepShared(
        spaced, [](State& s) { s.string->vv_StripLeft(); }, "aBc  ");
    SweepShared(
        spaced, [](State& s) { s.string->vv_SetAt('x', 0); }, "x aBc  ");
    SweepShared(
        spaced, [](State& s) { s.string->v_CopyWeWrite(); }, spaced);
    SweepShared(
        spaced, [](State& s) { s.string->vv_Update(); }, spaced);
}

TEST(StringSweep, ACharacterOverTheTerminatorOfAFullBlockIsLeftOut)
{
    OnBoth([](bool wide) {
        for (const bool share : {false, true}) {
            Sweep(
                report,
                [&] {
                    auto state = std::make_unique<State>(wide, "", false);
                    state->string->vv_SetGrowth(1);
                    state->string->v_Set(TWENTY_LONG, ALL, 1252);
                    state->string->vv_SetSize(20, 1);
                    if (share)
                        state->sharer = Share(*state->string);
                    return state;
                },
                [](State& s) { s.string->vv_SetAt('x', 20); },
                [&](State& state, bool failed) {
                    EXPECT_EQ(state.string->vn_GetLength(), 20u);
                    state.string->vv_Update();
                    EXPECT_EQ(Ascii(*state.string),
                              failed ? TWENTY_LONG : TWENTY_LONG + std::string("x"));
                    if (share) {
                        EXPECT_EQ(Ascii(*state.sharer), TWENTY_LONG);
                        EXPECT_EQ(state.sharer->vu_GetAt(20), 0);
                    }
                    ExpectUsable(*state.string);
                });
        }
    });
}

TEST(StringSweep, StripOfASetStripsOneSideOrBoth)
{
    OnBoth([](bool wide) {
        Sweep(
            report, [&] { return std::make_unique<State>(wide, "xyaxy", true); },
            [&](State& s) {
                s.string->vv_Strip(wide ? static_cast<const CT_String*>(&narrowShort) : &wideShort);
            },
            [](State& s, bool failed) {
                const std::string text = Ascii(*s.string);
                EXPECT_TRUE(text == "a" || (failed && (text == "xyaxy" || text == "xya"))) << text;
                EXPECT_EQ(Ascii(*s.sharer), "xyaxy");
                ExpectUsable(*s.string);
            });
    });
}

// A set that is asked for long gets a table; without it the set is looked through on and on.
TEST(StringSweep, ATableOfASetThatCannotBeHadIsDoneWithout)
{
    OnBoth([](bool wide) {
        const std::string letters = "abcdefghijklmnopqrstuvwxyz";
        std::string many;
        for (int n = 0; n < 40; ++n)
            many += letters;
        const auto set = Make(wide, letters.c_str());
        const auto none = Make(wide, "");
        for (const bool strip : {true, false}) {
            const std::string text = strip ? many + "1 2" + many : "1" + many + " 2";
            unsigned failures = 1;
            for (unsigned number = 0; failures || number < 2; ++number) {
                SCOPED_TRACE(number);
                const auto string = Make(wide, text.c_str());
                FailingHeap::Arm(number, FailingHeap::ONCE);
                if (strip)
                    string->vv_Strip(set.get());
                else
                    string->vv_Translate(set.get(), none.get());
                failures = FailingHeap::Disarm();
                EXPECT_EQ(Ascii(*string), "1 2");
                EXPECT_EQ(TakeFailure(), Failure());
                if (number == 1) {
                    EXPECT_EQ(failures, 1U) << "no table was asked for";
                }
            }
        }
    });
}

// The block is cut for both before one of them fails to get its own.
TEST(StringSweep, StripRightOfASharedBlock)
{
    OnBoth([](bool wide) {
        Sweep(
            report, [&] { return std::make_unique<State>(wide, "ab  ", true); },
            [](State& s) { s.string->vv_StripRight(); },
            [](State& s, bool failed) {
                EXPECT_EQ(Ascii(*s.string), failed ? std::string("ab\0 ", 4) : "ab");
                EXPECT_EQ(Ascii(*s.sharer), std::string("ab\0 ", 4));
                ExpectUsable(*s.string);
            });
    });
}

TEST(StringSweep, TranslateOfASharedBlockStopsAtTheFirstRemoval)
{
    OnBoth([](bool wide) {
        const auto from = Make(wide, "ab");
        const auto to = Make(wide, "x");
        Sweep(
            report, [&] { return std::make_unique<State>(wide, "abab", true); },
            [&](State& s) { s.string->vv_Translate(from.get(), to.get()); },
            [](State& s, bool failed) {
                EXPECT_EQ(Ascii(*s.string), failed ? "xbab" : "xx");
                EXPECT_EQ(Ascii(*s.sharer), "xbab");
                ExpectUsable(*s.string);
            });
    });
}

TEST(StringSweep, AskingWithAStringOfTheOtherClassChangesNothing)
{
    OnBoth([](bool wide) {
        const CT_String* other = wide ? static_cast<const CT_String*>(&narrowLong) : &wideLong;
        Sweep(
            report, [&] { return std::make_unique<State>(wide, TWENTY_LONG, true); },
            [=](State& s) {
                s.string->vn_Find(other);
                s.string->vb_Match(other);
                s.string->vi_Compare(other);
                s.string->vi_Compare(LONG_TEXT);
                s.string->vi_Compare(wideLong.qcuz_Get());
                s.string->vn_Find(static_cast<unsigned short>('x'));
            },
            [](State& s, bool) {
                EXPECT_EQ(Ascii(*s.string), TWENTY_LONG);
                EXPECT_EQ(UsesOf(*s.string), 2u);
            });
    });
}

// ---- Conversions to a string --------------------------------------------------------------

namespace
{
// A target that can't grow stays as it was, or is left empty where it grew and the coder's own room
// failed.
void SweepTarget(bool wide, const Operation& operation)
{
    for (bool share : {false, true})
        Sweep(
            report, [&] { return std::make_unique<State>(wide, TWENTY_LONG, share); }, operation,
            [=](State& s, bool failed) {
                const std::string text = Ascii(*s.string);
                EXPECT_TRUE(text == LONG_TEXT || (failed && (text == TWENTY_LONG || text == "")))
                    << text;
                if (share) {
                    EXPECT_EQ(Ascii(*s.sharer), TWENTY_LONG);
                }
                ExpectUsable(*s.string);
            });
}

using Convert = CT_StringConvert;
} // namespace

TEST(StringSweep, ConversionsToAStringStopWithoutRoom)
{
    SweepTarget(true, [](State& s) { Convert::si_MultiToWide(&s.Wide(), &narrowLong, 1252); });
    SweepTarget(true, [](State& s) { Convert::si_UTF7ToWide(&s.Wide(), &narrowLong); });
    SweepTarget(true, [](State& s) { Convert::si_UTF8ToWide(&s.Wide(), &narrowLong); });
    SweepTarget(false, [](State& s) {
        Convert::si_WideToMulti(&s.Narrow(), &wideLong, 1252, nullptr, nullptr);
    });
    SweepTarget(false, [](State& s) {
        Convert::si_WideToMulti(&s.Narrow(), &wideLong, UTF8, nullptr, nullptr);
    });
    SweepTarget(false, [](State& s) { Convert::si_WideToUTF7(&s.Narrow(), &wideLong); });
    SweepTarget(false, [](State& s) { Convert::si_WideToUTF8(&s.Narrow(), &wideLong); });
}
