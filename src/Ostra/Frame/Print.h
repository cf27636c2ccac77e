// Ostra/Frame/Print.h: formatted printing into a field of known room. Internal.
//
// The directives are the platform's: %s takes text of the format's own width, %S of the other one.
// Nothing is allocated. A list of arguments is copied before it is read, so that the caller may use
// it again.
#pragma once

#include <windows.h>

#include <cstdarg>
#include <cstdio>
#include <cstring>
#include <cwchar>

#include <Ostra/Frame/SystemText.h>

class CT_Print
{
public:
    // The service as it is: at most n_Room characters, with a terminator only where there is room
    // for it. The characters stored, or -1 when the text doesn't fit or can't be converted.
    static int si_Raw(unsigned short* pu_Out, unsigned n_Room, const unsigned short* qcuz_Format,
                      va_list args)
    {
        va_list copy;
        va_copy(copy, args);
        const int i_Length =
            _vsnwprintf(qcuz_System(pu_Out), n_Room, qcuz_System(qcuz_Format), copy);
        va_end(copy);
        return i_Length;
    }
    static int si_Raw(char* pc_Out, unsigned n_Room, const char* qccz_Format, va_list args)
    {
        va_list copy;
        va_copy(copy, args);
        const int i_Length = _vsnprintf(pc_Out, n_Room, qccz_Format, copy);
        va_end(copy);
        return i_Length;
    }

    // The same, but the text always ends within the n_Room characters; what doesn't fit is cut off.
    // A text that fits is written with its terminator, and nothing behind that.
    template <typename T_Char>
    static int si_Print(T_Char* p_Out, unsigned n_Room, const T_Char* qcz_Format, va_list args)
    {
        if (n_Room == 0)
            return -1;
        const int i_Length = si_Raw(p_Out, n_Room, qcz_Format, args);
        if (i_Length >= 0 && static_cast<unsigned>(i_Length) < n_Room)
            return i_Length;
        // What doesn't fit has filled the room. A failed conversion has left the text where it
        // stands, without a terminator: once more, into zeros.
        std::memset(p_Out, 0, n_Room * sizeof(T_Char));
        si_Raw(p_Out, n_Room, qcz_Format, args);
        p_Out[n_Room - 1] = 0;
        return i_Length;
    }

    template <typename T_Char>
    static int si_Format(T_Char* p_Out, unsigned n_Room, const T_Char* qcz_Format, ...)
    {
        va_list args;
        va_start(args, qcz_Format);
        const int i_Length = si_Print(p_Out, n_Room, qcz_Format, args);
        va_end(args);
        return i_Length;
    }
};
