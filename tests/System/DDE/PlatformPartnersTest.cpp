// tests/System/DDE/PlatformPartnersTest.cpp: partners that the platform brings along.
//
// A server and a client in processes of their own, written with the platform's library for
// conversations, and the shell's program manager. On Linux there is none of them.
#include <System/DDE/DDEClient.h>

#include <Ostra/Buffer/Buffer.h>

#include "DDESupport.h"

#include "Support/ChildProcess.h"
#include "Support/ConversationLibrary.h"
#include "Support/Failure.h"

using namespace dde;
using namespace conversation_library;

namespace
{
constexpr char TOPIC[] = "Words";

std::string Unique(const char* name)
{
    return name + std::to_string(GetTickCount());
}

// ---- The platform's library ---------------------------------------------------------------

std::string poked;

HDDEDATA CALLBACK ServeByLibrary(UINT type, UINT, HCONV, HSZ topic, HSZ item, HDDEDATA data,
                                 ULONG_PTR, ULONG_PTR)
{
    switch (type) {
    case XTYP_CONNECT:
        return AsResult(TextOf(topic) == TOPIC);
    case XTYP_REQUEST: {
        const std::string name = TextOf(item);
        return name == "word"    ? DataOf("the word", item)
               : name == "long"  ? DataOf(std::string(30000, 'l'), item)
               : name == "poked" ? DataOf(poked, item)
                                 : nullptr;
    }
    case XTYP_POKE:
        poked = ValueOf(data);
        return AsResult(DDE_FACK);
    case XTYP_EXECUTE: {
        const std::string command = ValueOf(data);
        if (command == "[quit]")
            PostQuitMessage(0);
        return AsResult(command == "[refuse]" ? DDE_FNOTPROCESSED : DDE_FACK);
    }
    case XTYP_DISCONNECT:
        poked = "disconnected";
        return nullptr;
    default:
        return nullptr;
    }
}

// Wine's library also acknowledges what it has answered by data. That is taken away here: the next
// item may get the number that this one's name had, and would be refused by it.
void Settle(HWND server)
{
    SendMessageA(server, WM_NULL, 0, 0);
    Pump();
}

// Wine's library takes a refusal of a value for none.
const bool WINE_TAKES_NO_REFUSAL =
    GetProcAddress(GetModuleHandleA("ntdll.dll"), "wine_get_version") != nullptr;

// ---- Our own ------------------------------------------------------------------------------

class WordServer : public CT_DDEServer
{
public:
    explicit WordServer(const std::string& service)
        : WordServer(std::make_shared<std::string>(service))
    {}
    WordServer(const WordServer&) = delete;
    virtual ~WordServer()
    {
        // The base ends them too late for what is overridden.
        while (!clients.empty())
            v_Terminate(clients.back());
    }
    HWND Handle() const { return h_GetWindow(); }

    int vb_Initiate(HWND client, unsigned short topic) override
    {
        const bool is = NameOf(topic) == TOPIC;
        if (is)
            clients.push_back(client);
        return is;
    }
    int vb_Request(HWND client, unsigned short item, unsigned short format) override
    {
        const std::string name = NameOf(item);
        const std::string text = name == "word"    ? "the word"
                                 : name == "long"  ? std::string(30000, 'l')
                                 : name == "poked" ? value
                                                   : "";
        if (format != CF_TEXT || text.empty())
            return 0;
        v_SendData(client, item, text.c_str());
        return 1;
    }
    int vb_Poke(HWND, unsigned short item, void* data, unsigned* ordinal) override
    {
        *ordinal = item;
        const bool is = NameOf(item) == "poked";
        if (is)
            value = static_cast<const char*>(data);
        return is;
    }
    void vv_AfterPoke(unsigned) override { ++after; }
    void vv_Terminate(HWND client) override { std::erase(clients, client); }

    static inline std::atomic<unsigned> after;

private:
    explicit WordServer(const std::shared_ptr<std::string>& name)
        : CT_DDEServer(Module(), name->c_str()),
          service_name(name)
    {}

    const std::shared_ptr<std::string> service_name; // The base keeps the pointer alone.
    std::string value;
    std::vector<HWND> clients;
};

std::string Text(const CT_Buffer& buffer)
{
    const void* const bytes = buffer.qcv_Get();
    return bytes ? static_cast<const char*>(bytes) : "";
}
} // namespace

// ---- Our client, the platform's server ----------------------------------------------------

CHILD_PROCESS(LibraryServer)
{
    return Serve(arguments[0], ServeByLibrary);
}

TEST(PlatformPartners, TheClientTalksToAServerOfThePlatformsLibrary)
{
    const std::string service = Unique("OstraLibrary");
    ChildProcess child("LibraryServer", {service});
    ASSERT_EQ(child.ReadLine(), "ready");
    CT_DDEClient client(Module());
    CT_Buffer out(0, 32);
    EXPECT_EQ(client.h_DDEInitiate(service.c_str(), "Sentences"), nullptr);
    const HWND server = client.h_DDEInitiate(service.c_str(), TOPIC);
    ASSERT_NE(server, nullptr);
    EXPECT_EQ(client.b_DDERequest(server, "word", LONG_TIME, &out), 1);
    EXPECT_EQ(Text(out), "the word");
    Settle(server);
    EXPECT_EQ(client.b_DDERequest(server, "long", LONG_TIME, &out), 1);
    EXPECT_TRUE(Text(out) == std::string(30000, 'l'));
    Settle(server);
    EXPECT_EQ(client.b_DDERequest(server, "unknown", LONG_TIME, &out), 0);
    EXPECT_EQ(client.b_DDEExecute(server, "[do]", LONG_TIME), 1);
    EXPECT_EQ(client.b_DDEExecute(server, "[refuse]", LONG_TIME), 0);
    const DWORD start = GetTickCount();
    client.v_DDETerminate(server);
    EXPECT_LT(GetTickCount() - start, 2900U);
    const HWND again = client.h_DDEInitiate(service.c_str(), TOPIC);
    EXPECT_EQ(client.b_DDERequest(again, "poked", LONG_TIME, &out), 1);
    EXPECT_EQ(Text(out), "disconnected");
    Settle(again);
    EXPECT_EQ(client.b_DDEExecute(again, "[quit]", LONG_TIME), 1);
    client.v_DDETerminate(again);
    EXPECT_EQ(child.Wait(), 0);
    EXPECT_EQ(TakeFailure(), Failure());
}

// ---- The platform's client, our server ----------------------------------------------------

CHILD_PROCESS(LibraryClient)
{
    if (DdeInitializeA(&library, AskByLibrary, APPCMD_CLIENTONLY, 0) != DMLERR_NO_ERROR)
        return 1;
    const std::string& service = arguments[0];
    Tell(LibraryClient(service, "Sentences").IsThere() ? "found" : "nobody");
    LibraryClient client(service, TOPIC);
    Tell(client.IsThere() ? "found" : "nobody");
    Tell(client.Request("word"));
    Tell(client.Request("long"));
    Tell(client.Request("unknown"));
    Tell(client.Poke("poked", "a value"));
    Tell(client.Request("poked"));
    Tell(client.Poke("unknown", "another"));
    Tell(client.Request("poked"));
    // The base of servers answers neither.
    Tell(client.Execute("[do]", SHORT_TIME));
    Tell(client.Advise("word"));
    Tell(client.End());
    LibraryClient next(service, TOPIC);
    Tell(next.Request("word"));
    Tell(PumpUntil([&] { return next.HasEnded(); }) ? "told of the end" : "not told");
    DdeUninitialize(library);
    return 0;
}

TEST(PlatformPartners, TheServerTalksToAClientOfThePlatformsLibrary)
{
    const std::string service = Unique("OstraOwn");
    WordServer::after = 0;
    auto server = std::make_unique<Served<WordServer>>([&] { return WordServer(service); });
    ChildProcess child("LibraryClient", {service});
    const struct
    {
        const char* what;
        std::string line;
    } rows[] = {{"another topic", "nobody"},
                {"the topic", "found"},
                {"an item", "the word"},
                {"a long one", std::string(30000, 'l')},
                {"an unknown one", "error 4009"}, // Not processed.
                {"a value", "poked"},
                {"that value", "a value"},
                {"a value that is refused", WINE_TAKES_NO_REFUSAL ? "poked" : "error 4009"},
                {"the value before", "a value"},
                {"a command", "error 4005"}, // No answer in time.
                {"a link", "error 4000"},
                {"the end", "ended"},
                {"another conversation", "the word"}};
    for (const auto& row : rows) {
        const std::string line = child.ReadLine();
        EXPECT_TRUE(line == row.line) << row.what << ": " << line.substr(0, 40);
    }
    server.reset();
    EXPECT_EQ(child.ReadLine(), "told of the end");
    EXPECT_EQ(child.Wait(), 0);
    EXPECT_EQ(WordServer::after, 2U);
    EXPECT_EQ(TakeFailure(), Failure());
}

// ---- The shell ----------------------------------------------------------------------------

TEST(PlatformPartners, TheProgramManagerListsGroupsAndMakesAndRemovesOne)
{
    CT_DDEClient client(Module());
    const HWND manager = client.h_DDEInitiate("PROGMAN", "PROGMAN");
    if (!manager)
        GTEST_SKIP() << "nobody answers to PROGMAN: no desktop runs here";
    const std::string group = Unique("Ostra");
    const auto groups = [&] {
        CT_Buffer out(0, 32);
        EXPECT_EQ(client.b_DDERequest(manager, "Groups", LONG_TIME, &out), 1);
        Settle(manager);
        return Text(out);
    };
    EXPECT_EQ(groups().find(group), std::string::npos);
    EXPECT_EQ(client.b_DDEExecute(manager, ("[CreateGroup(" + group + ")]").c_str(), LONG_TIME), 1);
    EXPECT_NE(groups().find(group), std::string::npos);
    EXPECT_EQ(client.b_DDEExecute(manager, ("[DeleteGroup(" + group + ")]").c_str(), LONG_TIME), 1);
    EXPECT_EQ(groups().find(group), std::string::npos);
    client.v_DDETerminate(manager);
    EXPECT_EQ(TakeFailure(), Failure());
}
