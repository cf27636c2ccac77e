// tests/Faults/ErrorManagerSweep.cpp: what takes memory around the error manager, diagnostic text and
// the services that they call.
#include <Ostra/Frame/ErrorManager.h>
#include <Ostra/TestOut/TestOut.h>

#include <windows.h>

#include "Faults/BoxInPlace.h"
#include "Faults/FailEach.h"
#include "Faults/ServiceSweep.h"
#include "Support/Directory.h"
#include "Support/Private.h"

#include <memory>
#include <string>

OSTRA_PRIVATE(Threads, CT_VoidArray CT_ErrorManager::*, &CT_ErrorManager::co_Threads);

namespace
{
// The platform has a heap of its own for the blocks.
#ifdef _WIN32
constexpr bool HOST_HEAP = false;
#else
constexpr bool HOST_HEAP = true;
#endif

int Write(unsigned short* message, unsigned, unsigned, unsigned, va_list)
{
    message[0] = 'x';
    message[1] = 0;
    return 1;
}

// No formatter is registered before and after it, and the list has no block.
struct NoFormatters
{
    NoFormatters() { Clear(); }
    NoFormatters(const NoFormatters&) = delete;
    NoFormatters& operator=(const NoFormatters&) = delete;
    ~NoFormatters() { Clear(); }

    static void Clear()
    {
        Errors().v_GiveThread(GetCurrentThreadId());
        (Errors().*Private(Threads())).v_Set(0, 0, 0);
    }
};
} // namespace

TEST(ErrorManagerSweep, AFormatterIsRegisteredOrNot)
{
    Sweep(
        {"Ostra/Frame/ErrorManager", "Ostra/Buffer/Buffer"},
        [] { return std::make_unique<NoFormatters>(); },
        [](NoFormatters&) { Errors().v_TakeThread(Write, GetCurrentThreadId()); },
        [](NoFormatters&, bool failed) {
            Errors().v_SetError(1, Units(u"text"));
            EXPECT_EQ(TakeFailure().text, failed ? "(1): text" : "(1): x");
            EXPECT_EQ((Errors().*Private(Threads())).n_GetCount(), failed ? 0U : 1U);
        });
}

TEST(ErrorManagerSweep, AMessageOfBytesGivesWayToTheReport)
{
    const unsigned failures = FailEach([] {
        Errors().v_SetMessageError("%u bytes", 5U);
        const unsigned failing = FailingHeap::Disarm();
        const Failure failure = TakeFailure();
        EXPECT_EQ(failure.code, failing ? 60006U : 0U);
        EXPECT_EQ(failure.text, failing ? "(60006): Out of memory" : "5 bytes");
        return failing;
    });
    EXPECT_GT(failures, 0U);
}

// Text of a record needs no memory; on the 8-bit road strings are made of it, and a box comes up
// with those that there are. The place of that failure stands behind those of the error.
TEST(ErrorManagerSweep, TheWindowLeavesTheErrorAsItIs)
{
    for (const bool wide : {true, false}) {
        const RoadSwitch road(wide);
        const unsigned failures = FailEach([] {
            const BoxInPlace box;
            Errors().v_SetMessageError(Units(u"It failed."));
            Errors().v_AddLocation("a/b", 1);
            const int button = Errors().i_ErrorLocationWindow(0, Units(u"title"), MB_OK);
            const unsigned failing = FailingHeap::Disarm();
            EXPECT_EQ(button, BoxInPlace::BUTTON);
            EXPECT_EQ(BoxInPlace::shown, 1U);
            const std::string title = BoxInPlace::title;
            const std::string text = BoxInPlace::text;
            EXPECT_TRUE(title == "title" || (failing && title.empty())) << title;
            EXPECT_TRUE(text == "It failed.\n\nb: line 1" || (failing && text.empty())) << text;
            const Failure failure = TakeFailure();
            EXPECT_EQ(failure.text, "It failed.");
            const std::vector<std::string> trail = {"a/b", "Ostra/Buffer/Buffer"};
            EXPECT_EQ(failure.trail, std::vector(trail.begin(), trail.end() - !failing));
            return failing;
        });
        EXPECT_EQ(failures > 0, !wide);
    }
}

TEST(ErrorManagerSweep, DiagnosticTextReportsNothing)
{
    const std::string text(5000, 'x');
    const std::u16string wide(5000, u'x');
    CT_TestOut("./warm.txt", "up").v_Out("text");
    FailEach([&] {
        unsigned failing;
        {
            CT_TestOut out("./trace.txt", "label:");
            out.v_Out("%s", text.c_str());
            out.v_Out(Units(u"%s"), Units(wide.c_str()));
            out.v_Set(out.pso_GetOutput(), "other:");
            failing = FailingHeap::Disarm();
            EXPECT_FALSE(Errors().b_IsSetError());
        }
        if (!failing) {
            EXPECT_EQ(ReadBytes("trace.txt"), "label:" + text + "label:" + text);
        }
        return failing;
    });
}

TEST(ErrorManagerSweep, BlocksThatGoFromHandToHand)
{
    for (const UINT flags : {GMEM_MOVEABLE, GMEM_FIXED, GHND}) {
        GlobalFree(GlobalAlloc(flags, 100));
        const unsigned failures = FailEach([flags] {
            SetLastError(0);
            const HGLOBAL block = GlobalAlloc(flags, 100);
            const unsigned failing = FailingHeap::Disarm();
            EXPECT_EQ(GetLastError(), failing ? DWORD(ERROR_NOT_ENOUGH_MEMORY) : 0U);
            EXPECT_EQ(block == nullptr, failing != 0);
            EXPECT_EQ(GlobalFree(block), nullptr);
            return failing;
        });
        EXPECT_EQ(failures > 0, HOST_HEAP);
    }
}
