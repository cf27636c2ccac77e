// Ostra/Frame/ErrorManagerSystem.cpp: errors of the system and of sockets.
#include <Ostra/Frame/ErrorManager.h>

#include <Ostra/Frame/Print.h>
#include <Ostra/Frame/SystemText.h>
#include <Ostra/Frame/Text.h>
#include <System/OS/OS.h>

#include <algorithm>

namespace
{
constexpr unsigned MESSAGE_ROOM = sizeof(CT_ErrorManager::st_Error::au_Message) / 2;
constexpr DWORD NEUTRAL_DEFAULT = 0x400;
constexpr DWORD SYSTEM_TEXT = FORMAT_MESSAGE_ALLOCATE_BUFFER | FORMAT_MESSAGE_FROM_SYSTEM;

struct st_SocketError
{
    unsigned n_Code;
    const char16_t* qcuz_Text;
};

constexpr st_SocketError aso_SocketErrors[] = {
    {10004, u"Interrupted system call"},
    {10009, u"Bad file number"},
    {10013, u"Access denied"},
    {10014, u"Bad address"},
    {10022, u"Invalid argument"},
    {10024, u"Too many open files"},
    {10035, u"Operation would block"},
    {10036, u"Operation now in progress"},
    {10037, u"Operation already in progress"},
    {10038, u"Socket operation on non-socket"},
    {10039, u"Destination address required"},
    {10040, u"Message too long"},
    {10041, u"Protocol is wrong type for socket"},
    {10042, u"Bad protocol option"},
    {10043, u"Protocol not supported"},
    {10044, u"Socket type not supported"},
    {10045, u"Operation not supported on socket"},
    {10046, u"Protocol family not supported"},
    {10047, u"Address family not supported by protocol family"},
    {10048, u"Address already in use"},
    {10049, u"Can't assign requested address"},
    {10050, u"Network is down"},
    {10051, u"ICMP network unreachable"},
    {10052, u"Network was reset"},
    {10053, u"Software caused connection abort"},
    {10054, u"Connection reset by peer"},
    {10055, u"No buffer space is supported"},
    {10056, u"Socket is already connected"},
    {10057, u"Socket is not connected"},
    {10058, u"Can't send after socket shutdown"},
    {10059, u"Too many references"},
    {10060, u"Connection timed out"},
    {10061, u"Connection refused"},
    {10062, u"Too many levels of symbolic links"},
    {10063, u"Name too long"},
    {10064, u"Host is down"},
    {10065, u"Host is unreachable"},
    {10066, u"Directory not empty"},
    {10067, u"EPROCLIM returned"},
    {10068, u"EUSERS returned"},
    {10069, u"Disk quota exceeded"},
    {10070, u"ESTALE returned"},
    {10071, u"The object is remote"},
    {10091, u"System not ready"},
    {10092, u"Version is not supported"},
    {10093, u"Not initialized"},
    {11001, u"Host not found"},
    {11002, u"Try again"},
    {11003, u"Non-recoverable error"},
    {11004, u"No data record available"},
};

bool b_IsLineEnd(unsigned short u_Unit)
{
    return u_Unit == '\r' || u_Unit == '\n';
}

unsigned n_Length(const unsigned short* qcuz_Text)
{
    unsigned n_Units = 0;
    while (qcuz_Text[n_Units])
        ++n_Units;
    return n_Units;
}
} // namespace

void CT_ErrorManager::v_SetSystemError()
{
    v_SetSystemError(nullptr);
}

void CT_ErrorManager::v_SetSystemError(const unsigned short* qcuz_Format, ...)
{
    va_list args;
    va_start(args, qcuz_Format);
    v_SystemError(qcuz_Format, args);
    va_end(args);
}

void CT_ErrorManager::v_SetSocketError()
{
    v_SetSocketError(nullptr);
}

void CT_ErrorManager::v_SetSocketError(const unsigned short* qcuz_Format, ...)
{
    va_list args;
    va_start(args, qcuz_Format);
    v_SocketError(qcuz_Format, args);
    va_end(args);
}

void CT_ErrorManager::v_SystemError(const unsigned short* qcuz_Format, va_list args)
{
    const unsigned n_Code = GetLastError();
    if (CT_OS::sb_GetIsWindowsNT())
        v_WideSystemError(n_Code, qcuz_Format, args);
    else
        v_NarrowSystemError(n_Code, qcuz_Format, args);
    SetLastError(0);
}

void CT_ErrorManager::v_WideSystemError(unsigned n_Code, const unsigned short* qcuz_Format,
                                        va_list args)
{
    unsigned short* pu_Text = nullptr;
    FormatMessageW(SYSTEM_TEXT, nullptr, n_Code, NEUTRAL_DEFAULT,
                   reinterpret_cast<LPWSTR>(&pu_Text), 0, nullptr);
    v_SystemError(n_Code, pu_Text, qcuz_Format, args);
    LocalFree(pu_Text);
}

// The text is converted in an area of its own, and by the service: a report takes nothing from the
// heap, and the conversion must not report.
void CT_ErrorManager::v_NarrowSystemError(unsigned n_Code, const unsigned short* qcuz_Format,
                                          va_list args)
{
    char* pc_Text = nullptr;
    const unsigned n_Bytes =
        std::min<unsigned>(FormatMessageA(SYSTEM_TEXT, nullptr, n_Code, NEUTRAL_DEFAULT,
                                          reinterpret_cast<LPSTR>(&pc_Text), 0, nullptr),
                           MESSAGE_ROOM - 1);
    unsigned short auz_Text[MESSAGE_ROOM] = {};
    if (n_Bytes)
        MultiByteToWideChar(CP_ACP, 0, pc_Text, static_cast<int>(n_Bytes), qcuz_System(auz_Text),
                            static_cast<int>(MESSAGE_ROOM - 1));
    LocalFree(pc_Text);
    v_SystemError(n_Code, n_Bytes ? auz_Text : nullptr, qcuz_Format, args);
}

void CT_ErrorManager::v_SocketError(const unsigned short* qcuz_Format, va_list args)
{
    const unsigned n_Code = WSAGetLastError();
    v_SystemError(n_Code, sqcuz_GetSocketError(n_Code), qcuz_Format, args);
    WSASetLastError(0);
}

void CT_ErrorManager::v_SystemError(unsigned n_Code, const unsigned short* qcuz_Text,
                                    const unsigned short* qcuz_Format, va_list args)
{
    st_Error* pso_Error = pso_SystemError(n_Code, qcuz_Text);
    if (!pso_Error)
        return;
    v_StripSystemError(pso_Error->au_Message);
    if (qcuz_Format)
        v_FormatSystemError(pso_Error, qcuz_Format, args);
}

CT_ErrorManager::st_Error* CT_ErrorManager::pso_SystemError(unsigned n_Code,
                                                            const unsigned short* qcuz_Text)
{
    st_Error* pso_Error = pso_CreateNewError(n_Code, nullptr, 0);
    if (pso_Error && qcuz_Text)
        CT_Print::si_Format(pso_Error->au_Message, MESSAGE_ROOM, sau_ErrorFormat, n_Code,
                            qcuz_Text);
    return pso_Error;
}

// Behind the system's text: a blank, and the formatted text in brackets. What passes the field is
// cut off.
void CT_ErrorManager::v_FormatSystemError(st_Error* pso_Error, const unsigned short* qcuz_Format,
                                          va_list args)
{
    unsigned short* pu_Message = pso_Error->au_Message;
    unsigned n_At = n_Length(pu_Message);
    if (n_At > 0 && pu_Message[n_At - 1] == ' ')
        --n_At;
    CT_Print::si_Format(pu_Message + n_At, MESSAGE_ROOM - n_At, qcuz_Text(u" ["));
    n_At += n_Length(pu_Message + n_At);
    CT_Print::si_Print(pu_Message + n_At, MESSAGE_ROOM - n_At, qcuz_Format, args);
    n_At += n_Length(pu_Message + n_At);
    CT_Print::si_Format(pu_Message + n_At, MESSAGE_ROOM - n_At, qcuz_Text(u"]"));
}

// Takes the line end off the message, and makes one line of the rest.
void CT_ErrorManager::v_StripSystemError(unsigned short* pu_Message)
{
    unsigned n_End = n_Length(pu_Message);
    while (n_End > 1 && b_IsLineEnd(pu_Message[n_End - 1]))
        pu_Message[--n_End] = 0;
    unsigned n_Out = 0;
    for (unsigned n_In = 0; n_In < n_End; ++n_In) {
        const unsigned short u_Unit = pu_Message[n_In];
        if (!b_IsLineEnd(u_Unit))
            pu_Message[n_Out++] = u_Unit;
        else if (n_Out == 0 || pu_Message[n_Out - 1] != ' ')
            pu_Message[n_Out++] = ' ';
    }
    pu_Message[n_Out] = 0;
}

const unsigned short* CT_ErrorManager::sqcuz_GetSocketError(unsigned n_Code)
{
    for (const st_SocketError& so_Error : aso_SocketErrors)
        if (so_Error.n_Code == n_Code)
            return qcuz_Text(so_Error.qcuz_Text);
    return qcuz_Text(u"Unknown socket error");
}
