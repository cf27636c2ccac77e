// System/DDE/DDEClient.h: the side that asks, in a conversation between programs.
#pragma once

#include <Ostra/Frame/Export.h>
#include <Ostra/Frame/Platform.h>

#include <cstddef>

class CT_Buffer;

// Talks to a server of another program, or of this one, in the platform's data exchange by window
// messages: finds the server by the names of application and topic, asks for items, which are
// texts, sends commands, and ends the conversation. One object may hold several conversations, one
// after the other: h_DDEInitiate, any number of requests and commands, v_DDETerminate.
//
// Each operation waits on a hidden window, and takes the messages of that window only.
//
// Units:   timeouts are milliseconds, as the system's timers have them. Texts are bytes of any code
//          page.
// Owns:    its window.
// Reports: what the system refuses, as a system error; 60006 where the room for a new object can't
//          be had. No server, a refusal and a time-out are no errors.
// Caller:  begins no two conversations at once in a process.
// Threads: the one that made the object, as its window belongs to it.
class OSTRA_API CT_DDEClient
{
public:
    // Without a window if it can't be made, or while an error is set.
    explicit CT_DDEClient(HINSTANCE h_NewInstance);
    CT_DDEClient(const CT_DDEClient&) = delete;
    CT_DDEClient& operator=(const CT_DDEClient&) = delete;
    ~CT_DDEClient() { v_Exit(); }

    static void* operator new(std::size_t n_Size) noexcept;
    static void* operator new(std::size_t, void* pv_Place) noexcept { return pv_Place; }
    static void operator delete(void* pv_Object);

    // The module that windows of i_DDERequest belong to.
    static void sv_SetInstance(HINSTANCE h_NewInstance);

    // The server that answers first; null for none. Kept: the atoms in the answers of others stay.
    HWND h_DDEInitiate(const char* qccz_Application, const char* qccz_Topic);
    // Fetches an item as text, with its terminator. False for a refusal, and when the time is out.
    int b_DDERequest(HWND h_Server, const char* qccz_Item, unsigned n_Timeout, CT_Buffer* pco_Out);
    // Sends a command. True if the server says that it has carried it out.
    int b_DDEExecute(HWND h_Server, const char* qccz_Command, unsigned n_Timeout);
    // Waits for the server's own farewell, three seconds at most.
    void v_DDETerminate(HWND h_Server);

    // What the system calls for the windows of the class.
    static LRESULT OSTRA_ENTRY sl_DDEClientWindowProc(HWND h_Window, unsigned n_Message,
                                                      WPARAM n_First, LPARAM l_Second);

    static const char* sqcz_ClassName;
    static char sac_Buffer[256]; // Kept: nothing uses it.

private:
    void v_Null();
    void v_Init(HINSTANCE h_NewInstance);
    void v_Keep();
    void v_Exit();
    void v_RegisterWindowClass();
    void v_DispatchMessage(tagMSG* pso_Message);
    bool b_SetTimer(unsigned n_Timeout);
    void v_KillTimer();
    template <class T_End>
    tagMSG so_Wait(T_End f_End);
    bool b_TakeData(HWND h_Server, LPARAM l_Parameter, CT_Buffer* pco_Out);

    // The order of the members is part of the interface.
    HINSTANCE h_Instance;
    HWND h_Window;
    unsigned n_Timer; // while a wait runs

    static HWND sh_DDEServer;
    static HINSTANCE sh_Instance;

    friend OSTRA_API int i_DDERequest(const char* qccz_Application, const char* qccz_Topic,
                                      const char* qccz_Item, unsigned n_Timeout);
};

// Asks once: the item's text read as a decimal number, the nearest of 32 bits for one beyond them,
// 100000 if no server answers, 100001 if the request fails, which then leaves no error. With one
// set before there is no window to ask with: the result is 100000, and the error stays.
OSTRA_API int i_DDERequest(const char* qccz_Application, const char* qccz_Topic,
                           const char* qccz_Item, unsigned n_Timeout);
// Sends the text, as an atom, to a window of the class: its answer, 1000 if there is no such
// window.
OSTRA_API LONG i4_VarnokRequest(const char* qccz_Class, const char* qccz_Text);
