// Ostra/Frame/ErrorManager.cpp
#include <Ostra/Frame/ErrorManager.h>

#include <Ostra/Frame/Print.h>
#include <Ostra/String/LoadString.h>
#include <Ostra/String/UString.h>

#include <cstdlib>
#include <cstring>
#include <utility>

namespace
{
constexpr unsigned ERRORS = 10;
constexpr unsigned LOCATIONS = 100;
constexpr unsigned MESSAGE_ROOM = sizeof(CT_ErrorManager::st_Error::au_Message) / 2;
constexpr unsigned LOAD_ROOM = 2048;
} // namespace

CT_ErrorManager* CT_ErrorManager::spco_ErrorManager;
HINSTANCE CT_ErrorManager::sh_Instance;
const unsigned short CT_ErrorManager::sau_ErrorFormat[] = {'(', '%', 'd', ')', ':',
                                                           ' ', '%', 's', 0};
unsigned short CT_ErrorManager::sau_LoadBuffer[LOAD_ROOM];

// ---- Life -----------------------------------------------------------------------------------

CT_ErrorManager::CT_ErrorManager(unsigned n_ErrorCount, unsigned n_LocationCount)
    : co_Threads(sizeof(st_Thread*))
{
    v_Null();
    v_Init(n_ErrorCount, n_LocationCount);
}

CT_ErrorManager::~CT_ErrorManager()
{
    v_Exit();
}

void* CT_ErrorManager::operator new(std::size_t n_Size) noexcept
{
    return std::malloc(n_Size);
}

void CT_ErrorManager::operator delete(void* pv_Object)
{
    std::free(pv_Object);
}

void CT_ErrorManager::v_Null()
{
    n_Errors = 0;
    paso_Errors = nullptr;
    pso_FreeErrors = nullptr;
    pso_SetErrors = nullptr;
    pso_HoldErrors = nullptr;
    n_Locations = 0;
    paso_Locations = nullptr;
    pso_FreeLocations = nullptr;
    b_InterruptOnError = 0;
    b_DebugMessageOnError = 1;
}

// A pool that cannot be had stays empty.
void CT_ErrorManager::v_Init(unsigned n_ErrorCount, unsigned n_LocationCount)
{
    paso_Errors = static_cast<st_Error*>(std::calloc(n_ErrorCount, sizeof(st_Error)));
    n_Errors = paso_Errors ? n_ErrorCount : 0;
    for (unsigned n_At = n_Errors; n_At > 0; --n_At) {
        paso_Errors[n_At - 1].pso_Next = pso_FreeErrors;
        pso_FreeErrors = &paso_Errors[n_At - 1];
    }
    paso_Locations = static_cast<st_Location*>(std::calloc(n_LocationCount, sizeof(st_Location)));
    n_Locations = paso_Locations ? n_LocationCount : 0;
    for (unsigned n_At = n_Locations; n_At > 0; --n_At) {
        paso_Locations[n_At - 1].pso_Next = pso_FreeLocations;
        pso_FreeLocations = &paso_Locations[n_At - 1];
    }
}

void CT_ErrorManager::v_Exit()
{
    st_Thread* pso_Thread;
    for (unsigned n_Index = co_Threads.n_GetCount(); n_Index; --n_Index) {
        co_Threads.v_GetAt(&pso_Thread, static_cast<int>(n_Index));
        std::free(pso_Thread);
    }
    co_Threads.v_Set(0, 0, 0);
    std::free(paso_Errors);
    std::free(paso_Locations);
    v_Null();
}

void CT_ErrorManager::sv_Init()
{
    spco_ErrorManager = new CT_ErrorManager(ERRORS, LOCATIONS);
}

void CT_ErrorManager::sv_Exit()
{
    delete spco_ErrorManager;
    spco_ErrorManager = nullptr;
}

CT_ErrorManager* CT_ErrorManager::spco_Get()
{
    return spco_ErrorManager;
}

void CT_ErrorManager::sv_SetInstance(HINSTANCE h_Instance)
{
    sh_Instance = h_Instance;
}

// ---- Setting an error -----------------------------------------------------------------------

void CT_ErrorManager::v_SetError(unsigned n_Code, HINSTANCE h_Instance, unsigned n_FormatID, ...)
{
    st_Error* pso_Error = pso_CreateNewError(n_Code, h_Instance, n_FormatID);
    if (!pso_Error)
        return;
    va_list args;
    va_start(args, n_FormatID);
    if (!b_FormatByThread(pso_Error, n_FormatID, args)) {
        sau_LoadBuffer[0] = 0;
        if (pso_Error->h_Instance)
            CT_LoadString::sv_LoadString(sau_LoadBuffer, LOAD_ROOM, pso_Error->h_Instance,
                                         n_FormatID);
        CT_Print::si_Print(pso_Error->au_Message, MESSAGE_ROOM, sau_LoadBuffer, args);
    }
    va_end(args);
    v_SetPrefix(pso_Error);
}

void CT_ErrorManager::v_SetError(unsigned n_Code, const unsigned short* qcuz_Format, ...)
{
    st_Error* pso_Error = pso_CreateNewError(n_Code, nullptr, 0);
    if (!pso_Error)
        return;
    va_list args;
    va_start(args, qcuz_Format);
    // Kept: a formatter sees the code in both places, and so can't tell a text from a number.
    if (!b_FormatByThread(pso_Error, n_Code, args) && qcuz_Format)
        CT_Print::si_Print(pso_Error->au_Message, MESSAGE_ROOM, qcuz_Format, args);
    va_end(args);
    v_SetPrefix(pso_Error);
}

void CT_ErrorManager::v_SetPrefix(st_Error* pso_Error)
{
    unsigned short au_Message[MESSAGE_ROOM] = {};
    CT_Print::si_Format(au_Message, MESSAGE_ROOM, sau_ErrorFormat, pso_Error->n_ErrorCode,
                        pso_Error->au_Message);
    std::memcpy(pso_Error->au_Message, au_Message, sizeof(au_Message));
}

void CT_ErrorManager::v_SetMessageError(const unsigned short* qcuz_Format, ...)
{
    va_list args;
    va_start(args, qcuz_Format);
    v_SetMessageError(qcuz_Format, args);
    va_end(args);
}

void CT_ErrorManager::v_SetMessageError(const unsigned short* qcuz_Format, va_list args)
{
    st_Error* pso_Error = pso_CreateNewError(0, nullptr, 0);
    if (pso_Error && qcuz_Format)
        CT_Print::si_Print(pso_Error->au_Message, MESSAGE_ROOM, qcuz_Format, args);
}

void CT_ErrorManager::v_SetMessageError(const char* qccz_Format, ...)
{
    // An error that is dropped has no use for a format.
    if (pso_GetError(pso_SetErrors))
        return;
    const CT_UString co_Format(qccz_Format ? qccz_Format : "", CT_String::ALL, 0);
    va_list args;
    va_start(args, qccz_Format);
    v_SetMessageError(co_Format.qcuz_Get(), args);
    va_end(args);
}

void CT_ErrorManager::v_SetMessageError(const char* qccz_Format, va_list args)
{
    st_Error* pso_Error = pso_CreateNewError(0, nullptr, 0);
    if (!pso_Error || !qccz_Format)
        return;
    char acz_Message[MESSAGE_ROOM];
    CT_Print::si_Print(acz_Message, MESSAGE_ROOM, qccz_Format, args);
    const unsigned n_Length = static_cast<unsigned>(std::strlen(acz_Message));
    for (unsigned n_At = 0; n_At <= n_Length; ++n_At)
        pso_Error->au_Message[n_At] = static_cast<unsigned char>(acz_Message[n_At]);
}

// ---- Managing the thread's error ------------------------------------------------------------

int CT_ErrorManager::b_IsSetHere() const
{
    const st_Error* pcso_Error = pso_GetError(pso_SetErrors);
    return pcso_Error && !pcso_Error->b_Ignore;
}

int CT_ErrorManager::b_IsHoldError() const
{
    return pso_GetError(pso_HoldErrors) != nullptr;
}

void CT_ErrorManager::v_HoldError()
{
    st_Error* pso_Error = pso_GetError(pso_SetErrors);
    if (!pso_Error)
        return;
    sv_Unlink(pso_Error, &pso_SetErrors);
    pso_Error->pso_Next = pso_HoldErrors;
    pso_HoldErrors = pso_Error;
}

void CT_ErrorManager::v_ClearError()
{
    if (st_Error* pso_Set = pso_GetError(pso_SetErrors))
        v_DestroyError(pso_Set, &pso_SetErrors);
    else if (st_Error* pso_Held = pso_GetError(pso_HoldErrors))
        v_DestroyError(pso_Held, &pso_HoldErrors);
}

void CT_ErrorManager::v_SetIgnoreError(int b_Ignore)
{
    if (st_Error* pso_Error = pso_GetError(pso_SetErrors))
        pso_Error->b_Ignore = b_Ignore;
}

void CT_ErrorManager::v_AddLocation(const char* qccz_File, unsigned n_Line)
{
    if (st_Error* pso_Error = pso_GetError(pso_SetErrors))
        v_AddLocation(pso_Error, qccz_File, n_Line);
}

// ---- Access ---------------------------------------------------------------------------------

unsigned CT_ErrorManager::n_GetErrorCode() const
{
    const st_Error* pcso_Error = pso_GetError();
    return pcso_Error ? pcso_Error->n_ErrorCode : 0;
}

unsigned CT_ErrorManager::n_GetFormatID() const
{
    const st_Error* pcso_Error = pso_GetError();
    return pcso_Error ? pcso_Error->n_FormatID : 0;
}

const unsigned short* CT_ErrorManager::qcuz_GetErrorMessage() const
{
    static constexpr unsigned short sau_Empty[1] = {};
    const st_Error* pcso_Error = pso_GetError();
    return pcso_Error ? pcso_Error->au_Message : sau_Empty;
}

unsigned CT_ErrorManager::n_GetLocationCount() const
{
    const st_Error* pcso_Error = pso_GetError();
    return pcso_Error ? pcso_Error->n_LocationCount : 0;
}

const char* CT_ErrorManager::qccz_GetLocationFileAt(unsigned n_Position) const
{
    const st_Location* pcso_Location = pso_GetLocationAt(pso_GetError(), n_Position);
    return pcso_Location ? pcso_Location->qccz_File : "";
}

unsigned CT_ErrorManager::n_GetLocationLineAt(unsigned n_Position) const
{
    const st_Location* pcso_Location = pso_GetLocationAt(pso_GetError(), n_Position);
    return pcso_Location ? pcso_Location->n_Line : 0;
}

// ---- Flags ----------------------------------------------------------------------------------

void CT_ErrorManager::v_SetDebugMessageOnError(int b_On)
{
    b_DebugMessageOnError = b_On;
}

int CT_ErrorManager::b_GetDebugMessageOnError() const
{
    return b_DebugMessageOnError;
}

void CT_ErrorManager::v_SetInterruptOnError(int b_On)
{
    b_InterruptOnError = b_On;
}

int CT_ErrorManager::b_GetInterruptOnError() const
{
    return b_InterruptOnError;
}

// Kept: the interface stands, but debug messages go nowhere.
void CT_ErrorManager::v_OutputDebugMessage(const char*) const {}

void CT_ErrorManager::v_OutputDebugMessage(const unsigned short*) const {}

// ---- Work: records --------------------------------------------------------------------------

unsigned CT_ErrorManager::n_GetThread()
{
    return GetCurrentThreadId();
}

CT_ErrorManager::st_Error* CT_ErrorManager::pso_GetError(st_Error* pso_List) const
{
    if (!pso_List)
        return nullptr;
    const unsigned n_Thread = n_GetThread();
    while (pso_List && pso_List->n_Thread != n_Thread)
        pso_List = pso_List->pso_Next;
    return pso_List;
}

CT_ErrorManager::st_Error* CT_ErrorManager::pso_GetError() const
{
    st_Error* pso_Error = pso_GetError(pso_SetErrors);
    return pso_Error ? pso_Error : pso_GetError(pso_HoldErrors);
}

CT_ErrorManager::st_Error*
CT_ErrorManager::pso_CreateNewError(unsigned n_Code, HINSTANCE h_Instance, unsigned n_FormatID)
{
    if (pso_GetError(pso_SetErrors))
        return nullptr;
    st_Error* pso_Held = pso_GetError(pso_HoldErrors);
    if (pso_Held && !pso_FreeErrors)
        v_DestroyError(std::exchange(pso_Held, nullptr), &pso_HoldErrors);
    st_Error* pso_Error = pso_CreateError();
    // As long as there are records the held one isn't taken anew: the new message may quote it.
    if (pso_Held)
        v_DestroyError(pso_Held, &pso_HoldErrors);
    pso_Error->n_ErrorCode = n_Code;
    pso_Error->h_Instance = h_Instance ? h_Instance : sh_Instance;
    pso_Error->n_FormatID = n_FormatID;
    return pso_Error;
}

CT_ErrorManager::st_Error* CT_ErrorManager::pso_CreateError()
{
    st_Error* pso_Error = pso_FreeErrors;
    // Kept: more failing threads than there are records end the process; nothing waits or degrades.
    if (!pso_Error)
        std::abort();
    pso_FreeErrors = pso_Error->pso_Next;
    std::memset(pso_Error, 0, sizeof(*pso_Error));
    pso_Error->pso_Next = pso_SetErrors;
    pso_SetErrors = pso_Error;
    pso_Error->n_Thread = n_GetThread();
    return pso_Error;
}

void CT_ErrorManager::v_DestroyError(st_Error* pso_Error, st_Error** ppso_List)
{
    v_DestroyLocations(pso_Error);
    sv_Unlink(pso_Error, ppso_List);
    pso_Error->pso_Next = pso_FreeErrors;
    pso_FreeErrors = pso_Error;
}

void CT_ErrorManager::v_DestroyLocations(st_Error* pso_Error)
{
    while (st_Location* pso_Location = pso_Error->pso_FirstLocation) {
        pso_Error->pso_FirstLocation = pso_Location->pso_Next;
        --pso_Error->n_LocationCount;
        *pso_Location = {nullptr, 0, pso_FreeLocations};
        pso_FreeLocations = pso_Location;
    }
}

void CT_ErrorManager::sv_Unlink(st_Error* pso_Error, st_Error** ppso_List)
{
    while (*ppso_List != pso_Error)
        ppso_List = &(*ppso_List)->pso_Next;
    *ppso_List = pso_Error->pso_Next;
}

void CT_ErrorManager::v_AddLocation(st_Error* pso_Error, const char* qccz_File, unsigned n_Line)
{
    st_Location* pso_Location = pso_FreeLocations;
    // Kept: running out of location records is no error, the trail ends there.
    if (!pso_Location)
        return;
    pso_FreeLocations = pso_Location->pso_Next;
    *pso_Location = {qccz_File, n_Line, nullptr};
    if (pso_Error->pso_FirstLocation)
        pso_Error->pso_LastLocation->pso_Next = pso_Location;
    else
        pso_Error->pso_FirstLocation = pso_Location;
    pso_Error->pso_LastLocation = pso_Location;
    ++pso_Error->n_LocationCount;
}

CT_ErrorManager::st_Location* CT_ErrorManager::pso_GetLocationAt(st_Error* pso_Error,
                                                                 unsigned n_Position) const
{
    if (!pso_Error || n_Position == 0)
        return nullptr;
    st_Location* pso_Location = pso_Error->pso_FirstLocation;
    while (--n_Position && pso_Location)
        pso_Location = pso_Location->pso_Next;
    return pso_Location;
}
