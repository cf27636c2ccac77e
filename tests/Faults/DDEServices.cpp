// tests/Faults/DDEServices.cpp: conversations that the system refuses, at each call.
#include <Ostra/Buffer/Buffer.h>
#include <System/DDE/DDEClient.h>

#include "../System/DDE/DDESupport.h"
#include "Faults/ServiceSweep.h"
#include "Support/ChildProcess.h"

#include <optional>

using namespace dde;

namespace
{
constexpr unsigned LONG_TIME = 60000; // Milliseconds: nobody waits that long.
constexpr unsigned short ITEM = 0xBFF0;

// A new one each time: its class isn't registered yet.
HINSTANCE NextInstance()
{
    static UINT_PTR last = 0x56780000;
    return reinterpret_cast<HINSTANCE>(last += 0x10000);
}

std::string Unique(const char* name)
{
    static const std::string moment = std::to_string(GetTickCount());
    return name + moment;
}

// Reports in this class's name; what has no report is quiet.
JudgeReport BareReport(const std::string& source)
{
    return [=](const ServiceReport& report) {
        EXPECT_EQ(report.failure.code, report.code);
        EXPECT_EQ(report.failure.text.rfind("(" + std::to_string(report.code) + "): ", 0), 0U);
        EXPECT_EQ(report.failure.text.find('['), std::string::npos);
        for (const std::string& place : report.failure.trail)
            EXPECT_EQ(place, source);
        EXPECT_FALSE(report.failure.trail.empty());
    };
}

// ---- The client ---------------------------------------------------------------------------

class WordServer : public CT_DDEServer
{
public:
    explicit WordServer(const std::string& service) : CT_DDEServer(Module(), service.c_str())
    {
        SetWindowLongPtrA(h_GetWindow(), GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(Procedure));
    }
    virtual ~WordServer() = default;

    int vb_Initiate(HWND, unsigned short) override { return 1; }
    int vb_Request(HWND client, unsigned short item, unsigned short) override
    {
        if (NameOf(item) == "word")
            v_SendData(client, item, "the word");
        return NameOf(item) == "word";
    }

private:
    // Carries out every command.
    static LRESULT CALLBACK Procedure(HWND window, UINT message, WPARAM first, LPARAM second)
    {
        if (message != EXECUTE)
            return sl_DDEServerWindowProc(window, message, first, second);
        PostMessageA(AsWindow(first), ACK, AsFirst(window),
                     PackDDElParam(ACK, 0x8000, static_cast<UINT_PTR>(second)));
        return 0;
    }
};

struct ClientState
{
    ~ClientState() { client.reset(); }

    bool Asks(CT_DDEClient& with)
    {
        CT_Buffer text(0, 32);
        const HWND found = with.h_DDEInitiate(Unique("OstraFaults").c_str(), "Words");
        const int is = with.b_DDERequest(found, "word", LONG_TIME, &text);
        with.v_DDETerminate(found);
        return is && text.n_GetUsedSize() == 9;
    }
    void Begin()
    {
        client.emplace(Module());
        server = client->h_DDEInitiate(Unique("OstraFaults").c_str(), "Words");
        EXPECT_NE(server, nullptr);
    }

    std::optional<CT_DDEClient> client;
    HWND server = nullptr;
    CT_Buffer out{0, 32};
    int result = 7;
    LONG answer = 7;
};

void Nothing(ClientState&) {}

void Begin(ClientState& state)
{
    state.Begin();
}

// The farewell of the partner is there before it is asked for: nobody waits where it can't be.
void BeginAndEnd(ClientState& state)
{
    state.Begin();
    PostMessageA(FindWindowA(CT_DDEClient::sqcz_ClassName, nullptr), TERMINATE,
                 AsFirst(state.server), 0);
}

void ExpectUsable(ClientState& state)
{
    CT_DDEClient another(Module());
    EXPECT_TRUE(state.Asks(another));
}

const std::vector<std::string> QUIET = {"GetClassInfoA", "GlobalAddAtomA", "GlobalDeleteAtom",
                                        "SendMessageA",  "DestroyWindow",  "UnpackDDElParam",
                                        "FreeDDElParam", "WaitMessage",    "PeekMessageA",
                                        "KillTimer",     "GlobalSize",     "FindWindowA"};

std::vector<std::string> QuietAnd(std::vector<std::string> more)
{
    more.insert(more.end(), QUIET.begin(), QUIET.end());
    return more;
}

const ServiceOperation<ClientState> CLIENT_OPERATIONS[] = {
    {"make", Nothing, [](ClientState& state) { state.client.emplace(NextInstance()); },
     [](ClientState& state) { EXPECT_TRUE(state.Asks(*state.client)); }, nullptr, QUIET},
    {"end", Begin, [](ClientState& state) { state.client.reset(); },
     [](ClientState&) { EXPECT_EQ(FindWindowA(CT_DDEClient::sqcz_ClassName, nullptr), nullptr); },
     nullptr, QUIET},
    {"initiate", [](ClientState& state) { state.client.emplace(Module()); },
     [](ClientState& state) {
         state.server = state.client->h_DDEInitiate(Unique("OstraFaults").c_str(), "Words");
     },
     [](ClientState& state) { EXPECT_NE(state.server, nullptr); }, nullptr, QUIET},
    {"request", Begin,
     [](ClientState& state) {
         state.result = state.client->b_DDERequest(state.server, "word", LONG_TIME, &state.out);
     },
     [](ClientState& state) {
         EXPECT_EQ(state.result, 1);
         EXPECT_EQ(state.out.n_GetUsedSize(), 9U);
     },
     [](ClientState& state) { EXPECT_EQ(state.out.n_GetUsedSize(), state.result ? 9U : 0U); },
     QuietAnd({"GlobalLock"})},
    {"command", Begin,
     [](ClientState& state) {
         state.result = state.client->b_DDEExecute(state.server, "[do]", LONG_TIME);
     },
     [](ClientState& state) { EXPECT_EQ(state.result, 1); },
     [](ClientState& state) { EXPECT_LE(state.result, 1); }, QUIET},
    {"farewell", BeginAndEnd,
     [](ClientState& state) { state.client->v_DDETerminate(state.server); }, Nothing, nullptr,
     QuietAnd({"PostMessageA", "SetTimer"})},
    {"send to a class", Begin,
     [](ClientState& state) {
         state.answer = i4_VarnokRequest(CT_DDEClient::sqcz_ClassName, "text");
     },
     [](ClientState& state) { EXPECT_EQ(state.answer, 0); },
     [](ClientState& state) { EXPECT_TRUE(state.answer == 0 || state.answer == 1000); }, QUIET},
};

// ---- The server ---------------------------------------------------------------------------

class Answers : public CT_DDEServer
{
public:
    explicit Answers(HINSTANCE instance) : CT_DDEServer(instance, "OstraAnswers") {}
    virtual ~Answers() = default;

    int vb_Initiate(HWND, unsigned short) override { return 1; }
    int vb_Poke(HWND, unsigned short, void* data, unsigned*) override
    {
        poked = static_cast<const char*>(data);
        return 1;
    }
    void vv_Terminate(HWND) override { ++ended; }

    std::string poked;
    int ended = 0;
};

struct ServerState
{
    void Make(HINSTANCE instance) { server = std::make_unique<Answers>(instance); }
    void Begin()
    {
        Make(Module());
        client.Initiate(server->h_GetWindow(), "OstraAnswers", "Words");
        EXPECT_EQ(client.Take().size(), 1U);
    }
    // What the system calls, without the system.
    LRESULT Tell(UINT message, LPARAM second)
    {
        return CT_DDEServer::sl_DDEServerWindowProc(server->h_GetWindow(), message, AsFirst(client),
                                                    second);
    }
    // The one message that has come; 0 for none.
    UINT Came()
    {
        const std::vector<Entry> entries = client.Take();
        for (const Entry& entry : entries)
            if (entry.message == DATA)
                GlobalFree(AsBlock(entry.low));
        return entries.size() == 1 ? entries[0].message : 0;
    }

    Client client;
    std::unique_ptr<Answers> server;
    LPARAM parameter = 0;
};

void NoServer(ServerState&) {}

void BeginServing(ServerState& state)
{
    state.Begin();
}

void ExpectUsable(ServerState& state)
{
    Client another;
    Answers server(Module());
    another.Initiate(server.h_GetWindow(), "OstraAnswers", "Words");
    EXPECT_EQ(another.Take().size(), 1U);
    state.client.Take();
}

UINT_PTR poked_block;

void ExpectCame(ServerState& state, UINT message)
{
    EXPECT_EQ(state.Came(), message);
}

const std::vector<std::string> SILENT =
    QuietAnd({"PostMessageA", "PackDDElParam", "GlobalFindAtomA"});

const ServiceOperation<ServerState> SERVER_OPERATIONS[] = {
    {"make", NoServer, [](ServerState& state) { state.Make(NextInstance()); },
     [](ServerState& state) { EXPECT_NE(state.server->h_GetWindow(), nullptr); }, nullptr, SILENT},
    {"end", BeginServing, [](ServerState& state) { state.server.reset(); },
     [](ServerState& state) { ExpectCame(state, TERMINATE); }, nullptr, SILENT},
    {"initiate",
     [](ServerState& state) {
         state.Make(Module());
         state.parameter = Words(GlobalAddAtomA("OstraAnswers"), 0);
     },
     [](ServerState& state) { state.Tell(INITIATE, state.parameter); },
     [](ServerState& state) {
         ExpectCame(state, ACK);
         GlobalDeleteAtom(static_cast<ATOM>(state.parameter));
     },
     [](ServerState& state) { GlobalDeleteAtom(static_cast<ATOM>(state.parameter)); }, SILENT},
    {"refuse", BeginServing, [](ServerState& state) { state.Tell(REQUEST, Words(1, ITEM)); },
     [](ServerState& state) { ExpectCame(state, ACK); },
     [](ServerState& state) { ExpectCame(state, 0); }, SILENT},
    {"send data",
     BeginServing,
     [](ServerState& state) { state.server->v_SendData(state.client, ITEM, "text"); },
     [](ServerState& state) { ExpectCame(state, DATA); },
     [](ServerState& state) { ExpectCame(state, 0); },
     {"PostMessageA", "PackDDElParam", "FreeDDElParam", "GlobalDeleteAtom", "GlobalSize"}},
    {"poke",
     [](ServerState& state) {
         state.Begin();
         poked_block = Block(0, "value");
         state.parameter = PackDDElParam(POKE, poked_block, ITEM);
     },
     [](ServerState& state) { state.Tell(POKE, state.parameter); },
     [](ServerState& state) {
         EXPECT_EQ(state.server->poked, "value");
         ExpectCame(state, ACK);
         GlobalFree(AsBlock(poked_block));
     },
     [](ServerState&) { GlobalFree(AsBlock(poked_block)); },
     QuietAnd({"PostMessageA", "PackDDElParam", "GlobalLock"})},
    {"terminate", BeginServing, [](ServerState& state) { state.Tell(TERMINATE, 0); },
     [](ServerState& state) {
         EXPECT_EQ(state.server->ended, 1);
         ExpectCame(state, TERMINATE);
     },
     [](ServerState& state) { EXPECT_EQ(state.server->ended, 1); }, SILENT},
};
} // namespace

CHILD_PROCESS(FaultsWords)
{
    const WordServer server(arguments[0]);
    std::puts("ready");
    std::fflush(stdout);
    Serve();
    return 0;
}

TEST(ServiceSweep, DDEClient)
{
    ChildProcess child("FaultsWords", {Unique("OstraFaults")});
    ASSERT_EQ(child.ReadLine(), "ready");
    ClientState().Begin(); // Opens what stays open.
    SweepServices(BareReport("System/DDE/DDEClient"), CLIENT_OPERATIONS);
}

// Its timer has the number that the system gives it.
TEST(ServiceSweep, DDEClientWithoutAWindowWaitsForNobody)
{
    Client partner;
    std::string call;
    for (unsigned number = 1; call != "CreateWindowExA"; ++number) {
        Services::Arm(number, 0);
        CT_DDEClient client(Module());
        call = Services::Disarm().name;
        ASSERT_FALSE(call.empty());
        TakeFailure();
        if (call != "CreateWindowExA")
            continue;
        CT_Buffer text(0, 32);
        EXPECT_EQ(client.b_DDERequest(partner, "word", 50, &text), 0);
        EXPECT_EQ(text.n_GetUsedSize(), 0U);
        EXPECT_EQ(TakeFailure(), Failure());
    }
}

// It tells a failure by its answer alone, once there is a conversation.
TEST(ServiceSweep, DDEPlainFunctionClearsTheErrorOfItsRequest)
{
    ChildProcess child("FaultsWords", {Unique("OstraFaults")});
    ASSERT_EQ(child.ReadLine(), "ready");
    const std::string service = Unique("OstraFaults");
    CT_DDEClient::sv_SetInstance(Module());
    unsigned failed = 0;
    std::string call = "none yet";
    for (unsigned number = 1; !call.empty(); ++number) {
        Services::Arm(number, 0);
        const int answer = i_DDERequest(service.c_str(), "Words", "word", 2000);
        call = Services::Disarm().name;
        SCOPED_TRACE(call);
        const Failure failure = TakeFailure();
        EXPECT_TRUE(answer == 0 || answer == 100000 || answer == 100001) << answer;
        if (answer != 100000) {
            EXPECT_EQ(failure, Failure());
        }
        failed += answer == 100001 && (call == "PostMessageA" || call == "SetTimer");
        if (call.empty()) {
            EXPECT_EQ(answer, 0);
        }
    }
    EXPECT_GE(failed, 2U);
    CT_Buffer text(0, 32);
    CT_DDEClient client(Module());
    const HWND found = client.h_DDEInitiate(service.c_str(), "Words");
    EXPECT_EQ(client.b_DDERequest(found, "word", LONG_TIME, &text), 1);
    client.v_DDETerminate(found);
}

TEST(ServiceSweep, DDEServer)
{
    ServerState().Begin();
    SweepServices(BareReport("System/DDE/DDEServer"), SERVER_OPERATIONS);
}
