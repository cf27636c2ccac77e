// examples/cookbook/conversing.cpp: prices that other programs may ask for, and a question.
#include <Ostra/Ostra.h>

#include <atomic>
#include <cstdio>
#include <cstring>
#include <thread>

#include <windows.h>

class Prices : public CT_DDEServer
{
public:
    Prices() : CT_DDEServer(GetModuleHandleA(nullptr), "Prices") {}

    int vb_Initiate(HWND, unsigned short) override { return 1; } // every topic
    int vb_Request(HWND client, unsigned short item, unsigned short) override
    {
        char name[256] = "";
        GlobalGetAtomNameA(item, name, sizeof name);
        if (std::strcmp(name, "apple") != 0)
            return 0;
        v_SendData(client, item, "42 cents");
        return 1;
    }
};

// The thread that makes a server dispatches its messages.
static void Serve(std::atomic<HWND>* window)
{
    const Prices prices;
    *window = prices.h_GetWindow();
    for (MSG message;; WaitMessage())
        while (PeekMessageA(&message, nullptr, 0, 0, PM_REMOVE)) {
            if (message.message == WM_USER)
                return;
            DispatchMessageA(&message);
        }
}

int main()
{
    std::atomic<HWND> window = nullptr;
    std::thread server(Serve, &window);
    while (!window)
        std::this_thread::yield();

    CT_DDEClient client(GetModuleHandleA(nullptr));
    const HWND partner = client.h_DDEInitiate("Prices", "Fruit");
    CT_Buffer text;
    if (partner && client.b_DDERequest(partner, "apple", 5000, &text))
        std::printf("apple: %s\n", static_cast<const char*>(text.qcv_Get()));
    if (partner && !client.b_DDERequest(partner, "stone", 5000, &text))
        std::printf("stone: refused\n");
    client.v_DDETerminate(partner);

    // The same at once, for numbers.
    CT_DDEClient::sv_SetInstance(GetModuleHandleA(nullptr));
    std::printf("apple: %d\n", i_DDERequest("Prices", "Fruit", "apple", 5000));

    PostMessageA(window, WM_USER, 0, 0);
    server.join();
    std::printf("nobody: %d\n", i_DDERequest("Prices", "Fruit", "apple", 5000));
    return CT_ErrorManager::spco_Get()->b_IsSetError();
}
