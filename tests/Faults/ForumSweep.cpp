// tests/Faults/ForumSweep.cpp: forums and timers with an exhausted heap.
#include <System/Forum/Forum.h>
#include <System/Timer/Timer.h>

#include "Faults/Sweep.h"

#include <memory>

namespace
{
struct Counting : CT_Forum
{
    void vv_Listen(CT_Forum*, unsigned, va_list) override { ++heard; }
    unsigned heard = 0;
};

struct Room
{
    CT_Forum forum;
    CT_Forum holder;
    Counting first, second;
};

std::unique_ptr<Room> OneListener()
{
    auto room = std::make_unique<Room>();
    room->forum.v_AddListener(&room->first);
    return room;
}
} // namespace

TEST(ForumSweep, AListenerIsAddedOrNot)
{
    Sweep(
        "Ostra/Buffer/Buffer", [] { return std::make_unique<Room>(); },
        [](Room& room) { room.forum.v_AddListener(&room.first); },
        [](Room& room, bool failed) {
            room.forum.v_Speak(nullptr, 1);
            EXPECT_TRUE(room.first.heard == 1 || (failed && room.first.heard == 0));
            room.forum.v_AddListener(&room.second);
            room.forum.v_Speak(nullptr, 1);
            EXPECT_EQ(room.second.heard, 1U);
        });
}

// A list that can't be copied is changed for all its holders.
TEST(ForumSweep, AListenerOfASharedListIsRemovedAllTheSame)
{
    Sweep(
        "Ostra/Buffer/Buffer",
        [] {
            auto room = OneListener();
            room->holder.v_Set(&room->forum);
            return room;
        },
        [](Room& room) { room.forum.v_RemoveListener(&room.first); },
        [](Room& room, bool failed) {
            room.forum.v_Speak(nullptr, 1);
            EXPECT_EQ(room.first.heard, 0U);
            room.holder.v_Speak(nullptr, 1);
            EXPECT_EQ(room.first.heard, failed ? 0U : 1U);
        });
}

TEST(TimerSweep, NewObject)
{
    struct Pointer
    {
        ~Pointer() { delete timer; }
        CT_Timer* timer = nullptr;
    };
    Sweep(
        "System/Timer/Timer", [] { return std::make_unique<Pointer>(); },
        [](Pointer& state) { state.timer = new CT_Timer; },
        [](Pointer& state, bool failed) { EXPECT_EQ(state.timer == nullptr, failed); });
}
