// System/DDE/DDEServer.h: the side that answers, in conversations between programs.
#pragma once

#include <Ostra/ARRAY/VoidArray.h>
#include <Ostra/Frame/Export.h>
#include <Ostra/Frame/Platform.h>
#include <Ostra/Frame/RawCopy.h>

#include <cstddef>

// Serves one name in the platform's data exchange by window messages. The object has a hidden
// window and the list of the windows that talk to it, in the order of their arrival; messages
// become five virtual operations. The base refuses everything: a server overrides what it serves.
//
// Units:   topics and items are global atoms, values bytes.
// Owns:    its window; clients are kept by their handles.
// Reports: a window that can't be made, and v_SendData without memory, as system errors; 60006
//          where the heap is exhausted. Messages that can't be delivered are lost in silence.
// Caller:  keeps the service name for the life of the object, and deletes servers by their own
//          class: the destructor isn't virtual. It ends all conversations, but what a derived class
//          overrides is gone by then, so that such a class ends them itself. Makes no two servers
//          at once on different threads. A copy by reference is for objects that run no more.
// Threads: the one that made the object, on which its messages are dispatched.
class OSTRA_API CT_DDEServer
{
public:
    // ---- Life -------------------------------------------------------------------------------

    // Without a window: serves nothing.
    CT_DDEServer();
    CT_DDEServer(HINSTANCE h_NewInstance, const char* qccz_NewService);
    // Kept: copies the members, the words of the list without a hold on its block.
    OSTRA_RAW_COPY CT_DDEServer(const CT_DDEServer& co_Other);
    OSTRA_RAW_COPY CT_DDEServer& operator=(const CT_DDEServer& co_Other);
    ~CT_DDEServer() { v_Exit(); }

    static void* operator new(std::size_t n_Size) noexcept;
    static void* operator new(std::size_t, void* pv_Place) noexcept { return pv_Place; }
    static void operator delete(void* pv_Object);

    // ---- What derived classes override --------------------------------------------------------

    // Whether the topic is served.
    virtual int vb_Initiate(HWND h_Client, unsigned short u_Topic);
    // Takes a value, which is valid for the call and has a terminator behind it, whatever the
    // client sent; the lowest bit of the result answers. An ordinal other than 0 asks for
    // vv_AfterPoke.
    virtual int vb_Poke(HWND h_Client, unsigned short u_Item, void* pv_Data, unsigned* pn_Ordinal);
    // Called when the acknowledgement is on its way: the place for long work.
    virtual void vv_AfterPoke(unsigned n_Ordinal);
    // 0 refuses; everything else says that v_SendData or v_Acknowledge was called, or will be.
    virtual int vb_Request(HWND h_Client, unsigned short u_Item, unsigned short u_Format);
    // A conversation ends.
    virtual void vv_Terminate(HWND h_Client);

    // ---- Answers ----------------------------------------------------------------------------

    HWND h_GetWindow() const { return h_Window; }
    // The value of a request, with its terminator.
    void v_SendData(HWND h_Client, unsigned short u_Item, const char* qccz_Text);
    // Of both truth values the lowest bit counts.
    void v_Acknowledge(HWND h_Client, unsigned short u_Item, int b_Busy, int b_Ack);
    void v_AcknowledgeTerminate(HWND h_Client, unsigned short u_Item, int b_Busy, int b_Ack);
    // Ends a conversation; nothing for a window that is in none.
    void v_Terminate(HWND h_Client);

    // What the system calls for the windows of the class.
    static LRESULT OSTRA_ENTRY sl_DDEServerWindowProc(HWND h_Window, unsigned n_Message,
                                                      WPARAM n_First, LPARAM l_Second);

    static const char* sqcz_ClassName;

private:
    void v_Null();
    void v_Init(HINSTANCE h_NewInstance, const char* qccz_NewService);
    void v_Keep();
    void v_Exit();
    void v_RegisterWindowClass();
    void v_Initiate(HWND h_Client, unsigned short u_Application, unsigned short u_Topic);
    void v_Poke(HWND h_Client, unsigned short u_Item, void* h_Block);
    void v_Request(HWND h_Client, unsigned short u_Item, unsigned short u_Format);
    void v_Copy(const CT_DDEServer& co_Other);
    bool b_Handle(unsigned n_Message, WPARAM n_First, LPARAM l_Second);

    // The order of the members is part of the interface.
    HINSTANCE h_Instance;
    HWND h_Window;
    CT_VoidArray co_Clients; // HWND, in conversation
    const char* qcz_Service;

    // Kept: stays set when its window can't be made.
    static CT_DDEServer* spco_CreatedObject;
};
