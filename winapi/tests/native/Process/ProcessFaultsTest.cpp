// winapi/tests/native/Process/ProcessFaultsTest.cpp: what becomes of failures of the host in what
// concerns the process.
#include "../../Support/Calls.h"
#include "../../Support/Replace.h"

TEST(ProcessFaults, AVariableThatTheHostRefusesIsTold)
{
    const Replace setting(
        posix.setenv, +[](const char*, const char*, int) {
            errno = ENOMEM;
            return -1;
        });
    const Replace removing(
        posix.unsetenv, +[](const char*) {
            errno = EINVAL;
            return -1;
        });
    RunRows({
        CALL(SetEnvironmentVariableA("OSTRA_VARIABLE", "x"), 0, ERROR_NOT_ENOUGH_MEMORY),
        CALL(SetEnvironmentVariableA("OSTRA_VARIABLE", nullptr), 0, ERROR_INVALID_PARAMETER),
    });
}

TEST(ProcessFaults, AModuleWhosePathIsntToldIsUnknown)
{
    char name[260];
    const Replace link(
        posix.readlink, +[](const char*, char*, size_t) -> ssize_t {
            errno = ENOENT;
            return -1;
        });
    const Replace path(
        posix.realpath, +[](const char*, char*) -> char* {
            errno = ENOENT;
            return nullptr;
        });
    const HMODULE library = GetModuleHandleA("libc.so.6");
    ASSERT_NE(library, nullptr);
    RunRows({
        CALL(GetModuleFileNameA(nullptr, name, sizeof name), 0, ERROR_MOD_NOT_FOUND),
        CALL(GetModuleFileNameA(library, name, sizeof name), 0, ERROR_MOD_NOT_FOUND),
    });
}

TEST(ProcessFaults, ThereIsAlwaysAProcessor)
{
    const Replace asking(
        posix.sched_getaffinity, +[](pid_t, size_t, cpu_set_t*) { return -1; });
    SYSTEM_INFO info;
    GetSystemInfo(&info);
    EXPECT_EQ(info.dwNumberOfProcessors, 1U);
}

TEST(ProcessFaults, TheTickCountIsTheHostsClockInMilliseconds)
{
    const Replace clock(
        posix.clock_gettime, +[](clockid_t, timespec* now) {
            *now = {5'000'000, 123'456'789};
            return 0;
        });
    EXPECT_EQ(GetTickCount(), static_cast<DWORD>(5'000'000'123LL));
}
