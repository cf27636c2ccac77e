// tests/System/DDE/DDESupport.h: partners for conversations.
#pragma once

#include <System/DDE/DDEServer.h>

#include <windows.h>

#include <gtest/gtest.h>

#include <atomic>
#include <cstdio>
#include <cstring>
#include <functional>
#include <string>
#include <thread>
#include <vector>

namespace dde
{
constexpr UINT INITIATE = 0x3E0, TERMINATE = 0x3E1, ACK = 0x3E4, DATA = 0x3E5, REQUEST = 0x3E6;
constexpr UINT POKE = 0x3E7, EXECUTE = 0x3E8;
constexpr UINT QUIT = WM_USER + 99;
constexpr WORD RESPONSE = 0x1000, RELEASE = 0x2000, ACK_REQUEST = 0x8000;

// The platform copies the block of each message that is posted, within a process too, and posts no
// broken ones.
#ifdef _WIN32
constexpr bool COPIES = true;
#else
constexpr bool COPIES = false;
#endif

// A message with its parts.
struct Entry
{
    UINT message = 0;
    HWND from = nullptr;
    UINT_PTR low = 0;
    UINT_PTR high = 0;

    bool operator==(const Entry&) const = default;
};

inline HINSTANCE Module()
{
    return GetModuleHandleA(nullptr);
}

inline LPARAM Words(unsigned low, unsigned high)
{
    return static_cast<LPARAM>((low & 0xFFFF) | high << 16);
}

inline HWND AsWindow(WPARAM value)
{
    return reinterpret_cast<HWND>(value);
}

inline WPARAM AsFirst(HWND window)
{
    return reinterpret_cast<WPARAM>(window);
}

inline HGLOBAL AsBlock(UINT_PTR value)
{
    return reinterpret_cast<HGLOBAL>(value);
}

inline bool IsThere(HGLOBAL block)
{
    return GlobalSize(block) != 0;
}

// A block with a value and its terminator.
inline UINT_PTR Block(WORD flags, const std::string& text, WORD format = 1)
{
    const WORD head[] = {flags, format};
    const HGLOBAL block =
        GlobalAlloc(GMEM_MOVEABLE | GMEM_DDESHARE, sizeof(head) + text.size() + 1);
    char* const bytes = static_cast<char*>(GlobalLock(block));
    std::memcpy(bytes, head, sizeof(head));
    std::memcpy(bytes + sizeof(head), text.c_str(), text.size() + 1);
    GlobalUnlock(block);
    return reinterpret_cast<UINT_PTR>(block);
}

inline std::string BytesOf(UINT_PTR block)
{
    const SIZE_T size = GlobalSize(AsBlock(block));
    const char* const bytes = static_cast<const char*>(GlobalLock(AsBlock(block)));
    const std::string text(bytes, size);
    GlobalUnlock(AsBlock(block));
    return text;
}

inline std::string NameOf(ATOM atom)
{
    char name[256] = "";
    GlobalGetAtomNameA(atom, name, sizeof(name));
    return name;
}

// Dispatches what comes for the thread's windows until QUIT.
inline void Serve()
{
    MSG message;
    for (;;) {
        while (PeekMessageA(&message, nullptr, 0, 0, PM_REMOVE)) {
            if (message.message == QUIT)
                return;
            DispatchMessageA(&message);
        }
        WaitMessage();
    }
}

// Dispatches all that waits for the thread.
inline void Pump()
{
    MSG message;
    while (PeekMessageA(&message, nullptr, 0, 0, PM_REMOVE))
        DispatchMessageA(&message);
}

// A window that does what a function says.
class Window
{
public:
    using Behaviour = std::function<LRESULT(HWND window, UINT message, WPARAM, LPARAM)>;

    explicit Window(Behaviour what, const char* name = "OstraPartner") : behaviour(std::move(what))
    {
        WNDCLASSA facts = {};
        facts.lpfnWndProc = Procedure;
        facts.cbWndExtra = sizeof(void*);
        facts.lpszClassName = name;
        RegisterClassA(&facts);
        handle = CreateWindowExA(0, name, nullptr, WS_POPUP, 0, 0, 0, 0, nullptr, nullptr, nullptr,
                                 nullptr);
        SetWindowLongPtrA(handle, 0, reinterpret_cast<LONG_PTR>(this));
    }
    Window(const Window&) = delete;
    Window& operator=(const Window&) = delete;
    ~Window() { DestroyWindow(handle); }

    operator HWND() const { return handle; }

private:
    static LRESULT CALLBACK Procedure(HWND window, UINT message, WPARAM first, LPARAM second)
    {
        const auto self = reinterpret_cast<Window*>(GetWindowLongPtrA(window, 0));
        return self ? self->behaviour(window, message, first, second)
                    : DefWindowProcA(window, message, first, second);
    }

    Behaviour behaviour;
    HWND handle;
};

// A client that writes down what it is told.
class Client : public Window
{
public:
    Client()
        : Window([this](HWND window, UINT message, WPARAM first, LPARAM second) -> LRESULT {
              // Whoever looks for partners, in another process too, asks all windows.
              if (message <= INITIATE || message > EXECUTE)
                  return DefWindowProcA(window, message, first, second);
              Entry entry{message, AsWindow(first), 0, 0};
              // An acknowledgement that is sent answers an initiate: it has words.
              if (message == ACK && !listed)
                  entry.low = second & 0xFFFF, entry.high = second >> 16 & 0xFFFF;
              else {
                  UnpackDDElParam(message, second, &entry.low, &entry.high);
                  FreeDDElParam(message, second);
              }
              listed = listed || message == ACK;
              log.push_back(entry);
              return 0;
          })
    {
        log.reserve(16); // Some messages come while the heap is exhausted.
    }

    void Initiate(HWND server, const char* application, const char* topic)
    {
        const ATOM first = GlobalAddAtomA(application), second = GlobalAddAtomA(topic);
        listed = false;
        SendMessageA(server, INITIATE, AsFirst(*this), Words(first, second));
        GlobalDeleteAtom(first);
        GlobalDeleteAtom(second);
    }
    // What has come since.
    std::vector<Entry> Take()
    {
        Pump();
        return std::exchange(log, {});
    }

private:
    bool listed = false;
    std::vector<Entry> log;
};

// A thread with a partner, which is made and ended there.
template <class T_Partner>
class Served
{
public:
    template <class T_Make>
    explicit Served(T_Make make)
        : thread([this, make] {
              T_Partner partner = make();
              id = partner.Handle();
              Serve();
          })
    {
        while (!id)
            std::this_thread::yield();
    }
    Served(const Served&) = delete;
    ~Served()
    {
        PostMessageA(id, QUIT, 0, 0);
        thread.join();
    }
    HWND Handle() const { return id; }

private:
    std::atomic<HWND> id = nullptr;
    std::thread thread;
};
} // namespace dde
