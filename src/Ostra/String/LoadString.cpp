// Ostra/String/LoadString.cpp
#include <Ostra/String/LoadString.h>

#include <Ostra/Frame/Counts.h>
#include <Ostra/Frame/Print.h>
#include <Ostra/Frame/SystemText.h>
#include <Ostra/String/CString.h>
#include <Ostra/String/UString.h>
#include <System/OS/OS.h>
#include <System/String/StringConvert.h>

#include <algorithm>

static constexpr unsigned ROOM = 2048;
static constexpr unsigned MOST = 0x7FFFFFFF; // room that the service takes

// ---- Loading ----------------------------------------------------------------------------------

// An 8-bit text into ROOM bytes; its length, 0 without one.
static unsigned n_Load(char* pc_Out, HINSTANCE h_Instance, unsigned n_ID)
{
    return static_cast<unsigned>(LoadStringA(h_Instance, n_ID, pc_Out, ROOM));
}

static unsigned n_LoadConverted(unsigned short* pu_Out, unsigned n_Room, HINSTANCE h_Instance,
                                unsigned n_ID)
{
    char acz_Text[ROOM];
    const unsigned n_Bytes = std::min(n_Load(acz_Text, h_Instance, n_ID), n_Room - 1);
    const int i_Units = CT_StringConvert::si_MultiToWideANSI(pu_Out, acz_Text, n_Bytes);
    // Fewer units than bytes leave no gap before the terminator.
    std::fill(pu_Out + i_Units, pu_Out + n_Bytes + 1, 0);
    return static_cast<unsigned>(i_Units);
}

// A wide text into n_Room units, at least one; its length, 0 without one.
static unsigned n_Load(unsigned short* pu_Out, unsigned n_Room, HINSTANCE h_Instance, unsigned n_ID)
{
    pu_Out[0] = 0;
    if (!CT_OS::sb_GetIsWindowsNT())
        return n_LoadConverted(pu_Out, n_Room, h_Instance, n_ID);
    const int i_Room = static_cast<int>(std::min(n_Room, MOST));
    return static_cast<unsigned>(LoadStringW(h_Instance, n_ID, qcuz_System(pu_Out), i_Room));
}

// ---- As they are ------------------------------------------------------------------------------

void CT_LoadString::sv_LoadString(CT_String* pco_Out, HINSTANCE h_Instance, unsigned n_ID)
{
    if (CT_OS::sb_GetIsWindowsNT()) {
        unsigned short auz_Text[ROOM];
        if (n_Load(auz_Text, ROOM, h_Instance, n_ID))
            pco_Out->v_Set(auz_Text, ALL);
        else
            pco_Out->v_Set(0u, 1);
    } else {
        char acz_Text[ROOM];
        if (n_Load(acz_Text, h_Instance, n_ID))
            pco_Out->v_Set(acz_Text, ALL, OWN_CODE_PAGE);
        else
            pco_Out->v_Set(0u, 1);
    }
}

void CT_LoadString::sv_LoadString(unsigned short* pu_Out, unsigned n_Length, HINSTANCE h_Instance,
                                  unsigned n_ID)
{
    if (n_Length)
        n_Load(pu_Out, n_Length, h_Instance, n_ID);
}

// ---- As formats -------------------------------------------------------------------------------

void CT_LoadString::sv_LoadStringVA(CT_String* pco_Out, HINSTANCE h_Instance, unsigned n_ID, ...)
{
    va_list args;
    va_start(args, n_ID);
    sv_LoadStringVaList(pco_Out, h_Instance, n_ID, args);
    va_end(args);
}

void CT_LoadString::sv_LoadStringVA(unsigned short* pu_Out, unsigned n_Length, HINSTANCE h_Instance,
                                    unsigned n_ID, ...)
{
    unsigned short auz_Format[ROOM];
    n_Load(auz_Format, ROOM, h_Instance, n_ID);
    va_list args;
    va_start(args, n_ID);
    CT_Print::si_Print(pu_Out, n_Length, auz_Format, args);
    va_end(args);
}

void CT_LoadString::sv_LoadStringVaList(CT_String* pco_Out, HINSTANCE h_Instance, unsigned n_ID,
                                        va_list args)
{
    if (pco_Out->vpv_IsA(CT_CString::spcco_GetType())) {
        char acz_Format[ROOM];
        if (n_Load(acz_Format, h_Instance, n_ID))
            pco_Out->v_Format(acz_Format, args);
        else
            pco_Out->v_Set(0u, 1);
    } else if (pco_Out->vpv_IsA(CT_UString::spcco_GetType())) {
        unsigned short auz_Format[ROOM];
        if (n_Load(auz_Format, ROOM, h_Instance, n_ID))
            pco_Out->v_Format(auz_Format, args);
        else
            pco_Out->v_Set(0u, 1);
    }
}
