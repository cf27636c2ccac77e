// winapi/tests/loaded/Registry/KillSweep.cpp: a registry whose writers are killed at any moment.
//
//   registry_kill_sweep FOLDER
//
// Four processes write as fast as they can and tell, in memory that they share with this one, how far
// they have come. One after the other is killed and followed by a new one, 500 times. Each that begins
// finds what the one before it had told; in the end the file is whole, and all is there.
#include <windows.h>

#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <random>
#include <string>

#include <sqlite3.h>

namespace
{
namespace fs = std::filesystem;

constexpr unsigned WRITERS = 4;
constexpr DWORD STEP = 16; // Each such number of values, one is deleted.

struct Shared
{
    volatile DWORD done[WRITERS];
    volatile unsigned failed;
};
Shared* shared;

const unsigned kills = [] {
    const char* const factor = std::getenv("OSTRA_SWEEP");
    return 500 * (factor ? static_cast<unsigned>(std::strtoul(factor, nullptr, 10)) : 1);
}();

[[noreturn]] void Fail(const std::string& what)
{
    std::printf("%s\n", what.c_str());
    std::exit(1);
}

HKEY OpenKey(unsigned writer)
{
    HKEY key = nullptr;
    const std::string path = "Software\\Sweep\\" + std::to_string(writer);
    const LSTATUS code = RegCreateKeyExA(HKEY_CURRENT_USER, path.c_str(), 0, nullptr, 0,
                                         KEY_ALL_ACCESS, nullptr, &key, nullptr);
    return code == 0 ? key : nullptr;
}

// Whether the value is there, with its own number as data; a failure counts as neither.
int IsThere(HKEY key, DWORD number)
{
    DWORD stored = 0;
    DWORD size = sizeof stored;
    const LSTATUS code = RegQueryValueExA(key, std::to_string(number).c_str(), nullptr, nullptr,
                                          reinterpret_cast<BYTE*>(&stored), &size);
    return code == 0 && stored == number ? 1 : code == ERROR_FILE_NOT_FOUND ? 0 : -1;
}

bool IsDeletedBy(DWORD number, DWORD done)
{
    return number % STEP == STEP / 2 && number + STEP / 2 <= done;
}

// Step n stores the value n; every sixteenth also deletes one before it, first.
bool Write(HKEY key, DWORD number)
{
    if (number % STEP == 0) {
        const LSTATUS code = RegDeleteValueA(key, std::to_string(number - STEP / 2).c_str());
        // The one before may have been killed behind this.
        if (code != 0 && code != ERROR_FILE_NOT_FOUND)
            return false;
    }
    return RegSetValueExA(key, std::to_string(number).c_str(), 0, REG_DWORD,
                          reinterpret_cast<const BYTE*>(&number), sizeof number) == 0;
}

[[noreturn]] void RunWriter(unsigned writer)
{
    const HKEY key = OpenKey(writer);
    DWORD done = shared->done[writer];
    if (!key || (done && IsThere(key, done) != 1)) {
        shared->failed = shared->failed + 1;
        _exit(1);
    }
    while (Write(key, done + 1))
        shared->done[writer] = ++done;
    shared->failed = shared->failed + 1;
    _exit(1);
}

pid_t Start(unsigned writer)
{
    const pid_t child = fork();
    if (child == 0)
        RunWriter(writer);
    if (child < 0)
        Fail("no process can be made");
    return child;
}

void Kill(pid_t child)
{
    int status = 0;
    kill(child, SIGKILL);
    waitpid(child, &status, 0);
    if (!WIFSIGNALED(status))
        Fail("a writer has failed");
}

void Sweep()
{
    const char* const seed = std::getenv("OSTRA_SEED");
    std::mt19937 random(seed ? static_cast<unsigned>(std::strtoul(seed, nullptr, 10)) : 500);
    pid_t children[WRITERS];
    for (unsigned writer = 0; writer < WRITERS; ++writer)
        children[writer] = Start(writer);
    for (unsigned n = 0; n < kills; ++n) {
        usleep(random() % 6000);
        const unsigned writer = random() % WRITERS;
        Kill(children[writer]);
        children[writer] = Start(writer);
    }
    for (const pid_t child : children)
        Kill(child);
    if (shared->failed)
        Fail("a writer has failed");
}

void CheckFile(const std::string& path)
{
    sqlite3* database = nullptr;
    sqlite3_stmt* statement = nullptr;
    if (sqlite3_open_v2(path.c_str(), &database, SQLITE_OPEN_READWRITE, nullptr) != SQLITE_OK ||
        sqlite3_prepare_v2(database, "PRAGMA integrity_check", -1, &statement, nullptr) !=
            SQLITE_OK ||
        sqlite3_step(statement) != SQLITE_ROW)
        Fail("the file can't be opened");
    const std::string answer = reinterpret_cast<const char*>(sqlite3_column_text(statement, 0));
    if (answer != "ok")
        Fail("the file isn't whole: " + answer);
    sqlite3_finalize(statement);
    sqlite3_close(database);
}

// Result: how many values were told as stored.
DWORD CheckValues()
{
    DWORD all = 0;
    for (unsigned writer = 0; writer < WRITERS; ++writer) {
        const HKEY key = OpenKey(writer);
        const DWORD done = shared->done[writer];
        all += done;
        // The next one, and the deletion in front of it, may have been done without being told.
        for (DWORD number = 1; number <= done; ++number)
            if (!IsDeletedBy(number, done + 1) && IsThere(key, number) != 1)
                Fail("value " + std::to_string(number) + " of " + std::to_string(done) +
                     " is lost");
            else if (IsDeletedBy(number, done) && IsThere(key, number) != 0)
                Fail("value " + std::to_string(number) + " came back");
        if (IsThere(key, done + 2) != 0)
            Fail("there is more than was written");
        RegCloseKey(key);
    }
    return all;
}
} // namespace

int main(int argc, char** argv)
{
    if (argc != 2)
        Fail("usage: registry_kill_sweep FOLDER");
    const fs::path folder = fs::absolute(argv[1]);
    fs::remove_all(folder);
    setenv("XDG_DATA_HOME", folder.c_str(), 1);
    shared = static_cast<Shared*>(
        mmap(nullptr, sizeof(Shared), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0));
    if (shared == MAP_FAILED)
        Fail("no memory");
    Sweep();
    CheckFile((folder / "ostra-winapi/registry.db").string());
    const DWORD values = CheckValues();
    std::printf("registry sweep: %u kills, %u values acknowledged, none lost\n", kills,
                static_cast<unsigned>(values));
    fs::remove_all(folder);
    return 0;
}
