// tests/Support/ConversationLibrary.h: partners written with the platform's own library for
// conversations, which only that platform has.
#pragma once

#include <windows.h>

#include <ddeml.h>

#include <cstdio>
#include <string>

namespace conversation_library
{
inline constexpr unsigned LONG_TIME = 60000; // Milliseconds: nobody waits that long.
inline constexpr unsigned SHORT_TIME = 300;  // Where no answer comes.

inline DWORD library; // The instance that the library knows the process by.
inline bool is_connected;

inline void Tell(const std::string& line)
{
    std::puts(line.c_str());
    std::fflush(stdout);
}

inline HSZ HandleOf(const char* text)
{
    return DdeCreateStringHandleA(library, text, CP_WINANSI);
}

inline std::string TextOf(HSZ name)
{
    char text[256] = "";
    DdeQueryStringA(library, name, text, sizeof text, CP_WINANSI);
    return text;
}

// Up to the terminator: the library rounds sizes up.
inline std::string ValueOf(HDDEDATA data)
{
    const DWORD size = DdeGetData(data, nullptr, 0, 0);
    std::string bytes(size, '\0');
    DdeGetData(data, reinterpret_cast<BYTE*>(bytes.data()), size, 0);
    return bytes.c_str();
}

inline HDDEDATA DataOf(const std::string& text, HSZ item)
{
    const auto bytes = reinterpret_cast<BYTE*>(const_cast<char*>(text.c_str()));
    return DdeCreateDataHandle(library, bytes, static_cast<DWORD>(text.size()) + 1, 0, item,
                               CF_TEXT, 0);
}

inline HDDEDATA AsResult(UINT_PTR value)
{
    return reinterpret_cast<HDDEDATA>(value);
}

// Answers to the service's name until something posts the end; the process's status.
inline int Serve(const std::string& service, PFNCALLBACK answer)
{
    if (DdeInitializeA(&library, answer, APPCLASS_STANDARD, 0) != DMLERR_NO_ERROR)
        return 1;
    DdeNameService(library, HandleOf(service.c_str()), nullptr, DNS_REGISTER);
    Tell("ready");
    MSG message;
    while (GetMessageA(&message, nullptr, 0, 0) > 0)
        DispatchMessageA(&message);
    DdeUninitialize(library);
    return 0;
}

inline HDDEDATA CALLBACK AskByLibrary(UINT type, UINT, HCONV, HSZ, HSZ, HDDEDATA, ULONG_PTR,
                                      ULONG_PTR)
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
        : conversation(DdeConnect(library, HandleOf(service.c_str()), HandleOf(topic), nullptr))
    {
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
    std::string Execute(const std::string& text, unsigned time)
    {
        return Transact(text.c_str(), text.size() + 1, nullptr, XTYP_EXECUTE, time) ? "done"
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
                                    item ? HandleOf(item) : nullptr, item ? CF_TEXT : 0, type, time,
                                    nullptr);
    }

    HCONV conversation;
};

// Dispatches what comes until that holds.
template <class T_Condition>
bool PumpUntil(T_Condition condition)
{
    for (const DWORD start = GetTickCount(); GetTickCount() - start < LONG_TIME; Sleep(1)) {
        MSG message;
        while (PeekMessageA(&message, nullptr, 0, 0, PM_REMOVE))
            DispatchMessageA(&message);
        if (condition())
            return true;
    }
    return false;
}
} // namespace conversation_library
