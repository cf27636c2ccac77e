// tests/Faults/CompListIteratorSweep.cpp: walks over lists with an exhausted heap.
#include <Ostra/CompList/CCompListIterator.h>
#include <Ostra/CompList/UCompListIterator.h>
#include <Ostra/String/CString.h>
#include <Ostra/String/UString.h>

#include "Faults/Sweep.h"

#include <memory>
#include <string>
#include <vector>

namespace
{
const SweepReport report("Ostra/Buffer/Buffer");
constexpr unsigned KEYS = 14;

// A list with more branches on the way than the stack has room for at first, and a key longer than
// the first block of a string.
template <class Walk, class Key>
struct State
{
    State() : list(CT_CompList::es_Byte, 1, 0, 1, 1024, 0)
    {
        std::string key = "a key that is long enough to let the string grow once";
        list.b_Add(key.c_str(), 1);
        list.b_Add((key + " more").c_str(), 2);
        for (unsigned index = 3; index <= KEYS; ++index) {
            key[index * 2] = 'x';
            list.b_Add(key.c_str(), index);
            key[index * 2] = 'y';
        }
        while (whole.size() < KEYS) {
            Key entry;
            if (!reference.b_GetNext(&entry, nullptr))
                break;
            whole.push_back(Text(entry));
        }
    }

    static std::string Text(const Key& key)
    {
        std::string text;
        for (unsigned index = 0; index < key.vn_GetLength(); ++index)
            text += key.vc_GetAt(index);
        return text;
    }

    // Takes all that come.
    void Run()
    {
        while (count < KEYS && walk.b_GetNext(&keys[count], &handles[count]))
            ++count;
        more = walk.b_GetNext(&spare, nullptr);
    }

    CT_CompList list;
    Walk reference{&list}, walk{&list};
    std::vector<std::string> whole;
    Key keys[KEYS], spare;
    unsigned handles[KEYS] = {}, count = 0;
    int more = 0;
};

// What was handed out is right, and the walk is at its end; set anew it is whole. (The stack may
// report a growth that it then does without.)
template <class Walk, class Key>
void Check(State<Walk, Key>& state, bool failed)
{
    ASSERT_EQ(state.whole.size(), KEYS);
    EXPECT_TRUE(failed || state.count == KEYS);
    EXPECT_FALSE(state.more);
    for (unsigned index = 0; index < state.count; ++index) {
        EXPECT_EQ(state.Text(state.keys[index]), state.whole[index]);
        EXPECT_EQ(state.handles[index], state.list.n_Search(state.whole[index].c_str(), nullptr));
    }
    state.walk.vv_Set(&state.list);
    state.count = 0;
    state.Run();
    EXPECT_EQ(state.count, KEYS);
    EXPECT_EQ(state.Text(state.keys[KEYS - 1]), state.whole[KEYS - 1]);
}

template <class Walk, class Key>
void SweepWalk()
{
    Sweep(
        report, [] { return std::make_unique<State<Walk, Key>>(); },
        [](State<Walk, Key>& state) { state.Run(); }, Check<Walk, Key>);
}

template <class Walk, class Key>
void SweepSet()
{
    Sweep(
        report,
        [] {
            auto state = std::make_unique<State<Walk, Key>>();
            for (unsigned step = 0; step < 3; ++step)
                state->walk.b_GetNext(&state->spare, nullptr);
            return state;
        },
        [](State<Walk, Key>& state) { state.walk.vv_Set(&state.list); },
        [](State<Walk, Key>& state, bool failed) {
            state.Run();
            EXPECT_EQ(state.count, failed ? 0U : KEYS);
            state.walk.vv_Set(&state.list);
            state.count = 0;
            state.Run();
            Check(state, false);
        });
}
} // namespace

TEST(CompListIteratorSweep, AWalkEndsRatherThanLosesItsWay)
{
    SweepWalk<CT_CCompListIterator, CT_CString>();
    SweepWalk<CT_UCompListIterator, CT_UString>();
}

TEST(CompListIteratorSweep, AWalkThatCannotBeSetIsAtItsEnd)
{
    SweepSet<CT_CCompListIterator, CT_CString>();
    SweepSet<CT_UCompListIterator, CT_UString>();
}

namespace
{
// A list whose mark stands behind the end of a key, where no list has one.
template <class Walk, class Key>
struct Misled
{
    Misled()
    {
        CT_CompList whole(CT_CompList::es_Byte, 1, 0, 0, 128, 0);
        whole.b_Add("p", 1);
        whole.b_Add("pq", 2);
        std::string bytes(static_cast<const char*>(whole.pcco_GetBuffer()->qcv_Get()),
                          whole.pcco_GetBuffer()->n_GetUsedSize());
        bytes[bytes.find("\x0A\x01q") + 2] = 0x0D;
        const CT_Buffer buffer(bytes.data(), static_cast<unsigned>(bytes.size()), 32);
        list.v_Set(&buffer);
        walk.vv_Set(&list);
        EXPECT_EQ(walk.b_GetNext(&key, nullptr), 1);
        EXPECT_EQ(key.vn_GetLength(), 1U);
    }

    CT_CompList list{CT_CompList::es_Byte, 1, 0, 0, 128, 0};
    Walk walk{&list};
    Key key, spare;
    int more = 7;
};

template <class Walk, class Key>
void SweepMisled()
{
    typedef Misled<Walk, Key> State;
    Sweep(
        report, [] { return std::make_unique<State>(); },
        [](State& state) { state.more = state.walk.b_GetNext(&state.spare, nullptr); },
        [](State& state, bool) {
            EXPECT_EQ(state.more, 0);
            EXPECT_EQ(state.key.vn_GetLength(), 1U);
            EXPECT_EQ(state.walk.b_GetNext(&state.spare, nullptr), 0);
            state.walk.vv_Set(&state.list);
            EXPECT_EQ(state.walk.b_GetNext(&state.spare, nullptr), 1);
            EXPECT_EQ(state.spare.vi_Compare(&state.key), 0);
        });
}
} // namespace

// The string that the mark takes a character from is the key's too.
TEST(CompListIteratorSweep, AWalkThatIsMisledBehindAKeyEndsAndLeavesTheKey)
{
    SweepMisled<CT_CCompListIterator, CT_CString>();
    SweepMisled<CT_UCompListIterator, CT_UString>();
}

// A key that can't be converted stays as it was; the walk goes on.
TEST(CompListIteratorSweep, AKeyThatCannotBeConvertedIsAsItWas)
{
    struct Mixed
    {
        Mixed() { list.b_Add("one", 1), list.b_Add("two", 2); }
        CT_CompList list{CT_CompList::es_Byte, 1, 0, 1, 1024, 0};
        CT_CCompListIterator walk{&list};
        CT_UString key;
        unsigned handle = 0;
        int got = 0;
    };
    Sweep(
        report,
        [] {
            auto state = std::make_unique<Mixed>();
            CT_CString key; // gives the collected string its room
            state->walk.b_GetNext(&key, nullptr);
            key.v_Set("", 0U, 0);
            return state;
        },
        [](Mixed& state) { state.got = state.walk.b_GetNext(&state.key, &state.handle); },
        [](Mixed& state, bool failed) {
            if (state.got) {
                EXPECT_EQ(state.handle, 1U);
                EXPECT_EQ(state.key.vn_GetLength(), failed ? 0U : 3U);
            }
            state.walk.vv_Set(&state.list);
            EXPECT_EQ(state.walk.b_GetNext(&state.key, &state.handle), 1);
            EXPECT_EQ(state.handle, 2U);
            EXPECT_EQ(state.key.vn_GetLength(), 3U);
        });
}
