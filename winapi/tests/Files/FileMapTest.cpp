// winapi/tests/Files/FileMapTest.cpp: mappings of files and their views.
#include "../Support/Calls.h"

#include "Support/ChildProcess.h"
#include "Support/Directory.h"

#include <cstring>

namespace
{
constexpr DWORD R = GENERIC_READ;
constexpr DWORD RW = GENERIC_READ | GENERIC_WRITE;
constexpr DWORD SHARED = FILE_SHARE_READ | FILE_SHARE_WRITE;

HANDLE Map(HANDLE file, DWORD protection, DWORD size)
{
    return CreateFileMappingA(file, nullptr, protection, 0, size, nullptr);
}

// Maps and closes at once. Result: 1 or 0.
long long TryMap(HANDLE file, DWORD protection, DWORD size)
{
    const HANDLE mapping = Map(file, protection, size);
    const DWORD error = GetLastError();
    if (mapping)
        CloseHandle(mapping);
    SetLastError(error);
    return mapping != nullptr;
}

char* View(HANDLE mapping, DWORD access, DWORD offset = 0, SIZE_T size = 0)
{
    return static_cast<char*>(MapViewOfFile(mapping, access, 0, offset, size));
}

// Makes a view and removes it at once. Result: 1 or 0.
long long TryView(HANDLE mapping, DWORD access, DWORD offset, SIZE_T size)
{
    char* const view = View(mapping, access, offset, size);
    const DWORD error = GetLastError();
    if (view)
        UnmapViewOfFile(view);
    SetLastError(error);
    return view != nullptr;
}
} // namespace

TEST(FileMap, AMappingGrowsTheFile)
{
    const File file("f", RW, SHARED, CREATE_ALWAYS);
    Write(file, "hello");
    const HANDLE mapping = Map(file, PAGE_READWRITE, 8192);
    ASSERT_NE(mapping, nullptr);
    EXPECT_EQ(GetFileSize(file, nullptr), 8192U);
    char* const view = View(mapping, FILE_MAP_ALL_ACCESS, 0, 8192);
    ASSERT_NE(view, nullptr);
    EXPECT_EQ(std::string(view, 6), std::string("hello\0", 6));
    std::memcpy(view + 8187, "world", 5);
    RunRows({
        CALL(SetFilePointer(file, 4, nullptr, FILE_BEGIN), 4, 0),
        CALL(SetEndOfFile(file), 0, ERROR_USER_MAPPED_FILE),
        CALL(DeleteFileA("f"), 0, ERROR_SHARING_VIOLATION),
        CALL(TryView(mapping, FILE_MAP_ALL_ACCESS, 0, 8193), 0, ERROR_ACCESS_DENIED),
        CALL(TryView(mapping, FILE_MAP_READ, 100, 10), 0, ERROR_MAPPED_ALIGNMENT),
        CALL(FlushViewOfFile(view, 0), 1, 0),
        CALL(UnmapViewOfFile(view), 1, 0),
        CALL(UnmapViewOfFile(view), 0, ERROR_INVALID_ADDRESS),
        CALL(FlushViewOfFile(view, 0), 0, ERROR_INVALID_PARAMETER),
        CALL(SetEndOfFile(file), 0, ERROR_USER_MAPPED_FILE),
        CALL(CloseHandle(mapping), 1, 0),
        CALL(SetEndOfFile(file), 1, 0),
        CALL(GetFileSize(file, nullptr), 4, 0),
    });
    EXPECT_EQ(ReadBytes("f"), "hell");
}

TEST(FileMap, ViewsAndTransfersShowTheSameBytes)
{
    const File file("f", RW, SHARED, CREATE_ALWAYS);
    const HANDLE mapping = Map(file, PAGE_READWRITE, 100);
    char* const view = View(mapping, FILE_MAP_WRITE);
    ASSERT_NE(view, nullptr);
    std::memcpy(view, "view", 4);
    EXPECT_EQ(Read(file, 4), "view");
    Write(file, "text");
    EXPECT_EQ(std::string(view, 9), std::string("viewtext\0", 9));
    UnmapViewOfFile(view);
    CloseHandle(mapping);
    EXPECT_EQ(ReadBytes("f").size(), 100U);
}

TEST(FileMap, ViewsBeginAtMultiplesOf64K)
{
    const File file("f", RW, SHARED, CREATE_ALWAYS);
    const HANDLE mapping = Map(file, PAGE_READWRITE, 200'000);
    ASSERT_NE(mapping, nullptr);
    SetFilePointer(file, 65536, nullptr, FILE_BEGIN);
    Write(file, "here");
    char* const view = View(mapping, FILE_MAP_READ, 65536, 4);
    ASSERT_NE(view, nullptr);
    EXPECT_EQ(std::string(view, 4), "here");
    UnmapViewOfFile(view);
    RunRows({
        CALL(TryView(mapping, FILE_MAP_READ, 4096, 0), 0, ERROR_MAPPED_ALIGNMENT),
        CALL(TryView(mapping, FILE_MAP_READ, 196608, 0), 1, 0),
        CALL(TryView(mapping, FILE_MAP_READ, 65536, 134464), 1, 0),
        CALL(TryView(mapping, FILE_MAP_READ, 65536, 134465), 0, ERROR_ACCESS_DENIED),
        CALL(TryView(mapping, FILE_MAP_READ, 65536, 200000), 0, ERROR_ACCESS_DENIED),
        CALL(TryView(mapping, FILE_MAP_READ, 262144, 0), 0,
             Side(ERROR_ACCESS_DENIED, ERROR_INVALID_PARAMETER)),
        CALL(TryView(file, FILE_MAP_READ, 0, 0), 0, ERROR_INVALID_HANDLE),
        CALL(TryView(nullptr, FILE_MAP_READ, 0, 0), 0, ERROR_INVALID_HANDLE),
    });
    CloseHandle(mapping);
}

TEST(FileMap, EmptyFilesCantBeMappedAsTheyAre)
{
    const File file("f", RW, SHARED, CREATE_ALWAYS);
    RunRows({
        CALL(TryMap(file, PAGE_READWRITE, 0), 0, ERROR_FILE_INVALID),
        CALL(TryMap(file, PAGE_READONLY, 0), 0, ERROR_FILE_INVALID),
        CALL(TryMap(file, PAGE_READONLY, 100), 0, ERROR_NOT_ENOUGH_MEMORY),
        CALL(GetFileSize(file, nullptr), 0, 0),
        CALL(TryMap(file, PAGE_READWRITE, 100), 1, 0),
        CALL(GetFileSize(file, nullptr), 100, 0),
        CALL(TryMap(file, PAGE_READWRITE, 0), 1, 0),
        CALL(TryMap(file, PAGE_READWRITE, 50), 1, 0),
        CALL(GetFileSize(file, nullptr), 100, 0),
    });
}

TEST(FileMap, AMappingNeedsTheRightsOfItsFile)
{
    WriteBytes("f", "text");
    const File reader("f", R, SHARED, OPEN_EXISTING);
    const File writer("f", GENERIC_WRITE, SHARED, OPEN_EXISTING);
    RunRows({
        CALL(TryMap(reader, PAGE_READWRITE, 0), 0, ERROR_ACCESS_DENIED),
        CALL(TryMap(reader, PAGE_READWRITE, 100), 0, ERROR_ACCESS_DENIED),
        CALL(TryMap(reader, PAGE_READONLY, 100), 0, ERROR_NOT_ENOUGH_MEMORY),
        CALL(TryMap(reader, 99, 0), 0, ERROR_INVALID_PARAMETER),
        CALL(TryMap(writer, PAGE_READONLY, 0), 0, ERROR_ACCESS_DENIED),
        CALL(TryMap(writer, PAGE_READWRITE, 0), 0, ERROR_ACCESS_DENIED),
        CALL(TryMap(nullptr, PAGE_READONLY, 0), 0, ERROR_INVALID_PARAMETER),
        CALL(TryMap(INVALID_HANDLE_VALUE, PAGE_READWRITE, 0), 0,
             Side(ERROR_NOT_SUPPORTED, ERROR_INVALID_PARAMETER)),
    });
    const HANDLE mapping = Map(reader, PAGE_READONLY, 0);
    ASSERT_NE(mapping, nullptr);
    RunRows({
        CALL(TryMap(mapping, PAGE_READONLY, 0), 0, ERROR_INVALID_HANDLE),
        CALL(TryView(mapping, FILE_MAP_ALL_ACCESS, 0, 0), 0, ERROR_ACCESS_DENIED),
        CALL(TryView(mapping, FILE_MAP_WRITE, 0, 0), 0, ERROR_ACCESS_DENIED),
        CALL(TryView(mapping, FILE_MAP_READ, 0, 0), 1, 0),
        CALL(CloseHandle(mapping), 1, 0),
        CALL(CloseHandle(mapping), 0, ERROR_INVALID_HANDLE),
    });
}

TEST(FileMap, AViewOutlivesItsHandles)
{
    HANDLE file = CreateFileA("f", RW, 0, nullptr, CREATE_ALWAYS, 0, nullptr);
    Write(file, "text");
    const HANDLE mapping = Map(file, PAGE_READWRITE, 0);
    char* const view = View(mapping, FILE_MAP_WRITE);
    ASSERT_NE(view, nullptr);
    CloseHandle(file);
    CloseHandle(mapping);
    view[0] = 'T';
    RunRows({
        CALL(TryOpen("f", RW, SHARED, CREATE_ALWAYS), INVALID, ERROR_USER_MAPPED_FILE),
        CALL(TryOpen("f", RW, SHARED, TRUNCATE_EXISTING), INVALID, ERROR_USER_MAPPED_FILE),
        CALL(UnmapViewOfFile(view), 1, 0),
    });
    EXPECT_EQ(ReadBytes("f"), "Text");
    RunRows({CALL(TryOpen("f", RW, SHARED, CREATE_ALWAYS), OPENED, ERROR_ALREADY_EXISTS)});
}

TEST(FileMap, AViewKeepsNoShareMode)
{
    // The reference run holds the file until the view ends, and so is given a file that is shared.
    HANDLE file = CreateFileA("f", RW, Side(0, SHARED), nullptr, CREATE_ALWAYS, 0, nullptr);
    Write(file, "text");
    const HANDLE mapping = Map(file, PAGE_READWRITE, 0);
    char* const view = View(mapping, FILE_MAP_WRITE);
    CloseHandle(mapping);
    CloseHandle(file);
    RunRows({
        CALL(TryOpen("f", RW, SHARED, OPEN_EXISTING), OPENED, 0),
        CALL(UnmapViewOfFile(view), 1, 0),
    });
}

TEST(FileMap, AMappedFileMayGrowButNotShrink)
{
    const File file("f", RW, SHARED, CREATE_ALWAYS);
    const File other("f", RW, SHARED, OPEN_EXISTING);
    Write(file, "0123456789");
    const HANDLE mapping = Map(file, PAGE_READWRITE, 0);
    for (const HANDLE handle : {HANDLE(file), HANDLE(other)}) {
        RunRows({
            CALL(SetFilePointer(handle, 2, nullptr, FILE_BEGIN), 2, 0),
            CALL(SetEndOfFile(handle), 0, ERROR_USER_MAPPED_FILE),
            CALL(SetFilePointer(handle, 10, nullptr, FILE_BEGIN), 10, 0),
            CALL(SetEndOfFile(handle), 1, 0),
        });
    }
    SetFilePointer(other, 100, nullptr, FILE_BEGIN);
    RunRows({
        CALL(SetEndOfFile(other), 1, 0),
        CALL(CloseHandle(mapping), 1, 0),
        CALL(SetFilePointer(other, 2, nullptr, FILE_BEGIN), 2, 0),
        CALL(SetEndOfFile(other), 1, 0),
    });
}

TEST(FileMap, FlushTakesAnyPartOfAView)
{
    const File file("f", RW, SHARED, CREATE_ALWAYS);
    const HANDLE mapping = Map(file, PAGE_READWRITE, 200'000);
    char* const view = View(mapping, FILE_MAP_WRITE);
    ASSERT_NE(view, nullptr);
    RunRows({
        CALL(FlushViewOfFile(view + 5, 10), 1, 0),
        CALL(FlushViewOfFile(view + 100'000, 0), 1, 0),
        CALL(FlushViewOfFile(view, 200'000), 1, 0),
        CALL(FlushViewOfFile(view, 300'000), 0, ERROR_INVALID_PARAMETER),
        CALL(FlushViewOfFile(nullptr, 0), 0, ERROR_INVALID_PARAMETER),
        CALL(UnmapViewOfFile(nullptr), 0, ERROR_INVALID_ADDRESS),
        CALL(UnmapViewOfFile(view + 4096), 1, 0),
        CALL(UnmapViewOfFile(view), 0, ERROR_INVALID_ADDRESS),
        CALL(CloseHandle(mapping), 1, 0),
    });
}

TEST(FileMap, SeveralMappingsOfAFileAreCounted)
{
    const File file("f", RW, SHARED, CREATE_ALWAYS);
    Write(file, "0123456789");
    const HANDLE a = Map(file, PAGE_READWRITE, 0);
    const HANDLE b = Map(file, PAGE_READONLY, 0);
    SetFilePointer(file, 0, nullptr, FILE_BEGIN);
    RunRows({
        CALL(SetEndOfFile(file), 0, ERROR_USER_MAPPED_FILE),
        CALL(CloseHandle(a), 1, 0),
        CALL(SetEndOfFile(file), 0, ERROR_USER_MAPPED_FILE),
        CALL(CloseHandle(b), 1, 0),
        CALL(SetEndOfFile(file), 1, 0),
    });
}

// Maps "f" and holds the view until it is ended.
CHILD_PROCESS(MapFile)
{
    const File file("f", RW, SHARED, OPEN_EXISTING);
    char* const view = View(Map(file, PAGE_READWRITE, 0), FILE_MAP_WRITE);
    puts(view ? std::string(view, 4).c_str() : "no view");
    fflush(stdout);
    getchar();
    view[0] = 'T';
    return 0;
}

TEST(FileMap, AMappingOfAnotherProcessIsRespected)
{
    WriteBytes("f", "text");
    ChildProcess child("MapFile");
    ASSERT_EQ(child.ReadLine(), "text");
    const File file("f", RW, SHARED, OPEN_EXISTING);
    RunRows({
        CALL(SetEndOfFile(file), 0, ERROR_USER_MAPPED_FILE),
        CALL(TryOpen("f", RW, SHARED, CREATE_ALWAYS), INVALID, ERROR_USER_MAPPED_FILE),
    });
    EXPECT_EQ(child.Wait(), 0);
    EXPECT_EQ(Read(file, 9), "Text");
    SetFilePointer(file, 0, nullptr, FILE_BEGIN);
    RunRows({CALL(SetEndOfFile(file), 1, 0)});
}
