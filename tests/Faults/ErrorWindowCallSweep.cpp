// tests/Faults/ErrorWindowCallSweep.cpp: the window of an error on a host that has no screen, no
// program that shows it, or whose calls fail, each in turn. None is ever shown here.
#ifndef _WIN32
#include <Ostra/Frame/ErrorManager.h>

#include <windows.h>

#include "Faults/FailingHost.h"
#include "Faults/ServiceSweep.h"
#include "Support/Failure.h"

#include <cerrno>
#include <cstdio>
#include <string>
#include <string_view>

#include <unistd.h>

namespace
{
constexpr pid_t PROCESS = 4711;
constexpr int FIRST_BUTTON = 0;
constexpr int STDERR = 2;

const Failure TOLD = {7, "(7): It failed.", {"a/b"}};
const char* const LINES = "title\n(7): It failed.\n\nb: line 1\n";

bool has_display;
unsigned started, collected;
std::string told; // on the stream of errors

char* Variable(const char* name)
{
    static char display[] = ":5";
    return has_display && std::string_view(name) == "DISPLAY" ? display : nullptr;
}

int Spawn(pid_t* process, const char*, int, char* const*, char* const*)
{
    ++started;
    *process = PROCESS;
    return 0;
}

pid_t Wait(pid_t process, int* status, int)
{
    ++collected;
    *status = FIRST_BUTTON << 8;
    return process;
}

ssize_t Write(int fd, const void* data, std::size_t size)
{
    if (fd != STDERR)
        return ::write(fd, data, size);
    told.append(static_cast<const char*>(data), size);
    return static_cast<ssize_t>(size);
}

// A host with a screen or without one, and a program that is left by its first button at once.
class Host
{
public:
    explicit Host(bool display)
    {
        has_display = display;
        started = collected = 0;
        told.clear();
        winapi::posix.getenv = Variable;
        winapi::posix.posix_spawnp = Spawn;
        winapi::posix.waitpid = Wait;
        winapi::posix.write = Write;
    }
    Host(const Host&) = delete;
    Host& operator=(const Host&) = delete;
    ~Host() { winapi::posix = before; }

private:
    const winapi::Posix before = winapi::posix;
};

// The error is set, shown, and still there.
int ShowError()
{
    Errors().v_SetError(7, Units(u"It failed."));
    Errors().v_AddLocation("a/b", 1);
    return Errors().i_ErrorLocationWindow(0, Units(u"title"), MB_OKCANCEL);
}
} // namespace

TEST(ErrorWindowCallSweep, WithoutAScreenTheErrorIsToldOnTheStream)
{
    for (const bool wide : {true, false}) {
        const RoadSwitch road(wide);
        const Host host(false);
        EXPECT_EQ(ShowError(), -1);
        EXPECT_EQ(TakeFailure(), TOLD);
        EXPECT_EQ(told, LINES);
        EXPECT_EQ(started, 0U);
    }
}

// The last call that fails is that of the stream.
TEST(ErrorWindowCallSweep, EveryCallFails)
{
    unsigned failures = 0;
    for (const bool wide : {true, false}) {
        const RoadSwitch road(wide);
        for (const bool display : {true, false}) {
            for (const int error : {ENOENT, EMFILE, ENOMEM, E2BIG}) {
                std::string call = "none yet";
                for (unsigned number = 1; !call.empty(); ++number) {
                    SCOPED_TRACE(testing::Message() << "call " << number << ", error " << error);
                    const unsigned descriptors = Descriptors();
                    const Host host(display);
                    FailingHost::Arm(number, error);
                    const int button = ShowError();
                    call = FailingHost::Disarm();
                    SCOPED_TRACE(call);
                    EXPECT_EQ(TakeFailure(), TOLD);
                    EXPECT_EQ(Descriptors(), descriptors);
                    EXPECT_LE(collected, started);
                    const bool shown =
                        display && (call.empty() || call == "read" || call == "close");
                    EXPECT_EQ(button, shown ? IDOK : -1);
                    EXPECT_EQ(told, shown || call == "write" ? "" : LINES);
                    failures += !call.empty();
                    ASSERT_FALSE(HasFailure());
                }
            }
        }
    }
    std::printf("call sweep of the window: %u failures\n", failures);
    EXPECT_GT(failures, 20U);
}
#endif
