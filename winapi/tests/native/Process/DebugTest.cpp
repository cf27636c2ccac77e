// winapi/tests/native/Process/DebugTest.cpp
#include "../../Support/Calls.h"
#include "../../Support/Replace.h"

#include <csignal>

TEST(Debug, ABreakRaisesTheSignalOfDebuggers)
{
    static int raised;
    raised = 0;
    const Replace raise(
        posix.raise, +[](int signal) {
            raised = signal;
            return 0;
        });
    DebugBreak();
    EXPECT_EQ(SIGTRAP, raised);
}
