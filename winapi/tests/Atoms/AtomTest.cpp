// winapi/tests/Atoms/AtomTest.cpp: global atoms.
#include "../Support/Calls.h"
#include "Support/ChildProcess.h"

#include <set>

namespace
{
LPCSTR Number(unsigned value)
{
    return reinterpret_cast<LPCSTR>(static_cast<UINT_PTR>(value));
}

// A text that no other program has, in small letters.
std::string Text(const std::string& rest)
{
    static const std::string mine = "ostra" + std::to_string(GetTickCount()) + "x";
    return mine + rest;
}

std::string NameOf(ATOM atom)
{
    char name[256] = "";
    const UINT length = GlobalGetAtomNameA(atom, name, sizeof name);
    EXPECT_EQ(length, std::string(name).size());
    return name;
}

bool IsString(ATOM atom)
{
    return atom >= 0xC000;
}

int CodeOfFinding(const std::string& text)
{
    SetLastError(0);
    return GlobalFindAtomA(text.c_str()) ? 0 : static_cast<int>(GetLastError());
}
} // namespace

TEST(Atom, ATextHasOneNumberWhateverItsCase)
{
    const ATOM atom = GlobalAddAtomA(Text("Word").c_str());
    EXPECT_TRUE(IsString(atom));
    EXPECT_EQ(GlobalFindAtomA(Text("wORD").c_str()), atom);
    EXPECT_EQ(GlobalAddAtomA(Text("WORD").c_str()), atom);
    EXPECT_EQ(NameOf(atom), Text("Word"));
    EXPECT_EQ(GlobalDeleteAtom(atom), 0);
    EXPECT_EQ(GlobalDeleteAtom(atom), 0);
    EXPECT_EQ(CodeOfFinding(Text("word")), 2);
}

TEST(Atom, AnAtomIsGoneWhenItWasDeletedAsOftenAsAdded)
{
    ATOM atom = 0;
    for (int i = 0; i < 3; ++i)
        atom = GlobalAddAtomA(Text("counted").c_str());
    for (int i = 0; i < 3; ++i) {
        EXPECT_EQ(GlobalFindAtomA(Text("counted").c_str()), atom);
        EXPECT_EQ(GlobalDeleteAtom(atom), 0);
    }
    RunRows({CALL(GlobalFindAtomA(Text("counted").c_str()), 0, 2),
             CALL(GlobalDeleteAtom(atom), atom, 6)});
}

TEST(Atom, ANameThatIsGoneComesBackAsItIsSpelledThen)
{
    const ATOM before = GlobalAddAtomA("OstraSpelled");
    EXPECT_EQ(GlobalDeleteAtom(before), 0);
    RunRows({CALL(GlobalFindAtomA("OstraSpelled"), 0, 2)});
    const ATOM atom = GlobalAddAtomA("oSTRAsPELLED");
    char name[20] = "";
    EXPECT_EQ(GlobalGetAtomNameA(atom, name, sizeof name), 12U);
    EXPECT_STREQ(name, "oSTRAsPELLED");
    EXPECT_EQ(GlobalFindAtomA("OstraSpelled"), atom);
    EXPECT_EQ(GlobalDeleteAtom(atom), 0);
}

TEST(Atom, NumbersOfThoseThatAreGoneServeOthers)
{
    // More names than there are numbers.
    for (int i = 0; i < 17000; ++i) {
        const std::string name = "OstraMany" + std::to_string(i);
        const ATOM atom = GlobalAddAtomA(name.c_str());
        ASSERT_GE(atom, 0xC000) << i;
        ASSERT_EQ(GlobalDeleteAtom(atom), 0) << i;
    }
    EXPECT_EQ(GlobalFindAtomA("OstraMany16999"), 0);
}

TEST(Atom, NumbersAreThemselves)
{
    RunRows({CALL(GlobalAddAtomA("#123"), 123, 0), CALL(GlobalAddAtomA(Number(7)), 7, 0),
             CALL(GlobalAddAtomA(Number(0xBFFF)), 0xBFFF, 0),
             CALL(GlobalAddAtomA("#49151"), 0xBFFF, 0), CALL(GlobalFindAtomA("#1"), 1, 0),
             CALL(GlobalFindAtomA(Number(99)), 99, 0), CALL(GlobalDeleteAtom(123), 0, 0),
             CALL(GlobalDeleteAtom(0), 0, 0)});
    EXPECT_EQ(NameOf(123), "#123");
    EXPECT_EQ(NameOf(0xBFFF), "#49151");
}

TEST(Atom, WhatIsNoTextAndNoNumberIsRefused)
{
    const std::string longest(255, 'l'), longer(256, 'l');
    RunRows({CALL(GlobalAddAtomA(""), 0, 87), CALL(GlobalAddAtomA("#0"), 0, 87),
             CALL(GlobalAddAtomA("#49152"), 0, 87), CALL(GlobalAddAtomA("#99999999999"), 0, 87),
             CALL(GlobalAddAtomA(longer.c_str()), 0, 87),
             CALL(GlobalFindAtomA(longer.c_str()), 0, 87), CALL(GlobalFindAtomA("#0"), 0, 87)});
    const ATOM atom = GlobalAddAtomA(longest.c_str());
    EXPECT_TRUE(IsString(atom));
    EXPECT_EQ(NameOf(atom), longest);
    EXPECT_EQ(GlobalDeleteAtom(atom), 0);
    const ATOM mixed = GlobalAddAtomA("#12a");
    EXPECT_TRUE(IsString(mixed));
    EXPECT_EQ(GlobalDeleteAtom(mixed), 0);
}

TEST(Atom, NamesAreCutToTheRoomThatThereIs)
{
    const ATOM atom = GlobalAddAtomA("a long name");
    char buffer[32] = "unchanged";
    EXPECT_EQ(GlobalGetAtomNameA(atom, buffer, sizeof buffer), 11U);
    EXPECT_STREQ(buffer, "a long name");
    EXPECT_EQ(GlobalGetAtomNameA(atom, buffer, 12), 11U);
    SetLastError(0);
    EXPECT_EQ(GlobalGetAtomNameA(atom, buffer, 0), 0U);
    EXPECT_EQ(GetLastError(), 234U);
    EXPECT_EQ(GlobalDeleteAtom(atom), 0);
    RunRows({CALL(GlobalGetAtomNameA(0xFFF0, buffer, 32), 0, 6)});
}

TEST(Atom, DifferentTextsHaveDifferentNumbers)
{
    std::set<ATOM> atoms;
    for (int i = 0; i < 40; ++i)
        atoms.insert(GlobalAddAtomA(Text(std::to_string(i)).c_str()));
    EXPECT_EQ(atoms.size(), 40U);
    for (int i = 0; i < 40; ++i) {
        const ATOM atom = GlobalFindAtomA(Text(std::to_string(i)).c_str());
        EXPECT_EQ(NameOf(atom), Text(std::to_string(i)));
        EXPECT_EQ(GlobalDeleteAtom(atom), 0);
    }
}

CHILD_PROCESS(AtomPartner)
{
    const ATOM atom = GlobalFindAtomA(arguments[0].c_str());
    if (!IsString(atom) || GlobalDeleteAtom(atom) != 0)
        return 1;
    return GlobalAddAtomA(arguments[1].c_str()) ? 0 : 2;
}

TEST(Atom, ProcessesShareThem)
{
    const std::string given = Text("given"), taken = Text("taken");
    ATOM atom = GlobalAddAtomA(given.c_str());
    ChildProcess child("AtomPartner", {given, taken});
    EXPECT_EQ(child.Wait(), 0);
    EXPECT_EQ(CodeOfFinding(given), 2);
    // Windows keeps what a process leaves.
    atom = GlobalFindAtomA(taken.c_str());
    if (atom)
        EXPECT_EQ(GlobalDeleteAtom(atom), 0);
    else
        EXPECT_TRUE(HOST_PATHS);
}
