// winapi/tests/Errors/ErrorsTest.cpp: the texts of the system errors.
#include "../Support/Calls.h"
#include "../Support/Reference.h"

#include <algorithm>
#include <atomic>
#include <cstring>
#include <fstream>
#include <sstream>
#include <thread>

namespace
{
constexpr DWORD ALLOCATED = FORMAT_MESSAGE_ALLOCATE_BUFFER | FORMAT_MESSAGE_FROM_SYSTEM;
constexpr DWORD NEUTRAL = 0x400;
constexpr DWORD UNKNOWN = 123456;

DWORD WideMessage(DWORD flags, DWORD code, WCHAR* buffer, DWORD room)
{
    return FormatMessageW(flags, nullptr, code, NEUTRAL, buffer, room, nullptr);
}

DWORD NarrowMessage(DWORD flags, DWORD code, char* buffer, DWORD room)
{
    return FormatMessageA(flags, nullptr, code, NEUTRAL, buffer, room, nullptr);
}

WideString WideText(DWORD code)
{
    WCHAR text[1000];
    return WideString(text, WideMessage(FORMAT_MESSAGE_FROM_SYSTEM, code, text, 1000));
}

std::string NarrowText(DWORD code)
{
    char text[1000];
    return std::string(text, NarrowMessage(FORMAT_MESSAGE_FROM_SYSTEM, code, text, 1000));
}
} // namespace

TEST(Errors, TextsAreThePublishedOnes)
{
    // The reference run words most of them in its own way.
    EXPECT_PUBLISHED("Access is denied.\r\n", NarrowText(ERROR_ACCESS_DENIED));
    EXPECT_PUBLISHED("The system cannot find the file specified.\r\n",
                     NarrowText(ERROR_FILE_NOT_FOUND));
    EXPECT_PUBLISHED("The operation completed successfully.\r\n", NarrowText(ERROR_SUCCESS));
    EXPECT_EQ("Invalid flags.\r\n", NarrowText(ERROR_INVALID_FLAGS));
}

TEST(Errors, EachTextOfTheTableIsTold)
{
    std::ifstream file(std::string(WINAPI_TEST_DATA) + "/error-texts.tsv");
    int rows = 0;
    for (std::string line; std::getline(file, line);) {
        if (line.starts_with('#'))
            continue;
        SCOPED_TRACE(line);
        std::istringstream fields(line);
        std::string code, name, reference, published;
        std::getline(fields, code, '\t');
        std::getline(fields, name, '\t');
        std::getline(fields, reference, '\t');
        std::getline(fields, published, '\t');
        // The reference run lacks a few.
        const std::string text = IsReferenceRun() ? reference : published;
        const std::string expected = text == "-" ? "" : text + "\r\n";
        EXPECT_EQ(expected, NarrowText(std::stoul(code)));
        EXPECT_EQ(Wide(expected), WideText(std::stoul(code)));
        ++rows;
    }
    EXPECT_EQ(141, rows);
}

TEST(Errors, AllocatedTextIsTheCallers)
{
    WCHAR* wide = nullptr;
    const DWORD length =
        WideMessage(ALLOCATED, ERROR_ACCESS_DENIED, reinterpret_cast<WCHAR*>(&wide), 0);
    ASSERT_NE(nullptr, wide);
    EXPECT_EQ(WideText(ERROR_ACCESS_DENIED), WideString(wide, length));
    EXPECT_EQ(0, wide[length]);
    EXPECT_EQ(nullptr, LocalFree(wide));

    char* narrow = nullptr;
    const DWORD size = NarrowMessage(ALLOCATED | FORMAT_MESSAGE_IGNORE_INSERTS, ERROR_ACCESS_DENIED,
                                     reinterpret_cast<char*>(&narrow), 0);
    ASSERT_NE(nullptr, narrow);
    EXPECT_EQ(NarrowText(ERROR_ACCESS_DENIED), std::string(narrow, size));
    EXPECT_EQ(0, narrow[size]);
    EXPECT_EQ(nullptr, LocalFree(narrow));
    EXPECT_EQ(nullptr, LocalFree(nullptr));
}

TEST(Errors, AllocationHasTheLeastRoomAskedFor)
{
    WCHAR* wide = nullptr;
    const DWORD length =
        WideMessage(ALLOCATED, ERROR_ACCESS_DENIED, reinterpret_cast<WCHAR*>(&wide), 500);
    ASSERT_NE(nullptr, wide);
    std::fill(wide + length, wide + 500, WCHAR(1));
    LocalFree(wide);
}

TEST(Errors, UnknownCodesHaveNoText)
{
    WCHAR* wide = reinterpret_cast<WCHAR*>(1);
    char* narrow = reinterpret_cast<char*>(1);
    WCHAR buffer[10] = {7};
    RunRows({
        CALL(WideMessage(ALLOCATED, UNKNOWN, reinterpret_cast<WCHAR*>(&wide), 0), 0,
             ERROR_MR_MID_NOT_FOUND),
        CALL(NarrowMessage(ALLOCATED, UNKNOWN, reinterpret_cast<char*>(&narrow), 0), 0,
             ERROR_MR_MID_NOT_FOUND),
        CALL(WideMessage(FORMAT_MESSAGE_FROM_SYSTEM, UNKNOWN, buffer, 10), 0,
             ERROR_MR_MID_NOT_FOUND),
    });
    EXPECT_EQ(nullptr, wide);
    EXPECT_EQ(nullptr, narrow);
    EXPECT_EQ(7, buffer[0]);
}

TEST(Errors, ResultCodesOfSystemErrorsHaveTheirTexts)
{
    EXPECT_EQ(NarrowText(ERROR_ACCESS_DENIED), NarrowText(0x80070005));
}

TEST(Errors, ShortRoomIsRefused)
{
    WCHAR wide[1000];
    char narrow[1000];
    const DWORD length = static_cast<DWORD>(WideText(ERROR_ACCESS_DENIED).size());
    const DWORD flags = FORMAT_MESSAGE_FROM_SYSTEM;
    RunRows({
        CALL(WideMessage(flags, ERROR_ACCESS_DENIED, wide, length), 0, ERROR_INSUFFICIENT_BUFFER),
        CALL(WideMessage(flags, ERROR_ACCESS_DENIED, wide, 0), 0, ERROR_INSUFFICIENT_BUFFER),
        CALL(WideMessage(flags, ERROR_ACCESS_DENIED, wide, length + 1), length, 0),
        CALL(NarrowMessage(flags, ERROR_ACCESS_DENIED, narrow, length), 0,
             ERROR_INSUFFICIENT_BUFFER),
        CALL(NarrowMessage(flags, ERROR_ACCESS_DENIED, narrow, 0), 0, ERROR_INSUFFICIENT_BUFFER),
        CALL(NarrowMessage(flags, ERROR_ACCESS_DENIED, narrow, length + 1), length, 0),
    });
}

TEST(Errors, ShortRoomHoldsTheBeginningOfWideTextAlone)
{
    WCHAR wide[8];
    std::fill(std::begin(wide), std::end(wide), WCHAR(7));
    EXPECT_EQ(0u, WideMessage(FORMAT_MESSAGE_FROM_SYSTEM, ERROR_ACCESS_DENIED, wide, 5));
    EXPECT_EQ(WideText(ERROR_ACCESS_DENIED).substr(0, 4), WideString(wide, 4));
    EXPECT_EQ(0, wide[4]);
    EXPECT_EQ(7, wide[5]);

    char narrow[8];
    std::memset(narrow, 7, sizeof narrow);
    EXPECT_EQ(0u, NarrowMessage(FORMAT_MESSAGE_FROM_SYSTEM, ERROR_ACCESS_DENIED, narrow, 5));
    EXPECT_EQ(std::string(8, 7), std::string(narrow, 8));
}

TEST(Errors, WrongArgumentsAreRefused)
{
    WCHAR wide[10];
    RunRows({
        CALL(WideMessage(0, ERROR_ACCESS_DENIED, wide, 10), 0, ERROR_INVALID_PARAMETER),
        CALL(WideMessage(FORMAT_MESSAGE_IGNORE_INSERTS, ERROR_ACCESS_DENIED, wide, 10), 0,
             ERROR_INVALID_PARAMETER),
        CALL(WideMessage(FORMAT_MESSAGE_FROM_SYSTEM, ERROR_ACCESS_DENIED, nullptr, 10), 0,
             ERROR_INVALID_PARAMETER),
        CALL(WideMessage(ALLOCATED, ERROR_ACCESS_DENIED, nullptr, 0), 0, ERROR_INVALID_PARAMETER),
        CALL(NarrowMessage(ALLOCATED, ERROR_ACCESS_DENIED, nullptr, 0), 0, ERROR_NOT_ENOUGH_MEMORY),
    });
}

TEST(Errors, SuccessLeavesTheLastErrorAlone)
{
    WCHAR wide[1000];
    SetLastError(77);
    EXPECT_NE(0u, WideMessage(FORMAT_MESSAGE_FROM_SYSTEM, ERROR_ACCESS_DENIED, wide, 1000));
    EXPECT_EQ(77u, GetLastError());
}

TEST(Errors, LastErrorIsTheThreadsOwn)
{
    DWORD seen = 77;
    std::atomic<bool> set = false;
    std::thread other([&seen, &set] {
        seen = GetLastError();
        SetLastError(6);
        set = true;
    });
    SetLastError(5);
    while (!set)
        std::this_thread::yield();
    const DWORD own = GetLastError();
    other.join();
    EXPECT_EQ(0u, seen);
    EXPECT_EQ(5u, own);
}
