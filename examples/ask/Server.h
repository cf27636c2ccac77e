// examples/ask/Server.h: the side that answers.
#pragma once

#include "Words.h"

#include <Ostra/Frame/Platform.h>
#include <System/DDE/DDEServer.h>

#include <functional>
#include <string>
#include <vector>

namespace ask
{
class Server : public CT_DDEServer
{
public:
    using Tell = std::function<void(const common::Failure& reason)>;

    // The names and the words have to stay. Tells what can't be kept.
    Server(const std::string& application, const std::string& topic, Words& words, Tell tell);
    // Ends all conversations.
    ~Server();

    // Whether another one answers to the same names. Two that begin at the same time both see each
    // other.
    bool IsSecond();

    // Serves until WM_CLOSE comes.
    void Run();

    int vb_Initiate(HWND client, unsigned short topic) override;
    int vb_Request(HWND client, unsigned short item, unsigned short format) override;
    void vv_Terminate(HWND client) override;

private:
    void Dispatch(const tagMSG& message);
    void DropTheDead();
    bool Execute(HWND client, void* block);

    const std::string& service;
    const std::string& subject;
    Words& words;
    Tell tell;
    HWND search = nullptr;     // A window of this program that isn't answered.
    std::vector<HWND> clients; // In conversation.
};
} // namespace ask
