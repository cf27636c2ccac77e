// Ostra/Frame/ErrorManagerWindow.cpp: the window that shows an error to the user.
#include <Ostra/Frame/ErrorManager.h>

#include <Ostra/Frame/Print.h>
#include <Ostra/Frame/Text.h>
#include <Ostra/String/CString.h>
#include <Ostra/String/LoadString.h>
#include <System/OS/OS.h>

#include <cstdlib>
#include <cstring>

// Title and text of the window lie one behind the other, each with its terminator.
static constexpr unsigned AREA = 1024;
static constexpr unsigned LONGEST_TITLE = AREA - 2;

unsigned short CT_ErrorManager::sau_MessageBuffer[AREA];

// Appends to the area and moves n_At behind it. False where it doesn't fit; what fits is written
// all the same.
static bool b_Write(unsigned short* pu_Area, unsigned& n_At, const unsigned short* qcuz_Format, ...)
{
    va_list args;
    va_start(args, qcuz_Format);
    const int i_Length = CT_Print::si_Raw(pu_Area + n_At, AREA - n_At, qcuz_Format, args);
    va_end(args);
    n_At += i_Length < 0 ? 0 : static_cast<unsigned>(i_Length);
    return i_Length >= 0;
}

// The last component of the path of a source.
static const char* qccz_GetFile(const char* qccz_Path)
{
    const char* qccz_Separator = std::strrchr(qccz_Path, '\\');
    if (!qccz_Separator)
        qccz_Separator = std::strrchr(qccz_Path, '/');
    return qccz_Separator ? qccz_Separator + 1 : "(unknown file)";
}

// Result: the place behind the title's terminator.
unsigned CT_ErrorManager::n_WriteTitle(unsigned n_TitleID, const unsigned short* qcuz_Title,
                                       const st_Error* pcso_Error) const
{
    unsigned short* pu_Area = sau_MessageBuffer;
    if (qcuz_Title)
        CT_Print::si_Format(pu_Area, LONGEST_TITLE + 1, qcuz_Text(u"%s"), qcuz_Title);
    else if (n_TitleID && pcso_Error->h_Instance)
        CT_LoadString::sv_LoadString(pu_Area, LONGEST_TITLE + 1, pcso_Error->h_Instance, n_TitleID);
    unsigned n_Length = 0;
    while (pu_Area[n_Length])
        ++n_Length;
    return n_Length + 1;
}

// The message, a blank line, and a line for each place.
void CT_ErrorManager::v_WriteText(unsigned n_At, const st_Error* pcso_Error) const
{
    if (!b_Write(sau_MessageBuffer, n_At, qcuz_Text(u"%s\n\n"), pcso_Error->au_Message)) {
        sau_MessageBuffer[AREA - 1] = 0;
        return;
    }
    unsigned n_End = n_WriteTrail(n_At, pcso_Error->pso_FirstLocation);
    // Without a place the blank line goes as well.
    if (n_End == n_At)
        --n_End;
    // Kept: this takes the last line's end off; where a place has found no room for its line
    // number, the last letter of its name.
    sau_MessageBuffer[n_End - 1] = 0;
}

unsigned CT_ErrorManager::n_WriteTrail(unsigned n_At, const st_Location* pcso_Location) const
{
    for (; pcso_Location; pcso_Location = pcso_Location->pso_Next) {
        const char* qccz_File = qccz_GetFile(pcso_Location->qccz_File);
        if (!b_Write(sau_MessageBuffer, n_At, qcuz_Text(u"%S"), qccz_File) ||
            !b_Write(sau_MessageBuffer, n_At, qcuz_Text(u": line %d\n"), pcso_Location->n_Line))
            break;
    }
    return n_At;
}

static int i_Show(const unsigned short* qcuz_Title, const unsigned short* qcuz_Text,
                  unsigned n_Flags)
{
    n_Flags |= MB_SETFOREGROUND;
    if (CT_OS::sb_GetIsWindowsNT())
        return MessageBoxW(nullptr, qcuz_System(qcuz_Text), qcuz_System(qcuz_Title), n_Flags);
    const CT_CString co_Text(qcuz_Text);
    const CT_CString co_Title(qcuz_Title);
    return MessageBoxA(nullptr, co_Text.qccz_Get(), co_Title.qccz_Get(), n_Flags);
}

int CT_ErrorManager::i_ErrorLocationWindow(unsigned n_TitleID, const unsigned short* qcuz_Title,
                                           unsigned n_Flags) const
{
    const st_Error* pcso_Error = pso_GetError();
    if (!pcso_Error)
        return 0;
    std::memset(sau_MessageBuffer, 0, sizeof(sau_MessageBuffer));
    const unsigned n_At = n_WriteTitle(n_TitleID, qcuz_Title, pcso_Error);
    v_WriteText(n_At, pcso_Error);
    const int i_Button = i_Show(sau_MessageBuffer, sau_MessageBuffer + n_At, n_Flags);
    if (i_Button == IDABORT)
        std::abort();
    if (i_Button == IDRETRY)
        DebugBreak();
    return i_Button;
}
