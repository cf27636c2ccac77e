// examples/Common/PlatformWindows.cpp
#include "Platform.h"

#include "Utf8.h"

#include <windows.h>
#include <shellapi.h>

#include <cstdio>
#include <fcntl.h>
#include <io.h>
#include <string_view>

namespace common
{
// The 8-bit arguments have gone through a code page; the wide command line has all characters.
std::vector<std::string> CommandLine(int, char**)
{
    std::vector<std::string> arguments;
    int count = 0;
    LPWSTR* words = CommandLineToArgvW(GetCommandLineW(), &count);
    for (int n = 1; words && n < count; ++n) {
        const std::wstring_view word(words[n]);
        const std::vector<unsigned short> units(word.begin(), word.end());
        arguments.push_back(ToUtf8(units.data(), static_cast<unsigned>(units.size())));
    }
    LocalFree(words);
    return arguments;
}

void PrepareStreams()
{
    SetConsoleOutputCP(CP_UTF8);
    _setmode(_fileno(stdout), _O_BINARY);
    _setmode(_fileno(stderr), _O_BINARY);
}

bool IsErrorTerminal()
{
    return _isatty(_fileno(stderr)) != 0;
}
} // namespace common
