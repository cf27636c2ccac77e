// examples/Common/PlatformWindows.cpp
#include "Platform.h"

#include "Utf8.h"

#include <windows.h>
#include <shellapi.h>

#include <fcntl.h>
#include <io.h>
#include <cstdio>
#include <filesystem>
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
    _setmode(_fileno(stdin), _O_BINARY);
    _setmode(_fileno(stdout), _O_BINARY);
    _setmode(_fileno(stderr), _O_BINARY);
}

static std::function<void()>& Stop()
{
    static auto* const stop = new std::function<void()>;
    return *stop;
}

// The system calls it on a thread of its own, and ends the process when it has returned from a
// closing of the console or an end of the session.
static BOOL WINAPI HandleStop(DWORD event)
{
    Stop()();
    if (event != CTRL_C_EVENT && event != CTRL_BREAK_EVENT)
        Sleep(INFINITE);
    return TRUE;
}

void OnStop(std::function<void()> stop)
{
    Stop() = std::move(stop);
    SetConsoleCtrlHandler(HandleStop, TRUE);
}

bool IsErrorTerminal()
{
    return _isatty(_fileno(stderr)) != 0;
}

Temporary OpenTemporary()
{
    Temporary temporary;
    wchar_t folder[MAX_PATH + 1];
    wchar_t name[MAX_PATH + 1];
    if (!GetTempPathW(MAX_PATH, folder) || !GetTempFileNameW(folder, L"ost", 0, name))
        return temporary;
    temporary.file = _wfopen(name, L"wb");
    const std::wstring_view word(name);
    const std::vector<unsigned short> units(word.begin(), word.end());
    temporary.name = ToUtf8(units.data(), static_cast<unsigned>(units.size()));
    return temporary;
}

// Who writes to a file here shares it with nobody, so it is closed before it is read.
bool FlushTemporary(Temporary* temporary)
{
    std::FILE* file = temporary->file;
    temporary->file = nullptr;
    return std::fclose(file) == 0;
}

void DropTemporary(Temporary* temporary)
{
    if (temporary->file)
        std::fclose(temporary->file);
    DeleteFileW(std::filesystem::path(std::u8string(temporary->name.begin(), temporary->name.end()))
                    .c_str());
}
} // namespace common
