// tests/Faults/WordListSweep.cpp: bilingual word lists with an exhausted heap.
#include "Faults/Sweep.h"
#include "Ostra/WordList/Widths.h"

#include <memory>
#include <string>

template <class Width>
struct WordListSweep : TextsOf<Width>
{};
TYPED_TEST_SUITE(WordListSweep, BothWidths);

namespace
{
const SweepReport report("Ostra/Buffer/Buffer");

template <class Width>
struct State
{
    typedef TextsOf<Width> Texts;

    State(bool shared, bool fits)
        : source(Texts::Of(fits ? "a" : "Upper source longer than all there is room for")),
          target(Texts::Of(fits ? "b" : "Other target of a length that is as great as that"))
    {
        Texts::Insert(list, "cat", "Katze");
        Texts::Insert(list, "dog", "Hund");
        if (shared)
            holder.v_Set(&list);
    }

    typename Width::List list, holder;
    const typename Texts::Units source, target;
};
} // namespace

// The texts are stored both or not at all. A word whose index finds no room isn't found; what was
// there is.
TYPED_TEST(WordListSweep, APairIsStoredWholeOrNotAtAll)
{
    typedef State<TypeParam> TheState;
    enum
    {
        OWN,
        SHARED,
        SHARED_WITH_ROOM
    };
    for (const int kind : {OWN, SHARED, SHARED_WITH_ROOM}) {
        SCOPED_TRACE(kind);
        const bool shared = kind != OWN, fits = kind == SHARED_WITH_ROOM;
        Sweep(
            report, [=] { return std::make_unique<TheState>(shared, fits); },
            [](TheState& state) {
                state.list.v_Insert(state.source.c_str(), state.target.c_str());
            },
            [=](TheState& state, bool failed) {
                typedef TextsOf<TypeParam> T;
                const unsigned count = state.list.n_GetCount();
                EXPECT_TRUE(failed || count == 3);
                const std::string source = T::Ascii(state.source.c_str());
                const std::string target = T::Ascii(state.target.c_str());
                EXPECT_EQ(T::Bytes(state.list.pcco_GetSourceBuffer()),
                          count == 3 ? T::Bytes({"cat", "dog", source.c_str()})
                                     : T::Bytes({"cat", "dog"}));
                EXPECT_EQ(T::Bytes(state.list.pcco_GetTargetBuffer()),
                          count == 3 ? T::Bytes({"Katze", "Hund", target.c_str()})
                                     : T::Bytes({"Katze", "Hund"}));
                const std::string found = T::Source(state.list, source);
                EXPECT_TRUE(found == target || (failed && found == "(null)")) << found;
                EXPECT_TRUE(count == 3 || found == "(null)");
                EXPECT_EQ(T::Source(state.list, "cat"), "Katze");
                EXPECT_EQ(T::Target(state.list, "Hund"), "dog");
                if (shared) {
                    EXPECT_EQ(T::Bytes(state.holder.pcco_GetSourceBuffer()),
                              T::Bytes({"cat", "dog"}));
                    EXPECT_EQ(T::Source(state.holder, "dog"), "Hund");
                    EXPECT_EQ(T::Source(state.holder, source), "(null)");
                }
                T::Insert(state.list, "emu", "Emu");
                EXPECT_EQ(T::Source(state.list, "emu"), "Emu");
                EXPECT_EQ(T::Target(state.list, "Emu"), "emu");
            });
    }
}

TYPED_TEST(WordListSweep, ANewListWithoutIndexesFindsNothing)
{
    typedef typename TypeParam::List NewList;
    struct Pointer
    {
        ~Pointer() { delete list; }
        NewList* list = nullptr;
    };
    const char* const own = sizeof(typename TypeParam::Unit) == 1
                                ? "Ostra/WordList/BiLingualCWordList"
                                : "Ostra/WordList/BiLingualUWordList";
    Sweep(
        {own, "Ostra/Buffer/Buffer"}, [] { return std::make_unique<Pointer>(); },
        [](Pointer& state) { state.list = new NewList; },
        [](Pointer& state, bool failed) {
            typedef TextsOf<TypeParam> T;
            if (!state.list)
                return;
            T::Insert(*state.list, "cat", "Katze");
            EXPECT_EQ(state.list->n_GetCount(), 1U);
            const std::string source = T::Source(*state.list, "cat");
            const std::string target = T::Target(*state.list, "Katze");
            EXPECT_TRUE(source == "Katze" || (failed && source == "(null)")) << source;
            EXPECT_TRUE(target == "cat" || (failed && target == "(null)")) << target;
            EXPECT_EQ(T::Source(*state.list, "other"), "(null)");
            EXPECT_EQ(T::Target(*state.list, "other"), "(null)");
            state.list->v_Set();
            T::Insert(*state.list, "cat", "Kater");
            EXPECT_EQ(T::Source(*state.list, "cat"), "Kater");
            EXPECT_EQ(T::Target(*state.list, "Kater"), "cat");
        });
}

// An index that can't be set anew is no index: none of its old words leads anywhere.
TYPED_TEST(WordListSweep, AListThatIsEmptiedFindsNothing)
{
    typedef State<TypeParam> TheState;
    for (const bool shared : {false, true}) {
        SCOPED_TRACE(shared);
        Sweep(
            report,
            [=] {
                auto state = std::make_unique<TheState>(shared, false);
                // More than the block of an empty index has room for.
                state->list.v_Insert(state->source.c_str(), state->target.c_str());
                TextsOf<TypeParam>::Insert(state->list, std::string(300, 'l'),
                                           std::string(300, 'm'));
                return state;
            },
            [](TheState& state) { state.list.v_Set(); },
            [=](TheState& state, bool) {
                typedef TextsOf<TypeParam> T;
                for (const char* word : {"cat", "dog", "Katze", ""}) {
                    EXPECT_EQ(T::Source(state.list, word), "(null)");
                    EXPECT_EQ(T::Target(state.list, word), "(null)");
                }
                EXPECT_EQ(state.list.pcco_GetSourceBuffer()->n_GetUsedSize(), 0U);
                EXPECT_EQ(state.list.pcco_GetTargetBuffer()->n_GetUsedSize(), 0U);
                T::Insert(state.list, "emu", "Emu");
                EXPECT_EQ(T::Source(state.list, "cat"), "(null)");
                state.list.v_Set();
                T::Insert(state.list, "emu", "Emus");
                EXPECT_EQ(T::Source(state.list, "emu"), "Emus");
                if (shared) {
                    EXPECT_EQ(T::Source(state.holder, "dog"), "Hund");
                }
            });
    }
}

TYPED_TEST(WordListSweep, ANewWalkIsMissing)
{
    typedef typename TypeParam::Walk Walk;
    struct Holder
    {
        ~Holder() { delete walk; }
        typename TypeParam::List list;
        Walk* walk = nullptr;
    };
    Sweep(
        sizeof(typename TypeParam::Unit) == 1 ? "Ostra/WordList/BiCWordListIterator"
                                              : "Ostra/WordList/BiUWordListIterator",
        [] { return std::make_unique<Holder>(); },
        [](Holder& state) { state.walk = new Walk(&state.list); },
        [](Holder& state, bool failed) { EXPECT_EQ(state.walk == nullptr, failed); });
}
