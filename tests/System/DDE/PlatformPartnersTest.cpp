// tests/System/DDE/PlatformPartnersTest.cpp: partners that the platform brings along.
//
// A server and a client in processes of their own, written with the platform's library for
// conversations, and the shell's program manager. On Linux there is none of them.
#include <System/DDE/DDEClient.h>

#include <Ostra/Buffer/Buffer.h>

#include "DDESupport.h"

#include "Support/ChildProcess.h"
#include "Support/Failure.h"

#include <ddeml.h>

using namespace dde;

namespace
{
constexpr unsigned LONG_TIME = 60000; // Milliseconds: nobody waits that long.
constexpr unsigned SHORT_TIME = 300;  // Where no answer comes.
constexpr char TOPIC[] = "Words";

std::string Unique(const char* name)
{
    return name + std::to_string(GetTickCount());
}

void Tell(const std::string& line)
{
    std::puts(line.c_str());
    std::fflush(stdout);
}

// ---- The platform's library ---------------------------------------------------------------

DWORD library; // The instance that the library knows the process by.

std::string TextOf(HSZ name)
{
    char text[256] = "";
    DdeQueryStringA(library, name, text, sizeof text, CP_WINANSI);
    return text;
}

std::string BytesOf(HDDEDATA data)
{
    const DWORD size = DdeGetData(data, nullptr, 0, 0);
    std::string bytes(size, '\0');
    DdeGetData(data, reinterpret_cast<BYTE*>(bytes.data()), size, 0);
    return bytes;
}

// Up to the terminator: the library rounds sizes up.
std::string ValueOf(HDDEDATA data)
{
    return BytesOf(data).c_str();
}

HDDEDATA DataOf(const std::string& text, HSZ item)
{
    const auto bytes = reinterpret_cast<BYTE*>(const_cast<char*>(text.c_str()));
    return DdeCreateDataHandle(library, bytes, static_cast<DWORD>(text.size()) + 1, 0, item,
                               CF_TEXT, 0);
}

HDDEDATA AsResult(UINT_PTR value)
{
    return reinterpret_cast<HDDEDATA>(value);
}

std::string poked;
bool is_connected;

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

HDDEDATA CALLBACK AskByLibrary(UINT type, UINT, HCONV, HSZ, HSZ, HDDEDATA, ULONG_PTR, ULONG_PTR)
{
    if (type == XTYP_DISCONNECT)
        is_connected = false;
    return nullptr;
}

// One conversation, told in lines.
class LibraryClient
{
public:
    LibraryClient(const std::string& service, const char* topic)
    {
        const HSZ first = Name(service.c_str()), second = Name(topic);
        conversation = DdeConnect(library, first, second, nullptr);
        is_connected = conversation != nullptr;
    }
    bool IsThere() const { return conversation != nullptr; }
    std::string Request(const char* item)
    {
        const HDDEDATA data = Transact(nullptr, 0, item, XTYP_REQUEST, LONG_TIME);
        return data ? ValueOf(data) : Error();
    }
    std::string Poke(const char* item, const std::string& text)
    {
        return Transact(text.c_str(), text.size() + 1, item, XTYP_POKE, LONG_TIME) ? "poked"
                                                                                   : Error();
    }
    // The base of servers answers neither.
    std::string Execute(const std::string& text)
    {
        return Transact(text.c_str(), text.size() + 1, nullptr, XTYP_EXECUTE, SHORT_TIME) ? "done"
                                                                                          : Error();
    }
    std::string Advise(const char* item)
    {
        return Transact(nullptr, 0, item, XTYP_ADVSTART, SHORT_TIME) ? "advised" : Error();
    }
    // The library may call back, or just know.
    bool HasEnded() const
    {
        CONVINFO facts = {};
        facts.cb = sizeof facts;
        return !is_connected || !DdeQueryConvInfo(conversation, QID_SYNC, &facts) ||
               !(facts.wStatus & ST_CONNECTED);
    }
    std::string End() { return DdeDisconnect(conversation) ? "ended" : Error(); }

private:
    static HSZ Name(const char* text) { return DdeCreateStringHandleA(library, text, CP_WINANSI); }
    static std::string Error()
    {
        char text[16];
        std::snprintf(text, sizeof text, "error %x", DdeGetLastError(library));
        return text;
    }
    HDDEDATA Transact(const char* bytes, std::size_t size, const char* item, UINT type,
                      unsigned time)
    {
        const auto data = reinterpret_cast<BYTE*>(const_cast<char*>(bytes));
        return DdeClientTransaction(data, static_cast<DWORD>(size), conversation,
                                    item ? Name(item) : nullptr, item ? CF_TEXT : 0, type, time,
                                    nullptr);
    }

    HCONV conversation;
};

// Dispatches what comes until that holds.
template <class T_Condition>
bool PumpUntil(T_Condition condition)
{
    for (const DWORD start = GetTickCount(); GetTickCount() - start < LONG_TIME; Sleep(1)) {
        Pump();
        if (condition())
            return true;
    }
    return false;
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
    if (DdeInitializeA(&library, ServeByLibrary, APPCLASS_STANDARD, 0) != DMLERR_NO_ERROR)
        return 1;
    const HSZ service = DdeCreateStringHandleA(library, arguments[0].c_str(), CP_WINANSI);
    DdeNameService(library, service, nullptr, DNS_REGISTER);
    Tell("ready");
    MSG message;
    while (GetMessageA(&message, nullptr, 0, 0) > 0)
        DispatchMessageA(&message);
    DdeUninitialize(library);
    return 0;
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
    Tell(client.Execute("[do]"));
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
