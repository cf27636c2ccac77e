// tests/Faults/DDESweep.cpp: conversations while the heap is exhausted.
#include <Ostra/Buffer/Buffer.h>
#include <System/DDE/DDEClient.h>

#include "../System/DDE/DDESupport.h"
#include "Faults/FailEach.h"

#include <memory>

using namespace dde;

namespace
{
// The system's own report of an exhausted heap.
constexpr unsigned NO_ROOM = ERROR_NOT_ENOUGH_MEMORY;
constexpr unsigned short ITEM = 0xBFF0;

#ifdef _WIN32
constexpr bool HOST_HEAP = false; // The platform's blocks come from a heap of its own.
#else
constexpr bool HOST_HEAP = true;
#endif

template <class T_Object>
struct Pointer
{
    ~Pointer() { delete object; }
    T_Object* object = nullptr;
};

// The base's destructor isn't virtual.
class PlainServer final : public CT_DDEServer
{
public:
    PlainServer() : CT_DDEServer(Module(), "OstraSwept") {}
};

class Answers : public CT_DDEServer
{
public:
    Answers() : CT_DDEServer(Module(), "OstraSweptAnswers") {}
    virtual ~Answers() = default;
    int vb_Initiate(HWND, unsigned short) override { return 1; }
    int vb_Poke(HWND, unsigned short, void* data, unsigned*) override
    {
        std::snprintf(poked, sizeof(poked), "%s", static_cast<const char*>(data));
        return 1;
    }

    char poked[1100] = ""; // a string would ask the failing heap
};

struct State
{
    void Initiate(Client& from)
    {
        from.Initiate(server.h_GetWindow(), "OstraSweptAnswers", "Words");
    }

    Answers server;
    Client clients[2];
};
} // namespace

TEST(DDESweep, NewClient)
{
    Sweep(
        "System/DDE/DDEClient", [] { return std::make_unique<Pointer<CT_DDEClient>>(); },
        [](Pointer<CT_DDEClient>& state) { state.object = new CT_DDEClient(Module()); },
        [](Pointer<CT_DDEClient>& state, bool failed) {
            EXPECT_EQ(state.object == nullptr, failed);
        });
}

TEST(DDESweep, NewServer)
{
    Sweep(
        "System/DDE/DDEServer", [] { return std::make_unique<Pointer<PlainServer>>(); },
        [](Pointer<PlainServer>& state) { state.object = new PlainServer; },
        [](Pointer<PlainServer>& state, bool failed) {
            EXPECT_EQ(state.object == nullptr, failed);
        });
}

// The answer has gone out by then. What is reported may be the room for more clients; where there is
// none for this one, what it asks is dropped.
TEST(DDESweep, AClientThatFindsNoRoomIsReported)
{
    Sweep(
        {"Ostra/ARRAY/VoidArray", "Ostra/Buffer/Buffer"},
        [] {
            auto state = std::make_unique<State>();
            GlobalAddAtomA("OstraSweptAnswers");
            return state;
        },
        [](State& state) {
            const ATOM atom = GlobalFindAtomA("OstraSweptAnswers");
            CT_DDEServer::sl_DDEServerWindowProc(state.server.h_GetWindow(), INITIATE,
                                                 AsFirst(state.clients[0]), Words(atom, 0));
        },
        [](State& state, bool failed) {
            GlobalDeleteAtom(GlobalFindAtomA("OstraSweptAnswers"));
            for (Client& client : state.clients)
                client.Take();
            PostMessageA(state.server.h_GetWindow(), REQUEST, AsFirst(state.clients[0]),
                         Words(1, ITEM));
            Pump();
            const std::size_t answers = state.clients[0].Take().size();
            EXPECT_TRUE(answers == 1 || (failed && answers == 0));
            state.Initiate(state.clients[1]);
            EXPECT_EQ(state.clients[1].Take().size(), 1U);
            state.server.v_Terminate(state.clients[1]);
            EXPECT_EQ(state.clients[1].Take().size(), 1U);
        });
    GlobalDeleteAtom(GlobalFindAtomA("OstraSweptAnswers"));
}

// The block, its words, and the list of what waits: what can't be had leaves nothing behind.
TEST(DDESweep, AValueIsSentOrReportedOrLost)
{
    State state;
    state.Initiate(state.clients[0]);
    state.clients[0].Take();
    state.server.v_SendData(state.clients[0], ITEM, "warm");
    for (const Entry& entry : state.clients[0].Take())
        GlobalFree(AsBlock(entry.low));
    unsigned reported = 0;
    const unsigned failures = FailEach([&] {
        state.server.v_SendData(state.clients[0], ITEM, "a value");
        const unsigned failing = FailingHeap::Disarm();
        const Failure failure = TakeFailure();
        if (failure != Failure()) {
            EXPECT_EQ(failure.code, NO_ROOM);
            EXPECT_EQ(failure.trail, std::vector<std::string>{"System/DDE/DDEServer"});
            ++reported;
        }
        const std::vector<Entry> entries = state.clients[0].Take();
        EXPECT_EQ(entries.size(), failing ? 0U : 1U);
        for (const Entry& entry : entries)
            GlobalFree(AsBlock(entry.low));
        return failing;
    });
    EXPECT_EQ(failures > 0, HOST_HEAP);
    EXPECT_EQ(reported > 0, HOST_HEAP);
}

TEST(DDESweep, AnAcknowledgementIsSentOrLost)
{
    State state;
    state.Initiate(state.clients[0]);
    state.clients[0].Take();
    FailEach([&] {
        state.server.v_Acknowledge(state.clients[0], ITEM, 0, 1);
        const unsigned failing = FailingHeap::Disarm();
        EXPECT_EQ(TakeFailure(), Failure());
        EXPECT_EQ(state.clients[0].Take().size(), failing ? 0U : 1U);
        return failing;
    });
}

// Without room for the terminator nothing is handed on, and the client is refused; the refusal may
// be lost in its turn.
TEST(DDESweep, AValueWithoutATerminatorIsTakenOrRefused)
{
    State state;
    state.Initiate(state.clients[0]);
    state.clients[0].Take();
    const std::string value(1000, 'v');
    bool reported = false;
    // The first time nothing fails.
    for (unsigned number = 0, failing = 1; failing; ++number) {
        SCOPED_TRACE(number);
        state.server.poked[0] = 0;
        const UINT_PTR block = Block(0, value);
        static_cast<char*>(GlobalLock(AsBlock(block)))[4 + value.size()] = 'v';
        GlobalUnlock(AsBlock(block));
        const LPARAM parameter = PackDDElParam(POKE, block, ITEM);
        const HWND window = state.server.h_GetWindow();
        FailingHeap::Arm(number, FailingHeap::ONCE);
        CT_DDEServer::sl_DDEServerWindowProc(window, POKE, AsFirst(state.clients[0]), parameter);
        failing = FailingHeap::Disarm() || number == 0;
        const Failure failure = TakeFailure();
        const bool refused = failure != Failure();
        if (refused) {
            EXPECT_EQ(failure.code, 60006U);
            EXPECT_EQ(failure.trail, std::vector<std::string>{"Ostra/Buffer/Buffer"});
        }
        EXPECT_EQ(state.server.poked, refused ? std::string() : value + 'v');
        for (const Entry& entry : state.clients[0].Take())
            EXPECT_EQ(entry, (Entry{ACK, window, refused ? 0U : 0x8000U, ITEM}));
        reported = reported || refused;
        GlobalFree(AsBlock(block));
    }
    EXPECT_TRUE(reported);
}

// The client's window gets the answers before it asks: no other thread takes part.
TEST(DDESweep, AnItemIsTakenOrReported)
{
    struct Asking
    {
        CT_DDEClient client{Module()};
        const HWND window = FindWindowA(CT_DDEClient::sqcz_ClassName, nullptr);
        Client server;
        CT_Buffer out{0, 32};
        int result = 7;
    };
    const std::string item(1000, 'i');
    Sweep(
        {"Ostra/Buffer/Buffer", "System/DDE/DDEClient"},
        [&] {
            auto state = std::make_unique<Asking>();
            PostMessageA(state->window, DATA, AsFirst(state->server),
                         PackDDElParam(DATA, Block(RELEASE, item), ITEM));
            return state;
        },
        [](Asking& state) {
            state.result = state.client.b_DDERequest(state.server, "#5", 60000, &state.out);
        },
        [&](Asking& state, bool failed) {
            EXPECT_EQ(state.out.n_GetUsedSize(), failed ? 0U : 1001U);
            state.server.Take();
            PostMessageA(state.window, DATA, AsFirst(state.server),
                         PackDDElParam(DATA, Block(RELEASE, item), ITEM));
            EXPECT_EQ(state.client.b_DDERequest(state.server, "#5", 60000, &state.out), 1);
            EXPECT_EQ(state.out.n_GetUsedSize(), 1001U);
        });
}

TEST(DDESweep, ACommandIsSentOrReported)
{
    CT_DDEClient client(Module());
    const HWND window = FindWindowA(CT_DDEClient::sqcz_ClassName, nullptr);
    Client server;
    unsigned failures = 0;
    // The first time nothing fails.
    for (unsigned number = 0, failing = 1; failing; ++number) {
        SCOPED_TRACE(number);
        PostMessageA(window, ACK, AsFirst(server), PackDDElParam(ACK, 0x8000, 0));
        FailingHeap::Arm(number, FailingHeap::ONCE);
        const int result = client.b_DDEExecute(server, "[do]", 60000);
        failing = FailingHeap::Disarm();
        const Failure failure = TakeFailure();
        EXPECT_EQ(result, failing ? 0 : 1);
        EXPECT_EQ(failure.code, failing ? NO_ROOM : Failure().code);
        const std::vector<Entry> entries = server.Take();
        EXPECT_EQ(entries.size(), failing ? 0U : 1U);
        for (const Entry& entry : entries)
            EXPECT_EQ(GlobalFree(AsBlock(entry.high)), nullptr);
        // The answer that nobody has waited for.
        MSG message;
        while (PeekMessageA(&message, window, 0, 0, PM_REMOVE))
            FreeDDElParam(ACK, message.lParam);
        failures += failing;
        failing += number == 0;
    }
    EXPECT_EQ(failures > 0, HOST_HEAP);
    SweepRun::Count(1, failures);
}
