// tests/Programs/ConversationSweep.cpp: conversations between processes, of which some are killed.
//
//   conversation_sweep FOLDER
//
// 1,000 conversations by eight clients at once with one server, while a stranger sends all of them
// what is no record. Then servers and clients are killed at each step of a conversation, and at any
// moment: no partner waits longer than its time-out, and the next one is served. Another user's
// process is refused. In the end the session's folder holds nothing but the empty database.
#include <Ostra/Buffer/Buffer.h>
#include <Ostra/Frame/ErrorManager.h>
#include <System/DDE/DDEClient.h>
#include <System/DDE/DDEServer.h>

#include <windows.h>

#include "ConversationSession.h"

#include <algorithm>
#include <random>
#include <vector>

namespace
{
constexpr unsigned CLIENTS = 8;
constexpr unsigned LARGE = 3000000;   // Bytes of an item.
constexpr unsigned SHORT_TIME = 250;  // Milliseconds, where a partner is dead.
constexpr unsigned LONG_TIME = 30000; // Where it lives.
constexpr unsigned FAREWELL = 3000;   // The client's own.
constexpr unsigned SLACK = 2500;      // Of a machine that does much else.
constexpr UINT EXECUTE = 0x3E8, ACK = 0x3E4, QUIT = WM_USER + 99;
constexpr char TOPIC[] = "Words";

// OSTRA_SWEEP multiplies the work.
const unsigned factor = [] {
    const char* const text = std::getenv("OSTRA_SWEEP");
    return text ? static_cast<unsigned>(std::strtoul(text, nullptr, 10)) : 1;
}();
const unsigned conversations = 1000 * factor;
const unsigned randomKills = 150 * factor; // Of clients; each tenth one kills the server too.

// ---- The server ---------------------------------------------------------------------------

std::string NameOf(ATOM atom)
{
    char name[256] = "";
    GlobalGetAtomNameA(atom, name, sizeof name);
    return name;
}

// An item's name is the length of its text.
std::string ItemOf(unsigned length)
{
    return std::string(length, static_cast<char>('a' + length % 26));
}

// Items, commands, and the death of one of the partners at a step.
class Server : public CT_DDEServer
{
public:
    explicit Server(Pair& of) : CT_DDEServer(nullptr, of.service), pair(of)
    {
        current = this;
        // Commands are none of the base's doing.
        SetWindowLongPtrA(h_GetWindow(), GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(Procedure));
    }
    virtual ~Server() = default;

    int vb_Initiate(HWND, unsigned short topic) override
    {
        pair.ComeTo(Step::INITIATE);
        return NameOf(topic) == TOPIC;
    }
    int vb_Request(HWND client, unsigned short item, unsigned short) override
    {
        pair.ComeTo(Step::REQUEST);
        const std::string name = NameOf(item);
        if (name.empty() || name.find_first_not_of("0123456789") != name.npos)
            return 0;
        v_SendData(client, item, ItemOf(static_cast<unsigned>(std::stoul(name))).c_str());
        pair.ComeTo(Step::DATA);
        return 1;
    }
    void vv_Terminate(HWND) override { pair.ComeTo(Step::TERMINATE); }

private:
    // "[do]" is done.
    void Execute(HWND client, LPARAM parameter)
    {
        pair.ComeTo(Step::EXECUTE);
        const auto block = reinterpret_cast<HGLOBAL>(parameter);
        const char* const text = static_cast<const char*>(GlobalLock(block));
        const bool is = text && std::string(text) == "[do]";
        GlobalUnlock(block);
        PostMessageA(client, ACK, reinterpret_cast<WPARAM>(h_GetWindow()),
                     PackDDElParam(ACK, is ? 0x8000 : 0, static_cast<UINT_PTR>(parameter)));
        pair.ComeTo(Step::EXECUTED);
    }
    static LRESULT Procedure(HWND window, UINT message, WPARAM first, LPARAM second)
    {
        if (message != EXECUTE)
            return sl_DDEServerWindowProc(window, message, first, second);
        current->Execute(reinterpret_cast<HWND>(first), second);
        return 0;
    }

    Pair& pair;
    static inline Server* current;
};

int RunServer(Pair& pair)
{
    Server server(pair);
    if (!server.h_GetWindow())
        return 1;
    pair.server = server.h_GetWindow();
    for (MSG message;;) {
        while (PeekMessageA(&message, nullptr, 0, 0, PM_REMOVE)) {
            if (message.message == QUIT)
                return 0;
            DispatchMessageA(&message);
        }
        WaitMessage();
    }
}

// ---- The client ---------------------------------------------------------------------------

// One side that asks; each wait is measured against its time-out.
class Asker
{
public:
    explicit Asker(Pair& with) : pair(with) {}

    // Clients that begin at once take each other's atoms away, and ask again.
    bool Begin(unsigned milliseconds)
    {
        for (const DWORD start = GetTickCount(); GetTickCount() - start < milliseconds;) {
            window = Timed(0, [&] { return client.h_DDEInitiate(pair.service, TOPIC); });
            if (window)
                return true;
            ++shared->askedAgain;
            usleep(static_cast<useconds_t>(random() % 2000));
        }
        return false;
    }
    bool Ask(unsigned length, unsigned milliseconds)
    {
        CT_Buffer text(0, 32);
        const std::string item = std::to_string(length);
        const bool is = Timed(milliseconds, [&] {
            return client.b_DDERequest(window, item.c_str(), milliseconds, &text);
        });
        CT_ErrorManager::spco_Get()->v_ClearError();
        if (!is)
            return false;
        const std::string right = ItemOf(length);
        if (text.n_GetUsedSize() != length + 1 ||
            std::memcmp(text.qcv_Get(), right.c_str(), length + 1) != 0)
            Fail("an item of " + item + " bytes came as another");
        ++shared->requests;
        shared->bytes += length;
        return true;
    }
    bool Do(const char* command, unsigned milliseconds)
    {
        const bool is =
            Timed(milliseconds, [&] { return client.b_DDEExecute(window, command, milliseconds); });
        CT_ErrorManager::spco_Get()->v_ClearError();
        return is;
    }
    unsigned End()
    {
        const DWORD start = GetTickCount();
        Timed(FAREWELL, [&] { return client.v_DDETerminate(window), true; });
        return GetTickCount() - start;
    }
    // A whole conversation, which nobody disturbs.
    void Converse(bool large)
    {
        if (!Begin(LONG_TIME))
            Fail("a server isn't found");
        for (const unsigned length : {0U, 7U, 0x10000U, LARGE})
            if ((length < LARGE || large) && !Ask(length, LONG_TIME))
                Fail("a request of " + std::to_string(length) + " bytes fails");
        if (!Do("[do]", LONG_TIME) || Do("[refuse]", LONG_TIME))
            Fail("a command has the wrong answer");
        if (End() >= FAREWELL)
            Fail("a farewell stays without an answer");
        ++shared->conversations;
    }

private:
    template <class Body>
    std::invoke_result_t<Body> Timed(unsigned limit, Body body)
    {
        const DWORD start = GetTickCount();
        const auto result = body();
        const unsigned taken = GetTickCount() - start;
        if (taken > limit + SLACK)
            Fail("a partner waits " + std::to_string(taken) + " ms of " + std::to_string(limit));
        Raise(shared->longest, taken > limit ? taken - limit : 0);
        return result;
    }

    Pair& pair;
    CT_DDEClient client{nullptr};
    HWND window = nullptr;
    std::minstd_rand random{static_cast<unsigned>(getpid())};
};

// ---- Many at once -------------------------------------------------------------------------

// What is no record, for each socket that there is; all of it is to be dropped without an answer.
int RunStranger()
{
    fs::current_path(SessionFolder());
    std::minstd_rand random(7);
    while (!shared->isOver)
        for (const std::string& name : SocketsOf(".")) {
            std::string bytes(random() % 200, '\0');
            for (char& byte : bytes)
                byte = static_cast<char>(random());
            const Answer answer = SendBytes(name, bytes);
            if (answer == Answer::SOME || answer == Answer::NONE_IN_TIME)
                Fail("what is no record is answered, or kept");
            shared->dropped += answer == Answer::DROPPED;
            usleep(500);
        }
    return 0;
}

void RunMany()
{
    Pair& pair = NewPair();
    const pid_t server = StartServer(pair, RunServer);
    const pid_t stranger = Start(RunStranger);
    const DWORD start = Now();
    std::vector<pid_t> clients;
    for (unsigned number = 0; number < CLIENTS; ++number)
        clients.push_back(Start([&pair, number] {
            for (unsigned i = 0; i < conversations / CLIENTS; ++i) {
                // One client for some conversations, as programs have it.
                Asker asker(pair);
                for (const unsigned end = i + 5; i < end - 1; ++i)
                    asker.Converse(false);
                asker.Converse(number == i / 5 % CLIENTS);
            }
            return 0;
        }));
    for (const pid_t client : clients)
        AwaitSuccess(client, "a client");
    shared->milliseconds = Now() - start;
    shared->isOver = true;
    AwaitSuccess(stranger, "the stranger");
    EndServer(pair, server, QUIT);
    if (shared->conversations != conversations)
        Fail("conversations are missing");
}

// ---- Deaths at each step ------------------------------------------------------------------

// What a client lives through whose server dies at the step.
int RunSurvivor(Pair& pair)
{
    const Step step = pair.step;
    Asker asker(pair);
    const auto time = [&](Step last) {
        return step <= last ? SHORT_TIME : LONG_TIME;
    };
    // The first look at a server that dies within it finds nobody.
    bool found = false;
    do
        found = asker.Begin(step == Step::INITIATE ? 1 : LONG_TIME);
    while (!found && !pair.isReached);
    if (found == (step == Step::INITIATE))
        Fail("a server that has died is found");
    if (!found)
        return 0;
    if (asker.Ask(7, time(Step::REQUEST)) != (step > Step::REQUEST))
        Fail("a dead server answers a request, or a living one does not");
    if (step > Step::REQUEST && asker.Do("[do]", time(Step::EXECUTE)) != (step > Step::EXECUTE))
        Fail("a dead server carries out a command, or a living one does not");
    if (asker.End() + 100 < FAREWELL)
        Fail("a dead server says farewell");
    return 0;
}

// The server dies; the next one of that name is found.
void ExpectSurvivor(Pair& pair, pid_t server, pid_t client)
{
    AwaitKilled(server);
    AwaitSuccess(client, "a client whose server was killed");
    pair.step = Step::NONE;
    const pid_t next = StartServer(pair, RunServer);
    AwaitSuccess(Start([&pair] { return Asker(pair).Converse(false), 0; }), "a client");
    EndServer(pair, next, QUIT);
    ++shared->kills;
}

// What a client does until it dies.
int RunVictim(Pair& pair)
{
    pair.victim = getpid();
    Asker asker(pair);
    if (asker.Begin(LONG_TIME) && asker.Ask(7, LONG_TIME) && asker.Do("[do]", LONG_TIME))
        asker.End();
    // The server's signal is under way.
    for (;;)
        pause();
}

// The client dies; the server serves the next one.
void ExpectServerGoesOn(Pair& pair, pid_t client)
{
    AwaitKilled(client);
    pair.step = Step::NONE;
    AwaitSuccess(Start([&pair] { return Asker(pair).Converse(false), 0; }), "the next client");
    ++shared->kills;
}

// All at once: those who wait do so together.
void KillAtEachStep()
{
    std::vector<Pair*> pairs;
    std::vector<pid_t> servers, clients;
    for (const bool killsServer : {true, false})
        for (int step = int(Step::INITIATE); step <= int(Step::TERMINATE); ++step) {
            Pair& pair = NewPair();
            servers.push_back(StartServer(pair, RunServer));
            pair.killsServer = killsServer;
            pair.step = Step(step);
            pairs.push_back(&pair);
        }
    for (Pair* pair : pairs)
        clients.push_back(
            Start([pair] { return pair->killsServer ? RunSurvivor(*pair) : RunVictim(*pair); }));
    for (std::size_t i = 0; i < pairs.size(); ++i)
        if (pairs[i]->killsServer)
            ExpectSurvivor(*pairs[i], servers[i], clients[i]);
        else
            ExpectServerGoesOn(*pairs[i], clients[i]);
    // What the dead have left went when the next one came.
    AwaitSuccess(Start(RunNext), "the next process");
    ExpectRows(static_cast<unsigned>(pairs.size()) / 2);
    for (std::size_t i = 0; i < pairs.size(); ++i)
        if (!pairs[i]->killsServer)
            EndServer(*pairs[i], servers[i], QUIT);
}

// ---- Deaths at any moment -----------------------------------------------------------------

// Talks for ever. A server that lives has to answer: at the third time of asking, for the machine
// may do much else. A client that no answer has reached is used no more: the answer may still come.
int RunTalker(Pair& pair)
{
    for (unsigned failed = 0; failed < 3;) {
        const unsigned life = pair.life, time = SHORT_TIME << 2 * failed;
        Asker asker(pair);
        const bool all = asker.Begin(LONG_TIME) && asker.Ask(7, time) && asker.Ask(0x10000, time) &&
                         asker.Do("[do]", time);
        if (all)
            asker.End();
        failed = all || life != pair.life ? 0 : failed + 1;
    }
    Fail("a living server does not answer");
}

void KillAtAnyMoment()
{
    Pair& pair = NewPair();
    std::mt19937 random(Seed(150));
    std::vector<pid_t> clients;
    pid_t server = StartServer(pair, RunServer);
    const auto talker = [&pair] {
        return RunTalker(pair);
    };
    for (unsigned i = 0; i < CLIENTS; ++i)
        clients.push_back(Start(talker));
    for (unsigned kills = 0; kills < randomKills; ++kills) {
        usleep(static_cast<useconds_t>(random() % 12000));
        pid_t& client = clients[random() % CLIENTS];
        Kill(client);
        client = Start(talker);
        shared->kills += 1 + (kills % 10 == 9);
        if (kills % 10 == 9) {
            // Told before and behind it: some begin in between.
            ++pair.life;
            Kill(server);
            ++pair.life;
            server = StartServer(pair, RunServer);
        }
    }
    for (const pid_t client : clients)
        Kill(client);
    AwaitSuccess(Start([&pair] { return Asker(pair).Converse(false), 0; }), "the next client");
    EndServer(pair, server, QUIT);
}

// ---- Another user -------------------------------------------------------------------------

// A right record, and a folder that would let it pass: the credentials alone refuse it.
std::string RefuseAnotherUser()
{
    if (geteuid() != 0)
        return "another user not tried, as that needs root";
    Pair& pair = NewPair();
    const pid_t server = StartServer(pair, RunServer);
    const pid_t other = TakeServersPlace();
    AwaitSuccess(Start([&pair] {
                     const bool is = PostMessageA(pair.server, QUIT, 0, 0);
                     return is || GetLastError() != ERROR_INVALID_WINDOW_HANDLE;
                 }),
                 "a process that meets another user's socket");
    AwaitSuccess(other, "another user");
    GiveServersPlaceBack();
    ExpectOnlyOwnUser(pair, QUIT);
    AwaitSuccess(server, "a server");
    return "another user refused";
}
} // namespace

int main(int argc, char** argv)
{
    if (argc != 2)
        Fail("usage: conversation_sweep FOLDER");
    Prepare(argv[1]);
    RunMany();
    KillAtEachStep();
    KillAtAnyMoment();
    const std::string other = RefuseAnotherUser();
    AwaitSuccess(Start(RunNext), "the next process");
    ExpectRows(0);
    std::printf("conversation sweep: %u conversations by %u clients at once in %.1f s: %u "
                "requests, %.0f MB, asked again %u "
                "times; %u kills, no wait longer than its time-out and %u ms; %u broken records "
                "dropped; %s; nothing left behind\n",
                conversations, CLIENTS, shared->milliseconds / 1000.0, unsigned(shared->requests),
                double(shared->bytes) / 1e6, unsigned(shared->askedAgain), unsigned(shared->kills),
                unsigned(shared->longest), unsigned(shared->dropped), other.c_str());
    return 0;
}
