// examples/ask/Server.cpp
#include "Server.h"

#include "Search.h"

#include <Common/Failure.h>

#include <windows.h>
#ifdef _WIN32
#include <dde.h>
#endif

#include <algorithm>
#include <cstring>

namespace ask
{
using namespace common;

namespace
{
constexpr unsigned short TEXT_FORMAT = 1; // The one that is spoken.
constexpr UINT_PTR POSITIVE = 0x8000;

std::string NameOf(ATOM atom)
{
    char name[4 * 256] = "";
    GlobalGetAtomNameA(atom, name, sizeof name);
    return name;
}

// What a block holds in front of its terminator.
std::string TextOf(HGLOBAL block)
{
    std::string text;
    if (const auto* const bytes = static_cast<const char*>(GlobalLock(block))) {
        text.assign(bytes, GlobalSize(block));
        text.resize(std::min(text.find('\0'), text.size()));
        GlobalUnlock(block);
    }
    return text;
}
} // namespace

Server::Server(const std::string& application, const std::string& topic, Words& toServe, Tell told)
    : CT_DDEServer(GetModuleHandleA(nullptr), application.c_str()),
      service(application),
      subject(topic),
      words(toServe),
      tell(std::move(told))
{}

// The base's destructor would end them too late for what is overridden here.
Server::~Server()
{
    while (!clients.empty())
        v_Terminate(clients.back());
}

bool Server::IsSecond()
{
    Search others;
    search = others.Window();
    const bool is = !Failing() && others.Count(service, subject) != 0;
    search = nullptr;
    return is;
}

void Server::Run()
{
    MSG message;
    for (;;) {
        while (PeekMessageA(&message, nullptr, 0, 0, PM_REMOVE)) {
            if (message.hwnd == h_GetWindow() && message.message == WM_CLOSE)
                return;
            Dispatch(message);
        }
        WaitMessage();
    }
}

// The base knows no commands.
void Server::Dispatch(const MSG& message)
{
    if (message.hwnd != h_GetWindow() || message.message != WM_DDE_EXECUTE) {
        DispatchMessageA(&message);
        return;
    }
    const auto client = reinterpret_cast<HWND>(message.wParam);
    UINT_PTR block = 0;
    UnpackDDElParam(WM_DDE_EXECUTE, message.lParam, nullptr, &block);
    const bool isDone = Execute(client, reinterpret_cast<HGLOBAL>(block));
    const LPARAM answer = PackDDElParam(WM_DDE_ACK, isDone ? POSITIVE : 0, block);
    if (!PostMessageA(client, WM_DDE_ACK, reinterpret_cast<WPARAM>(h_GetWindow()), answer))
        FreeDDElParam(WM_DDE_ACK, answer);
}

bool Server::Execute(HWND client, void* block)
{
    if (std::find(clients.begin(), clients.end(), client) == clients.end())
        return false;
    const std::optional<Addition> addition = ReadCommand(TextOf(block));
    if (!addition)
        return false;
    Failure reason;
    const Words::Outcome outcome = words.Add(*addition, &reason);
    if (outcome == Words::Outcome::FAILED)
        tell(reason);
    return outcome == Words::Outcome::KEPT || outcome == Words::Outcome::KNOWN;
}

// Those that were killed have said no farewell.
void Server::DropTheDead()
{
    const std::vector<HWND> all = clients;
    for (const HWND client : all)
        if (!IsWindow(client))
            v_Terminate(client);
}

int Server::vb_Initiate(HWND client, unsigned short topic)
{
    DropTheDead();
    if (client == search || GlobalFindAtomA(subject.c_str()) != topic)
        return 0;
    // The client deletes the names that come with the answer.
    GlobalAddAtomA(service.c_str());
    GlobalAddAtomA(subject.c_str());
    clients.push_back(client);
    return 1;
}

int Server::vb_Request(HWND client, unsigned short item, unsigned short format)
{
    const std::string* const answer = words.Find(NameOf(item));
    if (!answer || format != TEXT_FORMAT)
        return 0;
    v_SendData(client, item, answer->c_str());
    return 1;
}

void Server::vv_Terminate(HWND client)
{
    std::erase(clients, client);
}
} // namespace ask
