// winapi/tests/native/Messages/DeadPartnerTest.cpp: what those have lent who die before the answer.
#include "../../Messages/MessageTools.h"
#include "../../Support/Calls.h"

#include "Support/ChildProcess.h"
#include "winapi/Memory/Global.h"

#include <cstring>

using namespace winapi;

namespace
{
HGLOBAL AsBlock(UINT_PTR value)
{
    return reinterpret_cast<HGLOBAL>(value);
}

HWND AsWindow(WPARAM number)
{
    return reinterpret_cast<HWND>(number);
}

class DeadPartner : public testing::Test
{
protected:
    ~DeadPartner() override { DestroyWindow(window); }

    // Takes the message of a child, which is dead by then; answers it in vain.
    void Answer(UINT message, ChildProcess& child)
    {
        const MSG taken = PumpUntil(window, message);
        UINT_PTR low, high;
        EXPECT_TRUE(UnpackDDElParam(message, taken.lParam, &low, &high));
        FreeDDElParam(message, taken.lParam);
        const HGLOBAL block = AsBlock(message == WM_DDE_EXECUTE ? high : low);
        EXPECT_EQ(GlobalSize(block), 9U);
        child.Kill();
        const LPARAM answer = PackDDElParam(WM_DDE_ACK, 0, high);
        RunRows({CALL(PostMessageA(AsWindow(taken.wParam), WM_DDE_ACK,
                                   reinterpret_cast<WPARAM>(window), answer),
                      0, 1400),
                 CALL(GlobalSize(block), 0, 6)});
        EXPECT_TRUE(FreeDDElParam(WM_DDE_ACK, answer));
    }

    const OwnClass kind{"OstraDeadPartner", DefWindowProcA};
    const HWND window = MakeWindow("OstraDeadPartner");
};
} // namespace

// Posts a block of nine bytes and waits for its end.
CHILD_PROCESS(BlockLender)
{
    const OwnClass kind("OstraBlockLender", DefWindowProcA);
    const HWND own = kind.Make(), to = FindWindowA("OstraDeadPartner", nullptr);
    const bool isCommand = arguments[0] == "command";
    const HGLOBAL block = GlobalAlloc(GMEM_MOVEABLE | GMEM_DDESHARE, 9);
    std::memset(GlobalLock(block), 0, 9);
    GlobalUnlock(block);
    const auto value = reinterpret_cast<UINT_PTR>(block);
    const UINT message = isCommand ? WM_DDE_EXECUTE : WM_DDE_POKE;
    PostMessageA(to, message, reinterpret_cast<WPARAM>(own),
                 isCommand ? PackDDElParam(message, 0, value)
                           : PackDDElParam(message, value, 0xBFF0));
    std::getchar();
    return 0;
}

TEST_F(DeadPartner, ItsCommandGoesWithTheAnswerThatNobodyTakes)
{
    ChildProcess child("BlockLender", {"command"});
    Answer(WM_DDE_EXECUTE, child);
}

TEST_F(DeadPartner, ItsValueGoesWithTheAnswerThatNobodyTakes)
{
    ChildProcess child("BlockLender", {"value"});
    Answer(WM_DDE_POKE, child);
}
