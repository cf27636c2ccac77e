// winapi/tests/native/Base/HeadersTest.cpp: what the headers leave to the programs that include them.
#include "winapi/Base/Types.h"

// Those who include the types alone may use every other name of the services for themselves.
namespace
{
enum class Fate
{
    DELETE,
    TRUE,
    FALSE,
    MAX_PATH,
    ERROR_SUCCESS,
    WINAPI,
    CALLBACK,
    GENERIC_READ
};
DWORD GetTickCount()
{
    return 77;
}
DWORD OwnTicks()
{
    return GetTickCount();
}
} // namespace

// Other libraries define these two before or after.
#define FALSE (0)
#define TRUE (!FALSE)
#include <windows.h>

#include <gtest/gtest.h>

namespace
{
TEST(Headers, TypesLeaveTheNamesOfServicesToTheProgram)
{
    EXPECT_EQ(OwnTicks(), 77U);
    EXPECT_NE(Fate::DELETE, Fate::GENERIC_READ);
    EXPECT_EQ(sizeof(DWORD), 4U);
    EXPECT_EQ(sizeof(LONG), 4U);
    EXPECT_EQ(sizeof(HANDLE), sizeof(void*));
}

TEST(Headers, PublishedNumbersAreConstants)
{
    enum
    {
        DELETE = 5
    };
    EXPECT_EQ(DELETE, 5);
    EXPECT_EQ(winapi::DELETE, 0x10000U);
    EXPECT_EQ(MAKELANGID(9, 1), 0x409);
    EXPECT_EQ(reinterpret_cast<std::intptr_t>(INVALID_HANDLE_VALUE), -1);
}

TEST(Headers, NoPublishedNumberIsAMacro)
{
    bool macro = false;
#if defined(GENERIC_READ) || defined(ERROR_SUCCESS) || defined(MAX_PATH) || defined(DELETE) ||     \
    defined(CP_ACP) || defined(INVALID_HANDLE_VALUE) || defined(MAKELANGID) ||                     \
    defined(DLL_PROCESS_ATTACH) || defined(PAGE_READONLY) || defined(DRIVE_FIXED)
    macro = true;
#endif
    EXPECT_FALSE(macro);
}
} // namespace
