// winapi/tests/Process/EnvironmentTest.cpp: environment variables, the hidden ones among them.
#include "../Support/Calls.h"

#include <cstdlib>

namespace
{
std::string Get(const char* name)
{
    char text[200] = "untouched";
    const DWORD size = GetEnvironmentVariableA(name, text, sizeof text);
    return size ? std::string(text, size) : "none";
}
} // namespace

TEST(Environment, VariablesAreSetReadAndRemoved)
{
    char text[200];
    WCHAR wide[200];
    RunRows({
        CALL(SetEnvironmentVariableA("OSTRA_TEST_V", "value"), 1, 0),
        CALL(GetEnvironmentVariableA("OSTRA_TEST_V", text, 200), 5, 0),
        CALL(GetEnvironmentVariableW(Wide("OSTRA_TEST_V").c_str(), wide, 200), 5, 0),
        CALL(GetEnvironmentVariableA("OSTRA_TEST_V", text, 5), 6, 0),
        CALL(GetEnvironmentVariableA("OSTRA_TEST_V", text, 6), 5, 0),
        CALL(GetEnvironmentVariableA("OSTRA_TEST_V", nullptr, 0), 6, 0),
        CALL(SetEnvironmentVariableA("OSTRA_TEST_V", ""), 1, 0),
        CALL(GetEnvironmentVariableA("OSTRA_TEST_V", text, 200), 0, 0),
        CALL(SetEnvironmentVariableA("OSTRA_TEST_V", nullptr), 1, 0),
        CALL(GetEnvironmentVariableA("OSTRA_TEST_V", text, 200), 0, ERROR_ENVVAR_NOT_FOUND),
        CALL(GetEnvironmentVariableA("", text, 200), 0, ERROR_ENVVAR_NOT_FOUND),
        CALL(GetEnvironmentVariableA(nullptr, text, 200), 0, ERROR_ENVVAR_NOT_FOUND),
        CALL(SetEnvironmentVariableA("OSTRA_TEST_V", nullptr), 1, 0),
        CALL(SetEnvironmentVariableA("", "x"), 0, ERROR_INVALID_PARAMETER),
        CALL(SetEnvironmentVariableA("a=b", "x"), 0, ERROR_INVALID_PARAMETER),
        CALL(SetEnvironmentVariableW(nullptr, wide), 0, ERROR_ENVVAR_NOT_FOUND),
    });
    EXPECT_EQ(WideString(wide), Wide("value"));
}

TEST(Environment, AnEmptyValueLeavesTheLastErrorAlone)
{
    char text[4] = "abc";
    SetEnvironmentVariableA("OSTRA_TEST_V", "");
    SetLastError(99);
    EXPECT_EQ(GetEnvironmentVariableA("OSTRA_TEST_V", text, sizeof text), 0U);
    EXPECT_EQ(GetLastError(), 99U);
    EXPECT_STREQ(text, "");
    SetEnvironmentVariableA("OSTRA_TEST_V", nullptr);
}

TEST(Environment, HiddenVariablesOfDrivesAreKept)
{
    char text[200];
    RunRows({
        CALL(SetEnvironmentVariableA("=C:", "C:\\dir"), 1, 0),
        CALL(GetEnvironmentVariableA("=C:", text, 200), 6, 0),
        CALL(GetEnvironmentVariableA("=C:", text, 3), 7, 0),
        CALL(SetEnvironmentVariableW(Wide("=d:").c_str(), Wide("x").c_str()), 1, 0),
        CALL(SetEnvironmentVariableA("=C:=", "x"), 0, ERROR_INVALID_PARAMETER),
    });
    EXPECT_EQ(Get("=C:"), "C:\\dir");
    EXPECT_EQ(Get("=c:"), "C:\\dir");
    EXPECT_EQ(Get("=D:"), "x");
    EXPECT_EQ(std::getenv("=C:"), nullptr);
    RunRows({
        CALL(SetEnvironmentVariableA("=C:", nullptr), 1, 0),
        CALL(SetEnvironmentVariableA("=C:", nullptr), 1, 0),
        CALL(SetEnvironmentVariableA("=D:", nullptr), 1, 0),
        CALL(GetEnvironmentVariableA("=C:", text, 200), 0, ERROR_ENVVAR_NOT_FOUND),
    });
}

TEST(Environment, WideValuesComeBackWhole)
{
    const WideString value = Wide(u"\u00E4\u4E2D\U0001F600");
    WCHAR text[20];
    SetEnvironmentVariableW(Wide("OSTRA_TEST_V").c_str(), value.c_str());
    EXPECT_EQ(GetEnvironmentVariableW(Wide("OSTRA_TEST_V").c_str(), text, 20), value.size());
    EXPECT_EQ(WideString(text), value);
    SetEnvironmentVariableA("OSTRA_TEST_V", nullptr);
}
