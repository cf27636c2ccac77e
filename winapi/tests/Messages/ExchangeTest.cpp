// winapi/tests/Messages/ExchangeTest.cpp: what messages of conversations carry.
#include "../Support/Calls.h"
#include "MessageTools.h"
#include "Support/ChildProcess.h"

#ifdef _WIN32
#include <dde.h>
#endif

#include <cstring>

namespace
{
constexpr UINT DATA = 0x3E5, POKE = 0x3E7, ACK = 0x3E4, EXECUTE = 0x3E8, REQUEST = 0x3E6;
constexpr UINT TERMINATE = 0x3E1;
constexpr WORD RELEASE = 0x2000;

struct Pair
{
    UINT_PTR low = 99;
    UINT_PTR high = 99;
    BOOL found = FALSE;
};

Pair Unpacked(UINT message, LPARAM parameter)
{
    Pair pair;
    pair.found = UnpackDDElParam(message, parameter, &pair.low, &pair.high);
    return pair;
}

HGLOBAL AsBlock(UINT_PTR value)
{
    return reinterpret_cast<HGLOBAL>(value);
}

UINT_PTR AsPart(HGLOBAL block)
{
    return reinterpret_cast<UINT_PTR>(block);
}

HGLOBAL Block(WORD flags, const std::string& text)
{
    const WORD head[] = {flags, 1};
    const HGLOBAL block = GlobalAlloc(GMEM_MOVEABLE | GMEM_DDESHARE, sizeof head + text.size() + 1);
    char* const bytes = static_cast<char*>(GlobalLock(block));
    std::memcpy(bytes, head, sizeof head);
    std::memcpy(bytes + sizeof head, text.c_str(), text.size() + 1);
    GlobalUnlock(block);
    return block;
}

std::string TextOf(HGLOBAL block, std::size_t head)
{
    const char* const bytes = static_cast<const char*>(GlobalLock(block));
    const std::string text = bytes ? bytes + head : "none";
    GlobalUnlock(block);
    return text;
}

bool IsBlock(HGLOBAL block)
{
    return GlobalSize(block) != 0;
}

// A partner in another process: takes values and commands and acknowledges them, gives values.
LRESULT CALLBACK Serve(HWND window, UINT message, WPARAM first, LPARAM second)
{
    const HWND client = reinterpret_cast<HWND>(first);
    const auto own = reinterpret_cast<WPARAM>(window);
    Pair pair;
    switch (message) {
    case REQUEST: {
        const std::string text(static_cast<std::size_t>(second) & 0xFFFF, 'v');
        const LPARAM packed = PackDDElParam(DATA, AsPart(Block(RELEASE, text)),
                                            static_cast<UINT_PTR>(second) >> 16 & 0xFFFF);
        PostMessageA(client, DATA, own, packed);
        return 0;
    }
    case POKE: {
        pair = Unpacked(POKE, second);
        FreeDDElParam(POKE, second);
        const bool is = TextOf(AsBlock(pair.low), 4) == "a poked value";
        PostMessageA(client, ACK, own, PackDDElParam(ACK, is ? 0x8000 : 0, pair.high));
        return 0;
    }
    case EXECUTE: {
        pair = Unpacked(EXECUTE, second);
        const bool is = TextOf(AsBlock(pair.high), 0) == "a command";
        PostMessageA(client, ACK, own, PackDDElParam(ACK, is ? 0x8000 : 0, pair.high));
        return 0;
    }
    case TERMINATE:
        PostMessageA(client, TERMINATE, own, 0);
        PostMessageA(window, WM_USER, 0, 0);
        return 0;
    default:
        return DefWindowProcA(window, message, first, second);
    }
}

class Exchange : public testing::Test
{
protected:
    Exchange()
    {
        EXPECT_EQ(child.ReadLine(), "ready");
        partner = FindWindowA(name.c_str(), nullptr);
        EXPECT_NE(partner, nullptr);
    }
    ~Exchange() override
    {
        PostMessageA(partner, TERMINATE, Own(), 0);
        EXPECT_EQ(PumpUntil(window, TERMINATE).wParam, reinterpret_cast<WPARAM>(partner));
        EXPECT_EQ(child.Wait(), 0);
        DestroyWindow(window);
    }
    WPARAM Own() const { return reinterpret_cast<WPARAM>(window); }

    const OwnClass kind{"OstraExchange", DefWindowProcA};
    const HWND window = MakeWindow("OstraExchange");
    const std::string name = "OstraServe" + std::to_string(GetTickCount());
    ChildProcess child{"ExchangePartner", {name}};
    HWND partner = nullptr;
};
} // namespace

CHILD_PROCESS(ExchangePartner)
{
    const OwnClass kind(arguments[0].c_str(), Serve);
    const HWND window = kind.Make();
    ChildLine("ready");
    PumpUntil(window, WM_USER);
    return DestroyWindow(window) ? 0 : 1;
}

TEST(PackedParameter, TwoPartsComeBackWhole)
{
    const UINT_PTR low = static_cast<UINT_PTR>(0x12345678), high = 0xC123;
    for (const UINT message : {ACK, DATA, POKE, 0x3E2U}) {
        const LPARAM packed = PackDDElParam(message, low, high);
        ASSERT_NE(packed, 0);
        const Pair pair = Unpacked(message, packed);
        EXPECT_TRUE(pair.found);
        EXPECT_EQ(pair.low, low);
        EXPECT_EQ(pair.high, high);
        EXPECT_TRUE(FreeDDElParam(message, packed));
    }
}

TEST(PackedParameter, OtherMessagesAreWordsAndCommandsTheHandle)
{
    EXPECT_EQ(static_cast<DWORD>(PackDDElParam(REQUEST, 1, 0xC123)), 0xC1230001U);
    const Pair words = Unpacked(REQUEST, static_cast<LPARAM>(0x12345678));
    EXPECT_EQ(words.low, 0x5678U);
    EXPECT_EQ(words.high, 0x1234U);
    EXPECT_EQ(PackDDElParam(EXECUTE, 7, 0x12340), 0x12340);
    const Pair command = Unpacked(EXECUTE, 0x12340);
    EXPECT_EQ(command.low, 0U);
    EXPECT_EQ(command.high, 0x12340U);
    EXPECT_TRUE(FreeDDElParam(EXECUTE, 0x12340));
    EXPECT_TRUE(FreeDDElParam(REQUEST, 0x12345678));
}

TEST_F(Exchange, AValueComesAsABlockOfTheReceivers)
{
    for (const WORD size : {WORD(0), WORD(1), WORD(9), WORD(65535)}) {
        ASSERT_TRUE(PostMessageA(partner, REQUEST, Own(), PackDDElParam(REQUEST, size, 0xBFF0)));
        const MSG message = PumpUntil(window, DATA);
        EXPECT_EQ(message.wParam, reinterpret_cast<WPARAM>(partner));
        const Pair pair = Unpacked(DATA, message.lParam);
        FreeDDElParam(DATA, message.lParam);
        EXPECT_EQ(pair.high, 0xBFF0U);
        EXPECT_EQ(TextOf(AsBlock(pair.low), 4), std::string(size, 'v'));
        EXPECT_EQ(GlobalFree(AsBlock(pair.low)), nullptr);
    }
}

TEST_F(Exchange, ABlockThatIsNotGivenAwayStays)
{
    const HGLOBAL block = Block(0, "a poked value");
    ASSERT_TRUE(PostMessageA(partner, POKE, Own(), PackDDElParam(POKE, AsPart(block), 0xBFF1)));
    const MSG message = PumpUntil(window, ACK);
    const Pair pair = Unpacked(ACK, message.lParam);
    FreeDDElParam(ACK, message.lParam);
    EXPECT_EQ(pair.low, 0x8000U);
    EXPECT_EQ(pair.high, 0xBFF1U);
    EXPECT_TRUE(IsBlock(block));
    EXPECT_EQ(GlobalFree(block), nullptr);
}

TEST_F(Exchange, TheAcknowledgementOfACommandHandsTheBlockBack)
{
    const HGLOBAL block = GlobalAlloc(GMEM_MOVEABLE | GMEM_DDESHARE, 10);
    std::memcpy(GlobalLock(block), "a command", 10);
    GlobalUnlock(block);
    ASSERT_TRUE(PostMessageA(partner, EXECUTE, Own(), PackDDElParam(EXECUTE, 0, AsPart(block))));
    const MSG message = PumpUntil(window, ACK);
    const Pair pair = Unpacked(ACK, message.lParam);
    FreeDDElParam(ACK, message.lParam);
    EXPECT_EQ(pair.low, 0x8000U);
    EXPECT_EQ(AsBlock(pair.high), block);
    EXPECT_EQ(GlobalFree(block), nullptr);
}
