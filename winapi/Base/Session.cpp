// winapi/Base/Session.cpp
#include "Base/Session.h"

#include "Base/HostVariables.h"
#include "Base/Posix.h"
#include "Errors/Failure.h"

#include <memory>
#include <mutex>
#include <set>
#include <vector>

#include <pthread.h>

namespace winapi
{
namespace
{
constexpr char NAME[] = "/ostra-winapi";
constexpr std::size_t MARK_SIZE = 16;
constexpr char DIGITS[] = "0123456789abcdef";

// Windows count from 10000h on and are never used twice. An atom is there while anybody holds it;
// its row may stay longer. The holds of the dead have no mark: they count as long as a living one
// holds the atom, for partners of the dead let go of what those would have.
constexpr char TABLES[] =
    "CREATE TABLE win (hwnd INTEGER PRIMARY KEY AUTOINCREMENT, fold TEXT NOT NULL,"
    " title TEXT NOT NULL, mark TEXT NOT NULL, socket TEXT NOT NULL);"
    "CREATE TABLE atom (id INTEGER PRIMARY KEY, fold TEXT NOT NULL UNIQUE, name TEXT NOT NULL);"
    "CREATE TABLE hold (atom INTEGER NOT NULL, mark TEXT NOT NULL, refs INTEGER NOT NULL,"
    " PRIMARY KEY (atom, mark)) WITHOUT ROWID;"
    "INSERT INTO sqlite_sequence VALUES ('win', 65535);";

std::optional<std::string> CheckedFolder(bool make);

constexpr DatabaseForm FORM = {
    .mark = 0x4F735365, // "OsSe"
    .version = 1,
    .tables = TABLES,
    .durable = false,
    .folder = CheckedFolder,
    .file = "session.db",
};

// Never destroyed: services may be called until the very end.
struct State
{
    std::string folder;
    std::string mark; // Empty outside of the session.
    Descriptor lock;  // Of the mark's file.
};

constinit std::mutex mutex; // Entering.
State* state;

std::string ChosenFolder()
{
    struct stat facts;
    const std::string given = HostVariable("XDG_RUNTIME_DIR").value_or("");
    if (!given.empty() && given[0] == '/' && posix.stat(given.c_str(), &facts) == 0)
        return given + NAME;
    return std::string("/tmp") + NAME + '-' + std::to_string(posix.geteuid());
}

// The user's own, and closed to everybody else.
std::optional<std::string> CheckedFolder(bool make)
{
    if (!make)
        return state->folder;
    const char* const path = state->folder.c_str();
    if (posix.mkdir(path, 0700) == 0)
        posix.chmod(path, 0700);
    else if (errno != EEXIST) {
        SetLastError(CodeOf(errno));
        return std::nullopt;
    }
    struct statx facts;
    if (posix.statx(AT_FDCWD, path, AT_SYMLINK_NOFOLLOW, STATX_BASIC_STATS, &facts) != 0 ||
        !S_ISDIR(facts.stx_mode) || facts.stx_uid != posix.geteuid() ||
        (facts.stx_mode & 07777) != 0700) {
        SetLastError(ERROR_ACCESS_DENIED);
        return std::nullopt;
    }
    return state->folder;
}

// The mark that a file's name begins with, or nothing.
std::string MarkOf(const std::string& name)
{
    const std::string mark = name.substr(0, MARK_SIZE);
    const bool is = mark.size() == MARK_SIZE && mark.find_first_not_of(DIGITS) == mark.npos &&
                    (name.size() == MARK_SIZE || name[MARK_SIZE] == '-');
    return is ? mark : std::string();
}

struct CloseFolder
{
    void operator()(DIR* folder) const { posix.closedir(folder); }
};

std::vector<std::string> Files()
{
    std::vector<std::string> names;
    const std::unique_ptr<DIR, CloseFolder> folder(posix.opendir(state->folder.c_str()));
    while (const dirent* entry = folder ? posix.readdir(folder.get()) : nullptr)
        names.emplace_back(entry->d_name);
    return names;
}

// The mark's own file goes last: until then the rest is found again.
void RemoveFiles(const std::string& mark)
{
    for (const std::string& name : Files())
        if (MarkOf(name) == mark && name != mark)
            posix.unlink((state->folder + '/' + name).c_str());
    posix.unlink((state->folder + '/' + mark).c_str());
}

void ForgetUnheldAtoms(Transaction& transaction)
{
    Query(transaction, "DELETE FROM hold WHERE mark = '' AND atom NOT IN"
                       " (SELECT atom FROM hold WHERE mark <> '')")
        .Run();
    Query(transaction, "DELETE FROM atom WHERE id NOT IN (SELECT atom FROM hold)").Run();
}

void Remove(Transaction& transaction, const std::string& mark)
{
    Query(transaction, "DELETE FROM win WHERE mark = ?").Text(mark).Run();
    Query(transaction, "INSERT INTO hold SELECT atom, '', refs FROM hold WHERE mark = ?"
                       " ON CONFLICT DO UPDATE SET refs = refs + excluded.refs")
        .Text(mark)
        .Run();
    Query(transaction, "DELETE FROM hold WHERE mark = ?").Text(mark).Run();
    ForgetUnheldAtoms(transaction);
    RemoveFiles(mark);
}

} // namespace

void Sweep(Transaction& transaction)
{
    std::set<std::string> marks;
    for (const std::string& name : Files())
        marks.insert(MarkOf(name));
    {
        Query rows(transaction, "SELECT mark FROM win UNION SELECT mark FROM hold");
        while (rows.Step())
            marks.emplace(rows.BytesAt(0));
    }
    for (const std::string& mark : marks)
        if (!mark.empty() && mark != state->mark && !IsAlive(mark))
            Remove(transaction, mark);
}

namespace
{
std::string NewMark()
{
    unsigned char bytes[MARK_SIZE / 2] = {};
    if (posix.getrandom(bytes, sizeof bytes, 0) != sizeof bytes)
        return {};
    std::string mark;
    for (const unsigned byte : bytes) {
        mark += DIGITS[byte >> 4];
        mark += DIGITS[byte & 15];
    }
    return mark;
}

struct flock WholeFile()
{
    struct flock lock = {};
    lock.l_type = F_WRLCK;
    lock.l_whence = SEEK_SET;
    return lock;
}

// Within a transaction: no other process takes the file for that of a dead one before it is locked.
DWORD LeaveMark()
{
    const std::string mark = NewMark();
    if (mark.empty())
        return ERROR_GEN_FAILURE;
    const std::string path = state->folder + '/' + mark;
    Descriptor file(posix.open(path.c_str(), O_RDWR | O_CREAT | O_EXCL, 0600));
    struct flock lock = WholeFile();
    if (!file || posix.fcntl(file.Get(), F_OFD_SETLK, &lock) != 0)
        return CodeOf(errno);
    state->lock = std::move(file);
    state->mark = mark;
    return 0;
}

void Lock()
{
    mutex.lock();
}

void Unlock()
{
    mutex.unlock();
}

// The child is in no session: what it has inherited is its parent's.
void Forget()
{
    if (state) {
        state->mark.clear();
        state->lock.Reset();
    }
    mutex.unlock();
}

void Prepare()
{
    if (state)
        return;
    auto made = std::make_unique<State>();
    made->folder = ChosenFolder();
    pthread_atfork(Lock, Unlock, Forget);
    state = made.release();
}

__attribute__((destructor)) void Leave()
{
    const std::lock_guard lock(mutex);
    if (!state || state->mark.empty())
        return;
    Guarded(0, [] {
        session.Run(Database::WRITE, [](Transaction& transaction) {
            Remove(transaction, state->mark);
            return DWORD(0);
        });
        state->mark.clear();
        state->lock.Reset();
        return 0;
    });
}
} // namespace

constinit Database session(FORM);

DWORD EnterSession()
{
    const std::lock_guard lock(mutex);
    Prepare();
    if (!state->mark.empty())
        return 0;
    const DWORD code = session.Run(Database::WRITE, [](Transaction& transaction) {
        Sweep(transaction);
        return state->mark.empty() ? LeaveMark() : DWORD(0);
    });
    if (code && !state->mark.empty()) {
        RemoveFiles(state->mark);
        state->mark.clear();
        state->lock.Reset();
    }
    return code;
}

const std::string& SessionFolder()
{
    return state->folder;
}

const std::string& SessionMark()
{
    return state->mark;
}

// What can't be looked at counts as alive.
bool IsAlive(const std::string& mark)
{
    const Descriptor file(posix.open((state->folder + '/' + mark).c_str(), O_RDWR, 0));
    if (!file)
        return errno != ENOENT;
    struct flock lock = WholeFile();
    return posix.fcntl(file.Get(), F_OFD_GETLK, &lock) != 0 || lock.l_type != F_UNLCK;
}

void SweepSession()
{
    session.Run(Database::WRITE, [](Transaction& transaction) {
        Sweep(transaction);
        return DWORD(0);
    });
}
} // namespace winapi
