// winapi/tests/native/Atoms/HoldTest.cpp: who holds an atom, and which number comes next.
#include "../../Messages/MessageTools.h"
#include "../../Support/Calls.h"

#include "Support/ChildProcess.h"

using namespace winapi;

namespace
{
constexpr char HELD[] = "OstraHeldByMany";
}

// Holds the atom until it is killed.
CHILD_PROCESS(AtomHolder)
{
    GlobalAddAtomA(HELD);
    ChildLine("ready");
    std::getchar();
    return 0;
}

// Lets go of what it doesn't hold, as servers do whose answer can't be delivered.
CHILD_PROCESS(AtomStranger)
{
    return GlobalDeleteAtom(GlobalFindAtomA(HELD)) != 0;
}

TEST(AtomHold, WhatTheDeadHaveHeldIsLetGoFirst)
{
    const ATOM atom = GlobalAddAtomA(HELD);
    {
        ChildProcess first("AtomHolder"), second("AtomHolder");
        ASSERT_EQ(first.ReadLine(), "ready");
        ASSERT_EQ(second.ReadLine(), "ready");
        first.Kill();
        second.Kill();
    }
    for (int i = 0; i < 2; ++i) {
        EXPECT_EQ(ChildProcess("AtomStranger").Wait(), 0);
        EXPECT_EQ(GlobalFindAtomA(HELD), atom);
    }
    EXPECT_EQ(ChildProcess("AtomStranger").Wait(), 0);
    EXPECT_EQ(GlobalFindAtomA(HELD), 0);
    RunRows({CALL(GlobalDeleteAtom(atom), atom, 6)});
}

TEST(AtomHold, TheDeadAloneHoldNothing)
{
    const ATOM atom = GlobalAddAtomA(HELD);
    ChildProcess child("AtomHolder");
    ASSERT_EQ(child.ReadLine(), "ready");
    child.Kill();
    EXPECT_EQ(ChildProcess("AtomStranger").Wait(), 0); // Looks after the dead, too.
    EXPECT_EQ(GlobalFindAtomA(HELD), atom);
    EXPECT_EQ(GlobalDeleteAtom(atom), 0);
    EXPECT_EQ(GlobalFindAtomA(HELD), 0);
}

TEST(AtomHold, ANumberComesAgainWhenAllOthersHaveBeenGiven)
{
    const ATOM stays = GlobalAddAtomA(HELD);
    const ATOM first = GlobalAddAtomA("OstraRound");
    EXPECT_EQ(GlobalDeleteAtom(first), 0);
    unsigned others = 0;
    for (ATOM next = 0; next != first && others < 0x8000; ++others) {
        next = GlobalAddAtomA(("OstraRound" + std::to_string(others)).c_str());
        ASSERT_GE(next, 0xC000);
        ASSERT_NE(next, stays);
        ASSERT_EQ(GlobalDeleteAtom(next), 0);
    }
    EXPECT_EQ(others, 0x3FFFU);
    EXPECT_EQ(GlobalDeleteAtom(stays), 0);
}
