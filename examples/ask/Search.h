// examples/ask/Search.h: who else answers to a name.
#pragma once

#include <Ostra/Frame/Platform.h>

#include <string>

namespace ask
{
// A window that asks all others and counts the answers, where CT_DDEClient takes the first and can't
// be told from other clients.
class Search
{
public:
    // Sets an error where there can't be a window.
    Search();
    Search(const Search&) = delete;
    Search& operator=(const Search&) = delete;
    ~Search();

    HWND Window() const { return window; }
    // How many answer; each is told at once that the conversation is over.
    unsigned Count(const std::string& application, const std::string& topic);

private:
    HWND window = nullptr;
};
} // namespace ask
