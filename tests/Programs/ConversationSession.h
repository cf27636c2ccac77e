// tests/Programs/ConversationSession.h: processes for conversations, what they share, and what they
// leave behind in the session's folder.
#pragma once

#include <windows.h>

#include "../../winapi/Messages/Wire.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/mman.h>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <sys/wait.h>
#include <unistd.h>

#include <atomic>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <functional>
#include <string>
#include <vector>

#include <sqlite3.h>

namespace fs = std::filesystem;

constexpr unsigned PATIENCE = 60000; // Milliseconds for what has to happen.
constexpr uid_t ANOTHER_USER = 65534;

// In the order in which a conversation comes to them.
enum class Step
{
    NONE,
    INITIATE, // Within the client's broadcast.
    REQUEST,  // Before the answer,
    DATA,     // and behind it.
    EXECUTE,
    EXECUTED,
    TERMINATE
};

// A server, and who talks to it.
struct Pair
{
    // The server's, at that step: one of both dies.
    void ComeTo(Step reached)
    {
        if (step != reached)
            return;
        isReached = true;
        step = Step::NONE;
        kill(killsServer ? getpid() : pid_t(victim), SIGKILL);
    }

    char service[32];
    std::atomic<HWND> server;
    std::atomic<unsigned> life; // Another one for each server of the pair.
    std::atomic<Step> step;
    std::atomic<bool> killsServer, isReached;
    std::atomic<pid_t> victim; // The client that dies.
};

struct Shared
{
    std::atomic<unsigned> conversations, requests, askedAgain, milliseconds, kills, dropped,
        longest;
    std::atomic<unsigned long long> bytes;
    std::atomic<bool> isOver, isReady;
    unsigned pairs;
    Pair list[20];
};
inline Shared* shared;

inline void Raise(std::atomic<unsigned>& most, unsigned value)
{
    for (unsigned before = most; before < value && !most.compare_exchange_weak(before, value);) {
    }
}

inline unsigned Now()
{
    timespec now;
    clock_gettime(CLOCK_MONOTONIC, &now);
    return static_cast<unsigned>(now.tv_sec * 1000 + now.tv_nsec / 1000000);
}

inline unsigned Seed(unsigned usual)
{
    const char* const seed = std::getenv("OSTRA_SEED");
    return seed ? static_cast<unsigned>(std::strtoul(seed, nullptr, 10)) : usual;
}

// ---- Processes ----------------------------------------------------------------------------

[[noreturn]] inline void Fail(const std::string& what)
{
    std::printf("%s\n", what.c_str());
    std::exit(1);
}

inline Pair& NewPair()
{
    Pair& pair = shared->list[shared->pairs++];
    std::snprintf(pair.service, sizeof pair.service, "Sweep%u", shared->pairs);
    return pair;
}

// A process that ends with the body's result, and with this one.
inline pid_t Start(const std::function<int()>& body)
{
    std::fflush(stdout);
    const pid_t child = fork();
    if (child < 0)
        Fail("no process can be made");
    if (child == 0) {
        prctl(PR_SET_PDEATHSIG, SIGKILL);
        std::exit(body());
    }
    return child;
}

// The status of a process that has to end.
inline int Await(pid_t child, const std::string& what)
{
    int status = 0;
    for (const unsigned start = Now(); waitpid(child, &status, WNOHANG) == 0; usleep(1000))
        if (Now() - start > PATIENCE)
            Fail(what + " hangs");
    return status;
}

inline void AwaitSuccess(pid_t child, const std::string& what)
{
    const int status = Await(child, what);
    if (!WIFEXITED(status) || WEXITSTATUS(status) != 0)
        Fail(what + " has failed");
}

inline void AwaitKilled(pid_t child)
{
    const int status = Await(child, "what was to be killed");
    if (!WIFSIGNALED(status) || WTERMSIG(status) != SIGKILL)
        Fail("what was to be killed has ended by itself");
}

inline void Kill(pid_t child)
{
    kill(child, SIGKILL);
    AwaitKilled(child);
}

inline pid_t StartServer(Pair& pair, int (*body)(Pair&))
{
    pair.server = nullptr;
    const pid_t server = Start([&] { return body(pair); });
    for (const unsigned start = Now(); !pair.server; usleep(200))
        if (Now() - start > PATIENCE || waitpid(server, nullptr, WNOHANG) != 0)
            Fail("a server does not begin");
    return server;
}

inline void EndServer(Pair& pair, pid_t server, UINT message)
{
    AwaitSuccess(Start([&] { return !PostMessageA(pair.server, message, 0, 0); }),
                 "the server's last message");
    AwaitSuccess(server, "a server");
}

// ---- The session --------------------------------------------------------------------------

inline std::string SessionFolder()
{
    return std::getenv("XDG_RUNTIME_DIR") + std::string("/ostra-winapi");
}

inline void Prepare(const char* place)
{
    const fs::path folder = fs::absolute(place);
    fs::remove_all(folder);
    fs::create_directories(folder);
    setenv("XDG_RUNTIME_DIR", folder.c_str(), 1);
    shared = static_cast<Shared*>(
        mmap(nullptr, sizeof(Shared), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0));
    if (shared == MAP_FAILED)
        Fail("no memory");
}

// What looks after those who have died.
inline int RunNext()
{
    const ATOM atom = GlobalAddAtomA("Next");
    return atom == 0 || GlobalDeleteAtom(atom) != 0;
}

inline std::vector<std::string> SocketsOf(const std::string& folder)
{
    std::vector<std::string> names;
    std::error_code ignored;
    for (const auto& entry : fs::directory_iterator(folder, ignored))
        if (entry.path().filename().string().find('-') == 16)
            names.push_back(entry.path().filename().string());
    return names;
}

inline int CountRows(sqlite3* database, const std::string& table)
{
    sqlite3_stmt* statement = nullptr;
    const std::string text = "SELECT count(*) FROM " + table;
    if (sqlite3_prepare_v2(database, text.c_str(), -1, &statement, nullptr) != SQLITE_OK ||
        sqlite3_step(statement) != SQLITE_ROW)
        Fail("the session can't be read");
    const int count = sqlite3_column_int(statement, 0);
    sqlite3_finalize(statement);
    return count;
}

// That many processes with a window each are there, and nothing of any other.
inline void ExpectRows(unsigned processes)
{
    sqlite3* database = nullptr;
    if (sqlite3_open((SessionFolder() + "/session.db").c_str(), &database) != SQLITE_OK)
        Fail("the session can't be opened");
    const int windows = CountRows(database, "win");
    const int atoms = CountRows(database, "atom") + CountRows(database, "hold");
    sqlite3_close(database);
    unsigned files = 0;
    for (const auto& entry : fs::directory_iterator(SessionFolder()))
        files += entry.path().filename().string().find("session.db") != 0;
    const auto sockets = static_cast<unsigned>(SocketsOf(SessionFolder()).size());
    if (windows != static_cast<int>(processes) || atoms || sockets != processes ||
        files != 2 * processes)
        Fail(std::to_string(windows) + " windows, " + std::to_string(atoms) + " rows of atoms, " +
             std::to_string(sockets) + " sockets and " + std::to_string(files) +
             " files are there, where " + std::to_string(processes) + " processes are");
}

// ---- Strangers ----------------------------------------------------------------------------

enum class Answer
{
    NOBODY, // Nobody listens there.
    DROPPED,
    SOME,
    NONE_IN_TIME
};

class Socket
{
public:
    explicit Socket(int number) : fd(number) {}
    Socket(const Socket&) = delete;
    Socket& operator=(const Socket&) = delete;
    ~Socket() { close(fd); }
    int Get() const { return fd; }

private:
    const int fd;
};

// A name in the current folder, for a path may be too long for an address.
inline sockaddr_un AddressOf(const std::string& name)
{
    sockaddr_un address = {};
    address.sun_family = AF_UNIX;
    name.copy(address.sun_path, sizeof address.sun_path - 1);
    return address;
}

// Connects to a socket in the current folder and sends that: what comes back?
inline Answer SendBytes(const std::string& name, const std::string& bytes)
{
    const sockaddr_un address = AddressOf(name);
    const Socket connection(socket(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0));
    if (connect(connection.Get(), reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0)
        return Answer::NOBODY;
    if (send(connection.Get(), bytes.data(), bytes.size(), MSG_NOSIGNAL) < 0)
        return Answer::DROPPED;
    pollfd ready{connection.Get(), POLLIN, 0};
    if (poll(&ready, 1, PATIENCE) != 1)
        return Answer::NONE_IN_TIME;
    char byte;
    return recv(connection.Get(), &byte, 1, 0) > 0 ? Answer::SOME : Answer::DROPPED;
}

// A whole record that posts the message to the server.
inline std::string PostingRecord(const Pair& pair, UINT message)
{
    winapi::Record record;
    record.kind = winapi::Record::POST;
    record.window = winapi::NumberOf(pair.server);
    record.message = message;
    return std::string(reinterpret_cast<const char*>(&record), sizeof record);
}

inline void BecomeAnotherUser()
{
    if (setgid(ANOTHER_USER) != 0 || setuid(ANOTHER_USER) != 0)
        Fail("no other user can be had");
}

// Sends the server that message as another user, whom no mode of a file holds up; then as this one.
inline void ExpectOnlyOwnUser(const Pair& pair, UINT message)
{
    const std::string bytes = PostingRecord(pair, message);
    const std::string name = SocketsOf(SessionFolder()).at(0);
    fs::current_path(SessionFolder());
    chmod(".", 0711);
    chmod(name.c_str(), 0777);
    AwaitSuccess(Start([&] {
                     BecomeAnotherUser();
                     return SendBytes(name, bytes) != Answer::DROPPED;
                 }),
                 "another user's record");
    chmod(".", 0700);
    if (SendBytes(name, bytes) != Answer::DROPPED)
        Fail("a post is answered");
}

// Another user's process listens where the server did; what it is told is a failure.
inline pid_t TakeServersPlace()
{
    const std::string name = SocketsOf(SessionFolder()).at(0);
    fs::current_path(SessionFolder());
    rename(name.c_str(), "aside");
    shared->isReady = false;
    const pid_t child = Start([&name] {
        const sockaddr_un address = AddressOf(name);
        const Socket listener(socket(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0));
        if (bind(listener.Get(), reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0)
            Fail("no socket can be made");
        BecomeAnotherUser();
        listen(listener.Get(), 5);
        shared->isReady = true;
        pollfd ready{listener.Get(), POLLIN, 0};
        if (poll(&ready, 1, PATIENCE) != 1)
            Fail("nobody comes to another user's socket");
        const Socket connection(accept(listener.Get(), nullptr, nullptr));
        char byte;
        return recv(connection.Get(), &byte, 1, 0) > 0 ? 1 : 0;
    });
    for (const unsigned start = Now(); !shared->isReady; usleep(200))
        if (Now() - start > PATIENCE)
            Fail("another user does not listen");
    return child;
}

// Behind TakeServersPlace.
inline void GiveServersPlaceBack()
{
    const std::string name = SocketsOf(SessionFolder()).at(0);
    if (rename("aside", name.c_str()) != 0)
        Fail("the server's socket is gone");
}
