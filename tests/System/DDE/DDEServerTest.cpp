// tests/System/DDE/DDEServerTest.cpp: the side that answers.
#include "DDESupport.h"

#include "Support/Failure.h"

#include <memory>

using namespace dde;

namespace
{
constexpr unsigned short ITEM = 0xBFF0;
constexpr unsigned short FORMAT = 49;

HINSTANCE Instance(unsigned value)
{
    return reinterpret_cast<HINSTANCE>(static_cast<UINT_PTR>(value));
}

// Writes down what is asked, and answers as it is told.
class Server : public CT_DDEServer
{
public:
    virtual ~Server() = default; // the base has none that is virtual
    Server() : CT_DDEServer(Module(), "OstraService") {}

    int vb_Initiate(HWND, unsigned short topic) override
    {
        log.push_back("initiate " + NameOf(topic));
        return serves;
    }
    int vb_Request(HWND client, unsigned short item, unsigned short format) override
    {
        log.push_back("request " + std::to_string(item) + " " + std::to_string(format));
        if (value)
            v_SendData(client, item, value);
        return answer;
    }
    int vb_Poke(HWND, unsigned short item, void* data, unsigned* out) override
    {
        EXPECT_EQ(*out, 0U);
        unsigned short format;
        std::memcpy(&format, static_cast<char*>(data) - 2, 2);
        log.push_back("poke " + std::to_string(item) + " " + static_cast<char*>(data) + " " +
                      std::to_string(format));
        *out = ordinal;
        return answer;
    }
    void vv_AfterPoke(unsigned number) override
    {
        log.push_back("after " + std::to_string(number));
    }
    void vv_Terminate(HWND client) override
    {
        log.push_back("terminate");
        ended.push_back(client);
    }

    int serves = 1;
    int answer = 0;
    unsigned ordinal = 0;
    const char* value = nullptr;
    std::vector<std::string> log;
    std::vector<HWND> ended;
};

using Log = std::vector<std::string>;
using Entries = std::vector<Entry>;

class DDEServer : public testing::Test
{
protected:
    ~DDEServer() override { EXPECT_EQ(TakeFailure(), Failure()); }

    void Begin(Client& from)
    {
        from.Initiate(Window(), "OstraService", "Words");
        EXPECT_EQ(from.Take().size(), 1U);
        server->log.clear();
    }
    HWND Window() const { return server->h_GetWindow(); }
    LRESULT Post(UINT message, Client& from, LPARAM second)
    {
        PostMessageA(Window(), message, AsFirst(from), second);
        Pump();
        return 0;
    }

    std::unique_ptr<Server> server = std::make_unique<Server>();
    Client client;
};
} // namespace

TEST_F(DDEServer, AnswersTheNameOfItsServiceByAnAcknowledgementWithinTheSend)
{
    ASSERT_NE(Window(), nullptr);
    const ATOM service = GlobalAddAtomA("OstraService"), topic = GlobalAddAtomA("Words");
    client.Initiate(Window(), "oSTRAsERVICE", "Words");
    EXPECT_EQ(server->log, Log{"initiate Words"});
    EXPECT_EQ(client.Take(), (Entries{{ACK, Window(), service, topic}}));
    GlobalDeleteAtom(service);
    GlobalDeleteAtom(topic);
}

TEST_F(DDEServer, PassesOverWhatItDoesNotServe)
{
    client.Initiate(Window(), "AnotherService", "Words");
    EXPECT_EQ(server->log, Log());
    // One that asks for any service.
    SendMessageA(Window(), INITIATE, AsFirst(client), 0);
    EXPECT_EQ(server->log, Log());
    const ATOM service = GlobalAddAtomA("OstraService");
    SendMessageA(Window(), INITIATE, AsFirst(client), 0);
    EXPECT_EQ(server->log, Log());
    server->serves = 0;
    client.Initiate(Window(), "OstraService", "Words");
    EXPECT_EQ(server->log, Log{"initiate Words"});
    GlobalDeleteAtom(service);
    // Nobody is listed.
    Post(REQUEST, client, Words(1, ITEM));
    EXPECT_EQ(client.Take(), Entries());
}

TEST_F(DDEServer, TheBaseRefusesEverything)
{
    CT_DDEServer base(Module(), "OstraBase");
    client.Initiate(base.h_GetWindow(), "OstraBase", "Words");
    EXPECT_EQ(client.Take(), Entries());
    unsigned ordinal = 5;
    EXPECT_EQ(base.vb_Initiate(client, 1), 0);
    EXPECT_EQ(base.vb_Request(client, 1, 1), 0);
    EXPECT_EQ(base.vb_Poke(client, 1, nullptr, &ordinal), 0);
    EXPECT_EQ(ordinal, 5U);
    base.vv_AfterPoke(1);
    base.vv_Terminate(client);
    base.v_Terminate(client);
    EXPECT_EQ(client.Take(), Entries());
}

TEST_F(DDEServer, ARequestThatIsRefusedGetsANegativeAcknowledgement)
{
    Begin(client);
    Post(REQUEST, client, Words(FORMAT, ITEM));
    EXPECT_EQ(server->log, Log{"request 49136 49"});
    EXPECT_EQ(client.Take(), (Entries{{ACK, Window(), 0, ITEM}}));
    server->answer = 1;
    Post(REQUEST, client, Words(FORMAT, ITEM));
    EXPECT_EQ(client.Take(), Entries());
}

TEST_F(DDEServer, DataAreTextInABlockThatTheClientFrees)
{
    Begin(client);
    server->answer = 1;
    server->value = "a value";
    Post(REQUEST, client, Words(1, ITEM));
    const Entries entries = client.Take();
    ASSERT_EQ(entries.size(), 1U);
    EXPECT_EQ(entries[0].message, DATA);
    EXPECT_EQ(entries[0].from, Window());
    EXPECT_EQ(entries[0].high, ITEM);
    EXPECT_EQ(BytesOf(entries[0].low), std::string("\x00\x30\x01\x00"
                                                   "a value\0\0",
                                                   13));
    EXPECT_EQ(GlobalFree(AsBlock(entries[0].low)), nullptr);
    // To a client that is gone nothing is sent, and nothing is reported.
    const HWND gone = Client();
    const ATOM item = GlobalAddAtomA("OstraLostItem");
    server->v_SendData(gone, item, "lost");
    EXPECT_EQ(GlobalFindAtomA("OstraLostItem"), 0);
}

TEST_F(DDEServer, AStrangersRequestsAndPokesAreDropped)
{
    const UINT_PTR block = Block(RELEASE, "value");
    Post(REQUEST, client, Words(1, ITEM));
    Post(POKE, client, PackDDElParam(POKE, block, ITEM));
    Post(TERMINATE, client, 0);
    server->v_Terminate(client);
    EXPECT_EQ(server->log, Log());
    EXPECT_EQ(client.Take(), Entries());
    EXPECT_TRUE(IsThere(AsBlock(block)));
    EXPECT_EQ(GlobalFree(AsBlock(block)), nullptr);
}

TEST_F(DDEServer, ABlockWithoutAHeadIsRefusedAndStays)
{
    if (COPIES)
        GTEST_SKIP() << "the platform passes no such block on";
    Begin(client);
    const HGLOBAL small = GlobalAlloc(GMEM_MOVEABLE, 2);
    Post(POKE, client, PackDDElParam(POKE, reinterpret_cast<UINT_PTR>(small), ITEM));
    EXPECT_EQ(client.Take(), (Entries{{ACK, Window(), 0, ITEM}}));
    EXPECT_EQ(server->log, Log());
    EXPECT_TRUE(IsThere(small));
    EXPECT_EQ(GlobalFree(small), nullptr);
}

TEST_F(DDEServer, AValueIsTakenForTextAndAcknowledged)
{
    Begin(client);
    const UINT_PTR kept = Block(0, "kept", FORMAT), given = Block(RELEASE, "given", FORMAT);
    Post(POKE, client, PackDDElParam(POKE, kept, ITEM));
    EXPECT_EQ(client.Take(), (Entries{{ACK, Window(), 0, ITEM}}));
    server->answer = 3;
    Post(POKE, client, PackDDElParam(POKE, given, ITEM));
    EXPECT_EQ(client.Take(), (Entries{{ACK, Window(), 0x8000, ITEM}}));
    server->answer = 2;
    Post(POKE, client, PackDDElParam(POKE, kept, ITEM));
    EXPECT_EQ(client.Take(), (Entries{{ACK, Window(), 0, ITEM}}));
    EXPECT_EQ(server->log, (Log{"poke 49136 kept 1", "poke 49136 given 1", "poke 49136 kept 1"}));
    if (!COPIES) {
        EXPECT_FALSE(IsThere(AsBlock(given)));
        EXPECT_EQ(BytesOf(kept), std::string("\0\0\1\0kept\0", 9));
    }
    EXPECT_EQ(BytesOf(kept).substr(4), std::string("kept\0", 5));
    EXPECT_EQ(GlobalFree(AsBlock(kept)), nullptr);
}

TEST_F(DDEServer, LongWorkFollowsTheAcknowledgement)
{
    Begin(client);
    server->ordinal = 7;
    server->answer = 1;
    Post(POKE, client, PackDDElParam(POKE, Block(RELEASE, "v"), ITEM));
    EXPECT_EQ(server->log, (Log{"poke 49136 v 1", "after 7"}));
    EXPECT_EQ(client.Take(), (Entries{{ACK, Window(), 0x8000, ITEM}}));
}

TEST_F(DDEServer, AValueWithoutATerminatorGetsOne)
{
    Begin(client);
    server->answer = 1;
    const UINT_PTR kept = Block(0, "endless", FORMAT);
    std::memset(static_cast<char*>(GlobalLock(AsBlock(kept))) + 4, 'e', 8);
    GlobalUnlock(AsBlock(kept));
    Post(POKE, client, PackDDElParam(POKE, kept, ITEM));
    EXPECT_EQ(server->log, (Log{"poke 49136 eeeeeeee 1"}));
    EXPECT_EQ(client.Take(), (Entries{{ACK, Window(), 0x8000, ITEM}}));
    EXPECT_EQ(BytesOf(kept).substr(4), "eeeeeeee");
    EXPECT_EQ(GlobalFree(AsBlock(kept)), nullptr);
}

TEST_F(DDEServer, AnEmptyValueIsAnEmptyText)
{
    Begin(client);
    server->answer = 1;
    const HGLOBAL head = GlobalAlloc(GMEM_MOVEABLE | GMEM_ZEROINIT, 4);
    Post(POKE, client, PackDDElParam(POKE, reinterpret_cast<UINT_PTR>(head), ITEM));
    EXPECT_EQ(server->log, (Log{"poke 49136  1"}));
    EXPECT_EQ(client.Take(), (Entries{{ACK, Window(), 0x8000, ITEM}}));
    GlobalFree(head);
}

TEST_F(DDEServer, ABrokenBlockIsRefused)
{
    Begin(client);
    const HGLOBAL small = GlobalAlloc(GMEM_MOVEABLE, 2);
    Post(POKE, client, PackDDElParam(POKE, reinterpret_cast<UINT_PTR>(small), ITEM));
    Post(POKE, client, PackDDElParam(POKE, 0, ITEM));
    const Entries refused(COPIES ? 0 : 2, Entry{ACK, Window(), 0, ITEM});
    EXPECT_EQ(client.Take(), refused);
    EXPECT_EQ(server->log, Log());
    GlobalFree(small);
}

TEST_F(DDEServer, TheLowestBitsMakeTheStatus)
{
    Begin(client);
    server->v_Acknowledge(client, ITEM, 3, 2);
    server->v_Acknowledge(client, ITEM, 2, 3);
    server->v_Acknowledge(client, ITEM, 1, 1);
    EXPECT_EQ(client.Take(), (Entries{{ACK, Window(), 0x4000, ITEM},
                                      {ACK, Window(), 0x8000, ITEM},
                                      {ACK, Window(), 0xC000, ITEM}}));
    const HWND gone = Client();
    const ATOM item = GlobalAddAtomA("OstraLostItem");
    server->v_Acknowledge(gone, item, 0, 1);
    EXPECT_EQ(GlobalFindAtomA("OstraLostItem"), 0);
}

TEST_F(DDEServer, EitherSideEndsAConversationInTheSameWay)
{
    Begin(client);
    Post(TERMINATE, client, 0);
    EXPECT_EQ(server->log, Log{"terminate"});
    EXPECT_EQ(client.Take(), (Entries{{TERMINATE, Window(), 0, 0}}));
    Post(REQUEST, client, Words(1, ITEM));
    EXPECT_EQ(server->log, Log{"terminate"});
    Begin(client);
    server->v_AcknowledgeTerminate(client, ITEM, 0, 1);
    EXPECT_EQ(client.Take(), (Entries{{ACK, Window(), 0x8000, ITEM}, {TERMINATE, Window(), 0, 0}}));
    EXPECT_EQ(server->log, Log{"terminate"});
    server->v_AcknowledgeTerminate(client, ITEM, 0, 1);
    EXPECT_EQ(client.Take(), (Entries{{ACK, Window(), 0x8000, ITEM}}));
}

TEST_F(DDEServer, AnEndWithinTheEndIsOneMoreFarewell)
{
    struct Twice : Server
    {
        void vv_Terminate(HWND client) override
        {
            Server::vv_Terminate(client);
            if (ended.size() == 1)
                v_Terminate(client);
        }
    };
    auto twice = std::make_unique<Twice>();
    Twice& ending = *twice;
    server = std::move(twice);
    Client other;
    Begin(client);
    Begin(other);
    ending.v_Terminate(client);
    EXPECT_EQ(ending.ended, (std::vector<HWND>{client, client}));
    const Entry farewell{TERMINATE, Window(), 0, 0};
    EXPECT_EQ(client.Take(), (Entries{farewell, farewell}));
    // The other conversation goes on.
    EXPECT_EQ(other.Take(), Entries());
    ending.v_Terminate(other);
    EXPECT_EQ(other.Take(), Entries{farewell});
}

TEST_F(DDEServer, ItsEndEndsAllConversationsInTheirOrder)
{
    struct Ended : Server
    {
        // The hooks of a derived class are gone in the base's destructor.
        ~Ended()
        {
            for (const HWND listed : clients)
                v_Terminate(listed);
            EXPECT_EQ(ended, clients);
        }
        std::vector<HWND> clients;
    };
    std::vector<HWND> order;
    const auto behaviour = [&](HWND window, UINT message, WPARAM first, LPARAM second) -> LRESULT {
        if (message == TERMINATE)
            order.push_back(window);
        return message == ACK ? 0 : DefWindowProcA(window, message, first, second);
    };
    const dde::Window first(behaviour), second(behaviour), third(behaviour);
    const std::vector<HWND> all = {second, first, third};
    for (const bool derived : {true, false}) {
        auto ending = std::make_unique<Ended>();
        const ATOM service = GlobalAddAtomA("OstraService");
        for (const HWND window : all)
            SendMessageA(ending->h_GetWindow(), INITIATE, AsFirst(window), Words(service, 0));
        GlobalDeleteAtom(service);
        if (derived)
            ending->clients = all;
        const HWND window = ending->h_GetWindow();
        ending.reset();
        EXPECT_FALSE(IsWindow(window));
        Pump();
        EXPECT_EQ(std::exchange(order, {}), all);
    }
}

TEST_F(DDEServer, ItsEndEndsAllConversationsWhileAnErrorIsSet)
{
    Client second, third;
    for (Client* one : {&client, &second, &third})
        Begin(*one);
    Errors().v_SetError(4711, Units(u"earlier"));
    server.reset();
    for (Client* one : {&client, &second, &third})
        EXPECT_EQ(one->Take().size(), 1U);
    EXPECT_EQ(TakeFailure().code, 4711U);
}

TEST_F(DDEServer, OneThatEndsOnAnotherThreadLeavesAWindowThatAnswersNobody)
{
    Begin(client);
    const HWND window = Window();
    std::thread([&] { server.reset(); }).join();
    EXPECT_TRUE(IsWindow(window));
    client.Take();
    client.Initiate(window, "OstraService", "Words");
    PostMessageA(window, REQUEST, AsFirst(client), Words(1, ITEM));
    Pump();
    EXPECT_EQ(client.Take(), Entries());
    EXPECT_TRUE(DestroyWindow(window));
}

TEST_F(DDEServer, WithoutANameItHasNoWindowAndCopiesShareIt)
{
    CT_DDEServer none;
    EXPECT_EQ(none.h_GetWindow(), nullptr);
    alignas(CT_DDEServer) unsigned char place[sizeof(CT_DDEServer)];
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wdeprecated-declarations"
    // Never destroyed: the window is the other's.
    const CT_DDEServer* const copy = ::new (static_cast<void*>(place)) CT_DDEServer(*server);
    EXPECT_EQ(copy->h_GetWindow(), Window());
    none = *copy;
    EXPECT_EQ(none.h_GetWindow(), Window());
    const CT_DDEServer& itself = none;
    none = itself;
    EXPECT_EQ(none.h_GetWindow(), Window());
    none = CT_DDEServer();
#pragma GCC diagnostic pop
    EXPECT_EQ(none.h_GetWindow(), nullptr);
}

static LRESULT CALLBACK RefuseCreation(HWND window, UINT message, WPARAM first, LPARAM second)
{
    return message == WM_CREATE ? -1 : DefWindowProcA(window, message, first, second);
}

TEST_F(DDEServer, OneThatGetsNoWindowLeavesTheOthersDeafUntilTheNext)
{
    Begin(client);
    WNDCLASSA facts = {};
    facts.lpfnWndProc = RefuseCreation;
    facts.hInstance = Instance(0x55550000);
    facts.lpszClassName = CT_DDEServer::sqcz_ClassName;
    ASSERT_NE(RegisterClassA(&facts), 0);
    CT_DDEServer failed(Instance(0x55550000), "OstraFailed");
    EXPECT_EQ(failed.h_GetWindow(), nullptr);
    EXPECT_EQ(TakeFailure().trail, std::vector<std::string>{"System/DDE/DDEServer"});
    Post(REQUEST, client, Words(1, ITEM));
    EXPECT_EQ(server->log, Log());
    const CT_DDEServer next(Module(), "OstraNext");
    Post(REQUEST, client, Words(1, ITEM));
    EXPECT_EQ(server->log.size(), 1U);
    client.Take();
    UnregisterClassA(CT_DDEServer::sqcz_ClassName, Instance(0x55550000));
}

TEST_F(DDEServer, WithAnErrorSetItMakesNoWindow)
{
    Errors().v_SetError(4711, Units(u"earlier"));
    CT_DDEServer late(Module(), "OstraLateService");
    EXPECT_EQ(late.h_GetWindow(), nullptr);
    const Failure failure = TakeFailure();
    EXPECT_EQ(failure.code, 4711U);
    EXPECT_EQ(failure.trail, std::vector<std::string>{"System/DDE/DDEServer"});
}
