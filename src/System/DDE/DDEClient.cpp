// System/DDE/DDEClient.cpp: the side that asks.
#include <System/DDE/DDEClient.h>

#include <Ostra/Buffer/Buffer.h>
#include <Ostra/Frame/ErrorManager.h>
#include <Ostra/Frame/Report.h>
#include <System/DDE/Conversation.h>

#include <algorithm>
#include <climits>
#include <cstdlib>

static constexpr char qccz_Source[] = "System/DDE/DDEClient";

static constexpr UINT_PTR TIMER = 1;
static constexpr unsigned TERMINATE_TIME = 3000; // milliseconds
static constexpr unsigned GROWTH = 32;           // of a buffer that takes an item
static constexpr int NO_SERVER = 100000;
static constexpr int NO_ANSWER = 100001;
static constexpr LONG NO_WINDOW = 1000;

const char* CT_DDEClient::sqcz_ClassName = "VARNOK_DDEClient";
char CT_DDEClient::sac_Buffer[256];
HWND CT_DDEClient::sh_DDEServer;
HINSTANCE CT_DDEClient::sh_Instance;

void* CT_DDEClient::operator new(std::size_t n_Size) noexcept
{
    return CT_Report::spv_New(n_Size, qccz_Source);
}

void CT_DDEClient::operator delete(void* pv_Object)
{
    std::free(pv_Object);
}

void CT_DDEClient::sv_SetInstance(HINSTANCE h_NewInstance)
{
    sh_Instance = h_NewInstance;
}

// ---- The window ---------------------------------------------------------------------------

CT_DDEClient::CT_DDEClient(HINSTANCE h_NewInstance)
{
    v_Null();
    v_Init(h_NewInstance);
    v_Keep();
}

void CT_DDEClient::v_Null()
{
    h_Window = nullptr;
    n_Timer = 0;
}

void CT_DDEClient::v_Init(HINSTANCE h_NewInstance)
{
    h_Instance = h_NewInstance;
}

void CT_DDEClient::v_Keep()
{
    v_RegisterWindowClass();
    if (CT_Report::sb_IsSet())
        return;
    h_Window = h_CreateHidden(h_Instance, sqcz_ClassName);
    if (!h_Window)
        CT_Report::sv_System(qccz_Source);
}

void CT_DDEClient::v_RegisterWindowClass()
{
    if (!b_RegisterClass(h_Instance, sqcz_ClassName, sl_DDEClientWindowProc, 0))
        CT_Report::sv_System(qccz_Source);
}

void CT_DDEClient::v_Exit()
{
    if (n_Timer)
        v_KillTimer();
    if (h_Window)
        DestroyWindow(h_Window);
    h_Window = nullptr;
}

// Frees a value that comes when nobody waits for it any more.
static void v_Drop(LPARAM l_Parameter)
{
    UINT_PTR n_Block, n_Item;
    v_Unpack(DDE_DATA, l_Parameter, &n_Block, &n_Item);
    bool b_Release;
    {
        const CT_ValueBlock co_Block(h_Block(n_Block));
        b_Release = co_Block && co_Block.u_GetFlags() & HEAD_RELEASE;
    }
    if (b_Release)
        GlobalFree(h_Block(n_Block));
}

LRESULT OSTRA_ENTRY CT_DDEClient::sl_DDEClientWindowProc(HWND h_Window, unsigned n_Message,
                                                         WPARAM n_First, LPARAM l_Second)
{
    if (n_Message == DDE_DATA)
        v_Drop(l_Second);
    if (n_Message != DDE_ACK)
        return DefWindowProcA(h_Window, n_Message, n_First, l_Second);
    // Kept: the atoms of a second server stay.
    if (sh_DDEServer)
        return 0;
    sh_DDEServer = reinterpret_cast<HWND>(n_First);
    GlobalDeleteAtom(u_Low(l_Second));
    GlobalDeleteAtom(u_High(l_Second));
    return 0;
}

// ---- Waiting ------------------------------------------------------------------------------

bool CT_DDEClient::b_SetTimer(unsigned n_Timeout)
{
    n_Timer = static_cast<unsigned>(SetTimer(h_Window, TIMER, n_Timeout, nullptr));
    return n_Timer != 0;
}

void CT_DDEClient::v_KillTimer()
{
    // Without a window the system has chosen the number.
    KillTimer(h_Window, h_Window ? TIMER : n_Timer);
    n_Timer = 0;
}

void CT_DDEClient::v_DispatchMessage(tagMSG* pso_Message)
{
    TranslateMessage(pso_Message);
    DispatchMessageA(pso_Message);
}

// Serves the window until f_End takes one of its messages, or the time is out; that message.
template <class T_End>
tagMSG CT_DDEClient::so_Wait(T_End f_End)
{
    for (;;) {
        WaitMessage();
        MSG so_Message;
        while (PeekMessageA(&so_Message, h_Window, 0, 0, PM_REMOVE)) {
            if (so_Message.message == WM_TIMER || f_End(&so_Message))
                return so_Message;
            v_DispatchMessage(&so_Message);
        }
    }
}

// ---- Conversations ------------------------------------------------------------------------

HWND CT_DDEClient::h_DDEInitiate(const char* qccz_Application, const char* qccz_Topic)
{
    const ATOM u_Application = GlobalAddAtomA(qccz_Application);
    const ATOM u_Topic = GlobalAddAtomA(qccz_Topic);
    sh_DDEServer = nullptr;
    SendMessageA(HWND_BROADCAST, DDE_INITIATE, reinterpret_cast<WPARAM>(h_Window),
                 l_Pack(u_Application, u_Topic));
    GlobalDeleteAtom(u_Application);
    GlobalDeleteAtom(u_Topic);
    return sh_DDEServer;
}

int CT_DDEClient::b_DDERequest(HWND h_Server, const char* qccz_Item, unsigned n_Timeout,
                               CT_Buffer* pco_Out)
{
    const ATOM u_Item = GlobalAddAtomA(qccz_Item);
    if (!PostMessageA(h_Server, DDE_REQUEST, reinterpret_cast<WPARAM>(h_Window),
                      l_Pack(TEXT_FORMAT, u_Item))) {
        CT_Report::sv_System(qccz_Source);
        GlobalDeleteAtom(u_Item);
        return 0;
    }
    if (!b_SetTimer(n_Timeout)) {
        // Kept: the atom stays, for the server may still read it.
        CT_Report::sv_System(qccz_Source);
        return 0;
    }
    const MSG so_End = so_Wait([u_Item](MSG* pso_Message) {
        // Kept: data of any item are taken for the answer.
        if (pso_Message->message != DDE_ACK)
            return pso_Message->message == DDE_DATA;
        UINT_PTR n_Status, n_Answered;
        v_Unpack(DDE_ACK, pso_Message->lParam, &n_Status, &n_Answered);
        // The record is gone: what is dispatched must not name it.
        pso_Message->lParam =
            l_Pack(static_cast<unsigned>(n_Status), static_cast<unsigned>(n_Answered));
        // Kept: an acknowledgement for the item is a refusal, whatever its status says.
        return n_Answered == u_Item;
    });
    const bool b_Taken = so_End.message == DDE_DATA && b_TakeData(h_Server, so_End.lParam, pco_Out);
    GlobalDeleteAtom(u_Item);
    v_KillTimer();
    return b_Taken;
}

bool CT_DDEClient::b_TakeData(HWND h_Server, LPARAM l_Parameter, CT_Buffer* pco_Out)
{
    UINT_PTR n_Block, n_Item;
    v_Unpack(DDE_DATA, l_Parameter, &n_Block, &n_Item);
    bool b_Release;
    {
        const CT_ValueBlock co_Block(h_Block(n_Block));
        if (!co_Block)
            return false;
        const unsigned short u_Flags = co_Block.u_GetFlags();
        b_Release = u_Flags & HEAD_RELEASE;
        co_Block.v_CopyText(pco_Out, GROWTH);
        if (u_Flags & HEAD_ACK &&
            !b_PostAck(h_Server, h_Window, STATUS_ACK, static_cast<unsigned>(n_Item))) {
            GlobalDeleteAtom(static_cast<ATOM>(n_Item));
            b_Release = true;
        }
    }
    if (b_Release)
        GlobalFree(h_Block(n_Block));
    return true;
}

// A block with the text; null, reported, if there is none to be had.
static HGLOBAL h_MakeCommand(const char* qccz_Command)
{
    const std::size_t n_Size = std::strlen(qccz_Command) + 1;
    const HGLOBAL h_Command = GlobalAlloc(GMEM_DDESHARE, n_Size);
    void* const pv_Text = h_Command ? GlobalLock(h_Command) : nullptr;
    if (!pv_Text) {
        CT_Report::sv_System(qccz_Source);
        if (h_Command)
            GlobalFree(h_Command);
        return nullptr;
    }
    std::memcpy(pv_Text, qccz_Command, n_Size);
    GlobalUnlock(h_Command);
    return h_Command;
}

int CT_DDEClient::b_DDEExecute(HWND h_Server, const char* qccz_Command, unsigned n_Timeout)
{
    const HGLOBAL h_Command = h_MakeCommand(qccz_Command);
    if (!h_Command)
        return 0;
    if (!PostMessageA(h_Server, DDE_EXECUTE, reinterpret_cast<WPARAM>(h_Window),
                      reinterpret_cast<LPARAM>(h_Command))) {
        CT_Report::sv_System(qccz_Source);
        GlobalFree(h_Command);
        return 0;
    }
    if (!b_SetTimer(n_Timeout)) {
        // Kept: the block stays, for the server may still read it.
        CT_Report::sv_System(qccz_Source);
        return 0;
    }
    // Kept: any acknowledgement is taken for the command's.
    const MSG so_End =
        so_Wait([](const MSG* pcso_Message) { return pcso_Message->message == DDE_ACK; });
    UINT_PTR n_Status = 0;
    if (so_End.message == DDE_ACK) {
        UINT_PTR n_Block;
        v_Unpack(DDE_ACK, so_End.lParam, &n_Status, &n_Block);
        GlobalFree(h_Block(n_Block));
    }
    v_KillTimer();
    return (n_Status & STATUS_ACK) != 0;
}

void CT_DDEClient::v_DDETerminate(HWND h_Server)
{
    PostMessageA(h_Server, DDE_TERMINATE, reinterpret_cast<WPARAM>(h_Window), 0);
    if (!b_SetTimer(TERMINATE_TIME))
        return;
    so_Wait([](const MSG* pcso_Message) { return pcso_Message->message == DDE_TERMINATE; });
    v_KillTimer();
}

// ---- Plain functions ----------------------------------------------------------------------

// 0 for a text that is no number, and where the heap had no room for it. A number beyond 32 bits is
// the nearest within them: long differs by target.
static int i_ReadNumber(const CT_Buffer* pcco_Text)
{
    const void* const pcv_Text = pcco_Text->qcv_Get();
    if (!pcv_Text || !pcco_Text->n_GetUsedSize())
        return 0;
    const long long i8_Number = std::strtoll(static_cast<const char*>(pcv_Text), nullptr, 10);
    return static_cast<int>(std::clamp<long long>(i8_Number, INT_MIN, INT_MAX));
}

int i_DDERequest(const char* qccz_Application, const char* qccz_Topic, const char* qccz_Item,
                 unsigned n_Timeout)
{
    CT_DDEClient co_Client(CT_DDEClient::sh_Instance);
    const HWND h_Server = co_Client.h_DDEInitiate(qccz_Application, qccz_Topic);
    if (!h_Server)
        return NO_SERVER;
    int i_Answer = NO_ANSWER;
    CT_Buffer co_Text(0, GROWTH);
    if (co_Client.b_DDERequest(h_Server, qccz_Item, n_Timeout, &co_Text))
        i_Answer = i_ReadNumber(&co_Text);
    else if (CT_Report::sb_Failed(qccz_Source))
        CT_ErrorManager::spco_Get()->v_ClearError();
    co_Client.v_DDETerminate(h_Server);
    return i_Answer;
}

LONG i4_VarnokRequest(const char* qccz_Class, const char* qccz_Text)
{
    const HWND h_Window = FindWindowA(qccz_Class, nullptr);
    if (!h_Window)
        return NO_WINDOW;
    const ATOM u_Text = GlobalAddAtomA(qccz_Text);
    const LRESULT l_Answer = SendMessageA(h_Window, WM_USER, 0, u_Text);
    GlobalDeleteAtom(u_Text);
    return static_cast<LONG>(l_Answer);
}
