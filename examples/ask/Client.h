// examples/ask/Client.h: the side that asks.
#pragma once

#include <Ostra/Frame/Platform.h>
#include <System/DDE/DDEClient.h>

#include <string>

namespace ask
{
// Whether the platform takes the text for a name, of an application, a topic or an item.
bool IsName(const std::string& text);

enum class Answer
{
    GIVEN,
    REFUSED,
    LATE,  // The time is out.
    GONE,  // The server has ended meanwhile.
    FAILED // With an error set.
};

// A conversation with a server, which ends with the object.
class Conversation
{
public:
    explicit Conversation(unsigned milliseconds);
    Conversation(const Conversation&) = delete;
    Conversation& operator=(const Conversation&) = delete;
    ~Conversation();

    // Looks for a server. False when nobody answers, and with an error set.
    bool Begin(const std::string& application, const std::string& topic);

    // After LATE, GONE and FAILED the conversation is of no more use.
    Answer Request(const std::string& item, std::string* text);
    Answer Execute(const std::string& command);

private:
    template <class Body>
    Answer Timed(Body body);

    CT_DDEClient client;
    unsigned timeout;
    HWND server = nullptr;
};
} // namespace ask
