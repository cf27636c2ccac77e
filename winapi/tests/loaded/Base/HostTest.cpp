// winapi/tests/loaded/Base/HostTest.cpp: the library of what leans on the host's large libraries,
// as a program meets it that links the shared library.
#include "../../Support/Calls.h"

#include "Support/ChildProcess.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <latch>
#include <thread>

#include <dlfcn.h>
#include <sys/wait.h>
#include <unistd.h>

namespace
{
struct Monday
{
    LCID locale;
    const char16_t* name;
};

// Each is a question of its own for the library, and answered from memory the second time.
constexpr Monday MONDAYS[] = {
    {0x407, u"Montag"},
    {0x409, u"Monday"},
    {0x40C, u"lundi"},
    {0x413, u"maandag"},
    {0x40A, u"lunes"},
    {0x419, u"\u043F\u043E\u043D\u0435\u0434\u0435\u043B\u044C\u043D\u0438\u043A"},
    {0x411, u"\u6708\u66DC\u65E5"},
    {0x412, u"\uC6D4\uC694\uC77C"},
};
constexpr const Monday& GERMAN = MONDAYS[0];
constexpr const Monday& RUSSIAN = MONDAYS[5];

bool Names(const Monday& monday)
{
    WCHAR name[32];
    return GetLocaleInfoW(monday.locale, LOCALE_SDAYNAME1, name, 32) > 0 &&
           std::u16string_view(reinterpret_cast<const char16_t*>(name)) == monday.name;
}

// Each page has the Cyrillic or the accented letter.
bool Converts(UINT page)
{
    const WCHAR letters[] = {0x0416, 0x00E9};
    char bytes[8];
    BOOL missing = FALSE;
    const int count = WideCharToMultiByte(page, 0, letters, 2, bytes, 8, nullptr, &missing);
    WCHAR back[8];
    return count >= 2 && MultiByteToWideChar(page, 0, bytes, count, back, 8) > 0 &&
           (back[0] == letters[0] || back[1] == letters[1]);
}

std::string LibraryPath()
{
    Dl_info info{};
    dladdr(reinterpret_cast<const void*>(&winapi::GetLastError), &info);
    return info.dli_fname;
}

bool IsLoaded(const char* name)
{
    std::ifstream maps("/proc/self/maps");
    for (std::string line; std::getline(maps, line);)
        if (line.find(name) != std::string::npos)
            return true;
    return false;
}

// Whether a child that this process forks can name the day.
bool ChildNames(const Monday& monday)
{
    const pid_t child = fork();
    if (child == 0) {
        alarm(60); // One that waits for ever is killed.
        _exit(Names(monday) ? 0 : 1);
    }
    int status = -1;
    waitpid(child, &status, 0);
    return WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

int RunChild(const char* name)
{
    ChildProcess child(name);
    return child.Wait();
}
} // namespace

CHILD_PROCESS(LoadsLate)
{
    char bytes[8];
    WCHAR units[8];
    std::string told = IsLoaded("libicu") || IsLoaded("libostra-host") ? "early " : "";
    if (GetACP() != 1252 || MultiByteToWideChar(CP_ACP, 0, "name", 5, units, 8) != 5 ||
        WideCharToMultiByte(CP_ACP, 0, units, 5, bytes, 8, nullptr, nullptr) != 5)
        told += "wrong ";
    WIN32_FIND_DATAA found;
    FindClose(FindFirstFileA("*", &found));
    for (UINT page : {1252u, 1251u, 932u, 936u, 866u, 20932u, 1361u, 28592u})
        told += Converts(page) ? "" : "wrong ";
    told += IsLoaded("libicu") ? "pages " : "";
    SYSTEMTIME now;
    GetLocalTime(&now);
    if (GetLocaleInfoA(0x407, LOCALE_IDEFAULTANSICODEPAGE, bytes, 8) != 5 ||
        !IsValidLocale(0x411, LCID_INSTALLED) || GetThreadLocale() != 0x409)
        told += "wrong ";
    told += IsLoaded("libicu") ? "facts " : "";
    told += Names(GERMAN) && IsLoaded("libicu") && IsLoaded("libostra-host") ? "late" : "never";
    std::puts(told.c_str());
    std::fflush(stdout);
    return 0;
}

TEST(Host, LibraryIsLoadedByTheFirstCallThatNeedsIt)
{
    setenv("LC_ALL", "en_US.UTF-8", 1);
    ChildProcess child("LoadsLate");
    EXPECT_EQ(child.ReadLine(), "late");
    EXPECT_EQ(child.Wait(), 0);
    unsetenv("LC_ALL");
}

CHILD_PROCESS(WritesADateLate)
{
    std::string told = IsLoaded("libicu") ? "early " : "";
    WCHAR units[64];
    const int count = GetDateFormatW(0x409, DATE_LONGDATE, nullptr, nullptr, units, 64);
    told += count > 20 && IsLoaded("libicui18n") ? "late" : "never";
    std::puts(told.c_str());
    std::fflush(stdout);
    return 0;
}

TEST(Host, LibraryIsLoadedByTheFirstDate)
{
    ChildProcess child("WritesADateLate");
    EXPECT_EQ(child.ReadLine(), "late");
    EXPECT_EQ(child.Wait(), 0);
}

CHILD_PROCESS(TellsWhatIsMissing)
{
    std::printf("%s\n", LibraryPath().c_str());
    const WCHAR letters[] = {0x00E9, 0x4E9C};
    char bytes[8];
    WCHAR units[8];
    WIN32_FIND_DATAA found;
    char point[] = ".";
    const NUMBERFMTA numbers = {2, 1, 3, point, point, 1};
    RunRows({
        CALL(GetLocaleInfoA(0x409, LOCALE_SDAYNAME1, bytes, 8), 0, ERROR_MOD_NOT_FOUND),
        CALL(GetDateFormatW(0x409, 0, nullptr, nullptr, units, 8), 0, ERROR_MOD_NOT_FOUND),
        CALL(GetTimeFormatA(0x409, 0, nullptr, nullptr, bytes, 8), 0, ERROR_MOD_NOT_FOUND),
        CALL(GetNumberFormatA(0x409, 0, "1", nullptr, bytes, 8), 0, ERROR_MOD_NOT_FOUND),
        CALL(EnumCalendarInfoA([](LPSTR) { return 1; }, 0x409, CAL_GREGORIAN, CAL_SCALNAME), 1,
             ERROR_MOD_NOT_FOUND),
        // What needs no library goes on.
        CALL(GetLocaleInfoA(0x411, LOCALE_IDEFAULTANSICODEPAGE, bytes, 8), 4, 0),
        CALL(GetNumberFormatA(0x409, 0, "1", &numbers, bytes, 8), 5, 0),
        CALL(WideCharToMultiByte(1252, 0, letters, 2, bytes, 8, nullptr, nullptr), 2, 0),
        CALL(WideCharToMultiByte(932, 0, letters, 2, bytes, 8, nullptr, nullptr), 3, 0),
        CALL(MultiByteToWideChar(1252, 0, "\xE9", 1, units, 8), 1, 0),
        CALL(MultiByteToWideChar(1361, 0, "\x88\x61", 2, units, 8), 1, 0),
        CALL(MultiByteToWideChar(20932, 0, "\xB0\xA1", 2, units, 8), 1, 0),
        CALL(MultiByteToWideChar(CP_UTF8, 0, "\xC3\xA9", 2, units, 8), 1, 0),
        CALL(TryOpen("file", GENERIC_WRITE, 0, CREATE_NEW), OPENED, 0),
        CALL(TryOpen("caf\xE9", GENERIC_WRITE, 0, CREATE_NEW), OPENED, 0),
        CALL(FindFirstFileA("file", &found) != INVALID_HANDLE_VALUE, 1, 0),
    });
    std::printf("%s\n", testing::Test::HasFailure() ? "failed" : "as told");
    std::fflush(stdout);
    return 0;
}

TEST(Host, WithoutTheLibraryTheServiceTellsThatAModuleIsMissing)
{
    namespace fs = std::filesystem;
    const fs::path library = LibraryPath();
    const fs::path alone = fs::current_path() / "alone";
    fs::create_directory(alone);
    fs::copy_file(library, alone / library.filename());
    setenv("LD_LIBRARY_PATH", alone.c_str(), 1);
    setenv("LC_ALL", "en_US.UTF-8", 1);
    ChildProcess child("TellsWhatIsMissing");
    EXPECT_EQ(child.ReadLine(), (alone / library.filename()).string());
    std::string last;
    for (std::string line; !(line = child.ReadLine()).empty();)
        last = line;
    EXPECT_EQ(last, "as told");
    EXPECT_EQ(child.Wait(), 0);
    unsetenv("LD_LIBRARY_PATH");
    unsetenv("LC_ALL");
}

CHILD_PROCESS(EightThreads)
{
    std::latch start(8);
    bool names[8] = {};
    std::vector<std::thread> threads;
    for (int i = 0; i < 8; ++i)
        threads.emplace_back([&, i] {
            start.arrive_and_wait();
            names[i] = Names(MONDAYS[i]);
        });
    for (std::thread& thread : threads)
        thread.join();
    return static_cast<int>(std::count(std::begin(names), std::end(names), true));
}

TEST(Host, EightThreadsMayMeetAtTheFirstCall)
{
    for (int i = 0; i < 10; ++i)
        EXPECT_EQ(RunChild("EightThreads"), 8);
}

CHILD_PROCESS(ForkBefore)
{
    const bool child = ChildNames(GERMAN);
    return child && Names(GERMAN) ? 0 : 1;
}

CHILD_PROCESS(ForkAfter)
{
    return Names(GERMAN) && ChildNames(GERMAN) && ChildNames(RUSSIAN) && Names(RUSSIAN) ? 0 : 1;
}

CHILD_PROCESS(ForkAmid)
{
    std::latch start(5);
    std::vector<std::thread> threads;
    for (int i = 0; i < 4; ++i)
        threads.emplace_back([&, i] {
            start.arrive_and_wait();
            Names(MONDAYS[i]);
        });
    start.arrive_and_wait();
    bool all = true;
    for (const Monday& monday : MONDAYS)
        all = ChildNames(monday) && all;
    for (std::thread& thread : threads)
        thread.join();
    return all ? 0 : 1;
}

TEST(Host, AForkBeforeTheFirstCallLeavesBothSidesWhole)
{
    EXPECT_EQ(RunChild("ForkBefore"), 0);
}

TEST(Host, AForkBehindTheFirstCallLeavesBothSidesWhole)
{
    EXPECT_EQ(RunChild("ForkAfter"), 0);
}

TEST(Host, AForkWhileOthersLoadWaitsForThem)
{
#ifdef __SANITIZE_ADDRESS__
    GTEST_SKIP() << "this sanitizer's heap doesn't survive a fork beside threads that use it";
#endif
    for (int i = 0; i < 10; ++i)
        EXPECT_EQ(RunChild("ForkAmid"), 0);
}
