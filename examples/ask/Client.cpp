// examples/ask/Client.cpp
#include "Client.h"

#include <Ostra/Buffer/Buffer.h>
#include <Common/Failure.h>

#include <windows.h>
#ifdef _WIN32
#include <dde.h>
#endif

#include <chrono>
#include <thread>

namespace ask
{
using namespace common;

namespace
{
using Clock = std::chrono::steady_clock;

constexpr unsigned GROWTH = 1024;
constexpr ATOM FIRST_NAMED = 0xC000; // Lower ones are numbers.
constexpr int TRIES = 5;
constexpr std::chrono::milliseconds PAUSE(5);
// The platform's clock of timers may be that much ahead.
constexpr std::chrono::milliseconds GRAIN(20);

#ifdef _WIN32
// A partner may acknowledge what it has answered by data, as the library of Wine does. The item that
// is asked for next would be refused by that if it had the name or the number of the one before. It
// has come when the partner takes messages again, and is taken away. False if that takes too long.
bool Settle(HWND server, unsigned timeout)
{
    if (!SendMessageTimeoutA(server, WM_NULL, 0, 0, SMTO_NORMAL, timeout, nullptr))
        return false;
    MSG message;
    while (PeekMessageA(&message, nullptr, WM_DDE_ACK, WM_DDE_ACK, PM_REMOVE))
        FreeDDElParam(WM_DDE_ACK, message.lParam);
    return true;
}
#else
// No partner here does that.
bool Settle(HWND, unsigned)
{
    return true;
}
#endif
} // namespace

// What looks like a number, as in #12, is one to the platform, and comes back in its plain form.
bool IsName(const std::string& text)
{
    char name[4 * 256] = "";
    const ATOM atom = GlobalAddAtomA(text.c_str());
    if (!atom)
        return false;
    GlobalGetAtomNameA(atom, name, sizeof name);
    GlobalDeleteAtom(atom);
    return atom >= FIRST_NAMED || text == name;
}

Conversation::Conversation(unsigned milliseconds)
    : client(GetModuleHandleA(nullptr)),
      timeout(milliseconds)
{}

Conversation::~Conversation()
{
    if (server && IsWindow(server))
        client.v_DDETerminate(server);
}

// Programs that begin at the same time take each other's names away, so one that was missed is
// asked again.
bool Conversation::Begin(const std::string& application, const std::string& topic)
{
    auto pause = PAUSE;
    for (int tries = 0; tries < TRIES && !server && !Failing(); ++tries) {
        if (tries)
            std::this_thread::sleep_for(pause *= 2);
        server = client.h_DDEInitiate(application.c_str(), topic.c_str());
    }
    return server != nullptr;
}

// The time tells a refusal from no answer.
template <class Body>
Answer Conversation::Timed(Body body)
{
    const Clock::time_point start = Clock::now();
    if (body())
        return Answer::GIVEN;
    if (!IsWindow(server)) {
        if (Failing())
            Failure::Take();
        server = nullptr;
        return Answer::GONE;
    }
    if (Failing())
        return Answer::FAILED;
    const bool isLate = Clock::now() - start >= std::chrono::milliseconds(timeout) - GRAIN;
    return isLate ? Answer::LATE : Answer::REFUSED;
}

Answer Conversation::Request(const std::string& item, std::string* text)
{
    return Timed([&] {
        CT_Buffer bytes(0, GROWTH);
        if (!Settle(server, timeout) ||
            !client.b_DDERequest(server, item.c_str(), timeout, &bytes) || Failing())
            return false;
        *text = static_cast<const char*>(bytes.qcv_Get());
        return true;
    });
}

Answer Conversation::Execute(const std::string& command)
{
    return Timed([&] { return client.b_DDEExecute(server, command.c_str(), timeout); });
}
} // namespace ask
