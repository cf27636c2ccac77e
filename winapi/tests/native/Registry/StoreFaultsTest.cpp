// winapi/tests/native/Registry/StoreFaultsTest.cpp: the registry's file in the hands of others, and a
// host whose calls fail.
#include "../../Support/RegistryPlace.h"

#include "../../Support/Replace.h"
#include "../Support/Heap.h"
#include "Base/Database.h"
#include "Registry/StoredNames.h"
#include "Support/Directory.h"

#include <atomic>
#include <cstring>
#include <filesystem>
#include <map>
#include <thread>

#include <sqlite3.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace fs = std::filesystem;

namespace
{
const std::string KEY = "Software\\Key";

fs::path Folder()
{
    return fs::path(getenv("XDG_DATA_HOME")) / "ostra-winapi";
}

fs::path DatabaseFile()
{
    return Folder() / "registry.db";
}

LSTATUS TryCreate(const std::string& path)
{
    HKEY key = nullptr;
    const LSTATUS code = RegCreateKeyExA(HKEY_CURRENT_USER, path.c_str(), 0, nullptr, 0, KEY_WRITE,
                                         nullptr, &key, nullptr);
    return code ? code : RegCloseKey(key);
}

LSTATUS TryOpen(const std::string& path)
{
    HKEY key = nullptr;
    const LSTATUS code = RegOpenKeyExA(HKEY_CURRENT_USER, path.c_str(), 0, KEY_READ, &key);
    return code ? code : RegCloseKey(key);
}

mode_t ModeOf(const fs::path& path)
{
    struct stat facts = {};
    EXPECT_EQ(stat(path.c_str(), &facts), 0) << path;
    return facts.st_mode & 07777;
}

// The next call finds no database open.
void CloseDatabases()
{
    const winapi::Host host;
    winapi::Database::CloseAll();
}

void Execute(const fs::path& path, const char* text)
{
    sqlite3* database = nullptr;
    EXPECT_EQ(sqlite3_open(path.c_str(), &database), SQLITE_OK);
    EXPECT_EQ(sqlite3_exec(database, text, nullptr, nullptr, nullptr), SQLITE_OK)
        << sqlite3_errmsg(database);
    sqlite3_close(database);
}

// All files of a folder with their bytes.
std::map<std::string, std::string> Files(const fs::path& folder)
{
    std::map<std::string, std::string> files;
    for (const auto& entry : fs::directory_iterator(folder))
        files[entry.path().filename().string()] = ReadBytes(entry.path());
    return files;
}
} // namespace

TEST(RegistryFile, IsMadeByTheFirstCallThatNeedsIt)
{
    EXPECT_EQ(RegCloseKey(HKEY_CURRENT_USER), 0);
    EXPECT_EQ(TryOpen("\\Software"), ERROR_BAD_PATHNAME);
    EXPECT_FALSE(fs::exists(getenv("XDG_DATA_HOME")));
    EXPECT_EQ(TryOpen("Software"), 0);
    EXPECT_TRUE(fs::exists(DatabaseFile()));
}

TEST(RegistryFile, IsForItsOwnerAlone)
{
    const mode_t before = umask(0);
    EXPECT_EQ(TryCreate(KEY), 0);
    umask(before);
    EXPECT_EQ(ModeOf(Folder().parent_path()), 0700U);
    EXPECT_EQ(ModeOf(Folder()), 0700U);
    for (const char* file : {"registry.db", "registry.db-wal", "registry.db-shm"})
        EXPECT_EQ(ModeOf(Folder() / file), 0600U) << file;
    // A copy that came back from elsewhere is closed to others again.
    CloseDatabases();
    fs::permissions(DatabaseFile(), fs::perms(0644));
    EXPECT_EQ(TryOpen(KEY), 0);
    EXPECT_EQ(ModeOf(DatabaseFile()), 0600U);
}

TEST(RegistryFile, OfAnotherUserIsLeftAlone)
{
    EXPECT_EQ(TryCreate(KEY), 0);
    CloseDatabases();
    const Replace replace(
        posix.geteuid, +[]() -> uid_t { return ::geteuid() + 1; });
    EXPECT_EQ(TryOpen(KEY), ERROR_ACCESS_DENIED);
    EXPECT_EQ(Files(Folder()).size(), 1U);
}

TEST(RegistryFile, IsNotMadeInTheFolderOfAnotherUser)
{
    fs::create_directories(Folder());
    const Replace replace(
        posix.geteuid, +[]() -> uid_t { return ::geteuid() + 1; });
    EXPECT_EQ(TryOpen(KEY), ERROR_ACCESS_DENIED);
    EXPECT_TRUE(fs::is_empty(Folder()));
}

TEST(RegistryFile, IsOneFileOnceItIsClosed)
{
    EXPECT_EQ(TryCreate(KEY), 0);
    CloseDatabases();
    EXPECT_EQ(Files(Folder()).size(), 1U);
    EXPECT_EQ(TryOpen(KEY), 0);
}

TEST(RegistryFile, LiesBelowTheHomeWithoutAVariableOfItsOwn)
{
    const std::string data = getenv("XDG_DATA_HOME");
    const char* const home = getenv("HOME");
    const std::string old = home ? home : "";
    const fs::path here = fs::current_path();
    setenv("HOME", here.c_str(), 1);
    for (const char* value : {"", "relative"}) {
        setenv("XDG_DATA_HOME", value, 1);
        EXPECT_EQ(TryCreate(KEY), 0);
        EXPECT_TRUE(fs::exists(here / ".local/share/ostra-winapi/registry.db"));
        EXPECT_EQ(ModeOf(here / ".local"), 0700U);
    }
    setenv("HOME", (here / "missing").c_str(), 1);
    EXPECT_EQ(TryOpen("Software"), ERROR_PATH_NOT_FOUND);
    EXPECT_FALSE(fs::exists(here / "missing"));
    for (const char* none : {"", "relative"}) {
        setenv("HOME", none, 1);
        EXPECT_EQ(TryOpen("Software"), ERROR_PATH_NOT_FOUND);
    }
    unsetenv("HOME");
    EXPECT_EQ(TryCreate(KEY), ERROR_PATH_NOT_FOUND);
    setenv("HOME", old.c_str(), 1);
    setenv("XDG_DATA_HOME", data.c_str(), 1);
}

TEST(RegistryFile, AFolderThatCannotBeWrittenIsToldByItsCode)
{
    {
        const Replace replace(
            posix.mkdir, +[](const char*, mode_t) {
                errno = EACCES;
                return -1;
            });
        EXPECT_EQ(TryOpen("Software"), ERROR_ACCESS_DENIED);
        EXPECT_EQ(TryCreate(KEY), ERROR_ACCESS_DENIED);
    }
    WriteBytes(getenv("XDG_DATA_HOME"), "a file");
    EXPECT_EQ(TryOpen("Software"), ERROR_PATH_NOT_FOUND);
    fs::remove(getenv("XDG_DATA_HOME"));
    fs::create_directories(Folder());
    {
        const Replace replace(
            posix.open, +[](const char*, int, mode_t) {
                errno = EROFS;
                return -1;
            });
        EXPECT_EQ(TryOpen("Software"), ERROR_WRITE_PROTECT);
    }
    EXPECT_TRUE(Files(Folder()).empty());
    // None of that sticks.
    EXPECT_EQ(TryOpen("Software"), 0);
}

TEST(RegistryFile, OfForeignContentIsToldAndStaysAsItIs)
{
    fs::create_directories(Folder());
    std::string empty_database(4096, '\0');
    std::memcpy(empty_database.data(), "SQLite format 3", 16);
    for (const std::string& content :
         {std::string("a text"), std::string(200, '\0'), empty_database}) {
        WriteBytes(DatabaseFile(), content);
        const auto before = Files(Folder());
        EXPECT_EQ(TryOpen("Software"), ERROR_BADDB);
        EXPECT_EQ(TryCreate(KEY), ERROR_BADDB);
        EXPECT_EQ(Files(Folder()), before);
    }
    fs::remove(DatabaseFile());
    Execute(DatabaseFile(), "CREATE TABLE key (id INTEGER); INSERT INTO key VALUES (1)");
    const auto before = Files(Folder());
    EXPECT_EQ(TryOpen("Software"), ERROR_BADDB);
    EXPECT_EQ(TryCreate(KEY), ERROR_BADDB);
    EXPECT_EQ(Files(Folder()), before);
}

TEST(RegistryFile, OfALaterVersionIsLeftAlone)
{
    EXPECT_EQ(TryCreate(KEY), 0);
    CloseDatabases();
    Execute(DatabaseFile(), "PRAGMA user_version = 2");
    const std::string before = ReadBytes(DatabaseFile());
    EXPECT_EQ(TryOpen(KEY), ERROR_BADDB);
    EXPECT_EQ(ReadBytes(DatabaseFile()), before);
}

TEST(RegistryFile, InThePlaceOfWhichSomethingElseStandsIsTold)
{
    fs::create_directories(DatabaseFile());
    EXPECT_EQ(TryOpen("Software"), ERROR_ACCESS_DENIED);
    fs::remove(DatabaseFile());
    ASSERT_EQ(mkfifo(DatabaseFile().c_str(), 0600), 0);
    EXPECT_EQ(TryOpen("Software"), ERROR_BADDB);
    fs::remove(DatabaseFile());
    fs::create_symlink("/dev/null", DatabaseFile());
    EXPECT_EQ(TryOpen("Software"), ERROR_BADDB);
    // A link to where the file shall lie is followed.
    fs::remove(DatabaseFile());
    fs::create_symlink(fs::current_path() / "elsewhere.db", DatabaseFile());
    EXPECT_EQ(TryCreate(KEY), 0);
    EXPECT_TRUE(fs::is_symlink(DatabaseFile()));
    EXPECT_TRUE(fs::exists("elsewhere.db"));
}

TEST(RegistryFile, WhoseContentIsDamagedNeverMakesMoreOfIt)
{
    for (int i = 0; i < 100; ++i)
        EXPECT_EQ(TryCreate(KEY + "\\" + std::to_string(i) + std::string(60, 'x')), 0);
    CloseDatabases();
    const std::string whole = ReadBytes(DatabaseFile());
    unsigned told = 0;
    for (std::size_t page = 0x1000; page < whole.size(); page += 0x1000) {
        std::string damaged = whole;
        for (std::size_t i = page; i < page + 0x1000; ++i)
            damaged[i] = static_cast<char>(i * 7);
        WriteBytes(DatabaseFile(), damaged);
        LSTATUS first = 0;
        for (int i = 0; i < 100 && !first; ++i)
            first = TryOpen(KEY + "\\" + std::to_string(i) + std::string(60, 'x'));
        if (!first)
            first = TryCreate(KEY + "\\new\\key");
        EXPECT_TRUE(first == 0 || first == ERROR_BADDB || first == ERROR_FILE_NOT_FOUND) << first;
        told += first == ERROR_BADDB;
        CloseDatabases();
        if (first == ERROR_BADDB) {
            EXPECT_EQ(ReadBytes(DatabaseFile()), damaged) << page;
        }
    }
    EXPECT_GT(told, 2U);
    // Cut off in the middle.
    WriteBytes(DatabaseFile(), whole.substr(0, 0x1000));
    EXPECT_EQ(TryOpen(KEY), ERROR_BADDB);
    CloseDatabases();
    EXPECT_EQ(ReadBytes(DatabaseFile()), whole.substr(0, 0x1000));
    WriteBytes(DatabaseFile(), whole);
    EXPECT_EQ(TryOpen(KEY), 0);
}

// A transaction that isn't undone would make other processes wait, and fail the next call.
TEST(RegistryFile, IsFreeForAllBehindACallThatTheHeapHasNoRoomFor)
{
    const std::string child = KEY + "\\child";
    EXPECT_EQ(TryCreate(child), 0);
    sqlite3* other = nullptr;
    ASSERT_EQ(sqlite3_open(DatabaseFile().c_str(), &other), SQLITE_OK);
    unsigned calls = 0;
    unsigned failures = 0;
    const auto expectFree = [&](LSTATUS (*call)(const std::string&), int blocks,
                                sqlite3_int64 room) {
        // What was read is known as long as nothing has changed.
        EXPECT_EQ(TryCreate(child + std::to_string(++calls)), 0);
        sqlite3_hard_heap_limit64(sqlite3_memory_used() + room);
        heap.left = blocks;
        const LSTATUS code = call(child);
        heap.left = -1;
        sqlite3_hard_heap_limit64(0);
        EXPECT_TRUE(code == 0 || code == ERROR_NOT_ENOUGH_MEMORY) << code;
        failures += code != 0;
        EXPECT_EQ(sqlite3_exec(other, "BEGIN IMMEDIATE; COMMIT", nullptr, nullptr, nullptr),
                  SQLITE_OK);
        EXPECT_EQ(call(child), 0) << blocks << " blocks, " << room << " bytes";
    };
    for (int blocks = 0; blocks < 30; ++blocks)
        for (sqlite3_int64 room = 1; room < 4096; room += 512) {
            expectFree(TryOpen, blocks, room);
            expectFree(TryCreate, blocks, room);
        }
    EXPECT_GT(failures, 10U);
    sqlite3_close(other);
}

TEST(RegistryFile, ThatIsTakenAwayIsMadeAnew)
{
    EXPECT_EQ(TryCreate(KEY), 0);
    HKEY old = nullptr;
    EXPECT_EQ(RegOpenKeyExA(HKEY_CURRENT_USER, KEY.c_str(), 0, KEY_ALL_ACCESS, &old), 0);
    fs::remove_all(Folder());
    usleep(30000); // Who reads notices soon.
    EXPECT_EQ(TryOpen(KEY), ERROR_FILE_NOT_FOUND);
    EXPECT_EQ(TryCreate(KEY), 0);
    // What was opened in the old one isn't taken for a key of the new one.
    DWORD size = 0;
    EXPECT_EQ(RegQueryValueExA(old, "", nullptr, nullptr, nullptr, &size), ERROR_KEY_DELETED);
    EXPECT_EQ(RegSetValueExA(old, "", 0, REG_BINARY, nullptr, 0), ERROR_KEY_DELETED);
    EXPECT_EQ(RegCloseKey(old), 0);
}

// What was read before is known, as long as nothing has changed.
TEST(RegistryFile, ThatAnotherProcessChangesIsReadAnew)
{
    HKEY key = nullptr;
    EXPECT_EQ(TryCreate(KEY), 0);
    ASSERT_EQ(RegOpenKeyExA(HKEY_CURRENT_USER, KEY.c_str(), 0, KEY_ALL_ACCESS, &key), 0);
    const auto bytes = [&] {
        BYTE data[8] = {};
        DWORD size = sizeof data;
        const LSTATUS code = RegQueryValueExA(key, "v", nullptr, nullptr, data, &size);
        return code ? std::to_string(code) : std::string(reinterpret_cast<char*>(data), size);
    };
    const auto data = reinterpret_cast<const BYTE*>("0123456789");
    for (DWORD n = 0; n < 10; ++n) {
        EXPECT_EQ(RegSetValueExA(key, "v", 0, REG_BINARY, data + n, 1), 0);
        EXPECT_EQ(bytes(), std::to_string(n));
        EXPECT_EQ(bytes(), std::to_string(n));
        Execute(DatabaseFile(), "UPDATE val SET data = X'4142'");
        EXPECT_EQ(bytes(), "AB");
        EXPECT_EQ(bytes(), "AB");
        Execute(DatabaseFile(), "DELETE FROM val");
        EXPECT_EQ(bytes(), std::to_string(ERROR_FILE_NOT_FOUND));
    }
    Execute(DatabaseFile(), "DELETE FROM key WHERE fold = 'key'");
    EXPECT_EQ(TryOpen(KEY), ERROR_FILE_NOT_FOUND);
    EXPECT_EQ(bytes(), std::to_string(ERROR_KEY_DELETED));
    RegCloseKey(key);
}

TEST(RegistryFile, ThatAnotherProcessHoldsIsWaitedFor)
{
    EXPECT_EQ(TryCreate(KEY), 0);
    sqlite3* other = nullptr;
    ASSERT_EQ(sqlite3_open(DatabaseFile().c_str(), &other), SQLITE_OK);
    ASSERT_EQ(sqlite3_exec(other, "BEGIN IMMEDIATE", nullptr, nullptr, nullptr), SQLITE_OK);
    // Who reads waits for nobody.
    EXPECT_EQ(TryOpen(KEY), 0);
    std::thread release([&] {
        usleep(100000);
        sqlite3_exec(other, "COMMIT", nullptr, nullptr, nullptr);
    });
    EXPECT_EQ(TryCreate(KEY + "\\new"), 0);
    release.join();
    // But not for ever.
    ASSERT_EQ(sqlite3_exec(other, "BEGIN IMMEDIATE", nullptr, nullptr, nullptr), SQLITE_OK);
    {
        const Replace replace(
            posix.nanosleep, +[](const timespec*, timespec*) { return 0; });
        EXPECT_EQ(TryCreate(KEY + "\\newer"), ERROR_BUSY);
    }
    sqlite3_close(other);
    EXPECT_EQ(TryCreate(KEY + "\\newer"), 0);
}

namespace
{
// Calls that SQLite makes of the system, of which one fails.
std::atomic<int> left;
int failure;

bool Fails()
{
    if (left <= 0 || --left > 0)
        return false;
    errno = failure;
    // From now on every one.
    left = 1;
    return true;
}

ssize_t FailingPwrite(int fd, const void* data, size_t size, off_t offset)
{
    return Fails() ? -1 : pwrite(fd, data, size, offset);
}

int FailingTruncate(int fd, off_t size)
{
    return Fails() ? -1 : ftruncate(fd, size);
}

int FailingSync(int fd)
{
    return Fails() ? -1 : fsync(fd);
}

int FailingAllocate(int fd, off_t offset, off_t size)
{
    return Fails() ? failure : posix_fallocate(fd, offset, size);
}

class FailingWrites
{
public:
    FailingWrites(int number, int error)
    {
        failure = error;
        left = number;
        Set("pwrite", reinterpret_cast<sqlite3_syscall_ptr>(FailingPwrite));
        Set("pwrite64", reinterpret_cast<sqlite3_syscall_ptr>(FailingPwrite));
        Set("ftruncate", reinterpret_cast<sqlite3_syscall_ptr>(FailingTruncate));
        Set("fallocate", reinterpret_cast<sqlite3_syscall_ptr>(FailingAllocate));
        Set("fsync", reinterpret_cast<sqlite3_syscall_ptr>(FailingSync));
    }
    ~FailingWrites()
    {
        left = 0;
        sqlite3_vfs* const system = sqlite3_vfs_find(nullptr);
        system->xSetSystemCall(system, nullptr, nullptr);
    }

private:
    static void Set(const char* name, sqlite3_syscall_ptr call)
    {
        sqlite3_vfs* const system = sqlite3_vfs_find(nullptr);
        system->xSetSystemCall(system, name, call);
    }
};

void ExpectWhole()
{
    sqlite3* database = nullptr;
    sqlite3_stmt* statement = nullptr;
    ASSERT_EQ(sqlite3_open(DatabaseFile().c_str(), &database), SQLITE_OK);
    ASSERT_EQ(sqlite3_prepare_v2(database, "PRAGMA integrity_check", -1, &statement, nullptr),
              SQLITE_OK);
    ASSERT_EQ(sqlite3_step(statement), SQLITE_ROW);
    EXPECT_STREQ(reinterpret_cast<const char*>(sqlite3_column_text(statement, 0)), "ok");
    sqlite3_finalize(statement);
    sqlite3_close(database);
}
} // namespace

TEST(RegistryFile, OnAFullDiskKeepsWhatItHas)
{
    const struct
    {
        int error;
        LSTATUS code;
    } rows[] = {{ENOSPC, ERROR_DISK_FULL}, {EIO, ERROR_REGISTRY_IO_FAILED}};
    for (const auto& row : rows) {
        SCOPED_TRACE(row.error);
        CloseDatabases();
        fs::remove_all(Folder());
        unsigned failures = 0;
        // The file can't be made.
        for (int number = 1; number < 100; ++number) {
            LSTATUS code = 0;
            {
                const FailingWrites failing(number, row.error);
                code = TryOpen("Software");
            }
            CloseDatabases();
            if (!code)
                break;
            ++failures;
            EXPECT_EQ(code, row.code) << number;
        }
        EXPECT_GT(failures, 2U);
        // It can't take more.
        const std::string data(20000, 'x');
        EXPECT_EQ(TryCreate(KEY), 0);
        HKEY key = nullptr;
        ASSERT_EQ(RegOpenKeyExA(HKEY_CURRENT_USER, KEY.c_str(), 0, KEY_ALL_ACCESS, &key), 0);
        const auto bytes = reinterpret_cast<const BYTE*>(data.data());
        ASSERT_EQ(RegSetValueExA(key, "kept", 0, REG_BINARY, bytes, 20000), 0);
        for (int number = 1; number < 10; ++number) {
            LSTATUS code = 0;
            DWORD size = 0;
            {
                const FailingWrites failing(number, row.error);
                code = RegSetValueExA(key, "kept", 0, REG_BINARY, bytes, 5000);
                if (row.code == ERROR_DISK_FULL) {
                    // Who reads needs no room.
                    EXPECT_EQ(RegQueryValueExA(key, "kept", nullptr, nullptr, nullptr, &size), 0);
                }
            }
            EXPECT_EQ(code, number < 3 ? row.code : code) << number;
            EXPECT_EQ(RegQueryValueExA(key, "kept", nullptr, nullptr, nullptr, &size), 0);
            EXPECT_EQ(size, code ? 20000U : 5000U);
            if (!code)
                break;
        }
        EXPECT_EQ(RegSetValueExA(key, "kept", 0, REG_BINARY, bytes, 100), 0);
        RegCloseKey(key);
        ExpectWhole();
    }
}

TEST(RegistryFile, IsReadAnewOnceItWasClosed)
{
    const auto read = [] {
        char value[9] = "";
        DWORD size = sizeof value;
        HKEY key = nullptr;
        RegOpenKeyExA(HKEY_CURRENT_USER, KEY.c_str(), 0, KEY_READ, &key);
        RegQueryValueExA(key, "v", nullptr, nullptr, reinterpret_cast<BYTE*>(value), &size);
        RegCloseKey(key);
        return std::string(value);
    };
    EXPECT_EQ(TryCreate(KEY), 0);
    CloseDatabases();
    // Each of them leaves a file alone, without a log that would tell one state from another.
    Execute(DatabaseFile(), "INSERT INTO val SELECT id, 'v', 'v', 3, x'6F6C6400' FROM key"
                            " WHERE fold = 'key'");
    EXPECT_EQ(read(), "old");
    CloseDatabases();
    Execute(DatabaseFile(), "UPDATE val SET data = x'6E657700' WHERE fold = 'v'");
    EXPECT_EQ(read(), "new");
}

TEST(RegistryFile, IsWholeOnBothSidesOfAFork)
{
    EXPECT_EQ(TryCreate(KEY), 0);
    HKEY key = nullptr;
    ASSERT_EQ(RegOpenKeyExA(HKEY_CURRENT_USER, KEY.c_str(), 0, KEY_ALL_ACCESS, &key), 0);
    const auto set = [&](const char* name, DWORD number) {
        return RegSetValueExA(key, name, 0, REG_DWORD, reinterpret_cast<const BYTE*>(&number), 4);
    };
    const pid_t child = fork();
    if (child == 0) {
        LSTATUS code = 0;
        for (DWORD i = 0; i < 500 && !code; ++i)
            code = set("child", i);
        _exit(code != 0);
    }
    for (DWORD i = 0; i < 500; ++i)
        EXPECT_EQ(set("parent", i), 0);
    int status = -1;
    EXPECT_EQ(waitpid(child, &status, 0), child);
    EXPECT_EQ(status, 0);
    for (const char* name : {"child", "parent"}) {
        DWORD number = 0;
        DWORD size = 4;
        EXPECT_EQ(
            RegQueryValueExA(key, name, nullptr, nullptr, reinterpret_cast<BYTE*>(&number), &size),
            0);
        EXPECT_EQ(number, 499U);
    }
    RegCloseKey(key);
    CloseDatabases();
    ExpectWhole();
}

TEST(RegistryFile, KeysLieUpTo512LevelsDeep)
{
    std::string path = "Software";
    LSTATUS code = 0;
    HKEY key = HKEY_CURRENT_USER;
    for (int level = 2; level <= 512 && !code; ++level) {
        HKEY below = nullptr;
        code = RegCreateKeyExA(key, level == 2 ? "Software\\k" : "k", 0, nullptr, 0, KEY_ALL_ACCESS,
                               nullptr, &below, nullptr);
        if (key != HKEY_CURRENT_USER)
            RegCloseKey(key);
        key = below;
    }
    EXPECT_EQ(code, 0);
    HKEY below = nullptr;
    EXPECT_EQ(RegCreateKeyExA(key, "k", 0, nullptr, 0, KEY_ALL_ACCESS, nullptr, &below, nullptr),
              ERROR_FILENAME_EXCED_RANGE);
    RegCloseKey(key);
}

TEST(RegistryFile, WhatARegistryBeginsWithIsNotDeleted)
{
    EXPECT_EQ(RegDeleteKeyA(HKEY_CURRENT_USER, "Software"), ERROR_ACCESS_DENIED);
    EXPECT_EQ(RegDeleteKeyA(HKEY_CLASSES_ROOT, ""), ERROR_ACCESS_DENIED);
    EXPECT_EQ(RegDeleteKeyA(HKEY_USERS, nullptr), ERROR_ACCESS_DENIED);
    EXPECT_EQ(TryOpen("Software"), 0);
}

TEST(StoredNames, EveryNameComesBack)
{
    const std::u16string names[] = {u"",
                                    u"abc",
                                    u"\x00E9\x0416\x3042",
                                    u"\xD83D\xDE00",
                                    u"\xDE00\xD83D",
                                    u"a\xD800",
                                    u"\xD800"
                                    u"b",
                                    u"\xFFFF\x1"};
    for (const std::u16string& name : names) {
        const WideString wide = Wide(name);
        EXPECT_EQ(winapi::NameOf(winapi::StoredName(wide)), wide);
    }
    EXPECT_EQ(winapi::StoredName(Wide(u"\x00E9\xD83D\xDE00")), "\xC3\xA9\xF0\x9F\x98\x80");
}

TEST(StoredNames, FoldsAreOrderedAsTheUnitsInLowerCase)
{
    const std::u16string ascending[] = {
        u"1",      u"_x",     u"A",      u"alpha",        u"ALPHB",
        u"\x00C9", u"\x00EA", u"\x0416", u"\xD83D\xDE00", u"\xFF21"};
    for (std::size_t i = 1; i < std::size(ascending); ++i)
        EXPECT_LT(winapi::FoldOf(Wide(ascending[i - 1])), winapi::FoldOf(Wide(ascending[i]))) << i;
    EXPECT_EQ(winapi::FoldOf(Wide(u"\x00C9\xFF21")), winapi::FoldOf(Wide(u"\x00E9\xFF41")));
}
