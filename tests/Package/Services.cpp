// tests/Package/Services.cpp: calls Windows services by <windows.h> alone; the conversion needs all
// that belongs to the installed library.
#include <windows.h>

int main()
{
    const unsigned short text[] = {0x00E9, 0};
    char bytes[4] = {};
    const int count = WideCharToMultiByte(1252, 0, (LPCWSTR)text, -1, bytes, 4, nullptr, nullptr);
    return count == 2 && bytes[0] == '\xE9' ? 0 : 1;
}
