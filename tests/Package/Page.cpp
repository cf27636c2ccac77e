// tests/Package/Page.cpp: prints the ANSI code page of the program.
#include <Ostra/Ostra.h>

#include <windows.h>

#include <cstdio>

int main()
{
    const CT_UString text("\xE8\xBE\x9E");
    std::printf("%u %u\n", GetACP(), text.vn_GetLength());
    return 0;
}
