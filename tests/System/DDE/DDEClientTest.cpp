// tests/System/DDE/DDEClientTest.cpp: the side that asks.
#include <System/DDE/DDEClient.h>

#include <Ostra/Buffer/Buffer.h>

#include "DDESupport.h"

#include "Support/ChildProcess.h"
#include "Support/Failure.h"

#include <climits>
#include <mutex>

using namespace dde;

namespace
{
constexpr unsigned LONG_TIME = 60000; // Milliseconds: nobody waits that long.

// The items of a server: what it does for each.
class WordServer : public CT_DDEServer
{
public:
    explicit WordServer(const char* service) : CT_DDEServer(Module(), service) {}
    HWND Handle() const { return h_GetWindow(); }

    int vb_Initiate(HWND, unsigned short topic) override { return NameOf(topic) == "Words"; }
    int vb_Request(HWND client, unsigned short item, unsigned short format) override
    {
        EXPECT_EQ(format, 1);
        const std::string name = NameOf(item);
        if (name == "number")
            v_SendData(client, item, "42");
        else if (name == "letters")
            v_SendData(client, item, "letters");
        else if (name == "large" || name == "small")
            v_SendData(client, item, name == "large" ? "99999999999999999999" : "-2147483649");
        else if (name == "empty")
            v_SendData(client, item, "");
        else if (name == "64K")
            v_SendData(client, item, std::string(0x10000, 'k').c_str());
        else if (name == "3M")
            v_SendData(client, item, std::string(3000000, 'm').c_str());
        else if (name == "positive")
            v_Acknowledge(client, item, 0, 1);
        else if (name == "another") {
            v_Acknowledge(client, 77, 0, 0);
            v_SendData(client, item, "behind it");
        }
        return name != "refused";
    }
};

using Server = Served<WordServer>;

// A partner in another thread without the class: a function for its messages.
struct RawPartner
{
    explicit RawPartner(Window::Behaviour behaviour)
        : window(std::make_unique<Window>(std::move(behaviour)))
    {}
    HWND Handle() const { return *window; }
    std::unique_ptr<Window> window;
};

std::string Text(const CT_Buffer& buffer)
{
    return std::string(static_cast<const char*>(buffer.qcv_Get()), buffer.n_GetUsedSize());
}

// With its terminator.
std::string Ended(const std::string& text)
{
    return text + '\0';
}

unsigned TicksOf(const std::function<void()>& run)
{
    const DWORD start = GetTickCount();
    run();
    return GetTickCount() - start;
}

class DDEClient : public testing::Test
{
protected:
    ~DDEClient() override { EXPECT_EQ(TakeFailure(), Failure()); }

    // The number of messages that wait for the client's window.
    static unsigned Waiting()
    {
        unsigned count = 0;
        MSG message;
        while (PeekMessageA(&message, FindWindowA(CT_DDEClient::sqcz_ClassName, nullptr), 0, 0,
                            PM_REMOVE))
            ++count;
        return count;
    }

    Server server{[] {
        return WordServer("OstraWords");
    }};
    CT_DDEClient client{Module()};
    CT_Buffer out{0, 32};
};
} // namespace

TEST_F(DDEClient, FindsAServerByApplicationAndTopic)
{
    EXPECT_EQ(client.h_DDEInitiate("OstraWords", "Words"), server.Handle());
    EXPECT_EQ(client.h_DDEInitiate("OstraWords", "Sentences"), nullptr);
    EXPECT_EQ(client.h_DDEInitiate("OstraNobody", "Words"), nullptr);
    client.v_DDETerminate(server.Handle());
}

TEST_F(DDEClient, FetchesItemsWithTheirTerminators)
{
    const HWND found = client.h_DDEInitiate("OstraWords", "Words");
    ASSERT_EQ(found, server.Handle());
    const struct
    {
        const char* item;
        std::string text;
    } rows[] = {{"number", "42"},
                {"letters", "letters"},
                {"empty", ""},
                {"64K", std::string(0x10000, 'k')},
                {"3M", std::string(3000000, 'm')},
                {"another", "behind it"}};
    for (const auto& row : rows) {
        // The platform loses items of that size.
        if (COPIES && row.text.size() > 0x10000)
            continue;
        EXPECT_EQ(client.b_DDERequest(found, row.item, LONG_TIME, &out), 1) << row.item;
        EXPECT_TRUE(Text(out) == Ended(row.text)) << row.item;
        EXPECT_EQ(out.n_GetGrowth(), 32U);
        EXPECT_EQ(GlobalFindAtomA(row.item), 0) << row.item;
    }
    client.v_DDETerminate(found);
}

TEST_F(DDEClient, AnAcknowledgementOfTheItemIsARefusal)
{
    const HWND found = client.h_DDEInitiate("OstraWords", "Words");
    out.v_Set("before", 6, 32);
    EXPECT_EQ(client.b_DDERequest(found, "refused", LONG_TIME, &out), 0);
    EXPECT_EQ(client.b_DDERequest(found, "positive", LONG_TIME, &out), 0);
    EXPECT_EQ(Text(out), "before");
    EXPECT_EQ(TakeFailure(), Failure());
    client.v_DDETerminate(found);
}

TEST_F(DDEClient, ATimeThatIsOutLeavesNoTimer)
{
    const HWND found = client.h_DDEInitiate("OstraWords", "Words");
    EXPECT_GE(TicksOf([&] { EXPECT_EQ(client.b_DDERequest(found, "silent", 60, &out), 0); }), 45U);
    EXPECT_LT(TicksOf([&] { EXPECT_EQ(client.b_DDERequest(found, "silent", 0, &out), 0); }), 5000U);
    EXPECT_LT(TicksOf([&] { EXPECT_EQ(client.b_DDEExecute(found, "silent", 20), 0); }), 5000U);
    EXPECT_EQ(out.n_GetUsedSize(), 0U);
    std::this_thread::sleep_for(std::chrono::milliseconds(120));
    EXPECT_EQ(Waiting(), 0U);
    client.v_DDETerminate(found);
}

TEST_F(DDEClient, AWindowThatIsGoneIsASystemError)
{
    const HWND gone = Client();
    const std::vector<std::string> trail{"System/DDE/DDEClient"};
    EXPECT_EQ(client.b_DDERequest(gone, "OstraGoneItem", 50, &out), 0);
    Failure failure = TakeFailure();
    EXPECT_EQ(failure.code, 1400U);
    EXPECT_EQ(failure.trail, trail);
    EXPECT_EQ(GlobalFindAtomA("OstraGoneItem"), 0);
    EXPECT_EQ(client.b_DDEExecute(gone, "command", 50), 0);
    failure = TakeFailure();
    EXPECT_EQ(failure.code, 1400U);
    EXPECT_EQ(failure.trail, trail);
}

TEST_F(DDEClient, TakesDataOfAnyFormatAndAcknowledgesWhereThatIsAskedFor)
{
    std::atomic<UINT_PTR> block = 0, status = 0, answered = 0;
    const Served<RawPartner> partner([&] {
        return RawPartner([&](HWND window, UINT message, WPARAM first, LPARAM second) -> LRESULT {
            UINT_PTR low, high;
            if (message == REQUEST) {
                block = Block(ACK_REQUEST | RESPONSE, "kept", 13);
                PostMessageA(AsWindow(first), DATA, AsFirst(window),
                             PackDDElParam(DATA, block, 0xBF01));
            } else if (message == ACK) {
                UnpackDDElParam(ACK, second, &low, &high);
                FreeDDElParam(ACK, second);
                status = low;
                answered = high;
            } else
                return DefWindowProcA(window, message, first, second);
            return 0;
        });
    });
    EXPECT_EQ(client.b_DDERequest(partner.Handle(), "item", LONG_TIME, &out), 1);
    EXPECT_EQ(Text(out), Ended("kept"));
    SendMessageA(partner.Handle(), WM_USER, 0, 0);
    while (!answered)
        std::this_thread::yield();
    EXPECT_EQ(status, 0x8000U);
    EXPECT_EQ(answered, 0xBF01U);
    EXPECT_TRUE(IsThere(AsBlock(block)));
    EXPECT_EQ(GlobalFree(AsBlock(block)), nullptr);
}

TEST_F(DDEClient, BrokenDataAreAFailureWithoutAnError)
{
    const Served<RawPartner> partner([] {
        return RawPartner([](HWND window, UINT message, WPARAM first, LPARAM second) -> LRESULT {
            if (message != REQUEST)
                return DefWindowProcA(window, message, first, second);
            // Without a block, and one whose text has no end.
            const unsigned item = static_cast<unsigned>(second) >> 16;
            const UINT_PTR block = NameOf(static_cast<ATOM>(item)) == "none"
                                       ? 0
                                       : Block(RELEASE, std::string("endless"));
            if (block)
                std::memset(static_cast<char*>(GlobalLock(AsBlock(block))) + 4, 'e', 8);
            GlobalUnlock(AsBlock(block));
            PostMessageA(AsWindow(first), DATA, AsFirst(window),
                         PackDDElParam(DATA, block, 0xBF01));
            return 0;
        });
    });
    EXPECT_EQ(client.b_DDERequest(partner.Handle(), "none", LONG_TIME, &out), 0);
    EXPECT_EQ(client.b_DDERequest(partner.Handle(), "endless", LONG_TIME, &out), 1);
    EXPECT_EQ(Text(out), Ended("eeeeeeee"));
}

TEST_F(DDEClient, DataThatComeTooLateAnswerTheNextRequest)
{
    // The first item is answered when the second one is asked for.
    UINT_PTR late = 0;
    const Served<RawPartner> partner([&] {
        return RawPartner([&](HWND window, UINT message, WPARAM first, LPARAM second) -> LRESULT {
            if (message != REQUEST)
                return DefWindowProcA(window, message, first, second);
            if (late)
                PostMessageA(AsWindow(first), DATA, AsFirst(window),
                             PackDDElParam(DATA, late, 0xBF01));
            late = Block(RELEASE, "of the first");
            return 0;
        });
    });
    EXPECT_EQ(client.b_DDERequest(partner.Handle(), "first", 30, &out), 0);
    EXPECT_EQ(client.b_DDERequest(partner.Handle(), "second", LONG_TIME, &out), 1);
    EXPECT_EQ(Text(out), Ended("of the first"));
    SendMessageA(partner.Handle(), WM_USER, 0, 0);
    GlobalFree(AsBlock(late));
}

TEST_F(DDEClient, DataThatNobodyWaitsForAreFree)
{
    const Window partner(DefWindowProcA);
    const HWND own = FindWindowA(CT_DDEClient::sqcz_ClassName, nullptr);
    const UINT_PTR given = Block(RELEASE, "given"), kept = Block(0, "kept");
    LPARAM records[3];
    int count = 0;
    for (UINT_PTR block : {given, kept, UINT_PTR{0}}) {
        records[count] = PackDDElParam(DATA, block, 0xBF01);
        PostMessageA(own, DATA, AsFirst(partner), records[count++]);
    }
    PostMessageA(own, TERMINATE, AsFirst(partner), 0);
    client.v_DDETerminate(partner);
    EXPECT_EQ(Waiting(), 0U);
    if (!COPIES) {
        EXPECT_FALSE(IsThere(AsBlock(given)));
        for (LPARAM record : records)
            EXPECT_FALSE(UnpackDDElParam(DATA, record, nullptr, nullptr));
    }
    EXPECT_TRUE(IsThere(AsBlock(kept)));
    EXPECT_EQ(GlobalFree(AsBlock(kept)), nullptr);
}

TEST_F(DDEClient, ANameThatIsNoAtomIsAskedForAsNone)
{
    const std::string longer(256, 'n');
    EXPECT_EQ(client.h_DDEInitiate("", "Words"), nullptr);
    EXPECT_EQ(client.h_DDEInitiate(longer.c_str(), "Words"), nullptr);
    const HWND found = client.h_DDEInitiate("OstraWords", "Words");
    EXPECT_EQ(client.b_DDERequest(found, longer.c_str(), 60, &out), 0);
    EXPECT_EQ(client.b_DDERequest(found, "", 60, &out), 0);
    EXPECT_EQ(client.b_DDERequest(found, "number", LONG_TIME, &out), 1);
    client.v_DDETerminate(found);
}

TEST_F(DDEClient, ACommandsResultIsTheServersAcknowledgement)
{
    std::string commands;
    const Served<RawPartner> partner([&] {
        return RawPartner([&](HWND window, UINT message, WPARAM first, LPARAM second) -> LRESULT {
            if (message != EXECUTE)
                return DefWindowProcA(window, message, first, second);
            UINT_PTR low, high;
            UnpackDDElParam(EXECUTE, second, &low, &high);
            commands += BytesOf(high);
            const bool is = BytesOf(high) == Ended("[do]");
            PostMessageA(AsWindow(first), ACK, AsFirst(window),
                         PackDDElParam(ACK, is ? 0x8000 : 0x4001, high));
            return 0;
        });
    });
    EXPECT_EQ(client.b_DDEExecute(partner.Handle(), "[do]", LONG_TIME), 1);
    EXPECT_EQ(client.b_DDEExecute(partner.Handle(), "[refuse]", LONG_TIME), 0);
    EXPECT_EQ(client.b_DDEExecute(partner.Handle(), "", LONG_TIME), 0);
    SendMessageA(partner.Handle(), WM_USER, 0, 0);
    EXPECT_EQ(commands, Ended("[do]") + Ended("[refuse]") + Ended(""));
}

TEST_F(DDEClient, OfTwoServersTheFirstIsTaken)
{
    const Server second([] { return WordServer("OstraWords"); });
    const HWND found = client.h_DDEInitiate("OstraWords", "Words");
    // The newer one is asked first; the older one's atom may be gone by then.
    EXPECT_EQ(found, second.Handle());
    EXPECT_EQ(client.b_DDERequest(found, "number", LONG_TIME, &out), 1);
    client.v_DDETerminate(found);
}

TEST_F(DDEClient, TheAtomsOfASecondAnswerStay)
{
    const HWND window = FindWindowA(CT_DDEClient::sqcz_ClassName, nullptr);
    EXPECT_EQ(client.h_DDEInitiate("OstraNobody", "Words"), nullptr);
    const ATOM one = GlobalAddAtomA("OstraOne"), two = GlobalAddAtomA("OstraTwo");
    EXPECT_EQ(SendMessageA(window, ACK, AsFirst(server.Handle()), Words(one, one)), 0);
    EXPECT_EQ(GlobalFindAtomA("OstraOne"), 0);
    EXPECT_EQ(SendMessageA(window, ACK, AsFirst(window), Words(two, two)), 0);
    EXPECT_EQ(GlobalFindAtomA("OstraTwo"), two);
    EXPECT_EQ(GlobalDeleteAtom(two), 0);
}

TEST_F(DDEClient, AFarewellThatNobodyAnswersTakesThreeSeconds)
{
    const HWND found = client.h_DDEInitiate("OstraWords", "Words");
    EXPECT_LT(TicksOf([&] { client.v_DDETerminate(found); }), 2900U);
    const unsigned ticks = TicksOf([&] { client.v_DDETerminate(found); });
    EXPECT_GE(ticks, 2900U);
    EXPECT_LT(ticks, 20000U);
    EXPECT_EQ(Waiting(), 0U);
}

TEST_F(DDEClient, WithAnErrorSetItHasNoWindow)
{
    Errors().v_SetError(4711, Units(u"earlier"));
    {
        CT_DDEClient late(Module());
        EXPECT_EQ(late.h_DDEInitiate("OstraWords", "Words"), nullptr);
    }
    EXPECT_EQ(i_DDERequest("OstraWords", "Words", "number", LONG_TIME), 100000);
    EXPECT_EQ(TakeFailure().code, 4711U);
}

TEST_F(DDEClient, ThePlainFunctionReadsANumber)
{
    CT_DDEClient::sv_SetInstance(Module());
    EXPECT_EQ(i_DDERequest("OstraWords", "Words", "number", LONG_TIME), 42);
    EXPECT_EQ(i_DDERequest("OstraWords", "Words", "letters", LONG_TIME), 0);
    EXPECT_EQ(i_DDERequest("OstraWords", "Words", "empty", LONG_TIME), 0);
    EXPECT_EQ(i_DDERequest("OstraWords", "Words", "large", LONG_TIME), INT_MAX);
    EXPECT_EQ(i_DDERequest("OstraWords", "Words", "small", LONG_TIME), INT_MIN);
    EXPECT_EQ(i_DDERequest("OstraWords", "Words", "refused", LONG_TIME), 100001);
    EXPECT_EQ(i_DDERequest("OstraWords", "Words", "silent", 20), 100001);
    EXPECT_EQ(i_DDERequest("OstraWords", "Sentences", "number", LONG_TIME), 100000);
    EXPECT_EQ(i_DDERequest("OstraNobody", "Words", "number", LONG_TIME), 100000);
}

TEST_F(DDEClient, TheWindowsClassBelongsToTheInstance)
{
    const HINSTANCE instance = reinterpret_cast<HINSTANCE>(static_cast<UINT_PTR>(0x66660000));
    WNDCLASSA facts = {};
    CT_DDEClient::sv_SetInstance(instance);
    EXPECT_FALSE(GetClassInfoA(instance, CT_DDEClient::sqcz_ClassName, &facts));
    EXPECT_EQ(i_DDERequest("OstraWords", "Words", "number", LONG_TIME), 42);
    EXPECT_TRUE(GetClassInfoA(instance, CT_DDEClient::sqcz_ClassName, &facts));
    CT_DDEClient::sv_SetInstance(Module());
}

TEST_F(DDEClient, ATextIsSentToAWindowOfAClass)
{
    EXPECT_EQ(i4_VarnokRequest("OstraNoSuchClass", "text"), 1000);
    const Window receiver(
        [](HWND window, UINT message, WPARAM first, LPARAM second) -> LRESULT {
            if (message != WM_USER)
                return DefWindowProcA(window, message, first, second);
            return first == 0 && NameOf(static_cast<ATOM>(second)) == "OstraText" ? -7 : 1;
        },
        "OstraReceiver");
    EXPECT_EQ(i4_VarnokRequest("OstraReceiver", "OstraText"), -7);
    EXPECT_EQ(GlobalFindAtomA("OstraText"), 0);
}

// ---- Between processes --------------------------------------------------------------------

CHILD_PROCESS(DDEWords)
{
    const WordServer server(arguments[0].c_str());
    std::puts(server.Handle() ? "ready" : "no window");
    std::fflush(stdout);
    Serve();
    return 0;
}

namespace
{
std::string Unique(const char* name)
{
    return name + std::to_string(GetTickCount());
}
} // namespace

TEST_F(DDEClient, TalksToAnotherProcess)
{
    const std::string service = Unique("OstraFar");
    ChildProcess child("DDEWords", {service});
    ASSERT_EQ(child.ReadLine(), "ready");
    const HWND remote = client.h_DDEInitiate(service.c_str(), "Words");
    ASSERT_NE(remote, nullptr);
    EXPECT_EQ(client.b_DDERequest(remote, "number", LONG_TIME, &out), 1);
    EXPECT_EQ(Text(out), Ended("42"));
    EXPECT_EQ(client.b_DDERequest(remote, "64K", LONG_TIME, &out), 1);
    EXPECT_TRUE(Text(out) == Ended(std::string(0x10000, 'k')));
    EXPECT_EQ(client.b_DDERequest(remote, "refused", LONG_TIME, &out), 0);
    EXPECT_LT(TicksOf([&] { client.v_DDETerminate(remote); }), 2900U);
    EXPECT_EQ(i_DDERequest(service.c_str(), "Words", "number", LONG_TIME), 42);
    PostMessageA(remote, QUIT, 0, 0);
    EXPECT_EQ(child.Wait(), 0);
    EXPECT_EQ(client.h_DDEInitiate(service.c_str(), "Words"), nullptr);
}

#ifndef _WIN32
TEST_F(DDEClient, TakesLargeItemsFromAnotherProcess)
{
    const std::string service = Unique("OstraLarge");
    ChildProcess child("DDEWords", {service});
    ASSERT_EQ(child.ReadLine(), "ready");
    const HWND remote = client.h_DDEInitiate(service.c_str(), "Words");
    EXPECT_EQ(client.b_DDERequest(remote, "3M", LONG_TIME, &out), 1);
    EXPECT_TRUE(Text(out) == Ended(std::string(3000000, 'm')));
    client.v_DDETerminate(remote);
    PostMessageA(remote, QUIT, 0, 0);
    EXPECT_EQ(child.Wait(), 0);
}
#endif

TEST_F(DDEClient, AKilledServerIsASystemErrorOrNobody)
{
    const std::string service = Unique("OstraKilled");
    ChildProcess child("DDEWords", {service});
    ASSERT_EQ(child.ReadLine(), "ready");
    const HWND remote = client.h_DDEInitiate(service.c_str(), "Words");
    ASSERT_NE(remote, nullptr);
    EXPECT_EQ(client.b_DDERequest(remote, "number", LONG_TIME, &out), 1);
    child.Kill();
    EXPECT_EQ(client.b_DDERequest(remote, "number", 1000, &out), 0);
    EXPECT_EQ(TakeFailure().code, 1400U);
    EXPECT_EQ(client.h_DDEInitiate(service.c_str(), "Words"), nullptr);
    EXPECT_EQ(i_DDERequest(service.c_str(), "Words", "number", 100), 100000);
}
