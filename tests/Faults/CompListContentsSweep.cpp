// tests/Faults/CompListContentsSweep.cpp: gathering all keys of a list with an exhausted heap.
#include <Ostra/CompList/CompList.h>

#include "Faults/Sweep.h"

#include <memory>
#include <string>

namespace
{
const SweepReport report("Ostra/Buffer/Buffer");

// Keys whose texts take far more than the list, so that the room grows on the way, and more
// branches on the way than there is room for at first.
struct State
{
    explicit State(bool shared)
    {
        std::string key = "a key that is long enough";
        for (unsigned handle = 1; handle <= 60; ++handle) {
            key += static_cast<char>('a' + handle % 20);
            list.b_Add(key.c_str(), handle);
            list.b_Add((key + '!').c_str(), handle);
        }
        if (shared) {
            holder.v_Set(&keys);
            numbersHolder.v_Set(&handles);
        }
    }

    static std::string Bytes(const CT_Buffer& buffer)
    {
        return std::string(static_cast<const char*>(buffer.qcv_Get()), buffer.n_GetUsedSize());
    }

    CT_CompList list{CT_CompList::es_Byte, 1, 0, 1, 1024, 0};
    CT_Buffer keys{"keys", 4, 32}, places, handles{"1234", 4, 32};
    CT_Buffer holder, numbersHolder;
};

void SweepGathering(bool shared)
{
    Sweep(
        report, [=] { return std::make_unique<State>(shared); },
        [](State& state) { state.list.v_GetAll(&state.keys, &state.places, &state.handles); },
        [=](State& state, bool failed) {
            if (failed) {
                EXPECT_EQ(State::Bytes(state.keys), "keys");
                EXPECT_EQ(state.places.n_GetUsedSize(), 0U);
                EXPECT_EQ(State::Bytes(state.handles), "1234");
                state.list.v_GetAll(&state.keys, &state.places, &state.handles);
            }
            EXPECT_EQ(state.places.n_GetUsedSize(), 120U * 4);
            EXPECT_EQ(state.handles.n_GetUsedSize(), 4 + 120U * 4);
            EXPECT_GT(state.keys.n_GetUsedSize(), 2 * state.list.n_GetEnd());
            EXPECT_EQ(State::Bytes(state.holder), shared ? "keys" : "");
            EXPECT_EQ(State::Bytes(state.numbersHolder), shared ? "1234" : "");
        });
}
} // namespace

TEST(CompListContentsSweep, AllKeysAreGatheredOrNone)
{
    SweepGathering(false);
}

TEST(CompListContentsSweep, AllKeysAreGatheredIntoSharedBuffersOrNone)
{
    SweepGathering(true);
}

namespace
{
// A list whose head tells of no entries. Short keys and such as are long behind what they have in
// common take turns, so that the room also grows on the way to a key's end.
struct Misled
{
    explicit Misled(unsigned common)
    {
        CT_CompList whole(CT_CompList::es_Byte, 1, 0, 1, 1024, 0);
        for (unsigned handle = 0; handle < KEYS; ++handle)
            whole.b_Add((std::string(common, 'a') + static_cast<char>('b' + handle) +
                         std::string(handle % 2 * 400, 'z'))
                            .c_str(),
                        handle);
        std::string bytes = State::Bytes(*whole.pcco_GetBuffer());
        bytes.replace(120, 4, 4, '\0');
        const CT_Buffer block(bytes.data(), static_cast<unsigned>(bytes.size()), 64);
        list.v_Set(&block);
    }

    static constexpr unsigned KEYS = 20;
    CT_CompList list{CT_CompList::es_Byte, 1, 0, 1, 1024, 0};
    CT_Buffer keys, places, handles;
};
} // namespace

TEST(CompListContentsSweep, MoreKeysThanTheHeadTellsAreGatheredOrNone)
{
    for (unsigned common = 50; common <= 450; common += 40)
        Sweep(
            report, [=] { return std::make_unique<Misled>(common); },
            [](Misled& state) { state.list.v_GetAll(&state.keys, &state.places, &state.handles); },
            [](Misled& state, bool failed) {
                if (failed) {
                    EXPECT_EQ(state.keys.n_GetUsedSize(), 0U);
                    EXPECT_EQ(state.places.n_GetUsedSize(), 0U);
                    EXPECT_EQ(state.handles.n_GetUsedSize(), 0U);
                    state.list.v_GetAll(&state.keys, &state.places, &state.handles);
                }
                EXPECT_EQ(state.places.n_GetUsedSize(), Misled::KEYS * 4);
                EXPECT_EQ(state.handles.n_GetUsedSize(), Misled::KEYS * 4);
            });
}
