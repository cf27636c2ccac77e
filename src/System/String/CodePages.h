// System/String/CodePages.h: the numbers of code pages. Internal.
#pragma once

#include <windows.h>

#include <cstddef>

class CT_CodePages
{
public:
    static constexpr unsigned UTF7 = 65000;
    static constexpr unsigned UTF8 = 65001;

    // The two that the library codes itself.
    static bool sb_IsCoder(unsigned n_CodePage) { return n_CodePage == UTF7 || n_CodePage == UTF8; }

    // The code page, or the system's ANSI code page for one that the system doesn't have.
    static unsigned sn_Valid(unsigned n_CodePage)
    {
        return n_CodePage && IsValidCodePage(n_CodePage) ? n_CodePage : 0;
    }

    // Whether the two bytes for each unit that code pages get may be too few.
    static bool sb_NeedsRoom(unsigned n_CodePage)
    {
        return sb_IsCoder(n_CodePage) || (!sn_Valid(n_CodePage) && GetACP() == UTF8);
    }
    // CT_StringConvert::si_WideToMulti with that much room for a code page.
    static int si_WideToMulti(char* pc_Out, std::size_t n_Room, const unsigned short* qcuz_In,
                              unsigned n_Count, unsigned n_CodePage, const char* qccz_Default,
                              int* pb_Used);

    // Bytes that a coder makes of that many units at most, terminator included. A unit alone
    // between direct ones takes 5 bytes in UTF-7, two units that alternate take 6.
    static std::size_t sn_CodedRoom(unsigned n_Count) { return std::size_t(n_Count) * 3 + 3; }
    // The room that units get in a code page.
    static std::size_t sn_Room(unsigned n_CodePage, unsigned n_Count)
    {
        return sb_NeedsRoom(n_CodePage) ? sn_CodedRoom(n_Count) : std::size_t(n_Count) * 2;
    }
};
