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

    // Bytes that a coder makes of that many units at most, terminator included. A unit alone
    // between direct ones takes 5 bytes in UTF-7, two units that alternate take 6.
    static std::size_t sn_CodedRoom(unsigned n_Count) { return std::size_t(n_Count) * 3 + 3; }
};
