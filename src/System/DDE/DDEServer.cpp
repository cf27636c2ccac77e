// System/DDE/DDEServer.cpp: the side that answers.
#include <System/DDE/DDEServer.h>

#include <Ostra/Frame/Report.h>
#include <System/DDE/Conversation.h>

#include <cstdlib>

static constexpr char qccz_Source[] = "System/DDE/DDEServer";

static constexpr unsigned GROWTH = 8; // of the list of clients
static constexpr int OBJECT = 0;      // the extra word of a window

const char* CT_DDEServer::sqcz_ClassName = "VARNOK_DDEServer";
CT_DDEServer* CT_DDEServer::spco_CreatedObject;

// ---- Life ---------------------------------------------------------------------------------

void* CT_DDEServer::operator new(std::size_t n_Size) noexcept
{
    return CT_Report::spv_New(n_Size, qccz_Source);
}

void CT_DDEServer::operator delete(void* pv_Object)
{
    std::free(pv_Object);
}

CT_DDEServer::CT_DDEServer() : co_Clients(sizeof(HWND), GROWTH, 0)
{
    v_Null();
    v_Init(nullptr, nullptr);
}

CT_DDEServer::CT_DDEServer(HINSTANCE h_NewInstance, const char* qccz_NewService)
    : co_Clients(sizeof(HWND), GROWTH, 0)
{
    v_Null();
    v_Init(h_NewInstance, qccz_NewService);
    v_Keep();
}

CT_DDEServer::CT_DDEServer(const CT_DDEServer& co_Other) : co_Clients(sizeof(HWND))
{
    v_Copy(co_Other);
}

CT_DDEServer& CT_DDEServer::operator=(const CT_DDEServer& co_Other)
{
    if (this != &co_Other)
        v_Copy(co_Other);
    return *this;
}

void CT_DDEServer::v_Copy(const CT_DDEServer& co_Other)
{
    h_Instance = co_Other.h_Instance;
    h_Window = co_Other.h_Window;
    qcz_Service = co_Other.qcz_Service;
    std::memcpy(static_cast<void*>(&co_Clients), static_cast<const void*>(&co_Other.co_Clients),
                sizeof(co_Clients));
}

void CT_DDEServer::v_Null()
{
    h_Window = nullptr;
}

void CT_DDEServer::v_Init(HINSTANCE h_NewInstance, const char* qccz_NewService)
{
    h_Instance = h_NewInstance;
    qcz_Service = qccz_NewService;
}

void CT_DDEServer::v_Keep()
{
    v_RegisterWindowClass();
    if (CT_Report::sb_Failed(qccz_Source))
        return;
    spco_CreatedObject = this;
    h_Window = h_CreateHidden(h_Instance, sqcz_ClassName);
    if (h_Window)
        spco_CreatedObject = nullptr;
    else
        CT_Report::sv_System(qccz_Source);
}

void CT_DDEServer::v_RegisterWindowClass()
{
    if (!b_RegisterClass(h_Instance, sqcz_ClassName, sl_DDEServerWindowProc, sizeof(this)))
        CT_Report::sv_System(qccz_Source);
}

void CT_DDEServer::v_Exit()
{
    while (co_Clients.n_GetCount()) {
        HWND h_Client;
        co_Clients.v_GetAt(&h_Client, 1);
        v_Terminate(h_Client);
    }
    // A window of another thread stays, and is to find no object any more.
    if (h_Window && !DestroyWindow(h_Window))
        SetWindowLongPtrA(h_Window, OBJECT, 0);
    h_Window = nullptr;
}

// ---- Messages -----------------------------------------------------------------------------

LRESULT OSTRA_ENTRY CT_DDEServer::sl_DDEServerWindowProc(HWND h_Window, unsigned n_Message,
                                                         WPARAM n_First, LPARAM l_Second)
{
    if (spco_CreatedObject && n_Message == WM_CREATE)
        SetWindowLongPtrA(h_Window, OBJECT, reinterpret_cast<LONG_PTR>(spco_CreatedObject));
    else if (!spco_CreatedObject) {
        CT_DDEServer* const pco_Server =
            reinterpret_cast<CT_DDEServer*>(GetWindowLongPtrA(h_Window, OBJECT));
        if (pco_Server && pco_Server->b_Handle(n_Message, n_First, l_Second))
            return 0;
    }
    return DefWindowProcA(h_Window, n_Message, n_First, l_Second);
}

// False for a message that is none of the exchange.
bool CT_DDEServer::b_Handle(unsigned n_Message, WPARAM n_First, LPARAM l_Second)
{
    const HWND h_Client = reinterpret_cast<HWND>(n_First);
    switch (n_Message) {
    case DDE_INITIATE:
        v_Initiate(h_Client, u_Low(l_Second), u_High(l_Second));
        return true;
    case DDE_TERMINATE:
        v_Terminate(h_Client);
        return true;
    case DDE_REQUEST:
        v_Request(h_Client, u_High(l_Second), u_Low(l_Second));
        return true;
    case DDE_POKE: {
        UINT_PTR n_Block, n_Item;
        v_Unpack(DDE_POKE, l_Second, &n_Block, &n_Item);
        v_Poke(h_Client, static_cast<unsigned short>(n_Item), h_Block(n_Block));
        return true;
    }
    default:
        return false;
    }
}

void CT_DDEServer::v_Initiate(HWND h_Client, unsigned short u_Application, unsigned short u_Topic)
{
    // An application of 0, which asks for any, fits no service.
    const ATOM u_Service = GlobalFindAtomA(qcz_Service);
    if (!u_Service || u_Service != u_Application || !vb_Initiate(h_Client, u_Topic))
        return;
    // Sent, not posted: the client waits inside its broadcast.
    SendMessageA(h_Client, DDE_ACK, reinterpret_cast<WPARAM>(h_Window),
                 l_Pack(u_Application, u_Topic));
    co_Clients.v_Insert(&h_Client);
}

void CT_DDEServer::v_Request(HWND h_Client, unsigned short u_Item, unsigned short u_Format)
{
    if (co_Clients.n_Find(&h_Client) && !vb_Request(h_Client, u_Item, u_Format))
        v_Acknowledge(h_Client, u_Item, 0, 0);
}

void CT_DDEServer::v_Poke(HWND h_Client, unsigned short u_Item, void* h_Block)
{
    // Kept: a block of a window that isn't listed stays.
    if (!co_Clients.n_Find(&h_Client))
        return;
    unsigned n_Ordinal = 0;
    int b_Ack = 0;
    bool b_Release = false;
    {
        CT_ValueBlock co_Block(h_Block);
        if (co_Block) {
            b_Release = co_Block.u_GetFlags() & HEAD_RELEASE;
            // Kept: what comes is taken for text, whatever the client says.
            co_Block.v_SetFormat(TEXT_FORMAT);
            CT_Buffer co_Copy;
            if (char* const pc_Text = co_Block.pc_GetText(&co_Copy))
                b_Ack = vb_Poke(h_Client, u_Item, pc_Text, &n_Ordinal);
        }
    }
    if (b_Release)
        GlobalFree(h_Block);
    v_Acknowledge(h_Client, u_Item, 0, b_Ack);
    if (n_Ordinal)
        vv_AfterPoke(n_Ordinal);
}

// ---- Answers ------------------------------------------------------------------------------

void CT_DDEServer::v_Acknowledge(HWND h_Client, unsigned short u_Item, int b_Busy, int b_Ack)
{
    const unsigned n_Status = (b_Busy & 1 ? STATUS_BUSY : 0) | (b_Ack & 1 ? STATUS_ACK : 0);
    if (!b_PostAck(h_Client, h_Window, n_Status, u_Item))
        GlobalDeleteAtom(u_Item);
}

void CT_DDEServer::v_AcknowledgeTerminate(HWND h_Client, unsigned short u_Item, int b_Busy,
                                          int b_Ack)
{
    v_Acknowledge(h_Client, u_Item, b_Busy, b_Ack);
    v_Terminate(h_Client);
}

// A block with the value; null, reported, if there is none to be had.
static HGLOBAL h_MakeValue(const char* qccz_Text)
{
    const std::size_t n_Size = std::strlen(qccz_Text) + 1;
    // One byte to spare behind the terminator.
    const HGLOBAL h_Data = GlobalAlloc(GMEM_DDESHARE | GHND, HEAD + n_Size + 1);
    if (h_Data) {
        CT_ValueBlock co_Block(h_Data);
        if (co_Block) {
            co_Block.v_SetFlags(HEAD_RESPONSE | HEAD_RELEASE);
            co_Block.v_SetFormat(TEXT_FORMAT);
            std::memcpy(co_Block.pc_GetValue(), qccz_Text, n_Size);
            return h_Data;
        }
    }
    CT_Report::sv_System(qccz_Source);
    if (h_Data)
        GlobalFree(h_Data);
    return nullptr;
}

void CT_DDEServer::v_SendData(HWND h_Client, unsigned short u_Item, const char* qccz_Text)
{
    const HGLOBAL h_Data = h_MakeValue(qccz_Text);
    if (!h_Data ||
        b_PostParts(h_Client, h_Window, DDE_DATA, reinterpret_cast<UINT_PTR>(h_Data), u_Item))
        return;
    GlobalFree(h_Data);
    GlobalDeleteAtom(u_Item);
}

void CT_DDEServer::v_Terminate(HWND h_Client)
{
    if (!co_Clients.n_Find(&h_Client))
        return;
    vv_Terminate(h_Client);
    PostMessageA(h_Client, DDE_TERMINATE, reinterpret_cast<WPARAM>(h_Window), 0);
    // Looked up anew: what was overridden may have ended other conversations.
    if (const unsigned n_Position = co_Clients.n_Find(&h_Client))
        co_Clients.v_RemoveAt(n_Position);
}

// ---- The base, which refuses everything ---------------------------------------------------

int CT_DDEServer::vb_Initiate(HWND, unsigned short)
{
    return 0;
}

int CT_DDEServer::vb_Poke(HWND, unsigned short, void*, unsigned*)
{
    return 0;
}

void CT_DDEServer::vv_AfterPoke(unsigned) {}

int CT_DDEServer::vb_Request(HWND, unsigned short, unsigned short)
{
    return 0;
}

void CT_DDEServer::vv_Terminate(HWND) {}
