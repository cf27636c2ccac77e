// benchmarks/Conversations.cpp: a question to another process, and its answer.
//
// Each side has a server in a process of its own, and a conversation that is there already. "request"
// asks for an item and gets its text, of 13 bytes or of 64 KiB; "execute" sends a command that is
// acknowledged. For GDBus these are synchronous calls of a method through a daemon of the program's
// own; names are found by the daemon, as they are by the atoms and windows here. "socket" is what
// the system itself takes: a packet and its answer over a pair of connected sockets, which knows no
// names and nobody else. All is measured by the clock on the wall, as two processes work.
#include <Ostra/Buffer/Buffer.h>
#include <System/DDE/DDEClient.h>
#include <System/DDE/DDEServer.h>

#include <windows.h>

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include <fcntl.h>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#if HAVE_GDBUS
#include <gio/gio.h>
#endif

#include "Support/Job.h"

namespace
{
namespace fs = std::filesystem;

typedef std::vector<std::string> Answers;

constexpr std::size_t LONG = 0x10000 - 1; // The terminator is the last byte of 64 KiB.
constexpr unsigned TIMEOUT = 10000;       // Milliseconds.
constexpr char COMMAND[] = "[open(\"a\")]";

[[noreturn]] void Die(const char* what)
{
    std::fprintf(stderr, "conversations: %s\n", what);
    std::_Exit(1);
}

// What every server answers.
const std::string& AnswerTo(const std::string& item)
{
    static const std::string brief = "forty-two is it";
    static const std::string large(LONG, 'x');
    return item == "large" ? large : brief;
}

// A folder as long as the program runs, for the session: in memory, as the users' own ones are.
class Folder
{
public:
    Folder()
    {
        for (const char* place : {"/dev/shm", "/tmp"}) {
            name = place + std::string("/ostra-conversations-XXXXXX");
            if (mkdtemp(name.data())) {
                setenv("XDG_RUNTIME_DIR", name.c_str(), 1);
                return;
            }
        }
        Die("no folder");
    }
    Folder(const Folder&) = delete;
    Folder& operator=(const Folder&) = delete;
    ~Folder()
    {
        std::error_code ignored;
        fs::remove_all(name, ignored);
    }

private:
    std::string name;
};

// A process that ends with the object, and with the program. It tells that it is ready by a byte.
class Child
{
public:
    template <class Body>
    explicit Child(Body body)
    {
        int ready[2];
        if (pipe(ready) != 0 || (process = fork()) < 0)
            Die("no process");
        if (process == 0) {
            prctl(PR_SET_PDEATHSIG, SIGKILL);
            body([&] {
                if (write(ready[1], "", 1) != 1)
                    Die("nobody waits");
            });
            std::_Exit(0);
        }
        close(ready[1]);
        char byte;
        if (read(ready[0], &byte, 1) != 1)
            Die("a server doesn't begin");
        close(ready[0]);
    }
    Child(const Child&) = delete;
    Child& operator=(const Child&) = delete;
    ~Child()
    {
        kill(process, SIGKILL);
        waitpid(process, nullptr, 0);
    }

private:
    pid_t process = 0;
};

// ---- The library ---------------------------------------------------------------------------------

class Server : public CT_DDEServer
{
public:
    Server() : CT_DDEServer(GetModuleHandleA(nullptr), "Benchmark") {}
    int vb_Initiate(HWND, unsigned short) override { return 1; }
    int vb_Request(HWND client, unsigned short item, unsigned short) override
    {
        char name[256] = "";
        GlobalGetAtomNameA(item, name, sizeof name);
        v_SendData(client, item, AnswerTo(name).c_str());
        return 1;
    }
    void Serve()
    {
        MSG message;
        for (;; WaitMessage())
            while (PeekMessageA(&message, nullptr, 0, 0, PM_REMOVE))
                if (message.message == WM_DDE_EXECUTE)
                    Execute(message);
                else
                    DispatchMessageA(&message);
    }

private:
    void Execute(const MSG& message) const
    {
        UINT_PTR block;
        UnpackDDElParam(WM_DDE_EXECUTE, message.lParam, nullptr, &block);
        const HGLOBAL command = reinterpret_cast<HGLOBAL>(block);
        const bool isGood = std::strcmp(static_cast<char*>(GlobalLock(command)), COMMAND) == 0;
        GlobalUnlock(command);
        PostMessageA(reinterpret_cast<HWND>(message.wParam), WM_DDE_ACK,
                     reinterpret_cast<WPARAM>(h_GetWindow()),
                     PackDDElParam(WM_DDE_ACK, isGood ? 0x8000 : 0, block));
    }
};

class Ostra
{
public:
    Ostra()
        : server([](auto ready) {
              Server served;
              ready();
              served.Serve();
          }),
          client(GetModuleHandleA(nullptr)),
          partner(client.h_DDEInitiate("Benchmark", "Any"))
    {
        if (!partner)
            Die("no conversation");
    }
    std::string Request(const char* item)
    {
        return Ask(item) ? static_cast<const char*>(text.qcv_Get()) : "";
    }
    // Bytes that came.
    std::size_t Ask(const char* item)
    {
        return client.b_DDERequest(partner, item, TIMEOUT, &text) ? text.n_GetUsedSize() : 0;
    }
    bool Execute() { return client.b_DDEExecute(partner, COMMAND, TIMEOUT) != 0; }

private:
    const Child server;
    CT_DDEClient client;
    HWND partner;
    CT_Buffer text{0, 32};
};

// ---- A pair of sockets -----------------------------------------------------------------------------

class Sockets
{
public:
    Sockets()
        : ends(Pair()),
          server([this](auto ready) {
              ready();
              Serve(ends.second);
          }),
          room(LONG + 1, 0)
    {}
    std::string Request(const char* item) { return room.substr(0, Ask(item) - 1); }
    std::size_t Ask(const char* item)
    {
        if (send(ends.first, item, std::strlen(item), 0) < 0)
            Die("a socket doesn't send");
        return Received(ends.first, room);
    }
    bool Execute() { return Ask(COMMAND) > 1; }

private:
    static std::pair<int, int> Pair()
    {
        int both[2];
        if (socketpair(AF_UNIX, SOCK_SEQPACKET, 0, both) != 0)
            Die("no sockets");
        return {both[0], both[1]};
    }
    static std::size_t Received(int socket, std::string& into)
    {
        const ssize_t count = recv(socket, into.data(), into.size(), 0);
        if (count <= 0)
            Die("a socket doesn't receive");
        return static_cast<std::size_t>(count);
    }
    [[noreturn]] static void Serve(int socket)
    {
        std::string item(LONG, 0);
        for (;;) {
            const std::string& answer = AnswerTo(item.substr(0, Received(socket, item)));
            if (send(socket, answer.c_str(), answer.size() + 1, 0) < 0)
                Die("a socket doesn't send");
        }
    }

    std::pair<int, int> ends;
    const Child server;
    std::string room;
};

// ---- GDBus -----------------------------------------------------------------------------------------

#if HAVE_GDBUS
constexpr char NAME[] = "org.example.Benchmark";
constexpr char PLACE[] = "/Benchmark";
constexpr char DESCRIPTION[] =
    "<node><interface name='org.example.Benchmark'>"
    "<method name='Request'><arg type='s' direction='in'/><arg type='s' direction='out'/></method>"
    "<method name='Execute'><arg type='s' direction='in'/></method>"
    "</interface></node>";

// The daemon, which the program starts for itself; without an address where there is none.
class Daemon
{
public:
    Daemon()
    {
        int output[2];
        if (pipe(output) != 0 || (process = fork()) < 0)
            Die("no process");
        if (process == 0) {
            prctl(PR_SET_PDEATHSIG, SIGKILL);
            dup2(output[1], 1);
            dup2(open("/dev/null", O_WRONLY), 2);
            execlp("dbus-daemon", "dbus-daemon", "--session", "--nofork", "--print-address=1",
                   nullptr);
            std::_Exit(1);
        }
        close(output[1]);
        char line[1000];
        const ssize_t count = read(output[0], line, sizeof line);
        close(output[0]);
        address.assign(line, count > 0 ? static_cast<std::size_t>(count) : 0);
        address.erase(std::min(address.find('\n'), address.size()));
    }
    Daemon(const Daemon&) = delete;
    Daemon& operator=(const Daemon&) = delete;
    ~Daemon()
    {
        kill(process, SIGKILL);
        waitpid(process, nullptr, 0);
    }
    const std::string& Address() const { return address; }

private:
    pid_t process = 0;
    std::string address;
};

GDBusConnection* Connect(const std::string& address)
{
    GDBusConnection* const connection = g_dbus_connection_new_for_address_sync(
        address.c_str(),
        static_cast<GDBusConnectionFlags>(G_DBUS_CONNECTION_FLAGS_AUTHENTICATION_CLIENT |
                                          G_DBUS_CONNECTION_FLAGS_MESSAGE_BUS_CONNECTION),
        nullptr, nullptr, nullptr);
    if (!connection)
        Die("no connection to the daemon");
    return connection;
}

void Answer(GDBusConnection*, const char*, const char*, const char*, const char* method,
            GVariant* parameters, GDBusMethodInvocation* invocation, gpointer)
{
    const char* text;
    g_variant_get(parameters, "(&s)", &text);
    if (std::strcmp(method, "Execute") != 0)
        g_dbus_method_invocation_return_value(invocation,
                                              g_variant_new("(s)", AnswerTo(text).c_str()));
    else if (std::strcmp(text, COMMAND) == 0)
        g_dbus_method_invocation_return_value(invocation, nullptr);
    else
        g_dbus_method_invocation_return_dbus_error(invocation, NAME, "refused");
}

template <class Ready>
void ServeBus(const std::string& address, Ready ready)
{
    GDBusConnection* const connection = Connect(address);
    GDBusNodeInfo* const info = g_dbus_node_info_new_for_xml(DESCRIPTION, nullptr);
    const GDBusInterfaceVTable table = {Answer, nullptr, nullptr, {}};
    g_dbus_connection_register_object(connection, PLACE, info->interfaces[0], &table, nullptr,
                                      nullptr, nullptr);
    g_bus_own_name_on_connection(
        connection, NAME, G_BUS_NAME_OWNER_FLAGS_NONE,
        [](GDBusConnection*, const char*, gpointer place) { (*static_cast<Ready*>(place))(); },
        nullptr, &ready, nullptr);
    g_main_loop_run(g_main_loop_new(nullptr, FALSE));
}

class Bus
{
public:
    explicit Bus(const Daemon& daemon)
        : server([&](auto ready) { ServeBus(daemon.Address(), ready); }),
          connection(Connect(daemon.Address()))
    {}
    Bus(const Bus&) = delete;
    Bus& operator=(const Bus&) = delete;
    ~Bus() { g_object_unref(connection); }

    std::string Request(const char* item)
    {
        GVariant* const answer = Call("Request", item, G_VARIANT_TYPE("(s)"));
        const char* text;
        g_variant_get(answer, "(&s)", &text);
        const std::string copy = text;
        g_variant_unref(answer);
        return copy;
    }
    std::size_t Ask(const char* item)
    {
        GVariant* const answer = Call("Request", item, G_VARIANT_TYPE("(s)"));
        GVariant* const child = g_variant_get_child_value(answer, 0);
        gsize size;
        g_variant_get_string(child, &size);
        g_variant_unref(child);
        g_variant_unref(answer);
        return size + 1;
    }
    bool Execute()
    {
        g_variant_unref(Call("Execute", COMMAND, G_VARIANT_TYPE_UNIT));
        return true;
    }

private:
    GVariant* Call(const char* method, const char* text, const GVariantType* type) const
    {
        GVariant* const answer = g_dbus_connection_call_sync(
            connection, NAME, PLACE, NAME, method, g_variant_new("(s)", text), type,
            G_DBUS_CALL_FLAGS_NONE, static_cast<int>(TIMEOUT), nullptr, nullptr);
        if (!answer)
            Die("a call fails");
        return answer;
    }

    const Child server;
    GDBusConnection* connection;
};
#endif

struct Measures
{
    Measure<Answers> brief{"request", "short", {Amount::ITEMS, 1, true}};
    Measure<Answers> large{"request", "64KiB", {Amount::ITEMS, 1, true}};
    Measure<Answers> execute{"execute", "short", {Amount::ITEMS, 1, true}};
};

template <class Partner>
void Add(Measures& measures, const char* side, Partner& partner)
{
    measures.brief.Side(
        side, [&partner] { return partner.Ask("brief"); },
        [&partner] { return Answers{partner.Request("brief")}; });
    measures.large.Side(
        side, [&partner] { return partner.Ask("large"); },
        [&partner] { return Answers{partner.Request("large")}; });
    measures.execute.Side(
        side, [&partner] { return partner.Execute(); },
        [&partner] { return Answers{partner.Execute() ? "done" : "refused"}; });
}
} // namespace

// The servers begin in front of all else: nothing is inherited but what they need.
int main(int argc, char** argv)
{
    const Folder folder;
    std::string absent = OSTRA_ABSENT_PEERS;
    Sockets sockets;
#if HAVE_GDBUS
    const Daemon daemon;
    std::optional<Bus> bus;
    if (daemon.Address().empty())
        absent += "gdbus:dbus-daemon ";
    else
        bus.emplace(daemon);
#endif
    Ostra ostra;
    Measures measures;
    Add(measures, "ostra", ostra);
#if HAVE_GDBUS
    if (bus)
        Add(measures, "gdbus", *bus);
#endif
    Add(measures, "socket", sockets);
    return Job::Run(argc, argv, absent.c_str());
}
