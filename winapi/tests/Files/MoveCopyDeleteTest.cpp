// winapi/tests/Files/MoveCopyDeleteTest.cpp: deleting, moving, copying and attributes by name.
#include "../Support/Calls.h"

#include "Support/Directory.h"

#include <filesystem>

namespace
{
constexpr DWORD R = GENERIC_READ;
constexpr DWORD W = GENERIC_WRITE;
constexpr DWORD SHARED = FILE_SHARE_READ | FILE_SHARE_WRITE;
constexpr DWORD ARCHIVE = FILE_ATTRIBUTE_ARCHIVE;
constexpr DWORD COPY_ALLOWED = MOVEFILE_COPY_ALLOWED;
constexpr DWORD REPLACE = MOVEFILE_REPLACE_EXISTING;

// The files "f" (holds "f") and "g" (holds "g") and the directory "sub".
void MakeFiles()
{
    WriteBytes("f", "f");
    WriteBytes("g", "g");
    CreateDirectoryA("sub", nullptr);
}
} // namespace

TEST(FileName, DeletingTakesFilesOnly)
{
    MakeFiles();
    RunRows({
        CALL(DeleteFileA("g"), 1, 0),
        CALL(DeleteFileA("g"), 0, ERROR_FILE_NOT_FOUND),
        CALL(DeleteFileA("nodir\\x"), 0, ERROR_PATH_NOT_FOUND),
        CALL(DeleteFileA("f\\x"), 0, ERROR_PATH_NOT_FOUND),
        CALL(DeleteFileA("."), 0, ERROR_ACCESS_DENIED),
        CALL(DeleteFileA("sub"), 0, ERROR_ACCESS_DENIED),
        CALL(DeleteFileA("sub\\"), 0, ERROR_ACCESS_DENIED),
        CALL(DeleteFileA(""), 0, ERROR_PATH_NOT_FOUND),
        CALL(DeleteFileA(nullptr), 0, ERROR_PATH_NOT_FOUND),
        CALL(DeleteFileW(nullptr), 0, ERROR_PATH_NOT_FOUND),
        CALL(DeleteFileA("a*"), 0, Side(ERROR_FILE_NOT_FOUND, ERROR_INVALID_NAME)),
        CALL(DeleteFileW(Wide("f").c_str()), 1, 0),
    });
}

TEST(FileName, ReadOnlyFilesArentDeleted)
{
    WriteBytes("ro", "x");
    SetFileAttributesA("ro", FILE_ATTRIBUTE_READONLY);
    RunRows({CALL(DeleteFileA("ro"), 0, ERROR_ACCESS_DENIED)});
    {
        const File holder("ro", R, SHARED, OPEN_EXISTING);
        RunRows({CALL(DeleteFileA("ro"), 0, ERROR_SHARING_VIOLATION)});
    }
    SetFileAttributesA("ro", FILE_ATTRIBUTE_NORMAL);
    RunRows({CALL(DeleteFileA("ro"), 1, 0)});
}

TEST(FileName, AHeldFileIsNeitherDeletedNorMoved)
{
    MakeFiles();
    const File holder("f", R, SHARED, OPEN_EXISTING);
    RunRows({
        CALL(DeleteFileA("f"), 0, ERROR_SHARING_VIOLATION),
        CALL(MoveFileExA("f", "h", COPY_ALLOWED), 0, ERROR_SHARING_VIOLATION),
        CALL(TryOpen("f", R, SHARED, OPEN_EXISTING), OPENED, 0),
    });
    EXPECT_EQ(Read(holder, 9), "f");
}

TEST(FileName, AHolderThatSharesDeletionLetsGo)
{
    MakeFiles();
    const File f("f", R, SHARED | FILE_SHARE_DELETE, OPEN_EXISTING);
    const File g("g", R, SHARED | FILE_SHARE_DELETE, OPEN_EXISTING);
    RunRows({
        CALL(MoveFileExA("f", "moved", COPY_ALLOWED), 1, 0),
        CALL(DeleteFileA("g"), 1, 0),
    });
    EXPECT_EQ(Read(f, 9), "f");
    EXPECT_EQ(Read(g, 9), "g");
}

TEST(FileName, MovingNeverReplacesUnasked)
{
    MakeFiles();
    SetFileAttributesA("g", FILE_ATTRIBUTE_READONLY);
    RunRows({
        CALL(MoveFileExA("f", "f", COPY_ALLOWED), 1, 0),
        CALL(MoveFileExA("f", ".\\sub\\..\\f", COPY_ALLOWED), 1, 0),
        CALL(MoveFileExA("f", "g", COPY_ALLOWED), 0, ERROR_ALREADY_EXISTS),
        CALL(MoveFileExA("f", "h", COPY_ALLOWED), 1, 0),
        CALL(MoveFileExA("none", "i", COPY_ALLOWED), 0, ERROR_FILE_NOT_FOUND),
        CALL(MoveFileExA("no\\ne", "i", COPY_ALLOWED), 0, ERROR_PATH_NOT_FOUND),
        CALL(MoveFileExA("h", "nodir\\x", COPY_ALLOWED), 0, ERROR_PATH_NOT_FOUND),
        CALL(MoveFileExA("h", "H", COPY_ALLOWED), 1, 0),
        CALL(MoveFileExA("H", "f", COPY_ALLOWED), 1, 0),
        CALL(MoveFileExW(Wide("f").c_str(), Wide("h").c_str(), COPY_ALLOWED), 1, 0),
        CALL(MoveFileA("h", "f"), 1, 0),
        CALL(MoveFileA("f", "g"), 0, ERROR_ALREADY_EXISTS),
        CALL(MoveFileA("f", "sub"), 0, ERROR_ALREADY_EXISTS),
        CALL(MoveFileExA("sub", "sub2", COPY_ALLOWED), 1, 0),
        CALL(MoveFileExA("sub2", "sub", COPY_ALLOWED), 1, 0),
        CALL(MoveFileExA("sub", "sub\\below", COPY_ALLOWED), 0, ERROR_INVALID_PARAMETER),
        CALL(MoveFileExA("f", "", COPY_ALLOWED), 0, ERROR_PATH_NOT_FOUND),
        CALL(MoveFileExA("", "x", COPY_ALLOWED), 0, ERROR_PATH_NOT_FOUND),
        CALL(MoveFileExA(nullptr, "x", COPY_ALLOWED), 0, ERROR_PATH_NOT_FOUND),
    });
    EXPECT_EQ(ReadBytes("f"), "f");
    EXPECT_EQ(ReadBytes("g"), "g");
    SetFileAttributesA("g", FILE_ATTRIBUTE_NORMAL);
}

TEST(FileName, MovingReplacesWhenAsked)
{
    MakeFiles();
    {
        const File holder("g", R, SHARED, OPEN_EXISTING);
        // The reference run refuses with the code of access.
        RunRows({CALL(MoveFileExA("f", "g", REPLACE), 0,
                      Side(ERROR_SHARING_VIOLATION, ERROR_ACCESS_DENIED))});
    }
    RunRows({
        CALL(MoveFileExA("f", "sub", REPLACE), 0, ERROR_ACCESS_DENIED),
        CALL(MoveFileExA("f", "g", REPLACE), 1, 0),
        CALL(GetFileAttributesA("f"), ALL_BITS, ERROR_FILE_NOT_FOUND),
    });
    EXPECT_EQ(ReadBytes("g"), "f");
}

TEST(FileName, CopyingTakesContentsTimeAndAttributes)
{
    WriteBytes("f", std::string(200'000, 'x') + "end");
    WriteBytes("old", std::string(300'000, 'y'));
    std::filesystem::last_write_time("f", std::filesystem::last_write_time("f") -
                                              std::chrono::hours(1000));
    const auto time = std::filesystem::last_write_time("f");
    SetFileAttributesA("f", FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_READONLY);
    RunRows({
        CALL(CopyFileA("f", "new", TRUE), 1, 0),
        CALL(CopyFileA("f", "old", FALSE), 1, 0),
    });
    for (const char* copy : {"new", "old"}) {
        EXPECT_EQ(ReadBytes(copy), ReadBytes("f"));
        EXPECT_EQ(std::filesystem::last_write_time(copy), time);
    }
    EXPECT_EQ(GetFileAttributesA("new"), GetFileAttributesA("f"));
    for (const char* name : {"f", "new", "old"})
        SetFileAttributesA(name, FILE_ATTRIBUTE_NORMAL);
}

TEST(FileName, CopyingTellsWhatIsInTheWay)
{
    MakeFiles();
    RunRows({
        CALL(CopyFileA("f", "c1", FALSE), 1, 0),
        CALL(CopyFileA("f", "c1", TRUE), 0, ERROR_FILE_EXISTS),
        CALL(CopyFileA("g", "c1", FALSE), 1, 0),
        CALL(CopyFileW(Wide("g").c_str(), Wide("c2").c_str(), TRUE), 1, 0),
        CALL(CopyFileA("none", "c1", FALSE), 0, ERROR_FILE_NOT_FOUND),
        CALL(CopyFileA("f", "sub", FALSE), 0, ERROR_ACCESS_DENIED),
        CALL(CopyFileA("f", "f", FALSE), 0, ERROR_SHARING_VIOLATION),
        CALL(CopyFileA("f", "nodir\\c", FALSE), 0, ERROR_PATH_NOT_FOUND),
        CALL(CopyFileA("sub", "c2", FALSE), 0, ERROR_ACCESS_DENIED),
        CALL(CopyFileA("f", "", FALSE), 0, ERROR_PATH_NOT_FOUND),
        CALL(CopyFileA("", "f", FALSE), 0, ERROR_PATH_NOT_FOUND),
        CALL(CopyFileA(nullptr, "f", FALSE), 0, ERROR_PATH_NOT_FOUND),
    });
    EXPECT_EQ(ReadBytes("c1"), "g");
    EXPECT_EQ(ReadBytes("f"), "f");
}

TEST(FileName, AttributesAreSetAndToldByName)
{
    MakeFiles();
    WriteBytes("ro", "x");
    RunRows({
        CALL(GetFileAttributesA("f"), ARCHIVE, 0),
        CALL(GetFileAttributesA("f\\"), ALL_BITS, ERROR_PATH_NOT_FOUND),
        CALL(GetFileAttributesA("sub"), FILE_ATTRIBUTE_DIRECTORY, 0),
        CALL(GetFileAttributesA("sub\\"), FILE_ATTRIBUTE_DIRECTORY, 0),
        CALL(GetFileAttributesA("."), FILE_ATTRIBUTE_DIRECTORY, 0),
        CALL(GetFileAttributesA(".."), FILE_ATTRIBUTE_DIRECTORY, 0),
        CALL(GetFileAttributesA("none"), ALL_BITS, ERROR_FILE_NOT_FOUND),
        CALL(GetFileAttributesA("no\\ne"), ALL_BITS, ERROR_PATH_NOT_FOUND),
        CALL(GetFileAttributesA(""), ALL_BITS, ERROR_PATH_NOT_FOUND),
        CALL(GetFileAttributesA(nullptr), ALL_BITS, ERROR_PATH_NOT_FOUND),
        CALL(GetFileAttributesA("a*"), ALL_BITS, Side(ERROR_FILE_NOT_FOUND, ERROR_INVALID_NAME)),
        CALL(SetFileAttributesA("ro", FILE_ATTRIBUTE_READONLY), 1, 0),
        CALL(GetFileAttributesA("ro"), ARCHIVE | FILE_ATTRIBUTE_READONLY, 0),
        CALL(SetFileAttributesA("ro", FILE_ATTRIBUTE_NORMAL), 1, 0),
        CALL(GetFileAttributesA("ro"), ARCHIVE, 0),
        CALL(SetFileAttributesA("ro", FILE_ATTRIBUTE_HIDDEN), 1, 0),
        CALL(GetFileAttributesA("ro"), ARCHIVE | FILE_ATTRIBUTE_HIDDEN, 0),
        CALL(SetFileAttributesA("ro", 0x26), 1, 0),
        CALL(GetFileAttributesW(Wide("ro").c_str()), 0x26, 0),
        CALL(SetFileAttributesA("ro", 0x7), 1, 0),
        CALL(GetFileAttributesA("ro"), 0x27, 0),
        CALL(SetFileAttributesW(Wide("ro").c_str(), 0), 1, 0),
        CALL(GetFileAttributesA("ro"), ARCHIVE, 0),
        CALL(SetFileAttributesA("none", FILE_ATTRIBUTE_NORMAL), 0, ERROR_FILE_NOT_FOUND),
        CALL(SetFileAttributesA("no\\ne", 0), 0, ERROR_PATH_NOT_FOUND),
        CALL(SetFileAttributesA("", 0), 0, ERROR_PATH_NOT_FOUND),
        CALL(SetFileAttributesA(nullptr, 0), 0, ERROR_PATH_NOT_FOUND),
    });
}

TEST(FileName, AttributesGivenAtCreationStay)
{
    RunRows({
        CALL(TryOpen("h", W, 0, CREATE_ALWAYS, FILE_ATTRIBUTE_HIDDEN), OPENED, 0),
        CALL(GetFileAttributesA("h"), ARCHIVE | FILE_ATTRIBUTE_HIDDEN, 0),
        CALL(TryOpen("h", W, 0, CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL), OPENED,
             ERROR_ALREADY_EXISTS),
        CALL(GetFileAttributesA("h"), ARCHIVE | FILE_ATTRIBUTE_HIDDEN, 0),
    });
    const File file("h", R, SHARED, OPEN_EXISTING);
    BY_HANDLE_FILE_INFORMATION info;
    ASSERT_TRUE(GetFileInformationByHandle(file, &info));
    EXPECT_EQ(info.dwFileAttributes, DWORD(ARCHIVE | FILE_ATTRIBUTE_HIDDEN));
}

TEST(FileName, APointInFrontHidesAFile)
{
    WriteBytes(".dot", "x");
    RunRows({CALL(GetFileAttributesA(".dot"), ARCHIVE | FILE_ATTRIBUTE_HIDDEN, 0)});
}
