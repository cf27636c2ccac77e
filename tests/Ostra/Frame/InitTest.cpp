// tests/Ostra/Frame/InitTest.cpp: CT_Init and CT_Exit.
#include <Ostra/Frame/Exit.h>
#include <Ostra/Frame/Init.h>

#include <gtest/gtest.h>

namespace
{
int calls = 0;

void Count()
{
    ++calls;
}
} // namespace

TEST(Init, CallsTheFunctionAtOnce)
{
    calls = 0;
    const CT_Init bare(Count);
    EXPECT_EQ(calls, 1);
    const CT_Init named("CT_Class", "sv_Init", Count);
    EXPECT_EQ(calls, 2);
}

TEST(Init, HasNoDestruction)
{
    calls = 0;
    {
        const CT_Init init(Count);
    }
    EXPECT_EQ(calls, 1);
}

TEST(Init, NullFunctionIsAllowed)
{
    const CT_Init bare(nullptr);
    const CT_Init named("CT_Class", "sv_Init", nullptr);
}

TEST(Exit, CallsTheFunctionAtDestruction)
{
    calls = 0;
    {
        const CT_Exit exit("CT_Class", "sv_Exit", Count);
        EXPECT_EQ(calls, 0);
    }
    EXPECT_EQ(calls, 1);
}

TEST(Exit, NullFunctionIsAllowed)
{
    const CT_Exit exit("CT_Class", "sv_Exit", nullptr);
}

TEST(Exit, HoldsTwoNamesAndTheFunction)
{
    EXPECT_EQ(sizeof(CT_Exit), 3 * sizeof(void*));
}
