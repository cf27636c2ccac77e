// tests/Examples/OutputTest.cpp: files that are written beside their place, and two runs at once.
#include <Common/Failure.h>
#include <Common/Output.h>
#include <Common/Utf8.h>

#include <gtest/gtest.h>

#include "Support/Directory.h"

#include <filesystem>
#include <string>

namespace
{
namespace fs = std::filesystem;

// A run whose file stands beside the place and is empty.
class Writing
{
public:
    Writing()
    {
        CT_UString name;
        common::ToWide("out", &name);
        EXPECT_TRUE(output.Take(name));
        EXPECT_TRUE(output.Start());
    }
    bool Commit(bool isEmpty = false)
    {
        const bool done = output.Commit(isEmpty);
        if (!done)
            common::Failure::Take();
        return done;
    }

private:
    common::Output output;
};
} // namespace

TEST(OutputFile, HasTheRightsOfTheOldOneBeforeAByteIsWritten)
{
    WriteBytes("out", "old");
    fs::permissions("out", fs::perms(0600));
    const fs::perms rights = fs::status("out").permissions();
    WriteBytes("out.new", "left by a run that was killed");
    Writing run;
    EXPECT_EQ(fs::status("out.new").permissions(), rights);
    EXPECT_EQ(ReadBytes("out.new"), "");
    EXPECT_EQ(ReadBytes("out"), "old");
}

TEST(OutputFile, WhatAnotherRunHasJustBegunIsNoResult)
{
    WriteBytes("out", "old");
    Writing first;
    WriteBytes("out.new", "first");
    Writing second;
    EXPECT_FALSE(first.Commit());
    EXPECT_EQ(ReadBytes("out"), "old");
    WriteBytes("out.new", "second");
    EXPECT_TRUE(second.Commit());
    EXPECT_EQ(ReadBytes("out"), "second");
    EXPECT_FALSE(fs::exists("out.new"));
}

TEST(OutputFile, TheRunThatWritesFirstIsDone)
{
    Writing first;
    Writing second;
    WriteBytes("out.new", "first");
    EXPECT_TRUE(first.Commit());
    EXPECT_FALSE(second.Commit());
    EXPECT_EQ(ReadBytes("out"), "first");
}

TEST(OutputFile, MayBeEmptyIfThatWasWritten)
{
    WriteBytes("out", "old");
    Writing run;
    EXPECT_TRUE(run.Commit(true));
    EXPECT_EQ(ReadBytes("out"), "");
}
