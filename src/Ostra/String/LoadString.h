// Ostra/String/LoadString.h: texts of a module's string table.
#pragma once

#include <Ostra/Frame/Export.h>
#include <Ostra/Frame/Platform.h>

#include <cstdarg>

class CT_String;

// Texts by their number in the string table of a module, as they are or as formats. A text that the
// table doesn't have is empty.
//
// Where the system has no wide calls, the texts pass through its ANSI code page. A null instance is
// the program.
//
// Units:   n_Length is the room of the caller's area with the terminator; a longer text is cut.
//          Texts and formatted strings have up to 2,047 characters.
// Reports: nothing of its own; strings report 60006 when the heap is exhausted.
// Threads: any number.
class OSTRA_API CT_LoadString
{
public:
    // Sets the string, or the area, to the text.
    static void sv_LoadString(CT_String* pco_Out, HINSTANCE h_Instance, unsigned n_ID);
    static void sv_LoadString(unsigned short* pu_Out, unsigned n_Length, HINSTANCE h_Instance,
                              unsigned n_ID);

    // Formats; %s takes text of the format's width, %S of the other one. The format is of bytes for
    // a CT_CString, of units for a CT_UString and for an area; a string of any other class stays.
    static void sv_LoadStringVA(CT_String* pco_Out, HINSTANCE h_Instance, unsigned n_ID, ...);
    static void sv_LoadStringVA(unsigned short* pu_Out, unsigned n_Length, HINSTANCE h_Instance,
                                unsigned n_ID, ...);
    static void sv_LoadStringVaList(CT_String* pco_Out, HINSTANCE h_Instance, unsigned n_ID,
                                    va_list args);
};
