// winapi/Base/Database.cpp
#include "Base/Database.h"

#include "Base/Posix.h"
#include "Errors/Failure.h"

#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace winapi
{
namespace
{
// What stands at the head of each file of SQLite.
constexpr char MAGIC[] = "SQLite format 3";
constexpr unsigned MARK_PLACE = 68;
constexpr unsigned HEAD_SIZE = 100;

// Within a scope of the host's libraries only.
Database* firstOpen;
const DatabaseTable* functions;

std::atomic<bool> wasOpened;

DWORD BigEndian(const unsigned char* bytes)
{
    return static_cast<DWORD>(bytes[0]) << 24 | bytes[1] << 16 | bytes[2] << 8 | bytes[3];
}

// Looks at the head of a file without a change to it: a stranger's stays as it is. A file without
// content is one that is just being made.
DWORD CheckHead(int fd, off_t size, DWORD mark)
{
    unsigned char head[HEAD_SIZE];
    if (size == 0)
        return 0;
    const ssize_t count = Retried([&] { return posix.pread(fd, head, sizeof head, 0); });
    if (count < 0)
        return ERROR_REGISTRY_IO_FAILED;
    const bool ours = count == HEAD_SIZE && std::memcmp(head, MAGIC, sizeof MAGIC) == 0 &&
                      BigEndian(head + MARK_PLACE) == mark;
    return ours ? 0 : ERROR_BADDB;
}

// What lies in another user's folder can be exchanged by him, and what is made there he can't use.
DWORD CheckFolder(const std::string& path)
{
    struct stat facts;
    if (posix.stat(path.c_str(), &facts) != 0)
        return CodeOf(errno);
    return facts.st_uid == posix.geteuid() ? ERROR_SUCCESS : ERROR_ACCESS_DENIED;
}

// Makes the file where there is none, and sees to it that it is the user's own, for nobody else and
// of the right kind.
DWORD CheckFile(const char* path, DWORD mark, struct stat& facts)
{
    const Descriptor file(posix.open(path, O_RDWR | O_CREAT | O_NONBLOCK, 0600));
    if (!file || posix.fstat(file.Get(), &facts) != 0)
        return CodeOf(errno);
    if (!S_ISREG(facts.st_mode))
        return ERROR_BADDB;
    if (facts.st_uid != posix.geteuid())
        return ERROR_ACCESS_DENIED;
    if ((facts.st_mode & 077) != 0 && posix.fchmod(file.Get(), 0600) != 0)
        return CodeOf(errno);
    return CheckHead(file.Get(), facts.st_size, mark);
}

// How long others are waited for.
class Patience
{
public:
    // False when it is at its end.
    bool Wait()
    {
        timespec rest = {0, pause};
        waited += pause;
        pause = std::min(pause * 2, LONGEST);
        posix.nanosleep(&rest, nullptr);
        return waited < MOST;
    }

private:
    static constexpr long LONGEST = 4'000'000; // Nanoseconds, as all here.
    static constexpr long long MOST = 5'000'000'000;
    long pause = 50'000;
    long long waited = 0;
};

// The last process that closes a database leaves one file behind, with all in it. Later than what
// other services have to say at the end.
__attribute__((destructor(1000))) void CloseAtEnd()
{
    if (!wasOpened)
        return;
    const Host host;
    Database::CloseAll();
}
} // namespace

Query::Query(Transaction& transaction, const char* text) : table(transaction.table)
{
    Check(table.prepare(transaction.database.connection, text, &statement));
}

Query::~Query()
{
    if (statement)
        table.reset(statement);
}

void Query::Check(DWORD code) const
{
    if (code)
        throw DatabaseFailure{code};
}

Query& Query::Number(std::int64_t number)
{
    Check(table.bindNumber(statement, ++parameter, number));
    return *this;
}

Query& Query::Text(std::string_view text)
{
    Check(table.bindText(statement, ++parameter, text.data(), text.size()));
    return *this;
}

Query& Query::Data(const void* data, std::size_t size)
{
    Check(table.bindData(statement, ++parameter, data, size));
    return *this;
}

bool Query::Step()
{
    bool row = false;
    Check(table.step(statement, &row));
    return row;
}

std::string_view Query::BytesAt(int column) const
{
    std::size_t size = 0;
    const void* const bytes = table.bytes(statement, column, &size);
    return {static_cast<const char*>(bytes), size};
}

DWORD Database::RunPatiently(Access access, Ask ask, Call call, void* place)
{
    const auto folder = form.folder(false);
    if (!folder)
        return GetLastError();
    const std::string path = *folder + '/' + form.file;
    Patience patience;
    for (;;) {
        const DWORD code = RunOnce(access, ask, call, place, path);
        if (code != ERROR_BUSY || !patience.Wait())
            return code;
    }
}

DWORD Database::RunOnce(Access access, Ask ask, Call call, void* place, const std::string& path)
{
    const Host host;
    if (!host)
        return ERROR_MOD_NOT_FOUND;
    functions = host->database;
    if (!IsOpen(access, path)) {
        // Another file, which may have got the numbers of the old one.
        if (connection)
            device = inode = 0;
        Close(*functions);
        if (const DWORD code = Open(*functions, path))
            return code;
    }
    return RunOpen(access, ask, call, place);
}

// A transaction of the database itself: undone unless it is committed. One that the heap has no room
// to undo ends with the connection: nobody else is to wait for it.
class Database::Bracket
{
public:
    Bracket(const DatabaseTable& those, Database& whose, bool writes)
        : table(those),
          database(whose)
    {
        Run(writes ? "BEGIN IMMEDIATE" : "BEGIN");
        open = true;
    }
    Bracket(const Bracket&) = delete;
    Bracket& operator=(const Bracket&) = delete;
    ~Bracket()
    {
        if (open && table.execute(database.connection, "ROLLBACK") == ERROR_NOT_ENOUGH_MEMORY)
            database.Close(table);
    }
    void Commit()
    {
        Run("COMMIT");
        open = false;
    }

private:
    void Run(const char* text) const
    {
        void* statement = nullptr;
        bool row = false;
        DWORD code = table.prepare(database.connection, text, &statement);
        if (code == 0) {
            code = table.step(statement, &row);
            table.reset(statement);
        }
        if (code)
            throw DatabaseFailure{code};
    }

    const DatabaseTable& table;
    Database& database;
    bool open = false;
};

DWORD Database::RunOpen(Access access, Ask ask, Call call, void* place)
{
    try {
        Transaction transaction(*functions, *this);
        if (ask) {
            functions->stamp(connection, &transaction.stamp);
            if (ask(place, transaction))
                return 0;
        }
        Bracket bracket(*functions, *this, access == WRITE);
        const DWORD code = call(place, transaction);
        if (code == 0)
            bracket.Commit();
        return code;
    } catch (const DatabaseFailure& failure) {
        // What is broken is looked at anew the next time. On a full disk reading goes on.
        if (failure.code == ERROR_BADDB || failure.code == ERROR_REGISTRY_IO_FAILED)
            Close(*functions);
        return failure.code;
    }
}

// A file that was taken away is noticed at once by who writes, and soon by who reads.
bool Database::IsOpen(Access access, const std::string& path)
{
    constexpr std::int64_t SOON = 10;
    if (!connection || path != openPath)
        return false;
    timespec now;
    posix.clock_gettime(CLOCK_MONOTONIC_COARSE, &now);
    const std::int64_t time = std::int64_t{now.tv_sec} * 1000 + now.tv_nsec / 1'000'000;
    if (access == READ && time - looked < SOON)
        return true;
    looked = time;
    struct stat facts;
    return posix.stat(openPath, &facts) == 0 && facts.st_dev == device && facts.st_ino == inode;
}

DWORD Database::Open(const DatabaseTable& table, const std::string& path)
{
    const auto folder = form.folder(true);
    if (!folder)
        return GetLastError();
    if (const DWORD code = CheckFolder(*folder))
        return code;
    struct stat facts;
    if (const DWORD code = CheckFile(path.c_str(), form.mark, facts))
        return code;
    openPath = ::strdup(path.c_str());
    if (!openPath)
        return ERROR_NOT_ENOUGH_MEMORY;
    DWORD code = table.open(openPath, form.durable, &connection);
    if (code == 0)
        code = MakeTables(table);
    if (code) {
        Close(table);
        return code;
    }
    if (facts.st_dev != device || facts.st_ino != inode)
        ++generation;
    ++openings;
    device = facts.st_dev;
    inode = facts.st_ino;
    nextOpen = firstOpen;
    firstOpen = this;
    wasOpened = true;
    Host::BeforeForks(CloseAll);
    return 0;
}

// The mark is in the file itself before the log of writes begins: so it is found in each file that
// isn't empty.
DWORD Database::MakeTables(const DatabaseTable& table)
{
    try {
        Transaction transaction(table, *this);
        const auto version = [&] {
            Query query(transaction, "PRAGMA user_version");
            return query.Step() ? query.NumberAt(0) : 0;
        };
        if (version() == 0) {
            Bracket bracket(table, *this, true);
            char marks[100];
            std::snprintf(marks, sizeof marks,
                          "PRAGMA application_id = %d; PRAGMA user_version = %d",
                          static_cast<int>(form.mark), form.version);
            for (const char* text : {form.tables, static_cast<const char*>(marks)})
                if (const DWORD code = version() ? 0 : table.execute(connection, text))
                    return code;
            bracket.Commit();
        }
        if (version() != form.version)
            return ERROR_BADDB;
        return table.execute(connection, "PRAGMA journal_mode = WAL");
    } catch (const DatabaseFailure& failure) {
        return failure.code;
    }
}

void Database::Close(const DatabaseTable& table)
{
    for (Database** place = &firstOpen; *place; place = &(*place)->nextOpen)
        if (*place == this) {
            *place = nextOpen;
            break;
        }
    if (connection)
        table.close(connection);
    connection = nullptr;
    std::free(openPath);
    openPath = nullptr;
}

void Database::CloseAll()
{
    while (firstOpen)
        firstOpen->Close(*functions);
}
} // namespace winapi
